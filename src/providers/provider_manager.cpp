#include "providers/provider_manager.h"

#include "platform/request_quota.h"

#include <utility>

namespace nimbara {

namespace {

using AutomaticProvider = WeatherProviderManager::AutomaticProvider;

/// The longest pause that a service may ask for.
constexpr std::chrono::hours kLongestBlock{24};

/// A specific choice; `automatic` has none.
std::optional<AutomaticProvider> specific(WeatherProviderOption option) {
  return enumFromName<AutomaticProvider>(enumName(option));
}

/// Until when the service asked not to be bothered.
std::optional<Instant> blockOf(APIError const& error, Instant now) {
  constexpr int kTooManyRequests = 429;
  if (error.retryAfter) return now + *error.retryAfter;
  return error.statusCode == kTooManyRequests ? quotaEnd(error.detail, now) : std::nullopt;
}

WeatherProviderOption optionOf(AutomaticProvider provider) {
  return *enumFromName<WeatherProviderOption>(enumName(provider));
}

}  // namespace

bool isCoolingDown(ProviderRecord const& record, Instant now) {
  auto const& failure = record.lastFailureAt;
  if (failure && *failure <= now && now - *failure < WeatherProviderManager::kCoolDown) return true;
  return record.blockedUntil && now < *record.blockedUntil && *record.blockedUntil - now <= kLongestBlock;
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
  Outcome outcome = std::unexpected(APIError::refusal());
  for (std::size_t i = 0; i < providers_.size(); ++i) {
    auto const provider = static_cast<AutomaticProvider>(i);
    auto const record = records.find(enumName(provider));
    bool const cooling = record != records.end() && isCoolingDown(record->second, clock_.now());
    if (!providers_[i].isConfigured || cooling) continue;
    outcome = attempt(provider, latitude, longitude, stop);
    if (outcome || outcome.error().transport == HttpError::Kind::cancelled) break;
  }
  return outcome;
}

WeatherProviderManager::Outcome WeatherProviderManager::fetch(double latitude, double longitude,
                                                              std::stop_token const& stop) {
  std::lock_guard const turn(turn_);
  WeatherProviderOption const preferred = [this] {
    std::lock_guard const lock(stateMutex_);
    return preferredProvider_;
  }();
  if (auto const provider = specific(preferred)) return attempt(*provider, latitude, longitude, stop);
  return walk(latitude, longitude, stop);
}

}  // namespace nimbara
