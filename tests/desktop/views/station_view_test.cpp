#include "desktop/views/stations/station_view.h"

#include "desktop/offscreen.h"
#include "desktop/states/station_states.h"
#include "desktop/views/now/now_view.h"
#include "desktop/views/stations/observed_view.h"
#include "desktop/window/models/station_model.h"
#include "feeds/stations/station_shown.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::contextAt;
using test::kNow;
using test::stationDesk;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

std::shared_ptr<EngineSnapshot> snapshot() {
  return test::withStation(test::snapshotOf(test::stateOf(test::mildWeek())));
}

TEST(StationPageView, SaysWhatIsMeasuredAndWhatIsSilent) {
  auto const shown = snapshot();
  StationView const view = stationView(stationDesk(), *shown, contextAt(kNow));
  EXPECT_TRUE(view.isLinked);
  EXPECT_EQ(view.name, "Home");
  EXPECT_EQ(view.live, "From your station, 4 min ago");
  EXPECT_THAT(view.doubts, ElementsAre("Rain gauge does not answer."));
  EXPECT_EQ(view.problem, "");
  auto const modules = stationModuleViews(stationDesk(), *shown, contextAt(kNow));
  ASSERT_EQ(modules.size(), 2U);
  EXPECT_EQ(modules[0].sentence, "Balcony, 11.4 °C  ·  81 %, 4 min ago, battery low, 14%");
  EXPECT_TRUE(modules[0].isTroubled);
  EXPECT_EQ(modules[1].sentence, "Rain gauge, no reading, battery 80%");
  EXPECT_TRUE(modules[1].isTroubled);
}

struct DeskRow {
  std::string_view name;
  std::function<void(StationDesk&)> change;
  std::string problem;
  std::string note;
  bool isTroubled = false;
};

TEST(StationPageView, SaysEveryState) {
  using Outcome = LinkEnd::Outcome;
  auto const ended = [](Outcome outcome, std::string const& reason = {}) {
    return [outcome, reason](StationDesk& desk) { desk.end = LinkEnd{.outcome = outcome, .reason = reason}; };
  };
  for (DeskRow const& row : {
           DeskRow{"linked", ended(Outcome::linked), "", "Your weather station is linked."},
           {"refused", ended(Outcome::refused, "access_denied"), "",
            "Not linked: the consent was refused (access_denied).", true},
           {"late", ended(Outcome::late), "", "Not linked: nobody came back from the browser in time.", true},
           {"cancelled", ended(Outcome::cancelled), "", "Not linked: cancelled.", true},
           {"the disk", [](StationDesk& desk) { desk.problem = "the disk is full"; }, "",
            "The link could not be changed: the disk is full.", true},
           {"not linked", [](StationDesk& desk) { desk.reading = {}; }, "No weather station is linked.", ""},
           {"sign in",
            [](StationDesk& desk) {
              desk.reading.state = StationState::signInAgain;
              desk.reading.problem = StationProblem::of(StationProblem::Kind::signInAgain);
            },
            "Netatmo asks you to sign in again. Nothing is asked until then.", ""},
           {"too many",
            [](StationDesk& desk) {
              desk.reading.state = StationState::failed;
              desk.reading.problem = StationProblem::of(StationProblem::Kind::tooMany);
            },
            "Netatmo has had too many requests; it is asked again in an hour.", ""},
           {"no station", [](StationDesk& desk) { desk.reading.stations.clear(); },
            "The account has no station that measures outdoors.", ""},
           {"few public ones",
            [](StationDesk& desk) {
              desk.reading.stations.clear();
              desk.reading.kind = StationLinkKind::around;
            },
            "Too few public stations measure there at present.", ""},
           {"the public one is gone",
            [](StationDesk& desk) {
              desk.reading.kind = StationLinkKind::around;
              desk.reading.chosen = "x";
            },
            "The chosen public station sends nothing at present.", ""},
       }) {
    StationDesk desk = stationDesk();
    row.change(desk);
    StationView const view = stationView(desk, *snapshot(), contextAt(kNow));
    EXPECT_EQ(view.problem, row.problem) << row.name;
    EXPECT_EQ(view.note, row.note) << row.name;
    EXPECT_EQ(view.isTroubled, row.isTroubled) << row.name;
  }
}

TEST(StationPageView, ListsWhatCanBeChosen) {
  StationDesk desk = stationDesk();
  auto const choices = stationChoiceViews(desk, contextAt(kNow));
  ASSERT_EQ(choices.size(), 2U);
  EXPECT_TRUE(choices[0].isChosen);
  EXPECT_FALSE(choices[1].isChosen);
  auto around = publicStationViews(desk, contextAt(kNow));
  ASSERT_EQ(around.size(), 3U);
  EXPECT_THAT(around[1].sentence, AllOf(HasSubstr("1.1 km N of Testville"), HasSubstr("12.0 °C")));
  StationView const view = stationView(desk, *snapshot(), contextAt(kNow));
  EXPECT_EQ(view.around, "Within 5.0 km of Testville. Used for the median: 3, left out: 0.");
  EXPECT_TRUE(view.hasMedian);
  EXPECT_FALSE(view.isMedian);
  desk.reading.kind = StationLinkKind::around;
  desk.reading.chosen = "p1";
  around = publicStationViews(desk, contextAt(kNow));
  EXPECT_TRUE(around[1].isChosen);
  EXPECT_FALSE(around[0].isChosen);
  EXPECT_FALSE(view.isAround);
  EXPECT_TRUE(stationView(desk, *snapshot(), contextAt(kNow)).isAround) << "the way back to the account's";
  desk.hasAccount = false;
  EXPECT_EQ(stationView(desk, *snapshot(), contextAt(kNow)).lookAround, "");
}

TEST(StationPageView, NothingOfAStationElsewhere) {
  auto shown = snapshot();
  WeatherState state = *shown->weather;
  StationShown moved = *state.station;
  moved.isElsewhere = true;
  moved.values.clear();
  state.station = std::make_shared<StationShown const>(std::move(moved));
  shown->weather = std::make_shared<WeatherState const>(std::move(state));
  EXPECT_THAT(stationView(stationDesk(), *shown, contextAt(kNow)).elsewhere,
              HasSubstr("does not stand near Testville"));
}

TEST(StationMarks, AreOnTheValuesThatAreTheStations) {
  WeatherState const state = *snapshot()->weather;
  NowView const now = nowView(state, Place{}, contextAt(kNow));
  EXPECT_EQ(now.mark, "From your station, 4 min ago");
  EXPECT_EQ(now.station, "From your station, 4 min ago\nRain gauge does not answer.");
  for (TileView const& tile : tileViews(state, contextAt(kNow)))
    EXPECT_EQ(tile.mark.empty(), tile.kind != "humidity") << tile.kind;
  WeatherState const plain = test::stateOf(test::mildWeek());
  EXPECT_EQ(nowView(plain, Place{}, contextAt(kNow)).mark, "");
  for (TileView const& tile : tileViews(plain, contextAt(kNow))) EXPECT_EQ(tile.mark, "") << tile.kind;
}

TEST(ObservedLine, WidensTheChartByWhatWasMeasured) {
  WeatherData const data = test::mildWeek();
  ViewContext const context = contextAt(kNow);
  Meteogram const plain = meteogramOf(data, context);
  Meteogram chart = plain;
  addObserved(chart, data, {}, context);
  EXPECT_EQ(chart, plain);
  chart.usual.push_back({1, 0, 1});
  std::vector<StationSample> samples;
  for (int hour = 30; hour >= 0; --hour)
    samples.push_back({.at = kNow - std::chrono::hours(hour), .temperature = hour == 0 ? -22.0 : 11.4});
  addObserved(chart, data, samples, context);
  EXPECT_EQ(chart.hours, plain.hours + 30);
  EXPECT_EQ(chart.usual.front().x, 31);
  ASSERT_EQ(chart.observed.size(), samples.size());
  EXPECT_NEAR(chart.now, 30 + 20.0 / 60, 1e-9);
  EXPECT_NEAR(chart.observed.back().x, chart.now, 1e-9);
  EXPECT_LE(chart.temperature.from, -22);
  // The forecast begins with the midnight before.
  EXPECT_EQ(chart.points.size(), plain.points.size() + 12);
  EXPECT_EQ(chart.points.front().x, 18);
  EXPECT_THAT(chart.points.front().readings, HasSubstr("11.4 °C measured"));
  EXPECT_THAT(chart.points.back().readings, testing::Not(HasSubstr("measured")));
  EXPECT_EQ(chart.days.front().x, 0);
  EXPECT_TRUE(std::ranges::is_sorted(chart.points, {}, &MeteogramPoint::x));
}

TEST(ObservedLine, GoesBackTwoDaysAtMost) {
  WeatherData const data = test::mildWeek();
  Meteogram chart = meteogramOf(data, contextAt(kNow));
  double const hours = chart.hours;
  addObserved(chart, data,
              {{.at = kNow - std::chrono::hours(90), .temperature = 4}, {.at = kNow, .temperature = 5}},
              contextAt(kNow));
  EXPECT_EQ(chart.hours, hours + 48);
  EXPECT_EQ(chart.observed.size(), 1U);
}

/// An engine that tells what it is given.
struct ScriptedStations final : StationActions {
  void follow(Listener wanted) override { listener = std::move(wanted); }
  void look() override { ++looks; }
  void linkAccount(std::string id, std::string secret, std::string token) override {
    asked = id + "|" + secret + "|" + token;
  }

  Listener listener;
  int looks = 0;
  std::string asked;
};

struct StationModelTest : test::OffscreenTest {};

TEST_F(StationModelTest, ShowsWhatTheEngineTells) {
  ScriptedStations engine;
  StationModel model(engine, nullptr);
  auto const shown = snapshot();
  auto const show = [&] { model.show(*shown, contextAt(kNow)); };
  QObject::connect(&model, &StationModel::changed, &model, show);
  int linked = 0;
  QObject::connect(&model, &StationModel::linked, &model, [&linked] { ++linked; });
  show();
  EXPECT_EQ(engine.looks, 0) << "nobody has opened the page";
  model.open();
  model.open();
  EXPECT_EQ(engine.looks, 2);
  StationDesk desk = stationDesk();
  desk.end = LinkEnd{};
  engine.listener(desk);
  engine.listener(desk);
  EXPECT_EQ(model.choices()->count(), 0) << "the engine's threads are not the window's";
  QCoreApplication::processEvents();
  EXPECT_EQ(model.choices()->count(), 2);
  EXPECT_EQ(model.modules()->count(), 2);
  EXPECT_EQ(linked, 1);
  model.linkAccount(QStringLiteral(" id "), QStringLiteral("secret"), QString());
  EXPECT_EQ(engine.asked, "id|secret|");
}

}  // namespace
}  // namespace nimbara
