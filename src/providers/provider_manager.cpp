#include "providers/provider_manager.h"

#include "platform/http/request_quota.h"
#include "platform/network_reach.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace nimbara {

namespace {

/// The longest pause that a service may ask for.
constexpr std::chrono::hours kLongestBlock{24};

/// A specific choice; `automatic` has none.
std::optional<AutomaticProvider> specific(WeatherProviderOption option) {
  return enumFromName<AutomaticProvider>(enumName(option));
}

constexpr int kTooManyRequests = 429;

/// Until when the service asked not to be bothered.
std::optional<Instant> blockOf(APIError const& error, Instant now) {
  if (error.retryAfter) return now + *error.retryAfter;
  return error.statusCode == kTooManyRequests ? quotaEnd(error.detail, now) : std::nullopt;
}

/// The answer of a service that asked not to be bothered yet, without asking it.
std::optional<APIError> blockInForce(ProviderRecord const& record, Instant now) {
  bool const isInForce =
      record.blockedUntil && now < *record.blockedUntil && *record.blockedUntil - now <= kLongestBlock;
  if (!isInForce) return std::nullopt;
  APIError error = APIError::http(kTooManyRequests, "it asked for a pause");
  error.retryAfter = std::chrono::ceil<std::chrono::seconds>(*record.blockedUntil - now);
  return error;
}

WeatherProviderOption optionOf(AutomaticProvider provider) {
  return *enumFromName<WeatherProviderOption>(enumName(provider));
}

bool isNetworkAway(APIError const& error) {
  return error.transport && nimbara::isNetworkAway(*error.transport);
}

}  // namespace

Instant coolsDownAt(ProviderRecord const& record, Instant now) {
  Instant end = now;
  auto const& failure = record.lastFailureAt;
  if (failure && *failure <= now) end = std::max<Instant>(end, *failure + WeatherProviderManager::kCoolDown);
  if (record.blockedUntil && *record.blockedUntil - now <= kLongestBlock)
    end = std::max(end, *record.blockedUntil);
  return end;
}

bool isCoolingDown(ProviderRecord const& record, Instant now) {
  return coolsDownAt(record, now) > now;
}

WeatherProviderManager::WeatherProviderManager(Providers providers, ProviderHistory& history,
                                               Clock const& clock, std::chrono::milliseconds limit)
    : providers_(std::move(providers)), history_(history), clock_(clock), limit_(limit) {}

void WeatherProviderManager::setOnFailure(OnFailure onFailure) {
  std::lock_guard const lock(stateMutex_);
  onFailure_ = std::move(onFailure);
}

void WeatherProviderManager::setPreferredProvider(WeatherProviderOption preferred) {
  std::lock_guard const lock(stateMutex_);
  preferredProvider_ = preferred;
}

WeatherProviderManager::Outcome WeatherProviderManager::attempt(AutomaticProvider provider, double latitude,
                                                                double longitude,
                                                                std::stop_token const& stop) {
  auto const& fetch = providers_[static_cast<std::size_t>(provider)].fetch;
  auto response = hardTimeout<WttrResponse>(
      limit_, late_,
      [&fetch, latitude, longitude](std::stop_token const& ending) {
        return fetch(latitude, longitude, ending);
      },
      stop);
  if (response) {
    history_.noteSuccess(enumName(provider), clock_.now());
    return WeatherProviderFetchResult{std::move(*response), optionOf(provider)};
  }
  if (response.error().transport == HttpError::Kind::cancelled) return std::unexpected(response.error());
  Instant const now = clock_.now();
  history_.noteFailure(enumName(provider), now, response.error().text(), blockOf(response.error(), now));
  OnFailure const onFailure = [this] {
    std::lock_guard const lock(stateMutex_);
    return onFailure_;
  }();
  if (onFailure) onFailure(provider, response.error());
  return std::unexpected(response.error());
}

WeatherProviderManager::Outcome WeatherProviderManager::walk(double latitude, double longitude,
                                                             std::stop_token const& stop) {
  auto const records = history_.records();
  std::optional<Outcome> outcome;
  std::optional<Instant> firstFree;
  std::vector<AutomaticProvider> unreached;
  bool wasAnyReached = false;
  for (std::size_t i = 0; i < providers_.size(); ++i) {
    auto const provider = static_cast<AutomaticProvider>(i);
    if (!providers_[i].isConfigured) continue;
    auto const record = records.find(enumName(provider));
    Instant const now = clock_.now();
    Instant const free = record == records.end() ? now : coolsDownAt(record->second, now);
    if (free > now) {
      firstFree = std::min(firstFree.value_or(free), free);
      continue;
    }
    outcome = attempt(provider, latitude, longitude, stop);
    if (*outcome || outcome->error().transport == HttpError::Kind::cancelled) return std::move(*outcome);
    if (isNetworkAway(outcome->error())) {
      unreached.push_back(provider);
    } else {
      wasAnyReached = true;
    }
  }
  // Where nothing could be reached the network was away, which is none of the providers' failures.
  if (!wasAnyReached) {
    for (AutomaticProvider const provider : unreached) history_.forgiveFailure(enumName(provider));
  }
  if (outcome) return std::move(*outcome);
  if (!firstFree) return std::unexpected(APIError::refusal());
  return std::unexpected(
      APIError::refusal(std::chrono::ceil<std::chrono::seconds>(*firstFree - clock_.now())));
}

WeatherProviderManager::Outcome WeatherProviderManager::fetch(double latitude, double longitude,
                                                              std::stop_token const& stop) {
  std::lock_guard const turn(turn_);
  WeatherProviderOption const preferred = [this] {
    std::lock_guard const lock(stateMutex_);
    return preferredProvider_;
  }();
  if (auto const provider = specific(preferred)) {
    if (auto const block = blockInForce(history_.record(enumName(*provider)), clock_.now())) {
      return std::unexpected(*block);
    }
    auto outcome = attempt(*provider, latitude, longitude, stop);
    if (!outcome && isNetworkAway(outcome.error())) history_.forgiveFailure(enumName(*provider));
    return outcome;
  }
  return walk(latitude, longitude, stop);
}

}  // namespace nimbara
