#include "app/engine/engine.h"

#include "app/engine/engine_options.h"
#include "app/services/feed_services.h"
#include "app/services/wording.h"
#include "app/settings/environment.h"
#include "app/settings/settings_registry.h"
#include "app/state/engine_snapshot.h"
#include "model/weather_cache.h"
#include "notifications/engine/notification_state.h"
#include "notifications/rules/mute_changes.h"
#include "platform/http/http_client.h"
#include "platform/linux/store/sqlite_settings_store.h"
#include "support/answers/open_meteo_answer.h"
#include "support/notification_engine.h"
#include "support/session/fake_notification_center.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>

namespace nimbara {
namespace {

using test::at;

constexpr Coordinate kBerlin{52.52, 13.41};

/// What an engine did, for whoever waits for a certain part of it.
class Heard {
 public:
  void add(std::string text) {
    std::lock_guard const lock(mutex_);
    texts_ += std::move(text) + "\n";
    changed_.notify_all();
  }
  /// Within a generous time.
  testing::AssertionResult has(std::string_view part) {
    std::unique_lock lock(mutex_);
    auto const isThere = [&] { return texts_.find(part) != std::string::npos; };
    if (changed_.wait_for(lock, std::chrono::seconds(30), isThere)) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "no \"" << part << "\" in:\n" << texts_;
  }

  bool hasAlready(std::string_view part) {
    std::lock_guard const lock(mutex_);
    return texts_.find(part) != std::string::npos;
  }

  /// The like for what shows elsewhere; looked at again with each text.
  bool until(std::function<bool()> const& isSo) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(30), isSo);
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::string texts_;
};

/// Every service answers with the same week of weather; the addresses are noted.
class Answering final : public HttpClient {
 public:
  explicit Answering(Heard& heard) : heard_(heard) {}
  Result<HttpResponse, HttpError> get(HttpRequest const& request, std::stop_token /*stop*/) override {
    heard_.add(request.url);
    HttpResponse response;
    response.status = 200;
    response.body = test::OpenMeteoAnswer().body();
    return response;
  }

 private:
  Heard& heard_;
};

struct EngineTest : testing::Test {
  EngineTest() {
    environment.dataDirectory = folder.path() / "data";
    environment.cacheDirectory = folder.path() / "cache";
    environment.language = "en";
    std::filesystem::create_directories(environment.cacheDirectory);
    test::switchAllOff(other);
  }

  /// As `nimbara watch` has it: nobody looks.
  void start() {
    EngineOptions options;
    options.program = "watch";
    options.now = at("2026-11-21T09:20:00Z");
    options.aroundNetwork = [this](HttpClient&) {
      ++compositions;
      return std::make_unique<Answering>(heard);
    };
    options.center = [this] {
      auto made = std::make_unique<test::FakeNotificationCenter>();
      center = made.get();
      return made;
    };
    options.onPass = [this](PassReport const&) {
      for (NotificationRequest const& request : center.load()->delivered())
        heard.add(request.title + ": " + request.body);
    };
    options.onEvent = [this](EngineEvent event) { heard.add(std::string(enumName(event))); };
    engine = std::make_unique<Engine>(environment, std::move(options));
  }

  void addBerlin() {
    ASSERT_TRUE(Places(other).change([](PlaceList& list) {
      return addPlace(list, {Uuid::random(), "Berlin", "DE", "", "", kBerlin, "Europe/Berlin"});
    }));
  }
  /// A rule that comes true at once; it is told once.
  void addRule(std::string title) {
    CustomNotification rule;
    rule.id = Uuid::random();
    rule.title = std::move(title);
    rule.threshold = -50;
    rule.scheduledDays = EnumSet<DayOfWeek>::all();
    ASSERT_TRUE(NotificationState(other).add(rule));
  }

  test::TemporaryFolder folder;
  Environment environment;
  SqliteSettingsStore other{folder.path() / "data", settingsRegistry()};  // of another process
  Heard heard;
  std::atomic<int> compositions = 0;
  std::atomic<test::FakeNotificationCenter*> center = nullptr;  // the engine's
  std::unique_ptr<Engine> engine;
};

TEST_F(EngineTest, FollowsLanguageUnitProviderAndAddressWhileItRuns) {
  addBerlin();
  start();
  engine->begin({});
  EXPECT_TRUE(heard.has("https://api.open-meteo.com/v1/forecast"));
  addRule("First");
  EXPECT_TRUE(heard.has("First: "));
  EXPECT_TRUE(heard.has("°C"));

  ASSERT_TRUE(other.update(StoreArea::settings, [](SettingValues const&) {
    return StoreChanges{{"language", SettingValue(std::string("pt"))},
                        {"temperatureUnit", SettingValue(std::string("fahrenheit"))}};
  }));
  // A pass that was under way would tell the new rule in the old words, and not again.
  ASSERT_TRUE(
      heard.until([&] { return engine->wording()->units.temperature == TemperatureUnit::fahrenheit; }));
  addRule("Second");
  EXPECT_TRUE(heard.has("37,4°F")) << "in the words and the unit of now";

  ASSERT_TRUE(other.set("openMeteoHost", std::string("https://own.example")));
  EXPECT_TRUE(heard.has("https://own.example/v1/forecast"));

  ASSERT_TRUE(other.set("preferredProvider", std::string("yrNo")));
  EXPECT_TRUE(heard.has("https://api.met.no/"));
}

TEST_F(EngineTest, MakesNoServicesBeforeSomebodyAsks) {
  start();
  EXPECT_EQ(engine->wording()->texts->language(), "en");
  EXPECT_EQ(compositions, 0);
  std::ignore = engine->services()->feeds();
  EXPECT_EQ(compositions, 1);
  EXPECT_EQ(engine->services(), engine->services());
}

TEST_F(EngineTest, ShowsThePlaceThatWasShownLastWhereNoneIsSelected) {
  WeatherCache(environment.cacheDirectory, FixedClock(at("2026-11-21T09:20:00Z")))
      .saveLastLocation(cacheKey(kBerlin));
  start();
  engine->begin({});
  EXPECT_TRUE(heard.has("latitude=52.52"));
}

TEST_F(EngineTest, KeepsWhatIsKnownOfAPlaceThatIsRenamed) {
  addBerlin();
  auto const saved = Places(other).list();
  ASSERT_TRUE(saved);
  start();
  engine->begin([this](std::shared_ptr<EngineSnapshot const> const& snapshot) {
    bool const isAsking = snapshot->hazards->official.isAsking;
    heard.add("shown " + (snapshot->place ? snapshot->place->name : "nothing") +
              (isAsking ? ", asking" : ", checked"));
  });
  EXPECT_TRUE(heard.has("shown Berlin, checked"));
  engine->renamePlace(saved->places[0].id, "Heim");
  EXPECT_TRUE(heard.has("shown Heim, checked"));
  EXPECT_FALSE(heard.hasAlready("shown Heim, asking"));
}

TEST_F(EngineTest, SaysThatThereIsNoPlace) {
  start();
  engine->begin({});
  EXPECT_TRUE(heard.has("noPlace"));
}

TEST_F(EngineTest, EndsWithoutHavingBegun) {
  start();
  engine.reset();
  EXPECT_EQ(compositions, 0);
}

TEST_F(EngineTest, TwoThatMuteAtATimeLoseNothing) {
  constexpr int kEach = 20;
  auto const muteAll = [this](std::string const& name) {
    SqliteSettingsStore store(environment.dataDirectory, settingsRegistry());
    for (int i = 0; i < kEach; ++i) {
      EXPECT_TRUE(changeMutes(store, [&](std::vector<Mute> mutes) {
        return mutedToo(std::move(mutes), {name + std::to_string(i), {}}, at("2026-11-21T09:20:00Z"));
      }));
    }
  };
  {
    std::jthread const one(muteAll, "one");
    std::jthread const another(muteAll, "another");
  }
  EXPECT_EQ(parseMutes(other.settings().settings.text("notify_mutedKinds")).size(), 2U * kEach);
}

}  // namespace
}  // namespace nimbara
