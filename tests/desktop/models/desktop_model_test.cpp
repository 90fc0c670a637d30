#include "desktop/window/models/desktop_model.h"

#include "app/state/supplement_state.h"
#include "desktop/core/desktop_options.h"
#include "desktop/states/hazard_states.h"
#include "desktop/views/now/now_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QSignalSpy>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::ElementsAre;

TEST(RecordListModel, ChangesInPlaceWhatDiffers) {
  RecordListModel model;
  std::vector<FoundView> rows{{"a", "x", false, ""}, {"b", "y", false, ""}};
  model.show(rows);
  QSignalSpy const changes(&model, &QAbstractItemModel::dataChanged);
  QSignalSpy const insertions(&model, &QAbstractItemModel::rowsInserted);
  QSignalSpy const removals(&model, &QAbstractItemModel::rowsRemoved);
  model.show(rows);
  EXPECT_EQ(changes.count() + insertions.count() + removals.count(), 0);
  rows[1].isSaved = true;
  rows.push_back({"c", "z", false, ""});
  model.show(rows);
  ASSERT_EQ(changes.count(), 1);
  EXPECT_EQ(changes[0][0].toModelIndex().row(), 1);
  EXPECT_EQ(insertions.count(), 1);
  model.show(std::vector<FoundView>{rows[0]});
  EXPECT_EQ(removals.count(), 1);
  EXPECT_EQ(model.count(), 1);
}

TEST(RecordListModel, NamesItsRolesAsTheTableDoes) {
  RecordListModel model;
  model.show(std::vector<FoundView>{{"Oslo", "Norway", true, ""}});
  int const role = model.roleNames().key("isSaved");
  EXPECT_EQ(model.data(model.index(0), role), QVariant(true));
  EXPECT_FALSE(model.data(model.index(0), Qt::UserRole + 99).isValid());
  EXPECT_FALSE(model.data(model.index(5), role).isValid());
}

struct ModelTest : testing::Test {
  static DesktopModel::Setting setting() {
    Wording wording;
    return {wording, {}, [] { return kNow; }, {}};
  }

  struct Places : EngineActions {
    explicit Places(std::vector<std::string>& asked) : asked_(asked) {}
    void selectPlace(Uuid id) override { asked_.push_back("select " + id.text()); }
    void addPlace(SavedPlace place) override { asked_.push_back("add " + place.name); }
    void search(std::string text, SearchListener) override { asked_.push_back("search " + text); }
    std::vector<std::string>& asked_;
  };

  std::vector<std::string> asked;
  Places places{asked};
  DesktopModel model{setting(), {.engine = places}};
};

/// Of a place whose feeds have all answered.
WeatherState answeredState() {
  WeatherState state = stateOf(mildWeek());
  SupplementState supplement;
  supplement.advisories.checkedAt = kNow;
  state.supplement = std::make_shared<SupplementState const>(std::move(supplement));
  return state;
}

TEST_F(ModelTest, IsReadyWithTheFirstSnapshotAndSettledWithTheLastRefresh) {
  EXPECT_FALSE(model.isReady());
  WeatherState state = answeredState();
  auto const shownWith = [&](bool isLoading) {
    state.isLoading = isLoading;
    auto snapshot = snapshotOf(state);
    snapshot->hazards = shared(hazardsOf(checkOf(*snapshot->place)));
    model.show(snapshot);
  };
  shownWith(true);
  EXPECT_TRUE(model.isReady());
  EXPECT_FALSE(model.hasSettled());
  shownWith(false);
  EXPECT_TRUE(model.hasSettled());
  EXPECT_EQ(model.now()->value(QStringLiteral("temperature")).toString().toStdString(), "15°");
}

TEST_F(ModelTest, ClosesTheOpenDayWithItsPlace) {
  model.show(snapshotOf(stateOf(mildWeek())));
  model.setOpenDay(1);
  EXPECT_EQ(model.dayHours()->count(), 24);
  model.show(snapshotOf(stateOf(mildWeek()), "Another"));
  EXPECT_EQ(model.openDay(), -1);
  EXPECT_EQ(model.dayHours()->count(), 0);
}

TEST_F(ModelTest, SettlesWhenTheHazardsAreKnownToo) {
  auto const snapshot = snapshotOf(answeredState());
  HazardsState hazards = hazardsOf(checkOf(*snapshot->place));
  hazards.official.isAsking = true;
  snapshot->hazards = shared(hazards);
  model.show(snapshot);
  EXPECT_FALSE(model.hasSettled());
  auto const later = std::make_shared<EngineSnapshot>(*snapshot);
  hazards.official.isAsking = false;
  later->hazards = shared(hazards);
  model.show(later);
  EXPECT_TRUE(model.hasSettled());
  WeatherState asked = answeredState();
  asked.supplement = std::make_shared<SupplementState const>();
  later->weather = std::make_shared<WeatherState const>(asked);
  model.show(std::make_shared<EngineSnapshot>(*later));
  EXPECT_FALSE(model.hasSettled()) << "the place's feeds have not answered";
}

TEST_F(ModelTest, KeepsPointingAtTheSameEarthquake) {
  auto const snapshotWith = [](std::vector<EarthquakeEvent> events) {
    auto snapshot = snapshotOf(stateOf(mildWeek()));
    HazardsState hazards = hazardsOf(checkOf(*snapshot->place));
    hazards.quakes.data = std::move(events);
    snapshot->hazards = shared(std::move(hazards));
    return snapshot;
  };
  auto const old = quakeOf("old", 5, {1, 1}, std::chrono::hours(1));
  auto const gone = quakeOf("gone", 5, {2, 2}, std::chrono::hours(2));
  HazardsModel& hazards = *model.hazards();
  hazards.setOrder(1);
  model.show(snapshotWith({old, gone}));
  hazards.setHighlighted(7);
  EXPECT_EQ(hazards.highlighted(), 1) << "the last there is";
  hazards.setHighlighted(0);
  model.show(snapshotWith({quakeOf("new", 4, {3, 3}, std::chrono::minutes(1)), old, gone}));
  EXPECT_EQ(hazards.highlighted(), 1);
  hazards.setHighlighted(2);
  model.show(snapshotWith({old}));
  EXPECT_EQ(hazards.highlighted(), -1);
  EXPECT_EQ(hazards.highlightedText(), QString());
}

TEST_F(ModelTest, ClosesAWarningsTextWithTheWarning) {
  WeatherState state = stateOf(mildWeek());
  state.govAlerts = {alertOf(AlertSeverity::warning, "Flood")};
  model.show(snapshotOf(state));
  QString const id = QString::fromStdString(state.govAlerts[0].id.text());
  model.setOpenAlert(id);
  EXPECT_EQ(model.openAlert(), id);
  EXPECT_EQ(model.warning()->value(QStringLiteral("content")).toString().toStdString(),
            state.govAlerts[0].message);
  state.govAlerts.clear();
  model.show(snapshotOf(state));
  EXPECT_EQ(model.openAlert(), QString());
}

TEST_F(ModelTest, PassesOverAnswersToOlderQuestions) {
  model.search(QStringLiteral(" Os"));
  model.search(QStringLiteral("Osl"));
  model.showFound("Os", {{"Osaka", "Japan", "JP", "", {34.7, 135.5}, ""}});
  EXPECT_EQ(model.found()->count(), 0);
  model.showFound("Osl", {{"Oslo", "Norway", "NO", "", {59.9, 10.7}, ""}});
  EXPECT_EQ(model.found()->count(), 1);
  EXPECT_THAT(asked, ElementsAre("search Os", "search Osl"));
  model.search(QString());
  EXPECT_EQ(model.found()->count(), 0);
}

TEST_F(ModelTest, AddsWhatIsNewAndSelectsWhatIsSaved) {
  auto const snapshot = snapshotOf(stateOf(mildWeek()));
  model.show(snapshot);
  model.search(QStringLiteral("x"));
  asked.clear();
  model.showFound("x", {{"New", "", "", "", {50, 50}, ""}, {"Old", "", "", "", {10, 20}, ""}});
  for (int const row : {-1, 0, 1, 2}) model.addFound(row);
  EXPECT_THAT(asked, ElementsAre("add New", "select " + snapshot->places.places[1].id.text()));
}

struct SizeRow {
  char const* text;
  std::optional<WindowSize> expected;
};

TEST(WindowSize, IsReadWithinItsBounds) {
  for (SizeRow const& row :
       {SizeRow{"1280x800", WindowSize{1280, 800}}, SizeRow{"200x8000", WindowSize{200, 8000}},
        SizeRow{"199x800", {}}, SizeRow{"1280x8001", {}}, SizeRow{"1280", {}}, SizeRow{"x", {}},
        SizeRow{"1280x800x3", {}}, SizeRow{"-400x400", {}}}) {
    EXPECT_EQ(parseWindowSize(row.text), row.expected) << row.text;
  }
}

struct MistakeRow {
  std::vector<std::string> arguments;
  std::string named;
};

TEST(DesktopOptions, NameWhatIsWrong) {
  for (MistakeRow const& row :
       {MistakeRow{{"--page", "moon"}, "moon"}, MistakeRow{{"--theme", "pink"}, "pink"},
        MistakeRow{{"--size", "big"}, "big"}, MistakeRow{{"--now", "noon"}, "noon"},
        MistakeRow{{"--place", "95,10"}, "95,10"}, MistakeRow{{"--place", "?"}, "?"},
        MistakeRow{{"--what"}, "--what"}, MistakeRow{{"--thme=dark"}, "did you mean --theme?"}}) {
    auto const options = parseDesktopOptions(row.arguments, {});
    ASSERT_FALSE(options) << row.named;
    EXPECT_EQ(options.error().exitCode, 2);
    EXPECT_THAT(options.error().text, testing::HasSubstr(row.named));
  }
}

TEST(DesktopOptions, AreReadWhole) {
  auto const options =
      parseDesktopOptions({"--demo", "--page", "hours", "--theme", "dark", "--size", "640x480", "--now",
                           "2026-11-21T09:20:00Z", "--screenshot", "a.png"},
                          {});
  ASSERT_TRUE(options);
  EXPECT_TRUE(options->demo);
  EXPECT_EQ(options->page, DesktopPage::hours);
  EXPECT_EQ(options->theme, DesktopTheme::dark);
  EXPECT_EQ(options->size, (WindowSize{640, 480}));
  EXPECT_EQ(options->now, at("2026-11-21T09:20:00Z"));
  EXPECT_EQ(options->screenshot, "a.png");
  EXPECT_EQ(parseDesktopOptions({"--help"}, {}).error().exitCode, 0);
}

TEST(DesktopOptions, LeaveTheSessionToTheToolkit) {
  for (std::vector<std::string> const& arguments :
       {std::vector<std::string>{"-session", "2d4c5_17", "--page", "hours"},
        {"--page", "hours", "-session", "2d4c5_17"},
        {"--page", "hours", "-session"}}) {
    auto const options = parseDesktopOptions(arguments, {});
    ASSERT_TRUE(options) << options.error().text;
    EXPECT_EQ(options->page, DesktopPage::hours);
  }
}

}  // namespace
}  // namespace nimbara
