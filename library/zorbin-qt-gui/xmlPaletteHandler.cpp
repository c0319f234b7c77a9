#include "xmlPaletteHandler.h"

#include "palette.h"
#include "paletteFile_p.h"
#include "xmlReader_p.h"

#include <algorithm>
#include <array>

namespace zorbin_qt_gui {
namespace {

const QLatin1String colorTableTag("colorTable");
const QLatin1String colorTag("color");
const QLatin1String keyedColorTableTag("keyedColorTable");
const QLatin1String keyedColorTag("keyedColor");

void reportFault(const xmlFault_t& fault)
{
    if (fault.isExcess()) {
        reportExcess("load", fault.text);
        return;
    }
    // Deliberate: two blanks after the colon.
    qDebug("palette_t::load:  %s on line %d, column %d", qPrintable(fault.text), fault.line,
           fault.column);
}

unsigned component(const xmlAttributes_t& attributes, const QString& name)
{
    return static_cast<unsigned>(attributes.value(name).toInt()) & 0xFFU; // no number gives 0
}

QRgb colorOf(const xmlAttributes_t& attributes)
{
    return 0xFF000000U | component(attributes, QStringLiteral("r")) << 16U |
           component(attributes, QStringLiteral("g")) << 8U |
           component(attributes, QStringLiteral("b"));
}

palette_t::colorDepth_t depthOf(const xmlAttributes_t& table)
{
    return table.value(QStringLiteral("depth")) == QLatin1String("24") ? palette_t::DEPTH_24
                                                                       : palette_t::DEPTH_8;
}

// Gathers a palette from the elements of a document: all tables before the first fault in a colour
// table, and all keyed colours before the first fault in a table of those.
class paletteVisitor_t : public xmlVisitor_t
{
public:
    QString startElement(const QString& name, const xmlAttributes_t& attributes) override
    {
        ++m_level;
        if (m_level == 1)
            m_isPalette = name == QLatin1String("palette");
        else if (m_level == 2)
            startTable(name, attributes);
        else if (m_level == 3 && (m_kind == colorTable || m_kind == keyedColorTable))
            return addEntry(name, attributes);
        return {};
    }

    void endElement() override
    {
        if (m_level == 2 && m_kind == colorTable)
            endColorTable();
        --m_level;
    }

    // Stores what was gathered. Returns false if the document is no palette or has a fault.
    bool store(palette_t* palette) const
    {
        if (!m_isPalette || !m_hasColorTable || !m_hasKeyedColorTable)
            return false;
        for (const palette_t::colorDepth_t depth : {palette_t::DEPTH_8, palette_t::DEPTH_24}) {
            if (m_tables[depth])
                palette->setColorTable(*m_tables[depth], depth);
        }
        if (m_isColorTableFaulty)
            return false;
        for (const palette_t::colorDepth_t depth : {palette_t::DEPTH_8, palette_t::DEPTH_24}) {
            for (const auto& [key, color] : m_keyedColors[depth])
                palette->setKeyedColor(key, color, depth);
        }
        return !m_isKeyedColorTableFaulty;
    }

private:
    enum kind_t
    {
        other,
        colorTable,
        keyedColorTable
    };

    void startTable(const QString& name, const xmlAttributes_t& attributes)
    {
        m_kind = name == colorTableTag        ? colorTable
                 : name == keyedColorTableTag ? keyedColorTable
                                              : other;
        m_hasColorTable |= m_kind == colorTable;
        m_hasKeyedColorTable |= m_kind == keyedColorTable;
        m_depth = depthOf(attributes);
        m_table.clear();
    }

    QString addEntry(const QString& name, const xmlAttributes_t& attributes)
    {
        if (++m_entries > maxPaletteEntries)
            return entryLimit();
        if (m_kind == colorTable && !m_isColorTableFaulty) {
            m_isColorTableFaulty = name != colorTag;
            m_table.push_back(colorOf(attributes));
        } else if (m_kind == keyedColorTable && !m_isKeyedColorTableFaulty) {
            const QByteArray key = attributes.value(QStringLiteral("key")).toLatin1();
            m_isKeyedColorTableFaulty = name != keyedColorTag || key.isEmpty();
            if (!m_isKeyedColorTableFaulty)
                m_keyedColors[m_depth][key.toStdString()] = colorOf(attributes);
        }
        return {};
    }

    void endColorTable()
    {
        if (!m_isColorTableFaulty && !m_tables[m_depth]) // the first one of a depth stays
            m_tables[m_depth] = std::move(m_table);
    }

    using table_t = std::vector<unsigned int>;

    int m_level = 0; // of elements that have begun
    bool m_isPalette = false;
    bool m_hasColorTable = false;
    bool m_hasKeyedColorTable = false;
    bool m_isColorTableFaulty = false;
    bool m_isKeyedColorTableFaulty = false;
    std::size_t m_entries = 0;
    kind_t m_kind = other; // of the table that has begun
    palette_t::colorDepth_t m_depth = palette_t::DEPTH_8;
    table_t m_table;
    std::array<std::optional<table_t>, 2> m_tables; // by depth
    std::array<std::map<std::string, unsigned int>, 2> m_keyedColors;
};

// An attribute, its value in UTF-8 escaped as QDomDocument does it.
QByteArray attribute(const char* name, const QByteArray& value)
{
    QByteArray text = QByteArray(" ") + name + "=\"";
    for (const char c : value) {
        switch (c) {
        case '&':
            text += "&amp;";
            break;
        case '<':
            text += "&lt;";
            break;
        case '>':
            text += text.endsWith("]]") ? "&gt;" : ">";
            break;
        case '"':
            text += "&quot;";
            break;
        case '\t':
            text += "&#x9;";
            break;
        case '\n':
            text += "&#xa;";
            break;
        case '\r':
            text += "&#xd;";
            break;
        default:
            text += c;
        }
    }
    return text + '"';
}

QByteArray component(const char* name, QRgb color, unsigned shift)
{
    return attribute(name, QByteArray::number((color >> shift) & 0xFFU));
}

QByteArray colorTableEntry(QRgb color)
{
    // Deliberate: table entries are written with green and blue exchanged; keyed colours are not.
    return component("r", color, 16) + component("g", color, 0) + component("b", color, 8);
}

QByteArray keyedColorTableEntry(const std::pair<const std::string, unsigned int>& entry)
{
    const QString key =
        QString::fromLatin1(entry.first.data(), static_cast<int>(entry.first.size()));
    const QRgb color = entry.second;
    return attribute("key", key.toUtf8()) + component("r", color, 16) + component("g", color, 8) +
           component("b", color, 0);
}

// A table's element. \p attributesOf gives the attributes of an entry.
template <typename entries_t, typename attributesOf_t>
QByteArray table(const char* tag, const char* depth, const char* entryTag, const entries_t& entries,
                 const attributesOf_t& attributesOf)
{
    QByteArray text = QByteArray("  <") + tag + attribute("depth", depth);
    if (entries.empty())
        return text + "/>\n";
    text += ">\n";
    for (const auto& entry : entries)
        text += QByteArray("    <") + entryTag + attributesOf(entry) + "/>\n";
    return text + "  </" + tag + ">\n";
}

QByteArray colorTable(const char* depth, const std::vector<unsigned int>& colors)
{
    return table("colorTable", depth, "color", colors, colorTableEntry);
}

QByteArray keyedColorTable(const std::map<std::string, unsigned int>& colors)
{
    // Deliberate: the keyed colours of either depth are written as those of 8 bits.
    return table("keyedColorTable", "8", "keyedColor", colors, keyedColorTableEntry);
}

std::size_t entryCount(const palette_t& palette)
{
    std::size_t count = 0;
    for (const palette_t::colorDepth_t depth : {palette_t::DEPTH_8, palette_t::DEPTH_24})
        count += palette.colorTable(depth).size() + palette.keyedColor(depth).size();
    return count;
}

bool isReadable(const std::string& key)
{
    return readsControlCharacters || std::all_of(key.begin(), key.end(), [](char c) {
               return static_cast<unsigned char>(c) >= ' ' || c == '\t' || c == '\n' || c == '\r';
           });
}

bool areKeysReadable(const palette_t& palette)
{
    for (const palette_t::colorDepth_t depth : {palette_t::DEPTH_8, palette_t::DEPTH_24}) {
        for (const auto& entry : palette.keyedColor(depth)) {
            if (isReadable(entry.first))
                continue;
            qDebug("palette_t::save:  control character in the key %s",
                   QByteArray::fromStdString(entry.first).toPercentEncoding().constData());
            return false;
        }
    }
    return true;
}

// The layout is that of QDomDocument with an indentation of 2, but attributes are always in the
// same order, for which QDomDocument doesn't care.
QByteArray written(const palette_t& palette)
{
    return "<palette>\n" + colorTable("8", palette.colorTable(palette_t::DEPTH_8)) +
           colorTable("24", palette.colorTable(palette_t::DEPTH_24)) +
           keyedColorTable(palette.keyedColor(palette_t::DEPTH_8)) +
           keyedColorTable(palette.keyedColor(palette_t::DEPTH_24)) + "</palette>\n";
}

} // namespace

bool xmlPaletteHandler_t::load(const std::string& fileName, palette_t* palette)
{
    const auto file = readPaletteFile(fileName);
    if (!file)
        return false;
    paletteVisitor_t visitor;
    if (const auto fault = readXml(file->bytes, visitor)) {
        reportFault(*fault);
        return false;
    }
    return visitor.store(palette);
}

bool xmlPaletteHandler_t::save(const std::string& fileName, const palette_t* palette)
{
    if (entryCount(*palette) > maxPaletteEntries) {
        reportExcess("save", entryLimit());
        return false;
    }
    if (!areKeysReadable(*palette))
        return false;
    const QByteArray text = written(*palette);
    if (text.size() > maxPaletteFileSize) {
        reportExcess("save", sizeLimit());
        return false;
    }
    return writePaletteFile(fileName, text);
}
} // namespace zorbin_qt_gui
