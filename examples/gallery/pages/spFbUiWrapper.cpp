// Settings of a sonar, which answers a second later. Set a value and its lamp turns yellow, then
// green once the sonar has taken it. The sonar's gain goes no further than 40 dB, so a setpoint
// beyond turns red after two seconds.

#include "pages.h"

#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QLabel>
#include <QSpinBox>
#include <QTimer>
#include <algorithm>
#include <zorbin-qt-gui/indicator.h>
#include <zorbin-qt-gui/spFbUiWrapper.h>

using namespace zorbin_qt_gui;

namespace gallery {

QWidget* makeSpFbUiWrapper()
{
    enum id_t
    {
        GAIN = 1,
        RANGE = 2,
        PINGS = 3
    };
    auto* const page = new QWidget;
    auto* const layout = new QGridLayout(page);
    const auto add = [layout](const char* name, QAbstractSpinBox* box) {
        box->setKeyboardTracking(false); // no command for each digit
        auto* const lamp = new indicator_t;
        lamp->setFixedSize(18, 18);
        const int row = layout->rowCount();
        layout->addWidget(new QLabel(QString::fromLatin1(name)), row, 0);
        layout->addWidget(box, row, 1);
        layout->addWidget(lamp, row, 2);
        return lamp;
    };
    auto* const gain = new QDoubleSpinBox;
    gain->setSuffix(QStringLiteral(" dB"));
    auto* const range = new QSpinBox;
    range->setSuffix(QStringLiteral(" m"));
    range->setMaximum(500);
    auto* const pings = new QSpinBox;
    pings->setSuffix(QStringLiteral(" / s"));

    const double greatestGain = 40.0; // dB
    auto* const binder = new spFbUiWrapper_t(page);
    binder->addDoubleSpinBoxWrapper(0.0, greatestGain, add("Gain", gain), GAIN, gain);
    binder->addSpinBoxWrapper(0, 150, add("Range", range), RANGE, range);
    binder->addSpinBoxWrapper(0, 10, add("Pings", pings), PINGS, pings);
    gain->setValue(46.0); // more than the sonar has: red
    range->setValue(150); // what it reports: green
    pings->setValue(12);
    binder->initGui();
    binder->setInFlight(PINGS); // on its way: yellow

    QObject::connect(
        binder, &spFbUiWrapper_t::setpointEdited, binder, [binder, greatestGain](int id) {
            const QVariant sent = binder->setpointValue(id);
            binder->setInFlight(id, 2000);
            QTimer::singleShot(1000, binder, [binder, id, sent, greatestGain] {
                const QVariant taken = id == GAIN ? std::min(sent.toDouble(), greatestGain) : sent;
                binder->updateFeedback(static_cast<unsigned>(id), taken);
            });
        });
    layout->setRowStretch(layout->rowCount(), 1);
    return page;
}

} // namespace gallery
