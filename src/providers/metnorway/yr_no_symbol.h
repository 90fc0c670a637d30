// The symbol codes of MET Norway.
#pragma once

#include "providers/common/interchange.h"

#include <optional>
#include <string_view>

namespace nimbara {

struct YrNoSymbol {
  WwoCondition condition;
  bool isSnow = false;        ///< nothing but snow falls
  std::optional<bool> isDay;  ///< by the suffix "_day" or "_night"; absent without one and in polar twilight
};

/// "lightrainshowers_night"; a code that the table lacks counts as cloudy.
YrNoSymbol readYrNoSymbol(std::string_view code);

}  // namespace nimbara
