// What the rules about the sky and nature share: deciding by measurements and grounds, and questions to a
// forecast.
#pragma once

#include "notifications/rules/rule.h"

#include <algorithm>
#include <initializer_list>
#include <vector>

namespace nimbara::sky {

using Relation = Measurement::Relation;
using Hours = std::span<HourlyForecast const>;

/// A condition that no number tells, and the note that says that it is not met.
struct Ground {
  bool holds = false;
  std::string_view note;
  bool isLack = false;  ///< not met, since nothing is known of it
};

/// What `tell` finds when every measurement and ground holds; else what was measured and the first ground
/// that is missing.
template <class Tell>
Evaluation decide(std::vector<Measurement> measured, std::initializer_list<Ground> grounds, Tell tell) {
  Evaluation evaluation;
  evaluation.measured = std::move(measured);
  for (Ground const& ground : grounds) {
    if (ground.holds || !evaluation.note.empty()) continue;
    evaluation.note = ground.note;
    evaluation.isUnknown = ground.isLack;
  }
  bool const allHold = std::ranges::all_of(evaluation.measured, &Measurement::holds);
  if (allHold && evaluation.note.empty()) evaluation.findings.push_back(tell());
  return evaluation;
}

/// Something good or merely curious: never more than a piece of information.
Finding pleasant(std::string identifier, std::string title, std::string body);
/// A nuisance.
Finding nuisance(std::string identifier, std::string title, std::string body);

bool isRain(WeatherConditionCode condition);
/// Rain, snow, sleet or thunder.
bool isWet(WeatherConditionCode condition);
/// The sun or the stars are seen.
bool isOpenSky(WeatherConditionCode condition);
bool isDry(HourlyForecast const& hour);

int localHour(RuleInputs const& inputs, Instant instant);
double sunAltitude(RuleInputs const& inputs, Instant instant);
bool isDark(RuleInputs const& inputs, Instant instant);
/// Illuminated part of the moon in whole %.
int moonPercent(Instant instant);

/// The cloud cover of the present in %, by the provider's young reading or the hour's entry.
std::optional<int> cloudCoverNow(RuleInputs const& inputs);
/// mm that fell or will have fallen in the entries that begin within `span` before `instant`.
double rainBefore(RuleInputs const& inputs, Instant instant, std::chrono::hours span);
/// The hours of the night that is coming or has begun, as far as they are ahead.
std::vector<HourlyForecast> comingNight(RuleInputs const& inputs);
/// True from noon to midnight: each night is sent once, and not again after midnight.
bool isTimeForTonight(RuleInputs const& inputs);

}  // namespace nimbara::sky
