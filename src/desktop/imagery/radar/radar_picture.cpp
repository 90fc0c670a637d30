#include "desktop/imagery/radar/radar_picture.h"

#include "desktop/imagery/picture_decoder.h"
#include "feeds/imagery/radar/radar_palette.h"

#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_map>

namespace nimbara {

namespace {

constexpr int kLargestSide = 4096;

QRgb qRgbOf(std::uint32_t rgba) {
  return qRgba(static_cast<int>(rgba >> 24), static_cast<int>(rgba >> 16 & 0xff),
               static_cast<int>(rgba >> 8 & 0xff), static_cast<int>(rgba & 0xff));
}

std::array<QRgb, 256> ownColours() {
  std::array<QRgb, 256> colours{};
  for (std::size_t value = 1; value < colours.size(); ++value) {
    auto const dBZ = rawReflectivity(static_cast<std::uint8_t>(value));
    colours[value] = qRgbOf(ownColourOf(mmPerHourOf(*dBZ)));
  }
  return colours;
}

/// What each colour of a supplier becomes; there are few in a picture.
class Recolouring {
 public:
  explicit Recolouring(RadarPalette palette) : palette_(palette) {}

  struct Entry {
    QRgb own = 0;
    bool isKnown = false;
  };
  Entry const& of(QRgb pixel) {
    QRgb const colour = pixel & 0xffffff;
    auto const [at, isNew] = known_.try_emplace(colour);
    if (isNew) {
      ColourMeaning const meaning = meaningOf(palette_, colour);
      at->second = {qRgbOf(ownColourOf(meaning.mmPerHour)), meaning.off <= kColourTolerance};
    }
    return at->second;
  }

 private:
  RadarPalette palette_;
  std::unordered_map<QRgb, Entry> known_;
};

/// By how many columns a tile is moved to lie next to the centre.
int columnOf(TileAddress tile, MapPoint centre) {
  int const count = 1 << tile.zoom;
  double const middle = (tile.x + 0.5) / count;
  return tile.x + count * static_cast<int>(std::lround(centre.x - middle));
}

/// Opaque where there is no radar.
bool isCovered(QImage const& coverage, TileAddress tile, Coordinate place) {
  constexpr int kHalf = 128;
  double const count = 1 << tile.zoom;
  MapPoint const point = mercatorOf(place);
  auto const pixel = [](double at, int side) { return std::clamp(static_cast<int>(at * side), 0, side - 1); };
  int const x = pixel(point.x * count - tile.x, coverage.width());
  int const y = pixel(point.y * count - tile.y, coverage.height());
  return qAlpha(coverage.pixel(x, y)) < kHalf;
}

}  // namespace

QImage inColours(QImage tile, RadarPalette palette) {
  static std::array<QRgb, 256> const colours = ownColours();
  if (palette != RadarPalette::own) return tile;
  for (int y = 0; y < tile.height(); ++y) {
    auto* const line = reinterpret_cast<QRgb*>(tile.scanLine(y));
    for (int x = 0; x < tile.width(); ++x)
      line[x] = qAlpha(line[x]) == 0 ? 0 : colours[static_cast<std::size_t>(qRed(line[x]))];
  }
  return tile;
}

bool paintInOwnColours(std::span<TilePicture> tiles, RadarPalette palette) {
  if (palette == RadarPalette::own) {
    for (TilePicture& tile : tiles) tile.picture = inColours(std::move(tile.picture), palette);
    return true;
  }
  constexpr long long kOneOf = 20;  // blends at the edges of areas
  Recolouring colours(palette);
  long long drawn = 0, unknown = 0;
  for (TilePicture const& tile : tiles) {
    for (int y = 0; y < tile.picture.height(); ++y) {
      auto const* const line = reinterpret_cast<QRgb const*>(tile.picture.constScanLine(y));
      for (int x = 0; x < tile.picture.width(); ++x) {
        if (qAlpha(line[x]) == 0) continue;
        ++drawn;
        unknown += colours.of(line[x]).isKnown ? 0 : 1;
      }
    }
  }
  if (unknown * kOneOf > drawn) return false;
  for (TilePicture& tile : tiles) {
    for (int y = 0; y < tile.picture.height(); ++y) {
      auto* const line = reinterpret_cast<QRgb*>(tile.picture.scanLine(y));
      for (int x = 0; x < tile.picture.width(); ++x)
        line[x] = qAlpha(line[x]) == 0 ? 0 : colours.of(line[x]).own;
    }
  }
  return true;
}

std::optional<PlacedPicture> sideBySide(std::span<TilePicture const> tiles, MapPoint centre, int pixels) {
  if (tiles.empty()) return std::nullopt;
  int west = columnOf(tiles[0].tile, centre), east = west, north = tiles[0].tile.y, south = north;
  for (TilePicture const& tile : tiles) {
    int const column = columnOf(tile.tile, centre);
    west = std::min(west, column);
    east = std::max(east, column);
    north = std::min(north, tile.tile.y);
    south = std::max(south, tile.tile.y);
  }
  int const columns = east - west + 1, rows = south - north + 1;
  if (std::max(columns, rows) * pixels > kLargestSide) return std::nullopt;
  QImage whole(columns * pixels, rows * pixels, QImage::Format_ARGB32_Premultiplied);
  whole.fill(Qt::transparent);
  QPainter painter(&whole);
  for (TilePicture const& tile : tiles) {
    QRect const at((columnOf(tile.tile, centre) - west) * pixels, (tile.tile.y - north) * pixels, pixels,
                   pixels);
    if (!tile.picture.isNull()) painter.drawImage(at, tile.picture);
  }
  double const count = 1 << tiles[0].tile.zoom;
  return PlacedPicture{
      std::move(whole), {west / count, north / count}, {(east + 1) / count, (south + 1) / count}};
}

PictureState stateOf(std::span<TilePicture const> tiles, RadarSupplier const& supplier,
                     QImage const& coverage, TileAddress coverageTile, Coordinate place) {
  bool const isCoverageKnown = supplier.coverage.empty() || !coverage.isNull();
  if (!coverage.isNull() && !isCovered(coverage, coverageTile, place)) return PictureState::uncovered;
  bool isDrawn = false;
  bool isAny = false;
  for (TilePicture const& tile : tiles) {
    if (tile.picture.isNull()) continue;
    isAny = true;
    // Bare values are grey by themselves.
    if (supplier.palette != RadarPalette::own && isWriting(tile.picture)) return PictureState::writing;
    isDrawn = isDrawn || !isWhollyTransparent(tile.picture);
  }
  if (!isAny || (!isDrawn && !isCoverageKnown)) return PictureState::unknown;
  return PictureState::usable;
}

}  // namespace nimbara
