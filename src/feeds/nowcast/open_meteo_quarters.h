// The quarter hours of Open-Meteo's forecast. Of use only where `nowcastSourcesAt` has the source: elsewhere
// they are hourly values cut in four, and the answer does not tell. Pure.
#pragma once

#include "feeds/nowcast/nowcast_source.h"

#include <string>

namespace nimbara {

/// Path and query, without a key.
std::string openMeteoQuartersPath(Coordinate place);

Result<NowcastReply, DecodeError> parseOpenMeteoQuarters(std::string_view body);

}  // namespace nimbara
