#include "feeds/stations/station_service.h"

#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using std::chrono::minutes;
using std::chrono::seconds;
using test::at;
using Kind = StationProblem::Kind;

constexpr char kNow[] = "2026-11-21T12:00:00Z";

/// An account's station that was heard of so long ago.
std::string stations(Instant now, seconds ago) {
  auto const time =
      std::to_string(std::chrono::duration_cast<seconds>((now - ago).time_since_epoch()).count());
  return R"({"status":"ok","body":{"devices":[{"_id":"70:ee","type":"NAMain","station_name":"Home",
      "place":{"location":[13.4,52.5]},"modules":[{"_id":"02:00","type":"NAModule1","module_name":"Garden",
      "dashboard_data":{"time_utc":)" +
         time + R"(,"Temperature":3.4}}]}]}})";
}

class Stations : public testing::Test {
 protected:
  void link(StationLinkKind kind) {
    StationLink link{.kind = kind,
                     .clientId = "id",
                     .clientSecret = "secret",
                     .accessToken = "token",
                     .refreshToken = "fresh",
                     .expiresAt = at(kNow) + std::chrono::hours(20)};
    if (kind == StationLinkKind::address) link.address = "192.168.1.20";
    link.latitude = 52.5;
    link.longitude = 13.4;
    ASSERT_TRUE(StationLinkFile(folder_.path() / "station.json").write(link));
  }
  StationService service() {
    return {http_,
            clock_,
            {"https://netatmo.test", folder_.path() / "station.json", folder_.path() / "kept.json"}};
  }
  StationsReading read(StationNeed need = StationNeed::shown) { return service().read(need); }

  test::TemporaryFolder folder_;
  test::ManualClock clock_{at(kNow)};
  test::FakeHttpClient http_;
};

TEST_F(Stations, AreNotAskedForWithoutALink) {
  EXPECT_EQ(read().state, StationState::notLinked);
  EXPECT_TRUE(http_.requests.empty());
}

struct RestRow {
  seconds ago;
  StationNeed need;
  seconds rest;
};

TEST_F(Stations, AreAskedForWhenTheyHaveUploadedAgain) {
  link(StationLinkKind::account);
  for (RestRow const& row : {RestRow{minutes(4), StationNeed::shown, seconds(380)},
                             {seconds(619), StationNeed::shown, seconds(1)},
                             {seconds(620), StationNeed::shown, minutes(10)},
                             {std::chrono::hours(5), StationNeed::shown, minutes(10)},
                             {minutes(4), StationNeed::hidden, minutes(20)},
                             {minutes(-3), StationNeed::shown, minutes(10)}}) {
    clock_.advance(std::chrono::hours(1));
    http_.willAnswer(200, stations(clock_.now(), row.ago));
    StationsReading const reading = read(row.need);
    ASSERT_EQ(reading.state, StationState::current);
    EXPECT_EQ(reading.station()->modules.at(1).value(StationQuantity::temperature), 3.4);
    auto const asked = http_.requests.size();
    clock_.advance(row.rest - seconds(1));
    EXPECT_EQ(read(row.need).state, StationState::current) << "another program finds the answer";
    EXPECT_EQ(http_.requests.size(), asked) << row.ago.count();
    clock_.advance(seconds(1));
    http_.willAnswer(200, stations(clock_.now(), row.ago));
    read(row.need);
    EXPECT_EQ(http_.requests.size(), asked + 1) << row.ago.count();
  }
  EXPECT_EQ(http_.requests.front().headers.front().second, "Bearer token");
  auto const asked = http_.requests.size();
  clock_.advance(std::chrono::hours(1));
  read(StationNeed::kept);
  EXPECT_EQ(http_.requests.size(), asked);
}

struct FailureRow {
  int status;
  std::string body;
  Kind kind;
  minutes rest;
};

TEST_F(Stations, AreLeftAloneAfterAFailureAndKeepWhatTheyTold) {
  link(StationLinkKind::account);
  http_.willAnswer(200, stations(clock_.now(), minutes(1)));
  read();
  for (FailureRow const& row : {FailureRow{403, R"({"error":{"code":26}})", Kind::tooMany, minutes(60)},
                                {429, "", Kind::tooMany, minutes(60)},
                                {200, R"({"error":{"code":0,"message":"db"}})", Kind::failed, minutes(10)},
                                {200, "{}", Kind::failed, minutes(10)},
                                {403, R"({"error":{"code":13}})", Kind::signInAgain, minutes(60)}}) {
    clock_.advance(minutes(61));
    http_.willAnswer(row.status, row.body);
    StationsReading const reading = read();
    EXPECT_EQ(reading.problem->kind, row.kind) << row.body;
    EXPECT_EQ(reading.checkedAt, at("2026-11-21T12:00:00Z")) << row.body;
    EXPECT_EQ(reading.stations.size(), 1U) << row.body;
    auto const asked = http_.requests.size();
    clock_.advance(row.rest - seconds(1));
    EXPECT_EQ(read().problem->kind, row.kind) << row.body;
    EXPECT_EQ(http_.requests.size(), asked) << row.body;
  }
}

TEST_F(Stations, ATokenThatIsRefusedIsRenewedOnce) {
  link(StationLinkKind::account);
  http_.willAnswer(403, R"({"error":{"code":3,"message":"Access token expired"}})");
  http_.willAnswer(200, R"({"access_token":"new","refresh_token":"newer"})");
  http_.willAnswer(200, stations(clock_.now(), minutes(1)));
  EXPECT_EQ(read().state, StationState::current);
  EXPECT_EQ(http_.requests.back().headers.front().second, "Bearer new");
  clock_.advance(minutes(30));
  for (int i = 0; i < 2; ++i) {
    http_.willAnswer(403, R"({"error":{"code":2}})");
    if (i == 0) http_.willAnswer(200, R"({"access_token":"newest","refresh_token":"last"})");
  }
  EXPECT_EQ(read().problem->kind, Kind::failed) << "not for ever";
  EXPECT_EQ(http_.requests.size(), 6U);
}

TEST_F(Stations, AnAddressIsAskedEachMinuteAndStandsWhereTheUserSays) {
  link(StationLinkKind::address);
  http_.willAnswer(200, R"({"common_list":[{"id":"0x02","val":"3.4","unit":"C"}]})");
  StationsReading const reading = read();
  EXPECT_EQ(http_.requests.front().url, "http://192.168.1.20/get_livedata_info");
  ASSERT_NE(reading.station(), nullptr);
  EXPECT_EQ(reading.station()->latitude, 52.5);
  clock_.advance(seconds(59));
  read();
  EXPECT_EQ(http_.requests.size(), 1U);
  clock_.advance(seconds(1));
  EXPECT_EQ(read().state, StationState::failed) << "no answer was prepared";
  EXPECT_EQ(http_.requests.size(), 2U);
}

TEST_F(Stations, NoStationIsNotTheSameAsNoAnswer) {
  link(StationLinkKind::account);
  http_.willAnswer(200, R"({"status":"ok","body":{"devices":[]}})");
  StationsReading const reading = read();
  EXPECT_EQ(reading.state, StationState::current);
  EXPECT_EQ(reading.station(), nullptr);
}

/// Two public stations, the second of 9 °C.
std::string publicStations(Instant now) {
  std::string const when =
      std::to_string(std::chrono::duration_cast<seconds>(now.time_since_epoch()).count());
  auto const one = [&](std::string const& id, std::string const& celsius) {
    return R"({"_id":")" + id + R"(","place":{"location":[13.4,52.5]},"measures":{"m":{"res":{")" + when +
           R"(":[)" + celsius + R"(,80]},"type":["temperature","humidity"]}}})";
  };
  return R"({"status":"ok","body":[)" + one("a", "3") + "," + one("b", "9") + "]}";
}

TEST_F(Stations, OneOfThePublicOnesCanBeChosen) {
  link(StationLinkKind::around);
  ASSERT_TRUE(
      StationLinkFile(folder_.path() / "station.json").change([](StationLink& link) { link.chosen = "b"; }));
  http_.willAnswer(200, publicStations(clock_.now()));
  StationsReading const reading = read();
  ASSERT_NE(reading.station(), nullptr);
  EXPECT_EQ(reading.station()->modules.front().value(StationQuantity::temperature), 9);
  EXPECT_EQ(reading.together, std::nullopt) << "it is no median of several";
  ASSERT_TRUE(StationLinkFile(folder_.path() / "station.json").change([](StationLink& link) {
    link.chosen = "gone";
  }));
  http_.willAnswer(200, publicStations(clock_.now()));
  EXPECT_EQ(read().station(), nullptr) << "another one was asked for before";
}

TEST_F(Stations, ForgetEverythingWhenTheyAreUnlinked) {
  link(StationLinkKind::account);
  http_.willAnswer(200, stations(clock_.now(), minutes(1)));
  StationService service(http_, clock_,
                         {"https://netatmo.test", folder_.path() / "station.json",
                          folder_.path() / "kept.json", folder_.path() / "history.json"});
  service.read(StationNeed::shown);
  EXPECT_EQ(service.history().size(), 1U);
  EXPECT_TRUE(service.unlink());
  EXPECT_TRUE(service.history().empty());
  for (char const* const name : {"station.json", "kept.json", "history.json"})
    EXPECT_FALSE(std::filesystem::exists(folder_.path() / name)) << name;
}

TEST(StationAddress, IsAGatewaysWhereAHostAloneIsNamed) {
  for (auto const& [text, url] : {std::pair{"192.168.1.20", "http://192.168.1.20/get_livedata_info"},
                                  std::pair{"http://gw.lan/", "http://gw.lan/get_livedata_info"},
                                  std::pair{"https://pi.lan/w.json", "https://pi.lan/w.json"},
                                  std::pair{"pi.lan:8000/w?x=1", "http://pi.lan:8000/w?x=1"}})
    EXPECT_EQ(stationAddress(text), url);
}

TEST(StationBox, IsWithinTheGlobe) {
  EXPECT_EQ(boxAround({0, 0}, 5), "lat_ne=0.04497&lon_ne=0.04497&lat_sw=-0.04497&lon_sw=-0.04497");
  EXPECT_EQ(boxAround({60, 179.99}, 5), "lat_ne=60.04497&lon_ne=180.00000&lat_sw=59.95503&lon_sw=179.90007");
}

}  // namespace
}  // namespace nimbara
