#include "waveform.h"

#include <cmath>
#include <random>

namespace {
const int swellsPerWindow = 6;
const unsigned seed = 20240611;
} // namespace

waveform_t::waveform_t(double rate, double window, double noise) : m_rate(rate)
{
    const double pi = std::acos(-1.0);
    const qint64 count = std::llround(rate * window);
    std::mt19937 random(seed); // its numbers are the same everywhere; the distributions' are not
    m_values.reserve(static_cast<std::size_t>(count));
    for (qint64 i = 0; i < count; ++i) {
        const double phase = static_cast<double>(i) / static_cast<double>(count) * swellsPerWindow;
        const double even = std::ldexp(static_cast<double>(random()), -31) - 1.0;
        m_values.push_back(std::sin(2.0 * pi * phase) + noise * even);
    }
}

sample_t waveform_t::at(int curve, qint64 index) const
{
    const qint64 length = static_cast<qint64>(m_values.size());
    const qint64 shift = length * curve / (8 * swellsPerWindow);
    return {static_cast<double>(index) / m_rate,
            m_values[static_cast<std::size_t>((index + shift) % length)]};
}

std::vector<sample_t> waveform_t::block(int curve, qint64 first, qint64 count) const
{
    std::vector<sample_t> samples;
    samples.reserve(static_cast<std::size_t>(count));
    for (qint64 i = 0; i < count; ++i)
        samples.push_back(at(curve, first + i));
    return samples;
}
