// What NASA FIRMS would answer: hot spots of made-up fires on land that burn for some days, seen twice a day
// by a satellite and listed three hours later; some of low confidence, times without their leading zeros.
#pragma once

#include "demo/demo_exchange.h"

#include <vector>

namespace nimbara {

/// The middles of the fires that burn somewhere in a box.
std::vector<Coordinate> demoFires(Coordinate southWest, Coordinate northEast, Instant now);

/// "/api/area/csv/KEY/VIIRS_NOAA20_NRT/WEST,SOUTH,EAST,NORTH/DAYS". Any key will do but "wrong".
DemoAnswer fireTable(DemoRequest const& request, Instant now);

}  // namespace nimbara
