// Enters a position. Look at how both fields follow the selector of the notation, and at the
// decimal degrees below, which vanish while a field holds no coordinate: type 95 degrees of
// latitude. Paste a position from elsewhere, such as 54-19.5N 010-08.2E, into one of the fields: it
// fills both. What is no coordinate flashes and is refused.

#include "pages.h"

#include <QFormLayout>
#include <QLabel>
#include <zorbin-qt-gui/latLonEditor.h>

using namespace zorbin_qt_gui;

namespace gallery {

QWidget* makeLatLonEditors()
{
    auto* const page = new QWidget;
    auto* const selector = new coordFormatSelector_t;
    latLonEditor_t* const latitudes = new latitudeEditor_t;
    latLonEditor_t* const longitudes = new longitudeEditor_t;
    auto* const degrees = new QLabel;
    auto* const layout = new QFormLayout(page);
    layout->addRow(QStringLiteral("Notation"), selector);
    layout->addRow(QStringLiteral("Latitude"), latitudes);
    layout->addRow(QStringLiteral("Longitude"), longitudes);
    layout->addRow(QStringLiteral("Decimal degrees"), degrees);

    const auto showDegrees = [=] {
        double latitude = 0.0;
        double longitude = 0.0;
        const bool isPosition = latitudes->value(latitude) && longitudes->value(longitude);
        degrees->setText(
            isPosition ? QStringLiteral("%1, %2").arg(latitude, 0, 'f', 6).arg(longitude, 0, 'f', 6)
                       : QStringLiteral("no position"));
    };
    for (latLonEditor_t* const editor : {latitudes, longitudes}) {
        editor->connectFormatSelector(selector, true);
        editor->setCoordinateFormat(latLonEditor_t::CF_DM);
        QObject::connect(editor, &latLonEditor_t::valueChanged, degrees, showDegrees);
        QObject::connect(editor, &latLonEditor_t::valueValidityChanged, degrees, showDegrees);
    }
    latitudes->pairWith(longitudes);
    latitudes->setValue(54.3250);
    longitudes->setValue(10.1367);
    return page;
}

} // namespace gallery
