#include "gestures.h"
#include "levelHistogram.h"
#include "palette.h"
#include "pictures.h"
#include "pingModel.h"
#include "pingPlayer.h"
#include "pingRenderer.h"
#include "pingView.h"
#include "sonarPanel.h"
#include "testCase.h"
#include "testWindow.h"
#include "valueRuler.h"

#include <QComboBox>
#include <QLabel>
#include <QSignalSpy>
#include <QSlider>
#include <QToolButton>
#include <cmath>

using namespace survey_console;
using zorbin_qt_gui::palette_t;

namespace {

const double START = 1378847588.0; // 2013-09-10 21:13:08 UTC
const double PERIOD = 0.5;         // s between pings
const int COUNT = 100;

// Pings of 8 samples over 40 m to either side; each is as loud as its number says, in dB below 0.
sonarRecord_t testRecord()
{
    sonarRecord_t record;
    record.extent = {-40.0, 40.0, 8};
    for (int i = 0; i < COUNT; ++i)
        record.pings.push_back({START + i * PERIOD, std::vector<float>(8, static_cast<float>(-i))});
    return record;
}

// Level by level of grey.
void setGreys(pingRenderer_t* renderer)
{
    std::vector<unsigned int> table;
    for (int level = 0; level < 256; ++level)
        table.push_back(qRgb(level, level, level));
    palette_t palette;
    palette.setColorTable(table, palette_t::DEPTH_24);
    renderer->setPalette(palette);
}

struct panelOnScreen_t : testWindow_t
{
    const sonarRecord_t record = testRecord();
    sonarPanel_t panel{"test.pgm", record};

    panelOnScreen_t()
    {
        setWindow(&panel);
        panel.resize(1000, 700);
    }
    pingView_t* view() { return panel.view(); }
};

} // namespace

class tst_sonarPanel : public testCase_t
{
    Q_OBJECT
private Q_SLOTS:
    void modelKeepsTheNewestPings();
    void modelStartsAnew();
    void playsAtThePaceOfTheRecord();
    void startsOverAtTheEnd();
    void goesBack();
    void goesFarAhead();
    void goesAheadOneByOneOrAtOnce_data();
    void goesAheadOneByOneOrAtOnce();
    void drawsSamplesAcrossTheTrack();
    void drawsTheMeanOfManySamples();
    void leavesPixelsBeyondTheSwath();
    void colorsFollowTheLevels();
    void followsTheNewestPing();
    void standsStillWhenScrolledBack();
    void standsStillWhenTheReplayJumps_data();
    void standsStillWhenTheReplayJumps();
    void goesBackToTheNewest();
    void letsGoOfPingsThatAreDropped();
    void rulersFollowTheView();
    void dragOnTheRulerLooksCloser();
    void neverLooksBeyondTheSwath();
    void turns();
    void readsOutThePointer();
    void dragOnTheHistogramChoosesTheLevels();
    void smallDragChoosesNothing();
    void countsWhatIsInView();
};

void tst_sonarPanel::modelKeepsTheNewestPings()
{
    pingModel_t model;
    QSignalSpy dropped(&model, &pingModel_t::itemDropped);
    for (int i = 0; i < pingModel_t::CAPACITY + 5; ++i)
        model.addPing({static_cast<double>(i), {}});
    QCOMPARE(model.itemCount(), unsigned(pingModel_t::CAPACITY));
    QCOMPARE(dropped.count(), 5);
    QCOMPARE(model.begin(), 5);
    QCOMPARE(model.ping(5).time, 5.0);
    QCOMPARE(model.ping(model.end() - 1).time, pingModel_t::CAPACITY + 4.0);
    QVERIFY(!model.holds(4));
    QVERIFY(model.holds(5));
    QVERIFY(!model.holds(model.end()));
}

void tst_sonarPanel::modelStartsAnew()
{
    pingModel_t model;
    QVERIFY(!model.dropItem());
    model.addPing({1.0, {}});
    QSignalSpy reset(&model, &pingModel_t::modelReset);
    model.replace(40, {{2.0, {}}, {3.0, {}}});
    QCOMPARE(reset.count(), 1);
    QCOMPARE(model.itemCount(), 2U);
    model.addPing({4.0, {}});
    QCOMPARE(model.begin(), 40);
    QCOMPARE(model.ping(40).time, 2.0);
    QCOMPARE(model.ping(42).time, 4.0);
    model.replace(7, {});
    QVERIFY(!model.dropItem());
    QCOMPARE(model.end(), 7);
}

void tst_sonarPanel::playsAtThePaceOfTheRecord()
{
    const sonarRecord_t record = testRecord();
    pingModel_t model;
    pingPlayer_t player(record, &model);
    player.goTo(0.0);
    QCOMPARE(model.end(), 1);
    player.goTo(0.4);
    QCOMPARE(model.end(), 1);
    player.goTo(0.5);
    QCOMPARE(model.end(), 2);
    player.goTo(10.2);
    QCOMPARE(model.end(), 21);
    QCOMPARE(model.ping(20).time, START + 10.0);
}

void tst_sonarPanel::startsOverAtTheEnd()
{
    const sonarRecord_t record = testRecord();
    pingModel_t model;
    pingPlayer_t player(record, &model);
    // The last ping comes at 49.5 s, the first one again 49.5 s / 100 later.
    player.goTo(49.9);
    QCOMPARE(model.end(), 100);
    player.goTo(50.0);
    QCOMPARE(model.end(), 101);
    QCOMPARE(model.ping(100).time, START);
}

void tst_sonarPanel::goesBack()
{
    const sonarRecord_t record = testRecord();
    pingModel_t model;
    pingPlayer_t player(record, &model);
    player.goTo(40.0);
    QSignalSpy reset(&model, &pingModel_t::modelReset);
    player.goTo(20.0);
    QCOMPARE(reset.count(), 1);
    QCOMPARE(model.begin(), 0);
    QCOMPARE(model.end(), 41);
    QCOMPARE(model.ping(40).time, START + 20.0);
}

void tst_sonarPanel::goesFarAhead()
{
    const sonarRecord_t record = testRecord();
    pingModel_t model;
    pingPlayer_t player(record, &model);
    player.goTo(0.0);
    player.goTo(49.995 * 1000.0 + 0.1); // a thousand times
    QCOMPARE(model.end(), 100001);
    QCOMPARE(model.itemCount(), unsigned(pingModel_t::CAPACITY));
    QCOMPARE(model.ping(100000).time, START);
}

void tst_sonarPanel::goesAheadOneByOneOrAtOnce_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<int>("added");
    QTest::addColumn<int>("resets");
    QTest::newRow("nothing new") << 0.4 << 0 << 0;
    QTest::newRow("one by one") << 50.0 << 100 << 0;
    QTest::newRow("at once") << 50.5 << 0 << 1;
}

// Either way the model holds the same.
void tst_sonarPanel::goesAheadOneByOneOrAtOnce()
{
    QFETCH(double, seconds);
    QFETCH(int, added);
    QFETCH(int, resets);
    const sonarRecord_t record = testRecord();
    pingModel_t model;
    pingPlayer_t player(record, &model);
    player.goTo(0.0);
    QSignalSpy add(&model, &pingModel_t::itemAdded);
    QSignalSpy reset(&model, &pingModel_t::modelReset);
    player.goTo(seconds);
    QCOMPARE(add.count(), added);
    QCOMPARE(reset.count(), resets);
    pingModel_t slow;
    pingPlayer_t slowPlayer(record, &slow);
    for (double time = 0.0; time <= seconds; time += 0.1)
        slowPlayer.goTo(time);
    slowPlayer.goTo(seconds);
    QCOMPARE(model.begin(), slow.begin());
    QCOMPARE(model.end(), slow.end());
    for (int index = model.begin(); index < model.end(); ++index)
        QCOMPARE(model.ping(index).time, slow.ping(index).time);
}

namespace {

// The line that a renderer draws of a ping from -40 m to 40 m, on red.
std::vector<QRgb> lineOf(const std::vector<float>& levels, double beg, double end,
                         unsigned numPixels)
{
    pingModel_t model;
    model.addPing({START, levels});
    pingRenderer_t renderer({-40.0, 40.0, static_cast<int>(levels.size())});
    setGreys(&renderer);
    renderer.setLevels(-256.0F, 0.0F); // a level's grey is 256 more
    std::vector<QRgb> pixels(numPixels, qRgb(255, 0, 0));
    const zorbin_qt_gui::baseWaterfallRenderer_t::context_t context = {numPixels, beg, end,
                                                                       numPixels / (end - beg)};
    renderer.render(&context, pixels.data(), &model, 0);
    return pixels;
}

} // namespace

void tst_sonarPanel::drawsSamplesAcrossTheTrack()
{
    const std::vector<QRgb> line = lineOf({-10.0F, -20.0F, -30.0F, -40.0F}, -40.0, 40.0, 8);
    const std::vector<int> wanted = {246, 246, 236, 236, 226, 226, 216, 216};
    for (std::size_t i = 0; i < wanted.size(); ++i)
        QCOMPARE(qGreen(line[i]), wanted[i]);
}

void tst_sonarPanel::drawsTheMeanOfManySamples()
{
    const std::vector<QRgb> line = lineOf({-10.0F, -20.0F, -30.0F, -40.0F}, -40.0, 40.0, 2);
    QCOMPARE(qGreen(line[0]), 241);
    QCOMPARE(qGreen(line[1]), 221);
}

void tst_sonarPanel::leavesPixelsBeyondTheSwath()
{
    const std::vector<QRgb> line = lineOf({-10.0F, -20.0F}, -80.0, 80.0, 4);
    QCOMPARE(line[0], qRgb(255, 0, 0));
    QCOMPARE(qGreen(line[1]), 246);
    QCOMPARE(qGreen(line[2]), 236);
    QCOMPARE(line[3], qRgb(255, 0, 0));
    const QRgb background = qRgb(255, 0, 0);
    QCOMPARE(lineOf({-10.0F}, 50.0, 60.0, 2), std::vector<QRgb>(2, background));
    QCOMPARE(lineOf({-10.0F}, 0.0, 0.0, 2), std::vector<QRgb>(2, background)); // infinite scale
}

void tst_sonarPanel::colorsFollowTheLevels()
{
    pingRenderer_t renderer({-40.0, 40.0, 3});
    QSignalSpy changed(&renderer, &pingRenderer_t::rendererChanged);
    setGreys(&renderer);
    renderer.setLevels(-20.0F, -10.0F);
    QCOMPARE(changed.count(), 2);
    pingModel_t model;
    model.addPing({START, {-25.0F, -15.0F, -5.0F}});
    std::vector<QRgb> pixels(3);
    const zorbin_qt_gui::baseWaterfallRenderer_t::context_t context = {3, -40.0, 40.0, 3.0 / 80.0};
    renderer.render(&context, pixels.data(), &model, 0);
    QCOMPARE(qGreen(pixels[0]), 0);
    QCOMPARE(qGreen(pixels[1]), 128);
    QCOMPARE(qGreen(pixels[2]), 255);
}

void tst_sonarPanel::followsTheNewestPing()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    console.panel.showTime(10.0);
    QCOMPARE(console.view()->position(), 20);
    console.panel.showTime(20.0);
    QCOMPARE(console.view()->position(), 40);
    auto* slider = console.find<QSlider>("scrollSlider");
    QCOMPARE(slider->minimum(), 0);
    QCOMPARE(slider->maximum(), 40);
    QCOMPARE(slider->value(), 40);
    QVERIFY(!console.find<QToolButton>("newestButton")->isEnabled());
}

void tst_sonarPanel::standsStillWhenScrolledBack()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    console.panel.showTime(20.0);
    auto* slider = console.find<QSlider>("scrollSlider");
    slider->setValue(30);
    QCOMPARE(console.view()->position(), 30);
    console.panel.showTime(25.0);
    QCOMPARE(console.view()->position(), 30);
    QCOMPARE(slider->value(), 30);
    QCOMPARE(slider->maximum(), 50);
    QVERIFY(console.find<QToolButton>("newestButton")->isEnabled());
}

void tst_sonarPanel::standsStillWhenTheReplayJumps_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<int>("position");
    QTest::newRow("ahead") << 500.0 << 30;
    QTest::newRow("back") << 17.0 << 30;
    QTest::newRow("beyond where it is scrolled to") << 10.0 << 20;
    QTest::newRow("beyond what is held") << 2000.0 << 4000;
}

void tst_sonarPanel::standsStillWhenTheReplayJumps()
{
    QFETCH(double, seconds);
    QFETCH(int, position);
    panelOnScreen_t console;
    QVERIFY(console.show());
    console.panel.showTime(20.0);
    console.find<QSlider>("scrollSlider")->setValue(30);
    console.panel.showTime(seconds);
    QCOMPARE(console.view()->position(), position);
    QCOMPARE(console.find<QSlider>("scrollSlider")->value(), position);
}

void tst_sonarPanel::goesBackToTheNewest()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    console.panel.showTime(20.0);
    console.find<QSlider>("scrollSlider")->setValue(30);
    QTest::mouseClick(console.find<QToolButton>("newestButton"), Qt::LeftButton);
    QCOMPARE(console.view()->position(), 40);
    console.panel.showTime(21.0);
    QCOMPARE(console.view()->position(), 42); // follows again
}

void tst_sonarPanel::letsGoOfPingsThatAreDropped()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    console.panel.showTime(20.0);
    console.find<QSlider>("scrollSlider")->setValue(10);
    for (double seconds = 30.0; seconds < 1100.0; seconds += 10.0)
        console.panel.showTime(seconds);
    QVERIFY(console.panel.model()->begin() > 10);
    QCOMPARE(console.view()->position(), console.panel.model()->begin());
    QCOMPARE(console.find<QSlider>("scrollSlider")->value(), console.panel.model()->begin());
}

void tst_sonarPanel::rulersFollowTheView()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    auto* ranges = console.find<valueRuler_t>("rangeRuler");
    auto* pings = console.find<valueRuler_t>("pingRuler");
    QCOMPARE(ranges->start(), -40.0);
    QCOMPARE(ranges->end(), 40.0);
    QCOMPARE(ranges->width(), console.view()->width());
    QCOMPARE(ranges->mapTo(&console.panel, QPoint()).x(),
             console.view()->mapTo(&console.panel, QPoint()).x());
    console.view()->bounds(-10.0, 20.0);
    QCOMPARE(ranges->start(), -10.0);
    QCOMPARE(ranges->end(), 20.0);
    console.panel.showTime(20.0);
    QCOMPARE(pings->height(), console.view()->height());
    QCOMPARE(pings->end(), 41.0);
    QCOMPARE(pings->start(), 41.0 - console.view()->height());
    QVERIFY(console.resize(QSize(900, 600)));
    QCOMPARE(pings->start(), 41.0 - console.view()->height());
}

void tst_sonarPanel::dragOnTheRulerLooksCloser()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    auto* ruler = console.find<valueRuler_t>("rangeRuler");
    const double beg = ruler->pixelToValue(100);
    const double end = ruler->pixelToValue(300);
    drag(ruler, QPoint(100, 5), QPoint(300, 5));
    QCOMPARE(console.view()->begBound(), beg);
    QCOMPARE(console.view()->endBound(), end);
    auto* whole = console.find<QToolButton>("wholeButton");
    QVERIFY(whole->isEnabled());
    QTest::mouseClick(whole, Qt::LeftButton);
    QCOMPARE(console.view()->begBound(), -40.0);
    QCOMPARE(console.view()->endBound(), 40.0);
    QCOMPARE(ruler->end(), 40.0);
    QVERIFY(!whole->isEnabled());
}

void tst_sonarPanel::neverLooksBeyondTheSwath()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    auto* ruler = console.find<valueRuler_t>("rangeRuler");
    Q_EMIT ruler->scaleChosen(-80.0, 80.0);
    QCOMPARE(console.view()->begBound(), -40.0);
    QCOMPARE(console.view()->endBound(), 40.0);
    Q_EMIT ruler->scaleChosen(50.0, 60.0);
    QCOMPARE(console.view()->begBound(), 39.9);
    QCOMPARE(console.view()->endBound(), 40.0);
    QCOMPARE(ruler->start(), 39.9);
}

void tst_sonarPanel::turns()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    console.panel.showTime(20.0);
    auto* ranges = console.find<valueRuler_t>("rangeRuler");
    auto* pings = console.find<valueRuler_t>("pingRuler");
    auto* turn = console.find<QToolButton>("orientationButton");
    QTest::mouseClick(turn, Qt::LeftButton);
    QCOMPARE(console.view()->orientation(), Qt::Horizontal);
    QTRY_COMPARE(ranges->height(), console.view()->height());
    QTRY_COMPARE(pings->width(), console.view()->width());
    QTRY_COMPARE(pings->start(), 41.0 - console.view()->width());
    QCOMPARE(pings->end(), 41.0);
    QCOMPARE(ranges->axisLocation(), zorbin_qt_gui::ruler_t::LEFT);
    QCOMPARE(ranges->start(), 40.0); // port is at the top, where the view begins
    QCOMPARE(ranges->end(), -40.0);
    QCOMPARE(ranges->pixelToValue(0), -40.0);
    Q_EMIT ranges->scaleChosen(20.0, -10.0);
    QCOMPARE(console.view()->begBound(), -10.0);
    QCOMPARE(console.view()->endBound(), 20.0);
    QTest::mouseClick(turn, Qt::LeftButton);
    QCOMPARE(console.view()->orientation(), Qt::Vertical);
    QTRY_COMPARE(ranges->width(), console.view()->width());
    QCOMPARE(ranges->start(), -10.0);
}

void tst_sonarPanel::readsOutThePointer()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    console.panel.showTime(20.0);
    auto* label = console.find<QLabel>("sonarPointerLabel");
    console.view()->bounds(-40.0, 40.0);
    const int x = console.view()->width() / 4;
    QTest::mouseMove(console.view(), QPoint(x, 10));
    const double range = 40.0 - 80.0 * x / console.view()->width();
    const QString wanted =
        QStringLiteral("ping 30   21:13:23.00 UTC   %1 m port   -30 dB").arg(range, 0, 'f', 1);
    QTRY_COMPARE(label->text(), wanted);
    QCOMPARE(console.find<valueRuler_t>("pingRuler")->indicator(), 30.5);
    QTest::mouseMove(console.view(), QPoint(x, 60)); // older than the first
    QTRY_COMPARE(label->text(), QString());
}

void tst_sonarPanel::dragOnTheHistogramChoosesTheLevels()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    console.panel.showTime(20.0);
    auto* histogram = console.find<levelHistogram_t>("histogram");
    QSignalSpy chosen(histogram, &levelHistogram_t::rangeChosen);
    QSignalSpy drawn(console.view()->renderer(), &pingRenderer_t::rendererChanged);
    const int width = histogram->width();
    drag(histogram, QPoint(width / 2, 10), QPoint(width / 4, 10));
    QCOMPARE(chosen.count(), 1);
    QCOMPARE(drawn.count(), 1);
    QCOMPARE(histogram->chosenMin(), -70.0F + 70.0F * float(width / 4) / float(width));
    QCOMPARE(histogram->chosenMax(), -70.0F + 70.0F * float(width / 2) / float(width));
    QVERIFY(console.find<QLabel>("levelLabel")->text().startsWith("-5"));
}

void tst_sonarPanel::smallDragChoosesNothing()
{
    levelHistogram_t histogram;
    histogram.setScale(-70.0F, 0.0F);
    histogram.resize(700, 50);
    histogram.chooseRange(-50.0F, -10.0F);
    QSignalSpy chosen(&histogram, &levelHistogram_t::rangeChosen);
    QTest::mousePress(&histogram, Qt::LeftButton, Qt::KeyboardModifiers(), QPoint(100, 10));
    dragTo(&histogram, QPoint(105, 10));
    QCOMPARE(chosen.count(), 0);
    QCOMPARE(histogram.chosenMin(), -50.0F);
}

// All pings of the record are equally loud at their samples, so each in view has its bar.
void tst_sonarPanel::countsWhatIsInView()
{
    panelOnScreen_t console;
    QVERIFY(console.show());
    console.panel.showTime(20.0); // levels 0 to -40 dB
    auto* histogram = console.find<levelHistogram_t>("histogram");
    const QImage picture = snapshot(*histogram);
    const QColor highlight = histogram->palette().color(QPalette::Highlight);
    const QColor base = histogram->palette().color(QPalette::Base);
    const auto hasBarAt = [&](float level) {
        const int x = static_cast<int>((level + 70.25F) / 70.0F * float(picture.width()));
        const QColor color = picture.pixelColor(x, picture.height() - 2);
        return color != highlight && color != base;
    };
    QVERIFY(hasBarAt(-1.0F));
    QVERIFY(hasBarAt(-39.0F));
    QVERIFY(!hasBarAt(-45.0F)); // not come yet
}

ZORBIN_TEST_MAIN(tst_sonarPanel, QApplication)
#include "tst_sonarPanel.moc"
