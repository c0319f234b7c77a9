#include "childProcess.h"
#include "messageRecorder.h"
#include "palette.h"
#include "testCase.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <sys/stat.h>
#include <type_traits>
#include <unistd.h>

using namespace zorbin_qt_gui;
using table_t = std::vector<unsigned int>;
using keyed_t = std::map<std::string, unsigned int>;

static_assert(!std::is_copy_constructible<palette_t>::value, "palettes aren't copied");
static_assert(!std::is_copy_assignable<palette_t>::value, "palettes aren't copied");
static_assert(palette_t::DEPTH_8 == 0 && palette_t::DEPTH_24 == 1, "values that others store");
static_assert(palette_t::SP_BATHY == 0 && palette_t::SP_IMAGERY == 1 &&
                  palette_t::SP_INTENSITY == 2 && palette_t::SP_SIDESCAN == 3 &&
                  palette_t::SP_SUBBOTTOM == 4 && palette_t::SP_WATERCOLUMN == 5,
              "values that others store");

static const table_t t1 = {0xFF000001, 0x80000002};
static const table_t t2 = {0xFF000003};

// A number that the enumeration can hold but doesn't name.
static palette_t::colorDepth_t noDepth(int value)
{
    return static_cast<palette_t::colorDepth_t>(value);
}

static void write(const std::string& fileName, const QByteArray& text)
{
    QFile file(QFile::decodeName(fileName.c_str()));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), qint64(text.size()));
}

static bool exists(const std::string& fileName)
{
    return QFile::exists(QFile::decodeName(fileName.c_str()));
}

// A palette whose only table entry has the given red.
static QByteArray xml(int red)
{
    return "<palette><colorTable depth=\"24\"><color r=\"" + QByteArray::number(red) +
           "\"/></colorTable><keyedColorTable depth=\"24\"><keyedColor key=\"grid\" r=\"" +
           QByteArray::number(red) + "\"/></keyedColorTable></palette>";
}

/// Colour tables and keyed colours for two display depths.
class tst_palette : public testCase_t
{
    Q_OBJECT

protected:
    void setUp() override;

private Q_SLOTS:
    void startsEmpty();
    void servesTheTableOfTheDisplay();
    void servesTheOnlyTableAtBothDepths();
    void keepsTheFirstTableOfADepth();
    void keepsAnEmptyTable();
    void findsKeyedColorsOfBothDepths();
    void overwritesKeyedColors();
    void ordersKeysByTheirBytes();
    void ignoresOtherDepths_data();
    void ignoresOtherDepths();
    void clearsInPlace();
    void clearsATableThatServesTheOtherDepth();
    void handsOutCopies();

    void choosesTheFormatByTheExtension_data();
    void choosesTheFormatByTheExtension();
    void clearsBeforeItLoads_data();
    void clearsBeforeItLoads();
    void loadsTablesOnlyOnce();
    void keepsWhatWasReadBeforeAFault();
    void loadsAfterALoadThatFailed();
    void keepsTablesThatWereLoadedOrSetBeforeALoadThatFails();
    void keepsATableThatWasSetAfterALoadThatFailed();
    void savesOnlyWp_data();
    void savesOnlyWp();
    void failsToSaveToAFullDevice();
    void refusesANameWithAZero();
    void savesAndLoadsBytesAsNames();
    void loadsStandardPalettes_data();
    void loadsStandardPalettes();
    void refusesAnotherStandardPalette();
    void followsTheDepthOfTheScreen_data();
    void followsTheDepthOfTheScreen();

private:
    std::string path(const char* name) const
    {
        return m_directory->filePath(QLatin1String(name)).toStdString();
    }

    std::unique_ptr<QTemporaryDir> m_directory;
};

void tst_palette::setUp()
{
    m_directory = std::make_unique<QTemporaryDir>();
    QVERIFY(m_directory->isValid());
}

void tst_palette::startsEmpty()
{
    const palette_t palette;
    QRgb color = 7;
    QVERIFY(palette.colorTable().empty());
    for (const palette_t::colorDepth_t depth : {palette_t::DEPTH_8, palette_t::DEPTH_24}) {
        QVERIFY(palette.colorTable(depth).empty());
        QVERIFY(palette.keyedColor(depth).empty());
    }
    QVERIFY(!palette.keyedColor("grid", color));
    QCOMPARE(color, 7U);
}

void tst_palette::servesTheTableOfTheDisplay()
{
    palette_t palette;
    palette.setColorTable(t1, palette_t::DEPTH_8);
    palette.setColorTable(t2, palette_t::DEPTH_24);
    QCOMPARE(palette.colorTable(), t2);
    QCOMPARE(palette.colorTable(palette_t::DEPTH_8), t1);
    QCOMPARE(palette.colorTable(palette_t::DEPTH_24), t2);
}

void tst_palette::servesTheOnlyTableAtBothDepths()
{
    palette_t only24;
    only24.setColorTable(t1, palette_t::DEPTH_24);
    QCOMPARE(only24.colorTable(), t1);
    QVERIFY(only24.colorTable(palette_t::DEPTH_8).empty());

    palette_t only8;
    only8.setColorTable(t1, palette_t::DEPTH_8);
    QCOMPARE(only8.colorTable(), t1);
    QVERIFY(only8.colorTable(palette_t::DEPTH_24).empty());
}

void tst_palette::keepsTheFirstTableOfADepth()
{
    palette_t palette;
    palette.setColorTable(t1, palette_t::DEPTH_8);
    palette.setColorTable(t2, palette_t::DEPTH_8);
    QCOMPARE(palette.colorTable(palette_t::DEPTH_8), t1);
    QCOMPARE(palette.colorTable(), t1);
}

void tst_palette::keepsAnEmptyTable()
{
    palette_t palette;
    palette.setColorTable({}, palette_t::DEPTH_24);
    palette.setColorTable(t1, palette_t::DEPTH_24);
    palette.setColorTable(t2, palette_t::DEPTH_8);
    QVERIFY(palette.colorTable().empty());
    QVERIFY(palette.colorTable(palette_t::DEPTH_24).empty());
}

void tst_palette::findsKeyedColorsOfBothDepths()
{
    palette_t palette;
    palette.setKeyedColor("a", 0x00000001, palette_t::DEPTH_8);
    palette.setKeyedColor("b", 0xFF000002, palette_t::DEPTH_8);
    palette.setKeyedColor("b", 0xFF000003, palette_t::DEPTH_24);
    palette.setKeyedColor("c", 0xFF000004, palette_t::DEPTH_24);
    QRgb color = 0;
    QVERIFY(palette.keyedColor("a", color));
    QCOMPARE(color, 0x00000001U);
    QVERIFY(palette.keyedColor("b", color));
    QCOMPARE(color, 0xFF000003U);
    QVERIFY(palette.keyedColor("c", color));
    QCOMPARE(color, 0xFF000004U);
    QVERIFY(!palette.keyedColor("A", color));
    QCOMPARE(color, 0xFF000004U);
    QCOMPARE(palette.keyedColor(palette_t::DEPTH_24),
             (keyed_t{{"b", 0xFF000003}, {"c", 0xFF000004}}));
}

void tst_palette::overwritesKeyedColors()
{
    palette_t palette;
    palette.setKeyedColor("", 1, palette_t::DEPTH_8);
    palette.setKeyedColor("", 2, palette_t::DEPTH_8);
    QCOMPARE(palette.keyedColor(palette_t::DEPTH_8), (keyed_t{{"", 2}}));
}

void tst_palette::ordersKeysByTheirBytes()
{
    palette_t palette;
    for (const char* key : {"\xE9", "a", "B", "aa", "~"})
        palette.setKeyedColor(key, 1, palette_t::DEPTH_8);
    std::vector<std::string> keys;
    for (const auto& entry : palette.keyedColor(palette_t::DEPTH_8))
        keys.push_back(entry.first);
    QCOMPARE(keys, (std::vector<std::string>{"B", "a", "aa", "~", "\xE9"}));
}

void tst_palette::ignoresOtherDepths_data()
{
    QTest::addColumn<int>("depth");
    QTest::newRow("2") << 2;
    QTest::newRow("-1") << -1;
    QTest::newRow("24") << 24;
    QTest::newRow("greatest") << 2147483647;
}

void tst_palette::ignoresOtherDepths()
{
    QFETCH(int, depth);
    palette_t palette;
    palette.setColorTable(t1, noDepth(depth));
    palette.setKeyedColor("a", 1, noDepth(depth));
    QVERIFY(palette.colorTable().empty());
    QVERIFY(palette.colorTable(noDepth(depth)).empty());
    QVERIFY(palette.keyedColor(noDepth(depth)).empty());
    QVERIFY(palette.keyedColor(palette_t::DEPTH_8).empty());
    QVERIFY(palette.keyedColor(palette_t::DEPTH_24).empty());
}

void tst_palette::clearsInPlace()
{
    palette_t palette;
    palette.clear();
    palette.setColorTable(t1, palette_t::DEPTH_24);
    palette.setKeyedColor("a", 1, palette_t::DEPTH_8);
    palette.setKeyedColor("a", 1, palette_t::DEPTH_24);
    palette.clear();
    palette.clear();
    QVERIFY(palette.colorTable().empty());
    QVERIFY(palette.keyedColor(palette_t::DEPTH_8).empty());
    QVERIFY(palette.keyedColor(palette_t::DEPTH_24).empty());
    palette.setColorTable(t2, palette_t::DEPTH_24); // the empty one stays
    QVERIFY(palette.colorTable(palette_t::DEPTH_24).empty());
    palette.setColorTable(t2, palette_t::DEPTH_8); // none was set
    QCOMPARE(palette.colorTable(palette_t::DEPTH_8), t2);
    QVERIFY(palette.colorTable().empty());
}

void tst_palette::clearsATableThatServesTheOtherDepth()
{
    palette_t palette;
    palette.setColorTable(t1, palette_t::DEPTH_8);
    palette.clear();
    QVERIFY(palette.colorTable().empty());
    QVERIFY(palette.colorTable(palette_t::DEPTH_8).empty());
    palette.setColorTable(t2, palette_t::DEPTH_24);
    QCOMPARE(palette.colorTable(), t2);
}

void tst_palette::handsOutCopies()
{
    palette_t palette;
    table_t table = t1;
    palette.setColorTable(table, palette_t::DEPTH_24);
    table.clear();
    palette.colorTable().clear();
    palette.colorTable(palette_t::DEPTH_24).clear();
    QCOMPARE(palette.colorTable(), t1);
}

void tst_palette::choosesTheFormatByTheExtension_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("isXml");
    QTest::addColumn<bool>("isJsp");
    QTest::newRow(".wp") << QByteArray("a.wp") << true << false;
    QTest::newRow(".WP") << QByteArray("a.WP") << true << false;
    QTest::newRow(".xml") << QByteArray("a.xml") << true << false;
    QTest::newRow(".Xml") << QByteArray("a.Xml") << true << false;
    QTest::newRow(".jsp") << QByteArray("a.jsp") << false << true;
    QTest::newRow(".JSP") << QByteArray("a.JSP") << false << true;
    QTest::newRow("extension only") << QByteArray(".wp") << true << false;
    QTest::newRow("two dots") << QByteArray("a.jsp.wp") << true << false;
    QTest::newRow("two dots at once") << QByteArray("a..wp") << true << false;
    QTest::newRow("last extension counts") << QByteArray("a.wp.txt") << false << false;
    QTest::newRow(".txt") << QByteArray("a.txt") << false << false;
    QTest::newRow("blank behind") << QByteArray("a.wp ") << false << false;
    QTest::newRow("dot at the end") << QByteArray("a.wp.") << false << false;
    QTest::newRow("no dot") << QByteArray("wp") << false << false;
    QTest::newRow("letters beyond ASCII") << QByteArray("a.w\xC3\x9F") << false << false;
}

void tst_palette::choosesTheFormatByTheExtension()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, isXml);
    QFETCH(bool, isJsp);
    // Names count from their last dot on, wherever it is, so there must be none before.
    const std::string directory = "/tmp/tst_palette" + std::to_string(getpid());
    QCOMPARE(mkdir(directory.c_str(), 0700), 0);
    const std::string fileName = directory + '/' + name.toStdString();
    write(fileName, xml(5));
    palette_t fromXml;
    const bool isXmlLoaded = fromXml.load(fileName);
    write(fileName, "0 6 0 0");
    const messageRecorder_t messages;
    palette_t fromJsp;
    const bool isJspLoaded = fromJsp.load(fileName);
    QVERIFY(QFile::remove(QFile::decodeName(fileName.c_str())));
    QCOMPARE(rmdir(directory.c_str()), 0);

    QCOMPARE(isXmlLoaded, isXml || isJsp); // any text is an empty table to JSP
    QCOMPARE(fromXml.colorTable(), isXml ? table_t{0xFF050000} : table_t());
    QCOMPARE(isJspLoaded, isJsp);
    QCOMPARE(fromJsp.colorTable(), isJsp ? table_t{0xFF060000} : table_t());
    QCOMPARE(messages.texts().size(), isXml ? 1 : 0);
}

void tst_palette::clearsBeforeItLoads_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no dot") << QByteArray("nodot");
    QTest::newRow("other extension") << QByteArray("a.txt");
    QTest::newRow("missing XML") << QByteArray("/missing/a.wp");
    QTest::newRow("missing JSP") << QByteArray("/missing/a.jsp");
}

void tst_palette::clearsBeforeItLoads()
{
    QFETCH(QByteArray, name);
    const messageRecorder_t messages;
    palette_t palette;
    palette.setColorTable(t1, palette_t::DEPTH_24);
    palette.setKeyedColor("a", 1, palette_t::DEPTH_8);
    QVERIFY(!palette.load(name.toStdString()));
    QVERIFY(palette.colorTable().empty());
    QVERIFY(palette.keyedColor(palette_t::DEPTH_8).empty());
    QCOMPARE(messages.texts(), QStringList());
}

void tst_palette::loadsTablesOnlyOnce()
{
    write(path("a.wp"), xml(5));
    write(path("b.wp"), xml(6));
    palette_t palette;
    QVERIFY(palette.load(path("a.wp")));
    QCOMPARE(palette.colorTable(), table_t{0xFF050000});
    QVERIFY(palette.load(path("b.wp")));
    QVERIFY(palette.colorTable().empty());
    QCOMPARE(palette.keyedColor(palette_t::DEPTH_24), (keyed_t{{"grid", 0xFF060000}}));
}

void tst_palette::keepsWhatWasReadBeforeAFault()
{
    write(path("a.wp"), xml(5).replace("key=\"grid\"", "key=\"\""));
    palette_t palette;
    QVERIFY(!palette.load(path("a.wp")));
    QCOMPARE(palette.colorTable(), table_t{0xFF050000});
}

// Its tables aren't loaded, although they can be seen.
void tst_palette::loadsAfterALoadThatFailed()
{
    write(path("bad.wp"), xml(5).replace("key=\"grid\"", "key=\"\""));
    write(path("bad8.wp"), xml(6).replace("depth=\"24\"", "depth=\"8\"").replace("grid", ""));
    write(path("good.wp"), xml(7));
    write(path("good.jsp"), "0 8 0 0");
    const QList<QByteArray> failures = {"bad.wp", "bad8.wp", "none.wp", "none.txt"};
    for (const QByteArray& good : {QByteArray("good.wp"), QByteArray("good.jsp")}) {
        for (const QByteArray& first : failures) {
            for (const QByteArray& second : failures) {
                palette_t palette;
                QVERIFY(!palette.load(path(first)));
                QVERIFY(!palette.load(path(second)));
                palette.clear();
                QVERIFY(palette.load(path(good)));
                QCOMPARE(palette.colorTable(),
                         table_t{good == "good.wp" ? 0xFF070000U : 0xFF080000U});
                QVERIFY(palette.colorTable(palette_t::DEPTH_8).empty());
                palette.setColorTable(t1, palette_t::DEPTH_8); // none was set
                QCOMPARE(palette.colorTable(palette_t::DEPTH_8), t1);
            }
        }
    }
}

void tst_palette::keepsTablesThatWereLoadedOrSetBeforeALoadThatFails()
{
    write(path("bad.wp"), xml(5).replace("key=\"grid\"", "key=\"\""));
    write(path("good.wp"), xml(7));
    palette_t loaded;
    QVERIFY(loaded.load(path("good.wp")));
    QVERIFY(!loaded.load(path("bad.wp")));
    QVERIFY(loaded.colorTable().empty());
    QVERIFY(loaded.load(path("good.wp")));
    QVERIFY(loaded.colorTable().empty());

    palette_t set;
    set.setColorTable(t1, palette_t::DEPTH_24);
    QVERIFY(!set.load(path("bad.wp")));
    QVERIFY(set.load(path("good.wp")));
    QVERIFY(set.colorTable().empty());
}

void tst_palette::keepsATableThatWasSetAfterALoadThatFailed()
{
    write(path("good.wp"), xml(7));
    palette_t palette;
    QVERIFY(!palette.load(path("none.wp")));
    palette.setColorTable(t1, palette_t::DEPTH_24);
    QCOMPARE(palette.colorTable(), t1);
    QVERIFY(palette.load(path("good.wp")));
    QVERIFY(palette.colorTable().empty()); // as without the first load
}

void tst_palette::savesOnlyWp_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("isSaved");
    QTest::newRow(".wp") << QByteArray("a.wp") << true;
    QTest::newRow(".Wp") << QByteArray("a.Wp") << true;
    QTest::newRow(".xml") << QByteArray("a.xml") << false;
    QTest::newRow("xml") << QByteArray("xml") << false;
    QTest::newRow(".jsp") << QByteArray("a.jsp") << false;
    QTest::newRow(".txt") << QByteArray("a.txt") << false;
    QTest::newRow("no extension") << QByteArray("a") << false;
    QTest::newRow("missing directory") << QByteArray("missing/a.wp") << false;
}

void tst_palette::savesOnlyWp()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, isSaved);
    palette_t palette;
    palette.setColorTable({0xFF102030}, palette_t::DEPTH_24);
    QCOMPARE(palette.save(path(name.constData())), isSaved);
    QCOMPARE(exists(path(name.constData())), isSaved);
    QVERIFY(!palette.save(name.contains('.') ? "" : name.toStdString()));
    if (!isSaved)
        return;
    palette_t again;
    QVERIFY(again.load(path(name.constData())));
    QCOMPARE(again.colorTable(palette_t::DEPTH_24), table_t{0xFF103020});
}

void tst_palette::failsToSaveToAFullDevice()
{
    QCOMPARE(symlink("/dev/full", path("a.wp").c_str()), 0);
    QVERIFY(!palette_t().save(path("a.wp")));
}

void tst_palette::refusesANameWithAZero()
{
    write(path("a.wp"), xml(5));
    write(path("a.jsp"), "0 6 0 0");
    const std::string zero(1, '\0');
    for (const std::string& name : {path("a.wp") + zero + ".wp", path("a.wp") + zero + ".xml",
                                    path("a.jsp") + zero + ".jsp", zero + ".wp"}) {
        palette_t palette;
        QVERIFY(!palette.load(name));
        QVERIFY(!palette.save(name));
    }
    QVERIFY(!palette_t().save(path("new.wp") + zero + ".wp"));
    QVERIFY(!exists(path("new.wp")));
    palette_t palette;
    QVERIFY(palette.load(path("a.wp")));
    QCOMPARE(palette.colorTable(), table_t{0xFF050000});
}

void tst_palette::savesAndLoadsBytesAsNames()
{
    const std::string fileName = path("") + "\xE9.wp";
    palette_t palette;
    palette.setColorTable({0xFF112233}, palette_t::DEPTH_8);
    QVERIFY(palette.save(fileName));
    QCOMPARE(access(fileName.c_str(), R_OK), 0);
    palette_t again;
    QVERIFY(again.load(fileName));
    QCOMPARE(again.colorTable(palette_t::DEPTH_8), table_t{0xFF113322});
}

void tst_palette::loadsStandardPalettes_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("bathymetry") << 0 << QByteArray("bathy.wp");
    QTest::newRow("imagery") << 1 << QByteArray("imagery.wp");
    QTest::newRow("intensity") << 2 << QByteArray("intensity.wp");
    QTest::newRow("sidescan") << 3 << QByteArray("sidescan.wp");
    QTest::newRow("sub-bottom") << 4 << QByteArray("subbottom.wp");
    QTest::newRow("water column") << 5 << QByteArray("watercolumn.wp");
}

void tst_palette::loadsStandardPalettes()
{
    QFETCH(int, which);
    QFETCH(QByteArray, name);
    qputenv("ZORBIN_QT_RESOURCE_DIR", QFile::encodeName(m_directory->path()));
    QCOMPARE(mkdir(path("palette").c_str(), 0755), 0);
    palette_t missing;
    QVERIFY(!missing.load(static_cast<palette_t::standardPalette_t>(which)));
    write(path("palette/") + name.toStdString(), xml(which + 10));
    palette_t palette;
    QVERIFY(palette.load(static_cast<palette_t::standardPalette_t>(which)));
    QCOMPARE(palette.colorTable(), table_t{0xFF000000U | static_cast<unsigned>(which + 10) << 16U});
    qunsetenv("ZORBIN_QT_RESOURCE_DIR");
}

void tst_palette::refusesAnotherStandardPalette()
{
    for (const int which : {6, -1, 2147483647}) {
        palette_t palette;
        palette.setColorTable(t1, palette_t::DEPTH_24);
        palette.setKeyedColor("a", 1, palette_t::DEPTH_8);
        QVERIFY(!palette.load(static_cast<palette_t::standardPalette_t>(which)));
        QVERIFY(palette.colorTable().empty());
        QVERIFY(palette.keyedColor(palette_t::DEPTH_8).empty());
    }
}

// Says which of the tables and keyed colours for the two depths a palette serves on this display.
static int tellDepth()
{
    palette_t both;
    both.setColorTable({8}, palette_t::DEPTH_8);
    both.setColorTable({24}, palette_t::DEPTH_24);
    both.setKeyedColor("both", 8, palette_t::DEPTH_8);
    both.setKeyedColor("both", 24, palette_t::DEPTH_24);
    both.setKeyedColor("only 8", 8, palette_t::DEPTH_8);
    both.setKeyedColor("only 24", 24, palette_t::DEPTH_24);
    palette_t only24;
    only24.setColorTable({24}, palette_t::DEPTH_24);
    palette_t only8;
    only8.setColorTable({8}, palette_t::DEPTH_8);
    qInfo("tables: %u, %u, %u", both.colorTable().at(0), only8.colorTable().at(0),
          only24.colorTable().at(0));
    for (const char* key : {"both", "only 8", "only 24"}) {
        QRgb color = 0;
        const bool isFound = both.keyedColor(key, color);
        qInfo("%s: %d, %u", key, isFound, color);
    }
    palette_t withEmpty; // an empty table is one, too
    withEmpty.setColorTable({}, palette_t::DEPTH_8);
    withEmpty.setColorTable({24}, palette_t::DEPTH_24);
    qInfo("with an empty table for 8: %d", static_cast<int>(withEmpty.colorTable().size()));
    return 0;
}

void tst_palette::followsTheDepthOfTheScreen_data()
{
    QTest::addColumn<int>("bits");
    QTest::addColumn<QStringList>("wanted");
    QTest::newRow("16 bits") << 16
                             << QStringList{"info: tables: 8, 8, 24", "info: both: 1, 8",
                                            "info: only 8: 1, 8", "info: only 24: 0, 0",
                                            "info: with an empty table for 8: 0"};
    QTest::newRow("24 bits") << 24
                             << QStringList{"info: tables: 24, 8, 24", "info: both: 1, 24",
                                            "info: only 8: 1, 8", "info: only 24: 1, 24",
                                            "info: with an empty table for 8: 1"};
}

void tst_palette::followsTheDepthOfTheScreen()
{
    QFETCH(int, bits);
    // A display of its own; the server finds a free number and says so once it takes clients.
    QProcess server;
    server.start(QStringLiteral("Xvfb"),
                 {"-displayfd", "1", "-screen", "0", QStringLiteral("640x480x%1").arg(bits),
                  "-nolisten", "tcp"});
    QVERIFY2(server.waitForReadyRead(), qPrintable(server.errorString()));
    const QString display = QLatin1Char(':') + QString::fromLatin1(server.readLine()).trimmed();
    const childOutcome_t outcome =
        runChild(QStringLiteral("depth"),
                 {QStringLiteral("DISPLAY=") + display, QStringLiteral("QT_QPA_PLATFORM=xcb")});
    server.terminate();
    QVERIFY(server.waitForFinished());
    QVERIFY(!outcome.crashed);
    QTEST(outcome.said, "wanted");
}

int main(int argc, char** argv)
{
    tst_palette tests;
    return runTestsOrScenario(argc, argv, tests, {{QStringLiteral("depth"), tellDepth}});
}
#include "tst_palette.moc"
