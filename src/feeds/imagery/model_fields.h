// The weather of a model over a part of the world: its values at the points of a coarse grid for two days, as
// Open-Meteo gives them in one answer, and what they are between the points. Pure; any bytes may be given.
#pragma once

#include "base/enum_names.h"
#include "base/json/json.h"
#include "base/result.h"
#include "base/time/instant.h"
#include "base/web_mercator.h"

#include <array>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

enum class FieldKind { temperature, precipitation, pressure, wind };
template <>
inline constexpr auto enumNames<FieldKind> =
    std::to_array<std::string_view>({"temperature", "precipitation", "pressure", "wind"});
static_assert(enumNamesComplete(FieldKind::wind));

/// Points from the north-western one eastwards, then southwards. `west` is within ±180, the columns go on
/// beyond 180.
struct ModelGrid {
  static constexpr int kMostColumns = 10, kMostRows = 6;

  double west = 0, north = 0;          ///< degrees
  double eastStep = 0, southStep = 0;  ///< degrees
  int columns = 0, rows = 0;

  /// With its longitude within ±180.
  Coordinate at(int row, int column) const;
  std::size_t size() const { return static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows); }
  bool operator==(ModelGrid const&) const = default;
};

/// The points that a view needs, on round degrees, so that a view beside it often needs the same.
ModelGrid modelGridFor(MapView const& view);

/// What is not known is not a number.
struct ModelHour {
  std::vector<float> temperature;          ///< °C; these as many as the grid has points
  std::vector<float> precipitation;        ///< mm in the hour before
  std::vector<float> pressure;             ///< hPa at sea level
  std::vector<float> windEast, windNorth;  ///< km/h, towards there

  bool operator==(ModelHour const&) const = default;
};

struct ModelFields {
  static constexpr int kMostHours = 48;

  ModelGrid grid;
  std::vector<Instant> times;
  std::vector<ModelHour> hours;  ///< as many

  bool operator==(ModelFields const&) const = default;
};

/// Path and query of the one request.
std::string modelFieldsPath(ModelGrid const& grid, std::string const& apiKey = {});

/// An answer for another number of places is an error.
Result<ModelFields, DecodeError> parseModelFields(std::string_view body, ModelGrid const& grid);

/// Between the four points around a place; nothing beyond the grid and where one that counts is not known.
std::optional<double> fieldAt(std::vector<float> const& values, ModelGrid const& grid, Coordinate place);

/// The hour that is nearest to a time, by its place in the list; 0 for none.
std::size_t hourNear(ModelFields const& fields, Instant time);

/// A piece of a line along which a field has one value, in columns and rows of the raster.
struct ContourPiece {
  MapPoint from, to;
};

/// By marching squares over a raster, row by row; squares with a point that is not a number have none.
std::vector<ContourPiece> contour(std::vector<float> const& raster, int columns, double level);

}  // namespace nimbara
