#include "demo/feeds/lightning_stand_in.h"

#include "base/json/json.h"
#include "base/text/number.h"
#include "demo/world/demo_draw.h"
#include "demo/world/demo_weather.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace nimbara {

namespace {

constexpr std::chrono::hours kLongestSpan{6};
constexpr std::chrono::minutes kStep{10};
constexpr double kFarthestKm = 30;
constexpr double kKmInADegree = kEarthRadiusKm * std::numbers::pi / 180;
constexpr int kThunderstorm = 95;
constexpr int kStrikesOfAStep = 4;

enum Stream : std::uint64_t { kWhen = 141, kDistance, kBearing };

/// The `index`th strike of all that the storms of a place send.
Coordinate strikeAround(Coordinate place, std::int64_t index) {
  double const km = kFarthestKm * std::sqrt(demoDraw(kDistance, index));
  double const bearing = 2 * std::numbers::pi * demoDraw(kBearing, index);
  double const shrinking = std::max(0.01, std::cos(place.latitude * std::numbers::pi / 180));
  return {std::clamp(place.latitude + km * std::cos(bearing) / kKmInADegree, -90.0, 90.0),
          std::remainder(place.longitude + km * std::sin(bearing) / kKmInADegree / shrinking, 360)};
}

struct Question {
  Coordinate place;
  double radiusKm;
  Instant since;
  Instant now;
};

/// Ten minutes of the place's weather.
void writeStep(JsonWriter& json, Question const& question, std::int64_t step) {
  Instant const begin(kStep * step);
  if (demoWeather(question.place, begin).weatherCode < kThunderstorm) return;
  for (int i = 0; i < kStrikesOfAStep; ++i) {
    std::int64_t const index = step * kStrikesOfAStep + i;
    Coordinate const place = strikeAround(question.place, index);
    Instant const time = begin + std::chrono::seconds(static_cast<int>(600 * demoDraw(kWhen, index)));
    bool const isAsked = time >= question.since && time <= question.now &&
                         haversineKm(place, question.place) <= question.radiusKm;
    if (!isAsked) continue;
    json.separate();
    json.beginObject();
    json.member("time", time);
    json.member("latitude", place.latitude);
    json.member("longitude", place.longitude);
    json.endObject();
  }
}

}  // namespace

DemoAnswer lightningStrikes(DemoRequest const& request, Instant now) {
  auto const asked = demoCoordinate(request.query("latitude"), request.query("longitude"));
  auto const radius = parseDouble(request.query("radius"));
  auto const since = parseIso8601(request.query("since"));
  if (!asked || !radius || !(*radius > 0) || !since) return {400, R"({"error":"bad question"})", {}};
  Question const question{request.answeredPlace(*asked), *radius, std::max(*since, now - kLongestSpan), now};
  JsonWriter json;
  json.beginObject();
  json.key("strikes");
  json.beginList();
  std::int64_t const last = now.time_since_epoch() / kStep;
  for (std::int64_t step = question.since.time_since_epoch() / kStep; step <= last; ++step) {
    writeStep(json, question, step);
  }
  json.endList();
  json.endObject();
  return {200, json.take(), {}};
}

}  // namespace nimbara
