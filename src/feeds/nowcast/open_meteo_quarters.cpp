#include "feeds/nowcast/open_meteo_quarters.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/fetching/lenient_json.h"

#include <cmath>

namespace nimbara {

namespace {

using Values = std::vector<Lenient<double>>;

struct WireQuarters {
  Values time;
  Lenient<Values> precipitation, rain, snowfall, weatherCode;
};

struct WireForecast {
  std::optional<std::string> reason;
  std::optional<WireQuarters> quarters;
};

}  // namespace

template <>
inline constexpr auto jsonFields<WireQuarters> =
    FieldList{field("time", &WireQuarters::time), fieldOr("precipitation", &WireQuarters::precipitation),
              fieldOr("rain", &WireQuarters::rain), fieldOr("snowfall", &WireQuarters::snowfall),
              fieldOr("weather_code", &WireQuarters::weatherCode)};
template <>
inline constexpr auto jsonFields<WireForecast> =
    FieldList{field("reason", &WireForecast::reason), field("minutely_15", &WireForecast::quarters)};

namespace {

constexpr int kStepsAnHour = 4;

std::optional<double> valueAt(Lenient<Values> const& values, std::size_t index) {
  if (!values.value || index >= values.value->size()) return std::nullopt;
  return (*values.value)[index].value;
}

std::optional<Instant> instantOf(std::optional<double> seconds) {
  constexpr double kLast = 1e11;
  if (!seconds || !(*seconds >= 0 && *seconds < kLast)) return std::nullopt;
  return Instant(std::chrono::seconds(static_cast<std::int64_t>(*seconds)));
}

/// By the codes of the WMO; freezing rain is rain.
Fall fallOfCode(std::optional<double> code) {
  double const value = code.value_or(0);
  bool const isSnow = (value >= 71 && value <= 77) || value == 85 || value == 86;
  if (isSnow) return Fall::snow;
  return value >= 51 && value <= 99 ? Fall::rain : Fall::unknown;
}

Fall fallAt(WireQuarters const& quarters, std::size_t index) {
  bool const hasRain = valueAt(quarters.rain, index).value_or(0) > 0;
  bool const hasSnow = valueAt(quarters.snowfall, index).value_or(0) > 0;
  if (hasRain && hasSnow) return Fall::sleet;
  if (hasSnow) return Fall::snow;
  return hasRain ? Fall::rain : fallOfCode(valueAt(quarters.weatherCode, index));
}

}  // namespace

/// Ten quarters: the first is over, and the next may be nearly.
std::string openMeteoQuartersPath(Coordinate place) {
  constexpr int kDecimals = 4;
  return "/v1/forecast?latitude=" + fixedDecimal(place.latitude, kDecimals) +
         "&longitude=" + fixedDecimal(place.longitude, kDecimals) +
         "&minutely_15=precipitation,rain,snowfall,weather_code&forecast_minutely_15=10&timeformat=unixtime";
}

Result<NowcastReply, DecodeError> parseOpenMeteoQuarters(std::string_view body) {
  constexpr std::chrono::minutes kStep{15};
  auto const wire = decodeJson<WireForecast>(body);
  if (!wire) return std::unexpected(wire.error());
  if (wire->reason) return std::unexpected(DecodeError{"", oneLine(*wire->reason)});
  if (!wire->quarters) return std::unexpected(DecodeError{"/minutely_15", "the key is missing"});
  NowcastReply reply;
  reply.nowcast = {std::string(enumName(NowcastSource::openMeteo)), NowcastKind::model15, std::nullopt, {}};
  bool isAnyKnown = false;
  for (std::size_t i = 0; i < wire->quarters->time.size(); ++i) {
    auto const end = instantOf(wire->quarters->time[i].value);
    if (!end) continue;
    auto const sum = valueAt(wire->quarters->precipitation, i);
    auto const rate = plausibleRate(sum ? std::optional(*sum * kStepsAnHour) : std::nullopt);
    // A value is the sum of the quarter before its time.
    reply.nowcast.steps.push_back({*end - kStep, *end, rate, fallAt(*wire->quarters, i)});
    isAnyKnown = isAnyKnown || rate;
  }
  if (!isAnyKnown) return std::unexpected(DecodeError{"/minutely_15", "there is no value"});
  return reply;
}

}  // namespace nimbara
