// Lamps in each of their states. Lamps that blink do so in step with all others of the process.

#include "pages.h"

#include <QFormLayout>
#include <QLabel>
#include <functional>
#include <zorbin-qt-gui/indicator.h>

using namespace zorbin_qt_gui;

namespace gallery {

QWidget* makeIndicators()
{
    auto* const page = new QWidget;
    auto* const layout = new QFormLayout(page);
    const auto add = [layout](const char* text, const std::function<void(indicator_t*)>& setUp) {
        auto* const lamp = new indicator_t;
        setUp(lamp);
        lamp->setFixedSize(22, 18);
        layout->addRow(lamp, new QLabel(QString::fromLatin1(text)));
    };
    add("on", [](indicator_t*) {});
    add("off", [](indicator_t* lamp) { lamp->setOn(false); });
    add("blinking, in the lit phase", [](indicator_t* lamp) { lamp->alertWhenOn(true); });
    add("disabled", [](indicator_t* lamp) { lamp->setEnabled(false); });
    add("in a colour of its own", [](indicator_t* lamp) { lamp->setColor(QColor(240, 150, 0)); });
    add("hidden while off", [](indicator_t* lamp) {
        lamp->hideWhenOff(true);
        lamp->setOn(false);
    });
    return page;
}

} // namespace gallery
