#include "cli/rule_test.h"

#include "app/place_resolver.h"
#include "gazetteer/gazetteer.h"
#include "notifications/condition_kinds.h"
#include "notifications/custom_rule_text.h"

#include <cmath>

namespace nimbara {

namespace {

RuleInputs inputsFor(Place const& place, RunContext& context) {
  RuleInputs inputs;
  inputs.now = context.clock().now();
  inputs.calendar = Calendar::forZone(timeZoneAt(place.coordinate)).value_or(context.wording().fallback);
  inputs.units = context.wording().units;
  inputs.texts = &context.texts();
  inputs.place = {{}, place.name, place.country, place.coordinate, true};
  return inputs;
}

Result<void, Failure> addForecast(RuleInputs& inputs, Place const& place, RunContext& context,
                                  Session const& session) {
  auto answer = context.app().forecasts().get(place, WeatherProviderOption::automatic, session.stop);
  if (!answer) {
    return std::unexpected(
        Failure{exitCode::kUnavailable, context.sentenceOf(answer.error()), answer.error()});
  }
  context.tell(context.note(*answer));
  inputs.weather = std::make_shared<WeatherData>(std::move(answer->data));
  inputs.readWeather();
  return {};
}

void addEarthquakes(RuleInputs& inputs, RunContext& context, Session const& session) {
  EarthquakeService& service = context.app().feeds().earthquakes();
  auto events = service.fetchEarthquakes(session.stop);
  std::string problem = service.problem();
  if (!problem.empty()) context.tell("the earthquakes could not be renewed: " + problem);
  if (!problem.empty() && events.empty()) return;
  inputs.earthquakes = FeedReading<std::vector<EarthquakeEvent>>::of(std::move(events));
}

bool isUnknown(CustomOutcome outcome) {
  return outcome == CustomOutcome::noForecast || outcome == CustomOutcome::feedFailed ||
         outcome == CustomOutcome::noDetail;
}

std::string outcomeText(CustomOutcome outcome, Texts const& texts) {
  return std::string(texts.text("customnotif.outcome." + std::string(enumName(outcome))));
}

}  // namespace

Result<TestedRule, Failure> testedRule(CustomNotification const& rule, SavedPlace const* saved,
                                       RunContext& context, Session const& session) {
  auto const place = saved == nullptr ? context.place("") : Result<Place, Failure>(placeOf(*saved));
  if (!place) return std::unexpected(place.error());
  RuleInputs inputs = inputsFor(*place, context);
  bool const readsForecast = kindOf(rule.conditionType).ofHour != nullptr;
  auto const done = readsForecast ? addForecast(inputs, *place, context, session) : Result<void, Failure>{};
  if (!done) return std::unexpected(done.error());
  if (rule.conditionType == ConditionType::earthquake) addEarthquakes(inputs, context, session);
  CustomRuleSurroundings const surroundings;
  TestedRule tested;
  tested.found = measuredRule(rule, inputs, RuleSettings::of(*session.settings), surroundings);
  if (isUnknown(tested.found.outcome)) {
    std::string const why = outcomeText(tested.found.outcome, context.texts());
    return std::unexpected(Failure{exitCode::kUnavailable, "the rule cannot be tested: " + why, {}});
  }
  tested.notDue = reasonNotDue(rule, inputs, surroundings);
  if (tested.found.holds()) tested.body = customRuleBody(rule, tested.found, inputs);
  if (tested.found.at) tested.hour = hourText(inputs, *tested.found.at);
  return tested;
}

void writeTested(JsonWriter& writer, TestedRule const& tested) {
  writer.member("outcome", tested.found.outcome);
  writer.memberOrNull("value", tested.found.value);
  writer.memberOrNull("margin", tested.found.margin);
  writer.memberOrNull("time", tested.found.at);
  writer.member("due", !tested.notDue);
  writer.memberOrNull("notDue", tested.notDue);
  writer.member("body", tested.body);
}

std::string testedText(CustomNotification const& rule, TestedRule const& tested, RunContext const& context) {
  Texts const& texts = context.texts();
  Units const& units = context.wording().units;
  ConditionUnit const unit = kindOf(rule.conditionType).unit;
  CustomEvaluation const& found = tested.found;
  std::string text = outcomeText(found.outcome, texts);
  if (found.value) text += ": " + conditionValueText(unit, *found.value, units, texts);
  if (found.at) text += context.texts().format("time.aroundSuffix", tested.hour);
  if (found.margin && rule.conditionOperator != ConditionOperator::any) {
    std::string const by = conditionDifferenceText(unit, std::abs(*found.margin), units, texts);
    text +=
        ", " + texts.format(*found.margin > 0 ? "customnotif.margin.beyond" : "customnotif.margin.short", by);
  }
  if (tested.notDue) text += " (" + outcomeText(*tested.notDue, texts) + ")";
  return text + "\n";
}

}  // namespace nimbara
