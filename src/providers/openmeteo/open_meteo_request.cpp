#include "providers/openmeteo/open_meteo_request.h"

#include "base/text/number.h"
#include "base/text/text.h"

namespace nimbara {

std::string openMeteoPath(Coordinate place, std::string const& apiKey) {
  std::string path =
      "/v1/forecast?latitude=" + plainDecimal(place.latitude) + "&longitude=" + plainDecimal(place.longitude);
  path +=
      "&current=temperature_2m,relative_humidity_2m,apparent_temperature,weather_code,cloud_cover,pressure_"
      "msl,"
      "wind_speed_10m,wind_direction_10m,wind_gusts_10m,precipitation,is_day"
      "&hourly=temperature_2m,relative_humidity_2m,apparent_temperature,dew_point_2m,weather_code,cloud_"
      "cover,"
      "precipitation_probability,precipitation,snowfall,wind_speed_10m,wind_direction_10m,wind_gusts_10m,"
      "pressure_msl,visibility,uv_index,is_day"
      "&daily=weather_code,temperature_2m_max,temperature_2m_min,apparent_temperature_max,"
      "apparent_temperature_min,sunrise,sunset,uv_index_max,precipitation_sum,precipitation_probability_max,"
      "snowfall_sum,wind_speed_10m_max,wind_direction_10m_dominant"
      "&temperature_unit=celsius"
      "&wind_speed_unit=kmh"
      "&timezone=auto"
      "&forecast_days=7";
  if (!apiKey.empty()) path += "&apikey=" + percentEncoded(apiKey);
  return path;
}

}  // namespace nimbara
