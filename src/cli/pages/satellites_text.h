// What the satellites commands' texts have in common.
#pragma once

#include "base/text/number.h"

#include <string>

namespace nimbara {

inline std::string angleText(double degrees, int decimals) {
  return fixedDecimal(degrees, decimals) + "°";
}

}  // namespace nimbara
