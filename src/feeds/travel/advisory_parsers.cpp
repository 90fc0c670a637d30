#include "feeds/travel/advisory_parsers.h"

#include "base/text/text.h"
#include "feeds/fetching/lenient_json.h"
#include "feeds/fetching/plain_text.h"
#include "feeds/travel/country_of_advisory.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

struct CanadianDate {
  LenientNumber timestamp;
};

struct CanadianText {
  Lenient<std::string> name, slug, advice, updates;
};

struct CanadianEntry {
  Lenient<std::string> country;
  LenientNumber state, regional;
  Lenient<CanadianDate> published;
  Lenient<CanadianText> english;
};

struct CanadianList {
  std::map<std::string, Lenient<CanadianEntry>> data;
};

struct GermanEntry {
  Lenient<std::string> country, title;
  LenientNumber modified;
  Lenient<bool> warning, partial, situation, situationPart;
};

/// Beside the countries there are a moment and a list of keys.
struct GermanList {
  std::map<std::string, Lenient<GermanEntry>> response;
};

struct BritishChild {
  Lenient<std::string> path, title;
};

struct BritishLinks {
  std::vector<Lenient<BritishChild>> children;
};

struct BritishList {
  BritishLinks links;
};

struct BritishCountry {
  Lenient<std::string> name;
};

struct BritishDetails {
  std::vector<std::string> status;
  Lenient<std::string> change;
  Lenient<BritishCountry> country;
};

struct BritishPage {
  Lenient<std::string> path, title, updated;
  BritishDetails details;
};

}  // namespace

template <>
inline constexpr auto jsonFields<CanadianDate> = FieldList{fieldOr("timestamp", &CanadianDate::timestamp)};
template <>
inline constexpr auto jsonFields<CanadianText> = FieldList{
    fieldOr("name", &CanadianText::name), fieldOr("url-slug", &CanadianText::slug),
    fieldOr("advisory-text", &CanadianText::advice), fieldOr("recent-updates", &CanadianText::updates)};
template <>
inline constexpr auto jsonFields<CanadianEntry> = FieldList{
    fieldOr("country-iso", &CanadianEntry::country), fieldOr("advisory-state", &CanadianEntry::state),
    fieldOr("has-regional-advisory", &CanadianEntry::regional),
    fieldOr("date-published", &CanadianEntry::published), fieldOr("eng", &CanadianEntry::english)};
template <>
inline constexpr auto jsonFields<CanadianList> = FieldList{field("data", &CanadianList::data)};
template <>
inline constexpr auto jsonFields<GermanEntry> =
    FieldList{fieldOr("countryCode", &GermanEntry::country),
              fieldOr("title", &GermanEntry::title),
              fieldOr("lastModified", &GermanEntry::modified),
              fieldOr("warning", &GermanEntry::warning),
              fieldOr("partialWarning", &GermanEntry::partial),
              fieldOr("situationWarning", &GermanEntry::situation),
              fieldOr("situationPartWarning", &GermanEntry::situationPart)};
template <>
inline constexpr auto jsonFields<GermanList> = FieldList{field("response", &GermanList::response)};
template <>
inline constexpr auto jsonFields<BritishChild> =
    FieldList{fieldOr("base_path", &BritishChild::path), fieldOr("title", &BritishChild::title)};
template <>
inline constexpr auto jsonFields<BritishLinks> = FieldList{field("children", &BritishLinks::children)};
template <>
inline constexpr auto jsonFields<BritishList> = FieldList{field("links", &BritishList::links)};
template <>
inline constexpr auto jsonFields<BritishCountry> = FieldList{fieldOr("name", &BritishCountry::name)};
template <>
inline constexpr auto jsonFields<BritishDetails> = FieldList{
    field("alert_status", &BritishDetails::status), fieldOr("change_description", &BritishDetails::change),
    fieldOr("country", &BritishDetails::country)};
template <>
inline constexpr auto jsonFields<BritishPage> =
    FieldList{fieldOr("base_path", &BritishPage::path), fieldOr("title", &BritishPage::title),
              fieldOr("public_updated_at", &BritishPage::updated), field("details", &BritishPage::details)};

namespace {

constexpr std::size_t kLettersOfCode = 2;
constexpr std::size_t kLongestSlug = 100;
constexpr int kHighestLevel = 4;
constexpr std::string_view kGermanPage =
    "https://www.auswaertiges-amt.de/de/ReiseUndSicherheit/reise-und-sicherheitshinweise";
constexpr std::string_view kBritishFolder = "/foreign-travel-advice/";

/// The names that follow the colon in a text's key.
struct AdviceRow {
  std::string_view status;
  std::string_view advice;
  int level;
};

/// The gravest first.
constexpr AdviceRow kBritishAdvice[] = {
    {"avoid_all_travel_to_whole_country", "uk.all", 4},
    {"avoid_all_but_essential_travel_to_whole_country", "uk.essential", 3},
    {"avoid_all_travel_to_parts", "uk.partsAll", 2},
    {"avoid_all_but_essential_travel_to_parts", "uk.partsEssential", 2},
};

std::string codeOf(Lenient<std::string> const& text) {
  std::string code = asciiUppered(trimmed(text.value.value_or("")));
  bool const isCode =
      code.size() == kLettersOfCode && std::ranges::all_of(code, [](char c) { return c >= 'A' && c <= 'Z'; });
  return isCode ? code : std::string();
}

bool isSlug(std::string_view text) {
  return !text.empty() && text.size() <= kLongestSlug && std::ranges::all_of(text, [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-';
  });
}

/// Seconds since 1970, or milliseconds.
std::optional<Instant> instantOf(std::optional<double> number) {
  constexpr double kLastSecond = 1e11, kLastMillisecond = 1e14;
  if (!number || !(*number > 0) || *number > kLastMillisecond) return std::nullopt;
  double const milliseconds = *number < kLastSecond ? *number * 1000 : *number;
  return Instant(std::chrono::milliseconds(static_cast<std::int64_t>(milliseconds)));
}

std::optional<TravelAdvisory> canadianAdvisory(std::string const& key, CanadianEntry const& entry) {
  TravelAdvisory advisory;
  advisory.source = AdvisorySource::ca;
  advisory.country = codeOf(entry.country);
  if (advisory.country.empty()) advisory.country = codeOf({key});
  double const state = entry.state.value.value_or(-1);
  if (advisory.country.empty() || !(state >= 0 && state < kHighestLevel)) return std::nullopt;
  advisory.level = static_cast<int>(state) + 1;
  advisory.advice = "ca." + std::to_string(advisory.level);
  advisory.hasRegions = entry.regional.value.value_or(0) > 0;
  CanadianText const text = entry.english.value.value_or(CanadianText{});
  advisory.title = oneLine(text.name.value.value_or(advisory.country)) + " - " +
                   plainTextOfHtml(oneLine(text.advice.value.value_or("")));
  advisory.summary = plainTextOfHtml(text.updates.value.value_or(""));
  std::string const slug = text.slug.value.value_or("");
  if (isSlug(slug)) advisory.link = "https://travel.gc.ca/destinations/" + slug;
  if (entry.published.value) advisory.published = instantOf(entry.published.value->timestamp.value);
  return advisory;
}

std::optional<TravelAdvisory> germanAdvisory(GermanEntry const& entry) {
  TravelAdvisory advisory;
  advisory.source = AdvisorySource::de;
  advisory.country = codeOf(entry.country);
  if (advisory.country.empty()) return std::nullopt;
  auto const isSet = [](Lenient<bool> const& flag) { return flag.value.value_or(false); };
  advisory.level = isSet(entry.warning)                                                           ? 4
                   : isSet(entry.partial) || isSet(entry.situation) || isSet(entry.situationPart) ? 2
                                                                                                  : 1;
  advisory.advice = isSet(entry.warning)         ? "de.warning"
                    : isSet(entry.partial)       ? "de.partial"
                    : isSet(entry.situation)     ? "de.situation"
                    : isSet(entry.situationPart) ? "de.situationPart"
                                                 : "de.none";
  advisory.title = plainTextOfHtml(oneLine(entry.title.value.value_or(advisory.country)));
  advisory.link = kGermanPage;
  advisory.updated = instantOf(entry.modified.value);
  return advisory;
}

Result<std::vector<TravelAdvisory>, DecodeError> sorted(std::vector<TravelAdvisory> advisories) {
  if (advisories.empty()) return std::unexpected(DecodeError{"", "it lists no advisories"});
  std::ranges::stable_sort(advisories, {}, &TravelAdvisory::country);
  auto const same = std::ranges::unique(advisories, {}, &TravelAdvisory::country);
  advisories.erase(same.begin(), same.end());
  return advisories;
}

/// "Japan travel advice", or the end of the path.
std::string countryOf(std::string_view title, std::string_view path) {
  constexpr std::string_view kSuffix = " travel advice";
  if (title.ends_with(kSuffix)) title.remove_suffix(kSuffix.size());
  std::string country = isoOfCountryName(title);
  if (!country.empty() || !path.starts_with(kBritishFolder)) return country;
  std::string name(path.substr(kBritishFolder.size()));
  if (name == "usa") return "US";
  std::ranges::replace(name, '-', ' ');
  return isoOfCountryName(name);
}

}  // namespace

Result<std::vector<TravelAdvisory>, DecodeError> parseCanadianAdvisories(std::string_view body) {
  auto const list = decodeJson<CanadianList>(body);
  if (!list) return std::unexpected(list.error());
  std::vector<TravelAdvisory> advisories;
  advisories.reserve(list->data.size());
  for (auto const& [key, entry] : list->data) {
    auto advisory = entry.value ? canadianAdvisory(key, *entry.value) : std::nullopt;
    if (advisory) advisories.push_back(std::move(*advisory));
  }
  return sorted(std::move(advisories));
}

Result<std::vector<TravelAdvisory>, DecodeError> parseGermanAdvisories(std::string_view body) {
  auto const list = decodeJson<GermanList>(body);
  if (!list) return std::unexpected(list.error());
  std::vector<TravelAdvisory> advisories;
  advisories.reserve(list->response.size());
  for (auto const& [key, entry] : list->response) {
    auto advisory = entry.value ? germanAdvisory(*entry.value) : std::nullopt;
    if (advisory) advisories.push_back(std::move(*advisory));
  }
  return sorted(std::move(advisories));
}

Result<AdvisoryPages, DecodeError> parseBritishList(std::string_view body) {
  auto const list = decodeJson<BritishList>(body);
  if (!list) return std::unexpected(list.error());
  AdvisoryPages pages;
  for (auto const& child : list->links.children) {
    if (!child.value || !child.value->path.value) continue;
    std::string const& path = *child.value->path.value;
    bool const isPage =
        path.starts_with(kBritishFolder) && isSlug(std::string_view(path).substr(kBritishFolder.size()));
    std::string const country = countryOf(trimmed(child.value->title.value.value_or("")), path);
    if (isPage && !country.empty()) pages.try_emplace(country, path);
  }
  if (pages.empty()) return std::unexpected(DecodeError{"", "it lists no countries"});
  return pages;
}

Result<TravelAdvisory, DecodeError> parseBritishAdvisory(std::string_view body) {
  auto const page = decodeJson<BritishPage>(body);
  if (!page) return std::unexpected(page.error());
  TravelAdvisory advisory;
  advisory.source = AdvisorySource::uk;
  std::string const path = page->path.value.value_or("");
  advisory.title = plainTextOfHtml(oneLine(page->title.value.value_or("")));
  auto const& country = page->details.country.value;
  advisory.country = countryOf(country ? country->name.value.value_or("") : advisory.title, path);
  if (advisory.country.empty())
    return std::unexpected(DecodeError{"/details/country", "it is of no country"});
  advisory.advice = "uk.none";
  auto const& status = page->details.status;
  auto const stated = [&](AdviceRow const& row) { return std::ranges::count(status, row.status) > 0; };
  if (auto const* const row = std::ranges::find_if(kBritishAdvice, stated); row != std::end(kBritishAdvice)) {
    advisory.advice = row->advice;
    advisory.level = row->level;
    advisory.hasRegions = row->level > 2 && status.size() > 1;
  }
  advisory.summary = plainTextOfHtml(page->details.change.value.value_or(""));
  if (path.starts_with(kBritishFolder) && isSlug(std::string_view(path).substr(kBritishFolder.size())))
    advisory.link = "https://www.gov.uk" + path;
  if (page->updated.value) advisory.updated = parseIso8601(*page->updated.value);
  return advisory;
}

}  // namespace nimbara
