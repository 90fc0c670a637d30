#include "gazetteer/wanted_city.h"

#include "base/text/search_text.h"
#include "base/text/text.h"

#include <algorithm>

namespace nimbara::gazetteer {

namespace {

/// No city's name is so long; whoever sends more does not look for a city.
constexpr std::size_t kLongestText = 200;
/// A name, a region, a country and two to spare.
constexpr std::size_t kMostParts = 5;

/// Which records have a key (between line breaks) that is `name` or, unless it must be whole, begins with it.
template <class Record>
std::vector<bool> recordsNamed(std::string_view name, bool whole, Section records, Section keys) {
  Table<Record> const table(records);
  std::string_view const text = bytesOf(keys);
  std::string const wanted = "\n" + std::string(name) + (whole ? "\n" : "");
  std::vector<bool> named(table.size());
  for (auto at = text.find(wanted); at != std::string_view::npos; at = text.find(wanted, at + 1)) {
    auto const behind =
        partitionPoint(table, 0, table.size(), [at](Record const& record) { return record.keys <= at; });
    named[behind - 1] = true;
  }
  return named;
}

/// The areas of "Springfield, Illinois, US": every part behind the name that is not blank.
Areas areasOf(std::vector<std::string_view> const& parts) {
  Areas areas;
  for (std::size_t i = 1; i < parts.size(); ++i) {
    std::string const area = searchFolded(parts[i]);
    if (!area.empty()) areas.push_back(areaNamed(area, false));
  }
  return areas;
}

bool hasCity(CityHits const& hits, std::size_t city) {
  return std::ranges::find(hits, city, &CityHit::city) != hits.end();
}

}  // namespace

bool Area::isEmpty() const {
  return std::ranges::find(countries, true) == countries.end() &&
         std::ranges::find(regions, true) == regions.end();
}

Area areaNamed(std::string_view name, bool whole) {
  constexpr std::size_t kCodeLength = 2;
  bool const exact = whole || name.size() <= kCodeLength;
  return {recordsNamed<CountryRecord>(name, exact, Section::countries, Section::countryKeys),
          recordsNamed<RegionRecord>(name, exact, Section::regions, Section::regionKeys)};
}

bool isInside(Areas const& areas, CityRecord const& city) {
  return std::ranges::all_of(areas, [&](Area const& area) { return area.contains(city); });
}

std::optional<WantedCity> wantedCity(std::string_view text) {
  if (text.size() > kLongestText) return std::nullopt;
  auto const parts = split(text, ',');
  WantedCity wanted{searchFolded(parts.front()), accentsKept(parts.front()), {}, parts.size() > 1};
  if (wanted.name.empty() || parts.size() > kMostParts) return std::nullopt;
  wanted.areas = areasOf(parts);
  return wanted;
}

void appendNew(CityHits& hits, CityHits const& more) {
  for (CityHit const& hit : more) {
    if (!hasCity(hits, hit.city)) hits.push_back(hit);
  }
}

void addOnce(CityHits& hits, CityHit hit, std::size_t count) {
  if (hits.size() < count && (hits.empty() || hits.back().city != hit.city)) hits.push_back(hit);
}

std::vector<City> citiesOf(CityHits const& hits, std::size_t count) {
  std::vector<City> cities;
  for (std::size_t i = 0; i < std::min(count, hits.size()); ++i) {
    cities.push_back(cityAt(hits[i].city));
    cities.back().otherName = hits[i].otherName;
  }
  return cities;
}

}  // namespace nimbara::gazetteer
