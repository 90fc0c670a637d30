#include "desktop/views/stations/station_view.h"

#include "desktop/window/models/station_model.h"
#include "feeds/stations/station_shown.h"
#include "offscreen.h"
#include "station_states.h"

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
  auto const ended = [](Outcome outcome, std::string reason = {}) {
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
  EXPECT_THAT(around[1].sentence, AllOf(HasSubstr("1.1 km N of Testville"), HasSubstr("12.0 °C")));
  StationView const view = stationView(desk, *snapshot(), contextAt(kNow));
  EXPECT_EQ(view.around, "Within 5.0 km of Testville. Used for the median: 3, left out: 0.");
  EXPECT_TRUE(view.hasMedian);
  EXPECT_FALSE(view.isMedian);
  desk.reading.kind = StationLinkKind::around;
  desk.reading.chosen = "p1";
  around = publicStationViews(desk, contextAt(kNow));
  EXPECT_TRUE(around[1].isChosen);
  EXPECT_FALSE(around[0].isChosen);
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
