// Colouring samples: both colourers, one sample at a time and in batches, beside a plain look-up of
// indices that were computed before. Needs no display.
#include "runBenchmarks.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cycleColorer.h>
#include <palette.h>
#include <random>
#include <rangeColorer.h>
#include <vector>

using namespace zorbin_qt_gui;

namespace {

const unsigned sampleCount = 1U << 20U;
const unsigned entryCount = 256;
const float shallowest = 10.0F; // m
const float deepest = 60.0F;
const float bandWidth = 0.25F; // m

// The depths, in metres, that 1024 pings of 1024 beams find: a slope with sand waves, the roughness
// of the ground and a few outliers that lie beyond the range.
std::vector<float> soundings()
{
    std::vector<float> depths(sampleCount);
    std::minstd_rand random(1);
    const auto noise = [&random](double amplitude) {
        return amplitude * (static_cast<double>(random()) / 1073741823.0 - 1.0);
    };
    for (unsigned i = 0; i < sampleCount; ++i) {
        const double along = i / 1024;  // pings
        const double across = i % 1024; // beams
        double depth = 20.0 + along * 0.01 + across * 0.02 + 1.5 * std::sin(along * 0.05) +
                       0.3 * std::sin(across * 0.2) + noise(0.05);
        if (random() % 200 == 0)
            depth += noise(40.0);
        depths[i] = static_cast<float>(depth);
    }
    return depths;
}

std::vector<unsigned int> greyTable()
{
    std::vector<unsigned int> table;
    for (unsigned i = 0; i < entryCount; ++i)
        table.push_back(0xFF000000U | i * 0x010101U);
    return table;
}

// How a colourer is set up, and the index that it has to give a value.
template <typename tested_t>
struct setUp_t;

template <>
struct setUp_t<rangeColorer_t>
{
    static void apply(rangeColorer_t& colorer) { colorer.setRangeValues(shallowest, deepest); }

    static unsigned index(float value)
    {
        const double index = (static_cast<double>(value) - shallowest) *
                             static_cast<double>(entryCount / (deepest - shallowest));
        return static_cast<unsigned>(std::clamp(index, 0.0, entryCount - 1.0));
    }
};

template <>
struct setUp_t<cycleColorer_t>
{
    static void apply(cycleColorer_t& colorer) { colorer.setInterval(bandWidth); }

    static unsigned index(float value)
    {
        return static_cast<unsigned>(std::abs(static_cast<double>(value) / bandWidth)) % entryCount;
    }
};

// Samples, a colourer for them, and the colours that they ought to get.
template <typename tested_t>
struct fixture_t
{
    fixture_t()
    {
        palette_t palette;
        palette.setColorTable(table, palette_t::DEPTH_24);
        colorer.setPalette(palette);
        setUp_t<tested_t>::apply(colorer);
        for (const float value : samples) {
            indices.push_back(setUp_t<tested_t>::index(value));
            wanted.push_back(table[indices.back()]);
        }
    }

    // To be called after the measurement, which has filled the colours.
    void finish(benchmark::State& state) const
    {
        state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(sampleCount));
        if (colors != wanted)
            state.SkipWithError("wrong colours");
    }

    const std::vector<float> samples = soundings();
    const std::vector<unsigned int> table = greyTable();
    tested_t colorer;
    std::vector<unsigned> indices;
    std::vector<QRgb> wanted;
    std::vector<QRgb> colors = std::vector<QRgb>(sampleCount);
};

template <typename tested_t>
void colorOneAtATime(benchmark::State& state)
{
    fixture_t<tested_t> f;
    const colorer_t& colorer = f.colorer;
    for (auto _ : state) {
        for (unsigned i = 0; i < sampleCount; ++i)
            f.colors[i] = colorer.color(f.samples[i]);
        benchmark::ClobberMemory();
    }
    f.finish(state);
}
BENCHMARK_TEMPLATE(colorOneAtATime, rangeColorer_t);
BENCHMARK_TEMPLATE(colorOneAtATime, cycleColorer_t);

template <typename tested_t>
void colorBatch(benchmark::State& state)
{
    fixture_t<tested_t> f;
    const colorer_t& colorer = f.colorer;
    for (auto _ : state) {
        colorer.colors(f.samples.data(), f.colors.data(), sampleCount);
        benchmark::ClobberMemory();
    }
    f.finish(state);
}
BENCHMARK_TEMPLATE(colorBatch, rangeColorer_t);
BENCHMARK_TEMPLATE(colorBatch, cycleColorer_t);

// What the look-up itself costs: the floor under the batches.
template <typename tested_t>
void lookUpOnly(benchmark::State& state)
{
    fixture_t<tested_t> f;
    for (auto _ : state) {
        for (unsigned i = 0; i < sampleCount; ++i)
            f.colors[i] = f.table[f.indices[i]];
        benchmark::ClobberMemory();
    }
    f.finish(state);
}
BENCHMARK_TEMPLATE(lookUpOnly, rangeColorer_t);
BENCHMARK_TEMPLATE(lookUpOnly, cycleColorer_t);
} // namespace

int main(int argc, char** argv)
{
    return runBenchmarks(argc, argv);
}
