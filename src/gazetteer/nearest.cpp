#include "gazetteer/nearest.h"

#include "gazetteer/sphere_tree.h"
#include "gazetteer/tables.h"

namespace nimbara::gazetteer {

namespace {

/// Farther than any territory's settlements are from the next landmark of their country.
constexpr double kRegionReachKm = 1500;

template <class IsWanted>
std::optional<std::size_t> nearestWanted(Coordinate coordinate, double reachKm, IsWanted const& isWanted) {
  Table<CityRecord> const cities(Section::cities);
  Table<std::uint16_t> const order(Section::cityTree);
  auto const found = SphereTree(
                         order.size(), [&](std::size_t i) { return cities[order[i]].at; },
                         [&](std::size_t i) { return isWanted(cities[order[i]]); })
                         .nearest(coordinate, reachKm);
  if (!found) return std::nullopt;
  return order[*found];
}

std::uint16_t nearestMark(Section section, Coordinate coordinate, std::uint16_t country) {
  Table<LandmarkRecord> const marks(section);
  auto const found = SphereTree(
                         marks.size(), [&](std::size_t i) { return marks[i].at; },
                         [&](std::size_t i) { return marks[i].country == country; })
                         .nearest(coordinate, kRegionReachKm);
  return found ? marks[*found].region : kNone;
}

}  // namespace

std::optional<std::size_t> nearestCityNumber(Coordinate coordinate) {
  return nearestWanted(coordinate, kEverywhereKm, [](CityRecord const&) { return true; });
}

std::optional<std::size_t> nearestCityNumber(Coordinate coordinate, std::uint16_t country, double reachKm) {
  return nearestWanted(coordinate, reachKm,
                       [country](CityRecord const& city) { return city.country == country; });
}

std::uint16_t regionAt(Coordinate coordinate, std::uint16_t country) {
  return nearestMark(Section::landmarks, coordinate, country);
}

std::uint16_t districtAt(Coordinate coordinate, std::uint16_t country) {
  return nearestMark(Section::districtMarks, coordinate, country);
}

}  // namespace nimbara::gazetteer
