#include "providers/openmeteo/open_meteo_parser.h"

#include "base/json/json_codec.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

using json_detail::Failure;
namespace dom = simdjson::dom;

/// What a variable measures, and so which unit texts may stand beside it.
enum class Quantity { plain, temperature, speed, rain, snow, height };

struct UnitScale {
  Quantity quantity;
  std::string_view unit;
  double factor;
  double offset;  // added before the factor is applied
};

/// Units other than those that we ask for; every other text means that the number stands in ours.
constexpr UnitScale kForeignUnits[] = {
    {Quantity::temperature, "°F", 5.0 / 9, -32}, {Quantity::speed, "m/s", 3.6, 0},
    {Quantity::speed, "mp/h", 1.609344, 0},      {Quantity::speed, "mph", 1.609344, 0},
    {Quantity::speed, "kn", 1.852, 0},           {Quantity::rain, "inch", 25.4, 0},
    {Quantity::snow, "inch", 2.54, 0},           {Quantity::height, "ft", 0.3048, 0},
    {Quantity::height, "km", 1000, 0},
};

struct Scale {
  double factor = 1;
  double offset = 0;

  double operator()(double value) const { return (value + offset) * factor; }
};

template <class Member>
struct Variable {
  std::string_view key;
  Member member;
  Quantity quantity = Quantity::plain;
};

constexpr Variable<Reading OMCurrent::*> kCurrentVariables[] = {
    {"temperature_2m", &OMCurrent::temperature2m, Quantity::temperature},
    {"relative_humidity_2m", &OMCurrent::relativeHumidity2m},
    {"apparent_temperature", &OMCurrent::apparentTemperature, Quantity::temperature},
    {"weather_code", &OMCurrent::weatherCode},
    {"cloud_cover", &OMCurrent::cloudCover},
    {"pressure_msl", &OMCurrent::pressureMsl},
    {"wind_speed_10m", &OMCurrent::windSpeed10m, Quantity::speed},
    {"wind_direction_10m", &OMCurrent::windDirection10m},
    {"wind_gusts_10m", &OMCurrent::windGusts10m, Quantity::speed},
    {"precipitation", &OMCurrent::precipitation, Quantity::rain},
    {"is_day", &OMCurrent::isDay},
    {"dew_point_2m", &OMCurrent::dewPoint2m, Quantity::temperature},
    {"snowfall", &OMCurrent::snowfall, Quantity::snow},
    {"visibility", &OMCurrent::visibility, Quantity::height},
    {"uv_index", &OMCurrent::uvIndex},
};

using Readings = std::vector<Reading>;

constexpr Variable<Readings OMHourly::*> kHourlyVariables[] = {
    {"temperature_2m", &OMHourly::temperature2m, Quantity::temperature},
    {"relative_humidity_2m", &OMHourly::relativeHumidity2m},
    {"apparent_temperature", &OMHourly::apparentTemperature, Quantity::temperature},
    {"dew_point_2m", &OMHourly::dewPoint2m, Quantity::temperature},
    {"weather_code", &OMHourly::weatherCode},
    {"cloud_cover", &OMHourly::cloudCover},
    {"precipitation_probability", &OMHourly::precipitationProbability},
    {"precipitation", &OMHourly::precipitation, Quantity::rain},
    {"snowfall", &OMHourly::snowfall, Quantity::snow},
    {"wind_speed_10m", &OMHourly::windSpeed10m, Quantity::speed},
    {"wind_direction_10m", &OMHourly::windDirection10m},
    {"wind_gusts_10m", &OMHourly::windGusts10m, Quantity::speed},
    {"pressure_msl", &OMHourly::pressureMsl},
    {"visibility", &OMHourly::visibility, Quantity::height},
    {"uv_index", &OMHourly::uvIndex},
    {"is_day", &OMHourly::isDay},
};

constexpr Variable<Readings OMDaily::*> kDailyVariables[] = {
    {"weather_code", &OMDaily::weatherCode},
    {"temperature_2m_max", &OMDaily::temperature2mMax, Quantity::temperature},
    {"temperature_2m_min", &OMDaily::temperature2mMin, Quantity::temperature},
    {"apparent_temperature_max", &OMDaily::apparentTemperatureMax, Quantity::temperature},
    {"apparent_temperature_min", &OMDaily::apparentTemperatureMin, Quantity::temperature},
    {"uv_index_max", &OMDaily::uvIndexMax},
    {"precipitation_sum", &OMDaily::precipitationSum, Quantity::rain},
    {"precipitation_probability_max", &OMDaily::precipitationProbabilityMax},
    {"snowfall_sum", &OMDaily::snowfallSum, Quantity::snow},
    {"wind_speed_10m_max", &OMDaily::windSpeed10mMax, Quantity::speed},
    {"wind_direction_10m_dominant", &OMDaily::windDirection10mDominant},
};

constexpr Variable<std::vector<std::optional<LocalTime>> OMDaily::*> kDailyTimes[] = {
    {"sunrise", &OMDaily::sunrise},
    {"sunset", &OMDaily::sunset},
};

Scale scaleOf(dom::object const* units, std::string_view key, Quantity quantity) {
  std::string_view unit;
  if (quantity == Quantity::plain || units == nullptr || (*units)[key].get(unit) != simdjson::SUCCESS)
    return {};
  auto const found = std::ranges::find_if(
      kForeignUnits, [&](UnitScale const& row) { return row.quantity == quantity && row.unit == unit; });
  return found == std::ranges::end(kForeignUnits) ? Scale{} : Scale{found->factor, found->offset};
}

bool readReading(dom::element element, Scale scale, Reading& out, Failure& failure) {
  double number = 0;
  if (element.get(number) == simdjson::SUCCESS) {
    out = scale(number);
    return true;
  }
  return element.is_null() || failure.because("a number or null is expected");
}

bool readReadings(dom::element element, Scale scale, Readings& out, Failure& failure) {
  if (element.is_null()) return true;
  dom::array list;
  if (element.get(list) != simdjson::SUCCESS) return failure.because("a list is expected");
  out.reserve(list.size());
  for (dom::element const member : list) {
    if (!readReading(member, scale, out.emplace_back(), failure)) return failure.within(out.size() - 1);
  }
  return true;
}

template <class T>
bool readTimes(dom::element element, std::vector<std::optional<T>>& out, auto parse, Failure& failure) {
  dom::array list;
  if (element.get(list) != simdjson::SUCCESS) return failure.because("a list is expected");
  out.reserve(list.size());
  for (dom::element const member : list) {
    std::string_view text;
    auto& time = out.emplace_back();
    if (member.get(text) == simdjson::SUCCESS) {
      time = parse(text);
    } else if (!member.is_null()) {
      failure.because("a text or null is expected");
      return failure.within(out.size() - 1);
    }
  }
  return true;
}

/// Holds every array that is there to the shortest length of the block; an absent one stays empty.
struct ShortestLength {
  std::size_t length;

  template <class T>
  void consider(std::vector<T> const& list) {
    if (!list.empty()) length = std::min(length, list.size());
  }
  template <class T>
  void apply(std::vector<T>& list) const {
    if (list.size() > length) list.resize(length);
  }
};

/// Calls `handle` with the row of each key of `block` that the table knows; keys mostly come in the table's
/// order.
template <class Row, std::size_t count>
Row const* findVariable(Row const (&table)[count], std::string_view key, std::size_t& expected) {
  for (std::size_t step = 0; step < count; ++step) {
    std::size_t const index = (expected + step) % count;
    if (table[index].key != key) continue;
    expected = index + 1;
    return &table[index];
  }
  return nullptr;
}

bool readCurrent(dom::object block, dom::object const* units, OMCurrent& out, Failure& failure) {
  std::string_view time;
  if (block["time"].get(time) == simdjson::SUCCESS) out.time = time;
  std::size_t expected = 0;
  for (auto const [key, value] : block) {
    auto const* const row = findVariable(kCurrentVariables, key, expected);
    if (row == nullptr) continue;
    if (!readReading(value, scaleOf(units, key, row->quantity), out.*(row->member), failure)) {
      return failure.within(key);
    }
  }
  return true;
}

bool readHourly(dom::object block, dom::object const* units, OMHourly& out, Failure& failure) {
  std::size_t expected = 0;
  for (auto const [key, value] : block) {
    if (key == "time") {
      if (!readTimes(value, out.time, parseLocalTime, failure)) return failure.within(key);
      continue;
    }
    auto const* const row = findVariable(kHourlyVariables, key, expected);
    if (row == nullptr) continue;
    if (!readReadings(value, scaleOf(units, key, row->quantity), out.*(row->member), failure)) {
      return failure.within(key);
    }
  }
  ShortestLength shortest{out.time.size()};
  for (auto const& row : kHourlyVariables) shortest.consider(out.*(row.member));
  shortest.apply(out.time);
  for (auto const& row : kHourlyVariables) shortest.apply(out.*(row.member));
  return true;
}

bool readDaily(dom::object block, dom::object const* units, OMDaily& out, Failure& failure) {
  std::size_t expected = 0;
  std::size_t expectedTime = 0;
  for (auto const [key, value] : block) {
    if (key == "time") {
      if (!readTimes(value, out.time, parseDate, failure)) return failure.within(key);
    } else if (auto const* const times = findVariable(kDailyTimes, key, expectedTime)) {
      if (!readTimes(value, out.*(times->member), parseLocalTime, failure)) return failure.within(key);
    } else if (auto const* const row = findVariable(kDailyVariables, key, expected)) {
      if (!readReadings(value, scaleOf(units, key, row->quantity), out.*(row->member), failure)) {
        return failure.within(key);
      }
    }
  }
  ShortestLength shortest{out.time.size()};
  for (auto const& row : kDailyVariables) shortest.consider(out.*(row.member));
  for (auto const& row : kDailyTimes) shortest.consider(out.*(row.member));
  shortest.apply(out.time);
  for (auto const& row : kDailyVariables) shortest.apply(out.*(row.member));
  for (auto const& row : kDailyTimes) shortest.apply(out.*(row.member));
  return true;
}

/// Reads an optional block and the units beside it.
template <class Block>
bool readBlock(dom::object root, std::string_view key, std::string_view unitsKey, std::optional<Block>& out,
               auto readInto, Failure& failure) {
  dom::element element;
  if (root[key].get(element) != simdjson::SUCCESS || element.is_null()) return true;
  dom::object block;
  if (element.get(block) != simdjson::SUCCESS) {
    failure.because("an object is expected");
    return failure.within(key);
  }
  dom::object units;
  bool const hasUnits = root[unitsKey].get(units) == simdjson::SUCCESS;
  return readInto(block, hasUnits ? &units : nullptr, out.emplace(), failure) || failure.within(key);
}

template <class T>
bool readRequired(dom::object root, std::string_view key, T& out, Failure& failure) {
  dom::element element;
  if (root[key].get(element) != simdjson::SUCCESS) {
    failure.because("the key is missing");
    return failure.within(key);
  }
  return json_detail::read(element, out, failure) || failure.within(key);
}

bool readResponse(dom::element document, OpenMeteoResponse& out, Failure& failure) {
  dom::object root;
  if (document.get(root) != simdjson::SUCCESS) return failure.because("an object is expected");
  std::int64_t offset = 0;
  constexpr std::int64_t kLongestOffset = 64'800;
  if (root["utc_offset_seconds"].get(offset) == simdjson::SUCCESS && std::abs(offset) <= kLongestOffset) {
    out.utcOffset = std::chrono::seconds(offset);
  }
  return readRequired(root, "latitude", out.latitude, failure) &&
         readRequired(root, "longitude", out.longitude, failure) &&
         readRequired(root, "elevation", out.elevation, failure) &&
         readRequired(root, "timezone", out.timezone, failure) &&
         readBlock(root, "current", "current_units", out.current, readCurrent, failure) &&
         readBlock(root, "hourly", "hourly_units", out.hourly, readHourly, failure) &&
         readBlock(root, "daily", "daily_units", out.daily, readDaily, failure);
}

}  // namespace

Result<OpenMeteoResponse, DecodeError> parseOpenMeteo(std::string_view body) {
  auto const document = json_detail::parseDocument(body);
  if (!document) return std::unexpected(document.error());
  OpenMeteoResponse response;
  Failure failure;
  if (!readResponse(*document, response, failure))
    return std::unexpected(DecodeError{failure.path, failure.reason});
  return response;
}

}  // namespace nimbara
