#include "notifications/rules/weather_rules.h"

#include "base/words/list_text.h"
#include "base/words/time_words.h"
#include "notifications/rules/rule_constants.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

using Relation = Measurement::Relation;
using Hours = std::span<HourlyForecast const>;

Finding told(std::string title, std::string body, AlertSeverity severity = AlertSeverity::advisory) {
  Finding finding;
  finding.title = std::move(title);
  finding.body = std::move(body);
  finding.severity = severity;
  return finding;
}

Evaluation nothing(Measurement const& measured) {
  return {{}, {measured}, {}};
}

Evaluation one(Finding finding, Measurement const& measured) {
  return {{std::move(finding)}, {measured}, {}};
}

// ---- Temperature

/// The days that go on in the direction: each day's highest below (or above) that of the day before.
std::string continuation(RuleInputs const& inputs, double sign) {
  auto const& daily = inputs.weather->daily;
  auto day = std::ranges::upper_bound(daily, inputs.now, {}, &DailyForecast::date);
  if (day == daily.begin() || day == daily.end()) return {};
  TimeWords const words(*inputs.texts, inputs.calendar);
  std::string list;
  for (int count = 0; day != daily.end() && count < cuts::kTrendDays; ++day, ++count) {
    if (sign * (day->maxTempC - std::prev(day)->maxTempC) <= 0) break;
    appendItem(list,
               inputs.texts->format("push.temp.day", words.weekday(day->date),
                                    shownTemperature(inputs, day->maxTempC),
                                    shownTemperature(inputs, day->minTempC), temperatureSymbol(inputs)),
               *inputs.texts);
  }
  return list;
}

struct TemperatureChange {
  double sign;
  double cut;
  std::string_view what, title, body, continues;
};

Evaluation temperatureChange(RuleInputs const& inputs, TemperatureChange const& change) {
  if (!inputs.present) return Evaluation::unknown(Lack::noForecast);
  Hours const hours = inputs.hoursWithin(cuts::kTemperatureLookAhead);
  if (hours.empty()) return Evaluation::unknown(Lack::noForecast);
  auto const extreme = std::ranges::max_element(
      hours, {}, [&](HourlyForecast const& hour) { return change.sign * hour.tempC; });
  double const difference = change.sign * (extreme->tempC - inputs.present->tempC);
  Measurement const measured{change.what, difference, Relation::atLeast, change.cut, "°C"};
  if (!measured.holds()) return nothing(measured);
  std::string_view const unit = temperatureSymbol(inputs);
  std::string body = inputs.texts->format(change.body, shownTemperature(inputs, inputs.present->tempC), unit,
                                          shownTemperature(inputs, extreme->tempC), unit);
  if (std::string const days = continuation(inputs, change.sign); !days.empty()) {
    body += " " + inputs.texts->format(change.continues, days);
  }
  return one(told(inputs.text(change.title), std::move(body)), measured);
}

constexpr TemperatureChange kDrop{-1,
                                  cuts::kTemperatureDropC,
                                  "temperatureDrop",
                                  "push.tempDrop.title",
                                  "push.tempDrop.body",
                                  "push.tempDrop.coolingContinues"};
constexpr TemperatureChange kRise{1,
                                  cuts::kTemperatureRiseC,
                                  "temperatureRise",
                                  "push.tempRise.title",
                                  "push.tempRise.body",
                                  "push.tempRise.heatingContinues"};

// ---- Wind

double strongest(HourlyForecast const& hour) {
  return std::max(hour.windSpeedKmph, hour.windGustKmph);
}

std::string windBody(RuleInputs const& inputs, HourlyForecast const& onset, HourlyForecast const& peak) {
  Texts const& texts = *inputs.texts;
  auto const speed = static_cast<std::int64_t>(std::round(convert(strongest(peak), inputs.units.wind)));
  std::string_view const unit = symbol(inputs.units.wind);
  if (peak.date <= inputs.now) return texts.format("push.highWind.body", speed, unit);
  std::string const peakHour = hourText(inputs, peak.date);
  if (onset.date <= inputs.now || onset.date == peak.date) {
    return texts.format("push.highWind.bodyPeak", speed, unit, peakHour);
  }
  return texts.format("push.highWind.bodyFrom", speed, unit, hourText(inputs, onset.date), peakHour);
}

// ---- Generated alerts and official messages of the United States

bool tellsTornado(WeatherAlert const& alert) {
  return alert.kind == WarningKind::tornado;
}

WeatherAlert const* firstOf(InputReading<std::vector<WeatherAlert>> const& alerts, auto const& wanted) {
  if (!alerts) return nullptr;
  auto const found = std::ranges::find_if(*alerts, wanted);
  return found == alerts->end() ? nullptr : &*found;
}

/// The most severe live message whose event names `word`.
NWSAlert const* messageAbout(RuleInputs const& inputs, std::string_view word) {
  NWSAlert const* worst = nullptr;
  if (!inputs.nwsAlerts) return worst;
  for (NWSAlert const& message : *inputs.nwsAlerts) {
    bool const isAbout = message.event.find(word) != std::string::npos;
    if (isAbout && (worst == nullptr || message.severity > worst->severity)) worst = &message;
  }
  return worst;
}

AlertSeverity severityOf(NWSAlert const& message) {
  switch (message.severity) {
    case NWSAlertSeverity::extreme:
      return AlertSeverity::critical;
    case NWSAlertSeverity::severe:
      return AlertSeverity::warning;
    default:
      return AlertSeverity::advisory;
  }
}

/// The same event is sent as an official warning of its own.
bool isToldOfficially(NWSAlert const& message, RuleSettings const& settings) {
  return settings.govAlerts && levelOf(severityOf(message)) >= settings.govAlertLevel;
}

Finding officialFinding(NWSAlert const& message, RuleSettings const& settings, std::string title,
                        std::string body) {
  Finding finding = told(std::move(title), std::move(body), severityOf(message));
  finding.began = message.onset ? message.onset : message.sent;
  finding.ends = message.ends ? message.ends : message.expires;
  if (isToldOfficially(message, settings)) finding.quietNote = "toldOfficially";
  return finding;
}

std::string const& wordingOf(NWSAlert const& message) {
  return message.headline.empty() ? message.event : message.headline;
}

Measurement countOf(std::string_view what, std::size_t count) {
  return {what, static_cast<double>(count), Relation::atLeast, 1, ""};
}

/// No message. That the service of the United States has none says nothing of other countries.
Evaluation noMessage(RuleInputs const& inputs, std::string_view what) {
  return inputs.nwsAlerts ? nothing(countOf(what, 0)) : Evaluation::none(kOnlyUnitedStates);
}

}  // namespace

Evaluation temperatureDrop(RuleInputs const& inputs, RuleSettings const& /*settings*/) {
  return temperatureChange(inputs, kDrop);
}

Evaluation temperatureRise(RuleInputs const& inputs, RuleSettings const& /*settings*/) {
  return temperatureChange(inputs, kRise);
}

Evaluation highWind(RuleInputs const& inputs, RuleSettings const& settings) {
  Hours const hours = inputs.hoursWithin(cuts::kWindLookAhead);
  if (hours.empty()) return Evaluation::unknown(Lack::noForecast);
  auto const peak = std::ranges::max_element(hours, {}, strongest);
  Measurement const measured{"wind", strongest(*peak), Relation::atLeast, settings.highWindKmh, "km/h"};
  if (!measured.holds()) return nothing(measured);
  auto const onset = std::ranges::find_if(
      hours, [&](HourlyForecast const& hour) { return strongest(hour) >= settings.highWindKmh; });
  return one(told(inputs.text("push.highWind.title"), windBody(inputs, *onset, *peak)), measured);
}

Evaluation highUv(RuleInputs const& inputs, RuleSettings const& /*settings*/) {
  Hours const hours = inputs.hoursWithin(cuts::kUvLookAhead);
  if (hours.empty() && !inputs.present) return Evaluation::unknown(Lack::noForecast);
  std::optional<int> const now = inputs.present ? inputs.present->uvIndex : std::nullopt;
  std::optional<int> highest = now;
  for (HourlyForecast const& hour : hours) {
    if (hour.has(WeatherDetailField::uvIndex)) highest = std::max(highest, std::optional(hour.uvIndex));
  }
  if (!highest) return Evaluation::unknown(Lack::noDetail);
  Measurement const measured{"uvIndex", static_cast<double>(*highest), Relation::atLeast, cuts::kHighUv, ""};
  if (!measured.holds()) return nothing(measured);
  std::string body = now >= cuts::kHighUv ? inputs.texts->format("push.uvHigh.bodyNow", *now)
                                          : inputs.texts->format("push.uvHigh.bodySoon", *highest);
  return one(told(inputs.text("push.uvHigh.title"), std::move(body)), measured);
}

Evaluation severeWeather(RuleInputs const& inputs, RuleSettings const& /*settings*/) {
  if (!inputs.generatedAlerts) return Evaluation::unknown(Lack::noForecast);
  WeatherAlert const* const worst = firstOf(inputs.generatedAlerts, [](WeatherAlert const& alert) {
    return alert.severity >= AlertSeverity::warning && !tellsTornado(alert);
  });
  if (worst == nullptr) return nothing(countOf("severeAlerts", 0));
  std::string body = inputs.texts->format("push.storm.body", worst->title, worst->message);
  return one(told(inputs.text("push.storm.title"), std::move(body), worst->severity),
             countOf("severeAlerts", 1));
}

Evaluation storm(RuleInputs const& inputs, RuleSettings const& /*settings*/) {
  Hours const hours = inputs.hoursWithin(cuts::kStormLookAhead);
  if (hours.empty()) return Evaluation::unknown(Lack::noForecast);
  auto const likeliest = std::ranges::max_element(hours, {}, &HourlyForecast::chanceOfThunder);
  Measurement const measured{"thunderChance", static_cast<double>(likeliest->chanceOfThunder),
                             Relation::atLeast, cuts::kThunderChance, "%"};
  if (!measured.holds()) return nothing(measured);
  auto const first = std::ranges::find_if(
      hours, [](HourlyForecast const& hour) { return hour.chanceOfThunder >= cuts::kThunderChance; });
  std::string body = first->date <= inputs.now
                         ? inputs.text("push.thunder.bodyNow")
                         : inputs.texts->format("push.thunder.bodyAt", hourText(inputs, first->date));
  return one(told(inputs.text("push.thunder.title"), std::move(body), AlertSeverity::warning), measured);
}

Evaluation tornado(RuleInputs const& inputs, RuleSettings const& settings) {
  std::string title = inputs.text("push.tornado.title");
  std::string body = inputs.text("push.tornado.body");
  if (NWSAlert const* const message = messageAbout(inputs, "Tornado")) {
    return one(officialFinding(*message, settings, std::move(title), std::move(body)),
               countOf("tornadoMessages", 1));
  }
  if (!inputs.generatedAlerts) return Evaluation::unknown(Lack::noForecast);
  bool const isLikely = firstOf(inputs.generatedAlerts, tellsTornado) != nullptr;
  Measurement const measured = countOf("tornadoSetup", isLikely ? 1 : 0);
  if (!isLikely) return nothing(measured);
  return one(told(std::move(title), std::move(body), AlertSeverity::critical), measured);
}

Evaluation nwsFlood(RuleInputs const& inputs, RuleSettings const& settings) {
  NWSAlert const* const message = messageAbout(inputs, "Flood");
  if (message == nullptr) return noMessage(inputs, "floodMessages");
  return one(officialFinding(*message, settings, inputs.text("push.flood.title"), wordingOf(*message)),
             countOf("floodMessages", 1));
}

Evaluation nwsSevereThunderstorm(RuleInputs const& inputs, RuleSettings const& settings) {
  NWSAlert const* const message = messageAbout(inputs, "Severe Thunderstorm");
  if (message == nullptr) return noMessage(inputs, "thunderstormMessages");
  std::string body = inputs.texts->format("push.storm.body", message->event, wordingOf(*message));
  return one(officialFinding(*message, settings, inputs.text("push.storm.title"), std::move(body)),
             countOf("thunderstormMessages", 1));
}

}  // namespace nimbara
