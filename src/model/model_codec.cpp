#include "base/json/json_codec.h"
#include "model/forecast_insight.h"
#include "model/warnings/weather_alert.h"
#include "model/weather_cache.h"
#include "model/weather_data.h"
#include "model/wttr_response.h"

namespace nimbara {

template Result<WttrResponse, DecodeError> decodeJson(std::string_view);
template Result<CurrentCondition, DecodeError> decodeJson(std::string_view);
template Result<HourlyCondition, DecodeError> decodeJson(std::string_view);
template Result<WeatherDay, DecodeError> decodeJson(std::string_view);
template Result<Astronomy, DecodeError> decodeJson(std::string_view);
template Result<NearestArea, DecodeError> decodeJson(std::string_view);
template Result<WttrRequest, DecodeError> decodeJson(std::string_view);
template Result<WttrValue, DecodeError> decodeJson(std::string_view);
template Result<WeatherData, DecodeError> decodeJson(std::string_view);
template Result<WeatherData::ProcessedCurrent, DecodeError> decodeJson(std::string_view);
template Result<DailyForecast, DecodeError> decodeJson(std::string_view);
template Result<DailyForecast::ProcessedAstronomy, DecodeError> decodeJson(std::string_view);
template Result<HourlyForecast, DecodeError> decodeJson(std::string_view);
template Result<LocationInfo, DecodeError> decodeJson(std::string_view);
template Result<WeatherAlert, DecodeError> decodeJson(std::string_view);
template Result<ForecastInsight, DecodeError> decodeJson(std::string_view);
template Result<CacheEntry, DecodeError> decodeJson(std::string_view);
template Result<ParsedCacheEntry, DecodeError> decodeJson(std::string_view);
template Result<std::vector<WeatherAlert>, DecodeError> decodeJson(std::string_view);

}  // namespace nimbara
