// A picture of sand ripples on the seabed, in the middle of its frame. Make the window smaller: the
// picture keeps its aspect ratio.

#include "pages.h"

#include <QPainter>
#include <QPixmap>
#include <QVBoxLayout>
#include <cmath>
#include <zorbin-qt-gui/imageFrame.h>

using namespace zorbin_qt_gui;

namespace gallery {

QWidget* makeImageFrame()
{
    QPixmap seabed(120, 90);
    QPainter painter(&seabed);
    for (int y = 0; y < seabed.height(); ++y) {
        for (int x = 0; x < seabed.width(); ++x) {
            const double ripple = 0.5 + 0.5 * std::sin(0.25 * x + 2.0 * std::sin(0.06 * y));
            painter.setPen(QColor::fromHsv(32, 153, qRound(64.0 + 178.0 * ripple)));
            painter.drawPoint(x, y);
        }
    }
    painter.end();

    auto* const page = new QWidget;
    auto* const layout = new QVBoxLayout(page);
    auto* const frame = new imageFrame_t;
    frame->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    frame->setLineWidth(2);
    frame->setMinimumSize(240, 130);
    frame->setPixmap(seabed);
    layout->addWidget(frame);
    return page;
}

} // namespace gallery
