#pragma once
#include "zorbinQtGuiExport.h"

#include <QWidget>
#include <memory>

namespace zorbin_qt_gui {
struct scalableTextWidgetPrivate_t;

/// One line of text, centred, in the largest font size that fits the widget. The font is the
/// widget's own (QWidget::setFont()); its size is changed with every text and every resize, each
/// search starting from the size found before. Whole points. GUI thread only.
/// \image html scalableTextWidget.png
class ZORBIN_QT_GUI_EXPORT scalableTextWidget_t : public QWidget
{
    Q_OBJECT

public:
    /// Makes a widget without text.
    explicit scalableTextWidget_t(QWidget* parent = nullptr);
    ~scalableTextWidget_t() override;

    /// Sets the text, empty at first, and fits the font to it. An empty text leaves the font alone.
    void setText(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    const std::unique_ptr<scalableTextWidgetPrivate_t> m_d;
};
} // namespace zorbin_qt_gui
