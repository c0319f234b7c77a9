#include "echogramPanel.h"
#include "labels.h"
#include "pingTimeAxis.h"
#include "pingView.h"
#include "texts.h"
#include "theme.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

using zorbin_qt_gui::palette_t;

namespace survey_console {
namespace {

const double FIRST_DEPTHS = 2.0; // times the greatest one found are shown at first
const double GAP_PINGS = 10.0;   // pings missing from which on it is a gap
const float FIRST_MIN = 0.5F;    // of the full level: above the noise
const float FIRST_MAX = 1.0F;

pingPanelSetup_t setup(const std::vector<echogram_t>& echograms)
{
    pingPanelSetup_t setup;
    setup.name = QStringLiteral("echogram");
    setup.title = echogramPanel_t::tr("Echogram");
    setup.unit = echogramPanel_t::tr("depth in m");
    setup.levels = echogramPanel_t::tr("as recorded");
    setup.scaleMin = 0.0F;
    setup.scaleMax = 0.0F;
    for (const echogram_t& echogram : echograms)
        setup.scaleMax = std::max(setup.scaleMax, echogram.record.fullLevel);
    setup.bins = 255;
    setup.firstMin = FIRST_MIN * setup.scaleMax;
    setup.firstMax = FIRST_MAX * setup.scaleMax;
    setup.palettes = {palette_t::SP_WATERCOLUMN, palette_t::SP_INTENSITY, palette_t::SP_SUBBOTTOM,
                      palette_t::SP_BATHY,       palette_t::SP_IMAGERY,   palette_t::SP_SIDESCAN};
    setup.range = echogramPanel_t::tr("Depth below the transducer (m)");
    setup.whole = echogramPanel_t::tr("Whole depth");
    return setup;
}

// 0.0 if it has found none.
double greatestDepth(const sonarRecord_t& record)
{
    double depth = 0.0;
    for (const ping_t& ping : record.pings)
        depth = std::max(depth, ping.depth); // NaN is greater than nothing
    return depth;
}

// From one ping to the next, in seconds.
double meanInterval(const sonarRecord_t& record)
{
    const double span = record.pings.back().time - record.pings.front().time;
    return span / static_cast<double>(record.pings.size());
}

QString depthText(double depth, int decimals)
{
    return std::isfinite(depth) ? echogramPanel_t::tr("%1 m").arg(valueText(depth, decimals))
                                : noValueText();
}

QString beamName(const echogram_t& echogram)
{
    const double frequency = echogram.record.frequency;
    return frequency > 0.0 ? echogramPanel_t::tr("%1 kHz").arg(frequency / 1000.0) : echogram.name;
}

} // namespace

echogramPanel_t::echogramPanel_t(const std::vector<echogram_t>& echograms, QWidget* parent)
    : pingPanel_t(setup(echograms), echograms.front().name, echograms.front().record, parent),
      m_echograms(echograms), m_timeAxis(new pingTimeAxis_t(model())), m_beamBox(new QComboBox)
{
    m_timeAxis->setObjectName(QStringLiteral("pingTimeAxis"));
    m_beamBox->setObjectName(QStringLiteral("beamBox"));
    m_beamBox->setToolTip(tr("The frequency of the echosounder"));
    for (const echogram_t& echogram : m_echograms)
        m_beamBox->addItem(beamName(echogram));
    for (int row = 0; row < m_beamBox->count(); ++row)
        m_beamBox->setItemData(row, m_echograms[static_cast<std::size_t>(row)].name,
                               Qt::ToolTipRole);
    addControl(m_beamBox);
    addBesideWaterfall(makeDepth());
    connect(m_beamBox, QOverload<int>::of(&QComboBox::activated), this,
            &echogramPanel_t::chooseBeam);
    connect(this, &echogramPanel_t::pingsShown, this, &echogramPanel_t::showPings);
    connect(view(), &pingView_t::pointedItemChanged, m_timeAxis, &pingTimeAxis_t::point);
    m_timeAxis->setGap(GAP_PINGS * meanInterval(record()));
    renderer()->showDepth(true);
    arrange(Qt::Horizontal, m_timeAxis);
    const double depth = greatestDepth(record());
    if (depth > 0.0)
        chooseBounds(0.0, FIRST_DEPTHS * depth);
}

QWidget* echogramPanel_t::makeDepth()
{
    auto* depth = new QWidget;
    auto* layout = new QVBoxLayout(depth);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(3);
    m_depthBox = new QCheckBox(tr("Instrument's depth"));
    m_depthBox->setObjectName(QStringLiteral("depthBox"));
    m_depthBox->setToolTip(tr("Draw the depth that the instrument has found over the echogram"));
    m_depthBox->setChecked(true);
    m_depthLabel = makeLabel(theme::text(), 1.3, Qt::AlignRight | Qt::AlignVCenter);
    m_depthLabel->setObjectName(QStringLiteral("instrumentDepthLabel"));
    m_depthLabel->setToolTip(tr("Of the newest ping that shows"));
    auto* note = makeLabel(theme::quietText(), 0.9, Qt::AlignLeft | Qt::AlignTop);
    note->setWordWrap(true);
    note->setText(tr("As the instrument found it. Where it took a multiple of the bottom's echo "
                     "for the bottom, the echogram is right."));
    auto* row = new QHBoxLayout;
    row->addWidget(m_depthBox);
    row->addWidget(m_depthLabel, 1);
    layout->addLayout(row);
    layout->addWidget(note);
    connect(m_depthBox, &QCheckBox::toggled, renderer(), &pingRenderer_t::showDepth);
    return depth;
}

QString echogramPanel_t::beamChoice() const
{
    return m_beamBox->currentIndex() > 0 ? m_beamBox->currentText() : QString();
}

void echogramPanel_t::chooseBeamAgain(const QString& choice)
{
    const int row = m_beamBox->findText(choice);
    if (row < 0 || row == m_beamBox->currentIndex())
        return;
    m_beamBox->setCurrentIndex(row);
    chooseBeam(row);
}

bool echogramPanel_t::showsDepth() const
{
    return m_depthBox->isChecked();
}

void echogramPanel_t::showDepth(bool show)
{
    m_depthBox->setChecked(show);
}

void echogramPanel_t::chooseBeam(int row)
{
    const echogram_t& echogram = m_echograms[static_cast<std::size_t>(row)];
    m_timeAxis->setGap(GAP_PINGS * meanInterval(echogram.record));
    play(echogram.name, echogram.record);
}

void echogramPanel_t::showPings(int begin, int end)
{
    m_timeAxis->follow(begin, end);
    const bool isThere = model()->holds(end - 1);
    m_depthLabel->setText(isThere ? depthText(model()->ping(end - 1).depth, 1) : noValueText());
}

QString echogramPanel_t::pointedText(const ping_t& ping, double coord) const
{
    QString text = depthText(coord, 2);
    if (const std::optional<float> level = levelAt(ping, coord))
        text += tr("   level %1").arg(valueText(static_cast<double>(*level), 0));
    return text + tr("   instrument's depth %1").arg(depthText(ping.depth, 1));
}

} // namespace survey_console
