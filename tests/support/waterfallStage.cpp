#include "waterfallStage.h"

#include "pictures.h"

#include <QApplication>
#include <QCursor>
#include <QMouseEvent>
#include <cmath>

using namespace zorbin_qt_gui;

namespace waterfall_tests {

countingModel_t* view_t::model() const
{
    return static_cast<countingModel_t*>(baseWaterfallView_t::model());
}

patternRenderer_t* view_t::renderer() const
{
    return static_cast<patternRenderer_t*>(baseWaterfallView_t::renderer());
}

viewLog_t::viewLog_t(baseWaterfallView_t& view)
{
    QObject::connect(&view, &baseWaterfallView_t::boundsChanged, &view,
                     [this, &view](double beg, double end) {
                         m_texts.append(boundsSetSignal(beg, end));
                         const auto same = [](double a, double b) {
                             return a == b || (std::isnan(a) && std::isnan(b));
                         };
                         m_consistent &= same(view.begBound(), beg);
                         m_consistent &= same(view.endBound(), end);
                     });
    QObject::connect(&view, &baseWaterfallView_t::positionChanged, &view, [this, &view](int index) {
        m_texts.append(positionSignal(index));
        m_consistent &= view.position() == index;
    });
    QObject::connect(
        &view, &baseWaterfallView_t::pointedItemChanged, &view,
        [this](int index, double coord) { m_texts.append(pointedSignal(index, coord)); });
}

waterfall_t::waterfall_t(const QSize& size, int items, Qt::Orientation orientation)
{
    view.resize(size);
    view.orientation(orientation); // takes the size over although the view isn't shown
    model.reset(0, static_cast<unsigned>(items));
    view._model(&model);
    view._renderer(&renderer);
    log = std::make_unique<viewLog_t>(view);
    renderer.takeCalls();
}

bool waterfall_t::show()
{
    view.show();
    if (!QTest::qWaitForWindowExposed(&view, patienceMs()))
        return false;
    paints = std::make_unique<paintLog_t>(&view);
    shown(view);
    paints->take();
    log->take();
    renderer.takeCalls();
    return true;
}

QImage waterfall_t::wanted() const
{
    QImage picture = blank(view);
    const bool isVertical = view.orientation() == Qt::Vertical;
    const int length = isVertical ? picture.width() : picture.height();
    const baseWaterfallRenderer_t::context_t context{static_cast<unsigned>(length), view.begBound(),
                                                     view.endBound(),
                                                     length / (view.endBound() - view.begBound())};
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const int back = isVertical ? y : picture.width() - 1 - x;
            const qint64 index = static_cast<qint64>(view.position()) - back;
            const int k = isVertical ? x : y;
            if (index >= model.begin() && index < model.end() &&
                k < length - static_cast<int>(renderer.pixelsLeftAlone))
                picture.setPixel(x, y,
                                 patternRenderer_t::pixel(context, static_cast<int>(index),
                                                          static_cast<unsigned>(k), renderer.seed));
        }
    }
    return picture;
}

QList<int> downwards(int first, int last)
{
    QList<int> indices;
    for (int i = first; i >= last; --i)
        indices.append(i);
    return indices;
}

void movePointer(QWidget& widget, const QPoint& to)
{
    QEnterEvent enter(to, to, widget.mapToGlobal(to)); // else Qt keeps the move from the widget
    QApplication::sendEvent(&widget, &enter);
    QMouseEvent move(QEvent::MouseMove, to, widget.mapToGlobal(to), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(&widget, &move);
}

void leave(QWidget& widget)
{
    QEvent event(QEvent::Leave);
    QApplication::sendEvent(&widget, &event);
}

void waterfallTestCase_t::setUp()
{
    QCursor::setPos(1900, 1190); // away from all windows
}
} // namespace waterfall_tests
