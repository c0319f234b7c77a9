#pragma once
#include <QString>
#include <optional>

class QByteArray;

// Reading XML without building a tree of it, which takes a kilobyte for each element and recursion
// for each level.

namespace zorbin_qt_gui {

/// Whether texts may have control characters, which XML itself lacks but for tab and line ends.
constexpr bool readsControlCharacters = QT_VERSION < QT_VERSION_CHECK(6, 0, 0);

/// The attributes of an element.
class xmlAttributes_t
{
public:
    virtual ~xmlAttributes_t() = default;
    /// The value of the attribute, the last one if it is repeated; empty if there is none.
    virtual QString value(const QString& name) const = 0;
};

/// Is told of the elements of a document, in document order.
class xmlVisitor_t
{
public:
    virtual ~xmlVisitor_t() = default;
    /// Returns what the document has too much of ("1000000 entries"), which ends the reading, or an
    /// empty text.
    virtual QString startElement(const QString& name, const xmlAttributes_t& attributes) = 0;
    virtual void endElement() = 0;
};

/// Why a document isn't read to its end.
struct xmlFault_t
{
    QString text;   ///< the parser's, or for an excess what there is too much of
    int line = 0;   ///< 0 for an excess
    int column = 0; ///< 0 for an excess
    bool isExcess() const { return line == 0; }
};

/// Parses a document as QDomDocument::setContent() parses a file: the same documents have faults,
/// with the same texts and places. Documents whose parsing takes more than linear time, or memory
/// out of proportion, have an excess: elements nested deeper than 5000, elements with very many
/// attributes, entities that multiply the text.
std::optional<xmlFault_t> readXml(const QByteArray& document, xmlVisitor_t& visitor);

} // namespace zorbin_qt_gui
