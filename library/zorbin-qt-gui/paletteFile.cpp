#include "paletteFile_p.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace zorbin_qt_gui {
namespace {

// The name by which the system knows a file; empty if it doesn't, as for resources.
QByteArray systemName(const std::string& fileName)
{
    if (fileName.find('\0') != std::string::npos)
        return {};
    const QString name = QFile::decodeName(fileName.c_str());
    const QFileInfo file(name); // has found search paths out
    if (!file.isNativePath())
        return {};
    // The bytes themselves may be no text in the local encoding.
    return file.filePath() == name ? QByteArray::fromStdString(fileName)
                                   : QFile::encodeName(file.filePath());
}

// Opens a regular file for reading: nothing else, since a FIFO would be waited for.
bool openRegularFile(const QByteArray& name, QFile& file)
{
    const int descriptor = open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor == -1)
        return false;
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        close(descriptor);
        return false;
    }
    return file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
}

bool openForReading(const std::string& fileName, QFile& file)
{
    const QByteArray name = systemName(fileName);
    if (!name.isEmpty())
        return openRegularFile(name, file);
    if (fileName.empty() || fileName.find('\0') != std::string::npos)
        return false;
    file.setFileName(QFile::decodeName(fileName.c_str()));
    return file.open(QIODevice::ReadOnly);
}

// The name of an open file without links; empty if it isn't known.
QByteArray nameWithoutLinks(const QByteArray& name, const struct stat& status)
{
    const std::unique_ptr<char, decltype(&std::free)> target(realpath(name.constData(), nullptr),
                                                             &std::free);
    struct stat targetStatus = {};
    // The link to a file in memory leads nowhere, or to another file.
    const bool isSameFile = target != nullptr && stat(target.get(), &targetStatus) == 0 &&
                            targetStatus.st_dev == status.st_dev &&
                            targetStatus.st_ino == status.st_ino;
    return isSameFile ? QByteArray(target.get()) : QByteArray();
}

// Whether QSaveFile can replace a file: a regular one whose name is text in the local encoding,
// with room for the ending of the file beside it.
bool isReplaceable(const QByteArray& name, const struct stat& status)
{
    constexpr int longestEnding = 7; // ".XXXXXX"
    const auto leaf = name.size() - (name.lastIndexOf('/') + 1);
    return S_ISREG(status.st_mode) && !name.isEmpty() && leaf + longestEnding <= NAME_MAX &&
           QFile::encodeName(QFile::decodeName(name)) == name;
}

bool writeInPlace(int descriptor, const QByteArray& bytes)
{
    if (ftruncate(descriptor, 0) != 0 && errno != EINVAL) // what is no file has no size
        return false;
    QFile file;
    return file.open(descriptor, QIODevice::WriteOnly | QIODevice::Unbuffered) &&
           file.write(bytes) == bytes.size();
}

// Replaces an open file, or writes it in place if only its directory is in the way.
bool replaceFile(const QByteArray& name, int descriptor, const struct stat& status,
                 const QByteArray& bytes)
{
    QSaveFile file(QFile::decodeName(name));
    file.setDirectWriteFallback(true);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return false;
    // Owner and group as far as this process may give files away. The mode comes after them, which
    // can change it.
    const bool isGiven = fchown(file.handle(), status.st_uid, status.st_gid) == 0 ||
                         fchown(file.handle(), static_cast<uid_t>(-1), status.st_gid) == 0;
    Q_UNUSED(isGiven)
    fchmod(file.handle(), status.st_mode & 07777U);
    if (file.write(bytes) != bytes.size())
        return false;
    // Others' files in a sticky directory and mount points can't be replaced. There was room.
    return file.commit() ||
           (file.error() == QFileDevice::RenameError && writeInPlace(descriptor, bytes));
}

} // namespace

void reportExcess(const char* operation, const QString& limit)
{
    qDebug("palette_t::%s:  more than %s", operation, qPrintable(limit));
}

QString sizeLimit()
{
    return QStringLiteral("%1 MiB").arg(maxPaletteFileSize >> 20);
}

QString entryLimit()
{
    return QStringLiteral("%1 entries").arg(maxPaletteEntries);
}

std::optional<fileContent_t> readPaletteFile(const std::string& fileName)
{
    QFile file;
    if (!openForReading(fileName, file))
        return std::nullopt;
    constexpr qint64 pieceSize = 1024LL * 1024;
    fileContent_t content;
    qint64 size = file.size();
    while (size <= maxPaletteFileSize) { // files of /proc have none but aren't empty
        const QByteArray piece = file.read(pieceSize);
        content.isComplete = piece.isEmpty() && file.error() == QFileDevice::NoError;
        if (piece.isEmpty())
            return content;
        content.bytes += piece;
        size = content.bytes.size();
    }
    reportExcess("load", sizeLimit());
    return std::nullopt;
}

bool writePaletteFile(const std::string& fileName, const QByteArray& bytes)
{
    const QByteArray name = systemName(fileName);
    if (name.isEmpty())
        return false;
    // Not blocking, so that a FIFO that nobody reads is refused instead of waited for.
    constexpr int mode = O_WRONLY | O_NONBLOCK | O_CLOEXEC;
    int descriptor = open(name.constData(), mode);
    const bool isNew = descriptor == -1 && errno == ENOENT;
    if (isNew) // made at once, so that it is the system that follows links
        descriptor = open(name.constData(), mode | O_CREAT, 0666);
    if (descriptor == -1)
        return false;
    struct stat status = {};
    fstat(descriptor, &status);
    const QByteArray target = nameWithoutLinks(name, status);
    const bool isWritten = isReplaceable(target, status)
                               ? replaceFile(target, descriptor, status, bytes)
                               : writeInPlace(descriptor, bytes);
    close(descriptor);
    if (isNew && !isWritten)
        unlink(target.constData());
    return isWritten;
}

} // namespace zorbin_qt_gui
