// The rules about what outside services report: official warnings, earthquakes, fires, air, storms, lightning
// and travel advisories.
#pragma once

#include "notifications/rule.h"

namespace nimbara {

Evaluation officialWarnings(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation earthquakes(RuleInputs const& inputs, RuleSettings const& settings);

}  // namespace nimbara
