#include "feeds/quakes/emsc_service.h"

namespace nimbara {

namespace {

constexpr std::chrono::hours kSpan{24};

}  // namespace

FeedReading<std::vector<EarthquakeEvent>> EmscService::fetchEarthquakes(std::stop_token const& stop) {
  constexpr std::size_t kLargestBody = std::size_t{4} << 20;
  constexpr std::chrono::seconds kTimeout{15};
  std::lock_guard const turn(turn_);
  auto const since = std::chrono::floor<std::chrono::seconds>(clock_.now() - kSpan);
  FeedQuestion question;
  question.request.url = baseUrl_ + "/fdsnws/event/1/query?format=json&limit=200&minmag=2.5&starttime=" +
                         formatIso8601(Instant(since)).substr(0, 19);
  question.request.timeout = kTimeout;
  question.request.maxBodyBytes = kLargestBody;
  question.expected = "list of earthquakes";
  question.life = kLife;
  auto reading = list_.read(http_, clock_, question, parseEmscEarthquakes, stop);
  reading.data = recentEarthquakes(std::move(reading.data), clock_.now());
  return reading;
}

}  // namespace nimbara
