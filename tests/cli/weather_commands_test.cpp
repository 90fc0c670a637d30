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
using testing::HasSubstr;
using testing::Not;

struct WeatherCommands : test::DemoSession {};

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

/// What stand-ins made up must not be sent as the day's weather.
TEST_F(WeatherCommands, LeaveTheUsersOwnMemoryAloneWithStandIns) {
  ASSERT_EQ(run({"settings", "set", "notify_morningSummary", "true"}).exitCode, 0);
  ASSERT_EQ(run({"places", "add", "52.52,13.41", "--name", "Berlin"}).exitCode, 0);
  ASSERT_EQ(run({"notify", "--deliver", "print"}).exitCode, 0);
  std::vector<std::string> const notify{"notify", "--deliver", "print", "--json"};
  auto real = notify;
  real.insert(real.end(), {"--now", "2026-11-22T06:10:00Z"});  // Berlin's next morning
  EXPECT_THAT(test::run(real, environment()).out, Not(HasSubstr("morning_summary")));
  EXPECT_THAT(run(notify, "2026-11-22T06:10:00Z").out,
              testing::ContainsRegex(
                  R"("identifier":"morning_summary","title":"Good Morning".*"trigger":"immediate")"));
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
