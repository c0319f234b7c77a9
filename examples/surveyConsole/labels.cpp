#include "labels.h"

namespace survey_console {

QLabel* makeLabel(const QColor& color, double sizeFactor, Qt::Alignment alignment)
{
    auto* label = new QLabel;
    setTextColor(label, color);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * sizeFactor);
    label->setFont(font);
    label->setAlignment(alignment);
    return label;
}

void setTextColor(QLabel* label, const QColor& color)
{
    QPalette palette = label->palette();
    if (palette.color(QPalette::WindowText) == color)
        return;
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
}

void setBackground(QWidget* widget, const QColor& color)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::Window, color);
    widget->setPalette(palette);
    widget->setAutoFillBackground(true);
}

} // namespace survey_console
