// The reminders and summaries that come at an hour of the user's choice. Each looks at one local day: the
// engine gives it the moment at which it will be sent as `now`.
#pragma once

#include "notifications/rules/rule.h"

namespace nimbara {

Evaluation umbrellaReminder(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation uvReminder(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation beachTime(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation morningSummary(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation eveningSummary(RuleInputs const& inputs, RuleSettings const& settings);

}  // namespace nimbara
