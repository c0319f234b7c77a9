#include "randomNumbers.h"
#include "sonarRecord.h"
#include "testCase.h"
#include "testFiles.h"
#include "testRecords.h"

#include <QFile>
#include <QTemporaryDir>
#include <cmath>

using namespace survey_console;

namespace {

const double START = 1378847588.0; // 2013-09-10 21:13:08 UTC

// Two pings of three samples each, of 8 bits.
QByteArray picture()
{
    return QByteArray("P5\n3 2\n255\n") + QByteArray("\x00\xff\x80\x01\x02\x03", 6);
}

QByteArray table()
{
    return "ping,time_utc,slant_range_m\n"
           "0,2013-09-10T21:13:08.00Z,30\n"
           "1,2013-09-10T21:13:08.50Z,30\n";
}

// Of an echosounder. The second ping has two samples; a third one but fills its row.
QByteArray echogramTable()
{
    return "ping,time_utc,depth_m,frequency_hz,samples,sample_spacing_m\n"
           "0,2013-09-10T21:13:08.00Z,1.8,200000,3,0.02\n"
           "1,2013-09-10T21:13:08.50Z,2.1,200000,2,0.02\n";
}

} // namespace

class tst_sonarRecord : public testCase_t
{
    Q_OBJECT
private:
    QString write(const QByteArray& picture, const QByteArray& table);
    sonarResult_t read(const QByteArray& picture, const QByteArray& table);
    sonarResult_t readEcho(const QByteArray& picture, const QByteArray& table);

    QTemporaryDir m_directory;

private Q_SLOTS:
    void readsPings();
    void readsSixteenBits();
    void readsTheRecordOfTheExample();
    void skipsComments();
    void leavesOutDamagedPings_data();
    void leavesOutDamagedPings();
    void refusesBadPictures_data();
    void refusesBadPictures();
    void refusesBadTables_data();
    void refusesBadTables();
    void refusesWhatIsNoFile();
    void survivesAnyCut();
    void survivesAnyDamage();
    // of an echosounder
    void readsEchoes();
    void readsEchoesOfSixteenBits();
    void readsTheRiver_data();
    void readsTheRiver();
    void cutsOffWhatFillsARow();
    void leavesOutDamagedEchoes_data();
    void leavesOutDamagedEchoes();
    void keepsEchoesWithoutASoundDepth_data();
    void keepsEchoesWithoutASoundDepth();
    void readsWithoutWhatMayBeMissing();
    void refusesBadTablesOfEchoes_data();
    void refusesBadTablesOfEchoes();
    void survivesAnyDamageToEchoes();
};

// The path of the picture, empty if it can't be written.
QString tst_sonarRecord::write(const QByteArray& picture, const QByteArray& table)
{
    QString path = m_directory.filePath("record.pgm");
    if (!writeFile(path, picture) || !writeFile(m_directory.filePath("record.csv"), table))
        return QString();
    return path;
}

sonarResult_t tst_sonarRecord::read(const QByteArray& picture, const QByteArray& table)
{
    return readSonarRecord(write(picture, table));
}

sonarResult_t tst_sonarRecord::readEcho(const QByteArray& picture, const QByteArray& table)
{
    return readEchogram(write(picture, table));
}

void tst_sonarRecord::readsPings()
{
    const sonarResult_t result = read(picture(), table());
    QCOMPARE(result.error, QString());
    const sonarRecord_t& record = result.record;
    QCOMPARE(record.extent.begin, -30.0);
    QCOMPARE(record.extent.end, 30.0);
    QCOMPARE(record.extent.count, 3);
    QCOMPARE(record.fullLevel, 0.0F);
    QVERIFY(std::isnan(record.pings[0].depth));
    QCOMPARE(record.damaged, 0);
    QCOMPARE(record.pings.size(), std::size_t(2));
    QCOMPARE(record.pings[0].time, START);
    QCOMPARE(record.pings[1].time, START + 0.5);
    QCOMPARE(record.pings[0].levels.size(), std::size_t(3));
    QCOMPARE(record.pings[0].levels[0], MIN_LEVEL);
    QCOMPARE(record.pings[0].levels[1], 0.0F);
    QCOMPARE(record.pings[0].levels[2], -5.98663F);  // 20 lg 128/255
    QCOMPARE(record.pings[1].levels[0], -48.13080F); // 20 lg 1/255
}

void tst_sonarRecord::readsSixteenBits()
{
    const sonarResult_t result =
        read(QByteArray("P5\n2 1\n32767\n") + QByteArray("\x40\x00\xff\xff", 4), table());
    QCOMPARE(result.error, QString());
    QCOMPARE(result.record.pings.size(), std::size_t(1));
    QCOMPARE(result.record.pings[0].levels[0], -6.02033F); // 20 lg 16384/32767
    QCOMPARE(result.record.pings[0].levels[1], 0.0F);      // more than the greatest
}

void tst_sonarRecord::readsTheRecordOfTheExample()
{
    const sonarResult_t result = readSonarRecord(sidescanPicture);
    QCOMPARE(result.error, QString());
    QCOMPARE(result.record.pings.size(), std::size_t(461));
    QCOMPARE(result.record.damaged, 0);
    QCOMPARE(result.record.extent.begin, -29.9835);
    QCOMPARE(result.record.extent.end, 29.9835);
    QCOMPARE(result.record.pings.front().time, START);
    QCOMPARE(result.record.pings.front().levels.size(), std::size_t(1024));
}

void tst_sonarRecord::skipsComments()
{
    QByteArray commented = picture();
    commented.replace("P5\n", "P5 # first\n# second\n\n");
    QCOMPARE(read(commented, table()).record.pings.size(), std::size_t(2));
}

void tst_sonarRecord::leavesOutDamagedPings_data()
{
    QTest::addColumn<QByteArray>("pings");
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<int>("whole");
    QTest::addColumn<int>("damaged");
    QTest::newRow("picture cut off") << picture().chopped(1) << table() << 1 << 1;
    QTest::newRow("table cut off")
        << picture() << table().left(table().lastIndexOf("1,2013")) << 1 << 1;
    QTest::newRow("row cut off") << picture() << table().chopped(8) << 1 << 1;
    QTest::newRow("no time") << picture() << table().replace("2013-09-10T21:13:08.00Z", "") << 1
                             << 1;
    QTest::newRow("time without a zone")
        << picture() << table().replace("08.00Z", "08.00") << 1 << 1;
    QTest::newRow("time going back") << picture() << table().replace("08.50Z", "07.50Z") << 1 << 1;
    QTest::newRow("same time twice") << picture() << table().replace("08.50Z", "08.00Z") << 2 << 0;
    QTest::newRow("no range") << picture() << table().replace("Z,30\n1", "Z,\n1") << 1 << 1;
    QTest::newRow("range not a number")
        << picture() << table().replace("Z,30\n1", "Z,nan\n1") << 1 << 1;
    QTest::newRow("another range") << picture() << table().replace("Z,30\n1", "Z,40\n1") << 1 << 1;
    QTest::newRow("more rows than pings") << picture() << table() + "2,,\n" << 2 << 0;
    QTest::newRow("row too long") << picture()
                                  << table().replace("\n1,", "\n" + QByteArray(10000, '1') + ",")
                                  << 1 << 1;
}

void tst_sonarRecord::leavesOutDamagedPings()
{
    QFETCH(QByteArray, pings);
    QFETCH(QByteArray, rows);
    QFETCH(int, whole);
    QFETCH(int, damaged);
    const sonarResult_t result = read(pings, rows);
    QCOMPARE(result.error, QString());
    QCOMPARE(static_cast<int>(result.record.pings.size()), whole);
    QCOMPARE(result.record.damaged, damaged);
}

void tst_sonarRecord::refusesBadPictures_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("P2\n3 2\n255\n1 2 3 4 5 6\n");
    QTest::newRow("magic alone") << QByteArray("P5");
    QTest::newRow("no blank behind the magic") << QByteArray("P53 2\n255\n......");
    QTest::newRow("cut in the header") << QByteArray("P5\n3 2\n25");
    QTest::newRow("endless comment") << QByteArray("P5\n#") + QByteArray(100000, ' ');
    QTest::newRow("endless number") << QByteArray("P5\n") + QByteArray(100000, '1');
    QTest::newRow("no columns") << QByteArray("P5\n0 2\n255\n......");
    QTest::newRow("negative columns") << QByteArray("P5\n-3 2\n255\n......");
    QTest::newRow("too many columns") << QByteArray("P5\n16385 1\n255\n......");
    QTest::newRow("columns that overflow") << QByteArray("P5\n4294967299 2\n255\n......");
    QTest::newRow("too many rows") << QByteArray("P5\n3 100001\n255\n......");
    QTest::newRow("no amplitude") << QByteArray("P5\n3 2\n0\n......");
    QTest::newRow("too great an amplitude") << QByteArray("P5\n3 2\n65536\n......");
}

void tst_sonarRecord::refusesBadPictures()
{
    QFETCH(QByteArray, content);
    const sonarResult_t result = read(content, table());
    QCOMPARE(result.error, QStringLiteral("'%1' is no sonar record: not a binary PGM file")
                               .arg(m_directory.filePath("record.pgm")));
    QVERIFY(result.record.pings.empty());
}

void tst_sonarRecord::refusesBadTables_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("message");
    const QString noTable = QStringLiteral("'%1/record.csv' is no table of pings");
    const QString noPing = QStringLiteral("'%1/record.pgm' holds no whole ping");
    QTest::newRow("empty") << QByteArray() << noTable;
    QTest::newRow("no times") << QByteArray("ping,slant_range_m\n0,30\n") << noTable;
    QTest::newRow("no ranges") << QByteArray("ping,time_utc\n") << noTable;
    QTest::newRow("header too long") << QByteArray(100000, 't') + table() << noTable;
    QTest::newRow("header alone") << QByteArray("time_utc,slant_range_m\n") << noPing;
    QTest::newRow("bytes") << QByteArray("time_utc,slant_range_m\n\x00\xff\xfe\n\n,,,,\n", 34)
                           << noPing;
}

void tst_sonarRecord::refusesBadTables()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    QCOMPARE(read(picture(), content).error, message.arg(m_directory.path()));
}

void tst_sonarRecord::refusesWhatIsNoFile()
{
    const QString missing = m_directory.filePath("missing.pgm");
    QCOMPARE(readSonarRecord(missing).error,
             QStringLiteral("cannot open '%1': No such file or directory").arg(missing));
    QCOMPARE(readSonarRecord(m_directory.path()).error,
             QStringLiteral("'%1' is not a regular file").arg(m_directory.path()));
    const QString alone = m_directory.filePath("alone.pgm");
    QVERIFY(writeFile(alone, picture()));
    QCOMPARE(readSonarRecord(alone).error,
             QStringLiteral("cannot open '%1': No such file or directory")
                 .arg(m_directory.filePath("alone.csv")));
}

void tst_sonarRecord::survivesAnyCut()
{
    for (int length = 0; length < picture().size(); ++length)
        QVERIFY(read(picture().left(length), table()).record.pings.size() < 2);
    for (int length = 0; length < table().size(); ++length) {
        const sonarResult_t result = read(picture(), table().left(length));
        QVERIFY(result.record.pings.size() <= 2);
        QCOMPARE(result.record.pings.empty(), !result.error.isEmpty());
    }
}

void tst_sonarRecord::survivesAnyDamage()
{
    random_t random;
    for (int round = 0; round < 500; ++round) {
        QByteArray damagedPicture = picture();
        QByteArray damagedTable = table();
        for (QByteArray* content : {&damagedPicture, &damagedTable}) {
            const int at = random.integer(0, static_cast<int>(content->size()) - 1);
            (*content)[at] = static_cast<char>(random.integer(0, 255));
        }
        const sonarResult_t result = read(damagedPicture, damagedTable);
        QCOMPARE(result.record.pings.empty(), !result.error.isEmpty());
        for (const ping_t& ping : result.record.pings) {
            QCOMPARE(ping.levels.size(), result.record.pings.front().levels.size());
            for (const float level : ping.levels)
                QVERIFY(level >= MIN_LEVEL && level <= 0.0F);
        }
    }
}

void tst_sonarRecord::readsEchoes()
{
    const sonarResult_t result = readEcho(picture(), echogramTable());
    QCOMPARE(result.error, QString());
    const sonarRecord_t& record = result.record;
    QCOMPARE(record.extent.begin, 0.0);
    QCOMPARE(record.extent.end, 0.06);
    QCOMPARE(record.extent.count, 3);
    QCOMPARE(record.extent.perMetre(), 50.0);
    QCOMPARE(record.fullLevel, 255.0F);
    QCOMPARE(record.frequency, 200000.0);
    QCOMPARE(record.damaged, 0);
    QCOMPARE(record.pings.size(), std::size_t(2));
    QCOMPARE(record.pings[0].time, START);
    QCOMPARE(record.pings[0].depth, 1.8);
    QCOMPARE(record.pings[0].levels, std::vector<float>({0.0F, 255.0F, 128.0F}));
    QCOMPARE(record.pings[1].time, START + 0.5);
    QCOMPARE(record.pings[1].depth, 2.1);
}

void tst_sonarRecord::readsEchoesOfSixteenBits()
{
    const sonarResult_t result = readEcho(
        QByteArray("P5\n3 1\n1000\n") + QByteArray("\x01\x00\x03\xe8\xff\xff", 6), echogramTable());
    QCOMPARE(result.error, QString());
    QCOMPARE(result.record.fullLevel, 1000.0F);
    QCOMPARE(result.record.pings[0].levels,
             std::vector<float>({256.0F, 1000.0F, 1000.0F})); // more than the greatest
}

void tst_sonarRecord::readsTheRiver_data()
{
    QTest::addColumn<int>("kilohertz");
    QTest::addColumn<int>("ping");
    QTest::addColumn<double>("time"); // s after 2013-10-24 23:28:44 UTC
    QTest::addColumn<double>("depth");
    QTest::addColumn<int>("samples");
    QTest::addColumn<int>("sample");
    QTest::addColumn<float>("level");
    // Read off the files by other means.
    QTest::newRow("first") << 200 << 0 << 0.0 << 1.8 << 1479 << 0 << 226.0F;
    QTest::newRow("last sample of the first") << 200 << 0 << 0.0 << 1.8 << 1479 << 1478 << 63.0F;
    QTest::newRow("bottom") << 200 << 600 << 52.06 << 5.8 << 1495 << 310 << 230.0F;
    QTest::newRow("shallow") << 200 << 1150 << 100.215 << 2.4 << 1495 << 77 << 120.0F;
    QTest::newRow("last") << 200 << 1726 << 150.617 << 5.7 << 1550 << 1549 << 50.0F;
    QTest::newRow("83 kHz: first") << 83 << 0 << 0.041 << 1.8 << 1479 << 0 << 255.0F;
    QTest::newRow("83 kHz: middle") << 83 << 900 << 78.394 << 4.9 << 1495 << 250 << 127.0F;
    QTest::newRow("83 kHz: last") << 83 << 1725 << 150.573 << 5.7 << 1550 << 1549 << 77.0F;
}

void tst_sonarRecord::readsTheRiver()
{
    QFETCH(int, kilohertz);
    QFETCH(int, ping);
    QFETCH(double, time);
    QFETCH(double, depth);
    QFETCH(int, samples);
    QFETCH(int, sample);
    QFETCH(float, level);
    const sonarResult_t result = readEchogram(echogramPicture(kilohertz));
    QCOMPARE(result.error, QString());
    QCOMPARE(result.record.pings.size(), std::size_t(kilohertz == 200 ? 1727 : 1726));
    QCOMPARE(result.record.damaged, 0);
    QCOMPARE(result.record.frequency, kilohertz * 1000.0);
    QCOMPARE(result.record.fullLevel, 255.0F);
    QCOMPARE(result.record.extent.end, 1550 * 0.0187);
    const ping_t& echoes = result.record.pings[static_cast<std::size_t>(ping)];
    QCOMPARE(echoes.time, 1382657324.0 + time);
    QCOMPARE(echoes.depth, depth);
    QCOMPARE(static_cast<int>(echoes.levels.size()), samples);
    QCOMPARE(echoes.levels[static_cast<std::size_t>(sample)], level);
}

void tst_sonarRecord::cutsOffWhatFillsARow()
{
    const sonarResult_t result = readEcho(picture(), echogramTable());
    QCOMPARE(result.record.pings[1].levels, std::vector<float>({1.0F, 2.0F})); // 3 fills the row
}

void tst_sonarRecord::leavesOutDamagedEchoes_data()
{
    QTest::addColumn<QByteArray>("pings");
    QTest::addColumn<QByteArray>("rows");
    QTest::newRow("picture cut off") << picture().chopped(1) << echogramTable();
    QTest::newRow("no time") << picture() << echogramTable().replace("2013-09-10T21:13:08.00Z", "");
    QTest::newRow("time going back") << picture() << echogramTable().replace("08.50Z", "07.50Z");
    const auto withSamples = [](const QByteArray& samples) {
        return echogramTable().replace(",2,0.02", "," + samples + ",0.02");
    };
    for (const char* samples : {"", "0", "-1", "4", "1.5", "nan", "4294967298"})
        QTest::addRow("samples '%s'", samples) << picture() << withSamples(samples);
    const auto withSpacing = [](const QByteArray& spacing) {
        return echogramTable().replace(",2,0.02", ",2," + spacing);
    };
    for (const char* spacing : {"", "0", "-0.02", "nan", "inf", "10.1", "0.03"})
        QTest::addRow("spacing '%s'", spacing) << picture() << withSpacing(spacing);
}

void tst_sonarRecord::leavesOutDamagedEchoes()
{
    QFETCH(QByteArray, pings);
    QFETCH(QByteArray, rows);
    const sonarResult_t result = readEcho(pings, rows);
    QCOMPARE(result.error, QString());
    QCOMPARE(result.record.pings.size(), std::size_t(1));
    QCOMPARE(result.record.damaged, 1);
}

void tst_sonarRecord::keepsEchoesWithoutASoundDepth_data()
{
    QTest::addColumn<QByteArray>("depth");
    for (const char* depth : {"", "-0.1", "nan", "inf", "12001", "deep"})
        QTest::addRow("'%s'", depth) << QByteArray(depth);
}

void tst_sonarRecord::keepsEchoesWithoutASoundDepth()
{
    QFETCH(QByteArray, depth);
    const sonarResult_t result =
        readEcho(picture(), echogramTable().replace(",2.1,", "," + depth + ","));
    QCOMPARE(result.record.pings.size(), std::size_t(2));
    QCOMPARE(result.record.damaged, 0);
    QVERIFY(std::isnan(result.record.pings[1].depth));
}

void tst_sonarRecord::readsWithoutWhatMayBeMissing()
{
    const sonarResult_t result =
        readEcho(picture(), "sample_spacing_m,samples,time_utc\n0.02,3,2013-09-10T21:13:08Z\n");
    QCOMPARE(result.error, QString());
    QCOMPARE(result.record.pings.size(), std::size_t(1));
    QCOMPARE(result.record.frequency, 0.0);
    QVERIFY(std::isnan(result.record.pings[0].depth));
}

void tst_sonarRecord::refusesBadTablesOfEchoes_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("of a sidescan") << table();
    for (const char* name : {"time_utc", "samples", "sample_spacing_m"}) {
        QByteArray content = echogramTable();
        const auto header = content.indexOf('\n');
        content = content.left(header).replace(name, "other") + content.mid(header);
        QTest::addRow("no %s", name) << content;
    }
}

void tst_sonarRecord::refusesBadTablesOfEchoes()
{
    QFETCH(QByteArray, content);
    QCOMPARE(readEcho(picture(), content).error,
             QStringLiteral("'%1/record.csv' is no table of pings").arg(m_directory.path()));
}

void tst_sonarRecord::survivesAnyDamageToEchoes()
{
    random_t random;
    for (int round = 0; round < 500; ++round) {
        QByteArray damaged = echogramTable();
        for (int i = random.integer(1, 4); i > 0; --i)
            damaged[random.integer(0, static_cast<int>(damaged.size()) - 1)] =
                static_cast<char>(random.integer(0, 255));
        const sonarResult_t result = readEcho(picture(), damaged);
        QCOMPARE(result.record.pings.empty(), !result.error.isEmpty());
        for (const ping_t& ping : result.record.pings) {
            QVERIFY(!ping.levels.empty() && ping.levels.size() <= 3);
            QVERIFY(result.record.extent.perMetre() > 0.0);
            QVERIFY(std::isnan(ping.depth) || ping.depth >= 0.0);
        }
    }
}

ZORBIN_TEST_MAIN(tst_sonarRecord, QCoreApplication)
#include "tst_sonarRecord.moc"
