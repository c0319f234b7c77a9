#include "echogramPanel.h"
#include "gestures.h"
#include "levelHistogram.h"
#include "palette.h"
#include "pictures.h"
#include "pingTimeAxis.h"
#include "pingView.h"
#include "testCase.h"
#include "testRecords.h"
#include "testWindow.h"
#include "theme.h"
#include "timeRuler.h"
#include "valueRuler.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QSignalSpy>
#include <QSlider>
#include <QTemporaryDir>
#include <QToolButton>
#include <algorithm>
#include <cmath>
#include <limits>

using namespace survey_console;
using zorbin_qt_gui::palette_t;
using zorbin_qt_gui::ruler_t;

namespace {

const double NO_DEPTH = std::numeric_limits<double>::quiet_NaN();
const double START = 1382657324.0; // 2013-10-24 23:28:44 UTC
const double PERIOD = 0.5;         // s between pings
const int COUNT = 200;
const double SPACING = 0.5; // m between samples
const int SAMPLES = 16;

// Ping number i has levels i, the last of its samples missing, and found the bottom at 2 m.
sonarRecord_t testRecord(double frequency)
{
    sonarRecord_t record;
    record.extent = {0.0, SPACING * SAMPLES, SAMPLES};
    record.fullLevel = 255.0F;
    record.frequency = frequency;
    for (int i = 0; i < COUNT; ++i)
        record.pings.push_back(
            {START + i * PERIOD, std::vector<float>(SAMPLES - 1, static_cast<float>(i)), 2.0});
    return record;
}

std::vector<echogram_t> riverEchograms()
{
    std::vector<echogram_t> echograms = {{"high.pgm", testRecord(200000.0)},
                                         {"low.pgm", testRecord(83000.0)}};
    for (ping_t& ping : echograms[1].record.pings)
        ping.depth = 3.0;
    return echograms;
}

struct panelOnScreen_t : testWindow_t
{
    const std::vector<echogram_t> echograms;
    echogramPanel_t panel;

    explicit panelOnScreen_t(std::vector<echogram_t> shown = riverEchograms())
        : echograms(std::move(shown)), panel(echograms)
    {
        setWindow(&panel);
        panel.resize(1000, 700);
    }
    pingView_t* view() { return panel.view(); }
    valueRuler_t* depthRuler() { return find<valueRuler_t>("rangeRuler"); }
    // Those that show, from the left.
    QList<timeRuler_t*> timeRulers()
    {
        QList<timeRuler_t*> rulers;
        for (timeRuler_t* ruler :
             find<pingTimeAxis_t>("pingTimeAxis")->findChildren<timeRuler_t*>())
            if (ruler->isVisible())
                rulers += ruler;
        std::sort(rulers.begin(), rulers.end(),
                  [](timeRuler_t* a, timeRuler_t* b) { return a->x() < b->x(); });
        return rulers;
    }
    // The column of a ping, which must show.
    int columnOf(int index) { return view()->width() - 1 - (view()->position() - index); }
};

// What a chosen palette says of a level, worked out apart from the panel: the first colour is that
// of half the full level.
QRgb colorOf(const palette_t& palette, int level)
{
    const std::vector<unsigned int> table = palette.colorTable();
    const double share = (level - 127.5) / 127.5;
    const int entry = static_cast<int>(std::floor(share * static_cast<double>(table.size())));
    return table[static_cast<std::size_t>(
        std::min(std::max(entry, 0), static_cast<int>(table.size()) - 1))];
}

} // namespace

class tst_echogramPanel : public testCase_t
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void drawsWhatIsInTheFile_data();
    void drawsWhatIsInTheFile();
    void leavesBareWhatFillsARow();
    void drawsDepthDownwardsAndTheNewestAtTheRight();
    void drawsTheInstrumentsDepth_data();
    void drawsTheInstrumentsDepth();
    void depthStandsOutOnAnyPalette_data();
    void depthStandsOutOnAnyPalette();
    void drawsNoDepthOfItsOwn_data();
    void drawsNoDepthOfItsOwn();
    void hidesTheDepthByTheBox();
    void tellsTheDepthOfTheNewestThatShows();
    void showsTwiceTheGreatestDepthAtFirst_data();
    void showsTwiceTheGreatestDepthAtFirst();
    void showsTheWholeDepthByTheButton();
    void dragOnTheRulerLooksCloser();
    void looksAtLessThanTheSmallestSpan();
    void rulersFollowTheView();
    void timesStartAnewWithTheRecord();
    void timesBreakAtAGap();
    void hasNoTimesBeforeThePings();
    void narrowStretchHasNoTimes();
    void pointsAtTheTime();
    void readsOutThePointer();
    void readsOutWhereThereIsNoSample();
    void standsStillWhenScrolledBack();
    void offersTheFrequencies();
    void namesARecordWithoutAFrequency();
    void goesOverToAnotherFrequency();
    void staysScrolledBackWithAnotherFrequency();
    void choosesTheFrequencyAgain();
    void offersAllStandardPalettes();
    void coloursByThePaletteOfChoice();
    void isGreyWithoutPalettes();
    void histogramSpansTheFullLevel();
    void countsNoFilling();
};

void tst_echogramPanel::initTestCase()
{
    qputenv("ZORBIN_QT_RESOURCE_DIR", RESOURCES);
}

void tst_echogramPanel::drawsWhatIsInTheFile_data()
{
    QTest::addColumn<int>("kilohertz");
    QTest::addColumn<int>("ping");
    QTest::newRow("first") << 200 << 0;
    QTest::newRow("over boulders") << 200 << 450;
    QTest::newRow("shallow") << 200 << 1200;
    QTest::newRow("83 kHz") << 83 << 700;
}

// Against the bytes of the file. The bounds are laid so that each pixel shows one sample.
void tst_echogramPanel::drawsWhatIsInTheFile()
{
    QFETCH(int, kilohertz);
    QFETCH(int, ping);
    const int columns = 1550;
    const double spacing = 0.0187; // m
    QFile file(echogramPicture(kilohertz));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    const QByteArray bytes = content.mid(content.indexOf("255\n") + 4);
    palette_t palette;
    QVERIFY(palette.load(palette_t::SP_WATERCOLUMN));

    sonarResult_t result = readEchogram(file.fileName());
    QCOMPARE(result.error, QString());
    const double time = result.record.pings[static_cast<std::size_t>(ping)].time;
    const double seconds = time - result.record.pings.front().time;
    panelOnScreen_t console({{"river.pgm", std::move(result.record)}});
    QVERIFY(console.show());
    console.panel.showDepth(false);
    const int height = console.view()->height();
    console.view()->bounds(0.25 * spacing, (height + 0.25) * spacing);
    console.panel.showTime(seconds + 1e-4);
    QCOMPARE(console.view()->position(), ping);
    const QImage picture = snapshot(*console.view());
    for (const int shown : {ping, ping - 100}) {
        if (shown < 0)
            continue;
        const int x = console.columnOf(shown);
        for (int y = 0; y < height; ++y) {
            const int level = static_cast<uchar>(bytes[shown * columns + y]);
            QVERIFY2(picture.pixel(x, y) == colorOf(palette, level),
                     qPrintable(QStringLiteral("ping %1, sample %2").arg(shown).arg(y)));
        }
    }
}

void tst_echogramPanel::leavesBareWhatFillsARow()
{
    sonarResult_t result = readEchogram(echogramPicture(200));
    QCOMPARE(result.error, QString());
    panelOnScreen_t console({{"river.pgm", std::move(result.record)}});
    QVERIFY(console.show());
    console.panel.showTime(0.0); // 1479 samples
    const double spacing = 0.0187;
    console.view()->bounds(1470.25 * spacing, (1470.25 + console.view()->height()) * spacing);
    const QImage picture = snapshot(*console.view());
    const int x = console.view()->width() - 1;
    QVERIFY(picture.pixelColor(x, 1478 - 1470) != theme::chart());
    for (int y = 1479 - 1470; y < picture.height(); ++y)
        QCOMPARE(picture.pixelColor(x, y), theme::chart());
}

void tst_echogramPanel::drawsDepthDownwardsAndTheNewestAtTheRight()
{
    std::vector<echogram_t> echograms = riverEchograms();
    for (ping_t& ping : echograms[0].record.pings) {
        ping.depth = NO_DEPTH;
        std::fill(ping.levels.begin(), ping.levels.begin() + 8, 0.0F); // upper half
        std::fill(ping.levels.begin() + 8, ping.levels.end(), 255.0F);
    }
    panelOnScreen_t console(echograms);
    QVERIFY(console.show());
    console.panel.showTime(10.0); // 21 pings
    palette_t palette;
    QVERIFY(palette.load(palette_t::SP_WATERCOLUMN));
    const QImage picture = snapshot(*console.view());
    const int right = picture.width() - 1;
    const int height = picture.height();
    for (const int x : {right, right - 20}) {
        QCOMPARE(picture.pixel(x, 0), colorOf(palette, 0));
        QCOMPARE(picture.pixel(x, height / 2 - 2), colorOf(palette, 0));
        QCOMPARE(picture.pixel(x, height / 2 + 2), colorOf(palette, 255));
    }
    QCOMPARE(picture.pixelColor(right - 21, 0), theme::chart()); // before the first
}

void tst_echogramPanel::drawsTheInstrumentsDepth_data()
{
    QTest::addColumn<double>("depth");
    QTest::addColumn<QList<int>>("edge");
    QTest::addColumn<QList<int>>("line");
    // A line of 20 pixels from 1 m to 5 m.
    QTest::newRow("inside") << 3.0 << QList<int>{8, 11} << QList<int>{9, 10};
    QTest::newRow("to the nearest pixel") << 3.09 << QList<int>{8, 11} << QList<int>{9, 10};
    QTest::newRow("at the top") << 1.0 << QList<int>{1} << QList<int>{0};
    QTest::newRow("at the bottom") << 5.0 << QList<int>{18} << QList<int>{19};
    QTest::newRow("a little above") << 0.8 << QList<int>{0} << QList<int>{};
    QTest::newRow("a little below") << 5.2 << QList<int>{19} << QList<int>{};
    QTest::newRow("above") << 0.4 << QList<int>{} << QList<int>{};
    QTest::newRow("below") << 5.6 << QList<int>{} << QList<int>{};
    QTest::newRow("far below") << 1e30 << QList<int>{} << QList<int>{};
    QTest::newRow("none") << NO_DEPTH << QList<int>{} << QList<int>{};
}

void tst_echogramPanel::drawsTheInstrumentsDepth()
{
    QFETCH(double, depth);
    QFETCH(QList<int>, edge);
    QFETCH(QList<int>, line);
    palette_t palette;
    palette.setColorTable({qRgb(10, 10, 10)}, palette_t::DEPTH_24);
    palette.setKeyedColor("bottom", qRgb(1, 2, 3), palette_t::DEPTH_24);
    palette.setKeyedColor("background", qRgb(4, 5, 6), palette_t::DEPTH_24);
    pingRenderer_t renderer({0.0, 8.0, 16});
    renderer.setPalette(palette);
    renderer.showDepth(true);
    pingModel_t model;
    model.addPing({START, std::vector<float>(16, 0.0F), depth});
    std::vector<QRgb> pixels(20, qRgb(255, 0, 0));
    const zorbin_qt_gui::baseWaterfallRenderer_t::context_t context = {20, 1.0, 5.0, 5.0};
    renderer.render(&context, pixels.data(), &model, 0);
    for (int i = 0; i < 20; ++i) {
        const QRgb wanted = edge.contains(i)   ? qRgb(4, 5, 6)
                            : line.contains(i) ? qRgb(1, 2, 3)
                                               : qRgb(10, 10, 10);
        QVERIFY2(pixels[static_cast<std::size_t>(i)] == wanted, qPrintable(QString::number(i)));
    }
}

void tst_echogramPanel::depthStandsOutOnAnyPalette_data()
{
    QTest::addColumn<bool>("hasKeys");
    QTest::newRow("with keyed colours") << true;
    QTest::newRow("without") << false;
}

// The line and its edges have colours of their own.
void tst_echogramPanel::depthStandsOutOnAnyPalette()
{
    QFETCH(bool, hasKeys);
    palette_t palette;
    if (hasKeys)
        QVERIFY(palette.load(palette_t::SP_WATERCOLUMN));
    else
        palette.setColorTable({qRgb(10, 10, 10)}, palette_t::DEPTH_24);
    QRgb line = qRgb(0, 0, 0);
    QRgb edge = qRgb(255, 255, 255);
    QCOMPARE(palette.keyedColor("bottom", line), hasKeys);
    QCOMPARE(palette.keyedColor("background", edge), hasKeys);
    pingRenderer_t renderer({0.0, 4.0, 4});
    renderer.setPalette(palette);
    renderer.showDepth(true);
    pingModel_t model;
    model.addPing({START, std::vector<float>(4, 0.0F), 2.0});
    std::vector<QRgb> pixels(4);
    const zorbin_qt_gui::baseWaterfallRenderer_t::context_t context = {4, 0.0, 4.0, 1.0};
    renderer.render(&context, pixels.data(), &model, 0);
    QCOMPARE(pixels, std::vector<QRgb>({edge, line, line, edge}));
}

void tst_echogramPanel::drawsNoDepthOfItsOwn_data()
{
    QTest::addColumn<double>("depth");
    QTest::newRow("none") << NO_DEPTH;
    QTest::newRow("some, not to be drawn") << 2.0;
}

void tst_echogramPanel::drawsNoDepthOfItsOwn()
{
    QFETCH(double, depth);
    pingRenderer_t renderer({0.0, 4.0, 4});
    palette_t palette;
    palette.setColorTable({qRgb(10, 10, 10)}, palette_t::DEPTH_24);
    renderer.setPalette(palette);
    QSignalSpy changed(&renderer, &pingRenderer_t::rendererChanged);
    renderer.showDepth(std::isnan(depth));
    QCOMPARE(changed.count(), 1);
    pingModel_t model;
    model.addPing({START, std::vector<float>(4, 0.0F), depth});
    std::vector<QRgb> pixels(4);
    const zorbin_qt_gui::baseWaterfallRenderer_t::context_t context = {4, 0.0, 4.0, 1.0};
    renderer.render(&context, pixels.data(), &model, 0);
    QCOMPARE(pixels, std::vector<QRgb>(4, qRgb(10, 10, 10)));
}

void tst_echogramPanel::hidesTheDepthByTheBox()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    console.panel.showTime(10.0);
    palette_t palette;
    QVERIFY(palette.load(palette_t::SP_WATERCOLUMN));
    QRgb line = 0;
    QVERIFY(palette.keyedColor("bottom", line));
    const QPoint onTheLine(console.view()->width() - 1, console.view()->height() / 2); // of 4 m
    QCOMPARE(snapshot(*console.view()).pixel(onTheLine), line);
    QTest::mouseClick(console.find<QCheckBox>("depthBox"), Qt::LeftButton, Qt::KeyboardModifiers(),
                      QPoint(8, console.find<QCheckBox>("depthBox")->height() / 2));
    QVERIFY(!console.panel.showsDepth());
    QVERIFY(snapshot(*console.view()).pixel(onTheLine) != line);
}

void tst_echogramPanel::tellsTheDepthOfTheNewestThatShows()
{
    std::vector<echogram_t> echograms = riverEchograms();
    echograms[0].record.pings[20].depth = 6.25;
    echograms[0].record.pings[21].depth = NO_DEPTH;
    panelOnScreen_t console(echograms);
    QVERIFY(console.show());
    auto* label = console.find<QLabel>("instrumentDepthLabel");
    console.panel.showTime(9.5);
    QCOMPARE(label->text(), QStringLiteral("2.0 m"));
    console.panel.showTime(10.0);
    QCOMPARE(label->text(), QStringLiteral("6.3 m"));
    console.panel.showTime(10.5);
    QCOMPARE(label->text(), QStringLiteral("\u2013"));
    console.find<QSlider>("scrollSlider")->setValue(20);
    QCOMPARE(label->text(), QStringLiteral("6.3 m"));
}

void tst_echogramPanel::showsTwiceTheGreatestDepthAtFirst_data()
{
    QTest::addColumn<double>("depth");
    QTest::addColumn<double>("end");
    QTest::newRow("shallow") << 2.0 << 4.0;
    QTest::newRow("next to nothing") << 0.01 << 0.1; // the smallest span
    QTest::newRow("deep") << 7.0 << 8.0;             // all there is
    QTest::newRow("deeper than the record") << 100.0 << 8.0;
    QTest::newRow("none") << NO_DEPTH << 8.0;
}

void tst_echogramPanel::showsTwiceTheGreatestDepthAtFirst()
{
    QFETCH(double, depth);
    QFETCH(double, end);
    std::vector<echogram_t> echograms = riverEchograms();
    for (ping_t& ping : echograms[0].record.pings)
        ping.depth = depth * 0.5;
    echograms[0].record.pings[50].depth = depth;
    const panelOnScreen_t console(echograms);
    QCOMPARE(console.panel.view()->begBound(), 0.0);
    QCOMPARE(console.panel.view()->endBound(), end);
}

void tst_echogramPanel::showsTheWholeDepthByTheButton()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    auto* button = console.find<QToolButton>("wholeButton");
    QVERIFY(button->isEnabled());
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(console.view()->begBound(), 0.0);
    QCOMPARE(console.view()->endBound(), 8.0);
    QVERIFY(!button->isEnabled());
}

void tst_echogramPanel::dragOnTheRulerLooksCloser()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    valueRuler_t* ruler = console.depthRuler();
    const double beg = ruler->pixelToValue(100);
    const double end = ruler->pixelToValue(300);
    QVERIFY(end > beg); // the deeper end is below
    drag(ruler, QPoint(5, 100), QPoint(5, 300));
    QCOMPARE(console.view()->begBound(), beg);
    QCOMPARE(console.view()->endBound(), end);
    Q_EMIT ruler->scaleChosen(20.0, -5.0);
    QCOMPARE(console.view()->begBound(), 0.0);
    QCOMPARE(console.view()->endBound(), 8.0);
}

void tst_echogramPanel::looksAtLessThanTheSmallestSpan()
{
    std::vector<echogram_t> echograms = riverEchograms();
    echograms[0].record.extent = {0.0, 0.01, SAMPLES}; // m
    panelOnScreen_t console(echograms);
    QVERIFY(console.show());
    console.panel.showTime(10.0);
    Q_EMIT console.depthRuler()->scaleChosen(0.006, 0.005);
    QCOMPARE(console.view()->begBound(), 0.0);
    QCOMPARE(console.view()->endBound(), 0.01);
}

void tst_echogramPanel::rulersFollowTheView()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    valueRuler_t* depths = console.depthRuler();
    QCOMPARE(depths->axisLocation(), ruler_t::LEFT);
    QCOMPARE(depths->height(), console.view()->height());
    QCOMPARE(depths->mapTo(&console.panel, QPoint()).y(),
             console.view()->mapTo(&console.panel, QPoint()).y());
    QCOMPARE(depths->pixelToValue(0), 0.0);
    console.view()->bounds(1.0, 3.0);
    QCOMPARE(depths->start(), 3.0); // at the bottom
    QCOMPARE(depths->end(), 1.0);
    console.panel.showTime(80.0); // 161 pings
    const QList<timeRuler_t*> times = console.timeRulers();
    QCOMPARE(times.size(), 1);
    QCOMPARE(times[0]->start(), START);
    QCOMPARE(times[0]->end(), START + 80.5); // of the next one
    QCOMPARE(times[0]->width(), 161);
    QCOMPARE(times[0]->mapTo(&console.panel, QPoint(160, 0)).x(),
             console.view()->mapTo(&console.panel, QPoint(console.view()->width() - 1, 0)).x());
    console.find<QSlider>("scrollSlider")->setValue(100);
    QCOMPARE(console.timeRulers()[0]->end(), START + 50.5);
    const int width = console.view()->width();
    QVERIFY(console.resize(QSize(1100, 600)));
    QCOMPARE(console.view()->width(), width + 100);
    QCOMPARE(console.timeRulers()[0]->mapTo(&console.panel, QPoint(100, 0)).x(),
             console.view()->mapTo(&console.panel, QPoint(width + 99, 0)).x());
}

void tst_echogramPanel::timesStartAnewWithTheRecord()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    // The last ping comes at 99.5 s, the first one again 99.5 s / 200 later.
    console.panel.showTime(99.5 + 0.4975 + 50.0 + 0.01);
    QCOMPARE(console.panel.model()->end(), COUNT + 101);
    const QList<timeRuler_t*> times = console.timeRulers();
    QCOMPARE(times.size(), 2);
    QCOMPARE(times[0]->start(), START);
    QCOMPARE(times[0]->end(), START + 100.0);
    QCOMPARE(times[0]->width(), COUNT);
    QCOMPARE(times[1]->x(), times[0]->x() + COUNT);
    QCOMPARE(times[1]->start(), START);
    QCOMPARE(times[1]->end(), START + 50.5);
    QCOMPARE(times[1]->width(), 101);
}

void tst_echogramPanel::timesBreakAtAGap()
{
    std::vector<echogram_t> echograms = riverEchograms();
    std::vector<ping_t>& pings = echograms[0].record.pings;
    for (std::size_t i = 60; i < pings.size(); ++i)
        pings[i].time += 30.0; // more than ten pings
    for (std::size_t i = 120; i < pings.size(); ++i)
        pings[i].time += 3.0; // fewer
    panelOnScreen_t console(echograms);
    QVERIFY(console.show());
    console.panel.showTime(120.0);
    const QList<timeRuler_t*> times = console.timeRulers();
    QCOMPARE(times.size(), 2);
    QCOMPARE(times[0]->end(), START + 30.0);
    QCOMPARE(times[1]->start(), START + 60.0);
}

void tst_echogramPanel::hasNoTimesBeforeThePings()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    console.panel.showTime(25.0);
    const QList<timeRuler_t*> times = console.timeRulers();
    QCOMPARE(times.size(), 1);
    QCOMPARE(times[0]->x(), console.view()->width() - 51);
}

void tst_echogramPanel::narrowStretchHasNoTimes()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    console.panel.showTime(19.0); // 39 pings
    QCOMPARE(console.timeRulers().size(), 0);
    console.panel.showTime(19.5);
    QCOMPARE(console.timeRulers().size(), 1);
}

void tst_echogramPanel::pointsAtTheTime()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    console.panel.showTime(80.0);
    const int x = console.columnOf(100);
    QTest::mouseMove(console.view(), QPoint(x, 10));
    timeRuler_t* times = console.timeRulers()[0];
    QTRY_COMPARE(times->indicator(), START + 50.25); // the middle of the column
    QTRY_COMPARE(console.depthRuler()->indicator(), 4.0 * 10 / console.view()->height());
}

void tst_echogramPanel::readsOutThePointer()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    console.panel.showTime(80.0);
    auto* label = console.find<QLabel>("echogramPointerLabel");
    const int y = console.view()->height() / 4;
    QTest::mouseMove(console.view(), QPoint(console.columnOf(77), y));
    const double depth = 4.0 * y / console.view()->height();
    QTRY_COMPARE(label->text(),
                 QStringLiteral("ping 77   23:29:22.50 UTC   %1 m   level 77   instrument's depth "
                                "2.0 m")
                     .arg(depth, 0, 'f', 2));
    QTest::mouseMove(console.view(), QPoint(2, y)); // before the first
    QTRY_COMPARE(label->text(), QString());
}

void tst_echogramPanel::readsOutWhereThereIsNoSample()
{
    std::vector<echogram_t> echograms = riverEchograms();
    for (ping_t& ping : echograms[0].record.pings)
        ping.depth = NO_DEPTH;
    panelOnScreen_t console(echograms);
    QVERIFY(console.show());
    console.panel.showTime(80.0);
    const int height = console.view()->height();
    QTest::mouseMove(console.view(), QPoint(console.columnOf(160), height - 1)); // of 8 m
    QTRY_COMPARE(console.find<QLabel>("echogramPointerLabel")->text(),
                 QStringLiteral("ping 160   23:30:04.00 UTC   %1 m   instrument's depth \u2013")
                     .arg(8.0 * (height - 1) / height, 0, 'f', 2));
}

void tst_echogramPanel::standsStillWhenScrolledBack()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    console.panel.showTime(20.0);
    console.find<QSlider>("scrollSlider")->setValue(30);
    console.panel.showTime(25.0);
    QCOMPARE(console.view()->position(), 30);
    QTest::mouseClick(console.find<QToolButton>("newestButton"), Qt::LeftButton);
    QCOMPARE(console.view()->position(), 50);
}

void tst_echogramPanel::offersTheFrequencies()
{
    panelOnScreen_t console;
    auto* box = console.find<QComboBox>("beamBox");
    QCOMPARE(box->count(), 2);
    QCOMPARE(box->itemText(0), QStringLiteral("200 kHz"));
    QCOMPARE(box->itemText(1), QStringLiteral("83 kHz"));
    QCOMPARE(console.panel.beamChoice(), QString());
}

void tst_echogramPanel::namesARecordWithoutAFrequency()
{
    std::vector<echogram_t> echograms = riverEchograms();
    echograms[0].record.frequency = 0.0;
    panelOnScreen_t console(echograms);
    QCOMPARE(console.find<QComboBox>("beamBox")->itemText(0), QStringLiteral("high.pgm"));
}

void tst_echogramPanel::goesOverToAnotherFrequency()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    console.panel.showTime(20.0);
    auto* box = console.find<QComboBox>("beamBox");
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(console.panel.beamChoice(), QStringLiteral("83 kHz"));
    QCOMPARE(console.view()->position(), 40);
    QCOMPARE(console.panel.model()->ping(40).depth, 3.0);
    QCOMPARE(console.find<QLabel>("instrumentDepthLabel")->text(), QStringLiteral("3.0 m"));
    QCOMPARE(console.view()->endBound(), 4.0); // as chosen
    console.panel.showTime(21.0);
    QCOMPARE(console.view()->position(), 42); // follows
    QTest::keyClick(box, Qt::Key_Up);
    QCOMPARE(console.panel.model()->ping(42).depth, 2.0);
}

void tst_echogramPanel::staysScrolledBackWithAnotherFrequency()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    console.panel.showTime(20.0);
    console.find<QSlider>("scrollSlider")->setValue(30);
    console.panel.chooseBeamAgain("83 kHz");
    QCOMPARE(console.view()->position(), 30);
    QCOMPARE(console.find<QSlider>("scrollSlider")->value(), 30);
}

void tst_echogramPanel::choosesTheFrequencyAgain()
{
    panelOnScreen_t console;
    console.panel.chooseBeamAgain("38 kHz"); // isn't there
    QCOMPARE(console.panel.beamChoice(), QString());
    console.panel.chooseBeamAgain("83 kHz");
    QCOMPARE(console.panel.beamChoice(), QStringLiteral("83 kHz"));
    console.panel.chooseBeamAgain(QString()); // of another run, which says nothing
    QCOMPARE(console.panel.beamChoice(), QStringLiteral("83 kHz"));
}

void tst_echogramPanel::offersAllStandardPalettes()
{
    panelOnScreen_t console;
    auto* box = console.find<QComboBox>("echogramPaletteBox");
    QStringList names;
    for (int row = 0; row < box->count(); ++row)
        names += box->itemText(row);
    QCOMPARE(names, QStringList({"Water column", "Intensity", "Sub-bottom", "Bathymetry", "Imagery",
                                 "Sidescan"}));
    QCOMPARE(console.panel.paletteChoice(), QStringLiteral("watercolumn"));
}

void tst_echogramPanel::coloursByThePaletteOfChoice()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    console.panel.showTime(99.0);
    auto* box = console.find<QComboBox>("echogramPaletteBox");
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(console.panel.paletteChoice(), QStringLiteral("intensity"));
    palette_t palette;
    QVERIFY(palette.load(palette_t::SP_INTENSITY));
    const QImage picture = snapshot(*console.view());
    QCOMPARE(picture.pixel(console.columnOf(198), 2), colorOf(palette, 198));
    QCOMPARE(picture.pixel(console.columnOf(150), 2), colorOf(palette, 150));
}

void tst_echogramPanel::isGreyWithoutPalettes()
{
    const QTemporaryDir empty;
    qputenv("ZORBIN_QT_RESOURCE_DIR", QFile::encodeName(empty.path()));
    panelOnScreen_t console;
    qputenv("ZORBIN_QT_RESOURCE_DIR", RESOURCES);
    QVERIFY(console.show());
    auto* box = console.find<QComboBox>("echogramPaletteBox");
    QCOMPARE(box->count(), 0);
    QVERIFY(!box->isEnabled());
    QCOMPARE(console.panel.paletteChoice(), QString());
    console.panel.choosePaletteAgain("watercolumn");
    console.panel.showTime(99.0); // 199 pings
    const QImage picture = snapshot(*console.view());
    const int grey = static_cast<int>((198 - 127.5) / 127.5 * 256.0);
    QCOMPARE(picture.pixel(console.columnOf(198), 2), qRgb(grey, grey, grey));
}

void tst_echogramPanel::histogramSpansTheFullLevel()
{
    std::vector<echogram_t> echograms = riverEchograms();
    echograms[1].record.fullLevel = 1000.0F; // of both, the greater
    panelOnScreen_t console(echograms);
    auto* histogram = console.find<levelHistogram_t>("histogram");
    QCOMPARE(histogram->chosenMin(), 500.0F);
    QCOMPARE(histogram->chosenMax(), 1000.0F);
    QCOMPARE(console.find<QLabel>("levelLabel")->text(), QStringLiteral("500 to 1000"));
}

// Where a ping has no samples there is no level, not even 0.
void tst_echogramPanel::countsNoFilling()
{
    std::vector<echogram_t> echograms = riverEchograms();
    for (ping_t& ping : echograms[0].record.pings)
        ping.levels = std::vector<float>(4, 200.0F);
    panelOnScreen_t console(echograms);
    QVERIFY(console.show());
    console.panel.showTime(20.0);
    auto* histogram = console.find<levelHistogram_t>("histogram");
    const QImage picture = snapshot(*histogram);
    const QColor base = histogram->palette().color(QPalette::Base);
    const int bottom = picture.height() - 2;
    QCOMPARE(picture.pixelColor(1, bottom), base); // level 0
    const int x = static_cast<int>(200.5 / 255.0 * picture.width());
    QCOMPARE(picture.pixelColor(x, bottom), histogram->palette().color(QPalette::HighlightedText));
}

ZORBIN_TEST_MAIN(tst_echogramPanel, QApplication)
#include "tst_echogramPanel.moc"
