// Uses the class with nothing included but its header.
#include <zorbin-qt-gui/spFbUiWrapper.h>

using zorbin_qt_gui::spFbUiWrapper_t;

// Disables the widgets that show what the equipment doesn't have. Returns their setpoints' sum.
double disableMismatches(const spFbUiWrapper_t& binder)
{
    double sum = 0.0;
    for (const auto& entry : binder.wrappers()) {
        if (entry.second->spFbMatch())
            continue;
        entry.second->widget()->setEnabled(false);
        sum += binder.lookupWrapperItem(entry.first).setpointValue().toDouble();
    }
    return sum;
}
