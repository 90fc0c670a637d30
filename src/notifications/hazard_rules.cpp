#include "notifications/hazard_rules.h"

#include "base/geodesy.h"

namespace nimbara {

namespace {

using Relation = Measurement::Relation;

/// From here on an earthquake is told with the sound of danger.
constexpr double kStrongEarthquake = 5.5;

std::string bodyOf(WeatherAlert const& alert, Texts const& texts) {
  std::string body = alert.message.empty() ? alert.areaDesc.value_or("") : alert.message;
  if (alert.instruction && !alert.instruction->empty()) {
    body += (body.empty() ? "" : "\n") + *alert.instruction;
  }
  return body.empty() ? std::string(texts.text("govAlert.event.generic")) : body;
}

std::string_view soundOf(AlertSeverity severity) {
  return severity == AlertSeverity::critical ? "weather_critical.caf" : "weather_warning.caf";
}

Finding findingOf(WeatherAlert const& alert, Texts const& texts) {
  Finding finding;
  finding.identifier = "gov_" + alert.id.text();
  finding.title = alert.title;
  finding.body = bodyOf(alert, texts);
  finding.sound = soundOf(alert.severity);
  finding.severity = alert.severity;
  finding.kind = "gov:" + alert.icon;
  finding.began = alert.onset;
  finding.ends = alert.expires;
  return finding;
}

/// "12 km N of Testville": the service writes the place so already; "near X" otherwise.
Finding findingOf(EarthquakeEvent const& quake, double km, RuleInputs const& inputs) {
  Texts const& texts = *inputs.texts;
  Finding finding;
  finding.identifier = "earthquake_" + quake.id;
  finding.title = texts.format("push.earthquake.title", quake.magnitude);
  finding.body = texts.format("push.earthquake.body", quake.magnitude, quake.place, distanceText(inputs, km),
                              inputs.place.name);
  finding.sound =
      soundOf(quake.magnitude >= kStrongEarthquake ? AlertSeverity::critical : AlertSeverity::warning);
  finding.severity = AlertSeverity::warning;
  finding.began = quake.time;
  return finding;
}

}  // namespace

Evaluation officialWarnings(RuleInputs const& inputs, RuleSettings const& settings) {
  if (!inputs.govAlerts) return Evaluation::none("notChecked");
  Evaluation evaluation;
  auto const limit = static_cast<double>(settings.govAlertLevel);
  double highest = -1;
  for (WeatherAlert const& alert : *inputs.govAlerts) {
    auto const level = static_cast<double>(levelOf(alert.severity));
    highest = std::max(highest, level);
    if (level >= limit) evaluation.findings.push_back(findingOf(alert, *inputs.texts));
  }
  if (highest < 0) return Evaluation::none("noWarnings");
  evaluation.measured.push_back({"warningLevel", highest, Relation::atLeast, limit, ""});
  return evaluation;
}

Evaluation earthquakes(RuleInputs const& inputs, RuleSettings const& settings) {
  if (!inputs.earthquakes) return Evaluation::none("notChecked");
  Evaluation evaluation;
  double strongest = 0;
  for (EarthquakeEvent const& quake : *inputs.earthquakes) {
    if (inputs.now - quake.time > std::chrono::hours(24)) continue;
    double const km = haversineKm(quake.coordinate(), inputs.place.coordinate);
    if (km > settings.earthquakeRadiusKm) continue;
    strongest = std::max(strongest, quake.magnitude);
    if (quake.magnitude < settings.earthquakeMagnitude) continue;
    evaluation.findings.push_back(findingOf(quake, km, inputs));
  }
  evaluation.measured.push_back(
      {"magnitudeNear", strongest, Relation::atLeast, settings.earthquakeMagnitude, ""});
  return evaluation;
}

}  // namespace nimbara
