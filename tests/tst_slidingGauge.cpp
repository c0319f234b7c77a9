#include "messageRecorder.h"
#include "pictures.h"
#include "randomNumbers.h"
#include "testCase.h"

#include <QPainter>
#include <QPointer>
#include <cmath>
#include <functional>
#include <limits>
#include <slidingGauge.h>

using namespace zorbin_qt_gui;

Q_DECLARE_METATYPE(std::function<void(slidingGauge_t&)>)

static const double inf = std::numeric_limits<double>::infinity();
static const double nan_ = std::numeric_limits<double>::quiet_NaN();

namespace {

const QString refusal = "slidingGuauge_t::setRange: Failed to set range - Max does not exceed min";

class testGauge_t : public slidingGauge_t
{
public:
    using slidingGauge_t::slidingGauge_t;

    int paints = 0;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        ++paints;
        slidingGauge_t::paintEvent(event);
    }
};

// A gauge of bar and line alone.
void setUpPlain(slidingGauge_t& gauge, QSize size, Qt::Orientation orientation)
{
    gauge.resize(size);
    gauge.setOrientation(orientation);
    gauge.showValue(false);
}

void fill(QImage& picture, const QRect& rect, const QColor& color)
{
    QPainter(&picture).fillRect(rect, color);
}

} // namespace

class tst_slidingGauge : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void hasPlainDefaults();
    void setsItsScale();
    void refusesARange_data();
    void refusesARange();
    void saysNothingForTheRangeItHas();
    void takesValuesOutsideItsScale();
    void hasProperties();
    void hasNoSignalsAndSlots();
    void repaintsForChangesOnly_data();
    void repaintsForChangesOnly();

    void drawsTheBarFromTheReference_data();
    void drawsTheBarFromTheReference();
    void drawsTheSetpoint_data();
    void drawsTheSetpoint();
    void roundsHalvesAwayFromZero();
    void drawsTheSetpointOverTheBar();
    void staysInsideItsFrame_data();
    void staysInsideItsFrame();
    void drawsALineIntoNoRoomAtAll();
    void drawsNothingInAnotherOrientation();
    void takesItsColors();
    void writesTheFeedback_data();
    void writesTheFeedback();
    void writesOverBarAndLine();
    void survivesOddValues();
    void looksAsItsRulesSay();
};

void tst_slidingGauge::hasPlainDefaults()
{
    const slidingGauge_t gauge(nullptr);
    QCOMPARE(gauge.minimum(), 0.0);
    QCOMPARE(gauge.maximum(), 1.0);
    QCOMPARE(gauge.range(), 1.0);
    QCOMPARE(gauge.referencePoint(), 0.0);
    QCOMPARE(gauge.setpoint(), 0.0);
    QCOMPARE(gauge.feedback(), 0.0);
    QCOMPARE(gauge.orientation(), Qt::Vertical);
    const QFrame frame;
    QCOMPARE(gauge.frameStyle(), frame.frameStyle());
    QCOMPARE(gauge.frameWidth(), frame.frameWidth());
    QCOMPARE(gauge.windowFlags(), frame.windowFlags());
    QCOMPARE(gauge.sizePolicy(), frame.sizePolicy());
}

void tst_slidingGauge::setsItsScale()
{
    messageRecorder_t messages;
    slidingGauge_t gauge(nullptr);
    gauge.setRange(-5.0, 20.0);
    QCOMPARE(gauge.minimum(), -5.0);
    QCOMPARE(gauge.maximum(), 20.0);
    QCOMPARE(gauge.range(), 25.0);
    QCOMPARE(messages.texts(), QStringList());
}

void tst_slidingGauge::refusesARange_data()
{
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::newRow("empty") << 5.0 << 5.0;
    QTest::newRow("reversed") << 5.0 << 1.0;
    QTest::newRow("NaN minimum") << nan_ << 1.0;
    QTest::newRow("NaN maximum") << 0.0 << nan_;
    QTest::newRow("infinite on the same side") << inf << inf;
}

void tst_slidingGauge::refusesARange()
{
    QFETCH(double, min);
    QFETCH(double, max);
    slidingGauge_t gauge(nullptr);
    gauge.setRange(2.0, 3.0);
    messageRecorder_t messages;
    gauge.setRange(min, max);
    QCOMPARE(messages.texts(), QStringList{refusal});
    QCOMPARE(messages.kinds(), QStringList{"debug"});
    QCOMPARE(gauge.minimum(), 2.0);
    QCOMPARE(gauge.maximum(), 3.0);
}

void tst_slidingGauge::saysNothingForTheRangeItHas()
{
    messageRecorder_t messages;
    slidingGauge_t gauge(nullptr);
    gauge.setRange(0.0, 1.0);
    QCOMPARE(messages.texts(), QStringList());
}

void tst_slidingGauge::takesValuesOutsideItsScale()
{
    slidingGauge_t gauge(nullptr);
    gauge.setReferencePoint(-7.0);
    gauge.setSetpoint(8.0);
    gauge.setFeedback(1e300);
    QCOMPARE(gauge.referencePoint(), -7.0);
    QCOMPARE(gauge.setpoint(), 8.0);
    QCOMPARE(gauge.feedback(), 1e300);
    gauge.setRange(100.0, 200.0); // leaves them alone
    QCOMPARE(gauge.setpoint(), 8.0);
}

void tst_slidingGauge::hasProperties()
{
    slidingGauge_t gauge(nullptr);
    QVERIFY(gauge.setProperty("feedback", 0.5));
    QVERIFY(gauge.setProperty("setpoint", 0.25));
    QVERIFY(gauge.setProperty("referencePoint", 0.125));
    QVERIFY(gauge.setProperty("orientation", Qt::Horizontal));
    QCOMPARE(gauge.feedback(), 0.5);
    QCOMPARE(gauge.setpoint(), 0.25);
    QCOMPARE(gauge.referencePoint(), 0.125);
    QCOMPARE(gauge.orientation(), Qt::Horizontal);
}

void tst_slidingGauge::hasNoSignalsAndSlots()
{
    const QMetaObject& meta = slidingGauge_t::staticMetaObject;
    QCOMPARE(meta.methodCount(), meta.methodOffset());
}

void tst_slidingGauge::repaintsForChangesOnly_data()
{
    using action_t = std::function<void(slidingGauge_t&)>;
    QTest::addColumn<action_t>("action");
    QTest::addColumn<int>("first");
    const auto row = [](const char* name, int first, const action_t& action) {
        QTest::newRow(name) << action << first;
    };
    row("range", 1, [](slidingGauge_t& gauge) { gauge.setRange(0.0, 2.0); });
    row("refused range", 0, [](slidingGauge_t& gauge) { gauge.setRange(2.0, 0.0); });
    row("reference", 1, [](slidingGauge_t& gauge) { gauge.setReferencePoint(0.5); });
    row("setpoint", 1, [](slidingGauge_t& gauge) { gauge.setSetpoint(0.5); });
    row("feedback", 1, [](slidingGauge_t& gauge) { gauge.setFeedback(0.5); });
    row("orientation", 1, [](slidingGauge_t& gauge) { gauge.setOrientation(Qt::Horizontal); });
    row("value", 1, [](slidingGauge_t& gauge) { gauge.showValue(false); });
    row("fill colour", 1, [](slidingGauge_t& gauge) { gauge.setFillColor(Qt::blue); });
    row("line colour", 1, [](slidingGauge_t& gauge) { gauge.setLineColor(Qt::blue); });
    row("the present values", 0, [](slidingGauge_t& gauge) {
        gauge.setRange(0.0, 1.0);
        gauge.setFeedback(0.0);
        gauge.setFillColor(Qt::green);
        gauge.setLineColor(Qt::red);
    });
}

void tst_slidingGauge::repaintsForChangesOnly()
{
    QFETCH(std::function<void(slidingGauge_t&)>, action);
    messageRecorder_t messages;
    testGauge_t gauge(nullptr);
    gauge.resize(100, 100);
    gauge.show();
    QVERIFY(QTest::qWaitForWindowExposed(&gauge, patienceMs()));
    settle();
    gauge.paints = 0;
    action(gauge);
    settle();
    QTEST(gauge.paints, "first");
    gauge.paints = 0;
    action(gauge); // the same again
    settle();
    QCOMPARE(gauge.paints, 0);
}

void tst_slidingGauge::drawsTheBarFromTheReference_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<double>("reference");
    QTest::addColumn<double>("feedback");
    QTest::addColumn<QRect>("bar"); // of 100 x 20 or 20 x 100 pixels
    const int across = Qt::Horizontal;
    const int up = Qt::Vertical;
    QTest::newRow("to the right") << across << 0.0 << 0.25 << QRect(0, 0, 25, 20);
    QTest::newRow("from the middle") << across << 0.5 << 0.75 << QRect(50, 0, 25, 20);
    QTest::newRow("nothing") << across << 0.5 << 0.5 << QRect(50, 0, 0, 20);
    QTest::newRow("full") << across << 0.0 << 1.0 << QRect(0, 0, 100, 20);
    // Deliberate: turned round, the bar holds the columns of both its ends.
    QTest::newRow("to the left") << across << 0.5 << 0.25 << QRect(24, 0, 27, 20);
    QTest::newRow("a pixel to the left") << across << 0.5 << 0.49 << QRect(48, 0, 3, 20);
    QTest::newRow("beyond the ends") << across << -1.0 << 2.0 << QRect(0, 0, 100, 20);
    QTest::newRow("outside") << across << 2.0 << 3.0 << QRect(0, 0, 0, 0);
    QTest::newRow("up") << up << 0.0 << 0.25 << QRect(0, 74, 20, 26);
    QTest::newRow("up from the middle") << up << 0.5 << 0.75 << QRect(0, 24, 20, 27);
    QTest::newRow("down from the middle") << up << 0.5 << 0.25 << QRect(0, 50, 20, 25);
    QTest::newRow("no height") << up << 0.5 << 0.5 << QRect(0, 50, 20, 0);
}

void tst_slidingGauge::drawsTheBarFromTheReference()
{
    QFETCH(int, orientation);
    QFETCH(double, reference);
    QFETCH(double, feedback);
    QFETCH(QRect, bar);
    slidingGauge_t gauge(nullptr);
    const bool isAcross = orientation == Qt::Horizontal;
    setUpPlain(gauge, isAcross ? QSize(100, 20) : QSize(20, 100),
               static_cast<Qt::Orientation>(orientation));
    gauge.setSetpoint(-5.0); // out of sight
    gauge.setReferencePoint(reference);
    gauge.setFeedback(feedback);
    QImage wanted = blank(gauge);
    fill(wanted, bar, Qt::green);
    QCOMPARE(firstDifference(snapshot(gauge), wanted), QString());
}

void tst_slidingGauge::drawsTheSetpoint_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<double>("setpoint");
    QTest::addColumn<QRect>("line"); // of 100 x 20 or 20 x 100 pixels
    QTest::newRow("left end") << int(Qt::Horizontal) << 0.0 << QRect(0, 0, 1, 20);
    QTest::newRow("halfway") << int(Qt::Horizontal) << 0.5 << QRect(50, 0, 1, 20);
    QTest::newRow("last column") << int(Qt::Horizontal) << 0.99 << QRect(99, 0, 1, 20);
    QTest::newRow("right end") << int(Qt::Horizontal) << 1.0 << QRect(); // one beyond
    QTest::newRow("top") << int(Qt::Vertical) << 1.0 << QRect(0, 0, 20, 1);
    QTest::newRow("quarter") << int(Qt::Vertical) << 0.25 << QRect(0, 75, 20, 1);
    QTest::newRow("bottom") << int(Qt::Vertical) << 0.0 << QRect(); // one below
    QTest::newRow("far outside") << int(Qt::Vertical) << 1e300 << QRect();
}

void tst_slidingGauge::drawsTheSetpoint()
{
    QFETCH(int, orientation);
    QFETCH(double, setpoint);
    QFETCH(QRect, line);
    slidingGauge_t gauge(nullptr);
    const bool isAcross = orientation == Qt::Horizontal;
    setUpPlain(gauge, isAcross ? QSize(100, 20) : QSize(20, 100),
               static_cast<Qt::Orientation>(orientation));
    gauge.setSetpoint(setpoint);
    QImage wanted = blank(gauge);
    fill(wanted, line, Qt::red);
    QCOMPARE(firstDifference(snapshot(gauge), wanted), QString());
}

void tst_slidingGauge::roundsHalvesAwayFromZero()
{
    slidingGauge_t gauge(nullptr);
    setUpPlain(gauge, QSize(100, 20), Qt::Horizontal);
    gauge.setRange(-50.0, 50.0); // one pixel a unit
    gauge.setSetpoint(-29.5);
    gauge.setReferencePoint(-0.5);
    gauge.setFeedback(10.0); // 10.5 pixels
    QImage wanted = blank(gauge);
    fill(wanted, QRect(50, 0, 11, 20), Qt::green);
    fill(wanted, QRect(21, 0, 1, 20), Qt::red);
    QCOMPARE(firstDifference(snapshot(gauge), wanted), QString());
    gauge.setFeedback(-11.0); // -10.5 pixels: from 50 to 38
    wanted = blank(gauge);
    fill(wanted, QRect(38, 0, 13, 20), Qt::green);
    fill(wanted, QRect(21, 0, 1, 20), Qt::red);
    QCOMPARE(firstDifference(snapshot(gauge), wanted), QString());
}

void tst_slidingGauge::drawsTheSetpointOverTheBar()
{
    slidingGauge_t gauge(nullptr);
    setUpPlain(gauge, QSize(100, 20), Qt::Horizontal);
    gauge.setFeedback(1.0);
    gauge.setSetpoint(0.5);
    QImage wanted = blank(gauge);
    fill(wanted, QRect(0, 0, 100, 20), Qt::green);
    fill(wanted, QRect(50, 0, 1, 20), Qt::red);
    QCOMPARE(firstDifference(snapshot(gauge), wanted), QString());
}

void tst_slidingGauge::staysInsideItsFrame_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QRect>("bar");
    QTest::addColumn<QRect>("line");
    // A frame of 3 pixels in a widget of 106 x 106, all values in the middle of 100 pixels.
    QTest::newRow("horizontal") << int(Qt::Horizontal) << QRect(3, 3, 50, 100)
                                << QRect(78, 3, 1, 101); // one row into the frame
    QTest::newRow("vertical") << int(Qt::Vertical) << QRect(3, 52, 100, 52)
                              << QRect(3, 28, 101, 1); // one column into the frame
}

void tst_slidingGauge::staysInsideItsFrame()
{
    QFETCH(int, orientation);
    QFETCH(QRect, bar);
    QFETCH(QRect, line);
    slidingGauge_t gauge(nullptr);
    setUpPlain(gauge, QSize(106, 106), static_cast<Qt::Orientation>(orientation));
    gauge.setFrameStyle(QFrame::Box | QFrame::Plain);
    gauge.setLineWidth(3);
    QCOMPARE(gauge.frameWidth(), 3);
    gauge.setFeedback(0.5);
    gauge.setSetpoint(0.75);
    QImage wanted = blank(gauge);
    const QColor frame = gauge.palette().color(QPalette::WindowText);
    fill(wanted, QRect(0, 0, 106, 106), frame);
    fill(wanted, QRect(3, 3, 100, 100), gauge.palette().color(QPalette::Window));
    fill(wanted, bar, Qt::green);
    fill(wanted, line, Qt::red);
    QCOMPARE(firstDifference(snapshot(gauge), wanted), QString());
}

void tst_slidingGauge::drawsALineIntoNoRoomAtAll()
{
    slidingGauge_t gauge(nullptr);
    setUpPlain(gauge, QSize(100, 2), Qt::Horizontal);
    gauge.setFrameStyle(QFrame::Box | QFrame::Plain);
    gauge.setLineWidth(1);
    gauge.setSetpoint(0.5);
    QImage wanted = blank(gauge);
    fill(wanted, QRect(0, 0, 100, 2), gauge.palette().color(QPalette::WindowText));
    fill(wanted, QRect(50, 1, 1, 1), Qt::red);
    QCOMPARE(firstDifference(snapshot(gauge), wanted), QString());
}

void tst_slidingGauge::drawsNothingInAnotherOrientation()
{
    slidingGauge_t gauge(nullptr);
    setUpPlain(gauge, QSize(100, 20), static_cast<Qt::Orientation>(3));
    gauge.setFeedback(0.5);
    gauge.setSetpoint(0.5);
    QCOMPARE(firstDifference(snapshot(gauge), blank(gauge)), QString());
}

void tst_slidingGauge::takesItsColors()
{
    slidingGauge_t gauge(nullptr);
    setUpPlain(gauge, QSize(100, 20), Qt::Horizontal);
    gauge.setFillColor(QColor(10, 20, 30));
    gauge.setLineColor(QColor(40, 50, 60));
    gauge.setFeedback(0.25);
    gauge.setSetpoint(0.5);
    QImage wanted = blank(gauge);
    fill(wanted, QRect(0, 0, 25, 20), QColor(10, 20, 30));
    fill(wanted, QRect(50, 0, 1, 20), QColor(40, 50, 60));
    QCOMPARE(firstDifference(snapshot(gauge), wanted), QString());
}

void tst_slidingGauge::writesTheFeedback_data()
{
    QTest::addColumn<double>("feedback");
    QTest::addColumn<QString>("text");
    QTest::newRow("zero") << 0.0 << "0";
    QTest::newRow("rounded up") << 0.6 << "1";
    QTest::newRow("a half, rounded up") << 0.5 << "1";
    QTest::newRow("below a half") << 0.49 << "0";
    QTest::newRow("rounded to minus zero") << -0.2 << "-0";
    QTest::newRow("large") << 12345.6 << "12346";
    QTest::newRow("NaN") << nan_ << "nan";
    QTest::newRow("infinite") << inf << "inf";
}

void tst_slidingGauge::writesTheFeedback()
{
    QFETCH(double, feedback);
    QFETCH(QString, text);
    slidingGauge_t gauge(nullptr);
    gauge.resize(90, 31);
    gauge.setSetpoint(-5.0);
    gauge.setFillColor(gauge.palette().color(QPalette::Window)); // no bar in the way
    gauge.setFeedback(feedback);
    QImage wanted = blank(gauge);
    QPainter painter(&wanted);
    painter.setFont(gauge.font());
    painter.setPen(gauge.palette().color(QPalette::WindowText));
    painter.drawText(QRect(0, 0, 90, 31), Qt::AlignCenter, text);
    painter.end();
    QVERIFY(wanted != blank(gauge));
    QCOMPARE(firstDifference(snapshot(gauge), wanted), QString());
}

void tst_slidingGauge::writesOverBarAndLine()
{
    slidingGauge_t gauge(nullptr);
    gauge.resize(60, 40);
    gauge.setOrientation(Qt::Horizontal);
    gauge.setRange(0.0, 1000.0);
    gauge.setFeedback(888.0);
    gauge.setSetpoint(500.0);
    QImage wanted = blank(gauge);
    fill(wanted, QRect(0, 0, 53, 40), Qt::green);
    fill(wanted, QRect(30, 0, 1, 40), Qt::red);
    QPainter painter(&wanted);
    painter.setFont(gauge.font());
    painter.setPen(gauge.palette().color(QPalette::WindowText));
    painter.drawText(QRect(0, 0, 60, 40), Qt::AlignCenter, "888");
    painter.end();
    QCOMPARE(firstDifference(snapshot(gauge), wanted), QString());
}

void tst_slidingGauge::survivesOddValues()
{
    for (const auto orientation : {Qt::Horizontal, Qt::Vertical}) {
        slidingGauge_t gauge(nullptr);
        setUpPlain(gauge, QSize(50, 50), orientation);
        for (const double value : {0.0, 1e-310, -1e300, 1e308, inf, -inf, nan_}) {
            gauge.setReferencePoint(value);
            for (const double feedback : {0.0, 1.0, 1e300, -inf, nan_}) {
                gauge.setFeedback(feedback);
                gauge.setSetpoint(feedback);
                QCOMPARE(snapshot(gauge).size(), QSize(50, 50));
            }
        }
        gauge.setRange(0.0, 1e-320); // a scale beyond all numbers
        QCOMPARE(snapshot(gauge).size(), QSize(50, 50));
        gauge.setRange(-1.7e308, 1.7e308); // a range beyond all numbers
        QCOMPARE(snapshot(gauge).size(), QSize(50, 50));
    }
}

// Bar and line pixel by pixel, for scales, frames and values at random.
void tst_slidingGauge::looksAsItsRulesSay()
{
    random_t random(11);
    for (int i = 0; i < 1000; ++i) {
        slidingGauge_t gauge(nullptr);
        const bool isAcross = random.chance(0.5);
        const QSize size(random.integer(1, 120), random.integer(1, 120));
        setUpPlain(gauge, size, isAcross ? Qt::Horizontal : Qt::Vertical);
        const int frame = random.chance(0.5) ? 0 : random.integer(1, 5);
        if (frame > 0)
            gauge.setFrameStyle(QFrame::Box | QFrame::Plain);
        gauge.setLineWidth(frame);
        const double min = random.integer(-10, 10);
        const double max = min + random.oneOf<double>({0.1, 1.0, 3.0, 20.0});
        const auto value = [&random, min, max] {
            return min + random.real(-0.2, 1.2) * (max - min);
        };
        const double ref = random.chance(0.3) ? min : value();
        const double fb = random.chance(0.1) ? ref : value();
        const double sp = value();
        gauge.setRange(min, max);
        gauge.setReferencePoint(ref);
        gauge.setFeedback(fb);
        gauge.setSetpoint(sp);

        const QImage empty = [&gauge] { // the frame alone
            QFrame plain;
            plain.resize(gauge.size());
            plain.setFrameStyle(gauge.frameStyle());
            plain.setLineWidth(gauge.lineWidth());
            return snapshot(plain);
        }();
        const int length = (isAcross ? size.width() : size.height()) - 2 * frame;
        const int breadth = (isAcross ? size.height() : size.width()) - 2 * frame;
        const double scale = length / (max - min);
        const auto nearest = [](double x) { return static_cast<int>(std::lround(x)); };
        const int from = frame + nearest((isAcross ? ref - min : max - ref) * scale);
        const int pixels = nearest((isAcross ? fb - ref : ref - fb) * scale);
        const int line = frame + nearest((isAcross ? sp - min : max - sp) * scale);
        QImage wanted = empty;
        const auto fillAlong = [&wanted, isAcross](int first, int last, int across, int count,
                                                   const QColor& color) {
            for (int a = first; a <= last; ++a)
                fill(wanted, isAcross ? QRect(a, across, 1, count) : QRect(across, a, count, 1),
                     color);
        };
        if (pixels > 0)
            fillAlong(from, from + pixels - 1, frame, breadth, Qt::green);
        if (pixels < 0)
            fillAlong(from + pixels - 1, from, frame, breadth, Qt::green);
        if (breadth >= 0)
            fillAlong(line, line, frame, breadth + 1, Qt::red);
        else
            continue; // no room for a gauge
        QVERIFY2(snapshot(gauge) == wanted,
                 qPrintable(QStringLiteral("gauge %1: %2")
                                .arg(i)
                                .arg(firstDifference(snapshot(gauge), wanted))));
    }
}

ZORBIN_TEST_MAIN(tst_slidingGauge, QApplication)
#include "tst_slidingGauge.moc"
