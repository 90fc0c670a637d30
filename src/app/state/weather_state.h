// What the program shows of the selected place: one immutable value, replaced as a whole whenever something
// changes, so that every reader sees a state that fits together.
#pragma once

#include "base/time/instant.h"
#include "base/words/texts.h"
#include "model/forecast_insight.h"
#include "model/provider_option.h"
#include "model/warnings/weather_alert.h"
#include "model/weather_data.h"
#include "providers/common/api_error.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace nimbara {

struct StationShown;

struct NowcastReading;

/// The failure of the last refresh, as the user reads it.
struct AppError {
  enum class Case { networkError, noLocation, offline };

  Case kind = Case::networkError;
  std::string message;  ///< of `networkError`: what the provider's failure was, for logs
  std::optional<APIError> cause = std::nullopt;  ///< of `networkError`: the same for people

  /// `offline` when the network itself could not be reached, else `networkError`.
  static AppError of(APIError const& error);

  /// What happened and what to do.
  std::string text(Texts const& texts) const;

  bool operator==(AppError const&) const = default;
};

template <>
inline constexpr auto enumNames<AppError::Case> =
    std::to_array<std::string_view>({"networkError", "noLocation", "offline"});
static_assert(enumNamesComplete(AppError::Case::offline));

struct SupplementState;
struct SecondForecast;

struct WeatherState {
  std::optional<WeatherData> weatherData;
  std::optional<ForecastInsight> insight;
  bool isLoading = false;
  bool isShowingStaleData = false;  ///< the forecast is an older one, kept while no fresh one was available
  std::optional<AppError> error;
  std::optional<Instant> lastUpdated;  ///< when the forecast shown was fetched
  std::optional<Instant> askAgainAt;   ///< a refresh was wanted and refused; from then on it is not
  std::optional<WeatherProviderOption> currentWeatherProvider;
  bool isShowingLiveNetatmoData = false;  ///< values of the present are the user's station's
  std::vector<WeatherAlert> govAlerts;
  std::vector<WeatherAlert> travelAdvisories;
  /// Air quality, storms, fires, lightning and advisories, each with its check; null: nobody was asked yet.
  std::shared_ptr<SupplementState const> supplement;
  std::shared_ptr<StationShown const> station;    ///< null: none is linked
  std::shared_ptr<NowcastReading const> nowcast;  ///< null: nobody was asked yet
  /// What the confidence in the forecast is judged by; null: nobody has wanted to know yet.
  std::shared_ptr<SecondForecast const> forecastConfidence;

  bool operator==(WeatherState const&) const = default;
};

}  // namespace nimbara
