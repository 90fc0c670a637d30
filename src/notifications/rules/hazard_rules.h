// The rules about what outside services report: official warnings, earthquakes, fires, air, storms, lightning
// and travel advisories.
#pragma once

#include "notifications/rules/rule.h"

namespace nimbara {

Evaluation officialWarnings(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation earthquakes(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation fires(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation lightning(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation travelAdvisories(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation airQuality(RuleInputs const& inputs, RuleSettings const& settings);

/// New tropical cyclones of a basin, changes of known ones, and those whose track comes near the place.
Evaluation tropicalCyclones(TropicalBasin basin, RuleInputs const& inputs);
template <TropicalBasin basin>
Evaluation tropicalCyclonesOf(RuleInputs const& inputs, RuleSettings const& /*settings*/) {
  return tropicalCyclones(basin, inputs);
}

}  // namespace nimbara
