// Bows, aurora, stars and the light of low suns: where the sun and the moon stand decides, beside the sky.
#include "base/sun_moon.h"
#include "base/text/number.h"
#include "model/upcoming_hours.h"
#include "notifications/sky/sky_constants.h"
#include "notifications/sky/sky_rules.h"
#include "notifications/sky/sky_support.h"

#include <cmath>

namespace nimbara {

using namespace sky;

namespace {

std::string bodyOf(RuleInputs const& inputs, std::string_view key, auto const&... arguments) {
  return inputs.texts->format(key, arguments...);
}

/// A bow stands opposite a sun that is up, and low enough.
std::vector<Measurement> bowSun(double altitude) {
  return {{"sunAltitude", altitude, Relation::above, 0, "°"},
          {"sunAltitude", altitude, Relation::below, kBowSunAltitude, "°"}};
}

bool allHold(std::vector<Measurement> const& measured) {
  return std::ranges::all_of(measured, &Measurement::holds);
}

/// The first entry that the sun shines in after one of rain, from the entry before the present one on.
HourlyForecast const* clearingShower(RuleInputs const& inputs) {
  Hours const hours = upcomingHours(inputs.weather->allHourly, inputs.now - std::chrono::hours(1));
  for (std::size_t i = 0; i + 1 < hours.size(); ++i) {
    HourlyForecast const& next = hours[i + 1];
    if (next.date > inputs.now + rainbow::kLookAhead) return nullptr;
    int const hour = localHour(inputs, next.date);
    bool const isWaking = hour >= rainbow::kFromHour && hour < rainbow::kUntilHour;
    bool const isClearing = isRain(hours[i].condition) && isOpenSky(next.condition);
    double const altitude = sunAltitude(inputs, std::max(next.date, inputs.now));
    if (isWaking && isClearing && allHold(bowSun(altitude))) return &next;
  }
  return nullptr;
}

bool isFoggy(HourlyForecast const& hour) {
  bool const isThick = hour.has(WeatherDetailField::visibility) && hour.visibilityKm < fogBow::kVisibilityKm;
  return !isWet(hour.condition) && (hour.condition == WeatherConditionCode::fog || isThick);
}

bool isSurelyClear(HourlyForecast const& hour) {
  return hour.has(WeatherDetailField::cloudCover) && hour.cloudCover <= fogBow::kClearCloud;
}

/// The first entry in which the sun reaches fog of the same entry or of the one before.
HourlyForecast const* sunlitFog(RuleInputs const& inputs) {
  Hours const hours = inputs.hoursWithin(fogBow::kLookAhead);
  for (std::size_t i = 0; i < hours.size(); ++i) {
    bool const isFog = isFoggy(hours[i]) || (i > 0 && isFoggy(hours[i - 1]));
    bool const isSunny = isOpenSky(hours[i].condition) || isSurelyClear(hours[i]);
    if (isFog && isSunny && allHold(bowSun(sunAltitude(inputs, hours[i].date)))) return &hours[i];
  }
  return nullptr;
}

std::string_view auroraQuality(double latitude, std::optional<double> kp) {
  bool const isNear = latitude > aurora::kGoodLatitude;
  if (kp && *kp < aurora::kLowKp) return "push.qualifier.possible";
  if (kp && *kp >= aurora::kHighKp) return isNear ? "push.qualifier.excellent" : "push.qualifier.good";
  return isNear ? "push.qualifier.good" : "push.qualifier.moderate";
}

struct Darkness {
  Instant begin;
  double cloud = 0;  ///< mean, %
  int hours = 0;
  bool isKnown = true;  ///< no entry lacks its cloud cover
};

/// The next stretch of dark entries, none of them when `hours` is 0.
Darkness comingDarkness(RuleInputs const& inputs) {
  Darkness found;
  double sum = 0;
  for (HourlyForecast const& hour : inputs.hoursWithin(stargazing::kLookAhead)) {
    bool const dark = isDark(inputs, hour.date);
    if (!dark && found.hours > 0) break;
    if (!dark) continue;
    if (found.hours++ == 0) found.begin = hour.date;
    found.isKnown = found.isKnown && hour.has(WeatherDetailField::cloudCover);
    sum += hour.cloudCover;
  }
  if (found.hours > 0) found.cloud = sum / found.hours;
  return found;
}

std::vector<Measurement> starlight(double cloud, int moon) {
  return {{"cloudCover", cloud, Relation::below, stargazing::kCloud, "%"},
          {"moonIllumination", static_cast<double>(moon), Relation::below, stargazing::kMoon, "%"}};
}

constexpr std::chrono::hours kHalfDay{12};

/// A moment of the golden light, now or soon.
struct GoldenLight {
  Instant at;
  bool isNow = false;
  bool isRising = false;
};

std::optional<GoldenLight> goldenLight(RuleInputs const& inputs) {
  for (auto const lead : {std::chrono::minutes(0), golden::kLead}) {
    Instant const then = inputs.now + lead;
    double const altitude = sunAltitude(inputs, then);
    if (altitude < golden::kLowestSun || altitude > golden::kHighestSun) continue;
    bool const isRising = sunAltitude(inputs, then + std::chrono::minutes(1)) > altitude;
    return GoldenLight{then, lead.count() == 0, isRising};
  }
  return std::nullopt;
}

Finding goldenFinding(RuleInputs const& inputs, GoldenLight const& light, int cloud) {
  std::string const body = bodyOf(
      inputs, "push.golden.body", inputs.text(light.isRising ? "push.golden.sunrise" : "push.golden.sunset"),
      inputs.text(light.isNow ? "push.timing.happeningNow" : "push.timing.approaching"),
      inputs.text(cloud < golden::kPristineCloud ? "push.golden.pristine" : "push.golden.dramatic"));
  return pleasant(light.isRising ? "beta_golden_sunrise" : "beta_golden_sunset",
                  inputs.text("push.golden.title"), body);
}

}  // namespace

Evaluation rainbowAhead(RuleInputs const& inputs, RuleSettings const&) {
  if (!inputs.weather) return Evaluation::unknown(Lack::noForecast);
  HourlyForecast const* const clearing = clearingShower(inputs);
  if (clearing == nullptr) return Evaluation::none("noSunAfterRain");
  double const altitude = sunAltitude(inputs, std::max(clearing->date, inputs.now));
  return decide(bowSun(altitude), {}, [&] {
    bool const isBright = clearing->condition == WeatherConditionCode::sunny;
    auto const quality = inputs.text(isBright ? "push.qualifier.high" : "push.qualifier.moderate");
    return pleasant("beta_rainbow", inputs.text("push.rainbow.title"),
                    bodyOf(inputs, "push.rainbow.body", quality));
  });
}

Evaluation fogBowAhead(RuleInputs const& inputs, RuleSettings const&) {
  if (inputs.hours.empty()) return Evaluation::unknown(Lack::noForecast);
  HourlyForecast const* const entry = sunlitFog(inputs);
  if (entry == nullptr) return Evaluation::none("noSunInFog");
  return decide(bowSun(sunAltitude(inputs, entry->date)), {}, [&] {
    auto const quality =
        inputs.text(isSurelyClear(*entry) ? "push.qualifier.good" : "push.qualifier.possible");
    return pleasant("beta_fog_bow", inputs.text("push.fogBow.title"),
                    bodyOf(inputs, "push.fogBow.body", hourText(inputs, entry->date), quality));
  });
}

Evaluation auroraOverhead(RuleInputs const& inputs, RuleSettings const&) {
  double const latitude = std::abs(inputs.place.coordinate.latitude);
  std::vector<Measurement> measured{{"latitude", latitude, Relation::atLeast, aurora::kLatitude, "°"}};
  if (!measured.front().holds()) return decide(std::move(measured), {}, [] { return Finding{}; });
  auto const cloud = cloudCoverNow(inputs);
  if (!cloud) return Evaluation::unknown(inputs.weather ? Lack::noDetail : Lack::noForecast);
  measured.push_back(
      {"sunAltitude", sunAltitude(inputs, inputs.now), Relation::below, kDarkSunAltitude, "°"});
  measured.push_back({"cloudCover", static_cast<double>(*cloud), Relation::atMost, aurora::kCloud, "%"});
  auto const kp = inputs.kp ? std::optional(*inputs.kp) : std::nullopt;
  if (kp) measured.push_back({"kp", *kp, Relation::atLeast, 0, ""});
  return decide(std::move(measured), {}, [&] {
    bool const isNorth = inputs.place.coordinate.latitude > 0;
    return pleasant("beta_aurora", inputs.text("push.aurora.title"),
                    bodyOf(inputs, "push.aurora.body",
                           inputs.text(isNorth ? "push.aurora.northern" : "push.aurora.southern"),
                           inputs.text(auroraQuality(latitude, kp)),
                           inputs.text(isNorth ? "push.aurora.borealis" : "push.aurora.australis")));
  });
}

Evaluation stargazingNow(RuleInputs const& inputs, RuleSettings const&) {
  auto const cloud = cloudCoverNow(inputs);
  if (!cloud) return Evaluation::unknown(inputs.weather ? Lack::noDetail : Lack::noForecast);
  int const moon = moonPercent(inputs.now);
  auto measured = starlight(*cloud, moon);
  measured.push_back(
      {"sunAltitude", sunAltitude(inputs, inputs.now), Relation::below, kDarkSunAltitude, "°"});
  return decide(std::move(measured), {}, [&] {
    return pleasant("beta_stargazing_now", inputs.text("push.stargazingNow.title"),
                    bodyOf(inputs, "push.stargazingNow.body", moon));
  });
}

Evaluation stargazingTonight(RuleInputs const& inputs, RuleSettings const&) {
  if (inputs.hours.empty()) return Evaluation::unknown(Lack::noForecast);
  if (isDark(inputs, inputs.now)) return Evaluation::none("darkAlready");
  Darkness const darkness = comingDarkness(inputs);
  if (darkness.hours < stargazing::kFewestHours) return Evaluation::none("noDarkness");
  if (!darkness.isKnown) return Evaluation::unknown(Lack::noDetail);
  int const moon = moonPercent(darkness.begin);
  return decide(starlight(darkness.cloud, moon), {{isTimeForTonight(inputs), "tooEarly"}}, [&] {
    return pleasant("beta_stargazing_tonight", inputs.text("push.stargazingTonight.title"),
                    bodyOf(inputs, "push.stargazingTonight.body", moon));
  });
}

Evaluation goldenHour(RuleInputs const& inputs, RuleSettings const&) {
  auto const light = goldenLight(inputs);
  if (!light) return Evaluation::none("sunNotLow");
  HourlyForecast const* const hour = hourAt(inputs.hours, light->at);
  if (hour == nullptr) return Evaluation::unknown(Lack::noForecast);
  if (!hour->has(WeatherDetailField::cloudCover)) return Evaluation::unknown(Lack::noDetail);
  double const cloud = hour->cloudCover;
  // A sun that only dips or only peeps all day has no golden hour: twilight or low light go on for hours.
  RiseSet const sun = sunRiseSet(light->at - kHalfDay, light->at + kHalfDay, inputs.place.coordinate);
  bool const crossesHorizon = sun.rise || sun.set;
  return decide({{"cloudCover", cloud, Relation::atMost, golden::kDramaticCloud, "%"}},
                {{crossesHorizon, sun.alwaysUp ? "sunStaysUp" : "sunStaysDown"}, {isDry(*hour), "wet"}},
                [&] { return goldenFinding(inputs, *light, hour->cloudCover); });
}

}  // namespace nimbara
