// Inputs of notification rules in tests: mild hours at a place, of which a test changes what it is about.
#pragma once

#include "notifications/rules/rule.h"
#include "support/forecasts.h"

#include <functional>
#include <memory>
#include <numbers>
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

inline Texts const& englishTexts() {
  static Texts const kTexts = Texts::load("en");
  return kTexts;
}

/// Four days of mild hours from the hour of `now` on, after `change`.
inline RuleInputs ruleInputs(Instant now, Change const& change = {}) {
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

/// What cannot be right of any evaluation: silence without a reason, texts that English lacks.
inline std::vector<std::string> faultsOf(Evaluation const& found) {
  std::vector<std::string> faults;
  if (found.findings.empty() && found.measured.empty() && found.note.empty()) {
    faults.emplace_back("nothing says why");
  }
  auto const need = [&](std::string const& key) {
    if (!englishTexts().translates(key)) faults.push_back("no text " + key);
  };
  for (Measurement const& measured : found.measured) need("explain.measure." + std::string(measured.what));
  if (!found.note.empty()) need("explain.note." + std::string(found.note));
  for (Finding const& finding : found.findings) {
    for (std::string const& text : {finding.title, finding.body}) {
      // A text that no table has is its key; a placeholder without an argument stays.
      bool const isWhole = !text.empty() && text.find("push.") == std::string::npos &&
                           text.find("%@") == std::string::npos && text.find("%d") == std::string::npos;
      if (!isWhole) faults.push_back("gap in \"" + text + "\"");
    }
  }
  return faults;
}

/// The body of the first finding; empty when nothing was found.
inline std::string bodyOf(Evaluation const& found) {
  return found.findings.empty() ? std::string() : found.findings.front().body;
}

inline Coordinate northOf(Coordinate place, double km) {
  return {place.latitude + km / kEarthRadiusKm * 180 / std::numbers::pi, place.longitude};
}

}  // namespace nimbara::test
