#pragma once
#include "zorbinQtGuiExport.h"

#include <QWidget>
#include <memory>

namespace zorbin_qt_gui {
class coordFormatSelector_t;

/// An entry field for a latitude or a longitude in one of three notations: degrees, degrees and
/// minutes, or degrees, minutes and seconds. The magnitude is typed over a mask, the hemisphere
/// chosen beside it; a selector of the notation can be shown. Values are degrees, north and east
/// positive.
///
/// Texts that are no coordinate are refused while they are typed or, where that shows only in the
/// whole (91 degrees of latitude), reported as invalid. Applications make a latitudeEditor_t or a
/// longitudeEditor_t.
///
/// Coordinates in other usual forms (12°34.5'N, -12.575, +1234.5, a pair) are converted when they
/// are pasted or dropped. Those without a sign or a letter keep the hemisphere that is shown; a
/// number alone counts when the whole field is selected. What else is pasted types its digits over
/// the field's, from the cursor on.
///
/// Slots of all signals may delete the editor, alone or with what it lies in. Its child widgets
/// then stay, hidden, until control is back in the event loop. GUI thread only. \image html
/// latLonEditors.png
class ZORBIN_QT_GUI_EXPORT latLonEditor_t : public QWidget
{
    Q_OBJECT

public:
    /// Notations.
    enum coordFormat_t
    {
        CF_D = 0,  ///< 12.50000000°
        CF_DM = 1, ///< 12° 30.000000'
        CF_DMS = 2 ///< 12° 30' 00.0000"
    };

    /// Kinds of coordinates.
    enum latLonMode_t
    {
        LLM_LATITUDE = 0, ///< -90 to 90 degrees
        LLM_LONGITUDE = 1 ///< -180 to 180 degrees
    };

    /// Makes an editor in degrees that shows 0.
    latLonEditor_t(latLonMode_t mode, QWidget* parent);
    ~latLonEditor_t() override;

    /// Reads what is shown into \p v. Returns false, leaving it alone, if that is no coordinate.
    bool value(double& v) const;
    /// The notation.
    coordFormat_t selectedFormat() const;

    /// Lets \p other, not owned, choose the notation, too; with \p bothWays it also follows what is
    /// chosen here, otherwise it no longer does. One selector may drive several editors. None is
    /// ignored.
    void connectFormatSelector(coordFormatSelector_t* other, bool bothWays);

Q_SIGNALS:
    /// What is shown is a coordinate and was set or typed, perhaps to the same value. While a
    /// notation or a hemisphere is being changed intermediate values may come first.
    void valueChanged(double value_);
    /// What is shown has become a coordinate, or ceased to be one. Valid at first.
    void valueValidityChanged(bool valid_);

public Q_SLOTS:
    /// Shows the value in another notation. What is no coordinate keeps its notation. A value
    /// outside the enumeration is ignored.
    void setCoordinateFormat(latLonEditor_t::coordFormat_t format_);
    /// Shows or hides the editor's own selector of the notation, hidden at first.
    void showFormatSelector(bool show_);
    /// Shows a value. One that isn't finite, or has more digits of degrees than the field, empties
    /// the field.
    void setValue(double value_);

private Q_SLOTS:
    void handleValueChanged();
    void handleFormatCBChanged(int index_);

private:
    void initialize();

    struct privateData_t;
    const std::unique_ptr<privateData_t> m_d;
};

/// An entry field for a latitude.
class ZORBIN_QT_GUI_EXPORT latitudeEditor_t : public latLonEditor_t
{
    Q_OBJECT

public:
    /// Makes an editor in degrees that shows 0° north.
    explicit latitudeEditor_t(QWidget* parent = nullptr);
};

/// An entry field for a longitude.
class ZORBIN_QT_GUI_EXPORT longitudeEditor_t : public latLonEditor_t
{
    Q_OBJECT

public:
    /// Makes an editor in degrees that shows 0° east.
    explicit longitudeEditor_t(QWidget* parent = nullptr);
};

/// A choice of the notation of latitude and longitude editors; see
/// latLonEditor_t::connectFormatSelector(). Slots may delete the selector, as they may an editor.
class ZORBIN_QT_GUI_EXPORT coordFormatSelector_t : public QWidget
{
    Q_OBJECT

public:
    /// Makes a selector that shows latLonEditor_t::CF_DM.
    explicit coordFormatSelector_t(QWidget* parent = nullptr);
    ~coordFormatSelector_t() override;

Q_SIGNALS:
    /// Another notation was chosen. Comes twice when changeSelection() chose it. A loss of the
    /// choice, such as by clearing the combo box, is not announced: what follows the selector keeps
    /// its notation.
    void selectionChanged(latLonEditor_t::coordFormat_t format_);

public Q_SLOTS:
    /// Chooses a notation. A value outside the enumeration is ignored.
    void changeSelection(latLonEditor_t::coordFormat_t format_);

private Q_SLOTS:
    void handleCurrentIndexChanged(int index_);

private:
    struct privateData_t;
    const std::unique_ptr<privateData_t> m_d;
};
} // namespace zorbin_qt_gui
