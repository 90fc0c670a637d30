#include "feeds/travel/travel_advisory_service.h"

#include "base/json/json_codec.h"
#include "feeds/fetching/kept_record.h"

#include <utility>

namespace nimbara {

namespace {

struct KeptAdvisories {
  Instant checkedAt;
  std::vector<TravelAdvisory> advisories;
};

}  // namespace

template <>
inline constexpr auto jsonFields<KeptAdvisories> = FieldList{
    field("checkedAt", &KeptAdvisories::checkedAt), field("advisories", &KeptAdvisories::advisories)};

namespace {

constexpr std::chrono::seconds kAdvisoryTimeout{25};
constexpr std::size_t kLargestAdvisories = std::size_t{8} << 20;

FeedQuestion questionOf(std::string url, std::string_view expected) {
  FeedQuestion question;
  question.request.url = std::move(url);
  question.request.headers = {{"Accept", "application/json"}};
  question.request.timeout = kAdvisoryTimeout;
  question.request.maxBodyBytes = kLargestAdvisories;
  question.expected = expected;
  question.life = TravelAdvisoryService::kLife;
  return question;
}

using Advisories = Result<std::vector<TravelAdvisory>, DecodeError>;

/// Where a source's list lies and what reads it.
struct ListRow {
  std::string TravelAdvisoryService::Options::* base;
  std::string_view path;
  Advisories (*parse)(std::string_view);
};

constexpr std::string_view kBritishPath = "/api/content";

/// In the order of `AdvisorySource`; the third has no list.
constexpr ListRow kLists[] = {
    {&TravelAdvisoryService::Options::baseUrl, "/api/TravelAdvisories", parseTravelAdvisories},
    {&TravelAdvisoryService::Options::canadaBase, "/travel-voyage/index-alpha-eng.json",
     parseCanadianAdvisories},
    {&TravelAdvisoryService::Options::britainBase, kBritishPath, nullptr},
    {&TravelAdvisoryService::Options::germanyBase, "/opendata/travelwarning", parseGermanAdvisories},
};

}  // namespace

TravelAdvisoryService::TravelAdvisoryService(HttpClient& http, Clock const& clock, Options options)
    : http_(http), clock_(clock), options_(std::move(options)) {}

TravelAdvisoryService::Reading TravelAdvisoryService::fetchAdvisories(AdvisorySource source,
                                                                      std::string const& country,
                                                                      std::stop_token const& stop) {
  std::lock_guard const turn(turn_);
  if (source == AdvisorySource::uk) return fetchBritish(country, stop);
  loadOnce(source);
  auto& feed = lists_[static_cast<std::size_t>(source)].feed;
  ListRow const& row = kLists[static_cast<std::size_t>(source)];
  auto const before = feed.reading(clock_, kLife).checkedAt;
  auto reading = feed.read(
      http_, clock_, questionOf(options_.*row.base + std::string(row.path), "list of travel advisories"),
      row.parse, stop);
  if (reading.checkedAt && reading.checkedAt != before) save(source, reading.data, *reading.checkedAt);
  return reading;
}

/// The list of pages, then the page. In its turn.
TravelAdvisoryService::Reading TravelAdvisoryService::fetchBritish(std::string const& country,
                                                                   std::stop_token const& stop) {
  if (country.empty()) return {FeedState::current, {}, clock_.now(), {}, {}};
  std::string const base = options_.britainBase + std::string(kBritishPath);
  auto const pages =
      britishPages_.read(http_, clock_, questionOf(base + "/foreign-travel-advice", "list of countries"),
                         parseBritishList, stop);
  auto const page = pages.data.find(country);
  if (page == pages.data.end()) return {pages.state, {}, pages.checkedAt, pages.failedSince, pages.failure};
  auto advisory = british_.of(page->second)
                      .read(http_, clock_, questionOf(base + page->second, "travel advisory"),
                            parseBritishAdvisory, stop);
  std::vector<TravelAdvisory> own;
  if (advisory.checkedAt) own.push_back(std::move(advisory.data));
  return {advisory.state, std::move(own), advisory.checkedAt, advisory.failedSince, advisory.failure};
}

std::filesystem::path TravelAdvisoryService::fileOf(AdvisorySource source) const {
  std::string const ending =
      source == AdvisorySource::us ? std::string() : "-" + std::string(enumName(source));
  return options_.cacheDirectory / ("advisories" + ending + ".json");
}

void TravelAdvisoryService::loadOnce(AdvisorySource source) {
  List& list = lists_[static_cast<std::size_t>(source)];
  if (std::exchange(list.isLoaded, true) || options_.cacheDirectory.empty()) return;
  auto kept = keptRecord<KeptAdvisories>(fileOf(source), kLargestAdvisories);
  if (!kept || kept->advisories.empty()) return;
  list.feed.restore(std::move(kept->advisories), kept->checkedAt);
}

/// A disk that cannot be written to costs no more than the list after a restart.
void TravelAdvisoryService::save(AdvisorySource source, std::vector<TravelAdvisory> const& advisories,
                                 Instant checkedAt) const {
  if (options_.cacheDirectory.empty()) return;
  std::ignore = writeFileAtomically(fileOf(source), encodeJson(KeptAdvisories{checkedAt, advisories}));
}

}  // namespace nimbara
