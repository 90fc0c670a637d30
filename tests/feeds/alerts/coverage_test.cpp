#include "feeds/alerts/coverage.h"

#include "support/instants.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;

Instant const kNow = at("2026-11-21T14:40:00Z");

WeatherAlert warningFor(std::string area) {
  WeatherAlert alert;
  alert.title = "Wind Warning";
  alert.areaDesc = std::move(area);
  return alert;
}

/// Asked ten minutes ago, with nothing found.
GovSourceState quiet() {
  GovSourceState source;
  source.name = "meteoalarm";
  source.checkedAt = kNow - 10min;
  return source;
}

struct StateRow {
  char const* why;
  void (*change)(GovSourceState&);
  CoverageState state;
  std::size_t count;
  std::optional<Instant> since;
  std::optional<ServiceFailure> reason;
};

void PrintTo(StateRow const& row, std::ostream* out) {
  *out << row.why;
}

struct CoverageStates : testing::TestWithParam<StateRow> {};

TEST_P(CoverageStates, FollowFromWhatASourceSaid) {
  StateRow const& row = GetParam();
  GovAlerts alerts;
  alerts.sources = {quiet()};
  row.change(alerts.sources[0]);
  auto const coverage = agedCoverage(coverageOf(alerts, "HR"), kNow);
  ASSERT_EQ(coverage.size(), 1);
  EXPECT_EQ(coverage[0].service, "MeteoAlarm");
  EXPECT_EQ(coverage[0].state, row.state);
  EXPECT_EQ(coverage[0].count, row.count);
  EXPECT_EQ(coverage[0].since, row.since);
  EXPECT_EQ(coverage[0].reason, row.reason);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, CoverageStates,
    testing::Values(
        StateRow{"none", [](GovSourceState&) {}, CoverageState::none, 0, {}, {}},
        StateRow{"two",
                 [](GovSourceState& s) { s.alerts = {warningFor("a"), warningFor("b")}; },
                 CoverageState::warnings,
                 2,
                 {},
                 {}},
        StateRow{"unplaced",
                 [](GovSourceState& s) { s.unplaced = {warningFor("Kvarner"), warningFor("Kvarner")}; },
                 CoverageState::unplaced,
                 2,
                 {},
                 {}},
        StateRow{"placedAndUnplaced",
                 [](GovSourceState& s) {
                   s.alerts = {warningFor("a")};
                   s.unplaced = {warningFor("Kvarner")};
                 },
                 CoverageState::warnings,
                 1,
                 {},
                 {}},
        StateRow{"failed",
                 [](GovSourceState& s) {
                   s.failedSince = kNow - 5min;
                   s.failure = ServiceFailure::answered(503);
                   s.alerts = {warningFor("a")};
                 },
                 CoverageState::unchecked, 1, kNow - 5min, ServiceFailure::answered(503)},
        StateRow{
            "never", [](GovSourceState& s) { s.checkedAt.reset(); }, CoverageState::unchecked, 0, {}, {}},
        StateRow{
            "trusted", [](GovSourceState& s) { s.checkedAt = kNow - 45min; }, CoverageState::none, 0, {}, {}},
        StateRow{"old", [](GovSourceState& s) { s.checkedAt = kNow - 45min - 1ms; }, CoverageState::unchecked,
                 0, kNow - 45min - 1ms, ServiceFailure::of(ServiceFailure::Kind::notAskedLately)},
        StateRow{
            "ahead", [](GovSourceState& s) { s.checkedAt = kNow + 45min; }, CoverageState::none, 0, {}, {}},
        StateRow{"blind", [](GovSourceState& s) { s.isBlind = true; }, CoverageState::uncovered, 0, {}, {}},
        StateRow{"blindForLong",
                 [](GovSourceState& s) {
                   s.isBlind = true;
                   s.checkedAt = kNow - 24h;
                 },
                 CoverageState::uncovered,
                 0,
                 {},
                 {}},
        StateRow{"blindWithWarnings",
                 [](GovSourceState& s) {
                   s.isBlind = true;
                   s.alerts = {warningFor("a")};
                 },
                 CoverageState::warnings,
                 1,
                 {},
                 {}},
        StateRow{"blindAndFailed",
                 [](GovSourceState& s) {
                   s.isBlind = true;
                   s.failedSince = kNow - 5min;
                   s.failure = ServiceFailure::answered(503);
                 },
                 CoverageState::unchecked, 0, kNow - 5min, ServiceFailure::answered(503)},
        StateRow{"ofAnotherClock", [](GovSourceState& s) { s.checkedAt = kNow + 45min + 1ms; },
                 CoverageState::unchecked, 0, kNow,
                 ServiceFailure::of(ServiceFailure::Kind::notAskedLately)}),
    [](auto const& row) { return std::string(row.param.why); });

TEST(Coverage, NamesTheCountryThatNobodyWarnsFor) {
  auto const coverage = coverageOf({}, "JP");
  ASSERT_EQ(coverage.size(), 1);
  EXPECT_EQ(coverage[0].state, CoverageState::uncovered);
  EXPECT_EQ(coverage[0].country, "JP");
  JsonWriter json;
  writeCoverage(json, coverage);
  EXPECT_EQ(json.take(),
            R"([{"source":null,"service":null,"state":"uncovered","count":0,"checkedAt":null,"since":null,)"
            R"("reason":null,"areas":[],"country":"JP","insteadOf":null,"insteadReason":null,)"
            R"("alsoAsked":null,"alsoReason":null,"countryWide":[]}])");
}

TEST(Coverage, SaysItsReasonToScriptsInASentence) {
  SourceCoverage failed;
  failed.state = CoverageState::unchecked;
  failed.reason = ServiceFailure::answered(503);
  JsonWriter json;
  writeCoverage(json, {failed});
  EXPECT_NE(json.take().find(R"("reason":"the service returned status 503")"), std::string::npos);
}

TEST(Coverage, NamesEachUnplacedAreaOnce) {
  GovAlerts alerts;
  alerts.sources = {quiet()};
  alerts.sources[0].unplaced = {warningFor("Kvarner"), warningFor("Kvarner"), warningFor("Split")};
  EXPECT_EQ(coverageOf(alerts, "HR")[0].areas,
            (std::vector<std::string>{"Kvarner (Wind Warning)", "Split (Wind Warning)"}));
}

TEST(Coverage, TellsTheWholeCountryFromItsParts) {
  GovAlerts alerts;
  alerts.sources = {quiet()};
  for (char const* const area : {"Kvarner", " Croatia", "", "Hrvatska", "Croatia and Istria"}) {
    alerts.sources[0].unplaced = {warningFor(area)};
    alerts.sources[0].unplaced[0].language = "hr";
    SourceCoverage const coverage = coverageOf(alerts, "HR")[0];
    bool const isPart = std::string_view(area).contains("K") || std::string_view(area).contains("Istria");
    EXPECT_EQ(coverage.areas.size(), isPart ? 1 : 0) << area;
    EXPECT_EQ(coverage.countryWide,
              isPart ? std::vector<std::string>() : std::vector<std::string>{"Wind Warning"});
  }
}

TEST(Coverage, ShowsTheStateThatMustNotBeHidden) {
  std::vector<SourceCoverage> two(2);
  two[0].state = CoverageState::none;
  two[1].state = CoverageState::warnings;
  EXPECT_EQ(mostPressing(two).state, CoverageState::warnings);
  two[0].state = CoverageState::unchecked;
  EXPECT_EQ(mostPressing(two).state, CoverageState::unchecked);
}

}  // namespace
}  // namespace nimbara
