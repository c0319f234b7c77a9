#include "chartPanel.h"
#include "notices.h"
#include "pingView.h"
#include "recordingsPanel.h"
#include "sonarPanel.h"
#include "stripChart.h"
#include "testCase.h"
#include "testConsole.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>

using namespace survey_console;

namespace {

readResult_t lineWithRates()
{
    readResult_t line = testLine();
    line.recording.deriveRates(); // so that there are more charts
    return line;
}

// The console as an operator has it before the replay starts.
struct operatorsConsole_t : wholeConsole_t
{
    operatorsConsole_t() : wholeConsole_t(lineWithRates())
    {
        window.recordings()->addFiles({boatLog});
        window.restore(consoleState_t());
    }
    void press(Qt::Key key)
    {
        QWidget* const focus = window.focusWidget();
        QTest::keyClick(focus != nullptr ? focus : &window, key);
    }
};

// What the user clicks, drags or types into. Parts of one, such as the field of a spin box, belong
// to it.
bool isControl(const QWidget* widget)
{
    return widget->focusPolicy() != Qt::NoFocus || widget->cursor().shape() != Qt::ArrowCursor ||
           qobject_cast<const QAbstractButton*>(widget) ||
           qobject_cast<const QAbstractSlider*>(widget) ||
           qobject_cast<const QAbstractSpinBox*>(widget) ||
           qobject_cast<const QComboBox*>(widget) || qobject_cast<const QLineEdit*>(widget);
}

// What shows while the pointer rests on a widget: an event that it ignores goes to its parent.
QString shownToolTip(const QWidget* widget)
{
    while (widget && widget->toolTip().isEmpty() && !widget->isWindow())
        widget = widget->parentWidget();
    return widget ? widget->toolTip() : QString();
}

QString pathOf(const QWidget* widget)
{
    QString path;
    for (; widget; widget = widget->parentWidget())
        path =
            QStringLiteral("%1(%2)/").arg(widget->metaObject()->className(), widget->objectName()) +
            path;
    return path;
}

} // namespace

class tst_consoleKeys : public testCase_t
{
    Q_OBJECT
private Q_SLOTS:
    void everyControlHasAToolTip();
    void listsWhatTheKeysDo();
    void listIsShownByItsKey();
    void menuOpensByItsKey();
    void turnsPagesByKeys();
    void changesTheSpeedByKeys();
    void followsTheDataByItsKey();
    void showsTheWholeSwathByItsKey();
    void showsTheWholeDepthByItsKey();
    void setsTheEchogramByKeys();
    void answersCancelByEscape();
    void dismissesTheNewestNoticeByEscape();
    void typesWhatIsAKeyElsewhere();
    void enterPressesTheButtonInFocus();
    void enterOpensTheListInFocus();
    void tabGoesFromTheTopToTheBottom_data();
    void tabGoesFromTheTopToTheBottom();
    void tabReachesEveryButton_data();
    void tabReachesEveryButton();
};

void tst_consoleKeys::everyControlHasAToolTip()
{
    operatorsConsole_t console;
    QVERIFY(console.show());
    console.window.notices()->show(QStringLiteral("test"));
    console.window.openRecording(boatLog);
    QTRY_VERIFY(console.find<QPushButton>("replayButton"));
    int controls = 0;
    for (const QWidget* widget : console.window.findChildren<QWidget*>()) {
        if (widget->window() != &console.window || !isControl(widget))
            continue;
        ++controls;
        QVERIFY2(!shownToolTip(widget).isEmpty(), qPrintable(pathOf(widget)));
    }
    QVERIFY2(controls > 50, qPrintable(QString::number(controls)));
}

void tst_consoleKeys::listsWhatTheKeysDo()
{
    operatorsConsole_t console;
    const QStringList list = console.window.shortcuts();
    for (const char* line :
         {"Space\tPause or resume", "Left\tBack by 10 s", "End\tTo the end", "F10\tMenu",
          "F3\tPage \u201cEchogram\u201d", "F4\tPage \u201cSurvey\u201d", "Ctrl+O\tOpen recording",
          "Ctrl+H\tKeyboard", "+\tFaster",
          "A\tCharts: scales follow the data; sonar and echogram: the whole range"})
        QVERIFY2(list.contains(QString::fromUtf8(line)), line);
    QStringList keys;
    for (const QString& line : list)
        keys += line.section('\t', 0, 0);
    QCOMPARE(keys.removeDuplicates(), 0);
}

void tst_consoleKeys::listIsShownByItsKey()
{
    operatorsConsole_t console;
    QVERIFY(console.show());
    QTest::keyClick(&console.window, Qt::Key_H, Qt::ControlModifier);
    auto* box = console.find<QMessageBox>("shortcutsBox");
    QVERIFY(box && box->isVisible());
    for (const QString& line : console.window.shortcuts()) {
        for (const QString& part : line.split('\t'))
            QVERIFY2(box->text().contains(part.toHtmlEscaped()), qPrintable(part));
    }
    QTest::keyClick(box, Qt::Key_Escape);
    QTRY_VERIFY(!console.find<QMessageBox>("shortcutsBox"));
}

void tst_consoleKeys::menuOpensByItsKey()
{
    operatorsConsole_t console;
    QVERIFY(console.show());
    QMenu* menu = console.find<QToolButton>("menuButton")->menu();
    bool wasVisible = false;
    QTimer::singleShot(0, [&] { // the menu waits to be closed
        wasVisible = menu->isVisible();
        QTest::keyClick(menu, Qt::Key_Escape);
    });
    QTest::keyClick(&console.window, Qt::Key_F10);
    QTRY_VERIFY(!menu->isVisible());
    QVERIFY(wasVisible);
}

void tst_consoleKeys::turnsPagesByKeys()
{
    operatorsConsole_t console;
    QVERIFY(console.show());
    console.press(Qt::Key_F4);
    QCOMPARE(console.window.page(), PAGE_SURVEY);
    console.press(Qt::Key_F3);
    QCOMPARE(console.window.page(), PAGE_ECHOGRAM);
    console.press(Qt::Key_F2);
    QCOMPARE(console.window.page(), PAGE_SONAR);
    console.press(Qt::Key_F1);
    QCOMPARE(console.window.page(), PAGE_CHARTS);
}

void tst_consoleKeys::changesTheSpeedByKeys()
{
    operatorsConsole_t console;
    QVERIFY(console.show());
    console.press(Qt::Key_Minus);
    QCOMPARE(console.window.clock()->speed(), 1.0); // the slowest
    console.press(Qt::Key_Plus);
    console.press(Qt::Key_Plus);
    QCOMPARE(console.window.clock()->speed(), 5.0);
    console.press(Qt::Key_Minus);
    QCOMPARE(console.window.clock()->speed(), 2.0);
    console.window.clock()->setSpeed(100.0);
    console.press(Qt::Key_Plus);
    QCOMPARE(console.window.clock()->speed(), 100.0);
}

void tst_consoleKeys::followsTheDataByItsKey()
{
    operatorsConsole_t console;
    QVERIFY(console.show());
    console.chart(PANEL_DEPTH)->valueBounds(-1000.0, 0.0);
    console.chart(PANEL_HEADING)->valueBounds(0.0, 360.0);
    console.press(Qt::Key_A);
    QVERIFY(console.chart(PANEL_DEPTH)->autoscaleValue());
    QVERIFY(console.chart(PANEL_HEADING)->autoscaleValue());
}

void tst_consoleKeys::showsTheWholeSwathByItsKey()
{
    operatorsConsole_t console;
    QVERIFY(console.show());
    console.chart(PANEL_DEPTH)->valueBounds(-1000.0, 0.0);
    console.press(Qt::Key_F2);
    auto* view = console.window.sonarPanel()->view();
    view->bounds(-1.0, 1.0);
    console.press(Qt::Key_A);
    QCOMPARE(view->begBound(), -testSwath);
    QCOMPARE(view->endBound(), testSwath);
    QVERIFY(!console.chart(PANEL_DEPTH)->autoscaleValue()); // on a page that doesn't show
}

void tst_consoleKeys::showsTheWholeDepthByItsKey()
{
    operatorsConsole_t console;
    QVERIFY(console.show());
    auto* sonar = console.window.sonarPanel()->view();
    sonar->bounds(-1.0, 1.0);
    console.press(Qt::Key_F3);
    auto* view = console.window.echogramPanel()->view();
    view->bounds(1.0, 2.0);
    console.press(Qt::Key_A);
    QCOMPARE(view->begBound(), 0.0);
    QCOMPARE(view->endBound(), testDepths);
    QCOMPARE(sonar->endBound(), 1.0); // on a page that doesn't show
}

void tst_consoleKeys::setsTheEchogramByKeys()
{
    operatorsConsole_t console;
    QVERIFY(console.show());
    console.press(Qt::Key_F3);
    auto* depth = console.find<QCheckBox>("depthBox");
    depth->setFocus();
    console.press(Qt::Key_Return);
    QVERIFY(!console.window.echogramPanel()->showsDepth());
    auto* beam = console.find<QComboBox>("beamBox");
    beam->setFocus();
    console.press(Qt::Key_Return);
    QTRY_VERIFY(beam->view()->isVisible());
    QTest::keyClick(beam->view(), Qt::Key_Down);
    QTest::keyClick(beam->view(), Qt::Key_Return);
    QTRY_COMPARE(console.window.echogramPanel()->beamChoice(), QStringLiteral("83 kHz"));
}

void tst_consoleKeys::answersCancelByEscape()
{
    operatorsConsole_t console;
    QVERIFY(console.show());
    console.window.notices()->show(QStringLiteral("stays"));
    console.window.openRecording(boatLog);
    QTRY_VERIFY(console.find<QWidget>("openPrompt"));
    console.press(Qt::Key_Escape);
    QTRY_VERIFY(!console.find<QWidget>("openPrompt"));
    QCOMPARE(console.window.notices()->texts(), QStringList{"stays"});
}

void tst_consoleKeys::dismissesTheNewestNoticeByEscape()
{
    operatorsConsole_t console;
    QVERIFY(console.show());
    console.window.notices()->show(QStringLiteral("first"));
    console.window.notices()->show(QStringLiteral("second"));
    console.press(Qt::Key_Escape);
    QCOMPARE(console.window.notices()->texts(), QStringList{"first"});
    console.press(Qt::Key_Escape);
    console.press(Qt::Key_Escape); // there is none
    QCOMPARE(console.window.notices()->texts(), QStringList());
}

void tst_consoleKeys::typesWhatIsAKeyElsewhere()
{
    operatorsConsole_t console;
    QVERIFY(console.show());
    console.press(Qt::Key_F2);
    auto* line = console.find<QLineEdit>("line");
    line->setFocus();
    line->clear();
    QTest::keyClicks(line, QStringLiteral("A -+"));
    QCOMPARE(line->text(), QStringLiteral("A -+"));
    QVERIFY(!console.window.clock()->isRunning());
}

void tst_consoleKeys::enterPressesTheButtonInFocus()
{
    operatorsConsole_t console;
    QVERIFY(console.show());
    QToolButton* const autoscale = console.autoscaleButton(PANEL_DEPTH);
    autoscale->setFocus();
    console.press(Qt::Key_Return);
    QVERIFY(!console.chart(PANEL_DEPTH)->autoscaleValue());
    console.press(Qt::Key_Enter);
    QVERIFY(console.chart(PANEL_DEPTH)->autoscaleValue());
    console.press(Qt::Key_F2);
    auto* transmit = console.find<QCheckBox>("transmit");
    transmit->setFocus();
    console.press(Qt::Key_Return);
    QVERIFY(!transmit->isChecked());
    console.find<QPushButton>("pauseButton")->setFocus();
    console.press(Qt::Key_Return);
    QVERIFY(console.window.clock()->isRunning());
}

void tst_consoleKeys::enterOpensTheListInFocus()
{
    operatorsConsole_t console;
    QVERIFY(console.show());
    auto* box = console.find<QComboBox>("speedBox");
    box->setFocus();
    console.press(Qt::Key_Return);
    QTRY_VERIFY(box->view()->isVisible());
    QTest::keyClick(box->view(), Qt::Key_Down);
    QTest::keyClick(box->view(), Qt::Key_Return);
    QTRY_COMPARE(console.window.clock()->speed(), 2.0);
}

void tst_consoleKeys::tabGoesFromTheTopToTheBottom_data()
{
    QTest::addColumn<int>("page");
    QTest::newRow("charts") << int(PAGE_CHARTS);
    QTest::newRow("sonar") << int(PAGE_SONAR);
    QTest::newRow("echogram") << int(PAGE_ECHOGRAM);
    QTest::newRow("survey") << int(PAGE_SURVEY);
}

// From the strip on top through the page to the controls below.
void tst_consoleKeys::tabGoesFromTheTopToTheBottom()
{
    QFETCH(int, page);
    operatorsConsole_t console;
    QVERIFY(console.show());
    console.window.showPage(static_cast<page_t>(page));
    console.find<QToolButton>("menuButton")->setFocus();
    QStringList regions;
    QStringList path;
    do {
        QWidget* focus = console.window.focusWidget();
        const int y = focus->mapTo(&console.window, focus->rect().center()).y();
        const QString region = y < 60                             ? "top"
                               : y > console.window.height() - 60 ? "bottom"
                                                                  : "page";
        if (regions.isEmpty() || regions.last() != region)
            regions += region;
        path += focus->objectName();
        console.press(Qt::Key_Tab);
    } while (console.window.focusWidget()->objectName() != "menuButton" && path.size() < 100);
    QVERIFY2(regions == QStringList({"top", "page", "bottom"}), qPrintable(path.join(' ')));
}

void tst_consoleKeys::tabReachesEveryButton_data()
{
    tabGoesFromTheTopToTheBottom_data();
}

void tst_consoleKeys::tabReachesEveryButton()
{
    QFETCH(int, page);
    operatorsConsole_t console;
    QVERIFY(console.show());
    console.window.showPage(static_cast<page_t>(page));
    console.find<QToolButton>("menuButton")->setFocus();
    QList<QWidget*> reached;
    while (!reached.contains(console.window.focusWidget())) {
        reached += console.window.focusWidget();
        console.press(Qt::Key_Tab);
    }
    int buttons = 0;
    for (auto* button : console.window.findChildren<QAbstractButton*>()) {
        if (!button->isVisible() || !button->isEnabled() || button->group())
            continue; // pages have keys of their own
        ++buttons;
        QVERIFY2(reached.contains(button), qPrintable(pathOf(button)));
    }
    QVERIFY2(buttons > 3, qPrintable(QString::number(buttons)));
}

ZORBIN_TEST_MAIN(tst_consoleKeys, QApplication)
#include "tst_consoleKeys.moc"
