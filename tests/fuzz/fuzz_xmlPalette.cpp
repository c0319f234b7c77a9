// The reader of XML palettes, and its writer for what the reader has accepted.
#include "fuzzSupport.h"

#include <algorithm>
#include <random>
#include <xmlPaletteHandler.h>

using namespace zorbin_qt_gui;

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

std::vector<unsigned int> withGreenAndBlueExchanged(std::vector<unsigned int> table)
{
    for (QRgb& color : table)
        color = qRgb(qRed(color), qBlue(color), qGreen(color));
    return table;
}

// XML has no control characters but tab and line ends; saving drops the others from keys.
bool hasControlCharacters(const std::map<std::string, unsigned int>& colors)
{
    return std::any_of(colors.begin(), colors.end(), [](const auto& entry) {
        return std::any_of(entry.first.begin(), entry.first.end(), [](char c) {
            return c >= 0 && c < ' ' && c != '\t' && c != '\n' && c != '\r';
        });
    });
}

// What a saved palette holds when it is read again.
void requireSavedAndReadAgain(const palette_t& palette)
{
    static memoryFile_t file;
    require(xmlPaletteHandler_t().save(file.name(), &palette), "what was loaded can be saved");
    if (hasControlCharacters(palette.keyedColor(palette_t::DEPTH_8)) ||
        hasControlCharacters(palette.keyedColor(palette_t::DEPTH_24)))
        return;
    const std::string text = file.content();
    palette_t again;
    require(xmlPaletteHandler_t().load(file.name(), &again), "what was saved can be loaded");

    for (const palette_t::colorDepth_t depth : {palette_t::DEPTH_8, palette_t::DEPTH_24})
        require(again.colorTable(depth) == withGreenAndBlueExchanged(palette.colorTable(depth)),
                "tables come back with green and blue exchanged");
    std::map<std::string, unsigned int> merged = palette.keyedColor(palette_t::DEPTH_24);
    merged.merge(palette.keyedColor(palette_t::DEPTH_8));
    require(again.keyedColor(palette_t::DEPTH_8) == merged,
            "keyed colours come back with 8 bits, those of 24 bits first");
    require(again.keyedColor(palette_t::DEPTH_24).empty(),
            "no keyed colours come back with 24 bits");

    require(xmlPaletteHandler_t().save(file.name(), &palette) && file.content() == text,
            "the same palette is saved as the same bytes");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    setUpApplication();
    return 0;
}

// Repeats a piece of the input now and then: nested elements and entities get out of hand in
// numbers that small changes never reach.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned int seed)
{
    std::minstd_rand random(seed);
    if (size == 0 || random() % 32 != 0)
        return LLVMFuzzerMutate(data, size, maxSize);
    const std::size_t begin = random() % size;
    const std::size_t length = 1 + random() % std::min<std::size_t>(size - begin, 64);
    const std::size_t copies = std::min<std::size_t>((maxSize - size) / length, random() % 20000);
    const std::size_t end = begin + length;
    std::copy_backward(data + end, data + size, data + size + copies * length);
    for (std::size_t i = 0; i < copies * length; ++i)
        data[end + i] = data[begin + i];
    return size + copies * length;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static memoryFile_t file;
    file.fill(data, size);
    palette_t palette;
    const bool isLoaded = xmlPaletteHandler_t().load(file.name(), &palette);
    requireSoundColors(palette);
    if (isLoaded)
        requireSavedAndReadAgain(palette);
    return 0;
}
