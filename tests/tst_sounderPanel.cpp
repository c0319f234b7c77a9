#include "gestures.h"
#include "indicator.h"
#include "pictures.h"
#include "sounder.h"
#include "sounderPanel.h"
#include "testCase.h"
#include "testWindow.h"
#include "theme.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>

using namespace survey_console;
using zorbin_qt_gui::indicator_t;

namespace {

struct panel_t : testWindow_t
{
    sounderPanel_t panel;

    panel_t()
    {
        setWindow(&panel);
        panel.resize(260, 300);
        panel.show();
    }
    QColor lamp(const char* name)
    {
        const QImage picture = snapshot(*find<indicator_t>(name));
        return picture.pixelColor(picture.width() / 2, picture.height() / 2);
    }
    QString state() { return find<QLabel>("sounderStateLabel")->text(); }
    QVariant value(sounder_t::setting_t setting) { return panel.sounder()->value(setting); }
};

} // namespace

class tst_sounderPanel : public testCase_t
{
    Q_OBJECT
private Q_SLOTS:
    void answersAfterAWhile();
    void refusesWhatItCannotDo_data();
    void refusesWhatItCannotDo();
    void driftsDownToNothing();
    void beginsInStep();
    void showsARequestUnderWay();
    void takesEverySetting();
    void showsARefusal();
    void discardsWhatWasRefused();
    void followsTheDrift();
    void driftLeavesAnEditAlone();
    void staysAmberUntilTheLastAnswer();
    void keepsAnEditThatGoesBack();
    void wheelChangesNothingInPassing();
};

void tst_sounderPanel::answersAfterAWhile()
{
    sounder_t sounder;
    QSignalSpy reported(&sounder, &sounder_t::reported);
    sounder.request(sounder_t::SETTING_RANGE, 100);
    QCOMPARE(sounder.value(sounder_t::SETTING_RANGE), QVariant(30));
    QTRY_COMPARE(reported.count(), 1);
    QCOMPARE(reported[0][0].toInt(), int(sounder_t::SETTING_RANGE));
    QCOMPARE(reported[0][1].value<QVariant>(), QVariant(100));
    QCOMPARE(sounder.value(sounder_t::SETTING_RANGE), QVariant(100));
}

void tst_sounderPanel::refusesWhatItCannotDo_data()
{
    QTest::addColumn<int>("setting");
    QTest::addColumn<QVariant>("asked");
    QTest::addColumn<QVariant>("answer");
    QTest::newRow("greatest power")
        << int(sounder_t::SETTING_POWER) << QVariant(80) << QVariant(80);
    QTest::newRow("too much power")
        << int(sounder_t::SETTING_POWER) << QVariant(81) << QVariant(60);
    QTest::newRow("medium pulse") << int(sounder_t::SETTING_PULSE) << QVariant(1) << QVariant(1);
    QTest::newRow("long pulse at short range")
        << int(sounder_t::SETTING_PULSE) << QVariant(2) << QVariant(0);
    QTest::newRow("no name") << int(sounder_t::SETTING_LINE) << QVariant(QString())
                             << QVariant(QStringLiteral("line 1"));
}

void tst_sounderPanel::refusesWhatItCannotDo()
{
    QFETCH(int, setting);
    QFETCH(QVariant, asked);
    QFETCH(QVariant, answer);
    sounder_t sounder;
    QSignalSpy reported(&sounder, &sounder_t::reported);
    sounder.request(static_cast<sounder_t::setting_t>(setting), asked);
    QTRY_COMPARE(reported.count(), 1);
    QCOMPARE(reported[0][1].value<QVariant>(), answer);
}

void tst_sounderPanel::driftsDownToNothing()
{
    sounder_t sounder;
    sounder.drift();
    QCOMPARE(sounder.value(sounder_t::SETTING_GAIN).toDouble(), 19.9);
    for (int i = 0; i < 300; ++i)
        sounder.drift();
    QCOMPARE(sounder.value(sounder_t::SETTING_GAIN).toDouble(), 0.0);
}

void tst_sounderPanel::beginsInStep()
{
    panel_t panel;
    QVERIFY(panel.panel.binder().allSpFbMatch());
    for (const char* lamp :
         {"transmitLamp", "pulseLamp", "gainLamp", "rangeLamp", "powerLamp", "lineLamp"})
        QCOMPARE(panel.lamp(lamp), theme::running());
    QCOMPARE(panel.state(), QStringLiteral("as set"));
    QVERIFY(!panel.find<QPushButton>("discardButton")->isEnabled());
}

void tst_sounderPanel::showsARequestUnderWay()
{
    panel_t panel;
    panel.find<QSpinBox>("range")->setValue(100);
    QCOMPARE(panel.lamp("rangeLamp"), theme::paused());
    QCOMPARE(panel.lamp("gainLamp"), theme::running());
    QCOMPARE(panel.state(), QStringLiteral("waiting for an answer"));
    QTRY_COMPARE(panel.lamp("rangeLamp"), theme::running());
    QCOMPARE(panel.state(), QStringLiteral("as set"));
    QCOMPARE(panel.value(sounder_t::SETTING_RANGE), QVariant(100));
}

void tst_sounderPanel::takesEverySetting()
{
    panel_t panel;
    QTest::mouseClick(panel.find<QCheckBox>("transmit"), Qt::LeftButton, Qt::KeyboardModifiers(),
                      QPoint(8, 10));
    panel.find<QComboBox>("pulse")->setCurrentIndex(1);
    panel.find<QDoubleSpinBox>("gain")->setValue(12.5);
    panel.find<QSpinBox>("range")->setValue(40);
    panel.find<QSlider>("power")->setValue(50);
    panel.find<QLineEdit>("line")->setText("line 2");
    QVERIFY(!panel.panel.binder().allSpFbMatch());
    QTRY_VERIFY(panel.panel.binder().allSpFbMatch());
    QCOMPARE(panel.value(sounder_t::SETTING_TRANSMIT), QVariant(false));
    QCOMPARE(panel.value(sounder_t::SETTING_PULSE), QVariant(1));
    QCOMPARE(panel.value(sounder_t::SETTING_GAIN), QVariant(12.5));
    QCOMPARE(panel.value(sounder_t::SETTING_RANGE), QVariant(40));
    QCOMPARE(panel.value(sounder_t::SETTING_POWER), QVariant(50));
    QCOMPARE(panel.value(sounder_t::SETTING_LINE), QVariant(QStringLiteral("line 2")));
}

void tst_sounderPanel::showsARefusal()
{
    panel_t panel;
    panel.find<QSlider>("power")->setValue(100);
    QTRY_COMPARE(panel.lamp("powerLamp"), theme::alarm());
    QCOMPARE(panel.state(), QStringLiteral("1 refused"));
    QCOMPARE(panel.find<QSlider>("power")->value(), 100); // what was asked for stays in sight
}

void tst_sounderPanel::discardsWhatWasRefused()
{
    panel_t panel;
    QSignalSpy reported(panel.panel.sounder(), &sounder_t::reported);
    panel.find<QSlider>("power")->setValue(100);
    QTRY_COMPARE(panel.lamp("powerLamp"), theme::alarm());
    QTest::mouseClick(panel.find<QPushButton>("discardButton"), Qt::LeftButton);
    QCOMPARE(panel.find<QSlider>("power")->value(), 60);
    QCOMPARE(panel.lamp("powerLamp"), theme::running());
    QCOMPARE(panel.state(), QStringLiteral("as set"));
    // Answers come in the order of the requests: the next one would be that to a request for power.
    panel.find<QSpinBox>("range")->setValue(100);
    QTRY_COMPARE(reported.count(), 2);
    QCOMPARE(reported[1][0].toInt(), int(sounder_t::SETTING_RANGE));
}

void tst_sounderPanel::followsTheDrift()
{
    panel_t panel;
    panel.panel.showTime(119.0);
    QCOMPARE(panel.find<QDoubleSpinBox>("gain")->value(), 20.0);
    panel.panel.showTime(360.0);
    QCOMPARE(panel.find<QDoubleSpinBox>("gain")->value(), 19.7);
    QCOMPARE(panel.lamp("gainLamp"), theme::running());
    QCOMPARE(panel.state(), QStringLiteral("as set"));
    panel.panel.showTime(0.0); // going back doesn't cool the sounder down
    panel.panel.showTime(360.0);
    QCOMPARE(panel.find<QDoubleSpinBox>("gain")->value(), 19.7);
}

void tst_sounderPanel::driftLeavesAnEditAlone()
{
    panel_t panel;
    panel.find<QDoubleSpinBox>("gain")->setValue(25.0);
    panel.panel.showTime(120.0);
    QCOMPARE(panel.find<QDoubleSpinBox>("gain")->value(), 25.0);
    QCOMPARE(panel.lamp("gainLamp"), theme::paused()); // that was no answer
    QTRY_COMPARE(panel.value(sounder_t::SETTING_GAIN), QVariant(25.0));
    QCOMPARE(panel.lamp("gainLamp"), theme::running());
}

void tst_sounderPanel::staysAmberUntilTheLastAnswer()
{
    panel_t panel;
    QList<QColor> lamps; // after each answer
    connect(panel.panel.sounder(), &sounder_t::reported, this,
            [&] { lamps += panel.lamp("rangeLamp"); });
    panel.find<QSpinBox>("range")->setValue(100);
    panel.find<QSpinBox>("range")->setValue(110);
    QTRY_COMPARE(lamps.size(), 2);
    QCOMPARE(lamps, QList<QColor>({theme::paused(), theme::running()}));
}

void tst_sounderPanel::keepsAnEditThatGoesBack()
{
    panel_t panel;
    auto* const range = panel.find<QSpinBox>("range");
    QList<int> shown; // at each answer
    QList<QColor> colors;
    connect(panel.panel.sounder(), &sounder_t::reported, this, [&] {
        shown << range->value();
        colors << panel.lamp("rangeLamp");
    });
    range->setValue(100);
    range->setValue(30); // as it was, and still is
    QTRY_COMPARE(shown.size(), 2);
    QCOMPARE(shown, (QList<int>{30, 30}));
    QCOMPARE(colors, (QList<QColor>{theme::paused(), theme::running()}));
    QCOMPARE(panel.value(sounder_t::SETTING_RANGE), QVariant(30));
}

void tst_sounderPanel::wheelChangesNothingInPassing()
{
    panel_t panel;
    for (const char* name : {"pulse", "gain", "range", "power"}) {
        auto* widget = panel.find<QWidget>(name);
        widget->clearFocus();
        turnWheel(widget, QPoint(5, 5), false);
    }
    QVERIFY(panel.panel.binder().allSpFbMatch());
}

ZORBIN_TEST_MAIN(tst_sounderPanel, QApplication)
#include "tst_sounderPanel.moc"
