#include "feeds/imagery/model_fields.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/fetching/lenient_json.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace nimbara {

namespace {

using Values = std::vector<Lenient<double>>;

struct WireHours {
  Values time;
  Lenient<Values> temperature, precipitation, pressure, windSpeed, windDirection;
};

struct WirePlace {
  std::optional<WireHours> hourly;
};

struct WireRefusal {
  std::string reason;
};

}  // namespace

template <>
inline constexpr auto jsonFields<WireHours> =
    FieldList{field("time", &WireHours::time),
              fieldOr("temperature_2m", &WireHours::temperature),
              fieldOr("precipitation", &WireHours::precipitation),
              fieldOr("pressure_msl", &WireHours::pressure),
              fieldOr("wind_speed_10m", &WireHours::windSpeed),
              fieldOr("wind_direction_10m", &WireHours::windDirection)};
template <>
inline constexpr auto jsonFields<WirePlace> = FieldList{field("hourly", &WirePlace::hourly)};
template <>
inline constexpr auto jsonFields<WireRefusal> = FieldList{field("reason", &WireRefusal::reason)};

namespace {

constexpr float kUnknown = std::numeric_limits<float>::quiet_NaN();
constexpr double kSteps[] = {0.1, 0.2, 0.25, 0.5, 1, 2, 2.5, 5, 10, 15, 20, 30, 45, 60};
constexpr double kWorld = 360, kHighest = 85;
constexpr double kGreatest = 1e6;  // nothing that is measured in these units is more

/// The smallest step of which `most` points, put on its multiples, reach from one end to the other.
double stepFor(double span, int most) {
  for (double const step : kSteps) {
    if (std::ceil(span / step) + 2 <= most) return step;
  }
  return *std::rbegin(kSteps);
}

/// Like 170 for -190.
double turned(double longitude) {
  // The sum may be rounded up to the next way around.
  return std::max(-180.0, longitude - kWorld * std::floor((longitude + 180) / kWorld));
}

float valueAt(Lenient<Values> const& values, std::size_t index) {
  if (!values.value || index >= values.value->size()) return kUnknown;
  double const value = (*values.value)[index].value.value_or(kUnknown);
  return std::abs(value) < kGreatest ? static_cast<float>(value) : kUnknown;
}

std::optional<Instant> instantOf(std::optional<double> seconds) {
  constexpr double kLast = 1e11;
  if (!seconds || !(*seconds >= 0 && *seconds < kLast)) return std::nullopt;
  return Instant(std::chrono::seconds(static_cast<std::int64_t>(*seconds)));
}

ModelHour emptyHour(std::size_t points) {
  std::vector<float> const unknown(points, kUnknown);
  return {unknown, unknown, unknown, unknown, unknown};
}

/// Puts a place's hours where the first place has those times.
void takePlace(ModelFields& fields, WireHours const& wire, std::size_t point) {
  for (std::size_t i = 0; i < wire.time.size(); ++i) {
    auto const time = instantOf(wire.time[i].value);
    auto const found = time ? std::ranges::lower_bound(fields.times, *time) : fields.times.end();
    if (found == fields.times.end() || *found != *time) continue;
    ModelHour& hour = fields.hours[static_cast<std::size_t>(found - fields.times.begin())];
    hour.temperature[point] = valueAt(wire.temperature, i);
    hour.precipitation[point] = valueAt(wire.precipitation, i);
    hour.pressure[point] = valueAt(wire.pressure, i);
    float const speed = valueAt(wire.windSpeed, i);
    float const turn = valueAt(wire.windDirection, i) * std::numbers::pi_v<float> / 180;
    hour.windEast[point] = -speed * std::sin(turn);
    hour.windNorth[point] = -speed * std::cos(turn);
  }
}

void takeTimes(ModelFields& fields, WireHours const& wire) {
  for (auto const& seconds : wire.time) {
    auto const time = instantOf(seconds.value);
    bool const isNext = time && (fields.times.empty() || *time > fields.times.back());
    if (isNext && fields.times.size() < ModelFields::kMostHours) fields.times.push_back(*time);
  }
}

}  // namespace

Coordinate ModelGrid::at(int row, int column) const {
  return {std::clamp(north - row * southStep, -90.0, 90.0), turned(west + column * eastStep)};
}

ModelGrid modelGridFor(MapView const& view) {
  MapPoint const first = pointAt(view, {0, 0});
  MapPoint const last = pointAt(view, {double(view.width), double(view.height)});
  double const span = std::min(kWorld, (last.x - first.x) * kWorld);
  double const top = std::min(kHighest, coordinateOf({0, std::max(0.0, first.y)}).latitude);
  double const bottom = std::max(-kHighest, coordinateOf({0, std::min(1.0, last.y)}).latitude);
  ModelGrid grid;
  grid.eastStep = stepFor(span, ModelGrid::kMostColumns);
  grid.southStep = stepFor(top - bottom, ModelGrid::kMostRows);
  double const west = std::floor((first.x * kWorld - 180) / grid.eastStep) * grid.eastStep;
  double const east = std::ceil((first.x * kWorld - 180 + span) / grid.eastStep) * grid.eastStep;
  grid.north = std::ceil(top / grid.southStep) * grid.southStep;
  double const south = std::floor(bottom / grid.southStep) * grid.southStep;
  grid.west = turned(west);
  grid.columns = static_cast<int>(std::lround((east - west) / grid.eastStep)) + 1;
  grid.rows = static_cast<int>(std::lround((grid.north - south) / grid.southStep)) + 1;
  return grid;
}

std::string modelFieldsPath(ModelGrid const& grid, std::string const& apiKey) {
  constexpr int kDecimals = 2;
  std::string latitudes, longitudes;
  for (int row = 0; row < grid.rows; ++row) {
    for (int column = 0; column < grid.columns; ++column) {
      std::string const comma = latitudes.empty() ? "" : ",";
      Coordinate const at = grid.at(row, column);
      latitudes += comma + fixedDecimal(at.latitude, kDecimals);
      longitudes += comma + fixedDecimal(at.longitude, kDecimals);
    }
  }
  return "/v1/forecast?latitude=" + latitudes + "&longitude=" + longitudes +
         "&hourly=temperature_2m,precipitation,pressure_msl,wind_speed_10m,wind_direction_10m"
         "&forecast_hours=" +
         std::to_string(ModelFields::kMostHours) + "&timeformat=unixtime" +
         (apiKey.empty() ? "" : "&apikey=" + apiKey);
}

Result<ModelFields, DecodeError> parseModelFields(std::string_view body, ModelGrid const& grid) {
  auto const places = decodeJson<std::vector<WirePlace>>(body);
  if (!places) {
    if (auto const refusal = decodeJson<WireRefusal>(body))
      return std::unexpected(DecodeError{"", oneLine(refusal->reason)});
    return std::unexpected(places.error());
  }
  if (places->size() != grid.size())
    return std::unexpected(DecodeError{"", "it has another number of places than were asked for"});
  ModelFields fields{grid, {}, {}};
  for (WirePlace const& place : *places) {
    if (place.hourly && fields.times.empty()) takeTimes(fields, *place.hourly);
  }
  if (fields.times.empty()) return std::unexpected(DecodeError{"/0/hourly", "there are no hours"});
  fields.hours.assign(fields.times.size(), emptyHour(grid.size()));
  for (std::size_t i = 0; i < places->size(); ++i) {
    if ((*places)[i].hourly) takePlace(fields, *(*places)[i].hourly, i);
  }
  return fields;
}

std::optional<double> fieldAt(std::vector<float> const& values, ModelGrid const& grid, Coordinate place) {
  double const down = (grid.north - place.latitude) / grid.southStep;
  double right = place.longitude - grid.west;
  right = (right - kWorld * std::floor(right / kWorld)) / grid.eastStep;
  // A place just west of the first column is not at the far end of a narrow grid.
  if (!(down >= 0 && down <= grid.rows - 1 && right <= grid.columns - 1)) return std::nullopt;
  int const row = std::min(static_cast<int>(down), grid.rows - 1);
  int const column = std::min(static_cast<int>(right), grid.columns - 1);
  double const below = down - row, beside = right - column;
  double sum = 0;
  for (int i = 0; i < 4; ++i) {
    double const weight = (i / 2 == 0 ? 1 - below : below) * (i % 2 == 0 ? 1 - beside : beside);
    if (weight == 0) continue;
    auto const index = static_cast<std::size_t>(row + i / 2) * static_cast<std::size_t>(grid.columns) +
                       static_cast<std::size_t>(column + i % 2);
    sum += weight * static_cast<double>(values[index]);
  }
  return std::isnan(sum) ? std::nullopt : std::optional(sum);
}

std::size_t hourNear(ModelFields const& fields, Instant time) {
  auto const nearest = std::ranges::min_element(
      fields.times, {}, [time](Instant each) { return std::chrono::abs(each - time); });
  return nearest == fields.times.end() ? 0 : static_cast<std::size_t>(nearest - fields.times.begin());
}

std::vector<ContourPiece> contour(std::vector<float> const& raster, int columns, double level) {
  std::vector<ContourPiece> pieces;
  int const rows = columns > 0 ? static_cast<int>(raster.size()) / columns : 0;
  auto const value = [&](int row, int column) {
    return static_cast<double>(raster[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
                                      static_cast<std::size_t>(column)]);
  };
  for (int row = 0; row + 1 < rows; ++row) {
    for (int column = 0; column + 1 < columns; ++column) {
      // Around the square; what is at the level counts as above it.
      constexpr int kRight[] = {0, 1, 1, 0}, kDown[] = {0, 0, 1, 1};
      std::array<MapPoint, 4> crossings;
      int count = 0;
      bool isKnown = true;
      for (int i = 0; i < 4; ++i) {
        int const j = (i + 1) % 4;
        double const a = value(row + kDown[i], column + kRight[i]) - level;
        double const b = value(row + kDown[j], column + kRight[j]) - level;
        isKnown = isKnown && !std::isnan(a);
        if ((a < 0) == (b < 0)) continue;
        double const part = a / (a - b);
        crossings[static_cast<std::size_t>(count++)] = {column + kRight[i] + (kRight[j] - kRight[i]) * part,
                                                        row + kDown[i] + (kDown[j] - kDown[i]) * part};
      }
      if (!isKnown) continue;
      for (int i = 0; i + 1 < count; i += 2)
        pieces.push_back(
            {crossings[static_cast<std::size_t>(i)], crossings[static_cast<std::size_t>(i) + 1]});
    }
  }
  return pieces;
}

}  // namespace nimbara
