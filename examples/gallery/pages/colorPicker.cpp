// The colours of a chart's curves. Click on a button to choose another colour: the text beside it
// follows.

#include "pages.h"

#include <QGridLayout>
#include <QLabel>
#include <zorbin-qt-gui/colorPicker.h>

using namespace zorbin_qt_gui;

namespace gallery {

QWidget* makeColorPicker()
{
    const struct
    {
        const char* curve;
        const char* value;
        QColor color;
    } curves[] = {{"Depth", "24.8 m", QColor(0x8a, 0x5a, 0x2b)},
                  {"Heading", "271.5\u00b0", QColor(0x1c, 0x4e, 0x9a)},
                  {"Speed", "4.2 kn", QColor(0x1d, 0x7a, 0x3a)}};
    auto* const page = new QWidget;
    auto* const layout = new QGridLayout(page);
    layout->setColumnStretch(2, 1);
    for (const auto& curve : curves) {
        auto* const picker = new colorPicker_t(curve.color);
        auto* const value = new QLabel(QString::fromUtf8(curve.value));
        QFont large = value->font();
        large.setPointSizeF(1.6 * large.pointSizeF());
        value->setFont(large);
        const auto paint = [value](const QColor& color) {
            QPalette palette = value->palette();
            palette.setColor(QPalette::WindowText, color);
            value->setPalette(palette);
        };
        paint(picker->selectedColor());
        QObject::connect(picker, &colorPicker_t::selectedColorChanged, value, paint);
        const int row = layout->rowCount();
        layout->addWidget(new QLabel(QString::fromLatin1(curve.curve)), row, 0);
        layout->addWidget(picker, row, 1);
        layout->addWidget(value, row, 2);
    }
    layout->setRowStretch(layout->rowCount(), 1);
    return page;
}

} // namespace gallery
