#include "sonarPanel.h"
#include "pingView.h"
#include "sounderPanel.h"
#include "texts.h"
#include "valueRuler.h"

#include <QToolButton>
#include <cmath>

using zorbin_qt_gui::palette_t;
using zorbin_qt_gui::ruler_t;

namespace survey_console {
namespace {

pingPanelSetup_t setup()
{
    pingPanelSetup_t setup;
    setup.name = QStringLiteral("sonar");
    setup.title = sonarPanel_t::tr("Sidescan");
    setup.levels = QStringLiteral("dB");
    setup.scaleMin = -70.0F;
    setup.scaleMax = 0.0F;
    setup.bins = 140; // of half a dB
    setup.firstMin = -30.0F;
    setup.firstMax = 0.0F;
    setup.palettes = {palette_t::SP_SIDESCAN, palette_t::SP_IMAGERY, palette_t::SP_INTENSITY};
    setup.range = sonarPanel_t::tr("Range (m), port and starboard");
    setup.whole = sonarPanel_t::tr("Whole swath");
    return setup;
}

} // namespace

sonarPanel_t::sonarPanel_t(const QString& name, const sonarRecord_t& record, QWidget* parent)
    : pingPanel_t(setup(), name, record, parent),
      m_pingRuler(new valueRuler_t(valueRuler_t::KIND_PLAIN)), m_sounderPanel(new sounderPanel_t)
{
    m_pingRuler->setObjectName(QStringLiteral("pingRuler"));
    m_pingRuler->setToolTip(tr("Number of the ping"));
    auto* orientationButton =
        makeButton("orientationButton", tr("Turn"), tr("Let the pings run down or to the left"));
    addControl(orientationButton);
    addBesideWaterfall(m_sounderPanel);
    connect(orientationButton, &QToolButton::clicked, this, [this] {
        chooseOrientation(view()->orientation() == Qt::Vertical ? Qt::Horizontal : Qt::Vertical);
    });
    connect(this, &sonarPanel_t::pingsShown, m_pingRuler, &valueRuler_t::follow);
    connect(view(), &pingView_t::pointedItemChanged, this, &sonarPanel_t::pointPing);
    chooseOrientation(Qt::Vertical);
}

// The rulers change places.
void sonarPanel_t::chooseOrientation(Qt::Orientation orientation)
{
    m_pingRuler->moveTo(orientation == Qt::Vertical ? ruler_t::LEFT : ruler_t::BOTTOM);
    m_pingRuler->setMinimumSize(0, 0); // that of the former edge
    arrange(orientation, m_pingRuler);
}

void sonarPanel_t::showTime(double seconds_)
{
    pingPanel_t::showTime(seconds_);
    m_sounderPanel->showTime(seconds_);
}

void sonarPanel_t::pointPing(int index)
{
    if (model()->holds(index))
        m_pingRuler->indicator(index + 0.5);
    else
        m_pingRuler->clearIndicator();
}

QString sonarPanel_t::pointedText(const ping_t& ping, double coord) const
{
    const QString range = tr("%1 m %2").arg(valueText(std::abs(coord), 1),
                                            coord < 0.0 ? tr("port") : tr("starboard"));
    const std::optional<float> level = levelAt(ping, coord);
    return level ? tr("%1   %2 dB").arg(range, valueText(static_cast<double>(*level), 0)) : range;
}

} // namespace survey_console
