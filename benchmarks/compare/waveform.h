#pragma once
#include "contender.h"

#include <QtGlobal>
#include <vector>

/// What the curves show: six slow swells of amplitude 1 to a window, with noise on top, sampled at
/// a fixed rate. The same on every machine and in every run. It repeats itself window by window,
/// so that a full chart stays in a steady state: what leaves on the left comes in on the right.
class waveform_t
{
public:
    /// \p rate in samples per second, \p window in seconds; the noise is even in
    /// [-\p noise, \p noise].
    waveform_t(double rate, double window, double noise);

    /// Sample number \p index of curve number \p curve; the curves follow each other by an eighth
    /// of a swell. The time of a sample is its index divided by the rate.
    sample_t at(int curve, qint64 index) const;
    /// \p count samples of \p curve, beginning with number \p first.
    std::vector<sample_t> block(int curve, qint64 first, qint64 count) const;

private:
    const double m_rate;
    std::vector<double> m_values; // one window
};
