// The catalogue of the built-in notification rules: one row a rule. Nothing else knows which rules there are.
#pragma once

#include "notifications/rules/rule.h"

#include <span>
#include <string_view>

namespace nimbara {

/// In the order in which they are evaluated and told.
std::span<Rule const> ruleCatalogue();

/// The row whose stem `identifier` begins with, the longest where several do; null when none does.
Rule const* ruleOf(std::string_view identifier);

}  // namespace nimbara
