#include "feeds/storms/typhoon_service.h"

#include "feeds/storms/gdacs.h"
#include "feeds/storms/jtwc.h"

#include <algorithm>

namespace nimbara {

namespace {

FeedQuestion questionFor(std::string url, std::string_view expected, std::chrono::milliseconds life) {
  constexpr std::size_t kLargestBody = std::size_t{4} << 20;
  constexpr std::chrono::seconds kTimeout{15};
  FeedQuestion question;
  question.request.url = std::move(url);
  question.request.timeout = kTimeout;
  question.request.maxBodyBytes = kLargestBody;
  question.expected = expected;
  question.life = life;
  return question;
}

}  // namespace

TyphoonService::TyphoonService(HttpClient& http, Clock const& clock, std::string baseUrl)
    : http_(http), clock_(clock), baseUrl_(std::move(baseUrl)) {}

FeedReading<std::vector<TropicalStorm>> TyphoonService::fetchStorms(std::stop_token const& stop) {
  std::lock_guard const turn(turn_);
  auto const list = list_.read(
      http_, clock_, questionFor(baseUrl_ + "/jtwc/rss/jtwc.rss", "list of tropical cyclones", kLife),
      parseJtwcList, stop);
  FeedReading<std::vector<TropicalStorm>> reading{
      list.state, {}, list.checkedAt, list.failedSince, list.failure};
  for (std::string const& file : list.data) {
    auto const question =
        questionFor(baseUrl_ + "/jtwc/products/" + file + ".tcw", "warning of a tropical cyclone", kLife);
    auto storm = storms_.of(file).read(
        http_, clock_, question, [&](std::string_view body) { return parseJtwcWarning(body, file); }, stop);
    if (storm.checkedAt) reading.data.push_back(std::move(storm.data));
    if (storm.isCurrent() || !reading.isCurrent()) continue;
    // The others are known all the same, but the list is not whole.
    reading.state = storm.state;
    reading.failedSince = storm.failedSince;
    reading.failure = std::move(storm.failure);
  }
  return reading;
}

GdacsStormService::GdacsStormService(HttpClient& http, Clock const& clock, std::string baseUrl)
    : http_(http), clock_(clock), baseUrl_(std::move(baseUrl)) {}

FeedReading<std::vector<TropicalStorm>> GdacsStormService::fetchStorms(std::stop_token const& stop) {
  std::lock_guard const turn(turn_);
  return list_.read(http_, clock_,
                    questionFor(baseUrl_ + "/gdacsapi/api/events/geteventlist/MAP?eventtype=TC",
                                "list of tropical cyclones", kLife),
                    parseGdacsStorms, stop);
}

}  // namespace nimbara
