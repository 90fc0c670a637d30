// Near-earth propagation by every kernel of this machine beside the reference path, over element sets made up
// like the groups that the globe shows.

#include "globe/propagation/sgp4_batch.h"
#include "globe/satellite_layer.h"
#include "support/answers/made_satellites.h"

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

/// Navigation and geostationary orbits, the latter resonant.
std::vector<SatRec> const& deepRecords() {
  static std::vector<SatRec> const made = test::madeSatellites(
      {{500, 19'000, 23'300, 1e-4, 1e-2, 50, 65, -6, -5}, {500, 35'770, 35'800, 1e-5, 1e-3, 0, 5, -6, -5}});
  return made;
}

/// Moments two weeks from the epochs: a second further each time, so that resonances go on, or now on this
/// side and now on the other, so that each begins again.
class DeepMoments {
 public:
  explicit DeepMoments(bool anew) : anew_(anew) {}

  double next() {
    minutes_ = anew_ ? -minutes_ : minutes_ + 1.0 / 60;
    return minutes_;
  }

 private:
  bool anew_;
  double minutes_ = 14 * 1440;
};

void deepReference(benchmark::State& state, bool anew) {
  std::vector<ResonanceState> resonances;
  for (SatRec const& record : deepRecords()) resonances.push_back(resonanceStart(record));
  std::vector<StateVector> states(resonances.size());
  DeepMoments moments(anew);
  for (auto _ : state) {
    double const minutes = moments.next();
    for (std::size_t i = 0; i < states.size(); ++i) {
      states[i] = propagate(deepRecords()[i], minutes, resonances[i]);
    }
    benchmark::DoNotOptimize(states.data());
  }
  perPropagation(state, states.size());
}
BENCHMARK_CAPTURE(deepReference, goingOn, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(deepReference, anew, true)->Unit(benchmark::kMicrosecond);

void deepBatch(benchmark::State& state, bool anew) {
  SatelliteBatch batch(deepRecords());
  DeepMoments moments(anew);
  for (auto _ : state) {
    batch.propagateSinceEpochs(moments.next());
    benchmark::DoNotOptimize(batch.states().data());
  }
  perPropagation(state, batch.size());
}
BENCHMARK_CAPTURE(deepBatch, goingOn, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(deepBatch, anew, true)->Unit(benchmark::kMicrosecond);

std::string elementsText(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    TLE tle = records()[i % records().size()].tle;
    tle.name = "MADE UP";
    tle.epoch = *parseIso8601("2026-11-20T00:00:00Z");
    text += writeElements(tle).value();
  }
  return text;
}

constexpr std::size_t kCatalogue = 11'000;

void parseAndInitialise(benchmark::State& state) {
  std::string const text = elementsText(kCatalogue);
  auto const& group = *SatelliteCatalog::group("starlink");
  for (auto _ : state) benchmark::DoNotOptimize(SatelliteCatalog::parse(text, group));
}
BENCHMARK(parseAndInitialise)->Unit(benchmark::kMillisecond);

/// Positions, light and colours of the whole catalogue, with the way to the queue and back.
void layerTick(benchmark::State& state) {
  auto const& group = *SatelliteCatalog::group("starlink");
  std::vector<SatelliteGroupLoad> loads(1);
  loads[0].group = group;
  loads[0].parsed = SatelliteCatalog::parse(elementsText(kCatalogue), group);
  SatelliteLayer layer;
  layer.show(std::move(loads));
  layer.activate();
  Instant now = *parseIso8601("2026-11-21T12:00:00Z");
  for (auto _ : state) layer.propagateNow(now += std::chrono::seconds(1));
}
BENCHMARK(layerTick)->Unit(benchmark::kMicrosecond)->MeasureProcessCPUTime()->UseRealTime();

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
