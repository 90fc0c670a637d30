#include "regions/region_outline.h"
#include "support/answers/outlines.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

struct SpellingRow {
  char const* code;
  char const* published;
  char const* name;
};

void PrintTo(SpellingRow const& row, std::ostream* out) {
  *out << row.code << " " << row.published;
}

struct RegionSpelling : testing::TestWithParam<SpellingRow> {};

TEST_P(RegionSpelling, RestoresLostLetters) {
  SpellingRow const& row = GetParam();
  auto const reading = readOutlines(
      test::collection({test::feature(row.code, "ES", row.published, test::rectangle(43, -9, 44, -8))}));
  ASSERT_TRUE(reading) << reading.error();
  EXPECT_EQ(reading->outlines.at(0).name, row.name);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, RegionSpelling,
    testing::Values(SpellingRow{"ES202", "Noroeste de A Coruia", "Noroeste de A Coruña"},
                    SpellingRow{"ES846", "Costa - Noroeste de A Coru", "Costa - Noroeste de A Coruña"},
                    SpellingRow{"ES137", "Meseta de nvila", "Meseta de Ávila"},
                    SpellingRow{"ES169", "", "Serranía de Cuenca"},
                    SpellingRow{"ES202", "Noroeste de A Coruña", "Noroeste de A Coruña"},
                    SpellingRow{"ES202", "Galicia", "Galicia"},
                    SpellingRow{"ES219", "Metropolitana y Henares", "Metropolitana y Henares"}));

}  // namespace
}  // namespace nimbara
