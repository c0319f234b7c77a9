#pragma once
#include "zorbinQtGuiExport.h"

#include <QColor>
#include <QVariant>
#include <QWidget>
#include <memory>
#include <string>
#include <vector>

namespace zorbin_qt_gui {
class indicator_t;

/// One input widget bound by spFbUiWrapper_t, with its setpoint (what the operator asked for), its
/// feedback (what the equipment reported) and the lamp that shows whether they match.
///
/// Widget and lamp belong to the application. One that has been deleted is left out: the item keeps
/// its values. Copies refer to the same widget and lamp. GUI thread only.
class ZORBIN_QT_GUI_EXPORT spFbUiWrapperItem_t
{
public:
    /// Kinds of widgets that can be bound. What counts is a widget's exact class: one derived from
    /// these is not supported.
    enum supportedWidget_t
    {
        SW_UNSUPPORTED = 0,     ///< any other class
        SW_CHECK_BOX = 1,       ///< QCheckBox; its value is a bool
        SW_COMBO_BOX = 2,       ///< QComboBox; the index, an int
        SW_DOUBLE_SPIN_BOX = 3, ///< QDoubleSpinBox; a double
        SW_LINE_EDIT = 4,       ///< QLineEdit; a QString
        SW_SPIN_BOX = 5,        ///< QSpinBox; an int
        SW_SLIDER = 6           ///< QAbstractSlider, QDial or QSlider; an int
    };

    /// The class names of the widgets that can be bound.
    static const std::vector<std::string>& supportedWidgets();
    /// Whether \p widget can be bound.
    static bool isWidgetSupported(const QWidget* widget);
    /// The name of a widget's class.
    static std::string widgetType(const QWidget* widget);
    /// The kind of a widget.
    static supportedWidget_t widgetEnumType(const QWidget* widget);

    /// Binds \p widget and \p indicator, neither of which is changed yet, with green, red and
    /// yellow as the colours for match, mismatch and in flight.
    spFbUiWrapperItem_t(const QVariant& setpoint, const QVariant& feedback, indicator_t* indicator,
                        QWidget* widget);
    /// Copies values and colours; both items then drive the same widget and lamp.
    spFbUiWrapperItem_t(const spFbUiWrapperItem_t& other);
    /// Copies values and colours, too; the widget and the lamp that were bound stay as they are.
    spFbUiWrapperItem_t& operator=(const spFbUiWrapperItem_t& other);
    ~spFbUiWrapperItem_t();

    supportedWidget_t widgetEnumType() const; ///< The kind of the bound widget.
    QWidget* widget() const;                  ///< The bound widget; null once it is deleted.

    const QVariant& setpointValue() const; ///< What was asked for.
    const QVariant& feedbackValue() const; ///< What was reported last.
    /// Stores what was reported. The lamp stays as it is.
    void setFeedbackValue(const QVariant& value);
    /// Stores what is asked for and shows it in the widget, whose signals tell of the change. A
    /// value beyond the widget's range is shown as its nearest one. For an index that a combo box
    /// doesn't have, no entry is selected. A line edit's cursor goes to the end.
    void setSetpointAndWidgetValue(const QVariant& value);
    /// Shows the feedback in the widget; the setpoint follows only through the widget's signals.
    void reset();

    /// Whether setpoint and feedback are equal; for a QDoubleSpinBox whether they differ by less
    /// than 1e-6. Never for NaN or an unsupported widget.
    bool spFbMatch() const;
    /// Shows on the lamp whether the values match: in the colour of match or mismatch, without
    /// switching it, or without colour mode in the highlight colour, switched on where they differ.
    void updateIndicator();
    /// Shows on the lamp that a setpoint is on its way: in the colour for that, or without colour
    /// mode in the highlight colour. Doesn't switch it. Lasts until the next updateIndicator().
    void setInFlight();

    QColor matchColor() const;           ///< The lamp's colour for a match. Default: green.
    QColor mismatchColor() const;        ///< The lamp's colour for a mismatch. Default: red.
    QColor inFlightColor() const;        ///< The lamp's colour while in flight. Default: yellow.
    void setMatchColor(QColor color);    ///< Takes effect when the lamp is next updated.
    void setMismatchColor(QColor color); ///< Takes effect when the lamp is next updated.
    void setInFlightColor(QColor color); ///< Takes effect when the lamp is next updated.

    bool useColor() const;      ///< Whether colour mode is on. Default: true.
    void setUseColor(bool use); ///< Takes effect when the lamp is next updated.

private:
    struct privateData_t;
    std::unique_ptr<privateData_t> m_d;
};
} // namespace zorbin_qt_gui
