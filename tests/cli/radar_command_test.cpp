#include "demo/demo_server.h"
#include "support/instants.h"
#include "support/temporary_folder.h"
#include "support/test_console.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::at;
using test::CliRun;
using testing::HasSubstr;
using testing::StartsWith;
using Kind = DemoFault::Kind;

class RadarCommand : public testing::Test {
 protected:
  RadarCommand() {
    environment_.dataDirectory = directory_.path() / "data";
    environment_.cacheDirectory = directory_.path() / "Nimbara";
  }
  void SetUp() override {
    auto const drawer = environment_.program.parent_path() / "nimbara-desktop";
    if (!std::filesystem::exists(drawer)) GTEST_SKIP() << "built without the window";
  }
  CliRun run(std::vector<std::string> arguments, std::vector<DemoFault> faults = {}) const {
    std::string const now = "2026-11-22T10:07:00Z";
    FixedClock const clock(at(now));
    auto const server = *DemoServer::start(clock, std::move(faults));
    arguments.insert(arguments.begin(), "radar");
    arguments.insert(arguments.end(), {"--png", picture_.string(), "--size", "300x200", "--services",
                                       server->baseUrl(), "--now", now});
    return test::run(arguments, environment_);
  }

  test::TemporaryFolder directory_;
  Environment environment_ = test::plainEnvironment();
  std::filesystem::path picture_ = directory_.path() / "rain.png";
};

struct RadarRow {
  std::string name;
  std::string place;
  std::vector<DemoFault> faults;
  std::string source;  ///< empty where there is none
  std::string state;
  std::string unchecked;  ///< the suppliers before it
};

TEST_F(RadarCommand, DrawsWhatTheFirstSupplierHas) {
  for (RadarRow const& row : {
           RadarRow{"Germany", "52.52,13.4", {}, "dwd", "ok", ""},
           {"Japan", "35.68,139.77", {}, "jma", "ok", ""},
           {"America", "39.74,-104.99", {}, "noaa", "ok", ""},
           {"France", "48.86,2.35", {}, "libreWxr", "ok", ""},
           {"Australia", "-33.87,151.21", {}, "rainViewer", "ok", ""},
           {"Kenya", "-1.29,36.82", {}, "", "noRadarHere", ""},
           {"refused", "39.74,-104.99", {{Service::noaaRadar, Kind::status403}}, "iowaMesonet", "ok", "noaa"},
           {"counted", "48.86,2.35", {{Service::libreWxr, Kind::status429}}, "rainViewer", "ok", "libreWxr"},
           {"empty", "52.52,13.4", {{Service::dwdMaps, Kind::emptyList}}, "libreWxr", "ok", "dwd"},
           {"broken", "52.52,13.4", {{Service::dwdMaps, Kind::drop}}, "libreWxr", "ok", "dwd"},
           {"written", "52.52,13.4", {{Service::dwdMaps, Kind::writing}}, "libreWxr", "ok", "dwd"},
           {"transparent", "52.52,13.4", {{Service::dwdMaps, Kind::transparent}}, "dwd", "ok", ""},
           {"none left",
            "-33.87,151.21",
            {{Service::rainViewer, Kind::writing}},
            "",
            "unavailable",
            "rainViewer"},
           {"all down",
            "48.86,2.35",
            {{Service::libreWxr, Kind::status500}, {Service::rainViewer, Kind::status403}},
            "",
            "unavailable",
            "libreWxr rainViewer"},
       }) {
    std::filesystem::remove(picture_);
    std::filesystem::remove_all(environment_.cacheDirectory);
    CliRun const got = run({row.place, "--json"}, row.faults);
    EXPECT_EQ(got.exitCode, row.state == "unavailable" ? exitCode::kUnavailable : 0) << row.name << got.err;
    std::string const source = row.source.empty() ? "null" : "\"" + row.source + "\"";
    EXPECT_THAT(got.out, StartsWith(R"({"source":)" + source)) << row.name << got.err;
    EXPECT_THAT(got.out, HasSubstr(R"("state":")" + row.state + "\"")) << row.name;
    std::string unchecked;
    for (auto at = got.out.find("{\"source\":\"", 1); at != std::string::npos;
         at = got.out.find("{\"source\":\"", at)) {
      at += 11;
      unchecked += (unchecked.empty() ? "" : " ") + got.out.substr(at, got.out.find('"', at) - at);
    }
    EXPECT_EQ(unchecked, row.unchecked) << row.name;
    EXPECT_EQ(std::filesystem::exists(picture_), row.state != "unavailable") << row.name;
  }
}

TEST_F(RadarCommand, WritesThePictureInItsSizeWithTheFramesTime) {
  CliRun const got = run({"52.52,13.4", "--json"});
  EXPECT_THAT(got.out, StartsWith(R"({"source":"dwd","frame":"2026-11-22T10:05:00Z","ageSeconds":120,)"));
  std::string const bytes = directory_.read("rain.png");
  ASSERT_THAT(bytes, StartsWith("\x89PNG"));
  EXPECT_EQ(bytes.substr(16, 8), std::string("\0\0\x01\x2c\0\0\0\xc8", 8));  // 300 and 200
  EXPECT_EQ(run({"52.52,13.4"}).out, "Deutscher Wetterdienst, radar, 2 min ago\n");
  EXPECT_EQ(run({"-1.29,36.82"}).out, "There is no rain radar here\n");
}

TEST_F(RadarCommand, SaysWhatIsWrongWithItsWords) {
  EXPECT_EQ(run({"52.52,13.4", "--zoom", "13"}).exitCode, exitCode::kUsage);
  EXPECT_EQ(test::run({"radar", "52.52,13.4"}, environment_).exitCode, exitCode::kUsage);
  CliRun const size = test::run({"radar", "52.52,13.4", "--png", "x", "--size", "99x200"}, environment_);
  EXPECT_EQ(size.exitCode, exitCode::kUsage);
  EXPECT_THAT(size.err, HasSubstr("'99x200' is not a size like 800x600"));
  environment_.program = directory_.path() / "bin" / "nimbara";
  CliRun const alone = test::run({"radar", "52.52,13.4", "--png", "x"}, environment_);
  EXPECT_EQ(alone.exitCode, exitCode::kUnavailable);
  EXPECT_THAT(alone.err, HasSubstr("install the package of the window"));
}

}  // namespace
}  // namespace nimbara
