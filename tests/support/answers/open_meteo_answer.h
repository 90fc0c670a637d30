// A whole answer of the forecast service in the shape of our query, made up: seven days of 24 hours with
// constant values that a test replaces where it cares.
#pragma once

#include "base/time/instant.h"
#include "support/instants.h"

#include <fmt/format.h>

#include <map>
#include <string>
#include <vector>

namespace nimbara::test {

class OpenMeteoAnswer {
 public:
  explicit OpenMeteoAnswer(std::string const& firstDay = "2026-11-21", int days = 7) : days_(days) {
    Date const first = date(firstDay);
    for (int day = 0; day < days; ++day) {
      std::string const text = formatDate(addDays(first, day));
      dayTimes_.push_back("\"" + text + "\"");
      sunrise_.push_back("\"" + text + "T07:33\"");
      sunset_.push_back("\"" + text + "T16:05\"");
      for (int hour = 0; hour < 24; ++hour) hourTimes_.push_back(fmt::format("\"{}T{:02}:00\"", text, hour));
    }
  }

  /// Members of the frame, the present, the hours and the days. A single value of an array member is
  /// repeated; an empty text takes the member away.
  std::map<std::string, std::string> frame{{"latitude", "52.52"},
                                           {"longitude", "13.42"},
                                           {"utc_offset_seconds", "3600"},
                                           {"timezone", "\"Europe/Berlin\""},
                                           {"elevation", "38.0"}};
  std::map<std::string, std::string> current{{"time", "\"2026-11-21T10:15\""},
                                             {"interval", "900"},
                                             {"temperature_2m", "3.4"},
                                             {"relative_humidity_2m", "81"},
                                             {"apparent_temperature", "0.2"},
                                             {"weather_code", "3"},
                                             {"cloud_cover", "90"},
                                             {"pressure_msl", "1013.25"},
                                             {"wind_speed_10m", "18"},
                                             {"wind_direction_10m", "225"},
                                             {"wind_gusts_10m", "30"},
                                             {"precipitation", "0.0"},
                                             {"is_day", "1"}};
  std::map<std::string, std::string> hourly{{"temperature_2m", "5.5"},
                                            {"relative_humidity_2m", "70"},
                                            {"apparent_temperature", "3"},
                                            {"dew_point_2m", "1"},
                                            {"weather_code", "61"},
                                            {"cloud_cover", "40"},
                                            {"precipitation_probability", "50"},
                                            {"precipitation", "0.3"},
                                            {"snowfall", "0"},
                                            {"wind_speed_10m", "20"},
                                            {"wind_direction_10m", "45"},
                                            {"wind_gusts_10m", "41"},
                                            {"pressure_msl", "1009.6"},
                                            {"visibility", "24140"},
                                            {"uv_index", "1.4"},
                                            {"is_day", "1"}};
  std::map<std::string, std::string> daily{{"weather_code", "61"},
                                           {"temperature_2m_max", "8.5"},
                                           {"temperature_2m_min", "-1.5"},
                                           {"apparent_temperature_max", "7"},
                                           {"apparent_temperature_min", "-4"},
                                           {"uv_index_max", "1.6"},
                                           {"precipitation_sum", "7.2"},
                                           {"precipitation_probability_max", "65"},
                                           {"snowfall_sum", "0.7"},
                                           {"wind_speed_10m_max", "22"},
                                           {"wind_direction_10m_dominant", "50"}};
  bool hasCurrent = true;
  bool hasHourly = true;
  bool hasDaily = true;

  /// Replaces one element of an hourly array.
  void setHour(std::string const& key, std::size_t index, std::string const& value) {
    hourOverrides_[{key, index}] = value;
  }
  void setSun(std::size_t day, std::string const& rise, std::string const& set) {
    sunrise_[day] = "\"" + rise + "\"";
    sunset_[day] = "\"" + set + "\"";
  }

  std::string body() const {
    std::string out = "{" + members(frame);
    if (hasCurrent)
      out += ",\"current_units\":{\"temperature_2m\":\"°C\"},\"current\":{" + members(current) + "}";
    if (hasHourly) out += ",\"hourly_units\":{\"visibility\":\"m\"},\"hourly\":{" + hourBlock() + "}";
    if (hasDaily) out += ",\"daily_units\":{\"time\":\"iso8601\"},\"daily\":{" + dayBlock() + "}";
    return out + "}";
  }

 private:
  static std::string members(std::map<std::string, std::string> const& map) {
    std::string out;
    for (auto const& [key, value] : map) {
      if (!value.empty()) out += (out.empty() ? "\"" : ",\"") + key + "\":" + value;
    }
    return out;
  }

  static std::string array(std::vector<std::string> const& values) {
    std::string out = "[";
    for (std::string const& value : values) out += (out.size() > 1 ? "," : "") + value;
    return out + "]";
  }

  std::string hourBlock() const {
    std::string out = "\"time\":" + array(hourTimes_);
    for (auto const& [key, value] : hourly) {
      if (value.empty()) continue;
      if (value.starts_with('[')) {
        out += ",\"" + key + "\":" + value;
        continue;
      }
      std::vector<std::string> values(hourTimes_.size(), value);
      for (auto const& [place, replaced] : hourOverrides_) {
        if (place.first == key) values[place.second] = replaced;
      }
      out += ",\"" + key + "\":" + array(values);
    }
    return out;
  }

  std::string dayBlock() const {
    std::string out =
        "\"time\":" + array(dayTimes_) + ",\"sunrise\":" + array(sunrise_) + ",\"sunset\":" + array(sunset_);
    for (auto const& [key, value] : daily) {
      if (value.empty()) continue;
      bool const whole = value.starts_with('[');
      out +=
          ",\"" + key + "\":" + (whole ? value : array(std::vector(static_cast<std::size_t>(days_), value)));
    }
    return out;
  }

  int days_;
  std::vector<std::string> dayTimes_, hourTimes_, sunrise_, sunset_;
  std::map<std::pair<std::string, std::size_t>, std::string> hourOverrides_;
};

}  // namespace nimbara::test
