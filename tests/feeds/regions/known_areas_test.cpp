#include "feeds/meteoalarm/areas/known_areas.h"

#include "feeds/regions/regions.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

RawEntry entryOf(std::string area, std::vector<RegionCode> codes = {}, std::vector<std::string> nuts3 = {}) {
  RawEntry entry;
  entry.areaDesc = std::move(area);
  entry.otherCodes = std::move(codes);
  entry.nuts3Codes = std::move(nuts3);
  return entry;
}

TEST(KnownAreas, AreThoseOfTheOutlinesAndOfTheCountrysRegions) {
  KnownAreas areas;
  auto const outlines = embeddedRegions();
  ASSERT_TRUE(outlines);
  struct Row {
    std::string country;
    RawEntry entry;
    bool isKnown;
  };
  for (Row const& row : {Row{"HR", entryOf("Rijeka region", {{"EMMA_ID", "HR006"}}), true},
                         {"HR", entryOf("A new region", {{"EMMA_ID", "HR002"}}), true},
                         {"HR", entryOf("A new region", {{"EMMA_ID", "HR999"}}), false},
                         {"HR", entryOf("", {{"EMMA_ID", "HR999"}}), false},
                         {"FR", entryOf("A new region", {}, {"FR718"}), true},
                         {"FR", entryOf("A new region", {}, {"FR999"}), false},
                         {"GB", entryOf("Grampian"), true},
                         {"GB", entryOf("London & South East England"), true},
                         {"GB", entryOf("Atlantis"), false},
                         {"UA", entryOf("Київська область"), true},
                         {"UA", entryOf("Atlantis"), false}}) {
    EXPECT_EQ(areas.has(row.country, row.entry, outlines.get()), row.isKnown) << row.entry.areaDesc;
  }
  EXPECT_FALSE(areas.has("HR", entryOf("A new region", {{"EMMA_ID", "HR002"}}), nullptr))
      << "without outlines nobody knows the code";
}

}  // namespace
}  // namespace nimbara
