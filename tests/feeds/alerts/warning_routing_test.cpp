// Sources of official warnings that are asked one after the other.
#include "feeds/alerts/coverage.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

Instant const kNow = test::at("2026-11-21T09:20:00Z");
ServiceFailure const kNoNetwork = ServiceFailure::network({HttpError::Kind::unresolvedHost, ""});
ServiceFailure const kBroken = ServiceFailure::answered(503);

WeatherAlert alert(std::string title) {
  WeatherAlert made;
  made.id = govAlertId("test:" + title);
  made.title = std::move(title);
  made.expires = kNow + 6h;
  return made;
}

GovSourceAnswer saying(std::string title) {
  return {{alert(std::move(title))}, {}};
}

/// As it is said until a first rest after it is over.
ServiceFailure resting(ServiceFailure failure, Instant failedAt) {
  failure.nextTry = failedAt + 10min;
  return failure;
}

std::unexpected<GovSourceFailure> failing(ServiceFailure failure) {
  return std::unexpected(GovSourceFailure{std::move(failure), {}, {}});
}

class WarningRouting : public testing::Test {
 protected:
  struct Source {
    Result<GovSourceAnswer, GovSourceFailure> answer;
    int asked = 0;
  };

  static GovAlertSource sourceOf(std::string name, Source& source) {
    GovAlertSource made{std::move(name), [](GovAlertPlace const&) { return true; },
                        [&source](GovAlertPlace const&, EventMemory&, std::stop_token const&) {
                          ++source.asked;
                          return source.answer;
                        }};
    made.rest = 10min;
    return made;
  }
  GovAlertService service() {
    GovAlertRouting routing;
    routing.route = [](GovAlertPlace const& place) -> std::vector<std::string_view> {
      if (place.chosenSource == "own") return {"own"};
      return {"first", "second"};
    };
    routing.possible = [](GovAlertPlace const&) -> std::vector<std::string_view> {
      return {"first", "own", "second"};
    };
    routing.chosen = [this](Coordinate) { return chosen_; };
    return GovAlertService(clock_,
                           {sourceOf("own", own_), sourceOf("second", second_), sourceOf("first", first_)},
                           folder_.path(), std::move(routing));
  }
  static std::vector<std::string> titles(GovAlerts const& result) {
    std::vector<std::string> list;
    for (WeatherAlert const& one : result.alerts) list.push_back(one.title);
    return list;
  }
  static SourceCoverage only(GovAlerts const& result) {
    auto const coverage = coverageOf(result, "JP");
    EXPECT_EQ(coverage.size(), 1);
    return coverage.at(0);
  }
  std::vector<int> asked() const { return {first_.asked, second_.asked, own_.asked}; }

  test::ManualClock clock_{kNow};
  test::TemporaryFolder folder_;
  GovAlertPlace const place_{{35.68, 139.69}, "JP", {}};
  std::string chosen_;
  Source first_{GovSourceAnswer{}};
  Source second_{GovSourceAnswer{}};
  Source own_{GovSourceAnswer{}};
};

TEST_F(WarningRouting, AsksTheNextOnlyWhenTheOneBeforeHasFailed) {
  GovAlertService gov = service();
  SourceCoverage const well = only(gov.fetchAlerts(place_));
  EXPECT_EQ(well.source, "first");
  EXPECT_EQ(well.state, CoverageState::none);
  EXPECT_EQ(well.insteadOf, std::nullopt);
  EXPECT_THAT(asked(), ElementsAre(1, 0, 0));
  clock_.advance(10min);
  first_.answer = failing(kBroken);
  second_.answer = saying("storm");
  SourceCoverage const after = only(gov.fetchAlerts(place_));
  EXPECT_EQ(after.source, "second");
  EXPECT_EQ(after.state, CoverageState::warnings);
  EXPECT_EQ(after.insteadOf, "first");
  EXPECT_EQ(after.insteadReason, resting(kBroken, kNow + 10min));
  EXPECT_EQ(after.checkedAt, kNow + 10min);
  EXPECT_THAT(asked(), ElementsAre(2, 1, 0));
}

TEST_F(WarningRouting, TakesTheListOfWhoAnsweredForTheTruth) {
  first_.answer = saying("called off meanwhile");
  GovAlertService gov = service();
  gov.fetchAlerts(place_);
  clock_.advance(10min);
  first_.answer = failing(kBroken);
  second_.answer = saying("storm");
  EXPECT_THAT(titles(gov.fetchAlerts(place_)), ElementsAre("storm"));
  clock_.advance(10min);
  first_.answer = saying("flood");
  GovAlerts const back = gov.fetchAlerts(place_);
  EXPECT_THAT(titles(back), ElementsAre("flood"));
  EXPECT_EQ(only(back).insteadOf, std::nullopt);
}

TEST_F(WarningRouting, SaysTheFirstReasonAndWhatWasKnownLastWhereAllFail) {
  first_.answer = failing(kBroken);
  second_.answer = saying("storm");
  GovAlertService gov = service();
  gov.fetchAlerts(place_);
  clock_.advance(10min);
  second_.answer = failing(kNoNetwork);
  GovAlerts const failed = gov.fetchAlerts(place_);
  EXPECT_THAT(titles(failed), ElementsAre("storm"));
  SourceCoverage const coverage = only(failed);
  EXPECT_EQ(coverage.source, "first");
  EXPECT_EQ(coverage.state, CoverageState::unchecked);
  EXPECT_EQ(coverage.reason->status, kBroken.status);
  EXPECT_EQ(coverage.since, kNow + 10min) << "until then the second one had answered";
  EXPECT_EQ(coverage.checkedAt, kNow);
  EXPECT_EQ(coverage.insteadOf, std::nullopt);
}

/// What the two sources of a route say, and what that makes together.
struct TwoAnswers {
  std::string_view name;
  std::string_view first, second;  ///< "blind", "none", "warns" or "fails"
  CoverageState state;
  std::string_view source;
  int secondAsked;
};

class TwoSources : public WarningRouting, public testing::WithParamInterface<TwoAnswers> {
 protected:
  static Result<GovSourceAnswer, GovSourceFailure> answer(std::string_view word) {
    if (word == "fails") return failing(kBroken);
    if (word == "warns") return saying("storm");
    GovSourceAnswer made;
    made.isBlind = word == "blind";
    return made;
  }
};

TEST_P(TwoSources, SayNoneOnlyWhereOneOfThemMayKnow) {
  auto const& [name, first, second, state, source, secondAsked] = GetParam();
  first_.answer = answer(first);
  second_.answer = answer(second);
  GovAlertService gov = service();
  SourceCoverage const now = only(gov.fetchAlerts(place_));
  EXPECT_EQ(now.state, state);
  EXPECT_EQ(now.source, source);
  EXPECT_EQ(only(gov.keptAlerts(place_)), now);
  EXPECT_EQ(only(gov.fetchAlerts(place_)), now) << "everybody rests";
  EXPECT_THAT(asked(), ElementsAre(1, secondAsked, 0));
  EXPECT_EQ(only(service().keptAlerts(place_)), now) << "after a restart";
}

using enum CoverageState;
INSTANTIATE_TEST_SUITE_P(
    Rows, TwoSources,
    testing::Values(TwoAnswers{"BlindAndBlind", "blind", "blind", uncovered, "first", 1},
                    TwoAnswers{"BlindAndNone", "blind", "none", none, "second", 1},
                    TwoAnswers{"BlindAndWarns", "blind", "warns", warnings, "second", 1},
                    TwoAnswers{"BlindAndFails", "blind", "fails", unchecked, "second", 1},
                    TwoAnswers{"NoneAndWarns", "none", "warns", none, "first", 0},
                    TwoAnswers{"FailsAndBlind", "fails", "blind", unchecked, "first", 1},
                    TwoAnswers{"FailsAndNone", "fails", "none", none, "second", 1},
                    TwoAnswers{"FailsAndFails", "fails", "fails", unchecked, "first", 1}),
    [](auto const& row) { return std::string(row.param.name); });

TEST_F(WarningRouting, AsksAgainOnlyAfterTheRest) {
  GovAlertService gov = service();
  gov.fetchAlerts(place_);
  clock_.advance(10min - 1ms);
  EXPECT_EQ(gov.fetchAlerts(place_).checkedAt(), kNow);
  EXPECT_THAT(asked(), ElementsAre(1, 0, 0));
  gov.fetchAlerts({{35.0, 135.0}, "JP", {}});
  EXPECT_THAT(asked(), ElementsAre(2, 0, 0)) << "another place";
  clock_.advance(1ms);
  gov.fetchAlerts(place_);
  EXPECT_THAT(asked(), ElementsAre(3, 0, 0));
}

TEST_F(WarningRouting, LeavesWhoHasFailedAloneWhileTheNextOneRests) {
  first_.answer = failing(kBroken);
  GovAlertService gov = service();
  gov.fetchAlerts(place_);
  clock_.advance(10min - 1ms);
  EXPECT_EQ(only(gov.fetchAlerts(place_)).insteadOf, "first");
  EXPECT_THAT(asked(), ElementsAre(1, 1, 0));
  clock_.advance(1ms);
  gov.fetchAlerts(place_);
  EXPECT_THAT(asked(), ElementsAre(2, 2, 0));
}

TEST_F(WarningRouting, AsksAgainAtOnceWhereNobodyAnswered) {
  first_.answer = failing(kNoNetwork);
  second_.answer = failing(kNoNetwork);
  GovAlertService gov = service();
  gov.fetchAlerts(place_);
  first_.answer = saying("storm");
  EXPECT_THAT(titles(gov.fetchAlerts(place_)), ElementsAre("storm"));
  EXPECT_THAT(asked(), ElementsAre(2, 1, 0));
}

TEST_F(WarningRouting, AsksTheChosenSourceAtOnce) {
  GovAlertService gov = service();
  gov.fetchAlerts(place_);
  chosen_ = "own";
  EXPECT_EQ(only(gov.fetchAlerts(place_)).source, "own");
  EXPECT_EQ(only(gov.keptAlerts(place_)).source, "own");
  chosen_.clear();
  EXPECT_EQ(only(gov.fetchAlerts(place_)).source, "first");
  EXPECT_THAT(asked(), ElementsAre(1, 0, 1)) << "the usual one rests";
}

TEST_F(WarningRouting, KeepsToTheNamesThatAreGiven) {
  GovAlertService gov = service();
  EXPECT_EQ(only(gov.fetchAlerts(place_, {"second"})).source, "second");
  EXPECT_EQ(only(gov.fetchAlerts(place_, {"own", "other"})).source, "own") << "possible, though not usual";
  EXPECT_THAT(gov.fetchAlerts(place_, {"other"}).sources, IsEmpty());
  EXPECT_THAT(asked(), ElementsAre(0, 1, 1));
}

TEST_F(WarningRouting, KnowsAfterARestartWhoAnswered) {
  first_.answer = failing(kBroken);
  second_.answer = saying("storm");
  service().fetchAlerts(place_);
  GovAlertService restarted = service();
  GovAlerts const kept = restarted.keptAlerts(place_);
  EXPECT_THAT(titles(kept), ElementsAre("storm"));
  EXPECT_EQ(only(kept).insteadOf, "first");
  restarted.fetchAlerts(place_);
  EXPECT_THAT(asked(), ElementsAre(1, 2, 0)) << "a new program asks, yet not whom another one found broken";
}

TEST_F(WarningRouting, TakesWarningsFromWhoKnewNothingOfTheCountry) {
  GovSourceAnswer blind;
  blind.isBlind = true;
  first_.answer = second_.answer = blind;
  GovAlertService gov = service();
  EXPECT_FALSE(gov.fetchAlerts(place_).isCovered());
  clock_.advance(10min);
  blind.alerts = {alert("storm")};
  first_.answer = blind;
  EXPECT_EQ(only(gov.fetchAlerts(place_)).state, CoverageState::warnings);
}

/// Each step is a failure; the program is another one every time.
TEST_F(WarningRouting, AsksMoreAndMoreSeldomAfterFailures) {
  first_.answer = failing(kBroken);
  chosen_ = "own";
  own_.answer = failing(kBroken);
  int questions = 0;
  for (auto const rest : {10min, 20min, 40min, 60min, 60min}) {
    service().fetchAlerts(place_);
    EXPECT_EQ(own_.asked, ++questions) << rest;
    clock_.advance(rest - 1ms);
    GovAlerts const failed = service().fetchAlerts(place_);
    EXPECT_EQ(own_.asked, questions) << rest;
    EXPECT_EQ(only(failed).reason->nextTry, clock_.now() + 1ms);
    EXPECT_EQ(only(failed).since, kNow);
    clock_.advance(1ms);
  }
  own_.answer = GovSourceAnswer{};
  service().fetchAlerts(place_);
  clock_.advance(10min);
  own_.answer = failing(kBroken);
  service().fetchAlerts(place_);
  clock_.advance(10min);
  service().fetchAlerts(place_);
  EXPECT_EQ(own_.asked, questions + 3) << "an answer ends the row";
  clock_.set(kNow - 24h);
  service().fetchAlerts(place_);
  EXPECT_EQ(own_.asked, questions + 4) << "a clock that was set back holds nobody up";
}

TEST_F(WarningRouting, HandsOnWhatWasCalledOff) {
  GovSourceAnswer answer;
  answer.calledOff = {alert("storm")};
  second_.answer = answer;
  first_.answer = failing(kBroken);
  EXPECT_EQ(service().fetchAlerts(place_).calledOff.size(), 1);
}

}  // namespace
}  // namespace nimbara
