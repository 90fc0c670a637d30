// What is told of one satellite: the card, and its way over one period. Pure functions.
#pragma once

#include "base/json/json.h"
#include "globe/earth_frame.h"
#include "globe/satellite_catalog.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

struct SatelliteInfo {
  std::string id;
  std::string name;
  int noradID = 0;
  std::string kind;         ///< a text's key
  std::string systemImage;  ///< a symbol's name
  double altitudeKm = 0;
  double speedKmh = 0;  ///< of a circular orbit at the satellite's distance
  double latitude = 0;
  double longitude = 0;
  double periodMinutes = 0;
  bool isSunlit = false;
};

template <>
inline constexpr auto jsonFields<SatelliteInfo> =
    FieldList{field("id", &SatelliteInfo::id),
              field("name", &SatelliteInfo::name),
              field("noradID", &SatelliteInfo::noradID),
              field("kind", &SatelliteInfo::kind),
              field("systemImage", &SatelliteInfo::systemImage),
              field("altitudeKm", &SatelliteInfo::altitudeKm),
              field("speedKmh", &SatelliteInfo::speedKmh),
              field("latitude", &SatelliteInfo::latitude),
              field("longitude", &SatelliteInfo::longitude),
              field("periodMinutes", &SatelliteInfo::periodMinutes),
              field("isSunlit", &SatelliteInfo::isSunlit)};

/// Nothing when the propagator reports an error.
std::optional<SatelliteInfo> satelliteInfo(SatelliteCatalog::Entry const& entry, std::string_view groupID,
                                           Instant now);

/// Speed on a circle through a point `distanceKm` from the earth's centre, in km/h.
double circularSpeedKmh(double distanceKm);

struct OrbitPoint {
  Instant time;
  double latitude = 0;
  double longitude = 0;
  double altitudeKm = 0;
};

template <>
inline constexpr auto jsonFields<OrbitPoint> =
    FieldList{field("time", &OrbitPoint::time), field("latitude", &OrbitPoint::latitude),
              field("longitude", &OrbitPoint::longitude), field("altitudeKm", &OrbitPoint::altitudeKm)};

/// One period ahead in `steps` equal steps, both ends included. Points that the propagator cannot give are
/// left out.
std::vector<OrbitPoint> orbitPath(SGP4::SatRec const& record, Instant from, int steps = 180);

}  // namespace nimbara
