// The reader of JSP palettes beside a plain one that takes the text apart by fscanf().
#include "fuzzSupport.h"

#include <cstdio>
#include <jspPaletteHandler.h>

using namespace zorbin_qt_gui;

namespace {

std::vector<unsigned int> plainTable(const memoryFile_t& file)
{
    std::vector<unsigned int> table;
    std::FILE* const stream = std::fopen(file.name().c_str(), "r");
    require(stream != nullptr, "a file in memory can be opened");
    unsigned red = 0;
    unsigned green = 0;
    unsigned blue = 0;
    while (std::fscanf(stream, "%*u %u %u %u", &red, &green, &blue) == 3)
        table.push_back(qRgb(static_cast<int>(red & 0xFFU), static_cast<int>(green & 0xFFU),
                             static_cast<int>(blue & 0xFFU)));
    std::fclose(stream);
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
    require(palette.colorTable(palette_t::DEPTH_24) == plainTable(file),
            "the table is what a plain reader makes of the text");
    require(palette.colorTable() == palette.colorTable(palette_t::DEPTH_24),
            "the table serves the display");
    require(palette.colorTable(palette_t::DEPTH_8).empty(), "the 8-bit table isn't set");
    require(palette.keyedColor(palette_t::DEPTH_8).empty() &&
                palette.keyedColor(palette_t::DEPTH_24).empty(),
            "there are no keyed colours");
    return 0;
}
