#include "feeds/stations/netatmo_reader.h"
#include "feeds/stations/public_stations.h"
#include "feeds/stations/station_document.h"
#include "support/answers/bad_bytes.h"
#include "support/instants.h"
#include "support/samples.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using enum StationQuantity;
using test::at;
using Kind = StationModuleKind;

std::string sample(std::string const& name) {
  auto const files = test::sampleFiles("netatmo");
  if (!files) return {};
  for (auto const& file : *files) {
    if (file.filename() == name) return test::readFile(file);
  }
  return {};
}

/// "temperature 21.4, humidity 62".
std::string valuesOf(StationModule const& module) {
  std::string out;
  for (StationValue const& each : module.values)
    out += (out.empty() ? "" : ", ") + std::string(enumName(each.quantity)) + " " +
           std::to_string(std::lround(each.value * 10));
  return out;
}

TEST(Netatmo, ReadsTheRecordedStations) {
  std::string const body = sample("getstationsdata.json");
  if (body.empty()) GTEST_SKIP() << "not among the samples";
  auto const stations = parseNetatmoStations(body);
  ASSERT_TRUE(stations) << stations.error().text();
  ASSERT_EQ(stations->size(), 7U);
  StationReading const& first = stations->front();
  EXPECT_EQ(first.name, "MyStation");
  EXPECT_EQ(first.altitude, 664);
  ASSERT_EQ(first.modules.size(), 6U);
  EXPECT_EQ(valuesOf(*moduleOf(first, Kind::outdoor)), "temperature 286, humidity 240");
  EXPECT_EQ(moduleOf(first, Kind::outdoor)->battery, 87);
  EXPECT_EQ(moduleOf(first, Kind::outdoor)->observedAt, at("2019-06-01T18:19:17Z"));
  EXPECT_EQ(
      valuesOf(*moduleOf(first, Kind::base)),
      "temperature 246, humidity 360, pressure 10173, absolutePressure 9397, carbonDioxide 7490, noise 370");
  EXPECT_EQ(valuesOf(*moduleOf(first, Kind::wind)),
            "windSpeed 40, windDirection 2170, gustSpeed 90, gustDirection 2060");
  EXPECT_EQ(valuesOf(*moduleOf(first, Kind::rain)), "rainLastHour 0, rainLastDay 0");
  EXPECT_EQ(stations->at(2).name, "Ateljen") << "of the home where the station has no name";
  int silent = 0;
  for (StationReading const& station : *stations) {
    for (StationModule const& module : station.modules) {
      if (module.isReachable) continue;
      ++silent;
      EXPECT_TRUE(module.values.empty() && !module.observedAt) << module.name;
    }
  }
  EXPECT_EQ(silent, 3);
  for (std::string const& damaged : test::damagedForms(body, 397)) parseNetatmoStations(damaged);
}

TEST(Netatmo, ReadsAllThreeShapesOfPublicMeasures) {
  std::string const body = sample("getpublicdata.json");
  if (body.empty()) GTEST_SKIP() << "not among the samples";
  auto const stations = parseNetatmoPublic(body);
  ASSERT_TRUE(stations) << stations.error().text();
  ASSERT_EQ(stations->size(), 8U);
  StationReading const& last = stations->back();
  EXPECT_EQ(valuesOf(*moduleOf(last, Kind::outdoor)), "temperature 201, humidity 670");
  EXPECT_EQ(valuesOf(*moduleOf(last, Kind::base)), "pressure 10100");
  EXPECT_EQ(valuesOf(*moduleOf(last, Kind::rain)), "rainLastHour 0, rainLastDay 110");
  EXPECT_EQ(valuesOf(*moduleOf(last, Kind::wind)),
            "windSpeed 150, windDirection 170, gustSpeed 310, gustDirection 2170");
  Coordinate const place{50.195, 8.79};
  auto const together = publicStations(*stations, place, std::nullopt, at("2019-06-11T10:20:00Z"));
  EXPECT_EQ(together.used, 8) << "from 19.8 to 27.4 °C around 22.3: no outlier by three MAD of 2 °C";
  EXPECT_NEAR(*moduleOf(together.reading, Kind::outdoor)->value(temperature), 22.3, 0.1);
  for (std::string const& damaged : test::damagedForms(body, 197)) parseNetatmoPublic(damaged);
}

struct RefusalRow {
  int status;
  std::string body;
  std::optional<NetatmoRefusal::Kind> kind;
};

TEST(Netatmo, KnowsErrorsInBothShapes) {
  using enum NetatmoRefusal::Kind;
  for (RefusalRow const& row : {
           RefusalRow{400, R"({"error":"invalid_grant"})", grantInvalid},
           {400, R"({"error":"invalid_client"})", clientInvalid},
           {400, R"({"error":"redirect_uri_mismatch"})", redirect},
           {200, R"({"error":"too_many_connections"})", tooMany},
           {403, R"({"error":{"code":26,"message":"User usage reached"}})", tooMany},
           {429, R"({"error":{"code":26}})", tooMany},
           {403, R"({"error":{"code":3,"message":"Access token expired"}})", tokenExpired},
           {403, R"({"error":{"code":2}})", tokenExpired},
           {403, R"({"error":{"code":13,"message":"scope"}})", scope},
           {200, R"({"error":{"code":0,"message":"failed to connect"}})", backend},
           {403, R"({"error":{"code":99}})", other},
           {429, "<html>", tooMany},
           {502, "", backend},
           {404, "{}", other},
           {200, R"({"status":"ok","body":[]})", std::nullopt},
       }) {
    auto const refusal = netatmoRefusal(row.status, row.body);
    EXPECT_EQ(refusal ? std::optional(refusal->kind) : std::nullopt, row.kind) << row.status << row.body;
  }
}

TEST(Netatmo, ReadsTokensThatCanBeSent) {
  if (std::string const body = sample("token-reply.json"); !body.empty()) {
    EXPECT_EQ(parseNetatmoTokens(body)->life, std::chrono::seconds(10'800));
  }
  auto const of = [](std::string const& access, std::string const& rest) {
    return parseNetatmoTokens(R"({"access_token":")" + access + R"(","refresh_token":"r")" + rest + "}");
  };
  EXPECT_EQ(of("a|b", R"(,"expire_in":600)"), (NetatmoTokens{"a|b", "r", std::chrono::seconds(600)}));
  EXPECT_EQ(of("a", "")->life, std::chrono::seconds(10'800));
  EXPECT_EQ(of("a", R"(,"expires_in":-5)")->life.count(), 0);
  for (char const* const bad : {"", "a b", R"(a\r\nHost: x)", R"(\u00e9)"}) EXPECT_FALSE(of(bad, "")) << bad;
}

struct DocumentRow {
  std::string body;
  StationForm form;
  std::string values;
  std::string at = "12:00";
};

TEST(StationDocument, KnowsEachFormByItsNames) {
  using enum StationForm;
  for (
      DocumentRow const& row : {
          DocumentRow{R"({"common_list":[{"id":"0x02","val":"12.9","unit":"C"},{"id":"0x07","val":"41%"},
               {"id":"3","val":"22.9","unit":"C"},{"id":"0x0B","val":"2.0 m/s"},{"id":"0x0C","val":"10 mph"},
               {"id":"0x0A","val":"260"}],"rain":[{"id":"0x0E","val":"1.0 mm/Hr"},{"id":"0x10","val":"3.2 mm"}],
               "wh25":[{"intemp":"22.9","unit":"C","inhumi":"42%","abs":"975.8 hPa","rel":"1013.2 hPa"}]})",
                      ecowitt,
                      "temperature 129, humidity 410, windDirection 2600, windSpeed 72, gustSpeed 161, "
                      "rainLastDay 32, pressure 10132, absolutePressure 9758"},
          {R"({"common_list":[{"id":"0x02","val":"50.0","unit":"F"},{"id":"0x07","val":"--.-"},7,null],
               "wh25":[{"rel":"29.92 inHg"}]})",
           ecowitt, "temperature 100, pressure 10132"},
          {R"({"tempf":50,"humidity":90,"baromrelin":29.92,"windspeedmph":10,"winddir":230,"hourlyrainin":1,
               "dailyrainin":0.1,"dateutc":1795260000000})",
           ambient,
           "temperature 100, humidity 900, pressure 10132, windSpeed 161, windDirection 2300, rainLastDay 25",
           "11:20"},
          {R"({"tempf":"50","dateutc":"2026-11-21 11:50:35"})", ambient, "temperature 100", "11:50"},
          {R"({"usUnits":1,"dateTime":1795260000,"outTemp":50,"barometer":29.92,"windSpeed":10,"hourRain":0.1})",
           weewx, "temperature 100, pressure 10132, windSpeed 161, rainLastHour 25", "11:20"},
          {R"({"usUnits":16,"outTemp":10,"windSpeed":36,"hourRain":0.2})", weewx,
           "temperature 100, windSpeed 360, rainLastHour 20"},
          {R"({"usUnits":17,"outTemp":10,"windSpeed":10,"hourRain":2})", weewx,
           "temperature 100, windSpeed 360, rainLastHour 20"},
          {R"({"outTemp_C":"10.0","barometer_mbar":"1013","windSpeed_kph":"36"})", weewx,
           "temperature 100, pressure 10130, windSpeed 360"},
          {R"({"outTemp":50,"outHumidity":40})", weewx, "humidity 400"},
          {R"({"name":"Shed","temperature":-3.5,"rainLastHour":0,"time":"2026-11-21T11:58:00Z"})", plain,
           "temperature -35, rainLastHour 0", "11:58"},
      }) {
    auto const document = parseStationDocument(row.body, at("2026-11-21T12:00:00Z"));
    ASSERT_TRUE(document) << row.body << document.error().text();
    StationModule const& module = document->station.modules.front();
    EXPECT_EQ(document->form, row.form) << row.body;
    EXPECT_EQ(valuesOf(module), row.values) << row.body;
    EXPECT_EQ(formatIso8601(*module.observedAt).substr(11, 5), row.at) << row.body;
    for (std::string const& damaged : test::damagedForms(row.body, 7)) parseStationDocument(damaged, {});
  }
  for (char const* const body : {R"({})", R"([])", R"({"temperature":400})", R"({"temperature":null})",
                                 R"({"temperature":5,"time":"yesterday"})", R"({"common_list":[]})"})
    EXPECT_FALSE(parseStationDocument(body, {})) << body;
}

struct NeighbourRow {
  std::vector<double> temperatures, altitudes;
  int used, leftOut;
  std::optional<double> median;
};

TEST(PublicStations, TakeTheMiddleAndLeaveOutWhatStandsApart) {
  Instant const now = at("2026-11-21T12:00:00Z");
  for (NeighbourRow const& row : {
           NeighbourRow{{10, 10.4, 10.2}, {}, 3, 0, 10.2},
           {{10, 10.2}, {}, 2, 0, std::nullopt},
           {{10, 10.4, 10.2, 10.6, 19}, {}, 4, 1, 10.3},
           {{10, 10, 10, 11.5}, {}, 4, 0, 10},
           {{10, 10, 10, 11.6}, {}, 3, 1, 10},
           {{13.25, 10, 6.75}, {0, 500, 1000}, 3, 0, 10},
           {{13.25, 10, 20}, {0, 500, 1000}, 2, 1, std::nullopt},
       }) {
    std::vector<StationReading> stations;
    for (std::size_t i = 0; i < row.temperatures.size(); ++i) {
      StationModule module{.id = "m", .observedAt = now};
      module.add(temperature, row.temperatures[i]);
      stations.push_back({.id = std::to_string(i), .latitude = 50.001, .longitude = 8, .modules = {module}});
      if (!row.altitudes.empty()) stations.back().altitude = row.altitudes[i];
    }
    StationReading far = stations.at(1);
    far.latitude = 50.05;
    StationReading old = stations.at(1);
    old.modules.front().observedAt = now - std::chrono::minutes(31);
    stations.insert(stations.end(), {far, old});
    auto const all = publicStations(stations, {50, 8}, std::nullopt, now);
    std::string const what = testing::PrintToString(row.temperatures);
    EXPECT_EQ(all.used, row.used) << what;
    EXPECT_EQ(all.leftOut, row.leftOut) << what;
    StationModule const* const module = moduleOf(all.reading, Kind::outdoor);
    ASSERT_EQ(module != nullptr, row.median.has_value()) << what;
    if (module != nullptr) {
      EXPECT_NEAR(*module->value(temperature), *row.median, 0.01) << what;
    }
    EXPECT_EQ(all.nearest.size(), stations.size() - 1) << "one is farther than 5 km";
  }
}

}  // namespace
}  // namespace nimbara
