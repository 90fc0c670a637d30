#include "analysis/alerts/truer_alerts.h"

#include "analysis/brief/brief_words.h"
#include "analysis/hour_kind.h"
#include "model/upcoming_hours.h"

#include <algorithm>
#include <optional>

namespace nimbara {

namespace {

constexpr std::size_t kHorizon = 12;

/// What falls most, where it is not rain.
std::optional<EventKind> truerKind(WeatherData const& weather, Instant now) {
  auto const ahead = upcomingHours(weather.allHourly, now);
  double rain = 0;
  double snow = 0;
  double freezing = 0;
  for (HourlyForecast const& hour : ahead.first(std::min(kHorizon, ahead.size()))) {
    if (!hour.knows(ForecastValue::precipitation)) continue;
    HourFall const fall = fallOf(hour);
    if (!falls(fall)) continue;
    (fall == HourFall::freezing ? freezing : fall == HourFall::snow ? snow : rain) += hour.precipMM;
  }
  if (freezing > 0 && freezing + snow >= rain) return EventKind::freezingRain;
  return snow > rain ? std::optional(EventKind::snow) : std::nullopt;
}

WeatherAlert alertOf(WeatherEvent const& event, WeatherAlert const& superseded, Instant now,
                     BriefWords const& words) {
  bool const isSnow = event.kind == EventKind::snow;
  WeatherAlert alert;
  alert.severity = isSnow ? superseded.severity : std::max(superseded.severity, AlertSeverity::warning);
  alert.title = words.heading(words.nameOf(event));
  alert.kind = isSnow ? WarningKind::snow : WarningKind::ice;
  alert.onset = event.begin;
  alert.expires = event.end;
  std::string const amount = isSnow ? words.snowAmount(event.totalSnowCm.value_or(0), event.begin <= now)
                                    : words.rainAmount(event.totalMM.value_or(0));
  alert.message = words.sentence({words.during(words.nameOf(event), event, now, Instant::max()), amount});
  return alert;
}

}  // namespace

std::vector<SupersededAlert> truerAlerts(std::span<WeatherAlert const> alerts,
                                         std::span<WeatherEvent const> events, WeatherData const& weather,
                                         Instant now, Units const& units, Texts const& texts,
                                         Calendar const& calendar) {
  auto const rain = std::ranges::find(alerts, WarningKind::rain, &WeatherAlert::kind);
  if (rain == alerts.end()) return {};
  auto const kind = truerKind(weather, now);
  if (!kind) return {};
  SupersededAlert truer{rain->id, std::string(enumName(*kind)), {}};
  bool const isSaid = *kind == EventKind::snow &&
                      std::ranges::find(alerts, WarningKind::snow, &WeatherAlert::kind) != alerts.end();
  auto const event = std::ranges::find(events, *kind, &WeatherEvent::kind);
  if (!isSaid && event != events.end())
    truer.instead = alertOf(*event, *rain, now, BriefWords(units, texts, calendar));
  return {truer};
}

}  // namespace nimbara
