// The names of all cities stand one after another, city by city, the most populous first. Each begins with a
// line break, each word with a blank: "\n berlin\n new york city\n". One run over this text finds the
// beginnings of words in the order in which the cities are wanted.

#include "base/search_text.h"
#include "base/text.h"
#include "gazetteer/gazetteer.h"
#include "gazetteer/tables.h"

#include <algorithm>
#include <cstring>

namespace nimbara {

using namespace gazetteer;

namespace {

/// No city's name is so long; whoever sends more does not look for a city.
constexpr std::size_t kLongestText = 200;
/// A name, a region, a country and two to spare.
constexpr std::size_t kMostParts = 5;
/// "Bosnia and Herzegovina" and the like behind a name without a comma.
constexpr int kMostAreaWords = 5;

/// The places that a search is narrowed to: cities of one of these countries or regions.
struct Area {
  std::vector<bool> countries;
  std::vector<bool> regions;

  bool contains(CityRecord const& city) const {
    return countries[city.country] || (city.region != kNone && regions[city.region]);
  }
  bool isEmpty() const {
    return std::ranges::find(countries, true) == countries.end() &&
           std::ranges::find(regions, true) == regions.end();
  }
};

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

/// Codes must be whole; a name may still be being typed.
Area areaNamed(std::string_view name, bool whole) {
  constexpr std::size_t kCodeLength = 2;
  bool const exact = whole || name.size() <= kCodeLength;
  return {recordsNamed<CountryRecord>(name, exact, Section::countries, Section::countryKeys),
          recordsNamed<RegionRecord>(name, exact, Section::regions, Section::regionKeys)};
}

using Areas = std::vector<Area>;

/// City numbers in order of population.
struct Matches {
  std::vector<std::size_t> exact;
  std::vector<std::size_t> others;
};

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

std::size_t findFrom(std::string_view text, std::string_view wanted, std::size_t from) {
  void const* const found = memmem(text.data() + from, text.size() - from, wanted.data(), wanted.size());
  return found == nullptr ? std::string_view::npos
                          : static_cast<std::size_t>(static_cast<char const*>(found) - text.data());
}

void addOnce(std::vector<std::size_t>& numbers, std::size_t number, std::size_t count) {
  if (numbers.size() < count && (numbers.empty() || numbers.back() != number)) numbers.push_back(number);
}

Matches citiesNamed(std::string_view name, Areas const& areas, std::size_t count) {
  Matches matches;
  std::string const wanted = " " + std::string(name);
  std::string_view const keys = bytesOf(Section::cityKeys);
  CityCursor cursor;
  for (auto at = findFrom(keys, wanted, 0); at != std::string_view::npos;
       at = findFrom(keys, wanted, at + 1)) {
    bool const exact = keys[at - 1] == '\n' && keys[at + wanted.size()] == '\n';
    auto& list = exact ? matches.exact : matches.others;
    if (list.size() >= count) continue;
    std::size_t const city = cursor.cityAt(at);
    auto const inside = [record = cursor.record()](Area const& area) { return area.contains(record); };
    if (std::ranges::all_of(areas, inside)) addOnce(list, city, count);
  }
  return matches;
}

void appendNew(std::vector<std::size_t>& numbers, std::vector<std::size_t> const& more) {
  std::ranges::copy_if(more, std::back_inserter(numbers), [&](std::size_t number) {
    return std::ranges::find(numbers, number) == numbers.end();
  });
}

/// "paris texas" as a city's name and the area behind it, the longer name first.
std::vector<std::size_t> citiesWithArea(std::string_view words, std::size_t count) {
  std::vector<std::size_t> numbers;
  std::size_t end = words.size();
  for (int taken = 0; taken < kMostAreaWords; ++taken) {
    end = words.rfind(' ', end - 1);
    if (end == std::string_view::npos) break;
    Areas const areas{areaNamed(words.substr(end + 1), true)};
    if (areas.front().isEmpty()) continue;
    Matches const matches = citiesNamed(words.substr(0, end), areas, count);
    appendNew(numbers, matches.exact);
    appendNew(numbers, matches.others);
  }
  return numbers;
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

}  // namespace

std::vector<City> searchCities(std::string_view text, std::size_t count) {
  if (text.size() > kLongestText || count == 0) return {};
  auto const parts = split(text, ',');
  std::string const name = searchFolded(parts.front());
  if (name.empty() || parts.size() > kMostParts) return {};
  Matches const matches = citiesNamed(name, areasOf(parts), count);
  std::vector<std::size_t> numbers = matches.exact;
  appendNew(numbers, matches.others);
  if (numbers.size() < count && parts.size() == 1) appendNew(numbers, citiesWithArea(name, count));
  std::vector<City> cities;
  for (std::size_t i = 0; i < std::min(count, numbers.size()); ++i) cities.push_back(cityAt(numbers[i]));
  return cities;
}

}  // namespace nimbara
