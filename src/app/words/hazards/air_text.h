// What is said of the air: the index with its pollutants, the hours ahead, pollen and ultraviolet light, in
// the words of a language. Every face shows these. Pure.
#pragma once

#include "app/words/hazards/hazard_text.h"
#include "feeds/air/air_index.h"

namespace nimbara {

struct AirText {
  std::string index;                   ///< "European air quality index: 44, moderate"
  std::string leading;                 ///< "Main pollutant: PM2.5"; may be empty
  std::vector<HazardLine> pollutants;  ///< "PM2.5", "22.1 µg/m³"
  std::string peak;                    ///< the worst of the next 48 hours; may be empty
  std::string uv;
  std::vector<std::string> protection;  ///< when the sun calls for protection, or that it does not
  std::string pollenState;              ///< why there are no values; empty where there are
  std::vector<HazardLine> pollen;       ///< "Birch", "12 grains/m³ now, up to 60"
  std::string source;
};

AirText airText(AirQualityForecast const& forecast, Coordinate place, std::optional<Instant> checkedAt,
                HazardWords const& words);

/// "moderate".
std::string bandText(AirBand band, Texts const& texts);

std::string pollutantText(Pollutant pollutant, Texts const& texts);

/// One for each, in the order of `Pollutant`.
std::vector<HazardLine> pollutantLines(AirLevels const& levels, Texts const& texts);

HazardLine pollenLine(PollenKind kind, PollenOutlook const& pollen, Texts const& texts);

/// As the World Health Organization shows it: half rounded up.
int uvShown(double uv);

}  // namespace nimbara
