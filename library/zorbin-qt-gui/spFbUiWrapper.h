#pragma once
#include "spFbUiWrapperItem.h"
#include "zorbinQtGuiExport.h"

#include <QColor>
#include <QObject>
#include <QVariant>
#include <map>
#include <memory>

class QAbstractSlider;
class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLineEdit;
class QSpinBox;

namespace zorbin_qt_gui {
class indicator_t;

/// Binds the input widgets of a control panel, each under an id, to setpoints and feedback: it
/// records what the operator sets, shows on a lamp per widget whether the equipment agrees, and
/// lets widgets that were in step follow the equipment.
///
/// Use: register each widget with its lamp; call initGui(); on setpointEdited() send
/// setpointValue() to the equipment and call setInFlight(); on each report call updateFeedback().
/// Don't send on valueChanged(): that signal also tells of widgets that follow a report, so panel
/// and equipment would answer each other for ever.
///
/// Widgets and lamps belong to the application, which may delete them any time: a lamp that is gone
/// is left out, the item of a widget that is gone keeps its values. Widgets' signals are never
/// blocked. A wrong id, a null handle and a widget that isn't supported are fatal errors. Slots of
/// valueChanged() and setpointEdited() may delete lamps and other widgets, and add or remove items.
/// They must use `deleteLater()` for the binder and for the widget that changed. GUI thread only.
/// \image html spFbUiWrapper.png
class ZORBIN_QT_GUI_EXPORT spFbUiWrapper_t : public QObject
{
    Q_OBJECT

public:
    /// Makes a binder without widgets.
    explicit spFbUiWrapper_t(QObject* parent = nullptr);
    ~spFbUiWrapper_t() override;

    /// \name Registration
    /// Binds a widget under an id that is not taken, with the values that setpoint and feedback
    /// start from. Neither the widget nor the lamp is changed before initGui() or the first report.
    /// The widget's class must be exactly the one named.
    /// @{
    void addCheckBoxWrapper(bool setpoint, bool feedback, indicator_t* indicator, int id,
                            QCheckBox* widget); ///< Values are bools: whether it is checked.
    void addComboBoxWrapper(int setpoint, int feedback, indicator_t* indicator, int id,
                            QComboBox* widget); ///< Values are indices.
    void addDoubleSpinBoxWrapper(double setpoint, double feedback, indicator_t* indicator, int id,
                                 QDoubleSpinBox* widget); ///< Values match within 1e-6.
    void addLineEditWrapper(QString setpoint, QString feedback, indicator_t* indicator, int id,
                            QLineEdit* widget); ///< Values are texts.
    void addSpinBoxWrapper(int setpoint, int feedback, indicator_t* indicator, int id,
                           QSpinBox* widget); ///< Values are whole numbers.
    void addSliderWrapper(int setpoint, int feedback, indicator_t* indicator, int id,
                          QAbstractSlider* widget); ///< A QSlider, or a QDial.
    /// @}

    /// Unbinds a widget; it and its lamp stay as they are. A widget that is bound again announces
    /// each change once for every time that it has been bound.
    void removeWrapper(int id);
    /// Whether an id is taken.
    bool idExists(int id) const;
    /// The item of an id; owned by the binder and valid until it is removed.
    spFbUiWrapperItem_t& lookupWrapperItem(int id);
    const spFbUiWrapperItem_t& lookupWrapperItem(int id) const; ///< The same for a constant binder.
    /// All items by id; always up to date.
    const std::map<int, spFbUiWrapperItem_t*>& wrappers() const;

    QVariant setpointValue(int id) const; ///< What the operator asked for.
    bool spFbMatch(int id) const;         ///< Whether setpoint and feedback of a widget match.
    bool allSpFbMatch() const;            ///< Whether they match for all widgets.

    /// Takes a report of the equipment. A widget whose setpoint matched the feedback before follows
    /// it, unless it is in flight for a time; a widget with a pending edit stays. Updates the lamp.
    void updateFeedback(unsigned int id, QVariant value);
    /// Whether widgets follow the equipment: true in all signals that updateFeedback() and
    /// resetGui() cause, including those of other widgets that slots then change. False in an event
    /// loop that such a slot runs, as a dialog's exec() does: there the operator may edit.
    bool isFollowing() const;

    /// Takes all setpoints from the widgets and updates all lamps, in ascending order of ids.
    void initGui();
    /// Discards pending edits: shows the feedback in all widgets, in ascending order of ids.
    void resetGui();

    /// Shows on the lamp that the setpoint was sent, until the next report, edit or initGui().
    void setInFlight(int id);
    /// Shows on the lamp that the setpoint was sent, until a report matches it or \p timeoutMs ms
    /// are over. The lamp then shows match or mismatch. Until then the lamp keeps its colour and
    /// the widget its value through reports that differ from the setpoint. An edit and initGui()
    /// end the time early. Another call of setInFlight(), with or without a time, replaces it. With
    /// 0 ms or less the time is over when control returns to the event loop.
    void setInFlight(int id, int timeoutMs);
    void setChangedItemsInFlight(); ///< setInFlight(int) for all items that don't match.
    void setAllItemsInFlight();     ///< setInFlight(int) for all items.

    /// \name Colours of all items
    /// Set the colour of the items that there are; not of later ones. Lamps keep theirs until they
    /// are next updated. The getters return an invalid colour, whatever was set.
    /// @{
    void setMatchColor(QColor color);    ///< For a match. Default: green.
    void setMismatchColor(QColor color); ///< For a mismatch. Default: red.
    void setInFlightColor(QColor color); ///< For what is in flight. Default: yellow.
    QColor matchColor() const;           ///< Invalid, since items may differ.
    QColor mismatchColor() const;        ///< Invalid, since items may differ.
    QColor inFlightColor() const;        ///< Invalid, since items may differ.
    /// @}

    /// \name Colours of one item
    /// The lamp keeps its colour until it is next updated.
    /// @{
    void setMatchColor(QColor color, int id);    ///< For a match. Default: green.
    void setMismatchColor(QColor color, int id); ///< For a mismatch. Default: red.
    void setInFlightColor(QColor color, int id); ///< For what is in flight. Default: yellow.
    QColor matchColor(int id) const;             ///< For a match.
    QColor mismatchColor(int id) const;          ///< For a mismatch.
    QColor inFlightColor(int id) const;          ///< For what is in flight.
    /// @}

    /// The colour mode set last. Default: true.
    bool useColor() const;
    /// Sets the colour mode of the items that there are (spFbUiWrapperItem_t::updateIndicator());
    /// later ones begin with true. Lamps stay as they are until they are next updated.
    void setUseColor(bool use);

Q_SIGNALS:
    /// A bound widget has changed, whatever the reason; its setpoint is stored and its lamp
    /// updated.
    void valueChanged(int id);
    /// The operator has edited a bound widget. Sent after valueChanged() for every change of a
    /// widget but those that come while isFollowing(), and none if a slot has removed the item. A
    /// widget that the program changes counts as edited.
    void setpointEdited(int id);

private Q_SLOTS:
    void handleCheckBoxChanged(int id);
    void handleComboBoxChanged(int id);
    void handleDoubleSpinBoxChanged(int id);
    void handleLineEditChanged(int id);
    void handleSpinBoxChanged(int id);
    void handleSliderChanged(int id);

private:
    using colorGetter_t = QColor (spFbUiWrapperItem_t::*)() const;
    using colorSetter_t = void (spFbUiWrapperItem_t::*)(QColor);

    void addWrapper(const QVariant& setpoint, const QVariant& feedback, indicator_t* indicator,
                    int id, QWidget* widget);
    void handleChanged(int id, const QVariant& value);
    QColor getConditionColor(colorGetter_t getter, int id) const;
    void setConditionColor(colorSetter_t setter, const QColor& color);
    void setConditionColor(colorSetter_t setter, const QColor& color, int id);

    struct privateData_t;
    const std::unique_ptr<privateData_t> m_d;
};
} // namespace zorbin_qt_gui
