// What a pass looks at for the user's own rules, and what they find. Pure.
#pragma once

#include "notifications/custom_notification.h"
#include "notifications/rules/rule.h"

#include <span>
#include <vector>

namespace nimbara {

/// What those of `rules` read that look at the place.
RuleInputSet inputsOf(std::span<CustomNotification const> rules, NotifiedPlace const& place);

/// Each of `rules` at each of `places` that it looks at. `rain` is what earlier passes remember.
std::vector<ForeignEvaluation> evaluatedRules(std::span<CustomNotification const> rules,
                                              std::span<RuleInputs const> places,
                                              RuleSettings const& settings, RainMemories const& rain = {});

}  // namespace nimbara
