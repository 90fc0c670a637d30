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

/// What a source said, and what follows from it.
struct StateRow {
  char const* name;
  CoverageState state;
  std::size_t alerts = 0, unplaced = 0;
  bool isBlind = false, hasFailed = false;
  std::optional<std::chrono::milliseconds> age = 10min;
  std::optional<Instant> since = {};
  std::optional<ServiceFailure> reason = {};
};

TEST(CoverageStates, FollowFromWhatASourceSaid) {
  using enum CoverageState;
  auto const failure = ServiceFailure::answered(503);
  auto const old = ServiceFailure::of(ServiceFailure::Kind::notAskedLately);
  for (StateRow const& row :
       {StateRow{"none", none}, StateRow{"two", warnings, 2}, StateRow{"two unplaced", unplaced, 0, 2},
        StateRow{"placed and unplaced", warnings, 1, 1}, StateRow{"never", unchecked, 0, 0, false, false, {}},
        StateRow{"failed", unchecked, 1, 0, false, true, 10min, kNow - 5min, failure},
        StateRow{"trusted", none, 0, 0, false, false, 45min},
        StateRow{"old", unchecked, 0, 0, false, false, 45min + 1ms, kNow - 45min - 1ms, old},
        StateRow{"ahead", none, 0, 0, false, false, -45min},
        StateRow{"of another clock", unchecked, 0, 0, false, false, -45min - 1ms, kNow, old},
        StateRow{"blind", uncovered, 0, 0, true},
        StateRow{"blind for long", uncovered, 0, 0, true, false, 24h},
        StateRow{"blind with warnings", warnings, 1, 0, true},
        StateRow{"blind and failed", unchecked, 0, 0, true, true, 10min, kNow - 5min, failure}}) {
    SCOPED_TRACE(row.name);
    GovAlerts alerts;
    GovSourceState& source = alerts.sources.emplace_back(quiet());
    source.alerts.assign(row.alerts, warningFor("a"));
    source.unplaced.assign(row.unplaced, warningFor("Kvarner"));
    source.isBlind = row.isBlind;
    source.checkedAt = row.age ? std::optional(kNow - *row.age) : std::nullopt;
    if (row.hasFailed) source.failedSince = kNow - 5min, source.failure = failure;
    auto const coverage = agedCoverage(coverageOf(alerts, "HR"), kNow);
    ASSERT_EQ(coverage.size(), 1);
    EXPECT_EQ(coverage[0].service, "MeteoAlarm");
    EXPECT_EQ(coverage[0].state, row.state);
    EXPECT_EQ(coverage[0].count, row.alerts > 0 ? row.alerts : row.unplaced);
    EXPECT_EQ(coverage[0].since, row.since);
    EXPECT_EQ(coverage[0].reason, row.reason);
  }
}

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
