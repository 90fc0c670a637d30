#include "demo/feeds/imagery/radar_stand_in.h"

#include "base/json/json.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "base/web_mercator.h"
#include "demo/demo_fault.h"
#include "demo/world/demo_draw.h"
#include "demo/world/demo_picture.h"
#include "demo/world/demo_rain.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace nimbara {

namespace {

using std::chrono::minutes;

constexpr int kMeasured = 13;
constexpr int kForecast = 6;

/// From how many mm/h on a colour holds.
struct Colour {
  double from;
  std::uint32_t rgba;
};
constexpr Colour kReflectivity[] = {{0.1, 0x019ff4ff}, {0.65, 0x02fd02ff}, {2.7, 0x008e00ff},
                                    {5.6, 0xfdf802ff}, {23.7, 0xfd9500ff}, {48.6, 0xfd0000ff}};
constexpr Colour kGerman[] = {{0.1, 0x33ffffff}, {0.4, 0x019934ff}, {1, 0x4db31bff}, {3, 0xcce601ff},
                              {5, 0xffff01ff},   {10, 0xff8901ff},  {30, 0xfe0000ff}};
constexpr Colour kJapanese[] = {{0.1, 0xf2f2ffff}, {1, 0xa0d2ffff},  {5, 0x218cffff},
                                {10, 0x0041ffff},  {20, 0xfaf500ff}, {30, 0xff9900ff}};
constexpr Colour kBlue[] = {
    {0.15, 0x88ddeeff}, {0.65, 0x0077aaff}, {2.7, 0xffee00ff}, {11.5, 0xff7700ff}, {48.6, 0xee0000ff}};

/// Degrees: south, west, north, east.
struct Area {
  double south, west, north, east;

  bool has(Coordinate place) const {
    return place.latitude > south && place.latitude < north && place.longitude > west &&
           place.longitude < east;
  }
};
constexpr Area kLibreAreas[] = {{34, -12, 71, 41}, {14, -130, 60, -55}, {17, 100, 47, 148}};
constexpr Area kViewerAreas[] = {{34, -12, 71, 41},    {14, -130, 60, -55}, {17, 100, 47, 148},
                                 {-45, 112, -10, 155}, {-40, -76, 6, -34},  {6, 68, 32, 92}};
constexpr Area kGermanArea[] = {{46.5, 4.5, 55.8, 16}};
/// About as far as the radars of the contiguous United States reach.
constexpr Area kAmericanArea[] = {{31, -125.5, 49.5, -103}, {28.5, -103, 49.5, -97}, {25, -99, 49.3, -92},
                                  {28, -92, 48.5, -82},     {24, -84.5, 31, -78.5},  {30, -84, 47.5, -75},
                                  {38, -75.5, 47.8, -66.5}};
constexpr Area kJapaneseArea[] = {{20, 118, 48, 150}};

bool isWithin(std::span<Area const> areas, Coordinate place) {
  return std::ranges::any_of(areas, [place](Area const& area) { return area.has(place); });
}

Instant flooredTo(minutes step, Instant instant) {
  auto const since = instant.time_since_epoch();
  return Instant(since - since % step);
}

struct Size {
  int width, height;

  Size(int wide, int high) : width(wide), height(high) {}
  Size(int side) : width(side), height(side) {}
};

/// The corners of a picture in the square world.
struct Square {
  MapPoint northWest, southEast;
};

Square squareOf(TileAddress tile) {
  return {northWestOf(tile), southEastOf(tile)};
}

DemoAnswer png(DemoPicture const& picture) {
  return {200, pngOf(picture), {}};
}

DemoAnswer transparent(Size size) {
  DemoPicture picture(size.width, size.height);
  picture.palette = {0};
  return png(picture);
}

DemoAnswer written(Size size) {
  DemoPicture picture(size.width, size.height);
  int const side = std::min(size.width, size.height);
  picture.palette = {0, 0x808080ff};
  write(picture, "ZOOM LEVEL", side / 16, side / 3, side / 50, 1);
  write(picture, "NOT SUPPORTED", side / 16, side / 2, side / 60, 1);
  return png(picture);
}

std::uint8_t indexOf(std::span<Colour const> colours, double mmPerHour) {
  auto const above =
      std::ranges::count_if(colours, [mmPerHour](Colour const& c) { return mmPerHour >= c.from; });
  return static_cast<std::uint8_t>(above);
}

/// Bare values of half dBZ from -32, by the relation of Marshall and Palmer.
std::uint8_t rawOf(double mmPerHour) {
  if (mmPerHour < 0.05) return 0;
  return static_cast<std::uint8_t>(
      std::clamp(2 * (10 * std::log10(200 * std::pow(mmPerHour, 1.6)) + 32), 1.0, 255.0));
}

/// Drawn in blocks of four points, which is about as fine as radars are.
DemoAnswer rainPicture(Square square, Size size, Instant time, std::span<Area const> areas,
                       std::span<Colour const> colours) {
  constexpr int kBlock = 4;
  DemoPicture picture(size.width, size.height);
  if (colours.empty()) {
    for (std::uint32_t i = 0; i < 256; ++i)
      picture.palette.push_back(i == 0 ? 0 : i << 24 | i << 16 | i << 8 | 0xff);
  } else {
    picture.palette = {0};
    for (Colour const& colour : colours) picture.palette.push_back(colour.rgba);
  }
  DemoRain rain(time);
  double const width = square.southEast.x - square.northWest.x;
  double const height = square.southEast.y - square.northWest.y;
  for (int y = 0; y < size.height; y += kBlock) {
    for (int x = 0; x < size.width; x += kBlock) {
      constexpr double kMiddle = kBlock / 2.0;
      Coordinate const place = coordinateOf({square.northWest.x + width * (x + kMiddle) / size.width,
                                             square.northWest.y + height * (y + kMiddle) / size.height});
      if (!isWithin(areas, place)) continue;
      double const amount = rain.at(place);
      std::uint8_t const value = colours.empty() ? rawOf(amount) : indexOf(colours, amount);
      for (int i = 0; i < kBlock * kBlock && value != 0; ++i)
        picture.at(x + i % kBlock, y + i / kBlock) = value;
    }
  }
  return png(picture);
}

/// What the faults of pictures show in place of a picture.
std::optional<DemoAnswer> faultyPicture(DemoRequest const& request, Size size) {
  if (request.fault == DemoFault::Kind::transparent) return transparent(size);
  if (request.fault == DemoFault::Kind::writing) return written(size);
  if (request.fault == DemoFault::Kind::status429) return DemoAnswer{429, "too many requests", {}};
  return std::nullopt;
}

/// The last three parts of a path "…/5/6/12.png".
std::optional<TileAddress> tileIn(std::vector<std::string_view> const& parts, std::size_t first) {
  if (parts.size() < first + 3) return std::nullopt;
  auto const number = [](std::string_view text) { return parseInteger(text.substr(0, text.find('.'))); };
  auto const z = number(parts[first]), x = number(parts[first + 1]), y = number(parts[first + 2]);
  constexpr int kDeepest = 16;
  bool const isTile =
      z && x && y && *z >= 0 && *z <= kDeepest && *x >= 0 && *y >= 0 && *x < 1 << *z && *y < 1 << *z;
  return isTile ? std::optional(TileAddress{*z, *x, *y}) : std::nullopt;
}

// Map services.

struct MapServiceLayer {
  std::string_view layer;
  std::span<Area const> areas;
  std::span<Colour const> colours;
  int forecast;  ///< of how many steps
};

std::string capabilitiesOf(MapServiceLayer const& layer, Instant newest, bool isEmpty) {
  Instant const first = newest - minutes(5) * (kMeasured - 1);
  std::string times;
  for (int i = 0; i < kMeasured && layer.forecast == 0 && !isEmpty; ++i)
    times += (i == 0 ? "" : ",") + formatIso8601(first + i * minutes(5));
  if (layer.forecast > 0 && !isEmpty)
    times = formatIso8601(first) + "/" + formatIso8601(newest + layer.forecast * minutes(5)) + "/PT5M";
  std::string const reference =
      layer.forecast == 0 ? ""
                          : "<Dimension name=\"REFERENCE_TIME\" default=\"" + formatIso8601(newest) + "\"/>";
  return "<?xml version=\"1.0\"?><WMS_Capabilities version=\"1.3.0\"><Capability><Layer><Layer "
         "queryable=\"1\"><Name>" +
         std::string(layer.layer) + "</Name>" + reference + "<Dimension name=\"time\">" + times +
         "</Dimension></Layer></Layer></Capability></WMS_Capabilities>";
}

std::optional<Square> boxOf(std::string const& text) {
  auto const parts = split(text, ',');
  if (parts.size() != 4) return std::nullopt;
  constexpr double kSide = 2 * 20037508.342789244;
  double at[4];
  for (std::size_t i = 0; i < parts.size(); ++i) {
    auto const metres = parseDouble(parts[i]);
    if (!metres) return std::nullopt;
    at[i] = *metres / kSide;
  }
  return Square{{at[0] + 0.5, 0.5 - at[3]}, {at[2] + 0.5, 0.5 - at[1]}};
}

DemoAnswer mapService(DemoRequest const& request, Instant now, MapServiceLayer const& layer) {
  Instant const newest = flooredTo(minutes(5), now);
  if (request.query("request") == "GetCapabilities")
    return {200, capabilitiesOf(layer, newest, request.fault == DemoFault::Kind::emptyList), {}};
  auto const square = boxOf(request.query("bbox"));
  auto const width = parseInteger(request.query("width")), height = parseInteger(request.query("height"));
  auto const time = parseIso8601(request.query("time"));
  constexpr int kMost = 2048;
  auto const isSide = [](auto const& side) {
    return side && *side >= 16 && *side <= kMost && *side % 4 == 0;
  };
  if (!square || !isSide(width) || !isSide(height)) return {200, "<ServiceExceptionReport/>", {}};
  Size const size(*width, *height);
  if (auto faulty = faultyPicture(request, size)) return std::move(*faulty);
  bool const isListed = time && flooredTo(minutes(5), *time) == *time &&
                        *time >= newest - minutes(5) * (kMeasured - 1) &&
                        *time <= newest + layer.forecast * minutes(5);
  return isListed ? rainPicture(*square, size, *time, layer.areas, layer.colours) : transparent(size);
}

// Lists with paths.

bool isViewer(DemoRequest const& request) {
  return request.path.starts_with("/rainViewer/");
}

/// As the suppliers have them: a time, or a hash that nobody can guess.
std::string pathOf(bool isOfViewer, Instant time) {
  auto const seconds = std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count();
  if (!isOfViewer) return "/v2/radar/" + std::to_string(seconds);
  constexpr char kDigits[] = "0123456789abcdef";
  std::string name;
  for (int i = 0; i < 12; ++i) name += kDigits[static_cast<int>(demoDraw(77 + i, seconds) * 16)];
  return "/v2/radar/" + name;
}

std::vector<Instant> listedTimes(bool isOfViewer, Instant now) {
  Instant const newest = flooredTo(minutes(10), now);
  std::vector<Instant> times;
  for (int i = 1 - kMeasured; i <= (isOfViewer ? 0 : kForecast); ++i)
    times.push_back(newest + i * minutes(10));
  return times;
}

}  // namespace

DemoAnswer noaaRadar(DemoRequest const& request, Instant now) {
  return mapService(request, now, {"conus_bref_qcd", kAmericanArea, kReflectivity, 0});
}

DemoAnswer dwdRadar(DemoRequest const& request, Instant now) {
  return mapService(request, now, {"Niederschlagsradar", kGermanArea, kGerman, 24});
}

DemoAnswer mesonetTile(DemoRequest const& request, Instant now) {
  constexpr int kSide = 256;
  auto const parts = split(request.path, '/');
  auto const tile = tileIn(parts, parts.size() - 3);
  std::string_view const name = parts[parts.size() - 4];
  auto const minus = name.rfind("-m");
  auto const ago =
      minus == std::string_view::npos ? std::optional(0) : parseInteger(name.substr(minus + 2, 2));
  if (!tile || !ago) return {404, "", {}};
  if (auto faulty = faultyPicture(request, kSide)) return std::move(*faulty);
  return rainPicture(squareOf(*tile), kSide, flooredTo(minutes(5), now) - minutes(*ago), kAmericanArea,
                     kReflectivity);
}

namespace {

std::string digitsOf(Instant time) {
  std::string digits;
  for (char const c : formatIso8601(time)) {
    if (c >= '0' && c <= '9') digits += c;
  }
  return digits;
}

}  // namespace

DemoAnswer jmaTimes(DemoRequest const& request, Instant now) {
  bool const isForecast = request.path.ends_with("N2.json");
  Instant const newest = flooredTo(minutes(5), now);
  JsonWriter json;
  json.beginList();
  for (int i = 0; i < 12 && request.fault != DemoFault::Kind::emptyList; ++i) {
    Instant const valid = isForecast ? newest + (i + 1) * minutes(5) : newest - i * minutes(5);
    json.separate();
    json.beginObject();
    json.member("basetime", digitsOf(isForecast ? newest : valid));
    json.member("validtime", digitsOf(valid));
    json.member("elements", std::vector<std::string>{"hrpns", "hrpns_nd"});
    json.endObject();
  }
  json.endList();
  return {200, json.take(), {}};
}

DemoAnswer jmaTile(DemoRequest const& request, Instant /*now*/) {
  constexpr int kSide = 256;
  auto const parts = split(request.path, '/');
  auto const tile = tileIn(parts, parts.size() - 3);
  // "/bosai/jmatile/data/nowc/{base}/none/{valid}/surf/hrpns/…"
  std::string const valid(parts.size() > 7 ? parts[7] : "");
  if (valid.size() != 14 || !tile || tile->zoom % 2 != 0) return {404, "", {}};
  auto const time = parseIso8601(valid.substr(0, 4) + "-" + valid.substr(4, 2) + "-" + valid.substr(6, 2) +
                                 "T" + valid.substr(8, 2) + ":" + valid.substr(10, 2) + ":00Z");
  if (!time) return {404, "", {}};
  if (auto faulty = faultyPicture(request, kSide)) return std::move(*faulty);
  return rainPicture(squareOf(*tile), kSide, *time, kJapaneseArea, kJapanese);
}

DemoAnswer radarMaps(DemoRequest const& request, Instant now) {
  bool const isOfViewer = isViewer(request);
  Instant const newest = flooredTo(minutes(10), now);
  JsonWriter json;
  json.beginObject();
  json.member("version", "2.0");
  json.member("host", "http://" + request.header("Host") + (isOfViewer ? "/rainViewer" : "/libreWxr"));
  json.key("radar");
  json.beginObject();
  for (bool const isForecast : {false, true}) {
    json.key(isForecast ? "nowcast" : "past");
    json.beginList();
    for (Instant const time : listedTimes(isOfViewer, now)) {
      if (request.fault == DemoFault::Kind::emptyList || (time > newest) != isForecast) continue;
      json.separate();
      json.beginObject();
      json.member("time", std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count());
      json.member("path", pathOf(isOfViewer, time));
      json.endObject();
    }
    json.endList();
  }
  json.endObject();
  json.endObject();
  return {200, json.take(), {}};
}

DemoAnswer radarMapTile(DemoRequest const& request, Instant now) {
  // "/rainViewer/v2/radar/0123456789ab/256/5/16/10/2/1_1.png"
  bool const isOfViewer = isViewer(request);
  auto const parts = split(request.path, '/');
  auto const tile = tileIn(parts, 6);
  int const side = parts.size() > 5 && parts[5] == "512" ? 512 : 256;
  for (Instant const time : listedTimes(isOfViewer, now)) {
    if (!tile || pathOf(isOfViewer, time) != "/v2/radar/" + std::string(parts[4])) continue;
    if (auto faulty = faultyPicture(request, side)) return std::move(*faulty);
    constexpr int kViewersDeepest = 7;
    if (isOfViewer && tile->zoom > kViewersDeepest) return written(side);
    return isOfViewer ? rainPicture(squareOf(*tile), side, time, kViewerAreas, kBlue)
                      : rainPicture(squareOf(*tile), side, time, kLibreAreas, {});
  }
  return {404, "", {}};
}

DemoAnswer radarCoverage(DemoRequest const& request, Instant /*now*/) {
  constexpr int kSide = 256, kBlock = 4;
  auto const parts = split(request.path, '/');
  auto const tile = tileIn(parts, 6);
  if (!tile) return {404, "", {}};
  std::span<Area const> const areas = isViewer(request) ? std::span<Area const>(kViewerAreas) : kLibreAreas;
  DemoPicture picture(kSide, kSide);
  picture.palette = {0, 0x000000ff};
  Square const square = squareOf(*tile);
  double const wide = (square.southEast.x - square.northWest.x) / kSide;
  for (int i = 0; i < kSide * kSide; ++i) {
    int const x = i % kSide / kBlock * kBlock, y = i / kSide / kBlock * kBlock;
    Coordinate const place =
        coordinateOf({square.northWest.x + wide * (x + 2), square.northWest.y + wide * (y + 2)});
    picture.points[static_cast<std::size_t>(i)] = isWithin(areas, place) ? 0 : 1;
  }
  return png(picture);
}

}  // namespace nimbara
