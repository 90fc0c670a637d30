// Where the water lies off a place in the United States: coasts, bays and the Great Lakes. Read from a table
// that is part of the program, good to a kilometre or two.
#pragma once

#include "base/geodesy.h"

#include <optional>
#include <string_view>

namespace nimbara {

/// So far from a shore a place is still on it.
inline constexpr double kShoreKm = 10;

/// A point on the water near a place on or close to a shore, a little way out so that an outline that is not
/// exact does not put it ashore; nothing where no shore of the United States or their territories is within
/// `kShoreKm`. Takes some milliseconds.
std::optional<Coordinate> usWatersOff(Coordinate place);

/// The code of a zone of waters ("LMZ741", "ANZ338"), not of land ("ILZ014", "IAC113").
bool isMarineZone(std::string_view code);

}  // namespace nimbara
