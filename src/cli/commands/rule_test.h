// One of the user's own rules on the present forecast of its place, as `nimbara rules test` tells it.
#pragma once

#include "app/places/places.h"
#include "base/json/json.h"
#include "cli/run_context.h"
#include "notifications/custom/custom_rule_evaluation.h"

#include <optional>
#include <string>

namespace nimbara {

struct TestedRule {
  CustomEvaluation found;
  std::optional<CustomOutcome> notDue;  ///< why an evaluation pass would not look at the rule now
  std::string body;                     ///< of the notification; empty when the rule does not hold
  std::string hour;                     ///< of the value found, in the place's time
  std::string rain;                     ///< what the nowcast says, of a rule about it
};

/// Asks for the forecast or the feed that the rule reads. `saved` is the rule's own place; null means the
/// selected one.
Result<TestedRule, Failure> testedRule(CustomNotification const& rule, SavedPlace const* saved,
                                       RunContext& context, Session const& session);

/// Members of an open object.
void writeTested(JsonWriter& writer, TestedRule const& tested);
std::string testedText(CustomNotification const& rule, TestedRule const& tested, RunContext const& context);

}  // namespace nimbara
