#include "cli/cli.h"

#include "base/json/json.h"
#include "base/text/display_text.h"
#include "base/text/text.h"
#include "cli/pages/forecast/forecast_report.h"
#include "demo/demo_server.h"
#include "model/process.h"
#include "support/answers/open_meteo_answer.h"
#include "support/instants.h"
#include "support/loopback_server.h"
#include "support/paths.h"
#include "support/samples.h"
#include "support/temporary_folder.h"
#include "support/test_console.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <regex>

namespace nimbara {
namespace {

using test::at;
using test::CliRun;
using test::httpAnswer;
using test::LoopbackServer;
using test::plainEnvironment;
using test::run;

constexpr char kNow[] = "2026-11-21T09:20:00Z";

void expectOneLine(CliRun const& result, int code, std::string_view holds) {
  EXPECT_EQ(result.exitCode, code) << result.err;
  EXPECT_EQ(result.out, "");
  EXPECT_TRUE(result.err.starts_with("nimbara: ")) << result.err;
  EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;
  EXPECT_NE(result.err.find(holds), std::string::npos) << result.err;
}

/// Runs against the demo standing at one moment.
class ForecastTest : public testing::Test {
 protected:
  ForecastTest() : server_(*DemoServer::start(clock_, {})) {}

  CliRun forecast(std::vector<std::string> more, int terminalWidth = 0,
                  Environment const& environment = plainEnvironment()) {
    std::vector<std::string> arguments{"forecast", "--services", server_->baseUrl(), "--now", kNow};
    arguments.insert(arguments.end(), more.begin(), more.end());
    CliRun result = run(arguments, environment, terminalWidth);
    // The port of the stand-in differs from run to run.
    for (auto at = result.out.find(server_->baseUrl()); at != std::string::npos;
         at = result.out.find(server_->baseUrl())) {
      result.out.replace(at, server_->baseUrl().size(), "http://127.0.0.1:12345");
    }
    // Alerts are named again in each run.
    static std::regex const kIdentifier("[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}");
    result.out = std::regex_replace(result.out, kIdentifier, "00000000-0000-4000-8000-000000000000");
    return result;
  }

  FixedClock clock_{at(kNow)};
  std::unique_ptr<DemoServer> server_;
};

struct SnapshotRow {
  std::string file;
  std::vector<std::string> arguments;
  int width;
  std::string timeLocale = "C";
};

void PrintTo(SnapshotRow const& row, std::ostream* out) {
  *out << row.file;
}

class ForecastSnapshots : public ForecastTest, public testing::WithParamInterface<SnapshotRow> {};

/// NIMBARA_UPDATE_SNAPSHOTS=1 writes what is printed now; the change is then read in the diff.
TEST_P(ForecastSnapshots, PrintAsRecorded) {
  std::filesystem::path const file = std::filesystem::path(test::kFixtures) / "cli" / GetParam().file;
  Environment environment = plainEnvironment();
  environment.time = GetParam().timeLocale;
  CliRun const result = forecast(GetParam().arguments, 0, environment);
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
  if (std::getenv("NIMBARA_UPDATE_SNAPSHOTS") != nullptr) std::ofstream(file, std::ios::binary) << result.out;
  EXPECT_EQ(result.out, test::readFile(file));
  if (GetParam().width == 0) return;
  for (std::string_view const line : split(result.out, '\n')) {
    EXPECT_LE(displayWidth(line), GetParam().width) << line;
    EXPECT_FALSE(line.ends_with(' ')) << "'" << line << "'";
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ForecastSnapshots,
    testing::Values(
        SnapshotRow{"berlin-80.txt", {"Berlin"}, 80}, SnapshotRow{"greenwich-80.txt", {"51.48,0"}, 80},
        SnapshotRow{"auckland-120.txt", {"Auckland", "--width", "120"}, 120, "en_NZ.UTF-8"},
        SnapshotRow{"denver-imperial-80.txt", {"39.74,-104.98", "--units", "imperial"}, 80},
        SnapshotRow{"longyearbyen-ascii-80.txt", {"longyearbyen", "--ascii"}, 80},
        SnapshotRow{"lisbon-pt-100.txt", {"Lisbon", "--lang", "pt", "--width", "100"}, 100, "pt_PT.UTF-8"},
        SnapshotRow{"beijing-zh-80.txt", {"Beijing", "--lang", "zh"}, 80, "zh_CN.UTF-8"},
        SnapshotRow{"warsaw-pl-80.txt", {"Warsaw", "--lang", "pl"}, 80, "pl_PL.UTF-8"},
        SnapshotRow{"singapore-40.txt", {"Singapore", "--width", "40"}, 40, "en_SG.UTF-8"},
        SnapshotRow{"berlin.json", {"Berlin", "--json"}, 0},
        SnapshotRow{"kathmandu-raw.json", {"Kathmandu", "--raw"}, 0}));

TEST_F(ForecastTest, ColoursOnlyTerminalsAndHonoursNoColor) {
  EXPECT_EQ(forecast({"Berlin"}).out.find('\x1b'), std::string::npos);
  EXPECT_NE(forecast({"Berlin"}, 80).out.find('\x1b'), std::string::npos);
  Environment noColour = plainEnvironment();
  noColour.noColor = true;
  EXPECT_EQ(forecast({"Berlin"}, 80, noColour).out.find('\x1b'), std::string::npos);
}

TEST_F(ForecastTest, WritesNothingButAsciiWhenAskedOrWhenTheLocaleHasNoMore) {
  auto const isAscii = [](std::string const& text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  };
  EXPECT_TRUE(isAscii(forecast({"Tromsø", "--ascii", "--lang", "pt"}).out));
  Environment latin = plainEnvironment();
  latin.utf8 = false;
  EXPECT_TRUE(isAscii(forecast({"Tromsø"}, 0, latin).out));
}

struct FaultRow {
  std::string name;
  std::string answer;
  std::string_view text;
};

void PrintTo(FaultRow const& row, std::ostream* out) {
  *out << row.name;
}

class ForecastFaults : public testing::TestWithParam<FaultRow> {};

TEST_P(ForecastFaults, EndWithOneLineAndCodeOne) {
  LoopbackServer const server([](test::Connection& connection) {
    connection.readRequest();
    connection.write(GetParam().answer);
  });
  expectOneLine(run({"forecast", "52.52,13.41", "--provider", "openMeteo", "--services", server.url("")}),
                exitCode::kUnavailable, GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ForecastFaults,
    testing::Values(FaultRow{"BadRequest",
                             httpAnswer(R"({"error":true,"reason":"No such place"})", "", "400 Bad Request"),
                             "Server returned HTTP 400: No such place"},
                    FaultRow{"TooManyRequests", httpAnswer("", "", "429 Too Many Requests"),
                             "Server returned HTTP 429; the service's rate limit"},
                    FaultRow{"LogInPage", httpAnswer("<html>Welcome to the hotel</html>"),
                             "Failed to decode response: it is not JSON"},
                    FaultRow{"HalfJson", httpAnswer(test::OpenMeteoAnswer().body().substr(0, 900)),
                             "Failed to decode response"},
                    FaultRow{"CutBody", "HTTP/1.1 200 OK\r\nContent-Length: 5000\r\n\r\n{\"latitude\":1",
                             "Network error: the response was incomplete"},
                    FaultRow{"OverTheCap", "HTTP/1.1 200 OK\r\nContent-Length: 4194305\r\n\r\n{",
                             "Network error: the response is too large"},
                    FaultRow{"Closed", "", "Network error: the server closed the connection"},
                    FaultRow{"Empty", httpAnswer(""), "The server returned an empty response"},
                    FaultRow{"NoValues",
                             httpAnswer(R"({"latitude":1,"longitude":2,"elevation":null,"timezone":"GMT"})"),
                             "elevation"},
                    FaultRow{"NoBlocks",
                             httpAnswer(R"({"latitude":1,"longitude":2,"elevation":0,"timezone":"GMT"})"),
                             "No results found for the given location"}),
    [](auto const& row) { return row.param.name; });

TEST(ForecastFaults, NameAnUnverifiedCertificateAndAnUnknownHost) {
  LoopbackServer const server(LoopbackServer::always(httpAnswer("x")), true);
  expectOneLine(run({"forecast", "1,2", "--services", server.url("")}), exitCode::kUnavailable,
                "certificate");
  expectOneLine(run({"forecast", "1,2", "--services", "http://nimbara.invalid"}), exitCode::kUnavailable,
                "could not resolve host nimbara.invalid");
}

TEST(ForecastFaults, NameEveryProviderThatWasAsked) {
  // One request a connection: the sources of warnings are asked at the same time.
  LoopbackServer const server([](test::Connection& connection) {
    std::ignore = connection.readRequest();
    connection.write(httpAnswer("", "Connection: close\r\n", "503 Service Unavailable"));
  });
  expectOneLine(run({"forecast", "1,2", "--services", server.url("")}), exitCode::kUnavailable,
                "could not fetch a forecast: openMeteo (Server returned HTTP 503), yrNo (Server returned "
                "HTTP 503), wttrIn (Server returned HTTP 503); the service has a problem");
}

TEST(ForecastFaults, GiveWayToAStopRequest) {
  LoopbackServer const server([](test::Connection& connection) { connection.waitForEnd(); });
  test::TestConsole console;
  std::stop_source stop;
  stop.request_stop();
  auto const environment = plainEnvironment();
  int const code = runCli({"forecast", "1,2", "--services", server.url("")},
                          Session{environment, console, stop.get_token()});
  EXPECT_EQ(code, exitCode::kInterrupted);
  EXPECT_EQ(console.errors, "nimbara: interrupted\n");
}

/// A page for a forecast that is not in order: nothing may be made up.
TEST(Report, ShowsWhatIsKnownAndNothingElse) {
  ForecastAnswer answer;
  answer.data = process({}, Calendar::utc(), at(kNow));
  Texts const texts = Texts::load("en");
  ReportOptions options;
  options.now = at(kNow) + std::chrono::minutes(89);
  std::string const empty = forecastReport(answer, options, texts, Calendar::utc());
  EXPECT_NE(empty.find("Current conditions are unavailable."), std::string::npos);
  EXPECT_NE(empty.find("Unknown source, updated 9:20 AM (89 min ago)"), std::string::npos) << empty;
  EXPECT_EQ(empty.find("0 °C"), std::string::npos) << empty;
  EXPECT_EQ(empty.find("Next 24 hours"), std::string::npos);
  answer.provider = WeatherProviderOption::yrNo;
  answer.stale = true;
  answer.data.current.condition = WeatherConditionCode::sunny;
  answer.data.current.availableDetailFields = DetailFields{WeatherDetailField::humidity};
  answer.data.current.unknownValues = ForecastValues::all();
  std::string const gaps = forecastReport(answer, options, texts, Calendar::utc());
  EXPECT_NE(gaps.find("Humidity"), std::string::npos);
  EXPECT_NE(gaps.find("Data from MET Norway (https://api.met.no/"), std::string::npos) << gaps;
  EXPECT_NE(gaps.find("! Older data from 9:20 AM (89 min ago)"), std::string::npos) << gaps;
  options.now = at(kNow) + std::chrono::hours(72);
  std::string const old = forecastReport(answer, options, texts, Calendar::utc());
  EXPECT_NE(old.find("updated 2026-11-21 9:20 AM (3 days ago)"), std::string::npos) << old;
  EXPECT_NE(old.find("Last reading Saturday 9:20 AM: 0 °C, Sunny."), std::string::npos) << old;
  EXPECT_EQ(old.find("Humidity"), std::string::npos) << old;
  for (char const* const hidden :
       {"Visibility", "Pressure", "UV index", "Clouds", "Dew point", "Wind", "Precipitation"}) {
    EXPECT_EQ(gaps.find(hidden), std::string::npos) << hidden;
  }
}

TEST(Demo, RunsACommandAgainstItself) {
  EXPECT_EQ(
      run({"demo", "--", "sh", "-c", "case $NIMBARA_SERVICES in http://127.0.0.1:*) exit 7;; esac"}).exitCode,
      7);
  expectOneLine(run({"demo", "--", "/no/such/command"}), 127, "/no/such/command");
}

TEST(Demo, PrintsItsAddressAndEndsWhenInterrupted) {
  test::TestConsole console;
  std::stop_source stop;
  stop.request_stop();
  auto const environment = plainEnvironment();
  EXPECT_EQ(runCli({"demo"}, Session{environment, console, stop.get_token()}), exitCode::kInterrupted);
  EXPECT_TRUE(console.output.starts_with("http://127.0.0.1:")) << console.output;
}

}  // namespace
}  // namespace nimbara
