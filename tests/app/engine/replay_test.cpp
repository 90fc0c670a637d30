#include "app/recording/replay.h"

#include "app/services/feed_services.h"
#include "app/settings/service_directory.h"
#include "app/settings/settings_registry.h"
#include "platform/settings/scratch_settings_store.h"
#include "support/forecasts.h"
#include "support/paths.h"
#include "support/recording.h"
#include "support/rules.h"
#include "support/shared_texts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

namespace nimbara {
namespace {

using test::at;
using test::nwsList;
using test::NwsMessage;
using namespace std::chrono_literals;

Place const kDenver{{39.7392, -104.9903}, "Denver", "US", "Colorado"};
Place const kBoulder{{40.015, -105.2705}, "Boulder", "US", "Colorado"};

std::string alertsUrl(Place const& place) {
  return "https://api.weather.gov/alerts/active?point=" +
         fmt::format("{:.4f},{:.4f}", place.coordinate.latitude, place.coordinate.longitude);
}

/// Two days of a user's life: what the feed answers is recorded, the weather is the test's.
struct ReplayTest : testing::Test {
  ReplayTest() {
    // Nothing of these is recorded.
    for (char const* const key : {"notify_travelAdvisory", "notify_lightning"})
      std::ignore = store.set(key, false);
  }

  static std::shared_ptr<Texts const> texts() { return std::make_shared<Texts const>(Texts::load("en")); }

  /// What the feed of a place says from a moment on.
  void says(Place const& place, std::string const& moment, std::vector<NwsMessage> const& messages) {
    recording.add(moment, alertsUrl(place), nwsList(messages));
  }
  void fails(Place const& place, std::string const& moment) {
    recording.addFailure(moment, alertsUrl(place));
  }

  void begin(std::string const& moment, std::vector<Place> const& places) {
    clock = std::make_unique<SteppedClock>(at(moment));
    http = std::make_unique<RecordedHttpClient>(recording.path(), *clock, nullptr);
    feeds = std::make_unique<FeedServices>(*http, *clock, ServiceDirectory({}, ""),
                                           FeedServices::Options{"me", {}, {}, texts()});
    inputs = std::make_unique<NotificationInputs>(
        always(*feeds), *clock,
        NotificationInputs::Options{
            {},
            texts(),
            Calendar::utc(),
            [this](Place const& place, std::stop_token const&) { return weatherAt(place); },
            {}});
    replay =
        std::make_unique<Replay>(Replay::Surroundings{*clock, store, *inputs, test::sharedEnglishTexts()});
    choose(places);
  }

  void choose(std::vector<Place> const& places) {
    std::vector<WatchedPlace> watched;
    for (Place const& place : places) watched.push_back({place, {}});
    replay->setPlaces(std::move(watched));
  }

  std::shared_ptr<WeatherData const> weatherAt(Place const& place) const {
    Instant const hour = std::chrono::floor<std::chrono::hours>(clock->now());
    // From midnight on, as forecasts are.
    auto data =
        std::make_shared<WeatherData>(test::mildForecast(std::chrono::floor<std::chrono::days>(hour), 96));
    data->location.timeZone = "America/Denver";
    if (weather) weather(place, clock->now(), *data);
    return data;
  }

  void run(std::string const& end, std::chrono::minutes step = 15min) { replay->runUntil(at(end), step); }

  /// NIMBARA_UPDATE_SNAPSHOTS=1 writes what was told now; the change is then read in the diff.
  void expectRecorded(std::string const& name) const {
    std::string text;
    for (LoggedNotification const& line : replay->log()) {
      text += fmt::format("{}  {:<18} {}  {}{}\n", formatIso8601(line.time), line.outcome, line.identifier,
                          line.title, line.place.empty() ? "" : " (" + line.place + ")");
    }
    auto const file = std::filesystem::path(test::kFixtures) / "replay" / name;
    if (std::getenv("NIMBARA_UPDATE_SNAPSHOTS") != nullptr) std::ofstream(file, std::ios::binary) << text;
    std::ifstream in(file, std::ios::binary);
    EXPECT_EQ(text, std::string(std::istreambuf_iterator<char>(in), {}));
    for (std::string const& problem : replay->problems()) EXPECT_TRUE(isExpected(problem)) << problem;
  }

  virtual bool isExpected(std::string const& problem) const {
    return !expectedProblem.empty() && problem.find(expectedProblem) != std::string::npos;
  }

  test::Recording recording;
  ScratchSettingsStore store{settingsRegistry()};
  std::function<void(Place const&, Instant, WeatherData&)> weather;
  std::string expectedProblem;
  std::unique_ptr<SteppedClock> clock;
  std::unique_ptr<RecordedHttpClient> http;
  std::unique_ptr<FeedServices> feeds;
  std::unique_ptr<NotificationInputs> inputs;
  std::unique_ptr<Replay> replay;
};

/// A flood that the service tells of in three messages and cancels in a fourth.
NwsMessage flood(int number) {
  NwsMessage message;
  message.id = "urn:flood:" + std::to_string(number);
  message.sent = fmt::format("2026-11-21T{:02}:55:00Z", 7 + 2 * number);
  message.ends = "2026-11-22T18:00:00Z";
  if (number > 0) message.references = "urn:flood:" + std::to_string(number - 1);
  if (number > 0) message.type = "Update";
  message.text = "Water is rising, message " + std::to_string(number) + ".";
  return message;
}

NwsMessage wind() {
  NwsMessage message;
  message.id = "urn:wind";
  message.event = "High Wind Warning";
  message.sent = "2026-11-21T17:55:00Z";
  message.ends = "2026-11-22T09:00:00Z";
  message.text = "Gusts of 110 km/h.";
  return message;
}

TEST_F(ReplayTest, OneEventIsOneNotificationWhateverTheFeedDoes) {
  NwsMessage cancel = flood(3);
  cancel.type = "Cancel";
  NwsMessage worse = flood(2);
  worse.severity = "Extreme";
  NwsMessage trial = wind();
  trial.id = "urn:trial";
  trial.event = "Tsunami Warning";
  trial.severity = "Extreme";
  trial.status = "Test";
  says(kDenver, "2026-11-21T00:00:00Z", {});
  says(kDenver, "2026-11-21T08:00:00Z", {flood(0)});
  says(kDenver, "2026-11-21T08:30:00Z", {});          // dropped by a cache …
  says(kDenver, "2026-11-21T08:45:00Z", {flood(0)});  // … and back
  says(kDenver, "2026-11-21T10:00:00Z", {flood(1)});
  says(kDenver, "2026-11-21T10:30:00Z", {flood(0), flood(1)});
  says(kDenver, "2026-11-21T12:00:00Z", {worse, flood(1)});
  says(kDenver, "2026-11-21T18:00:00Z", {wind(), worse});
  says(kDenver, "2026-11-21T19:00:00Z", {worse, wind(), trial});
  says(kDenver, "2026-11-21T20:00:00Z", {cancel, wind()});
  says(kDenver, "2026-11-21T22:00:00Z", {wind()});
  fails(kDenver, "2026-11-22T03:00:00Z");
  says(kDenver, "2026-11-22T05:00:00Z", {wind()});
  fails(kDenver, "2026-11-22T08:00:00Z");  // the end comes while nobody answers
  says(kDenver, "2026-11-22T12:00:00Z", {});
  expectedProblem = "timedOut";
  begin("2026-11-21T00:00:00Z", {kDenver});
  for (char const* const restart :
       {"2026-11-21T08:10:00Z", "2026-11-21T12:00:00Z", "2026-11-21T18:20:00Z", "2026-11-22T03:30:00Z"}) {
    run(restart);
    replay->restart();
  }
  run("2026-11-22T23:59:00Z");
  expectRecorded("one-event.txt");
}

NwsMessage foulAir(int number, std::string const& sent, std::string const& ends) {
  NwsMessage message;
  message.id = "urn:air:" + std::to_string(number);
  message.event = "Air Quality Alert";
  message.severity = "Unknown";
  message.sent = sent;
  message.ends = ends;
  return message;
}

TEST_F(ReplayTest, AlertsOfNoStatedLevelRingAndReissuesWithoutReferencesDoNot) {
  NwsMessage const today = foulAir(1, "2026-11-21T08:00:00Z", "2026-11-21T20:00:00Z");
  NwsMessage const longer = foulAir(2, "2026-11-21T12:00:00Z", "2026-11-21T22:00:00Z");
  NwsMessage const tomorrow = foulAir(3, "2026-11-21T22:10:00Z", "2026-11-22T10:00:00Z");
  says(kDenver, "2026-11-21T00:00:00Z", {});
  says(kBoulder, "2026-11-21T00:00:00Z", {});
  says(kDenver, "2026-11-21T08:05:00Z", {today});
  says(kDenver, "2026-11-21T12:05:00Z", {today, longer});
  says(kBoulder, "2026-11-21T14:05:00Z", {longer});
  says(kDenver, "2026-11-21T22:11:00Z", {tomorrow});
  says(kBoulder, "2026-11-21T22:11:00Z", {tomorrow});
  begin("2026-11-21T07:00:00Z", {kDenver, kBoulder});
  run("2026-11-21T13:00:00Z");
  replay->restart();
  run("2026-11-22T12:00:00Z");
  std::vector<std::string> outcomes;
  std::set<std::string> identifiers;
  for (LoggedNotification const& line : replay->log()) {
    outcomes.push_back(line.outcome);
    identifiers.insert(line.identifier.substr(0, line.identifier.find("_until_")));
  }
  EXPECT_THAT(outcomes,
              testing::ElementsAre("announced", "endMoved", "updated", "withdrawn", "endMoved", "withdrawn"));
  EXPECT_EQ(identifiers.size(), 1) << "one event";
}

TEST_F(ReplayTest, AFasterCheckTellsTheSameEvents) {
  says(kDenver, "2026-11-21T00:00:00Z", {});
  says(kDenver, "2026-11-21T08:01:00Z", {flood(0)});
  says(kDenver, "2026-11-21T10:00:00Z", {flood(1)});
  says(kDenver, "2026-11-21T13:00:00Z", {});
  begin("2026-11-21T07:00:00Z", {kDenver});
  run("2026-11-21T14:00:00Z", 2min);
  expectRecorded("fast-check.txt");
}

TEST_F(ReplayTest, PlacesAndWeatherThatComeAndGo) {
  NwsMessage both = wind();
  says(kDenver, "2026-11-21T00:00:00Z", {});
  says(kBoulder, "2026-11-21T00:00:00Z", {});
  says(kDenver, "2026-11-21T18:00:00Z", {both});
  says(kBoulder, "2026-11-21T18:30:00Z", {both});
  weather = [](Place const& place, Instant now, WeatherData& data) {
    // Rain at Denver that the forecasts of every other quarter of an hour lose.
    bool const isRainy = place.name == "Denver" && now >= at("2026-11-21T10:00:00Z") &&
                         now < at("2026-11-21T17:00:00Z") && (now.time_since_epoch() / 15min) % 2 == 0;
    if (!isRainy) return;
    for (HourlyForecast& hour : data.allHourly) {
      if (hour.date < now + 1h || hour.date > now + 3h) continue;
      hour.condition = WeatherConditionCode::heavyRain;
      hour.precipMM = 6;
      hour.chanceOfRain = 90;
    }
  };
  begin("2026-11-21T06:00:00Z", {kDenver, kBoulder});
  run("2026-11-21T12:00:00Z");
  choose({kBoulder, kDenver});
  run("2026-11-21T13:00:00Z");
  choose({kDenver, kBoulder});
  run("2026-11-21T20:00:00Z");
  choose({kBoulder});  // Denver is removed
  replay->restart();
  run("2026-11-23T06:00:00Z");
  expectRecorded("places.txt");
}

TEST_F(ReplayTest, ClocksThatAreSetAndDaysOfAllLengths) {
  std::ignore = store.set("notify_morningSummary", true);
  std::ignore = store.set("notify_eveningSummary", true);
  NwsMessage storm = wind();
  storm.sent = "2026-10-31T18:00:00Z";
  storm.ends = "2026-11-02T12:00:00Z";
  says(kDenver, "2026-10-31T00:00:00Z", {});
  says(kDenver, "2026-10-31T18:05:00Z", {storm});
  // Clocks in Denver go back in the night to November 1.
  begin("2026-10-31T12:00:00Z", {kDenver});
  run("2026-10-31T21:00:00Z");
  clock->set(at("2026-10-31T19:00:00Z"));  // somebody sets the clock two hours back
  run("2026-11-01T02:00:00Z");
  clock->set(at("2026-11-01T09:00:00Z"));  // asleep through the night
  run("2026-11-01T13:30:00Z");
  replay->restart();
  clock->set(at("2026-11-01T16:00:00Z"));  // asleep at the hour of the summary
  run("2026-11-02T14:30:00Z");
  expectRecorded("clock.txt");
}

TEST_F(ReplayTest, QuietNightsAndASnooze) {
  std::ignore = store.set("notify_quietHours", true);
  NwsMessage extreme = flood(0);
  extreme.id = "urn:extreme";
  extreme.event = "Flash Flood Warning";
  extreme.severity = "Extreme";
  extreme.sent = "2026-11-22T09:00:00Z";
  extreme.ends = "2026-11-22T12:00:00Z";
  NwsMessage night = wind();
  night.sent = "2026-11-22T06:30:00Z";
  night.ends = "2026-11-22T20:00:00Z";
  says(kDenver, "2026-11-21T00:00:00Z", {});
  says(kDenver, "2026-11-21T08:00:00Z", {flood(0)});  // 01:00 in Denver
  says(kDenver, "2026-11-22T06:35:00Z", {flood(0), night});
  says(kDenver, "2026-11-22T09:05:00Z", {flood(0), night, extreme});
  begin("2026-11-21T07:00:00Z", {kDenver});
  run("2026-11-22T13:30:00Z");
  std::ignore = store.set("notify_snoozedUntil", std::string("2026-11-22T15:00:00Z"));
  run("2026-11-23T07:00:00Z");
  expectRecorded("quiet.txt");
}

TEST(ReplaySettings, AreThoseThatTheProgramPrints) {
  test::TemporaryFolder const folder;
  auto const read = [&](std::string_view text) {
    folder.write("settings.json", text);
    return readReplaySettings(folder.path() / "settings.json", settingsRegistry());
  };
  auto const values = read(R"({"notify_rain":false,"notify_morningHour":6,"notify_earthquakeMagnitude":5,)"
                           R"("units":null,"of another version":[1]})");
  ASSERT_TRUE(values) << values.error();
  Settings const settings(settingsRegistry(), *values);
  EXPECT_FALSE(settings.boolean("notify_rain"));
  EXPECT_EQ(settings.integer("notify_morningHour"), 6);
  EXPECT_EQ(settings.real("notify_earthquakeMagnitude"), 5);
  EXPECT_FALSE(settings.isChosen("notify_snow"));
  for (char const* const text :
       {"", "[]", "7", R"({"notify_rain")", R"({"notify_morningHour":24})", R"({"notify_rain":"perhaps"})"}) {
    EXPECT_FALSE(read(text)) << text;
  }
  EXPECT_FALSE(readReplaySettings(folder.path() / "absent", settingsRegistry()));
}

}  // namespace
}  // namespace nimbara
