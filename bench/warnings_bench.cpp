// One pass over 3,000 warnings of the whole world for a place, each with an outline of 1,000 corners, beside
// a walk over all their corners in the same run. Then the worst case: every outline goes round the place and
// has it outside. Processor time: the machine is shared.

#include "feeds/alerts/events/cap_events.h"
#include "feeds/cap/shape_geometry.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <time.h>

namespace nimbara {
namespace {

constexpr std::size_t kWarnings = 3000;
constexpr std::size_t kCorners = 1000;
constexpr double kLimitMs = 5;

Instant now() {
  return *parseIso8601("2026-11-22T12:00:00Z");
}

/// A coast-like ring: its radius goes up and down by a fifth.
WarningPolygon ringAround(Coordinate center, double degrees) {
  WarningPolygon ring(kCorners);
  for (std::size_t i = 0; i < kCorners; ++i) {
    double const angle = 2 * std::numbers::pi * static_cast<double>(i) / kCorners;
    double const radius = degrees * (1 + 0.2 * std::sin(37 * angle));
    ring[i] = {center.latitude + radius * std::sin(angle), center.longitude + radius * std::cos(angle)};
  }
  ring.back() = ring.front();
  return ring;
}

/// An outline that leaves the middle out.
WarningPolygon wreathAround(Coordinate center, double degrees) {
  WarningPolygon const ring = ringAround(center, degrees);
  WarningPolygon wreath;
  auto const inwards = [&](Coordinate corner) {
    constexpr double kShare = 0.8;
    return Coordinate{center.latitude + kShare * (corner.latitude - center.latitude),
                      center.longitude + kShare * (corner.longitude - center.longitude)};
  };
  for (std::size_t i = 0; i < kCorners; i += 2) wreath.push_back(ring[i]);
  for (std::size_t i = kCorners; i >= 2; i -= 2) wreath.push_back(inwards(ring[i - 2]));
  return wreath;
}

double threadMs() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

CapMessage messageOf(std::size_t number, WarningPolygon ring) {
  std::string const id = std::to_string(number);
  CapInfo info;
  info.language = "en";
  info.event = "Wind";
  info.headline = "Wind warning " + id;
  info.description = std::string(600, 'x');
  info.severity = "Moderate";
  info.onset = now();
  info.expires = now() + std::chrono::hours(12);
  info.senderName = "Weather Service";
  info.areas = {{"Area " + id, {std::move(ring)}, {}, {}}};
  CapAlert alert{"2.49.0.0." + id, "sender@weather.example", now(), "Actual", "Alert", {}, {std::move(info)}};
  noteBoxes(alert);
  CapMessage message;
  message.alert = std::make_shared<CapAlert const>(std::move(alert));
  message.country = "DE";
  return message;
}

/// Of 10 to 300 km, where people live.
std::vector<CapMessage> const& worldWide() {
  static std::vector<CapMessage> const kMessages = [] {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> latitude(-60, 70), longitude(-175, 175), degrees(0.1, 3);
    std::vector<CapMessage> messages;
    for (std::size_t i = 0; i < kWarnings; ++i) {
      Coordinate const center{latitude(random), longitude(random)};
      messages.push_back(messageOf(i, ringAround(center, degrees(random))));
    }
    return messages;
  }();
  return kMessages;
}

CapView viewOf(Coordinate place) {
  return {"wmo", place, "DE", "en", now()};
}

/// Places drawn like the warnings; what was known stays known, as it does from pass to pass.
void passForAPlace(benchmark::State& state) {
  auto const& messages = worldWide();
  std::mt19937 random(2);
  std::uniform_real_distribution<double> latitude(-60, 70), longitude(-175, 175);
  KnownEvents known;
  double slowest = 0, all = 0;
  std::size_t found = 0;
  for (auto _ : state) {
    Coordinate const place{latitude(random), longitude(random)};
    double const begin = threadMs();
    found += capEvents(messages, viewOf(place), known).alerts.size();
    double const ms = threadMs() - begin;
    slowest = std::max(slowest, ms);
    all += ms;
  }
  auto const passes = static_cast<double>(state.iterations());
  state.counters["slowest_ms"] = slowest;
  state.counters["limit_ms"] = kLimitMs;
  state.counters["found"] = static_cast<double>(found) / passes;
  state.counters["mean_ms"] = all / passes;
}
BENCHMARK(passForAPlace)->Unit(benchmark::kMillisecond);

void firstPass(benchmark::State& state) {
  for (auto _ : state) {
    KnownEvents known;
    benchmark::DoNotOptimize(capEvents(worldWide(), viewOf({52.52, 13.41}), known));
  }
}
BENCHMARK(firstPass)->Unit(benchmark::kMillisecond);

/// What a pass would take that asked every outline.
void everyCorner(benchmark::State& state) {
  auto const& messages = worldWide();
  Coordinate const place{52.52, 13.41};
  for (auto _ : state) {
    std::size_t held = 0;
    for (CapMessage const& message : messages) {
      for (WarningPolygon const& polygon : message.alert->infos[0].areas[0].polygons)
        held += holds(polygon, place) ? 1 : 0;
    }
    benchmark::DoNotOptimize(held);
  }
}
BENCHMARK(everyCorner)->Unit(benchmark::kMillisecond);

/// Where boxes help nobody.
void passAmidAll(benchmark::State& state) {
  std::vector<CapMessage> messages;
  Coordinate const place{52.52, 13.41};
  for (std::size_t i = 0; i < kWarnings; ++i)
    messages.push_back(messageOf(i, wreathAround(place, 2 + 0.001 * static_cast<double>(i))));
  KnownEvents known;
  std::size_t found = 0;
  for (auto _ : state) found += capEvents(messages, viewOf(place), known).alerts.size();
  if (found > 0) state.SkipWithError("the place is outside");
}
BENCHMARK(passAmidAll)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace nimbara
