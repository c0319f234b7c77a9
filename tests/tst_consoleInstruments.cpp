#include "alarmLabel.h"
#include "depthPanel.h"
#include "imageFrame.h"
#include "notices.h"
#include "notifierWidget.h"
#include "recordingEvents.h"
#include "scalableTextWidget.h"
#include "statusLamps.h"
#include "testCase.h"
#include "testWindow.h"
#include "theme.h"
#include "trackPanel.h"

#include <QDoubleSpinBox>
#include <QLabel>
#include <QToolButton>
#include <cmath>

using namespace survey_console;
using zorbin_qt_gui::alarmLabel_t;
using zorbin_qt_gui::imageFrame_t;
using zorbin_qt_gui::notifierWidget_t;

namespace {

const double START = 1406851200.0; // 2014-08-01 00:00:00 UTC

// A sounding every 10 s, 10 m and 5 m more each time; a position a second, going north by 10 m
// each.
recording_t testRecording()
{
    recording_t recording;
    for (int i = 0; i <= 10; ++i)
        recording.add(CHANNEL_DEPTH, "SDDPT", {START + 10.0 * i, 10.0 + 5.0 * i});
    for (int second = 0; second <= 100; ++second)
        recording.addFix("GPGGA",
                         {START + second, QGeoCoordinate(50.0 + 10.0 * second / 111120.0, 10.0)});
    return recording;
}

} // namespace

class tst_consoleInstruments : public testCase_t
{
    Q_OBJECT
private Q_SLOTS:
    void readsTheDepth();
    void depthKeepsItsSize();
    void alarmsInShallowWater();
    void alarmFollowsItsDepth();
    void saysWhenThereIsNoSounding();
    void lampsTellOfPositionAndData();
    void drawsTheTrack();
    void drawsNorthUp();
    void tracksTheVesselWhileHidden();
    void survivesAnOddTrack_data();
    void survivesAnOddTrack();
    void choosesRoundLengths_data();
    void choosesRoundLengths();
    void tellsOfStartAndEnd();
    void tellsOfLongGaps();
    void showsNoticesInPassing();
    void jumpShowsNoNotices();
    void noticesGoAfterAWhile();
    void noticesGoWhenDismissed();
    void keepsFewNotices();
};

void tst_consoleInstruments::readsTheDepth()
{
    depthPanel_t panel(testRecording());
    panel.showTime(START + 25.0);
    QCOMPARE(panel.text(), QStringLiteral("20.0"));
    panel.showTime(START + 30.0);
    QCOMPARE(panel.text(), QStringLiteral("25.0"));
}

// A depth of fewer figures isn't written larger.
void tst_consoleInstruments::depthKeepsItsSize()
{
    recording_t recording;
    recording.add(CHANNEL_DEPTH, "SDDPT", {START, 9.0});
    recording.add(CHANNEL_DEPTH, "SDDPT", {START + 1.0, 4000.0});
    depthPanel_t panel(recording);
    panel.resize(160, 150);
    QVERIFY(appears(&panel));
    const auto* readOut = panel.findChild<zorbin_qt_gui::scalableTextWidget_t*>("depthReadOut");
    panel.showTime(START + 1.0);
    const int size = readOut->font().pointSize();
    panel.showTime(START);
    QVERIFY(readOut->font().pointSize() <= size + 1);
}

void tst_consoleInstruments::alarmsInShallowWater()
{
    depthPanel_t panel(testRecording());
    auto* label = panel.findChild<alarmLabel_t*>("alarmLabel");
    panel.showTime(START + 15.0); // 15 m
    QVERIFY(panel.isAlarmed());
    QCOMPARE(label->text(), QStringLiteral("SHALLOW WATER"));
    QTRY_VERIFY(!label->styleSheet().isEmpty()); // it flashes
    panel.showTime(START + 20.0);                // 20 m, the depth of the alarm
    QVERIFY(!panel.isAlarmed());
    QCOMPARE(label->text(), QStringLiteral("no alarm"));
    QCOMPARE(label->styleSheet(), QString());
}

void tst_consoleInstruments::alarmFollowsItsDepth()
{
    depthPanel_t panel(testRecording());
    auto* box = panel.findChild<QDoubleSpinBox*>("alarmBox");
    panel.showTime(START + 15.0); // 15 m
    box->setValue(12.0);
    QVERIFY(!panel.isAlarmed());
    box->setValue(15.1);
    QVERIFY(panel.isAlarmed());
}

void tst_consoleInstruments::saysWhenThereIsNoSounding()
{
    depthPanel_t panel(testRecording());
    auto* label = panel.findChild<alarmLabel_t*>("alarmLabel");
    panel.showTime(START - 1.0);
    QCOMPARE(panel.text(), QStringLiteral("\u2013"));
    QCOMPARE(label->text(), QStringLiteral("no sounding"));
    panel.showTime(START + 118.0); // 18 s after the last, 1.8 times their distance
    QCOMPARE(panel.text(), QStringLiteral("60.0"));
    panel.showTime(START + 118.1);
    QCOMPARE(panel.text(), QStringLiteral("\u2013"));
    QVERIFY(!panel.isAlarmed());
}

void tst_consoleInstruments::lampsTellOfPositionAndData()
{
    const recording_t recording = testRecording();
    statusLamps_t lamps(recording);
    lamps.showTime(START - 1.0);
    QVERIFY(!lamps.hasFix());
    QVERIFY(!lamps.hasData());
    lamps.showTime(START);
    QVERIFY(lamps.hasFix());
    QVERIFY(lamps.hasData());
    lamps.showTime(START + 101.7);
    QVERIFY(lamps.hasFix());
    lamps.showTime(START + 101.9); // more than 1.8 s after the last
    QVERIFY(!lamps.hasFix());
    QVERIFY(lamps.hasData());
    lamps.showTime(START + 105.1);
    QVERIFY(!lamps.hasData());
}

namespace {

QImage pictureOf(trackPanel_t* panel)
{
    return panel->findChild<imageFrame_t*>("trackPicture")->pixmap()->toImage();
}

// The middle of the pixels of the colour, or -1, -1.
QPointF middleOf(const QColor& color, const QImage& picture)
{
    double x = 0.0;
    double y = 0.0;
    int count = 0;
    for (int row = 0; row < picture.height(); ++row) {
        for (int column = 0; column < picture.width(); ++column) {
            if (picture.pixelColor(column, row) == color) {
                x += column;
                y += row;
                ++count;
            }
        }
    }
    return count > 0 ? QPointF(x / count, y / count) : QPointF(-1.0, -1.0);
}

} // namespace

void tst_consoleInstruments::drawsTheTrack()
{
    trackPanel_t panel(testRecording());
    panel.resize(160, 170);
    QVERIFY(appears(&panel));
    panel.showTime(START);
    QCOMPARE(panel.sailed(), std::size_t(1));
    QVERIFY(middleOf(theme::frame(), pictureOf(&panel)).x() > 0.0); // yet to be sailed
    QCOMPARE(middleOf(theme::firstCurve(), pictureOf(&panel)), QPointF(-1.0, -1.0));
    panel.showTime(START + 100.0);
    QVERIFY(middleOf(theme::firstCurve(), pictureOf(&panel)).x() > 0.0);
    QCOMPARE(middleOf(theme::frame(), pictureOf(&panel)), QPointF(-1.0, -1.0));
    const QImage all = pictureOf(&panel);
    panel.showTime(START + 50.0);
    QVERIFY(pictureOf(&panel) != all);
    panel.showTime(START + 100.0);
    QVERIFY(pictureOf(&panel) == all);
}

void tst_consoleInstruments::drawsNorthUp()
{
    trackPanel_t panel(testRecording());
    panel.resize(160, 170);
    QVERIFY(appears(&panel));
    panel.showTime(START + 10.0);
    const QPointF south = middleOf(theme::secondCurve(), pictureOf(&panel));
    panel.showTime(START + 90.0);
    const QPointF north = middleOf(theme::secondCurve(), pictureOf(&panel));
    // 800 m of 1000 m, which take all of the height but 12 pixels at either end.
    const double wanted = 0.8 * (pictureOf(&panel).height() - 24.0);
    QVERIFY2(std::abs(south.y() - north.y() - wanted) < 1.5,
             qPrintable(QString::number(south.y() - north.y())));
    QVERIFY(std::abs(south.x() - north.x()) < 1.0);
}

// As on a page that doesn't show.
void tst_consoleInstruments::tracksTheVesselWhileHidden()
{
    trackPanel_t panel(testRecording());
    panel.resize(160, 170);
    QVERIFY(appears(&panel));
    panel.showTime(START + 100.0);
    QVERIFY(middleOf(theme::firstCurve(), pictureOf(&panel)).x() > 0.0);
    const QImage end = pictureOf(&panel);
    panel.showTime(START + 50.0);
    panel.hide();
    panel.showTime(START + 100.0);
    QCOMPARE(panel.sailed(), std::size_t(101));
    panel.show();
    QCOMPARE(pictureOf(&panel), end); // before it is painted
}

void tst_consoleInstruments::survivesAnOddTrack_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<double>("longitude");
    QTest::newRow("none") << 0 << 0.0;
    QTest::newRow("one position") << 1 << 0.0;
    QTest::newRow("across the date line") << 10 << 179.9995;
}

void tst_consoleInstruments::survivesAnOddTrack()
{
    QFETCH(int, count);
    QFETCH(double, longitude);
    recording_t recording;
    for (int i = 0; i < count; ++i)
        recording.addFix(
            "GPGGA", {START + i, QGeoCoordinate(0.0, std::remainder(longitude + i * 1e-4, 360.0))});
    trackPanel_t panel(recording);
    panel.resize(160, 170);
    QVERIFY(appears(&panel));
    panel.showTime(START + 100.0);
    QCOMPARE(panel.sailed(), std::size_t(count));
    if (count > 1) // 100 m in all the width, not the way around the earth
        QVERIFY(middleOf(theme::secondCurve(), pictureOf(&panel)).x() > 120.0);
}

void tst_consoleInstruments::choosesRoundLengths_data()
{
    QTest::addColumn<double>("length");
    QTest::addColumn<double>("wanted");
    QTest::newRow("1") << 1.0 << 1.0;
    QTest::newRow("1.9") << 1.9 << 1.0;
    QTest::newRow("2") << 2.0 << 2.0;
    QTest::newRow("49") << 49.0 << 20.0;
    QTest::newRow("512") << 512.0 << 500.0;
    QTest::newRow("0.07") << 0.07 << 0.05;
}

void tst_consoleInstruments::choosesRoundLengths()
{
    QFETCH(double, length);
    QFETCH(double, wanted);
    QCOMPARE(roundLength(length), wanted);
}

void tst_consoleInstruments::tellsOfStartAndEnd()
{
    const std::vector<recordingEvent_t> events = eventsOf("line.log", testRecording());
    QCOMPARE(events.size(), std::size_t(2));
    QCOMPARE(events[0].time, START);
    QCOMPARE(events[0].text, QStringLiteral("line.log: 00:00:00 to 00:01:40 UTC"));
    QCOMPARE(events[1].time, START + 100.0);
    QCOMPARE(events[1].text, QStringLiteral("End of the recording"));
}

void tst_consoleInstruments::tellsOfLongGaps()
{
    recording_t recording;
    for (const double second : {0.0, 60.0, 121.0}) // a minute, and more than one
        recording.add(CHANNEL_DEPTH, "SDDPT", {START + second, 10.0});
    recording.add(CHANNEL_HEAVE, "PSXN", {START, 0.0});
    recording.add(CHANNEL_HEAVE, "PSXN", {START + 10.0, 0.0}); // the last one
    const std::vector<recordingEvent_t> events = eventsOf("line.log", recording);
    QCOMPARE(events.size(), std::size_t(4));
    QCOMPARE(events[1].time, START + 70.0);
    QCOMPARE(events[1].text, QStringLiteral("Attitude: nothing since 00:00:10 UTC"));
    QCOMPARE(events[2].time, START + 120.0);
    QCOMPARE(events[2].text, QStringLiteral("Depth: nothing since 00:01:00 UTC"));
}

namespace {

struct noticeBoard_t
{
    double realTime = 0.0;
    notifierWidget_t notifier;
    notices_t notices{{{10.0, "first"}, {20.0, "second"}, {30.0, "third"}, {40.0, "fourth"}},
                      [this] { return realTime; },
                      &notifier};

    noticeBoard_t()
    {
        notifier.setMainWidget(new QWidget);
        notifier.resize(400, 300);
        notifier.show();
    }
    QStringList shown()
    {
        QStringList texts;
        for (const QLabel* label : notifier.findChildren<QLabel*>("noticeLabel")) {
            if (label->isVisible())
                texts += label->text();
        }
        texts.sort();
        return texts;
    }
};

} // namespace

void tst_consoleInstruments::showsNoticesInPassing()
{
    noticeBoard_t board;
    board.notices.showTime(9.9);
    QCOMPARE(board.notices.texts(), QStringList());
    board.notices.showTime(10.0);
    QCOMPARE(board.notices.texts(), QStringList({"first"}));
    board.notices.showTime(15.0);
    board.notices.showTime(30.0);
    QCOMPARE(board.notices.texts(), QStringList({"first", "second", "third"}));
    QCOMPARE(board.shown(), QStringList({"first", "second", "third"}));
}

void tst_consoleInstruments::jumpShowsNoNotices()
{
    noticeBoard_t board;
    board.notices.jumpTo(25.0);
    QCOMPARE(board.notices.texts(), QStringList());
    board.notices.showTime(30.0);
    QCOMPARE(board.notices.texts(), QStringList({"third"}));
    board.notices.jumpTo(30.0);
    board.notices.showTime(30.5);
    QCOMPARE(board.notices.texts(), QStringList({"third", "third"})); // again, from there
}

void tst_consoleInstruments::noticesGoAfterAWhile()
{
    noticeBoard_t board;
    board.notices.showTime(10.0);
    board.realTime = 5.0;
    board.notices.showTime(20.0);
    board.realTime = 8.0;
    board.notices.showTime(21.0);
    QCOMPARE(board.notices.texts(), QStringList({"first", "second"}));
    board.realTime = 8.1;
    board.notices.showTime(22.0);
    QCOMPARE(board.notices.texts(), QStringList({"second"}));
    QCOMPARE(board.shown(), QStringList({"second"}));
}

void tst_consoleInstruments::noticesGoWhenDismissed()
{
    noticeBoard_t board;
    board.notices.showTime(10.0);
    QTest::mouseClick(board.notifier.findChild<QToolButton*>("dismissButton"), Qt::LeftButton);
    QCOMPARE(board.notices.texts(), QStringList());
    QCOMPARE(board.shown(), QStringList());
}

void tst_consoleInstruments::keepsFewNotices()
{
    noticeBoard_t board;
    board.notices.showTime(40.0);
    QCOMPARE(board.notices.texts(), QStringList({"second", "third", "fourth"}));
    QCOMPARE(board.shown(), QStringList({"fourth", "second", "third"}));
}

ZORBIN_TEST_MAIN(tst_consoleInstruments, QApplication)
#include "tst_consoleInstruments.moc"
