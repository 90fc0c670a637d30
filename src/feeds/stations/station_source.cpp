#include "feeds/stations/station_source.h"

#include "base/json/json_codec.h"
#include "base/text/number.h"
#include "feeds/stations/station_service.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace nimbara {

namespace {

constexpr std::chrono::minutes kSilentRest{10};
constexpr std::chrono::minutes kLocalRest{1};
constexpr std::chrono::minutes kNetworkRest{1};

}  // namespace

std::string nameOf(StationLink const& link) {
  constexpr int kDecimals = 4;
  std::string name(enumName(link.kind));
  if (link.kind == StationLinkKind::address) name += " " + link.address;
  if (link.kind == StationLinkKind::account) name += " " + link.clientId;
  if (link.latitude && link.longitude) {
    name += " " + fixedDecimal(*link.latitude, kDecimals) + "," + fixedDecimal(*link.longitude, kDecimals);
  }
  // One of the public stations is asked for otherwise than all of them together.
  if (link.kind == StationLinkKind::around && !link.chosen.empty()) name += " " + link.chosen;
  return name;
}

Instant nextUpload(StationLink const& link, StationsTold const& told, Instant now) {
  if (link.kind == StationLinkKind::address) return now + kLocalRest;
  std::optional<Instant> upload;
  for (StationReading const& station : told.stations) {
    bool const isMeant = link.chosen.empty() || station.id == link.chosen;
    if (isMeant) upload = std::max(upload, station.lastUpload());
  }
  bool const isAligned = upload && *upload <= now && link.kind == StationLinkKind::account &&
                         *upload + StationService::kAfterUpload > now;
  return isAligned ? *upload + StationService::kAfterUpload : now + kSilentRest;
}

Instant nextTry(StationLink const& link, StationProblem const& problem, Instant now) {
  // Where the user must do something first, asking sooner is no use; what that changes is not kept any more.
  bool const isRefused =
      problem.kind == StationProblem::Kind::tooMany || problem.kind == StationProblem::Kind::signInAgain;
  if (isRefused) return now + StationService::kRestAfterTooMany;
  // A keyring is asked without anybody being bothered.
  bool const isNear = link.kind == StationLinkKind::address || problem.kind == StationProblem::Kind::locked ||
                      problem.failure.kind == ServiceFailure::Kind::network;
  return now + (isNear ? kNetworkRest : kSilentRest);
}

std::string stationAddress(std::string const& address) {
  constexpr std::string_view kScheme = "://";
  auto const host = address.find(kScheme);
  std::string const whole = host == std::string::npos ? "http://" + address : address;
  auto const path = whole.find('/', whole.find(kScheme) + kScheme.size());
  bool const isBare = path == std::string::npos || path + 1 == whole.size();
  return isBare ? whole.substr(0, path) + "/get_livedata_info" : whole;
}

std::string boxAround(Coordinate place, double km) {
  constexpr double kKmOfDegree = kEarthRadiusKm * std::numbers::pi / 180;
  constexpr double kSteepest = 89, kEast = 180;
  constexpr int kDecimals = 5;
  double const north = km / kKmOfDegree;
  double const east =
      north / std::cos(std::min(std::abs(place.latitude), kSteepest) * std::numbers::pi / 180);
  auto const text = [](double degrees, double most) {
    return fixedDecimal(std::clamp(degrees, -most, most), kDecimals);
  };
  return "lat_ne=" + text(place.latitude + north, kSteepest) +
         "&lon_ne=" + text(place.longitude + east, kEast) +
         "&lat_sw=" + text(place.latitude - north, kSteepest) +
         "&lon_sw=" + text(place.longitude - east, kEast);
}

}  // namespace nimbara
