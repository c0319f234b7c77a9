#include "spFbUiWrapperItem.h"

#include "indicator.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QPalette>
#include <QPointer>
#include <QSlider>
#include <QSpinBox>
#include <algorithm>
#include <cmath>

namespace zorbin_qt_gui {
namespace {

const QColor DEFAULT_MATCH_COLOR = Qt::green;
const QColor DEFAULT_MISMATCH_COLOR = Qt::red;
const QColor DEFAULT_IN_FLIGHT_COLOR = Qt::yellow;

// A box that has lost its entries tells of a change again each time that "none" is selected (Qt 6),
// so a slot that writes back what it is told would be called without end. A text typed into an
// editable box gives way to its entry.
void selectEntry(QComboBox* box, int index)
{
    const int shown =
        box->model()->index(index, box->modelColumn(), box->rootModelIndex()).row(); // -1: none
    if (shown != box->currentIndex())
        box->setCurrentIndex(shown);
    else if (box->currentText() != box->itemText(shown))
        box->setEditText(box->itemText(shown));
}

} // namespace

struct spFbUiWrapperItem_t::privateData_t
{
    // Shows a value in the widget as far as it is still there.
    void show(const QVariant& value) const
    {
        if (widget == nullptr)
            return;
        switch (widgetType) {
        case SW_CHECK_BOX:
            static_cast<QCheckBox*>(widget.data())->setChecked(value.toBool());
            break;
        case SW_COMBO_BOX:
            selectEntry(static_cast<QComboBox*>(widget.data()), value.toInt());
            break;
        case SW_DOUBLE_SPIN_BOX:
            static_cast<QDoubleSpinBox*>(widget.data())->setValue(value.toDouble());
            break;
        case SW_LINE_EDIT:
            static_cast<QLineEdit*>(widget.data())->setText(value.toString());
            break;
        case SW_SPIN_BOX:
            static_cast<QSpinBox*>(widget.data())->setValue(value.toInt());
            break;
        case SW_SLIDER:
            static_cast<QAbstractSlider*>(widget.data())->setValue(value.toInt());
            break;
        case SW_UNSUPPORTED:
            break;
        }
    }

    QVariant setpoint;
    QVariant feedback;
    QPointer<indicator_t> indicator;
    QPointer<QWidget> widget;
    supportedWidget_t widgetType; // of the widget, also when that is gone
    QColor matchColor = DEFAULT_MATCH_COLOR;
    QColor mismatchColor = DEFAULT_MISMATCH_COLOR;
    QColor inFlightColor = DEFAULT_IN_FLIGHT_COLOR;
    QColor noColorColor =
        QApplication::palette().brush(QPalette::Current, QPalette::Highlight).color();
    bool useColor = true;
};

const std::vector<std::string>& spFbUiWrapperItem_t::supportedWidgets()
{
    static const std::vector<std::string> WIDGETS = {"QCheckBox", "QComboBox", "QDoubleSpinBox",
                                                     "QLineEdit", "QSpinBox",  "QAbstractSlider",
                                                     "QSlider",   "QDial"};
    return WIDGETS;
}

bool spFbUiWrapperItem_t::isWidgetSupported(const QWidget* widget)
{
    const std::vector<std::string>& names = supportedWidgets();
    return std::find(names.begin(), names.end(), widgetType(widget)) != names.end();
}

std::string spFbUiWrapperItem_t::widgetType(const QWidget* widget)
{
    return widget->metaObject()->className();
}

spFbUiWrapperItem_t::supportedWidget_t spFbUiWrapperItem_t::widgetEnumType(const QWidget* widget)
{
    const std::string name = widgetType(widget);
    if (name == "QCheckBox")
        return SW_CHECK_BOX;
    if (name == "QComboBox")
        return SW_COMBO_BOX;
    if (name == "QDoubleSpinBox")
        return SW_DOUBLE_SPIN_BOX;
    if (name == "QLineEdit")
        return SW_LINE_EDIT;
    if (name == "QSpinBox")
        return SW_SPIN_BOX;
    if (name == "QAbstractSlider" || name == "QDial" || name == "QSlider")
        return SW_SLIDER;
    return SW_UNSUPPORTED;
}

spFbUiWrapperItem_t::spFbUiWrapperItem_t(const QVariant& setpoint, const QVariant& feedback,
                                         indicator_t* indicator, QWidget* widget)
    : m_d(new privateData_t{setpoint, feedback, indicator, widget, widgetEnumType(widget)})
{
}

spFbUiWrapperItem_t::spFbUiWrapperItem_t(const spFbUiWrapperItem_t& other)
    : m_d(std::make_unique<privateData_t>(*other.m_d))
{
}

spFbUiWrapperItem_t& spFbUiWrapperItem_t::operator=(const spFbUiWrapperItem_t& other)
{
    if (this != &other)
        *m_d = *other.m_d;
    return *this;
}

spFbUiWrapperItem_t::~spFbUiWrapperItem_t() = default;

spFbUiWrapperItem_t::supportedWidget_t spFbUiWrapperItem_t::widgetEnumType() const
{
    return m_d->widgetType;
}

QWidget* spFbUiWrapperItem_t::widget() const
{
    return m_d->widget;
}

const QVariant& spFbUiWrapperItem_t::setpointValue() const
{
    return m_d->setpoint;
}

const QVariant& spFbUiWrapperItem_t::feedbackValue() const
{
    return m_d->feedback;
}

void spFbUiWrapperItem_t::setFeedbackValue(const QVariant& value)
{
    m_d->feedback = value;
}

void spFbUiWrapperItem_t::setSetpointAndWidgetValue(const QVariant& value)
{
    m_d->setpoint = value;
    m_d->show(value);
}

void spFbUiWrapperItem_t::reset()
{
    m_d->show(m_d->feedback);
}

bool spFbUiWrapperItem_t::spFbMatch() const
{
    switch (m_d->widgetType) {
    case SW_CHECK_BOX:
    case SW_COMBO_BOX:
    case SW_LINE_EDIT:
    case SW_SPIN_BOX:
    case SW_SLIDER:
        return m_d->setpoint == m_d->feedback;
    case SW_DOUBLE_SPIN_BOX:
        return std::abs(m_d->setpoint.toDouble() - m_d->feedback.toDouble()) < 1e-6;
    case SW_UNSUPPORTED:
        break;
    }
    return false;
}

void spFbUiWrapperItem_t::updateIndicator()
{
    if (m_d->indicator == nullptr)
        return;
    const bool matches = spFbMatch();
    if (m_d->useColor) {
        m_d->indicator->setColor(matches ? m_d->matchColor : m_d->mismatchColor);
        return;
    }
    m_d->indicator->setColor(m_d->noColorColor);
    m_d->indicator->setOn(!matches);
}

void spFbUiWrapperItem_t::setInFlight()
{
    if (m_d->indicator != nullptr)
        m_d->indicator->setColor(m_d->useColor ? m_d->inFlightColor : m_d->noColorColor);
}

QColor spFbUiWrapperItem_t::matchColor() const
{
    return m_d->matchColor;
}

QColor spFbUiWrapperItem_t::mismatchColor() const
{
    return m_d->mismatchColor;
}

QColor spFbUiWrapperItem_t::inFlightColor() const
{
    return m_d->inFlightColor;
}

void spFbUiWrapperItem_t::setMatchColor(QColor color)
{
    m_d->matchColor = color;
}

void spFbUiWrapperItem_t::setMismatchColor(QColor color)
{
    m_d->mismatchColor = color;
}

void spFbUiWrapperItem_t::setInFlightColor(QColor color)
{
    m_d->inFlightColor = color;
}

bool spFbUiWrapperItem_t::useColor() const
{
    return m_d->useColor;
}

void spFbUiWrapperItem_t::setUseColor(bool use)
{
    m_d->useColor = use;
}
} // namespace zorbin_qt_gui
