#include "fuzzSupport.h"

#include <QGuiApplication>
#include <cstdio>
#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

using namespace zorbin_qt_gui;

static QStringList messages;

static void keepMessage(QtMsgType /*type*/, const QMessageLogContext& /*context*/,
                        const QString& text)
{
    messages += text;
}

void setUpApplication()
{
    qputenv("QT_QPA_PLATFORM", "minimal");
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    static QGuiApplication application(argc, argv);
    qInstallMessageHandler(keepMessage);
}

QStringList takeMessages()
{
    const QStringList taken = messages;
    messages.clear();
    return taken;
}

memoryFile_t::memoryFile_t() : m_descriptor(memfd_create("palette", MFD_CLOEXEC))
{
    require(m_descriptor != -1, "a file in memory can be made");
}

memoryFile_t::~memoryFile_t()
{
    close(m_descriptor);
}

std::string memoryFile_t::name() const
{
    return "/proc/self/fd/" + std::to_string(m_descriptor);
}

void memoryFile_t::fill(const std::uint8_t* data, std::size_t size)
{
    const bool isFilled = ftruncate(m_descriptor, 0) == 0 &&
                          pwrite(m_descriptor, data, size, 0) == static_cast<ssize_t>(size);
    require(isFilled, "a file in memory can be filled");
}

std::string memoryFile_t::content() const
{
    const off_t size = lseek(m_descriptor, 0, SEEK_END);
    std::string text(static_cast<std::size_t>(size), '\0');
    require(pread(m_descriptor, &text[0], text.size(), 0) == size, "a file in memory can be read");
    return text;
}

void require(bool holds, const char* rule)
{
    if (holds)
        return;
    std::fprintf(stderr, "The input breaks the rule: %s\n", rule);
    std::abort();
}

void requireSoundColors(const palette_t& palette)
{
    for (const palette_t::colorDepth_t depth : {palette_t::DEPTH_8, palette_t::DEPTH_24}) {
        for (const QRgb color : palette.colorTable(depth))
            require(qAlpha(color) == 255, "an entry of a table is opaque");
        for (const auto& [key, color] : palette.keyedColor(depth)) {
            require(!key.empty(), "a key isn't empty");
            require(qAlpha(color) == 255, "a keyed colour is opaque");
        }
    }
}
