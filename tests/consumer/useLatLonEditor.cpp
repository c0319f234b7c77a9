// Uses the fields for coordinates, with their header alone.
#include <zorbin-qt-gui/latLonEditor.h>

using zorbin_qt_gui::coordFormatSelector_t;
using zorbin_qt_gui::latitudeEditor_t;
using zorbin_qt_gui::latLonEditor_t;
using zorbin_qt_gui::longitudeEditor_t;

bool isNorthernPosition(QWidget* parent);

bool isNorthernPosition(QWidget* parent)
{
    auto* const latitude = new latitudeEditor_t(parent);
    auto* const longitude = new longitudeEditor_t(parent);
    auto* const selector = new coordFormatSelector_t(parent);
    latitude->pairWith(longitude);
    latitude->connectFormatSelector(selector, true);
    longitude->connectFormatSelector(selector, true);
    selector->changeSelection(latLonEditor_t::CF_DMS);
    QObject::connect(latitude, &latLonEditor_t::pasteRefused, parent, &QWidget::setToolTip);
    double value = 0.0;
    return latitude->value(value) && value > 0.0;
}
