#include "gazetteer/country_outlines.h"
#include "gazetteer/gazetteer.h"
#include "gazetteer/nearest.h"
#include "gazetteer/tables.h"
#include "gazetteer/zone_map.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

using namespace gazetteer;

namespace {

/// How far from a city its district's name still holds.
constexpr double kDistrictReachKm = 10;

/// Beyond a border a city of the country that is so far off says nothing about the zone.
constexpr double kBorderReachKm = 500;

/// The names of the hours of 15 degrees at sea; their signs count westwards.
constexpr std::string_view kNauticalZones[] = {
    "Etc/GMT+12", "Etc/GMT+11", "Etc/GMT+10", "Etc/GMT+9", "Etc/GMT+8", "Etc/GMT+7", "Etc/GMT+6",
    "Etc/GMT+5",  "Etc/GMT+4",  "Etc/GMT+3",  "Etc/GMT+2", "Etc/GMT+1", "Etc/GMT",   "Etc/GMT-1",
    "Etc/GMT-2",  "Etc/GMT-3",  "Etc/GMT-4",  "Etc/GMT-5", "Etc/GMT-6", "Etc/GMT-7", "Etc/GMT-8",
    "Etc/GMT-9",  "Etc/GMT-10", "Etc/GMT-11", "Etc/GMT-12"};

std::string_view nauticalZone(double longitude) {
  return kNauticalZones[std::lround(longitude / 15) + 12];
}

/// Where a coordinate lies, as numbers of the tables.
struct Whereabouts {
  std::uint16_t zoneCell = kOpenSea;
  std::uint16_t country = kNone;
};

/// Nobody's territorial waters surround Antarctica: there the outline alone decides.
constexpr double kAntarcticLatitude = -60;

/// The outlines of countries are good to some hundred metres; what a town's own coordinate belongs to is
/// known.
constexpr double kTownKm = 0.3;

std::uint16_t countryOf(Coordinate coordinate) {
  if (auto const number = nearestCityNumber(coordinate)) {
    auto const city = Table<CityRecord>(Section::cities)[*number];
    if (haversineKm(coordinate, coordinateOf(city.at)) <= kTownKm) return city.country;
  }
  return countryWithin(coordinate);
}

Whereabouts whereabouts(Coordinate coordinate) {
  std::uint16_t const cell = zoneCellAt(coordinate);
  if (cell == kOpenSea && coordinate.latitude > kAntarcticLatitude) return {};
  return {cell, countryOf(coordinate)};
}

bool keepsZone(CountryRecord const& country, std::uint16_t zone) {
  Table<std::uint16_t> const zones(Section::countryZones);
  for (std::uint32_t i = 0; i < country.zoneCount; ++i) {
    if (zones[country.firstZone + i] == zone) return true;
  }
  return false;
}

/// The outlines of countries are finer than the zone map's cells: next to a border the cell may show the
/// neighbour's zone, which the country itself does not keep.
std::string_view zoneNameOf(Coordinate coordinate, Whereabouts const& where) {
  if (where.zoneCell == kOpenSea) return nauticalZone(coordinate.longitude);
  if (where.country == kNone) return zoneName(where.zoneCell);
  auto const country = Table<CountryRecord>(Section::countries)[where.country];
  if (country.zoneCount == 0 || keepsZone(country, where.zoneCell)) return zoneName(where.zoneCell);
  if (country.zoneCount == 1) return zoneName(Table<std::uint16_t>(Section::countryZones)[country.firstZone]);
  auto const city = nearestCityNumber(coordinate, where.country, kBorderReachKm);
  return city ? cityAt(*city).timeZone : zoneName(where.zoneCell);
}

/// kNone where no city of that region is near and the country's districts are not told apart.
std::uint16_t districtAt(Coordinate coordinate, std::uint16_t country, std::uint16_t region) {
  if (auto const exact = gazetteer::districtAt(coordinate, country); exact != kNone) return exact;
  auto const nearest = nearestCityNumber(coordinate, country, kDistrictReachKm);
  if (!nearest) return kNone;
  auto const city = Table<CityRecord>(Section::cities)[*nearest];
  return city.region == region ? city.district : kNone;
}

std::vector<std::string_view> regionNames(Coordinate coordinate, std::uint16_t country) {
  std::uint16_t const region = regionAt(coordinate, country);
  if (region == kNone) return {};
  std::string_view const district = districtName(districtAt(coordinate, country, region));
  if (district.empty() || district == regionName(region)) return {regionName(region)};
  return {district, regionName(region)};
}

}  // namespace

std::optional<NearestCity> nearestCity(Coordinate coordinate) {
  if (!isValid(coordinate)) return std::nullopt;
  auto const number = nearestCityNumber(coordinate);
  if (!number) return std::nullopt;
  City const city = cityAt(*number);
  return NearestCity{city, haversineKm(coordinate, city.coordinate)};
}

std::string_view timeZoneAt(Coordinate coordinate) {
  if (!isValid(coordinate)) return {};
  return zoneNameOf(coordinate, whereabouts(coordinate));
}

PlaceFacts describePlace(Coordinate coordinate) {
  PlaceFacts facts;
  if (!isValid(coordinate)) return facts;
  Whereabouts const where = whereabouts(coordinate);
  facts.timeZone = zoneNameOf(coordinate, where);
  facts.nearest = nearestCity(coordinate);
  if (where.country == kNone) return facts;
  facts.countryCode = countryCode(where.country);
  facts.regionNames = regionNames(coordinate, where.country);
  return facts;
}

}  // namespace nimbara
