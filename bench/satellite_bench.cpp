// Near-earth propagation by every kernel of this machine beside the reference path, over element sets made up
// like the groups that the globe shows.

#include "globe/sgp4_batch.h"
#include "support/made_satellites.h"

#include <benchmark/benchmark.h>

namespace nimbara::SGP4 {
namespace {

constexpr Moment kTick{2461365.5, 0.5};

std::vector<SatRec> const& records() {
  static std::vector<SatRec> const made = test::madeNearEarth();
  return made;
}

void perPropagation(benchmark::State& state, std::size_t propagations) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(propagations));
  state.counters["ns"] =
      benchmark::Counter(static_cast<double>(propagations) * 1e-9,
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void tick(benchmark::State& state, Kernel kernel) {
  SatelliteBatch batch(records(), kernel);
  for (auto _ : state) {
    batch.propagate(kTick);
    benchmark::DoNotOptimize(batch.states().data());
  }
  perPropagation(state, records().size());
}

void times(benchmark::State& state, Kernel kernel) {
  std::vector<double> minutes(10'000);
  for (std::size_t i = 0; i < minutes.size(); ++i) minutes[i] = 0.5 * static_cast<double>(i);
  std::vector<StateVector> states(minutes.size());
  for (auto _ : state) {
    propagateMany(records().front(), minutes, states, kernel);
    benchmark::DoNotOptimize(states.data());
  }
  perPropagation(state, minutes.size());
}

void referenceTick(benchmark::State& state) {
  std::vector<StateVector> states(records().size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < states.size(); ++i) {
      states[i] = propagate(records()[i], minutesSince(records()[i].tle, kTick));
    }
    benchmark::DoNotOptimize(states.data());
  }
  perPropagation(state, states.size());
}
BENCHMARK(referenceTick)->Unit(benchmark::kMicrosecond);

int registerKernels() {
  for (Kernel const kernel : runnableKernels()) {
    std::string const name(enumName(kernel));
    benchmark::RegisterBenchmark(("tick/" + name).c_str(), tick, kernel)->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark(("times/" + name).c_str(), times, kernel)->Unit(benchmark::kMicrosecond);
  }
  return 0;
}

}  // namespace
}  // namespace nimbara::SGP4

int main(int argc, char** argv) {
  nimbara::SGP4::registerKernels();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
