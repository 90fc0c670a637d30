#include "cli/pages/pass_table.h"

#include "base/text/text.h"
#include "support/instants.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using testing::HasSubstr;

SatellitePass pass(std::string const& day, double elevation, bool sunlit, bool dark) {
  SatellitePass made;
  made.rise = {at(day + "T15:45:20Z"), 281, 0};
  made.culmination = {at(day + "T15:50:00Z"), 190, elevation};
  made.set = {at(day + "T15:55:00Z"), 85, 0};
  made.sunlit = sunlit;
  made.skyDark = dark;
  return made;
}

SatellitePass visiblePass(std::string const& day) {
  SatellitePass made = pass(day, 62, true, true);
  made.visible = {at(day + "T15:46:10Z"), at(day + "T15:52:00Z")};
  return made;
}

std::string table(std::vector<ListedPass> const& passes, bool isVisibleOnly = false, int days = 3,
                  std::string const& language = "en") {
  Texts const texts = Texts::load(language);
  Calendar const calendar = test::zone("Europe/Berlin");
  TimeWords const words(texts, calendar);
  Style const style;
  return passTable(
      passes, {"ISS (ZARYA)", "Berlin", days, isVisibleOnly, kVisibleAbove, texts, words, calendar, style});
}

TEST(PassTable, HasPointsOfTheCompassBelowEachDay) {
  EXPECT_EQ(table({{"ISS (ZARYA)", pass("2026-11-21", 23.4, true, false), 14},
                   {"ISS (ZARYA)", visiblePass("2026-11-21"), 100},
                   {"ISS (ZARYA)", visiblePass("2026-11-22"), std::nullopt}}),
            "ISS (ZARYA): passes over Berlin\n"
            "        Rises          Highest         Sets  Visible            Clouds\n"
            "Saturday, 21 November 2026\n"
            "  4:45 PM W    4:50 PM 23° S    4:55 PM E    bright sky           14 %\n"
            "  4:45 PM W    4:50 PM 62° S    4:55 PM E    4:46 PM – 4:52 PM   100 %\n"
            "Sunday, 22 November 2026\n"
            "  4:45 PM W    4:50 PM 62° S    4:55 PM E    4:46 PM – 4:52 PM\n");
}

TEST(PassTable, SaysWhyAPassIsNotVisible) {
  struct Row {
    double elevation;
    bool sunlit, dark;
    std::string_view why;
  };
  for (Row const& row : {Row{50, true, false, "bright sky"}, Row{50, false, false, "bright sky"},
                         Row{50, false, true, "in shadow"}, Row{9.9, true, true, "too low"}}) {
    EXPECT_THAT(table({{"ISS", pass("2026-11-21", row.elevation, row.sunlit, row.dark), {}}}),
                HasSubstr(row.why));
  }
}

TEST(PassTable, FitsATerminal) {
  for (char const* const language : {"en", "de", "fr"}) {
    std::string const text = table({{"ISS (ZARYA)", visiblePass("2026-11-21"), 100}}, false, 3, language);
    for (std::string_view const line : split(text, '\n')) EXPECT_LE(displayWidth(line), 80) << line;
  }
  EXPECT_THAT(table({{"ISS (ZARYA)", visiblePass("2026-11-21"), 1}}, false, 3, "de"), HasSubstr(" O "));
}

TEST(PassTable, IsASentenceWithoutPasses) {
  EXPECT_EQ(table({}), "ISS (ZARYA) does not rise over Berlin in the next 3 days.\n");
  EXPECT_EQ(table({}, false, 1), "ISS (ZARYA) does not rise over Berlin in the next 24 hours.\n");
  EXPECT_EQ(table({}, true), "No visible passes of ISS (ZARYA) over Berlin in the next 3 days.\n");
}

}  // namespace
}  // namespace nimbara
