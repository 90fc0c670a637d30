#include "feeds/fires/wildfire_service.h"

#include "base/text/number.h"
#include "base/text/text.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace nimbara {

namespace {

constexpr std::chrono::hours kRemembered{24};
constexpr std::size_t kMostRemembered = 2000;
constexpr std::size_t kQuotable = 2000;
/// The satellite, and today with yesterday: days are those of Greenwich.
constexpr std::string_view kSource = "VIIRS_NOAA20_NRT";
constexpr std::string_view kDays = "2";

std::string boxText(double west, double south, double east, double north) {
  return fixedDecimal(west, 1) + "," + fixedDecimal(south, 1) + "," + fixedDecimal(east, 1) + "," +
         fixedDecimal(north, 1);
}

double down(double degrees) {
  return std::floor(degrees * 10) / 10;
}
double up(double degrees) {
  return std::ceil(degrees * 10) / 10;
}

/// What the parts of an area tell together: as old and as doubtful as the worst of them.
void addReading(FeedReading<std::vector<HotSpot>>& sum, FeedReading<std::vector<HotSpot>> part) {
  sum.data.insert(sum.data.end(), part.data.begin(), part.data.end());
  sum.checkedAt = sum.checkedAt && part.checkedAt ? std::min(sum.checkedAt, part.checkedAt) : std::nullopt;
  if (part.isCurrent()) return;
  sum.state = part.state;
  sum.failure = std::move(part.failure);
  sum.failedSince = sum.failedSince ? std::min(sum.failedSince, part.failedSince) : part.failedSince;
}

}  // namespace

std::vector<std::string> fireAreas(Coordinate place, double radiusKm) {
  double const high = radiusKm / (kEarthRadiusKm * std::numbers::pi / 180);
  double const south = std::max(-90.0, down(place.latitude - high));
  double const north = std::min(90.0, up(place.latitude + high));
  // The circle is widest a little poleward of its middle; towards the poles it holds all longitudes.
  double const narrowest = std::cos(std::max(std::abs(south), std::abs(north)) * std::numbers::pi / 180);
  double const wide = narrowest > 0.02 ? high / narrowest : 360;
  if (wide >= 180) return {boxText(-180, south, 180, north)};
  double const west = down(place.longitude - wide);
  double const east = up(place.longitude + wide);
  if (west < -180) return {boxText(-180, south, east, north), boxText(west + 360, south, 180, north)};
  if (east > 180) return {boxText(west, south, 180, north), boxText(-180, south, east - 360, north)};
  return {boxText(west, south, east, north)};
}

WildfireService::WildfireService(HttpClient& http, Clock const& clock, Options options)
    : http_(http), clock_(clock), options_(std::move(options)) {}

FeedReading<std::vector<FireDetection>> WildfireService::fetchFires(Coordinate place, double radiusKm,
                                                                    std::stop_token const& stop) {
  if (trimmed(options_.mapKey).empty()) {
    return notConfiguredReading<std::vector<FireDetection>>("no key for the wildfire list is set");
  }
  if (!isValid(place) || !(radiusKm > 0)) return placelessReading<std::vector<FireDetection>>();
  double const radius = std::min(radiusKm, kLargestRadiusKm);
  std::lock_guard const turn(turn_);
  auto const areas = fireAreas(place, radius);
  auto spots = hotSpots(areas.front(), stop);
  if (areas.size() > 1) addReading(spots, hotSpots(areas.back(), stop));
  auto fires = firesNear(spots.data, place, radius, clock_.now());
  keepFireIds(fires, known_);
  std::erase_if(known_, [&](FireDetection const& fire) {
    return clock_.now() - fire.detectedAt > kRemembered ||
           std::ranges::find(fires, fire.id, &FireDetection::id) != fires.end();
  });
  known_.insert(known_.end(), fires.begin(), fires.begin() + std::min(fires.size(), kMostRemembered));
  if (known_.size() > kMostRemembered) known_.erase(known_.begin(), known_.end() - kMostRemembered);
  if (spots.failure) spots.failure->detail = withoutKey(std::move(spots.failure->detail));
  return {spots.state, std::move(fires), spots.checkedAt, spots.failedSince, std::move(spots.failure)};
}

FeedReading<std::vector<HotSpot>> WildfireService::hotSpots(std::string const& area,
                                                            std::stop_token const& stop) {
  constexpr std::size_t kLargestBody = std::size_t{8} << 20;
  constexpr std::chrono::seconds kTimeout{25};
  FeedQuestion question;
  question.request.url = options_.baseUrl + "/api/area/csv/" + percentEncoded(trimmed(options_.mapKey)) +
                         "/" + std::string(kSource) + "/" + area + "/" + std::string(kDays);
  question.request.headers = {{"Accept", "text/csv"}};
  question.request.timeout = kTimeout;
  question.request.maxBodyBytes = kLargestBody;
  question.expected = "list of fires";
  question.life = kLife;
  auto const parse = [this](std::string_view body) {
    auto spots = parseHotSpots(body);
    // The error quotes the answer, shortened, which may name the key.
    return spots ? std::move(spots) : parseHotSpots(withoutKey(std::string(body.substr(0, kQuotable))));
  };
  return areas_.of(area).read(http_, clock_, question, parse, stop);
}

/// The service and the connection may name the address in what they say.
std::string WildfireService::withoutKey(std::string text) const {
  for (std::string const& key :
       {std::string(trimmed(options_.mapKey)), percentEncoded(trimmed(options_.mapKey))}) {
    for (auto at = text.find(key); at != std::string::npos; at = text.find(key, at)) {
      text.replace(at, key.size(), "…");
      at += std::string_view("…").size();
    }
  }
  return text;
}

}  // namespace nimbara
