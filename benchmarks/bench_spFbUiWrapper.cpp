// A panel of many sliders on one binder: taking what they show, a report to each, an edit of each,
// and going back to the reports. The time for each of them is the same, however many there are.
#include "runBenchmarks.h"

#include <QSlider>
#include <benchmark/benchmark.h>
#include <indicator.h>
#include <memory>
#include <spFbUiWrapper.h>
#include <vector>

using zorbin_qt_gui::indicator_t;
using zorbin_qt_gui::spFbUiWrapper_t;

namespace {

class sliders_t
{
public:
    explicit sliders_t(benchmark::State& state)
    {
        for (int id = 0; id < state.range(0); ++id) {
            m_sliders.push_back(std::make_unique<QSlider>());
            binder.addSliderWrapper(0, 0, &m_lamp, id, m_sliders.back().get());
        }
    }

    // Moves all to `value`.
    void edit(int value)
    {
        for (const auto& slider : m_sliders)
            slider->setValue(value);
    }

    spFbUiWrapper_t binder;

private:
    indicator_t m_lamp{nullptr};
    std::vector<std::unique_ptr<QSlider>> m_sliders;
};

void allCounts(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(200)->Arg(2000)->Arg(20000)->Unit(benchmark::kMillisecond);
}

void initGui(benchmark::State& state)
{
    sliders_t sliders(state);
    for (auto _ : state)
        sliders.binder.initGui();
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(initGui)->Apply(allCounts);

void reportToEach(benchmark::State& state)
{
    sliders_t sliders(state);
    const auto count = static_cast<unsigned>(state.range(0));
    int value = 0;
    for (auto _ : state) {
        value = value == 5 ? 6 : 5;
        for (unsigned id = 0; id < count; ++id)
            sliders.binder.updateFeedback(id, value);
    }
    if (sliders.binder.setpointValue(0) != value)
        state.SkipWithError("the widgets don't follow");
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(reportToEach)->Apply(allCounts);

void editOfEachAndReset(benchmark::State& state)
{
    sliders_t sliders(state);
    for (auto _ : state) {
        sliders.edit(7);
        sliders.binder.resetGui();
    }
    if (!sliders.binder.allSpFbMatch())
        state.SkipWithError("not all are back");
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(editOfEachAndReset)->Apply(allCounts);

} // namespace

int main(int argc, char** argv)
{
    return runBenchmarks(argc, argv);
}
