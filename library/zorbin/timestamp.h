#pragma once
#include "zorbinExport.h"

namespace zorbin {

/// The current wall-clock time (UTC) in seconds since 1970-01-01 00:00, with a resolution of about
/// a microsecond. It follows adjustments of the system clock, so it can step back. Any thread.
ZORBIN_EXPORT double gettimestamp();

} // namespace zorbin
