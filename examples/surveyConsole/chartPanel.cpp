#include "chartPanel.h"
#include "labels.h"
#include "stripChart.h"
#include "stripChartCurve.h"
#include "texts.h"
#include "theme.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <cmath>

using zorbin_qt_gui::stripChart_t;
using zorbin_qt_gui::stripChartCurve_t;

namespace survey_console {
namespace {

QColor dimmed(const QColor& color)
{
    const QColor back = theme::panel();
    return {(color.red() + 2 * back.red()) / 3, (color.green() + 2 * back.green()) / 3,
            (color.blue() + 2 * back.blue()) / 3};
}

} // namespace

chartPanel_t::chartPanel_t(const chartPanelSetup_t& setup, const recording_t& recording,
                           QWidget* parent)
    : QFrame(parent), m_setup(setup), m_chart(new stripChart_t(this)),
      m_topLabel(makeLabel(theme::quietText(), 0.9, Qt::AlignRight | Qt::AlignTop)),
      m_bottomLabel(makeLabel(theme::quietText(), 0.9, Qt::AlignRight | Qt::AlignBottom)),
      m_leftLabel(makeLabel(theme::quietText(), 0.9, Qt::AlignLeft)),
      m_rightLabel(makeLabel(theme::quietText(), 0.9, Qt::AlignRight)),
      m_pointerLabel(makeLabel(theme::text(), 1.0, Qt::AlignCenter))
{
    setFrameShape(QFrame::StyledPanel);
    setBackground(this, theme::panel());
    m_topLabel->setObjectName(QStringLiteral("topLabel"));
    m_bottomLabel->setObjectName(QStringLiteral("bottomLabel"));
    m_leftLabel->setObjectName(QStringLiteral("leftLabel"));
    m_rightLabel->setObjectName(QStringLiteral("rightLabel"));
    m_pointerLabel->setObjectName(QStringLiteral("pointerLabel"));
    m_pointerLabel->setToolTip(tr("Time (UTC) and value under the pointer"));
    // One width for all panels, so that charts above one another share their time axis.
    const int boundsWidth = m_topLabel->fontMetrics().horizontalAdvance(QStringLiteral("00000.0"));
    m_topLabel->setFixedWidth(boundsWidth);
    m_bottomLabel->setFixedWidth(boundsWidth);

    auto* header = new QHBoxLayout;
    header->setSpacing(16);
    auto* title = makeLabel(theme::text(), 1.1, Qt::AlignLeft | Qt::AlignVCenter);
    title->setText(QStringLiteral("%1 <span style=\"color:%2\">%3</span>")
                       .arg(m_setup.title, theme::quietText().name(), m_setup.unit));
    header->addWidget(title);
    header->addStretch();
    for (const panelCurve_t& curve : m_setup.curves) {
        if (recording.channel(curve.channel).samples.empty())
            continue;
        auto* name = makeLabel(theme::quietText(), 0.9, Qt::AlignRight | Qt::AlignVCenter);
        name->setText(curve.name);
        auto* value = makeLabel(curve.color, 1.6, Qt::AlignRight | Qt::AlignVCenter);
        value->setObjectName(QStringLiteral("valueLabel%1").arg(m_curves.size()));
        value->setMinimumWidth(value->fontMetrics().horizontalAdvance(QStringLiteral("0000.0")));
        auto* pair = new QHBoxLayout;
        pair->setSpacing(6);
        pair->addWidget(name);
        pair->addWidget(value);
        header->addLayout(pair);
        addCurve(curve, recording, value);
    }
    if (m_curves.empty()) {
        auto* missing = makeLabel(theme::quietText(), 1.6, Qt::AlignRight | Qt::AlignVCenter);
        missing->setObjectName(QStringLiteral("missingLabel"));
        missing->setText(tr("not recorded"));
        header->addWidget(missing);
    } else if (m_setup.hasZeroLine) {
        addZeroLine(recording.startTime(), recording.endTime());
    }

    auto* footer = new QHBoxLayout;
    footer->addWidget(m_leftLabel, 1);
    footer->addWidget(m_pointerLabel, 2);
    footer->addWidget(m_rightLabel, 1);

    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(10, 4, 10, 6);
    layout->setVerticalSpacing(3);
    layout->addLayout(header, 0, 0, 1, 2);
    layout->addWidget(m_topLabel, 1, 0, Qt::AlignTop);
    layout->addWidget(m_bottomLabel, 2, 0, Qt::AlignBottom);
    layout->addWidget(m_chart, 1, 1, 2, 1);
    layout->addLayout(footer, 3, 1);
    layout->setRowStretch(1, 1);
    layout->setRowStretch(2, 1);
    layout->setColumnStretch(1, 1);

    m_chart->setBackgroundColor(theme::chart());
    m_chart->minValueRange(m_setup.minRange);
    m_chart->installEventFilter(this);
    connect(m_chart, &stripChart_t::timeBoundsChanged, this, &chartPanel_t::showTimeBounds);
    connect(m_chart, &stripChart_t::valueBoundsChanged, this, &chartPanel_t::showValueBounds);
    connect(m_chart, &stripChart_t::mousePos, this, &chartPanel_t::showPointer);
    showValueBounds(m_chart->minValueBound(), m_chart->maxValueBound());
    showValues();
}

chartPanel_t::~chartPanel_t() = default;

void chartPanel_t::addCurve(const panelCurve_t& wanted, const recording_t& recording,
                            QLabel* valueLabel)
{
    const channel_t& channel = recording.channel(wanted.channel);
    shownCurve_t shown;
    shown.samples = channel.samples;
    if (m_setup.isAngle) { // all curves on the same turn
        const shownCurve_t& reference = m_curves.empty() ? shown : m_curves.front();
        shown.samples = unwrapped(channel.samples, reference.samples.front().value);
    }
    if (m_setup.isDepth) {
        for (sample_t& sample : shown.samples)
            sample.value = -sample.value;
    }
    shown.gap = gapThreshold(channel.samples);
    shown.color = wanted.color;
    shown.curve = new stripChartCurve_t;
    shown.curve->color(wanted.color);
    shown.curve->gapThreshold(shown.gap);
    m_chart->addCurve(shown.curve);
    shown.valueLabel = valueLabel;
    valueLabel->setToolTip(tr("Current value from %1; dimmed when it is older than %2 s")
                               .arg(channel.source, valueText(shown.gap, 1)));
    m_curves.push_back(std::move(shown));
}

// One line all along the recording. Its ends alone take part in autoscale.
void chartPanel_t::addZeroLine(double from, double to)
{
    auto* line = new stripChartCurve_t;
    m_chart->addCurve(line);
    line->color(theme::zeroLine());
    line->dataDuration(to - from + 1.0);
    line->gapThreshold(to - from + 1.0);
    line->addPoint(from, 0.0, theme::zeroLine());
    line->addPoint(to, 0.0, theme::zeroLine());
}

void chartPanel_t::showTime(double time_)
{
    m_time = time_;
    feed();
    m_chart->scrollTime(time_);
    showValues();
}

void chartPanel_t::jumpTo(double time_)
{
    if (time_ < m_time) {
        for (shownCurve_t& shown : m_curves) {
            shown.curve->clear();
            shown.next = 0;
        }
    }
    m_time = time_;
    feed();
    // scrollTime() doesn't go back within its window.
    m_chart->timeBounds(time_ - m_span, time_);
    showValues();
}

void chartPanel_t::timeSpan(double seconds_)
{
    m_span = seconds_;
    m_chart->timeBounds(m_time - m_span, m_time);
}

// A chart takes over a new width at the next change of its time bounds; until then it would scroll
// by the old scale.
bool chartPanel_t::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_chart && event->type() == QEvent::Resize) // its drawing area follows later
        QMetaObject::invokeMethod(this, &chartPanel_t::anchorWindow, Qt::QueuedConnection);
    return QFrame::eventFilter(watched, event);
}

// Ends the time window at the time shown, as a change even if it does so already.
void chartPanel_t::anchorWindow()
{
    m_chart->timeBounds(m_time - m_span, m_time + 1.0);
    m_chart->timeBounds(m_time - m_span, m_time);
}

// Adds the samples up to m_time, each curve's in one batch.
void chartPanel_t::feed()
{
    for (shownCurve_t& shown : m_curves) {
        std::deque<stripChartCurve_t::point_t> points;
        for (; shown.next < shown.samples.size(); ++shown.next) {
            const sample_t& sample = shown.samples[shown.next];
            if (sample.time > m_time)
                break;
            points.emplace_back(sample.time, sample.value, shown.color);
        }
        if (!points.empty())
            shown.curve->addPoints(std::move(points));
    }
}

void chartPanel_t::showValues()
{
    for (const shownCurve_t& shown : m_curves) {
        if (shown.next == 0) {
            shown.valueLabel->setText(noValueText());
            setTextColor(shown.valueLabel, dimmed(shown.color));
            continue;
        }
        const sample_t& newest = shown.samples[shown.next - 1];
        shown.valueLabel->setText(textOf(newest.value));
        const bool isCurrent = m_time - newest.time <= shown.gap;
        setTextColor(shown.valueLabel, isCurrent ? shown.color : dimmed(shown.color));
    }
}

void chartPanel_t::showTimeBounds(double left, double right)
{
    m_leftLabel->setText(timeText(left));
    m_rightLabel->setText(timeText(right));
}

void chartPanel_t::showValueBounds(double bottom, double top)
{
    if (m_curves.empty())
        return; // the scale of nothing
    m_bottomLabel->setText(textOf(bottom));
    m_topLabel->setText(textOf(top));
}

void chartPanel_t::showPointer(double time, double value)
{
    if (std::isnan(time)) { // it has left
        m_pointerLabel->clear();
        return;
    }
    const QString unit = m_setup.unit == QStringLiteral("\u00b0") ? m_setup.unit // stands close
                                                                  : ' ' + m_setup.unit;
    m_pointerLabel->setText(timeText(time, 1) + QStringLiteral("  ") + textOf(value) + unit);
}

QString chartPanel_t::textOf(double drawnValue) const
{
    if (m_setup.isAngle)
        return angleText(drawnValue, m_setup.decimals);
    return valueText(m_setup.isDepth ? -drawnValue : drawnValue, m_setup.decimals);
}

} // namespace survey_console
