#pragma once
#include "waterfallModel.h"
#include "waterfallRenderer.h"

#include <QImage>
#include <QPixmap>
#include <QPointer>
#include <QStringList>
#include <QWidget>
#include <memory>

/// A waterfall model that holds nothing: its counters are moved as a test wants.
class countingModel_t : public zorbin_qt_gui::baseWaterfallModel_t
{
    Q_OBJECT

public:
    using baseWaterfallModel_t::baseWaterfallModel_t;

    /// Adds so many items, one by one.
    void add(int count);
    /// Drops so many items, one by one.
    void drop(int count);
};

/// Paints a picture in which every pixel depends on its item, its place in the line and its data
/// coordinate, and logs every call, e.g. "7: 100 pixels from 0 to 1, scale 100".
class patternRenderer_t : public zorbin_qt_gui::baseWaterfallRenderer_t
{
    Q_OBJECT

public:
    using baseWaterfallRenderer_t::baseWaterfallRenderer_t;

    void render(const context_t* context, QRgb* pixels, zorbin_qt_gui::baseWaterfallModel_t* model,
                unsigned int index) override;

    /// The colour of a pixel.
    static QRgb pixel(const context_t& context, int index, unsigned k, unsigned seed = 0);

    /// The calls since the last time this was asked.
    QStringList takeCalls();
    /// The indices of those calls.
    QList<int> takeIndices();

    unsigned seed = 0;            ///< another one gives another picture
    unsigned pixelsLeftAlone = 0; ///< at the end of every line
    QRgb background = 0;          ///< what the first pixel of the last line held before
    QObject* lastModel = nullptr; ///< what the last call got

private:
    QStringList m_calls;
    QList<int> m_indices;
};

/// What a waterfall view shows and says, written as plainly as its rules can be told: a ring of
/// lines in a pixmap that is turned in one step of the orientation, and copied in two parts.
class plainWaterfall_t : public QWidget
{
public:
    plainWaterfall_t();

    void setModel(zorbin_qt_gui::baseWaterfallModel_t* model);
    void setRenderer(zorbin_qt_gui::baseWaterfallRenderer_t* renderer);
    void setOrientation(Qt::Orientation orientation);
    void setBounds(double beg, double end);
    void setPosition(int index);
    int position() const { return m_endIndex - 1; }
    bool mapToItem(const QPoint& p, int& index, double& coord) const;

    /// The signals so far, e.g. "positionChanged(4)".
    QStringList takeSignals();

protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    bool isVertical() const { return m_orientation == Qt::Vertical; }
    void handleSizeChange();
    void regen(int last, unsigned count);
    void regenAll();
    void changeItem(int index);
    void addItem();
    void dropItem();
    void signalPointedItemChanged();
    QRect slotRect(int slot) const;

    Qt::Orientation m_orientation = Qt::Vertical;
    double m_begBound = 0.0;
    double m_endBound = 1.0;
    QPointer<zorbin_qt_gui::baseWaterfallModel_t> m_model;
    int m_endIndex = 0;
    QPointer<zorbin_qt_gui::baseWaterfallRenderer_t> m_renderer;
    std::unique_ptr<QRgb[]> m_renderPixel;
    QImage m_renderImage; // over m_renderPixel
    QPixmap m_drawPixmap;
    int m_drawPosition = 0;
    QPoint m_drawOffset;
    QPoint m_drawOrigin;
    QPoint m_drawShift;
    QSize m_itemSize;
    unsigned m_numDataPixels = 0;
    int m_maxItems = 0;
    QPoint m_pointPos = {-1, -1};
    QStringList m_signals;
};

/// Lines of a log of signals.
QString positionSignal(int index);
QString boundsSetSignal(double beg, double end);
QString pointedSignal(int index, double coord);
