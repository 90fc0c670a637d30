#include "app/services/forecasts/forecast_service.h"

#include "base/files/file_lock.h"
#include "base/files/private_folders.h"
#include "model/process.h"

namespace nimbara {

namespace {

/// How often another program of the user's that asks for the same place is waited for, half a second each
/// time.
constexpr int kPatience = 20;

void setUnlessEmpty(std::string& target, std::string const& text) {
  if (!text.empty()) target = text;
}

/// Providers know coordinates; a name comes from whoever knows the place.
void setNames(LocationInfo& location, Place const& place) {
  setUnlessEmpty(location.areaName, place.name);
  setUnlessEmpty(location.country, place.country);
  setUnlessEmpty(location.region, place.region);
}

void setUnlessEmpty(WttrValues& target, std::string const& text) {
  if (!text.empty()) target = {{text}};
}

void setNames(WttrResponse& response, Place const& place) {
  if (response.nearestArea.empty()) return;
  NearestArea& area = response.nearestArea.front();
  setUnlessEmpty(area.areaName, place.name);
  setUnlessEmpty(area.country, place.country);
  setUnlessEmpty(area.region, place.region);
}

}  // namespace

ForecastService::ForecastService(WeatherProviderManager& providers, WeatherCache& cache, Clock const& clock,
                                 Wording wording)
    : providers_(providers), cache_(cache), clock_(clock), wording_(std::move(wording)) {}

void ForecastService::setWording(Wording wording) {
  std::lock_guard const lock(mutex_);
  wording_ = std::move(wording);
}

Wording ForecastService::wording() const {
  std::lock_guard const lock(mutex_);
  return wording_;
}

void ForecastService::finish(Place const& place, ForecastAnswer& answer) const {
  Instant const now = clock_.now();
  setNames(answer.data.location, place);
  answer.stale = !isFresh(answer.answeredAt, now, cache_.ttl());
  Wording const words = wording();
  ForecastInsight insight = analysis_.analyze(answer.data, now, words.units, *words.texts, words.fallback);
  answer.alerts = std::move(insight.alerts);
  answer.superseded = std::move(insight.superseded);
}

ForecastAnswer ForecastService::answerOf(Place const& place, WttrResponse response,
                                         Instant answeredAt) const {
  setNames(response, place);
  ForecastAnswer answer;
  answer.answeredAt = answeredAt;
  answer.data = process(response, wording().fallback, answeredAt);
  answer.response = std::move(response);
  finish(place, answer);
  return answer;
}

std::optional<ForecastAnswer> ForecastService::cached(Place const& place) {
  std::string const key = cacheKey(place.coordinate);
  ForecastAnswer answer;
  if (auto raw = cache_.fetchEntry(key)) {
    answer = answerOf(place, std::move(raw->response), raw->timestamp);
    answer.response.reset();
    answer.provider = raw->provider;
  } else if (auto parsed = cache_.load(key)) {
    answer.answeredAt = parsed->responseTimestamp;
    answer.data = std::move(parsed->data);
    answer.provider = parsed->provider;
    finish(place, answer);
  } else {
    return std::nullopt;
  }
  answer.fromCache = true;
  return answer;
}

Result<ForecastAnswer, APIError> ForecastService::fetch(Place const& place, std::stop_token const& stop) {
  auto fetched = providers_.fetch(place.coordinate.latitude, place.coordinate.longitude, stop);
  if (!fetched) return std::unexpected(fetched.error());
  std::string const key = cacheKey(place.coordinate);
  cache_.store(key, fetched->response, fetched->provider);
  ForecastAnswer answer = answerOf(place, std::move(fetched->response), clock_.now());
  answer.provider = fetched->provider;
  cache_.store(key, {answer.answeredAt, answer.data, {answer.alerts}, answer.provider, {}});
  return answer;
}

Result<ForecastAnswer, APIError> ForecastService::get(Place const& place, WeatherProviderOption wanted,
                                                      std::stop_token const& stop) {
  auto const suits = [wanted](std::optional<ForecastAnswer> const& answer) {
    return answer && !answer->stale &&
           (wanted == WeatherProviderOption::automatic || answer->provider == wanted);
  };
  auto kept = cached(place);
  if (suits(kept)) return std::move(*kept);
  std::optional<FileLock> turn;
  if (!cache_.cacheDirectory().empty()) {
    std::ignore = makePrivateFolders(cache_.cacheDirectory());
    auto const file =
        cache_.cacheDirectory() / (WeatherCache::fileName(cacheKey(place.coordinate)) + ".lock");
    for (int i = 0; i < kPatience && !stop.stop_requested(); ++i) {
      turn.emplace(file);
      // Whoever waited finds what the other has fetched.
      kept = cached(place);
      if (suits(kept)) return std::move(*kept);
      if (!turn->isTaken()) break;
    }
  }
  auto fetched = fetch(place, stop);
  // A limit of time ends a request too; what is kept is the answer then.
  bool const wasCancelled =
      !fetched && fetched.error().transport == HttpError::Kind::cancelled && stop.stop_requested();
  if (fetched || !kept || wasCancelled) return fetched;
  kept->failure = fetched.error();
  return std::move(*kept);
}

}  // namespace nimbara
