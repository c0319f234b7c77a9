#include "messageRecorder.h"
#include "palette.h"
#include "paletteFiles.h"
#include "plainPalette.h"
#include "randomNumbers.h"
#include "xmlPaletteHandler.h"

#include <sys/stat.h>

using namespace palette_file_tests;
using namespace zorbin_qt_gui;

static QByteArray utf16(const QString& text, bool isBigEndian)
{
    QByteArray bytes;
    for (const QChar c : QChar(QChar::ByteOrderMark) + text) {
        const auto low = static_cast<char>(c.cell());
        const auto high = static_cast<char>(c.row());
        bytes += isBigEndian ? high : low;
        bytes += isBigEndian ? low : high;
    }
    return bytes;
}

/// What the reader of palettes in the XML format makes of a file.
class tst_xmlPaletteHandler : public paletteFileTestCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void readsEverything();
    void readsTables_data();
    void readsTables();
    void readsNumbers_data();
    void readsNumbers();
    void readsKeys_data();
    void readsKeys();
    void keepsTheFirstTableAndTheLastKeyedColor();
    void refusesOtherDocuments_data();
    void refusesOtherDocuments();
    void keepsWhatWasReadBeforeTheFault();
    void readsOtherEncodings_data();
    void readsOtherEncodings();
    void replacesIncorrectlyEncodedCharacters();
    void readsAsTheTreeOfQt_data();
    void readsAsTheTreeOfQt();
    void readsChangedFilesAsTheTreeOfQt();
    void readsResources();
    void readsFromSearchPaths();
};

void tst_xmlPaletteHandler::readsEverything()
{
    const messageRecorder_t messages;
    palette_t palette;
    QVERIFY(load(R"(<?xml version="1.0"?>
<!-- all kinds -->
<palette name="all">
  text
  <keyedColorTable depth="24"><keyedColor key="grid" r="1" g="2" b="3"/></keyedColorTable>
  <colorTable depth="8"> <color r="0" g="0" b="128"/> <!-- between --> <color b="255"/> </colorTable>
  <other><colorTable depth="24"><color r="9"/></colorTable></other>
  <?instruction?>
  <colorTable depth="24" size="1"><color r="255" g="128" b="64" a="0">text<x/></color></colorTable>
  <keyedColorTable depth="8"><keyedColor b="6" key="land" r="4" g="5"/></keyedColorTable>
</palette>
)",
                 palette));
    QCOMPARE(palette.colorTable(palette_t::DEPTH_8), (table_t{0xFF000080, 0xFF0000FF}));
    QCOMPARE(palette.colorTable(palette_t::DEPTH_24), table_t{0xFFFF8040});
    QCOMPARE(palette.keyedColor(palette_t::DEPTH_8), (keyed_t{{"land", 0xFF040506}}));
    QCOMPARE(palette.keyedColor(palette_t::DEPTH_24), (keyed_t{{"grid", 0xFF010203}}));
    QCOMPARE(messages.texts(), QStringList());
}

void tst_xmlPaletteHandler::readsTables_data()
{
    QTest::addColumn<QByteArray>("tables");
    QTest::addColumn<table_t>("table8");
    QTest::addColumn<table_t>("table24");

    const QByteArray color = "<color r=\"1\" g=\"2\" b=\"3\"/></colorTable>";
    const table_t none;
    const table_t one = {0xFF010203};
    QTest::newRow("8") << "<colorTable depth=\"8\">" + color << one << none;
    QTest::newRow("24") << "<colorTable depth=\"24\">" + color << none << one;
    QTest::newRow("16") << "<colorTable depth=\"16\">" + color << one << none;
    QTest::newRow("none") << "<colorTable>" + color << one << none;
    QTest::newRow("empty") << "<colorTable depth=\"\">" + color << one << none;
    QTest::newRow("24 and a blank") << "<colorTable depth=\"24 \">" + color << one << none;
    QTest::newRow("024") << "<colorTable depth=\"024\">" + color << one << none;
    QTest::newRow("24 as a reference") << "<colorTable depth=\"&#50;4\">" + color << none << one;
    QTest::newRow("other case") << "<colorTable Depth=\"24\">" + color << one << none;
    QTest::newRow("both") << "<colorTable/><colorTable depth=\"24\">" + color << none << one;
}

void tst_xmlPaletteHandler::readsTables()
{
    QFETCH(QByteArray, tables);
    palette_t palette;
    QVERIFY(load(documentOf(tables + "<keyedColorTable/>"), palette));
    QTEST(palette.colorTable(palette_t::DEPTH_8), "table8");
    QTEST(palette.colorTable(palette_t::DEPTH_24), "table24");
    // An empty table counts as set, too.
    palette.setColorTable({7}, palette_t::DEPTH_8);
    if (tables.startsWith("<colorTable/>"))
        QVERIFY(palette.colorTable(palette_t::DEPTH_8).empty());
}

void tst_xmlPaletteHandler::readsNumbers_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<unsigned>("red");
    QTest::newRow("zero") << QByteArray("0") << 0U;
    QTest::newRow("greatest") << QByteArray("255") << 255U;
    QTest::newRow("256") << QByteArray("256") << 0U;
    QTest::newRow("300") << QByteArray("300") << 44U;
    QTest::newRow("-1") << QByteArray("-1") << 255U;
    QTest::newRow("plus sign") << QByteArray("+7") << 7U;
    QTest::newRow("blanks around") << QByteArray(" 7 ") << 7U;
    QTest::newRow("leading zeros") << QByteArray("010") << 10U;
    QTest::newRow("text") << QByteArray("x") << 0U;
    QTest::newRow("number and text") << QByteArray("7x") << 0U;
    QTest::newRow("empty") << QByteArray("") << 0U;
    QTest::newRow("hexadecimal") << QByteArray("0x10") << 0U;
    QTest::newRow("fraction") << QByteArray("1.0") << 0U;
    QTest::newRow("greatest int") << QByteArray("2147483647") << 255U;
    QTest::newRow("one beyond") << QByteArray("2147483649") << 0U;
    QTest::newRow("least int and 1") << QByteArray("-2147483647") << 1U;
    QTest::newRow("beyond 64 bits") << QByteArray("18446744073709551617") << 0U;
}

void tst_xmlPaletteHandler::readsNumbers()
{
    QFETCH(QByteArray, text);
    QFETCH(unsigned, red);
    palette_t palette;
    QVERIFY(load(documentOf("<colorTable><color r=\"" + text + "\" g=\"" + text + "\" b=\"" + text +
                            "\"/></colorTable><keyedColorTable><keyedColor key=\"a\" r=\"" + text +
                            "\"/></keyedColorTable>"),
                 palette));
    QCOMPARE(palette.colorTable(), table_t{0xFF000000U | red * 0x10101U});
    QCOMPARE(palette.keyedColor(palette_t::DEPTH_8), (keyed_t{{"a", 0xFF000000U | red << 16U}}));
}

void tst_xmlPaletteHandler::readsKeys_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("key");
    QTest::newRow("blank") << QByteArray(" ") << QByteArray(" ");
    QTest::newRow("Latin-1") << QByteArray("\xC3\xA9") << QByteArray("\xE9");
    QTest::newRow("reference") << QByteArray("&#233;&lt;") << QByteArray("\xE9<");
    QTest::newRow("beyond Latin-1") << QByteArray("\xE2\x82\xAC") << QByteArray("?");
    QTest::newRow("quote") << QByteArray("a'b") << QByteArray("a'b");
}

void tst_xmlPaletteHandler::readsKeys()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, key);
    palette_t palette;
    QVERIFY(load(documentOf("<colorTable/><keyedColorTable><keyedColor key=\"" + text +
                            "\"/></keyedColorTable>"),
                 palette));
    QCOMPARE(palette.keyedColor(palette_t::DEPTH_8), (keyed_t{{key.toStdString(), 0xFF000000}}));
}

void tst_xmlPaletteHandler::keepsTheFirstTableAndTheLastKeyedColor()
{
    palette_t palette;
    QVERIFY(load(documentOf("<colorTable><color r=\"1\"/></colorTable>"
                            "<colorTable><color r=\"2\"/><color r=\"3\"/></colorTable>"
                            "<keyedColorTable><keyedColor key=\"a\" r=\"1\"/>"
                            "<keyedColor key=\"a\" r=\"2\"/></keyedColorTable>"
                            "<keyedColorTable><keyedColor key=\"a\" r=\"3\"/></keyedColorTable>"),
                 palette));
    QCOMPARE(palette.colorTable(), table_t{0xFF010000});
    QCOMPARE(palette.keyedColor(palette_t::DEPTH_8), (keyed_t{{"a", 0xFF030000}}));
}

void tst_xmlPaletteHandler::refusesOtherDocuments_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("other root") << QByteArray("<palettes>" + emptyTables + "</palettes>");
    QTest::newRow("root in another case") << QByteArray("<Palette>" + emptyTables + "</Palette>");
    QTest::newRow("root of a namespace")
        << QByteArray("<p:palette xmlns:p=\"p\">" + emptyTables + "</p:palette>");
    QTest::newRow("empty root") << QByteArray("<palette/>");
    QTest::newRow("no keyed table") << documentOf("<colorTable/>");
    QTest::newRow("no table") << documentOf("<keyedColorTable/>");
    QTest::newRow("tables in another case") << documentOf("<colortable/><keyedcolortable/>");
    QTest::newRow("tables too deep") << documentOf("<a>" + emptyTables + "</a>");
    QTest::newRow("other entry") << documentOf(
        "<colorTable><colour/></colorTable><keyedColorTable/>");
    QTest::newRow("entry in another case")
        << documentOf("<colorTable><Color/></colorTable><keyedColorTable/>");
    QTest::newRow("keyed entry in a table")
        << documentOf("<colorTable><keyedColor key=\"a\"/></colorTable><keyedColorTable/>");
    QTest::newRow("other entry in a table that has no effect")
        << documentOf("<colorTable/><colorTable><x/></colorTable><keyedColorTable/>");
    QTest::newRow("other keyed entry")
        << documentOf("<colorTable/><keyedColorTable><color key=\"a\"/></keyedColorTable>");
    QTest::newRow("no key") << documentOf(
        "<colorTable/><keyedColorTable><keyedColor r=\"1\"/></keyedColorTable>");
    QTest::newRow("empty key") << documentOf(
        "<colorTable/><keyedColorTable><keyedColor key=\"\"/></keyedColorTable>");
}

void tst_xmlPaletteHandler::refusesOtherDocuments()
{
    QFETCH(QByteArray, text);
    const messageRecorder_t messages;
    palette_t palette;
    QVERIFY(!load(text, palette));
    QCOMPARE(messages.texts(), QStringList());
}

void tst_xmlPaletteHandler::keepsWhatWasReadBeforeTheFault()
{
    palette_t tables;
    QVERIFY(!load(documentOf("<keyedColorTable><keyedColor key=\"a\"/></keyedColorTable>"
                             "<colorTable depth=\"24\"><color r=\"1\"/></colorTable>"
                             "<colorTable depth=\"8\"><color r=\"2\"/><x/></colorTable>"),
                  tables));
    QCOMPARE(tables.colorTable(palette_t::DEPTH_24), table_t{0xFF010000});
    tables.setColorTable({7}, palette_t::DEPTH_8); // none was set
    QCOMPARE(tables.colorTable(palette_t::DEPTH_8), table_t{7});
    QVERIFY(tables.keyedColor(palette_t::DEPTH_8).empty()); // they come after the tables

    palette_t keys;
    QVERIFY(!load(documentOf("<keyedColorTable><keyedColor key=\"a\"/><keyedColor key=\"\"/>"
                             "<keyedColor key=\"b\"/></keyedColorTable>"
                             "<colorTable><color r=\"1\"/></colorTable>"),
                  keys));
    QCOMPARE(keys.colorTable(), table_t{0xFF010000});
    QCOMPARE(keys.keyedColor(palette_t::DEPTH_8), (keyed_t{{"a", 0xFF000000}}));
}

void tst_xmlPaletteHandler::readsOtherEncodings_data()
{
    QTest::addColumn<QByteArray>("text");
    const QString text = QString::fromUtf8(documentOf(
        "<colorTable/><keyedColorTable><keyedColor key=\"\xC3\xA9\"/></keyedColorTable>"));
    QTest::newRow("UTF-8 with a byte order mark") << "\xEF\xBB\xBF" + text.toUtf8();
    QTest::newRow("UTF-8 declared") << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>" + text.toUtf8();
    QTest::newRow("UTF-16, little-endian") << utf16(text, false);
    QTest::newRow("UTF-16, big-endian") << utf16(text, true);
    QTest::newRow("UTF-16 without a mark, little-endian") << utf16(text, false).mid(2);
    QTest::newRow("UTF-16 without a mark, big-endian") << utf16(text, true).mid(2);
    QTest::newRow("Latin-1 declared")
        << "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + text.toLatin1();
}

void tst_xmlPaletteHandler::readsOtherEncodings()
{
    QFETCH(QByteArray, text);
    const messageRecorder_t messages;
    palette_t palette;
    QVERIFY(load(text, palette));
    QCOMPARE(palette.keyedColor(palette_t::DEPTH_8), (keyed_t{{"\xE9", 0xFF000000}}));
    QCOMPARE(messages.texts(), QStringList());
}

// The parser of Qt 6 refuses them.
void tst_xmlPaletteHandler::replacesIncorrectlyEncodedCharacters()
{
    const messageRecorder_t messages;
    palette_t palette;
    const bool isLoaded =
        load(documentOf("<colorTable/><keyedColorTable><keyedColor key=\"a\xE9\"/>"
                        "</keyedColorTable>"),
             palette);
    QCOMPARE(isLoaded, !isQt6);
    QCOMPARE(palette.keyedColor(palette_t::DEPTH_8),
             isQt6 ? keyed_t() : (keyed_t{{"a?", 0xFF000000}}));
    QCOMPARE(messages.texts(),
             isQt6 ? QStringList("palette_t::load:  Encountered incorrectly encoded content. on "
                                 "line 1, column 2")
                   : QStringList());
}

// All that a reader makes of a file: result, messages, tables that were set, keyed colours.
template <typename load_t>
static QStringList outcomeOf(const load_t& load)
{
    const messageRecorder_t messages;
    palette_t palette;
    QStringList outcome = {load(&palette) ? "loaded" : "refused"};
    outcome += messages.texts();
    for (const palette_t::colorDepth_t depth : {palette_t::DEPTH_8, palette_t::DEPTH_24}) {
        for (const auto& [key, color] : palette.keyedColor(depth))
            outcome += QByteArray::fromStdString(key).toPercentEncoding() + ' ' +
                       QByteArray::number(color, 16) + " at depth " + QByteArray::number(depth);
        const table_t table = palette.colorTable(depth);
        palette.setColorTable({7}, depth);
        if (palette.colorTable(depth) != table)
            continue; // there was none
        outcome += "table of depth " + QByteArray::number(depth);
        for (const QRgb color : table)
            outcome += QByteArray::number(color, 16);
    }
    return outcome;
}

static QStringList outcomeOf(const std::string& fileName)
{
    return outcomeOf(
        [&](palette_t* palette) { return xmlPaletteHandler_t().load(fileName, palette); });
}

static QStringList plainOutcomeOf(const std::string& fileName)
{
    return outcomeOf(
        [&](palette_t* palette) { return loadPlainly(QString::fromStdString(fileName), palette); });
}

void tst_xmlPaletteHandler::readsAsTheTreeOfQt_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("isLoaded");

    const QByteArray zero(1, '\0');
    const auto withEntry = [](const QByteArray& attributes) {
        return documentOf("<colorTable><color " + attributes + "/></colorTable><keyedColorTable/>");
    };
    const auto withKey = [](const QByteArray& key) {
        return documentOf("<colorTable/><keyedColorTable><keyedColor key=\"" + key +
                          "\" r=\"1\"/></keyedColorTable>");
    };
    const QByteArray type = "<!DOCTYPE palette [<!ENTITY e \"12\"><!ATTLIST color r CDATA \"9\">]>";
    const QByteArray equals = QByteArray("= ").repeated(5000);

    QTest::newRow("zero byte first") << zero + documentOf(emptyTables) << false;
    QTest::newRow("zero byte last") << documentOf(emptyTables) + zero << false;
    QTest::newRow("zero byte in a text") << documentOf("a" + zero + emptyTables) << !isQt6;
    QTest::newRow("zero byte in a comment")
        << documentOf("<!--" + zero + "-->" + emptyTables) << !isQt6;
    QTest::newRow("zero byte in a number") << withEntry("r=\"1" + zero + "\"") << !isQt6;
    QTest::newRow("zero byte in a key") << withKey("a" + zero + "b") << !isQt6;
    QTest::newRow("zero byte in a name") << documentOf("<a" + zero + "/>" + emptyTables) << false;
    QTest::newRow("zero byte behind the root, then more")
        << documentOf(emptyTables) + zero + "<a/>" << false;
    QTest::newRow("zero byte within the root, unclosed")
        << "<palette>" + emptyTables + zero << false;
    QTest::newRow("control characters in a key") << withKey("\x01\x1F") << !isQt6;
    QTest::newRow("control character as a reference") << withKey("&#1;") << !isQt6;

    QTest::newRow("equals signs in a comment")
        << documentOf("<!--" + equals + "-->" + emptyTables) << true;
    QTest::newRow("equals signs in a text") << documentOf(equals + emptyTables) << true;
    QTest::newRow("equals signs in a section")
        << documentOf("<![CDATA[" + equals + "]]>" + emptyTables) << true;
    QTest::newRow("equals signs in an instruction")
        << documentOf("<?a " + equals + "?>" + emptyTables) << true;
    QTest::newRow("equals signs in a value") << withEntry("a=\"" + equals + '"') << true;
    QTest::newRow("equals signs in single quotes") << withEntry("a='\"" + equals + '\'') << true;
    QTest::newRow("equals signs behind quotes in a text")
        << documentOf("\"'" + equals + emptyTables) << true;
    QTest::newRow("5000 attributes") << withEntry("r=\"1\"" + attributes(5000)) << true;

    QTest::newRow("entity in a comment")
        << documentOf("<!-- <!ENTITY e \"\"> " + QByteArray(20000, 'x') + "-->" + emptyTables)
        << true;
    QTest::newRow("entity in a section")
        << documentOf("<![CDATA[<!ENTITY" + QByteArray(20000, 'x') + "]]>" + emptyTables) << true;
    QTest::newRow("entity in a large file")
        << type + documentOf(emptyTables + QByteArray("<a b=\"&e;\">&e;</a>").repeated(20000))
        << true;
    QTest::newRow("entity in a number") << type + withEntry("r=\"&e;\" g=\"1&e;\"") << true;
    QTest::newRow("default of an attribute") << type + withEntry("g=\"1\"") << true;
    QTest::newRow("entity that isn't declared, in a number") << withEntry("r=\"&e;\"") << !isQt6;
    QTest::newRow("entity that isn't declared, in a table")
        << documentOf("<colorTable>&e;<color/></colorTable><keyedColorTable/>") << !isQt6;
    QTest::newRow("entity that holds entries")
        << "<!DOCTYPE palette [<!ENTITY e \"<color r='1'/>\">]>" +
               documentOf("<colorTable>&e;&e;</colorTable><keyedColorTable/>")
        << true;
    QTest::newRow("entity that begins an entry")
        << "<!DOCTYPE palette [<!ENTITY e \"<color \">]>" +
               documentOf("<colorTable>&e;r='1'/></colorTable><keyedColorTable/>")
        << !isQt6;
    QTest::newRow("two document types") << type + type + documentOf(emptyTables) << !isQt6;
    QTest::newRow("document type at the end") << documentOf(emptyTables) + type << false;
    QTest::newRow("repeated attribute") << withEntry("r=\"1\" r=\"2\"") << !isQt6;
    QTest::newRow("attributes of namespaces")
        << withEntry("a:r=\"1\" r=\"2\" xmlns:a=\"a\"") << true;

    const QByteArray latin1 = "<?xml version=\"1.1\" encoding=\"ISO-8859-1\"?>";
    QTest::newRow("encoding beside version 1.1") << latin1 + withKey("\xE9") << !isQt6;
    QTest::newRow("encoding without a version")
        << "<?xml encoding=\"ISO-8859-1\"?>" + withKey("\xE9") << false;
    QTest::newRow("unknown encoding")
        << "<?xml version=\"1.0\" encoding=\"none\"?>" + withKey("\xE9") << !isQt6;
    QTest::newRow("wrong bytes in UTF-8, which is declared")
        << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>" + withKey("\xE9") << !isQt6;
    QTest::newRow("encoding after a long blank")
        << "<?xml version=\"1.0\"" + QByteArray(9000, ' ') + "encoding=\"ISO-8859-1\"?>" +
               withKey("\xE9")
        << true;
    QTest::newRow("UTF-8 cut in a character") << documentOf(emptyTables) + "\xE2\x82" << true;
    QTest::newRow("UTF-8 cut in a character of a key") << withKey("\xE2\x82").left(67) << false;
    QTest::newRow("UTF-16 cut in a character")
        << utf16(QString::fromLatin1(documentOf(emptyTables)), false) + "\n"
        << true;
    QTest::newRow("UTF-16 with a wrong declaration")
        << utf16(QString::fromLatin1(latin1 + documentOf(emptyTables)), true) << false;
    QTest::newRow("no character") << documentOf(emptyTables + QString(QChar(0xFFFF)).toUtf8())
                                  << false;
    QTest::newRow("byte order mark alone") << QByteArray("\xEF\xBB\xBF") << false;
}

void tst_xmlPaletteHandler::readsAsTheTreeOfQt()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, isLoaded);
    write(path("a.wp"), text);
    const QStringList outcome = outcomeOf(path("a.wp"));
    QCOMPARE(outcome, plainOutcomeOf(path("a.wp")));
    QCOMPARE(outcome.first(), QString(isLoaded ? "loaded" : "refused"));
}

// A text with one more change of a kind that editors, disks and attackers make.
static QByteArray changed(QByteArray text, random_t& random)
{
    static const std::vector<QByteArray> pieces = {
        "<",
        ">",
        "/>",
        "\"",
        "'",
        "=",
        "&",
        ";",
        "<!--",
        "-->",
        "<![CDATA[",
        "]]>",
        "<?",
        "?>",
        "&lt;",
        "&#0;",
        "&#x1F600;",
        "&e;",
        "&none;",
        "%p;",
        "\xC3",
        "\xE9",
        "\xEF\xBF\xBF",
        QByteArray(1, '\0'),
        "\x01",
        "\r\n",
        "\r",
        "(",
        ")",
        "[",
        "]",
        "24",
        "-1",
        "xmlns",
        "<!ENTITY e \"<color r='3'/>\">",
        "<!ENTITY % p \"<!ENTITY q '&e;'>\">",
        "<!DOCTYPE palette [",
        "]>",
        "<!ATTLIST color g CDATA \"5\">",
        "<!ELEMENT palette (a,(b|c))>",
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>",
        "<?xml version=\"1.1\" encoding=\"UTF-16\"?>",
        "<palette>",
        "</palette>",
        "<colorTable>",
        "</colorTable>",
        "<colorTable/>",
        "<keyedColorTable>",
        "</keyedColorTable>",
        "<color r=\"1\"/>",
        "<keyedColor key=\"k\"/>",
        "\xFF\xFE",
        "\xEF\xBB\xBF",
        " depth=\"24\"",
        " r=\"2\""};
    const auto place = [&] { return random.integer(0, static_cast<int>(text.size())); };
    const int at = place();
    switch (random.integer(0, 6)) {
    case 0:
        return text.insert(at, random.oneOf(pieces));
    case 1:
        return text.replace(at, random.integer(1, 12), random.oneOf(pieces));
    case 2:
        return text.remove(at, random.integer(1, 30));
    case 3:
        return text.insert(place(), text.mid(at, random.integer(1, 60)));
    case 4:
        if (at < text.size())
            text[at] = static_cast<char>(random.integer(0, 255));
        return text;
    case 5:
        return random.chance(0.3) ? text.left(at) : text;
    default: // what spans more than one block of a reader
        return text.insert(at,
                           QByteArray(random.integer(900, 1100), random.chance(0.5) ? ' ' : 'x'));
    }
}

void tst_xmlPaletteHandler::readsChangedFilesAsTheTreeOfQt()
{
    const QByteArray plain = documentOf(
        "<colorTable depth=\"24\"><color r=\"1\" g=\"2\" b=\"3\"/><!-- a --><color/></colorTable>"
        "<colorTable><color r=\"300\" g=\"-1\" b=\"x\"/></colorTable>\n<other>text</other>"
        "<keyedColorTable depth=\"24\"><keyedColor key=\"land\" r=\"4\"/></keyedColorTable>"
        "<keyedColorTable><keyedColor key=\"\xC3\xA9\" r=\"5\"/></keyedColorTable>");
    const QByteArray type = "<!DOCTYPE palette [\n<!ENTITY e \"7\">\n<!ENTITY % p \" \">\n%p;"
                            "<!ENTITY f \"&e;&e;\">]>\n";
    const QByteArray withEntities = documentOf(
        "<colorTable>&f;<color r=\"&e;\" g='&f;'/></colorTable><keyedColorTable><![CDATA[]]>"
        "<keyedColor key=\"&lt;&#65;&f;\"/></keyedColorTable>");
    const std::vector<QByteArray> texts = {
        plain,
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + plain,
        "<?xml version='1.0' encoding='ISO-8859-1' standalone='yes'?>\n" + plain,
        type + withEntities,
        "<?xml version=\"1.0\"?>\n<!-- \xE2\x82\xAC -->\n" + type + withEntities + "\n<?end?>\n",
        utf16(QString::fromUtf8(plain), false),
        utf16(QString::fromUtf8(type + withEntities), true)};
    random_t random;
    int loaded = 0;
    for (int i = 0; i < 10000; ++i) {
        QByteArray text = random.oneOf(texts);
        for (int changes = random.integer(1, 4); changes > 0; --changes)
            text = changed(text, random);
        unlink(path("a.wp").c_str()); // some file systems take milliseconds to overwrite a file
        write(path("a.wp"), text);
        const QStringList outcome = outcomeOf(path("a.wp"));
        if (outcome != plainOutcomeOf(path("a.wp"))) {
            qInfo("%s", text.toPercentEncoding(" <>=\"'/!?&;[]()\n").constData());
            QCOMPARE(outcome, plainOutcomeOf(path("a.wp")));
        }
        loaded += outcome.first() == "loaded" ? 1 : 0;
    }
    QVERIFY2(loaded > 500, qPrintable(QString::number(loaded)));
}

void tst_xmlPaletteHandler::readsResources()
{
    palette_t palette;
    QVERIFY(xmlPaletteHandler_t().load(":/palettes/bathy.wp", &palette));
    QCOMPARE(palette.colorTable(palette_t::DEPTH_24).size(), std::size_t(256));
    QVERIFY(!xmlPaletteHandler_t().load(":/palettes/none.wp", &palette));
    QVERIFY(!xmlPaletteHandler_t().save(":/palettes/bathy.wp", &palette));
    QVERIFY(!xmlPaletteHandler_t().save(":/palettes/none.wp", &palette));
}

void tst_xmlPaletteHandler::readsFromSearchPaths()
{
    const searchPaths_t paths("palettes", {"/missing", m_directory->path(), ":/palettes"});
    write(path("a.wp"), documentOf("<colorTable><color r=\"1\"/></colorTable><keyedColorTable/>"));
    palette_t fromFile;
    QVERIFY(xmlPaletteHandler_t().load("palettes:a.wp", &fromFile));
    QCOMPARE(fromFile.colorTable(), table_t{0xFF010000});
    palette_t fromResource;
    QVERIFY(xmlPaletteHandler_t().load("palettes:bathy.wp", &fromResource));
    QCOMPARE(fromResource.colorTable(palette_t::DEPTH_24).size(), std::size_t(256));
    palette_t missing;
    QVERIFY(!xmlPaletteHandler_t().load("palettes:none.wp", &missing));
    QVERIFY(!xmlPaletteHandler_t().load("none:a.wp", &missing));
    QCOMPARE(mkfifo(path("fifo.wp").c_str(), 0644), 0);
    QVERIFY(!xmlPaletteHandler_t().load("palettes:fifo.wp", &missing));
}

ZORBIN_TEST_MAIN(tst_xmlPaletteHandler, QApplication)
#include "tst_xmlPaletteHandler.moc"
