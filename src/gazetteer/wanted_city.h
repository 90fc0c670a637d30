// What a search of cities looks for and finds, between the sources of this folder.
#pragma once

#include "gazetteer/gazetteer.h"
#include "gazetteer/tables.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara::gazetteer {

/// The places that a search is narrowed to: cities of one of these countries or regions.
struct Area {
  std::vector<bool> countries;
  std::vector<bool> regions;

  bool contains(CityRecord const& city) const {
    return countries[city.country] || (city.region != kNone && regions[city.region]);
  }
  bool isEmpty() const;
};

using Areas = std::vector<Area>;

/// Codes must be whole; a name may still be being typed unless it must be `whole`.
Area areaNamed(std::string_view name, bool whole);
bool isInside(Areas const& areas, CityRecord const& city);

/// A text as it is searched for: the folded name and the areas behind it.
struct WantedCity {
  std::string name;
  std::string typed;  ///< the name in lower case with its accents
  Areas areas;
  bool hasAreas = false;
};

/// Nothing for what nobody looks for.
std::optional<WantedCity> wantedCity(std::string_view text);

/// A city that was found.
struct CityHit {
  std::size_t city = 0;        ///< its number
  std::string_view otherName;  ///< by which it was found, where that is not its own
};

using CityHits = std::vector<CityHit>;

/// Those of cities that are not among `hits`.
void appendNew(CityHits& hits, CityHits const& more);
/// Unless its city is the last one, or `count` are there.
void addOnce(CityHits& hits, CityHit hit, std::size_t count);
std::vector<City> citiesOf(CityHits const& hits, std::size_t count);

/// Walks along the cities while a position in their names grows.
class CityCursor {
 public:
  std::size_t cityAt(std::size_t position) {
    while (number_ + 1 < cities_.size() && cities_[number_ + 1].keys <= position) ++number_;
    return number_;
  }
  CityRecord record() const { return cities_[number_]; }

 private:
  Table<CityRecord> cities_{Section::cities};
  std::size_t number_ = 0;
};

}  // namespace nimbara::gazetteer
