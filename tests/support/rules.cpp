#include "support/rules.h"

#include <memory>
#include <numbers>

namespace nimbara::test {

Texts const& englishTexts() {
  static Texts const kTexts = Texts::load("en");
  return kTexts;
}

RuleInputs ruleInputs(Instant now, Change const& change) {
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

std::vector<std::string> faultsOf(Evaluation const& found) {
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

std::string bodyOf(Evaluation const& found) {
  return found.findings.empty() ? std::string() : found.findings.front().body;
}

Coordinate northOf(Coordinate place, double km) {
  return {place.latitude + km / kEarthRadiusKm * 180 / std::numbers::pi, place.longitude};
}

}  // namespace nimbara::test
