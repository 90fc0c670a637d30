// Numbers as a reader's language writes them. Pure.
#pragma once

#include "base/words/texts.h"

#include <string>

namespace nimbara {

/// "15,6" for "15.6" where the language has a comma; a text without a point is left alone.
inline std::string decimalText(std::string number, Texts const& texts) {
  auto const point = number.find('.');
  return point == std::string::npos ? number : number.replace(point, 1, texts.decimalPoint());
}

}  // namespace nimbara
