// Read-outs for the far side of a bridge. Each text has the largest size, in whole points, that
// fits its widget.

#include "pages.h"

#include <QGridLayout>
#include <zorbin-qt-gui/scalableTextWidget.h>

using namespace zorbin_qt_gui;

namespace gallery {

QWidget* makeScalableTextWidget()
{
    auto* const page = new QWidget;
    auto* const layout = new QGridLayout(page);
    const auto add = [layout](const char* text, const QSize& size, int row, int column, int rows) {
        auto* const widget = new scalableTextWidget_t;
        widget->setFixedSize(size);
        widget->setText(QString::fromUtf8(text));
        layout->addWidget(widget, row, column, rows, 1);
    };
    add("24.8 m", QSize(200, 90), 0, 0, 2);
    add("4.2 kn", QSize(110, 40), 0, 1, 1);
    add("heading 271.5 degrees", QSize(110, 40), 1, 1, 1);
    return page;
}

} // namespace gallery
