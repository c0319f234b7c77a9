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
/// What is pasted or dropped is understood as a whole or refused, see pasteRefused():
/// - A coordinate in another usual form is converted: 12°34.5'N, -12.575, +1234.5, 12-34.5S,
///   12d34m30sN, lat 12.575. Without a sign or a letter it keeps the hemisphere that is shown. A
///   number alone is a coordinate if the whole field is selected.
/// - Of a pair each editor takes its own half; see pairWith() for both. Pairs look like these:
///   12.575, -45.2; 12-34.5N 045-12.0W; geo:12.575,-45.2; POINT(-45.2 12.575).
/// - Any other text of digits and signs of the mask alone is typed over the field's digits, from
///   the cursor on.
///
/// Slots of all signals may delete the editor, alone or with the widgets around it. Its child
/// widgets then stay, hidden, until control is back in the event loop. A window, be it the editor
/// itself, needs deleteLater(): Qt still uses the window after an event of the user. GUI thread
/// only. \image html latLonEditors.png
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

    /// Makes this editor and \p other, not owned, the two of a position: a pair that is pasted or
    /// dropped in one of them is shown in both, first where it was pasted, unless the other one is
    /// disabled or read-only. Ends what pairs they belonged to before; null only does that. Either
    /// may be deleted first. Two latitudes or two longitudes are refused: nothing changes and a
    /// debug message is written. Default: null.
    void pairWith(latLonEditor_t* other);

Q_SIGNALS:
    /// What is shown is a coordinate and was set or typed, perhaps to the same value. While a
    /// notation or a hemisphere is being changed intermediate values may come first.
    void valueChanged(double value_);
    /// What is shown has become a coordinate, or ceased to be one. Valid at first.
    void valueValidityChanged(bool valid_);
    /// A text was pasted or dropped, by key, menu, middle button or mouse, and is no coordinate for
    /// this field, or its digits make none where they are typed. The field stays as it was. After
    /// the signal the field's base takes the palette's QPalette::Highlight for 200 ms, or until
    /// valueValidityChanged(); then it is what it was, or has been set to since.
    void pasteRefused(const QString& text_);

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
