#include "sounderPanel.h"
#include "indicator.h"
#include "labels.h"
#include "passingWheel.h"
#include "theme.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <numeric>

using zorbin_qt_gui::indicator_t;

namespace survey_console {
namespace {

const double DRIFT_INTERVAL = 120.0;                  // s of the replay
const int LAMP_SIZE = 14;                             // px
const int LONGEST_WAIT = 2 * sounder_t::ANSWER_DELAY; // ms for an answer

} // namespace

sounderPanel_t::sounderPanel_t(QWidget* parent)
    : QWidget(parent), m_layout(new QGridLayout(this)),
      m_stateLabel(makeLabel(theme::quietText(), 0.9, Qt::AlignLeft | Qt::AlignVCenter)),
      m_discardButton(new QPushButton(tr("Discard")))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setVerticalSpacing(4);
    m_layout->setColumnStretch(1, 1);
    auto* title = makeLabel(theme::text(), 1.1, Qt::AlignLeft | Qt::AlignVCenter);
    title->setText(QStringLiteral("%1 <span style=\"color:%2\">%3</span>")
                       .arg(tr("Sounder"), theme::quietText().name(), tr("simulated")));
    m_layout->addWidget(title, 0, 0, 1, 3);

    auto* transmit = new QCheckBox(tr("on"));
    transmit->setToolTip(tr("Whether the sounder transmits"));
    auto* pulse = new QComboBox;
    for (const char* name : sounder_t::PULSES)
        pulse->addItem(QString::fromUtf8(name));
    pulse->setToolTip(tr("Length of the pulse; the longest needs a range of %1 m or more")
                          .arg(sounder_t::MIN_LONG_RANGE));
    auto* gain = new QDoubleSpinBox;
    gain->setToolTip(tr("Gain of the receiver; drifts while the sounder warms up"));
    gain->setRange(0.0, 40.0);
    gain->setDecimals(1);
    gain->setSingleStep(0.5);
    gain->setSuffix(QStringLiteral(" dB"));
    gain->setKeyboardTracking(false);
    auto* range = new QSpinBox;
    range->setToolTip(tr("How far the sounder listens"));
    range->setRange(10, 200);
    range->setSingleStep(10);
    range->setSuffix(QStringLiteral(" m"));
    range->setKeyboardTracking(false);
    auto* power = new QSlider(Qt::Horizontal);
    power->setRange(0, 100);
    power->setPageStep(10);
    power->setTracking(false); // one request for a drag
    power->setToolTip(tr("Transmit power, up to 100 %"));
    auto* line = new QLineEdit;
    line->setToolTip(tr("Name that the sounder stores with its pings"));
    line->setMaxLength(40);

    using setting = sounder_t;
    transmit->setChecked(m_sounder.value(setting::SETTING_TRANSMIT).toBool());
    pulse->setCurrentIndex(m_sounder.value(setting::SETTING_PULSE).toInt());
    gain->setValue(m_sounder.value(setting::SETTING_GAIN).toDouble());
    range->setValue(m_sounder.value(setting::SETTING_RANGE).toInt());
    power->setValue(m_sounder.value(setting::SETTING_POWER).toInt());
    line->setText(m_sounder.value(setting::SETTING_LINE).toString());

    // Both sides begin with what the sounder has.
    m_binder.addCheckBoxWrapper(transmit->isChecked(), transmit->isChecked(),
                                addRow(tr("Transmit"), "transmit", transmit),
                                setting::SETTING_TRANSMIT, transmit);
    m_binder.addComboBoxWrapper(pulse->currentIndex(), pulse->currentIndex(),
                                addRow(tr("Pulse"), "pulse", pulse), setting::SETTING_PULSE, pulse);
    m_binder.addDoubleSpinBoxWrapper(gain->value(), gain->value(), addRow(tr("Gain"), "gain", gain),
                                     setting::SETTING_GAIN, gain);
    m_binder.addSpinBoxWrapper(range->value(), range->value(), addRow(tr("Range"), "range", range),
                               setting::SETTING_RANGE, range);
    m_binder.addSliderWrapper(power->value(), power->value(), addRow(tr("Power"), "power", power),
                              setting::SETTING_POWER, power);
    m_binder.addLineEditWrapper(line->text(), line->text(), addRow(tr("Line"), "line", line),
                                setting::SETTING_LINE, line);
    m_binder.setMatchColor(theme::running());
    m_binder.setMismatchColor(theme::alarm());
    m_binder.setInFlightColor(theme::paused());
    m_binder.initGui();

    m_stateLabel->setObjectName(QStringLiteral("sounderStateLabel"));
    m_discardButton->setObjectName(QStringLiteral("discardButton"));
    m_discardButton->setToolTip(tr("Take back what the sounder has refused"));
    m_discardButton->setFocusPolicy(Qt::TabFocus);
    auto* footer = new QHBoxLayout;
    footer->addWidget(m_stateLabel, 1);
    footer->addWidget(m_discardButton);
    m_layout->addLayout(footer, m_layout->rowCount(), 0, 1, 3);

    connect(&m_binder, &zorbin_qt_gui::spFbUiWrapper_t::setpointEdited, this,
            &sounderPanel_t::send);
    connect(&m_sounder, &sounder_t::reported, this, &sounderPanel_t::takeReport);
    connect(m_discardButton, &QPushButton::clicked, this, [this] {
        m_binder.resetGui();
        showState();
    });
    showState();
}

indicator_t* sounderPanel_t::addRow(const QString& name, const char* objectName, QWidget* widget)
{
    const int row = m_layout->rowCount();
    auto* label = makeLabel(theme::quietText(), 1.0, Qt::AlignLeft | Qt::AlignVCenter);
    label->setText(name);
    widget->setObjectName(QString::fromLatin1(objectName));
    letWheelPass(widget);
    auto* lamp = new indicator_t;
    lamp->setObjectName(widget->objectName() + QStringLiteral("Lamp"));
    lamp->setFixedSize(LAMP_SIZE, LAMP_SIZE);
    lamp->setToolTip(
        tr("Green: the sounder has this value; amber: asked for; red: it has another"));
    m_layout->addWidget(label, row, 0);
    m_layout->addWidget(widget, row, 1);
    m_layout->addWidget(lamp, row, 2);
    return lamp;
}

void sounderPanel_t::showTime(double seconds_)
{
    const int drifts = static_cast<int>(seconds_ / DRIFT_INTERVAL);
    for (; m_drifts < drifts; ++m_drifts)
        m_sounder.drift();
}

void sounderPanel_t::send(int setting)
{
    ++m_underWay[static_cast<std::size_t>(setting)];
    m_sounder.request(static_cast<sounder_t::setting_t>(setting), m_binder.setpointValue(setting));
    m_binder.setInFlight(setting, LONGEST_WAIT);
    showState();
}

void sounderPanel_t::takeReport(int setting, const QVariant& value, bool isAnswer)
{
    int& underWay = m_underWay[static_cast<std::size_t>(setting)];
    if (isAnswer)
        --underWay;
    m_binder.updateFeedback(static_cast<unsigned>(setting), value);
    if (isAnswer && underWay == 0 && !m_binder.spFbMatch(setting))
        m_binder.setInFlight(setting, 0); // refused: nothing to wait for is left
    showState();
}

void sounderPanel_t::showState()
{
    const bool isWaiting = std::accumulate(m_underWay.begin(), m_underWay.end(), 0) > 0;
    int refused = 0;
    for (int setting = 0; setting < sounder_t::SETTING_COUNT; ++setting) {
        if (m_underWay[static_cast<std::size_t>(setting)] == 0 && !m_binder.spFbMatch(setting))
            ++refused;
    }
    m_discardButton->setEnabled(refused > 0);
    if (isWaiting)
        m_stateLabel->setText(tr("waiting for an answer"));
    else if (refused > 0)
        m_stateLabel->setText(tr("%1 refused").arg(refused));
    else
        m_stateLabel->setText(tr("as set"));
    setTextColor(m_stateLabel, isWaiting     ? theme::paused()
                               : refused > 0 ? theme::alarm()
                                             : theme::quietText());
}

} // namespace survey_console
