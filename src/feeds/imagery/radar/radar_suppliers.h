// Who offers pictures of the radar, one row each: where its list of times lies, in what form it draws, how
// deep, where it has radars, and on which hosts its list may put the pictures. Pure.
#pragma once

#include "base/enum_names.h"
#include "base/geodesy.h"
#include "base/web_mercator.h"
#include "feeds/imagery/radar/radar_palette.h"
#include "platform/service.h"

#include <chrono>
#include <span>
#include <string_view>
#include <vector>

namespace nimbara {

/// In the order in which they are asked for a place.
enum class RadarSource { noaa, iowaMesonet, dwd, jma, libreWxr, rainViewer };
template <>
inline constexpr auto enumNames<RadarSource> =
    std::to_array<std::string_view>({"noaa", "iowaMesonet", "dwd", "jma", "libreWxr", "rainViewer"});
static_assert(enumNamesComplete(RadarSource::rainViewer));

/// How a supplier says which times it has.
enum class TimeList {
  capabilities,  ///< of a web map service: times or periods of one layer
  targetTimes,   ///< two lists of base and valid times, measured and forecast
  weatherMaps,   ///< host, and a path for each time
  offsets        ///< none: the newest and those of fixed minutes before it
};

enum class PictureForm { tiles, wms };

/// Degrees, bounds included.
struct GeoBox {
  double south = 0, west = 0, north = 0, east = 0;

  bool contains(Coordinate place) const {
    return place.latitude >= south && place.latitude <= north && place.longitude >= west &&
           place.longitude <= east;
  }
};

struct RadarSupplier {
  RadarSource source;
  Service service;
  std::string_view name;  ///< its proper name, the same in every language
  TimeList list;
  std::string_view listPath;          ///< below the service's address; empty where there is no list
  std::string_view forecastListPath;  ///< empty: the one list has both
  PictureForm form;
  /// Of tiles: what follows the address that the list gives, or the whole path below the service's address,
  /// with {z}, {x}, {y} and what the list says of a frame. Of a map service: its path and its questions.
  std::string_view pictures;
  std::string_view layer;     ///< of a map service
  std::string_view domain;    ///< its hosts and those below it may have the pictures; empty: none but its own
  std::string_view coverage;  ///< tiles of where it has no radar, as `pictures`; empty: `boxes` say it
  int minZoom;
  int deepestZoom;  ///< parts of a tile of this zoom stand in for deeper ones
  bool evenZoomsOnly;
  int pixels;  ///< of a picture's side: 512 serves four tiles
  std::chrono::minutes step;
  std::span<GeoBox const> boxes;  ///< where it has radars; empty: anywhere, `coverage` says where
  RadarPalette palette;
  std::string_view credit;
};

std::span<RadarSupplier const> radarSuppliers();
RadarSupplier const& supplierOf(RadarSource source);

/// Those that may have radar of the place, the best first.
std::vector<RadarSource> radarSourcesAt(Coordinate place);

/// The same for a map, by its centre: a supplier whose radars have less than three fifths of it comes after
/// those of the whole world.
std::vector<RadarSource> radarSourcesFor(MapView const& view);

/// Within its boxes; a supplier without any may have radar anywhere.
bool hasRadarAt(RadarSupplier const& supplier, Coordinate place);

/// The zoom of the supplier's pictures for a map of that zoom; a shallow map may get a deeper one.
int pictureZoom(RadarSupplier const& supplier, int mapZoom);
/// The supplier's picture that a tile of the map is cut from: the tile itself, or one above it. Of a map that
/// is shallower than its first zoom, the first picture within the tile.
TileAddress servedBy(RadarSupplier const& supplier, TileAddress tile);
/// Some of the tile lies where the supplier may have radars.
bool mayHaveRain(RadarSupplier const& supplier, TileAddress tile);
/// The supplier's tiles that a view wants, those next to the centre first.
std::vector<TileAddress> tilesWanted(RadarSupplier const& supplier, MapView const& view);

/// One picture of a frame: a supplier's tile, or of a map service so many squares side by side.
struct PictureArea {
  TileAddress first;  ///< the north-western one
  int columns = 1, rows = 1;
  int pixels = kTileSide;  ///< of a square's side; a map service is asked for so many

  auto operator<=>(PictureArea const&) const = default;
};
MapPoint northWestOf(PictureArea const& area);
MapPoint southEastOf(PictureArea const& area);

/// What a view wants of a frame with as few requests as there may be. Of a map service one picture of all
/// that is seen, seldom two. Else tiles, those next to the centre first; where they were more than `most`,
/// those of a coarser zoom that the supplier has.
std::vector<PictureArea> picturesWanted(RadarSupplier const& supplier, MapView const& view, std::size_t most);

/// The tile of a supplier's coverage that tells of a place.
TileAddress coverageTileAt(Coordinate place);

}  // namespace nimbara
