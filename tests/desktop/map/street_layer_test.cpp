#include "desktop/imagery/street_layer.h"

#include "desktop/offscreen.h"
#include "feeds/imagery/street_tiles.h"
#include "feeds/imagery/tile_service.h"
#include "support/instants.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

struct PatternRow {
  std::string_view text;
  bool isOne;
};

class TilePatterns : public testing::TestWithParam<PatternRow> {};

TEST_P(TilePatterns, NameEachNumberOnce) {
  EXPECT_EQ(isTileTemplate(GetParam().text), GetParam().isOne) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(All, TilePatterns,
                         testing::Values(PatternRow{"https://tiles.example/{z}/{x}/{y}.png", true},
                                         PatternRow{"http://127.0.0.1:8080/{z}/{y}/{x}", true},
                                         PatternRow{"https://tiles.example/{z}/{x}/{y}.png?key=a1", true},
                                         PatternRow{"https://tiles.example/{z}/{x}.png", false},
                                         PatternRow{"https://tiles.example/{z}/{x}/{y}/{y}", false},
                                         PatternRow{"https://{s}.tiles.example/{z}/{x}/{y}.png", false},
                                         PatternRow{"https://tiles.example/{z}/{x}/{y}/{r}.png", false},
                                         PatternRow{"https://{z}.tiles.example/{x}/{y}.png", false},
                                         PatternRow{"ftp://tiles.example/{z}/{x}/{y}.png", false},
                                         PatternRow{"https:///{z}/{x}/{y}.png", false},
                                         PatternRow{"https://tiles.example/{z}/{x}/{y} .png", false},
                                         PatternRow{"{z}/{x}/{y}", false}, PatternRow{"", false}));

TEST(StreetTiles, AreAskedForByTheirNumbersAndKeptForAMonth) {
  constexpr std::string_view kPattern = "https://tiles.example/{z}/{x}/{y}.png?key=a1";
  EXPECT_EQ(streetTileAddress(kPattern, {3, 5, 2}), "https://tiles.example/3/5/2.png?key=a1");
  Instant const day = test::at("2026-11-22T10:00:00Z");
  EXPECT_EQ(streetTileKey(kPattern, {3, 5, 2}, day),
            streetTileKey(kPattern, {3, 5, 2}, day + std::chrono::hours(1)));
  EXPECT_NE(streetTileKey(kPattern, {3, 5, 2}, day),
            streetTileKey(kPattern, {3, 5, 2}, day + std::chrono::days(30)));
}

}  // namespace
}  // namespace nimbara
