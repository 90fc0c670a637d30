#include "search_keys.h"

#include "base/text/search_text.h"
#include "base/text/text.h"

#include <algorithm>

namespace nimbara::gazetteer {

namespace {

/// Cities with fewer inhabitants are found by names in Latin letters only.
constexpr std::int32_t kAllScriptsFrom = 300'000;
/// Larger cities are also found exactly by a name that only begins a longer one ("New York").
constexpr std::int32_t kExactNamesFrom = 500'000;
/// Cities with fewer inhabitants are not found by every other spelling of their own name.
constexpr std::int32_t kAllSpellingsFrom = 200'000;
constexpr std::size_t kOwnBeginning = 4;
constexpr std::size_t kLongestKey = 60;

bool isAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// Consonants written for Arabic or Hebrew letters and airport codes: nobody looks for a city by these.
bool isCode(std::string_view name) {
  return isAscii(name) && (name.size() <= 3 || name.find_first_of("aeiouy") == std::string_view::npos);
}

bool answersTo(std::string const& key, std::string const& name) {
  return (" " + key).find(" " + name) != std::string::npos;
}

/// A longer way to write the city's own name or the same name with another ending.
bool isOtherSpelling(std::string const& name, std::string const& own) {
  return std::ranges::count(name, ' ') > std::ranges::count(own, ' ') ||
         name.starts_with(own.substr(0, kOwnBeginning));
}

bool isWanted(std::string const& name, Town const& town, std::vector<std::string> const& keys) {
  if (name.empty() || name.size() > kLongestKey || isCode(name)) return false;
  if (!isAscii(name) && town.population < kAllScriptsFrom) return false;
  if (town.population < kAllSpellingsFrom && isOtherSpelling(name, keys.front())) return false;
  bool const exactly = town.population >= kExactNamesFrom;
  return std::ranges::none_of(
      keys, [&](std::string const& key) { return exactly ? key == name : answersTo(key, name); });
}

}  // namespace

std::vector<std::string> searchKeys(Town const& town) {
  std::vector<std::string> keys{searchFolded(town.name)};
  std::vector<std::string> others;
  for (std::string_view const alternate : split(town.alternates, ','))
    others.push_back(searchFolded(alternate));
  // The longest first, so that what begins them is found to be answered already.
  std::ranges::stable_sort(others, std::greater(), &std::string::size);
  for (std::string const& name : others) {
    if (isWanted(name, town, keys)) keys.push_back(name);
  }
  return keys;
}

std::set<std::string> accentedNames(Town const& town) {
  std::string const own = searchFolded(town.name);
  std::set<std::string> names;
  for (std::string_view const alternate : split(town.alternates, ',')) {
    std::string name = accentsKept(alternate);
    if (!isAscii(name) && searchFolded(alternate) == own) names.insert(std::move(name));
  }
  return names;
}

}  // namespace nimbara::gazetteer
