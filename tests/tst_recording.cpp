#include "randomNumbers.h"
#include "recording.h"
#include "recordingReader.h"
#include "testCase.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <cmath>

using namespace survey_console;

namespace {

const double LINE_START = 1406851200.0; // 2014-08-01 00:00:00 UTC
const char STAMP[] = "2014-08-01T00:00:10.250000Z ";

// The sentence with this body and its checksum.
QByteArray sentence(const QByteArray& body)
{
    int sum = 0;
    for (const char c : body)
        sum ^= c;
    return '$' + body + '*' + QByteArray::number(sum, 16).rightJustified(2, '0').toUpper();
}

QByteArray stamped(const QByteArray& body)
{
    return STAMP + sentence(body);
}

QByteArray stampedAt(int second, const QByteArray& body)
{
    return "2014-08-01T00:00:" + QByteArray::number(second).rightJustified(2, '0') + "Z " +
           sentence(body);
}

// "lines used unused bad"
QString countsText(const lineCounts_t& counts)
{
    return QStringLiteral("%1 %2 %3 %4")
        .arg(counts.lines)
        .arg(counts.used)
        .arg(counts.unused)
        .arg(counts.bad);
}

QString dataFile(const char* name)
{
    return QStringLiteral(EXAMPLE_DATA "/") + name;
}

// "time:value" of each sample, the times after the line's start.
QStringList samplesText(const recording_t& recording, channelId_t id)
{
    QStringList texts;
    for (const sample_t& sample : recording.channel(id).samples)
        texts += QStringLiteral("%1:%2").arg(sample.time - LINE_START).arg(sample.value);
    return texts;
}

bool isInOrder(const recording_t& recording)
{
    for (int id = 0; id < CHANNEL_COUNT; ++id) {
        double last = -HUGE_VAL;
        for (const sample_t& sample : recording.channel(static_cast<channelId_t>(id)).samples) {
            if (!(sample.time > last) || !std::isfinite(sample.time) ||
                !std::isfinite(sample.value))
                return false;
            last = sample.time;
        }
    }
    return true;
}

} // namespace

class tst_recording : public testCase_t
{
    Q_OBJECT
private Q_SLOTS:
    void readsTheValueOfASentence_data();
    void readsTheValueOfASentence();
    void readsThePositionOfASentence_data();
    void readsThePositionOfASentence();
    void countsALineAsBad_data();
    void countsALineAsBad();
    void countsALineAsUnused_data();
    void countsALineAsUnused();
    void takesTheFieldsThatAreNotEmpty();
    void takesNothingFromAMalformedSentence();
    void acceptsEveryLineEnd_data();
    void acceptsEveryLineEnd();
    void countsAnOverlongLineOnce();
    void keepsToTheFirstSourceOfAChannel();
    void dropsASecondSampleAtTheSameTime();
    void refusesTimesOfReceptionOutOfOrder_data();
    void refusesTimesOfReceptionOutOfOrder();
    void takesTimesFromSentencesWithoutReception();
    void goesOnPastMidnight();
    void isNotTurnedBackByALateSentence();
    void learnsTheDateLater();
    void derivesRatesFromTenSecondsOfTrack();
    void derivesNoRateAcrossAnInterruption();
    void derivesNoCourseWithoutWay();
    void readsTheShipsRecording();
    void readsTheBoatsRecording();
    void survivesRandomDamage();
    void explainsWhyAFileCannotBeReplayed_data();
    void explainsWhyAFileCannotBeReplayed();
    void explainsAMissingFile();
    void anEmptyRecordingStartsAndEndsAtZero();
    void findsTheNewestSample_data();
    void findsTheNewestSample();
    void gapThresholdFollowsTheMedianStep_data();
    void gapThresholdFollowsTheMedianStep();
    void unwrapsAngles_data();
    void unwrapsAngles();
};

void tst_recording::readsTheValueOfASentence_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("id");
    QTest::addColumn<double>("value");
    QTest::newRow("VTG, course") << QByteArray("INVTG,215.11,T,239.79,M,9.1,N,16.9,K,A")
                                 << int(CHANNEL_COURSE) << 215.11;
    QTest::newRow("VTG, speed") << QByteArray("INVTG,215.11,T,239.79,M,9.1,N,16.9,K,A")
                                << int(CHANNEL_SPEED) << 9.1;
    QTest::newRow("HDT of a gyrocompass")
        << QByteArray("HEHDT,218.53,T") << int(CHANNEL_GYRO_HEADING) << 218.53;
    QTest::newRow("HDT of another sensor")
        << QByteArray("INHDT,218.26,T") << int(CHANNEL_HEADING) << 218.26;
    QTest::newRow("DPT") << QByteArray("KIDPT,4674.70,8.62,12000.0") << int(CHANNEL_DEPTH)
                         << 4674.70;
    QTest::newRow("DBT") << QByteArray("IIDBT,034.25,f,010.44,M,005.64,F") << int(CHANNEL_DEPTH)
                         << 10.44;
    QTest::newRow("PSXN,23, roll")
        << QByteArray("PSXN,23,0.35,-1.74,218.26,0.58") << int(CHANNEL_ROLL) << 0.35;
    QTest::newRow("PSXN,23, pitch")
        << QByteArray("PSXN,23,0.35,-1.74,218.26,0.58") << int(CHANNEL_PITCH) << -1.74;
    QTest::newRow("PSXN,23, heading")
        << QByteArray("PSXN,23,0.35,-1.74,218.26,0.58") << int(CHANNEL_HEADING) << 218.26;
    QTest::newRow("PSXN,23, heave")
        << QByteArray("PSXN,23,0.35,-1.74,218.26,0.58") << int(CHANNEL_HEAVE) << 0.58;
    QTest::newRow("north as 0") << QByteArray("HEHDT,0,T") << int(CHANNEL_GYRO_HEADING) << 0.0;
    QTest::newRow("north as 360") << QByteArray("HEHDT,360.0,T") << int(CHANNEL_GYRO_HEADING)
                                  << 360.0;
}

void tst_recording::readsTheValueOfASentence()
{
    QFETCH(QByteArray, body);
    QFETCH(int, id);
    QFETCH(double, value);
    recordingReader_t reader;
    reader.addLine(stamped(body));
    QCOMPARE(countsText(reader.counts()), QStringLiteral("1 1 0 0"));
    const recording_t recording = reader.takeRecording();
    const channel_t& channel = recording.channel(static_cast<channelId_t>(id));
    QCOMPARE(channel.samples.size(), std::size_t(1));
    QCOMPARE(channel.samples[0].time, LINE_START + 10.25);
    QCOMPARE(channel.samples[0].value, value);
    QCOMPARE(channel.source, QString::fromLatin1(body.left(body.indexOf(','))));
    QVERIFY(recording.isDated());
}

void tst_recording::readsThePositionOfASentence_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("GGA") << QByteArray(
        "INGGA,000000.16,2200.110899,S,01756.359432,W,1,12,0.7,-2.76,M,4.67,M,,");
    QTest::newRow("GLL") << QByteArray("GPGLL,2200.110899,S,01756.359432,W,000000,A,D");
    QTest::newRow("RMC") << QByteArray(
        "INRMC,000000.16,A,2200.110899,S,01756.359432,W,9.1,215.11,010814,24.7,W,A");
}

void tst_recording::readsThePositionOfASentence()
{
    QFETCH(QByteArray, body);
    recordingReader_t reader;
    reader.addLine(stamped(body));
    QCOMPARE(countsText(reader.counts()), QStringLiteral("1 1 0 0"));
    const recording_t recording = reader.takeRecording();
    QCOMPARE(recording.fixes().size(), std::size_t(1));
    QCOMPARE(recording.fixes()[0].time, LINE_START + 10.25);
    // 22 + 0.110899 / 60 and 17 + 56.359432 / 60 degrees
    QVERIFY(std::fabs(recording.fixes()[0].position.latitude() + 22.00184832) < 1e-8);
    QVERIFY(std::fabs(recording.fixes()[0].position.longitude() + 17.93932387) < 1e-8);
}

void tst_recording::countsALineAsBad_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("no sentence") << QByteArray("hello");
    QTest::newRow("a stamp alone") << QByteArray("2014-08-01T00:00:10.250000Z");
    QTest::newRow("a stamp and something") << QByteArray("2014-08-01T00:00:10.250000Z HEHDT");
    QTest::newRow("dollar alone") << QByteArray("$");
    QTest::newRow("wrong checksum") << STAMP + QByteArray("$HEHDT,218.53,T*13");
    QTest::newRow("checksum of one digit") << STAMP + QByteArray("$HEHDT,218.53,T*1");
    QTest::newRow("checksum of three digits") << STAMP + QByteArray("$HEHDT,218.53,T*012");
    QTest::newRow("checksum is no number") << STAMP + QByteArray("$HEHDT,218.53,T*zz");
    QTest::newRow("cut within the number") << STAMP + QByteArray("$HEHDT,21");
    QTest::newRow("cut before the checksum") << STAMP + QByteArray("$HEHDT,218.53,T*");
    QTest::newRow("wrong checksum, position")
        << STAMP + QByteArray("$GPGLL,6005.071,N,02332.346,E,095559,A,D*44");
    QTest::newRow("wrong checksum, unknown kind") << STAMP + QByteArray("$PSXN,20,1,0,0,0*3B");
    QTest::newRow("binary") << QByteArray("\x01\x80\xff\x7f$HE\x02", 8);
    QTest::newRow("binary in a sentence") << STAMP + QByteArray("$HEHDT,\xff\x01,T*12");
    QTest::newRow("null byte in a sentence") << STAMP + QByteArray("$HEHDT,2\0,T*12", 15);
    QTest::newRow("no number") << stamped("HEHDT,abc,T");
    QTest::newRow("NaN") << stamped("KIDPT,nan,8.62,12000.0");
    QTest::newRow("infinite") << stamped("KIDPT,inf,8.62,12000.0");
    QTest::newRow("beyond double") << stamped("KIDPT,1e999,8.62,12000.0");
    QTest::newRow("negative depth") << stamped("KIDPT,-0.1,8.62,12000.0");
    QTest::newRow("heading beyond a turn") << stamped("HEHDT,360.1,T");
    QTest::newRow("negative heading") << stamped("HEHDT,-0.1,T");
    QTest::newRow("too few fields") << stamped("INVTG,215.11,T,239.79,M");
    QTest::newRow("stamp without zone") << "2014-08-01T00:00:10.25 " + sentence("HEHDT,1,T");
    QTest::newRow("stamp of no day") << "2014-02-30T00:00:10.25Z " + sentence("HEHDT,1,T");
    QTest::newRow("stamp's fraction") << "2014-08-01T00:00:10.2x5Z " + sentence("HEHDT,1,T");
    QTest::newRow("stamp's negative fraction")
        << "2014-08-01T00:00:10-0.5Z " + sentence("HEHDT,1,T");
    QTest::newRow("stamp's long fraction") << "2014-08-01T00:00:10123Z " + sentence("HEHDT,1,T");
}

void tst_recording::countsALineAsBad()
{
    QFETCH(QByteArray, line);
    recordingReader_t reader;
    reader.addLine(line);
    QCOMPARE(countsText(reader.counts()), QStringLiteral("1 0 0 1"));
    QVERIFY(reader.takeRecording().isEmpty());
}

void tst_recording::countsALineAsUnused_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("empty heading") << STAMP + QByteArray("$IIHDT,,T*0C");
    QTest::newRow("empty course and speed") << stamped("INVTG,,T,,M,,N,,K,N");
    QTest::newRow("unknown kind") << stamped("INXDR,C,19.52,C,TempAir");
    QTest::newRow("unknown kind without checksum")
        << STAMP + QByteArray("$PUHAW,UVH,-4.87,-6.04,219.2");
    QTest::newRow("other PSXN") << STAMP + QByteArray("$PSXN,20,1,0,0,0*3A");
    QTest::newRow("position without a fix") << stamped("GPGLL,6005.071,N,02332.346,E,095559,V,N");
    QTest::newRow("position that says nothing") << stamped("GPGLL,hello,world");
    QTest::newRow("time") << STAMP + QByteArray("$INZDA,000000.17,01,08,2014,,*7E");
    QTest::newRow("value before any time") << QByteArray("$HEHDT,218.53,T*12");
}

void tst_recording::countsALineAsUnused()
{
    QFETCH(QByteArray, line);
    recordingReader_t reader;
    reader.addLine(line);
    QCOMPARE(countsText(reader.counts()), QStringLiteral("1 0 1 0"));
    QVERIFY(reader.takeRecording().isEmpty());
}

void tst_recording::takesTheFieldsThatAreNotEmpty()
{
    recordingReader_t reader;
    reader.addLine(stamped("INVTG,,T,,M,9.1,N,16.9,K,A"));
    QCOMPARE(countsText(reader.counts()), QStringLiteral("1 1 0 0"));
    const recording_t recording = reader.takeRecording();
    QCOMPARE(samplesText(recording, CHANNEL_SPEED), QStringList{"10.25:9.1"});
    QCOMPARE(samplesText(recording, CHANNEL_COURSE), QStringList());
}

void tst_recording::takesNothingFromAMalformedSentence()
{
    recordingReader_t reader;
    reader.addLine(stamped("PSXN,23,0.35,-1.74,218.26,0..58"));
    QCOMPARE(countsText(reader.counts()), QStringLiteral("1 0 0 1"));
    QVERIFY(reader.takeRecording().isEmpty());
}

void tst_recording::acceptsEveryLineEnd_data()
{
    QTest::addColumn<QByteArray>("text");
    const QByteArray first = stampedAt(1, "HEHDT,1,T");
    const QByteArray second = stampedAt(2, "HEHDT,2,T");
    QTest::newRow("LF") << first + '\n' + second + '\n';
    QTest::newRow("CR LF") << first + "\r\n" + second + "\r\n";
    QTest::newRow("none at the end") << first + '\n' + second;
    QTest::newRow("blank lines") << "\n\r\n" + first + "\n  \n\n" + second + "\n\n";
}

void tst_recording::acceptsEveryLineEnd()
{
    QFETCH(QByteArray, text);
    QBuffer buffer(&text);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    recordingReader_t reader;
    reader.addLines(&buffer);
    QCOMPARE(countsText(reader.counts()), QStringLiteral("2 2 0 0"));
    QCOMPARE(samplesText(reader.takeRecording(), CHANNEL_GYRO_HEADING),
             (QStringList{"1:1", "2:2"}));
}

void tst_recording::countsAnOverlongLineOnce()
{
    QByteArray text =
        QByteArray(5000, 'x') + '\n' + stamped("HEHDT,1,T") + '\n' + QByteArray(5000, 'y');
    QBuffer buffer(&text);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    recordingReader_t reader;
    reader.addLines(&buffer);
    QCOMPARE(countsText(reader.counts()), QStringLiteral("3 1 0 2"));
}

void tst_recording::keepsToTheFirstSourceOfAChannel()
{
    recordingReader_t reader;
    reader.addLine(stampedAt(1, "INHDT,100,T"));
    reader.addLine(stampedAt(2, "GPHDT,200,T"));
    reader.addLine(stampedAt(3, "INHDT,101,T"));
    QCOMPARE(countsText(reader.counts()), QStringLiteral("3 2 1 0"));
    QCOMPARE(samplesText(reader.takeRecording(), CHANNEL_HEADING), (QStringList{"1:100", "3:101"}));
}

void tst_recording::dropsASecondSampleAtTheSameTime()
{
    recordingReader_t reader;
    reader.addLine(stampedAt(1, "INHDT,100,T"));
    reader.addLine(stampedAt(1, "INHDT,101,T"));
    QCOMPARE(countsText(reader.counts()), QStringLiteral("2 1 1 0"));
    QCOMPARE(samplesText(reader.takeRecording(), CHANNEL_HEADING), QStringList{"1:100"});
}

void tst_recording::refusesTimesOfReceptionOutOfOrder_data()
{
    QTest::addColumn<QByteArray>("stamp");
    QTest::newRow("a microsecond back") << QByteArray("2014-08-01T00:00:04.999999Z ");
    QTest::newRow("a year back") << QByteArray("2013-08-01T00:00:05Z ");
    QTest::newRow("a damaged year") << QByteArray("2914-08-01T00:00:05Z ");
    QTest::newRow("a day and a second ahead") << QByteArray("2014-08-02T00:00:06Z ");
}

void tst_recording::refusesTimesOfReceptionOutOfOrder()
{
    QFETCH(QByteArray, stamp);
    recordingReader_t reader;
    reader.addLine(stampedAt(5, "HEHDT,1,T"));
    reader.addLine(stamp + sentence("HEHDT,2,T"));
    reader.addLine(stampedAt(7, "HEHDT,3,T"));
    QCOMPARE(countsText(reader.counts()), QStringLiteral("3 2 0 1"));
    QCOMPARE(samplesText(reader.takeRecording(), CHANNEL_GYRO_HEADING),
             (QStringList{"5:1", "7:3"}));
}

void tst_recording::takesTimesFromSentencesWithoutReception()
{
    recordingReader_t reader;
    reader.addLine(sentence("HEHDT,1,T")); // before the first time
    reader.addLine(sentence("GPZDA,095559,,,,00,"));
    reader.addLine(sentence("HEHDT,2,T"));
    reader.addLine(sentence("GPGLL,6005.071,N,02332.346,E,095601,A,D"));
    reader.addLine(sentence("HEHDT,3,T"));
    const recording_t recording = reader.takeRecording();
    QVERIFY(!recording.isDated());
    const std::vector<sample_t>& samples = recording.channel(CHANNEL_GYRO_HEADING).samples;
    QCOMPARE(samples.size(), std::size_t(2));
    QCOMPARE(samples[0].time, 35759.0); // 9 h 55 min 59 s
    QCOMPARE(samples[0].value, 2.0);
    QCOMPARE(samples[1].time, 35761.0);
    QCOMPARE(recording.fixes().at(0).time, 35761.0);
}

void tst_recording::goesOnPastMidnight()
{
    recordingReader_t reader;
    reader.addLine(sentence("GPZDA,235959,,,,00,"));
    reader.addLine(sentence("HEHDT,1,T"));
    reader.addLine(sentence("GPZDA,000001,,,,00,"));
    reader.addLine(sentence("HEHDT,2,T"));
    const recording_t recording = reader.takeRecording();
    QCOMPARE(recording.startTime(), 86399.0);
    QCOMPARE(recording.endTime(), 86401.0);
}

void tst_recording::isNotTurnedBackByALateSentence()
{
    recordingReader_t reader;
    reader.addLine(sentence("GPZDA,000001,,,,00,"));
    reader.addLine(sentence("HEHDT,1,T"));
    reader.addLine(sentence("GPZDA,235959,,,,00,")); // of the day before
    reader.addLine(sentence("HEHDT,2,T"));
    reader.addLine(sentence("GPZDA,000003,,,,00,"));
    reader.addLine(sentence("HEHDT,3,T"));
    const recording_t recording = reader.takeRecording();
    QCOMPARE(recording.startTime(), 1.0);
    QCOMPARE(recording.endTime(), 3.0);
    QCOMPARE(recording.channel(CHANNEL_GYRO_HEADING).samples.size(), std::size_t(2));
}

void tst_recording::learnsTheDateLater()
{
    recordingReader_t reader;
    reader.addLine(sentence("GPZDA,235959,,,,00,"));
    reader.addLine(sentence("HEHDT,1,T"));
    reader.addLine(sentence("INZDA,000001.00,01,08,2014,,"));
    reader.addLine(sentence("HEHDT,2,T"));
    const recording_t recording = reader.takeRecording();
    QVERIFY(recording.isDated());
    QCOMPARE(samplesText(recording, CHANNEL_GYRO_HEADING), (QStringList{"-1:1", "1:2"}));
}

void tst_recording::derivesRatesFromTenSecondsOfTrack()
{
    recording_t recording;
    // 0.005' of latitude a second: 9.266 m/s on the sphere of 6371 km, 18.01 kn.
    for (int second = 0; second <= 20; ++second)
        QVERIFY(recording.addFix(
            "INGGA", {LINE_START + second, QGeoCoordinate(60.0 + second * 0.005 / 60.0, 20.0)}));
    recording.deriveRates();
    const std::vector<sample_t>& speeds = recording.channel(CHANNEL_SPEED_MADE_GOOD).samples;
    QCOMPARE(speeds.size(), std::size_t(16)); // from the fifth second on
    QCOMPARE(speeds.front().time, LINE_START + 5.0);
    QCOMPARE(speeds.back().time, LINE_START + 20.0);
    for (const sample_t& speed : speeds)
        QVERIFY2(std::fabs(speed.value - 18.01) < 0.01, qPrintable(QString::number(speed.value)));
    const std::vector<sample_t>& courses = recording.channel(CHANNEL_COURSE_MADE_GOOD).samples;
    QCOMPARE(courses.size(), std::size_t(16));
    for (const sample_t& course : courses)
        QVERIFY(std::fabs(std::remainder(course.value, 360.0)) < 1e-6); // north
    QCOMPARE(recording.channel(CHANNEL_SPEED_MADE_GOOD).source, QStringLiteral("INGGA"));
}

void tst_recording::derivesNoRateAcrossAnInterruption()
{
    recording_t recording;
    for (const int second : {0, 2, 4, 6, 30, 32, 34})
        recording.addFix("INGGA",
                         {LINE_START + second, QGeoCoordinate(60.0 + second * 1e-4, 20.0)});
    recording.deriveRates();
    const std::vector<sample_t>& speeds = recording.channel(CHANNEL_SPEED_MADE_GOOD).samples;
    QCOMPARE(speeds.size(), std::size_t(1));
    QCOMPARE(speeds[0].time, LINE_START + 6.0);
}

void tst_recording::derivesNoCourseWithoutWay()
{
    recording_t recording;
    for (const int second : {0, 5, 10})
        recording.addFix("INGGA", {LINE_START + second, QGeoCoordinate(60.0, 20.0)});
    recording.deriveRates();
    QCOMPARE(samplesText(recording, CHANNEL_SPEED_MADE_GOOD), (QStringList{"5:0", "10:0"}));
    QCOMPARE(samplesText(recording, CHANNEL_COURSE_MADE_GOOD), QStringList());
}

void tst_recording::readsTheShipsRecording()
{
    const readResult_t result = readRecording(dataFile("nbp1406-underway/underway-10min.log"));
    QCOMPARE(result.error, QString());
    // Used: 625 each of GGA, VTG, HDT and PSXN,23, 3122 gyro headings, 40 soundings. Unused: 625
    // each of ZDA, RMC, PSXN,20 and PSXN,22, 523 of the profiler.
    QCOMPARE(countsText(result.counts), QStringLiteral("8685 5662 3023 0"));
    const recording_t& recording = result.recording;
    QVERIFY(recording.isDated());
    QCOMPARE(recording.startTime(), LINE_START + 0.183);
    QCOMPARE(recording.endTime(), LINE_START + 624.525);
    QCOMPARE(recording.fixes().size(), std::size_t(625));
    struct expected_t
    {
        channelId_t id;
        std::size_t count;
        double first;
        double last;
    };
    const expected_t expected[] = {
        {CHANNEL_DEPTH, 40, 4674.70, 4551.82},  {CHANNEL_GYRO_HEADING, 3122, 218.53, 217.26},
        {CHANNEL_HEADING, 625, 218.26, 217.60}, {CHANNEL_COURSE, 625, 215.11, 221.72},
        {CHANNEL_SPEED, 625, 9.1, 10.2},        {CHANNEL_ROLL, 625, 0.35, 0.84},
        {CHANNEL_PITCH, 625, -1.74, 3.18},      {CHANNEL_HEAVE, 625, 0.58, -1.49},
    };
    for (const expected_t& channel : expected) {
        const std::vector<sample_t>& samples = recording.channel(channel.id).samples;
        QCOMPARE(samples.size(), channel.count);
        QCOMPARE(samples.front().value, channel.first);
        QCOMPARE(samples.back().value, channel.last);
    }
    QCOMPARE(newestAt(recording.channel(CHANNEL_DEPTH).samples, LINE_START + 300.0)->value,
             4912.17);
    QCOMPARE(newestAt(recording.channel(CHANNEL_HEAVE).samples, LINE_START + 2.0)->value, 0.86);

    // Nine of the 39 steps between soundings are 22.93 s or more, the others 22.32 s or less.
    const std::vector<sample_t>& depths = recording.channel(CHANNEL_DEPTH).samples;
    int gaps = 0;
    for (std::size_t i = 1; i < depths.size(); ++i)
        gaps += depths[i].time - depths[i - 1].time > gapThreshold(depths) ? 1 : 0;
    QCOMPARE(gaps, 9);

    // What the track gives agrees with what the receiver says, over the whole line.
    double received = 0.0;
    double madeGood = 0.0;
    const std::vector<sample_t>& speeds = recording.channel(CHANNEL_SPEED).samples;
    const std::vector<sample_t>& rates = recording.channel(CHANNEL_SPEED_MADE_GOOD).samples;
    QCOMPARE(rates.size(), std::size_t(620));
    for (const sample_t& sample : speeds)
        received += sample.value / static_cast<double>(speeds.size());
    for (const sample_t& sample : rates)
        madeGood += sample.value / static_cast<double>(rates.size());
    QVERIFY2(std::fabs(received - madeGood) < 0.2,
             qPrintable(QStringLiteral("%1 %2").arg(received).arg(madeGood)));
}

void tst_recording::readsTheBoatsRecording()
{
    const readResult_t result = readRecording(dataFile("plaka-sailing/plaka-10min.log"));
    QCOMPARE(result.error, QString());
    // 300 rounds of 16 sentences. Used: DBT and GLL of each, and VTG, which comes before the time
    // in the first.
    QCOMPARE(countsText(result.counts), QStringLiteral("4800 899 3901 0"));
    const recording_t& recording = result.recording;
    QVERIFY(!recording.isDated());
    QCOMPARE(recording.startTime(), 35759.0); // 09:55:59
    QCOMPARE(recording.endTime(), 36371.0);   // 10:06:11
    QCOMPARE(recording.channel(CHANNEL_DEPTH).samples.front().value, 10.44);
    QCOMPARE(recording.channel(CHANNEL_SPEED).samples.front().value, 5.80);
    QVERIFY(recording.channel(CHANNEL_HEADING).samples.empty()); // always an empty field
    QVERIFY(recording.channel(CHANNEL_GYRO_HEADING).samples.empty());
}

// Any bytes may be damaged, lost or doubled: every line is counted once, and what is kept is in
// order.
void tst_recording::survivesRandomDamage()
{
    QFile file(dataFile("nbp1406-underway/underway-10min.log"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray sound = file.read(100000);
    random_t random(20140801);
    for (int round = 0; round < 50; ++round) {
        QByteArray damaged = sound;
        for (int i = 0; i < 200; ++i) {
            const int at = random.integer(0, static_cast<int>(damaged.size()) - 1);
            switch (random.integer(0, 3)) {
            case 0:
                damaged[at] = static_cast<char>(random.integer(-128, 127));
                break;
            case 1:
                damaged.remove(at, random.integer(1, 300));
                break;
            case 2:
                damaged.insert(at, damaged.mid(at, random.integer(1, 300)));
                break;
            default:
                damaged[at] = '\n';
            }
        }
        QBuffer buffer(&damaged);
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        recordingReader_t reader;
        reader.addLines(&buffer);
        const lineCounts_t counts = reader.counts();
        QCOMPARE(counts.used + counts.unused + counts.bad, counts.lines);
        QVERIFY(counts.bad > 0);
        QVERIFY(counts.used > 0);
        const recording_t recording = reader.takeRecording();
        QVERIFY(isInOrder(recording));
        QVERIFY(recording.startTime() >= LINE_START);
    }
}

void tst_recording::explainsWhyAFileCannotBeReplayed_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("error");
    QTest::newRow("empty") << QByteArray() << QStringLiteral("'%1' is empty");
    QTest::newRow("blank lines") << QByteArray("\n\n")
                                 << QStringLiteral(
                                        "'%1' holds nothing to replay: 0 lines, 0 of them damaged");
    QTest::newRow("text") << QByteArray("Dear log,\nwe sailed.\n")
                          << QStringLiteral(
                                 "'%1' holds nothing to replay: 2 lines, 2 of them damaged");
    QTest::newRow("binary") << QByteArray(3000, '\xc3')
                            << QStringLiteral(
                                   "'%1' holds nothing to replay: 1 lines, 1 of them damaged");
    QTest::newRow("nothing of use")
        << QByteArray("$IIHDT,,T*0C\n")
        << QStringLiteral("'%1' holds nothing to replay: 1 lines, 0 of them damaged");
}

void tst_recording::explainsWhyAFileCannotBeReplayed()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, error);
    QTemporaryDir directory;
    const QString path = directory.filePath("line.log");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
    file.close();
    const readResult_t result = readRecording(path);
    QCOMPARE(result.error, error.arg(path));
    QVERIFY(result.recording.isEmpty());
}

void tst_recording::explainsAMissingFile()
{
    QTemporaryDir directory;
    const QString path = directory.filePath("missing.log");
    QCOMPARE(readRecording(path).error,
             QStringLiteral("cannot open '%1': No such file or directory").arg(path));
    QCOMPARE(readRecording(directory.path()).error,
             QStringLiteral("'%1' is not a regular file").arg(directory.path()));
    QCOMPARE(readRecording("/dev/zero").error, QStringLiteral("'/dev/zero' is not a regular file"));
}

void tst_recording::anEmptyRecordingStartsAndEndsAtZero()
{
    const recording_t recording;
    QVERIFY(recording.isEmpty());
    QCOMPARE(recording.startTime(), 0.0);
    QCOMPARE(recording.endTime(), 0.0);
}

void tst_recording::findsTheNewestSample_data()
{
    QTest::addColumn<double>("time");
    QTest::addColumn<double>("value"); // 0: none
    QTest::newRow("before the first") << 0.9 << 0.0;
    QTest::newRow("at the first") << 1.0 << 10.0;
    QTest::newRow("between") << 1.9 << 10.0;
    QTest::newRow("at the last") << 2.0 << 20.0;
    QTest::newRow("after the last") << 99.0 << 20.0;
}

void tst_recording::findsTheNewestSample()
{
    QFETCH(double, time);
    QFETCH(double, value);
    const std::vector<sample_t> samples = {{1.0, 10.0}, {2.0, 20.0}};
    const sample_t* found = newestAt(samples, time);
    QCOMPARE(found ? found->value : 0.0, value);
    QVERIFY(!newestAt(std::vector<sample_t>(), time));
}

void tst_recording::gapThresholdFollowsTheMedianStep_data()
{
    QTest::addColumn<QVector<double>>("times");
    QTest::addColumn<double>("threshold");
    QTest::newRow("none") << QVector<double>() << 0.0;
    QTest::newRow("one") << QVector<double>{5.0} << 0.0;
    QTest::newRow("two") << QVector<double>{5.0, 7.0} << 3.6;
    QTest::newRow("an interruption") << QVector<double>{0.0, 1.0, 2.0, 100.0, 101.0, 102.0} << 1.8;
}

void tst_recording::gapThresholdFollowsTheMedianStep()
{
    QFETCH(QVector<double>, times);
    QFETCH(double, threshold);
    std::vector<sample_t> samples;
    for (const double time : times)
        samples.push_back({time, 0.0});
    QCOMPARE(gapThreshold(samples), threshold);
}

void tst_recording::unwrapsAngles_data()
{
    QTest::addColumn<QVector<double>>("angles");
    QTest::addColumn<double>("near");
    QTest::addColumn<QVector<double>>("wanted");
    using angles_t = QVector<double>;
    QTest::newRow("none") << angles_t() << 0.0 << angles_t();
    QTest::newRow("no jump") << angles_t{10.0, 20.0} << 10.0 << angles_t{10.0, 20.0};
    QTest::newRow("through north to the right")
        << angles_t{350.0, 10.0, 20.0} << 350.0 << angles_t{350.0, 370.0, 380.0};
    QTest::newRow("through north to the left")
        << angles_t{10.0, 350.0, 10.0} << 10.0 << angles_t{10.0, -10.0, 10.0};
    QTest::newRow("twice around") << angles_t{0.0, 120.0, 240.0, 0.0, 120.0, 240.0, 0.0} << 0.0
                                  << angles_t{0.0, 120.0, 240.0, 360.0, 480.0, 600.0, 720.0};
    QTest::newRow("beside another curve") << angles_t{359.0, 1.0} << 2.0 << angles_t{-1.0, 1.0};
}

void tst_recording::unwrapsAngles()
{
    QFETCH(QVector<double>, angles);
    QFETCH(double, near);
    QFETCH(QVector<double>, wanted);
    std::vector<sample_t> samples;
    for (const double angle : angles)
        samples.push_back({static_cast<double>(samples.size()), angle});
    QVector<double> found;
    for (const sample_t& sample : unwrapped(samples, near))
        found.push_back(sample.value);
    QCOMPARE(found, wanted);
}

ZORBIN_TEST_MAIN(tst_recording, QCoreApplication)
#include "tst_recording.moc"
