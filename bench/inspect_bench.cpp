// The whole inspection of qel inspect on the bundled coins photograph (384 x 303 grey): threshold,
// speck removal, contours, measures and the annotated colour copy, as the tool runs it.
#include "common/image.h"
#include "common/inspect.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

void BM_InspectCoins(benchmark::State& state) {
    const cli::Image coins = cli::loadImage(std::string(QEL_SAMPLES_DIR) + "/coins.bmp");
    size_t objects = 0;
    for (auto _ : state) {
        const cli::InspectResult result = cli::inspect(coins, cli::InspectOptions());
        objects = result.objects.size();
        benchmark::DoNotOptimize(result.annotated.pixels.data());
    }
    state.counters["objects"] = static_cast<double>(objects);
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(coins.width) * coins.height);
}
BENCHMARK(BM_InspectCoins)->Unit(benchmark::kMicrosecond);

}  // namespace
