#include "desktop/views/hazards/sources_view.h"

#include "desktop/states/hazard_states.h"
#include "desktop/window/models/sources_model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr Coordinate kMarienfelde{52.52, 13.41};
constexpr Coordinate kTokyo{35.69, 139.69};

SourceCoverage checked(std::string source, CoverageState state) {
  SourceCoverage coverage;
  coverage.source = source;
  coverage.service = warningServiceName(source);
  coverage.state = state;
  coverage.checkedAt = kNow - std::chrono::minutes(5);
  coverage.country = "JP";
  return coverage;
}

/// One saved place and what is known of it.
SourceView only(Coordinate coordinate, std::optional<SourceCoverage> coverage, std::string chosen = {}) {
  EngineSnapshot snapshot;
  snapshot.places.places = {savedPlace("There", coordinate)};
  if (!chosen.empty()) snapshot.places.places[0].warningSource = chosen;
  HazardsState hazards;
  if (coverage) hazards.places = {{coordinate, {*coverage}, {}}};
  snapshot.hazards = shared(std::move(hazards));
  auto const views = sourceViews(snapshot, contextAt(kNow));
  EXPECT_EQ(views.size(), 1U);
  return views.empty() ? SourceView() : views.front();
}

struct SourceRow {
  char const* name;
  CoverageState state;
  char const* shown;
  char const* words;
  char const* next = "FOSS Public Alert Server";
};

struct SourceStates : testing::TestWithParam<SourceRow> {};

TEST_P(SourceStates, AreToldApart) {
  SourceCoverage coverage = checked("wmo", GetParam().state);
  if (GetParam().state == CoverageState::unchecked) coverage.since = kNow - std::chrono::hours(1);
  SourceView const view = only(kTokyo, coverage);
  EXPECT_EQ(view.state, GetParam().shown);
  EXPECT_EQ(view.stateText, GetParam().words);
  EXPECT_EQ(view.service, "WMO Severe Weather Information Centre");
  EXPECT_EQ(view.checked, "12:15  ·  5 min ago");
  EXPECT_THAT(view.lacks, HasSubstr("Not every country takes part\n"));
  EXPECT_EQ(view.next, GetParam().next);
  EXPECT_THAT(view.sentence, HasSubstr(std::string("There, ") + GetParam().words + ", WMO"));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SourceStates,
    testing::Values(SourceRow{"warnings", CoverageState::warnings, "warnings", "Warnings in effect"},
                    SourceRow{"none", CoverageState::none, "none", "No warnings"},
                    SourceRow{"unchecked", CoverageState::unchecked, "unchecked", "Could not be checked", ""},
                    SourceRow{"unplaced", CoverageState::unplaced, "countryWide", "For the whole country"},
                    SourceRow{"uncovered", CoverageState::uncovered, "uncovered", "No official source", ""}),
    [](auto const& row) { return std::string(row.param.name); });

TEST(Sources, SayWhoWillBeAskedBeforeAnybodyWas) {
  SourceView const view = only(kTokyo, {});
  EXPECT_EQ(view.state, "asking");
  EXPECT_EQ(view.checked, "None so far");
  EXPECT_EQ(view.service, "WMO Severe Weather Information Centre");
}

TEST(Sources, AreBeingCheckedWhereNothingIsKnownOfNow) {
  EngineSnapshot snapshot;
  SourceCoverage part = checked("wmo", CoverageState::unplaced);
  part.areas = {"North (Gale)"};
  SourceCoverage old = checked("wmo", CoverageState::none);
  old.checkedAt = kNow - kCoverageTrust - std::chrono::minutes(1);
  snapshot.places.places = {savedPlace("New", {1, 2}), savedPlace("Old", kTokyo),
                            savedPlace("Known", kMarienfelde)};
  HazardsState hazards;
  hazards.isCheckingPlaces = true;
  hazards.places = {{kTokyo, {old}, {}}, {kMarienfelde, {part}, {}}};
  snapshot.hazards = shared(hazards);
  std::vector<std::string> states;
  for (SourceView const& view : sourceViews(snapshot, contextAt(kNow))) states.push_back(view.stateText);
  EXPECT_THAT(states, ElementsAre("Checking…", "Checking…", "Could not be located"));
}

TEST(Sources, SayWhoAnsweredInsteadAndThatNobodyFollows) {
  SourceCoverage coverage = checked("fpas", CoverageState::none);
  coverage.insteadOf = "wmo";
  coverage.insteadReason = ServiceFailure::answered(503);
  SourceView const view = only(kTokyo, coverage);
  EXPECT_EQ(view.service, "FOSS Public Alert Server");
  EXPECT_THAT(view.detail, HasSubstr("because WMO Severe Weather Information Centre was unavailable"));
  EXPECT_THAT(view.next, HasSubstr("The last known warnings stay"));
}

TEST(Sources, AreOldAfterAWhile) {
  SourceCoverage coverage = checked("wmo", CoverageState::none);
  coverage.checkedAt = kNow - kCoverageTrust - std::chrono::minutes(1);
  EXPECT_EQ(only(kTokyo, coverage).state, "unchecked");
}

TEST(Sources, OfferTheUsualOneFirst) {
  SourceView const usual = only(kMarienfelde, {});
  ASSERT_GE(usual.values.size(), 2U);
  EXPECT_EQ(usual.labels.size(), usual.values.size());
  EXPECT_EQ(usual.values[0], "usual");
  EXPECT_EQ(usual.labels[0], "MeteoAlarm (usual)");
  EXPECT_EQ(usual.chosen, "usual");
  SourceView const chosen = only(kMarienfelde, {}, "brightsky");
  EXPECT_EQ(chosen.chosen, "brightsky");
  EXPECT_EQ(chosen.service, "Deutscher Wetterdienst");
}

TEST(Sources, HaveTheCurrentLocationFirstAndWithoutAChoice) {
  auto const snapshot = snapshotOf(stateOf(mildWeek()));
  snapshot->places.selected = kCurrentLocation;
  snapshot->place = Place{kMarienfelde, "Berlin", "Germany", "Berlin"};
  auto const views = sourceViews(*snapshot, contextAt(kNow));
  ASSERT_EQ(views.size(), snapshot->places.places.size() + 1);
  EXPECT_EQ(views[0].place, "Berlin");
  EXPECT_THAT(views[0].values, IsEmpty());
}

struct Chosen : EngineActions {
  void chooseWarningSource(Uuid place, std::string name) override { asked.push_back(place.text() + name); }
  void lookAtSources() override { ++looks; }
  std::vector<std::string> asked;
  int looks = 0;
};

TEST(Sources, AreListedFromWhenThePageIsOpenAndPassChoicesOn) {
  Chosen engine;
  SourcesModel model(engine, nullptr);
  auto const snapshot = snapshotOf(stateOf(mildWeek()));
  model.show(*snapshot, contextAt(kNow));
  EXPECT_EQ(model.places()->count(), 0);
  model.open();
  model.show(*snapshot, contextAt(kNow));
  EXPECT_EQ(model.places()->count(), 2);
  model.open();
  EXPECT_EQ(engine.looks, 2) << "each time that the page is opened";
  std::string const id = snapshot->places.places[0].id.text();
  model.choose(QString::fromStdString(id), QStringLiteral("fpas"));
  model.choose(QStringLiteral("nowhere"), QStringLiteral("fpas"));
  EXPECT_THAT(engine.asked, ElementsAre(id + "fpas"));
}

}  // namespace
}  // namespace nimbara
