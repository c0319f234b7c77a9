#include "statusLamps.h"
#include "indicator.h"
#include "labels.h"
#include "theme.h"

#include <QHBoxLayout>

using zorbin_qt_gui::indicator_t;

namespace survey_console {
namespace {

const int LAMP_SIZE = 14; // px

double gapOf(const std::vector<fix_t>& fixes)
{
    std::vector<sample_t> times;
    for (const fix_t& fix : fixes)
        times.push_back({fix.time, 0.0});
    return gapThreshold(times);
}

void setWell(indicator_t* lamp, bool isWell)
{
    lamp->alertWhenOn(!isWell);
    lamp->setColor(isWell ? theme::running() : theme::alarm());
    lamp->setToolTip(isWell ? statusLamps_t::tr("present") : statusLamps_t::tr("missing"));
}

} // namespace

statusLamps_t::statusLamps_t(const recording_t& recording, QWidget* parent)
    : QFrame(parent), m_recording(recording), m_maxFixAge(gapOf(recording.fixes())),
      m_fixLamp(new indicator_t), m_dataLamp(new indicator_t)
{
    setFrameShape(QFrame::StyledPanel);
    setBackground(this, theme::panel());
    m_fixLamp->setObjectName(QStringLiteral("fixLamp"));
    m_dataLamp->setObjectName(QStringLiteral("dataLamp"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(10, 5, 10, 5);
    layout->setSpacing(6);
    const auto add = [layout](indicator_t* lamp, const QString& name) {
        lamp->setFixedSize(LAMP_SIZE, LAMP_SIZE);
        setWell(lamp, false);
        auto* label = makeLabel(theme::quietText(), 1.0, Qt::AlignLeft | Qt::AlignVCenter);
        label->setText(name);
        layout->addWidget(lamp);
        layout->addWidget(label, 1);
    };
    add(m_fixLamp, tr("Position"));
    add(m_dataLamp, tr("Data"));
}

void statusLamps_t::showTime(double time_)
{
    const fix_t* fix = newestAt(m_recording.fixes(), time_);
    const bool hasFix = fix && time_ - fix->time <= m_maxFixAge;
    bool hasData = fix && time_ - fix->time <= MAX_SILENCE;
    for (int id = 0; id < CHANNEL_COUNT && !hasData; ++id) {
        const sample_t* sample =
            newestAt(m_recording.channel(static_cast<channelId_t>(id)).samples, time_);
        hasData = sample && time_ - sample->time <= MAX_SILENCE;
    }
    if (hasFix != m_hasFix)
        setWell(m_fixLamp, hasFix);
    if (hasData != m_hasData)
        setWell(m_dataLamp, hasData);
    m_hasFix = hasFix;
    m_hasData = hasData;
}

} // namespace survey_console
