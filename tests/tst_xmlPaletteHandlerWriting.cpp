#include "childProcess.h"
#include "messageRecorder.h"
#include "palette.h"
#include "paletteFiles.h"
#include "xmlPaletteHandler.h"

#include <QDomDocument>
#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace palette_file_tests;
using namespace zorbin_qt_gui;

/// The files that the writer of palettes in the XML format makes.
class tst_xmlPaletteHandlerWriting : public paletteFileTestCase_t
{
    Q_OBJECT

private Q_SLOTS:
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
};

void tst_xmlPaletteHandlerWriting::writesAnEmptyPalette()
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

void tst_xmlPaletteHandlerWriting::writesEverything()
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

void tst_xmlPaletteHandlerWriting::writesNoTableThatWasNotSet()
{
    palette_t palette;
    palette.setColorTable({0xFF102030}, palette_t::DEPTH_24);
    QVERIFY(xmlPaletteHandler_t().save(path("a.wp"), &palette));
    QVERIFY(contentOf(path("a.wp")).contains("<colorTable depth=\"8\"/>"));
}

void tst_xmlPaletteHandlerWriting::escapesKeys()
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

void tst_xmlPaletteHandlerWriting::escapesKeysAsTheTreeOfQt()
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

void tst_xmlPaletteHandlerWriting::keepsAllKeysThatTheParserTakes()
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
void tst_xmlPaletteHandlerWriting::refusesKeysThatTheParserRefuses()
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

void tst_xmlPaletteHandlerWriting::exchangesGreenAndBlueOfTables()
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

void tst_xmlPaletteHandlerWriting::mergesKeyedColors()
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

void tst_xmlPaletteHandlerWriting::writesAKeyThatCannotBeRead()
{
    palette_t palette;
    palette.setKeyedColor("", 0xFF010203, palette_t::DEPTH_8);
    QVERIFY(xmlPaletteHandler_t().save(path("a.wp"), &palette));
    palette_t again;
    QVERIFY(!xmlPaletteHandler_t().load(path("a.wp"), &again));
}

void tst_xmlPaletteHandlerWriting::replacesALongerFile()
{
    write(path("a.wp"), QByteArray(100000, 'x'));
    palette_t palette;
    QVERIFY(xmlPaletteHandler_t().save(path("a.wp"), &palette));
    QVERIFY(contentOf(path("a.wp")).endsWith("</palette>\n"));
    QVERIFY(xmlPaletteHandler_t().load(path("a.wp"), &palette));
}

void tst_xmlPaletteHandlerWriting::writesLargeTables()
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
void tst_xmlPaletteHandlerWriting::writesWhatCanBeRead()
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

void tst_xmlPaletteHandlerWriting::refusesANameWithAZero()
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

void tst_xmlPaletteHandlerWriting::keepsTheFormerFileOnAFullDisk()
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

void tst_xmlPaletteHandlerWriting::keepsPermissions()
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

void tst_xmlPaletteHandlerWriting::givesNewFilesTheUsualPermissions()
{
    const mode_t former = umask(027);
    const palette_t palette;
    const bool isSaved = xmlPaletteHandler_t().save(path("a.wp"), &palette);
    umask(former);
    QVERIFY(isSaved);
    QCOMPARE(modeOf(path("a.wp")), 0640U);
}

// Where this process may give files away.
void tst_xmlPaletteHandlerWriting::keepsOwnerAndGroup()
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

void tst_xmlPaletteHandlerWriting::followsLinks()
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

void tst_xmlPaletteHandlerWriting::writesToSearchPaths()
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

void tst_xmlPaletteHandlerWriting::writesInPlaceWhereNoFileCanBeMade()
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
void tst_xmlPaletteHandlerWriting::writesInPlaceWhereTheFileCannotBeReplaced()
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

void tst_xmlPaletteHandlerWriting::writesToWhatIsNoFile()
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

void tst_xmlPaletteHandlerWriting::writesTheLongestNames_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("room for an ending") << 248;
    QTest::newRow("one more") << 249;
    QTest::newRow("longest") << 255;
}

void tst_xmlPaletteHandlerWriting::writesTheLongestNames()
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

void tst_xmlPaletteHandlerWriting::failsToWriteWhereItCannot_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("full device") << QByteArray("full.wp");
    QTest::newRow("FIFO without a reader") << QByteArray("fifo.wp");
    QTest::newRow("missing directory") << QByteArray("missing/a.wp");
    QTest::newRow("directory") << QByteArray("directory.wp");
    QTest::newRow("link to itself") << QByteArray("loop.wp");
}

void tst_xmlPaletteHandlerWriting::failsToWriteWhereItCannot()
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

void tst_xmlPaletteHandlerWriting::failsToWriteAReadOnlyFile()
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
    tst_xmlPaletteHandlerWriting tests;
    return runTestsOrScenario(argc, argv, tests, {{QStringLiteral("full"), saveOnAFullDisk}});
}
#include "tst_xmlPaletteHandlerWriting.moc"
