#pragma once
#include <QByteArray>
#include <QString>
#include <cstddef>
#include <optional>
#include <string>

// Files of palettes in any format. Names are bytes in the local encoding and are looked up as QFile
// does it: ":/NAME" is a resource, "PREFIX:NAME" may be in a search path of that prefix.

namespace zorbin_qt_gui {

/// What bounds the time and memory that a file costs. No palette comes near them.
constexpr qint64 maxPaletteFileSize = 64LL * 1024 * 1024;
constexpr std::size_t maxPaletteEntries = 1000000; // of all tables

/// Writes the debug message that a palette has more than a limit. \p operation is "load" or "save".
void reportExcess(const char* operation, const QString& limit);
QString sizeLimit();
QString entryLimit();

struct fileContent_t
{
    QByteArray bytes;
    bool isComplete = false; ///< false: the file couldn't be read to its end
};

/// Reads a file. None if it can't be opened, isn't a regular file or resource (a FIFO would be
/// waited for), or is larger than maxPaletteFileSize, which a debug message says.
std::optional<fileContent_t> readPaletteFile(const std::string& fileName);

/// Replaces a file by another one with the same permissions that is written beside it, so that the
/// former one stays if there isn't room. Links are followed. What can't be replaced is written in
/// place: a device, a file in a directory that lets no other one be made. Returns false if not
/// everything was written.
bool writePaletteFile(const std::string& fileName, const QByteArray& bytes);

} // namespace zorbin_qt_gui
