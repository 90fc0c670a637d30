// Tropical cyclones with their forecast tracks, and the parsers of what the National Hurricane Center
// publishes: its list of storms and the layers of its map service. All speeds are in m/s. Pure; any bytes may
// be given.
#pragma once

#include "base/enum_names.h"
#include "base/geodesy.h"
#include "base/json/json.h"
#include "base/result.h"
#include "base/time/instant.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

enum class TropicalBasin { atlantic, easternPacific, centralPacific, westernPacific, northIndian, southern };

template <>
inline constexpr auto enumNames<TropicalBasin> = std::to_array<std::string_view>(
    {"atlantic", "easternPacific", "centralPacific", "westernPacific", "northIndian", "southern"});
static_assert(enumNamesComplete(TropicalBasin::southern));

/// Who reports on a storm: the National Hurricane Center, the Joint Typhoon Warning Center, and the Global
/// Disaster Alert and Coordination System, which repeats what centres report.
enum class StormCentre { nhc, jtwc, gdacs };

template <>
inline constexpr auto enumNames<StormCentre> = std::to_array<std::string_view>({"nhc", "jtwc", "gdacs"});
static_assert(enumNamesComplete(StormCentre::gdacs));

/// Ascending: the Saffir-Simpson scale and the two steps below it.
enum class StormCategory { depression, storm, one, two, three, four, five };

template <>
inline constexpr auto enumNames<StormCategory> =
    std::to_array<std::string_view>({"depression", "storm", "1", "2", "3", "4", "5"});
static_assert(enumNamesComplete(StormCategory::five));

struct TropicalTrackPoint {
  Instant time;
  Coordinate coordinate;
  std::optional<double> windMs;
  std::optional<double> galeRadiusKm = {};  ///< the largest of the four quarters

  bool operator==(TropicalTrackPoint const&) const = default;
};

struct TropicalStorm {
  std::string id;  ///< "al092026": the same for as long as it lives
  TropicalBasin basin = TropicalBasin::atlantic;
  std::string bin;  ///< "AT4": the place that it takes on the maps for now
  std::string name;
  std::string classification;  ///< "TD", "TS", "HU", "STD", "STS", "PTC", "PC", "TY"; others may come
  double windMs = 0;           ///< the highest sustained wind
  StormCategory category = StormCategory::depression;
  std::optional<double> pressure;  ///< hPa in its centre
  Coordinate coordinate;
  std::optional<double> movementDirection;  ///< degrees that it moves towards
  std::optional<double> movementMs;
  std::optional<Instant> lastUpdate;
  std::vector<TropicalTrackPoint> track;  ///< in the order of time; empty where none was available
  std::vector<TropicalTrackPoint> past;   ///< where it came from, in the order of time
  StormCentre centre = StormCentre::nhc;
  std::vector<StormCentre> alsoBy;  ///< others that report on it
  /// Over how many minutes the wind is a mean: one for the centres of the United States, ten for most others.
  int averagingMinutes = 1;
  bool isPeakWind = false;  ///< the wind is the highest of its whole life, the one of now is not known
  std::optional<double> galeRadiusKm;

  bool operator==(TropicalStorm const&) const = default;
};

/// By the highest sustained wind of one minute.
StormCategory stormCategory(double knots);

inline constexpr double kMsInAKnot = 1852.0 / 3600;
inline constexpr double kKmhInMs = 3.6;

/// "al092026" is of the Atlantic; nothing for seas that no basin of ours is.
std::optional<TropicalBasin> basinOfStorm(std::string_view id);

/// Storms without an identifier of a known basin, a position or a wind are left out. An answer with an empty
/// list means that there are no storms.
Result<std::vector<TropicalStorm>, DecodeError> parseTropicalStorms(std::string_view body);

/// A layer of the map service.
struct MapLayer {
  int id = 0;
  std::string name;

  bool operator==(MapLayer const&) const = default;
};

Result<std::vector<MapLayer>, DecodeError> parseMapLayers(std::string_view body);

/// The layer of a storm's forecast positions; the numbers shift, the names stay.
std::optional<int> trackLayerOf(std::string_view bin, std::vector<MapLayer> const& layers);

/// The forecast positions in the order of time. `lastUpdate` is when the storm was reported on: the service
/// tells a point's time by the day of the month.
Result<std::vector<TropicalTrackPoint>, DecodeError> parseTropicalTrack(std::string_view body,
                                                                        Instant lastUpdate);

}  // namespace nimbara
