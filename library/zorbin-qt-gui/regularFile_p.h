#pragma once
#include <string>

namespace zorbin_qt_gui {

/// Opens a regular file for reading. Returns its descriptor, or -1 if it can't be opened or is
/// anything else: a directory, a device, or a FIFO, which a plain open would wait for.
int openRegularFile(const std::string& fileName);

} // namespace zorbin_qt_gui
