// The rules about the sky and nature: pleasant or useful to know, none of them danger. Each is a pure
// function of one place's forecast; all of them are off until the user wants them.
#pragma once

#include "notifications/rules/rule.h"

namespace nimbara {

Evaluation rainbowAhead(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation fogBowAhead(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation auroraOverhead(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation staticShockRisk(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation spiderBallooning(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation birdMigration(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation mosquitoSwarm(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation stargazingNow(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation stargazingTonight(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation goldenHour(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation frostTonight(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation outdoorWindow(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation fogAhead(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation pressureFall(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation humidHeat(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation windChill(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation blackIceAhead(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation windshieldFrost(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation mosquitoesActive(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation vitaminDWindow(RuleInputs const& inputs, RuleSettings const& settings);
Evaluation heatPumpIcing(RuleInputs const& inputs, RuleSettings const& settings);

/// By the Magnus formula, °C; `humidity` in %.
double magnusDewPoint(double celsius, double humidity);

}  // namespace nimbara
