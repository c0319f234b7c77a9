#include "depthPanel.h"
#include "alarmLabel.h"
#include "labels.h"
#include "passingWheel.h"
#include "scalableTextWidget.h"
#include "texts.h"
#include "theme.h"

#include <QDoubleSpinBox>
#include <QGridLayout>
#include <algorithm>

using zorbin_qt_gui::alarmLabel_t;
using zorbin_qt_gui::scalableTextWidget_t;

namespace survey_console {
namespace {

const int READ_OUT_HEIGHT = 48;   // px
const QChar FIGURE_SPACE(0x2007); // as wide as a digit

} // namespace

depthPanel_t::depthPanel_t(const recording_t& recording, QWidget* parent)
    : QFrame(parent), m_depths(recording.channel(CHANNEL_DEPTH).samples),
      m_maxAge(gapThreshold(m_depths)), m_readOut(new scalableTextWidget_t),
      m_alarmLabel(new alarmLabel_t), m_alarmBox(new QDoubleSpinBox)
{
    setFrameShape(QFrame::StyledPanel);
    setBackground(this, theme::panel());
    for (const sample_t& depth : m_depths)
        m_width = std::max(m_width, static_cast<int>(valueText(depth.value, 1).size()));
    m_readOut->setObjectName(QStringLiteral("depthReadOut"));
    m_readOut->setFixedHeight(READ_OUT_HEIGHT);
    m_readOut->setToolTip(tr("Depth below the transducer"));
    m_alarmLabel->setObjectName(QStringLiteral("alarmLabel"));
    m_alarmLabel->setAlignment(Qt::AlignCenter);
    m_alarmLabel->flashFgColor(theme::chart());
    m_alarmLabel->flashBgColor(theme::alarm());
    m_alarmBox->setObjectName(QStringLiteral("alarmBox"));
    m_alarmBox->setToolTip(tr("Depth at which the alarm begins"));
    m_alarmBox->setRange(0.0, MAX_ALARM_DEPTH);
    m_alarmBox->setDecimals(1);
    m_alarmBox->setValue(DEFAULT_ALARM_DEPTH);
    m_alarmBox->setKeyboardTracking(false); // half a number is none
    letWheelPass(m_alarmBox);
    connect(m_alarmBox, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
            [this] { showTime(m_time); });

    auto* title = makeLabel(theme::text(), 1.1, Qt::AlignLeft | Qt::AlignVCenter);
    title->setText(QStringLiteral("%1 <span style=\"color:%2\">m</span>")
                       .arg(tr("Depth"), theme::quietText().name()));
    auto* alarmAt = makeLabel(theme::quietText(), 0.9, Qt::AlignLeft | Qt::AlignVCenter);
    alarmAt->setText(tr("alarm at"));
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(10, 3, 10, 6);
    layout->setVerticalSpacing(3);
    layout->addWidget(title, 0, 0, 1, 2);
    layout->addWidget(m_readOut, 1, 0, 1, 2);
    layout->addWidget(m_alarmLabel, 2, 0, 1, 2);
    layout->addWidget(alarmAt, 3, 0);
    layout->addWidget(m_alarmBox, 3, 1);
    layout->setColumnStretch(1, 1);
}

double depthPanel_t::alarmDepth() const
{
    return m_alarmBox->value();
}

void depthPanel_t::setAlarmDepth(double depth)
{
    m_alarmBox->setValue(depth);
}

void depthPanel_t::showTime(double time_)
{
    m_time = time_;
    const sample_t* newest = newestAt(m_depths, time_);
    const bool isCurrent = newest && time_ - newest->time <= m_maxAge;
    const QString text = isCurrent ? valueText(newest->value, 1) : noValueText();
    if (text != m_text) {
        m_text = text;
        // All as wide as the longest, so that the size of the figures stays.
        m_readOut->setText(text.rightJustified(m_width, FIGURE_SPACE));
    }
    m_isAlarmed = isCurrent && newest->value < m_alarmBox->value();
    m_alarmLabel->alarm(m_isAlarmed);
    m_alarmLabel->setText(m_isAlarmed ? tr("SHALLOW WATER")
                          : isCurrent ? tr("no alarm")
                                      : tr("no sounding"));
    setTextColor(m_alarmLabel, m_isAlarmed ? theme::alarm()
                               : isCurrent ? theme::quietText()
                                           : theme::paused());
}

} // namespace survey_console
