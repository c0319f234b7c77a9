#include "resourceDir.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>

namespace zorbin_qt {

std::string resourceDir(const std::string& defaultDir)
{
    const QByteArray named = qgetenv("ZORBIN_QT_RESOURCE_DIR");
    if (!named.isEmpty() && QFileInfo(QFile::decodeName(named)).isDir())
        return named.toStdString();
    return defaultDir;
}

} // namespace zorbin_qt
