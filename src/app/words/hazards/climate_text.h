// How a day compares with what is usual at a place, in the words and units of the user. Every face shows
// these. Pure.
#pragma once

#include "app/words/hazards/hazard_text.h"
#include "feeds/climate/climate_service.h"

namespace nimbara {

struct ClimateText {
  std::string sentence;  ///< "5° warmer than usual for mid-November (1991–2020)"; empty where none is due
  std::string band;      ///< what is usual; or that it is not known
  std::string today;     ///< "Daily mean today: 9 °C"; or that it is not known
  std::string source;
};

ClimateText climateText(ClimateOutlook const& outlook, HazardWords const& words);

}  // namespace nimbara
