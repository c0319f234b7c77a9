#pragma once
#include "zorbinQtExport.h"

#include <string>

namespace zorbin_qt {

/// The directory of the installed resources (palettes and the like): \p defaultDir, unless the
/// environment variable `ZORBIN_QT_RESOURCE_DIR` names an existing directory, which then comes
/// back instead. An unset or empty variable, and one that names anything else, changes nothing.
/// Both are byte strings in the file system's encoding and come back as given. Any thread.
ZORBIN_QT_EXPORT std::string resourceDir(const std::string& defaultDir);

} // namespace zorbin_qt
