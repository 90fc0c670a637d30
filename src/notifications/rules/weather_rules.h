// The rules about the coming hours of the forecast: rain and snow, temperature, wind, storms, sun.
#pragma once

#include "notifications/rules/rule.h"

namespace nimbara {

Evaluation heavyRain(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation heavySnow(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation rainStart(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation rainStop(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation snowStart(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation snowStop(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation temperatureDrop(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation temperatureRise(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation highWind(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation severeWeather(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation storm(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation tornado(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation flood(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation nwsSevereThunderstorm(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation nwsFlood(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation highUv(RuleInputs const& inputs, RuleSettings const& settings);

}  // namespace nimbara
