#include "feeds/nws/nws_alert_service.h"
#include "feeds/nws/nws_territory.h"
#include "support/answers/bad_bytes.h"
#include "support/feed_readings.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/samples.h"

#include <gmock/gmock.h>

#include <cmath>
#include <map>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;
using Severity = NWSAlertSeverity;

constexpr char kRequired[] =
    R"("id":"urn:1","event":"Flood Watch","severity":"Severe","urgency":"Future","certainty":"Likely")";

std::string listOf(std::vector<std::string> const& properties) {
  std::string body = R"({"type":"FeatureCollection","features":[)";
  for (std::size_t i = 0; i < properties.size(); ++i)
    body += (i > 0 ? "," : "") + std::string(R"({"geometry":null,"properties":{)") + properties[i] + "}}";
  return body + "]}";
}

NWSAlert onlyAlert(std::string const& more) {
  auto const list = parseNwsAlerts(listOf({kRequired + more}));
  EXPECT_TRUE(list && list->alerts.size() == 1 && list->unreadable == 0) << more;
  return list && !list->alerts.empty() ? list->alerts[0] : NWSAlert{};
}

TEST(NwsAlerts, FillWhatIsMissing) {
  NWSAlert const bare = onlyAlert("");
  EXPECT_EQ(bare.headline, "Flood Watch");
  EXPECT_EQ(bare.senderName, "NWS");
  EXPECT_EQ(bare.description + bare.instruction + bare.areaDesc + bare.status + bare.messageType, "");
  EXPECT_EQ(bare, onlyAlert(R"(,"headline":null,"description":null,"instruction":null,"onset":null,
      "expires":null,"senderName":null,"areaDesc":null,"ends":null,"references":null,"sent":null)"));
  NWSAlert const full = onlyAlert(R"(,"headline":"H","description":"D","instruction":"I","senderName":"S",
      "areaDesc":"A; B","onset":"2026-11-21T06:00:00-05:00","expires":"2026-11-21T12:00:00+00:00",
      "ends":"2026-11-22T00:00:00Z","sent":"2026-11-21T05:00:00Z","status":"Actual","messageType":"Update",
      "references":[{"identifier":"urn:0","sent":"2026-11-20T05:00:00Z","sender":"x"},7,{"sent":"x"}])");
  EXPECT_EQ(full, (NWSAlert{"urn:1",
                            "Flood Watch",
                            "H",
                            "D",
                            "I",
                            Severity::severe,
                            "S",
                            "A; B",
                            at("2026-11-21T11:00:00Z"),
                            at("2026-11-21T12:00:00Z"),
                            at("2026-11-22T00:00:00Z"),
                            at("2026-11-21T05:00:00Z"),
                            "Actual",
                            "Update",
                            {{"urn:0", at("2026-11-20T05:00:00Z"), "x"}}}));
}

TEST(NwsAlerts, TakeTheServicesSeverityWordsExactly) {
  struct Row {
    std::string_view text;
    Severity severity;
  };
  for (Row const& row :
       {Row{"Extreme", Severity::extreme}, Row{"Severe", Severity::severe},
        Row{"Moderate", Severity::moderate}, Row{"Minor", Severity::minor}, Row{"Unknown", Severity::unknown},
        Row{"severe", Severity::unknown}, Row{"Severe ", Severity::unknown}, Row{"", Severity::unknown}})
    EXPECT_EQ(nwsSeverity(row.text), row.severity) << row.text;
}

TEST(NwsAlerts, LoseADateThatDoesNotParseAndNothingElse) {
  for (char const* const text :
       {"date:now -252 seconds", "", "2026-11-21", "2026-11-21T06:00:00", "2026-11-21 06:00:00Z",
        "2026-11-21T06:00Z", "2026-11-21T06:00:00.5Z", "2026-13-21T06:00:00Z", "2026-02-30T06:00:00Z"}) {
    NWSAlert const alert = onlyAlert(std::string(R"(,"onset":")") + text + R"(","headline":"H")");
    EXPECT_EQ(alert.onset, std::nullopt) << text;
    EXPECT_EQ(alert.headline, "H");
  }
}

TEST(NwsAlerts, AreNeverSpoiledByOptionalKeys) {
  for (char const* const key : {"ends", "status", "messageType", "references", "sent"}) {
    for (char const* const value :
         {"null", "7", "true", "[]", "{}", R"("rubbish")", "[null]", R"([{"a":1}])"})
      onlyAlert(std::string(",\"") + key + "\":" + value);
  }
}

TEST(NwsAlerts, CountWhatIsNone) {
  struct Row {
    std::string without, instead;
  };
  for (Row const& row :
       {Row{R"("id":"urn:1",)", ""}, Row{R"("event":"Flood Watch",)", ""}, Row{R"("severity":"Severe",)", ""},
        Row{R"("urgency":"Future",)", ""}, Row{R"(,"certainty":"Likely")", ""}, Row{R"("urn:1")", "7"},
        Row{R"("Severe")", "null"}}) {
    std::string broken = kRequired;
    broken.replace(broken.find(row.without), row.without.size(), row.instead);
    auto const list = parseNwsAlerts(listOf({kRequired, broken}));
    ASSERT_TRUE(list) << broken;
    EXPECT_EQ(list->alerts.size(), 1) << broken;
    EXPECT_EQ(list->unreadable, 1) << broken;
  }
  EXPECT_EQ(parseNwsAlerts(R"({"features":[7,null,{},{"properties":null}]})")->unreadable, 4);
  for (char const* const body : {"", "{}", "[]", R"({"features":{}})", R"({"features":null})", "<html>",
                                 R"({"title":"Invalid Parameter","status":400})"})
    EXPECT_FALSE(parseNwsAlerts(body)) << body;
}

TEST(NwsAlerts, SurviveDamage) {
  for (std::string const& body : test::damagedForms(listOf({kRequired, kRequired}), 7)) parseNwsAlerts(body);
  EXPECT_FALSE(parseNwsAlerts(R"({"features":)" + std::string(100'000, '[')));
  std::string const huge(5'000'000, 'x');
  EXPECT_EQ(onlyAlert(R"(,"description":")" + huge + "\"").description.size(), huge.size());
}

TEST(NwsAlerts, AreDrawnWhereTheirGeometryCanBeRead) {
  auto const drawn = [](std::string const& geometry) {
    std::string body = listOf({kRequired});
    return parseNwsAlerts(body.replace(body.find("null"), 4, geometry)).value().alerts.at(0).polygons;
  };
  EXPECT_EQ(
      drawn(R"({"type":"MultiPolygon","coordinates":[[[[1,2],[3,4],[5,7]]],[[[-1,-2],[-3,-4],[-5,-7]]]]})"),
      (std::vector<WarningPolygon>{{{2, 1}, {4, 3}, {7, 5}}, {{-2, -1}, {-4, -3}, {-7, -5}}}));
  for (char const* const other :
       {"null", R"("here")", R"({"type":"Polygon","coordinates":[[["west","north"]]]})"})
    EXPECT_TRUE(drawn(other).empty()) << other;
}

/// How many of each recorded file an independent count of "urgency" keys and of geometries shows.
TEST(NwsAlerts, ReadRecordedAnswersWhole) {
  auto const files = test::sampleFiles("nws");
  if (!files) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  struct Counts {
    int alerts, drawn;
    bool operator==(Counts const&) const = default;
  };
  std::map<std::string, Counts> const expected{{"iowa-tornado-flood-dates-replaced-2024-05.json", {48, 34}},
                                               {"nation-marine-fire-dates-replaced-2026-05.json", {246, 14}},
                                               {"point-anchorage-empty-2026-01-20.json", {0, 0}},
                                               {"point-minneapolis-winter-2024-01-12.json", {1, 0}},
                                               {"point-phoenix-heat-air-quality-2024-07-18.json", {2, 0}},
                                               {"zone-oregon-flood-watch-2019-12-20.json", {1, 0}}};
  for (auto const& file : *files) {
    auto const list = parseNwsAlerts(test::readFile(file));
    std::string const name = file.filename().string();
    if (name.starts_with("error")) {
      EXPECT_FALSE(list) << name;
      continue;
    }
    ASSERT_TRUE(list) << name;
    EXPECT_EQ(list->unreadable, 0) << name;
    auto const drawn =
        std::ranges::count_if(list->alerts, [](NWSAlert const& alert) { return !alert.polygons.empty(); });
    Counts const counts{static_cast<int>(list->alerts.size()), static_cast<int>(drawn)};
    EXPECT_EQ(counts, expected.at(name)) << name << ", " << counts.alerts << ", " << counts.drawn;
    for (NWSAlert const& alert : list->alerts) {
      EXPECT_EQ(alert.onset.has_value(), !name.contains("dates-replaced")) << alert.id;
      EXPECT_FALSE(alert.headline.empty() || alert.status.empty()) << alert.id;
    }
  }
}

class NwsAlertServiceTest : public testing::Test {
 protected:
  NWSAlertAnswer fetch(double latitude = 41.85, double longitude = -87.65) {
    return service_.fetchAlerts(latitude, longitude);
  }
  std::optional<std::string> sentHeader(std::string_view name) const {
    return test::headerOf(http_.requests.back(), name);
  }

  test::FakeHttpClient http_;
  test::ManualClock clock_{at("2026-11-21T09:20:00Z")};
  NWSAlertService service_{http_, clock_, {"https://nws.example", "me@example.org"}};
};

TEST_F(NwsAlertServiceTest, AsksAsTheServiceWants) {
  http_.willAnswer(200, listOf({kRequired}));
  EXPECT_TRUE(fetch(41.85, -87.650049).ok);
  HttpRequest const& request = http_.requests.at(0);
  EXPECT_EQ(request.url, "https://nws.example/alerts/active?point=41.8500,-87.6500");
  EXPECT_EQ(request.timeout, 15s);
  EXPECT_EQ(sentHeader("User-Agent"), "(NimbaraV4, me@example.org)");
  EXPECT_EQ(sentHeader("Accept"), "application/geo+json");
  EXPECT_EQ(sentHeader("If-None-Match"), std::nullopt);
  EXPECT_EQ(sentHeader("If-Modified-Since"), std::nullopt);
}

TEST_F(NwsAlertServiceTest, ServesItsListForTwoMinutesAndThenAsksOnCondition) {
  http_.willAnswer(200, listOf({kRequired}), {{"ETag", "\"a\""}, {"Last-Modified", "yesterday"}});
  http_.willAnswer(304, "");
  EXPECT_EQ(fetch().alerts.size(), 1);
  clock_.advance(119'999ms);
  EXPECT_TRUE(fetch().ok);
  EXPECT_TRUE(fetch(41.85004, -87.65).ok) << "beyond the fourth decimal";
  EXPECT_EQ(http_.requests.size(), 1);
  clock_.advance(1ms);
  NWSAlertAnswer const confirmed = fetch();
  EXPECT_TRUE(confirmed.ok);
  EXPECT_EQ(confirmed.alerts.size(), 1);
  EXPECT_EQ(sentHeader("If-None-Match"), "\"a\"");
  EXPECT_EQ(sentHeader("If-Modified-Since"), "yesterday");
  clock_.advance(119s);
  EXPECT_TRUE(fetch().ok);
  EXPECT_EQ(http_.requests.size(), 2) << "304 renews the list";
}

TEST_F(NwsAlertServiceTest, TakesValidatorsAnewWithEachList) {
  http_.willAnswer(200, listOf({}), {{"ETag", "\"a\""}, {"Last-Modified", "yesterday"}});
  http_.willAnswer(200, listOf({}), {{"etag", "\"b\""}});
  http_.willAnswer(200, listOf({}));
  fetch();
  clock_.advance(120s);
  fetch();
  clock_.advance(120s);
  fetch();
  EXPECT_EQ(sentHeader("If-None-Match"), "\"b\"");
  EXPECT_EQ(sentHeader("If-Modified-Since"), std::nullopt);
  clock_.advance(120s);
  fetch();
  EXPECT_EQ(sentHeader("If-None-Match"), std::nullopt);
}

TEST_F(NwsAlertServiceTest, DoesNotTrustAListFromTheFuture) {
  http_.willAnswer(200, listOf({}));
  http_.willAnswer(200, listOf({kRequired}));
  fetch();
  clock_.set(at("2026-11-20T09:20:00Z"));
  EXPECT_EQ(fetch().alerts.size(), 1);
}

TEST_F(NwsAlertServiceTest, FailsWithTheStaleListOfTheSamePlaceOnly) {
  std::string const spoiled = listOf({kRequired, R"("id":"urn:2")"});
  struct Row {
    int status;
    std::string body;
  };
  for (Row const& row : {Row{500, "{}"}, Row{400, "{}"}, Row{204, ""}, Row{200, "<html>log in</html>"},
                         Row{200, ""}, Row{200, R"({"features":[)"}, Row{200, spoiled}}) {
    NWSAlertService service(http_, clock_, {"https://nws.example", ""});
    http_.willAnswer(200, listOf({kRequired}), {{"ETag", "\"a\""}});
    service.fetchAlerts(1, 2);
    clock_.advance(120s);
    http_.willAnswer(row.status, row.body, {{"ETag", "\"bad\""}});
    NWSAlertAnswer const stale = service.fetchAlerts(1, 2);
    EXPECT_FALSE(stale.ok) << row.body;
    EXPECT_TRUE(stale.failure);
    EXPECT_EQ(stale.alerts.size(), 1);
    http_.willAnswer(304, "");
    EXPECT_FALSE(service.fetchAlerts(3, 4).ok) << "not modified, but of what?";
    EXPECT_EQ(sentHeader("If-None-Match"), std::nullopt);
    http_.willAnswer(row.status, row.body);
    EXPECT_TRUE(service.fetchAlerts(3, 4).alerts.empty());
    http_.willAnswer(304, "");
    EXPECT_TRUE(service.fetchAlerts(1, 2).ok) << "nothing of the failures was kept";
    EXPECT_EQ(sentHeader("If-None-Match"), "\"a\"");
  }
}

TEST_F(NwsAlertServiceTest, HandsOutWhatIsReadableOfASpoiledList) {
  http_.willAnswer(200, listOf({kRequired, R"("id":"urn:2")"}));
  NWSAlertAnswer const answer = fetch();
  EXPECT_TRUE(answer.alerts.empty());
  ASSERT_TRUE(answer.readable);
  EXPECT_EQ(answer.readable->size(), 1);
}

TEST_F(NwsAlertServiceTest, RefusesWhatIsNotOnTheGlobe) {
  for (Coordinate const place : {Coordinate{91, 0}, {0, -181}, {std::nan(""), 0}})
    EXPECT_FALSE(fetch(place.latitude, place.longitude).ok);
  EXPECT_TRUE(http_.requests.empty());
}

TEST_F(NwsAlertServiceTest, HasViewsOfConvectionAndFloods) {
  std::vector<std::string> properties;
  for (char const* const event :
       {"Flash Flood Warning", "Tornado Watch", "Severe Thunderstorm Warning", "Special Marine Warning",
        "tornado warning", "Coastal Flood Advisory", "Thunderstorm Outlook"}) {
    std::string one = kRequired;
    one.replace(one.find("Flood Watch"), 11, event);
    properties.push_back(one);
  }
  http_.willAnswer(200, listOf(properties));
  auto const events = [](std::vector<NWSAlert> const& alerts) {
    std::vector<std::string> names;
    for (NWSAlert const& alert : alerts) names.push_back(alert.event);
    return names;
  };
  auto const alerts = service_.fetchAlerts(1, 2).alerts;
  EXPECT_THAT(events(convectiveAlerts(alerts)),
              testing::ElementsAre("Tornado Watch", "Severe Thunderstorm Warning"));
  EXPECT_THAT(events(floodAlerts(alerts)),
              testing::ElementsAre("Flash Flood Warning", "Coastal Flood Advisory"));
}

TEST(NwsTerritory, EndsAtItsBordersAndOffshoreWaters) {
  struct Row {
    std::string_view country;
    Coordinate place;
    bool inside;
  };
  for (Row const& row :
       {Row{"US", {41.85, -87.65}, true}, Row{"PR", {18.4, -66.1}, true}, Row{"GU", {13.5, 144.8}, true},
        Row{"PW", {7.5, 134.6}, true}, Row{"CA", {43.7, -79.4}, false}, Row{"MX", {32.5, -117.0}, false},
        Row{"DE", {52.5, 13.4}, false}, Row{"", {39.0, -72.0}, true}, Row{"", {28.0, -90.0}, true},
        Row{"", {40.0, -45.0}, false}, Row{"", {55.0, 3.0}, false}, Row{"", {0, -160}, false}})
    EXPECT_EQ(isNwsTerritory(row.country, row.place), row.inside)
        << row.country << " " << formatCoordinate(row.place);
}

}  // namespace
}  // namespace nimbara
