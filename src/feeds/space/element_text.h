// Orbital elements as sources publish them (a table of comma-separated values, a JSON list of objects,
// element sets) to element sets with a name line each. Numbers above 99999 are written in Alpha-5 (A0000 is
// 100000), which CelesTrak's own element sets leave out. Pure; any bytes may be given.
#pragma once

#include "base/result.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace nimbara {

struct ElementText {
  std::string text;         ///< three lines a satellite: its name and the two lines
  std::size_t count = 0;    ///< satellites in it
  std::size_t leftOut = 0;  ///< records that the two lines cannot hold or that make no sense
};

/// Which of the three forms it is the document tells itself. The error is a sentence about one that is none
/// of them, such as a message under a status of success.
Result<ElementText, std::string> elementText(std::string_view document);

}  // namespace nimbara
