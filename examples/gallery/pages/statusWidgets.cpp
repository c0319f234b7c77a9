// A panel of a towed sonar with every status widget, put together from the pages before.

#include "pages.h"

#include <QGridLayout>
#include <QGroupBox>

namespace gallery {

QWidget* makeStatusWidgets()
{
    auto* const panel = new QWidget;
    auto* const layout = new QGridLayout(panel);
    const auto add = [layout](const char* title, QWidget* widget, int row, int column, int rows) {
        auto* const box = new QGroupBox(QString::fromLatin1(title));
        auto* const inside = new QGridLayout(box);
        inside->setContentsMargins(0, 0, 0, 0);
        inside->addWidget(widget);
        layout->addWidget(box, row, column, rows, 1);
    };
    add("Lamps", makeIndicators(), 0, 0, 2);
    add("Alarm labels", makeAlarmLabel(), 0, 1, 1);
    add("Setpoints and feedback", makeSpFbUiWrapper(), 1, 1, 1);
    add("Text as large as fits", makeScalableTextWidget(), 2, 0, 1);
    add("Picture, its aspect ratio kept", makeImageFrame(), 2, 1, 1);
    add("The text of an about box", makeAboutBox(), 3, 0, 1);
    add("Notifications", makeNotifierWidget(), 3, 1, 1);
    return panel;
}

} // namespace gallery
