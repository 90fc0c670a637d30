// What is said of the tropical storms of the world, in the words and units of the user. Every face shows
// these. Pure.
#pragma once

#include "app/words/hazards/hazard_text.h"
#include "feeds/storms/world_storms.h"

namespace nimbara {

std::string stormStateText(HazardCheck const& check, std::size_t count, HazardWords const& words);

/// "Surigae, Tropical Storm" for a title; the detail has where it is from the place, its wind with the
/// minutes of its mean, where it moves, how near its forecast track comes, and who reports on it.
HazardLine stormLine(TropicalStorm const& storm, Coordinate place, HazardWords const& words);

/// "Not checked: GDACS (the service did not answer in time)"; a line for each.
std::vector<std::string> stormMissLines(std::vector<StormMiss> const& misses, HazardWords const& words);

}  // namespace nimbara
