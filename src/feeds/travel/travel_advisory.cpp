#include "feeds/travel/travel_advisory.h"

#include "base/text/text.h"
#include "feeds/fetching/lenient_json.h"
#include "feeds/fetching/plain_text.h"
#include "feeds/travel/country_of_advisory.h"

#include <algorithm>
#include <array>
#include <map>

namespace nimbara {

namespace {

struct Entry {
  Lenient<std::string> title, link, summary, published, updated;
  Lenient<std::vector<Lenient<std::string>>> category;
};

}  // namespace

template <>
inline constexpr auto jsonFields<Entry> = FieldList{
    fieldOr("Title", &Entry::title),         fieldOr("Link", &Entry::link),
    fieldOr("Category", &Entry::category),   fieldOr("Summary", &Entry::summary),
    fieldOr("Published", &Entry::published), fieldOr("Updated", &Entry::updated),
};

template Result<std::vector<TravelAdvisory>, DecodeError> decodeJson(std::string_view);

namespace {

constexpr std::array<std::string_view, enumNames<AlertSeverity>.size()> kWords{"low", "medium", "high",
                                                                               "critical"};
constexpr std::string_view kLevel = "level ";
constexpr int kHighestLevel = 4;
/// The space of the identifiers of advisories.
constexpr Uuid kAdvisories{};

/// "Testland - Level 2: …" names the country before the dash; what follows is for readers.
std::string_view placeOfTitle(std::string_view title) {
  std::size_t const level = asciiLowered(title).find(kLevel);
  std::string_view place = trimmed(title.substr(0, level));
  for (std::string_view const dash : {"-", "–", "—", ":"}) {
    if (place.ends_with(dash)) place = trimmed(place.substr(0, place.size() - dash.size()));
  }
  constexpr std::string_view kSuffix = " Travel Advisory";
  if (place.ends_with(kSuffix)) place.remove_suffix(kSuffix.size());
  return trimmed(place);
}

/// With a zone, without one (then Greenwich's) or the date alone.
std::optional<Instant> looseInstant(std::string_view text) {
  if (auto const instant = parseIso8601(text)) return instant;
  if (auto const local = parseLocalTime(text.substr(0, text.find('.'))))
    return Instant(local->time_since_epoch());
  auto const date = parseDate(text);
  return date ? std::optional<Instant>(std::chrono::sys_days(*date)) : std::nullopt;
}

std::optional<Instant> instantOf(Lenient<std::string> const& text) {
  return text.value ? looseInstant(trimmed(*text.value)) : std::nullopt;
}

std::string_view categoryOf(Entry const& entry) {
  if (!entry.category.value || entry.category.value->empty()) return {};
  auto const& first = entry.category.value->front().value;
  return first ? std::string_view(*first) : std::string_view();
}

bool isLink(std::string_view text) {
  return text.starts_with("https://") || text.starts_with("http://");
}

std::optional<TravelAdvisory> advisoryOf(Entry const& entry) {
  TravelAdvisory advisory;
  advisory.title = plainTextOfHtml(oneLine(entry.title.value.value_or("")));
  auto const level = levelOfTitle(advisory.title);
  advisory.country = countryOfAdvisory(placeOfTitle(advisory.title), categoryOf(entry));
  if (!level || advisory.country.empty()) return std::nullopt;
  advisory.level = *level;
  std::string const link = oneLine(entry.link.value.value_or(""), 500);
  if (isLink(link)) advisory.link = link;
  advisory.summary = plainTextOfHtml(entry.summary.value.value_or(""));
  advisory.published = instantOf(entry.published);
  advisory.updated = instantOf(entry.updated);
  return advisory;
}

}  // namespace

std::optional<int> levelOfTitle(std::string_view title) {
  std::string const lowered = asciiLowered(title);
  for (auto at = lowered.find(kLevel); at != std::string::npos; at = lowered.find(kLevel, at + 1)) {
    std::size_t const digit = at + kLevel.size();
    bool const isAlone = digit + 1 >= lowered.size() || lowered[digit + 1] < '0' || lowered[digit + 1] > '9';
    if (digit >= lowered.size() || !isAlone) continue;
    int const level = lowered[digit] - '0';
    if (level >= 1 && level <= kHighestLevel) return level;
  }
  return std::nullopt;
}

Result<std::vector<TravelAdvisory>, DecodeError> parseTravelAdvisories(std::string_view body) {
  auto const entries = decodeJson<std::vector<Lenient<Entry>>>(body);
  if (!entries) return std::unexpected(entries.error());
  std::map<std::string, TravelAdvisory> byCountry;
  for (auto const& entry : *entries) {
    auto advisory = entry.value ? advisoryOf(*entry.value) : std::nullopt;
    if (!advisory) continue;
    auto const [kept, isNew] = byCountry.try_emplace(advisory->country, *advisory);
    if (!isNew && advisory->level > kept->second.level) kept->second = std::move(*advisory);
  }
  if (byCountry.empty()) return std::unexpected(DecodeError{"", "it lists no advisories"});
  std::vector<TravelAdvisory> advisories;
  advisories.reserve(byCountry.size());
  for (auto& [country, advisory] : byCountry) advisories.push_back(std::move(advisory));
  return advisories;
}

AlertSeverity advisorySeverity(int level) {
  return static_cast<AlertSeverity>(std::clamp(level, 1, kHighestLevel) - 1);
}

WeatherAlert advisoryAlert(TravelAdvisory const& advisory) {
  WeatherAlert alert;
  alert.id = Uuid::named(kAdvisories,
                         "travel advisory " + std::string(enumName(advisory.source)) + advisory.country);
  alert.severity = advisorySeverity(advisory.level);
  alert.title = advisory.title;
  alert.message = advisory.summary;
  alert.areaDesc = advisory.country;
  alert.isTravelAdvisory = true;
  alert.issued = advisory.updated ? advisory.updated : advisory.published;
  if (!advisory.link.empty()) alert.link = advisory.link;
  return alert;
}

std::optional<AlertSeverity> severityOfWord(std::string_view word) {
  auto const* const found = std::ranges::find(kWords, word);
  return found == kWords.end() ? std::nullopt
                               : std::optional(static_cast<AlertSeverity>(found - kWords.begin()));
}

}  // namespace nimbara
