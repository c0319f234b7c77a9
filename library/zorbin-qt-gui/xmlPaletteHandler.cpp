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

constexpr qint64 maxFileSize = 16 * 1024 * 1024;
constexpr qint64 maxDepth = 5000;    // QDomDocument recurses, so more would overflow the stack
constexpr qint64 maxNodes = 1000000; // elements and attributes, some 500 bytes each in the tree

const QString colorTableTag = QStringLiteral("colorTable");
const QString colorTag = QStringLiteral("color");
const QString keyedColorTableTag = QStringLiteral("keyedColorTable");
const QString keyedColorTag = QStringLiteral("keyedColor");

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

// Whether the tree of the document would stay small enough, judged without building it. A document
// with a fault that would not is refused with the fault's message.
bool isSafeToBuild(const xmlText_t& text)
{
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false); // as in the tree
    qint64 depth = 0;
    qint64 nodes = 0;
    bool hasDtd = false;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::DTD:
            hasDtd = true;
            break;
        case QXmlStreamReader::StartElement:
            ++depth;
            nodes += 1 + reader.attributes().size();
            if (depth > maxDepth || nodes > maxNodes)
                return false;
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        default:
            break;
        }
    }
    if (!reader.hasError())
        return true;
    // The tree's parser finds its own faults and may go on where this one stops. The characters
    // bound what it can meet, unless entities multiply them.
    if (!hasDtd && !text.contains("<!DOCTYPE") && text.count('<') <= maxDepth &&
        text.count('=') <= maxNodes)
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

void writeComponent(QXmlStreamWriter& writer, const QString& name, QRgb color, unsigned shift)
{
    writer.writeAttribute(name, QString::number((color >> shift) & 0xFFU));
}

// A table's element; one without entries is written as an empty element.
template <typename entries_t, typename writeEntry_t>
void writeTable(QXmlStreamWriter& writer, const QString& tag, const char* depth,
                const entries_t& entries, const writeEntry_t& writeEntry)
{
    if (entries.empty())
        writer.writeEmptyElement(tag);
    else
        writer.writeStartElement(tag);
    writer.writeAttribute(QStringLiteral("depth"), QLatin1String(depth));
    if (entries.empty())
        return;
    for (const auto& entry : entries)
        writeEntry(entry);
    writer.writeEndElement();
}

void writeColorTable(QXmlStreamWriter& writer, const char* depth,
                     const std::vector<unsigned int>& colors)
{
    writeTable(writer, colorTableTag, depth, colors, [&writer](QRgb color) {
        writer.writeEmptyElement(colorTag);
        // Deliberate: table entries are written with green and blue exchanged; keyed colours are
        // not.
        writeComponent(writer, QStringLiteral("r"), color, 16);
        writeComponent(writer, QStringLiteral("g"), color, 0);
        writeComponent(writer, QStringLiteral("b"), color, 8);
    });
}

void writeKeyedColorTable(QXmlStreamWriter& writer,
                          const std::map<std::string, unsigned int>& colors)
{
    // Deliberate: the keyed colours of either depth are written as those of 8 bits.
    writeTable(writer, keyedColorTableTag, "8", colors, [&writer](const auto& entry) {
        writer.writeEmptyElement(keyedColorTag);
        writer.writeAttribute(
            QStringLiteral("key"),
            QString::fromLatin1(entry.first.data(), static_cast<int>(entry.first.size())));
        writeComponent(writer, QStringLiteral("r"), entry.second, 16);
        writeComponent(writer, QStringLiteral("g"), entry.second, 8);
        writeComponent(writer, QStringLiteral("b"), entry.second, 0);
    });
}

QByteArray written(const palette_t& palette)
{
    QByteArray text;
    QXmlStreamWriter writer(&text);
    writer.setAutoFormatting(true);
    writer.setAutoFormattingIndent(2);
    writer.writeStartElement(QStringLiteral("palette"));
    writeColorTable(writer, "8", palette.colorTable(palette_t::DEPTH_8));
    writeColorTable(writer, "24", palette.colorTable(palette_t::DEPTH_24));
    writeKeyedColorTable(writer, palette.keyedColor(palette_t::DEPTH_8));
    writeKeyedColorTable(writer, palette.keyedColor(palette_t::DEPTH_24));
    writer.writeEndDocument();
    // The writer puts every element on a line of its own by a line end before it.
    return text.startsWith('\n') ? text.mid(1) : text;
}

} // namespace

bool xmlPaletteHandler_t::load(const std::string& fileName, palette_t* palette)
{
    QByteArray bytes;
    if (!readFile(fileName, bytes))
        return false;
    const xmlText_t text = xmlText(bytes);
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
