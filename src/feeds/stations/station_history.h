// What the user's station has measured in the last two days, as readings came: a small file of the cache. Of
// one station; another one begins anew. Any thread of the programs of one user, one of which asks at a time.
#pragma once

#include "feeds/stations/station_reading.h"

#include <filesystem>

namespace nimbara {

/// What was measured out of doors at one moment.
struct StationSample {
  Instant at;
  std::optional<double> temperature = {};  ///< °C
  std::optional<double> windSpeed = {};    ///< km/h
  std::optional<double> pressure = {};     ///< hPa at sea level

  bool operator==(StationSample const&) const = default;
};

template <>
inline constexpr auto jsonFields<StationSample> =
    FieldList{field("at", &StationSample::at), field("temperature", &StationSample::temperature),
              field("windSpeed", &StationSample::windSpeed), field("pressure", &StationSample::pressure)};

inline constexpr std::chrono::hours kStationHistory{48};
/// There is one sample at most in such a span; stations in the own network are asked each minute.
inline constexpr std::chrono::minutes kStationSampling{5};

/// What the station measures now; nothing where it measures none of it.
std::optional<StationSample> sampleOf(StationReading const& station, Instant now);

/// With the sample, unless its span has one, and without what is older than two days or later than now.
std::vector<StationSample> withSample(std::vector<StationSample> samples, StationSample const& sample,
                                      Instant now);

class StationHistory {
 public:
  /// An empty path: nothing is kept.
  explicit StationHistory(std::filesystem::path file) : file_(std::move(file)) {}

  /// `link` says which link the station is of.
  void note(std::string const& link, StationReading const& station, Instant now) const;
  /// In the order of time; empty of another station than the last.
  std::vector<StationSample> read(std::string const& link, StationReading const& station, Instant now) const;
  void remove() const;

 private:
  std::filesystem::path file_;
};

}  // namespace nimbara
