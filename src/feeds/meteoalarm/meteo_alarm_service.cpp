#include "feeds/meteoalarm/meteo_alarm_service.h"

#include "feeds/regions/meteo_alarm_countries.h"

#include <algorithm>

namespace nimbara {

namespace {

/// Where the feeds' links to documents lead, whoever stands in for the service.
constexpr std::string_view kPublicHost = "https://feeds.meteoalarm.org";

bool hasShape(RawEntry const& entry) {
  return !entry.circles.empty() || !entry.polygons.empty();
}

CapDocument documentIn(CapDocuments const& documents, std::string const& name) {
  auto const found = documents.find(name);
  return found == documents.end() ? nullptr : found->second;
}

/// Two messages may have one identifier by mistake, but no address has two.
CapDocument messageOf(RawEntry const& entry, CapDocuments const& messages) {
  CapDocument message = documentIn(messages, entry.link);
  return message ? message : documentIn(messages, entry.identifier);
}

}  // namespace

MeteoAlarmService::MeteoAlarmService(HttpClient& http, Clock const& clock, Options options,
                                     Texts const& texts, RegionLookup regions, AreaLookup isKnownArea)
    : http_(http),
      clock_(clock),
      options_(std::move(options)),
      texts_(texts),
      lookUpRegions_(std::move(regions)),
      isKnownArea_(std::move(isKnownArea)),
      documents_(http, clock, options_.documentsDirectory) {
  if (options_.language.empty()) options_.language = texts.language();
}

std::vector<WeatherAlert> MeteoAlarmService::fetchAlerts(double latitude, double longitude,
                                                         std::string_view countryCode,
                                                         std::stop_token const& stop) {
  return fetch({latitude, longitude}, countryCode, {}, stop).alerts;
}

MeteoAlarmAnswer MeteoAlarmService::fetch(Coordinate place, std::string_view countryCode,
                                          std::optional<PlaceRegions> const& regions,
                                          std::stop_token const& stop) {
  std::string const country = warningCountry(countryCode);
  auto const feedName = meteoAlarmFeedName(country);
  if (!feedName || !isValid(place)) return {{}, {}, clock_.now(), {}};
  auto const [content, messages, checkedAt, failure] = feedOf(country, *feedName).get(stop);
  if (!content) return {{}, {}, checkedAt, failure};
  PlaceRegions const here = regions ? *regions : lookUpRegions_ ? lookUpRegions_(place) : PlaceRegions{};
  auto entries = selectedEntries(content->feed, place, here);
  Instant const now = clock_.now();
  std::erase_if(entries, [now](SelectedEntry const& one) { return !isCurrentWarning(*one.entry, now); });
  MergeContext const context{country, here, options_.language, texts_};
  CapDocuments const none;
  auto const said = told(entries, messages ? messages->messages : none, stop);
  return {mergedAlerts(said, context), unplacedAlerts(content->feed, entries, context), checkedAt, failure};
}

MeteoAlarmCountryFeed& MeteoAlarmService::feedOf(std::string const& country, std::string_view feedName) {
  std::lock_guard const lock(mutex_);
  auto& feed = feeds_[country];
  if (!feed) {
    std::string const name(feedName);
    std::string const list = "/api/v1/warnings/feeds-" + name;
    feed = std::make_unique<MeteoAlarmCountryFeed>(
        http_, clock_,
        MeteoAlarmCountryFeed::Addresses{options_.baseUrl + "/feeds/meteoalarm-legacy-atom-" + name,
                                         options_.baseUrl + list, std::string(kPublicHost) + list + "/"},
        options_.feedsDirectory.empty() ? std::filesystem::path() : options_.feedsDirectory / name);
  }
  return *feed;
}

/// Documents are asked for where the feeds are: what a feed says leads to no other host.
std::optional<std::string> MeteoAlarmService::addressOf(RawEntry const& entry) const {
  for (std::string_view const host : {std::string_view(options_.baseUrl), kPublicHost}) {
    if (!entry.link.starts_with(host) || entry.link.size() == host.size()) continue;
    if (entry.link[host.size()] == '/') return options_.baseUrl + entry.link.substr(host.size());
  }
  return std::nullopt;
}

/// The entries with what is said of them in full: by a message that is at hand, or by the documents of the
/// deciding ones among them.
std::vector<ToldEntry> MeteoAlarmService::told(std::vector<SelectedEntry> const& entries,
                                               CapDocuments const& messages, std::stop_token const& stop) {
  std::vector<std::string> addresses;
  for (SelectedEntry const& one : decidingEntries(entries)) {
    if (messageOf(*one.entry, messages)) continue;
    if (auto address = addressOf(*one.entry)) addresses.push_back(std::move(*address));
  }
  CapDocuments const documents = documents_.documents(addresses, stop);
  std::vector<ToldEntry> told;
  for (SelectedEntry const& one : entries) {
    ToldEntry& entry = told.emplace_back(ToldEntry{one, {}, {}});
    CapDocument document = messageOf(*one.entry, messages);
    if (!document) document = documentIn(documents, addressOf(*one.entry).value_or(""));
    if (!document) continue;
    entry.details = detailsOf(*document, *one.entry, options_.language);
    entry.areaLanguage = languageOfEntry(*document, *one.entry);
  }
  return told;
}

/// Warnings that no rule could match with any place, because nothing that is known here has their codes or
/// names; for a place of which nothing at all is known, all that have no shape.
std::vector<WeatherAlert> MeteoAlarmService::unplacedAlerts(MeteoAlarmFeed const& feed,
                                                            std::vector<SelectedEntry> const& selected,
                                                            MergeContext const& context) const {
  bool const isPlaceKnown = !context.regions.codes.empty() || !context.regions.names.empty();
  if (isPlaceKnown && !isKnownArea_) return {};
  Instant const now = clock_.now();
  std::vector<SelectedEntry> unplaced;
  auto next = selected.begin();  // they are in the feed's order
  for (RawEntry const& entry : feed.entries) {
    bool const isSelected = next != selected.end() && next->entry == &entry;
    if (isSelected) ++next;
    if (isSelected || hasShape(entry) || !isCurrentWarning(entry, now)) continue;
    if (!isPlaceKnown || !isKnownArea_(context.country, entry)) unplaced.push_back({&entry, {}});
  }
  return nimbara::unplacedAlerts(unplaced, context);
}

}  // namespace nimbara
