// Inputs of notification rules in tests: mild hours at a place, of which a test changes what it is about.
#pragma once

#include "notifications/rule.h"
#include "support/forecasts.h"

#include <functional>
#include <memory>

namespace nimbara::test {

inline Texts const& englishTexts() {
  static Texts const kTexts = Texts::load("en");
  return kTexts;
}

/// Four days of mild hours from the hour of `now` on, after `change`.
inline RuleInputs ruleInputs(Instant now, std::function<void(WeatherData&)> const& change = {}) {
  Instant const begin = std::chrono::floor<std::chrono::hours>(now);
  auto data = std::make_shared<WeatherData>(mildForecast(begin, 96));
  if (change) change(*data);
  RuleInputs inputs;
  inputs.now = now;
  inputs.texts = &englishTexts();
  inputs.place = {"testville", "Testville", "PT", {38.7, -9.1}, true};
  inputs.weather = std::move(data);
  inputs.readWeather();
  return inputs;
}

}  // namespace nimbara::test
