#pragma once
#include "zorbinQtGuiExport.h"

#include <QObject>
#include <QRgb>

namespace zorbin_qt_gui {
class baseWaterfallModel_t;

/// Turns one item of a waterfall into one line of pixels. An application derives from it the
/// renderer that knows its items, typically with a colorer_t. GUI thread only.
class ZORBIN_QT_GUI_EXPORT baseWaterfallRenderer_t : public QObject
{
    Q_OBJECT

public:
    /// The geometry of a line: pixel k shows the data coordinate beg + k / scale.
    struct context_t
    {
        unsigned int numPixels; ///< in the line
        double beg;             ///< data coordinate at the start of the line
        double end;             ///< data coordinate at its far end
        double scale; ///< pixels per unit, numPixels / (end - beg); infinite if they are equal
    };

    /// Makes a renderer, which the application owns unless \p parent does.
    explicit baseWaterfallRenderer_t(QObject* parent = nullptr);
    ~baseWaterfallRenderer_t() override;

    /// Writes the line of item \p index of \p model to \p pixels, \p context->numPixels of them as
    /// 0xRRGGBB (alpha has no effect); those left alone keep the view's background colour. \p
    /// index, taken as an int, is from model->begin() up to, but without, model->end(). Must not
    /// change the model or the view.
    virtual void render(const context_t* context, QRgb* pixels, baseWaterfallModel_t* model,
                        unsigned int index) = 0;

Q_SIGNALS:
    /// For subclasses to emit when the same item would give another line (other colours, other
    /// gain): the views render all lines anew.
    void rendererChanged();
};
} // namespace zorbin_qt_gui
