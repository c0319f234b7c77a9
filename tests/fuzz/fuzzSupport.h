#pragma once
#include <QStringList>
#include <cstddef>
#include <cstdint>
#include <palette.h>
#include <string>
#include <vector>

// What the fuzz targets share.

/// Makes the application that a palette needs, without a display, and keeps Qt's messages for
/// takeMessages(). To be called from LLVMFuzzerInitialize().
void setUpApplication();

/// Qt's messages since the last call.
QStringList takeMessages();

/// A regular file that lies in memory.
class memoryFile_t
{
public:
    memoryFile_t();
    ~memoryFile_t();
    memoryFile_t(const memoryFile_t&) = delete;
    memoryFile_t& operator=(const memoryFile_t&) = delete;

    /// Under this name it can be opened, any number of times.
    std::string name() const;
    /// Replaces what it holds.
    void fill(const std::uint8_t* data, std::size_t size);
    /// What it holds.
    std::string content() const;

private:
    const int m_descriptor;
};

/// Ends the process, which counts as a finding, unless \p holds. \p rule says what ought to hold.
void require(bool holds, const char* rule);

/// Requires what is true of any palette filled by a reader: opaque colours under keys that aren't
/// empty.
void requireSoundColors(const zorbin_qt_gui::palette_t& palette);
