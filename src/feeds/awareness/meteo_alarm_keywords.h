// The words by which the national services call their warnings.
#pragma once

#include "feeds/awareness/meteo_alarm_type.h"

#include <string>
#include <vector>

namespace nimbara {

struct WarningWord {
  std::string folded;  ///< as `searchFolded` has it
  MeteoAlarmType type;
};

/// So that "snowstorm" is found before "storm"; words of equal length in the order of the table.
std::vector<WarningWord> const& warningWordsLongestFirst();

}  // namespace nimbara
