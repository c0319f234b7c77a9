#pragma once
#include "zorbinQtGuiExport.h"

#include <QWidget>
#include <memory>

namespace zorbin_qt_gui {
struct histogramPrivate_t;

/// Shows how samples, for example of a sonar picture, are distributed over a range of values: one
/// bar per pixel column, the tallest as high as the widget. A part of the range can be highlighted,
/// for example the one that colours are stretched over.
///
/// All samples are kept, 4 bytes each, so that range and bins can be changed any time; they are
/// counted when they are painted. There is no background: the widget's own shows. Values are in
/// the caller's unit. GUI thread only. \image html histogram.png
class ZORBIN_QT_GUI_EXPORT histogram_t : public QWidget
{
    Q_OBJECT

public:
    /// Makes an empty histogram: range 0.0 to 1.0, 100 bins, no highlight.
    explicit histogram_t(QWidget* parent = nullptr);
    ~histogram_t() override;

    /// Drops all samples.
    void clear();
    /// Adds \p count samples. Those outside the range aren't counted; NaN counts in the first bin.
    void addData(unsigned int count, const float* values);

    /// Sets the range, both ends included. \p min from \p max on is a fatal error; with a NaN
    /// nothing is drawn.
    void range(float min, float max);
    /// Sets the width of a bin; the last one may reach beyond the range. A size of 0 is a fatal
    /// error, a negative one gives no bars. Replaces numBins().
    void binSize(double size);
    /// Sets the number of bins that the range is divided into, at most 2^24 (more are taken as that
    /// many). None is a fatal error. Replaces binSize().
    void numBins(unsigned int n);

    /// 50 x 50.
    QSize sizeHint() const override;
    /// 10 x 10, or what the application asks for at least of all widgets.
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /// Highlights the columns from \p min_ to \p max_; nothing if they are in reversed order.
    void highlightRange(float min_, float max_);
    /// Removes the highlight.
    void clearHighlight();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void regen();

    const std::unique_ptr<histogramPrivate_t> m_d;
};
} // namespace zorbin_qt_gui
