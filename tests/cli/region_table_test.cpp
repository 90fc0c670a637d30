#include "cli/pages/warnings/region_table.h"

#include "support/paths.h"
#include "support/samples.h"

#include <gmock/gmock.h>

#include <set>

namespace nimbara {
namespace {

TEST(PlacesAndTheirRegions, AreThoseOfTheTable) {
  auto const rows =
      readRegionTable(test::readFile(std::filesystem::path(test::kFixtures) / "regions/places.tsv"));
  ASSERT_TRUE(rows) << rows.error();
  Regions const regions({});
  std::set<std::string> countries;
  for (RegionTableRow const& row : *rows) {
    countries.insert(row.country);
    EXPECT_EQ(describe(foundRow(row, regions)), describe(row)) << row.place;
  }
  EXPECT_GE(rows->size(), 150U);
  EXPECT_GE(countries.size(), 35U);
}

TEST(PlacesAndTheirRegions, AreRefusedWhereALineIsWrong) {
  EXPECT_TRUE(readRegionTable("# none\n\n"));
  for (std::string const bad :
       {"Berlin\t52\t13\tDE\tDE202\t", "Berlin\tx\t13\tDE\tDE202\t\t", "Berlin\t92\t13\tDE\tDE202\t\t"}) {
    auto const rows = readRegionTable("# head\n" + bad + "\n");
    ASSERT_FALSE(rows);
    EXPECT_EQ(rows.error(), "line 2 is not a place with its regions");
  }
}

}  // namespace
}  // namespace nimbara
