#include "feeds/nowcast/bright_sky_radar.h"
#include "feeds/nowcast/met_nowcast.h"
#include "feeds/nowcast/open_meteo_quarters.h"
#include "support/answers/bad_bytes.h"
#include "support/instants.h"
#include "support/samples.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using std::chrono::minutes;
using test::at;
using State = NowcastReply::State;

/// "10:20 0.6 rain, 10:25 ? rain": beginnings in UTC with rates.
std::string stepsOf(Nowcast const& nowcast) {
  std::string out;
  for (NowcastStep const& step : nowcast.steps) {
    out += (out.empty() ? "" : ", ") + formatIso8601(step.from).substr(11, 5) + "-" +
           formatIso8601(step.to).substr(11, 5) + " ";
    out += step.mmPerHour ? std::to_string(std::lround(*step.mmPerHour * 100)) : "?";
    if (step.fall != Fall::unknown) out += " " + std::string(enumName(step.fall));
  }
  return out;
}

std::string metBody(std::string const& coverage, std::string const& series) {
  return R"({"properties":{"meta":{"updated_at":"2026-11-21T10:18:09Z","radar_coverage":")" + coverage +
         R"("},"timeseries":[)" + series + "]}}";
}

/// `hour` stands for the members of "details" and behind it.
std::string metStep(std::string const& time, std::string const& details, std::string const& symbol = "") {
  return R"({"time":"2026-11-21T)" + time + R"(:00Z","data":{"instant":{"details":{)" + details + "}}" +
         (symbol.empty() ? "" : R"(,"next_1_hours":{"summary":{"symbol_code":")" + symbol + R"("}})") + "}}";
}

TEST(MetNowcast, ReadsTheRecordedOne) {
  auto const files = test::sampleFiles("met-norway");
  if (!files) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  auto const file = std::ranges::find_if(
      *files, [](auto const& path) { return path.filename().string().starts_with("nowcast-oslo-dry"); });
  if (file == files->end()) GTEST_SKIP() << "not among the samples";
  std::string const body = test::readFile(*file);
  auto const reply = parseMetNowcast(body);
  ASSERT_TRUE(reply) << reply.error().text();
  EXPECT_EQ(reply->state, State::steps);
  Nowcast const& nowcast = reply->nowcast;
  EXPECT_EQ(nowcast.source, "metNorway");
  EXPECT_EQ(nowcast.kind, NowcastKind::radar);
  EXPECT_EQ(nowcast.issued, at("2026-04-26T10:18:09Z"));
  ASSERT_EQ(nowcast.steps.size(), 23U);
  EXPECT_EQ(nowcast.steps.front(),
            (NowcastStep{at("2026-04-26T10:20:00Z"), at("2026-04-26T10:25:00Z"), 0.0, Fall::rain}))
      << "at ten degrees it would be rain";
  EXPECT_EQ(nowcast.steps.back().to, at("2026-04-26T12:15:00Z"));
  for (std::string const& damaged : test::damagedForms(body)) parseMetNowcast(damaged);
}

struct Row {
  std::string body, steps;
};

TEST(MetNowcast, ReadsRatesWithHolesAndWhatFalls) {
  std::string const rate = R"("precipitation_rate":)";
  for (Row const& row : {
           Row{metStep("10:20", rate + "0.6") + "," + metStep("10:25", rate + "1.2"),
               "10:20-10:25 60, 10:25-10:30 120"},
           {metStep("10:20", rate + "0.6") + "," + metStep("10:35", rate + "0"),
            "10:20-10:25 60, 10:35-10:40 0"},
           {metStep("10:25", rate + "1") + "," + metStep("10:20", rate + "2"),
            "10:20-10:25 200, 10:25-10:30 100"},
           {metStep("10:20", rate + "null") + "," + metStep("10:25", rate + "1"),
            "10:20-10:25 ?, 10:25-10:30 100"},
           {metStep("10:20", rate + "-1") + "," + metStep("10:25", rate + "1000"),
            "10:20-10:25 ?, 10:25-10:30 100000"},
           {metStep("10:20", rate + "1000.5") + "," + metStep("10:25", rate + "\"1\"") + "," +
                metStep("10:30", rate + "0"),
            "10:20-10:25 ?, 10:25-10:30 ?, 10:30-10:35 0"},
           {"7,null,{}," + metStep("10:20", rate + "0"), "10:20-10:25 0"},
           {metStep("10:20", rate + "1", "lightrainshowers_day"), "10:20-10:25 100 rain"},
           {metStep("10:20", rate + "1", "heavysleet"), "10:20-10:25 100 sleet"},
           {metStep("10:20", rate + "1", "snowandthunder"), "10:20-10:25 100 snow"},
           {metStep("10:20", rate + R"(1,"air_temperature":9)", "snow"), "10:20-10:25 100 snow"},
           {metStep("10:20", rate + R"(1,"air_temperature":3)", "cloudy"), "10:20-10:25 100 rain"},
           {metStep("10:20", rate + R"(1,"air_temperature":2.9)", "cloudy"), "10:20-10:25 100"},
           {metStep("10:20", rate + R"(1,"air_temperature":-1.9)"), "10:20-10:25 100"},
           {metStep("10:20", rate + R"(1,"air_temperature":-2)"), "10:20-10:25 100 snow"},
       }) {
    auto const reply = parseMetNowcast(metBody("ok", row.body));
    ASSERT_TRUE(reply) << row.body << reply.error().text();
    EXPECT_EQ(stepsOf(reply->nowcast), row.steps) << row.body;
  }
}

TEST(MetNowcast, IsOfUseOnlyWhereTheRadarReaches) {
  std::string const step = metStep("10:20", R"("precipitation_rate":0)");
  EXPECT_EQ(parseMetNowcast(metBody("ok", step))->state, State::steps);
  EXPECT_EQ(parseMetNowcast(metBody("no coverage", step))->state, State::uncovered);
  EXPECT_EQ(parseMetNowcast(metBody("temporarily unavailable", step))->state, State::radarDown);
  for (std::string const& body :
       {metBody("", step), metBody("unheard of", step), metBody("ok", ""),
        metBody("ok", metStep("10:20", R"("air_temperature":4)")), std::string("{}"), std::string("[]"),
        std::string(R"({"properties":{"meta":{},"timeseries":[]}})"), std::string("<html>log in</html>")})
    EXPECT_FALSE(parseMetNowcast(body)) << body;
}

std::string frame(std::string const& time, std::string const& grid) {
  return R"({"timestamp":"2026-11-21T)" + time + R"(:00+00:00","source":"x","precipitation_5":)" + grid + "}";
}

std::string radarOf(std::string const& frames, std::string const& position = R"({"x":1.3,"y":0.6})") {
  return R"({"radar":[)" + frames + R"(],"geometry":{},"latlon_position":)" + position + "}";
}

constexpr char kGrid[] = "[[0,1,2],[10,11,12],[20,21,22]]";

TEST(BrightSkyRadar, ReadsTheCellOfThePlace) {
  for (auto const& [position, rate] : {
           std::pair{R"({"x":0,"y":0})", "0"},
           {R"({"x":1.3,"y":0.6})", "132"},
           {R"({"x":1.49,"y":0.49})", "12"},
           {R"({"x":1.5,"y":0.5})", "144"},
           {R"({"x":-0.4,"y":2.4})", "240"},
       }) {
    auto const reply = parseBrightSkyRadar(radarOf(frame("10:20", kGrid), position));
    ASSERT_TRUE(reply) << position;
    EXPECT_EQ(stepsOf(reply->nowcast), "10:15-10:20 " + std::string(rate)) << position;
  }
  for (std::string const position : {R"({"x":3,"y":0})", R"({"x":0,"y":3})", R"({"x":-1,"y":0})",
                                     R"({"x":1e300,"y":0})", R"({"x":null})", "7"})
    EXPECT_FALSE(parseBrightSkyRadar(radarOf(frame("10:20", kGrid), position))) << position;
}

TEST(BrightSkyRadar, ToleratesHoles) {
  for (Row const& row : {
           Row{frame("10:20", kGrid) + "," + frame("10:25", "null"), "10:15-10:20 132, 10:20-10:25 ?"},
           {frame("10:20", kGrid) + "," + frame("10:25", "[]"), "10:15-10:20 132, 10:20-10:25 ?"},
           {frame("10:20", kGrid) + "," + frame("10:25", "[[1],[1]]"), "10:15-10:20 132, 10:20-10:25 ?"},
           {frame("10:20", kGrid) + "," + frame("10:25", "[[1,1],[1,null]]"),
            "10:15-10:20 132, 10:20-10:25 ?"},
           {frame("10:20", kGrid) + "," + frame("10:25", "[7,[1,65535]]"), "10:15-10:20 132, 10:20-10:25 ?"},
           {frame("10:20", kGrid) + "," + frame("10:25", "\"eJxjZGBgAAAADAAD\""),
            "10:15-10:20 132, 10:20-10:25 ?"},
           {"7,null,{}," + frame("10:20", kGrid), "10:15-10:20 132"},
       }) {
    auto const reply = parseBrightSkyRadar(radarOf(row.body));
    ASSERT_TRUE(reply) << row.body << reply.error().text();
    EXPECT_EQ(stepsOf(reply->nowcast), row.steps) << row.body;
  }
}

TEST(BrightSkyRadar, TellsItsStatesApart) {
  EXPECT_EQ(parseBrightSkyRadar(radarOf(frame("10:20", kGrid)))->state, State::steps);
  EXPECT_EQ(parseBrightSkyRadar(radarOf(""))->state, State::radarDown) << "the service has no newer frames";
  for (std::string const body : {std::string("{}"), std::string("null"), radarOf(frame("10:20", "null")),
                                 std::string(R"({"radar":[]})"), std::string("<html>log in</html>")})
    EXPECT_FALSE(parseBrightSkyRadar(body)) << body;
  EXPECT_TRUE(isOutsideBrightSkyRadar(R"({"detail":"lat/lon lies outside the radar data range"})"));
  EXPECT_FALSE(isOutsideBrightSkyRadar(R"({"detail":"Not Found"})"));
  EXPECT_FALSE(isOutsideBrightSkyRadar("<html>"));
  for (std::string const& damaged : test::damagedForms(radarOf(frame("10:20", kGrid)), 5))
    parseBrightSkyRadar(damaged);
}

TEST(BrightSkyRadar, AsksForTheNextTwoHours) {
  EXPECT_EQ(brightSkyRadarPath({52.520008, 13.404954}, at("2026-11-21T10:24:59Z")),
            "/radar?lat=52.5200&lon=13.4050&distance=1000&format=plain&date=2026-11-21T10:20:00Z"
            "&last_date=2026-11-21T12:25:00Z");
}

/// Two quarters, ending at 10:15 and 10:30.
std::string quarters(std::string const& members, std::string const& times = "1795256100,1795257000") {
  return R"({"minutely_15":{"time":[)" + times + "]," + members + "}}";
}

TEST(OpenMeteoQuarters, AreTheSumsOfTheMinutesBefore) {
  for (Row const& row : {
           Row{quarters(R"("precipitation":[0.1,0.3],"rain":[0.1,0],"snowfall":[0.1,0.2])"),
               "10:00-10:15 40 sleet, 10:15-10:30 120 snow"},
           {quarters(R"("precipitation":[0.1,0.3],"rain":[0.1,0.3],"snowfall":[0,0])"),
            "10:00-10:15 40 rain, 10:15-10:30 120 rain"},
           {quarters(R"("precipitation":[0.1,0.3],"weather_code":[61,71])"),
            "10:00-10:15 40 rain, 10:15-10:30 120 snow"},
           {quarters(R"("precipitation":[0.1,0.3],"weather_code":[77,86])"),
            "10:00-10:15 40 snow, 10:15-10:30 120 snow"},
           {quarters(R"("precipitation":[0.1,0.3],"weather_code":[66,95])"),
            "10:00-10:15 40 rain, 10:15-10:30 120 rain"},
           {quarters(R"("precipitation":[0,null],"weather_code":[3,null])"), "10:00-10:15 0, 10:15-10:30 ?"},
           {quarters(R"("precipitation":[0])"), "10:00-10:15 0, 10:15-10:30 ?"},
           {quarters(R"("precipitation":[-1,"3",0])", "1795256100,1795257000,1795257900"),
            "10:00-10:15 ?, 10:15-10:30 ?, 10:30-10:45 0"},
           {quarters(R"("precipitation":[1,2,3,0])", "null,\"x\",1e30,1795257900"), "10:30-10:45 0"},
       }) {
    auto const reply = parseOpenMeteoQuarters(row.body);
    ASSERT_TRUE(reply) << row.body << reply.error().text();
    EXPECT_EQ(stepsOf(reply->nowcast), row.steps) << row.body;
    EXPECT_EQ(reply->nowcast.kind, NowcastKind::model15);
  }
}

TEST(OpenMeteoQuarters, AreRefusedInOtherDocuments) {
  for (std::string const& body :
       {std::string("{}"), std::string("[]"), std::string("<html>log in</html>"), quarters(R"("rain":[0,0])"),
        quarters(R"("precipitation":[null,null])"), std::string(R"({"minutely_15":{"precipitation":[1]}})"),
        std::string(R"({"error":true,"reason":"Too many requests"})")})
    EXPECT_FALSE(parseOpenMeteoQuarters(body)) << body;
  for (std::string const& damaged : test::damagedForms(quarters(R"("precipitation":[0.1,0.3])"), 3))
    parseOpenMeteoQuarters(damaged);
}

struct PlaceRow {
  Coordinate place;
  std::vector<NowcastSource> sources;
};

TEST(NowcastSources, AreThoseOfThePlace) {
  using enum NowcastSource;
  for (PlaceRow const& row : {PlaceRow{{59.91, 10.75}, {metNorway}},
                              PlaceRow{{53.55, 9.99}, {metNorway, brightSky, openMeteo}},
                              PlaceRow{{52.52, 13.41}, {brightSky, openMeteo}},
                              PlaceRow{{53, 13.41}, {metNorway, brightSky, openMeteo}},
                              PlaceRow{{52.999, 13.41}, {brightSky, openMeteo}},
                              PlaceRow{{72, 25}, {metNorway}},
                              PlaceRow{{72.001, 25}, {}},
                              PlaceRow{{60, 2.999}, {}},
                              PlaceRow{{60, 32.5}, {metNorway}},
                              PlaceRow{{60, 32.501}, {}},
                              PlaceRow{{48, 16.5}, {brightSky, openMeteo}},
                              PlaceRow{{48, 16.501}, {openMeteo}},
                              PlaceRow{{48, 3.6}, {brightSky, openMeteo}},
                              PlaceRow{{48, 3.599}, {openMeteo}},
                              PlaceRow{{48, 20.3}, {openMeteo}},
                              PlaceRow{{48, 20.301}, {}},
                              PlaceRow{{45.7, 10}, {brightSky, openMeteo}},
                              PlaceRow{{45.699, 10}, {openMeteo}},
                              PlaceRow{{40.42, -3.70}, {openMeteo}},
                              PlaceRow{{37.999, -3.70}, {}},
                              PlaceRow{{40.42, -8.001}, {}},
                              PlaceRow{{40.71, -74.01}, {openMeteo}},
                              PlaceRow{{24, -100}, {openMeteo}},
                              PlaceRow{{23.999, -100}, {}},
                              PlaceRow{{50, -100}, {openMeteo}},
                              PlaceRow{{50.001, -100}, {}},
                              PlaceRow{{40, -125}, {openMeteo}},
                              PlaceRow{{40, -125.001}, {}},
                              PlaceRow{{40, -66.5}, {openMeteo}},
                              PlaceRow{{40, -66.499}, {}},
                              PlaceRow{{35.68, 139.69}, {}},
                              PlaceRow{{-33.87, 151.21}, {}}})
    EXPECT_EQ(nowcastSourcesAt(row.place), row.sources) << formatCoordinate(row.place);
}

}  // namespace
}  // namespace nimbara
