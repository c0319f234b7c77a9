#include "jspPaletteHandler.h"
#include "messageRecorder.h"
#include "palette.h"
#include "randomNumbers.h"
#include "testCase.h"

#include <QFile>
#include <QTemporaryDir>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace zorbin_qt_gui;
using table_t = std::vector<unsigned int>;
Q_DECLARE_METATYPE(table_t)

constexpr int maxSize = 64 * 1024 * 1024;

/// The reader of palettes in the JSP format.
class tst_jspPaletteHandler : public testCase_t
{
    Q_OBJECT

protected:
    void setUp() override;

private Q_SLOTS:
    void readsRecords_data();
    void readsRecords();
    void readsMoreThanOneBuffer();
    void setsOnlyThe24BitTable();
    void servesBothDepths();
    void keepsWhatThePaletteHolds();
    void keepsTheTableThatWasSetBefore();
    void refusesWhatIsNoRegularFile_data();
    void refusesWhatIsNoRegularFile();
    void refusesAnUnreadableFile();
    void followsALink();
    void readsANameThatIsNoUtf8();
    void stopsAtTheFirstByteOfASparseFile();
    void readsNumbersAsScanfDoes();
    void refusesLargeFiles();
    void readsAMillionEntries();
    void refusesWhatCannotBeReadToItsEnd();
    void refusesANameWithAZero();
    void readsResources();
    void writesNothing();

private:
    std::string path(const char* name) const
    {
        return m_directory->filePath(QLatin1String(name)).toStdString();
    }
    void write(const std::string& fileName, const QByteArray& text) const;

    std::unique_ptr<QTemporaryDir> m_directory;
};

void tst_jspPaletteHandler::setUp()
{
    m_directory = std::make_unique<QTemporaryDir>();
    QVERIFY(m_directory->isValid());
}

void tst_jspPaletteHandler::write(const std::string& fileName, const QByteArray& text) const
{
    std::FILE* const file = std::fopen(fileName.c_str(), "wb");
    QVERIFY(file != nullptr);
    QCOMPARE(std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), file),
             static_cast<std::size_t>(text.size()));
    QCOMPARE(std::fclose(file), 0);
}

void tst_jspPaletteHandler::readsRecords_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<table_t>("table");

    const table_t none;
    const table_t red = {0xFFFF0000};
    const table_t redBlue = {0xFFFF0000, 0xFF0000FF};
    QTest::newRow("empty") << QByteArray() << none;
    QTest::newRow("white space only") << QByteArray(" \n\t\r\n") << none;
    QTest::newRow("two lines") << QByteArray("0 255 0 0\n1 0 0 255\n") << redBlue;
    QTest::newRow("no line end") << QByteArray("0 255 0 0\n1 0 0 255") << redBlue;
    QTest::newRow("DOS line ends") << QByteArray("0 255 0 0\r\n1 0 0 255\r\n") << redBlue;
    QTest::newRow("one line") << QByteArray("0 255 0 0 1 0 0 255") << redBlue;
    QTest::newRow("white space of all kinds")
        << QByteArray("\v0\t255\n\n0\f0\r1\n0\n0\n255") << redBlue;
    QTest::newRow("any entry numbers") << QByteArray("77 255 0 0\n77 0 0 255") << redBlue;
    QTest::newRow("descending entry numbers") << QByteArray("9 255 0 0\n8 0 0 255") << redBlue;
    QTest::newRow("short last record") << QByteArray("0 255 0 0\n1 0 0 255\n2 10 20\n") << redBlue;
    QTest::newRow("entry number only at the end") << QByteArray("0 255 0 0\n1") << red;
    QTest::newRow("text between") << QByteArray("0 255 0 0\nend\n1 0 0 255\n") << red;
    QTest::newRow("text in a record") << QByteArray("0 255 0 0\n1 0 x 255\n") << red;
    QTest::newRow("text for an entry number") << QByteArray("a 255 0 0\n") << none;
    QTest::newRow("comment") << QByteArray("# red\n0 255 0 0\n") << none;
    QTest::newRow("commas") << QByteArray("0,255,0,0\n") << none;
    QTest::newRow("component of 300") << QByteArray("0 300 256 511") << table_t{0xFF2C00FF};
    QTest::newRow("leading zeros") << QByteArray("0 0010 008 0377") << table_t{0xFF0A0879};
    QTest::newRow("plus signs") << QByteArray("+0 +1 +2 +3") << table_t{0xFF010203};
    QTest::newRow("minus signs") << QByteArray("-5 -1 -2 -256") << table_t{0xFFFFFE00};
    QTest::newRow("hexadecimal") << QByteArray("0 0x10 0 0") << none;
    QTest::newRow("fractions") << QByteArray("0 1.5 2 3") << none;
    QTest::newRow("beyond 32 bits")
        << QByteArray("0 4294967297 8589934594 3") << table_t{0xFF010203};
    QTest::newRow("beyond 64 bits")
        << QByteArray("99999999999999999999 99999999999999999999 18446744073709551616 3")
        << table_t{0xFFFFFF03};
    QTest::newRow("beyond 64 bits, negative")
        << QByteArray("0 -99999999999999999999 0 0") << table_t{0xFFFF0000};
    QTest::newRow("UTF-8 with a byte order mark") << QByteArray("\xEF\xBB\xBF"
                                                                "0 255 0 0")
                                                  << none;
    QTest::newRow("UTF-16") << QByteArray("0\0 \0"
                                          "1\0 \0",
                                          8)
                            << none;
    QTest::newRow("zero byte between") << QByteArray("0 255 0 0\n\0"
                                                     "1 0 0 255",
                                                     20)
                                       << red;
    QTest::newRow("binary") << QByteArray("\x7F"
                                          "ELF\x02\x01\x01\0",
                                          8)
                            << none;
}

void tst_jspPaletteHandler::readsRecords()
{
    QFETCH(QByteArray, text);
    write(path("a.jsp"), text);
    messageRecorder_t messages;
    palette_t palette;
    palette.setColorTable({0xFF000001}, palette_t::DEPTH_8);
    QVERIFY(jspPaletteHandler_t().load(path("a.jsp"), &palette));
    QTEST(palette.colorTable(palette_t::DEPTH_24), "table");
    QTEST(palette.colorTable(), "table"); // also an empty table was set
    QCOMPARE(messages.texts(), QStringList());
}

void tst_jspPaletteHandler::readsMoreThanOneBuffer()
{
    QByteArray text;
    table_t wanted;
    for (unsigned i = 0; i < 65536; ++i) {
        text += QByteArray::number(i) + ' ' + QByteArray::number(i >> 8U) + ' ' +
                QByteArray::number(i & 0xFFU) + " 7\n";
        wanted.push_back(0xFF000007U | i << 8U);
    }
    write(path("a.jsp"), text);
    palette_t palette;
    QVERIFY(jspPaletteHandler_t().load(path("a.jsp"), &palette));
    QCOMPARE(palette.colorTable(palette_t::DEPTH_24), wanted);
}

void tst_jspPaletteHandler::setsOnlyThe24BitTable()
{
    write(path("a.jsp"), "0 1 2 3");
    palette_t palette;
    QVERIFY(jspPaletteHandler_t().load(path("a.jsp"), &palette));
    QCOMPARE(palette.colorTable(palette_t::DEPTH_8), table_t());
    QVERIFY(palette.keyedColor(palette_t::DEPTH_8).empty());
    QVERIFY(palette.keyedColor(palette_t::DEPTH_24).empty());
}

void tst_jspPaletteHandler::servesBothDepths()
{
    write(path("a.jsp"), "0 1 2 3");
    palette_t palette;
    QVERIFY(jspPaletteHandler_t().load(path("a.jsp"), &palette));
    QCOMPARE(palette.colorTable(), table_t{0xFF010203});
}

void tst_jspPaletteHandler::keepsWhatThePaletteHolds()
{
    write(path("a.jsp"), "0 1 2 3");
    palette_t palette;
    palette.setColorTable({0xFF000001}, palette_t::DEPTH_8);
    palette.setKeyedColor("grid", 0xFF000002, palette_t::DEPTH_24);
    QVERIFY(jspPaletteHandler_t().load(path("a.jsp"), &palette));
    QCOMPARE(palette.colorTable(palette_t::DEPTH_8), table_t{0xFF000001});
    QRgb color = 0;
    QVERIFY(palette.keyedColor("grid", color));
    QCOMPARE(color, 0xFF000002U);
}

void tst_jspPaletteHandler::keepsTheTableThatWasSetBefore()
{
    write(path("a.jsp"), "0 1 2 3");
    palette_t palette;
    palette.setColorTable({0xFF000001}, palette_t::DEPTH_24);
    QVERIFY(jspPaletteHandler_t().load(path("a.jsp"), &palette));
    QCOMPARE(palette.colorTable(palette_t::DEPTH_24), table_t{0xFF000001});
}

void tst_jspPaletteHandler::refusesWhatIsNoRegularFile_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("missing") << QByteArray("missing.jsp");
    QTest::newRow("missing directory") << QByteArray("missing/a.jsp");
    QTest::newRow("directory") << QByteArray("directory.jsp");
    QTest::newRow("FIFO without a writer") << QByteArray("fifo.jsp");
    QTest::newRow("socket") << QByteArray("socket.jsp");
    QTest::newRow("link to itself") << QByteArray("loop.jsp");
    QTest::newRow("file as a directory") << QByteArray("file.jsp/a.jsp");
    QTest::newRow("name too long") << QByteArray(300, 'a') + ".jsp";
    QTest::newRow("the directory itself") << QByteArray("");
}

void tst_jspPaletteHandler::refusesWhatIsNoRegularFile()
{
    QFETCH(QByteArray, name);
    write(path("file.jsp"), "0 1 2 3");
    QCOMPARE(mkdir(path("directory.jsp").c_str(), 0755), 0);
    QCOMPARE(mkfifo(path("fifo.jsp").c_str(), 0644), 0);
    QCOMPARE(symlink("loop.jsp", path("loop.jsp").c_str()), 0);
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, path("socket.jsp").c_str(), sizeof address.sun_path);
    QCOMPARE(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);

    messageRecorder_t messages;
    palette_t palette;
    QVERIFY(!jspPaletteHandler_t().load(path(name.constData()), &palette));
    palette.setColorTable({0xFF000001}, palette_t::DEPTH_24); // none was set before
    QCOMPARE(palette.colorTable(), table_t{0xFF000001});
    QCOMPARE(messages.texts(), QStringList());
    close(listener);
}

void tst_jspPaletteHandler::refusesAnUnreadableFile()
{
    write(path("a.jsp"), "0 1 2 3");
    QCOMPARE(chmod(m_directory->path().toLocal8Bit().constData(), 0755), 0);
    const uid_t user = geteuid();
    if (user == 0) // who may read anything
        QCOMPARE(seteuid(65534), 0);
    palette_t palette;
    const bool whenReadable = user != 0 || jspPaletteHandler_t().load(path("a.jsp"), &palette);
    QCOMPARE(seteuid(user), 0);
    QVERIFY(whenReadable);

    QCOMPARE(chmod(path("a.jsp").c_str(), 0), 0);
    if (user == 0)
        QCOMPARE(seteuid(65534), 0);
    const bool whenUnreadable = jspPaletteHandler_t().load(path("a.jsp"), &palette);
    QCOMPARE(seteuid(user), 0);
    QVERIFY(!whenUnreadable);
}

void tst_jspPaletteHandler::followsALink()
{
    write(path("a.jsp"), "0 1 2 3");
    QCOMPARE(symlink("a.jsp", path("link.jsp").c_str()), 0);
    palette_t palette;
    QVERIFY(jspPaletteHandler_t().load(path("link.jsp"), &palette));
    QCOMPARE(palette.colorTable(), table_t{0xFF010203});
}

void tst_jspPaletteHandler::readsANameThatIsNoUtf8()
{
    write(path("") + "\xE9.jsp", "0 1 2 3");
    palette_t palette;
    QVERIFY(jspPaletteHandler_t().load(path("") + "\xE9.jsp", &palette));
    QCOMPARE(palette.colorTable(), table_t{0xFF010203});
}

void tst_jspPaletteHandler::stopsAtTheFirstByteOfASparseFile()
{
    write(path("a.jsp"), {});
    QCOMPARE(truncate(path("a.jsp").c_str(), maxSize), 0);
    palette_t palette;
    QVERIFY(jspPaletteHandler_t().load(path("a.jsp"), &palette));
    QCOMPARE(palette.colorTable(), table_t());
}

// The table that fscanf() makes of a file.
static table_t plainTable(const std::string& fileName)
{
    table_t table;
    std::FILE* const file = std::fopen(fileName.c_str(), "r");
    unsigned red = 0;
    unsigned green = 0;
    unsigned blue = 0;
    while (std::fscanf(file, "%*u %u %u %u", &red, &green, &blue) == 3)
        table.push_back(0xFF000000U | (red & 0xFFU) << 16U | (green & 0xFFU) << 8U |
                        (blue & 0xFFU));
    std::fclose(file);
    return table;
}

void tst_jspPaletteHandler::readsNumbersAsScanfDoes()
{
    const std::vector<QByteArray> pieces = {"0",
                                            "1",
                                            "255",
                                            "256",
                                            "007",
                                            "+8",
                                            "-9",
                                            "4294967297",
                                            "18446744073709551616",
                                            "-99999999999999999999",
                                            "+",
                                            "-",
                                            "+-1",
                                            "0x10",
                                            "1e3",
                                            "1.5",
                                            ",",
                                            "x",
                                            "\xA0",
                                            "\x85",
                                            QByteArray(1, '\0'),
                                            QByteArray(5000, '0') + "3",
                                            QByteArray(5000, '9')};
    const std::vector<QByteArray> blanks = {" ", " ", " ", "\n", "\t", "\r\n", "\v", "\f", ""};
    random_t random;
    for (int i = 0; i < 2000; ++i) {
        QByteArray text;
        for (int count = random.integer(0, 40); count > 0; --count)
            text += (random.chance(0.9) ? QByteArray::number(random.integer(-300, 300))
                                        : random.oneOf(pieces)) +
                    random.oneOf(blanks);
        unlink(path("a.jsp").c_str()); // some file systems take milliseconds to overwrite a file
        write(path("a.jsp"), text);
        palette_t palette;
        QVERIFY(jspPaletteHandler_t().load(path("a.jsp"), &palette));
        QVERIFY2(palette.colorTable() == plainTable(path("a.jsp")), text.constData());
    }
}

void tst_jspPaletteHandler::refusesLargeFiles()
{
    const messageRecorder_t messages;
    palette_t palette;
    write(path("a.jsp"), QByteArray(maxSize + 1, '1'));
    QVERIFY(!jspPaletteHandler_t().load(path("a.jsp"), &palette));
    QCOMPARE(messages.texts(), QStringList("palette_t::load:  more than 64 MiB"));
    palette.setColorTable({0xFF000001}, palette_t::DEPTH_24); // none was set before
    QCOMPARE(palette.colorTable(), table_t{0xFF000001});
    QCOMPARE(truncate(path("a.jsp").c_str(), maxSize), 0); // an entry number of so many digits
    palette_t empty;
    QVERIFY(jspPaletteHandler_t().load(path("a.jsp"), &empty));
    QCOMPARE(empty.colorTable(), table_t());
}

void tst_jspPaletteHandler::readsAMillionEntries()
{
    const QByteArray million = QByteArray("0 1 2 3\n").repeated(1000000);
    write(path("a.jsp"), million + "0 1 2");
    palette_t palette;
    QVERIFY(jspPaletteHandler_t().load(path("a.jsp"), &palette));
    QVERIFY(palette.colorTable() == table_t(1000000, 0xFF010203));
    write(path("b.jsp"), million + "0 1 2 3");
    const messageRecorder_t messages;
    palette_t other;
    QVERIFY(!jspPaletteHandler_t().load(path("b.jsp"), &other));
    QCOMPARE(messages.texts(), QStringList("palette_t::load:  more than 1000000 entries"));
    QCOMPARE(other.colorTable(), table_t());
}

// The memory of a process is a regular file that can be opened but whose first page can't be read.
void tst_jspPaletteHandler::refusesWhatCannotBeReadToItsEnd()
{
    const messageRecorder_t messages;
    palette_t palette;
    QVERIFY(!jspPaletteHandler_t().load("/proc/self/mem", &palette));
    palette.setColorTable({0xFF000001}, palette_t::DEPTH_24); // none was set before
    QCOMPARE(palette.colorTable(), table_t{0xFF000001});
    QCOMPARE(messages.texts(), QStringList());
    QVERIFY(jspPaletteHandler_t().load("/proc/self/statm", &palette)); // has no size
}

void tst_jspPaletteHandler::refusesANameWithAZero()
{
    write(path("a.jsp"), "0 1 2 3");
    palette_t palette;
    QVERIFY(!jspPaletteHandler_t().load(path("a.jsp") + '\0', &palette));
    QVERIFY(!jspPaletteHandler_t().load(path("a.jsp") + '\0' + ".jsp", &palette));
}

void tst_jspPaletteHandler::readsResources()
{
    palette_t palette;
    QVERIFY(jspPaletteHandler_t().load(":/palettes/bathy.wp", &palette));
    QCOMPARE(palette.colorTable(), table_t()); // it isn't in this format
    QVERIFY(!jspPaletteHandler_t().load(":/palettes/none.jsp", &palette));
}

void tst_jspPaletteHandler::writesNothing()
{
    palette_t palette;
    palette.setColorTable({0xFF000001}, palette_t::DEPTH_24);
    QVERIFY(!jspPaletteHandler_t().save(path("a.jsp"), &palette));
    QVERIFY(!QFile::exists(m_directory->filePath(QStringLiteral("a.jsp"))));
    write(path("b.jsp"), "0 1 2 3");
    QVERIFY(!jspPaletteHandler_t().save(path("b.jsp"), &palette));
    QCOMPARE(QFile(m_directory->filePath(QStringLiteral("b.jsp"))).size(), 7);
}

ZORBIN_TEST_MAIN(tst_jspPaletteHandler, QApplication)
#include "tst_jspPaletteHandler.moc"
