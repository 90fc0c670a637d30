// The names of all cities stand one after another, city by city, the most populous first. Each begins with a
// line break, each word with a blank: "\n berlin\n new york city\n". One run over this text finds the
// beginnings of words in the order in which the cities are wanted.
//
// Where several cities share a name, another text has how it is written for each, with accents and the city's
// number: "\ncádiz\t311\n".

#include "base/text/number.h"
#include "base/text/search_text.h"
#include "base/text/text.h"
#include "gazetteer/edit_distance.h"
#include "gazetteer/gazetteer.h"
#include "gazetteer/tables.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
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

void appendNew(std::vector<std::size_t>& numbers, std::vector<std::size_t> const& more) {
  std::ranges::copy_if(more, std::back_inserter(numbers), [&](std::size_t number) {
    return std::ranges::find(numbers, number) == numbers.end();
  });
}

/// "Roma" is Rome before it is a town of that name; a town's name of a century ago comes behind both.
constexpr std::int32_t kKnownByOtherNames = 100'000;

/// By how much a population counts for a city that is called just so, in tenths: "Porto" is not Bordeaux and
/// "Sion" not Jerusalem, but "Roma" is not the one in Queensland.
constexpr std::int64_t kOtherName = 10;
/// "Mykolaiv" of Mykolayiv.
constexpr std::int64_t kOtherSpelling = 16;
/// "Frankfurt" of Frankfurt am Main.
constexpr std::int64_t kShortOwnName = 100;
constexpr std::int64_t kOwnName = 500;
/// Who types an accent means it ("Cádiz" is not Cadiz), while it is not the way in which some write a name of
/// many ("Dhāka"). Who types none may have no key for it.
constexpr std::int64_t kOwnNameAsTyped = 10'000;

/// How a city's name has the text, the best first.
enum class Match {
  exact,
  exactShort,
  exactKnown,
  exactOther,
  capital,
  ownName,
  otherName,
  partOfOwnName,
  partOfOtherName,
  count
};

/// City numbers in order of population, by the way they match.
struct Matches {
  std::array<std::vector<std::size_t>, static_cast<std::size_t>(Match::count)> cities;

  std::vector<std::size_t>& operator[](Match match) { return cities[static_cast<std::size_t>(match)]; }
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

/// Of `key`, which is a name of the city: "Frankfurt" of "Frankfurt am Main".
bool beginsOwnName(std::string_view keys, std::string_view key, CityRecord record) {
  std::string_view const own = keys.substr(record.keys + 1);
  return own.starts_with(key) && own[key.size()] == ' ';
}

/// "Halle" of "Halle (Saale)": what stands in brackets only tells it from others.
bool isBeforeBrackets(std::string_view key, std::size_t city) {
  std::string_view const name = cityAt(city).name;
  auto const bracket = name.find(" (");
  return bracket != std::string_view::npos && searchFolded(name.substr(0, bracket)) == key.substr(1);
}

/// Of the blank at `at`, before a word that begins like the text; `end` lies behind the text. A city's own
/// name is the first of its keys; whole words within it count as much as its beginning.
Match matchAt(std::string_view keys, std::size_t at, std::size_t end, std::size_t city, CityRecord record) {
  bool const begins = keys[at - 1] == '\n';
  bool const isOwn = keys.substr(record.keys + 1, at - record.keys).find('\n') == std::string_view::npos;
  std::string_view const key = keys.substr(at, end - at);
  if (begins && keys[end] == '\n') {
    if (isOwn) return Match::exact;
    if (beginsOwnName(keys, key, record)) return Match::exactShort;
    return record.population >= kKnownByOtherNames ? Match::exactKnown : Match::exactOther;
  }
  if (begins && isOwn && keys[end] == ' ' && isBeforeBrackets(key, city)) return Match::exact;
  if (begins && isOwn && isCapital(city)) return Match::capital;
  if (!isOwn) return begins ? Match::otherName : Match::partOfOtherName;
  bool const isWord = keys[end] == ' ' || keys[end] == '\n';
  return begins || isWord ? Match::ownName : Match::partOfOwnName;
}

bool isInside(Areas const& areas, CityRecord const& record) {
  return std::ranges::all_of(areas, [&](Area const& area) { return area.contains(record); });
}

/// Namesakes whose own name others write so.
std::vector<std::size_t> citiesWrittenSo(std::string const& name) {
  std::string_view const text = bytesOf(Section::accents);
  std::string const wanted = "\n" + name + "\t";
  std::vector<std::size_t> numbers;
  for (auto at = text.find(wanted); at != std::string_view::npos; at = text.find(wanted, at + 1)) {
    std::string_view const rest = text.substr(at + wanted.size());
    if (auto const number = parseInteger(rest.substr(0, rest.find('\n')))) numbers.push_back(*number);
  }
  return numbers;
}

/// What of a name that is the whole text makes it weigh more than its city's population.
class Weights {
 public:
  /// `typed`: the text with its accents, as far as it is known.
  Weights(std::string_view name, std::string const& typed) : name_(name), typed_(typed) {
    bool const hasAccents = std::ranges::any_of(typed, [](char c) { return (c & 0x80) != 0; });
    if (hasAccents) writtenSo_ = citiesWrittenSo(typed);
    if (!hasAccents) typed_.clear();
  }

  std::int64_t of(Match match, std::size_t city) const {
    if (match == Match::exactShort) return kShortOwnName;
    if (match == Match::exactKnown) return isOtherSpelling(city) ? kOtherSpelling : kOtherName;
    bool const isAsTyped = !typed_.empty() && (std::ranges::count(writtenSo_, city) > 0 ||
                                               accentsKept(cityAt(city).name) == typed_);
    return isAsTyped ? kOwnNameAsTyped : kOwnName;
  }

 private:
  /// Of the city's own name.
  bool isOtherSpelling(std::size_t city) const {
    constexpr std::size_t kAlike = 4;
    return searchFolded(cityAt(city).name).starts_with(name_.substr(0, kAlike));
  }

  std::string_view name_;
  std::string typed_;
  std::vector<std::size_t> writtenSo_;
};

/// Names that are the whole text are few, and weighed against each other.
constexpr std::array kWeighed{Match::exact, Match::exactShort, Match::exactKnown};

std::vector<std::size_t> exactByWeight(Matches& matches, Weights const& weights) {
  Table<CityRecord> const table{Section::cities};
  std::vector<std::pair<std::int64_t, std::size_t>> weighed;
  for (Match const match : kWeighed) {
    for (std::size_t const city : matches[match]) {
      weighed.emplace_back(table[city].population * weights.of(match, city), city);
    }
  }
  std::ranges::stable_sort(weighed, std::ranges::greater{}, [](auto const& entry) { return entry.first; });
  std::vector<std::size_t> numbers;
  for (auto const& [weight, city] : weighed) appendNew(numbers, {city});
  return numbers;
}

/// `typed`: the name with its accents, as far as it is known.
std::vector<std::size_t> citiesNamed(std::string_view name, std::string const& typed, Areas const& areas,
                                     std::size_t count) {
  Matches matches;
  std::string const wanted = " " + std::string(name);
  std::string_view const keys = bytesOf(Section::cityKeys);
  CityCursor cursor;
  for (auto at = findFrom(keys, wanted, 0); at != std::string_view::npos;
       at = findFrom(keys, wanted, at + 1)) {
    std::size_t const city = cursor.cityAt(at);
    Match const match = matchAt(keys, at, at + wanted.size(), city, cursor.record());
    std::size_t const most = std::ranges::count(kWeighed, match) > 0 ? keys.size() : count;
    auto& list = matches[match];
    if (list.size() < most && isInside(areas, cursor.record())) addOnce(list, city, most);
  }
  std::vector<std::size_t> numbers = exactByWeight(matches, Weights(name, typed));
  for (auto const& list : matches.cities) appendNew(numbers, list);
  return numbers;
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
    appendNew(numbers, citiesNamed(words.substr(0, end), {}, areas, count));
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

/// A text as it is searched for: the folded name and the areas behind it. Nothing for what nobody looks for.
struct Wanted {
  std::string name;
  std::string typed;  ///< the name in lower case with its accents
  Areas areas;
  bool hasAreas = false;
};

std::optional<Wanted> wantedOf(std::string_view text) {
  if (text.size() > kLongestText) return std::nullopt;
  auto const parts = split(text, ',');
  Wanted wanted{searchFolded(parts.front()), accentsKept(parts.front()), {}, parts.size() > 1};
  if (wanted.name.empty() || parts.size() > kMostParts) return std::nullopt;
  wanted.areas = areasOf(parts);
  return wanted;
}

std::vector<std::size_t> citiesWanted(Wanted const& wanted, std::size_t count) {
  std::vector<std::size_t> numbers = citiesNamed(wanted.name, wanted.typed, wanted.areas, count);
  if (numbers.size() < count && !wanted.hasAreas) appendNew(numbers, citiesWithArea(wanted.name, count));
  return numbers;
}

/// "st moritz" as "saint moritz", "sankt moritz" …
std::vector<std::string> otherSpellings(std::string const& name) {
  struct Row {
    std::string_view abbreviation;
    std::string_view word;
  };
  constexpr Row kRows[] = {{"st", "saint"},   {"st", "sankt"}, {"st", "sint"},
                           {"ste", "sainte"}, {"saint", "st"}, {"sankt", "st"},
                           {"sainte", "ste"}, {"mt", "mount"}, {"ft", "fort"}};
  std::vector<std::string> names;
  for (Row const& row : kRows) {
    std::string const begin = std::string(row.abbreviation) + " ";
    if (name.starts_with(begin)) names.push_back(std::string(row.word) + " " + name.substr(begin.size()));
  }
  return names;
}

std::vector<City> citiesOf(std::vector<std::size_t> const& numbers, std::size_t count) {
  std::vector<City> cities;
  for (std::size_t i = 0; i < std::min(count, numbers.size()); ++i) cities.push_back(cityAt(numbers[i]));
  return cities;
}

/// How many edits a mistyped name of so many letters may have.
int editsAllowed(std::size_t length) {
  if (length < 4) return 0;
  return length < 6 ? 1 : length < 10 ? 2 : 3;
}

/// The cities one of whose names is nearest to the wanted one.
std::vector<std::size_t> nearestNames(Wanted const& wanted, std::size_t count) {
  EditDistance const distance(wanted.name);
  int least = editsAllowed(wanted.name.size());
  std::vector<std::size_t> numbers;
  std::string_view const keys = bytesOf(Section::cityKeys);
  CityCursor cursor;
  for (std::size_t begin = 0; begin + 1 < keys.size();) {
    std::size_t const end = keys.find('\n', begin + 1);
    std::string_view const key = keys.substr(begin + 2, end - begin - 2);  // behind the break and the blank
    auto const unequal = static_cast<int>(key.size()) - static_cast<int>(wanted.name.size());
    int const edits = std::abs(unequal) <= least ? distance.to(key) : least + 1;
    if (edits <= least && edits > 0) {
      std::size_t const city = cursor.cityAt(begin);
      bool const isWanted = isInside(wanted.areas, cursor.record());
      if (isWanted && edits < least) numbers.clear();
      if (isWanted) addOnce(numbers, city, count);
      if (isWanted) least = edits;
    }
    begin = end;
  }
  return numbers;
}

}  // namespace

std::vector<City> searchCities(std::string_view text, std::size_t count) {
  auto wanted = wantedOf(text);
  if (!wanted || count == 0) return {};
  std::vector<std::size_t> numbers = citiesWanted(*wanted, count);
  for (std::string const& name : otherSpellings(wanted->name)) {
    if (numbers.size() >= count) break;
    wanted->name = name;
    appendNew(numbers, citiesWanted(*wanted, count));
  }
  return citiesOf(numbers, count);
}

std::vector<City> similarCities(std::string_view text, std::size_t count) {
  auto const wanted = wantedOf(text);
  if (!wanted || count == 0) return {};
  return citiesOf(nearestNames(*wanted, count), count);
}

}  // namespace nimbara
