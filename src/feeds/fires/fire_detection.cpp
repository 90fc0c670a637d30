#include "feeds/fires/fire_detection.h"

#include "base/text/number.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

namespace nimbara {

namespace {

constexpr double kTogetherKm = 2;
constexpr double kSameFireKm = 5;
constexpr std::chrono::hours kSpan{24};
/// Passes are told by the machine's clock, which may be behind.
constexpr std::chrono::minutes kClocksApart{60};
constexpr double kCellDegrees = 0.05;
constexpr double kKmInADegree = kEarthRadiusKm * std::numbers::pi / 180;
/// Every pair of hot spots may have to be compared. So many are a burning country; the strongest are kept.
constexpr std::size_t kMostSpots = 5000;

std::vector<HotSpot> recentWithin(std::vector<HotSpot> const& spots, Coordinate place, double radiusKm,
                                  Instant now) {
  std::vector<HotSpot> chosen;
  std::ranges::copy_if(spots, std::back_inserter(chosen), [&](HotSpot const& spot) {
    return spot.time <= now + kClocksApart && now - spot.time <= kSpan &&
           haversineKm(spot.coordinate, place) <= radiusKm;
  });
  if (chosen.size() > kMostSpots) {
    std::ranges::nth_element(chosen, chosen.begin() + kMostSpots, std::ranges::greater{}, &HotSpot::frp);
    chosen.resize(kMostSpots);
  }
  return chosen;
}

/// Sets of hot spots that grow together.
class Groups {
 public:
  explicit Groups(std::size_t size) : parents_(size) { std::iota(parents_.begin(), parents_.end(), 0); }

  std::size_t of(std::size_t member) {
    while (parents_[member] != member) member = parents_[member] = parents_[parents_[member]];
    return member;
  }
  void join(std::size_t a, std::size_t b) { parents_[of(b)] = of(a); }

 private:
  std::vector<std::size_t> parents_;
};

/// How many degrees of longitude, generously, are near at a latitude: to pass over the many pairs that are
/// far apart without computing their distance.
double nearLongitudes(double latitude) {
  double const poleward = std::min(90.0, std::abs(latitude) + 0.1);
  return 1.1 * kTogetherKm / kKmInADegree / std::max(1e-6, std::cos(poleward * std::numbers::pi / 180));
}

double longitudesApart(Coordinate a, Coordinate b) {
  double const apart = std::abs(a.longitude - b.longitude);
  return std::min(apart, 360 - apart);
}

/// `spots` from south to north, so that only those of a narrow band need be compared.
Groups neighbours(std::vector<HotSpot> const& spots) {
  Groups groups(spots.size());
  for (std::size_t i = 0; i < spots.size(); ++i) {
    Coordinate const here = spots[i].coordinate;
    double const northmost = here.latitude + kTogetherKm / kKmInADegree;
    double const reach = nearLongitudes(here.latitude);
    for (std::size_t j = i + 1; j < spots.size() && spots[j].coordinate.latitude <= northmost; ++j) {
      Coordinate const there = spots[j].coordinate;
      if (longitudesApart(here, there) > reach || groups.of(i) == groups.of(j)) continue;
      if (haversineKm(here, there) <= kTogetherKm) groups.join(i, j);
    }
  }
  return groups;
}

void add(FireDetection& fire, HotSpot const& spot) {
  double const weight = 1.0 / ++fire.hotSpots;
  double const east = std::remainder(spot.coordinate.longitude - fire.coordinate.longitude, 360);
  fire.coordinate.latitude += weight * (spot.coordinate.latitude - fire.coordinate.latitude);
  fire.coordinate.longitude = std::remainder(fire.coordinate.longitude + weight * east, 360);
  fire.detectedAt = std::max(fire.detectedAt, spot.time);
  fire.frp = std::max(fire.frp, spot.frp);
  fire.confidence = std::max(fire.confidence, spot.confidence);
}

std::string cellText(double degrees) {
  return fixedDecimal(std::round(degrees / kCellDegrees) * kCellDegrees, 2);
}

std::vector<FireDetection> firesOf(std::vector<HotSpot> const& spots) {
  Groups groups = neighbours(spots);
  constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  std::vector<std::size_t> fireOf(spots.size(), kNone);
  std::vector<FireDetection> fires;
  for (std::size_t i = 0; i < spots.size(); ++i) {
    std::size_t& index = fireOf[groups.of(i)];
    if (index == kNone) {
      index = fires.size();
      HotSpot const& spot = spots[i];
      fires.push_back({"", spot.coordinate, spot.time, spot.frp, spot.confidence, 1, 0});
    } else {
      add(fires[index], spots[i]);
    }
  }
  for (std::size_t i = 0; i < spots.size(); ++i) {
    FireDetection& fire = fires[fireOf[groups.of(i)]];
    fire.reachKm = std::max(fire.reachKm, haversineKm(fire.coordinate, spots[i].coordinate));
  }
  for (FireDetection& fire : fires) {
    fire.id = "fire:" + cellText(fire.coordinate.latitude) + "," + cellText(fire.coordinate.longitude);
  }
  return fires;
}

}  // namespace

std::vector<FireDetection> firesNear(std::vector<HotSpot> const& spots, Coordinate place, double radiusKm,
                                     Instant now) {
  auto chosen = recentWithin(spots, place, radiusKm, now);
  std::ranges::stable_sort(chosen, {}, [](HotSpot const& spot) { return spot.coordinate.latitude; });
  auto fires = firesOf(chosen);
  std::ranges::stable_sort(
      fires, {}, [place](FireDetection const& fire) { return haversineKm(fire.coordinate, place); });
  return fires;
}

void keepFireIds(std::vector<FireDetection>& fires, std::vector<FireDetection> const& before) {
  for (FireDetection& fire : fires) {
    double nearest = kSameFireKm;
    for (FireDetection const& known : before) {
      double const gap = haversineKm(fire.coordinate, known.coordinate) - fire.reachKm - known.reachKm;
      if (gap > nearest) continue;
      nearest = gap;
      fire.id = known.id;
    }
  }
}

}  // namespace nimbara
