// From the options of `nimbara rules add` and `edit` to a rule, or to the sentence that says what is wrong.
// Pure.
#pragma once

#include "app/places/places.h"
#include "base/result.h"
#include "cli/options/rules_options.h"
#include "cli/run_context.h"
#include "notifications/custom_notification.h"

namespace nimbara {

/// `rule` with what the options give. A wrong value is a mistake of the command line; a place that is not
/// saved is not.
Result<CustomNotification, Failure> ruleWith(CustomNotification rule, RulesOptions const& options,
                                             PlaceList const& places);

/// What a new rule is before its options: every day, as soon as the forecast says so.
CustomNotification newRule();

}  // namespace nimbara
