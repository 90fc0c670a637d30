#include "demo/feeds/swpc_stand_in.h"

#include "base/json/json.h"
#include "demo/conditional_answer.h"
#include "demo/world/demo_draw.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

using std::chrono::hours;

constexpr hours kBin{3};
constexpr int kBins = 56;
constexpr int kForecastBins = 24;
constexpr std::uint64_t kQuiet = 71;
constexpr std::uint64_t kStorm = 72;
constexpr std::uint64_t kStormBegin = 73;
/// Storms begin at most once in so many bins (five days) and fade within two.
constexpr std::int64_t kStormSpacing = 40;
constexpr double kFading = 8;

/// How much the storm of a stretch of time adds in a bin.
double stormIn(std::int64_t bin, std::int64_t stretch) {
  double const strength = 9 * std::pow(demoDraw(kStorm, stretch), 3);
  auto const begin = stretch * kStormSpacing +
                     static_cast<std::int64_t>(demoDraw(kStormBegin, stretch) * (kStormSpacing - kFading));
  return bin < begin ? 0 : strength * std::exp(-static_cast<double>(bin - begin) / kFading * 2);
}

std::int64_t binOf(Instant instant) {
  return std::chrono::floor<std::chrono::duration<std::int64_t, std::ratio<10800>>>(
             instant.time_since_epoch())
      .count();
}

}  // namespace

double demoKp(Instant instant) {
  std::int64_t const bin = binOf(instant);
  std::int64_t const stretch = bin / kStormSpacing;
  double const storm = std::max(stormIn(bin, stretch), stormIn(bin, stretch - 1));
  double const kp = std::clamp(2.7 * demoDraw(kQuiet, bin) + storm, 0.0, 9.0);
  return std::round(kp * 3) / 3;
}

namespace {

std::string tagOf(Instant begin) {
  std::string const tag = formatIso8601(begin);
  return tag.substr(0, tag.size() - 1);
}

double foreseenKp(Instant begin) {
  return std::round(0.85 * demoKp(begin) * 3) / 3;
}

/// "G1" from 5- (4.67) on, "G5" at 9 alone.
std::optional<std::string> scaleOf(double kp) {
  if (kp < 4.5) return std::nullopt;
  return "G" + std::to_string(kp >= 9 ? 5 : std::min<long>(4, std::lround(kp) - 4));
}

void writeForecast(JsonWriter& json, Instant begin, Instant now) {
  bool const isAhead = begin + kBin > now;
  double const kp = std::round((isAhead ? foreseenKp(begin) : demoKp(begin)) * 100) / 100;
  json.separate();
  json.beginObject();
  json.member("time_tag", tagOf(begin));
  json.member("kp", kp);
  json.member("observed", isAhead ? "predicted" : "observed");
  json.memberOrNull("noaa_scale", scaleOf(kp));
  json.endObject();
}

}  // namespace

DemoAnswer planetaryKForecast(DemoRequest const& request, Instant now) {
  Instant const newest(kBin * binOf(now));
  JsonWriter json;
  json.beginList();
  for (int i = 1 - kBins; i <= kForecastBins; ++i) writeForecast(json, newest + i * kBin, now);
  json.endList();
  return conditionalAnswer(request, json.take(), 60);
}

DemoAnswer planetaryKIndex(DemoRequest const& request, Instant now) {
  Instant const newest(kBin * binOf(now));
  JsonWriter json;
  json.beginList();
  for (int i = kBins - 1; i >= 0; --i) {
    Instant const begin = newest - i * kBin;
    bool const isKnown = i > 0 || now - begin >= std::chrono::minutes(30);
    json.separate();
    json.beginObject();
    json.member("time_tag", tagOf(begin));
    json.memberOrNull("Kp", isKnown ? std::optional(std::round(demoKp(begin) * 100) / 100) : std::nullopt);
    json.member("a_running", static_cast<int>(std::lround(3 * demoKp(begin) * demoKp(begin))));
    json.member("station_count", 8);
    json.endObject();
  }
  json.endList();
  return conditionalAnswer(request, json.take(), 60);
}

}  // namespace nimbara
