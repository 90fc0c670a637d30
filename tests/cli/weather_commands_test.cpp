#include "app/settings/settings_registry.h"
#include "cli/cli.h"
#include "cli/pages/forecast/line_text.h"
#include "demo/demo_server.h"
#include "platform/linux/store/sqlite_settings_store.h"
#include "support/forecasts.h"
#include "support/instants.h"
#include "support/session/demo_session.h"
#include "support/test_console.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;
using test::CliRun;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

struct WeatherCommands : test::DemoSession {
  /// Nothing answers any more.
  void goOffline() {
    server.reset();
    base = "http://127.0.0.1:1";
  }
};

TEST_F(WeatherCommands, ServeAForecastFromTheCacheWhileItIsFresh) {
  EXPECT_THAT(run({"forecast", "1,2", "--json"}).out,
              StartsWith(R"({"provider":"openMeteo","fromCache":false,"stale":false)"));
  goOffline();
  EXPECT_THAT(run({"forecast", "1,2", "--json"}, "2026-11-21T09:34:59Z").out,
              StartsWith(R"({"provider":"openMeteo","fromCache":true,"stale":false)"));
  CliRun const old = run({"forecast", "1,2", "--json"}, "2026-11-21T09:35:00Z");
  EXPECT_EQ(old.exitCode, 0);
  EXPECT_THAT(old.out, StartsWith(R"({"provider":"openMeteo","fromCache":true,"stale":true)"));
  EXPECT_THAT(old.err,
              HasSubstr("could not fetch a newer forecast: openMeteo (Network error: could not connect"));
  EXPECT_THAT(old.err, HasSubstr("showing the one from 9:20 AM\n"));
  CliRun const again = run({"forecast", "1,2"}, "2026-11-21T09:36:00Z");
  EXPECT_THAT(again.err, HasSubstr("wttrIn (Network error: could not connect")) << "all are asked again";
  EXPECT_THAT(again.out, HasSubstr("! Older data from 9:20 AM (16 min ago)"));
  EXPECT_EQ(run({"forecast", "1,2", "--no-cache"}, "2026-11-21T09:36:00Z").exitCode, exitCode::kUnavailable);
  server = *DemoServer::start(clock, {});
  base = server->baseUrl();
  EXPECT_THAT(run({"forecast", "1,2", "--json"}, "2026-11-21T09:36:01Z").out,
              StartsWith(R"({"provider":"openMeteo","fromCache":false,"stale":false)"))
      << "the network is back";
}

TEST_F(WeatherCommands, AddTheDaysBeyondTheForecastWhereAskedTo) {
  EXPECT_THAT(run({"forecast", "1,2"}).out, Not(HasSubstr("Outlook")));
  CliRun const json = run({"forecast", "1,2", "--outlook", "--json"});
  EXPECT_THAT(json.out, HasSubstr(R"("outlook":{"state":"current","checkedAt":"2026-11-21T09:20:00Z",)"
                                  R"("reason":null,"days":[{"date":"2026-11-28",)"))
      << "the first after seven days";
  EXPECT_THAT(json.out, HasSubstr(R"({"date":"2026-12-06",)")) << "the sixteenth";
  EXPECT_THAT(run({"forecast", "1,2", "--outlook"}).out,
              HasSubstr("expect a tendency rather than a forecast. Source: Open-Meteo."));
  goOffline();
  CliRun const offline = run({"forecast", "1,2", "--outlook"});
  EXPECT_EQ(offline.exitCode, 0);
  EXPECT_THAT(offline.out, HasSubstr("Could not check the days beyond the forecast. Reason: "));
}

TEST_F(WeatherCommands, JudgeTheForecastByASecondOneWhereAskedTo) {
  EXPECT_THAT(run({"forecast", "1,2"}).out, Not(HasSubstr("Confidence")));
  CliRun const json = run({"forecast", "1,2", "--confidence", "--json"});
  EXPECT_THAT(json.out, HasSubstr(R"("confidence":{"state":"known","provider":"yrNo",)"
                                  R"("checkedAt":"2026-11-21T09:20:00Z","reason":null,"days":[)"
                                  R"({"date":"2026-11-21","daysAhead":0,"confidence":")"));
  CliRun const page = run({"forecast", "1,2", "--confidence"});
  EXPECT_THAT(page.out, HasSubstr("\nConfidence in the forecast\n Today: "));
  EXPECT_THAT(page.out, HasSubstr("\n Compared with the forecast from MET Norway.\n"));
  goOffline();
  EXPECT_THAT(run({"forecast", "1,2", "--confidence"}, "2026-11-21T12:19:00Z").out,
              HasSubstr("Compared with"))
      << "kept for hours";
  CliRun const later = run({"forecast", "1,2", "--confidence", "--json"}, "2026-11-21T12:20:00Z");
  EXPECT_EQ(later.exitCode, 0);
  EXPECT_THAT(later.out, HasSubstr(R"("confidence":{"state":"unknown","provider":"yrNo","checkedAt":null,)"));
}

/// A week's forecast, found eight days later.
TEST_F(WeatherCommands, SayThatAForecastHasEnded) {
  ASSERT_EQ(run({"forecast", "1,2"}).exitCode, 0);
  goOffline();
  std::string const last = run({"forecast", "1,2"}, "2026-11-27T22:00:00Z").out;
  EXPECT_THAT(last, HasSubstr("\nToday "));
  EXPECT_THAT(last, HasSubstr("\nSun and moon\n"));
  std::string const over = run({"forecast", "1,2"}, "2026-11-29T09:20:00Z").out;
  EXPECT_THAT(over, HasSubstr("\n7-day forecast\n The forecast ended on Friday, 27 November 2026.\n"));
  EXPECT_THAT(over, Not(HasSubstr("Sun and moon"))) << "those of a day that is over";
}

TEST_F(WeatherCommands, TellAllTimesOfAPlaceByItsClock) {
  ASSERT_EQ(run({"forecast", "59.91,10.75"}).exitCode, 0);
  goOffline();
  CliRun const old = run({"forecast", "59.91,10.75"}, "2026-11-21T10:00:00Z");
  EXPECT_THAT(old.out, HasSubstr("! Older data from 10:20 AM (40 min ago)"));
  EXPECT_THAT(old.err, HasSubstr("showing the one from 10:20 AM\n"));
}

TEST_F(WeatherCommands, TellNoAgeThatLiesAhead) {
  ASSERT_EQ(run({"forecast", "1,2"}).exitCode, 0);
  goOffline();
  CliRun const before = run({"forecast", "1,2"}, "2026-06-21T12:00:00Z");
  EXPECT_THAT(before.err, HasSubstr("could not fetch a newer forecast")) << "somebody is asked";
  EXPECT_THAT(before.out, HasSubstr("(dated in the future)"));
  EXPECT_THAT(before.out, Not(HasSubstr("just now")));
}

TEST_F(WeatherCommands, SayWhenProvidersThatFailedAreAskedAgain) {
  server = *DemoServer::start(clock, {{Service::openMeteo, DemoFault::Kind::status500},
                                      {Service::yrNo, DemoFault::Kind::garbage},
                                      {Service::wttrIn, DemoFault::Kind::status500}});
  base = server->baseUrl();
  EXPECT_EQ(run({"forecast", "1,2"}).exitCode, exitCode::kUnavailable);
  EXPECT_THAT(run({"forecast", "1,2"}, "2026-11-21T09:21:30Z").err,
              HasSubstr("every provider failed less than five minutes ago; try again in 4 minutes\n"));
}

TEST_F(WeatherCommands, FallOverToTheNextProviderAndSaySo) {
  server = *DemoServer::start(
      clock, {{Service::openMeteo, DemoFault::Kind::status500}, {Service::yrNo, DemoFault::Kind::garbage}});
  base = server->baseUrl();
  CliRun const first = run({"forecast", "52.52,13.41", "--json"});
  EXPECT_THAT(first.out, StartsWith(R"({"provider":"wttrIn","fromCache":false)"));
  EXPECT_THAT(first.err, StartsWith("nimbara: no forecast from openMeteo (Server returned HTTP 500"));
  EXPECT_THAT(first.err, testing::EndsWith("this one is from wttrIn\n"));
  CliRun const second = run({"forecast", "1,2", "--json"}, "2026-11-21T09:24:59Z");
  EXPECT_EQ(second.err, "") << "nobody who failed is asked within five minutes";
  EXPECT_THAT(second.out, StartsWith(R"({"provider":"wttrIn")"));
  CliRun const third = run({"forecast", "3,4", "--json"}, "2026-11-21T09:25:00Z");
  EXPECT_THAT(third.err, HasSubstr("openMeteo"));
}

TEST_F(WeatherCommands, ServeEveryProviderByItsName) {
  for (std::string const provider : {"openMeteo", "yrNo", "wttrIn"}) {
    EXPECT_THAT(run({"forecast", "52.52,13.41", "--provider", provider, "--json"}).out,
                StartsWith(R"({"provider":")" + provider + R"(","fromCache":false)"));
  }
  CliRun const refused = run({"forecast", "1,2", "--provider", "appleWeather"});
  EXPECT_EQ(refused.exitCode, exitCode::kUnavailable);
  EXPECT_THAT(refused.err, HasSubstr("WeatherKit is not configured"));
}

TEST_F(WeatherCommands, ListAlertsOfTheForecast) {
  CliRun const text = run({"alerts", "51.48,0"});
  EXPECT_THAT(text.out, StartsWith("Warnings and alerts for Blackheath, United Kingdom\n\n"
                                   "Warning: Very Cold\n  Feels-like temperature drops to"));
  EXPECT_THAT(run({"alerts", "51.48,0", "--json", "--source", "generated"}).out,
              HasSubstr(R"("severity":"warning","title":"Very Cold")"));
  CliRun const wrong = run({"alerts", "1,2", "--source", "generated,rumours"});
  EXPECT_EQ(wrong.exitCode, exitCode::kUsage);
  EXPECT_THAT(wrong.err, HasSubstr("'rumours'"));
}

TEST_F(WeatherCommands, FillStatusBarsFromTheCacheAlone) {
  CliRun const nothing = run({"line", "51.48,0"});
  EXPECT_EQ(nothing.exitCode, exitCode::kUnavailable);
  EXPECT_EQ(nothing.out, "");
  EXPECT_THAT(nothing.err, HasSubstr("no forecast is cached for this place yet"));
  CliRun const emptyBar = run({"waybar", "51.48,0"});
  EXPECT_EQ(emptyBar.exitCode, exitCode::kUnavailable);
  EXPECT_THAT(emptyBar.out, StartsWith(R"({"text":"","tooltip":"no forecast)"));
  EXPECT_EQ(run({"line", "51.48,0", "--fresh"}).exitCode, 0);
  goOffline();
  EXPECT_THAT(run({"line", "51.48,0", "--format", "{place}: {alert}|{{{age}"}).out,
              "Blackheath: Very Cold|{just now\n");
  EXPECT_THAT(run({"waybar", "51.48,0"}, "2026-11-21T12:20:00Z").out,
              HasSubstr(R"("class":"warning","alt":")"));
  EXPECT_THAT(run({"line", "51.48,0"}, "2026-11-22T09:20:00Z").out, testing::EndsWith(" (24 h ago)\n"));
  CliRun const wrong = run({"line", "51.48,0", "--format", "{temprature}"});
  EXPECT_EQ(wrong.exitCode, exitCode::kUsage);
  EXPECT_THAT(wrong.err, HasSubstr("{temprature}"));
}

TEST_F(WeatherCommands, TellTheDoctorWhatHappened) {
  ASSERT_EQ(run({"places", "add", "51.48,0", "--name", "Home"}).exitCode, 0);
  run({"forecast"});
  goOffline();
  run({"forecast", "--no-cache"});
  CliRun const text = run({"doctor"}, "2026-11-21T09:22:00Z");
  EXPECT_THAT(text.out, HasSubstr("Home                           2 min ago from openMeteo"));
  EXPECT_THAT(text.out, HasSubstr("last response 2 min ago, last error 2 min ago: Network error: could not"));
  EXPECT_THAT(text.out, HasSubstr("appleWeather                   http://127.0.0.1:1, not configured"));
  EXPECT_THAT(text.out, HasSubstr("at most every 15 min: the selected place, last 2 min ago, next from "
                                  "2026-11-21T09:35:00Z\n"));
  EXPECT_THAT(text.out, HasSubstr("at most every 10 min: the current location (not the selected place)\n"));
  EXPECT_THAT(run({"doctor", "--json"}).out,
              HasSubstr(R"("place":"Home","answeredAt":"2026-11-21T09:20:00Z")"));
}

/// A console that other threads wait on.
class SharedConsole final : public Console {
 public:
  void out(std::string_view text) override {
    std::lock_guard const lock(mutex_);
    output_ += text;
    changed_.notify_all();
  }
  void err(std::string_view text) override { out(text); }
  int terminalWidth() const override { return 0; }

  void waitFor(std::string_view part) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, 20s, [&] { return output_.find(part) != std::string::npos; });
    EXPECT_THAT(output_, HasSubstr(std::string(part)));
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::string output_;
};

TEST(WatchCommand, EitherInstallsOrUninstalls) {
  EXPECT_EQ(test::run({"watch", "--install", "--uninstall"}).exitCode, exitCode::kUsage);
}

TEST_F(WeatherCommands, WatchPlacesUntilInterrupted) {
  ASSERT_EQ(run({"places", "add", "51.48,0", "--name", "Home"}).exitCode, 0);
  ASSERT_EQ(run({"places", "add", "1,2", "--name", "Gulf"}).exitCode, 0);
  SharedConsole console;
  std::stop_source stop;
  Environment const surroundings = environment();
  std::jthread const watch([&] {
    EXPECT_EQ(
        runCli({"watch", "--json", "--services", base}, Session{surroundings, console, stop.get_token()}),
        exitCode::kInterrupted);
  });
  console.waitFor(R"("place":"Home","latitude":51.48,"longitude":0,"selected":true,"provider":"openMeteo")");
  console.waitFor(R"("place":"Gulf","latitude":1,"longitude":2,"selected":false)");
  // Another process selects another place.
  ASSERT_EQ(run({"places", "select", "Gulf"}).exitCode, 0);
  console.waitFor(R"("place":"Gulf","latitude":1,"longitude":2,"selected":true)");
  stop.request_stop();
}

TEST_F(WeatherCommands, TheWatchFollowsWhatIsSetMeanwhile) {
  SqliteSettingsStore settings(environment().dataDirectory, settingsRegistry());
  for (SettingDefinition const* const definition : settingsRegistry().all()) {
    if (definition->key.ends_with("Host")) {
      ASSERT_TRUE(settings.set(definition->key, std::string("http://127.0.0.1:1")));
    }
  }
  ASSERT_EQ(run({"places", "add", "51.48,0", "--name", "Home"}).exitCode, 0);
  SharedConsole console;
  std::stop_source stop;
  Environment const surroundings = environment();
  std::jthread const watch([&] {
    EXPECT_EQ(runCli({"watch", "--now", kMoment}, Session{surroundings, console, stop.get_token()}),
              exitCode::kInterrupted);
  });
  console.waitFor("Home: " + std::string(Texts::load("en").text("error.offline")));
  ASSERT_TRUE(settings.set("language", std::string("pt")));
  console.waitFor("a previsão");
  ASSERT_TRUE(settings.set("openMeteoHost", base));
  console.waitFor(" alertas (openMeteo)");
  ASSERT_TRUE(settings.set("yrNoHost", base));
  ASSERT_TRUE(settings.set("preferredProvider", std::string("yrNo")));
  console.waitFor("(yrNo)");
  stop.request_stop();
}

TEST(LineText, IsEscapedWhereItsReaderTakesItForMarkup) {
  ForecastAnswer answer;
  answer.data = test::mildForecast(at("2026-11-21T09:00:00Z"), 30);
  answer.answeredAt = at("2026-11-21T09:00:00Z");
  answer.data.location.areaName = "<b>A&B</b>";
  answer.alerts.resize(1);
  answer.alerts.front().title = "<i>";
  Texts const texts = Texts::load("en");
  Units const units;
  KeptWarnings const official{{}, coverageOf({}, "JP")};
  LineContext context{answer, official, texts, units, answer.answeredAt, false};
  EXPECT_EQ(filledLine("<u>{place}</u> {alert}", context), "<u><b>A&B</b></u> <i>");
  context.isMarkup = true;
  EXPECT_EQ(filledLine("<u>{place}</u> {alert}", context), "<u>&lt;b&gt;A&amp;B&lt;/b&gt;</u> &lt;i&gt;");
  std::string const told = tooltip(context);
  EXPECT_TRUE(told.starts_with("&lt;b&gt;A&amp;B&lt;/b&gt;: ")) << told;
  EXPECT_EQ(told.find_first_of("<>"), std::string::npos) << told;
}

TEST(LineText, TellsWhatIsKnownAndDashesForTheRest) {
  ForecastAnswer answer;
  answer.data = test::mildForecast(at("2026-11-21T09:00:00Z"), 30);
  answer.answeredAt = at("2026-11-21T09:00:00Z");
  answer.data.current.tempC = 11;
  answer.data.current.availableDetailFields = DetailFields{WeatherDetailField::humidity};
  Texts const texts = Texts::load("en");
  Units const units;
  KeptWarnings const official{{}, coverageOf({}, "JP")};
  auto const line = [&](std::string_view pattern, std::string const& now) {
    return filledLine(pattern, {answer, official, texts, units, at(now), false}).value_or("refused");
  };
  EXPECT_EQ(line("{temperature} {humidity} {pressure} {gusts}", "2026-11-21T10:00:00Z"),
            "11° 50 % – 15 km/h");
  // A reading of hours ago is no present; the forecast of the hour is.
  EXPECT_EQ(line("{temperature} {pressure}", "2026-11-21T12:00:00Z"), "15° 1015 hPa");
  EXPECT_EQ(line("{temperature} {high}", "2026-11-25T12:00:00Z"), "– –");
  for (char const* const wrong : {"{", "{}", "{temperature", "{nothing}"}) {
    EXPECT_EQ(line(wrong, "2026-11-21T10:00:00Z"), "refused") << wrong;
  }
  EXPECT_EQ(line("{warnings}", "2026-11-21T10:00:00Z"), "No source of official warnings for Japan");
  EXPECT_EQ(line("{{}", "2026-11-21T10:00:00Z"), "{}");
  for (LineField const& field : lineFields()) {
    EXPECT_NE(line("{" + std::string(field.name) + "}", "2026-11-21T10:00:00Z"), "refused");
  }
}

TEST(LineText, HasWhatTheStationMeasures) {
  ForecastAnswer answer;
  Texts const texts = Texts::load("en");
  KeptWarnings const official;
  StationReading station{.id = "s", .name = "Roof", .modules = {}};
  station.modules.push_back({.kind = StationModuleKind::outdoor,
                             .observedAt = at("2026-11-21T09:00:00Z"),
                             .values = {{StationQuantity::temperature, -1.26}}});
  auto const line = [&](StationReading const* shown, Units const& units, std::string const& now) {
    LineContext context{answer, official, texts, units, at(now), false};
    context.station = shown;
    return filledLine("{station.name}: {station.temperature}, {station.rain}, {station.age}", context);
  };
  EXPECT_EQ(line(&station, Units::metric(), "2026-11-21T09:30:00Z"), "Roof: -1.3 °C, –, 30 min ago");
  EXPECT_EQ(line(&station, Units::imperial(), "2026-11-21T09:04:00Z"), "Roof: 29.7 °F, –, 4 min ago");
  EXPECT_EQ(line(&station, Units::metric(), "2026-11-21T09:31:00Z"), "Roof: –, –, 31 min ago");
  EXPECT_EQ(line(nullptr, Units::metric(), "2026-11-21T09:00:00Z"), ": –, –, –");
}

}  // namespace
}  // namespace nimbara
