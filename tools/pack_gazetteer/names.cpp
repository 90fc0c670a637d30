#include "names.h"

#include "base/text/search_text.h"
#include "base/time/calendar.h"
#include "base/words/country_names.h"
#include "base/words/texts.h"

#include <algorithm>
#include <stdexcept>

namespace nimbara::gazetteer {

namespace {

struct Substitute {
  std::string_view name;
  std::string_view instead;
  /// Taken even where ICU knows the name.
  bool always;
};

/// Zones younger than ICU's data keep the time of an older one. Xinjiang has two clocks: the official one
/// counts.
constexpr Substitute kSubstitutes[] = {
    {"America/Ciudad_Juarez", "America/Denver", false},
    {"America/Coyhaique", "America/Punta_Arenas", false},
    {"Europe/Kyiv", "Europe/Kiev", false},
    {"Pacific/Kanton", "Pacific/Enderbury", false},
    {"Asia/Urumqi", "Asia/Shanghai", true},
};

std::string_view usableName(std::string_view name) {
  auto const found = std::ranges::find(kSubstitutes, name, &Substitute::name);
  bool const substitute = found != std::ranges::end(kSubstitutes);
  if (substitute && found->always) return found->instead;
  if (Calendar::forZone(name)) return name;
  if (substitute && Calendar::forZone(found->instead)) return found->instead;
  throw std::runtime_error("ICU does not know the time zone " + std::string(name) + "; name a substitute");
}

struct Nickname {
  std::string_view code;
  std::string_view key;
};

constexpr Nickname kNicknames[] = {
    {"US", "usa"},     {"US", "america"},
    {"GB", "uk"},      {"GB", "great britain"},
    {"AE", "uae"},     {"KR", "korea"},
    {"NL", "holland"}, {"CZ", "czech republic"},
    {"TR", "turkey"},  {"RU", "russian federation"},
};

/// A country keeps a zone that one in so many of its towns has; fewer are strays along borders.
constexpr int kTownShare = 20;

std::string countryKeys(std::string_view code) {
  std::string keys = "\n" + searchFolded(code);
  for (auto const& [language, name] : Texts::languages())
    keys += "\n" + searchFolded(countryName(code, language));
  for (auto const& [of, key] : kNicknames) {
    if (of == code) keys += "\n" + std::string(key);
  }
  return keys + "\n";
}

}  // namespace

std::uint16_t CountryNumbers::number(std::string_view code) const {
  auto const found = std::ranges::lower_bound(codes_, code);
  if (found == codes_.end() || *found != code)
    throw std::runtime_error("unknown country " + std::string(code));
  return static_cast<std::uint16_t>(found - codes_.begin());
}

std::set<std::uint16_t> CountryNumbers::zonesOf(std::uint16_t country) const {
  std::set<std::uint16_t> zones;
  if (auto const found = zones_.find(country); found != zones_.end()) zones = found->second;
  auto const towns = towns_.find(country);
  if (towns == towns_.end()) return zones;
  int all = 0;
  for (auto const& [zone, count] : towns->second) all += count;
  for (auto const& [zone, count] : towns->second) {
    if (count * kTownShare >= all) zones.insert(zone);
  }
  return zones;
}

void CountryNumbers::write(TableFile& file) const {
  std::uint16_t number = 0;
  for (std::string const& code : codes_) {
    CountryRecord record{{code[0], code[1]}, 0, 0, file.appendBytes(Section::countryKeys, countryKeys(code))};
    record.firstZone =
        static_cast<std::uint32_t>(file.bytes(Section::countryZones).size() / sizeof(std::uint16_t));
    auto const zones = zonesOf(number++);
    record.zoneCount = static_cast<std::uint16_t>(zones.size());
    for (std::uint16_t const zone : zones) file.append(Section::countryZones, zone);
    file.append(Section::countries, record);
  }
}

std::uint16_t ZoneNumbers::number(std::string_view name) {
  auto const known = numbers_.find(name);
  if (known != numbers_.end()) return known->second;
  names_.emplace_back(usableName(name));
  return numbers_[std::string(name)] = static_cast<std::uint16_t>(names_.size() - 1);
}

void ZoneNumbers::write(TableFile& file) const {
  if (names_.size() > kZones) throw std::runtime_error("more time zones than a run can name");
  for (std::string const& name : names_) file.append(Section::zones, file.text(name));
}

}  // namespace nimbara::gazetteer
