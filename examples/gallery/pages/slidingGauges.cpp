// Speed, rudder and depth of a vehicle. Look at how the bars grow from their reference points to
// the measured values, and at the lines, which are the commanded ones.

#include "pages.h"

#include <QGridLayout>
#include <QLabel>
#include <zorbin-qt-gui/ruler.h>
#include <zorbin-qt-gui/slidingGauge.h>

using namespace zorbin_qt_gui;

namespace gallery {
namespace {

QLabel* caption(const char* text)
{
    return new QLabel(QString::fromLatin1(text));
}

slidingGauge_t* makeGauge(Qt::Orientation orientation, double min, double max)
{
    auto* gauge = new slidingGauge_t;
    gauge->setOrientation(orientation);
    gauge->setRange(min, max);
    gauge->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    gauge->setFillColor(QColor(0x8c, 0xc4, 0xe0));
    gauge->setLineColor(QColor(0xc0, 0x30, 0x20));
    if (orientation == Qt::Horizontal)
        gauge->setFixedHeight(26);
    else
        gauge->setFixedWidth(48);
    return gauge;
}

ruler_t* makeScale(const slidingGauge_t& gauge)
{
    auto* ruler = new ruler_t;
    ruler->axisLocation(gauge.orientation() == Qt::Horizontal ? ruler_t::BOTTOM : ruler_t::LEFT);
    ruler->range(gauge.minimum(), gauge.maximum());
    return ruler;
}

} // namespace

QWidget* makeSlidingGauges()
{
    auto* page = new QWidget;
    const struct
    {
        const char* name;
        double min;
        double max;
        double reference;
        double setpoint;
        double feedback;
    } gauges[] = {{"speed, kn", 0.0, 12.0, 0.0, 9.0, 8.0},
                  {"rudder, deg", -40.0, 40.0, 0.0, -25.0, -18.0},
                  {"depth, m", -200.0, 0.0, 0.0, -150.0, -120.0}};
    auto* upright = new QHBoxLayout;
    auto* flat = new QGridLayout;
    flat->setVerticalSpacing(0);
    for (const auto& values : gauges) {
        for (const Qt::Orientation orientation : {Qt::Vertical, Qt::Horizontal}) {
            slidingGauge_t* gauge = makeGauge(orientation, values.min, values.max);
            gauge->setReferencePoint(values.reference);
            gauge->setSetpoint(values.setpoint);
            gauge->setFeedback(values.feedback);
            ruler_t* scale = makeScale(*gauge);
            if (orientation == Qt::Vertical) {
                auto* named = new QGridLayout;
                named->setHorizontalSpacing(0);
                named->addWidget(caption(values.name), 0, 0, 1, 2, Qt::AlignHCenter);
                named->addWidget(scale, 1, 0, Qt::AlignRight);
                named->addWidget(gauge, 1, 1, Qt::AlignLeft);
                upright->addLayout(named);
            } else {
                const int row = flat->rowCount();
                flat->addWidget(caption(values.name), row, 0);
                flat->addWidget(gauge, row, 1);
                flat->addWidget(scale, row + 1, 1);
                flat->setRowMinimumHeight(row + 1, 40);
            }
        }
    }
    flat->setColumnStretch(1, 1);
    flat->setRowStretch(flat->rowCount(), 1);
    auto* layout = new QHBoxLayout(page);
    layout->setSpacing(24);
    layout->addLayout(upright, 2);
    layout->addLayout(flat, 3);
    return page;
}

} // namespace gallery
