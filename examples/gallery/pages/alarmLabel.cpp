// The altitude of a towed body above the seabed. Below 5 m it flashes: move the slider.

#include "pages.h"

#include <QFormLayout>
#include <QSlider>
#include <zorbin-qt-gui/alarmLabel.h>

using namespace zorbin_qt_gui;

namespace gallery {

QWidget* makeAlarmLabel()
{
    auto* const plain = new alarmLabel_t;
    plain->setText(QStringLiteral("Altitude 12.4 m"));
    auto* const alarmed = new alarmLabel_t;
    alarmed->setObjectName(QStringLiteral("alarmed"));
    alarmed->flashFgColor(Qt::white);
    alarmed->flashBgColor(QColor(190, 0, 0));

    auto* const altitude = new QSlider(Qt::Horizontal);
    altitude->setRange(0, 200); // dm
    QObject::connect(altitude, &QSlider::valueChanged, alarmed, [alarmed](int decimetres) {
        alarmed->setText(QStringLiteral("Altitude %1 m").arg(decimetres / 10.0, 0, 'f', 1));
        alarmed->alarm(decimetres < 50); // again and again is harmless
    });
    altitude->setValue(31);

    auto* const page = new QWidget;
    auto* const layout = new QFormLayout(page);
    layout->addRow(QStringLiteral("plain"), plain);
    layout->addRow(QStringLiteral("flash"), alarmed);
    layout->addRow(QStringLiteral("altitude"), altitude);
    return page;
}

} // namespace gallery
