// What is remembered of a rule about rain in the next minutes, so that each change from dry to wet is told
// once. Values; pure functions.
#pragma once

#include "base/json/json.h"
#include "base/time/instant.h"

#include <chrono>
#include <map>
#include <optional>
#include <string>

namespace nimbara {

struct PrecipOutlook;

struct RainMemory {
  bool isArmed = false;            ///< the next rain is news
  bool isTold = false;             ///< rain was found that is news, and it is not over yet
  std::optional<Instant> dryFrom;  ///< since when it has been dry, or when the rain that is known ends
  std::optional<Instant> seenAt;   ///< the last look that knew the present

  bool operator==(RainMemory const&) const = default;
};

template <>
inline constexpr auto jsonFields<RainMemory> =
    FieldList{fieldOr("armed", &RainMemory::isArmed), fieldOr("told", &RainMemory::isTold),
              field("dryFrom", &RainMemory::dryFrom), field("seenAt", &RainMemory::seenAt)};

/// By the rule's identifier and the key of its place.
using RainMemories = std::map<std::string, RainMemory, std::less<>>;

/// From so long a dry time on the next rain is news.
inline constexpr std::chrono::minutes kDryToArm{30};
/// Between two looks that lie farther apart nobody knows whether it was dry.
inline constexpr std::chrono::minutes kLongestBlink{20};

/// After a look at `now` that found `outlook`; rain counts from `within` before its beginning on. A look that
/// does not know the present changes nothing. Rain that nobody saw begin is no news.
RainMemory remembered(RainMemory memory, PrecipOutlook const& outlook, Instant now,
                      std::chrono::minutes within);

}  // namespace nimbara
