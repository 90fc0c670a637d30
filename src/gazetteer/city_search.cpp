// The names of all cities stand one after another, city by city, the most populous first. Each begins with a
// line break, each word with a blank: "\n berlin\n new york city\n". One run over this text finds the
// beginnings of words in the order in which the cities are wanted.
//
// Where several cities share a name, another text has how it is written for each, with accents and the city's
// number: "\ncádiz\t311\n".

#include "base/text/number.h"
#include "base/text/search_text.h"
#include "gazetteer/gazetteer.h"
#include "gazetteer/tables.h"
#include "gazetteer/wanted_city.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace nimbara {

using namespace gazetteer;

namespace {

/// "Bosnia and Herzegovina" and the like behind a name without a comma.
constexpr int kMostAreaWords = 5;

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

/// Cities in order of population, by the way they match.
struct Matches {
  std::array<CityHits, static_cast<std::size_t>(Match::count)> cities;

  CityHits& operator[](Match match) { return cities[static_cast<std::size_t>(match)]; }
};

bool isByOtherName(Match match) {
  constexpr std::array kOther{Match::exactKnown, Match::exactOther, Match::otherName, Match::partOfOtherName};
  return std::ranges::count(kOther, match) > 0;
}

/// The whole name in which there is a word at `at`.
std::string_view nameAround(std::string_view keys, std::size_t at) {
  std::size_t const begin = keys.rfind('\n', at) + 2;  // behind the break and the blank
  return keys.substr(begin, keys.find('\n', begin) - begin);
}

std::size_t findFrom(std::string_view text, std::string_view wanted, std::size_t from) {
  void const* const found = memmem(text.data() + from, text.size() - from, wanted.data(), wanted.size());
  return found == nullptr ? std::string_view::npos
                          : static_cast<std::size_t>(static_cast<char const*>(found) - text.data());
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

CityHits exactByWeight(Matches& matches, Weights const& weights) {
  struct Weighed {
    std::int64_t weight;
    CityHit hit;
  };
  Table<CityRecord> const table{Section::cities};
  std::vector<Weighed> weighed;
  for (Match const match : kWeighed) {
    for (CityHit const& hit : matches[match]) {
      weighed.push_back({table[hit.city].population * weights.of(match, hit.city), hit});
    }
  }
  std::ranges::stable_sort(weighed, std::ranges::greater{}, &Weighed::weight);
  CityHits hits;
  for (Weighed const& each : weighed) appendNew(hits, {each.hit});
  return hits;
}

/// `typed`: the name with its accents, as far as it is known.
CityHits citiesNamed(std::string_view name, std::string const& typed, Areas const& areas, std::size_t count) {
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
    if (list.size() >= most || !isInside(areas, cursor.record())) continue;
    addOnce(list, {city, isByOtherName(match) ? nameAround(keys, at) : std::string_view()}, most);
  }
  CityHits hits = exactByWeight(matches, Weights(name, typed));
  for (auto const& list : matches.cities) appendNew(hits, list);
  return hits;
}

/// "paris texas" as a city's name and the area behind it, the longer name first.
CityHits citiesWithArea(std::string_view words, std::size_t count) {
  CityHits hits;
  std::size_t end = words.size();
  for (int taken = 0; taken < kMostAreaWords; ++taken) {
    end = words.rfind(' ', end - 1);
    if (end == std::string_view::npos) break;
    Areas const areas{areaNamed(words.substr(end + 1), true)};
    if (areas.front().isEmpty()) continue;
    appendNew(hits, citiesNamed(words.substr(0, end), {}, areas, count));
  }
  return hits;
}

CityHits citiesWanted(WantedCity const& wanted, std::size_t count) {
  CityHits hits = citiesNamed(wanted.name, wanted.typed, wanted.areas, count);
  if (hits.size() < count && !wanted.hasAreas) appendNew(hits, citiesWithArea(wanted.name, count));
  return hits;
}

/// Letters by which people call a city and which the source has only among the codes of airports.
struct Abbreviation {
  std::string_view folded;
  std::string_view written;
  std::string_view city;  ///< folded
  std::string_view country;
};

constexpr Abbreviation kAbbreviations[] = {
    {"nyc", "NYC", "new york city", "us"},     {"ny", "NY", "new york city", "us"},
    {"la", "LA", "los angeles", "us"},         {"sf", "SF", "san francisco", "us"},
    {"dc", "DC", "washington", "us"},          {"cdmx", "CDMX", "mexico city", "mx"},
    {"rio", "Rio", "rio de janeiro", "br"},    {"bcn", "BCN", "barcelona", "es"},
    {"ffm", "FFM", "frankfurt am main", "de"}, {"cph", "CPH", "copenhagen", "dk"},
    {"spb", "SPb", "saint petersburg", "ru"},  {"kl", "KL", "kuala lumpur", "my"},
    {"hk", "HK", "hong kong", "hk"},           {"hcmc", "HCMC", "ho chi minh city", "vn"},
};

/// At most one.
CityHits cityAbbreviated(WantedCity const& wanted) {
  auto const row = std::ranges::find(kAbbreviations, wanted.name, &Abbreviation::folded);
  if (row == std::ranges::end(kAbbreviations)) return {};
  Areas areas = wanted.areas;
  areas.push_back(areaNamed(row->country, true));
  CityHits hits = citiesNamed(row->city, {}, areas, 1);
  if (hits.empty()) return {};
  return {{hits.front().city, row->written}};
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

}  // namespace

std::vector<City> searchCities(std::string_view text, std::size_t count) {
  auto wanted = wantedCity(text);
  if (!wanted || count == 0) return {};
  CityHits hits = cityAbbreviated(*wanted);
  appendNew(hits, citiesWanted(*wanted, count));
  for (std::string const& name : otherSpellings(wanted->name)) {
    if (hits.size() >= count) break;
    wanted->name = name;
    appendNew(hits, citiesWanted(*wanted, count));
  }
  return citiesOf(hits, count);
}

}  // namespace nimbara
