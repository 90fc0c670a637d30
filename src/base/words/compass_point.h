// The sixteen points of the compass ("NNW") in the program's language.
#pragma once

#include "base/words/texts.h"

#include <string>
#include <string_view>

namespace nimbara {

/// "NNO" for "NNW" in Portuguese; what is no point of the sixteen stays as it is.
inline std::string compassPoint(std::string_view point, Texts const& texts) {
  std::string const key = "compass." + std::string(point);
  std::string_view const word = texts.text(key);
  return std::string(word == key ? point : word);
}

}  // namespace nimbara
