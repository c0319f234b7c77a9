#include "childProcess.h"
#include "messageRecorder.h"
#include "palette.h"
#include "xmlPaletteHandler.h"

#include <QDomDocument>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>
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

// Files that are meant to cost much time or memory, in the largest size that is read at all.
static QByteArray hostile(const QString& what)
{
    constexpr int limit = 16 * 1024 * 1024;
    const auto filledWith = [](const QByteArray& piece) {
        return documentOf(emptyTables + piece.repeated((limit - 200) / piece.size()));
    };
    const auto withEntity = [](const QByteArray& value, const QByteArray& content) {
        return "<!DOCTYPE palette [<!ENTITY e \"" + value + "\">]>" +
               documentOf(emptyTables + content);
    };
    if (what == QLatin1String("elements"))
        return filledWith("<a/>");
    if (what == QLatin1String("attributes"))
        return filledWith("<a a=\"\" b=\"\" c=\"\"/>");
    if (what == QLatin1String("texts and instructions"))
        return filledWith("x<?a?>");
    if (what == QLatin1String("just enough nodes"))
        return documentOf(emptyTables + QByteArray("<a a=\"\" b=\"\" c=\"\"/>").repeated(199000));
    if (what == QLatin1String("nested a million deep"))
        return documentOf(emptyTables + nested(1000000));
    if (what == QLatin1String("nested a million deep, never closed"))
        return documentOf(emptyTables + QByteArray("<a>").repeated(1000000));
    if (what == QLatin1String("nested deep behind a fault"))
        return documentOf(emptyTables + "\x01" + nested(1000000));
    if (what == QLatin1String("nested deep behind a fault, seemingly closed"))
        return documentOf(emptyTables + "\x01" + QByteArray("<a b=\"/>\">").repeated(100000));
    if (what == QLatin1String("nested deep in UTF-7, as told by what is no declaration"))
        return "<?xml-x encoding=\"UTF-7\"?><a>" + QByteArray("+ADw-a+AD4-").repeated(100000) +
               "</a>";
    if (what == QLatin1String("attributes of one element")) {
        QByteArray element = "<a";
        for (int i = 0; i < 1000000; ++i)
            element += " a" + QByteArray::number(i, 36) + "=\"\"";
        return documentOf(emptyTables + element + "/>");
    }
    if (what == QLatin1String("entity in an entity in an entity")) {
        QByteArray entities = "<!ENTITY e0 \"lol\">";
        for (int i = 1; i < 10; ++i)
            entities += "<!ENTITY e" + QByteArray::number(i) + " \"" +
                        ("&e" + QByteArray::number(i - 1) + ";").repeated(10) + "\">";
        return "<!DOCTYPE palette [" + entities + "]>" + documentOf(emptyTables + "&e9;");
    }
    if (what == QLatin1String("entity of 4000 characters, 5 million times"))
        return withEntity(QByteArray(4000, 'x'), QByteArray("&e;").repeated(5000000));
    if (what == QLatin1String("entity of 4000 characters, 4000 times"))
        return withEntity(QByteArray(4000, 'x'), QByteArray("&e;").repeated(4000));
    if (what == QLatin1String("entity of 1000 elements, 4000 times"))
        return withEntity(QByteArray("<a/>").repeated(1000), QByteArray("&e;").repeated(4000));
    if (what == QLatin1String("entities"))
        return "<!DOCTYPE palette [" + QByteArray("<!ENTITY e \"\">").repeated(1000000) + "]>" +
               documentOf(emptyTables);
    if (what == QLatin1String("parameter entity of 4000 blanks, many times"))
        return "<!DOCTYPE palette [<!ENTITY % p \"" + QByteArray(4000, ' ') + "\">" +
               QByteArray("%p;").repeated(3000) + "]>" + documentOf(emptyTables);
    return {};
}

/// The reader and the writer of palettes in the XML format.
class tst_xmlPaletteHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
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

    void reportsFaults_data();
    void reportsFaults();
    void reportsTheEndWhereverAFileIsCut();
    void reportsAFaultInALargeFile();
    void refusesWhatIsNoRegularFile_data();
    void refusesWhatIsNoRegularFile();
    void refusesAnUnreadableFile();
    void refusesLargeFiles();
    void refusesDeepNesting();
    void refusesNestingThatGoesOnBehindAFault();
    void readsNoOtherFile();
    void refusesTooMuch_data();
    void refusesTooMuch();

    void writesAnEmptyPalette();
    void writesEverything();
    void writesNoTableThatWasNotSet();
    void escapesKeys();
    void losesControlCharactersOfKeys();
    void exchangesGreenAndBlueOfTables();
    void mergesKeyedColors();
    void writesAKeyThatCannotBeRead();
    void replacesALongerFile();
    void writesLargeTables();
    void failsToWriteWhereItCannot_data();
    void failsToWriteWhereItCannot();
    void failsToWriteAReadOnlyFile();

private:
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

void tst_xmlPaletteHandler::init()
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

void tst_xmlPaletteHandler::replacesIncorrectlyEncodedCharacters()
{
    palette_t palette;
    QVERIFY(load(documentOf("<colorTable/><keyedColorTable><keyedColor key=\"a\xE9\"/>"
                            "</keyedColorTable>"),
                 palette));
    QCOMPARE(palette.keyedColor(palette_t::DEPTH_8), (keyed_t{{"a?", 0xFF000000}}));
}

void tst_xmlPaletteHandler::reportsFaults_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("message");
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    QTest::newRow("empty") << QByteArray()
                           << "palette_t::load:  Premature end of document. on line 1, column 0";
    QTest::newRow("blank") << QByteArray("\n \n")
                           << "palette_t::load:  Premature end of document. on line 3, column 0";
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

// What the parser of the tree says itself.
static QString faultOf(const QByteArray& text)
{
    QString fault;
    int line = 0;
    int column = 0;
    QDomDocument().setContent(QString::fromUtf8(text), &fault, &line, &column);
    return QStringLiteral("palette_t::load:  %1 on line %2, column %3")
        .arg(fault)
        .arg(line)
        .arg(column);
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
    constexpr int limit = 16 * 1024 * 1024;
    const QByteArray text = documentOf(emptyTables);
    palette_t palette;
    QVERIFY(load(text + QByteArray(limit - text.size(), '\n'), palette));
    const messageRecorder_t messages;
    QVERIFY(!load(text + QByteArray(limit - text.size() + 1, '\n'), palette));
    QCOMPARE(truncate(path("a.wp").c_str(), 100 * 1024 * 1024), 0);
    QVERIFY(!xmlPaletteHandler_t().load(path("a.wp"), &palette));
    QCOMPARE(messages.texts(), QStringList());
}

void tst_xmlPaletteHandler::refusesDeepNesting()
{
    const messageRecorder_t messages;
    palette_t palette;
    QVERIFY(load(documentOf(emptyTables + nested(4999)), palette)); // the root is a level, too
    QVERIFY(!load(documentOf(emptyTables + nested(5000)), palette));
    QCOMPARE(messages.texts(), QStringList());
}

// The parser that counts levels stops at an entity that isn't declared; the one that makes the tree
// of Qt 5 goes on.
void tst_xmlPaletteHandler::refusesNestingThatGoesOnBehindAFault()
{
    const auto withFault = [](int levelsBefore, int levelsBehind) {
        return documentOf(emptyTables + QByteArray("<a>").repeated(levelsBefore) + "&none;" +
                          nested(levelsBehind) + QByteArray("</a>").repeated(levelsBefore));
    };
    const messageRecorder_t messages;
    palette_t palette;
    const bool goesOn = QT_VERSION < QT_VERSION_CHECK(6, 0, 0);
    QCOMPARE(load(withFault(2500, 2499), palette), goesOn);
    QVERIFY(!load(withFault(2500, 2500), palette));
    QCOMPARE(messages.texts().size(), goesOn ? 1 : 2);
    QVERIFY(messages.texts().last().contains(QStringLiteral("Entity 'none' not declared.")));
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
    QTest::addColumn<bool>("isLoaded");
    QTest::newRow("elements") << false;
    QTest::newRow("attributes") << false;
    QTest::newRow("texts and instructions") << false;
    QTest::newRow("just enough nodes") << true;
    QTest::newRow("nested a million deep") << false;
    QTest::newRow("nested a million deep, never closed") << false;
    QTest::newRow("nested deep behind a fault") << false;
    QTest::newRow("nested deep behind a fault, seemingly closed") << false;
    QTest::newRow("nested deep in UTF-7, as told by what is no declaration") << false;
    QTest::newRow("attributes of one element") << false;
    QTest::newRow("entity in an entity in an entity") << false;
    QTest::newRow("entity of 4000 characters, 5 million times") << false;
    QTest::newRow("entity of 4000 characters, 4000 times") << true;
    QTest::newRow("entity of 1000 elements, 4000 times") << false;
    QTest::newRow("entities") << false;
    QTest::newRow("parameter entity of 4000 blanks, many times") << true;
}

// Loads a hostile file in a process of its own, so that its time and memory are its own, too.
static int loadHostile()
{
    QTemporaryDir directory;
    const std::string fileName = directory.filePath(QStringLiteral("a.wp")).toStdString();
    write(fileName, hostile(qEnvironmentVariable("HOSTILE_FILE")));
    QElapsedTimer timer;
    timer.start();
    palette_t palette;
    const bool isLoaded = xmlPaletteHandler_t().load(fileName, &palette);
    const qint64 elapsed = timer.elapsed();
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    qInfo("%d ms, %d MiB", static_cast<int>(elapsed), static_cast<int>(usage.ru_maxrss / 1024));
    if (usage.ru_maxrss > 1024 * 1024)
        return 2;
    return isLoaded ? 1 : 0;
}

void tst_xmlPaletteHandler::refusesTooMuch()
{
    QFETCH(bool, isLoaded);
    const childOutcome_t outcome = runChild(
        QStringLiteral("hostile"), {QLatin1String("HOSTILE_FILE=") + QTest::currentDataTag()});
    qInfo("%s", qPrintable(outcome.said.isEmpty() ? QString() : outcome.said.last()));
    QVERIFY(!outcome.crashed);
    QCOMPARE(outcome.exitCode, isLoaded ? 1 : 0);
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

void tst_xmlPaletteHandler::losesControlCharactersOfKeys()
{
    palette_t palette;
    palette.setKeyedColor(std::string("a\0\x01\x1F"
                                      "b\x7F",
                                      6),
                          0xFF010203, palette_t::DEPTH_8);
    QVERIFY(xmlPaletteHandler_t().save(path("a.wp"), &palette));
    palette_t again;
    QVERIFY(xmlPaletteHandler_t().load(path("a.wp"), &again));
    QCOMPARE(again.keyedColor(palette_t::DEPTH_8), (keyed_t{{"ab\x7F", 0xFF010203}}));
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
    return runTestsOrScenario(argc, argv, tests, {{QStringLiteral("hostile"), loadHostile}});
}
#include "tst_xmlPaletteHandler.moc"
