#include <zorbin-qt-gui/waterfallView.h>

namespace {

class pings_t : public zorbin_qt_gui::baseWaterfallModel_t
{
public:
    void add() { _addItem(); }
};

class pingRenderer_t : public zorbin_qt_gui::baseWaterfallRenderer_t
{
public:
    void render(const context_t* context, QRgb* pixels, zorbin_qt_gui::baseWaterfallModel_t* model,
                unsigned int index) override
    {
        const bool isNewest = static_cast<int>(index) + 1 == model->end();
        for (unsigned int i = 0; i < context->numPixels; ++i)
            pixels[i] = isNewest ? qRgb(255, 255, 255) : qRgb(0, 0, 0);
    }
};

class pingView_t : public zorbin_qt_gui::baseWaterfallView_t
{
public:
    pingView_t(QWidget* window, pings_t* pings, pingRenderer_t* renderer)
        : baseWaterfallView_t(window)
    {
        _model(pings);
        _renderer(renderer);
    }
};

} // namespace

bool showPings(QWidget* window)
{
    auto* const pings = new pings_t;
    auto* const view = new pingView_t(window, pings, new pingRenderer_t);
    pings->setParent(view);
    view->renderer()->setParent(view);
    pings->add();
    return view->model()->itemCount() == 1 && view->position() == 0;
}
