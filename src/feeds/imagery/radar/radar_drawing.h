// What the program of pictures is asked to draw by one that has no toolkit: a record that goes between them
// as a file. Tiles are files beside it.
#pragma once

#include "base/json/json.h"
#include "feeds/imagery/radar/radar_suppliers.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

struct DrawnTile {
  int zoom = 0, x = 0, y = 0;
  std::string file;
};

struct RadarDrawing {
  std::string picture;  ///< where to write it
  double latitude = 0, longitude = 0;
  double zoom = 0;
  int width = 0, height = 0;
  std::string place;  ///< its name, on the picture
  std::string time;   ///< of the frame and how long ago it was, in words; or why there is none
  std::string credit;
  std::optional<RadarSource> source;  ///< none: the map alone
  std::vector<DrawnTile> tiles;       ///< of that supplier
  std::optional<DrawnTile> coverage;  ///< the one that has the place
};

template <>
inline constexpr auto jsonFields<DrawnTile> =
    FieldList{field("zoom", &DrawnTile::zoom), field("x", &DrawnTile::x), field("y", &DrawnTile::y),
              field("file", &DrawnTile::file)};
template <>
inline constexpr auto jsonFields<RadarDrawing> =
    FieldList{field("picture", &RadarDrawing::picture),     field("latitude", &RadarDrawing::latitude),
              field("longitude", &RadarDrawing::longitude), field("zoom", &RadarDrawing::zoom),
              field("width", &RadarDrawing::width),         field("height", &RadarDrawing::height),
              field("place", &RadarDrawing::place),         field("time", &RadarDrawing::time),
              field("credit", &RadarDrawing::credit),       field("source", &RadarDrawing::source),
              field("tiles", &RadarDrawing::tiles),         field("coverage", &RadarDrawing::coverage)};

/// The argument with which the program of pictures takes the file.
inline constexpr char kDrawRadar[] = "--draw-radar";

/// How that program ends.
namespace drawingCode {
inline constexpr int kDrawn = 0;
inline constexpr int kFailed = 1;      ///< the file could not be read or the picture not be written
inline constexpr int kUncovered = 10;  ///< the supplier has no radar at the place
inline constexpr int kUnusable = 11;   ///< its pictures show nothing that can be used
}  // namespace drawingCode

Result<RadarDrawing, DecodeError> radarDrawingIn(std::string_view document);

}  // namespace nimbara
