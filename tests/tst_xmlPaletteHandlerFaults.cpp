#include "childProcess.h"
#include "messageRecorder.h"
#include "palette.h"
#include "paletteFiles.h"
#include "plainPalette.h"
#include "xmlPaletteHandler.h"

#include <QTemporaryDir>
#include <algorithm>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace palette_file_tests;
using namespace zorbin_qt_gui;

static QByteArray nested(int levels)
{
    return QByteArray("<a>").repeated(levels) + QByteArray("</a>").repeated(levels);
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
    const auto withDefaults = [](int count, const QByteArray& content) {
        return "<!DOCTYPE palette [<!ATTLIST a" +
               attributes(count).replace("=\"\"", " CDATA \"x\"") + ">]>" +
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
    if (what == QLatin1String("1000 defaults in each of 800000 elements"))
        return withDefaults(1000, QByteArray("<a/>").repeated(800000));
    if (what == QLatin1String("10 defaults in each of 800000 elements"))
        return withDefaults(10, QByteArray("<a/>").repeated(800000));
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

/// Which files the reader of palettes in the XML format refuses, and what it says of them.
class tst_xmlPaletteHandlerFaults : public paletteFileTestCase_t
{
    Q_OBJECT

private Q_SLOTS:
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
};

void tst_xmlPaletteHandlerFaults::reportsFaults_data()
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

void tst_xmlPaletteHandlerFaults::reportsFaults()
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

void tst_xmlPaletteHandlerFaults::reportsTheEndWhereverAFileIsCut()
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

void tst_xmlPaletteHandlerFaults::reportsAFaultInALargeFile()
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

void tst_xmlPaletteHandlerFaults::refusesWhatIsNoRegularFile_data()
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

void tst_xmlPaletteHandlerFaults::refusesWhatIsNoRegularFile()
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

void tst_xmlPaletteHandlerFaults::refusesAnUnreadableFile()
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

void tst_xmlPaletteHandlerFaults::refusesLargeFiles()
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

void tst_xmlPaletteHandlerFaults::refusesDeepNesting()
{
    const messageRecorder_t messages;
    palette_t palette;
    QVERIFY(load(documentOf(emptyTables + nested(4999)), palette)); // the root is a level, too
    QVERIFY(!load(documentOf(emptyTables + nested(5000)), palette));
    QCOMPARE(messages.texts(), QStringList{"palette_t::load:  more than 5000 levels of elements"});
}

// That is a fault to the parser of Qt 6 alone.
void tst_xmlPaletteHandlerFaults::countsLevelsBehindAnUnknownEntity()
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

void tst_xmlPaletteHandlerFaults::readsNoOtherFile()
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

void tst_xmlPaletteHandlerFaults::refusesTooMuch_data()
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
    QTest::newRow("1000 defaults in each of 800000 elements") << (isQt6 ? declarations : none);
    QTest::newRow("10 defaults in each of 800000 elements") << none;
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

void tst_xmlPaletteHandlerFaults::refusesTooMuch()
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

int main(int argc, char** argv)
{
    tst_xmlPaletteHandlerFaults tests;
    return runTestsOrScenario(argc, argv, tests, {{QStringLiteral("hostile"), loadHostile}});
}
#include "tst_xmlPaletteHandlerFaults.moc"
