#include "messageRecorder.h"
#include "pictures.h"
#include "plainRuler.h"
#include "randomNumbers.h"
#include "testCase.h"

#include <QApplication>
#include <QMetaMethod>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QProxyStyle>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QStyle>
#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <ruler.h>
#include <vector>

using namespace zorbin_qt_gui;
using tickTable_t = std::vector<ruler_t::tickEntry_t>;

Q_DECLARE_METATYPE(std::function<void(ruler_t&)>)
Q_DECLARE_METATYPE(tickTable_t)

static const double inf = std::numeric_limits<double>::infinity();
static const double nan_ = std::numeric_limits<double>::quiet_NaN();
static const auto nowhere = static_cast<ruler_t::location_t>(7);

namespace {

// What a subclass makes of a value.
enum class labels_t
{
    NUMBERS,     // as the ruler itself
    NOTHING,     // never a label
    SAME,        // always one text
    TIMES,       // hours, minutes, seconds
    ODD_LONGER,  // a whole odd number makes a longer text
    BY_DECIMALS, // as many digits as the ruler's decimals
};
const std::vector<labels_t> allLabels = {labels_t::NUMBERS,    labels_t::NOTHING,
                                         labels_t::SAME,       labels_t::TIMES,
                                         labels_t::ODD_LONGER, labels_t::BY_DECIMALS};

std::string twoDigits(qint64 number)
{
    return (number < 10 ? "0" : "") + std::to_string(number);
}

// A label other than NUMBERS.
std::string labelText(labels_t labels, const std::string& same, double value, unsigned decimals)
{
    const double floor = std::floor(value);
    const bool isSmall = std::abs(floor) < 1e15; // and not NaN
    switch (labels) {
    case labels_t::SAME:
        return same;
    case labels_t::TIMES: {
        if (!isSmall)
            return "?";
        const qint64 day = 86400;
        const qint64 second = (static_cast<qint64>(floor) % day + day) % day;
        return twoDigits(second / 3600) + ":" + twoDigits(second / 60 % 60) + ":" +
               twoDigits(second % 60);
    }
    case labels_t::ODD_LONGER: {
        const bool isOdd = isSmall && static_cast<qint64>(floor) % 2 != 0;
        return isOdd ? "an odd one \xb0" : "2";
    }
    case labels_t::BY_DECIMALS:
        return std::string(decimals + 1, '1');
    case labels_t::NUMBERS:
    case labels_t::NOTHING:
        break;
    }
    return std::string();
}

class testRuler_t : public ruler_t
{
public:
    using ruler_t::ruler_t;

    std::string textFromValue(double value) const override
    {
        ++labelsMade;
        if (labels == labels_t::NUMBERS)
            return ruler_t::textFromValue(value);
        return labelText(labels, same, value, numDecimals());
    }

    labels_t labels = labels_t::NOTHING;
    std::string same = "8";
    mutable int labelsMade = 0;
    int paints = 0;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        ++paints;
        ruler_t::paintEvent(event);
    }
};

// A ruler on show, so that it is resized at once, in a window that leaves its geometry alone.
class stage_t
{
public:
    explicit stage_t(QSize size = QSize(500, 60))
    {
        window.resize(900, 900);
        ruler.resize(size);
        window.show();
        if (!QTest::qWaitForWindowExposed(&window, patienceMs()))
            qFatal("The window isn't shown");
        settle();
    }

    static void settle()
    {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }

    // How often the ruler was painted because of an action.
    int paintsAfter(const std::function<void(ruler_t&)>& action)
    {
        settle();
        ruler.paints = 0;
        action(ruler);
        settle();
        return ruler.paints;
    }

    QWidget window;
    testRuler_t ruler{&window};
};

// A picture of the ruler, drawn with the ruler's ink.
class drawing_t
{
public:
    explicit drawing_t(const ruler_t& ruler)
        : picture(blank(ruler)), ink(ruler.palette().color(QPalette::WindowText)),
          m_font(ruler.font())
    {
    }

    void fill(int x, int y, int width, int height) { fill(x, y, width, height, ink); }
    void fill(int x, int y, int width, int height, const QColor& color)
    {
        QPainter(&picture).fillRect(x, y, width, height, color);
    }
    // A label with its top left corner at a point.
    void write(int x, int y, const QString& text)
    {
        QPainter painter(&picture);
        painter.setFont(m_font);
        painter.setPen(ink);
        const QRect rect = painter.fontMetrics().boundingRect(
            QRect(), static_cast<int>(Qt::AlignLeft | Qt::AlignTop), text);
        painter.drawText(rect.translated(x, y), Qt::AlignCenter, text);
    }

    QImage picture;
    const QColor ink;

private:
    const QFont m_font;
};

// Where a horizontal ruler with ticks of 8 and 4 pixels has drawn them, read from the picture.
std::vector<int> columnsWithInk(ruler_t& ruler, int row)
{
    const QImage picture = snapshot(ruler);
    const QRgb ink = ruler.palette().color(QPalette::WindowText).rgb();
    std::vector<int> columns;
    for (int x = 0; x < picture.width(); ++x) {
        if (picture.pixel(x, row) == ink)
            columns.push_back(x);
    }
    return columns;
}

std::vector<int> majorColumns(ruler_t& ruler)
{
    return columnsWithInk(ruler, 8);
}

std::vector<int> allColumns(ruler_t& ruler)
{
    return columnsWithInk(ruler, 4);
}

std::vector<int> columns(int first, int beyond, double distance)
{
    std::vector<int> wanted;
    for (int i = 0; first + static_cast<int>(i * distance) < beyond; ++i)
        wanted.push_back(first + static_cast<int>(i * distance));
    return wanted;
}

// Half of what a label takes along a horizontal ruler.
int halfWidth(const ruler_t& ruler, const QString& text)
{
    return (ruler.fontMetrics().boundingRect(QRect(), Qt::AlignCenter, text).width() + 1) / 2;
}

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

QString boundsOf(const ruler_t& ruler)
{
    return QStringLiteral("%1 to %2").arg(ruler.start()).arg(ruler.end());
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

    // Ticks at a given interval.
    void laysTicksAtMultiples_data();
    void laysTicksAtMultiples();
    void laysEveryTickUpToAMillion();
    void laysTicksAtZeroUntilItIsShown();
    void fitsAllLabelsUntilItIsShown();
    void laysNoTicks_data();
    void laysNoTicks();
    void letsLabelsTouch();
    void letsLabelsOverlapNearTheStart();
    void measuresLabelsAmongThousands();
    void measuresLabelsAlongTheAxis_data();
    void measuresLabelsAlongTheAxis();
    void ignoresLabelsWithoutAnEdge();

    // Labels.
    void countsDecimals_data();
    void countsDecimals();
    void printsValues_data();
    void printsValues();
    void cutsLongNumbersOff();

    // The search.
    void takesTheFirstIntervalOfTwoPixels_data();
    void takesTheFirstIntervalOfTwoPixels();
    void skipsIntervalsWhoseLabelsOverlap();
    void fallsBackToTheFirstStepOfTwoPixels();
    void triesLabelsWithTheDecimalsOfTheIntervalBefore();
    void findsTheSameTicksFromEveryStep();
    void takesANewTableWithTheNextTicks();
    void triesTheTableOnceWithoutAUsableBase_data();
    void triesTheTableOnceWithoutAUsableBase();
    void climbsSmallSteps();
    void endsSoonWithABaseJustAboveOne_data();
    void endsSoonWithABaseJustAboveOne();
    void searchesInVainOnlyOnce();
    void keepsItsScaleForTheTicksOfAnotherEdge_data();
    void keepsItsScaleForTheTicksOfAnotherEdge();
    void dividesIntervalsByMinorTicks_data();
    void dividesIntervalsByMinorTicks();
    void drawsDenseMinorTicks_data();
    void drawsDenseMinorTicks();
    void drawsDenseMajorTicks_data();
    void drawsDenseMajorTicks();
    void drawsDenseTicksWhereDoublesAreCoarse();
    void drawsOnlyMajorLabels();

    // Painting.
    void repaintsForChangesOnly_data();
    void repaintsForChangesOnly();
    void computesTicksAnewAfterAFontChange();
    void fitsItsSizeToItsEdge_data();
    void fitsItsSizeToItsEdge();
    void growsToItsWidestLabel();
    void drawsTicksAtEveryEdge_data();
    void drawsTicksAtEveryEdge();
    void drawsTheStartOneRowBelowAVerticalRuler();
    void halvesTheTickLength_data();
    void halvesTheTickLength();
    void centresLabelsBelowTheirTicks();
    void leavesOutLabelsThatWouldLeave();
    void writesLabelsAtEveryEdge_data();
    void writesLabelsAtEveryEdge();
    void highlightsTheColumnsOfASpan_data();
    void highlightsTheColumnsOfASpan();
    void pointsAtAValue_data();
    void pointsAtAValue();
    void remembersWhatItPointedAt();
    void asksTheStyleForItsArrowWhenThatChanges();
    void drawsNothingWithoutAnEdge();

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

    // Everything at random.
    void looksLikeThePlainRuler_data();
    void looksLikeThePlainRuler();
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

void tst_ruler::laysTicksAtMultiples_data()
{
    QTest::addColumn<double>("start");
    QTest::addColumn<double>("end");
    QTest::addColumn<double>("interval");
    QTest::addColumn<double>("startTick");
    QTest::addColumn<double>("endTick");
    QTest::addColumn<QStringList>("wanted"); // at 10 pixels a unit
    QTest::newRow("whole") << 0.0 << 10.0 << 5.0 << 0.0 << 10.0
                           << QStringList{"0:0", "50:5", "100:10"};
    QTest::newRow("between multiples")
        << 0.5 << 10.5 << 4.0 << 4.0 << 8.0 << QStringList{"35:4", "75:8"};
    QTest::newRow("below zero") << -7.0 << 3.0 << 5.0 << -5.0 << 0.0
                                << QStringList{"20:-5", "70:0"};
    QTest::newRow("decreasing") << 10.5 << 0.5 << 4.0 << 8.0 << 4.0 << QStringList{"25:8", "65:4"};
    QTest::newRow("one multiple") << 1.0 << 11.0 << 7.0 << 7.0 << 7.0 << QStringList{"60:7"};
    // Deliberate: the counting of intervals knows no direction.
    QTest::newRow("no multiple") << 1.0 << 11.0 << 20.0 << 20.0 << 0.0
                                 << QStringList{"190:20", "390:40"};
}

void tst_ruler::laysTicksAtMultiples()
{
    QFETCH(double, start);
    QFETCH(double, end);
    QFETCH(double, interval);
    stage_t stage(QSize(100, 60));
    stage.ruler.labels = labels_t::NUMBERS;
    stage.ruler.range(start, end);
    ruler_t::fit_t fit;
    fit.ticks.resize(9);
    stage.ruler.calculateFit(interval, fit);
    QTEST(fit.startTick, "startTick");
    QTEST(fit.endTick, "endTick");
    QStringList ticks;
    for (const ruler_t::tick_t& tick : fit.ticks) {
        ticks << QStringLiteral("%1:%2").arg(tick.pos).arg(QString::fromStdString(tick.label));
        QCOMPARE(tick.type, ruler_t::tick_t::TICK_MINOR);
    }
    QTEST(ticks, "wanted");
}

void tst_ruler::laysEveryTickUpToAMillion()
{
    stage_t stage(QSize(100, 60));
    stage.ruler.range(0.0, 999999.0);
    ruler_t::fit_t fit;
    stage.ruler.calculateFit(1.0, fit);
    QCOMPARE(fit.ticks.size(), std::size_t(1000000));
    QCOMPARE(fit.ticks.front().pos, 0u);
    QCOMPARE(fit.ticks[500000].pos, 50u);
    QCOMPARE(fit.ticks.back().pos, 100u);
    stage.ruler.range(0.0, 1000000.0);
    stage.ruler.calculateFit(1.0, fit);
    QCOMPARE(fit.ticks.size(), std::size_t(0));
    QCOMPARE(fit.startTick, 0.0);
    QCOMPARE(fit.endTick, 1000000.0);
}

void tst_ruler::laysTicksAtZeroUntilItIsShown()
{
    testRuler_t ruler(nullptr);
    ruler.labels = labels_t::NUMBERS;
    ruler.resize(100, 60);
    ruler.range(0.0, 10.0);
    ruler_t::fit_t fit;
    const auto ticks = [&ruler, &fit] {
        ruler.calculateFit(5.0, fit);
        QStringList texts;
        for (const ruler_t::tick_t& tick : fit.ticks)
            texts << QStringLiteral("%1:%2").arg(tick.pos).arg(QString::fromStdString(tick.label));
        return texts;
    };
    QCOMPARE(ticks(), QStringList({"0:0", "0:5", "0:10"}));
    ruler.axisLocation(ruler_t::LEFT);
    ruler.range(0.0, 12.0);
    QCOMPARE(ticks(), QStringList({"0:0", "0:5", "0:10"}));
    snapshot(ruler);
    QCOMPARE(ticks(), QStringList({"0:0", "25:5", "50:10"}));
}

void tst_ruler::laysNoTicks_data()
{
    QTest::addColumn<double>("start");
    QTest::addColumn<double>("end");
    QTest::addColumn<double>("interval");
    QTest::addColumn<double>("startTick");
    QTest::addColumn<double>("endTick");
    QTest::newRow("zero interval") << 0.0 << 100.0 << 0.0 << nan_ << nan_;
    QTest::newRow("negative interval") << 0.0 << 100.0 << -1.0 << 0.0 << 100.0;
    QTest::newRow("infinite interval") << 0.0 << 100.0 << inf << nan_ << nan_;
    QTest::newRow("NaN interval") << 0.0 << 100.0 << nan_ << nan_ << nan_;
    QTest::newRow("denormal interval") << 0.0 << 100.0 << 5e-324 << 0.0 << inf;
    QTest::newRow("more than a million") << 0.0 << 100.0 << 5e-5 << 0.0 << 100.0;
    QTest::newRow("2^32 - 1 steps") << 0.0 << 4294967295.0 << 1.0 << 0.0 << 4294967295.0;
    QTest::newRow("NaN start") << nan_ << 1.0 << 1.0 << nan_ << nan_;
    QTest::newRow("NaN end") << 0.0 << nan_ << 1.0 << 0.0 << nan_;
    QTest::newRow("infinite range") << -1e308 << 1e308 << 1e308 << -1e308 << 1e308;
}

void tst_ruler::laysNoTicks()
{
    QFETCH(double, start);
    QFETCH(double, end);
    QFETCH(double, interval);
    stage_t stage(QSize(100, 60));
    stage.ruler.labels = labels_t::SAME; // would overlap
    stage.ruler.range(start, end);
    ruler_t::fit_t fit;
    fit.ticks.resize(3);
    stage.ruler.calculateFit(interval, fit);
    QVERIFY(fit.ticks.empty());
    QTEST(fit.startTick, "startTick");
    QTEST(fit.endTick, "endTick");
    QVERIFY(stage.ruler.labelFit(interval));
}

void tst_ruler::letsLabelsTouch()
{
    stage_t stage(QSize(500, 60));
    stage.ruler.labels = labels_t::SAME;
    stage.ruler.range(0.0, 500.0);
    const int half = halfWidth(stage.ruler, "8");
    QVERIFY(half > 1);
    QVERIFY(stage.ruler.labelFit(2.0 * half));
    QVERIFY(!stage.ruler.labelFit(2.0 * half - 1.0));
}

// Deliberate: a label that begins before the start of the axis never overlaps the one before it.
void tst_ruler::letsLabelsOverlapNearTheStart()
{
    stage_t stage(QSize(500, 60));
    stage.ruler.labels = labels_t::SAME;
    stage.ruler.same = "0000000000";
    const double half = halfWidth(stage.ruler, "0000000000");
    stage.ruler.range(0.0, 500.0);
    QVERIFY(!stage.ruler.labelFit(half / 2.0));
    stage.ruler.resize(static_cast<int>(half) - 1, 60);
    stage.ruler.range(0.0, half - 1.0);
    QVERIFY(stage.ruler.labelFit(half / 4.0));
}

void tst_ruler::measuresLabelsAmongThousands()
{
    stage_t worn;
    worn.ruler.labels = labels_t::TIMES;
    for (int i = 0; i < 400; ++i) {
        worn.ruler.range(100.0 * i, 100.0 * i + 100.0);
        worn.ruler.calculateTickPlacement();
    }
    stage_t fresh;
    fresh.ruler.labels = labels_t::TIMES;
    fresh.ruler.range(39900.0, 40000.0);
    const QImage picture = snapshot(fresh.ruler);
    QVERIFY(picture != blank(fresh.ruler));
    QCOMPARE(firstDifference(snapshot(worn.ruler), picture), QString());
}

void tst_ruler::measuresLabelsAlongTheAxis_data()
{
    QTest::addColumn<int>("location");
    QTest::addColumn<int>("orientation");
    QTest::addColumn<bool>("isWidth");
    QTest::newRow("bottom, horizontal") << int(ruler_t::BOTTOM) << int(Qt::Horizontal) << true;
    QTest::newRow("top, horizontal") << int(ruler_t::TOP) << int(Qt::Horizontal) << true;
    QTest::newRow("bottom, vertical") << int(ruler_t::BOTTOM) << int(Qt::Vertical) << false;
    QTest::newRow("left, horizontal") << int(ruler_t::LEFT) << int(Qt::Horizontal) << false;
    QTest::newRow("right, horizontal") << int(ruler_t::RIGHT) << int(Qt::Horizontal) << false;
    QTest::newRow("right, vertical") << int(ruler_t::RIGHT) << int(Qt::Vertical) << true;
}

void tst_ruler::measuresLabelsAlongTheAxis()
{
    QFETCH(int, location);
    QFETCH(int, orientation);
    QFETCH(bool, isWidth);
    stage_t stage(QSize(500, 500));
    stage.ruler.labels = labels_t::SAME;
    stage.ruler.same = "00000000";
    stage.ruler.axisLocation(static_cast<ruler_t::location_t>(location));
    stage.ruler.textOrientation(static_cast<Qt::Orientation>(orientation));
    stage.ruler.range(0.0, 500.0);
    const QRect rect = stage.ruler.fontMetrics().boundingRect(QRect(), Qt::AlignCenter, "00000000");
    const int extent = ((isWidth ? rect.width() : rect.height()) + 1) / 2 * 2;
    QVERIFY(stage.ruler.labelFit(extent));
    QVERIFY(!stage.ruler.labelFit(extent - 1));
}

void tst_ruler::ignoresLabelsWithoutAnEdge()
{
    stage_t stage(QSize(500, 500));
    stage.ruler.labels = labels_t::SAME;
    stage.ruler.range(0.0, 500.0);
    QVERIFY(!stage.ruler.labelFit(2.0));
    stage.ruler.axisLocation(nowhere);
    QVERIFY(stage.ruler.labelFit(2.0));
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

void tst_ruler::takesTheFirstIntervalOfTwoPixels_data()
{
    QTest::addColumn<tickTable_t>("table");
    QTest::addColumn<double>("base");
    QTest::addColumn<double>("end");
    QTest::addColumn<double>("distance"); // of the major ticks on 400 pixels
    const tickTable_t decimal = {{1.0, 0}, {2.0, 0}, {2.5, 0}, {5.0, 0}};
    QTest::newRow("5 x 0.1") << decimal << 10.0 << 80.0 << 2.5;
    QTest::newRow("exactly two") << decimal << 10.0 << 200.0 << 2.0;
    QTest::newRow("just below two") << decimal << 10.0 << 201.0 << 800.0 / 201.0;
    QTest::newRow("2.5 x 1") << decimal << 10.0 << 400.0 << 2.0;
    QTest::newRow("2.5") << decimal << 10.0 << 480.0 << 2.5 * 400.0 / 480.0;
    QTest::newRow("up from one") << decimal << 10.0 << 40000.0 << 2.0;
    QTest::newRow("in the order given") << tickTable_t{{5.0, 0}, {3.0, 0}} << 10.0 << 400.0 << 5.0;
    QTest::newRow("binary") << tickTable_t{{3.0, 0}} << 2.0 << 400.0 << 3.0;
    QTest::newRow("a base with a fraction") << tickTable_t{{1.0, 0}} << 1.5 << 400.0 << 2.25;
    QTest::newRow("useless entries")
        << tickTable_t{{0.0, 0}, {-1.0, 0}, {nan_, 0}, {7.0, 0}} << 10.0 << 400.0 << 7.0;
}

void tst_ruler::takesTheFirstIntervalOfTwoPixels()
{
    QFETCH(tickTable_t, table);
    QFETCH(double, base);
    QFETCH(double, end);
    QFETCH(double, distance);
    stage_t stage(QSize(400, 60));
    stage.ruler.tickTable(table, base);
    stage.ruler.range(0.0, end);
    QCOMPARE(majorColumns(stage.ruler), columns(0, 400, distance + 1e-12));
}

void tst_ruler::skipsIntervalsWhoseLabelsOverlap()
{
    stage_t stage(QSize(512, 60));
    stage.ruler.labels = labels_t::SAME;
    stage.ruler.tickTable({{1.0, 0}}, 2.0);
    stage.ruler.showText(false); // measured nevertheless
    stage.ruler.range(0.0, 512.0);
    const int needed = 2 * halfWidth(stage.ruler, "8");
    int distance = 2;
    while (distance < needed)
        distance *= 2;
    QCOMPARE(majorColumns(stage.ruler), columns(0, 512, distance));
}

// Deliberate: any entry counts for the step, and then the first one is taken, though it may be
// narrower than two pixels at that step.
void tst_ruler::fallsBackToTheFirstStepOfTwoPixels()
{
    stage_t stage(QSize(750, 60));
    testRuler_t& ruler = stage.ruler;
    ruler.labels = labels_t::SAME;
    // So wide that labels overlap at distances of 285 pixels and begin behind the start there.
    while (halfWidth(ruler, QString::fromStdString(ruler.same)) < 150)
        ruler.same += "8";
    QVERIFY(halfWidth(ruler, QString::fromStdString(ruler.same)) < 285);
    ruler.tickTable({{1.0, 0}, {1.9, 0}}, 10.0);
    ruler.range(0.0, 500.0); // 1.5 pixels a unit
    drawing_t wanted(ruler);
    wanted.fill(0, 0, 750, 1);
    for (const int column : columns(0, 750, 1.5))
        wanted.fill(column, 0, 1, 9);
    QCOMPARE(firstDifference(snapshot(ruler), wanted.picture), QString()); // without labels
    ruler.tickTable({{1.0, 2}, {1.9, 0}}, 10.0);
    ruler.calculateTickPlacement();
    wanted.fill(0, 0, 750, 5);
    QCOMPARE(firstDifference(snapshot(ruler), wanted.picture), QString());
}

// Deliberate: labels are made while an interval is still being tried.
void tst_ruler::triesLabelsWithTheDecimalsOfTheIntervalBefore()
{
    stage_t stage(QSize(400, 60));
    testRuler_t& ruler = stage.ruler;
    ruler.labels = labels_t::NUMBERS;
    ruler.tickLength(0);
    ruler.tickTable({{1.0, 0}}, 1.0);
    ruler.range(0.0, 400.0);
    ruler.calculateTickPlacement(); // 1 is chosen, or nothing
    ruler.tickTable({{0.25, 0}}, 1.0);
    ruler.range(-0.1, 0.9);
    const auto labelled = [&ruler](const QStringList& texts) {
        drawing_t wanted(ruler);
        for (int i = 0; i < texts.size(); ++i) {
            const int width = ruler.fontMetrics().boundingRect(QRect(), 0, texts[i]).width();
            wanted.write(40 + 100 * i - width / 2, 5, texts[i]);
        }
        return wanted.picture;
    };
    QCOMPARE(firstDifference(snapshot(ruler), labelled({"0", "0", "0", "1"})), QString());
    QCOMPARE(ruler.numDecimals(), 2u);
    ruler.calculateTickPlacement();
    QCOMPARE(firstDifference(snapshot(ruler), labelled({"0", "0.25", "0.5", "0.75"})), QString());
}

void tst_ruler::findsTheSameTicksFromEveryStep()
{
    stage_t stage(QSize(400, 60));
    stage.ruler.labels = labels_t::TIMES;
    stage.ruler.range(3.0, 80.0);
    stage.ruler.calculateTickPlacement();
    const QImage wanted = snapshot(stage.ruler);
    for (const int step : {-320, -30, -1, 0, 1, 30, 320}) {
        stage.ruler.step(step);
        stage.ruler.calculateTickPlacement();
        QCOMPARE(firstDifference(snapshot(stage.ruler), wanted), QString());
    }
}

void tst_ruler::takesANewTableWithTheNextTicks()
{
    stage_t stage(QSize(400, 60));
    stage.ruler.tickTable({{4.0, 0}}, 10.0);
    stage.ruler.range(0.0, 400.0);
    QCOMPARE(majorColumns(stage.ruler), columns(0, 400, 4));
    QCOMPARE(stage.paintsAfter([](ruler_t& ruler) { ruler.tickTable({{7.0, 0}}, 10.0); }), 0);
    QCOMPARE(majorColumns(stage.ruler), columns(0, 400, 4));
    stage.ruler.spacing(6);
    QCOMPARE(majorColumns(stage.ruler), columns(0, 400, 7));
    stage.ruler.tickTable({}, 10.0);
    stage.ruler.spacing(7);
    QCOMPARE(majorColumns(stage.ruler), std::vector<int>());
}

void tst_ruler::triesTheTableOnceWithoutAUsableBase_data()
{
    QTest::addColumn<double>("base");
    QTest::newRow("one") << 1.0;
    QTest::newRow("a half") << 0.5;
    QTest::newRow("zero") << 0.0;
    QTest::newRow("negative") << -10.0;
    QTest::newRow("infinite") << inf;
    QTest::newRow("NaN") << nan_;
}

void tst_ruler::triesTheTableOnceWithoutAUsableBase()
{
    QFETCH(double, base);
    stage_t stage(QSize(400, 60));
    stage.ruler.tickTable({{1.0, 0}, {9.0, 0}}, base);
    stage.ruler.range(0.0, 400.0);
    QCOMPARE(majorColumns(stage.ruler), columns(0, 400, 9));
    stage.ruler.range(0.0, 4000.0); // 0.9 pixels
    QCOMPARE(majorColumns(stage.ruler), std::vector<int>());
    stage.ruler.range(0.0, 0.5); // the first entry is wider than the range
    QCOMPARE(majorColumns(stage.ruler), std::vector<int>{0});
}

// A million powers of the base are between the first interval tried and the one that is found.
void tst_ruler::climbsSmallSteps()
{
    stage_t stage(QSize(400, 60));
    stage.ruler.tickTable({{1e6, 0}}, 1.00001);
    stage.ruler.range(0.0, 100.0);
    const std::vector<int> found = majorColumns(stage.ruler);
    QCOMPARE(found, columns(0, 400, 2.0 + 1e-5)); // the first one from 2 pixels on
    stage.ruler.step(-10000000);
    stage.ruler.calculateTickPlacement();
    QCOMPARE(majorColumns(stage.ruler), found);
}

void tst_ruler::endsSoonWithABaseJustAboveOne_data()
{
    QTest::addColumn<double>("base");
    for (const double excess : {1e-4, 1e-5, 1e-6, 1e-9, 1e-12})
        QTest::newRow(QByteArray::number(excess).constData()) << 1.0 + excess;
}

// To try all intervals, millions of labels would have to be made.
void tst_ruler::endsSoonWithABaseJustAboveOne()
{
    QFETCH(double, base);
    stage_t stage(QSize(500, 60));
    testRuler_t& ruler = stage.ruler;
    ruler.labels = labels_t::SAME;
    ruler.same = "12345678";
    ruler.tickTable({{1.0, 0}, {2.0, 0}, {2.5, 0}, {5.0, 0}}, base);
    ruler.range(0.0, 1000.0);
    ruler.labelsMade = 0;
    snapshot(ruler);
    QVERIFY2(ruler.labelsMade < 100000, qPrintable(QString::number(ruler.labelsMade)));
    if (base < 1.0 + 1e-8)
        return; // no power that a step can name makes the table's intervals wide enough
    const std::vector<int> found = majorColumns(ruler);
    QVERIFY(found.size() > 2);
    const int needed = 2 * halfWidth(ruler, QString::fromStdString(ruler.same));
    QVERIFY(found[1] - found[0] >= needed - 1); // a position's fraction is dropped
    QVERIFY(found[1] - found[0] <= needed * 1.02 + 1.0);
}

void tst_ruler::searchesInVainOnlyOnce()
{
    stage_t stage(QSize(400, 60));
    testRuler_t& ruler = stage.ruler;
    ruler.labels = labels_t::SAME;
    ruler.tickTable({{1.0, 0}}, 1.0);
    ruler.range(0.0, 100.0);
    ruler.labelsMade = 0;
    QCOMPARE(majorColumns(ruler), std::vector<int>()); // overlap every 4 pixels
    const int needed = ruler.labelsMade;
    QVERIFY(needed > 0);
    QCOMPARE(majorColumns(ruler), std::vector<int>());
    QCOMPARE(ruler.labelsMade, needed);
    // What takes effect with the next search, does so at the next paint.
    ruler.tickTable({{25.0, 0}}, 1.0);
    QCOMPARE(majorColumns(ruler), columns(0, 400, 100));
    ruler.tickTable({{1.0, 0}}, 0.5);
    ruler.range(0.0, 101.0);
    QCOMPARE(majorColumns(ruler), std::vector<int>());
    ruler.step(-5); // 32
    QCOMPARE(majorColumns(ruler), columns(0, 400, 32 * 400.0 / 101.0));
}

void tst_ruler::keepsItsScaleForTheTicksOfAnotherEdge_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    // The length falls to a tenth, or grows tenfold, and the scale stays.
    QTest::newRow("shorter") << QSize(400, 40) << int(ruler_t::BOTTOM) << int(ruler_t::RIGHT);
    QTest::newRow("longer") << QSize(40, 400) << int(ruler_t::RIGHT) << int(ruler_t::BOTTOM);
    QTest::newRow("no edge") << QSize(400, 40) << int(ruler_t::BOTTOM) << int(nowhere);
}

void tst_ruler::keepsItsScaleForTheTicksOfAnotherEdge()
{
    QFETCH(QSize, size);
    QFETCH(int, from);
    QFETCH(int, to);
    stage_t stage(size);
    testRuler_t& ruler = stage.ruler;
    ruler.axisLocation(static_cast<ruler_t::location_t>(from));
    ruler.range(0.0, 100.0); // 4 pixels a unit
    ruler.labels = labels_t::BY_DECIMALS;
    ruler.labelsMade = 0;
    ruler.axisLocation(static_cast<ruler_t::location_t>(to));
    ruler.calculateTickPlacement();
    QVERIFY(ruler.labelsMade > 0);
    plainRuler_t plain(ruler.font());
    plain.textFromValue = [&plain](double) { return std::string(plain.numDecimals() + 1, '1'); };
    plain.setSize(size);
    plain.setLocation(static_cast<ruler_t::location_t>(from));
    plain.setRange(0.0, 100.0);
    plain.setLocation(static_cast<ruler_t::location_t>(to));
    plain.prepareToPaint();
    QVERIFY(plain.ticks().size() > 40);
    QCOMPARE(firstDifference(snapshot(ruler), plain.drawnOn(blank(ruler), ruler.palette())),
             QString());
}

void tst_ruler::dividesIntervalsByMinorTicks_data()
{
    QTest::addColumn<unsigned>("numMinor");
    QTest::addColumn<double>("distance"); // of all ticks on 400 pixels, 20 of them a major one
    QTest::newRow("none") << 0u << 20.0;
    QTest::newRow("one") << 1u << 20.0;
    QTest::newRow("two") << 2u << 10.0;
    QTest::newRow("three") << 3u << 20.0 / 3.0;
    QTest::newRow("ten") << 10u << 2.0;
    QTest::newRow("one a pixel") << 20u << 1.0;
    QTest::newRow("two a pixel") << 40u << 1.0;
    QTest::newRow("a million") << 1000000u << 1.0;
    QTest::newRow("as many as can be") << 4294967295u << 1.0;
}

void tst_ruler::dividesIntervalsByMinorTicks()
{
    QFETCH(unsigned, numMinor);
    QFETCH(double, distance);
    stage_t stage(QSize(400, 60));
    stage.ruler.tickTable({{2.0, numMinor}}, 1.0);
    stage.ruler.range(0.0, 40.0);
    QCOMPARE(majorColumns(stage.ruler), columns(0, 400, 20));
    QCOMPARE(allColumns(stage.ruler), columns(0, 400, distance + 1e-9));
    stage.ruler.showMinorTicks(false);
    QCOMPARE(allColumns(stage.ruler), columns(0, 400, 20));
}

void tst_ruler::drawsDenseMinorTicks_data()
{
    QTest::addColumn<double>("major"); // pixels
    for (const double major : {2.0, 2.5, 4.0, 4.9, 5.0})
        QTest::newRow(QByteArray::number(major).constData()) << major;
}

// Ten minor ticks to such an interval are two a pixel and more.
void tst_ruler::drawsDenseMinorTicks()
{
    QFETCH(double, major);
    stage_t stage(QSize(400, 60));
    stage.ruler.tickTable({{major, 10}}, 1.0);
    stage.ruler.range(0.0, 400.0);
    QCOMPARE(majorColumns(stage.ruler), columns(0, 400, major));
    QCOMPARE(allColumns(stage.ruler), columns(0, 400, 1.0));
}

void tst_ruler::drawsDenseMajorTicks_data()
{
    QTest::addColumn<double>("interval"); // of the first entry
    QTest::newRow("two a pixel") << 0.5;
    QTest::newRow("a hundred a pixel") << 0.01;
    QTest::newRow("billions a pixel") << 1e-9;
    QTest::newRow("more than doubles can count") << 1e-17;
    QTest::newRow("more than integers can count") << 1e-25;
    QTest::newRow("nearly the narrowest") << 1e-300;
}

// The fallback takes the first entry, however narrow, at the step at which any had two pixels.
void tst_ruler::drawsDenseMajorTicks()
{
    QFETCH(double, interval);
    stage_t stage(QSize(300, 60));
    testRuler_t& ruler = stage.ruler;
    ruler.labels = labels_t::SAME;
    ruler.tickTable({{interval, 10}, {3.0, 0}}, 1e4 / interval); // 3 pixels, then too many
    ruler.range(0.5, 300.5);
    drawing_t wanted(ruler);
    wanted.fill(0, 0, 300, 9);
    QCOMPARE(firstDifference(snapshot(ruler), wanted.picture), QString());
}

// Among ticks as near as these only every other value can be told from the next.
void tst_ruler::drawsDenseTicksWhereDoublesAreCoarse()
{
    stage_t stage(QSize(400, 60));
    stage.ruler.tickTable({{8.0, 1000000}}, 1.0);
    for (const double sign : {1.0, -1.0}) {
        stage.ruler.range(sign * 1e16, sign * 1e16 + 16.0); // whose neighbours are 2 away
        QCOMPARE(allColumns(stage.ruler), columns(0, 400, 50.0));
        stage.ruler.range(sign * 1e16 + 16.0, sign * 1e16);
        QCOMPARE(allColumns(stage.ruler), columns(0, 400, 50.0));
    }
}

void tst_ruler::drawsOnlyMajorLabels()
{
    stage_t stage(QSize(400, 60));
    stage.ruler.labels = labels_t::SAME;
    stage.ruler.range(0.0, 40.0);
    const QImage withMinor = snapshot(stage.ruler);
    stage.ruler.showMinorTicks(false);
    const QImage without = snapshot(stage.ruler);
    const QRect below(0, 9, 400, 51);
    QCOMPARE(firstDifference(withMinor.copy(below), without.copy(below)), QString());
    QVERIFY(withMinor != without);
}

void tst_ruler::repaintsForChangesOnly_data()
{
    using action_t = std::function<void(ruler_t&)>;
    QTest::addColumn<action_t>("action");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("again");
    const auto row = [](const char* name, int first, int again, const action_t& action) {
        QTest::newRow(name) << action << first << again;
    };
    row("range", 1, 0, [](ruler_t& ruler) { ruler.range(1.0, 2.0); });
    row("edge, always", 1, 1, [](ruler_t& ruler) { ruler.axisLocation(ruler_t::TOP); });
    row("text orientation", 1, 0, [](ruler_t& ruler) { ruler.textOrientation(Qt::Vertical); });
    row("minor ticks", 1, 0, [](ruler_t& ruler) { ruler.showMinorTicks(false); });
    row("text", 1, 0, [](ruler_t& ruler) { ruler.showText(false); });
    row("tick length", 1, 0, [](ruler_t& ruler) { ruler.tickLength(7); });
    row("spacing", 1, 0, [](ruler_t& ruler) { ruler.spacing(4); });
    row("interactive", 0, 0, [](ruler_t& ruler) { ruler.interactive(true); });
    row("invert, always", 1, 1, [](ruler_t& ruler) { ruler.invert(true); });
    row("not inverted", 0, 0, [](ruler_t& ruler) { ruler.invert(false); });
    row("least value", 0, 0, [](ruler_t& ruler) { ruler.axisMinLimit(3.0); });
    row("greatest value", 0, 0, [](ruler_t& ruler) { ruler.axisMaxLimit(3.0); });
    row("tick table", 0, 0, [](ruler_t& ruler) { ruler.tickTable({{3.0, 2}}, 10.0); });
    row("step", 0, 0, [](ruler_t& ruler) { ruler.step(3); });
    row("indicator", 1, 0, [](ruler_t& ruler) { ruler.indicator(5.0); });
    row("no indicator", 0, 0, [](ruler_t& ruler) { ruler.clearIndicator(); });
    row("indicator on and off", 1, 1, [](ruler_t& ruler) {
        ruler.indicator(5.0);
        ruler.clearIndicator();
    });
    row("highlight", 1, 0, [](ruler_t& ruler) { ruler.highlightRange(5.0, 6.0); });
    row("no highlight", 0, 0, [](ruler_t& ruler) { ruler.clearHighlight(); });
    row("highlight on and off", 1, 1, [](ruler_t& ruler) {
        ruler.highlightRange(5.0, 6.0);
        ruler.clearHighlight();
    });
    row("font", 1, 0, [](ruler_t& ruler) {
        QFont font = ruler.font();
        font.setPointSize(11);
        ruler.setFont(font);
    });
}

void tst_ruler::repaintsForChangesOnly()
{
    QFETCH(std::function<void(ruler_t&)>, action);
    QFETCH(int, first);
    QFETCH(int, again);
    stage_t stage;
    stage.ruler.range(0.0, 10.0);
    QCOMPARE(stage.paintsAfter(action), first);
    QCOMPARE(stage.paintsAfter(action), again);
}

void tst_ruler::computesTicksAnewAfterAFontChange()
{
    stage_t stage;
    stage.ruler.labels = labels_t::SAME;
    stage.ruler.range(0.0, 500.0);
    const std::size_t small = majorColumns(stage.ruler).size();
    QFont font = stage.ruler.font();
    font.setPointSize(24);
    stage.ruler.setFont(font);
    QVERIFY(majorColumns(stage.ruler).size() < small);
}

void tst_ruler::fitsItsSizeToItsEdge_data()
{
    QTest::addColumn<int>("location");
    QTest::addColumn<QSize>("hint");
    QTest::addColumn<bool>("isWide");
    QTest::newRow("top") << int(ruler_t::TOP) << QSize(0, 13) << true;
    QTest::newRow("bottom") << int(ruler_t::BOTTOM) << QSize(0, 13) << true;
    QTest::newRow("left") << int(ruler_t::LEFT) << QSize(13, 0) << false;
    QTest::newRow("right") << int(ruler_t::RIGHT) << QSize(13, 0) << false;
}

void tst_ruler::fitsItsSizeToItsEdge()
{
    QFETCH(int, location);
    QFETCH(QSize, hint);
    QFETCH(bool, isWide);
    ruler_t ruler(nullptr);
    ruler.tickLength(10);
    ruler.spacing(2);
    ruler.axisLocation(static_cast<ruler_t::location_t>(location));
    QCOMPARE(ruler.minimumSizeHint(), hint);
    const QSizePolicy policy = ruler.sizePolicy();
    QCOMPARE(policy.horizontalPolicy(), isWide ? QSizePolicy::Expanding : QSizePolicy::Fixed);
    QCOMPARE(policy.verticalPolicy(), isWide ? QSizePolicy::Fixed : QSizePolicy::Expanding);
    ruler.axisLocation(nowhere); // leaves the policy alone
    QCOMPARE(ruler.sizePolicy(), policy);
    QCOMPARE(ruler.minimumSizeHint(), QSize(13, 0));
}

void tst_ruler::growsToItsWidestLabel()
{
    stage_t stage(QSize(400, 2));
    testRuler_t& ruler = stage.ruler;
    ruler.labels = labels_t::SAME;
    ruler.same = "wide";
    ruler.range(0.0, 400.0);
    snapshot(ruler);
    const QRect rect = ruler.fontMetrics().boundingRect(QRect(), Qt::AlignCenter, "wide");
    QCOMPARE(ruler.minimumSize(), QSize(0, 8 + 5 + 1 + rect.height()));
    QCOMPARE(ruler.height(), ruler.minimumHeight());
    ruler.textOrientation(Qt::Vertical);
    snapshot(ruler);
    QCOMPARE(ruler.minimumSize(), QSize(0, 8 + 5 + 1 + rect.width()));
    ruler.showText(false);
    snapshot(ruler);
    QCOMPARE(ruler.minimumSize(), QSize(0, 8 + 5 + 1));
    ruler.showText(true);
    ruler.axisLocation(ruler_t::RIGHT);
    ruler.resize(30, 400);
    ruler.range(0.0, 40.0);
    snapshot(ruler);
    QCOMPARE(ruler.minimumSize(), QSize(8 + 5 + 1 + rect.height(), 0));
    ruler.textOrientation(Qt::Horizontal);
    snapshot(ruler);
    QCOMPARE(ruler.minimumSize(), QSize(8 + 5 + 1 + rect.width(), 0));
    ruler.same = "";
    ruler.range(0.0, 41.0);
    snapshot(ruler);
    QCOMPARE(ruler.minimumSize(), QSize(8 + 5 + 1, 0));
}

void tst_ruler::drawsTicksAtEveryEdge_data()
{
    QTest::addColumn<int>("location");
    QTest::newRow("top") << int(ruler_t::TOP);
    QTest::newRow("bottom") << int(ruler_t::BOTTOM);
    QTest::newRow("left") << int(ruler_t::LEFT);
    QTest::newRow("right") << int(ruler_t::RIGHT);
}

void tst_ruler::drawsTicksAtEveryEdge()
{
    QFETCH(int, location);
    stage_t stage(QSize(100, 60));
    ruler_t& ruler = stage.ruler;
    ruler.axisLocation(static_cast<ruler_t::location_t>(location));
    ruler.tickTable({{25.0, 5}}, 1.0);
    ruler.range(0.0, location == ruler_t::TOP || location == ruler_t::BOTTOM ? 100.0 : 60.0);
    drawing_t wanted(ruler);
    for (const int pos : {0, 25, 50, 75, 100}) { // one pixel a unit
        if (location == ruler_t::TOP)
            wanted.fill(pos, 51, 1, 9);
        if (location == ruler_t::BOTTOM)
            wanted.fill(pos, 0, 1, 9);
        if (location == ruler_t::LEFT)
            wanted.fill(91, 60 - pos, 9, 1);
        if (location == ruler_t::RIGHT)
            wanted.fill(0, 60 - pos, 9, 1);
    }
    for (int pos = 0; pos <= 100; pos += 5) {
        if (location == ruler_t::TOP)
            wanted.fill(pos, 55, 1, 5);
        if (location == ruler_t::BOTTOM)
            wanted.fill(pos, 0, 1, 5);
        if (location == ruler_t::LEFT)
            wanted.fill(95, 60 - pos, 5, 1);
        if (location == ruler_t::RIGHT)
            wanted.fill(0, 60 - pos, 5, 1);
    }
    if (location == ruler_t::TOP)
        wanted.fill(0, 59, 100, 1);
    if (location == ruler_t::BOTTOM)
        wanted.fill(0, 0, 100, 1);
    if (location == ruler_t::LEFT)
        wanted.fill(99, 0, 1, 60);
    if (location == ruler_t::RIGHT)
        wanted.fill(0, 0, 1, 60);
    QCOMPARE(firstDifference(snapshot(ruler), wanted.picture), QString());
}

// Deliberate: the tick at the start isn't seen, the one at the end is in the first row.
void tst_ruler::drawsTheStartOneRowBelowAVerticalRuler()
{
    stage_t stage(QSize(60, 100));
    stage.ruler.axisLocation(ruler_t::RIGHT);
    stage.ruler.showMinorTicks(false);
    stage.ruler.tickTable({{100.0, 0}}, 1.0);
    stage.ruler.range(0.0, 100.0);
    drawing_t wanted(stage.ruler);
    wanted.fill(0, 0, 1, 100);
    wanted.fill(0, 0, 9, 1);
    QCOMPARE(firstDifference(snapshot(stage.ruler), wanted.picture), QString());
}

void tst_ruler::halvesTheTickLength_data()
{
    QTest::addColumn<unsigned>("length");
    QTest::addColumn<int>("major"); // pixels drawn
    QTest::addColumn<int>("minor");
    QTest::newRow("none, without a base line") << 0u << 0 << 0;
    QTest::newRow("one") << 1u << 2 << 1; // no minor tick, but the base line
    QTest::newRow("odd") << 7u << 8 << 4;
    QTest::newRow("even") << 20u << 21 << 11;
}

void tst_ruler::halvesTheTickLength()
{
    QFETCH(unsigned, length);
    QFETCH(int, major);
    QFETCH(int, minor);
    stage_t stage(QSize(100, 60));
    stage.ruler.tickLength(length);
    stage.ruler.tickTable({{50.0, 5}}, 1.0);
    stage.ruler.range(0.0, 100.0);
    drawing_t wanted(stage.ruler);
    wanted.fill(0, 0, 100, length == 0 ? 0 : 1);
    for (int pos = 0; pos <= 100; pos += 10)
        wanted.fill(pos, 0, 1, pos % 50 == 0 ? major : minor);
    if (length == 0)
        wanted.picture = blank(stage.ruler);
    QCOMPARE(firstDifference(snapshot(stage.ruler), wanted.picture), QString());
}

void tst_ruler::centresLabelsBelowTheirTicks()
{
    stage_t stage(QSize(200, 60));
    testRuler_t& ruler = stage.ruler;
    ruler.labels = labels_t::NUMBERS;
    ruler.tickLength(0);
    ruler.spacing(3);
    ruler.tickTable({{50.0, 0}}, 1.0);
    ruler.range(-10.0, 190.0);
    drawing_t wanted(ruler);
    for (const int value : {0, 50, 100, 150}) {
        const QString text = QString::number(value);
        const int width = ruler.fontMetrics().boundingRect(QRect(), 0, text).width();
        wanted.write(value + 10 - width / 2, 3, text);
    }
    QCOMPARE(firstDifference(snapshot(ruler), wanted.picture), QString());
    ruler.tickLength(10);
    ruler.showText(false);
    QVERIFY(snapshot(ruler).copy(0, 13, 200, 47) == blank(ruler).copy(0, 13, 200, 47));
}

void tst_ruler::leavesOutLabelsThatWouldLeave()
{
    stage_t stage(QSize(200, 60));
    testRuler_t& ruler = stage.ruler;
    ruler.labels = labels_t::SAME;
    ruler.same = "0000";
    ruler.tickTable({{199.0, 0}}, 1.0);
    const int width = ruler.fontMetrics().boundingRect(QRect(), 0, "0000").width();
    const auto isLabelled = [&ruler] {
        const QRect below(0, 13, 200, 47);
        return snapshot(ruler).copy(below) != blank(ruler).copy(below);
    };
    // One pixel a unit; the only tick on show is that of 0.
    const int left = width / 2; // the first position with room
    ruler.range(-left, 200 - left);
    QVERIFY(isLabelled());
    ruler.range(-(left - 1), 200 - (left - 1));
    QVERIFY(!isLabelled());
    QCOMPARE(majorColumns(ruler), std::vector<int>{left - 1}); // the tick stays
    const int right = 200 - width + left;                      // the last position with room
    ruler.range(-right, 200 - right);
    QVERIFY(isLabelled());
    ruler.range(-(right + 1), 200 - (right + 1));
    QVERIFY(!isLabelled());
    QCOMPARE(majorColumns(ruler), std::vector<int>{right + 1});
}

void tst_ruler::writesLabelsAtEveryEdge_data()
{
    QTest::addColumn<int>("location");
    QTest::addColumn<int>("orientation");
    const std::vector<std::pair<const char*, ruler_t::location_t>> edges = {
        {"top", ruler_t::TOP},
        {"bottom", ruler_t::BOTTOM},
        {"left", ruler_t::LEFT},
        {"right", ruler_t::RIGHT}};
    for (const auto& [name, location] : edges) {
        QTest::addRow("%s, horizontal", name) << int(location) << int(Qt::Horizontal);
        QTest::addRow("%s, vertical", name) << int(location) << int(Qt::Vertical);
    }
}

void tst_ruler::writesLabelsAtEveryEdge()
{
    QFETCH(int, location);
    QFETCH(int, orientation);
    stage_t stage(QSize(200, 200));
    testRuler_t& ruler = stage.ruler;
    ruler.labels = labels_t::NUMBERS;
    ruler.axisLocation(static_cast<ruler_t::location_t>(location));
    ruler.textOrientation(static_cast<Qt::Orientation>(orientation));
    ruler.showMinorTicks(false);
    ruler.tickLength(6);
    ruler.spacing(4);
    ruler.tickTable({{1250.0, 0}}, 1.0);
    ruler.range(0.0, 2000.0); // the only label inside is 1250, at 125 pixels
    const QString text = "1250";
    const QRect rect = ruler.fontMetrics().boundingRect(
        QRect(), static_cast<int>(Qt::AlignLeft | Qt::AlignTop), text);
    const int tw = rect.width();
    const int th = rect.height();
    QPoint corner; // where the text's own top left corner comes
    const bool isUpright = orientation == Qt::Horizontal;
    if (location == ruler_t::BOTTOM)
        corner = isUpright ? QPoint(125 - tw / 2, 10) : QPoint(125 + th / 2, 10);
    if (location == ruler_t::TOP)
        corner = isUpright ? QPoint(125 - tw / 2, 189 - th) : QPoint(125 + th / 2, 189 - tw);
    if (location == ruler_t::LEFT)
        corner = isUpright ? QPoint(189 - tw, 75 - th / 2) : QPoint(189, 75 - tw / 2);
    if (location == ruler_t::RIGHT)
        corner = isUpright ? QPoint(10, 75 - th / 2) : QPoint(10 + th, 75 - tw / 2);
    const QImage picture = snapshot(ruler);
    drawing_t wanted(ruler);
    QPainter painter(&wanted.picture);
    painter.setFont(ruler.font());
    painter.setPen(wanted.ink);
    painter.translate(corner);
    if (!isUpright)
        painter.rotate(90.0);
    painter.drawText(rect, Qt::AlignCenter, text);
    painter.end();
    // Beside base line and ticks, which are up to 7 pixels from the edge.
    const QRect labels = location == ruler_t::BOTTOM ? QRect(0, 7, 200, 193)
                         : location == ruler_t::TOP  ? QRect(0, 0, 200, 193)
                         : location == ruler_t::LEFT ? QRect(0, 0, 193, 200)
                                                     : QRect(7, 0, 193, 200);
    QCOMPARE(firstDifference(picture.copy(labels), wanted.picture.copy(labels)), QString());
    QVERIFY(wanted.picture != blank(ruler));
}

void tst_ruler::highlightsTheColumnsOfASpan_data()
{
    QTest::addColumn<int>("location");
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("count");
    QTest::newRow("bottom") << int(ruler_t::BOTTOM) << 10.0 << 20.0 << 10 << 11;
    QTest::newRow("top") << int(ruler_t::TOP) << 10.0 << 20.0 << 10 << 11;
    // Deliberate: two columns less than the other way round.
    QTest::newRow("reversed") << int(ruler_t::BOTTOM) << 20.0 << 10.0 << 10 << 9;
    QTest::newRow("reversed by one") << int(ruler_t::BOTTOM) << 11.0 << 10.0 << 10 << 0;
    QTest::newRow("a point") << int(ruler_t::BOTTOM) << 10.0 << 10.0 << 10 << 1;
    QTest::newRow("from before the start") << int(ruler_t::BOTTOM) << -50.0 << 20.0 << 0 << 21;
    QTest::newRow("beyond the end") << int(ruler_t::BOTTOM) << 90.0 << 1e300 << 90 << 10;
    QTest::newRow("NaN is the start") << int(ruler_t::BOTTOM) << nan_ << 5.0 << 0 << 6;
    // The higher value is higher up.
    QTest::newRow("left") << int(ruler_t::LEFT) << 20.0 << 10.0 << 80 << 11;
    QTest::newRow("right, reversed") << int(ruler_t::RIGHT) << 10.0 << 20.0 << 80 << 9;
}

void tst_ruler::highlightsTheColumnsOfASpan()
{
    QFETCH(int, location);
    QFETCH(double, a);
    QFETCH(double, b);
    QFETCH(int, first);
    QFETCH(int, count);
    stage_t stage(QSize(100, 100));
    ruler_t& ruler = stage.ruler;
    ruler.axisLocation(static_cast<ruler_t::location_t>(location));
    ruler.tickLength(0);
    ruler.range(0.0, 100.0);
    ruler.highlightRange(a, b);
    drawing_t wanted(ruler);
    const QColor color = ruler.palette().color(QPalette::Highlight);
    if (location == ruler_t::LEFT || location == ruler_t::RIGHT)
        wanted.fill(0, first, 100, count, color);
    else
        wanted.fill(first, 0, count, 100, color);
    QCOMPARE(firstDifference(snapshot(ruler), wanted.picture), QString());
    ruler.clearHighlight();
    QCOMPARE(firstDifference(snapshot(ruler), blank(ruler)), QString());
}

void tst_ruler::pointsAtAValue_data()
{
    QTest::addColumn<int>("location");
    QTest::addColumn<int>("arrow");
    QTest::addColumn<QPoint>("corner"); // for the value 40 of 100 pixels
    QTest::newRow("bottom") << int(ruler_t::BOTTOM) << int(QStyle::SP_ArrowUp) << QPoint(32, 0);
    QTest::newRow("top") << int(ruler_t::TOP) << int(QStyle::SP_ArrowDown) << QPoint(32, 83);
    QTest::newRow("left") << int(ruler_t::LEFT) << int(QStyle::SP_ArrowRight) << QPoint(83, 52);
    QTest::newRow("right") << int(ruler_t::RIGHT) << int(QStyle::SP_ArrowLeft) << QPoint(0, 52);
}

void tst_ruler::pointsAtAValue()
{
    QFETCH(int, location);
    QFETCH(int, arrow);
    QFETCH(QPoint, corner);
    stage_t stage(QSize(100, 100));
    ruler_t& ruler = stage.ruler;
    ruler.axisLocation(static_cast<ruler_t::location_t>(location));
    ruler.tickLength(0);
    ruler.range(0.0, 100.0);
    ruler.indicator(40.0);
    QCOMPARE(ruler.indicator(), 40.0);
    drawing_t wanted(ruler);
    const auto which = static_cast<QStyle::StandardPixmap>(arrow);
    QPainter(&wanted.picture)
        .drawPixmap(corner, QApplication::style()->standardIcon(which).pixmap(16, 16));
    QVERIFY(wanted.picture != blank(ruler));
    QCOMPARE(firstDifference(snapshot(ruler), wanted.picture), QString());
    ruler.clearIndicator();
    QCOMPARE(firstDifference(snapshot(ruler), blank(ruler)), QString());
}

namespace {

// Counts the icons that it is asked for; all of them are red squares.
class redStyle_t : public QProxyStyle
{
public:
    explicit redStyle_t(int* icons) : m_icons(*icons) {}

    QIcon standardIcon(StandardPixmap /*which*/, const QStyleOption* /*option*/,
                       const QWidget* /*widget*/) const override
    {
        ++m_icons;
        QPixmap square(16, 16);
        square.fill(Qt::red);
        return QIcon(square);
    }

private:
    int& m_icons;
};

} // namespace

void tst_ruler::asksTheStyleForItsArrowWhenThatChanges()
{
    stage_t stage(QSize(100, 100));
    ruler_t& ruler = stage.ruler;
    ruler.tickLength(0);
    ruler.range(0.0, 100.0);
    ruler.indicator(40.0);
    QVERIFY(snapshot(ruler).pixelColor(33, 15) != QColor(Qt::red));

    int icons = 0;
    const QString before = QApplication::style()->objectName();
    QApplication::setStyle(new redStyle_t(&icons));
    const auto restore = qScopeGuard([&] { QApplication::setStyle(before); });
    icons = 0;
    QCOMPARE(snapshot(ruler).pixelColor(33, 15), QColor(Qt::red));
    ruler.indicator(50.0);
    QCOMPARE(snapshot(ruler).pixelColor(43, 15), QColor(Qt::red));
    QCOMPARE(icons, 1);
    QPalette palette = ruler.palette();
    palette.setColor(QPalette::WindowText, Qt::blue); // styles draw arrows in such colours
    ruler.setPalette(palette);
    snapshot(ruler);
    QCOMPARE(icons, 2);
}

void tst_ruler::remembersWhatItPointedAt()
{
    ruler_t ruler(nullptr);
    ruler.indicator(7.5);
    ruler.clearIndicator();
    QCOMPARE(ruler.indicator(), 7.5);
}

void tst_ruler::drawsNothingWithoutAnEdge()
{
    stage_t stage(QSize(100, 100));
    stage.ruler.labels = labels_t::NUMBERS;
    stage.ruler.range(0.0, 100.0);
    stage.ruler.axisLocation(nowhere);
    stage.ruler.highlightRange(10.0, 20.0);
    stage.ruler.indicator(40.0);
    QCOMPARE(firstDifference(snapshot(stage.ruler), blank(stage.ruler)), QString());
    QCOMPARE(stage.ruler.pixelToValue(0), 0.0);
    stage.ruler.range(50.0, 60.0);
    QCOMPARE(stage.ruler.pixelToValue(0), 0.0);
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

void tst_ruler::looksLikeThePlainRuler_data()
{
    QTest::addColumn<int>("labels");
    QTest::addColumn<unsigned>("seed");
    QTest::newRow("numbers") << int(labels_t::NUMBERS) << 1u;
    QTest::newRow("nothing") << int(labels_t::NOTHING) << 2u;
    QTest::newRow("always the same") << int(labels_t::SAME) << 3u;
    QTest::newRow("times") << int(labels_t::TIMES) << 4u;
    QTest::newRow("longer for odd numbers") << int(labels_t::ODD_LONGER) << 5u;
    QTest::newRow("by decimals") << int(labels_t::BY_DECIMALS) << 6u;
}

namespace {

// Bounds of all kinds that applications have, and some that they don't.
std::pair<double, double> randomRange(random_t& random)
{
    const double size = std::pow(10.0, random.integer(-9, 9));
    const double from = random.real(-size, size);
    switch (random.integer(0, 9)) {
    case 0:
        return {from, from};
    case 1:
        return {0.0, size};
    case 2:
        return {std::round(from), std::round(from) + random.integer(-200, 200)};
    case 3: { // a narrow window far from 0
        const double width = random.real(-1e-6, 1e-6) * size;
        return {from, from + width};
    }
    case 4: { // times
        const double now = 1.7e9 + random.integer(0, 86400);
        return {now - random.oneOf<double>({1.0, 10.0, 60.0, 3600.0, 86400.0}), now};
    }
    case 5:
        return {random.oneOf<double>({0.0, 1e-300, 1e300, -1e300, 1e16, 5e-324, nan_, inf, 7.0}),
                random.oneOf<double>({0.0, 2e-300, 1.5e300, 1e16 + 2.0, 1e308, nan_, 9.0})};
    default:
        return {from, random.real(-size, size)};
    }
}

tickTable_t randomTable(random_t& random)
{
    if (random.chance(0.3))
        return {{1.0, 10}, {2.0, 10}, {2.5, 10}, {5.0, 10}};
    tickTable_t table;
    for (int i = random.integer(0, 20) == 0 ? 0 : random.integer(1, 6); i > 0; --i) {
        const double interval =
            random.oneOf<double>({1.0, 2.0, 5.0, 10.0, 15.0, 30.0, random.real(0.01, 100.0)});
        table.push_back({random.chance(0.03) ? -interval : interval,
                         random.oneOf<unsigned>({0, 1, 2, 3, 5, 6, 10, 60, 100})});
    }
    return table;
}

// A ruler and its plain model, to which the same things happen.
class twins_t
{
public:
    twins_t(random_t& random_, labels_t labels)
        : random(random_), stage(QSize(300, 80)), ruler(stage.ruler), plain(ruler.font())
    {
        ruler.labels = labels;
        ruler.same = random.oneOf<std::string>({"", " ", "8", "a rather long label"});
        if (labels != labels_t::NUMBERS) {
            plain.textFromValue = [this, labels](double value) {
                return labelText(labels, ruler.same, value, plain.numDecimals());
            };
        }
        ruler.calculateTickPlacement();
        plain.setLocation(ruler_t::BOTTOM);
        plain.setSize(ruler.size());
        plain.prepareToPaint();
        snapshot(ruler);
    }

    void changeSomething()
    {
        switch (random.integer(0, 21)) {
        case 0:
        case 1:
        case 2: {
            const auto edge = random.chance(0.03)
                                  ? nowhere
                                  : static_cast<ruler_t::location_t>(random.integer(0, 3));
            ruler.axisLocation(edge);
            plain.setLocation(edge);
            break;
        }
        case 3:
        case 4: {
            const QSize before = ruler.size();
            ruler.resize(random.oneOf<int>({0, 1, 20, 100, 200, 300, random.integer(1, 500)}),
                         random.oneOf<int>({0, 1, 20, 100, 200, random.integer(1, 400)}));
            if (ruler.size() != before) // else there is no resize event
                plain.setSize(ruler.size());
            break;
        }
        case 5: {
            const auto orientation = random.chance(0.5) ? Qt::Horizontal : Qt::Vertical;
            forgetTicksIf(orientation != plain.textOrientation);
            ruler.textOrientation(orientation);
            plain.textOrientation = orientation;
            break;
        }
        case 6: {
            const auto length = static_cast<unsigned>(random.integer(0, 20));
            forgetTicksIf(length != plain.majorLength);
            ruler.tickLength(length);
            plain.majorLength = length;
            plain.minorLength = length / 2;
            break;
        }
        case 7: {
            const auto gap = static_cast<unsigned>(random.integer(0, 9));
            forgetTicksIf(gap != plain.spacing);
            ruler.spacing(gap);
            plain.spacing = gap;
            break;
        }
        case 8: {
            const bool show = random.chance(0.7);
            forgetTicksIf(show != plain.showMinor);
            ruler.showMinorTicks(show);
            plain.showMinor = show;
            break;
        }
        case 9: {
            const bool show = random.chance(0.8);
            forgetTicksIf(show != plain.showText);
            ruler.showText(show);
            plain.showText = show;
            break;
        }
        case 10: {
            const tickTable_t table = randomTable(random);
            const double base =
                random.oneOf<double>({10.0, 10.0, 2.0, 60.0, 1.5, 1.0, 0.5, nan_, 1e150});
            ruler.tickTable(table, base);
            plain.setTable(table, base);
            break;
        }
        case 11: {
            const int step = random.integer(-40, 40);
            ruler.step(step);
            plain.setStep(step);
            break;
        }
        case 12: {
            const bool isInverted = random.chance(0.5);
            ruler.invert(isInverted);
            plain.isInverted = isInverted;
            plain.setRange(plain.start(), plain.end());
            break;
        }
        case 13: {
            const double limit = random.chance(0.5) ? -1e308 : random.real(-1e3, 0.0);
            ruler.axisMinLimit(limit);
            plain.axisMin = limit;
            break;
        }
        case 14: {
            const double limit = random.chance(0.5) ? 1e308 : random.real(0.0, 1e3);
            ruler.axisMaxLimit(limit);
            plain.axisMax = limit;
            break;
        }
        case 15:
            if (random.chance(0.5)) {
                const double value = randomValue();
                ruler.indicator(value);
                plain.indicator = value;
            } else {
                ruler.clearIndicator();
                plain.indicator.reset();
            }
            break;
        case 16:
            if (random.chance(0.5)) {
                const std::pair<double, double> span(randomValue(), randomValue());
                ruler.highlightRange(span.first, span.second);
                plain.highlight = span;
            } else {
                ruler.clearHighlight();
                plain.highlight.reset();
            }
            break;
        default: {
            const auto [start, end] = randomRange(random);
            ruler.range(start, end);
            plain.setRange(start, end);
        }
        }
    }

    // What differs, after painting.
    QString difference()
    {
        const QSize size = ruler.size();
        if (size.isEmpty())
            return QString(); // isn't painted
        QImage picture = snapshot(ruler);
        plain.prepareToPaint();
        if (ruler.size() != size) { // the labels needed room
            picture = snapshot(ruler);
            plain.prepareToPaint();
        }
        if (ruler.numDecimals() != plain.numDecimals())
            return QStringLiteral("%1 decimals instead of %2")
                .arg(ruler.numDecimals())
                .arg(plain.numDecimals());
        if (ruler.minimumSize() != plain.minimumSize())
            return QStringLiteral("another minimum size");
        if (ruler.size() != plain.size())
            return QStringLiteral("another size");
        for (const int px : {-7, 0, 100}) {
            const double value = plain.pixelToValue(px);
            if (!isSame(ruler.pixelToValue(px), value) ||
                ruler.valueToPixel(value) != plain.valueToPixel(value))
                return QStringLiteral("another scale");
        }
        if (!isSame(ruler.start(), plain.start()) || !isSame(ruler.end(), plain.end()))
            return QStringLiteral("other bounds");
        const double apart = std::pow(10.0, random.real(-1.0, 2.0)); // pixels
        if (!isSameFit(std::abs(plain.pixelToValue(1) - plain.pixelToValue(0)) * apart))
            return QStringLiteral("another fit %1 pixels apart").arg(apart);
        countDenseTicks();
        return firstDifference(picture, plain.drawnOn(blank(ruler), ruler.palette()));
    }

    int narrowMajors = 0; ///< pictures whose major ticks are 5 pixels apart or less
    int denseMinors = 0;  ///< pictures with more than two minor ticks a pixel

private:
    bool isSameFit(double interval)
    {
        ruler_t::fit_t fit;
        ruler.calculateFit(interval, fit);
        const ruler_t::fit_t wanted = plain.calculateFit(interval);
        return isSame(fit.startTick, wanted.startTick) && isSame(fit.endTick, wanted.endTick) &&
               std::equal(fit.ticks.begin(), fit.ticks.end(), wanted.ticks.begin(),
                          wanted.ticks.end(),
                          [](const ruler_t::tick_t& a, const ruler_t::tick_t& b) {
                              return a.type == b.type && a.pos == b.pos && a.label == b.label;
                          });
    }

    void countDenseTicks()
    {
        const bool isVertical =
            ruler.axisLocation() == ruler_t::LEFT || ruler.axisLocation() == ruler_t::RIGHT;
        const int length = isVertical ? ruler.height() : ruler.width();
        const auto majors = static_cast<int>(
            std::count_if(plain.ticks().begin(), plain.ticks().end(), [](const auto& tick) {
                return tick.type == ruler_t::tick_t::TICK_MAJOR;
            }));
        narrowMajors += majors * 5 >= length ? 1 : 0;
        denseMinors += static_cast<int>(plain.ticks().size()) - majors > 2 * length ? 1 : 0;
    }

    static bool isSame(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

    void forgetTicksIf(bool isChanged)
    {
        if (isChanged)
            plain.forgetTicks();
    }

    double randomValue()
    {
        return random.chance(0.1) ? random.oneOf<double>({nan_, inf, -inf, 1e300})
                                  : ruler.pixelToValue(random.integer(-50, 350));
    }

    random_t& random;
    stage_t stage;
    testRuler_t& ruler;
    plainRuler_t plain;
};

} // namespace

void tst_ruler::looksLikeThePlainRuler()
{
    QFETCH(int, labels);
    QFETCH(unsigned, seed);
    random_t random(seed);
    int narrowMajors = 0;
    int denseMinors = 0;
    for (int i = 0; i < 20; ++i) {
        twins_t twins(random, static_cast<labels_t>(labels));
        for (int j = 0; j < 40; ++j) {
            for (int changes = random.integer(1, 4); changes > 0; --changes)
                twins.changeSomething();
            const QString difference = twins.difference();
            QVERIFY2(difference.isEmpty(),
                     qPrintable(
                         QStringLiteral("ruler %1, picture %2: %3").arg(i).arg(j).arg(difference)));
        }
        narrowMajors += twins.narrowMajors;
        denseMinors += twins.denseMinors;
    }
    QVERIFY(narrowMajors > 5);
    QVERIFY(denseMinors > 5);
}

// Labels are tried where calculateFit() lays them.
void tst_ruler::fitsAllLabelsUntilItIsShown()
{
    testRuler_t ruler(nullptr);
    ruler.labels = labels_t::SAME;
    ruler.same = "0000000000";
    ruler.resize(500, 60);
    ruler.range(0.0, 500.0);
    QVERIFY(ruler.labelFit(5.0));
    snapshot(ruler);
    QVERIFY(!ruler.labelFit(5.0));
}

ZORBIN_TEST_MAIN(tst_ruler, QApplication)
#include "tst_ruler.moc"
