#include "notifications/rules/hazard_rules.h"
#include "notifications/rules/rule_constants.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

using Relation = Measurement::Relation;

/// A band of the air quality index of the United States' Environmental Protection Agency by its
/// concentrations of PM2.5 over a day (breakpoints of 2024), and what to do in it.
struct Band {
  double from;  ///< µg/m³
  std::string_view word, advice;
};

constexpr Band kBands[] = {
    {0, "push.aq.level.good", "push.aq.advice.sensitiveReduce"},
    {9.1, "push.aq.level.moderate", "push.aq.advice.sensitiveReduce"},
    {35.5, "push.aq.level.sensitive", "push.aq.advice.sensitiveLimit"},
    {55.5, "push.aq.level.unhealthy", "push.aq.advice.limit"},
    {125.5, "push.aq.level.veryUnhealthy", "push.aq.advice.avoid"},
    {225.5, "push.aq.level.hazardous", "push.aq.advice.indoors"},
};
constexpr Band const& kUnhealthy = kBands[3];
constexpr Band const& kVeryUnhealthy = kBands[4];

Band const& bandOf(double pm25) {
  Band const* band = &kBands[0];
  for (Band const& next : kBands) {
    if (pm25 >= next.from) band = &next;
  }
  return *band;
}

/// The hour of the most fine dust from the present one on; null when the forecast has none.
AirQualityHour const* peakOf(AirQualityForecast const& forecast, Instant now) {
  AirQualityHour const* peak = nullptr;
  for (AirQualityHour const& hour : forecast.hours) {
    bool const isAhead = hour.time + std::chrono::hours(1) > now && hour.time < now + cuts::kAirLookAhead;
    if (!isAhead || !hour.pm25) continue;
    if (peak == nullptr || *hour.pm25 > *peak->pm25) peak = &hour;
  }
  return peak;
}

/// What a text says of the air: the reading of now, the peak to come, or both.
struct Air {
  std::optional<double> now;
  AirQualityHour const* peak = nullptr;

  bool isKnown() const { return now || peak != nullptr; }
  double worst() const { return std::max(now.value_or(0), peak == nullptr ? 0 : *peak->pm25); }
};

std::string trendOf(RuleInputs const& inputs, Air const& air) {
  bool const worsens = air.peak != nullptr && air.peak->time > inputs.now &&
                       std::round(*air.peak->pm25) > std::round(*air.now);
  if (!worsens) return {};
  return " " + inputs.texts->format("push.aq.trend", *air.peak->pm25, hourText(inputs, air.peak->time));
}

std::string bodyOf(RuleInputs const& inputs, Air const& air, double level) {
  std::string const advice = inputs.text(bandOf(air.worst()).advice);
  if (air.now && *air.now >= level) {
    return inputs.texts->format("push.aq.aqiLabel", *air.now, inputs.text(bandOf(*air.now).word),
                                trendOf(inputs, air), advice);
  }
  return inputs.texts->format("push.aq.forecastBody", *air.peak->pm25, hourText(inputs, air.peak->time),
                              static_cast<std::int64_t>(level), advice);
}

}  // namespace

Evaluation airQuality(RuleInputs const& inputs, RuleSettings const& settings) {
  if (!inputs.airQuality) return Evaluation::unknown(Lack::notChecked);
  Air const air{inputs.airQuality->pm25, peakOf(*inputs.airQuality, inputs.now)};
  if (!air.isKnown()) return Evaluation::unknown(Lack::noDetail);
  Measurement const measured{"pm25", air.worst(), Relation::atLeast, settings.airQualityLevel, "µg/m³"};
  if (!measured.holds()) return {{}, {measured}, {}};
  Finding finding;
  finding.title = inputs.text("push.aq.title");
  finding.body = bodyOf(inputs, air, settings.airQualityLevel);
  finding.severity = air.worst() >= kUnhealthy.from ? AlertSeverity::warning : AlertSeverity::advisory;
  finding.sound = air.worst() >= kVeryUnhealthy.from ? "weather_critical.caf" : "weather_warning.caf";
  return {{std::move(finding)}, {measured}, {}};
}

}  // namespace nimbara
