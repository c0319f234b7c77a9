// Histograms of 1000 x 400 pixels and 1000 bins: taking samples, counting them in other bins, and
// painting what is counted. Draws on an image; needs no display.
#include "runBenchmarks.h"

#include <QImage>
#include <benchmark/benchmark.h>
#include <cstdint>
#include <histogram.h>
#include <random>
#include <vector>

using zorbin_qt_gui::histogram_t;

namespace {
// A hill over the whole range.
std::vector<float> hill(std::int64_t count)
{
    std::vector<float> samples;
    std::mt19937 random(1);
    for (std::int64_t i = 0; i < count; ++i) {
        const double sum = static_cast<double>(random()) + static_cast<double>(random());
        samples.push_back(static_cast<float>(sum / (2.0 * 4294967296.0)));
    }
    return samples;
}

class painted_t
{
public:
    painted_t() : m_picture(1000, 400, QImage::Format_RGB32)
    {
        histogram.resize(m_picture.size());
        histogram.numBins(1000);
    }

    void add(const std::vector<float>& samples)
    {
        histogram.addData(static_cast<unsigned>(samples.size()), samples.data());
    }

    void paint()
    {
        histogram.render(&m_picture, QPoint(), QRegion(), QWidget::RenderFlags());
        benchmark::DoNotOptimize(m_picture.constBits());
    }

    histogram_t histogram;

private:
    QImage m_picture;
};

void allCounts(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(1000000)->Arg(10000000)->Unit(benchmark::kMillisecond);
}

// Takes the samples anew without counting them.
void addData(benchmark::State& state)
{
    const std::vector<float> samples = hill(state.range(0));
    painted_t painted;
    for (auto _ : state) {
        painted.histogram.clear();
        painted.add(samples);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(addData)->Apply(allCounts);

// Other bins for all samples, painted.
void countAnew(benchmark::State& state)
{
    painted_t painted;
    painted.add(hill(state.range(0)));
    unsigned bins = 1000;
    for (auto _ : state) {
        bins = bins == 1000 ? 999 : 1000;
        painted.histogram.numBins(bins);
        painted.paint();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(countAnew)->Apply(allCounts);

// A thousand more, painted.
void addSome(benchmark::State& state)
{
    painted_t painted;
    painted.add(hill(state.range(0)));
    const std::vector<float> some = hill(1000);
    for (auto _ : state) {
        painted.add(some);
        painted.paint();
    }
}
BENCHMARK(addSome)->Arg(1000000)->Unit(benchmark::kMillisecond);

void paintCounted(benchmark::State& state)
{
    painted_t painted;
    painted.add(hill(1000000));
    for (auto _ : state)
        painted.paint();
}
BENCHMARK(paintCounted)->Unit(benchmark::kMillisecond);
} // namespace

int main(int argc, char** argv)
{
    return runBenchmarks(argc, argv);
}
