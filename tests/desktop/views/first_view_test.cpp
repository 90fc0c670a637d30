#include "desktop/views/places/first_view.h"

#include "app/settings/settings_registry.h"
#include "desktop/states/settings_states.h"
#include "desktop/states/states.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::HasSubstr;
using testing::Not;

TEST(Welcome, SaysWhatWorksWithoutANetwork) {
  EngineSnapshot snapshot;
  EXPECT_EQ(welcomeView(snapshot, contextAt(kNow)).notice, "");
  snapshot.isOffline = true;
  EXPECT_THAT(welcomeView(snapshot, contextAt(kNow)).notice, HasSubstr("already choose a place"));
}

struct LocatingRow {
  LocationPhase phase;
  char const* said;
  bool isLocating;
  bool isTroubled;
};

TEST(Welcome, SaysWhatBecomesOfTheLocation) {
  for (LocatingRow const& row :
       {LocatingRow{LocationPhase::idle, "", false, false},
        LocatingRow{LocationPhase::asking, "Finding your location", true, false},
        LocatingRow{LocationPhase::denied, "not allowed", false, true},
        LocatingRow{LocationPhase::unavailable, "could not be found", false, true}}) {
    EngineSnapshot snapshot;
    snapshot.location.phase = row.phase;
    WelcomeView const view = welcomeView(snapshot, contextAt(kNow));
    EXPECT_THAT(view.locating, HasSubstr(row.said));
    EXPECT_EQ(view.locating.empty(), std::string_view(row.said).empty());
    EXPECT_EQ(view.isLocating, row.isLocating) << row.said;
    EXPECT_EQ(view.isTroubled, row.isTroubled) << row.said;
  }
}

TEST(WelcomeSources, NameWhoIsAskedWithoutAKey) {
  auto const sources = welcomeSources(false, contextAt(kNow));
  ASSERT_FALSE(sources.empty());
  EXPECT_EQ(sources[0].names, "Open-Meteo.com, MET Norway and wttr.in");
  EXPECT_THAT(sources[1].names, HasSubstr("MeteoAlarm"));
  for (WelcomeSource const& source : sources) {
    EXPECT_NE(source.names, "") << source.purpose;
    EXPECT_THAT(source.names, Not(HasSubstr("Apple")));
    EXPECT_THAT(source.names, Not(HasSubstr("FIRMS")));
  }
  EXPECT_THAT(welcomeSources(true, contextAt(kNow))[0].names, HasSubstr("Apple Weather"));
}

struct ArrivalRow {
  char const* name;
  bool hasPlace;
  bool hasWeather;
  std::optional<AppError> error;
  char const* phase;
};

TEST(Arrival, IsWhatThePageShowsWithoutAForecast) {
  AppError const offline{AppError::Case::offline, {}};
  AppError const fault{AppError::Case::networkError, "the service has a fault"};
  AppError const nowhere{AppError::Case::noLocation, {}};
  for (ArrivalRow const& row :
       {ArrivalRow{"no place", false, false, nowhere, ""}, ArrivalRow{"asked", true, false, {}, "loading"},
        ArrivalRow{"before it is asked", true, false, nowhere, "loading"},
        ArrivalRow{"offline", true, false, offline, "offline"},
        ArrivalRow{"fault", true, false, fault, "failed"},
        ArrivalRow{"an older forecast", true, true, offline, ""},
        ArrivalRow{"all is well", true, true, {}, ""}}) {
    WeatherState state = row.hasWeather ? stateOf(mildWeek()) : WeatherState();
    state.error = row.error;
    auto const snapshot = snapshotOf(state);
    if (!row.hasPlace) snapshot->place.reset();
    EXPECT_EQ(arrivalView(*snapshot, contextAt(kNow)).phase, row.phase) << row.name;
  }
}

TEST(Arrival, NamesThePlacesWhoseForecastsAreKept) {
  WeatherState state;
  state.error = AppError{AppError::Case::offline, {}};
  auto const snapshot = snapshotOf(state);
  auto const text = [&] { return arrivalView(*snapshot, contextAt(kNow)).text; };
  EXPECT_THAT(text(), Not(HasSubstr("Saved forecasts")));
  auto const kept = std::make_shared<WeatherData const>(mildWeek());
  snapshot->kept[snapshot->places.places[1].id] = kept;
  EXPECT_THAT(text(), testing::EndsWith("Saved forecasts are available for Elsewhere."));
  snapshot->kept[snapshot->places.places[0].id] = kept;
  EXPECT_THAT(text(), testing::EndsWith("Saved forecasts are available for Testville and Elsewhere."));
}

std::shared_ptr<EngineSnapshot> withWatch(WatchStart watch, SettingValues stored = {}) {
  auto snapshot = snapshotOf(stateOf(mildWeek()));
  SettingsState settings = settingsWith(std::move(stored));
  settings.watch = watch;
  snapshot->settings = std::make_shared<SettingsState const>(std::move(settings));
  return snapshot;
}

std::string phaseOf(EngineSnapshot const& snapshot, bool isAnswered = false) {
  return backgroundView(snapshot, isAnswered, contextAt(kNow)).phase;
}

TEST(Background, IsAskedOnceAndOnlyWhereItChangesSomething) {
  EXPECT_EQ(phaseOf(*withWatch(WatchStart::byHand)), "question");
  EXPECT_EQ(phaseOf(*withWatch(WatchStart::byHand, {{std::string(kAskedBackgroundSetting), true}})), "");
  for (WatchStart const watch : {WatchStart::atLogin, WatchStart::fromNextLogin, WatchStart::changedByHand}) {
    EXPECT_EQ(phaseOf(*withWatch(watch)), "") << enumName(watch);
  }
  auto const waiting = withWatch(WatchStart::byHand);
  waiting->weather = std::make_shared<WeatherState const>();
  EXPECT_EQ(phaseOf(*waiting), "") << "first the weather";
  ViewContext demo = contextAt(kNow);
  demo.standIn = "http://127.0.0.1:8080";
  EXPECT_EQ(backgroundView(*withWatch(WatchStart::byHand), false, demo).phase, "");
}

TEST(Background, CannotBeAskedWhereNothingCanBeInstalled) {
  auto const snapshot = withWatch(WatchStart::byHand);
  SettingsState settings = *snapshot->settings;
  settings.canChangeWatch = false;
  snapshot->settings = std::make_shared<SettingsState const>(std::move(settings));
  EXPECT_EQ(phaseOf(*snapshot), "");
}

TEST(Background, TellsWhatBecameOfTheAnswer) {
  auto const changed = [](WatchStart watch, bool isChanging, std::string problem) {
    auto snapshot = withWatch(watch);
    SettingsState settings = *snapshot->settings;
    settings.isWatchChanging = isChanging;
    settings.watchProblem = std::move(problem);
    snapshot->settings = std::make_shared<SettingsState const>(std::move(settings));
    return snapshot;
  };
  EXPECT_EQ(phaseOf(*changed(WatchStart::byHand, false, ""), true), "working") << "before the engine begins";
  EXPECT_EQ(phaseOf(*changed(WatchStart::byHand, true, ""), true), "working");
  EXPECT_EQ(phaseOf(*changed(WatchStart::byHand, true, "an older fault"), true), "working");
  EXPECT_EQ(phaseOf(*changed(WatchStart::byHand, false, "no systemctl"), true), "failed");
  EXPECT_THAT(backgroundView(*changed(WatchStart::byHand, false, "no systemctl"), true, contextAt(kNow)).text,
              HasSubstr("no systemctl"));
  EXPECT_EQ(phaseOf(*changed(WatchStart::atLogin, false, ""), true), "done");
  EXPECT_THAT(backgroundView(*changed(WatchStart::fromNextLogin, false, ""), true, contextAt(kNow)).text,
              HasSubstr("next login"));
}

}  // namespace
}  // namespace nimbara
