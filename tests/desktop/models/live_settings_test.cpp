#include "app/engine/engine.h"
#include "app/engine/engine_options.h"
#include "app/settings/settings_registry.h"
#include "app/state/engine_snapshot.h"
#include "notifications/engine/notification_state.h"
#include "platform/linux/store/sqlite_settings_store.h"
#include "support/instants.h"
#include "support/paths.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>

namespace nimbara {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// The newest snapshot, for whoever waits for a certain one.
class Snapshots {
 public:
  using Snapshot = std::shared_ptr<EngineSnapshot const>;

  void take(Snapshot snapshot) {
    std::lock_guard const lock(mutex_);
    newest_ = std::move(snapshot);
    changed_.notify_all();
  }

  /// Null when none comes within a generous time.
  Snapshot await(std::function<bool(EngineSnapshot const&)> const& isWanted) {
    std::unique_lock lock(mutex_);
    bool const came =
        changed_.wait_for(lock, std::chrono::seconds(30), [&] { return newest_ && isWanted(*newest_); });
    return came ? newest_ : nullptr;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  Snapshot newest_;
};

SavedPlace placeAt(std::string name, Coordinate coordinate) {
  return {Uuid::named(kCurrentLocation, name), std::move(name), "", "", "", coordinate, "UTC"};
}

/// Nothing listens where the services stand in, so that every refresh fails at once.
class LiveSettings : public testing::Test {
 protected:
  LiveSettings() : other_(folder_.path() / "data", settingsRegistry()) {
    environment_.dataDirectory = folder_.path() / "data";
    environment_.cacheDirectory = folder_.path() / "cache";
    environment_.program = test::kProgram;
    environment_.language = "en";
  }

  void start() {
    Engine::Options options;
    options.services = "http://127.0.0.1:1";
    options.now = test::at("2026-11-21T12:00:00Z");
    options.places = {placeAt("One", {10, 10}), placeAt("Two", {20, 20}), placeAt("Three", {30, 30})};
    options.locate = [this](std::stop_token const&) { return location_; };
    options.follow = [this](LocationSource::Moved const& moved, std::stop_token stop) {
      if (movesTo_) moved(*movesTo_);
      std::mutex waiting;
      std::unique_lock lock(waiting);
      std::condition_variable_any().wait(lock, stop, [] { return false; });
      return LocationError{LocationError::Kind::cancelled, ""};
    };
    core_.emplace(environment_, std::move(options),
                  [this](Snapshots::Snapshot snapshot) { snapshots_.take(std::move(snapshot)); });
    EXPECT_TRUE(
        snapshots_.await([](EngineSnapshot const& shown) { return shown.places.places.size() == 3; }));
  }

  static CustomNotification ruleAt(SavedPlace const& place) {
    CustomNotification rule;
    rule.id = Uuid::random();
    rule.title = "Windy";
    rule.isEnabled = true;
    rule.locationID = place.id;
    return rule;
  }

  static std::vector<std::string> namesOf(PlaceList const& list) {
    std::vector<std::string> names;
    for (SavedPlace const& place : list.places) names.push_back(place.name);
    return names;
  }

  test::TemporaryFolder folder_;
  Environment environment_;
  SqliteSettingsStore other_;  // of another process
  Result<LocationFix, LocationError> location_ =
      std::unexpected(LocationError{LocationError::Kind::denied, "no"});
  std::optional<LocationFix> movesTo_;
  Snapshots snapshots_;
  std::optional<Engine> core_;
};

TEST_F(LiveSettings, FollowsUnitsAndLanguageOfOtherProcesses) {
  start();
  ASSERT_TRUE(other_.set("windUnit", std::string("knots")));
  EXPECT_TRUE(snapshots_.await(
      [](EngineSnapshot const& shown) { return shown.wording->units.wind == WindUnit::knots; }));
  ASSERT_TRUE(other_.set("clock", std::string("24")));
  EXPECT_TRUE(snapshots_.await([](EngineSnapshot const& shown) {
    return shown.wording->texts->text("time.clockPattern") == "HH:mm";
  }));
  ASSERT_TRUE(other_.set("language", std::string("pt")));
  auto const shown = snapshots_.await(
      [](EngineSnapshot const& snapshot) { return snapshot.wording->texts->language() == "pt"; });
  ASSERT_TRUE(shown);
  EXPECT_EQ(shown->settings->settings.text("windUnit"), "knots");
}

TEST_F(LiveSettings, WritesWhatIsChosenAndSaysWhatIsRefused) {
  start();
  core_->changeSetting(std::string(kUnitPresetKey), "imperial");
  EXPECT_TRUE(snapshots_.await(
      [](EngineSnapshot const& shown) { return shown.wording->units == Units::imperial(); }));
  EXPECT_EQ(other_.settings().settings.text("pressureUnit"), "inHg");
  core_->changeSetting("openMeteoHost", "nowhere");
  auto const refused = snapshots_.await(
      [](EngineSnapshot const& shown) { return shown.settings->refusedKey == "openMeteoHost"; });
  ASSERT_TRUE(refused);
  ASSERT_TRUE(refused->settings->refusal);
  EXPECT_THAT(refused->settings->refusal->message, HasSubstr("an address like"));
  core_->changeSetting("openMeteoHost", "https://own.example");
  EXPECT_TRUE(snapshots_.await([](EngineSnapshot const& shown) {
    return !shown.settings->refusal &&
           shown.settings->settings.text("openMeteoHost") == "https://own.example";
  }));
}

TEST_F(LiveSettings, AsksTheProviderThatWasChosen) {
  start();
  core_->changeSetting("preferredProvider", "yrNo");
  EXPECT_TRUE(snapshots_.await([](EngineSnapshot const& shown) {
    auto const record = shown.settings->providers.find("yrNo");
    return record != shown.settings->providers.end() && record->second.lastError;
  }));
}

TEST_F(LiveSettings, TakesARemovalBackWithItsRules) {
  start();
  SavedPlace const two = placeAt("Two", {20, 20});
  NotificationState rules(other_);
  ASSERT_TRUE(rules.add(ruleAt(two)));
  core_->selectPlace(two.id);
  core_->removePlace(two.id);
  ASSERT_TRUE(snapshots_.await([](EngineSnapshot const& shown) { return shown.places.places.size() == 2; }));
  core_->restorePlace(two, 2, true);
  auto const restored = snapshots_.await([&](EngineSnapshot const& shown) {
    return shown.places.places.size() == 3 && shown.places.selected == two.id && shown.place &&
           shown.place->name == "Two";
  });
  ASSERT_TRUE(restored);
  EXPECT_THAT(namesOf(restored->places), ElementsAre("One", "Two", "Three"));
  core_.reset();  // whatever it was about to write is written
  EXPECT_TRUE(rules.customNotifications()->rules.front().isEnabled);
}

TEST_F(LiveSettings, DisablesTheRulesOfARemovedPlace) {
  start();
  SavedPlace const two = placeAt("Two", {20, 20});
  NotificationState rules(other_);
  ASSERT_TRUE(rules.add(ruleAt(two)));
  core_->removePlace(two.id);
  core_->selectPlace(placeAt("Three", {30, 30}).id);  // is done after it
  ASSERT_TRUE(snapshots_.await(
      [](EngineSnapshot const& shown) { return shown.place && shown.place->name == "Three"; }));
  EXPECT_FALSE(rules.customNotifications()->rules.front().isEnabled);
}

TEST_F(LiveSettings, SaysWhyTheLocationIsNotKnown) {
  start();
  core_->locate();
  EXPECT_TRUE(snapshots_.await([](EngineSnapshot const& shown) {
    return shown.location.phase == LocationState::Phase::denied && shown.location.message == "no";
  }));
}

TEST_F(LiveSettings, SelectsWhereTheUserIsByTheNameOfTheCity) {
  location_ = LocationFix{{52.52, 13.41}, 1000, test::at("2026-11-21T12:00:00Z")};
  start();
  core_->locate();
  ASSERT_TRUE(snapshots_.await([](EngineSnapshot const& shown) {
    return shown.location.phase == LocationState::Phase::found && shown.place &&
           shown.place->name == "Berlin";
  }));
  core_->removeCurrentLocation();
  EXPECT_TRUE(snapshots_.await([](EngineSnapshot const& shown) {
    return !shown.places.offersCurrentLocation && shown.place && shown.place->name == "One";
  }));
}

TEST_F(LiveSettings, FollowsTheDeviceWhileTheCurrentLocationIsSelected) {
  location_ = LocationFix{{52.52, 13.41}, 1000, test::at("2026-11-21T12:00:00Z")};
  movesTo_ = LocationFix{{48.14, 11.58}, 1000, test::at("2026-11-21T12:05:00Z")};
  start();
  core_->locate();
  auto const arrived = snapshots_.await(
      [](EngineSnapshot const& shown) { return shown.place && shown.place->name == "Munich"; });
  ASSERT_TRUE(arrived);
  EXPECT_EQ(arrived->places.selected, kCurrentLocation);
  EXPECT_EQ(Places(other_).list()->lastFix, movesTo_);
}

}  // namespace
}  // namespace nimbara
