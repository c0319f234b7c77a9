#include "xmlPaletteHandler.h"

#include "palette.h"
#include "qtCompat_p.h"
#include "regularFile_p.h"

#include <QDomDocument>
#include <QFile>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <fcntl.h>

namespace zorbin_qt_gui {
namespace {

constexpr qint64 maxFileSize = 16LL * 1024 * 1024;
constexpr qint64 maxDepth = 5000;    // QDomDocument recurses, so more would overflow the stack
constexpr qint64 maxNodes = 1000000; // at most some 800 bytes each in the tree
constexpr qint64 maxSizeWithEntities =
    16LL * 1024;                          // parsers expand each to 4096 characters at most
constexpr double maxAttributePairs = 1e7; // parsers compare their names, in a fraction of a second

const QLatin1String colorTableTag("colorTable");
const QLatin1String colorTag("color");
const QLatin1String keyedColorTableTag("keyedColorTable");
const QLatin1String keyedColorTag("keyedColor");

void reportFault(const QString& text, qint64 line, qint64 column)
{
    // Deliberate: two blanks after the colon.
    qDebug("palette_t::load:  %s on line %d, column %d", qPrintable(text), static_cast<int>(line),
           static_cast<int>(column));
}

bool readFile(const std::string& fileName, QByteArray& bytes)
{
    const int descriptor = openRegularFile(fileName);
    if (descriptor == -1)
        return false;
    QFile file;
    file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
    const qint64 size = file.size();
    if (size > maxFileSize)
        return false;
    bytes = file.read(size); // no more, should the file grow meanwhile
    return true;
}

// How many pairs of attributes the text may hold in the same element. Between two "<" is one tag at
// most, and every attribute has a "=".
double attributePairs(const QString& text)
{
    double pairs = 0.0;
    double attributes = 0.0;
    QChar last;
    for (const QChar c : text) {
        if (c == '<') {
            pairs += 0.5 * attributes * attributes;
            attributes = 0.0;
        } else if (c == '=' && last != '=') { // a line of them in a comment is no attributes
            attributes += 1.0;
        }
        last = c;
    }
    return pairs + 0.5 * attributes * attributes;
}

// How many tags in the text may begin an element with content.
qint64 openingTags(const QString& text)
{
    qint64 count = 0;
    for (auto start = text.indexOf('<'); start >= 0; start = text.indexOf('<', start + 1)) {
        const QChar first = start + 1 < text.size() ? text[start + 1] : QChar();
        QChar quote;
        QChar last; // outside quotes
        for (auto i = start + 1; i < text.size() && text[i] != '<'; ++i) {
            const QChar c = text[i];
            if (quote.isNull() && c == '>')
                break;
            if (quote.isNull() && (c == '"' || c == '\''))
                quote = c;
            else if (c == quote)
                quote = QChar();
            last = quote.isNull() ? c : QChar();
        }
        if (last != '/' && first != '/' && first != '!' && first != '?')
            ++count;
    }
    return count;
}

// Whether the tree of the document can be built in bounded time and memory, judged without building
// it. If the document has a fault and can't, the fault is reported.
bool isSafeToBuild(const QString& text)
{
    const bool hasEntities = text.contains(QLatin1String("<!ENTITY"));
    if ((hasEntities && text.size() > maxSizeWithEntities) ||
        attributePairs(text) > maxAttributePairs)
        return false;
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false); // as in the tree
    qint64 depth = 0;
    qint64 nodes = 0;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::StartElement)
            ++depth;
        else if (token == QXmlStreamReader::EndElement)
            --depth;
        nodes += 1 + reader.attributes().size();
        if (depth > maxDepth || nodes > maxNodes)
            return false;
    }
    if (!reader.hasError())
        return true;
    // The tree's parser finds its own faults and may go on where this one stops. The rest bounds
    // what it can meet, unless entities multiply it.
    const QString rest = text.mid(static_cast<int>(reader.characterOffset()));
    if (!hasEntities && depth + openingTags(rest) <= maxDepth &&
        nodes + 2LL * rest.count('<') + rest.count('=') <= maxNodes)
        return true;
    reportFault(reader.errorString(), reader.lineNumber(), reader.columnNumber());
    return false;
}

unsigned component(const QDomElement& element, const QString& name)
{
    return static_cast<unsigned>(element.attribute(name).toInt()) & 0xFFU; // what is none gives 0
}

QRgb colorOf(const QDomElement& element)
{
    return 0xFF000000U | component(element, QStringLiteral("r")) << 16U |
           component(element, QStringLiteral("g")) << 8U | component(element, QStringLiteral("b"));
}

palette_t::colorDepth_t depthOf(const QDomElement& table)
{
    return table.attribute(QStringLiteral("depth")) == QLatin1String("24") ? palette_t::DEPTH_24
                                                                           : palette_t::DEPTH_8;
}

bool readColorTable(const QDomElement& table, palette_t* palette)
{
    std::vector<unsigned int> colors;
    for (QDomElement entry = table.firstChildElement(); !entry.isNull();
         entry = entry.nextSiblingElement()) {
        if (entry.tagName() != colorTag)
            return false;
        colors.push_back(colorOf(entry));
    }
    palette->setColorTable(colors, depthOf(table));
    return true;
}

bool readKeyedColorTable(const QDomElement& table, palette_t* palette)
{
    for (QDomElement entry = table.firstChildElement(); !entry.isNull();
         entry = entry.nextSiblingElement()) {
        if (entry.tagName() != keyedColorTag)
            return false;
        const QByteArray key = entry.attribute(QStringLiteral("key")).toLatin1();
        if (key.isEmpty())
            return false;
        palette->setKeyedColor(key.toStdString(), colorOf(entry), depthOf(table));
    }
    return true;
}

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
            if (static_cast<unsigned char>(c) >= ' ') // XML has no other control characters
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
    QByteArray bytes;
    if (!readFile(fileName, bytes))
        return false;
    const QString text = xmlText(bytes);
    if (!isSafeToBuild(text))
        return false;
    QDomDocument document;
    QString fault;
    int line = 0;
    int column = 0;
    if (!document.setContent(text, &fault, &line, &column)) {
        reportFault(fault, line, column);
        return false;
    }
    const QDomElement root = document.documentElement();
    const QDomElement firstTable = root.firstChildElement(colorTableTag);
    const QDomElement firstKeyedTable = root.firstChildElement(keyedColorTableTag);
    if (root.tagName() != QLatin1String("palette") || firstTable.isNull() ||
        firstKeyedTable.isNull())
        return false;
    for (QDomElement table = firstTable; !table.isNull();
         table = table.nextSiblingElement(colorTableTag)) {
        if (!readColorTable(table, palette))
            return false;
    }
    for (QDomElement table = firstKeyedTable; !table.isNull();
         table = table.nextSiblingElement(keyedColorTableTag)) {
        if (!readKeyedColorTable(table, palette))
            return false;
    }
    return true;
}

bool xmlPaletteHandler_t::save(const std::string& fileName, const palette_t* palette)
{
    // Not blocking, so that a FIFO that nobody reads is refused instead of waited for.
    const int descriptor =
        open(fileName.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_CLOEXEC, 0666);
    if (descriptor == -1)
        return false;
    QFile file;
    file.open(descriptor, QIODevice::WriteOnly | QIODevice::Unbuffered,
              QFileDevice::AutoCloseHandle);
    const QByteArray text = written(*palette);
    return file.write(text) == text.size();
}
} // namespace zorbin_qt_gui
