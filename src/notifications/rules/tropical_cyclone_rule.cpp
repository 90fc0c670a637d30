#include "base/words/time_words.h"
#include "feeds/storms/hurricane_places.h"
#include "notifications/rules/hazard_rules.h"
#include "notifications/rules/rule_constants.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace nimbara {

namespace {

using Relation = Measurement::Relation;

/// Winds are reported in steps of five knots: what differs by less differs by its rounding.
constexpr double kSameWindKmh = 1;

std::string basinText(RuleInputs const& inputs, TropicalBasin basin) {
  return inputs.text("push.hurricane.basin." + std::string(enumName(basin)));
}

std::string categoryText(RuleInputs const& inputs, StormCategory category) {
  return inputs.text("push.hurricane.category." + std::string(enumName(category)));
}

double windKmh(TropicalStorm const& storm) {
  return storm.windMs * kKmhInMs;
}

/// "northwest" for 315°.
std::string compassText(RuleInputs const& inputs, double degrees) {
  constexpr std::array kPoints{"north", "northeast", "east", "southeast",
                               "south", "southwest", "west", "northwest"};
  constexpr double kStep = 360.0 / kPoints.size();
  auto const point = static_cast<std::size_t>(std::lround(degrees / kStep)) % kPoints.size();
  return inputs.text(std::string("push.direction.") + kPoints[point]);
}

/// What a storm's notifications share.
Finding aboutStorm(TropicalStorm const& storm, std::string const& event, AlertSeverity severity) {
  Finding finding;
  finding.identifier = "hurricane_" + storm.id + "_" + event;
  finding.severity = severity;
  finding.kind = "hurricane:" + storm.id;
  return finding;
}

/// The like for what is sent once and then known.
Finding newsOfStorm(TropicalStorm const& storm, std::string const& event, AlertSeverity severity) {
  Finding finding = aboutStorm(storm, event, severity);
  finding.began = storm.lastUpdate;
  finding.storm = ToldStorm{storm.id, {storm.category, windKmh(storm)}};
  return finding;
}

/// What tells one report on a storm from the next. A report without a time is taken for one of this hour.
std::string advisoryOf(TropicalStorm const& storm, Instant now) {
  return formatIso8601(storm.lastUpdate.value_or(std::chrono::floor<std::chrono::hours>(now)));
}

/// The like for a change that a report brings. A storm may return to a value that it had, so the identifier
/// names the report and not the value.
Finding changeOf(TropicalStorm const& storm, std::string const& event, AlertSeverity severity,
                 RuleInputs const& inputs) {
  return newsOfStorm(storm, event + "_" + advisoryOf(storm, inputs.now), severity);
}

void append(std::string& body, std::string const& sentence) {
  if (!body.empty() && !sentence.empty()) body += " ";
  body += sentence;
}

/// Where it is: from a coast that people know, and from the user.
void appendPosition(std::string& body, TropicalStorm const& storm, RuleInputs const& inputs) {
  NearestHurricanePlace const coast = nearestHurricanePlace(storm.coordinate);
  if (coast.km <= cuts::kStormCoastKm) {
    append(body, inputs.texts->format("push.hurricane.nearCoast", distanceText(inputs, coast.km),
                                      coast.place.name));
  }
  double const km = haversineKm(storm.coordinate, inputs.place.coordinate);
  append(body,
         inputs.texts->format("push.hurricane.distanceFrom", distanceText(inputs, km), inputs.place.name));
}

std::string movementText(TropicalStorm const& storm, RuleInputs const& inputs) {
  bool const isMoving = storm.movementDirection && storm.movementMs.value_or(0) > 0;
  if (!isMoving) return {};
  return inputs.texts->format("push.hurricane.moving", compassText(inputs, *storm.movementDirection),
                              windText(inputs, *storm.movementMs * kKmhInMs));
}

Finding newStorm(TropicalStorm const& storm, RuleInputs const& inputs) {
  Finding finding = newsOfStorm(storm, "new", AlertSeverity::advisory);
  finding.title = inputs.texts->format("push.hurricane.newTitle", storm.name);
  finding.body = inputs.texts->format("push.hurricane.formed", storm.name, basinText(inputs, storm.basin));
  append(finding.body, inputs.texts->format("push.hurricane.winds", windText(inputs, windKmh(storm))));
  append(finding.body, movementText(storm, inputs));
  appendPosition(finding.body, storm, inputs);
  return finding;
}

Finding categoryChange(TropicalStorm const& storm, KnownStorm const& known, RuleInputs const& inputs) {
  bool const intensifies = storm.category > known.category;
  Finding finding =
      changeOf(storm, "category", intensifies ? AlertSeverity::warning : AlertSeverity::advisory, inputs);
  std::string const category = categoryText(inputs, storm.category);
  finding.title = inputs.texts->format("push.hurricane.catChangeTitle", storm.name, category);
  finding.body = inputs.texts->format(intensifies ? "push.hurricane.intensified" : "push.hurricane.weakened",
                                      storm.name, categoryText(inputs, known.category), category);
  append(finding.body, inputs.texts->format("push.hurricane.windsNow", windText(inputs, windKmh(storm))));
  appendPosition(finding.body, storm, inputs);
  return finding;
}

Finding windChange(TropicalStorm const& storm, KnownStorm const& known, RuleInputs const& inputs) {
  Finding finding = changeOf(storm, "speed", AlertSeverity::advisory, inputs);
  bool const strengthens = windKmh(storm) > known.windKmh;
  finding.title = inputs.texts->format("push.hurricane.speedTitle", storm.name);
  finding.body = inputs.texts->format(
      strengthens ? "push.hurricane.strengthening" : "push.hurricane.weakening", storm.name);
  append(finding.body, inputs.texts->format("push.hurricane.speedChanged", windText(inputs, known.windKmh),
                                            windText(inputs, windKmh(storm))));
  appendPosition(finding.body, storm, inputs);
  return finding;
}

/// What is new of a storm since it was sent last.
std::optional<Finding> newsOf(TropicalStorm const& storm, RuleInputs const& inputs) {
  auto const known = inputs.knownStorms.find(storm.id);
  if (known == inputs.knownStorms.end()) return newStorm(storm, inputs);
  if (storm.category != known->second.category) return categoryChange(storm, known->second, inputs);
  bool const hasChanged = std::abs(windKmh(storm) - known->second.windKmh) > kSameWindKmh;
  return hasChanged ? std::optional(windChange(storm, known->second, inputs)) : std::nullopt;
}

/// The point of the track ahead that lies nearest to the place.
struct Approach {
  TropicalTrackPoint const* point = nullptr;
  double km = 0;
};

Approach approachOf(TropicalStorm const& storm, RuleInputs const& inputs) {
  Approach nearest;
  for (TropicalTrackPoint const& point : storm.track) {
    double const km = haversineKm(point.coordinate, inputs.place.coordinate);
    bool const isNearer = nearest.point == nullptr || km < nearest.km;
    if (point.time >= inputs.now && isNearer) nearest = {&point, km};
  }
  return nearest;
}

Finding approaching(TropicalStorm const& storm, Approach const& approach, RuleInputs const& inputs) {
  TimeWords const words(*inputs.texts, inputs.calendar);
  Finding finding = aboutStorm(storm, "approach", AlertSeverity::warning);
  finding.title = inputs.texts->format("push.hurricane.approachTitle", storm.name);
  finding.body = inputs.texts->format("push.hurricane.approach", distanceText(inputs, approach.km),
                                      inputs.place.name, words.hourLabel(approach.point->time, inputs.now));
  append(finding.body, inputs.texts->format("push.hurricane.windsNow", windText(inputs, windKmh(storm))));
  append(finding.body, movementText(storm, inputs));
  return finding;
}

}  // namespace

Evaluation tropicalCyclones(TropicalBasin basin, RuleInputs const& inputs) {
  auto const& storms = basin == TropicalBasin::westernPacific ? inputs.typhoons : inputs.storms;
  if (!storms) return Evaluation::unknown(Lack::notChecked);
  Evaluation evaluation;
  int count = 0;
  for (TropicalStorm const& storm : *storms) {
    if (storm.basin != basin) continue;
    ++count;
    if (auto news = newsOf(storm, inputs)) evaluation.findings.push_back(std::move(*news));
    Approach const approach = approachOf(storm, inputs);
    if (approach.point == nullptr) continue;
    Measurement const distance{"trackDistance", approach.km, Relation::atMost, cuts::kStormApproachKm, "km"};
    evaluation.measured.push_back(distance);
    if (distance.holds()) evaluation.findings.push_back(approaching(storm, approach, inputs));
  }
  evaluation.measured.insert(evaluation.measured.begin(),
                             {"storms", static_cast<double>(count), Relation::atLeast, 1, ""});
  if (evaluation.findings.empty()) evaluation.note = count == 0 ? "noStorms" : "stormsUnchanged";
  return evaluation;
}

}  // namespace nimbara
