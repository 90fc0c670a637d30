// The one entry through which the program asks for a forecast: the user's choice or the fixed order, each
// attempt under a hard limit in time, providers that failed just now left out. One fetch at a time; callers
// wait their turn.
#pragma once

#include "base/enum_names.h"
#include "model/provider_option.h"
#include "model/wttr_response.h"
#include "platform/clock.h"
#include "providers/common/api_error.h"
#include "providers/common/hard_timeout.h"
#include "providers/provider_history.h"

#include <array>
#include <functional>
#include <mutex>
#include <stop_token>

namespace nimbara {

struct WeatherProviderFetchResult {
  WttrResponse response;
  WeatherProviderOption provider = WeatherProviderOption::openMeteo;  ///< that answered; never `automatic`
};

/// One provider as the manager sees it.
struct ForecastProvider {
  std::function<Result<WttrResponse, APIError>(double latitude, double longitude, std::stop_token)> fetch;
  /// False for one that lacks its keys: the automatic order passes over it, in no time and without a trace.
  bool isConfigured = true;
};

class WeatherProviderManager {
 public:
  using AutomaticProvider = nimbara::AutomaticProvider;
  /// In the order of `AutomaticProvider`.
  using Providers = std::array<ForecastProvider, enumNames<AutomaticProvider>.size()>;
  using OnFailure = std::function<void(AutomaticProvider, APIError const&)>;

  static constexpr std::chrono::seconds kLimit{20};
  static constexpr std::chrono::seconds kCoolDown{300};

  WeatherProviderManager(Providers providers, ProviderHistory& history, Clock const& clock,
                         std::chrono::milliseconds limit = kLimit);

  /// Told of each failed attempt, on the thread of the fetch.
  void setOnFailure(OnFailure onFailure);
  void setPreferredProvider(WeatherProviderOption preferred);

  /// Degrees. The error is that of the last provider tried; when all were skipped, a timed-out one at
  /// once that says for how long. Where no service at all could be reached the providers are not to blame. A
  /// stopped caller gets a `cancelled` error and leaves no failure behind.
  Result<WeatherProviderFetchResult, APIError> fetch(double latitude, double longitude,
                                                     std::stop_token const& stop = {});

  /// Lets every provider be tried again at once.
  void forgetFailures() { history_.forgetFailures(); }

 private:
  using Outcome = Result<WeatherProviderFetchResult, APIError>;

  Outcome attempt(AutomaticProvider provider, double latitude, double longitude, std::stop_token const& stop);
  Outcome walk(double latitude, double longitude, std::stop_token const& stop);

  Providers providers_;
  ProviderHistory& history_;
  Clock const& clock_;
  std::chrono::milliseconds limit_;
  std::mutex turn_;
  std::mutex stateMutex_;
  WeatherProviderOption preferredProvider_ = WeatherProviderOption::automatic;
  OnFailure onFailure_;
  LateWork late_;  ///< last: its threads end before what they use
};

/// Whether a provider is left out because it failed less than 300 seconds ago or asked for a pause. Moments
/// in the future, as after the clock was set back, do not count.
bool isCoolingDown(ProviderRecord const& record, Instant now);
/// The moment from which it is not; `now` when it is not already.
Instant coolsDownAt(ProviderRecord const& record, Instant now);

}  // namespace nimbara
