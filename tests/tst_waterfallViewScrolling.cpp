#include "childProcess.h"
#include "pictures.h"
#include "plainWaterfall.h"
#include "randomNumbers.h"
#include "waterfallStage.h"
#include "waterfallView.h"

#include <QPainter>
#include <QPointer>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <utility>

using namespace waterfall_tests;
using namespace zorbin_qt_gui;

static const int least = std::numeric_limits<int>::min();
static const int greatest = std::numeric_limits<int>::max();

/// How the view of a waterfall scrolls as items arrive, and that it shows what a plain one does.
class tst_waterfallViewScrolling : public waterfallTestCase_t
{
    Q_OBJECT

private Q_SLOTS:
    // Moving.
    void staysSilentAtTheSamePosition();
    void rendersWhatComesIntoView_data();
    void rendersWhatComesIntoView();
    void announcesPositionThenPointedItem();
    void scrollsOverItemsThatAreNotThere();
    void movesToTheEndsOfAnInt();

    // Following.
    void scrollsByANewItem();
    void staysWhenScrolledBack();
    void rendersAVisibleNewItemInPlace();
    void blanksADroppedItem();
    void ignoresADroppedItemOutOfSight();
    void takesSlotsWithoutAModel();
    void followsToTheGreatestIndex();
    void takesAModelAtTheLeastIndex();

    // Damage.
    void repaintsOnlyTheUncoveredStrip_data();
    void repaintsOnlyTheUncoveredStrip();
    void repaintsOnlyAChangedLine_data();
    void repaintsOnlyAChangedLine();
    void repaintsEverythingAfterAJump();
    void repaintsEverythingForOtherLines_data();
    void repaintsEverythingForOtherLines();

    // Anything.
    void survivesARendererThatChangesIt_data();
    void survivesARendererThatChangesIt();
    void fillsWhatNoImageCanHold();
    void paintsOnlyTheLinesThatItHas();
    void survivesSlotsThatDeleteIt_data();
    void survivesSlotsThatDeleteIt();
    void showsAndSaysWhatThePlainOneDoes_data();
    void showsAndSaysWhatThePlainOneDoes();
    void staysExactOverALongRun();
    void staysExactOnDenseDisplays();
};

void tst_waterfallViewScrolling::staysSilentAtTheSamePosition()
{
    waterfall_t waterfall(QSize(60, 60), 100);
    waterfall.view.position(waterfall.view.position());
    QCOMPARE(waterfall.log->take(), QStringList());
    QCOMPARE(waterfall.renderer.takeCalls(), QStringList());
}

void tst_waterfallViewScrolling::rendersWhatComesIntoView_data()
{
    QTest::addColumn<int>("distance");
    QTest::addColumn<QList<int>>("rendered");

    // 10 lines of 1000 items; the newest shown is 500.
    QTest::newRow("one on") << 1 << downwards(501, 501);
    QTest::newRow("three on") << 3 << downwards(503, 501);
    QTest::newRow("nine on") << 9 << downwards(509, 501);
    QTest::newRow("ten on, a jump") << 10 << downwards(510, 501);
    QTest::newRow("eleven on, a jump") << 11 << downwards(511, 502);
    QTest::newRow("one back") << -1 << downwards(490, 490);
    QTest::newRow("three back") << -3 << downwards(490, 488);
    QTest::newRow("nine back") << -9 << downwards(490, 482);
    QTest::newRow("ten back, a jump") << -10 << downwards(490, 481);
    QTest::newRow("far on") << 499 << downwards(999, 990);
    QTest::newRow("beyond the end") << 505 << downwards(999, 996);
    QTest::newRow("beyond the begin") << -497 << downwards(3, 0);
    QTest::newRow("out of everything") << 100000 << QList<int>();
}

void tst_waterfallViewScrolling::rendersWhatComesIntoView()
{
    QFETCH(int, distance);
    for (const Qt::Orientation orientation : {Qt::Vertical, Qt::Horizontal}) {
        const QSize size = orientation == Qt::Vertical ? QSize(60, 10) : QSize(10, 60);
        waterfall_t waterfall(size, 1000, orientation);
        QVERIFY(waterfall.show());
        waterfall.view.position(500);
        shown(waterfall.view);
        waterfall.renderer.takeCalls();
        waterfall.view.position(500 + distance);
        QTEST(waterfall.renderer.takeIndices(), "rendered");
        QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
    }
}

void tst_waterfallViewScrolling::announcesPositionThenPointedItem()
{
    waterfall_t waterfall(QSize(60, 60), 100);
    waterfall.view.position(96);
    waterfall.view.position(1000);
    QCOMPARE(waterfall.log->take(), QStringList({positionSignal(96), nothingPointedAt,
                                                 positionSignal(1000), nothingPointedAt}));
    QVERIFY(waterfall.log->isConsistent());
}

void tst_waterfallViewScrolling::scrollsOverItemsThatAreNotThere()
{
    waterfall_t waterfall(QSize(60, 60), 30);
    QVERIFY(waterfall.show());
    for (const int position : {40, 10, -20, -29, -31, -90, -60, 5, 29}) {
        waterfall.view.position(position);
        QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
    }
}

void tst_waterfallViewScrolling::movesToTheEndsOfAnInt()
{
    waterfall_t waterfall(QSize(60, 60));
    waterfall.model.reset(greatest - 10, 10);
    waterfall.view.position(greatest);
    QCOMPARE(firstDifference(snapshot(waterfall.view), waterfall.wanted()), QString());
    waterfall.view.position(greatest - 5);
    QCOMPARE(firstDifference(snapshot(waterfall.view), waterfall.wanted()), QString());
    waterfall.view.position(least);
    waterfall.view.position(least + 3);
    waterfall.model.reset(least, 3);
    waterfall.view.regenAll();
    QCOMPARE(firstDifference(snapshot(waterfall.view), waterfall.wanted()), QString());
    waterfall.view.position(greatest);
    QCOMPARE(waterfall.view.position(), greatest);
    QVERIFY(waterfall.log->isConsistent());
}

void tst_waterfallViewScrolling::scrollsByANewItem()
{
    waterfall_t waterfall(QSize(60, 60), 100);
    QVERIFY(waterfall.show());
    waterfall.model.add(1);
    QCOMPARE(waterfall.view.position(), 100);
    QCOMPARE(waterfall.renderer.takeCalls(), QStringList{"100: 60 pixels from 0 to 1, scale 60"});
    QCOMPARE(waterfall.log->take(), QStringList({positionSignal(100), nothingPointedAt}));
    QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
}

void tst_waterfallViewScrolling::staysWhenScrolledBack()
{
    waterfall_t waterfall(QSize(60, 60), 100);
    waterfall.view.position(98);
    QVERIFY(waterfall.show());
    waterfall.model.add(70);
    QCOMPARE(waterfall.view.position(), 98);
    QCOMPARE(waterfall.renderer.takeCalls(), QStringList());
    QCOMPARE(waterfall.log->take(), QStringList());
    QCOMPARE(waterfall.paints->take(), QRegion());
}

// The view is ahead of the model: the items arrive in lines that it shows already.
void tst_waterfallViewScrolling::rendersAVisibleNewItemInPlace()
{
    waterfall_t waterfall(QSize(60, 60), 100);
    waterfall.view.position(120);
    QVERIFY(waterfall.show());
    waterfall.model.add(3);
    QCOMPARE(waterfall.view.position(), 120);
    QCOMPARE(waterfall.renderer.takeIndices(), QList<int>({100, 101, 102}));
    QCOMPARE(waterfall.log->take(), QStringList());
    QCOMPARE(waterfall.paints->take(), QRegion(0, 18, 60, 3));
    QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
}

void tst_waterfallViewScrolling::blanksADroppedItem()
{
    waterfall_t waterfall(QSize(60, 60), 30);
    QVERIFY(waterfall.show());
    waterfall.model.drop(2);
    QCOMPARE(waterfall.renderer.takeCalls(), QStringList());
    QCOMPARE(waterfall.log->take(), QStringList());
    const QImage picture = shown(waterfall.view);
    QCOMPARE(firstDifference(picture, waterfall.wanted()), QString());
    QCOMPARE(picture.pixel(5, 29), blank(waterfall.view).pixel(0, 0));
}

void tst_waterfallViewScrolling::ignoresADroppedItemOutOfSight()
{
    waterfall_t waterfall(QSize(60, 60), 61);
    QVERIFY(waterfall.show());
    waterfall.model.drop(1);
    QCOMPARE(waterfall.paints->take(), QRegion());
    waterfall.model.drop(1);
    QCOMPARE(waterfall.paints->take(), QRegion(0, 59, 60, 1));
}

void tst_waterfallViewScrolling::takesSlotsWithoutAModel()
{
    baseWaterfallView_t view;
    viewLog_t log(view);
    view.addItem();
    view.dropItem();
    view.regenAll();
    QCOMPARE(log.take(), QStringList());
    view.position(7);
    QCOMPARE(view.position(), 7);
}

void tst_waterfallViewScrolling::followsToTheGreatestIndex()
{
    waterfall_t waterfall(QSize(60, 60));
    waterfall.model.reset(greatest - 5, 2);
    waterfall.view._model(&waterfall.model);
    waterfall.model.add(10); // only three more can be counted
    QCOMPARE(waterfall.view.position(), greatest - 1);
    QCOMPARE(firstDifference(snapshot(waterfall.view), waterfall.wanted()), QString());
}

void tst_waterfallViewScrolling::takesAModelAtTheLeastIndex()
{
    waterfall_t waterfall(QSize(60, 60));
    waterfall.model.reset(least, 0);
    waterfall.view._model(&waterfall.model);
    QCOMPARE(waterfall.view.position(), least); // the item before that has no index
    waterfall.view.addItem();
    waterfall.view.dropItem();
    waterfall.model.add(2);
    QCOMPARE(waterfall.view.position(), least + 1);
    waterfall.model.drop(1);
    QCOMPARE(firstDifference(snapshot(waterfall.view), waterfall.wanted()), QString());
}

void tst_waterfallViewScrolling::repaintsOnlyTheUncoveredStrip_data()
{
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<int>("distance");
    QTest::addColumn<QRect>("strip");

    QTest::newRow("rows, an item") << Qt::Vertical << 1 << QRect(0, 0, 100, 1);
    QTest::newRow("rows, on") << Qt::Vertical << 7 << QRect(0, 0, 100, 7);
    QTest::newRow("rows, back") << Qt::Vertical << -7 << QRect(0, 53, 100, 7);
    QTest::newRow("rows, nearly all") << Qt::Vertical << 59 << QRect(0, 0, 100, 59);
    QTest::newRow("columns, an item") << Qt::Horizontal << 1 << QRect(99, 0, 1, 60);
    QTest::newRow("columns, on") << Qt::Horizontal << 7 << QRect(93, 0, 7, 60);
    QTest::newRow("columns, back") << Qt::Horizontal << -7 << QRect(0, 0, 7, 60);
    QTest::newRow("columns, back by an item") << Qt::Horizontal << -1 << QRect(0, 0, 1, 60);
    QTest::newRow("columns, nearly all") << Qt::Horizontal << 99 << QRect(1, 0, 99, 60);
}

void tst_waterfallViewScrolling::repaintsOnlyTheUncoveredStrip()
{
    QFETCH(Qt::Orientation, orientation);
    QFETCH(int, distance);
    QFETCH(QRect, strip);
    waterfall_t waterfall(QSize(100, 60), 1000, orientation);
    QVERIFY(waterfall.show());
    waterfall.view.position(500);
    waterfall.paints->take();
    waterfall.view.position(500 + distance);
    QCOMPARE(waterfall.paints->take(), QRegion(strip));
    QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
}

void tst_waterfallViewScrolling::repaintsOnlyAChangedLine_data()
{
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<QRect>("line");

    QTest::newRow("row") << Qt::Vertical << QRect(0, 29, 100, 1);
    QTest::newRow("column") << Qt::Horizontal << QRect(70, 0, 1, 60);
}

void tst_waterfallViewScrolling::repaintsOnlyAChangedLine()
{
    QFETCH(Qt::Orientation, orientation);
    QFETCH(QRect, line);
    waterfall_t waterfall(QSize(100, 60), 30, orientation);
    QVERIFY(waterfall.show());
    waterfall.model.drop(1);
    QCOMPARE(waterfall.paints->take(), QRegion(line));
    QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
}

void tst_waterfallViewScrolling::repaintsEverythingAfterAJump()
{
    waterfall_t waterfall(QSize(100, 60), 1000);
    QVERIFY(waterfall.show());
    waterfall.view.position(999 - 60);
    QCOMPARE(waterfall.paints->take(), QRegion(0, 0, 100, 60));
    QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
}

void tst_waterfallViewScrolling::repaintsEverythingForOtherLines_data()
{
    QTest::addColumn<int>("operation");
    const char* const names[] = {"model", "renderer", "bounds", "regenAll"};
    for (int i = 0; i < 4; ++i)
        QTest::newRow(names[i]) << i;
}

void tst_waterfallViewScrolling::repaintsEverythingForOtherLines()
{
    QFETCH(int, operation);
    waterfall_t waterfall(QSize(100, 60), 1000);
    QVERIFY(waterfall.show());
    waterfall.model.add(17); // the ring is turned by now
    shown(waterfall.view);
    waterfall.paints->take();
    const std::function<void()> operations[] = {
        [&] { waterfall.view._model(&waterfall.model); },
        [&] { waterfall.view._renderer(&waterfall.renderer); },
        [&] { waterfall.view.bounds(2.0, 5.0); },
        [&] { waterfall.view.regenAll(); },
    };
    operations[operation]();
    QCOMPARE(waterfall.paints->take(), QRegion(0, 0, 100, 60));
    QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
}

namespace {

// Does something else when it is first asked for a line.
class meddlingRenderer_t : public patternRenderer_t
{
public:
    void render(const context_t* context, QRgb* pixels, baseWaterfallModel_t* model,
                unsigned int index) override
    {
        if (meddle)
            std::exchange(meddle, nullptr)();
        patternRenderer_t::render(context, pixels, model, index);
    }

    std::function<void()> meddle;
};

// Keeps its lines whatever its size.
class stubbornView_t : public view_t
{
protected:
    void resizeEvent(QResizeEvent* /*event*/) override {}
};

using viewUse_t = std::function<void(view_t&)>;

// What a view paints on red, the background left out.
QImage paintedOnRed(QWidget& view, const QRect& part)
{
    QImage picture(part.size(), QImage::Format_RGB32);
    picture.fill(Qt::red);
    view.render(&picture, QPoint(), part, QWidget::RenderFlags());
    return picture;
}

} // namespace
Q_DECLARE_METATYPE(viewUse_t)

void tst_waterfallViewScrolling::survivesARendererThatChangesIt_data()
{
    QTest::addColumn<viewUse_t>("meddle");
    const auto row = [](const char* name, const viewUse_t& use) { QTest::newRow(name) << use; };
    row("turned", [](view_t& view) { view.orientation(Qt::Horizontal); });
    row("other bounds", [](view_t& view) { view.bounds(0.0, 3.0); });
    row("on by one", [](view_t& view) { view.position(100); });
    row("back by one", [](view_t& view) { view.position(98); });
    row("back by more than fit", [](view_t& view) { view.position(50); });
}

void tst_waterfallViewScrolling::survivesARendererThatChangesIt()
{
    QFETCH(viewUse_t, meddle);
    waterfall_t waterfall(QSize(60, 40), 100);
    QVERIFY(waterfall.show()); // a hidden one renders everything anew for a picture
    view_t& view = waterfall.view;
    meddlingRenderer_t renderer;
    view._renderer(&renderer);
    renderer.meddle = [&] { meddle(view); };
    view.bounds(0.0, 2.0);
    QVERIFY(!renderer.meddle);
    QCOMPARE(firstDifference(snapshot(view), waterfall.wanted()), QString());
}

static int paintWhatNoImageCanHold()
{
    waterfall_t waterfall(QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX), 100);
    QImage wanted(20, 10, QImage::Format_RGB32);
    wanted.fill(waterfall.view.palette().color(QPalette::Window));
    const bool isFilled = paintedOnRed(waterfall.view, QRect(0, 0, 20, 10)) == wanted;
    const bool isStill = waterfall.renderer.takeCalls().isEmpty();
    return isFilled && isStill && waterfall.view.position() == 99 ? 0 : 1;
}

void tst_waterfallViewScrolling::fillsWhatNoImageCanHold()
{
    // Else the sanitizer would end the program for asking that much.
    const QByteArray options = qgetenv("ASAN_OPTIONS") + ":allocator_may_return_null=1";
    const childOutcome_t child =
        runChild("what no image can hold", {"ASAN_OPTIONS=" + QString::fromLatin1(options)});
    QVERIFY(!child.crashed);
    QCOMPARE(child.exitCode, 0);
}

void tst_waterfallViewScrolling::paintsOnlyTheLinesThatItHas()
{
    stubbornView_t view;
    const QSize lines = view.size();
    view.resize(lines + QSize(100, 100));
    QImage red(10, 10, QImage::Format_RGB32);
    red.fill(Qt::red);
    QImage corner = red;
    QPainter(&corner).fillRect(0, 0, 4, 3, view.palette().color(QPalette::Window));
    for (const Qt::Orientation orientation : {Qt::Vertical, Qt::Horizontal}) {
        const QRect outside(lines.width() + 5, lines.height() + 5, 10, 10);
        QCOMPARE(firstDifference(paintedOnRed(view, outside), red), QString());
        const QRect across(lines.width() - 4, lines.height() - 3, 10, 10);
        QCOMPARE(firstDifference(paintedOnRed(view, across), corner), QString());
        view.resize(lines);
        view.orientation(orientation == Qt::Vertical ? Qt::Horizontal : Qt::Vertical);
        view.resize(lines + QSize(100, 100));
    }
}

void tst_waterfallViewScrolling::survivesSlotsThatDeleteIt_data()
{
    QTest::addColumn<int>("operation");
    const char* const names[] = {"bounds",      "position", "jump", "added item",
                                 "orientation", "model",    "move", "leave"};
    for (int i = 0; i < 8; ++i)
        QTest::newRow(names[i]) << i;
}

void tst_waterfallViewScrolling::survivesSlotsThatDeleteIt()
{
    QFETCH(int, operation);
    countingModel_t model;
    model.reset(0, 100);
    patternRenderer_t renderer;
    auto* const view = new view_t;
    const QPointer<view_t> guard(view);
    view->_model(&model);
    view->_renderer(&renderer);
    const auto destroy = [view, guard] {
        if (guard != nullptr)
            delete view;
    };
    connect(view, &view_t::boundsChanged, this, destroy);
    connect(view, &view_t::positionChanged, this, destroy);
    connect(view, &view_t::pointedItemChanged, this, destroy);
    const std::function<void()> operations[] = {
        [&] { view->bounds(0.0, 2.0); },
        [&] { view->position(90); },
        [&] { view->position(100000); },
        [&] { model.add(1); },
        [&] { view->orientation(Qt::Horizontal); },
        [&] { view->_model(nullptr); },
        [&] { movePointer(*view, QPoint(3, 3)); },
        [&] { leave(*view); },
    };
    operations[operation]();
    QVERIFY(guard.isNull());
}

void tst_waterfallViewScrolling::showsAndSaysWhatThePlainOneDoes_data()
{
    QTest::addColumn<Qt::Orientation>("orientation");

    QTest::newRow("vertical") << Qt::Vertical;
    QTest::newRow("horizontal") << Qt::Horizontal;
}

void tst_waterfallViewScrolling::showsAndSaysWhatThePlainOneDoes()
{
    QFETCH(Qt::Orientation, orientation);
    random_t random;
    waterfall_t waterfall(QSize(90, 70), 0, orientation);
    patternRenderer_t plainRenderer;
    plainWaterfall_t plain;
    plain.resize(90, 70);
    plain.move(0, 500);
    waterfall.view.move(0, 0);
    plain.setOrientation(orientation);
    plain.setModel(&waterfall.model);
    plain.setRenderer(&plainRenderer);
    plain.show();
    QVERIFY(waterfall.show());
    QVERIFY(QTest::qWaitForWindowExposed(&plain, patienceMs()));
    shown(plain);
    plain.takeSignals();
    plainRenderer.takeCalls();

    for (int step = 0; step < 600; ++step) {
        const int operations = random.integer(1, 3); // some before the next painting
        for (int i = 0; i < operations; ++i) {
            const int choice = random.integer(0, 99);
            if (choice < 40) {
                waterfall.model.add(random.integer(1, 5));
            } else if (choice < 55) {
                waterfall.model.drop(random.integer(1, 5));
            } else if (choice < 75) {
                const int to = plain.position() + random.integer(-100, 100);
                waterfall.view.position(to);
                plain.setPosition(to);
            } else if (choice < 80) {
                const int to = waterfall.model.end() - 1;
                waterfall.view.position(to);
                plain.setPosition(to);
            } else if (choice < 84) {
                const double beg = random.integer(-3, 3);
                const double end = random.integer(-3, 3);
                waterfall.view.bounds(beg, end);
                plain.setBounds(beg, end);
            } else if (choice < 87) {
                const QSize size(random.integer(1, 120), random.integer(1, 100));
                waterfall.view.resize(size);
                plain.resize(size);
            } else if (choice < 89) {
                const Qt::Orientation other = random.chance(0.5) ? Qt::Vertical : Qt::Horizontal;
                waterfall.view.orientation(other);
                plain.setOrientation(other);
            } else if (choice < 91) {
                waterfall.model.reset(random.integer(-300, 300),
                                      static_cast<unsigned>(random.integer(0, 200)));
            } else if (choice < 93) {
                waterfall.renderer.seed = plainRenderer.seed =
                    static_cast<unsigned>(random.integer(0, 1000000));
                Q_EMIT waterfall.renderer.rendererChanged();
                Q_EMIT plainRenderer.rendererChanged();
            } else if (choice < 95) {
                countingModel_t* const model = random.chance(0.3) ? nullptr : &waterfall.model;
                waterfall.view._model(model);
                plain.setModel(model);
            } else if (choice < 99) {
                const QPoint to(random.integer(-5, 100), random.integer(-5, 100));
                movePointer(waterfall.view, to);
                movePointer(plain, to);
            } else {
                leave(waterfall.view);
                leave(plain);
            }
        }
        // Both have their sizes by now, whatever the window system does meanwhile.
        const QImage actual = shown(waterfall.view);
        const QImage wanted = shown(plain);
        QCOMPARE(waterfall.view.position(), plain.position());
        QCOMPARE(waterfall.renderer.takeCalls(), plainRenderer.takeCalls());
        QCOMPARE(waterfall.log->take(), plain.takeSignals());
        QCOMPARE(firstDifference(actual, wanted), QString());
    }
}

// ZORBIN_SOAK_LINES makes it longer.
void tst_waterfallViewScrolling::staysExactOverALongRun()
{
    bool isNumber = false;
    const int wanted = qEnvironmentVariableIntValue("ZORBIN_SOAK_LINES", &isNumber);
    const int lines = isNumber ? wanted : 10000;
    for (const Qt::Orientation orientation : {Qt::Vertical, Qt::Horizontal}) {
        waterfall_t waterfall(QSize(60, 50), 0, orientation);
        QVERIFY(waterfall.show());
        for (int i = 1; i <= lines; ++i) {
            waterfall.model.add(1);
            if (waterfall.model.itemCount() > 55)
                waterfall.model.drop(1);
            if (i % 7 == 0)
                QCoreApplication::processEvents();
            if (i % 1000 == 0) {
                QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
                waterfall.log->take();
                waterfall.renderer.takeCalls();
            }
        }
        QCOMPARE(waterfall.view.position(), lines - 1);
        QCOMPARE(firstDifference(shown(waterfall.view), waterfall.wanted()), QString());
    }
}

// On a display with so many device pixels to a pixel every line is as thick as they are, without
// seams and wherever it has been scrolled to.
static int scrollOnDenseDisplay()
{
    const int ratio = qRound(qApp->devicePixelRatio());
    for (const Qt::Orientation orientation : {Qt::Vertical, Qt::Horizontal}) {
        waterfall_t waterfall(QSize(60, 50), 0, orientation);
        if (!waterfall.show())
            return EXIT_FAILURE;
        for (int i = 1; i <= 3000; ++i) {
            waterfall.model.add(1);
            if (i % 3 == 0)
                QCoreApplication::processEvents();
            if (i % 250 == 0) {
                waterfall.view.position(waterfall.view.position() - 20);
                shown(waterfall.view);
                waterfall.view.position(waterfall.model.end() - 1);
            }
            if (i % 100 != 0)
                continue;
            const QImage wanted = waterfall.wanted().scaled(QSize(60, 50) * ratio);
            const QString difference = firstDifference(shown(waterfall.view), wanted);
            if (!difference.isEmpty()) {
                std::printf("after %d lines: %s\n", i, qPrintable(difference));
                return EXIT_FAILURE;
            }
        }
    }
    std::printf("ratio %d\n", ratio);
    return EXIT_SUCCESS;
}

void tst_waterfallViewScrolling::staysExactOnDenseDisplays()
{
    const childOutcome_t child = runChild("scrollOnDenseDisplay", {"QT_SCALE_FACTOR=2"});
    QCOMPARE(child.said, QStringList{"ratio 2"});
    QVERIFY(!child.crashed);
    QCOMPARE(child.exitCode, EXIT_SUCCESS);
}

int main(int argc, char** argv)
{
    tst_waterfallViewScrolling tests;
    return runTestsOrScenario(argc, argv, tests,
                              {{"scrollOnDenseDisplay", scrollOnDenseDisplay},
                               {"what no image can hold", paintWhatNoImageCanHold}});
}
#include "tst_waterfallViewScrolling.moc"
