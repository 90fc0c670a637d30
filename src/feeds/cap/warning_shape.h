// The shapes by which warnings of the Common Alerting Protocol say what they cover. Plain values and their
// texts' readers.
#pragma once

#include "base/geodesy.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct WarningCircle {
  Coordinate center;
  double radiusKm = 0;

  bool operator==(WarningCircle const&) const = default;
};

/// The corners of an outline, the last of them perhaps the first again.
using WarningPolygon = std::vector<Coordinate>;

/// Around an outline, in degrees: `width` eastwards from `west`, over ±180° where the outline goes there. 360
/// wide for one that goes round a pole, which is then in it.
struct ShapeBox {
  double south = 0;
  double north = 0;
  double west = 0;
  double width = 0;

  bool operator==(ShapeBox const&) const = default;
};

/// Blank-separated pairs "latitude,longitude"; nothing when a pair cannot be read or there are fewer than
/// three.
std::optional<WarningPolygon> parseWarningPolygon(std::string_view text);

/// "latitude,longitude radius"; nothing for other texts and for a negative radius.
std::optional<WarningCircle> parseWarningCircle(std::string_view text);

/// What the readers above read as the same shape.
std::string shapeText(WarningPolygon const& polygon);
std::string shapeText(WarningCircle const& circle);

}  // namespace nimbara
