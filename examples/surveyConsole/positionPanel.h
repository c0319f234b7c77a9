#pragma once
#include "latLonEditor.h"
#include "recording.h"

#include <QFrame>
#include <QGeoCoordinate>
#include <array>

class QGridLayout;
class QLabel;
class QPushButton;

namespace survey_console {

/// The vessel's position, and a position entered by hand: its range and bearing from the vessel,
/// and a button that asks for the time at which the vessel was nearest to it. One selector chooses
/// the notation of all coordinates.
class positionPanel_t : public QFrame
{
    Q_OBJECT
public:
    /// The position to go to is that of the recording's first fix, at first. \p recording must
    /// outlive the panel.
    explicit positionPanel_t(const recording_t& recording, QWidget* parent = nullptr);

    /// The notation of all coordinates: degrees and minutes, at first.
    zorbin_qt_gui::latLonEditor_t::coordFormat_t format() const { return m_format; }
    void chooseFormat(zorbin_qt_gui::latLonEditor_t::coordFormat_t format);

public Q_SLOTS:
    /// Shows the state at \p time_, in seconds.
    void showTime(double time_);

Q_SIGNALS:
    /// The replay shall go to \p time_, in seconds.
    void timeChosen(double time_);

private:
    struct editors_t // owned by their parent
    {
        zorbin_qt_gui::latLonEditor_t* latitude;
        zorbin_qt_gui::latLonEditor_t* longitude;
    };

    editors_t addEditors(const QString& title, const QString& objectName, const QString& toolTip,
                         double sizeFactor, QGridLayout* layout);
    QLabel* addReadOut(const QString& name, const char* objectName, QGridLayout* layout);
    void showRange();
    void goToNearest();
    // Invalid while what is entered is none.
    QGeoCoordinate target() const;

    const recording_t& m_recording;
    zorbin_qt_gui::latLonEditor_t::coordFormat_t m_format = zorbin_qt_gui::latLonEditor_t::CF_DM;
    zorbin_qt_gui::coordFormatSelector_t* m_selector;
    QGeoCoordinate m_vessel; // invalid before the first fix
    editors_t m_vesselEditors;
    editors_t m_targetEditors;
    QLabel* m_rangeLabel;
    QLabel* m_bearingLabel;
    QPushButton* m_nearestButton;
};

} // namespace survey_console
