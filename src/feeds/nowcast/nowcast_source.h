// Who offers a nowcast of a place, and what its answer comes to.
#pragma once

#include "base/enum_names.h"
#include "base/geodesy.h"
#include "base/result.h"
#include "model/nowcast.h"

#include <string_view>
#include <vector>

namespace nimbara {

/// In the order in which they are asked.
enum class NowcastSource { metNorway, brightSky, openMeteo };
template <>
inline constexpr auto enumNames<NowcastSource> =
    std::to_array<std::string_view>({"metNorway", "brightSky", "openMeteo"});
static_assert(enumNamesComplete(NowcastSource::openMeteo));

/// Its proper name, the same in every language.
std::string_view properNameOf(NowcastSource source);
NowcastKind kindOf(NowcastSource source);

/// Those that may have a nowcast of the place, the best first. Open-Meteo is one of them only where a model
/// of real quarter hours stands behind its answer.
std::vector<NowcastSource> nowcastSourcesAt(Coordinate place);

struct NowcastReply {
  enum class State {
    steps,
    uncovered,  ///< the source has nothing for this place
    radarDown   ///< the source says that its radar is not available now
  };

  State state = State::steps;
  Nowcast nowcast;

  bool operator==(NowcastReply const&) const = default;
};

/// Any bytes may be given.
using NowcastParser = Result<NowcastReply, DecodeError> (*)(std::string_view body);

/// A rate that can be; nothing for others.
std::optional<double> plausibleRate(std::optional<double> mmPerHour);

}  // namespace nimbara
