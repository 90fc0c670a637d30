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

constexpr std::chrono::seconds kTimeout{25};
constexpr std::size_t kLargestBody = std::size_t{8} << 20;

FeedQuestion question(std::string const& baseUrl) {
  FeedQuestion question;
  question.request.url = baseUrl + "/api/TravelAdvisories";
  question.request.headers = {{"Accept", "application/json"}};
  question.request.timeout = kTimeout;
  question.request.maxBodyBytes = kLargestBody;
  question.expected = "list of travel advisories";
  question.life = TravelAdvisoryService::kLife;
  return question;
}

}  // namespace

TravelAdvisoryService::TravelAdvisoryService(HttpClient& http, Clock const& clock, Options options)
    : http_(http), clock_(clock), options_(std::move(options)) {}

FeedReading<std::vector<TravelAdvisory>> TravelAdvisoryService::fetchAdvisories(std::stop_token const& stop) {
  std::lock_guard const turn(turn_);
  loadOnce();
  auto const before = feed_.reading(clock_, kLife).checkedAt;
  auto reading = feed_.read(http_, clock_, question(options_.baseUrl), parseTravelAdvisories, stop);
  if (reading.checkedAt && reading.checkedAt != before) save(reading.data, *reading.checkedAt);
  return reading;
}

void TravelAdvisoryService::loadOnce() {
  if (std::exchange(loaded_, true) || options_.cacheDirectory.empty()) return;
  auto kept = keptRecord<KeptAdvisories>(file(), kLargestBody);
  if (!kept || kept->advisories.empty()) return;
  feed_.restore(std::move(kept->advisories), kept->checkedAt);
}

/// A disk that cannot be written to costs no more than the list after a restart.
void TravelAdvisoryService::save(std::vector<TravelAdvisory> const& advisories, Instant checkedAt) const {
  if (options_.cacheDirectory.empty()) return;
  std::ignore = writeFileAtomically(file(), encodeJson(KeptAdvisories{checkedAt, advisories}));
}

}  // namespace nimbara
