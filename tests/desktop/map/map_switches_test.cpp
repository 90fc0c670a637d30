#include "desktop/views/map/map_switches.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

struct SwitchRow {
  char const* name;
  std::string_view kept;
  std::string_view pressed;  ///< one after the other
  std::string_view on, off, left;
};

void PrintTo(SwitchRow const& row, std::ostream* out) {
  *out << row.name;
}

struct MapLayerSwitches : testing::TestWithParam<SwitchRow> {};

TEST_P(MapLayerSwitches, AreAsTheyWereLeft) {
  SwitchRow const& row = GetParam();
  MapSwitches switches = MapSwitches::of(row.kept);
  if (!row.pressed.empty()) {
    for (std::size_t begin = 0; begin <= row.pressed.size();) {
      auto const end = std::min(row.pressed.find(',', begin), row.pressed.size());
      switches.toggle(row.pressed.substr(begin, end - begin));
      begin = end + 1;
    }
  }
  EXPECT_TRUE(switches.isOn(row.on)) << row.on;
  EXPECT_FALSE(switches.isOn(row.off)) << row.off;
  EXPECT_EQ(switches.text(), row.left);
  EXPECT_EQ(MapSwitches::of(switches.text()).text(), row.left);
}

INSTANTIATE_TEST_SUITE_P(
    All, MapLayerSwitches,
    testing::Values(SwitchRow{"atFirst", "", "", "radar", "clouds", ""},
                    SwitchRow{"switched", "", "radar,clouds", "clouds", "radar", "radar,clouds"},
                    SwitchRow{"backAgain", "clouds", "clouds", "radar", "clouds", ""},
                    SwitchRow{"oneField", "wind", "pressure", "pressure", "wind", "pressure"},
                    SwitchRow{"twoFieldsKept", "wind,temperature", "", "temperature", "wind", "temperature"},
                    SwitchRow{"twice", "towns,towns", "", "radar", "towns", "towns"},
                    SwitchRow{"ofAnotherVersion", "tides,,clouds", "tides", "clouds", "tides", "clouds"}),
    [](auto const& row) { return row.param.name; });

TEST(MapLayerSwitch, GivenOnesAreAllThatIsOn) {
  MapSwitches const given = MapSwitches::only("clouds,wind,pressure");
  for (MapSwitch const& layer : kMapSwitches)
    EXPECT_EQ(given.isOn(layer.name), layer.name == "clouds" || layer.name == "pressure") << layer.name;
  EXPECT_EQ(unknownLayer("clouds,wind"), "");
  EXPECT_EQ(unknownLayer("clouds,rain"), "rain");
  EXPECT_EQ(unknownLayer("clouds,"), ",");
}

}  // namespace
}  // namespace nimbara
