#include "notifications/rules/hazard_rules.h"

#include "base/geodesy.h"
#include "base/text/text.h"
#include "base/words/country_names.h"
#include "base/words/time_words.h"
#include "feeds/alerts/warning_words.h"
#include "notifications/rules/rule_constants.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace nimbara {

namespace {

using Relation = Measurement::Relation;

/// From here on an earthquake is sent with the sound of danger.
constexpr double kStrongEarthquake = 5.5;

/// A warning whose message is not the issuer's headline but says how many areas it has.
bool isCounted(WeatherAlert const& alert) {
  return alert.event && alert.text;
}

/// A warning whose message is all that its issuer says.
bool isWordy(WeatherAlert const& alert) {
  return alert.text && !alert.event;
}

/// Those of a counted or wordy warning; empty where they would fill a page.
std::string areasOf(WeatherAlert const& alert) {
  constexpr std::size_t kLongest = 200;
  bool const isNamed = alert.areaDesc && (isCounted(alert) || isWordy(alert));
  std::string areas = isNamed ? placeAreas(alert) : std::string();
  return areas.size() > kLongest ? std::string() : areas;
}

/// The areas, and the beginning of what is said.
std::string wordyBody(WeatherAlert const& alert) {
  constexpr std::size_t kLongest = 300;
  std::string body = areasOf(alert);
  std::string const said = oneLine(alert.message, kLongest);
  if (said.empty() || said == alert.title) return body;
  return body + (body.empty() ? "" : "\n") + said;
}

std::string bodyOf(WeatherAlert const& alert, Texts const& texts) {
  std::string body = isWordy(alert) ? wordyBody(alert) : areasOf(alert);
  if (body.empty()) body = alert.message.empty() ? alert.areaDesc.value_or("") : alert.message;
  if (alert.instruction && !alert.instruction->empty()) {
    body += (body.empty() ? "" : "\n") + *alert.instruction;
  }
  return body.empty() ? std::string(texts.text("govAlert.event.generic")) : body;
}

std::string_view soundOf(AlertSeverity severity) {
  return severity == AlertSeverity::critical ? "weather_critical.caf" : "weather_warning.caf";
}

std::string identifierOf(WeatherAlert const& alert) {
  return "gov_" + alert.id.text();
}

WarningWords wordsOf(RuleInputs const& inputs) {
  return {*inputs.texts, TimeWords(*inputs.texts, inputs.calendar), inputs.now, distanceUnit(inputs)};
}

/// How far off the warning is, or where near the place it is graver than at it.
std::string remarkOn(WeatherAlert const& alert, RuleInputs const& inputs) {
  Texts const& texts = *inputs.texts;
  if (alert.distanceKm) {
    return texts.format("push.event.near", inputs.place.name, distanceText(inputs, *alert.distanceKm));
  }
  std::vector<NearArea> graver = alert.near.value_or(std::vector<NearArea>());
  std::erase_if(
      graver, [&](NearArea const& area) { return area.severity.value_or(alert.severity) <= alert.severity; });
  if (graver.empty()) return {};
  return texts.format("push.event.nearAreas", inputs.place.name,
                      nearAreasText(graver, ownLevel(alert), wordsOf(inputs)));
}

Finding findingOf(WeatherAlert const& alert, RuleInputs const& inputs) {
  Texts const& texts = *inputs.texts;
  Finding finding;
  finding.identifier = identifierOf(alert);
  finding.title = alert.title;
  finding.body = bodyOf(alert, texts);
  finding.sound = soundOf(alert.severity);
  finding.severity = alert.severity;
  finding.kind = "gov:" + std::string(wordOf(alert.kind));
  // Neighbours' warnings are many: a slight one that only comes near is listed, not rung.
  if (alert.distanceKm && alert.severity < AlertSeverity::warning) finding.quietNote = "onlyNear";
  finding.isNear = alert.distanceKm.has_value();
  finding.remark = remarkOn(alert, inputs);
  // It stands behind the areas.
  bool const hasRoom = isCounted(alert) || !areasOf(alert).empty();
  if (hasRoom) finding.when = spanText(alert.onset, alert.expires, wordsOf(inputs));
  finding.began = alert.onset;
  finding.ends = alert.expires;
  finding.event = alert.event.value_or("");
  finding.issued = alert.issued;
  finding.updates = alert.updates;
  return finding;
}

/// For those who were sent the warning, and no louder than it need be.
Finding calledOffFinding(WeatherAlert const& alert, RuleInputs const& inputs) {
  Texts const& texts = *inputs.texts;
  Finding finding;
  finding.identifier = identifierOf(alert);
  finding.title = alert.title;
  std::string const moment =
      TimeWords(texts, inputs.calendar).moment(alert.issued.value_or(inputs.now), inputs.now);
  std::string const issuer = alert.issuer.value_or(alert.source.value_or(""));
  finding.remark = issuer.empty() ? texts.format("push.event.cancelledBody", inputs.place.name, moment)
                                  : texts.format("push.event.cancelledBy", issuer, inputs.place.name, moment);
  finding.severity = AlertSeverity::advisory;
  finding.sound = soundOf(finding.severity);
  finding.kind = "gov:" + std::string(wordOf(alert.kind));
  finding.began = alert.onset;
  finding.ends = alert.expires;
  finding.event = alert.event.value_or("");
  return finding;
}

/// Of a part of the country that nobody can place.
Finding unplacedFinding(WeatherAlert const& alert, RuleInputs const& inputs) {
  Texts const& texts = *inputs.texts;
  WeatherAlert unnamed = alert;
  if (isWordy(alert)) unnamed.areaDesc.reset();  // named in a sentence
  Finding finding = findingOf(unnamed, inputs);
  std::string const country = countryName(inputs.place.countryCode, texts.language());
  std::string const area = alert.areaDesc.value_or("");
  std::string const where = isCountryWide(alert, inputs.place.countryCode)
                                ? texts.format("push.event.countryWide", country)
                                : texts.format("push.event.unplaced", country, area);
  finding.body = finding.body == area ? where : where + "\n" + finding.body;
  finding.when.clear();  // a sentence stands there
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
  finding.greatness = quake.magnitude;
  finding.began = quake.time;
  return finding;
}

/// The feed answered, and nothing of it concerns the place.
Evaluation nothingNear(std::string_view what, std::string_view note) {
  return {{}, {{what, 0, Relation::atLeast, 1, ""}}, note};
}

double kmBetween(auto const& event, RuleInputs const& inputs) {
  return haversineKm(event.coordinate, inputs.place.coordinate);
}

/// Between the edges of both. Without computing it where their latitudes alone are far apart.
double gapKm(FireDetection const& fire, SeenFire const& part) {
  constexpr double kKmInADegree = 111;
  double const reach = fire.reachKm + part.reachKm;
  double const north = std::abs(fire.coordinate.latitude - part.latitude) * kKmInADegree - reach;
  if (north > cuts::kSameFireKm) return north;
  return haversineKm(fire.coordinate, {part.latitude, part.longitude}) - reach;
}

/// The identifier under which a fire was sent, wherever it burns by now; else one that no other fire has.
std::string identifierOf(FireDetection const& fire, KnownFires const& known) {
  std::string identifier = "fire_" + fire.id;
  if (known.contains(identifier)) identifier += "_" + formatIso8601(fire.detectedAt);
  double nearest = cuts::kSameFireKm;
  for (auto const& [name, parts] : known) {
    for (SeenFire const& part : parts) {
      double const gap = gapKm(fire, part);
      if (gap > nearest) continue;
      nearest = gap;
      identifier = name;
    }
  }
  return identifier;
}

/// Of fires farther off only the moment counts as their beginning in which they were seen: the first look
/// lists what has burned for a while. One at the door notifies.
Finding findingOf(FireDetection const& fire, double km, RuleInputs const& inputs) {
  bool const isNear = km <= cuts::kNearFireKm;
  Finding finding;
  finding.title = inputs.text("push.fire.title");
  finding.body = inputs.texts->format("push.fire.body", distanceText(inputs, km), inputs.place.name,
                                      hourText(inputs, fire.detectedAt));
  finding.sound = soundOf(isNear ? AlertSeverity::critical : AlertSeverity::warning);
  finding.severity = AlertSeverity::warning;
  finding.greatness = fire.frp;
  if (!isNear) finding.began = fire.detectedAt;
  return finding;
}

/// One fire for each identifier, told by the part that comes first.
class FoundFires {
 public:
  explicit FoundFires(RuleInputs const& inputs) : inputs_(inputs) {}

  void add(FireDetection const& fire, double km) {
    std::string identifier = identifierOf(fire, inputs_.knownFires);
    auto const [entry, isNew] = byIdentifier_.try_emplace(identifier, findings_.size());
    if (isNew) {
      findings_.push_back(findingOf(fire, km, inputs_));
      findings_.back().identifier = std::move(identifier);
    }
    findings_[entry->second].fire.push_back(
        {fire.coordinate.latitude, fire.coordinate.longitude, fire.reachKm, fire.detectedAt});
  }
  std::vector<Finding> take() { return std::move(findings_); }

 private:
  RuleInputs const& inputs_;
  std::vector<Finding> findings_;
  std::map<std::string, std::size_t> byIdentifier_;
};

/// Strikes of the last half hour within the radius.
struct NearStrikes {
  int count = 0;
  double nearestKm = 0;
  Instant last;
};

NearStrikes strikesNear(RuleInputs const& inputs, double radiusKm) {
  NearStrikes near;
  for (LightningStrike const& strike : *inputs.lightning) {
    double const km = kmBetween(strike, inputs);
    if (km > radiusKm || inputs.now - strike.time > cuts::kStrikeLife) continue;
    near.nearestKm = near.count == 0 ? km : std::min(near.nearestKm, km);
    near.last = near.count == 0 ? strike.time : std::max(near.last, strike.time);
    ++near.count;
  }
  return near;
}

std::string lightningBody(RuleInputs const& inputs, NearStrikes const& near) {
  Texts const& texts = *inputs.texts;
  std::string const distance = distanceText(inputs, near.nearestKm);
  auto const age = std::chrono::floor<std::chrono::minutes>(inputs.now - near.last).count();
  std::string const strikes = near.count == 1
                                  ? texts.format("push.lightning.bodySingle", distance)
                                  : texts.format("push.lightning.bodyMultiple", near.count, distance);
  std::string const advice =
      inputs.text(near.nearestKm <= cuts::kNearStrikeKm ? "push.lightning.adviceWindows"
                                                        : "push.lightning.adviceIndoors");
  return strikes + " " + advice + " " +
         texts.format("push.lightning.lastStrike", std::max(age, decltype(age){0}));
}

Finding findingOf(TravelAdvisory const& advisory, Texts const& texts) {
  constexpr std::size_t kSummaryLength = 300;
  Finding finding;
  finding.identifier = "travel_advisory_" + advisory.country;
  finding.title = texts.format("push.travelAdvisory.title", countryName(advisory.country, texts.language()));
  finding.body = advisory.title;
  if (!advisory.summary.empty()) finding.body += "\n" + oneLine(advisory.summary, kSummaryLength);
  finding.severity = advisorySeverity(advisory.level);
  finding.sound = soundOf(finding.severity);
  finding.kind = "travel_advisory:" + advisory.country;
  finding.began = advisory.updated ? advisory.updated : advisory.published;
  return finding;
}

}  // namespace

Evaluation officialWarnings(RuleInputs const& inputs, RuleSettings const& settings) {
  if (inputs.isUncovered) return Evaluation::none(kUncovered);
  if (!inputs.govAlerts) return Evaluation::unknown(Lack::notChecked);
  Evaluation evaluation;
  auto const limit = static_cast<double>(settings.govAlertLevel);
  double highest = -1;
  auto const look = [&](WeatherAlert const& alert, Finding finding) {
    auto const level = static_cast<double>(levelOf(alert.severity));
    highest = std::max(highest, level);
    if (level >= limit) {
      evaluation.findings.push_back(std::move(finding));
    } else {
      evaluation.untold.push_back(std::move(finding.identifier));
    }
  };
  for (WeatherAlert const& alert : *inputs.govAlerts) look(alert, findingOf(alert, inputs));
  for (WeatherAlert const& alert : inputs.unplacedAlerts) {
    // Others are for whoever looks: they are another region's as a rule.
    bool const isDanger = alert.severity == AlertSeverity::critical;
    if (isDanger) {
      look(alert, unplacedFinding(alert, inputs));
    } else {
      evaluation.untold.push_back(identifierOf(alert));
    }
  }
  for (WeatherAlert const& alert : inputs.calledOff) {
    evaluation.calledOff.push_back(calledOffFinding(alert, inputs));
  }
  if (highest < 0) {
    Evaluation nothing =
        nothingNear("warnings", inputs.unplacedAlerts.empty() ? "noWarnings" : "unplacedOnly");
    nothing.untold = std::move(evaluation.untold);
    nothing.calledOff = std::move(evaluation.calledOff);
    return nothing;
  }
  evaluation.measured.push_back({"warningLevel", highest, Relation::atLeast, limit, ""});
  return evaluation;
}

Evaluation earthquakes(RuleInputs const& inputs, RuleSettings const& settings) {
  if (!inputs.earthquakes) return Evaluation::unknown(Lack::notChecked);
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

Evaluation fires(RuleInputs const& inputs, RuleSettings const& settings) {
  if (!inputs.fires) return Evaluation::unknown(Lack::notChecked);
  if (inputs.fires->empty()) return nothingNear("firesNear", "noFires");
  Evaluation evaluation;
  FoundFires found(inputs);
  double nearest = kmBetween(inputs.fires->front(), inputs);
  for (FireDetection const& fire : *inputs.fires) {
    double const km = kmBetween(fire, inputs);
    nearest = std::min(nearest, km);
    if (km <= settings.fireRadiusKm) found.add(fire, km);
  }
  evaluation.findings = found.take();
  evaluation.measured.push_back({"fireDistance", nearest, Relation::atMost, settings.fireRadiusKm, "km"});
  return evaluation;
}

Evaluation lightning(RuleInputs const& inputs, RuleSettings const& settings) {
  if (!inputs.lightning) return Evaluation::unknown(Lack::notChecked);
  NearStrikes const near = strikesNear(inputs, settings.lightningRadiusKm);
  if (near.count == 0) return nothingNear("strikesNear", "noStrikes");
  Finding finding;
  finding.title = inputs.text("push.lightning.title");
  finding.body = lightningBody(inputs, near);
  finding.severity = AlertSeverity::warning;
  return {{std::move(finding)},
          {{"strikesNear", static_cast<double>(near.count), Relation::atLeast, 1, ""},
           {"strikeDistance", near.nearestKm, Relation::atMost, settings.lightningRadiusKm, "km"}},
          {}};
}

Evaluation travelAdvisories(RuleInputs const& inputs, RuleSettings const& settings) {
  if (!inputs.advisories) return Evaluation::unknown(Lack::notChecked);
  auto const own = std::ranges::find(*inputs.advisories, inputs.place.countryCode, &TravelAdvisory::country);
  int const level = own == inputs.advisories->end() ? 0 : own->level;
  int const least = static_cast<int>(settings.travelAdvisoryLevel) + 1;
  Evaluation evaluation{
      {},
      {{"advisoryLevel", static_cast<double>(level), Relation::atLeast, static_cast<double>(least), ""}},
      level == 0 ? "noAdvisory" : ""};
  if (level >= least) evaluation.findings.push_back(findingOf(*own, *inputs.texts));
  return evaluation;
}

}  // namespace nimbara
