// Inputs of notification rules in tests: mild hours at a place, of which a test changes what it is about.
#pragma once

#include "notifications/rules/rule.h"
#include "support/forecasts.h"

#include <functional>
#include <string>
#include <vector>

namespace nimbara::test {

/// What a test does to a mild forecast.
using Change = std::function<void(WeatherData&)>;

/// One change after the other.
template <class... Changes>
Change all(Changes const&... changes) {
  return [=](WeatherData& data) { (changes(data), ...); };
}

Texts const& englishTexts();

/// Four days of mild hours from the hour of `now` on, after `change`.
RuleInputs ruleInputs(Instant now, Change const& change = {});

/// What cannot be right of any evaluation: silence without a reason, texts that English lacks.
std::vector<std::string> faultsOf(Evaluation const& found);

/// The body of the first finding; empty when nothing was found.
std::string bodyOf(Evaluation const& found);

Coordinate northOf(Coordinate place, double km);

}  // namespace nimbara::test
