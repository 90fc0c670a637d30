// Cities whose names are nearest to what was mistyped: one run over all names, with a bit-parallel distance.

#include "gazetteer/edit_distance.h"
#include "gazetteer/gazetteer.h"
#include "gazetteer/wanted_city.h"

#include <algorithm>
#include <cstdlib>

namespace nimbara {

using namespace gazetteer;

namespace {

/// How many edits a mistyped name of so many letters may have.
int editsAllowed(std::size_t length) {
  if (length < 4) return 0;
  return length < 6 ? 1 : 2;
}

/// The like for the beginning of a name that is still being typed, of which more names are near.
int editsAllowedInBeginning(std::size_t length) {
  if (length < 5) return 0;
  return length < 8 ? 1 : 2;
}

/// The city's own name, which is the first of its keys, or the first words of it: "New York" of New York
/// City.
bool isOwnName(std::string_view keys, std::string_view key, CityRecord const& record) {
  std::string_view const own = keys.substr(record.keys + 2);  // behind the break and the blank
  return own.starts_with(key) && (own[key.size()] == '\n' || own[key.size()] == ' ');
}

/// Many names may begin alike.
constexpr std::size_t kMostBeginnings = 1000;

/// The cities for whose names `editsOf` gives the fewest edits, at least one and at most `allowed`.
template <class EditsOf>
CityHits nearestNames(WantedCity const& wanted, int allowed, std::size_t count, EditsOf const& editsOf) {
  int least = allowed;
  CityHits hits;
  std::string_view const keys = bytesOf(Section::cityKeys);
  CityCursor cursor;
  for (std::size_t begin = 0; least > 0 && begin + 1 < keys.size();) {
    std::size_t const end = keys.find('\n', begin + 1);
    std::string_view const key = keys.substr(begin + 2, end - begin - 2);  // behind the break and the blank
    int const edits = editsOf(key, least);
    if (edits > 0 && edits <= least) {
      std::size_t const city = cursor.cityAt(begin);
      CityRecord const record = cursor.record();
      if (isInside(wanted.areas, record)) {
        if (edits < least) hits.clear();
        addOnce(hits, {city, isOwnName(keys, key, record) ? std::string_view() : key}, count);
        least = edits;
      }
    }
    begin = end;
  }
  return hits;
}

CityHits nearestWholeNames(WantedCity const& wanted, std::size_t count) {
  EditDistance const distance(wanted.name);
  auto const editsOf = [&](std::string_view key, int most) {
    auto const unequal = static_cast<int>(key.size()) - static_cast<int>(wanted.name.size());
    return std::abs(unequal) <= most ? distance.to(key) : most + 1;
  };
  return nearestNames(wanted, editsAllowed(wanted.name.size()), count, editsOf);
}

/// Of equals own names first: much larger cities have other names that begin like them.
CityHits nearestBeginnings(WantedCity const& wanted, std::size_t count) {
  EditDistance const distance(wanted.name);
  auto const editsOf = [&](std::string_view key, int most) {
    return key.size() > wanted.name.size() ? distance.toBeginning(key) : most + 1;
  };
  CityHits hits = nearestNames(wanted, editsAllowedInBeginning(wanted.name.size()), kMostBeginnings, editsOf);
  std::ranges::stable_sort(hits, {}, [](CityHit const& hit) { return !hit.otherName.empty(); });
  if (hits.size() > count) hits.resize(count);
  return hits;
}

}  // namespace

std::vector<City> similarCities(std::string_view text, std::size_t count) {
  auto const wanted = wantedCity(text);
  if (!wanted || count == 0) return {};
  CityHits hits = nearestWholeNames(*wanted, count);
  if (hits.empty()) hits = nearestBeginnings(*wanted, count);
  return citiesOf(hits, count);
}

}  // namespace nimbara
