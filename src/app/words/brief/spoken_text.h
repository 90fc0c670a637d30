// A text as it is to be heard: units and minus signs in the words of its language. Pure.
#pragma once

#include "base/units.h"
#include "base/words/texts.h"

#include <string>
#include <string_view>

namespace nimbara {

/// "-4 °C, about 6 mm" becomes "minus 4 degrees, about 6 millimetres". Digits stay, which speech reads in its
/// language; so does all that is no number with a unit.
std::string spokenText(std::string_view text, Units const& units, Texts const& texts);

}  // namespace nimbara
