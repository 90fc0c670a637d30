// The German weather service's radar composite with its extrapolation, through Bright Sky. Pure.
#pragma once

#include "base/time/instant.h"
#include "feeds/nowcast/nowcast_source.h"

#include <string>

namespace nimbara {

/// Path and query for the frames of the next two hours around the place. The service's own window would end
/// in an hour.
std::string brightSkyRadarPath(Coordinate place, Instant now);

Result<NowcastReply, DecodeError> parseBrightSkyRadar(std::string_view body);

/// A refusal says that the place lies outside the composite.
bool isOutsideBrightSkyRadar(std::string_view body);

}  // namespace nimbara
