#include "notifications/custom/custom_rule_evaluation.h"

#include "analysis/precip_kind.h"
#include "analysis/precip_predictor.h"
#include "base/words/time_words.h"
#include "feeds/stations/station_overlay.h"
#include "model/upcoming_hours.h"
#include "notifications/custom/condition_kinds.h"
#include "notifications/custom/custom_rule_text.h"
#include "notifications/sky/sky_support.h"

#include <algorithm>
#include <span>

namespace nimbara {

namespace {

using Operator = ConditionOperator;
using Type = ConditionType;

struct Sample {
  double value = 0;
  Instant at;
  std::string where;
};

/// How far a value lies beyond the rule's limit; above 0 it holds, of events from 0 on.
double marginOf(CustomNotification const& rule, double value) {
  switch (rule.conditionOperator) {
    case Operator::above:
      return value - rule.threshold;
    case Operator::below:
      return rule.threshold - value;
    case Operator::any:
      break;
  }
  return kindOf(rule.conditionType).isEvent() ? value - kLikelyPercent : value;
}

bool isBeyond(CustomNotification const& rule, double margin) {
  bool const isAny = rule.conditionOperator == Operator::any;
  if (isAny && rule.conditionType == Type::earthquake) return true;
  return isAny && kindOf(rule.conditionType).isEvent() ? margin >= 0 : margin > 0;
}

CustomEvaluation without(CustomOutcome reason) {
  CustomEvaluation evaluation;
  evaluation.outcome = reason;
  return evaluation;
}

/// The sample that lies farthest beyond the limit.
CustomEvaluation best(CustomNotification const& rule, std::vector<Sample> const& samples) {
  CustomEvaluation found;
  for (Sample const& sample : samples) {
    double const margin = marginOf(rule, sample.value);
    if (found.margin && margin <= *found.margin) continue;
    found.value = sample.value;
    found.margin = margin;
    found.at = sample.at;
    found.where = sample.where;
  }
  if (found.margin && isBeyond(rule, *found.margin)) found.outcome = CustomOutcome::holds;
  return found;
}

void setDetail(HourlyForecast& hour, WeatherDetailField field, auto HourlyForecast::* member,
               auto const& value) {
  if (!value) return hour.availableDetailFields->erase(field);
  hour.*member = *value;
  hour.availableDetailFields->insert(field);
}

void setKnown(HourlyForecast& hour, ForecastValue value, bool isKnown) {
  ForecastValues unknown = hour.unknownValues.value_or(ForecastValues());
  isKnown ? unknown.erase(value) : unknown.insert(value);
  hour.unknownValues = unknown;
}

/// The present in the form of an hour: the hour's entry under the provider's young reading.
HourlyForecast presentHour(RuleInputs const& inputs) {
  using enum WeatherDetailField;
  HourlyForecast const* const entry = hourAt(inputs.hours, inputs.now);
  HourlyForecast hour = entry == nullptr ? HourlyForecast{} : *entry;
  if (!hour.availableDetailFields) hour.availableDetailFields = DetailFields::all();
  if (entry == nullptr) {
    hour.availableDetailFields = DetailFields{};
    hour.unknownValues = ForecastValues::all();
  }
  Present const& present = *inputs.present;
  hour.date = inputs.now;
  hour.tempC = present.tempC;
  hour.feelsLikeC = present.feelsLikeC;
  hour.windSpeedKmph = present.windSpeedKmph;
  hour.precipMM = present.precipMM.value_or(0);
  setKnown(hour, ForecastValue::windSpeed, present.knowsWind);
  setKnown(hour, ForecastValue::precipitation, present.precipMM.has_value());
  hour.condition = present.condition;
  setDetail(hour, humidity, &HourlyForecast::humidity, present.humidity);
  setDetail(hour, pressure, &HourlyForecast::pressure, present.pressure);
  setDetail(hour, visibility, &HourlyForecast::visibilityKm, present.visibility);
  setDetail(hour, uvIndex, &HourlyForecast::uvIndex, present.uvIndex);
  setDetail(hour, cloudCover, &HourlyForecast::cloudCover, sky::cloudCoverNow(inputs));
  return hour;
}

/// The last hour that the rule looks at begins here: `lookaheadHours` after the hour that contains `now`.
Instant lastHour(CustomNotification const& rule, Instant first, Instant now) {
  Instant const present = first > now ? now : first + std::chrono::floor<std::chrono::hours>(now - first);
  return present + std::chrono::hours(rule.lookaheadHours);
}

std::vector<HourlyForecast> hoursOf(CustomNotification const& rule, RuleInputs const& inputs) {
  if (rule.lookaheadHours == 0) {
    return inputs.present ? std::vector{presentHour(inputs)} : std::vector<HourlyForecast>{};
  }
  if (inputs.hours.empty()) return {};
  Instant const last = lastHour(rule, inputs.hours.front().date, inputs.now);
  auto const end = std::ranges::upper_bound(inputs.hours, last, {}, &HourlyForecast::date);
  return {inputs.hours.begin(), end};
}

CustomEvaluation ofForecast(CustomNotification const& rule, RuleInputs const& inputs) {
  ConditionKind const& kind = kindOf(rule.conditionType);
  auto const hours = hoursOf(rule, inputs);
  if (hours.empty()) return without(CustomOutcome::noForecast);
  std::vector<Sample> samples;
  samples.reserve(hours.size());
  for (HourlyForecast const& hour : hours) {
    if (kind.detail && !hour.has(*kind.detail)) continue;
    if (kind.value && !hour.knows(*kind.value)) continue;
    samples.push_back({kind.ofHour(hour), std::max(hour.date, inputs.now), {}});
  }
  if (samples.empty()) return without(CustomOutcome::noDetail);
  return best(rule, samples);
}

CustomEvaluation ofAirQuality(CustomNotification const& rule, RuleInputs const& inputs) {
  if (!inputs.airQuality) return without(CustomOutcome::feedFailed);
  Instant const present = std::chrono::floor<std::chrono::hours>(inputs.now);
  std::vector<Sample> samples;
  for (AirQualityHour const& hour : inputs.airQuality->hours) {
    bool const isPast = hour.time + std::chrono::hours(1) <= inputs.now;
    bool const isLater = hour.time > present + std::chrono::hours(rule.lookaheadHours);
    if (hour.pm25 && !isPast && !isLater)
      samples.push_back({*hour.pm25, std::max(hour.time, inputs.now), {}});
  }
  return samples.empty() ? without(CustomOutcome::noForecast) : best(rule, samples);
}

CustomEvaluation ofEarthquakes(CustomNotification const& rule, RuleInputs const& inputs, double radiusKm) {
  if (!inputs.earthquakes) return without(CustomOutcome::feedFailed);
  std::vector<Sample> samples;
  for (EarthquakeEvent const& event : recentEarthquakes(*inputs.earthquakes, inputs.now)) {
    bool const isNear = haversineKm(inputs.place.coordinate, event.coordinate()) <= radiusKm;
    if (isNear) samples.push_back({event.magnitude, event.time, event.place});
  }
  return best(rule, samples);
}

CustomEvaluation ofRain(CustomNotification const& rule, RuleInputs const& inputs) {
  using enum PrecipOutlook::State;
  if (!inputs.nowcast) return without(CustomOutcome::feedFailed);
  PrecipOutlook const outlook = rainOutlook(inputs);
  if (outlook.state == uncovered) return without(CustomOutcome::noRadar);
  if (outlook.state == notKnown) return without(CustomOutcome::noForecast);
  CustomEvaluation found;
  if (outlook.state == dry) return found;
  found.at = outlook.state == falls ? inputs.now : std::max(outlook.begin, inputs.now);
  found.value = std::chrono::duration<double, std::ratio<60>>(*found.at - inputs.now).count();
  found.margin = rule.threshold - *found.value;
  if (*found.margin >= 0) found.outcome = CustomOutcome::holds;
  return found;
}

/// What is measured now, wherever the station stands.
CustomEvaluation ofStation(CustomNotification const& rule, RuleInputs const& inputs) {
  StationQuantity const quantity = *kindOf(rule.conditionType).station;
  if (!inputs.station)
    return without(inputs.station.failure ? CustomOutcome::feedFailed : CustomOutcome::noStation);
  auto const measured = measuredNow(*inputs.station, quantity, inputs.now);
  if (!measured) {
    return without(inputs.station.failure                ? CustomOutcome::feedFailed
                   : measures(*inputs.station, quantity) ? CustomOutcome::stationSilent
                                                         : CustomOutcome::noStation);
  }
  CustomEvaluation found = best(rule, {{measured->value, measured->observedAt, {}}});
  found.isNow = true;
  return found;
}

DayOfWeek dayOf(RuleInputs const& inputs) {
  std::chrono::weekday const day{std::chrono::sys_days(inputs.calendar.day(inputs.now))};
  return static_cast<DayOfWeek>(day.c_encoding());
}

}  // namespace

bool isUnknown(CustomOutcome outcome) {
  using enum CustomOutcome;
  return outcome == noForecast || outcome == feedFailed || outcome == noDetail || outcome == noRadar ||
         outcome == noStation || outcome == stationSilent;
}

PrecipOutlook rainOutlook(RuleInputs const& inputs) {
  if (!inputs.nowcast) return {};
  Nowcast nowcast = *inputs.nowcast;
  nameFall(nowcast, inputs.hours);
  return PrecipPredictor(std::move(nowcast)).outlook(inputs.now);
}

std::optional<CustomOutcome> reasonNotDue(CustomNotification const& rule, RuleInputs const& inputs,
                                          bool hasPlace) {
  if (!hasPlace) return CustomOutcome::placeDeleted;
  if (!rule.isEnabled) return CustomOutcome::disabled;
  if (!rule.scheduledDays.contains(dayOf(inputs))) return CustomOutcome::notToday;
  bool const isDue = rule.isImmediate() || inputs.calendar.hour(inputs.now) >= rule.checkHour;
  return isDue ? std::nullopt : std::optional(CustomOutcome::notYet);
}

CustomEvaluation measuredRule(CustomNotification const& rule, RuleInputs const& inputs,
                              RuleSettings const& settings) {
  if (rule.conditionType == Type::earthquake) {
    return ofEarthquakes(rule, inputs, settings.earthquakeRadiusKm);
  }
  if (rule.conditionType == Type::rainWithin) return ofRain(rule, inputs);
  if (kindOf(rule.conditionType).isOfStation()) return ofStation(rule, inputs);
  CustomEvaluation found =
      rule.conditionType == Type::airQuality ? ofAirQuality(rule, inputs) : ofForecast(rule, inputs);
  found.isNow = found.at == inputs.now;
  return found;
}

CustomEvaluation evaluateCustomRule(CustomNotification const& rule, RuleInputs const& inputs,
                                    RuleSettings const& settings, bool hasPlace) {
  if (auto const reason = reasonNotDue(rule, inputs, hasPlace)) return without(*reason);
  return measuredRule(rule, inputs, settings);
}

RuleInputSet inputsOf(CustomNotification::ConditionType type) {
  if (type == Type::earthquake) return {RuleInput::earthquakes};
  if (type == Type::airQuality) return {RuleInput::airQuality};
  if (kindOf(type).isOfStation()) return {RuleInput::station};
  // The forecast says whether it is snow.
  if (type == Type::rainWithin) return {RuleInput::nowcast, RuleInput::hourly};
  return {RuleInput::hourly};
}

std::string customRuleBody(CustomNotification const& rule, CustomEvaluation const& found,
                           RuleInputs const& inputs) {
  Texts const& texts = *inputs.texts;
  if (rule.conditionType == Type::rainWithin) {
    return sentenceOf(rainOutlook(inputs), texts, TimeWords(texts, inputs.calendar));
  }
  ConditionKind const& kind = kindOf(rule.conditionType);
  std::string description = ruleDescription(rule, inputs.units, texts);
  if (!found.value || !found.at) return description;
  std::string const value = conditionValueText(kind.unit, *found.value, inputs.units, texts);
  if (rule.conditionType == Type::earthquake) {
    return texts.format("customnotif.found.earthquake", description, value, found.where);
  }
  if (kind.isEvent() && found.isNow) return description;
  if (kind.isEvent())
    return texts.format("customnotif.found.eventAt", description, hourText(inputs, *found.at));
  if (found.isNow) return texts.format("customnotif.found.now", description, value);
  return texts.format("customnotif.found.at", description, value, hourText(inputs, *found.at));
}

}  // namespace nimbara
