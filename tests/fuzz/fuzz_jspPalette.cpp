// The reader of JSP palettes beside a plain one that takes the text apart by strtoul().
#include "fuzzSupport.h"

#include <cctype>
#include <cstdlib>
#include <jspPaletteHandler.h>

using namespace zorbin_qt_gui;

namespace {

// The plain reader: numbers, one after another, from a text in memory.
class numbers_t
{
public:
    explicit numbers_t(const std::string& text) : m_next(text.c_str()) {}

    // Returns false if no number comes next. A 0 in the text is no white space and no digit.
    bool read(unsigned long& number)
    {
        char* end = nullptr;
        number = std::strtoul(m_next, &end, 10);
        const bool isRead = end != m_next;
        m_next = end;
        return isRead;
    }

private:
    const char* m_next;
};

std::vector<unsigned int> plainTable(const std::string& text)
{
    std::vector<unsigned int> table;
    numbers_t numbers(text);
    unsigned long ignored = 0;
    unsigned long red = 0;
    unsigned long green = 0;
    unsigned long blue = 0;
    while (numbers.read(ignored) && numbers.read(red) && numbers.read(green) && numbers.read(blue))
        table.push_back(qRgb(red & 0xFF, green & 0xFF, blue & 0xFF));
    return table;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    setUpApplication();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static memoryFile_t file;
    file.fill(data, size);
    palette_t palette;
    require(jspPaletteHandler_t().load(file.name(), &palette), "a file that can be opened loads");
    requireSoundColors(palette);
    require(palette.colorTable(palette_t::DEPTH_24) ==
                plainTable(std::string(reinterpret_cast<const char*>(data), size)),
            "the table is what a plain reader makes of the text");
    require(palette.colorTable() == palette.colorTable(palette_t::DEPTH_24),
            "the table serves the display");
    require(palette.colorTable(palette_t::DEPTH_8).empty(), "the 8-bit table isn't set");
    require(palette.keyedColor(palette_t::DEPTH_8).empty() &&
                palette.keyedColor(palette_t::DEPTH_24).empty(),
            "there are no keyed colours");
    return 0;
}
