#pragma once
#include "zorbinExport.h"

namespace zorbinport {

/// Blocks the calling thread for at least \p microseconds, also when signals arrive meanwhile.
ZORBIN_EXPORT void usleep(unsigned microseconds);

} // namespace zorbinport
