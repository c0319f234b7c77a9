#include "chartPanel.h"
#include "colorPicker.h"
#include "labels.h"
#include "palette.h"
#include "paletteChooser.h"
#include "stripChart.h"
#include "stripChartCurve.h"
#include "texts.h"
#include "theme.h"
#include "valueRuler.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QToolButton>
#include <algorithm>
#include <cmath>
#include <memory>

using zorbin_qt_gui::colorPicker_t;
using zorbin_qt_gui::stripChart_t;
using zorbin_qt_gui::stripChartCurve_t;

namespace survey_console {
namespace {

const QSize PICKER_ICON_SIZE(12, 12);

QColor dimmed(const QColor& color)
{
    const QColor back = theme::panel();
    return {(color.red() + 2 * back.red()) / 3, (color.green() + 2 * back.green()) / 3,
            (color.blue() + 2 * back.blue()) / 3};
}

valueRuler_t::kind_t rulerKind(const chartPanelSetup_t& setup)
{
    if (setup.isDepth)
        return valueRuler_t::KIND_DEPTH;
    return setup.isAngle ? valueRuler_t::KIND_ANGLE : valueRuler_t::KIND_PLAIN;
}

// A chart paints its curves in the order of their addresses. Made together and taken in that order,
// each lies over the one before, in every run.
std::vector<std::unique_ptr<stripChartCurve_t>> curvesInPaintingOrder(std::size_t count)
{
    std::vector<std::unique_ptr<stripChartCurve_t>> curves(count);
    for (auto& curve : curves)
        curve = std::make_unique<stripChartCurve_t>();
    std::sort(curves.begin(), curves.end()); // by address
    return curves;
}

} // namespace

chartPanel_t::chartPanel_t(const chartPanelSetup_t& setup, const recording_t& recording,
                           QWidget* parent)
    : QFrame(parent), m_setup(setup), m_chart(new stripChart_t(this)),
      m_valueRuler(new valueRuler_t(rulerKind(m_setup))),
      m_pointerLabel(makeLabel(theme::text(), 1.0, Qt::AlignCenter))
{
    setFrameShape(QFrame::StyledPanel);
    setBackground(this, theme::panel());
    m_pointerLabel->setObjectName(QStringLiteral("pointerLabel"));
    m_pointerLabel->setToolTip(tr("Time (UTC) and value under the pointer"));
    // The chart keeps its height when a read-out comes.
    m_pointerLabel->setMinimumHeight(m_pointerLabel->fontMetrics().height());
    auto* header = new QHBoxLayout;
    header->setSpacing(16);
    auto* title = makeLabel(theme::text(), 1.1, Qt::AlignLeft | Qt::AlignVCenter);
    title->setText(QStringLiteral("%1 <span style=\"color:%2\">%3</span>")
                       .arg(m_setup.title, theme::quietText().name(), m_setup.unit));
    header->addWidget(title);
    header->addStretch();
    if (m_setup.hasPalette && !recording.channel(m_setup.curves.front().channel).samples.empty())
        header->addWidget(makePaletteChooser(recording));
    auto curves = curvesInPaintingOrder(m_setup.curves.size() + 1);
    for (const panelCurve_t& curve : m_setup.curves) {
        if (recording.channel(curve.channel).samples.empty())
            continue;
        auto* name = makeLabel(theme::quietText(), 0.9, Qt::AlignRight | Qt::AlignVCenter);
        name->setText(curve.name);
        auto* value = makeLabel(curve.color, 1.6, Qt::AlignRight | Qt::AlignVCenter);
        value->setObjectName(QStringLiteral("valueLabel%1").arg(m_curves.size()));
        value->setMinimumWidth(value->fontMetrics().horizontalAdvance(QStringLiteral("0000.0")));
        auto* legend = new QHBoxLayout;
        legend->setSpacing(6);
        legend->addWidget(makeColorPicker(m_curves.size(), curve.color));
        legend->addWidget(name);
        legend->addWidget(value);
        header->addLayout(legend);
        addCurve(curve, recording, curves[m_curves.size()].release(), value);
    }
    if (m_curves.empty()) {
        auto* missing = makeLabel(theme::quietText(), 1.6, Qt::AlignRight | Qt::AlignVCenter);
        missing->setObjectName(QStringLiteral("missingLabel"));
        missing->setText(tr("not recorded"));
        header->addWidget(missing);
    } else if (m_setup.hasZeroLine) {
        addZeroLine(recording.startTime(), recording.endTime(), curves.back().release());
    }

    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(10, 2, 10, 3);
    layout->setHorizontalSpacing(0);
    layout->setVerticalSpacing(3);
    layout->addLayout(header, 0, 0, 1, 2);
    layout->addWidget(m_valueRuler, 1, 0);
    layout->addWidget(m_chart, 1, 1);
    if (!m_curves.empty())
        layout->addWidget(makeAutoscaleButton(), 2, 0);
    layout->addWidget(m_pointerLabel, 2, 1);
    layout->setRowStretch(1, 1);
    layout->setColumnMinimumWidth(0, m_valueRuler->sizeHint().width());
    layout->setColumnStretch(1, 1);

    m_chart->setBackgroundColor(theme::chart());
    m_chart->minValueRange(m_setup.minRange);
    m_chart->installEventFilter(this);
    connect(m_chart, &stripChart_t::mousePos, this, &chartPanel_t::showPointer);
    if (!m_curves.empty()) { // else there is nothing to measure
        connect(m_chart, &stripChart_t::valueBoundsChanged, m_valueRuler, &valueRuler_t::follow);
        connect(m_valueRuler, &valueRuler_t::scaleChosen, m_chart, &stripChart_t::valueBounds);
        m_valueRuler->interactive(true);
        m_valueRuler->setCursor(Qt::SplitVCursor);
        m_valueRuler->setToolTip(tr("Drag to choose the scale, click to centre it, double-click "
                                    "to show twice as much"));
        m_valueRuler->follow(m_chart->minValueBound(), m_chart->maxValueBound());
    }
    if (m_chooser)
        applyPalette();
    showValues();
    showMessage();
}

chartPanel_t::~chartPanel_t() = default;

void chartPanel_t::addCurve(const panelCurve_t& wanted, const recording_t& recording,
                            stripChartCurve_t* curve, QLabel* valueLabel)
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
    shown.curve = curve;
    shown.curve->color(wanted.color);
    shown.curve->gapThreshold(shown.gap);
    m_chart->addCurve(shown.curve);
    shown.valueLabel = valueLabel;
    valueLabel->setToolTip(tr("Current value from %1; dimmed when it is older than %2 s")
                               .arg(channel.source, valueText(shown.gap, 1)));
    m_curves.push_back(std::move(shown));
}

QWidget* chartPanel_t::makeColorPicker(std::size_t index, const QColor& color)
{
    auto* picker = new colorPicker_t(QColor(), this);
    picker->setObjectName(QStringLiteral("colorPicker%1").arg(index));
    picker->setToolTip(tr("Colour of the curve: click to change it"));
    picker->setAutoRaise(true);
    picker->setIconSize(PICKER_ICON_SIZE); // before the icon is made
    picker->selectedColor(color);
    connect(picker, &colorPicker_t::selectedColorChanged, this,
            [this, index](const QColor& chosen) { changeColor(index, chosen); });
    return picker;
}

QWidget* chartPanel_t::makePaletteChooser(const recording_t& recording)
{
    const panelCurve_t& curve = m_setup.curves.front();
    m_colorRange = roundRange(recording.channel(curve.channel).samples, m_setup.minRange);
    m_chooser = new paletteChooser_t(m_colorRange, m_setup.unit, curve.color, this);
    // All headers have the height of their values, so that charts side by side stand level.
    m_chooser->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Ignored);
    connect(m_chooser, &paletteChooser_t::paletteChanged, this, [this] {
        applyPalette();
        feedAnew(m_curves.front());
        showValues();
    });
    connect(m_chooser, &paletteChooser_t::messageChanged, this, &chartPanel_t::showMessage);
    return m_chooser;
}

// One line all along the recording. Its ends alone take part in autoscale.
void chartPanel_t::addZeroLine(double from, double to, stripChartCurve_t* line)
{
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
            points.emplace_back(sample.time, sample.value, pointColor(shown, sample.value));
        }
        if (!points.empty())
            shown.curve->addPoints(std::move(points));
    }
}

// A curve that is given a colour is no longer coloured by value.
void chartPanel_t::changeColor(std::size_t index, const QColor& color)
{
    shownCurve_t& shown = m_curves[index];
    shown.color = color;
    shown.curve->color(color);
    if (m_chooser && index == 0)
        m_chooser->chooseOneColor(color);
    feedAnew(shown);
    showValues();
}

void chartPanel_t::applyPalette()
{
    if (const zorbin_qt_gui::palette_t* palette = m_chooser->palette()) {
        m_colorer.setPalette(*palette);
        m_colorer.setRangeValues(static_cast<float>(m_colorRange.min),
                                 static_cast<float>(m_colorRange.max));
    }
}

// Draws the curve's past in the colours that hold now: each point has its own. The scale stays as
// it is, which is right for the same points; following the data it would lose its place when there
// are none for a moment.
void chartPanel_t::feedAnew(shownCurve_t& shown)
{
    const bool followsData = m_chart->autoscaleValue();
    m_chart->autoscaleValue(false);
    shown.curve->clear();
    shown.next = 0;
    feed();
    m_chart->autoscaleValue(followsData);
}

bool chartPanel_t::isColoredByValue(const shownCurve_t& shown) const
{
    return m_chooser && m_chooser->palette() && &shown == &m_curves.front();
}

QColor chartPanel_t::pointColor(const shownCurve_t& shown, double drawnValue) const
{
    if (!isColoredByValue(shown))
        return shown.color;
    return m_colorer.color(static_cast<float>(m_setup.isDepth ? -drawnValue : drawnValue));
}

// The colour of a curve's current value. One that changes with the value would be restless.
QColor chartPanel_t::legendColor(const shownCurve_t& shown) const
{
    return isColoredByValue(shown) ? theme::text() : shown.color;
}

void chartPanel_t::showValues()
{
    for (const shownCurve_t& shown : m_curves) {
        const QColor color = legendColor(shown);
        if (shown.next == 0) {
            shown.valueLabel->setText(noValueText());
            setTextColor(shown.valueLabel, dimmed(color));
            continue;
        }
        const sample_t& newest = shown.samples[shown.next - 1];
        shown.valueLabel->setText(textOf(newest.value));
        const bool isCurrent = m_time - newest.time <= shown.gap;
        setTextColor(shown.valueLabel, isCurrent ? color : dimmed(color));
    }
}

QWidget* chartPanel_t::makeAutoscaleButton()
{
    m_autoscaleButton = new QToolButton;
    m_autoscaleButton->setObjectName(QStringLiteral("autoscaleButton"));
    m_autoscaleButton->setText(tr("Auto"));
    m_autoscaleButton->setCheckable(true);
    m_autoscaleButton->setFocusPolicy(Qt::TabFocus);
    m_autoscaleButton->setFont(m_valueRuler->font());
    m_autoscaleButton->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
    connect(m_autoscaleButton, &QToolButton::clicked, m_chart,
            [this](bool checked) { m_chart->autoscaleValue(checked); });
    connect(m_chart, &stripChart_t::valueAutoscaleChanged, this, &chartPanel_t::showAutoscale);
    showAutoscale(m_chart->autoscaleValue());
    return m_autoscaleButton;
}

void chartPanel_t::showAutoscale(bool enabled)
{
    m_autoscaleButton->setChecked(enabled);
    m_autoscaleButton->setToolTip(enabled ? tr("The scale follows the data; click to hold it")
                                          : tr("The scale is held; click to follow the data (A)"));
    QPalette palette = m_autoscaleButton->palette();
    palette.setColor(QPalette::ButtonText, enabled ? theme::quietText() : theme::paused());
    m_autoscaleButton->setPalette(palette);
}

void chartPanel_t::showPointer(double time, double value)
{
    m_hasPointer = !std::isnan(time);
    Q_EMIT pointed(time);
    if (!m_hasPointer) { // it has left
        m_valueRuler->clearIndicator();
        showMessage();
        return;
    }
    if (!m_curves.empty())
        m_valueRuler->indicator(value);
    const QString unit = m_setup.unit == QStringLiteral("\u00b0") ? m_setup.unit // stands close
                                                                  : ' ' + m_setup.unit;
    m_pointerLabel->setText(timeText(time, 1) + QStringLiteral("  ") + textOf(value) + unit);
    setTextColor(m_pointerLabel, theme::text());
}

void chartPanel_t::showMessage()
{
    if (m_hasPointer)
        return; // once it has left
    m_pointerLabel->setText(m_chooser ? m_chooser->message() : QString());
    setTextColor(m_pointerLabel, theme::paused());
}

QString chartPanel_t::textOf(double drawnValue) const
{
    if (m_setup.isAngle)
        return angleText(drawnValue, m_setup.decimals);
    return valueText(m_setup.isDepth ? -drawnValue : drawnValue, m_setup.decimals);
}

} // namespace survey_console
