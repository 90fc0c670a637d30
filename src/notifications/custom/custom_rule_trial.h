// One of the user's own rules tried on the whole of the present forecast: when would it ring first, and if it
// would not, what comes nearest. Pure; tells and remembers nothing.
#pragma once

#include "notifications/custom/custom_rule_evaluation.h"

#include <optional>
#include <string>

namespace nimbara {

struct RuleTrial {
  /// `holds`: it would notify; `doesNotHold`: it was looked at and would not; else why it could not be looked
  /// at.
  CustomOutcome outcome = CustomOutcome::doesNotHold;
  Instant ringsAt;         ///< when its evaluation would first say so
  CustomEvaluation found;  ///< what notifies, or what comes nearest
  Instant until;           ///< what is known ends here
};

/// `inputs` are of the rule's own place. A rule that is switched off is tried as if it were on.
RuleTrial triedRule(CustomNotification rule, RuleInputs const& inputs, RuleSettings const& settings);

/// "It would notify on Saturday 14:00. Wind gust above 50.0km/h now: 62.0km/h"
std::string trialText(CustomNotification const& rule, RuleTrial const& trial, RuleInputs const& inputs);

}  // namespace nimbara
