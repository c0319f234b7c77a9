#include "gestures.h"
#include "positionPanel.h"
#include "testCase.h"
#include "testRecords.h"
#include "testWindow.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>

using namespace survey_console;
using zorbin_qt_gui::coordFormatSelector_t;
using zorbin_qt_gui::latLonEditor_t;

namespace {

const char* const EDITORS[] = {"vesselLatitude", "vesselLongitude", "targetLatitude",
                               "targetLongitude"};

struct panel_t : testWindow_t
{
    const recording_t recording;
    positionPanel_t panel;

    explicit panel_t(recording_t line = testLine().recording)
        : recording(std::move(line)), panel(recording)
    {
        setWindow(&panel);
        panel.show();
    }
    // Seconds after the first position of testLine().
    void showElapsed(double seconds) { panel.showTime(lineStart + seconds); }
    latLonEditor_t* editor(const char* name) { return find<latLonEditor_t>(name); }
    QLineEdit* field(const char* name) { return editor(name)->findChild<QLineEdit*>(); }
    double value(const char* name)
    {
        double value = qQNaN();
        editor(name)->value(value);
        return value;
    }
    QString text(const char* name) { return find<QLabel>(name)->text(); }
    void goTo(double latitude, double longitude)
    {
        editor("targetLatitude")->setValue(latitude);
        editor("targetLongitude")->setValue(longitude);
    }
    void chooseFormat(latLonEditor_t::coordFormat_t format)
    {
        find<coordFormatSelector_t>("formatSelector")
            ->findChild<QComboBox*>()
            ->setCurrentIndex(format);
    }
};

} // namespace

class tst_positionPanel : public testCase_t
{
    Q_OBJECT
private Q_SLOTS:
    void followsTheVessel();
    void vesselIsNotEditable();
    void showsNoPositionBeforeTheFirstFix();
    void goesToTheFirstFixAtFirst();
    void showsRangeAndBearing();
    void rangeFollowsTheVessel();
    void showsNoRangeToWhatIsNoPosition();
    void oneSelectorDrivesAllEditors();
    void catchesUpWithTheNotation();
    void asksForTheTimeNearestToThePosition();
    void hasNothingNearWithoutFixes();
    void wheelChangesNothingInPassing();
};

void tst_positionPanel::followsTheVessel()
{
    panel_t shown;
    shown.showElapsed(200.5); // the fix of 200 s is the newest
    QCOMPARE(shown.value("vesselLatitude"), 0.0);
    QCOMPARE(shown.value("vesselLongitude"), 0.02);
    QCOMPARE(shown.field("vesselLongitude")->text(), QString("000\u00b0 01.200000'"));
    shown.showElapsed(100.0); // back
    QCOMPARE(shown.value("vesselLongitude"), 0.01);
}

void tst_positionPanel::vesselIsNotEditable()
{
    panel_t shown;
    shown.showElapsed(200.0);
    for (const char* name : {"vesselLatitude", "vesselLongitude"}) {
        QVERIFY(!shown.field(name)->isEnabled());
        QVERIFY(!shown.editor(name)->findChild<QComboBox*>()->isEnabled());
    }
    for (const char* name : {"targetLatitude", "targetLongitude"})
        QVERIFY(shown.field(name)->isEnabled());
}

void tst_positionPanel::showsNoPositionBeforeTheFirstFix()
{
    panel_t shown;
    QVERIFY(qIsNaN(shown.value("vesselLatitude")));
    QCOMPARE(shown.field("vesselLatitude")->text(), QString("\u00b0 .'"));
    shown.showElapsed(-0.1);
    QVERIFY(qIsNaN(shown.value("vesselLatitude")));
    QCOMPARE(shown.text("targetRangeLabel"), QString(u'\u2013'));
    QCOMPARE(shown.text("targetBearingLabel"), QString(u'\u2013'));
    shown.showElapsed(0.0);
    QCOMPARE(shown.value("vesselLatitude"), 0.0);
    shown.showElapsed(-0.1); // and back
    QVERIFY(qIsNaN(shown.value("vesselLatitude")));
}

void tst_positionPanel::goesToTheFirstFixAtFirst()
{
    recording_t recording;
    recording.addFix("INGGA", {10.0, QGeoCoordinate(-22.0, -17.5)});
    panel_t shown(recording);
    QCOMPARE(shown.value("targetLatitude"), -22.0);
    QCOMPARE(shown.value("targetLongitude"), -17.5);
}

// A degree of a great circle on the mean sphere, of 6371.0 to 6371.01 km radius, is 60.04 nmi.
void tst_positionPanel::showsRangeAndBearing()
{
    panel_t shown;
    shown.showElapsed(0.0); // at 0, 0
    shown.goTo(1.0, 0.0);
    QCOMPARE(shown.text("targetRangeLabel"), QString("60.04 nmi"));
    QCOMPARE(shown.text("targetBearingLabel"), QString("000.0\u00b0"));
    shown.goTo(0.0, -0.001);
    QCOMPARE(shown.text("targetRangeLabel"), QString("111 m"));
    QCOMPARE(shown.text("targetBearingLabel"), QString("270.0\u00b0"));
}

void tst_positionPanel::rangeFollowsTheVessel()
{
    panel_t shown;
    shown.goTo(0.0, 0.02);
    shown.showElapsed(190.0);
    QCOMPARE(shown.text("targetRangeLabel"), QString("111 m"));
    QCOMPARE(shown.text("targetBearingLabel"), QString("090.0\u00b0"));
    shown.showElapsed(210.0); // passed it
    QCOMPARE(shown.text("targetRangeLabel"), QString("111 m"));
    QCOMPARE(shown.text("targetBearingLabel"), QString("270.0\u00b0"));
}

void tst_positionPanel::showsNoRangeToWhatIsNoPosition()
{
    panel_t shown;
    shown.showElapsed(200.0);
    QVERIFY(shown.find<QPushButton>("nearestButton")->isEnabled());
    shown.goTo(95.0, 0.02);
    QCOMPARE(shown.text("targetRangeLabel"), QString(u'\u2013'));
    QCOMPARE(shown.text("targetBearingLabel"), QString(u'\u2013'));
    QVERIFY(!shown.find<QPushButton>("nearestButton")->isEnabled());
    shown.goTo(0.0, 0.02);
    QCOMPARE(shown.text("targetRangeLabel"), QString("0 m"));
    QVERIFY(shown.find<QPushButton>("nearestButton")->isEnabled());
}

void tst_positionPanel::oneSelectorDrivesAllEditors()
{
    panel_t shown;
    shown.showElapsed(200.0);
    for (const char* name : EDITORS)
        QCOMPARE(shown.editor(name)->selectedFormat(), latLonEditor_t::CF_DM);
    for (const auto format : {latLonEditor_t::CF_DMS, latLonEditor_t::CF_D}) {
        shown.chooseFormat(format);
        for (const char* name : EDITORS)
            QCOMPARE(shown.editor(name)->selectedFormat(), format);
    }
    QCOMPARE(shown.field("vesselLongitude")->text(), QString("000.02000000\u00b0"));
}

void tst_positionPanel::catchesUpWithTheNotation()
{
    panel_t shown;
    shown.goTo(95.0, 0.02); // is none
    shown.chooseFormat(latLonEditor_t::CF_DMS);
    shown.showElapsed(200.0);
    shown.goTo(0.5, 0.0);
    for (const char* name : EDITORS)
        QCOMPARE(shown.editor(name)->selectedFormat(), latLonEditor_t::CF_DMS);
    QCOMPARE(shown.field("vesselLongitude")->text(), QString("000\u00b0 01' 12.0000\""));
    QCOMPARE(shown.field("targetLatitude")->text(), QString("00\u00b0 30' 00.0000\""));
    QCOMPARE(shown.value("targetLatitude"), 0.5);
}

void tst_positionPanel::asksForTheTimeNearestToThePosition()
{
    panel_t shown;
    QSignalSpy chosen(&shown.panel, &positionPanel_t::timeChosen);
    auto* button = shown.find<QPushButton>("nearestButton");
    shown.goTo(0.5, 0.02004); // abeam, nearer to 0.0200 than to 0.0201
    QTest::mouseClick(button, Qt::LeftButton);
    shown.goTo(0.0, 90.0); // beyond the end
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(chosen.count(), 2);
    QCOMPARE(chosen[0][0].toDouble(), lineStart + 200.0);
    QCOMPARE(chosen[1][0].toDouble(), lineStart + lineLength);
}

void tst_positionPanel::hasNothingNearWithoutFixes()
{
    panel_t shown{recording_t()};
    shown.showElapsed(200.0);
    shown.goTo(1.0, 1.0);
    QVERIFY(!shown.find<QPushButton>("nearestButton")->isEnabled());
    QCOMPARE(shown.text("targetRangeLabel"), QString(u'\u2013'));
    QVERIFY(!nearestTo(shown.recording.fixes(), QGeoCoordinate(1.0, 1.0)));
}

void tst_positionPanel::wheelChangesNothingInPassing()
{
    panel_t shown;
    QVERIFY(shown.show());
    shown.goTo(1.0, 1.0);
    auto* hemisphere = shown.editor("targetLatitude")->findChild<QComboBox*>();
    shown.field("targetLatitude")->setFocus();
    turnWheel(hemisphere, QPoint(5, 5), false);
    QCOMPARE(shown.value("targetLatitude"), 1.0);
}

ZORBIN_TEST_MAIN(tst_positionPanel, QApplication)
#include "tst_positionPanel.moc"
