#include "spFbUiWrapper.h"

#include "indicator.h"
#include "qtCompat_p.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QSlider>
#include <QSpinBox>
#include <QThread>
#include <QTimer>
#include <algorithm>
#include <unordered_map>
#include <vector>

namespace zorbin_qt_gui {
namespace {

using items_t = std::map<int, spFbUiWrapperItem_t*>;

void requireHandles(const QWidget* widget, const indicator_t* indicator, int id,
                    const char* operation)
{
    if (widget == nullptr || indicator == nullptr)
        qFatal("spFbUiWrapper_t::%s: Cannot add id (%d) with null handle", operation, id);
}

// The number of event loops that run one inside the other.
int loopLevel()
{
    return QThread::currentThread()->loopLevel();
}

// Slots of the application may add and remove items, so loops that call them go by id.
std::vector<int> idsOf(const items_t& items)
{
    std::vector<int> ids;
    ids.reserve(items.size());
    for (const auto& entry : items)
        ids.push_back(entry.first);
    return ids;
}

} // namespace

struct spFbUiWrapper_t::privateData_t
{
    // While there is one, widgets follow what the equipment reported.
    class follower_t
    {
    public:
        explicit follower_t(privateData_t* data) : m_data(data)
        {
            m_data->following.push_back(loopLevel());
        }
        ~follower_t() { m_data->following.pop_back(); }
        Q_DISABLE_COPY(follower_t)

    private:
        privateData_t* const m_data;
    };

    // The item of an id; fatal in the name of the operation if there is none.
    spFbUiWrapperItem_t& item(int id, const char* operation) const
    {
        const auto found = items.find(id);
        if (found == items.end())
            qFatal("spFbUiWrapper_t::%s: id (%d) is not a ui element", operation, id);
        return *found->second;
    }

    // The widget that has an id; null if there is none, or if it is of another class.
    template <typename widget_t>
    const widget_t* widgetOf(int id) const
    {
        const auto found = widgets.find(id);
        return found == widgets.end() ? nullptr : qobject_cast<const widget_t*>(found->second);
    }

    void bind(const QObject* widget, int id)
    {
        unbind(widget);
        ids[widget] = id;
        widgets[id] = widget;
    }

    void unbind(const QObject* widget)
    {
        const auto found = ids.find(widget);
        if (found == ids.end())
            return;
        const auto same = widgets.find(found->second);
        if (same != widgets.end() && same->second == widget)
            widgets.erase(same);
        ids.erase(found);
    }

    // Shows match or mismatch, whether a setpoint is in flight or not.
    void endFlight(int id)
    {
        const auto found = flights.find(id);
        if (found != flights.end())
            found->second.stop();
        items.at(id)->updateIndicator();
    }

    bool isInFlight(int id) const
    {
        const auto found = flights.find(id);
        return found != flights.end() && found->second.isActive();
    }

    items_t items; // owned
    // Of items, not of all. An active timer: a setpoint is in flight for a time.
    std::map<int, QTimer> flights;
    // The loop level of each operation under way that has widgets follow. Operations that slots
    // call come behind the one whose signal they are called by.
    std::vector<int> following;
    // By widget that is there. A widget has the id that it was bound under last, if that was not
    // removed.
    std::unordered_map<const QObject*, int> ids;
    std::unordered_map<int, const QObject*> widgets; // the reverse
    // Deliberate: never written, so that the getters without an id return invalid colours.
    const QColor matchColor;
    const QColor mismatchColor;
    const QColor inFlightColor;
    bool useColor = true;
    QObject receiver; // of the widgets' signals, which end with it, before the fields above
};

spFbUiWrapper_t::spFbUiWrapper_t(QObject* parent)
    : QObject(parent), m_d(std::make_unique<privateData_t>())
{
}

spFbUiWrapper_t::~spFbUiWrapper_t()
{
    for (const auto& entry : m_d->items)
        delete entry.second;
}

void spFbUiWrapper_t::addCheckBoxWrapper(bool setpoint, bool feedback, indicator_t* indicator,
                                         int id, QCheckBox* widget)
{
    requireHandles(widget, indicator, id, "addCheckBoxWrapper");
    addWrapper(setpoint, feedback, indicator, id, widget);
}

void spFbUiWrapper_t::addComboBoxWrapper(int setpoint, int feedback, indicator_t* indicator, int id,
                                         QComboBox* widget)
{
    requireHandles(widget, indicator, id, "addComboBoxWrapper");
    addWrapper(setpoint, feedback, indicator, id, widget);
}

void spFbUiWrapper_t::addDoubleSpinBoxWrapper(double setpoint, double feedback,
                                              indicator_t* indicator, int id,
                                              QDoubleSpinBox* widget)
{
    requireHandles(widget, indicator, id, "addDoubleSpinBoxWrapper");
    addWrapper(setpoint, feedback, indicator, id, widget);
}

void spFbUiWrapper_t::addLineEditWrapper(QString setpoint, QString feedback, indicator_t* indicator,
                                         int id, QLineEdit* widget)
{
    requireHandles(widget, indicator, id, "addLineEditWrapper");
    addWrapper(setpoint, feedback, indicator, id, widget);
}

void spFbUiWrapper_t::addSpinBoxWrapper(int setpoint, int feedback, indicator_t* indicator, int id,
                                        QSpinBox* widget)
{
    requireHandles(widget, indicator, id, "addSpinBoxWrapper");
    addWrapper(setpoint, feedback, indicator, id, widget);
}

void spFbUiWrapper_t::addSliderWrapper(int setpoint, int feedback, indicator_t* indicator, int id,
                                       QAbstractSlider* widget)
{
    requireHandles(widget, indicator, id, "addSliderWrapper");
    addWrapper(setpoint, feedback, indicator, id, widget);
}

void spFbUiWrapper_t::addWrapper(const QVariant& setpoint, const QVariant& feedback,
                                 indicator_t* indicator, int id, QWidget* widget)
{
    if (idExists(id))
        qFatal("spFbUiWrapper_t::%s: id (%d) is already a ui element", "addWrapper", id);
    auto* const item = new spFbUiWrapperItem_t(setpoint, feedback, indicator, widget);
    m_d->items[id] = item;
    if (item->widgetEnumType() == spFbUiWrapperItem_t::SW_UNSUPPORTED)
        qFatal("spFbUiWrapper_t::%s: Unsupported widget type", "addWrapper");
    m_d->bind(widget, id);
    connect(widget, &QObject::destroyed, &m_d->receiver,
            [this](const QObject* gone) { m_d->unbind(gone); });
    // The connection stays when the id is removed. What counts is the id that the widget has when
    // it changes.
    const auto announce = [this](const auto* bound, auto changed, auto handler) {
        connect(bound, changed, &m_d->receiver, [this, bound, handler] {
            const auto found = m_d->ids.find(bound);
            if (found == m_d->ids.end())
                return;
            const int changedId = found->second;
            (this->*handler)(changedId); // before the signals: slots find setpoint and lamp right
            Q_EMIT valueChanged(changedId);
            if (idExists(changedId) && !isFollowing())
                Q_EMIT setpointEdited(changedId);
        });
    };
    using binder_t = spFbUiWrapper_t;
    if (const auto* const checkBox = qobject_cast<QCheckBox*>(widget))
        announce(checkBox, checkStateChanged, &binder_t::handleCheckBoxChanged);
    else if (const auto* const comboBox = qobject_cast<QComboBox*>(widget))
        announce(comboBox, qOverload<int>(&QComboBox::currentIndexChanged),
                 &binder_t::handleComboBoxChanged);
    else if (const auto* const doubleSpinBox = qobject_cast<QDoubleSpinBox*>(widget))
        announce(doubleSpinBox, qOverload<double>(&QDoubleSpinBox::valueChanged),
                 &binder_t::handleDoubleSpinBoxChanged);
    else if (const auto* const lineEdit = qobject_cast<QLineEdit*>(widget))
        announce(lineEdit, &QLineEdit::textChanged, &binder_t::handleLineEditChanged);
    else if (const auto* const spinBox = qobject_cast<QSpinBox*>(widget))
        announce(spinBox, qOverload<int>(&QSpinBox::valueChanged), &binder_t::handleSpinBoxChanged);
    else if (const auto* const slider = qobject_cast<QAbstractSlider*>(widget))
        announce(slider, &QAbstractSlider::valueChanged, &binder_t::handleSliderChanged);
}

void spFbUiWrapper_t::removeWrapper(int id)
{
    const spFbUiWrapperItem_t& item = m_d->item(id, "removeWrapper");
    m_d->unbind(item.widget()); // the widget's connection stays; without an id it does nothing
    m_d->flights.erase(id);
    delete &item;
    m_d->items.erase(id);
}

bool spFbUiWrapper_t::idExists(int id) const
{
    return m_d->items.count(id) != 0;
}

spFbUiWrapperItem_t& spFbUiWrapper_t::lookupWrapperItem(int id)
{
    return m_d->item(id, "lookupWrapperItem");
}

const spFbUiWrapperItem_t& spFbUiWrapper_t::lookupWrapperItem(int id) const
{
    return m_d->item(id, "lookupWrapperItem");
}

const std::map<int, spFbUiWrapperItem_t*>& spFbUiWrapper_t::wrappers() const
{
    return m_d->items;
}

QVariant spFbUiWrapper_t::setpointValue(int id) const
{
    return m_d->item(id, "setpointValue").setpointValue();
}

bool spFbUiWrapper_t::spFbMatch(int id) const
{
    return m_d->item(id, "spFbMatch").spFbMatch();
}

bool spFbUiWrapper_t::allSpFbMatch() const
{
    return std::all_of(m_d->items.begin(), m_d->items.end(),
                       [](const auto& entry) { return entry.second->spFbMatch(); });
}

void spFbUiWrapper_t::updateFeedback(unsigned int id, QVariant value)
{
    const int key = static_cast<int>(id);
    if (lookupWrapperItem(key).spFbMatch() && !m_d->isInFlight(key)) {
        const privateData_t::follower_t follower(m_d.get());
        lookupWrapperItem(key).setSetpointAndWidgetValue(value);
    }
    if (!idExists(key)) // a slot has removed it
        return;
    spFbUiWrapperItem_t& item = lookupWrapperItem(key);
    item.setFeedbackValue(value);
    if (m_d->isInFlight(key) && !item.spFbMatch())
        item.setInFlight();
    else
        m_d->endFlight(key);
}

bool spFbUiWrapper_t::isFollowing() const
{
    // In a loop that a slot runs, such as a dialog's, the operator may edit.
    return !m_d->following.empty() && m_d->following.back() == loopLevel();
}

void spFbUiWrapper_t::initGui()
{
    for (const int id : idsOf(m_d->items)) {
        const auto found = m_d->items.find(id);
        if (found == m_d->items.end())
            continue;
        switch (found->second->widgetEnumType()) {
        case spFbUiWrapperItem_t::SW_CHECK_BOX:
            handleCheckBoxChanged(id);
            break;
        case spFbUiWrapperItem_t::SW_COMBO_BOX:
            handleComboBoxChanged(id);
            break;
        case spFbUiWrapperItem_t::SW_DOUBLE_SPIN_BOX:
            handleDoubleSpinBoxChanged(id);
            break;
        case spFbUiWrapperItem_t::SW_LINE_EDIT:
            handleLineEditChanged(id);
            break;
        case spFbUiWrapperItem_t::SW_SPIN_BOX:
            handleSpinBoxChanged(id);
            break;
        case spFbUiWrapperItem_t::SW_SLIDER:
            handleSliderChanged(id);
            break;
        case spFbUiWrapperItem_t::SW_UNSUPPORTED:
            qFatal("spFbUiWrapper_t::%s: Unsupported widget type", "initGui");
        }
    }
}

void spFbUiWrapper_t::resetGui()
{
    const privateData_t::follower_t follower(m_d.get());
    for (const int id : idsOf(m_d->items)) {
        const auto found = m_d->items.find(id);
        if (found != m_d->items.end())
            found->second->reset();
    }
}

void spFbUiWrapper_t::setInFlight(int id)
{
    m_d->item(id, "setInFlight").setInFlight();
    const auto found = m_d->flights.find(id);
    if (found != m_d->flights.end())
        found->second.stop();
}

void spFbUiWrapper_t::setInFlight(int id, int timeoutMs)
{
    m_d->item(id, "setInFlight").setInFlight();
    const auto [entry, isNew] = m_d->flights.try_emplace(id);
    QTimer& timer = entry->second;
    if (isNew) {
        timer.setSingleShot(true);
        connect(&timer, &QTimer::timeout, this, [this, id] { m_d->endFlight(id); });
    }
    timer.start(std::max(timeoutMs, 0));
}

void spFbUiWrapper_t::setChangedItemsInFlight()
{
    for (const auto& entry : m_d->items) {
        if (!entry.second->spFbMatch())
            setInFlight(entry.first);
    }
}

void spFbUiWrapper_t::setAllItemsInFlight()
{
    for (const auto& entry : m_d->items)
        setInFlight(entry.first);
}

void spFbUiWrapper_t::setMatchColor(QColor color)
{
    setConditionColor(&spFbUiWrapperItem_t::setMatchColor, color);
}

void spFbUiWrapper_t::setMismatchColor(QColor color)
{
    setConditionColor(&spFbUiWrapperItem_t::setMismatchColor, color);
}

void spFbUiWrapper_t::setInFlightColor(QColor color)
{
    setConditionColor(&spFbUiWrapperItem_t::setInFlightColor, color);
}

QColor spFbUiWrapper_t::matchColor() const
{
    return m_d->matchColor;
}

QColor spFbUiWrapper_t::mismatchColor() const
{
    return m_d->mismatchColor;
}

QColor spFbUiWrapper_t::inFlightColor() const
{
    return m_d->inFlightColor;
}

void spFbUiWrapper_t::setMatchColor(QColor color, int id)
{
    setConditionColor(&spFbUiWrapperItem_t::setMatchColor, color, id);
}

void spFbUiWrapper_t::setMismatchColor(QColor color, int id)
{
    setConditionColor(&spFbUiWrapperItem_t::setMismatchColor, color, id);
}

void spFbUiWrapper_t::setInFlightColor(QColor color, int id)
{
    setConditionColor(&spFbUiWrapperItem_t::setInFlightColor, color, id);
}

QColor spFbUiWrapper_t::matchColor(int id) const
{
    return getConditionColor(&spFbUiWrapperItem_t::matchColor, id);
}

QColor spFbUiWrapper_t::mismatchColor(int id) const
{
    return getConditionColor(&spFbUiWrapperItem_t::mismatchColor, id);
}

QColor spFbUiWrapper_t::inFlightColor(int id) const
{
    return getConditionColor(&spFbUiWrapperItem_t::inFlightColor, id);
}

bool spFbUiWrapper_t::useColor() const
{
    return m_d->useColor;
}

void spFbUiWrapper_t::setUseColor(bool use)
{
    m_d->useColor = use;
    for (const auto& entry : m_d->items)
        entry.second->setUseColor(use);
}

void spFbUiWrapper_t::handleCheckBoxChanged(int id)
{
    if (const auto* const box = m_d->widgetOf<QCheckBox>(id))
        handleChanged(id, box->isChecked());
}

void spFbUiWrapper_t::handleComboBoxChanged(int id)
{
    if (const auto* const box = m_d->widgetOf<QComboBox>(id))
        handleChanged(id, box->currentIndex());
}

void spFbUiWrapper_t::handleDoubleSpinBoxChanged(int id)
{
    if (const auto* const box = m_d->widgetOf<QDoubleSpinBox>(id))
        handleChanged(id, box->value());
}

void spFbUiWrapper_t::handleLineEditChanged(int id)
{
    if (const auto* const edit = m_d->widgetOf<QLineEdit>(id))
        handleChanged(id, edit->text());
}

void spFbUiWrapper_t::handleSpinBoxChanged(int id)
{
    if (const auto* const box = m_d->widgetOf<QSpinBox>(id))
        handleChanged(id, box->value());
}

void spFbUiWrapper_t::handleSliderChanged(int id)
{
    if (const auto* const slider = m_d->widgetOf<QAbstractSlider>(id))
        handleChanged(id, slider->value());
}

// The widget of `id` shows `value`.
void spFbUiWrapper_t::handleChanged(int id, const QVariant& value)
{
    lookupWrapperItem(id).setSetpointAndWidgetValue(value);
    // Though the value stays, a line edit's cursor may have moved, and a slot have removed the
    // item.
    if (idExists(id))
        m_d->endFlight(id);
}

QColor spFbUiWrapper_t::getConditionColor(colorGetter_t getter, int id) const
{
    return (m_d->item(id, "getConditionColor").*getter)();
}

void spFbUiWrapper_t::setConditionColor(colorSetter_t setter, const QColor& color)
{
    for (const auto& entry : m_d->items)
        (entry.second->*setter)(color);
}

void spFbUiWrapper_t::setConditionColor(colorSetter_t setter, const QColor& color, int id)
{
    (m_d->item(id, "setConditionColor").*setter)(color);
}
} // namespace zorbin_qt_gui
