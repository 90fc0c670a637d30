// MET Norway's nowcast 2.0: the radars of the Nordic countries, moved on for two hours. Pure.
#pragma once

#include "feeds/nowcast/nowcast_source.h"

#include <string>

namespace nimbara {

/// Path and query, with four decimals as the service's terms want it.
std::string metNowcastPath(Coordinate place);

Result<NowcastReply, DecodeError> parseMetNowcast(std::string_view body);

}  // namespace nimbara
