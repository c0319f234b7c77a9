#pragma once
#include "pingModel.h"
#include "pingRenderer.h"
#include "waterfallView.h"

namespace survey_console {

/// A waterfall of sonar pings. Its data axis is metres, as in extent_t.
class pingView_t : public zorbin_qt_gui::baseWaterfallView_t
{
    Q_OBJECT
public:
    explicit pingView_t(QWidget* parent = nullptr) : baseWaterfallView_t(parent) {}

    pingModel_t* model() const override
    {
        return static_cast<pingModel_t*>(baseWaterfallView_t::model());
    }
    pingRenderer_t* renderer() const override
    {
        return static_cast<pingRenderer_t*>(baseWaterfallView_t::renderer());
    }
    /// Shows the newest pings of \p model, which must outlive the view.
    void setModel(pingModel_t* model) { _model(model); }
    /// Draws them by \p renderer, which must outlive the view.
    void setRenderer(pingRenderer_t* renderer) { _renderer(renderer); }

    /// How many pings the view has room for.
    int visibleCount() const { return orientation() == Qt::Vertical ? height() : width(); }
};

} // namespace survey_console
