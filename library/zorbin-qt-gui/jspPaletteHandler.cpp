#include "jspPaletteHandler.h"

#include "palette.h"
#include "paletteFile_p.h"

#include <cstdlib>

namespace zorbin_qt_gui {
namespace {

// The numbers of a text, one after another, each as the conversion "%u" of scanf() makes it: signs
// are taken, numbers wrap.
class numbers_t
{
public:
    // \p text must outlive this. A 0 in it ends no number that another byte wouldn't end.
    explicit numbers_t(const QByteArray& text) : m_next(text.constData()) {}

    // Returns false, and stays where it is, if no number comes next.
    bool read(unsigned& number)
    {
        char* end = nullptr;
        number = static_cast<unsigned>(std::strtoul(m_next, &end, 10));
        const bool isRead = end != m_next;
        m_next = end;
        return isRead;
    }

private:
    const char* m_next;
};

} // namespace

bool jspPaletteHandler_t::load(const std::string& fileName, palette_t* palette)
{
    const auto file = readPaletteFile(fileName);
    if (!file || !file->isComplete)
        return false;
    numbers_t numbers(file->bytes);
    std::vector<unsigned int> table;
    unsigned ignored = 0;
    unsigned red = 0;
    unsigned green = 0;
    unsigned blue = 0;
    while (numbers.read(ignored) && numbers.read(red) && numbers.read(green) &&
           numbers.read(blue)) {
        if (table.size() == maxPaletteEntries) {
            reportExcess("load", entryLimit());
            return false;
        }
        table.push_back(0xFF000000U | (red & 0xFFU) << 16U | (green & 0xFFU) << 8U |
                        (blue & 0xFFU));
    }
    palette->setColorTable(table, palette_t::DEPTH_24);
    return true;
}

bool jspPaletteHandler_t::save(const std::string& /*fileName*/, const palette_t* /*palette*/)
{
    return false;
}
} // namespace zorbin_qt_gui
