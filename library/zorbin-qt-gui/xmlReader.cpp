#include "xmlReader_p.h"

#include <QBuffer>
#include <algorithm>
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QCoreApplication>
#include <QStringDecoder>
#include <QXmlStreamReader>
#else
#include <QHash>
#include <QXmlDefaultHandler>
#include <QXmlInputSource>
#include <QXmlSimpleReader>
#endif

namespace zorbin_qt_gui {
namespace {

constexpr int maxDepth = 5000; // of what a parser recurses into, by some 300 bytes of stack a level
constexpr qint64 maxDeclarations = 16LL * 1024;     // characters
constexpr qint64 maxExpansion = 64LL * 1024 * 1024; // characters, of all references together
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
constexpr qint64 maxAttributes = 30000; // the parser compares each with each, in about a second
constexpr double maxComparisons = 4.5e8;
#else
constexpr qint64 maxAttributes = 1000000; // some 200 bytes each
#endif

xmlFault_t excess(const QString& what)
{
    return {what, 0, 0};
}

xmlFault_t depthExcess()
{
    return excess(QStringLiteral("%1 levels of elements").arg(maxDepth));
}

xmlFault_t declarationExcess()
{
    return excess(QStringLiteral("16 KiB of entities or attributes in a document type"));
}

xmlFault_t expansionExcess()
{
    return excess(QStringLiteral("64 MiB of text in place of entities"));
}

xmlFault_t attributeExcess()
{
    return excess(QStringLiteral("%1 attributes in an element").arg(maxAttributes));
}

// How much there is of what parsers may need too much time, stack or memory for.
struct markup_t
{
    qint64 elements = 0;
    qint64 attributes = 0;
    qint64 mostAttributes = 0;  // of one element
    double comparisons = 0.0;   // of each attribute with each one before it in the element
    qint64 references = 0;      // to entities and characters, outside of the document type
    qint64 depthOfContents = 0; // of "(" in the document type
    qint64 declarations = 0; // characters of a document type that declares entities or attributes
};

// Finds the markup of a text without parsing it. As far as the text is well-formed it is exact, but
// for what comes out of entities. Parameter entities can change what the rest means: with them all
// of it counts as declarations, and each "(" as a level.
class scanner_t
{
public:
    explicit scanner_t(const QString& text) : m_next(text.constData()), m_end(m_next + text.size())
    {
        while (m_next != m_end) {
            if (isAt("<!--"))
                skipTo("-->", 4);
            else if (isAt("<![CDATA["))
                skipTo("]]>", 9);
            else if (isAt("<?"))
                skipTo("?>", 2);
            else if (isAt("<!"))
                scanDocumentType();
            else if (*m_next == '<')
                scanTag();
            else
                countReference(*m_next++);
        }
    }

    const markup_t& markup() const { return m_markup; }

private:
    bool isAt(const char* token) const
    {
        const QChar* at = m_next;
        while (*token != '\0' && at != m_end && *at == *token) {
            ++at;
            ++token;
        }
        return *token == '\0';
    }

    // Goes behind a token that comes after the next \p beginning characters, else to the end.
    void skipTo(const char* token, int beginning)
    {
        m_next += beginning;
        while (m_next != m_end && !isAt(token))
            ++m_next;
        for (; m_next != m_end && *token != '\0'; ++token)
            ++m_next;
    }

    void countReference(QChar c)
    {
        if (c == '&')
            ++m_markup.references;
    }

    // A tag ends before the next "<" at the latest.
    void scanTag()
    {
        qint64 attributes = 0;
        QChar quote;
        for (++m_next; m_next != m_end && *m_next != '<'; ++m_next) {
            const QChar c = *m_next;
            countReference(c);
            if (!quote.isNull()) {
                if (c == quote)
                    quote = QChar();
            } else if (c == '"' || c == '\'') {
                quote = c;
            } else if (c == '=') {
                ++attributes;
            } else if (c == '>') {
                break;
            }
        }
        ++m_markup.elements;
        m_markup.attributes += attributes;
        m_markup.mostAttributes = std::max(m_markup.mostAttributes, attributes);
        m_markup.comparisons +=
            0.5 * static_cast<double>(attributes) * static_cast<double>(attributes);
    }

    void scanDocumentType()
    {
        const QChar* const begin = m_next;
        bool isDeclaring = false;
        bool hasParameterEntities = false;
        bool isEnd = false;
        int brackets = 0;
        qint64 contents = 0;
        while (m_next != m_end && !isEnd) {
            if (isAt("<!--")) {
                skipTo("-->", 4);
            } else if (isAt("<?")) {
                skipTo("?>", 2);
            } else if (isAt("\"")) {
                skipTo("\"", 1);
            } else if (isAt("'")) {
                skipTo("'", 1);
            } else if (isAt("<!ENTITY") || isAt("<!ATTLIST")) {
                isDeclaring = true;
                m_next += 8;
            } else {
                const QChar c = *m_next++;
                brackets += (c == '[') - (c == ']');
                contents += (c == '(') - (c == ')');
                isEnd = c == '>' && brackets <= 0;
                m_markup.depthOfContents = std::max(m_markup.depthOfContents, contents);
                hasParameterEntities |= c == '%';
            }
        }
        if (isDeclaring)
            m_markup.declarations += (hasParameterEntities ? m_end : m_next) - begin;
        if (hasParameterEntities)
            m_markup.depthOfContents = std::count(begin, m_end, '(');
    }

    const QChar* m_next;
    const QChar* const m_end;
    markup_t m_markup;
};

std::optional<xmlFault_t> commonExcessOf(const markup_t& markup)
{
    if (markup.mostAttributes > maxAttributes)
        return attributeExcess();
    if (markup.depthOfContents > maxDepth)
        return excess(QStringLiteral("%1 levels of parentheses in a document type").arg(maxDepth));
    return std::nullopt;
}

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
// The text of a document, decoded as its parser does it but for faults.
QString textOf(QBuffer& document)
{
    QXmlStreamReader reader(&document);
    reader.readNext();
    const QByteArray declared = reader.documentEncoding().toLatin1();
    document.seek(0);
    QStringDecoder decoder(declared.constData());
    if (!decoder.isValid()) {
        const auto marked = QStringConverter::encodingForData(document.data(), u'<');
        decoder = QStringDecoder(marked.value_or(QStringConverter::Utf8));
    }
    return decoder(document.data());
}

std::optional<xmlFault_t> excessOf(const markup_t& markup)
{
    constexpr qint64 shortestDeclaration = 10; // of an attribute: " a CDATA''"
    constexpr double maxDefaults = 2e9;        // looked for, in about a second
    constexpr double addition = 40.0;          // takes so many times as long as looking for one
    if (markup.comparisons > maxComparisons)
        return attributeExcess();
    // The parser looks for each declared attribute among those of each element, and adds its
    // default if it isn't there.
    const double defaults =
        static_cast<double>(markup.declarations / shortestDeclaration) *
        (addition * static_cast<double>(markup.elements) + static_cast<double>(markup.attributes));
    if (markup.declarations > maxDeclarations || defaults > maxDefaults)
        return declarationExcess();
    return commonExcessOf(markup);
}

// How many characters the references expand to at most.
qint64 expansion(const QXmlStreamReader& reader, qint64 references)
{
    qint64 longest = 0;
    for (const QXmlStreamEntityDeclaration& entity : reader.entityDeclarations()) {
        // What refers to others is expanded to as much as the parser allows.
        const bool isNested = entity.value().contains(u'&');
        longest = std::max<qint64>(longest, isNested ? reader.entityExpansionLimit()
                                                     : entity.value().size());
    }
    return longest * references;
}

// A fault that the reader doesn't find itself, in the words of what makes a tree by it.
QString treeFault(const char* text)
{
    return QCoreApplication::translate("QDomParser", text);
}

xmlFault_t faultAt(const QXmlStreamReader& reader, const QString& text)
{
    return {text, static_cast<int>(reader.lineNumber()), static_cast<int>(reader.columnNumber())};
}

class attributes_t : public xmlAttributes_t
{
public:
    explicit attributes_t(const QXmlStreamReader& reader) : m_attributes(reader.attributes()) {}
    QString value(const QString& name) const override
    {
        return m_attributes.value(name).toString();
    }

private:
    const QXmlStreamAttributes m_attributes;
};
#else
QString textOf(QBuffer& document)
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    QXmlInputSource source(&document);
    QT_WARNING_POP
    QString text;
    text.reserve(static_cast<int>(document.size()));
    for (QString piece = source.data(); !piece.isEmpty(); piece = source.data()) {
        text += piece;
        source.fetchData();
    }
    return text;
}

// The most attributes that an element can have, whatever entities do to the markup: an attribute
// has a "=", and a tag has no other "<".
qint64 mostAttributesOf(const QString& text)
{
    qint64 most = 0;
    qint64 attributes = 0;
    for (const QChar c : text) {
        attributes = c == '<' ? 0 : attributes + (c == '=' ? 1 : 0);
        most = std::max(most, attributes);
    }
    return most;
}

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED
class attributes_t : public xmlAttributes_t
{
public:
    explicit attributes_t(const QXmlAttributes& attributes) : m_attributes(attributes) {}
    QString value(const QString& name) const override
    {
        for (int i = m_attributes.count() - 1; i >= 0; --i) {
            if (m_attributes.qName(i) == name)
                return m_attributes.value(i);
        }
        return {};
    }

private:
    const QXmlAttributes& m_attributes;
};

// Passes elements on, and ends the parsing when there is too much of something.
class handler_t : public QXmlDefaultHandler
{
public:
    explicit handler_t(xmlVisitor_t& visitor) : m_visitor(visitor) {}

    const std::optional<xmlFault_t>& fault() const { return m_fault; }

    bool startElement(const QString& /*namespaceUri*/, const QString& /*localName*/,
                      const QString& name, const QXmlAttributes& attributes) override
    {
        if (++m_depth > maxDepth)
            return refuse(depthExcess());
        const QString tooMuch = m_visitor.startElement(name, attributes_t(attributes));
        return tooMuch.isEmpty() || refuse(excess(tooMuch));
    }

    bool endElement(const QString& /*namespaceUri*/, const QString& /*localName*/,
                    const QString& /*name*/) override
    {
        --m_depth;
        m_visitor.endElement();
        return true;
    }

    // The parser looks for each entity in each other one.
    bool internalEntityDecl(const QString& name, const QString& value) override
    {
        constexpr int shortestDeclaration = 13; // "<!ENTITY a''>"
        m_declarations += shortestDeclaration + name.size() + value.size();
        m_sizes.insert(name.startsWith('%') ? name.mid(1) : name, value.size());
        return m_declarations <= maxDeclarations || refuse(declarationExcess());
    }

    bool startEntity(const QString& name) override
    {
        m_expansion += m_sizes.value(name);
        return m_expansion <= maxExpansion || refuse(expansionExcess());
    }

    bool fatalError(const QXmlParseException& fault) override
    {
        if (!m_fault) // else it is that of refuse()
            m_fault = xmlFault_t{fault.message(), fault.lineNumber(), fault.columnNumber()};
        return false;
    }

private:
    bool refuse(const xmlFault_t& fault)
    {
        m_fault = fault;
        return false;
    }

    xmlVisitor_t& m_visitor;
    std::optional<xmlFault_t> m_fault;
    QHash<QString, int> m_sizes; // of entities
    int m_depth = 0;
    qint64 m_declarations = 0;
    qint64 m_expansion = 0;
};
QT_WARNING_POP
#endif

} // namespace

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
std::optional<xmlFault_t> readXml(const QByteArray& document, xmlVisitor_t& visitor)
{
    QBuffer buffer;
    buffer.setData(document);
    buffer.open(QIODevice::ReadOnly);
    const markup_t markup = scanner_t(textOf(buffer)).markup();
    if (auto fault = excessOf(markup))
        return fault;
    buffer.seek(0);
    QXmlStreamReader reader(&buffer);
    reader.setNamespaceProcessing(false); // as for a tree
    bool isProlog = true;
    bool hasDocumentType = false;
    int depth = 0;
    for (;;) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (reader.hasError())
            return faultAt(reader, reader.errorString());
        switch (token) {
        case QXmlStreamReader::EndDocument:
            return std::nullopt;
        case QXmlStreamReader::StartDocument:
        case QXmlStreamReader::DTD:
            // The reader lets these pass anywhere; what makes the tree doesn't.
            if (!isProlog)
                return faultAt(reader, treeFault("Unexpected token"));
            if (token == QXmlStreamReader::DTD && hasDocumentType)
                return faultAt(reader, treeFault("Multiple DTD sections are not allowed"));
            hasDocumentType |= token == QXmlStreamReader::DTD;
            if (expansion(reader, markup.references) > maxExpansion)
                return expansionExcess();
            break;
        case QXmlStreamReader::Comment:
        case QXmlStreamReader::ProcessingInstruction:
            break;
        case QXmlStreamReader::StartElement: {
            isProlog = false;
            if (++depth > maxDepth)
                return depthExcess();
            const QString tooMuch =
                visitor.startElement(reader.qualifiedName().toString(), attributes_t(reader));
            if (!tooMuch.isEmpty())
                return excess(tooMuch);
            break;
        }
        case QXmlStreamReader::EndElement:
            --depth;
            visitor.endElement();
            break;
        default: // text
            isProlog = false;
        }
    }
}
#else
std::optional<xmlFault_t> readXml(const QByteArray& document, xmlVisitor_t& visitor)
{
    QBuffer buffer;
    buffer.setData(document);
    buffer.open(QIODevice::ReadOnly);
    const QString text = textOf(buffer);
    markup_t markup = scanner_t(text).markup();
    if (markup.declarations > 0)
        markup.mostAttributes = mostAttributesOf(text);
    if (auto fault = commonExcessOf(markup))
        return fault;
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    QXmlInputSource source;
    source.setData(text);
    handler_t handler(visitor);
    QXmlSimpleReader reader;
    // As for a tree, but entities are reported.
    reader.setFeature(QStringLiteral("http://xml.org/sax/features/namespaces"), false);
    reader.setFeature(QStringLiteral("http://xml.org/sax/features/namespace-prefixes"), true);
    reader.setFeature(QStringLiteral("http://qt-project.org/xml/features/report-start-end-entity"),
                      true);
    reader.setContentHandler(&handler);
    reader.setDeclHandler(&handler);
    reader.setErrorHandler(&handler);
    reader.setLexicalHandler(&handler);
    reader.parse(&source);
    return handler.fault();
    QT_WARNING_POP
}
#endif

} // namespace zorbin_qt_gui
