#include "cli/commands/rule_test.h"

#include "app/notices/notification_inputs.h"
#include "app/places/place_resolver.h"
#include "app/services/feed_services.h"
#include "app/services/forecasts/forecast_service.h"
#include "notifications/custom/custom_rule_evaluation.h"
#include "notifications/custom/custom_rule_text.h"

#include <cmath>

namespace nimbara {

namespace {

/// What the rule reads at its place, or why there is no forecast of it.
Result<RuleInputs, Failure> inputsFor(CustomNotification const& rule, Place const& place, RunContext& context,
                                      Session const& session) {
  std::optional<Failure> failure;
  auto const weatherOf = [&](Place const& at, std::stop_token const& stop) {
    auto answer = context.app().forecasts().get(at, WeatherProviderOption::automatic, stop);
    if (!answer) {
      failure = Failure{exitCode::kUnavailable, context.sentenceOf(answer.error()), answer.error()};
      return std::shared_ptr<WeatherData const>();
    }
    context.tell(context.note(*answer));
    return std::make_shared<WeatherData const>(std::move(answer->data));
  };
  NotificationInputs gatherer(
      always(context.app().feeds()), context.clock(),
      {context.wording().units, context.wording().texts, context.wording().fallback, weatherOf, {}});
  RuleInputSet const needed = inputsOf(rule.conditionType);
  RuleInputs inputs = gatherer.gatherFor(place, needed, *session.settings, session.stop).inputs;
  if (failure) return std::unexpected(*failure);
  if (auto const failed = inputs.failureOf(needed)) context.tell(context.plain(*failed));
  return inputs;  // whose words are the context's
}

std::string outcomeText(CustomOutcome outcome, Texts const& texts) {
  return std::string(texts.text("customnotif.outcome." + std::string(enumName(outcome))));
}

}  // namespace

Result<TestedRule, Failure> testedRule(CustomNotification const& rule, SavedPlace const* saved,
                                       RunContext& context, Session const& session) {
  auto const place = saved == nullptr ? context.place("") : Result<Place, Failure>(placeOf(*saved));
  if (!place) return std::unexpected(place.error());
  auto const inputs = inputsFor(rule, *place, context, session);
  if (!inputs) return std::unexpected(inputs.error());
  TestedRule tested;
  tested.found = measuredRule(rule, *inputs, RuleSettings::of(*session.settings));
  if (isUnknown(tested.found.outcome)) {
    std::string const why = outcomeText(tested.found.outcome, context.texts());
    return std::unexpected(Failure{exitCode::kUnavailable, "the rule cannot be tested: " + why, {}});
  }
  tested.notDue = reasonNotDue(rule, *inputs, true);
  if (tested.found.holds()) tested.body = customRuleBody(rule, tested.found, *inputs);
  if (rule.conditionType == ConditionType::rainWithin)
    tested.rain = customRuleBody(rule, tested.found, *inputs);
  if (tested.found.at) tested.hour = hourText(*inputs, *tested.found.at);
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

namespace {

/// The value, its hour and how far it lies from the limit.
std::string measuredText(CustomNotification const& rule, TestedRule const& tested,
                         RunContext const& context) {
  Texts const& texts = context.texts();
  Units const& units = context.wording().units;
  ConditionUnit const unit = kindOf(rule.conditionType).unit;
  CustomEvaluation const& found = tested.found;
  std::string text;
  if (found.value) text += ": " + conditionValueText(unit, *found.value, units, texts);
  if (found.at) text += texts.format("time.aroundSuffix", tested.hour);
  if (found.margin && rule.conditionOperator != ConditionOperator::any) {
    std::string const by = conditionDifferenceText(unit, std::abs(*found.margin), units, texts);
    text +=
        ", " + texts.format(*found.margin > 0 ? "customnotif.margin.beyond" : "customnotif.margin.short", by);
  }
  return text;
}

}  // namespace

std::string testedText(CustomNotification const& rule, TestedRule const& tested, RunContext const& context) {
  Texts const& texts = context.texts();
  std::string text = outcomeText(tested.found.outcome, texts);
  // Rain is told as the notification tells it.
  bool const isRain = rule.conditionType == ConditionType::rainWithin;
  if (!isRain) text += measuredText(rule, tested, context);
  if (isRain && !tested.rain.empty()) text += ": " + tested.rain;
  if (tested.notDue) text += " (" + outcomeText(*tested.notDue, texts) + ")";
  return text + "\n";
}

}  // namespace nimbara
