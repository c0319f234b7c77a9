#pragma once
#include "waterfallModel.h"
#include "waterfallRenderer.h"
#include "zorbinQtGuiExport.h"

#include <QWidget>
#include <memory>

namespace zorbin_qt_gui {
struct baseWaterfallViewPrivate_t;

/// Stacks the items of a waterfall as lines, one pixel each, the newest at the top, or at the right
/// edge, and scrolls as they arrive. Along a line runs the data axis (across track, frequency).
///
/// The view follows the model as long as it shows its newest item; scrolled back, it stays. A new
/// item costs rendering its line and a scroll of what is on screen. Items that the model doesn't
/// hold are shown in the palette's QPalette::Window colour, and so is everything while there is no
/// model or no renderer. Both belong to the application, may be shared and may be deleted any time.
///
/// An application derives its typed view, which sets them through _model() and _renderer().
/// GUI thread only. \image html waterfallView.png
class ZORBIN_QT_GUI_EXPORT baseWaterfallView_t : public QWidget
{
    Q_OBJECT

public:
    /// Makes a vertical view, its data axis from 0.0 to 1.0.
    explicit baseWaterfallView_t(QWidget* parent = nullptr);
    ~baseWaterfallView_t() override;

    /// The model, or null.
    virtual baseWaterfallModel_t* model() const;
    /// The renderer, or null.
    virtual baseWaterfallRenderer_t* renderer() const;

    /// For subclasses: shows the items of \p m, not owned, from its newest one on; null for none.
    /// Emits pointedItemChanged(). After a reset() of the model set the position yourself.
    void _model(baseWaterfallModel_t* m);
    /// For subclasses: renders lines with \p r, not owned; null for none.
    void _renderer(baseWaterfallRenderer_t* r);

    double begBound() const; ///< The data coordinate at the left or upper edge.
    double endBound() const; ///< The data coordinate at the right or lower edge.
    /// The index of the newest item shown.
    int position() const;

    /// Qt::Vertical, the first one: items are rows, the newest at the top. Qt::Horizontal: items
    /// are columns, the newest at the right.
    const Qt::Orientation& orientation() const;
    /// Sets the orientation. Emits pointedItemChanged().
    void orientation(Qt::Orientation o);

    /// The item and the data coordinate at a point of the widget; the index may be one that the
    /// model doesn't hold. Outside the widget returns false, sets the least int as \p index and
    /// leaves \p coord alone.
    bool mapToItem(const QPoint& p, int& index, double& coord) const;

    /// 50 x 50.
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /// Sets the data coordinates at the two ends of the lines and renders all of them. Emits
    /// boundsChanged() and pointedItemChanged(), also when they are what they were.
    void bounds(double beg_, double end_);
    /// Shows \p index_ as the newest item. Emits positionChanged() and pointedItemChanged() if that
    /// is another one.
    void position(int index_);
    /// The model has a new item: shows it if the view showed the one before as the newest.
    void addItem();
    /// The model's oldest item has gone: blanks it if it is visible.
    void dropItem();
    /// Renders all visible lines.
    void regenAll();

Q_SIGNALS:
    /// The bounds of the data axis were set.
    void boundsChanged(double beg_, double end_);
    /// Another item is the newest one shown.
    void positionChanged(int index_);
    /// The pointer, or what is under it, has moved: mapToItem() of its place. With the pointer
    /// outside the widget the least int and NaN.
    void pointedItemChanged(int index_, double coord_);

private:
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    using enterEvent_t = QEnterEvent;
#else
    using enterEvent_t = QEvent;
#endif

protected:
    void changeEvent(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    /// Switches mouse tracking on. The event's type depends on the Qt version.
    void enterEvent(enterEvent_t* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void regen(qint64 last, qint64 count);
    void changeItem(qint64 index);
    void handleSizeChange();
    void signalPointedItemChanged();

    const std::unique_ptr<baseWaterfallViewPrivate_t> m_d;
};
} // namespace zorbin_qt_gui
