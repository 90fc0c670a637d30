#include "app/words/coverage_text.h"

#include "feeds/fetching/failure_words.h"
#include "support/instants.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;

Instant const kNow = at("2026-11-21T14:40:00Z");

SourceCoverage coverageOf(CoverageState state, std::size_t count = 0) {
  SourceCoverage coverage;
  coverage.service = "MeteoAlarm";
  coverage.country = "HR";
  coverage.state = state;
  coverage.count = count;
  coverage.checkedAt = at("2026-11-21T14:20:00Z");
  return coverage;
}

std::string textOf(SourceCoverage const& coverage, char const* language = "en") {
  return coverageText(coverage, Texts::load(language), Calendar::utc(), kNow);
}

TEST(CoverageText, SaysEachStateInItsOwnWords) {
  EXPECT_EQ(textOf(coverageOf(CoverageState::none)), "No official warnings, checked 2:20 PM");
  EXPECT_EQ(textOf(coverageOf(CoverageState::warnings, 1)), "One official warning, checked 2:20 PM");
  EXPECT_EQ(textOf(coverageOf(CoverageState::warnings, 2)), "2 official warnings, checked 2:20 PM");
  SourceCoverage unplaced = coverageOf(CoverageState::unplaced, 2);
  unplaced.areas = {"Kvarner", "Split"};
  EXPECT_EQ(textOf(unplaced),
            "Official warnings in effect for parts of Croatia that could not be located, checked 2:20 PM: "
            "Kvarner, Split");
  unplaced.countryWide = {"Flood (red)"};
  EXPECT_EQ(
      textOf(unplaced),
      "Official warnings in effect for the whole country (Croatia) or for parts of it that could not be "
      "located, checked 2:20 PM: Flood (red), Kvarner, Split");
  EXPECT_TRUE(textOf(unplaced, "de").ends_with(": Flood (rot), Kvarner, Split"));
  unplaced.areas.clear();
  EXPECT_EQ(textOf(unplaced),
            "Official warnings in effect for the whole country (Croatia), checked 2:20 PM: Flood (red)");
  EXPECT_EQ(textOf(coverageOf(CoverageState::uncovered)), "No source of official warnings for Croatia");
  SourceCoverage sea = coverageOf(CoverageState::uncovered);
  sea.country.clear();
  EXPECT_EQ(textOf(sea), "No known source of official warnings for these waters");
}

TEST(CoverageText, SaysSinceWhenAndWhyNothingIsKnown) {
  SourceCoverage failed = coverageOf(CoverageState::unchecked);
  failed.since = at("2026-11-21T13:05:00Z");
  failed.reason = ServiceFailure::answered(503);
  EXPECT_EQ(textOf(failed),
            "Official warnings could not be checked since 1:05 PM: the service returned an error (HTTP 503)");
  failed.reason = ServiceFailure::of(ServiceFailure::Kind::notAskedLately);
  EXPECT_EQ(textOf(failed), "Official warnings could not be checked since 1:05 PM: no check was requested");
  failed.alsoAsked = "fpas";
  EXPECT_TRUE(textOf(failed).ends_with(". FOSS Public Alert Server has no warnings from this country"));
  failed.alsoReason = ServiceFailure::answered(404);
  EXPECT_TRUE(textOf(failed).ends_with(". FOSS Public Alert Server was unavailable, too: " +
                                       failureText(*failed.alsoReason, Texts::load("en"))));
  failed.count = 1;
  EXPECT_TRUE(textOf(failed).ends_with(". One known warning is still in effect"));
  failed.since.reset();
  EXPECT_EQ(textOf(failed), "Official warnings could not be checked");
}

TEST(CoverageText, SaysWhoAnsweredBecauseAnotherWasUnavailable) {
  SourceCoverage second = coverageOf(CoverageState::none);
  second.service = "FOSS Public Alert Server";
  second.insteadOf = "wmo";
  second.insteadReason = ServiceFailure::answered(503);
  EXPECT_EQ(
      textOf(second),
      "No official warnings, checked 2:20 PM. Checked through FOSS Public Alert Server because WMO Severe "
      "Weather Information Centre was unavailable: the service returned an error (HTTP 503)");
  auto const aged = agedCoverage({second}, kNow + std::chrono::hours(2));
  EXPECT_EQ(textOf(aged[0]), "Official warnings could not be checked since 2:20 PM: no check was requested");
}

TEST(CoverageText, NamesTheColourInTheReadersLanguage) {
  SourceCoverage unplaced = coverageOf(CoverageState::unplaced, 2);
  unplaced.areas = {"Kvarner (Windwarnung, red)", "Split (Regenwarnung)"};
  EXPECT_TRUE(textOf(unplaced, "de").ends_with("Kvarner (Windwarnung, rot), Split (Regenwarnung)"));
  EXPECT_TRUE(textOf(unplaced, "en").ends_with("Kvarner (Windwarnung, red), Split (Regenwarnung)"));
}

TEST(CoverageText, CutsAListOfHundredsOfAreas) {
  SourceCoverage unplaced = coverageOf(CoverageState::unplaced);
  for (int i = 0; i < 13; ++i) unplaced.areas.push_back("A" + std::to_string(i));
  EXPECT_TRUE(textOf(unplaced).ends_with("A11, …"));
  unplaced.areas.pop_back();
  EXPECT_TRUE(textOf(unplaced).ends_with("A11"));
}

TEST(CoverageText, NamesTheServiceWhereThereAreSeveral) {
  Texts const texts = Texts::load("en");
  auto const one = coverageOf(CoverageState::none);
  EXPECT_EQ(coverageLines({one}, texts, Calendar::utc(), kNow).front(),
            "No official warnings, checked 2:20 PM");
  EXPECT_EQ(coverageLines({one, one}, texts, Calendar::utc(), kNow).front(),
            "MeteoAlarm: No official warnings, checked 2:20 PM");
}

}  // namespace
}  // namespace nimbara
