#pragma once
#include <QObject>
#include <QVariant>
#include <array>

namespace survey_console {

/// A simulated echo sounder to be controlled: it takes requests, answers each after a while with
/// the value that then holds, and has a mind of its own. It refuses what its hardware couldn't do,
/// and its gain drifts while it warms up. It answers in real time, whether a replay runs or not.
class sounder_t : public QObject
{
    Q_OBJECT
public:
    enum setting_t
    {
        SETTING_TRANSMIT, ///< bool
        SETTING_PULSE,    ///< int, a number of PULSES
        SETTING_GAIN,     ///< double, dB
        SETTING_RANGE,    ///< int, m
        SETTING_POWER,    ///< int, per cent
        SETTING_LINE,     ///< QString, the name of the survey line that it stores with its pings
        SETTING_COUNT
    };

    static constexpr int ANSWER_DELAY = 800;  ///< ms
    static constexpr int MAX_POWER = 80;      ///< per cent; more would overheat the transducer
    static constexpr int MIN_LONG_RANGE = 50; ///< m; the last pulse would overlap nearer echoes
    static constexpr double DRIFT = -0.1;     ///< dB at a time

    /// The lengths of the transmit pulse.
    static const std::array<const char*, 3> PULSES;

    explicit sounder_t(QObject* parent = nullptr) : QObject(parent) {}

    /// The value that holds.
    QVariant value(setting_t setting) const { return m_values[setting]; }

    /// Asks for a value. After ANSWER_DELAY the sounder takes it or refuses it and reports what it
    /// has. A request that comes while another for the same setting is under way is reported, too.
    void request(setting_t setting, const QVariant& value);
    /// Lets the gain drift, down to 0, and reports it.
    void drift();

Q_SIGNALS:
    /// What a setting is, as the answer to a request or unasked.
    void reported(int setting_, const QVariant& value_, bool isAnswer_);

private:
    bool accepts(setting_t setting, const QVariant& value) const;

    std::array<QVariant, SETTING_COUNT> m_values = {
        QVariant(true), QVariant(0),  QVariant(20.0),
        QVariant(30),   QVariant(60), QVariant(QStringLiteral("line 1"))};
};

} // namespace survey_console
