#include "messageRecorder.h"
#include "pictures.h"
#include "rulerStage.h"
#include "testCase.h"

#include <QApplication>
#include <QMetaMethod>
#include <QMouseEvent>
#include <QPointer>
#include <QSignalSpy>
#include <functional>
#include <limits>
#include <ruler.h>

using namespace ruler_tests;

Q_DECLARE_METATYPE(std::function<void(ruler_t&)>)

static const double inf = std::numeric_limits<double>::infinity();
static const double nan_ = std::numeric_limits<double>::quiet_NaN();

namespace {

void sendMouse(ruler_t& ruler, QEvent::Type type, QPoint pos)
{
    QMouseEvent event(type, QPointF(pos), QPointF(pos), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(&ruler, &event);
}

void drag(ruler_t& ruler, QPoint from, QPoint to)
{
    sendMouse(ruler, QEvent::MouseButtonPress, from);
    sendMouse(ruler, QEvent::MouseMove, to);
    sendMouse(ruler, QEvent::MouseButtonRelease, to);
}

// The bounds announced so far, e.g. "0 to 15".
QStringList announced(const QSignalSpy& spy)
{
    QStringList texts;
    for (const QList<QVariant>& arguments : spy)
        texts
            << QStringLiteral("%1 to %2").arg(arguments[0].toDouble()).arg(arguments[1].toDouble());
    return texts;
}

} // namespace

/// A ruler as a widget: its range, its labels, the mouse, and what it withstands.
class tst_ruler : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void hasPlainDefaults();
    void numbersItsEdgesAndTicks();
    void ordersTicksByPositionAlone();
    void hasOneSignalAndOneSlot();

    // The range.
    void announcesARangeOnlyOnce();
    void storesTheRangeBeforeItAnnouncesIt();
    void keepsTheWidthOfARangeAtALimit_data();
    void keepsTheWidthOfARangeAtALimit();
    void leavesThePresentRangeToNewLimits();
    void comparesRangesBeforeItLimitsThem();
    void swapsRangesWhileInverted();
    void turnsRoundWithEveryCallOfInvert();
    void staysQuietWhenAPointIsInverted();
    void mapsPixelsToValues_data();
    void mapsPixelsToValues();
    void mapsValuesBeforeTheFirstPixelToZero();
    void dropsThePixelsFraction();
    void hasAScaleOfOneWithoutARange();
    void keepsItsScaleWhenItMovesToAnotherEdge();

    // Labels.
    void countsDecimals_data();
    void countsDecimals();
    void printsValues_data();
    void printsValues();
    void cutsLongNumbersOff();

    // The mouse.
    void leavesTheMouseAloneAtFirst();
    void followsTheMouseWithoutAButton();
    void highlightsWhatIsDraggedOver();
    void ignoresAReleaseWithoutAPress();
    void selectsARange_data();
    void selectsARange();
    void doublesTheRange_data();
    void doublesTheRange();
    void survivesSlotsThatDeleteIt();

    // Guards.
    void survivesOddInput_data();
    void survivesOddInput();
    void staysOfAPaintableSize();
};

void tst_ruler::hasPlainDefaults()
{
    ruler_t ruler(nullptr);
    QCOMPARE(boundsOf(ruler), QString("0 to 0"));
    QCOMPARE(ruler.axisLocation(), ruler_t::BOTTOM);
    QCOMPARE(ruler.font().pointSize(), 8);
    QCOMPARE(ruler.minimumSizeHint(), QSize(0, 8 + 5 + 1));
    QCOMPARE(ruler.indicator(), 0.0);
    QCOMPARE(ruler.numDecimals(), 0u);
    QVERIFY(!ruler.hasMouseTracking());
    QCOMPARE(ruler.pixelToValue(3), 3.0);
}

void tst_ruler::numbersItsEdgesAndTicks()
{
    QCOMPARE(static_cast<int>(ruler_t::TOP), 0);
    QCOMPARE(static_cast<int>(ruler_t::BOTTOM), 1);
    QCOMPARE(static_cast<int>(ruler_t::LEFT), 2);
    QCOMPARE(static_cast<int>(ruler_t::RIGHT), 3);
    QCOMPARE(static_cast<int>(ruler_t::tick_t::TICK_MINOR), 0);
    QCOMPARE(static_cast<int>(ruler_t::tick_t::TICK_MAJOR), 1);
}

void tst_ruler::ordersTicksByPositionAlone()
{
    const ruler_t::tick_t near{ruler_t::tick_t::TICK_MAJOR, 1, "9"};
    const ruler_t::tick_t far{ruler_t::tick_t::TICK_MINOR, 0x80000000u, "0"};
    const ruler_t::tick_t alsoFar{ruler_t::tick_t::TICK_MAJOR, 0x80000000u, "1"};
    QVERIFY(near < far);
    QVERIFY(!(far < near));
    QVERIFY(!(far < alsoFar));
    QVERIFY(!(alsoFar < far));
}

void tst_ruler::hasOneSignalAndOneSlot()
{
    const QMetaObject& meta = ruler_t::staticMetaObject;
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        methods << QString::fromLatin1(meta.method(i).methodSignature());
    QCOMPARE(methods, QStringList({"boundsChanged(double,double)", "range(double,double)"}));
}

void tst_ruler::announcesARangeOnlyOnce()
{
    ruler_t ruler(nullptr);
    QSignalSpy spy(&ruler, &ruler_t::boundsChanged);
    ruler.range(-1.0, 2.0);
    ruler.range(-1.0, 2.0);
    QCOMPARE(announced(spy), QStringList{"-1 to 2"});
    ruler.range(2.0, -1.0);
    QCOMPARE(announced(spy), QStringList({"-1 to 2", "2 to -1"}));
}

void tst_ruler::storesTheRangeBeforeItAnnouncesIt()
{
    ruler_t ruler(nullptr);
    ruler.resize(10, 20);
    QString seen;
    connect(&ruler, &ruler_t::boundsChanged, &ruler, [&seen, &ruler] { seen = boundsOf(ruler); });
    ruler.range(-1.0, 2.0);
    QCOMPARE(seen, QString("-1 to 2"));
}

void tst_ruler::keepsTheWidthOfARangeAtALimit_data()
{
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::addColumn<double>("start");
    QTest::addColumn<double>("end");
    QTest::addColumn<QString>("wanted");
    QTest::newRow("inside") << 0.0 << 10.0 << 2.0 << 3.0 << "2 to 3";
    QTest::newRow("start below") << 0.0 << 100.0 << -10.0 << 5.0 << "0 to 15";
    QTest::newRow("start below, too wide") << 0.0 << 12.0 << -10.0 << 5.0 << "0 to 12";
    QTest::newRow("end above is cut") << 0.0 << 10.0 << 2.0 << 30.0 << "2 to 10";
    QTest::newRow("start above") << 0.0 << 10.0 << 20.0 << 15.0 << "10 to 5";
    QTest::newRow("both above") << 0.0 << 10.0 << 20.0 << 25.0 << "10 to 10";
    QTest::newRow("decreasing, end below") << 0.0 << 10.0 << 5.0 << -5.0 << "5 to 0";
    QTest::newRow("limits the wrong way round") << 10.0 << 0.0 << 5.0 << 6.0 << "10 to 10";
    QTest::newRow("infinite start") << 0.0 << 10.0 << inf << 5.0 << "10 to 0";
}

void tst_ruler::keepsTheWidthOfARangeAtALimit()
{
    QFETCH(double, min);
    QFETCH(double, max);
    QFETCH(double, start);
    QFETCH(double, end);
    QFETCH(QString, wanted);
    ruler_t ruler(nullptr);
    ruler.axisMinLimit(min);
    ruler.axisMaxLimit(max);
    QSignalSpy spy(&ruler, &ruler_t::boundsChanged);
    ruler.range(start, end);
    QCOMPARE(boundsOf(ruler), wanted);
    QCOMPARE(announced(spy), QStringList{wanted});
}

void tst_ruler::leavesThePresentRangeToNewLimits()
{
    stage_t stage;
    stage.ruler.range(-5.0, 5.0);
    QCOMPARE(stage.paintsAfter([](ruler_t& ruler) {
        ruler.axisMinLimit(0.0);
        ruler.axisMaxLimit(1.0);
    }),
             0);
    QCOMPARE(boundsOf(stage.ruler), QString("-5 to 5"));
}

// Deliberate: a range beyond a limit is announced every time that it is asked for.
void tst_ruler::comparesRangesBeforeItLimitsThem()
{
    ruler_t ruler(nullptr);
    ruler.axisMinLimit(0.0);
    QSignalSpy spy(&ruler, &ruler_t::boundsChanged);
    ruler.range(-10.0, 5.0);
    ruler.range(-10.0, 5.0);
    ruler.range(0.0, 15.0);
    QCOMPARE(announced(spy), QStringList({"0 to 15", "0 to 15"}));
}

void tst_ruler::swapsRangesWhileInverted()
{
    ruler_t ruler(nullptr);
    ruler.range(1.0, 4.0);
    QSignalSpy spy(&ruler, &ruler_t::boundsChanged);
    ruler.invert(true);
    QCOMPARE(boundsOf(ruler), QString("4 to 1"));
    ruler.range(2.0, 5.0);
    QCOMPARE(boundsOf(ruler), QString("5 to 2"));
    ruler.range(2.0, 5.0);
    QCOMPARE(announced(spy), QStringList({"1 to 4", "2 to 5"}));
}

// Deliberate: the bounds in use are passed on, so that a second call swaps them back, and one with
// false finds nothing to change.
void tst_ruler::turnsRoundWithEveryCallOfInvert()
{
    ruler_t ruler(nullptr);
    ruler.range(1.0, 4.0);
    QSignalSpy spy(&ruler, &ruler_t::boundsChanged);
    ruler.invert(true);
    ruler.invert(true);
    QCOMPARE(boundsOf(ruler), QString("1 to 4"));
    QCOMPARE(announced(spy), QStringList({"1 to 4", "4 to 1"}));
    ruler.invert(true);
    ruler.invert(false);
    QCOMPARE(boundsOf(ruler), QString("4 to 1"));
    QCOMPARE(spy.count(), 3);
    ruler.range(1.0, 4.0);
    QCOMPARE(boundsOf(ruler), QString("1 to 4"));
}

void tst_ruler::staysQuietWhenAPointIsInverted()
{
    ruler_t ruler(nullptr);
    ruler.range(3.0, 3.0);
    QSignalSpy spy(&ruler, &ruler_t::boundsChanged);
    ruler.invert(true);
    QCOMPARE(spy.count(), 0);
}

void tst_ruler::mapsPixelsToValues_data()
{
    QTest::addColumn<int>("location");
    QTest::addColumn<int>("px");
    QTest::addColumn<double>("value");
    // 100 x 50 pixels, from 10 to 20.
    QTest::newRow("bottom, start") << int(ruler_t::BOTTOM) << 0 << 10.0;
    QTest::newRow("bottom, end") << int(ruler_t::BOTTOM) << 100 << 20.0;
    QTest::newRow("top, middle") << int(ruler_t::TOP) << 50 << 15.0;
    QTest::newRow("left, end is on top") << int(ruler_t::LEFT) << 0 << 20.0;
    QTest::newRow("left, start is below") << int(ruler_t::LEFT) << 50 << 10.0;
    QTest::newRow("right, middle") << int(ruler_t::RIGHT) << 25 << 15.0;
}

void tst_ruler::mapsPixelsToValues()
{
    QFETCH(int, location);
    QFETCH(int, px);
    QFETCH(double, value);
    stage_t stage(QSize(100, 50));
    stage.ruler.axisLocation(static_cast<ruler_t::location_t>(location));
    stage.ruler.range(10.0, 20.0);
    QCOMPARE(stage.ruler.pixelToValue(px), value);
    QCOMPARE(stage.ruler.valueToPixel(value), px);
}

void tst_ruler::mapsValuesBeforeTheFirstPixelToZero()
{
    stage_t stage(QSize(100, 50));
    stage.ruler.range(10.0, 20.0);
    QCOMPARE(stage.ruler.valueToPixel(9.0), 0);
    QCOMPARE(stage.ruler.valueToPixel(-1e300), 0);
    QCOMPARE(stage.ruler.valueToPixel(nan_), 0);
    QCOMPARE(stage.ruler.valueToPixel(30.0), 200); // beyond the other end
    QCOMPARE(stage.ruler.valueToPixel(inf), std::numeric_limits<int>::max());
    QCOMPARE(stage.ruler.pixelToValue(-10), 9.0);
}

void tst_ruler::dropsThePixelsFraction()
{
    stage_t stage(QSize(100, 50));
    stage.ruler.range(0.0, 100.0);
    QCOMPARE(stage.ruler.valueToPixel(7.99), 7);
    QCOMPARE(stage.ruler.valueToPixel(-0.99), 0);
}

void tst_ruler::hasAScaleOfOneWithoutARange()
{
    stage_t stage(QSize(100, 50));
    stage.ruler.range(7.0, 7.0);
    QCOMPARE(stage.ruler.pixelToValue(2), 9.0);
    stage.ruler.resize(200, 50);
    QCOMPARE(stage.ruler.valueToPixel(10.0), 3);
}

// Deliberate: the scale, and the direction in it, follow with the next range or resize.
void tst_ruler::keepsItsScaleWhenItMovesToAnotherEdge()
{
    stage_t stage(QSize(400, 100));
    ruler_t& ruler = stage.ruler;
    ruler.range(0.0, 100.0); // 4 pixels a unit
    ruler.axisLocation(ruler_t::LEFT);
    QCOMPARE(ruler.pixelToValue(4), 101.0); // from the end upwards, as if from left to right
    ruler.resize(400, 200);
    QCOMPARE(ruler.pixelToValue(2), 101.0); // the new length, the range as it was
    ruler.range(0.0, 100.0);
    QCOMPARE(ruler.pixelToValue(2), 101.0); // the same range is no news
    ruler.range(0.0, 50.0);
    QCOMPARE(ruler.pixelToValue(4), 49.0);
}

void tst_ruler::countsDecimals_data()
{
    QTest::addColumn<double>("base");
    QTest::addColumn<int>("step");
    QTest::addColumn<unsigned>("wanted"); // for the interval base to the power of step
    QTest::newRow("1") << 10.0 << 0 << 0u;
    QTest::newRow("10") << 10.0 << 1 << 0u;
    QTest::newRow("0.5") << 2.0 << -1 << 2u;
    QTest::newRow("0.25") << 2.0 << -2 << 2u;
    QTest::newRow("0.125") << 2.0 << -3 << 2u;
    QTest::newRow("0.0625") << 2.0 << -4 << 3u;
    QTest::newRow("0.1") << 10.0 << -1 << 2u;
    QTest::newRow("0.01") << 10.0 << -2 << 3u;
    QTest::newRow("1.5") << 1.5 << 1 << 2u;
    QTest::newRow("0.999") << 0.999 << 1 << 2u;
    QTest::newRow("20 digits") << 10.0 << -20 << 21u;
    QTest::newRow("infinite") << 10.0 << 400 << 1u;
    QTest::newRow("zero") << 10.0 << -400 << 0u;
}

void tst_ruler::countsDecimals()
{
    QFETCH(double, base);
    QFETCH(int, step);
    ruler_t ruler(nullptr);
    ruler.tickTable({{1.0, 10}}, base);
    QCOMPARE(ruler.numDecimals(), 0u); // at the power of 0
    ruler.step(step);
    QTEST(ruler.numDecimals(), "wanted");
}

void tst_ruler::printsValues_data()
{
    QTest::addColumn<int>("step");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("wanted");
    QTest::newRow("whole") << 0 << 20.0 << "20";
    QTest::newRow("whole, rounded") << 0 << 2.5 << "2";
    QTest::newRow("minus zero") << 0 << -0.2 << "-0";
    QTest::newRow("trailing zero") << -1 << 2.5 << "2.5";
    QTest::newRow("no zero to strip") << -1 << 0.25 << "0.25";
    QTest::newRow("only zeros behind the point") << -1 << 3.0 << "3";
    QTest::newRow("zeros before the point stay") << -1 << 100.0 << "100";
    QTest::newRow("negative") << -1 << -0.5 << "-0.5";
    QTest::newRow("zero") << -1 << 0.0 << "0";
    QTest::newRow("rounded to minus zero") << -1 << -0.001 << "-0";
    QTest::newRow("infinite") << -1 << inf << "inf";
}

void tst_ruler::printsValues()
{
    QFETCH(int, step);
    QFETCH(double, value);
    ruler_t ruler(nullptr);
    ruler.step(step);
    QTEST(QString::fromStdString(ruler.textFromValue(value)), "wanted");
}

void tst_ruler::cutsLongNumbersOff()
{
    ruler_t ruler(nullptr);
    QCOMPARE(ruler.textFromValue(1e300).size(), std::size_t(255));
    ruler.step(-300);
    QCOMPARE(QString::fromStdString(ruler.textFromValue(7.0)), QString("7"));
    QCOMPARE(ruler.textFromValue(1e300).size(), std::size_t(255)); // the point is cut off, too
}

void tst_ruler::leavesTheMouseAloneAtFirst()
{
    stage_t stage(QSize(100, 60));
    stage.ruler.range(0.0, 100.0);
    const QImage before = snapshot(stage.ruler);
    drag(stage.ruler, QPoint(10, 10), QPoint(50, 10));
    sendMouse(stage.ruler, QEvent::MouseButtonDblClick, QPoint(10, 10));
    QCOMPARE(boundsOf(stage.ruler), QString("0 to 100"));
    QCOMPARE(firstDifference(snapshot(stage.ruler), before), QString());
}

void tst_ruler::followsTheMouseWithoutAButton()
{
    ruler_t ruler(nullptr);
    ruler.interactive(true);
    QVERIFY(ruler.hasMouseTracking());
    ruler.interactive(false);
    QVERIFY(!ruler.hasMouseTracking());
}

void tst_ruler::highlightsWhatIsDraggedOver()
{
    stage_t stage(QSize(100, 60));
    ruler_t& ruler = stage.ruler;
    ruler.tickLength(0);
    ruler.interactive(true);
    ruler.range(0.0, 100.0);
    sendMouse(ruler, QEvent::MouseMove, QPoint(70, 10)); // nothing is pressed
    QCOMPARE(firstDifference(snapshot(ruler), blank(ruler)), QString());
    sendMouse(ruler, QEvent::MouseButtonPress, QPoint(20, 10));
    QCOMPARE(firstDifference(snapshot(ruler), blank(ruler)), QString());
    sendMouse(ruler, QEvent::MouseMove, QPoint(30, 10));
    drawing_t wanted(ruler);
    wanted.fill(20, 0, 11, 60, ruler.palette().color(QPalette::Highlight));
    QCOMPARE(firstDifference(snapshot(ruler), wanted.picture), QString());
    sendMouse(ruler, QEvent::MouseButtonRelease, QPoint(30, 10));
    QCOMPARE(firstDifference(snapshot(ruler), blank(ruler)), QString());
    sendMouse(ruler, QEvent::MouseMove, QPoint(70, 10)); // the selection is over
    QCOMPARE(firstDifference(snapshot(ruler), blank(ruler)), QString());
}

void tst_ruler::ignoresAReleaseWithoutAPress()
{
    stage_t stage(QSize(100, 60));
    stage.ruler.interactive(true);
    stage.ruler.range(0.0, 100.0);
    sendMouse(stage.ruler, QEvent::MouseButtonRelease, QPoint(30, 10));
    QCOMPARE(boundsOf(stage.ruler), QString("0 to 100"));
}

void tst_ruler::selectsARange_data()
{
    QTest::addColumn<int>("location");
    QTest::addColumn<bool>("isInverted");
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<QString>("wanted"); // bounds, at one pixel a unit from 0 to 100
    QTest::addColumn<QStringList>("signal");
    const auto row = [](const char* name, ruler_t::location_t location, bool isInverted,
                        QPoint from, QPoint to, const char* wanted, const char* signal) {
        QTest::newRow(name) << int(location) << isInverted << from << to << wanted
                            << QStringList{signal};
    };
    row("drag", ruler_t::BOTTOM, false, {20, 0}, {60, 90}, "20 to 60", "20 to 60");
    row("drag to the left", ruler_t::TOP, false, {60, 0}, {20, 0}, "20 to 60", "20 to 60");
    row("drag of four pixels", ruler_t::BOTTOM, false, {20, 0}, {24, 0}, "20 to 24", "20 to 24");
    row("click", ruler_t::BOTTOM, false, {20, 0}, {20, 0}, "-30 to 70", "-30 to 70");
    row("click with three pixels", ruler_t::BOTTOM, false, {20, 0}, {23, 0}, "-30 to 70",
        "-30 to 70");
    row("click with three pixels back", ruler_t::BOTTOM, false, {20, 0}, {17, 0}, "-30 to 70",
        "-30 to 70");
    row("drag out at the left", ruler_t::BOTTOM, false, {20, 0}, {-30, 0}, "-30 to 20",
        "-30 to 20");
    row("drag out at the right", ruler_t::BOTTOM, false, {20, 0}, {130, 0}, "20 to 130",
        "20 to 130");
    row("drag down", ruler_t::LEFT, false, {0, 10}, {0, 90}, "10 to 90", "10 to 90");
    row("drag up", ruler_t::RIGHT, false, {0, 90}, {50, 10}, "10 to 90", "10 to 90");
    row("vertical click", ruler_t::LEFT, false, {0, 20}, {60, 20}, "30 to 130", "30 to 130");
    // From 100 at the left or bottom to 0.
    row("inverted drag", ruler_t::BOTTOM, true, {20, 0}, {60, 0}, "80 to 40", "40 to 80");
    row("inverted drag down", ruler_t::LEFT, true, {0, 10}, {0, 40}, "40 to 10", "10 to 40");
    row("inverted click", ruler_t::BOTTOM, true, {20, 0}, {20, 0}, "130 to 30", "30 to 130");
    row("inverted vertical click", ruler_t::LEFT, true, {0, 20}, {0, 20}, "70 to -30", "-30 to 70");
}

void tst_ruler::selectsARange()
{
    QFETCH(int, location);
    QFETCH(bool, isInverted);
    QFETCH(QPoint, from);
    QFETCH(QPoint, to);
    stage_t stage(QSize(100, 100));
    ruler_t& ruler = stage.ruler;
    ruler.axisLocation(static_cast<ruler_t::location_t>(location));
    ruler.interactive(true);
    ruler.invert(isInverted);
    ruler.range(0.0, 100.0);
    QSignalSpy spy(&ruler, &ruler_t::boundsChanged);
    drag(ruler, from, to);
    QTEST(boundsOf(ruler), "wanted");
    QTEST(announced(spy), "signal");
}

void tst_ruler::doublesTheRange_data()
{
    QTest::addColumn<int>("location");
    QTest::addColumn<bool>("isInverted");
    QTest::addColumn<QString>("wanted");
    QTest::newRow("horizontal") << int(ruler_t::BOTTOM) << false << "-50 to 150";
    QTest::newRow("vertical") << int(ruler_t::RIGHT) << false << "-50 to 150";
    QTest::newRow("inverted") << int(ruler_t::BOTTOM) << true << "150 to -50";
}

void tst_ruler::doublesTheRange()
{
    QFETCH(int, location);
    QFETCH(bool, isInverted);
    stage_t stage(QSize(100, 100));
    stage.ruler.axisLocation(static_cast<ruler_t::location_t>(location));
    stage.ruler.interactive(true);
    stage.ruler.invert(isInverted);
    stage.ruler.range(0.0, 100.0);
    sendMouse(stage.ruler, QEvent::MouseButtonDblClick, QPoint(3, 3));
    QTEST(boundsOf(stage.ruler), "wanted");
}

void tst_ruler::survivesSlotsThatDeleteIt()
{
    QPointer<ruler_t> ruler(new ruler_t(nullptr));
    ruler->resize(100, 60);
    ruler->interactive(true);
    ruler->range(0.0, 100.0);
    connect(ruler.data(), &ruler_t::boundsChanged, this, [&ruler] { delete ruler; });
    sendMouse(*ruler, QEvent::MouseButtonPress, QPoint(10, 10));
    sendMouse(*ruler, QEvent::MouseButtonRelease, QPoint(50, 10));
    QVERIFY(ruler.isNull());
}

void tst_ruler::survivesOddInput_data()
{
    using action_t = std::function<void(ruler_t&)>;
    QTest::addColumn<action_t>("action");
    const auto row = [](const QString& name, const action_t& action) {
        QTest::newRow(name.toLatin1().constData()) << action;
    };
    const std::vector<double> odd = {0.0,    -0.0,  1e-300, -1e-300, 5e-324, 1e300,
                                     -1e300, 1e308, 1e15,   inf,     -inf,   nan_};
    for (const double a : odd) {
        for (const double b : odd) {
            row(QStringLiteral("range %1 to %2").arg(a).arg(b),
                [a, b](ruler_t& ruler) { ruler.range(a, b); });
        }
        row(QStringLiteral("interval %1").arg(a), [a](ruler_t& ruler) {
            ruler.tickTable({{a, 10}}, 10.0);
        });
        row(QStringLiteral("interval %1 after another").arg(a), [a](ruler_t& ruler) {
            ruler.tickTable({{1e-7, 10}, {a, 10}, {3.0, 10}}, 10.0);
        });
        row(QStringLiteral("base %1").arg(a), [a](ruler_t& ruler) {
            ruler.tickTable({{1.0, 10}}, a);
        });
        row(QStringLiteral("indicator and highlight at %1").arg(a), [a](ruler_t& ruler) {
            ruler.indicator(a);
            ruler.highlightRange(a, 5.0);
            ruler.highlightRange(5.0, a);
        });
    }
    for (const double base : {1.0000001, 1.0 + 2.3e-16, 1.001, 1e200}) {
        row(QStringLiteral("base 1 + %1").arg(base - 1.0), [base](ruler_t& ruler) {
            ruler.tickTable({{1.0, 10}, {7.0, 3}}, base);
        });
    }
    for (const unsigned numMinor : {0u, 1u, 1000000000u, 4294967295u}) {
        row(QStringLiteral("%1 minor ticks").arg(numMinor), [numMinor](ruler_t& ruler) {
            ruler.tickTable({{1.0, numMinor}}, 10.0);
        });
    }
    row("no entries", [](ruler_t& ruler) { ruler.tickTable({}, 10.0); });
    row("no pixels", [](ruler_t& ruler) { ruler.resize(0, 60); });
    row("one pixel", [](ruler_t& ruler) { ruler.resize(1, 60); });
    row("least step", [](ruler_t& ruler) { ruler.step(std::numeric_limits<int>::min()); });
    row("greatest step", [](ruler_t& ruler) { ruler.step(std::numeric_limits<int>::max()); });
    row("NaN limits", [](ruler_t& ruler) {
        ruler.axisMinLimit(nan_);
        ruler.axisMaxLimit(nan_);
        ruler.range(1.0, 2.0);
    });
}

// Bounded time, no crash, no undefined conversion, whatever the labels.
void tst_ruler::survivesOddInput()
{
    QFETCH(std::function<void(ruler_t&)>, action);
    const auto useEverything = [](ruler_t& ruler) {
        snapshot(ruler);
        ruler.calculateTickPlacement();
        snapshot(ruler);
        ruler_t::fit_t fit;
        ruler.calculateFit(1.0, fit);
        ruler.pixelToValue(17);
        ruler.numDecimals();
        ruler.textFromValue(1e300);
    };
    stage_t stage(QSize(300, 60));
    for (const labels_t labels : {labels_t::NUMBERS, labels_t::NOTHING, labels_t::SAME}) {
        stage.ruler.labels = labels;
        stage.ruler.range(0.0, 100.0);
        snapshot(stage.ruler);
        action(stage.ruler);
        useEverything(stage.ruler);
        // A common ruler again.
        stage.ruler.tickTable({{1.0, 10}, {5.0, 10}}, 10.0);
        stage.ruler.axisMinLimit(-1000.0);
        stage.ruler.axisMaxLimit(1000.0);
        stage.ruler.resize(300, 60);
        stage.ruler.range(0.0, 200.0);
        QVERIFY(majorColumns(stage.ruler).size() > 2);
    }
}

// A window that can still be made.
void tst_ruler::staysOfAPaintableSize()
{
    messageRecorder_t messages;
    ruler_t ruler(nullptr);
    ruler.resize(300, 60);
    ruler.range(0.0, 100.0);
    ruler.tickLength(4294967295u);
    ruler.spacing(4294967295u);
    ruler.show();
    QVERIFY(QTest::qWaitForWindowExposed(&ruler, patienceMs()));
    QTRY_VERIFY(ruler.height() > 1200); // beyond the screen, once it is painted
    QVERIFY(ruler.height() < 32768);
    QVERIFY(ruler.minimumSizeHint().height() < 32768);
    ruler.axisLocation(ruler_t::LEFT);
    stage_t::settle();
    QVERIFY(ruler.width() < 32768);
    QCOMPARE(messages.texts(), QStringList());
}

ZORBIN_TEST_MAIN(tst_ruler, QApplication)
#include "tst_ruler.moc"
