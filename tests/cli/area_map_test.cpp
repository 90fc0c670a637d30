#include "cli/pages/warnings/area_map.h"

#include "base/text/text.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

AlertOutlines square(double south, double west, double size) {
  return {{{{south, west}, {south, west + size}, {south + size, west + size}, {south + size, west}}}, true};
}

TEST(AreaMaps, ShowTheAreaAndThePlaceOnLandOrSea) {
  EXPECT_EQ(areaMap({}, {0, -30}, 40, {}), "") << "nothing is drawn";
  // In the middle of the Atlantic: 13 rows by 40 columns, of a tenth and a twentieth of a degree.
  Style const ascii{.colour = false, .ascii = true};
  std::string const map = areaMap(square(-0.5, -30.5, 1), {0, -30}, 40, ascii);
  auto const lines = split(trimmed(map), '\n');
  EXPECT_EQ(std::ranges::count(map, '\n'), 13);
  EXPECT_EQ(std::ranges::count(map, 'X'), 1);
  EXPECT_EQ(std::ranges::count(map, '.'), 0) << "the sea is left blank";
  ASSERT_EQ(lines.size(), 11U) << map;
  for (std::string_view const line : lines) EXPECT_EQ(std::ranges::count(line, '#') + line.contains('X'), 20);
  EXPECT_NE(areaMap(square(48, 8, 1), {49, 9}, 40, ascii).find("...."), std::string::npos) << "on land";
}

TEST(AreaMaps, FitTheirWidthAndTheTerminal) {
  for (int const width : {1, 10, 39, 40, 200}) {
    std::string const map = areaMap(square(64, 179, 2), {65, -178}, width, {});
    EXPECT_NE(map.find("◉"), std::string::npos) << width;
    for (std::string_view const line : split(map, '\n')) EXPECT_LE(displayWidth(line), std::min(width, 40));
  }
}

}  // namespace
}  // namespace nimbara
