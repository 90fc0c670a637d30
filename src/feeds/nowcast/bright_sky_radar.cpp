#include "feeds/nowcast/bright_sky_radar.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/fetching/lenient_json.h"

#include <cmath>

namespace nimbara {

namespace {

using std::chrono::minutes;
using Row = std::vector<Lenient<double>>;
using Grid = std::vector<Lenient<Row>>;

struct WireFrame {
  Instant timestamp;
  Lenient<Grid> precipitation;
};

struct WirePosition {
  double x = 0;
  double y = 0;
};

struct WireRadar {
  std::vector<Lenient<WireFrame>> frames;
  WirePosition position;
};

struct WireRefusal {
  Lenient<std::string> detail, description, title;
};

}  // namespace

template <>
inline constexpr auto jsonFields<WireFrame> = FieldList{
    field("timestamp", &WireFrame::timestamp), fieldOr("precipitation_5", &WireFrame::precipitation)};
template <>
inline constexpr auto jsonFields<WirePosition> =
    FieldList{field("x", &WirePosition::x), field("y", &WirePosition::y)};
template <>
inline constexpr auto jsonFields<WireRadar> =
    FieldList{field("radar", &WireRadar::frames), field("latlon_position", &WireRadar::position)};
template <>
inline constexpr auto jsonFields<WireRefusal> =
    FieldList{fieldOr("detail", &WireRefusal::detail), fieldOr("description", &WireRefusal::description),
              fieldOr("title", &WireRefusal::title)};

namespace {

constexpr minutes kRadarStep{5};
/// A frame has hundredths of a millimetre in five minutes.
constexpr double kMmPerHour = 0.01 * 12;

/// The cell that the place lies in; its middle has whole coordinates.
std::optional<double> cellOf(Grid const& grid, WirePosition position) {
  double const row = std::round(position.y);
  double const column = std::round(position.x);
  if (!(row >= 0 && row < static_cast<double>(grid.size()))) return std::nullopt;
  auto const& cells = grid[static_cast<std::size_t>(row)].value;
  if (!cells || !(column >= 0 && column < static_cast<double>(cells->size()))) return std::nullopt;
  return (*cells)[static_cast<std::size_t>(column)].value;
}

}  // namespace

std::string brightSkyRadarPath(Coordinate place, Instant now) {
  constexpr int kDecimals = 4;
  Instant const first = std::chrono::floor<std::chrono::days>(now) +
                        (now - std::chrono::floor<std::chrono::days>(now)) / kRadarStep * kRadarStep;
  return "/radar?lat=" + fixedDecimal(place.latitude, kDecimals) +
         "&lon=" + fixedDecimal(place.longitude, kDecimals) +
         "&distance=1000&format=plain&date=" + formatIso8601(first) +
         "&last_date=" + formatIso8601(first + std::chrono::hours(2) + kRadarStep);
}

Result<NowcastReply, DecodeError> parseBrightSkyRadar(std::string_view body) {
  auto const wire = decodeJson<WireRadar>(body);
  if (!wire) return std::unexpected(wire.error());
  NowcastReply reply;
  reply.nowcast = {std::string(enumName(NowcastSource::brightSky)), NowcastKind::radar, std::nullopt, {}};
  bool isAnyKnown = false;
  for (auto const& frame : wire->frames) {
    if (!frame.value) continue;
    auto const& grid = frame.value->precipitation.value;
    auto const cell = grid ? cellOf(*grid, wire->position) : std::nullopt;
    auto const rate = plausibleRate(cell ? std::optional(*cell * kMmPerHour) : std::nullopt);
    // A frame is named by the end of its five minutes.
    reply.nowcast.steps.push_back({frame.value->timestamp - kRadarStep, frame.value->timestamp, rate, {}});
    isAnyKnown = isAnyKnown || rate;
  }
  if (wire->frames.empty()) {
    reply = {NowcastReply::State::radarDown, {}};
  } else if (!isAnyKnown) {
    return std::unexpected(DecodeError{"/radar", "no frame has a value for the place"});
  }
  return reply;
}

bool isOutsideBrightSkyRadar(std::string_view body) {
  auto const refusal = decodeJson<WireRefusal>(body);
  if (!refusal) return false;
  for (auto const* text : {&refusal->detail, &refusal->description, &refusal->title}) {
    if (asciiLowered(text->value.value_or("")).contains("outside the radar data range")) return true;
  }
  return false;
}

}  // namespace nimbara
