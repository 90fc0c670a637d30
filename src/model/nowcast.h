// What falls at a place within the next two hours, in steps of minutes, as a radar extrapolation or a model
// of quarter hours has it. Hourly values that are only divided are never one of these.
#pragma once

#include "base/enum_names.h"
#include "base/json/json.h"
#include "base/time/instant.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

enum class NowcastKind { radar, model15, none };
template <>
inline constexpr auto enumNames<NowcastKind> = std::to_array<std::string_view>({"radar", "model15", "none"});
static_assert(enumNamesComplete(NowcastKind::none));

/// What falls, where the source says it.
enum class Fall { unknown, rain, sleet, snow };
template <>
inline constexpr auto enumNames<Fall> = std::to_array<std::string_view>({"unknown", "rain", "sleet", "snow"});
static_assert(enumNamesComplete(Fall::snow));

struct NowcastStep {
  Instant from;
  Instant to;
  std::optional<double> mmPerHour;  ///< absent: not known, which is not dry
  Fall fall = Fall::unknown;

  bool operator==(NowcastStep const&) const = default;
};

struct Nowcast {
  std::string source;  ///< "metNorway"; empty where the kind is none
  NowcastKind kind = NowcastKind::none;
  std::optional<Instant> issued;  ///< absent where the source does not say it
  std::vector<NowcastStep> steps;

  bool operator==(Nowcast const&) const = default;
};

/// From this rate on it counts as precipitation.
inline constexpr double kWetMmPerHour = 0.1;

inline bool isWet(NowcastStep const& step) {
  return step.mmPerHour && *step.mmPerHour >= kWetMmPerHour;
}

}  // namespace nimbara
