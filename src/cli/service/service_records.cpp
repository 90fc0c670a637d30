#include "cli/service/service_records.h"

#include "app/words/coverage_text.h"
#include "base/words/time_words.h"
#include "model/condition_text.h"
#include "model/present.h"
#include "model/process.h"
#include "model/upcoming_hours.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <span>

namespace nimbara {

namespace {

std::int64_t unixSeconds(Instant moment) {
  return std::chrono::floor<std::chrono::seconds>(moment).time_since_epoch().count();
}

/// Puts down what is known.
class Writer {
 public:
  void text(char const* key, std::string_view value) {
    if (!value.empty()) record_.emplace(key, std::string(value));
  }
  void maybe(char const* key, std::optional<std::string> const& value) {
    if (value) text(key, *value);
  }
  template <class Number>
  void number(char const* key, std::optional<Number> const& value) {
    if (value) number(key, *value);
  }
  void number(char const* key, double value) { record_.emplace(key, value); }
  void number(char const* key, int value) { record_.emplace(key, std::int64_t(value)); }
  void flag(char const* key, bool value) { record_.emplace(key, value); }
  void moment(char const* key, std::optional<Instant> const& value) {
    if (value) record_.emplace(key, unixSeconds(*value));
  }
  ServiceRecord take() { return std::move(record_); }

 private:
  ServiceRecord record_;
};

std::vector<SourceCoverage> coverageNow(ServicePlace const& place, Instant now) {
  return agedCoverage(place.official.coverage, now);
}

CoverageState stateNow(ServicePlace const& place, Instant now) {
  auto const coverage = coverageNow(place, now);
  return coverage.empty() ? CoverageState::uncovered : mostPressing(coverage).state;
}

std::string warningsText(ServicePlace const& place, Wording const& wording, Instant now) {
  Calendar const calendar =
      place.forecast ? calendarOf(place.forecast->data, wording.fallback) : wording.fallback;
  auto const lines = coverageLines(coverageNow(place, now), *wording.texts, calendar, now);
  return lines.empty() ? std::string() : lines.front();
}

/// A list that was kept may have grown old.
std::vector<WeatherAlert> lasting(ServicePlace const& place, Instant now) {
  std::vector<WeatherAlert> alerts = place.official.alerts;
  std::erase_if(alerts, [&](WeatherAlert const& alert) { return alert.expires && *alert.expires <= now; });
  return alerts;
}

void writePresent(Writer& out, Present const& present, Texts const& texts) {
  out.number("temperatureC", present.tempC);
  out.number("feelsLikeC", present.feelsLikeC);
  out.text("condition", enumName(present.condition));
  out.text("conditionText", conditionText(present.condition, present.isDay, texts));
  out.text("icon", weatherIcon(present.condition, present.isDay));
  out.flag("isDay", present.isDay);
  out.flag("isMeasured", present.isReading);
  if (present.knowsWind) out.number("windKmh", present.windSpeedKmph);
  if (present.knowsWind) out.text("windDirection", present.windDirection);
  out.number("gustKmh", present.windGustKmph);
  out.number("humidity", present.humidity);
  out.number("pressureHPa", present.pressure);
  out.number("precipitationMm", present.precipMM);
  out.number("uvIndex", present.uvIndex);
  out.number("chanceOfRain", present.chanceOfRain);
}

constexpr struct {
  WeatherConditionCode condition;
  char const* icon;
  bool hasNight = false;
} kIcons[] = {
    {WeatherConditionCode::sunny, "weather-clear", true},
    {WeatherConditionCode::partlyCloudy, "weather-few-clouds", true},
    {WeatherConditionCode::cloudy, "weather-overcast"},
    {WeatherConditionCode::overcast, "weather-overcast"},
    {WeatherConditionCode::fog, "weather-fog"},
    {WeatherConditionCode::lightShowers, "weather-showers-scattered"},
    {WeatherConditionCode::lightSleet, "weather-snow"},
    {WeatherConditionCode::lightRain, "weather-showers-scattered"},
    {WeatherConditionCode::heavyShowers, "weather-showers"},
    {WeatherConditionCode::heavyRain, "weather-showers"},
    {WeatherConditionCode::thunderyShowers, "weather-storm"},
    {WeatherConditionCode::thunderyHeavyRain, "weather-storm"},
    {WeatherConditionCode::lightSnow, "weather-snow"},
    {WeatherConditionCode::heavySnow, "weather-snow"},
    {WeatherConditionCode::lightSnowShowers, "weather-snow"},
    {WeatherConditionCode::heavySnowShowers, "weather-snow"},
    {WeatherConditionCode::thunderySnowShowers, "weather-storm"},
};

ServiceRecord hourRecord(HourlyForecast const& hour, WeatherData const& data, Wording const& wording) {
  bool const isDay = isDayIn(data, hour);
  Writer out;
  out.moment("time", hour.date);
  out.text("timeText", TimeWords(*wording.texts, calendarOf(data, wording.fallback)).hourColumn(hour.date));
  out.number("temperatureC", hour.tempC);
  out.text("temperature", displayTemperature(hour.tempC, hour.tempF, wording.units.temperature) + "°");
  out.text("condition", enumName(hour.condition));
  out.text("conditionText", conditionText(hour.condition, isDay, *wording.texts));
  out.text("icon", weatherIcon(hour.condition, isDay));
  if (hour.knows(ForecastValue::precipitation)) out.number("precipitationMm", hour.precipMM);
  if (hour.knows(ForecastValue::precipitationChance)) out.number("chanceOfRain", hour.chanceOfRain);
  return out.take();
}

ServiceRecord stepRecord(NowcastStep const& step) {
  Writer out;
  out.moment("from", step.from);
  out.moment("to", step.to);
  out.number("mmPerHour", step.mmPerHour);
  if (isWet(step) && step.fall != Fall::unknown) out.text("fall", enumName(step.fall));
  return out.take();
}

}  // namespace

std::string weatherIcon(WeatherConditionCode condition, bool isDay) {
  for (auto const& [known, icon, hasNight] : kIcons) {
    if (known == condition) return std::string(icon) + (hasNight && !isDay ? "-night" : "");
  }
  return "weather-none-available";
}

ServiceRecord placeRecord(ServicePlace const& place) {
  Writer out;
  out.text("id", place.id);
  out.text("name", place.place.name);
  out.text("country", place.country);
  out.text("region", place.place.region);
  out.number("latitude", place.place.coordinate.latitude);
  out.number("longitude", place.place.coordinate.longitude);
  out.flag("selected", place.isSelected);
  return out.take();
}

ServiceRecord currentRecord(ServicePlace const& place, Wording const& wording, Instant now) {
  Writer out;
  out.text("place", place.id);
  out.text("name", place.place.name);
  out.text("warningsState", enumName(stateNow(place, now)));
  out.number("warningCount", static_cast<int>(lasting(place, now).size()));
  out.text("warningsText", warningsText(place, wording, now));
  if (!place.forecast) {
    out.text("state", "unknown");
    return out.take();
  }
  ForecastAnswer const& answer = *place.forecast;
  LineContext const line = lineContext(place, wording, now);
  out.text("state", answer.stale ? "stale" : "current");
  out.moment("updated", answer.answeredAt);
  out.text("updatedText", ageText(answer.answeredAt, now, *wording.texts));
  if (answer.provider) out.text("provider", enumName(*answer.provider));
  out.text("summary", filledLine(kLineTemplate, line).value_or(""));
  if (auto const present = presentAt(answer.data, now)) {
    writePresent(out, *present, *wording.texts);
    out.text("temperature", filledLine("{temperature}", line).value_or(""));
  }
  return out.take();
}

ServiceRecords hourRecords(ServicePlace const& place, Wording const& wording, Instant now) {
  constexpr std::size_t kMost = 24;
  if (!place.forecast) return {};
  WeatherData const& data = place.forecast->data;
  auto const hours = upcomingHours(data.allHourly, now);
  ServiceRecords records;
  records.reserve(std::min(hours.size(), kMost));
  for (HourlyForecast const& hour : hours.first(std::min(hours.size(), kMost))) {
    records.push_back(hourRecord(hour, data, wording));
  }
  return records;
}

ServiceRecord warningRecord(WeatherAlert const& warning) {
  Writer out;
  out.text("id", warning.id.text());
  out.text("severity", enumName(warning.severity));
  out.text("kind", enumName(warning.kind));
  out.text("title", warning.title);
  out.text("message", warning.message);
  out.maybe("description", warning.description);
  out.maybe("instruction", warning.instruction);
  out.maybe("area", warning.areaDesc);
  out.maybe("source", warning.source);
  out.maybe("issuer", warning.issuer);
  out.maybe("colour", warning.colour);
  out.maybe("language", warning.language);
  out.maybe("link", warning.link);
  out.moment("onset", warning.onset);
  out.moment("expires", warning.expires);
  out.moment("issued", warning.issued);
  out.number("distanceKm", warning.distanceKm);
  return out.take();
}

ServiceWarnings warningsOf(ServicePlace const& place, Instant now) {
  auto const alerts = lasting(place, now);
  ServiceWarnings out{std::string(enumName(stateNow(place, now))), {}};
  out.warnings.reserve(alerts.size());
  std::ranges::transform(alerts, std::back_inserter(out.warnings), warningRecord);
  return out;
}

ServiceNowcast nowcastOf(ServicePlace const& place, Wording const& wording, Instant now) {
  ServiceNowcast out;
  Writer summary;
  // What was kept when the snapshot was made may be too old by now.
  bool const isKnown = place.nowcast && (!place.nowcast->checkedAt ||
                                         now - *place.nowcast->checkedAt <= NowcastService::kKeptLife);
  if (!isKnown) {
    summary.text("state", "unknown");
    out.summary = summary.take();
    return out;
  }
  NowcastReading const& kept = *place.nowcast;
  std::span<HourlyForecast const> hours;
  if (place.forecast) hours = place.forecast->data.allHourly;
  Calendar const calendar =
      place.forecast ? calendarOf(place.forecast->data, wording.fallback) : wording.fallback;
  NowcastText const text =
      nowcastText(withFall(kept, hours), now, *wording.texts, TimeWords(*wording.texts, calendar));
  summary.text("state", enumName(kept.state));
  summary.text("kind", enumName(kept.nowcast.kind));
  summary.text("source", kept.nowcast.source);
  summary.text("sentence", text.sentence);
  summary.moment("issued", kept.nowcast.issued);
  summary.moment("checked", kept.checkedAt);
  out.summary = summary.take();
  for (NowcastStep const& step : kept.nowcast.steps) {
    if (step.to > now) out.steps.push_back(stepRecord(step));
  }
  return out;
}

ServiceProperties propertiesOf(ServiceSnapshot const& snapshot, Instant now) {
  ServiceProperties out;
  out.placeCount = static_cast<std::uint32_t>(snapshot.places.size());
  std::set<Uuid> warnings;
  for (ServicePlace const& place : snapshot.places) {
    for (WeatherAlert const& alert : lasting(place, now)) warnings.insert(alert.id);
  }
  out.warningCount = static_cast<std::uint32_t>(warnings.size());
  if (ServicePlace const* const selected = snapshot.find("")) {
    out.selectedPlace = selected->id;
    if (selected->forecast) out.lastUpdated = unixSeconds(selected->forecast->answeredAt);
  }
  return out;
}

SearchHit searchHit(ServicePlace const& place, Wording const& wording, Instant now, double relevance) {
  SearchHit hit{place.id, place.place.name, warningsText(place, wording, now), "io.github.nimbara.Nimbara",
                relevance};
  if (hit.title.empty()) hit.title = formatCoordinate(place.place.coordinate);
  if (!place.forecast) return hit;
  LineContext const line = lineContext(place, wording, now);
  hit.title += ": " + filledLine("{temperature} {condition}", line).value_or("");
  hit.description += (hit.description.empty() ? "" : " · ") + filledLine("{age}", line).value_or("");
  if (auto const present = presentAt(place.forecast->data, now)) {
    hit.icon = weatherIcon(present->condition, present->isDay);
  }
  return hit;
}

}  // namespace nimbara
