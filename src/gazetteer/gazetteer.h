// Places without network: cities by name, and what is known of a coordinate. Everything is answered from
// tables that are part of the program, read in place; nothing is loaded and nothing is kept. Any thread may
// ask.
#pragma once

#include "base/geodesy.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// A city of at least 15,000 inhabitants, a capital, or a smaller town that many languages have a name for.
/// The texts live as long as the program.
struct City {
  std::string_view name;
  /// ISO 3166-1 of two letters; "XK" for Kosovo.
  std::string_view countryCode;
  /// State, province or the like; may be empty, as may the district within it.
  std::string_view region;
  std::string_view district;
  Coordinate coordinate;
  /// IANA name.
  std::string_view timeZone;
  std::int32_t population = 0;
  /// By which a search found the city, where that is not its own name: in the form in which names are
  /// compared
  /// ("lisboa"), or letters as they are written ("NYC").
  std::string_view otherName = {};
};

/// At most `count` cities one of whose names has the words of `text` in it, the last of them perhaps
/// unfinished; letter case, accents and punctuation do not count, and "St." may stand for "Saint" or "Sankt".
/// Cities that are called just so, or by such letters ("NYC"), come first, then capitals, then those whose
/// name begins with the text; of equals the more populous. What follows a comma narrows by country code,
/// country or region ("Paris, US"); without a comma the last words do so where no city's name has them
/// ("Paris Texas").
std::vector<City> searchCities(std::string_view text, std::size_t count);

/// At most `count` cities whose names are nearest to a misspelled `text`, the most populous first: by one
/// edit or two, else names that begin nearly like it. None where nothing is near enough to be meant. What
/// follows a comma narrows as above.
std::vector<City> similarCities(std::string_view text, std::size_t count);

/// Every city, the most populous first.
std::vector<City> allCities();

struct NearestCity {
  City city;
  double km = 0;
};

/// Parts of cities are left out. Nothing for a coordinate that is not valid.
std::optional<NearestCity> nearestCity(Coordinate coordinate);

/// What is known of a coordinate. Nothing at all when it is not valid.
struct PlaceFacts {
  /// Empty on the open sea, beyond territorial waters.
  std::string_view countryCode;
  /// The most specific first: the district where a city of it is near, then the region. Known from the
  /// surrounding towns, so close to a region's border it may be the neighbour's. In Great Britain there
  /// always is a district: county or council area.
  std::vector<std::string_view> regionNames;
  /// IANA name; the nautical "Etc/GMT+5" on the open sea. Borders of zones within a country are drawn to
  /// about a kilometre.
  std::string_view timeZone;
  std::optional<NearestCity> nearest;
};

PlaceFacts describePlace(Coordinate coordinate);

/// The zone alone; empty for a coordinate that is not valid.
std::string_view timeZoneAt(Coordinate coordinate);

}  // namespace nimbara
