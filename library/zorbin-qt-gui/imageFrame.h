#pragma once
#include "zorbinQtGuiExport.h"

#include <QFrame>
#include <memory>

class QPixmap;

namespace zorbin_qt_gui {
struct imageFramePrivate_t;

/// A frame with a picture in its middle, scaled to the frame's contents with its aspect ratio kept
/// and without smoothing. GUI thread only. \image html imageFrame.png
class ZORBIN_QT_GUI_EXPORT imageFrame_t : public QFrame
{
    Q_OBJECT

public:
    /// Makes a frame without a picture, and without a line round it: QFrame::NoFrame.
    explicit imageFrame_t(QWidget* parent = nullptr);
    ~imageFrame_t() override;

    /// Sets the picture; a null one shows nothing.
    void setPixmap(const QPixmap& pixmap);
    /// The picture as set, unscaled; owned by the frame and valid as long as the frame.
    const QPixmap* pixmap() const;
    /// Scales the picture to the frame's present contents. Done with every new picture, every
    /// resize and every change of the frame's width.
    void scalePixmap();

    /// The height at which a frame of the width \p w shows the picture without room above or beside
    /// it, at most the greatest int; -1 without a picture.
    int heightForWidth(int w) const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    const std::unique_ptr<imageFramePrivate_t> m_d;
};
} // namespace zorbin_qt_gui
