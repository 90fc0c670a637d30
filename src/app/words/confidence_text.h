// How far a forecast can be trusted, in the words and units of the user: a line a day with its figures, the
// same in one line, and who was compared with. Every face shows these. Pure.
#pragma once

#include "analysis/forecast_confidence.h"
#include "app/words/hazards/hazard_text.h"
#include "model/provider_option.h"

#include <string>
#include <vector>

namespace nimbara {

struct ConfidenceText {
  std::vector<std::string> days;  ///< "Thursday: low (highs 6° apart, precipitation 12 mm apart)"
  std::string line;  ///< "Confidence: Today to Wednesday high, Thursday low"; or that it is not known
  std::string note;  ///< "Compared with MET Norway"; empty where nothing is known
};

/// `days` of a comparison of `shown` with `other`; without a second forecast nothing is known. A forecast is
/// never compared with itself.
std::vector<DayConfidence> confidenceDays(WeatherData const& shown, WeatherData const* other, Instant now,
                                          Calendar const& fallback);

ConfidenceText confidenceText(std::vector<DayConfidence> const& days,
                              std::optional<WeatherProviderOption> other, HazardWords const& words);

}  // namespace nimbara
