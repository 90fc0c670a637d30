// The pictures of the radar that a supplier lists, and how far the list can be trusted. Records only.
#pragma once

#include "base/enum_names.h"
#include "base/time/instant.h"
#include "feeds/imagery/radar/radar_suppliers.h"
#include "platform/service_failure.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

struct RadarFrame {
  Instant time;
  bool isForecast = false;
  /// With {z}, {x} and {y}, or with {bbox} for edges in metres, {width} and {height}.
  std::string address;

  bool operator==(RadarFrame const&) const = default;
};

/// A supplier that should have had pictures and did not give them.
struct RadarMiss {
  RadarSource source = RadarSource::libreWxr;
  ServiceFailure failure;

  bool operator==(RadarMiss const&) const = default;
};

struct RadarReading {
  enum class State {
    current,
    none,   ///< nobody has radar there
    failed  ///< it could not be checked
  };

  State state = State::none;
  RadarSource source = RadarSource::libreWxr;  ///< of the frames; counts only while it is current
  std::vector<RadarFrame> frames;              ///< oldest first; never empty while it is current
  std::string coverage;                        ///< tiles of where there is no radar, as an address; or empty
  std::optional<Instant> checkedAt;
  std::vector<RadarMiss> misses;  ///< of the suppliers before the one that answered, in their order

  bool operator==(RadarReading const&) const = default;
};

template <>
inline constexpr auto enumNames<RadarReading::State> =
    std::to_array<std::string_view>({"current", "none", "failed"});
static_assert(enumNamesComplete(RadarReading::State::failed));

/// The newest frame that was measured, by its place in the list; the first of a list of forecasts only.
std::size_t newestMeasured(std::vector<RadarFrame> const& frames);

/// Shown in grey: it is older than three of the supplier's steps.
bool isOld(RadarFrame const& frame, RadarSupplier const& supplier, Instant now);

}  // namespace nimbara
