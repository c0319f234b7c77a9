#include "childProcess.h"
#include "indicator.h"
#include "messageRecorder.h"
#include "pictures.h"
#include "testCase.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMetaMethod>
#include <QPainter>
#include <QPointer>
#include <QSignalSpy>
#include <QTimer>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

using namespace zorbin_qt_gui;

static_assert(!std::is_copy_constructible<indicator_t>::value, "lamps aren't copied");

static indicator_t::alertTimer_t* blinkClock()
{
    return indicator_t::alertTimer_t::instance();
}

// Brings the clock into a phase, unless it is in it already.
static void setPhase(bool isLit)
{
    if (blinkClock()->drawOn() != isLit)
        blinkClock()->alertTimeout();
}

// How many connections to the clock there are.
static int connections()
{
    const messageRecorder_t messages;
    blinkClock()->dumpObjectInfo();
    return static_cast<int>(messages.texts().filter(QStringLiteral("<functor")).size());
}

// A disc as large as the middle of a lamp of 20 x 20.
static QImage disc(const indicator_t& lamp, const QColor& color)
{
    QImage picture = blank(lamp);
    QPainter painter(&picture);
    painter.setPen(lamp.palette().color(QPalette::WindowText));
    painter.setBrush(color);
    painter.drawEllipse(0, 0, 19, 19);
    return picture;
}

static bool showsRed(indicator_t& lamp)
{
    return snapshot(lamp).pixelColor(10, 10) == QColor(Qt::red);
}

using change_t = void (*)(indicator_t&);
Q_DECLARE_METATYPE(change_t)

/// The lamp and the clock that blinking lamps share.
class tst_indicator : public testCase_t
{
    Q_OBJECT

protected:
    void setUp() override;
    void tearDown() override { m_lamp.reset(); }

private Q_SLOTS:

    void startsLitInTheHighlightColor();
    void hasTheDeclaredSlots();
    void asksForTenByTen();
    void drawsACircleInTheMiddle_data();
    void drawsACircleInTheMiddle();
    void drawsInPlainColors();
    void drawsTheOutlineInTheTextColor();
    void showsTheWindowColorWhileOff();
    void hidesWhileOffOnRequest();
    void showsTheWindowColorWhileDisabled();
    void takesTheColorOfItsOwnPalette();
    void takesTheColorGroupOfTheMoment();
    void showsItsCustomColor();
    void keepsTheCustomColorForGood();

    void blinksInStep();
    void doesNotBlinkWhileOff();
    void hidesNothingBetweenTwoBlinks();
    void blinksInItsCustomColor();
    void followsTheClockWhileOnAndBlinking();
    void followsTheClockOnce();
    void repaintsOnEveryAlert();
    void repaintsOnEveryChange_data();
    void repaintsOnEveryChange();

    void changesThePhaseBeforeTheAlert();
    void alertsEvery500Milliseconds();
    void startsTheClockInTheDarkPhase();
    void makesTheClockForTheFirstBlinkingLamp();
    void blinksInALaterApplication();
    void leavesTheClockAloneWhenDeleted();
    void survivesTheDeletionOfLampsDuringAnAlert();

private:
    std::unique_ptr<indicator_t> m_lamp;
};

void tst_indicator::setUp()
{
    m_lamp = std::make_unique<indicator_t>();
    QPalette palette;
    palette.setColor(QPalette::Highlight, QColor(10, 20, 200));
    palette.setColor(QPalette::Window, QColor(200, 190, 180));
    m_lamp->setPalette(palette);
    m_lamp->resize(20, 20);
}

void tst_indicator::startsLitInTheHighlightColor()
{
    QCOMPARE(firstDifference(snapshot(*m_lamp), disc(*m_lamp, QColor(10, 20, 200))), QString());
    QVERIFY(indicator_t().parentWidget() == nullptr);
}

void tst_indicator::hasTheDeclaredSlots()
{
    const QMetaObject& meta = indicator_t::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 2);
    const QMetaMethod setColor = meta.method(meta.indexOfSlot("setColor(QColor)"));
    const QMetaMethod setOn = meta.method(meta.indexOfSlot("setOn(bool)"));
    QCOMPARE(setColor.parameterNames(), QList<QByteArray>{"color_"});
    QCOMPARE(setOn.parameterNames(), QList<QByteArray>{"on_"});
    const QMetaObject& clock = indicator_t::alertTimer_t::staticMetaObject;
    QVERIFY(clock.indexOfSignal("alert()") >= 0);
    QVERIFY(clock.indexOfSlot("alertTimeout()") >= 0);
}

void tst_indicator::asksForTenByTen()
{
    QCOMPARE(m_lamp->minimumSizeHint(), QSize(10, 10));
}

void tst_indicator::drawsACircleInTheMiddle_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QRect>("ellipse");
    QTest::newRow("square") << QSize(10, 10) << QRect(0, 0, 9, 9);
    QTest::newRow("wide") << QSize(30, 10) << QRect(10, 0, 9, 9);
    QTest::newRow("high") << QSize(10, 30) << QRect(0, 10, 9, 9);
    QTest::newRow("a pixel wider") << QSize(11, 10) << QRect(1, 0, 9, 9);
    QTest::newRow("two pixels wider") << QSize(12, 10) << QRect(1, 0, 9, 9);
    QTest::newRow("three pixels higher") << QSize(10, 13) << QRect(0, 2, 9, 9);
    QTest::newRow("two by two") << QSize(2, 2) << QRect(0, 0, 1, 1);
    QTest::newRow("a single pixel") << QSize(1, 1) << QRect(0, 0, 0, 0);
}

void tst_indicator::drawsACircleInTheMiddle()
{
    QFETCH(QSize, size);
    QFETCH(QRect, ellipse);
    m_lamp->resize(size);
    QImage wanted = blank(*m_lamp);
    {
        QPainter painter(&wanted);
        painter.setPen(m_lamp->palette().color(QPalette::WindowText));
        painter.setBrush(QColor(10, 20, 200));
        painter.drawEllipse(ellipse);
    }
    QCOMPARE(firstDifference(snapshot(*m_lamp), wanted), QString());
}

void tst_indicator::drawsInPlainColors()
{
    const QImage picture = snapshot(*m_lamp);
    const QVector<QRgb> plain = {qRgb(10, 20, 200), qRgb(200, 190, 180), qRgb(0, 0, 0)};
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            QVERIFY2(plain.contains(picture.pixel(x, y)), "a mixed colour");
    }
}

void tst_indicator::drawsTheOutlineInTheTextColor()
{
    QPalette palette = m_lamp->palette();
    palette.setColor(QPalette::WindowText, Qt::magenta);
    m_lamp->setPalette(palette);
    QCOMPARE(snapshot(*m_lamp).pixelColor(10, 0), QColor(Qt::magenta));
}

void tst_indicator::showsTheWindowColorWhileOff()
{
    m_lamp->setOn(false);
    QCOMPARE(firstDifference(snapshot(*m_lamp), disc(*m_lamp, QColor(200, 190, 180))), QString());
    m_lamp->setColor(Qt::green);
    QCOMPARE(firstDifference(snapshot(*m_lamp), disc(*m_lamp, QColor(200, 190, 180))), QString());
    m_lamp->setOn(true);
    QCOMPARE(firstDifference(snapshot(*m_lamp), disc(*m_lamp, Qt::green)), QString());
}

void tst_indicator::hidesWhileOffOnRequest()
{
    m_lamp->hideWhenOff(true);
    QCOMPARE(firstDifference(snapshot(*m_lamp), disc(*m_lamp, QColor(10, 20, 200))), QString());
    m_lamp->setOn(false);
    QCOMPARE(firstDifference(snapshot(*m_lamp), blank(*m_lamp)), QString());
    m_lamp->hideWhenOff(false);
    QCOMPARE(firstDifference(snapshot(*m_lamp), disc(*m_lamp, QColor(200, 190, 180))), QString());
}

void tst_indicator::showsTheWindowColorWhileDisabled()
{
    m_lamp->setColor(Qt::green);
    m_lamp->setEnabled(false);
    const QColor window = m_lamp->palette().color(QPalette::Disabled, QPalette::Window);
    QCOMPARE(firstDifference(snapshot(*m_lamp), disc(*m_lamp, window)), QString());
    m_lamp->setEnabled(true);
    QCOMPARE(firstDifference(snapshot(*m_lamp), disc(*m_lamp, Qt::green)), QString());
}

void tst_indicator::takesTheColorOfItsOwnPalette()
{
    QPalette palette = m_lamp->palette();
    palette.setColor(QPalette::Highlight, Qt::cyan);
    m_lamp->setPalette(palette);
    QCOMPARE(firstDifference(snapshot(*m_lamp), disc(*m_lamp, Qt::cyan)), QString());
}

void tst_indicator::takesTheColorGroupOfTheMoment()
{
    QPalette palette = m_lamp->palette();
    palette.setColor(QPalette::Inactive, QPalette::Highlight, Qt::darkGreen);
    palette.setColor(QPalette::Active, QPalette::Highlight, Qt::cyan);
    m_lamp->setPalette(palette);
    QWidget other;
    for (QWidget* const window : std::vector<QWidget*>{m_lamp.get(), &other}) {
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window, patienceMs()));
    }
    QApplication::setActiveWindow(&other);
    QCOMPARE(firstDifference(snapshot(*m_lamp), disc(*m_lamp, Qt::darkGreen)), QString());
    QApplication::setActiveWindow(m_lamp.get());
    QCOMPARE(firstDifference(snapshot(*m_lamp), disc(*m_lamp, Qt::cyan)), QString());
}

void tst_indicator::showsItsCustomColor()
{
    m_lamp->setColor(QColor(1, 200, 3));
    QCOMPARE(firstDifference(snapshot(*m_lamp), disc(*m_lamp, QColor(1, 200, 3))), QString());
}

// Deliberate: an invalid colour is a custom colour, too, and there is no way back.
void tst_indicator::keepsTheCustomColorForGood()
{
    m_lamp->setColor(QColor());
    QCOMPARE(firstDifference(snapshot(*m_lamp), disc(*m_lamp, Qt::black)), QString());
}

void tst_indicator::blinksInStep()
{
    indicator_t late;
    late.setPalette(m_lamp->palette());
    late.resize(20, 20);
    m_lamp->alertWhenOn(true);
    setPhase(false);
    late.alertWhenOn(true);
    for (const bool isLit : {false, true, false, true}) {
        const QColor color = isLit ? QColor(10, 20, 200) : QColor(200, 190, 180);
        QCOMPARE(blinkClock()->drawOn(), isLit);
        QCOMPARE(firstDifference(snapshot(*m_lamp), disc(*m_lamp, color)), QString());
        QCOMPARE(firstDifference(snapshot(late), disc(late, color)), QString());
        blinkClock()->alertTimeout();
    }
    setPhase(false);
    m_lamp->alertWhenOn(false);
    QCOMPARE(firstDifference(snapshot(*m_lamp), disc(*m_lamp, QColor(10, 20, 200))), QString());
}

void tst_indicator::doesNotBlinkWhileOff()
{
    m_lamp->alertWhenOn(true);
    m_lamp->setOn(false);
    setPhase(true);
    QCOMPARE(firstDifference(snapshot(*m_lamp), disc(*m_lamp, QColor(200, 190, 180))), QString());
}

void tst_indicator::hidesNothingBetweenTwoBlinks()
{
    m_lamp->alertWhenOn(true);
    m_lamp->hideWhenOff(true);
    setPhase(false);
    QCOMPARE(firstDifference(snapshot(*m_lamp), disc(*m_lamp, QColor(200, 190, 180))), QString());
}

void tst_indicator::blinksInItsCustomColor()
{
    m_lamp->alertWhenOn(true);
    m_lamp->setColor(Qt::red);
    setPhase(true);
    QCOMPARE(firstDifference(snapshot(*m_lamp), disc(*m_lamp, Qt::red)), QString());
}

void tst_indicator::followsTheClockWhileOnAndBlinking()
{
    QCOMPARE(connections(), 0);
    m_lamp->alertWhenOn(true);
    QCOMPARE(connections(), 1);
    m_lamp->setOn(false);
    QCOMPARE(connections(), 0);
    m_lamp->alertWhenOn(false);
    m_lamp->alertWhenOn(true); // off: no connection
    QCOMPARE(connections(), 0);
    m_lamp->setOn(true);
    QCOMPARE(connections(), 1);
    m_lamp->alertWhenOn(false);
    QCOMPARE(connections(), 0);
}

void tst_indicator::followsTheClockOnce()
{
    m_lamp->alertWhenOn(true);
    m_lamp->setOn(true);
    m_lamp->alertWhenOn(true);
    m_lamp->hideWhenOff(true);
    m_lamp->setColor(Qt::red);
    QCOMPARE(connections(), 1);
}

// Counts the repaints of a shown lamp.
class paintCounter_t : public QObject
{
public:
    explicit paintCounter_t(QWidget& widget)
    {
        widget.installEventFilter(this);
        processAll();
        m_count = 0;
    }

    int take()
    {
        processAll();
        return std::exchange(m_count, 0);
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        m_count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

private:
    static void processAll()
    {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }

    int m_count = 0;
};

void tst_indicator::repaintsOnEveryAlert()
{
    m_lamp->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_lamp.get(), patienceMs()));
    m_lamp->alertWhenOn(true);
    paintCounter_t paints(*m_lamp);
    blinkClock()->alertTimeout();
    QVERIFY(paints.take() >= 1);
    m_lamp->setOn(false);
    paints.take();
    blinkClock()->alertTimeout();
    QCOMPARE(paints.take(), 0);
}

void tst_indicator::repaintsOnEveryChange_data()
{
    QTest::addColumn<change_t>("change");
    QTest::addColumn<int>("repaints");
    const auto row = [](const char* name, int repaints, change_t change) {
        QTest::newRow(name) << change << repaints;
    };
    row("switched off", 1, [](indicator_t& lamp) { lamp.setOn(false); });
    row("switched on when on", 0, [](indicator_t& lamp) { lamp.setOn(true); });
    row("no alert as before", 0, [](indicator_t& lamp) { lamp.alertWhenOn(false); });
    row("hidden when off", 1, [](indicator_t& lamp) { lamp.hideWhenOff(true); });
    row("not hidden as before", 1, [](indicator_t& lamp) { lamp.hideWhenOff(false); });
    row("a colour", 1, [](indicator_t& lamp) { lamp.setColor(Qt::red); });
}

void tst_indicator::repaintsOnEveryChange()
{
    QFETCH(change_t, change);
    QFETCH(int, repaints);
    m_lamp->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_lamp.get(), patienceMs()));
    paintCounter_t paints(*m_lamp);
    change(*m_lamp);
    QCOMPARE(paints.take(), repaints);
}

void tst_indicator::changesThePhaseBeforeTheAlert()
{
    std::vector<bool> phases;
    const bool before = blinkClock()->drawOn();
    const auto connection = connect(blinkClock(), &indicator_t::alertTimer_t::alert,
                                    [&] { phases.push_back(blinkClock()->drawOn()); });
    blinkClock()->alertTimeout();
    blinkClock()->alertTimeout();
    disconnect(connection);
    QVERIFY((phases == std::vector<bool>{!before, before}));
}

void tst_indicator::alertsEvery500Milliseconds()
{
    const QList<QTimer*> timers = blinkClock()->findChildren<QTimer*>();
    QCOMPARE(timers.size(), 1);
    QCOMPARE(timers.first()->interval(), 500);
    QVERIFY(timers.first()->isActive());
    QVERIFY(!timers.first()->isSingleShot());
    QSignalSpy alerts(blinkClock(), &indicator_t::alertTimer_t::alert);
    QTRY_COMPARE(alerts.size(), 2);
    QCOMPARE(blinkClock()->parent(), nullptr);
}

void tst_indicator::startsTheClockInTheDarkPhase()
{
    const childOutcome_t child = runChild(QStringLiteral("clock"));
    QVERIFY(!child.crashed);
    QCOMPARE(child.exitCode, 0);
}

void tst_indicator::makesTheClockForTheFirstBlinkingLamp()
{
    const childOutcome_t child = runChild(QStringLiteral("steady lamps"));
    QVERIFY(!child.crashed);
    QCOMPARE(child.exitCode, 0);
}

void tst_indicator::blinksInALaterApplication()
{
    const childOutcome_t child = runChild(QStringLiteral("three applications"));
    QVERIFY(!child.crashed);
    QCOMPARE(child.exitCode, 0);
    QCOMPARE(child.said, QStringList());
}

void tst_indicator::leavesTheClockAloneWhenDeleted()
{
    indicator_t::alertTimer_t* const clock = blinkClock();
    m_lamp->alertWhenOn(true);
    m_lamp.reset();
    QCOMPARE(blinkClock(), clock);
    clock->alertTimeout();
}

void tst_indicator::survivesTheDeletionOfLampsDuringAnAlert()
{
    std::vector<QPointer<indicator_t>> lamps;
    for (int i = 0; i < 4; ++i)
        lamps.emplace_back(new indicator_t);
    lamps[0]->alertWhenOn(true);
    lamps[1]->alertWhenOn(true);
    const auto connection = connect(blinkClock(), &indicator_t::alertTimer_t::alert, [&] {
        delete lamps[1]; // has had its turn
        delete lamps[2]; // would be next
    });
    lamps[2]->alertWhenOn(true);
    lamps[3]->alertWhenOn(true);
    blinkClock()->alertTimeout();
    disconnect(connection);
    QVERIFY(lamps[0] != nullptr && lamps[1] == nullptr && lamps[2] == nullptr);
    delete lamps[3];
    blinkClock()->alertTimeout();
    delete lamps[0];
    blinkClock()->alertTimeout();
}

int main(int argc, char* argv[])
{
    childScenarios_t scenarios;
    scenarios.insert("clock", [] { return blinkClock()->drawOn() ? 1 : 0; });
    // Without a clock there is no timer that could run out.
    scenarios.insert("steady lamps", [] {
        indicator_t lamp;
        lamp.setOn(false);
        lamp.alertWhenOn(true);
        lamp.hideWhenOff(true);
        snapshot(lamp);
        lamp.alertWhenOn(false);
        lamp.setOn(true);
        lamp.setColor(Qt::red);
        snapshot(lamp);
        QElapsedTimer sinceThen;
        sinceThen.start();
        while (sinceThen.elapsed() < 700)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        // A clock made before would be in its second phase by now.
        return blinkClock()->drawOn() ? 1 : 0;
    });
    bareChildScenarios_t bareScenarios;
    bareScenarios.insert("three applications", [](int& count, char** arguments) {
        for (int i = 0; i < 3; ++i) {
            const QApplication application(count, arguments);
            indicator_t lamp;
            lamp.resize(20, 20);
            lamp.setColor(Qt::red);
            lamp.alertWhenOn(true);
            for (const bool isLit : {true, false, true}) {
                if (!QTest::qWaitFor([&] { return showsRed(lamp) == isLit; }, 20000))
                    return i + 1;
            }
        }
        return 0;
    });
    tst_indicator tests;
    return runTestsOrScenario(argc, argv, tests, scenarios, bareScenarios);
}

#include "tst_indicator.moc"
