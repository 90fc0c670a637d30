// One way to a station: what it tells, and when to ask it again. The station service asks the source of the
// user's link and keeps what it has told.
#pragma once

#include "feeds/stations/public_stations.h"
#include "feeds/stations/station_link.h"
#include "feeds/stations/station_tokens.h"

namespace nimbara {

struct NeighbourCount {
  int used = 0;
  int leftOut = 0;
  double withinKm = 0;

  bool operator==(NeighbourCount const&) const = default;
};

template <>
inline constexpr auto jsonFields<NeighbourCount> =
    FieldList{field("used", &NeighbourCount::used), field("leftOut", &NeighbourCount::leftOut),
              field("withinKm", &NeighbourCount::withinKm)};

struct StationsTold {
  std::vector<StationReading> stations;
  std::optional<NeighbourCount> together;
};

/// What is kept of the last question, in memory and on the disk.
struct StationsKept {
  std::string link;  ///< which it was asked for: no part of it is secret
  std::vector<StationReading> stations;
  std::optional<NeighbourCount> together;
  std::optional<Instant> checkedAt;
  Instant askedAt;
  Instant nextAsk;
  std::optional<StationProblem> problem;

  bool operator==(StationsKept const&) const = default;
};

template <>
inline constexpr auto jsonFields<StationsKept> =
    FieldList{field("link", &StationsKept::link),         field("stations", &StationsKept::stations),
              field("together", &StationsKept::together), field("checkedAt", &StationsKept::checkedAt),
              field("askedAt", &StationsKept::askedAt),   field("nextAsk", &StationsKept::nextAsk),
              field("problem", &StationsKept::problem)};

/// What the kept answer belongs to.
std::string nameOf(StationLink const& link);

/// When stations of such a link have something new, `told` just before `now`. Those that are silent are asked
/// for again in a while.
Instant nextUpload(StationLink const& link, StationsTold const& told, Instant now);
/// When a link may be asked again that has failed so.
Instant nextTry(StationLink const& link, StationProblem const& problem, Instant now);

/// The address with the path that is meant where the user names a host alone: a gateway's own.
std::string stationAddress(std::string const& address);

/// The box of the public stations of a place: "lat_ne=…&lon_ne=…&lat_sw=…&lon_sw=…".
std::string boxAround(Coordinate place, double km);

}  // namespace nimbara
