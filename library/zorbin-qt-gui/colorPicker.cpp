#include "colorPicker.h"

#include <QColorDialog>
#include <QIcon>
#include <QPixmap>
#include <QPointer>

namespace zorbin_qt_gui {

struct colorPickerPrivate_t
{
    QColor color;
};

colorPicker_t::colorPicker_t(QWidget* parent) : colorPicker_t(Qt::red, parent)
{
}

colorPicker_t::colorPicker_t(QColor color, QWidget* parent)
    : QToolButton(parent), m_d(std::make_unique<colorPickerPrivate_t>())
{
    selectedColor(color);
    connect(this, &QToolButton::clicked, this, &colorPicker_t::selectColor);
}

colorPicker_t::~colorPicker_t() = default;

void colorPicker_t::selectedColor(QColor color)
{
    if (color == m_d->color)
        return;
    m_d->color = color;
    QPixmap icon(iconSize());
    icon.fill(color);
    setIcon(icon);
    Q_EMIT selectedColorChanged(color);
}

QColor colorPicker_t::selectedColor() const
{
    return m_d->color;
}

void colorPicker_t::selectColor()
{
    const QPointer<colorPicker_t> self(this); // the application may delete the button meanwhile
    const QColor color = QColorDialog::getColor(m_d->color, nullptr);
    if (self != nullptr && color.isValid())
        selectedColor(color);
}
} // namespace zorbin_qt_gui
