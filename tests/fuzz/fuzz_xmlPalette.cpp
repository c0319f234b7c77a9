// The reader of XML palettes beside a plain one that uses Qt's tree, and the writer for what the
// reader has accepted.
#include "fuzzSupport.h"
#include "plainPalette.h"

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

// The plain reader makes the same of a file that isn't too much for the reader.
void requireReadPlainly(const memoryFile_t& file, const palette_t& palette, bool isLoaded,
                        const QStringList& messages)
{
    palette_t plain;
    require(loadPlainly(QString::fromStdString(file.name()), &plain) == isLoaded,
            "the plain reader has the same result");
    require(takeMessages() == messages, "the plain reader says the same");
    for (const palette_t::colorDepth_t depth : {palette_t::DEPTH_8, palette_t::DEPTH_24}) {
        require(plain.colorTable(depth) == palette.colorTable(depth),
                "the plain reader makes the same tables");
        require(plain.keyedColor(depth) == palette.keyedColor(depth),
                "the plain reader makes the same keyed colours");
    }
}

// What a saved palette holds when it is read again.
void requireSavedAndReadAgain(const palette_t& palette)
{
    static memoryFile_t file;
    require(xmlPaletteHandler_t().save(file.name(), &palette), "what was loaded can be saved");
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
    const QStringList messages = takeMessages();
    requireSoundColors(palette);
    if (messages.isEmpty() || !messages.first().startsWith("palette_t::load:  more than "))
        requireReadPlainly(file, palette, isLoaded, messages);
    if (isLoaded)
        requireSavedAndReadAgain(palette);
    return 0;
}
