#include "childProcess.h"
#include "messageRecorder.h"
#include "palette.h"
#include "plainPalette.h"
#include "randomNumbers.h"
#include "testCase.h"
#include "xmlPaletteHandler.h"

#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace zorbin_qt_gui;
using table_t = std::vector<unsigned int>;
using keyed_t = std::map<std::string, unsigned int>;
Q_DECLARE_METATYPE(table_t)

static const QByteArray emptyTables = "<colorTable/><keyedColorTable/>";
constexpr bool isQt6 = QT_VERSION >= QT_VERSION_CHECK(6, 0, 0);

static QByteArray documentOf(const QByteArray& content)
{
    return "<palette>" + content + "</palette>";
}

static QByteArray nested(int levels)
{
    return QByteArray("<a>").repeated(levels) + QByteArray("</a>").repeated(levels);
}

static void write(const std::string& fileName, const QByteArray& text)
{
    QFile file(QFile::decodeName(fileName.c_str()));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), qint64(text.size()));
}

static QByteArray contentOf(const std::string& fileName)
{
    QFile file(QFile::decodeName(fileName.c_str()));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("can't be opened");
}

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

static QByteArray attributes(int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += " a" + QByteArray::number(i, 36) + "=\"\"";
    return text;
}

// Files that are meant to cost much time or memory, many in the largest size that is read at all.
static QByteArray hostile(const QString& what)
{
    constexpr int limit = 64 * 1024 * 1024;
    const auto filled = [](const QByteArray& piece) {
        return piece.repeated((limit - 400000) / piece.size());
    };
    const auto filledWith = [&](const QByteArray& piece) {
        return documentOf(emptyTables + filled(piece));
    };
    const auto withEntity = [](const QByteArray& value, const QByteArray& content) {
        return "<!DOCTYPE palette [<!ENTITY e \"" + value + "\">]>" +
               documentOf(emptyTables + content);
    };
    const QByteArray entry = "<color r=\"1\" g=\"2\" b=\"3\"/>";
    if (what == QLatin1String("elements"))
        return filledWith("<a/>");
    if (what == QLatin1String("attributes"))
        return filledWith("<a a=\"\" b=\"\" c=\"\"/>");
    if (what == QLatin1String("texts and instructions"))
        return filledWith("x<?a?>");
    if (what == QLatin1String("tables"))
        return filledWith("<colorTable/>");
    if (what == QLatin1String("one comment"))
        return documentOf(emptyTables + "<!--" + filled("=") + "-->");
    if (what == QLatin1String("as many entries as are taken"))
        return documentOf("<colorTable>" + entry.repeated(1000000) +
                          "</colorTable><keyedColorTable/>");
    if (what == QLatin1String("an entry more"))
        return documentOf("<keyedColorTable/><colorTable>" + entry.repeated(600000) +
                          "</colorTable><colorTable depth=\"24\">" + entry.repeated(400001) +
                          "</colorTable>");
    if (what == QLatin1String("nested a million deep"))
        return documentOf(emptyTables + nested(1000000));
    if (what == QLatin1String("nested deep, never closed"))
        return filledWith("<a>");
    if (what == QLatin1String("nested deep behind a control character"))
        return documentOf(emptyTables + "\x01" + nested(1000000));
    if (what == QLatin1String("nested deep, seemingly closed"))
        return documentOf(emptyTables + QByteArray("<a b=\"/>\">").repeated(100000));
    if (what == QLatin1String("nested deep in UTF-7, as told by what is no declaration"))
        return "<?xml-x encoding=\"UTF-7\"?>" +
               documentOf(emptyTables + QByteArray("+ADw-a+AD4-").repeated(100000));
    if (what == QLatin1String("nested parentheses"))
        return "<!DOCTYPE palette [<!ELEMENT palette " + filled("(") + ">]>" +
               documentOf(emptyTables);
    if (what == QLatin1String("attributes of one element"))
        return documentOf(emptyTables + "<a" + attributes(1000001) + "/>");
    if (what == QLatin1String("attributes of an element that an entity begins"))
        return "<!DOCTYPE palette [<!ENTITY e \"<a \"><!ENTITY f \"<![CDATA[\">]>" +
               documentOf(emptyTables + "&f;<!-- ]]>&e;" + filled(" b=''") + "/>");
    if (what == QLatin1String("parentheses that a parameter entity uncovers"))
        return "<!DOCTYPE palette [<!ENTITY % p \"<!ENTITY e '\">%p;\"'><!ELEMENT a " +
               filled("(") + "\">]>" + documentOf(emptyTables);
    if (what == QLatin1String("5000 attributes of each element"))
        return filledWith("<a" + attributes(5000) + "/>");
    if (what == QLatin1String("attributes with defaults"))
        return "<!DOCTYPE palette [<!ATTLIST a" + attributes(1000).replace('=', " CDATA ") + ">]>" +
               filledWith("<a/>");
    if (what == QLatin1String("entity in an entity in an entity")) {
        QByteArray entities = "<!ENTITY e0 \"lol\">";
        for (int i = 1; i < 10; ++i)
            entities += "<!ENTITY e" + QByteArray::number(i) + " \"" +
                        ("&e" + QByteArray::number(i - 1) + ";").repeated(10) + "\">";
        return "<!DOCTYPE palette [" + entities + "]>" + documentOf(emptyTables + "&e9;");
    }
    if (what == QLatin1String("entity in an entity, 20 million times"))
        return "<!DOCTYPE palette [<!ENTITY e \"" + QByteArray(40, 'x') + "\"><!ENTITY f \"" +
               QByteArray("&e;").repeated(90) + "\">]>" + filledWith("&f;");
    if (what == QLatin1String("entity of 4000 characters, 20 million times"))
        return withEntity(QByteArray(4000, 'x'), filled("&e;"));
    if (what == QLatin1String("entity of 4000 characters, 20 million times in an attribute"))
        return withEntity(QByteArray(4000, 'x'), "<a b='" + filled("&e;") + "'/>");
    if (what == QLatin1String("entity of 4000 characters, 4000 times"))
        return withEntity(QByteArray(4000, 'x'), QByteArray("&e;").repeated(4000));
    if (what == QLatin1String("entity of 1000 elements, 4000 times"))
        return withEntity(QByteArray("<a/>").repeated(1000), QByteArray("&e;").repeated(4000));
    if (what == QLatin1String("entity of 20000 characters"))
        return withEntity(QByteArray(20000, 'x'), {});
    if (what == QLatin1String("entity of 5 million entities"))
        return "<!DOCTYPE palette [<!ENTITY a \"b\"><!ENTITY b \"" +
               QByteArray("&a;").repeated(5000000) + "\"><!ENTITY c \"\">]>" +
               documentOf(emptyTables);
    if (what == QLatin1String("the same entity"))
        return "<!DOCTYPE palette [" + filled("<!ENTITY e \"\">") + "]>" + documentOf(emptyTables);
    if (what == QLatin1String("entities")) {
        QByteArray entities;
        for (int i = 0; i < 100000; ++i)
            entities += "<!ENTITY e" + QByteArray::number(i) + " \"\">";
        return "<!DOCTYPE palette [" + entities + "]>" + documentOf(emptyTables);
    }
    if (what == QLatin1String("entities in a comment"))
        return "<!--" + filled("<!ENTITY e \"&e;&e;\">") + "-->" + documentOf(emptyTables);
    if (what == QLatin1String("parameter entity of 4000 blanks, 20 million times"))
        return "<!DOCTYPE palette [<!ENTITY % p \"" + QByteArray(4000, ' ') + "\">" +
               filled("%p;") + "]>" + documentOf(emptyTables);
    if (what == QLatin1String("parameter entity of 4000 blanks, 1000 times"))
        return "<!DOCTYPE palette [<!ENTITY % p \"" + QByteArray(4000, ' ') + "\">" +
               QByteArray("%p;").repeated(1000) + "]>" + documentOf(emptyTables);
    return {};
}

/// The reader and the writer of palettes in the XML format.
class tst_xmlPaletteHandler : public testCase_t
{
    Q_OBJECT

protected:
    void setUp() override;

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

    void reportsFaults_data();
    void reportsFaults();
    void reportsTheEndWhereverAFileIsCut();
    void reportsAFaultInALargeFile();
    void refusesWhatIsNoRegularFile_data();
    void refusesWhatIsNoRegularFile();
    void refusesAnUnreadableFile();
    void refusesLargeFiles();
    void refusesDeepNesting();
    void countsLevelsBehindAnUnknownEntity();
    void readsNoOtherFile();
    void refusesTooMuch_data();
    void refusesTooMuch();

    void writesAnEmptyPalette();
    void writesEverything();
    void writesNoTableThatWasNotSet();
    void escapesKeys();
    void escapesKeysAsTheTreeOfQt();
    void keepsAllKeysThatTheParserTakes();
    void refusesKeysThatTheParserRefuses();
    void exchangesGreenAndBlueOfTables();
    void mergesKeyedColors();
    void writesAKeyThatCannotBeRead();
    void replacesALongerFile();
    void writesLargeTables();
    void writesWhatCanBeRead();
    void refusesANameWithAZero();
    void keepsTheFormerFileOnAFullDisk();
    void keepsPermissions();
    void givesNewFilesTheUsualPermissions();
    void keepsOwnerAndGroup();
    void followsLinks();
    void writesToSearchPaths();
    void writesInPlaceWhereNoFileCanBeMade();
    void writesInPlaceWhereTheFileCannotBeReplaced();
    void writesToWhatIsNoFile();
    void writesTheLongestNames_data();
    void writesTheLongestNames();
    void failsToWriteWhereItCannot_data();
    void failsToWriteWhereItCannot();
    void failsToWriteAReadOnlyFile();

private:
    QStringList namesOfFiles() const
    {
        return QDir(m_directory->path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }
    std::string path(const char* name) const
    {
        return m_directory->filePath(QLatin1String(name)).toStdString();
    }
    bool load(const QByteArray& text, palette_t& palette) const
    {
        write(path("a.wp"), text);
        return xmlPaletteHandler_t().load(path("a.wp"), &palette);
    }

    std::unique_ptr<QTemporaryDir> m_directory;
};

void tst_xmlPaletteHandler::setUp()
{
    m_directory = std::make_unique<QTemporaryDir>();
    QVERIFY(m_directory->isValid());
}

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

// Sets search paths while it lives.
class searchPaths_t
{
public:
    searchPaths_t(const QString& prefix, const QStringList& paths) : m_prefix(prefix)
    {
        QDir::setSearchPaths(prefix, paths);
    }
    ~searchPaths_t() { QDir::setSearchPaths(m_prefix, {}); }
    searchPaths_t(const searchPaths_t&) = delete;
    searchPaths_t& operator=(const searchPaths_t&) = delete;

private:
    const QString m_prefix;
};

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

void tst_xmlPaletteHandler::reportsFaults_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("message");
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    QTest::newRow("empty") << QByteArray()
                           << "palette_t::load:  Premature end of document. on line 1, column 0";
    QTest::newRow("blank") << QByteArray("\n \n")
                           << "palette_t::load:  Premature end of document. on line 1, column 0";
    QTest::newRow("text") << QByteArray("palette\n")
                          << "palette_t::load:  Start tag expected. on line 1, column 1";
    QTest::newRow("wrong end") << QByteArray("<palette>\n<colorTable></palette>")
                               << "palette_t::load:  Opening and ending tag mismatch. on line 2, "
                                  "column 22";
#else
    QTest::newRow("empty") << QByteArray()
                           << "palette_t::load:  unexpected end of file on line 1, column 1";
    QTest::newRow("blank") << QByteArray("\n \n")
                           << "palette_t::load:  unexpected end of file on line 3, column 1";
    QTest::newRow("text") << QByteArray("palette\n")
                          << "palette_t::load:  error occurred while parsing element on line 1, "
                             "column 1";
    QTest::newRow("wrong end") << QByteArray("<palette>\n<colorTable></palette>")
                               << "palette_t::load:  tag mismatch on line 2, column 22";
#endif
}

// What Qt's tree says about such a file.
static QString faultOf(const QByteArray& text)
{
    QTemporaryDir directory;
    const QString fileName = directory.filePath(QStringLiteral("a.wp"));
    write(fileName.toStdString(), text);
    const messageRecorder_t messages;
    palette_t palette;
    loadPlainly(fileName, &palette);
    return messages.texts().join('\n');
}

void tst_xmlPaletteHandler::reportsFaults()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, message);
    const messageRecorder_t messages;
    palette_t palette;
    QVERIFY(!load(text, palette));
    QCOMPARE(messages.texts(), QStringList(message));
    QCOMPARE(messages.kinds(), QStringList("debug"));
    QCOMPARE(faultOf(text), message);
}

void tst_xmlPaletteHandler::reportsTheEndWhereverAFileIsCut()
{
    const QByteArray text = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE palette [<!ELEMENT palette ANY>]>
<palette><!-- x --><colorTable depth="8"><color r='1' g="2" b="3"/></colorTable>
<![CDATA[x]]><keyedColorTable><keyedColor key="&#65;&amp;" r="1"></keyedColor></keyedColorTable>
</palette>)";
    for (int size = 0; size < text.size(); ++size) {
        const messageRecorder_t messages;
        palette_t palette;
        QVERIFY2(!load(text.left(size), palette), qPrintable(QString::number(size)));
        QCOMPARE(messages.texts(), QStringList(faultOf(text.left(size))));
    }
    palette_t palette;
    QVERIFY(load(text, palette));
    QVERIFY(load(text + "\n<!-- end -->", palette));
}

void tst_xmlPaletteHandler::reportsAFaultInALargeFile()
{
    const QByteArray table = "<colorTable>" +
                             QByteArray("<color r=\"1\" g=\"2\" b=\"3\"/>\n").repeated(65536) +
                             "</colorTable>";
    for (const QByteArray& text : {"<palette>" + table, documentOf("<a></b>" + table),
                                   documentOf(table + "<keyedColorTable><a")}) {
        const messageRecorder_t messages;
        palette_t palette;
        QVERIFY(!load(text, palette));
        QCOMPARE(messages.texts(), QStringList(faultOf(text)));
    }
}

void tst_xmlPaletteHandler::refusesWhatIsNoRegularFile_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("missing") << QByteArray("missing.wp");
    QTest::newRow("missing directory") << QByteArray("missing/a.wp");
    QTest::newRow("directory") << QByteArray("directory.wp");
    QTest::newRow("FIFO without a writer") << QByteArray("fifo.wp");
    QTest::newRow("socket") << QByteArray("socket.wp");
    QTest::newRow("link to itself") << QByteArray("loop.wp");
    QTest::newRow("device") << QByteArray("device.wp");
}

void tst_xmlPaletteHandler::refusesWhatIsNoRegularFile()
{
    QFETCH(QByteArray, name);
    QCOMPARE(mkdir(path("directory.wp").c_str(), 0755), 0);
    QCOMPARE(mkfifo(path("fifo.wp").c_str(), 0644), 0);
    QCOMPARE(symlink("loop.wp", path("loop.wp").c_str()), 0);
    QCOMPARE(symlink("/dev/zero", path("device.wp").c_str()), 0);
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, path("socket.wp").c_str(), sizeof address.sun_path);
    QCOMPARE(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);

    const messageRecorder_t messages;
    palette_t palette;
    QVERIFY(!xmlPaletteHandler_t().load(path(name.constData()), &palette));
    QCOMPARE(messages.texts(), QStringList());
    close(listener);
}

// Does something as a user for whom permissions count.
template <typename operation_t>
static bool asOrdinaryUser(const operation_t& operation)
{
    const uid_t user = geteuid();
    if (user == 0 && seteuid(65534) != 0)
        qFatal("can't become another user");
    const bool result = operation();
    if (seteuid(user) != 0)
        qFatal("can't become root again");
    return result;
}

void tst_xmlPaletteHandler::refusesAnUnreadableFile()
{
    write(path("a.wp"), documentOf(emptyTables));
    QCOMPARE(chmod(m_directory->path().toLocal8Bit().constData(), 0755), 0);
    palette_t palette;
    const auto isLoaded = [&] { return xmlPaletteHandler_t().load(path("a.wp"), &palette); };
    QCOMPARE(chmod(path("a.wp").c_str(), 0444), 0);
    QVERIFY(asOrdinaryUser(isLoaded));
    QCOMPARE(chmod(path("a.wp").c_str(), 0), 0);
    QVERIFY(!asOrdinaryUser(isLoaded));
}

void tst_xmlPaletteHandler::refusesLargeFiles()
{
    constexpr int limit = 64 * 1024 * 1024;
    const QByteArray text = documentOf(emptyTables);
    palette_t palette;
    QVERIFY(load(text + QByteArray(limit - text.size(), '\n'), palette));
    const messageRecorder_t messages;
    QVERIFY(!load(text + QByteArray(limit - text.size() + 1, '\n'), palette));
    QCOMPARE(truncate(path("a.wp").c_str(), 8LL * 1024 * limit), 0);
    QVERIFY(!xmlPaletteHandler_t().load(path("a.wp"), &palette));
    const QString message = "palette_t::load:  more than 64 MiB";
    QCOMPARE(messages.texts(), (QStringList{message, message}));
    QCOMPARE(messages.kinds(), (QStringList{"debug", "debug"}));
}

void tst_xmlPaletteHandler::refusesDeepNesting()
{
    const messageRecorder_t messages;
    palette_t palette;
    QVERIFY(load(documentOf(emptyTables + nested(4999)), palette)); // the root is a level, too
    QVERIFY(!load(documentOf(emptyTables + nested(5000)), palette));
    QCOMPARE(messages.texts(), QStringList{"palette_t::load:  more than 5000 levels of elements"});
}

// That is a fault to the parser of Qt 6 alone.
void tst_xmlPaletteHandler::countsLevelsBehindAnUnknownEntity()
{
    const auto withEntity = [](int levelsBefore, int levelsBehind) {
        return documentOf(emptyTables + QByteArray("<a>").repeated(levelsBefore) + "&none;" +
                          nested(levelsBehind) + QByteArray("</a>").repeated(levelsBefore));
    };
    const QString fault = "palette_t::load:  Entity 'none' not declared. on line 1, column 7546";
    const QString tooDeep = "palette_t::load:  more than 5000 levels of elements";
    const messageRecorder_t messages;
    palette_t palette;
    QCOMPARE(load(withEntity(2500, 2499), palette), !isQt6);
    QVERIFY(!load(withEntity(2500, 2500), palette));
    QCOMPARE(messages.texts(), isQt6 ? QStringList({fault, fault}) : QStringList(tooDeep));
}

void tst_xmlPaletteHandler::readsNoOtherFile()
{
    QCOMPARE(mkfifo(path("fifo").c_str(), 0644), 0); // would be waited for
    const QByteArray url = "file://" + QByteArray::fromStdString(path("fifo"));
    palette_t palette;
    load("<!DOCTYPE palette SYSTEM \"" + url + "\" [<!ENTITY % p SYSTEM \"" + url +
             "\"> %p; <!ENTITY e SYSTEM \"" + url + "\">]>" +
             documentOf("<colorTable/><keyedColorTable><keyedColor key=\"a\">&e;</keyedColor>"
                        "</keyedColorTable>"),
         palette);
    write(path("secret"), "<keyedColor key=\"secret\"/>");
    palette_t other;
    load("<!DOCTYPE palette [<!ENTITY e SYSTEM \"file://" +
             QByteArray::fromStdString(path("secret")) + "\">]>" +
             documentOf("<colorTable/><keyedColorTable>&e;</keyedColorTable>"),
         other);
    QVERIFY(other.keyedColor(palette_t::DEPTH_8).empty());
}

void tst_xmlPaletteHandler::refusesTooMuch_data()
{
    QTest::addColumn<QString>("excess"); // empty: the file is read
    const QString none;
    const QString levels = "more than 5000 levels of elements";
    const QString entries = "more than 1000000 entries";
    const QString attributes = isQt6 ? "more than 30000 attributes in an element"
                                     : "more than 1000000 attributes in an element";
    const QString declarations = "more than 16 KiB of entities or attributes in a document type";
    const QString expansion = "more than 64 MiB of text in place of entities";

    QTest::newRow("elements") << none;
    QTest::newRow("attributes") << none;
    QTest::newRow("texts and instructions") << none;
    QTest::newRow("tables") << none;
    QTest::newRow("one comment") << none;
    QTest::newRow("as many entries as are taken") << none;
    QTest::newRow("an entry more") << entries;
    QTest::newRow("nested a million deep") << levels;
    QTest::newRow("nested deep, never closed") << levels;
    QTest::newRow("nested deep behind a control character")
        << (isQt6 ? QString("on line 1, column 41") : levels);
    QTest::newRow("nested deep, seemingly closed") << levels;
    QTest::newRow("nested deep in UTF-7, as told by what is no declaration")
        << (isQt6 ? none : levels);
    QTest::newRow("nested parentheses")
        << QString("more than 5000 levels of parentheses in a document type");
    QTest::newRow("attributes of one element") << attributes;
    QTest::newRow("attributes of an element that an entity begins")
        << (isQt6 ? QString("on line 1, column") : attributes);
    QTest::newRow("parentheses that a parameter entity uncovers")
        << (isQt6 ? declarations
                  : QString("more than 5000 levels of parentheses in a document type"));
    QTest::newRow("5000 attributes of each element") << (isQt6 ? attributes : none);
    QTest::newRow("attributes with defaults") << (isQt6 ? declarations : none);
    QTest::newRow("entity in an entity in an entity") << QString("on line 1, column");
    QTest::newRow("entity in an entity, 20 million times") << expansion;
    QTest::newRow("entity of 4000 characters, 20 million times") << expansion;
    QTest::newRow("entity of 4000 characters, 20 million times in an attribute") << expansion;
    QTest::newRow("entity of 4000 characters, 4000 times") << none;
    QTest::newRow("entity of 1000 elements, 4000 times") << none;
    QTest::newRow("entity of 20000 characters") << declarations;
    QTest::newRow("entity of 5 million entities") << declarations;
    QTest::newRow("the same entity") << (isQt6 ? declarations : none);
    QTest::newRow("entities") << declarations;
    QTest::newRow("entities in a comment") << none;
    QTest::newRow("parameter entity of 4000 blanks, 20 million times")
        << (isQt6 ? declarations : expansion);
    QTest::newRow("parameter entity of 4000 blanks, 1000 times") << none;
}

// The most memory that this process has had at once, in MiB. What getrusage() tells is that of the
// process before it, too.
static int peakMemory()
{
    const QList<QByteArray> lines = contentOf("/proc/self/status").split('\n');
    const auto line = std::find_if(lines.begin(), lines.end(), [](const QByteArray& text) {
        return text.startsWith("VmHWM:");
    });
    return line->mid(6, line->size() - 8).trimmed().toInt() / 1024; // "VmHWM:   1024 kB"
}

// The time that this process has computed, in milliseconds.
static int computingTime()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<int>(usage.ru_utime.tv_sec * 1000 + usage.ru_utime.tv_usec / 1000);
}

// Loads a hostile file in a process of its own, so that its time and memory are its own, too.
static int loadHostile()
{
    QTemporaryDir directory;
    const std::string fileName = directory.filePath(QStringLiteral("a.wp")).toStdString();
    write(fileName, hostile(qEnvironmentVariable("HOSTILE_FILE")));
    const int begin = computingTime();
    palette_t palette;
    const bool isLoaded = xmlPaletteHandler_t().load(fileName, &palette);
    const int time = computingTime() - begin;
    const int memory = peakMemory();
    qInfo("%d ms, %d MiB", time, memory);
    if (memory > 1024 || time > 20000)
        return 2;
    return isLoaded ? 1 : 0;
}

void tst_xmlPaletteHandler::refusesTooMuch()
{
    QFETCH(QString, excess);
    const childOutcome_t outcome = runChild(
        QStringLiteral("hostile"), {QLatin1String("HOSTILE_FILE=") + QTest::currentDataTag()});
    qInfo("%s", qPrintable(outcome.said.isEmpty() ? QString() : outcome.said.last()));
    QVERIFY(!outcome.crashed);
    QCOMPARE(outcome.exitCode, excess.isEmpty() ? 1 : 0);
    QCOMPARE(outcome.said.size(), excess.isEmpty() ? 1 : 2);
    QVERIFY2(outcome.said.first().contains(excess), qPrintable(outcome.said.first()));
}

void tst_xmlPaletteHandler::writesAnEmptyPalette()
{
    const palette_t palette;
    QVERIFY(xmlPaletteHandler_t().save(path("a.wp"), &palette));
    QCOMPARE(contentOf(path("a.wp")), QByteArray("<palette>\n"
                                                 "  <colorTable depth=\"8\"/>\n"
                                                 "  <colorTable depth=\"24\"/>\n"
                                                 "  <keyedColorTable depth=\"8\"/>\n"
                                                 "  <keyedColorTable depth=\"8\"/>\n"
                                                 "</palette>\n"));
}

void tst_xmlPaletteHandler::writesEverything()
{
    palette_t palette;
    palette.setColorTable({0xFF102030, 0x00FF0001}, palette_t::DEPTH_8);
    palette.setColorTable({0xFF00FF00}, palette_t::DEPTH_24);
    palette.setKeyedColor("b", 0xFF040506, palette_t::DEPTH_8);
    palette.setKeyedColor("B", 0xFF070809, palette_t::DEPTH_8);
    palette.setKeyedColor("a", 0xFF010203, palette_t::DEPTH_24);
    for (int i = 0; i < 3; ++i) {
        QVERIFY(xmlPaletteHandler_t().save(path("a.wp"), &palette));
        QCOMPARE(contentOf(path("a.wp")),
                 QByteArray("<palette>\n"
                            "  <colorTable depth=\"8\">\n"
                            "    <color r=\"16\" g=\"48\" b=\"32\"/>\n"
                            "    <color r=\"255\" g=\"1\" b=\"0\"/>\n"
                            "  </colorTable>\n"
                            "  <colorTable depth=\"24\">\n"
                            "    <color r=\"0\" g=\"0\" b=\"255\"/>\n"
                            "  </colorTable>\n"
                            "  <keyedColorTable depth=\"8\">\n"
                            "    <keyedColor key=\"B\" r=\"7\" g=\"8\" b=\"9\"/>\n"
                            "    <keyedColor key=\"b\" r=\"4\" g=\"5\" b=\"6\"/>\n"
                            "  </keyedColorTable>\n"
                            "  <keyedColorTable depth=\"8\">\n"
                            "    <keyedColor key=\"a\" r=\"1\" g=\"2\" b=\"3\"/>\n"
                            "  </keyedColorTable>\n"
                            "</palette>\n"));
    }
}

void tst_xmlPaletteHandler::writesNoTableThatWasNotSet()
{
    palette_t palette;
    palette.setColorTable({0xFF102030}, palette_t::DEPTH_24);
    QVERIFY(xmlPaletteHandler_t().save(path("a.wp"), &palette));
    QVERIFY(contentOf(path("a.wp")).contains("<colorTable depth=\"8\"/>"));
}

void tst_xmlPaletteHandler::escapesKeys()
{
    const std::string key = "a\"<&>'\t\n\r ]]>\xE9\x85";
    palette_t palette;
    palette.setKeyedColor(key, 0xFF010203, palette_t::DEPTH_8);
    QVERIFY(xmlPaletteHandler_t().save(path("a.wp"), &palette));
    const QByteArray text = contentOf(path("a.wp"));
    QVERIFY2(text.contains(" key=\"a&quot;&lt;&amp;>'&#x9;&#xa;&#xd; ]]&gt;\xC3\xA9\xC2\x85\" "),
             text.constData());
    QDomDocument document;
    QDomElement element = document.createElement(QStringLiteral("a"));
    element.setAttribute(QStringLiteral("key"), QString::fromLatin1(key.c_str()));
    document.appendChild(element);
    QVERIFY(text.contains(document.toByteArray().mid(2).replace("/>\n", " r=")));

    palette_t again;
    QVERIFY(xmlPaletteHandler_t().load(path("a.wp"), &again));
    QCOMPARE(again.keyedColor(palette_t::DEPTH_8), (keyed_t{{key, 0xFF010203}}));
}

// Keys of each byte, alone and among others.
static std::vector<std::string> keysOf(int byte)
{
    const char c = static_cast<char>(byte);
    return {std::string(1, c), "a" + std::string(2, c) + "b", "]]" + std::string(2, c) + "]]>"};
}

static bool isControlCharacter(int byte)
{
    return byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r';
}

void tst_xmlPaletteHandler::escapesKeysAsTheTreeOfQt()
{
    palette_t palette;
    QByteArrayList elements;
    for (int byte = 0; byte < 256; ++byte) {
        if (isQt6 && isControlCharacter(byte))
            continue;
        for (const std::string& key : keysOf(byte)) {
            palette.setKeyedColor(key, 0xFF010203, palette_t::DEPTH_8);
            QDomDocument document;
            QDomElement element = document.createElement(QStringLiteral("keyedColor"));
            element.setAttribute(QStringLiteral("key"),
                                 QString::fromLatin1(key.data(), static_cast<int>(key.size())));
            document.appendChild(element);
            elements += document.toByteArray().replace("/>\n", " r=\"1\"");
        }
    }
    QVERIFY(xmlPaletteHandler_t().save(path("a.wp"), &palette));
    for (const QByteArray& element : elements)
        QVERIFY2(contentOf(path("a.wp")).contains(element),
                 element.toPercentEncoding().constData());
}

void tst_xmlPaletteHandler::keepsAllKeysThatTheParserTakes()
{
    palette_t palette;
    keyed_t keys;
    for (int byte = 0; byte < 256; ++byte) {
        if (isQt6 && isControlCharacter(byte))
            continue;
        for (const std::string& key : keysOf(byte))
            keys[key] = 0xFF000000U + static_cast<unsigned>(byte);
    }
    for (const auto& [key, color] : keys)
        palette.setKeyedColor(key, color, palette_t::DEPTH_24);
    const messageRecorder_t messages;
    QVERIFY(xmlPaletteHandler_t().save(path("a.wp"), &palette));
    palette_t again;
    QVERIFY(xmlPaletteHandler_t().load(path("a.wp"), &again));
    QCOMPARE(again.keyedColor(palette_t::DEPTH_8), keys);
    QCOMPARE(messages.texts(), QStringList());
}

// The parser of Qt 6 takes no control characters.
void tst_xmlPaletteHandler::refusesKeysThatTheParserRefuses()
{
    write(path("a.wp"), "former");
    for (int byte = 0; isQt6 && byte < 0x20; ++byte) {
        if (!isControlCharacter(byte))
            continue;
        for (const std::string& key : keysOf(byte)) {
            for (const palette_t::colorDepth_t depth : {palette_t::DEPTH_8, palette_t::DEPTH_24}) {
                palette_t palette;
                palette.setKeyedColor("other", 0xFF040506, palette_t::DEPTH_8);
                palette.setKeyedColor(key, 0xFF010203, depth);
                const messageRecorder_t messages;
                QVERIFY(!xmlPaletteHandler_t().save(path("a.wp"), &palette));
                QVERIFY(!xmlPaletteHandler_t().save(path("new.wp"), &palette));
                const QString message = "palette_t::save:  control character in the key " +
                                        QByteArray::fromStdString(key).toPercentEncoding();
                QCOMPARE(messages.texts(), (QStringList{message, message}));
                QCOMPARE(contentOf(path("a.wp")), QByteArray("former"));
            }
        }
    }
    QCOMPARE(namesOfFiles(), QStringList("a.wp"));
}

void tst_xmlPaletteHandler::exchangesGreenAndBlueOfTables()
{
    palette_t palette;
    palette.setColorTable({0xFF102030}, palette_t::DEPTH_8);
    palette.setColorTable({0x00010203, 0xFFFFFF00}, palette_t::DEPTH_24);
    palette.setKeyedColor("a", 0xFF010203, palette_t::DEPTH_8);
    QVERIFY(xmlPaletteHandler_t().save(path("a.wp"), &palette));
    palette_t again;
    QVERIFY(xmlPaletteHandler_t().load(path("a.wp"), &again));
    QCOMPARE(again.colorTable(palette_t::DEPTH_8), table_t{0xFF103020});
    QCOMPARE(again.colorTable(palette_t::DEPTH_24), (table_t{0xFF010302, 0xFFFF00FF}));
    QCOMPARE(again.keyedColor(palette_t::DEPTH_8), (keyed_t{{"a", 0xFF010203}}));
}

void tst_xmlPaletteHandler::mergesKeyedColors()
{
    palette_t palette;
    palette.setKeyedColor("a", 0xFF000001, palette_t::DEPTH_8);
    palette.setKeyedColor("b", 0xFF000002, palette_t::DEPTH_8);
    palette.setKeyedColor("b", 0xFF000003, palette_t::DEPTH_24);
    palette.setKeyedColor("c", 0xFF000004, palette_t::DEPTH_24);
    QVERIFY(xmlPaletteHandler_t().save(path("a.wp"), &palette));
    palette_t again;
    QVERIFY(xmlPaletteHandler_t().load(path("a.wp"), &again));
    QCOMPARE(again.keyedColor(palette_t::DEPTH_8),
             (keyed_t{{"a", 0xFF000001}, {"b", 0xFF000003}, {"c", 0xFF000004}}));
    QVERIFY(again.keyedColor(palette_t::DEPTH_24).empty());
}

void tst_xmlPaletteHandler::writesAKeyThatCannotBeRead()
{
    palette_t palette;
    palette.setKeyedColor("", 0xFF010203, palette_t::DEPTH_8);
    QVERIFY(xmlPaletteHandler_t().save(path("a.wp"), &palette));
    palette_t again;
    QVERIFY(!xmlPaletteHandler_t().load(path("a.wp"), &again));
}

void tst_xmlPaletteHandler::replacesALongerFile()
{
    write(path("a.wp"), QByteArray(100000, 'x'));
    palette_t palette;
    QVERIFY(xmlPaletteHandler_t().save(path("a.wp"), &palette));
    QVERIFY(contentOf(path("a.wp")).endsWith("</palette>\n"));
    QVERIFY(xmlPaletteHandler_t().load(path("a.wp"), &palette));
}

void tst_xmlPaletteHandler::writesLargeTables()
{
    table_t table;
    for (unsigned i = 0; i < 65536; ++i)
        table.push_back(0xFF000000U | i << 16U | (i & 0xFF00U) | i >> 8U); // green as blue
    palette_t palette;
    palette.setColorTable(table, palette_t::DEPTH_8);
    palette.setColorTable(table, palette_t::DEPTH_24);
    QVERIFY(xmlPaletteHandler_t().save(path("a.wp"), &palette));
    palette_t again;
    QVERIFY(xmlPaletteHandler_t().load(path("a.wp"), &again));
    QVERIFY(again.colorTable(palette_t::DEPTH_8) == table);
    QVERIFY(again.colorTable(palette_t::DEPTH_24) == table);
}

// One entry more is neither written nor read.
void tst_xmlPaletteHandler::writesWhatCanBeRead()
{
    palette_t palette;
    palette.setColorTable(table_t(600000, 0xFF010101), palette_t::DEPTH_8);
    palette.setColorTable(table_t(399999, 0xFF020202), palette_t::DEPTH_24);
    palette.setKeyedColor("a", 0xFF030303, palette_t::DEPTH_8);
    const messageRecorder_t messages;
    QVERIFY(xmlPaletteHandler_t().save(path("a.wp"), &palette));
    palette_t again;
    QVERIFY(xmlPaletteHandler_t().load(path("a.wp"), &again));
    QVERIFY(again.colorTable(palette_t::DEPTH_8) == palette.colorTable(palette_t::DEPTH_8));
    QVERIFY(again.colorTable(palette_t::DEPTH_24) == palette.colorTable(palette_t::DEPTH_24));
    QCOMPARE(messages.texts(), QStringList());

    write(path("a.wp"), "former");
    palette.setKeyedColor("a", 0xFF030303, palette_t::DEPTH_24);
    QVERIFY(!xmlPaletteHandler_t().save(path("a.wp"), &palette));
    palette_t large;
    large.setKeyedColor(std::string(64 * 1024 * 1024, 'x'), 0xFF030303, palette_t::DEPTH_24);
    QVERIFY(!xmlPaletteHandler_t().save(path("a.wp"), &large));
    QCOMPARE(messages.texts(), (QStringList{"palette_t::save:  more than 1000000 entries",
                                            "palette_t::save:  more than 64 MiB"}));
    QCOMPARE(contentOf(path("a.wp")), QByteArray("former"));
}

void tst_xmlPaletteHandler::refusesANameWithAZero()
{
    write(path("a.wp"), documentOf(emptyTables));
    const messageRecorder_t messages;
    palette_t palette;
    for (const std::string& name : {path("a.wp") + '\0', path("a.wp") + '\0' + ".wp",
                                    '\0' + path("a.wp"), std::string(1, '\0')}) {
        QVERIFY(!xmlPaletteHandler_t().load(name, &palette));
        QVERIFY(!xmlPaletteHandler_t().save(name, &palette));
    }
    QCOMPARE(contentOf(path("a.wp")), documentOf(emptyTables));
    QCOMPARE(messages.texts(), QStringList());
}

// A palette whose file takes some 40 KB.
static void fill(palette_t& palette)
{
    palette.setColorTable(table_t(1000, 0xFF010101), palette_t::DEPTH_8);
}

// Saves where no file can grow beyond 10000 bytes.
static int saveOnAFullDisk()
{
    palette_t palette;
    fill(palette);
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {10000, 10000};
    setrlimit(RLIMIT_FSIZE, &limit);
    return xmlPaletteHandler_t().save(qEnvironmentVariable("FILE_TO_SAVE").toStdString(), &palette)
               ? 1
               : 0;
}

void tst_xmlPaletteHandler::keepsTheFormerFileOnAFullDisk()
{
    const QByteArray former = documentOf(emptyTables);
    write(path("a.wp"), former);
    QCOMPARE(symlink("a.wp", path("link.wp").c_str()), 0);
    for (const char* name : {"a.wp", "link.wp", "new.wp"}) {
        const childOutcome_t outcome =
            runChild(QStringLiteral("full"),
                     {QStringLiteral("FILE_TO_SAVE=") + QString::fromStdString(path(name))});
        QVERIFY(!outcome.crashed);
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(outcome.said, QStringList());
        QCOMPARE(contentOf(path("a.wp")), former);
        QCOMPARE(namesOfFiles(), (QStringList{"a.wp", "link.wp"}));
    }
}

static mode_t modeOf(const std::string& fileName)
{
    struct stat status = {};
    return stat(fileName.c_str(), &status) == 0 ? status.st_mode & 07777U : 0U;
}

void tst_xmlPaletteHandler::keepsPermissions()
{
    for (const mode_t mode : {0644U, 0600U, 0664U, 0777U, 0220U, 0600U, 04755U}) {
        write(path("a.wp"), "former");
        QCOMPARE(chmod(path("a.wp").c_str(), mode), 0);
        const palette_t palette;
        QVERIFY(xmlPaletteHandler_t().save(path("a.wp"), &palette));
        QCOMPARE(modeOf(path("a.wp")), mode);
        QCOMPARE(chmod(path("a.wp").c_str(), 0600), 0);
        QVERIFY(contentOf(path("a.wp")).endsWith("</palette>\n"));
    }
}

void tst_xmlPaletteHandler::givesNewFilesTheUsualPermissions()
{
    const mode_t former = umask(027);
    const palette_t palette;
    const bool isSaved = xmlPaletteHandler_t().save(path("a.wp"), &palette);
    umask(former);
    QVERIFY(isSaved);
    QCOMPARE(modeOf(path("a.wp")), 0640U);
}

// Where this process may give files away.
void tst_xmlPaletteHandler::keepsOwnerAndGroup()
{
    const uid_t owner = geteuid() == 0 ? 65534 : geteuid();
    const gid_t group = geteuid() == 0 ? 65533 : getegid();
    write(path("a.wp"), "former");
    QCOMPARE(chown(path("a.wp").c_str(), owner, group), 0);
    const palette_t palette;
    QVERIFY(xmlPaletteHandler_t().save(path("a.wp"), &palette));
    struct stat status = {};
    QCOMPARE(stat(path("a.wp").c_str(), &status), 0);
    QCOMPARE(status.st_uid, owner);
    QCOMPARE(status.st_gid, group);
}

void tst_xmlPaletteHandler::followsLinks()
{
    QCOMPARE(mkdir(path("deep").c_str(), 0755), 0);
    QCOMPARE(mkdir(path("deep/er").c_str(), 0755), 0);
    QCOMPARE(symlink("deep/er", path("directory").c_str()), 0);
    QCOMPARE(symlink("../a.wp", path("deep/er/up.wp").c_str()), 0); // that in "deep"
    QCOMPARE(symlink("directory/up.wp", path("link.wp").c_str()), 0);
    write(path("a.wp"), "another file");
    const palette_t palette;
    for (int i = 0; i < 2; ++i) { // new, then replaced
        QVERIFY(xmlPaletteHandler_t().save(path("link.wp"), &palette));
        QVERIFY(contentOf(path("deep/a.wp")).endsWith("</palette>\n"));
        QCOMPARE(contentOf(path("a.wp")), QByteArray("another file"));
        for (const char* link : {"link.wp", "deep/er/up.wp"}) {
            struct stat status = {};
            QCOMPARE(lstat(path(link).c_str(), &status), 0);
            QVERIFY(S_ISLNK(status.st_mode));
        }
        write(path("deep/a.wp"), "former");
    }
}

void tst_xmlPaletteHandler::writesToSearchPaths()
{
    QCOMPARE(mkdir(path("first").c_str(), 0755), 0);
    QCOMPARE(mkdir(path("second").c_str(), 0755), 0);
    write(path("second/a.wp"), "former");
    const searchPaths_t paths("palettes",
                              {m_directory->filePath("first"), m_directory->filePath("second")});
    const palette_t palette;
    QVERIFY(xmlPaletteHandler_t().save("palettes:a.wp", &palette));
    QVERIFY(contentOf(path("second/a.wp")).endsWith("</palette>\n"));
}

void tst_xmlPaletteHandler::writesInPlaceWhereNoFileCanBeMade()
{
    write(path("a.wp"), QByteArray(100000, 'x'));
    QCOMPARE(chmod(path("a.wp").c_str(), 0666), 0);
    QCOMPARE(chmod(m_directory->path().toLocal8Bit().constData(), 0555), 0);
    palette_t palette;
    const bool isSaved =
        asOrdinaryUser([&] { return xmlPaletteHandler_t().save(path("a.wp"), &palette); });
    const bool isNewSaved =
        asOrdinaryUser([&] { return xmlPaletteHandler_t().save(path("new.wp"), &palette); });
    QCOMPARE(chmod(m_directory->path().toLocal8Bit().constData(), 0755), 0);
    QVERIFY(isSaved);
    QVERIFY(!isNewSaved);
    QVERIFY(xmlPaletteHandler_t().load(path("a.wp"), &palette));
    QCOMPARE(namesOfFiles(), QStringList("a.wp"));
}

// In a directory like /tmp, where files can be made by all but removed by their owners alone.
void tst_xmlPaletteHandler::writesInPlaceWhereTheFileCannotBeReplaced()
{
    write(path("a.wp"), "former");
    QCOMPARE(chmod(path("a.wp").c_str(), 0666), 0);
    QCOMPARE(chmod(m_directory->path().toLocal8Bit().constData(), 01777), 0);
    palette_t palette;
    QVERIFY(asOrdinaryUser([&] { return xmlPaletteHandler_t().save(path("a.wp"), &palette); }));
    QVERIFY(xmlPaletteHandler_t().load(path("a.wp"), &palette));
    QCOMPARE(modeOf(path("a.wp")), 0666U);
    QCOMPARE(namesOfFiles(), QStringList("a.wp"));
}

void tst_xmlPaletteHandler::writesToWhatIsNoFile()
{
    QCOMPARE(mkfifo(path("fifo.wp").c_str(), 0644), 0);
    const int reader = open(path("fifo.wp").c_str(), O_RDONLY | O_NONBLOCK);
    QVERIFY(reader != -1);
    QCOMPARE(symlink("/dev/null", path("null.wp").c_str()), 0);
    const palette_t palette;
    QVERIFY(xmlPaletteHandler_t().save(path("fifo.wp"), &palette));
    QVERIFY(xmlPaletteHandler_t().save(path("null.wp"), &palette));
    char content[1000] = {};
    QVERIFY(read(reader, content, sizeof content - 1) > 0);
    close(reader);
    QVERIFY(QByteArray(content).endsWith("</palette>\n"));
    struct stat status = {};
    QCOMPARE(stat("/dev/null", &status), 0);
    QVERIFY(S_ISCHR(status.st_mode));
    QCOMPARE(stat(path("fifo.wp").c_str(), &status), 0);
    QVERIFY(S_ISFIFO(status.st_mode));
}

void tst_xmlPaletteHandler::writesTheLongestNames_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("room for an ending") << 248;
    QTest::newRow("one more") << 249;
    QTest::newRow("longest") << 255;
}

void tst_xmlPaletteHandler::writesTheLongestNames()
{
    QFETCH(int, size);
    const std::string name = path(QByteArray(size - 3, 'a') + ".wp");
    palette_t palette;
    QVERIFY(xmlPaletteHandler_t().save(name, &palette)); // new
    write(name, QByteArray(100000, 'x'));
    QVERIFY(xmlPaletteHandler_t().save(name, &palette));
    QVERIFY(xmlPaletteHandler_t().load(name, &palette));
    QCOMPARE(namesOfFiles().size(), 1);
    QVERIFY(!xmlPaletteHandler_t().save(path(QByteArray(256, 'a')), &palette));
}

void tst_xmlPaletteHandler::failsToWriteWhereItCannot_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("full device") << QByteArray("full.wp");
    QTest::newRow("FIFO without a reader") << QByteArray("fifo.wp");
    QTest::newRow("missing directory") << QByteArray("missing/a.wp");
    QTest::newRow("directory") << QByteArray("directory.wp");
    QTest::newRow("link to itself") << QByteArray("loop.wp");
}

void tst_xmlPaletteHandler::failsToWriteWhereItCannot()
{
    QFETCH(QByteArray, name);
    QCOMPARE(symlink("/dev/full", path("full.wp").c_str()), 0);
    QCOMPARE(mkfifo(path("fifo.wp").c_str(), 0644), 0);
    QCOMPARE(mkdir(path("directory.wp").c_str(), 0755), 0);
    QCOMPARE(symlink("loop.wp", path("loop.wp").c_str()), 0);
    const messageRecorder_t messages;
    const palette_t palette;
    QVERIFY(!xmlPaletteHandler_t().save(path(name.constData()), &palette));
    QCOMPARE(messages.texts(), QStringList());
}

void tst_xmlPaletteHandler::failsToWriteAReadOnlyFile()
{
    write(path("a.wp"), "old");
    QCOMPARE(chmod(m_directory->path().toLocal8Bit().constData(), 0755), 0);
    QCOMPARE(chmod(path("a.wp").c_str(), 0444), 0);
    const palette_t palette;
    QVERIFY(!asOrdinaryUser([&] { return xmlPaletteHandler_t().save(path("a.wp"), &palette); }));
    QCOMPARE(contentOf(path("a.wp")), QByteArray("old"));
}

int main(int argc, char** argv)
{
    tst_xmlPaletteHandler tests;
    return runTestsOrScenario(
        argc, argv, tests,
        {{QStringLiteral("hostile"), loadHostile}, {QStringLiteral("full"), saveOnAFullDisk}});
}
#include "tst_xmlPaletteHandler.moc"
