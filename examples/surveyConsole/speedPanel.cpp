#include "speedPanel.h"
#include "labels.h"
#include "passingWheel.h"
#include "slidingGauge.h"
#include "texts.h"
#include "theme.h"
#include "valueRuler.h"

#include <QDoubleSpinBox>
#include <QGridLayout>
#include <algorithm>
#include <cmath>

using zorbin_qt_gui::slidingGauge_t;

namespace survey_console {
namespace {

const double MIN_SCALE = 10.0; // kn
const double SPEED_STEP = 0.5; // kn
const int GAUGE_WIDTH = 28;    // px

const std::vector<sample_t>& speedsOf(const recording_t& recording)
{
    const auto& received = recording.channel(CHANNEL_SPEED).samples;
    return received.empty() ? recording.channel(CHANNEL_SPEED_MADE_GOOD).samples : received;
}

// A round end of the scale above all of a line's speeds, so that it never moves.
double scaleOf(const std::vector<sample_t>& speeds)
{
    double fastest = std::max(MIN_SCALE, speedPanel_t::DEFAULT_PLANNED_SPEED);
    for (const sample_t& speed : speeds)
        fastest = std::max(fastest, speed.value);
    return std::min(5.0 * std::ceil(fastest / 5.0), speedPanel_t::MAX_PLANNED_SPEED);
}

} // namespace

speedPanel_t::speedPanel_t(const recording_t& recording, QWidget* parent)
    : QFrame(parent), m_speeds(speedsOf(recording)), m_maxAge(gapThreshold(m_speeds)),
      m_gauge(new slidingGauge_t),
      m_speedLabel(makeLabel(theme::firstCurve(), 1.6, Qt::AlignRight | Qt::AlignVCenter)),
      m_plannedBox(new QDoubleSpinBox)
{
    setFrameShape(QFrame::StyledPanel);
    setBackground(this, theme::panel());
    m_gauge->setObjectName(QStringLiteral("speedGauge"));
    m_speedLabel->setObjectName(QStringLiteral("speedLabel"));
    m_plannedBox->setObjectName(QStringLiteral("plannedSpeedBox"));

    const double scale = scaleOf(m_speeds);
    auto* ruler = new valueRuler_t(valueRuler_t::KIND_PLAIN);
    ruler->setObjectName(QStringLiteral("speedRuler"));
    ruler->follow(0.0, scale);
    m_gauge->setRange(0.0, scale);
    m_gauge->showValue(false); // the label has decimals
    m_gauge->setFillColor(theme::accent());
    m_gauge->setLineColor(theme::secondCurve());
    m_gauge->setFixedWidth(GAUGE_WIDTH);
    setBackground(m_gauge, theme::chart());
    m_gauge->setToolTip(tr("Measured speed (bar) and planned speed (line)"));
    m_speedLabel->setToolTip(tr("Measured speed over ground"));

    m_plannedBox->setRange(0.0, scale);
    m_plannedBox->setDecimals(1);
    m_plannedBox->setSingleStep(SPEED_STEP);
    m_plannedBox->setToolTip(tr("Planned speed"));
    m_plannedBox->setKeyboardTracking(false); // half a number is none
    letWheelPass(m_plannedBox);
    connect(m_plannedBox, QOverload<double>::of(&QDoubleSpinBox::valueChanged), m_gauge,
            &slidingGauge_t::setSetpoint);
    m_plannedBox->setValue(DEFAULT_PLANNED_SPEED);

    auto* title = makeLabel(theme::text(), 1.1, Qt::AlignLeft | Qt::AlignVCenter);
    title->setText(QStringLiteral("%1 <span style=\"color:%2\">kn</span>")
                       .arg(tr("Speed"), theme::quietText().name()));
    auto* planned = makeLabel(theme::secondCurve(), 0.9, Qt::AlignLeft | Qt::AlignVCenter);
    planned->setText(tr("planned"));

    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(10, 3, 10, 6);
    layout->setHorizontalSpacing(0);
    layout->setVerticalSpacing(3);
    auto* header = new QHBoxLayout;
    header->addWidget(title);
    header->addWidget(m_speedLabel, 1);
    layout->addLayout(header, 0, 0, 1, 3);
    layout->addWidget(ruler, 1, 0);
    layout->addWidget(m_gauge, 1, 1);
    auto* footer = new QHBoxLayout;
    footer->setSpacing(6);
    footer->addWidget(planned);
    footer->addWidget(m_plannedBox, 1);
    layout->addLayout(footer, 2, 0, 1, 3);
    layout->setRowStretch(1, 1);
    layout->setColumnMinimumWidth(0, ruler->sizeHint().width());
    layout->setColumnStretch(2, 1);
}

double speedPanel_t::plannedSpeed() const
{
    return m_plannedBox->value();
}

void speedPanel_t::setPlannedSpeed(double speed)
{
    m_plannedBox->setValue(speed);
}

void speedPanel_t::showTime(double time_)
{
    const sample_t* newest = newestAt(m_speeds, time_);
    const bool isCurrent = newest && time_ - newest->time <= m_maxAge;
    m_gauge->setFeedback(isCurrent ? newest->value : 0.0);
    m_speedLabel->setText(isCurrent ? valueText(newest->value, 1) : noValueText());
}

} // namespace survey_console
