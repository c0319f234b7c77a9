#include "sounder.h"

#include <QTimer>
#include <algorithm>

namespace survey_console {

const std::array<const char*, 3> sounder_t::PULSES = {"short, 50 \u00b5s", "medium, 150 \u00b5s",
                                                      "long, 400 \u00b5s"};

void sounder_t::request(setting_t setting, const QVariant& value)
{
    QTimer::singleShot(ANSWER_DELAY, this, [this, setting, value] {
        if (accepts(setting, value))
            m_values[setting] = value;
        Q_EMIT reported(setting, m_values[setting], true);
    });
}

void sounder_t::drift()
{
    m_values[SETTING_GAIN] = std::max(m_values[SETTING_GAIN].toDouble() + DRIFT, 0.0);
    Q_EMIT reported(SETTING_GAIN, m_values[SETTING_GAIN], false);
}

bool sounder_t::accepts(setting_t setting, const QVariant& value) const
{
    const int longest = static_cast<int>(PULSES.size()) - 1;
    switch (setting) {
    case SETTING_POWER:
        return value.toInt() <= MAX_POWER;
    case SETTING_PULSE:
        return value.toInt() < longest || m_values[SETTING_RANGE].toInt() >= MIN_LONG_RANGE;
    case SETTING_RANGE:
        return m_values[SETTING_PULSE].toInt() < longest || value.toInt() >= MIN_LONG_RANGE;
    case SETTING_LINE:
        return !value.toString().isEmpty();
    default:
        return true;
    }
}

} // namespace survey_console
