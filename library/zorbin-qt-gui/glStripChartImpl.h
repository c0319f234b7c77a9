#pragma once
#include "stripChartImpl.h"

#include <memory>

namespace zorbin_qt_gui {
class glStripChartWidget_t;

/// The OpenGL back end of a strip chart. Chosen on machines whose driver is known to do well with
/// it, or by the environment (stripChartImpl_t::implementationType()). GUI thread only.
class ZORBIN_QT_GUI_EXPORT glStripChartImpl_t : public stripChartImpl_t
{
    Q_OBJECT

public:
    /// Makes the implementation and its widget. Without a usable OpenGL context, of which the first
    /// chart warns, the widget stays empty.
    explicit glStripChartImpl_t(QWidget* parent);
    ~glStripChartImpl_t() override;

    /// A glStripChartWidget_t, owned.
    QWidget* widget() override;

    /// Whether OpenGL works here and its vendor is one of those whose drivers are known to do well:
    /// "NVIDIA Corporation" or "nouveau". False outside the GUI thread.
    static bool supported();

private:
    std::unique_ptr<glStripChartWidget_t> m_widget;
};
} // namespace zorbin_qt_gui
