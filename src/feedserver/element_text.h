// Orbital elements from CelesTrak's CSV to two-line elements, with numbers above 99999 in Alpha-5 (A0000 is
// 100000), which CelesTrak's own two-line form leaves out. Pure; any bytes may be given.
#pragma once

#include "base/result.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace nimbara {

struct ElementText {
  std::string text;         ///< three lines a satellite: its name and the two lines
  std::size_t count = 0;    ///< satellites in it
  std::size_t leftOut = 0;  ///< rows that the two lines cannot hold or that make no sense
};

/// The error is a sentence about a document that is no table of elements.
Result<ElementText, std::string> elementText(std::string_view csv);

}  // namespace nimbara
