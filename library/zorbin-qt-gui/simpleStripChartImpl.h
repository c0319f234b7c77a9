#pragma once
#include "stripChartImpl.h"
#include "zorbinQtGuiExport.h"

#include <memory>

namespace zorbin_qt_gui {
class simpleStripChartWidget_t;

/// The QPainter back end of a strip chart. Its time axis moves by whole pixels, so that scrolling
/// shifts what is painted already and paints only the columns that come into view.
class ZORBIN_QT_GUI_EXPORT simpleStripChartImpl_t : public stripChartImpl_t
{
    Q_OBJECT

public:
    /// Makes the implementation, a child of \p parent, and its widget, which has no parent yet.
    explicit simpleStripChartImpl_t(QWidget* parent = nullptr);
    /// Deletes the drawing widget.
    ~simpleStripChartImpl_t() override;

    QWidget* widget() override;

    /// Moves the window forward to the first whole-pixel position at or after \p t. A time before
    /// the window, or more than one window ahead, is put at the right edge as it is and repaints
    /// everything.
    void scrollTime(double t) override;

private:
    const std::unique_ptr<simpleStripChartWidget_t> m_widget;
};
} // namespace zorbin_qt_gui
