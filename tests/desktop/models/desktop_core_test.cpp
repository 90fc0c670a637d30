#include "app/engine/clocks/held_runner.h"
#include "app/engine/engine.h"
#include "app/engine/engine_options.h"
#include "app/settings/settings_registry.h"
#include "desktop/core/snapshot_box.h"
#include "desktop/states/states.h"
#include "model/weather_cache.h"
#include "platform/linux/store/sqlite_settings_store.h"
#include "support/manual_runner.h"
#include "support/paths.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cstdlib>

namespace nimbara {
namespace {

using namespace nimbara::test;
using std::chrono::seconds;

constexpr seconds kLong{20};

/// A user's folders with two places, the second one selected, and a cached forecast of each.
struct Core : testing::Test {
  Core() {
    environment.program = test::kProgram;
    environment.dataDirectory = folder.path() / "data";
    environment.cacheDirectory = folder.path() / "cache";
    SqliteSettingsStore store(environment.dataDirectory, settingsRegistry());
    auto const saved = Places(store).change([](PlaceList& list) -> PlaceResult {
      std::ignore = addPlace(list, savedPlace("Oslo", {59.91, 10.75}));
      std::ignore = addPlace(list, savedPlace("Quito", {-0.18, -78.47}));
      return selectPlace(list, list.places[1].id);
    });
    EXPECT_TRUE(saved);
    FixedClock const clock(kNow);
    WeatherCache cache(environment.cacheDirectory, clock, WeatherCache::Source::standIn);
    for (Coordinate const place : {Coordinate{59.91, 10.75}, Coordinate{-0.18, -78.47}}) {
      cache.store(cacheKey(place), {kNow, mildWeek(), {}, WeatherProviderOption::openMeteo, {}});
    }
  }

  /// Nobody listens at the services' address.
  static Engine::Options optionsOf(std::string place, bool waitsForWindow) {
    Engine::Options options;
    options.services = "http://127.0.0.1:9";
    options.now = kNow;
    options.place = std::move(place);
    options.waitsForWindow = waitsForWindow;
    return options;
  }
  std::unique_ptr<Engine> start(std::string place = {}, bool waitsForWindow = false) {
    return std::make_unique<Engine>(environment, optionsOf(std::move(place), waitsForWindow),
                                    [this](SnapshotBox::Snapshot snapshot) {
                                      if (!first) first = snapshot;
                                      box.put(std::move(snapshot));
                                    });
  }
  /// Takes snapshots until one is as wanted.
  SnapshotBox::Snapshot waitFor(std::function<bool(EngineSnapshot const&)> const& isWanted) {
    while (auto snapshot = box.take(kLong)) {
      if (isWanted(*snapshot)) return snapshot;
    }
    return nullptr;
  }
  static std::string nameOf(EngineSnapshot const& snapshot) {
    return snapshot.place ? snapshot.place->name : "";
  }

  TemporaryFolder folder;
  Environment environment;
  SnapshotBox::Snapshot first;
  SnapshotBox box{[] {}};
};

TEST_F(Core, TheFirstSnapshotHasTheKeptForecast) {
  auto const core = start();
  ASSERT_TRUE(waitFor([](EngineSnapshot const&) { return true; }));
  EXPECT_EQ(nameOf(*first), "Quito");
  ASSERT_TRUE(first->weather->weatherData);
  EXPECT_EQ(first->weather->weatherData->daily.size(), mildWeek().daily.size());
}

TEST_F(Core, TheFirstSnapshotIsOfThePlaceThatWasAskedFor) {
  auto const core = start("oslo");
  ASSERT_TRUE(waitFor([](EngineSnapshot const&) { return true; }));
  EXPECT_EQ(nameOf(*first), "Oslo");
  EXPECT_TRUE(first->weather->weatherData);
}

TEST_F(Core, ChoosesAmongThePlacesThatItBeginsWith) {
  environment.dataDirectory = folder.path() / "fresh";
  auto options = optionsOf("Lima", false);
  options.places = {savedPlace("Oslo", {59.91, 10.75}), savedPlace("Lima", {-12.05, -77.04})};
  Engine const core(environment, std::move(options), [this](SnapshotBox::Snapshot snapshot) {
    if (!first) first = std::move(snapshot);
    box.put(first);
  });
  ASSERT_TRUE(waitFor([](EngineSnapshot const&) { return true; }));
  EXPECT_EQ(nameOf(*first), "Lima");
}

TEST_F(Core, ChoosesAPlaceByWhatItIsCalled) {
  auto const core = start();
  std::string const id = savedPlace("Oslo", {}).id.text();
  for (std::string const& text : {std::string("OSLO"), id, std::string("59.91,10.75")}) {
    core->choosePlace("Quito");
    ASSERT_TRUE(waitFor([](EngineSnapshot const& snapshot) { return nameOf(snapshot) == "Quito"; })) << text;
    core->choosePlace(text);
    auto const chosen = waitFor([](EngineSnapshot const& snapshot) { return nameOf(snapshot) == "Oslo"; });
    ASSERT_TRUE(chosen) << text;
    EXPECT_EQ(chosen->unknownPlace, "");
  }
  core->choosePlace("Zzyzxqw");
  auto const kept = waitFor([](EngineSnapshot const& snapshot) { return !snapshot.unknownPlace.empty(); });
  ASSERT_TRUE(kept);
  EXPECT_EQ(kept->unknownPlace, "Zzyzxqw");
  EXPECT_FALSE(kept->problem.has_value());
  EXPECT_EQ(nameOf(*kept), "Oslo");
}

TEST_F(Core, ShowsAPlaceThatIsNotSavedAndRemembersNone) {
  for (std::string const& text : {std::string("-13.83,-171.77"), std::string("Apia"), std::string("Oslo")}) {
    first.reset();
    while (box.take(seconds(0))) {
    }
    auto options = optionsOf(text, false);
    options.leavesNoTrace = true;
    Engine const core(environment, std::move(options), [this](SnapshotBox::Snapshot snapshot) {
      if (!first) first = snapshot;
      box.put(std::move(snapshot));
    });
    ASSERT_TRUE(waitFor([](EngineSnapshot const&) { return true; }));
    EXPECT_EQ(nameOf(*first), text == "Oslo" ? "Oslo" : "Apia") << text;
    FixedClock const clock(kNow);
    EXPECT_FALSE(WeatherCache(environment.cacheDirectory, clock).loadLastLocation()) << text;
  }
  SqliteSettingsStore store(environment.dataDirectory, settingsRegistry());
  auto const list = Places(store).list();
  ASSERT_TRUE(list);
  EXPECT_EQ(list->places.size(), 2U);
  EXPECT_EQ(list->find(*list->selected)->name, "Quito") << "looking at a place selects none";
}

TEST_F(Core, SaysThatItKnowsNoSuchPlace) {
  std::atomic<bool> isSaid = false;
  auto options = optionsOf("Zzyzxqw", false);
  options.onUnknownPlace = [&](std::string const& place) { isSaid = place == "Zzyzxqw"; };
  Engine const core(environment, std::move(options),
                    [this](SnapshotBox::Snapshot snapshot) { box.put(std::move(snapshot)); });
  auto const shown = waitFor([](EngineSnapshot const& snapshot) { return !snapshot.unknownPlace.empty(); });
  ASSERT_TRUE(shown);
  EXPECT_EQ(nameOf(*shown), "Quito");
  EXPECT_TRUE(isSaid);
}

TEST_F(Core, FollowsWhetherClosingHides) {
  auto const core = start();
  ASSERT_TRUE(waitFor([](EngineSnapshot const& snapshot) { return snapshot.closesToTray; }));
  SqliteSettingsStore other(environment.dataDirectory, settingsRegistry());
  ASSERT_TRUE(other.set("desktop_closeToTray", false));
  EXPECT_TRUE(waitFor([](EngineSnapshot const& snapshot) { return !snapshot.closesToTray; }));
}

TEST(HeldRunner, PassesOnInOrderOnceReleased) {
  ManualRunner runner;
  HeldRunner held(runner);
  std::vector<int> done;
  auto const note = [&done](int number) {
    return [&done, number](std::stop_token const&) { done.push_back(number); };
  };
  held.run(note(1));
  held.run(note(2));
  runner.runAll();
  EXPECT_THAT(done, testing::IsEmpty());
  held.release();
  held.release();
  held.run(note(3));
  runner.runAll();
  EXPECT_THAT(done, testing::ElementsAre(1, 2, 3));
}

TEST_F(Core, AsksNobodyBeforeTheWindowIsShown) {
  auto const core = start({}, true);
  auto const begun = waitFor([](EngineSnapshot const& snapshot) { return snapshot.weather->isLoading; });
  ASSERT_TRUE(begun);
  EXPECT_FALSE(begun->weather->error);
  EXPECT_THAT(begun->kept, testing::IsEmpty());
  core->windowIsShown();
  EXPECT_TRUE(waitFor([](EngineSnapshot const& snapshot) {
    return !snapshot.weather->isLoading && snapshot.kept.size() == 2;
  }));
}

TEST(SnapshotBox, HoldsTheNewestAndAnnouncesOnce) {
  int announced = 0;
  SnapshotBox box([&] { ++announced; });
  auto const one = std::make_shared<EngineSnapshot>();
  auto const two = std::make_shared<EngineSnapshot>();
  box.put(one);
  box.put(two);
  EXPECT_EQ(announced, 1);
  EXPECT_EQ(box.take(), two);
  EXPECT_EQ(box.take(), nullptr);
  box.put(one);
  EXPECT_EQ(announced, 2);
  EXPECT_EQ(box.take(), one);
}

}  // namespace
}  // namespace nimbara
