#include "feeds/fpas/fpas_lists.h"
#include "feeds/fpas/fpas_service.h"
#include "platform/linux/http/curl_http_client.h"
#include "support/answers/bad_bytes.h"
#include "support/answers/cap_message.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/loopback_server.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;
using test::CapBlock;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char kOne[] = "3f2b8c1e-7d46-4f0a-9b52-1c8e6a5d4f30";
constexpr char kTwo[] = "9d1c7e52-0a3b-4c68-8f21-5e7b9a0c3d14";

std::string ids(std::vector<std::string> const& list) {
  std::string text;
  for (std::string const& id : list) text += (text.empty() ? "\"" : ",\"") + id + "\"";
  return "[" + text + "]";
}

/// A message with an identifier of a country's authority.
std::string message(std::string const& identifier = "2.49.0.0.756.0.7",
                    std::string const& drawn =
                        "<area><areaDesc>Bern</areaDesc><polygon>46.9,7.4 47.0,7.4 "
                        "47.0,7.5 46.9,7.4</polygon></area>",
                    std::string const& status = "Actual") {
  CapBlock block;
  block.more = drawn;
  std::string text = test::capMessage({block});
  auto const replace = [&text](std::string const& what, std::string const& by) {
    text.replace(text.find(what), what.size(), by);
  };
  replace("2.49.0.0.1", identifier);
  replace("Actual", status);
  return text;
}

std::string feed(std::string const& country = "ch", std::string const& status = "operating",
                 std::string const& lastAlert = "\"2026-11-20T06:34:18Z\"") {
  return R"({"name":"Weather Service","source_is_official":true,"cap_alert_feed_status":")" + status +
         R"(","authorityCountry":")" + country +
         R"(","register_url":null,"latest_published_alert_datetime":)" + lastAlert + "}";
}

std::string feeds(std::string const& list) {
  return R"({"results": [)" + list + "]}";
}

TEST(FpasLists, HaveEachAlertOnce) {
  auto const list = parseFpasAlertIds(R"([")" + std::string(kOne) + R"(", 7, "x", ")" + kTwo +
                                      R"(", "3F2B8C1E-7D46-4F0A-9B52-1C8E6A5D4F30", null])");
  ASSERT_TRUE(list);
  EXPECT_THAT(list->ids, ElementsAre(kOne, kTwo));
  EXPECT_EQ(list->unreadable, 3U);
}

TEST(FpasLists, TakeNothingElseForALoneList) {
  for (std::string const& body : test::damagedForms(ids({kOne, kTwo}), 3))
    std::ignore = parseFpasAlertIds(body);
  for (std::string const& body : test::damagedForms(feeds(feed()), 3)) std::ignore = parseFpasFeeds(body);
  for (char const* body :
       {"{}", R"({"alerts":[]})", R"("[]")", "null", "", "<html>", "invalid bounding box"}) {
    EXPECT_FALSE(parseFpasAlertIds(body)) << body;
    EXPECT_FALSE(parseFpasFeeds(body)) << body;
  }
  for (std::string const& body :
       {std::string("[]"), std::string(R"({"results":{}})"), feeds("7"),
        feeds(R"({"authorityCountry":"ch"})"), feeds(R"({"cap_alert_feed_status":"operating"})")})
    EXPECT_FALSE(parseFpasFeeds(body)) << body;
  EXPECT_THAT(parseFpasFeeds(feeds(feed("gb") + "," + feed("UK", "testing", "null"))).value(),
              ElementsAre(FpasFeed{"GB", true, at("2026-11-20T06:34:18Z")}, FpasFeed{"GB", false, {}}));
}

class FpasTest : public testing::Test {
 protected:
  CapListing fetch(Coordinate place = {46.948, 7.447}, std::string const& country = "CH") {
    return service.fetch(place, country);
  }

  test::TemporaryFolder folder;
  test::FakeHttpClient http;
  test::ManualClock clock{at("2026-11-21T12:00:00Z")};
  CapStore documents{http, clock, {}};
  FpasService service{http, clock, documents, {"https://fpas.example", folder.path()}};
};

TEST_F(FpasTest, FetchesEachMessageOnceForEver) {
  http.willAnswer(200, ids({kOne, kTwo}));
  http.willAnswer(200, message());
  http.willAnswer(200, message("2.49.0.0.250.0.1"));
  CapListing const listing = fetch();
  EXPECT_FALSE(listing.failure);
  EXPECT_FALSE(listing.isBlind);
  ASSERT_THAT(listing.messages, SizeIs(2));
  EXPECT_EQ(listing.messages[0].alert->identifier, "2.49.0.0.756.0.7");
  EXPECT_EQ(listing.messages[0].link, "https://fpas.example/alert/" + std::string(kOne));
  EXPECT_EQ(listing.messages[0].country, "CH");
  EXPECT_EQ(listing.messages[1].country, "FR");
  ASSERT_THAT(http.requests, SizeIs(3));
  EXPECT_EQ(http.requests[0].url,
            "https://fpas.example/alert/area?min_lat=46.9470&max_lat=46.9490&min_lon=7.4460&max_lon=7.4480");
  EXPECT_EQ(http.requests[0].maxBodyBytes, std::size_t{16} << 20);
  http.willAnswer(200, ids({kOne, kTwo}));
  EXPECT_THAT(fetch().messages, SizeIs(2));
  EXPECT_EQ(http.requests.size(), 4U);
}

TEST_F(FpasTest, FollowsTheServerToAMessagesFile) {
  std::string const file = message();
  test::LoopbackServer server([&file](test::Connection& connection) {
    for (std::string request = connection.readRequest(); !request.empty();
         request = connection.readRequest()) {
      if (request.starts_with("GET /alert/area?")) {
        connection.write(test::httpAnswer(ids({kOne})));
      } else if (request.starts_with("GET /alert/" + std::string(kOne) + " ")) {
        connection.write(test::httpAnswer("", "Location: /media/ch-7.xml\r\n", "301 Moved Permanently"));
      } else {
        connection.write(test::httpAnswer(file));
      }
    }
  });
  CurlHttpClient curl{{"nimbara-test", {}}};
  CapStore kept(curl, clock, folder.path());
  FpasService local(curl, clock, kept, {server.url(""), {}});
  CapListing const listing = local.fetch({46.948, 7.447}, "CH");
  EXPECT_FALSE(listing.failure) << sentenceOf(*listing.failure);
  ASSERT_THAT(listing.messages, SizeIs(1));
  // Under the address that was asked for, so that another run asks nobody.
  CapStore later(http, clock, folder.path());
  EXPECT_THAT(later.documents(std::vector{listing.messages[0].link}), SizeIs(1));
  EXPECT_THAT(http.requests, IsEmpty());
}

TEST_F(FpasTest, AsksForABoxOnTheGlobe) {
  struct Row {
    Coordinate place;
    std::string box;
  };
  for (Row const& row :
       {Row{{-33.868, 151.209}, "min_lat=-33.8690&max_lat=-33.8670&min_lon=151.2080&max_lon=151.2100"},
        Row{{-16.8, 180}, "min_lat=-16.8010&max_lat=-16.7990&min_lon=179.9990&max_lon=180.0000"},
        Row{{-16.8, -180}, "min_lat=-16.8010&max_lat=-16.7990&min_lon=-180.0000&max_lon=-179.9990"},
        Row{{90, 0}, "min_lat=89.9990&max_lat=90.0000&min_lon=-0.0010&max_lon=0.0010"},
        Row{{-90, 0}, "min_lat=-90.0000&max_lat=-89.9990&min_lon=-0.0010&max_lon=0.0010"}}) {
    http.requests.clear();
    fetch(row.place);
    EXPECT_THAT(http.requests.at(0).url, testing::EndsWith("?" + row.box));
  }
  http.requests.clear();
  EXPECT_EQ(fetch({0, 181}).failure->kind, ServiceFailure::Kind::noSuchPlace);
  EXPECT_THAT(http.requests, IsEmpty());
}

TEST_F(FpasTest, LeavesToThePolygonsWhatTheyCanTell) {
  struct Row {
    char const* name;
    std::string drawn;
    bool isHit;
  };
  for (Row const& row : {
           Row{"polygon", "<area><polygon>1,1 2,2 1,2 1,1</polygon></area>", false},
           {"circle", "<area><circle>1,1 5</circle></area>", false},
           {"empty polygon", "<area><polygon/></area>", true},
           {"code", "", true},
       }) {
    http.willAnswer(200, ids({kOne}));
    http.willAnswer(200, message("2.49.0.0.756.0.7", row.drawn));
    CapStore fresh(http, clock, {});
    FpasService other(http, clock, fresh, {"https://fpas.example", {}});
    CapListing const listing = other.fetch({46.948, 7.447}, "CH");
    ASSERT_THAT(listing.messages, SizeIs(1)) << row.name;
    EXPECT_EQ(listing.messages[0].isHit, row.isHit) << row.name;
  }
}

TEST_F(FpasTest, FailsWithWhatCouldBeRead) {
  using enum ServiceFailure::Kind;
  struct Row {
    char const* name;
    int status;
    std::string list;
    std::vector<std::pair<int, std::string>> documents;
    std::optional<ServiceFailure::Kind> failure;
    std::size_t readable;
  };
  for (Row const& row : {
           Row{"whole", 200, ids({kOne}), {{200, message()}}, {}, 1},
           {"bad box", 400, "invalid bounding box", {}, status, 0},
           {"no content", 204, "", {}, status, 0},
           {"page", 200, "<html>", {}, unreadable, 0},
           {"empty body", 200, "", {}, unreadable, 0},
           {"cut list", 200, R"([")" + std::string(kOne), {}, unreadable, 0},
           {"object", 200, R"({"detail":"congested"})", {}, unreadable, 0},
           {"no UUID", 200, ids({kOne, "../config"}), {{200, message()}}, incomplete, 1},
           {"lost message",
            200,
            ids({kOne, kTwo}),
            {{404, "no such alert"}, {200, message()}},
            incomplete,
            1},
           {"cut message",
            200,
            ids({kOne, kTwo}),
            {{200, message().substr(0, 300)}, {200, message()}},
            incomplete,
            1},
       }) {
    test::FakeHttpClient client;
    CapStore fresh(client, clock, {});
    FpasService other(client, clock, fresh, {"https://fpas.example", {}});
    client.willAnswer(row.status, row.list);
    for (auto const& [documentStatus, body] : row.documents) client.willAnswer(documentStatus, body);
    CapListing const listing = other.fetch({46.948, 7.447}, "CH");
    EXPECT_EQ(listing.failure.has_value(), row.failure.has_value()) << row.name;
    EXPECT_EQ(listing.failure.value_or(ServiceFailure{}).kind, row.failure.value_or(network)) << row.name;
    EXPECT_THAT(listing.messages, SizeIs(row.readable)) << row.name;
    EXPECT_FALSE(listing.isBlind) << row.name;
    EXPECT_EQ(client.requests.size(), 1 + row.documents.size())
        << row.name << ": nothing is asked of the country";
  }
}

TEST_F(FpasTest, LooksUpNoMoreThanHoldSomewhere) {
  std::vector<std::string> many;
  many.reserve(501);
  for (int i = 0; i < 501; ++i) many.push_back("3f2b8c1e-7d46-4f0a-9b52-" + std::to_string(100000000000 + i));
  http.willAnswer(200, ids(many));
  http.willAnswer(200, message());
  CapListing const listing = fetch();
  EXPECT_EQ(listing.failure->detail, "1 of the listed alerts cannot be read");
  EXPECT_THAT(listing.messages, SizeIs(1));
}

struct StateRow {
  char const* name;
  std::string feeds;
  bool isBlind;
  std::optional<ServiceFailure::Kind> failure;
  int status = 200;
};

std::ostream& operator<<(std::ostream& out, StateRow const& row) {
  return out << row.name;
}

class FpasState : public FpasTest, public testing::WithParamInterface<StateRow> {};

TEST_P(FpasState, OfAnEmptyListIsToldByTheCountrysFeeds) {
  StateRow const& row = GetParam();
  http.willAnswer(200, "[]");
  http.willAnswer(row.status, row.feeds);
  CapListing const listing = fetch();
  EXPECT_EQ(http.requests.at(1).url, "https://fpas.example/sources/area_status?country_codes=ch");
  EXPECT_EQ(listing.isBlind, row.isBlind);
  EXPECT_EQ(listing.failure.has_value(), row.failure.has_value());
  EXPECT_EQ(listing.failure.value_or(ServiceFailure{}).kind,
            row.failure.value_or(ServiceFailure::Kind::network));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, FpasState,
    testing::Values(
        StateRow{"works", feeds(feed()), false, {}},
        StateRow{"oneWorks", feeds(feed("ch", "operating", "null") + "," + feed()), false, {}},
        StateRow{"noFeed", feeds(""), true, {}}, StateRow{"feedOfANeighbour", feeds(feed("fr")), true, {}},
        StateRow{"onlyATrial", feeds(feed("ch", "testing")), true, {}},
        StateRow{"calmForAMonth", feeds(feed("ch", "operating", "\"2026-10-22T12:00:00.001Z\"")), false, {}},
        StateRow{"silentForAMonth", feeds(feed("ch", "operating", "\"2026-10-22T12:00:00Z\"")), false,
                 ServiceFailure::Kind::incomplete},
        StateRow{"neverHeardOf", feeds(feed("ch", "operating", "null")), false,
                 ServiceFailure::Kind::incomplete},
        StateRow{"theOtherWasATrial", feeds(feed("ch", "operating", "null") + "," + feed("ch", "testing")),
                 false, ServiceFailure::Kind::incomplete},
        StateRow{"otherShape", R"({"CH":{"feeds":3}})", false, ServiceFailure::Kind::unreadable},
        StateRow{"page", "<html>", false, ServiceFailure::Kind::unreadable},
        StateRow{"refused", "invalid input", false, ServiceFailure::Kind::status, 400}),
    [](auto const& row) { return std::string(row.param.name); });

TEST_F(FpasTest, TrustsTheListWhereTheCountryItselfWarns) {
  struct Row {
    char const* name;
    std::string message;
    bool isBlind;
  };
  for (Row const& row :
       {Row{"own", message("2.49.0.0.756.0.7"), false}, Row{"neighbour's", message("2.49.0.0.250.0.7"), true},
        Row{"nobody's", message("x"), true}, Row{"test", message("2.49.0.0.756.0.7", "", "Test"), true}}) {
    test::FakeHttpClient client;
    CapStore fresh(client, clock, {});
    FpasService other(client, clock, fresh, {"https://fpas.example", {}});
    client.willAnswer(200, ids({kOne}));
    client.willAnswer(200, row.message);
    client.willAnswer(200, feeds(""));
    CapListing const listing = other.fetch({46.948, 7.447}, "ch");
    EXPECT_EQ(listing.isBlind, row.isBlind) << row.name;
    EXPECT_THAT(listing.messages, SizeIs(1)) << row.name;
    EXPECT_EQ(client.requests.size(), row.isBlind ? 3U : 2U) << row.name;
  }
}

TEST_F(FpasTest, KnowsNobodyForTheOpenSeaAndHasNoShapesOfMainlandChina) {
  for (char const* country : {"", "../x", "X", "CN"}) {
    http.requests.clear();
    http.willAnswer(200, "[]");
    CapListing const listing = fetch({39.9, 116.4}, country);
    EXPECT_TRUE(listing.isBlind && !listing.failure) << country;
    EXPECT_THAT(http.requests, SizeIs(1));
  }
}

TEST_F(FpasTest, AsksForACountrysFeedsEverySixHours) {
  auto const requestsOf = [&](CapListing const& listing) {
    EXPECT_TRUE(listing.isBlind);
    return std::exchange(http.requests, {}).size();
  };
  http.willAnswer(200, "[]");
  http.willAnswer(200, feeds(""));
  EXPECT_EQ(requestsOf(fetch()), 2U);
  clock.advance(6h - 1ms);
  http.willAnswer(200, "[]");
  EXPECT_EQ(requestsOf(fetch({46.2, 6.1})), 1U) << "another place of the country";
  FpasService later(http, clock, documents, {"https://fpas.example", folder.path()});
  http.willAnswer(200, "[]");
  EXPECT_EQ(requestsOf(later.fetch({46.948, 7.447}, "CH")), 1U) << "another run";
  clock.advance(1ms);
  http.willAnswer(200, "[]");
  http.willAnswer(200, feeds(""));
  EXPECT_EQ(requestsOf(fetch()), 2U);
}

TEST_F(FpasTest, TrustsWhatItKnewOfACountryForAWeek) {
  http.willAnswer(200, "[]");
  http.willAnswer(200, feeds(""));
  EXPECT_TRUE(fetch().isBlind);
  clock.advance(std::chrono::days(7) - 10min);
  http.willAnswer(200, "[]");
  http.willAnswer(503, "");
  EXPECT_TRUE(fetch().isBlind);
  clock.advance(10min - 1ms);
  http.willAnswer(200, "[]");
  http.requests.clear();
  EXPECT_TRUE(fetch().isBlind);
  EXPECT_THAT(http.requests, SizeIs(1)) << "who refused is left alone for ten minutes";
  clock.advance(1ms);
  http.willAnswer(200, "[]");
  http.willAnswer(503, "");
  CapListing const listing = fetch();
  EXPECT_FALSE(listing.isBlind);
  EXPECT_EQ(listing.failure, ServiceFailure::answered(503));
}

}  // namespace
}  // namespace nimbara
