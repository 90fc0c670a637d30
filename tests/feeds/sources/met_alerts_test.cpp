#include "feeds/metalerts/met_alerts_list.h"
#include "feeds/metalerts/met_alerts_service.h"
#include "support/answers/bad_bytes.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/samples.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;

constexpr Coordinate kLongyearbyen{78.22334, 15.64689};

/// A feature with these members beside its geometry; `properties` begins with a comma where it is not empty.
std::string feature(
    std::string const& properties = "",
    std::string const& when = R"({"interval":["2026-11-22T06:00:00+00:00","2026-11-22T18:00:00+00:00"]})",
    std::string const& geometry =
        R"({"type":"Polygon","coordinates":[[[10,77],[20,77],[20,79],[10,79],[10,77]]]})") {
  return R"({"type":"Feature","when":)" + when + R"(,"geometry":)" + geometry +
         R"(,"properties":{"id":"2.49.0.1.578.0.1","event":"gale")" + properties + "}}";
}

std::string listOf(std::string const& features) {
  return R"({"type":"FeatureCollection","lang":"en","lastChange":"2026-11-22T05:00:00+00:00","features":[)" +
         features + "]}";
}

CapInfo onlyInfo(std::string const& body) {
  auto const list = parseMetAlerts(body);
  if (!list || list->messages.size() != 1) throw std::invalid_argument("not one warning: " + body);
  return list->messages[0].alert->infos.at(0);
}

TEST(MetAlertsList, ReadsAWarningWhole) {
  auto const list = parseMetAlerts(listOf(feature(
      R"(,"area":"A4","awareness_level":"3; orange; Severe","awareness_type":"1; Wind","certainty":"Likely",
          "consequences":"High waves. ","county":[],"description":" Gale.\nLater less. ","eventAwarenessName":"Strong gale",
          "geographicDomain":"marine","instruction":"Stay in. ","severity":"Severe","status":"Actual","type":"Update",
          "title":"Gale, A4","web":"\n  https://www.met.no/gale\n","incidentName":"Gyda","resources":[
          {"description":"Map","mimeType":"image/png","uri":"https://a.example/map.png"},
          {"description":"CAP file","mimeType":"application/xml","uri":"https://a.example/cap"}])")));
  ASSERT_TRUE(list) << list.error().text();
  ASSERT_EQ(list->messages.size(), 1U);
  CapMessage const& message = list->messages[0];
  CapInfo info;
  info.language = "en";
  info.event = "Strong gale";
  info.headline = "Gale, A4";
  info.description = " Gale.\nLater less. ";
  info.instruction = "Stay in. ";
  info.severity = "Severe";
  info.certainty = "Likely";
  info.onset = at("2026-11-22T06:00:00Z");
  info.expires = at("2026-11-22T18:00:00Z");
  info.senderName = "MET Norway";
  info.web = "https://www.met.no/gale";
  info.parameters = {{"awareness_level", "3; orange; Severe"},
                     {"awareness_type", "1; Wind"},
                     {"geographicDomain", "marine"},
                     {"incidentName", "Gyda"},
                     {"consequences", "High waves."}};
  info.eventCodes = {{"eventType", "gale"}};
  info.areas = {{"A4", {{{77, 10}, {77, 20}, {79, 20}, {79, 10}, {77, 10}}}, {}, {}}};
  EXPECT_EQ(*message.alert,
            (CapAlert{"2.49.0.1.578.0.1", "", std::nullopt, "Actual", "Update", {}, {std::move(info)}}));
  EXPECT_EQ(message.link, "https://a.example/cap");
  EXPECT_EQ(message.country, "NO");
  EXPECT_FALSE(message.isHit) << "its outline says it";
}

TEST(MetAlertsList, EndsWithTheEventElseWithTheMessage) {
  struct Row {
    std::string name, properties, when;
    char const *onset, *expires;
  };
  std::string const interval = R"({"interval":["2026-11-22T06:00:00+00:00","2026-11-22T18:00:00+00:00"]})";
  for (Row const& row : {
           Row{"the message", "", interval, "2026-11-22T06:00:00Z", "2026-11-22T18:00:00Z"},
           Row{"the event, earlier", R"(,"eventEndingTime":"2026-11-22T12:00:00+00:00")", interval,
               "2026-11-22T06:00:00Z", "2026-11-22T12:00:00Z"},
           Row{"the event, later", R"(,"eventEndingTime":"2026-11-23T12:00:00+01:00")", interval,
               "2026-11-22T06:00:00Z", "2026-11-23T11:00:00Z"},
           Row{"no date", R"(,"eventEndingTime":"soon")", interval, "2026-11-22T06:00:00Z",
               "2026-11-22T18:00:00Z"},
           Row{"not known", R"(,"eventEndingTime":null)", interval, "2026-11-22T06:00:00Z",
               "2026-11-22T18:00:00Z"},
           Row{"begun only", "", R"({"interval":["2026-11-22T06:00:00Z"]})", "2026-11-22T06:00:00Z", nullptr},
           Row{"open", "", R"({"interval":[null,"2026-11-22T18:00:00Z"]})", nullptr, "2026-11-22T18:00:00Z"},
           Row{"none", "", R"({"interval":7})", nullptr, nullptr},
           Row{"null", "", "null", nullptr, nullptr},
       }) {
    CapInfo const info = onlyInfo(listOf(feature(row.properties, row.when)));
    auto const moment = [](char const* text) {
      return text == nullptr ? std::nullopt : std::optional(at(text));
    };
    EXPECT_EQ(info.onset, moment(row.onset)) << row.name;
    EXPECT_EQ(info.expires, moment(row.expires)) << row.name;
  }
}

TEST(MetAlertsList, CountsWhatItCannotReadAndKeepsTheRest) {
  struct Row {
    std::string name, body;
    std::size_t messages, unreadable;
  };
  std::string const one = feature();
  std::string const square = "[[1,60],[2,60],[2,61],[1,60]]";
  auto const drawn = [](std::string const& geometry) { return listOf(feature("", "null", geometry)); };
  for (Row const& row : {
           Row{"nothing in force", listOf(""), 0, 0},
           Row{"one", listOf(one), 1, 0},
           Row{"no identifier", listOf(one + R"(,{"properties":{"event":"gale"}})"), 1, 1},
           Row{"empty identifier", listOf(one + R"(,{"properties":{"id":"","event":"gale"}})"), 1, 1},
           Row{"of nothing", listOf(one + R"(,{"properties":{"id":"2","event":" "}})"), 1, 1},
           Row{"no properties", listOf("{}," + one + ",7,null"), 1, 3},
           Row{"members of other kinds",
               listOf(R"({"properties":{"id":"2","event":"gale","title":7,"web":[],"resources":{}}})"), 1, 0},
           Row{"no geometry", drawn("null"), 1, 0},
           Row{"two parts",
               drawn(R"({"type":"MultiPolygon","coordinates":[[)" + square + "],[" + square + "]]}"), 1, 0},
           Row{"off the globe", drawn(R"({"type":"Polygon","coordinates":[[[1,91],[2,60],[2,61],[1,91]]]})"),
               0, 1},
       }) {
    auto const list = parseMetAlerts(row.body);
    ASSERT_TRUE(list) << row.name << ": " << list.error().text();
    EXPECT_EQ(list->messages.size(), row.messages) << row.name;
    EXPECT_EQ(list->unreadable, row.unreadable) << row.name;
  }
}

TEST(MetAlertsList, SurvivesDamage) {
  for (std::string const& body : test::damagedForms(listOf(feature() + "," + feature()), 7))
    std::ignore = parseMetAlerts(body);
}

TEST(MetAlertsList, ReadsTheRecordedOneOfMarch) {
  auto const files = test::sampleFiles("met-norway");
  if (!files) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  auto const file = std::ranges::find(*files, "metalerts-current.json",
                                      [](auto const& path) { return path.filename().string(); });
  ASSERT_NE(file, files->end());
  auto const list = parseMetAlerts(test::readFile(*file));
  ASSERT_TRUE(list) << list.error().text();
  EXPECT_EQ(list->unreadable, 0U);
  EXPECT_EQ(list->messages.size(), 29U);
  std::size_t updates = 0, observed = 0, polygons = 0, corners = 0, endedByNoon = 0;
  for (CapMessage const& message : list->messages) {
    CapInfo const& info = message.alert->infos.at(0);
    EXPECT_EQ(info.language, "no");
    EXPECT_EQ(valueOf(info.parameters, "awareness_level"), "2; yellow; Moderate");
    EXPECT_EQ(valueOf(info.parameters, "geographicDomain"), "marine");
    ASSERT_TRUE(info.onset && info.expires && *info.onset < *info.expires) << message.alert->identifier;
    EXPECT_THAT(message.link, testing::EndsWith("?cap=" + message.alert->identifier));
    EXPECT_TRUE(message.lacksReferences);
    updates += message.alert->msgType == "Update" ? 1 : 0;
    observed += info.certainty == "Observed" ? 1 : 0;
    endedByNoon += *info.expires <= at("2026-03-07T12:00:00Z") ? 1 : 0;
    polygons += info.areas.at(0).polygons.size();
    for (WarningPolygon const& polygon : info.areas.at(0).polygons) corners += polygon.size();
  }
  EXPECT_EQ(updates, 27U);
  EXPECT_EQ(observed, 2U);
  EXPECT_EQ(polygons, 31U) << "two warnings have two each";
  EXPECT_EQ(corners, 271U);
  EXPECT_EQ(endedByNoon, 5U);
}

TEST(MetAlertsLanguage, IsNorwegianForItsReadersElseEnglish) {
  for (char const* const text : {"nb", "nn", "no", "nb_NO.UTF-8", "nn-NO", "NO", "no.UTF-8"})
    EXPECT_EQ(metAlertsLanguage(text), "no") << text;
  for (char const* const text : {"", "C", "en", "en_NO", "de", "nbx", "n", "sv_SE", "_NO"})
    EXPECT_EQ(metAlertsLanguage(text), "en") << text;
}

class MetAlertsServiceTest : public testing::Test {
 protected:
  CapListing fetch(std::string_view country = "SJ", Coordinate place = kLongyearbyen) {
    return service_.fetch(place, country);
  }
  std::optional<std::string> sentHeader(std::string_view name) const {
    HttpResponse const sent{0, http_.requests.back().headers, ""};
    auto const value = sent.header(name);
    return value ? std::optional<std::string>(*value) : std::nullopt;
  }
  static HttpHeaders until(std::string const& expires, std::string const& modified = "") {
    return {{"Date", "Sun, 22 Nov 2026 12:00:00 GMT"}, {"Expires", expires}, {"Last-Modified", modified}};
  }

  test::FakeHttpClient http_;
  test::ManualClock clock_{at("2026-11-22T12:00:00Z")};
  MetAlertsService service_{http_, clock_, {"https://met.example", "nb_NO"}};
};

TEST_F(MetAlertsServiceTest, AsksWithFourDecimalsInTheReadersLanguage) {
  http_.willAnswer(200, listOf(feature()));
  CapListing const listing = fetch();
  EXPECT_FALSE(listing.failure);
  EXPECT_FALSE(listing.isBlind);
  EXPECT_EQ(listing.messages.size(), 1U);
  ASSERT_EQ(http_.requests.size(), 1U);
  EXPECT_EQ(http_.requests[0].url,
            "https://met.example/weatherapi/metalerts/2.0/current.json?lat=78.2233&lon=15.6469&lang=no");
  EXPECT_EQ(http_.requests[0].maxBodyBytes, std::size_t{16} << 20);
}

TEST_F(MetAlertsServiceTest, UsesAnAnswerUntilItExpiresAndThenHasItConfirmed) {
  http_.willAnswer(200, listOf(feature()), until("Sun, 22 Nov 2026 12:10:00 GMT", "yesterday"));
  fetch();
  clock_.advance(10min - 1ms);
  EXPECT_EQ(fetch().messages.size(), 1U);
  EXPECT_EQ(http_.requests.size(), 1U);
  clock_.advance(1ms);
  http_.willAnswer(304, "", {{"Expires", "Sun, 22 Nov 2026 12:15:00 GMT"}});
  EXPECT_EQ(fetch().messages.size(), 1U);
  EXPECT_EQ(sentHeader("If-Modified-Since"), "yesterday");
  clock_.advance(5min - 1ms);
  EXPECT_EQ(fetch().messages.size(), 1U);
  EXPECT_EQ(http_.requests.size(), 2U) << "as long as the confirmation says";
  clock_.advance(1ms);
  http_.willAnswer(200, listOf(""));
  EXPECT_TRUE(fetch().messages.empty());
  http_.willAnswer(304, "");
  EXPECT_TRUE(fetch().messages.empty()) << "what does not say until when is asked for again";
  EXPECT_EQ(http_.requests.size(), 4U);
  clock_.set(at("2026-11-20T12:00:00Z"));
  http_.willAnswer(200, listOf(feature()));
  EXPECT_EQ(fetch().messages.size(), 1U) << "an answer of the future is not trusted";
}

TEST_F(MetAlertsServiceTest, KeepsAnAnswerForItsPlaceOnly) {
  http_.willAnswer(200, listOf(feature()), until("Sun, 22 Nov 2026 13:00:00 GMT", "yesterday"));
  fetch();
  EXPECT_EQ(fetch("SJ", {78.22332, 15.64691}).messages.size(), 1U) << "beyond the fourth decimal";
  EXPECT_EQ(http_.requests.size(), 1U);
  http_.willAnswer(304, "");
  EXPECT_TRUE(fetch("NO", {59.91, 10.75}).failure) << "not modified, but of what?";
  EXPECT_EQ(sentHeader("If-Modified-Since"), std::nullopt);
}

TEST_F(MetAlertsServiceTest, IsBlindOutsideItsArea) {
  struct Row {
    std::string name;
    int status;
    std::string body;
    char const* country;
    bool isBlind, isFailure;
  };
  std::string const none = listOf("");
  for (Row const& row : {
           Row{"the service says so, at sea", 422, "<html>outside</html>", "", true, false},
           Row{"the service says so, elsewhere", 422, "", "SE", true, false},
           Row{"of its own country that is an error", 422, "", "NO", false, true},
           Row{"of its own islands as well", 422, "", "SJ", false, true},
           Row{"nothing in Norway is nothing", 200, none, "NO", false, false},
           Row{"nothing in Svalbard is nothing", 200, none, "SJ", false, false},
           Row{"nothing at sea is nothing", 200, none, "", false, false},
           Row{"nothing in Sweden says nothing", 200, none, "SE", true, false},
           Row{"something in Sweden is something", 200, listOf(feature()), "SE", false, false},
           Row{"a refusal is another thing", 400, "", "SE", false, true},
       }) {
    http_.willAnswer(row.status, row.body);
    CapListing const listing = fetch(row.country);
    EXPECT_EQ(listing.isBlind, row.isBlind) << row.name;
    EXPECT_EQ(listing.failure.has_value(), row.isFailure) << row.name;
  }
}

TEST_F(MetAlertsServiceTest, SaysWhyThereIsNoList) {
  using enum ServiceFailure::Kind;
  std::string const whole = listOf(feature());
  struct Row {
    std::string name;
    int status;
    std::string body;
    ServiceFailure::Kind kind;
    std::size_t messages;
  };
  for (Row const& row : {
           Row{"a page to log in", 200, "<html>log in</html>", unreadable, 0},
           Row{"nothing", 200, "", unreadable, 0},
           Row{"no content", 204, "", unreadable, 0},
           Row{"an error as text", 200, "Err: no data", unreadable, 0},
           Row{"an exception", 200, R"({"exceptions":[{"code":"x"}]})", unreadable, 0},
           Row{"a list without a root", 200, "[]", unreadable, 0},
           Row{"features of another kind", 200, R"({"features":{}})", unreadable, 0},
           Row{"cut short", 200, whole.substr(0, whole.size() - 2), unreadable, 0},
           Row{"in part", 200, listOf(feature() + ",{}"), incomplete, 1},
           Row{"forbidden", 403, "", status, 0},
           Row{"too often", 429, "", status, 0},
           Row{"broken", 500, whole, status, 0},
       }) {
    http_.willAnswer(row.status, row.body, until("Sun, 22 Nov 2026 13:00:00 GMT", "yesterday"));
    CapListing const listing = fetch();
    ASSERT_TRUE(listing.failure) << row.name;
    EXPECT_EQ(listing.failure->kind, row.kind) << row.name;
    EXPECT_EQ(listing.messages.size(), row.messages) << row.name;
    EXPECT_FALSE(listing.isBlind) << row.name;
    EXPECT_EQ(sentHeader("If-Modified-Since"), std::nullopt) << row.name << ": nothing of a failure is kept";
  }
  http_.willFail({HttpError::Kind::truncated, "the answer ends too early"});
  EXPECT_EQ(fetch().failure->kind, network);
  http_.requests.clear();
  EXPECT_EQ(fetch("NO", {91, 0}).failure->kind, noSuchPlace);
  EXPECT_TRUE(http_.requests.empty());
}

TEST_F(MetAlertsServiceTest, DeprecatedIsNotFailed) {
  http_.willAnswer(203, listOf(feature()));
  EXPECT_FALSE(fetch().failure);
}

TEST_F(MetAlertsServiceTest, RemembersTheLastPlacesOnly) {
  auto const expires = until("Sun, 22 Nov 2026 13:00:00 GMT", "yesterday");
  for (int i = 0; i <= 64; ++i) {
    http_.willAnswer(200, listOf(""), expires);
    fetch("NO", {60.0 + i / 100.0, 10});
  }
  fetch("NO", {60.64, 10});
  EXPECT_EQ(http_.requests.size(), 65U);
  fetch("NO", {60.01, 10});
  EXPECT_EQ(http_.requests.size(), 65U);
  http_.willAnswer(200, listOf(""), expires);
  fetch("NO", {60.0, 10});
  EXPECT_EQ(http_.requests.size(), 66U) << "the first was forgotten";
}

}  // namespace
}  // namespace nimbara
