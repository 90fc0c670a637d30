#include "feeds/imagery/radar/radar_suppliers.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

using std::chrono::minutes;

/// The contiguous United States as far as its radars reach, which is about 150 km beyond coasts and borders.
constexpr GeoBox kUnitedStates[] = {
    {31, -125.5, 49.5, -103}, {28.5, -103, 49.5, -97}, {25, -99, 49.3, -92},     {28, -92, 48.5, -82},
    {24, -84.5, 31, -78.5},   {30, -84, 47.5, -75},    {38, -75.5, 47.8, -66.5},
};

/// Within the composite's circles; beyond them its pictures are grey.
constexpr GeoBox kGermany[] = {{47, 5.2, 55.2, 15.4}, {49.3, 4.5, 54, 15.8}};

constexpr GeoBox kJapan[] = {
    {23.5, 122, 28.5, 132}, {28.5, 127.5, 34.5, 139.5}, {33, 131, 37, 141.5}, {35.5, 135.5, 46, 146.5}};

constexpr RadarSupplier kSuppliers[] = {
    {.source = RadarSource::noaa,
     .service = Service::noaaRadar,
     .name = "NOAA/NWS",
     .list = TimeList::capabilities,
     .listPath = "/geoserver/conus/conus_bref_qcd/ows?service=WMS&version=1.3.0&request=GetCapabilities",
     .forecastListPath = {},
     .form = PictureForm::wms,
     .pictures = "/geoserver/conus/conus_bref_qcd/ows",
     .layer = "conus_bref_qcd",
     .domain = {},
     .coverage = {},
     .minZoom = 2,
     .deepestZoom = 8,
     .evenZoomsOnly = false,
     .pixels = 512,
     .step = minutes(5),
     .boxes = kUnitedStates,
     .palette = RadarPalette::reflectivity,
     .credit = "NOAA/NWS"},
    {.source = RadarSource::iowaMesonet,
     .service = Service::iowaMesonet,
     .name = "Iowa Environmental Mesonet",
     .list = TimeList::offsets,
     .listPath = {},
     .forecastListPath = {},
     .form = PictureForm::tiles,
     .pictures = "/cache/tile.py/1.0.0/nexrad-n0q-900913{frame}/{z}/{x}/{y}.png",
     .layer = {},
     .domain = {},
     .coverage = {},
     .minZoom = 2,
     .deepestZoom = 9,
     .evenZoomsOnly = false,
     .pixels = 256,
     .step = minutes(5),
     .boxes = kUnitedStates,
     .palette = RadarPalette::n0q,
     .credit = "Iowa Environmental Mesonet"},
    {.source = RadarSource::dwd,
     .service = Service::dwdMaps,
     .name = "Deutscher Wetterdienst",
     .list = TimeList::capabilities,
     .listPath = "/geoserver/dwd/Niederschlagsradar/ows?service=WMS&version=1.3.0&request=GetCapabilities",
     .forecastListPath = {},
     .form = PictureForm::wms,
     .pictures = "/geoserver/dwd/wms",
     .layer = "Niederschlagsradar",
     .domain = {},
     .coverage = {},
     .minZoom = 2,
     .deepestZoom = 9,
     .evenZoomsOnly = false,
     .pixels = 512,
     .step = minutes(5),
     .boxes = kGermany,
     .palette = RadarPalette::dwd,
     .credit = "Source: Deutscher Wetterdienst"},
    {.source = RadarSource::jma,
     .service = Service::jmaRadar,
     .name = "JMA",
     .list = TimeList::targetTimes,
     .listPath = "/bosai/jmatile/data/nowc/targetTimes_N1.json",
     .forecastListPath = "/bosai/jmatile/data/nowc/targetTimes_N2.json",
     .form = PictureForm::tiles,
     .pictures = "/bosai/jmatile/data/nowc/{frame}/surf/hrpns/{z}/{x}/{y}.png",
     .layer = {},
     .domain = {},
     .coverage = {},
     .minZoom = 4,
     .deepestZoom = 10,
     .evenZoomsOnly = true,
     .pixels = 256,
     .step = minutes(5),
     .boxes = kJapan,
     .palette = RadarPalette::jma,
     .credit = "JMA"},
    {.source = RadarSource::libreWxr,
     .service = Service::libreWxr,
     .name = "LibreWXR",
     .list = TimeList::weatherMaps,
     .listPath = "/public/weather-maps.json",
     .forecastListPath = {},
     .form = PictureForm::tiles,
     .pictures = "/512/{z}/{x}/{y}/255/1_0.png",
     .layer = {},
     .domain = "librewxr.net",
     .coverage = "/v2/coverage/0/256/{z}/{x}/{y}/0/0_0.png",
     .minZoom = 0,
     .deepestZoom = 11,
     .evenZoomsOnly = false,
     .pixels = 512,
     .step = minutes(10),
     .boxes = {},
     .palette = RadarPalette::own,
     .credit = "LibreWXR (CC BY 4.0)"},
    {.source = RadarSource::rainViewer,
     .service = Service::rainViewer,
     .name = "RainViewer",
     .list = TimeList::weatherMaps,
     .listPath = "/public/weather-maps.json",
     .forecastListPath = {},
     .form = PictureForm::tiles,
     .pictures = "/512/{z}/{x}/{y}/2/1_1.png",
     .layer = {},
     .domain = "rainviewer.com",
     .coverage = "/v2/coverage/0/256/{z}/{x}/{y}/0/0_0.png",
     .minZoom = 0,
     .deepestZoom = 7,
     .evenZoomsOnly = false,
     .pixels = 512,
     .step = minutes(10),
     .boxes = {},
     .palette = RadarPalette::universalBlue,
     .credit = "RainViewer"},
};

/// How much of a view lies where a supplier may have radars, by 25 of its points.
double shareOf(RadarSupplier const& supplier, MapView const& view) {
  constexpr int kPoints = 5;
  int within = 0;
  for (int i = 0; i < kPoints * kPoints; ++i) {
    int const row = i / kPoints;
    double const right = (i % kPoints + 0.5) / kPoints, down = (row + 0.5) / kPoints;
    Coordinate place = coordinateOf(pointAt(view, {right * view.width, down * view.height}));
    place.longitude = std::remainder(place.longitude, 360);
    if (hasRadarAt(supplier, place)) ++within;
  }
  return static_cast<double>(within) / (kPoints * kPoints);
}

/// A picture of twice the side has the pixels of the zoom below.
int finerOf(RadarSupplier const& supplier) {
  return supplier.pixels / kTileSide / 2;
}

/// Enlarged by up to two thirds rather than four times as many.
int zoomOf(MapView const& view) {
  constexpr double kFiner = 0.25;
  return static_cast<int>(std::lround(view.zoom - kFiner));
}

std::vector<TileAddress> rainyTiles(RadarSupplier const& supplier, MapView const& view, int zoom) {
  auto tiles = tilesOf(view, zoom);
  std::erase_if(tiles, [&](TileAddress const& tile) { return !mayHaveRain(supplier, tile); });
  return tiles;
}

/// The rectangle around tiles of one zoom, in pictures that are no larger than is decoded. Suppliers of map
/// services have no radars at ±180°.
std::vector<PictureArea> blocksOf(std::vector<TileAddress> const& tiles) {
  constexpr int kMost = 8;
  std::vector<PictureArea> blocks;
  if (tiles.empty()) return blocks;
  auto const [west, east] = std::ranges::minmax(tiles, {}, &TileAddress::x);
  auto const [north, south] = std::ranges::minmax(tiles, {}, &TileAddress::y);
  for (int y = north.y; y <= south.y; y += kMost) {
    for (int x = west.x; x <= east.x; x += kMost) {
      blocks.push_back(
          {{west.zoom, x, y}, std::min(kMost, east.x - x + 1), std::min(kMost, south.y - y + 1)});
    }
  }
  return blocks;
}

}  // namespace

std::span<RadarSupplier const> radarSuppliers() {
  return kSuppliers;
}

RadarSupplier const& supplierOf(RadarSource source) {
  return *std::ranges::find(kSuppliers, source, &RadarSupplier::source);
}

bool hasRadarAt(RadarSupplier const& supplier, Coordinate place) {
  return supplier.boxes.empty() ||
         std::ranges::any_of(supplier.boxes, [place](GeoBox const& box) { return box.contains(place); });
}

std::vector<RadarSource> radarSourcesAt(Coordinate place) {
  std::vector<RadarSource> sources;
  for (RadarSupplier const& supplier : kSuppliers) {
    if (hasRadarAt(supplier, place)) sources.push_back(supplier.source);
  }
  return sources;
}

std::vector<RadarSource> radarSourcesFor(MapView const& view) {
  constexpr double kMost = 0.6;
  Coordinate const centre = coordinateOf(view.centre);
  std::vector<RadarSource> sources, partly;
  for (RadarSupplier const& supplier : kSuppliers) {
    double const share = shareOf(supplier, view);
    if (share >= kMost) {
      sources.push_back(supplier.source);
    } else if (hasRadarAt(supplier, centre)) {
      partly.push_back(supplier.source);
    }
  }
  sources.insert(sources.end(), partly.begin(), partly.end());
  return sources;
}

MapPoint northWestOf(PictureArea const& area) {
  return northWestOf(area.first);
}

MapPoint southEastOf(PictureArea const& area) {
  return southEastOf(
      TileAddress{area.first.zoom, area.first.x + area.columns - 1, area.first.y + area.rows - 1});
}

std::vector<PictureArea> picturesWanted(RadarSupplier const& supplier, MapView const& view,
                                        std::size_t most) {
  if (supplier.form == PictureForm::wms) {
    constexpr std::size_t kFew = 2;
    int const deepest = supplier.deepestZoom + finerOf(supplier);
    int const zoom = std::clamp(zoomOf(view), supplier.minZoom, deepest);
    auto blocks = blocksOf(rainyTiles(supplier, view, zoom));
    return blocks.size() <= kFew ? blocks : blocksOf(rainyTiles(supplier, view, zoom - 1));
  }
  int zoom = pictureZoom(supplier, zoomOf(view));
  auto tiles = rainyTiles(supplier, view, zoom);
  for (int const step = supplier.evenZoomsOnly ? 2 : 1;
       tiles.size() > most && zoom - step >= supplier.minZoom;) {
    zoom -= step;
    tiles = rainyTiles(supplier, view, zoom);
  }
  std::vector<PictureArea> areas;
  areas.reserve(tiles.size());
  for (TileAddress const& tile : tiles) areas.push_back({tile, 1, 1, supplier.pixels});
  return areas;
}

int pictureZoom(RadarSupplier const& supplier, int mapZoom) {
  int const zoom = std::clamp(mapZoom - finerOf(supplier), supplier.minZoom, supplier.deepestZoom);
  return supplier.evenZoomsOnly && zoom % 2 != 0 ? zoom - 1 : zoom;
}

TileAddress servedBy(RadarSupplier const& supplier, TileAddress tile) {
  int const zoom = pictureZoom(supplier, tile.zoom);
  if (zoom <= tile.zoom) return parentAt(tile, zoom);
  return {zoom, tile.x << (zoom - tile.zoom), tile.y << (zoom - tile.zoom)};
}

bool mayHaveRain(RadarSupplier const& supplier, TileAddress tile) {
  Coordinate const northWest = coordinateOf(northWestOf(tile));
  Coordinate const southEast = coordinateOf(southEastOf(tile));
  return supplier.boxes.empty() || std::ranges::any_of(supplier.boxes, [&](GeoBox const& box) {
           return box.south < northWest.latitude && box.north > southEast.latitude &&
                  box.west < southEast.longitude && box.east > northWest.longitude;
         });
}

std::vector<TileAddress> tilesWanted(RadarSupplier const& supplier, MapView const& view) {
  return rainyTiles(supplier, view, pictureZoom(supplier, zoomOf(view)));
}

TileAddress coverageTileAt(Coordinate place) {
  constexpr int kZoom = 6;
  MapPoint const point = mercatorOf(place);
  int const count = 1 << kZoom;
  auto const index = [count](double at) { return std::clamp(static_cast<int>(at * count), 0, count - 1); };
  return {kZoom, index(point.x), index(point.y)};
}

}  // namespace nimbara
