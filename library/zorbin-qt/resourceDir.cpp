#include "resourceDir.h"

#include <QByteArray>
#include <filesystem>
#include <system_error>

namespace zorbin_qt {

std::string resourceDir(const std::string& defaultDir)
{
    // Not through QString, which can't hold every name that a file system can.
    std::string named = qgetenv("ZORBIN_QT_RESOURCE_DIR").toStdString();
    std::error_code noSuchFile;
    if (std::filesystem::is_directory(named, noSuchFile))
        return named;
    return defaultDir;
}

} // namespace zorbin_qt
