#include "desktop/imagery/radar/radar_picture.h"

#include "desktop/imagery/picture_decoder.h"
#include "desktop/imagery/radar/radar_drawer.h"
#include "desktop/offscreen.h"
#include "support/answers/bad_bytes.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

#include <QBuffer>
#include <QImage>

namespace nimbara {
namespace {

std::string bytesOf(QImage const& picture, char const* kind = "PNG") {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  picture.save(&buffer, kind);
  return buffer.data().toStdString();
}

QImage filled(QColor const& colour, int side = 256) {
  QImage picture(side, side, QImage::Format_ARGB32);
  picture.fill(colour);
  return picture;
}

/// Transparent, with a square of a colour.
QImage patched(QColor const& colour, QRect const& where) {
  QImage picture = filled(Qt::transparent);
  for (int y = where.top(); y <= where.bottom(); ++y) {
    for (int x = where.left(); x <= where.right(); ++x) picture.setPixelColor(x, y, colour);
  }
  return picture;
}

TEST(PictureDecoder, ReadsNothingButPicturesWithinItsLimits) {
  EXPECT_TRUE(decodePicture(bytesOf(filled(Qt::red))));
  EXPECT_TRUE(decodePicture(bytesOf(filled(Qt::red, kLargestPictureSide))));
  EXPECT_FALSE(decodePicture(bytesOf(filled(Qt::red, kLargestPictureSide + 1))));
  EXPECT_FALSE(decodePicture(bytesOf(filled(Qt::red), "BMP")));
  std::string giant = bytesOf(filled(Qt::red));
  giant.replace(16, 8, std::string("\x7f\xff\xff\xff\x7f\xff\xff\xff", 8));
  EXPECT_FALSE(decodePicture(giant));
  for (std::string const& form : test::damagedForms(bytesOf(patched(Qt::blue, {3, 3, 90, 90})), 13)) {
    auto const picture = decodePicture(form);
    EXPECT_LE(picture ? picture->width() : 0, kLargestPictureSide);
  }
}

TEST(PictureDecoder, KnowsPicturesThatShowNothing) {
  QImage const rain = patched(QColor(0x88, 0xdd, 0xee), {0, 0, 1, 1});
  EXPECT_TRUE(isWhollyTransparent(filled(Qt::transparent)));
  EXPECT_FALSE(isWhollyTransparent(rain));
  EXPECT_TRUE(isOneColour(filled(Qt::gray)));
  EXPECT_FALSE(isOneColour(rain));
  EXPECT_TRUE(isWriting(patched(Qt::gray, {10, 10, 60, 5})));
  EXPECT_FALSE(isWriting(rain));
  EXPECT_FALSE(isWriting(patched(QColor(0x63, 0x61, 0x59, 0x40), {0, 0, 90, 90}))) << "the faintest echoes";
}

TEST(RadarPicture, ColoursBareValues) {
  QImage raw = filled(Qt::transparent, 2);
  raw.setPixel(0, 0, qRgba(112, 112, 112, 255));  // 24 dBZ: more than a millimetre
  raw.setPixel(1, 0, qRgba(20, 20, 20, 255));
  QImage const coloured = inColours(raw, RadarPalette::own);
  std::uint32_t const expected = ownColourOf(1.1);
  EXPECT_EQ(coloured.pixel(0, 0), (expected >> 8) | (expected & 0xff) << 24);
  EXPECT_EQ(coloured.pixel(1, 0), 0U);
  EXPECT_EQ(inColours(raw, RadarPalette::dwd), raw);
}

TEST(RadarPicture, ColoursASuppliersPicturesByItsLegend) {
  auto const own = [](double mmPerHour) {
    std::uint32_t const rgba = ownColourOf(mmPerHour);
    return (rgba >> 8) | (rgba & 0xff) << 24;
  };
  std::vector<TilePicture> tiles{{{3, 0, 0}, patched(QColor(0xff, 0xff, 0x01), {0, 0, 200, 9})},
                                 {{3, 1, 0}, patched(QColor(0x4d, 0xb3, 0x1b), {0, 0, 200, 9})}};
  tiles[1].picture.setPixelColor(0, 0, QColor(0x12, 0x13, 0x14));
  ASSERT_TRUE(paintInOwnColours(tiles, RadarPalette::dwd)) << "one point of its own does not count";
  EXPECT_EQ(tiles[0].picture.pixel(5, 5), own(5));
  EXPECT_EQ(tiles[1].picture.pixel(5, 5), own(1));
  EXPECT_EQ(tiles[1].picture.pixel(5, 50), 0U);
  std::vector<TilePicture> odd{{{3, 0, 0}, patched(QColor(0xf0, 0x10, 0xc0), {0, 0, 9, 9})}};
  std::vector<TilePicture> const before = odd;
  EXPECT_FALSE(paintInOwnColours(odd, RadarPalette::jma));
  EXPECT_EQ(odd[0].picture, before[0].picture);
}

TEST(RadarPicture, PutsTilesSideBySideAcrossTheDateLine) {
  std::vector<TilePicture> const tiles{{{3, 7, 2}, filled(Qt::red)}, {{3, 0, 2}, filled(Qt::blue)}};
  auto const east = sideBySide(tiles, {0.99, 0.3}, 256);
  ASSERT_TRUE(east);
  EXPECT_EQ(east->picture.size(), QSize(512, 256));
  EXPECT_EQ(east->picture.pixelColor(10, 10), QColor(Qt::red));
  EXPECT_DOUBLE_EQ(east->northWest.x, 7.0 / 8);
  EXPECT_DOUBLE_EQ(east->southEast.x, 9.0 / 8);
  EXPECT_DOUBLE_EQ(sideBySide(tiles, {0.01, 0.3}, 256)->northWest.x, -1.0 / 8);
  EXPECT_FALSE(sideBySide({}, {0.5, 0.5}, 256));
}

TEST(RadarPicture, TellsDryFromUncoveredAndFromUnknown) {
  RadarSupplier const& libre = supplierOf(RadarSource::libreWxr);
  RadarSupplier const& viewer = supplierOf(RadarSource::rainViewer);
  RadarSupplier const& german = supplierOf(RadarSource::dwd);
  Coordinate const paris{48.86, 2.35};
  TileAddress const tile = coverageTileAt(paris);
  QImage const none, covered = filled(Qt::transparent), uncovered = filled(Qt::black);
  std::vector<TilePicture> const dry{{{6, 32, 22}, filled(Qt::transparent)}}, missing{{{6, 32, 22}, {}}};
  std::vector<TilePicture> const wet{{{6, 32, 22}, patched(Qt::blue, {0, 0, 9, 9})}};
  std::vector<TilePicture> const said{{{6, 32, 22}, patched(Qt::gray, {0, 0, 9, 9})}};
  EXPECT_EQ(stateOf(dry, libre, covered, tile, paris), PictureState::usable);
  EXPECT_EQ(stateOf(dry, libre, uncovered, tile, paris), PictureState::uncovered);
  EXPECT_EQ(stateOf(wet, libre, uncovered, tile, paris), PictureState::uncovered);
  EXPECT_EQ(stateOf(dry, libre, none, tile, paris), PictureState::unknown);
  EXPECT_EQ(stateOf(wet, libre, none, tile, paris), PictureState::usable);
  EXPECT_EQ(stateOf(said, viewer, covered, tile, paris), PictureState::writing);
  EXPECT_EQ(stateOf(said, libre, covered, tile, paris), PictureState::usable) << "bare values are grey";
  EXPECT_EQ(stateOf(dry, german, none, tile, paris), PictureState::usable);
  EXPECT_EQ(stateOf(missing, german, none, tile, paris), PictureState::unknown);
}

TEST(RadarDrawer, DrawsTheRainWhereItFalls) {
  test::offscreenApplication();
  test::TemporaryFolder const folder;
  RadarSupplier const& supplier = supplierOf(RadarSource::rainViewer);
  Coordinate const paris{48.86, 2.35};
  RadarDrawing drawing{"",      paris.latitude, paris.longitude, 6,  400, 300,
                       "Paris", "10:00",        "RainViewer",    {}, {},  {}};
  QImage const dry = drawnRadar(drawing).picture;
  drawing.source = supplier.source;
  for (TileAddress const& tile : tilesWanted(supplier, {mercatorOf(paris), 6, 400, 300})) {
    std::string const name = std::to_string(tile.x) + "-" + std::to_string(tile.y);
    folder.write(name, bytesOf(filled(QColor(0xff, 0xaa, 0xff))));  // the most rain
    drawing.tiles.push_back({tile.zoom, tile.x, tile.y, folder.path() / name});
  }
  folder.write("coverage", bytesOf(filled(Qt::transparent)));
  TileAddress const tile = coverageTileAt(paris);
  drawing.coverage = DrawnTile{tile.zoom, tile.x, tile.y, folder.path() / "coverage"};
  Drawn const wet = drawnRadar(drawing);
  ASSERT_EQ(wet.code, drawingCode::kDrawn);
  EXPECT_EQ(wet.picture.size(), QSize(400, 300));
  EXPECT_EQ(wet.picture.pixelColor(240, 120), QColor(0xfd, 0xe7, 0x25));
  EXPECT_NE(dry.pixelColor(240, 120), wet.picture.pixelColor(240, 120));
  folder.write("coverage", bytesOf(filled(Qt::black)));
  EXPECT_EQ(drawnRadar(drawing).code, drawingCode::kUncovered);
  folder.write("coverage", "no picture");
  EXPECT_EQ(drawnRadar(drawing).code, drawingCode::kDrawn);
  // Writing in bare values is grey as rain is, but the same in each.
  for (DrawnTile const& each : drawing.tiles)
    folder.write(std::filesystem::path(each.file).filename(), bytesOf(patched(Qt::gray, {10, 10, 60, 5})));
  drawing.source = RadarSource::libreWxr;
  ASSERT_GT(drawing.tiles.size(), 1U);
  EXPECT_EQ(drawnRadar(drawing).code, drawingCode::kUnusable);
  drawing.tiles[0].file = folder.path() / "coverage";
  EXPECT_EQ(drawnRadar(drawing).code, drawingCode::kUnusable);
}

}  // namespace
}  // namespace nimbara
