#include "pictures.h"
#include "plainRuler.h"
#include "randomNumbers.h"
#include "rulerStage.h"
#include "testCase.h"

#include <QApplication>
#include <QPainter>
#include <QProxyStyle>
#include <QScopeGuard>
#include <QStyle>
#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <ruler.h>
#include <vector>

using namespace ruler_tests;

Q_DECLARE_METATYPE(std::function<void(ruler_t&)>)

static const double inf = std::numeric_limits<double>::infinity();
static const double nan_ = std::numeric_limits<double>::quiet_NaN();

/// What a ruler looks like, and when it is painted.
class tst_rulerPainting : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
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

    // Everything at random.
    void looksLikeThePlainRuler_data();
    void looksLikeThePlainRuler();
};

void tst_rulerPainting::repaintsForChangesOnly_data()
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

void tst_rulerPainting::repaintsForChangesOnly()
{
    QFETCH(std::function<void(ruler_t&)>, action);
    QFETCH(int, first);
    QFETCH(int, again);
    stage_t stage;
    stage.ruler.range(0.0, 10.0);
    QCOMPARE(stage.paintsAfter(action), first);
    QCOMPARE(stage.paintsAfter(action), again);
}

void tst_rulerPainting::computesTicksAnewAfterAFontChange()
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

void tst_rulerPainting::fitsItsSizeToItsEdge_data()
{
    QTest::addColumn<int>("location");
    QTest::addColumn<QSize>("hint");
    QTest::addColumn<bool>("isWide");
    QTest::newRow("top") << int(ruler_t::TOP) << QSize(0, 13) << true;
    QTest::newRow("bottom") << int(ruler_t::BOTTOM) << QSize(0, 13) << true;
    QTest::newRow("left") << int(ruler_t::LEFT) << QSize(13, 0) << false;
    QTest::newRow("right") << int(ruler_t::RIGHT) << QSize(13, 0) << false;
}

void tst_rulerPainting::fitsItsSizeToItsEdge()
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

void tst_rulerPainting::growsToItsWidestLabel()
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

void tst_rulerPainting::drawsTicksAtEveryEdge_data()
{
    QTest::addColumn<int>("location");
    QTest::newRow("top") << int(ruler_t::TOP);
    QTest::newRow("bottom") << int(ruler_t::BOTTOM);
    QTest::newRow("left") << int(ruler_t::LEFT);
    QTest::newRow("right") << int(ruler_t::RIGHT);
}

void tst_rulerPainting::drawsTicksAtEveryEdge()
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
void tst_rulerPainting::drawsTheStartOneRowBelowAVerticalRuler()
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

void tst_rulerPainting::halvesTheTickLength_data()
{
    QTest::addColumn<unsigned>("length");
    QTest::addColumn<int>("major"); // pixels drawn
    QTest::addColumn<int>("minor");
    QTest::newRow("none, without a base line") << 0u << 0 << 0;
    QTest::newRow("one") << 1u << 2 << 1; // no minor tick, but the base line
    QTest::newRow("odd") << 7u << 8 << 4;
    QTest::newRow("even") << 20u << 21 << 11;
}

void tst_rulerPainting::halvesTheTickLength()
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

void tst_rulerPainting::centresLabelsBelowTheirTicks()
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

void tst_rulerPainting::leavesOutLabelsThatWouldLeave()
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

void tst_rulerPainting::writesLabelsAtEveryEdge_data()
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

void tst_rulerPainting::writesLabelsAtEveryEdge()
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

void tst_rulerPainting::highlightsTheColumnsOfASpan_data()
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

void tst_rulerPainting::highlightsTheColumnsOfASpan()
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

void tst_rulerPainting::pointsAtAValue_data()
{
    QTest::addColumn<int>("location");
    QTest::addColumn<int>("arrow");
    QTest::addColumn<QPoint>("corner"); // for the value 40 of 100 pixels
    QTest::newRow("bottom") << int(ruler_t::BOTTOM) << int(QStyle::SP_ArrowUp) << QPoint(32, 0);
    QTest::newRow("top") << int(ruler_t::TOP) << int(QStyle::SP_ArrowDown) << QPoint(32, 83);
    QTest::newRow("left") << int(ruler_t::LEFT) << int(QStyle::SP_ArrowRight) << QPoint(83, 52);
    QTest::newRow("right") << int(ruler_t::RIGHT) << int(QStyle::SP_ArrowLeft) << QPoint(0, 52);
}

void tst_rulerPainting::pointsAtAValue()
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

void tst_rulerPainting::asksTheStyleForItsArrowWhenThatChanges()
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

void tst_rulerPainting::remembersWhatItPointedAt()
{
    ruler_t ruler(nullptr);
    ruler.indicator(7.5);
    ruler.clearIndicator();
    QCOMPARE(ruler.indicator(), 7.5);
}

void tst_rulerPainting::drawsNothingWithoutAnEdge()
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

void tst_rulerPainting::looksLikeThePlainRuler_data()
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

void tst_rulerPainting::looksLikeThePlainRuler()
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

ZORBIN_TEST_MAIN(tst_rulerPainting, QApplication)
#include "tst_rulerPainting.moc"
