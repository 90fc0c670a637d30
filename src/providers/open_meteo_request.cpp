#include "providers/open_meteo_request.h"

#include "base/number.h"

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

std::string percentEncoded(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  constexpr std::string_view kUnreserved =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
  std::string out;
  for (char const c : text) {
    if (kUnreserved.find(c) != std::string_view::npos) {
      out += c;
      continue;
    }
    auto const byte = static_cast<unsigned char>(c);
    out += '%';
    out += kDigits[byte >> 4];
    out += kDigits[byte & 15];
  }
  return out;
}

}  // namespace nimbara
