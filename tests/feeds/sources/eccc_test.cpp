#include "feeds/eccc/eccc_alerts.h"
#include "feeds/eccc/eccc_service.h"
#include "support/answers/bad_bytes.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/samples.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::at;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char kSquare[] =
    R"({"type":"Polygon","coordinates":[[[-69,63],[-68,63],[-68,64],[-69,64],[-69,63]]]})";

/// A blizzard warning for Iqaluit, with some members written differently.
std::string feature(std::string const& changes = {}, std::string const& geometry = kSquare) {
  std::string properties =
      R"("id":"17202611210501_z-9","alert_code":"BZW","alert_type":"warning",)"
      R"("alert_name_en":"blizzard warning","alert_name_fr":"avertissement de blizzard",)"
      R"("publication_datetime":"2026-11-21T18:12:06.795Z","expiration_datetime":"2026-11-22T09:00:00.000Z",)"
      R"("validity_datetime":"2026-11-21T21:00:00.000Z","event_end_datetime":"2026-11-22T15:00:00.000Z",)"
      R"("alert_text_en":"Snow.\n\nStay at home.","alert_text_fr":"Neige.","risk_colour_en":"orange",)"
      R"("risk_colour_fr":"orange","confidence_en":"High","confidence_fr":"élevée","impact_en":"High",)"
      R"("impact_fr":"élevé","feature_name_en":"Iqaluit","feature_name_fr":"Ville d'Iqaluit","province":"NU",)"
      R"("status_en":"issued","status_fr":"émis","feature_id":"z-9")";
  if (!changes.empty()) properties += "," + changes;
  return R"({"type":"Feature","properties":{)" + properties + R"(},"geometry":)" + geometry +
         R"(,"id":"17202611210501_z-9"})";
}

std::string list(std::string const& features, std::string const& more = {}) {
  return R"({"type":"FeatureCollection","features":[)" + features + "]" + more + "}";
}

CapAlert only(std::string const& feature) {
  auto const alerts = parseEcccAlerts(list(feature));
  EXPECT_TRUE(alerts && alerts->unreadable == 0 && alerts->alerts.size() == 1) << feature;
  return alerts && !alerts->alerts.empty() ? alerts->alerts.front() : CapAlert();
}

TEST(EcccAlerts, SayTheSameInBothLanguages) {
  CapAlert const alert = only(feature());
  EXPECT_EQ(alert.identifier, "17202611210501_z-9");
  EXPECT_EQ(alert.sender, "weather.gc.ca");
  EXPECT_EQ(alert.status, "Actual");
  EXPECT_EQ(formatIso8601(alert.sent.value()), "2026-11-21T18:12:06.795Z");
  ASSERT_THAT(alert.infos, SizeIs(2));
  CapInfo const& english = alert.infos[0];
  CapInfo const& french = alert.infos[1];
  EXPECT_EQ(english.language, "en-CA");
  EXPECT_EQ(english.event, "blizzard warning");
  EXPECT_EQ(english.description, "Snow.\n\nStay at home.");
  EXPECT_EQ(english.areas.at(0).areaDesc, "Iqaluit");
  EXPECT_EQ(valueOf(english.parameters, "confidence"), "High");
  EXPECT_EQ(french.language, "fr-CA");
  EXPECT_EQ(french.event, "avertissement de blizzard");
  EXPECT_EQ(french.areas.at(0).areaDesc, "Ville d'Iqaluit");
  EXPECT_EQ(valueOf(french.parameters, "impact"), "élevé");
  for (CapInfo const& info : alert.infos) {
    EXPECT_EQ(info.onset, at("2026-11-21T21:00:00Z"));
    EXPECT_EQ(valueOf(info.parameters, "alert_type"), "warning");
    EXPECT_EQ(valueOf(info.eventCodes, "alert_code"), "BZW");
    EXPECT_EQ(valueOf(info.areas.at(0).geocodes, "feature_id"), "z-9");
    EXPECT_THAT(info.areas.at(0).polygons,
                ElementsAre(ElementsAre(Coordinate{63, -69}, Coordinate{63, -68}, Coordinate{64, -68},
                                        Coordinate{64, -69}, Coordinate{63, -69})));
  }
}

struct Change {
  char const* name;
  std::string changes, expected;
};

std::string summary(CapAlert const& alert) {
  std::string text = alert.msgType;
  for (CapInfo const& info : alert.infos) {
    text += "|" + info.language.substr(0, 2) + " " + info.event + " " + info.severity + " " +
            std::string(valueOf(info.parameters, "awareness_level").value_or("-")) + " until " +
            (info.expires ? formatIso8601(*info.expires).substr(8, 5) : "?") + " in " +
            info.areas.at(0).areaDesc;
  }
  return text;
}

std::string told(std::string const& type, std::string const& grade, std::string const& end = "22T15") {
  return type + "|en blizzard warning " + grade + " until " + end +
         " in Iqaluit|fr avertissement de blizzard " + grade + " until " + end + " in Ville d'Iqaluit";
}

TEST(EcccChange, IsRead) {
  for (Change const& row :
       {Change{"asIs", "", told("Alert", "Severe 3; orange; Severe")},
        Change{"yellow", R"("risk_colour_en":"Yellow")", told("Alert", "Moderate 2; yellow; Moderate")},
        Change{"red", R"("risk_colour_en":"red")", told("Alert", "Extreme 4; red; Extreme")},
        Change{"statement", R"("risk_colour_en":"","alert_type":"statement")", told("Alert", "Unknown -")},
        Change{"grey", R"("risk_colour_en":"grey")", told("Alert", "Unknown -")},
        Change{"continued", R"("status_en":"continued")", told("Update", "Severe 3; orange; Severe")},
        Change{"noStatus", R"("status_en":"")", told("Alert", "Severe 3; orange; Severe")},
        Change{"endOfTheMessage", R"("event_end_datetime":"")",
               told("Alert", "Severe 3; orange; Severe", "22T09")},
        Change{"noEnd", R"("event_end_datetime":7,"expiration_datetime":"soon")",
               told("Alert", "Severe 3; orange; Severe", "?")},
        Change{
            "shortName", R"("alert_name_en":"","alert_short_name_en":"Blizzard")",
            "Alert|en Blizzard Severe 3; orange; Severe until 22T15 in Iqaluit|fr avertissement de blizzard "
            "Severe 3; orange; Severe until 22T15 in Ville d'Iqaluit"},
        Change{"englishOnly", R"("alert_name_fr":" ","feature_name_fr":7)",
               "Alert|en blizzard warning Severe 3; orange; Severe until 22T15 in Iqaluit"},
        Change{"nameOfTheOtherLanguage", R"("alert_name_en":"","feature_name_fr":7)",
               "Alert|fr avertissement de blizzard Severe 3; orange; Severe until 22T15 in Iqaluit"}}) {
    SCOPED_TRACE(row.name);
    std::string const both = row.expected;
    EXPECT_EQ(summary(only(feature(row.changes))), both);
  }
}

std::string manyCorners(int corners) {
  std::string text = R"({"type":"Polygon","coordinates":[[)";
  for (int i = 0; i < corners; ++i) text += i == 0 ? "[1,2]" : ",[1,2]";
  return text + "]]}";
}

TEST(EcccAlerts, CountsWhatIsNone) {
  struct Row {
    std::string feature;
    std::size_t unreadable;
  };
  for (Row const& row : {
           Row{feature(R"("status_en":"ended")"), 0},
           {feature({}, manyCorners(100'000)), 0},
           {feature({}, manyCorners(100'001)), 1},
           {feature({}, "null"), 0},
           {feature({}, R"({"type":"Point","coordinates":[1,2]})"), 0},
           {"7", 1},
           {R"({"type":"Feature","geometry":null})", 1},
           {feature(R"("alert_name_en":"","alert_name_fr":[])"), 1},
           {feature({}, R"({"type":"Polygon"})"), 1},
           {feature({}, R"({"type":"Polygon","coordinates":[[[1,2],[3]]]})"), 1},
           {feature({}, R"({"type":"Polygon","coordinates":[[[1,2],[3,91],[4,5]]]})"), 1},
           {feature({}, "[]"), 1},
       }) {
    auto const alerts = parseEcccAlerts(list(row.feature + "," + feature()));
    ASSERT_TRUE(alerts);
    EXPECT_EQ(alerts->unreadable, row.unreadable) << row.feature.substr(0, 600);
    EXPECT_EQ(alerts->alerts.back(), only(feature()));
  }
}

TEST(EcccAlerts, AreKnownByWhatTheyAreAboutWithoutAnIdentifier) {
  std::string text = feature(R"("id":{})");
  EXPECT_EQ(only(text).identifier, "17202611210501_z-9") << "that of the feature";
  text.replace(text.rfind("\"17202611210501_z-9\""), std::string("\"17202611210501_z-9\"").size(), "null");
  EXPECT_EQ(only(text).identifier, "BZW_z-9_2026-11-21T18:12:06.795Z");
}

TEST(EcccAlerts, TakeNothingElseForAList) {
  for (std::string const& body :
       {std::string(R"({"code":"InvalidParameterValue","description":"unknown query parameter"})"),
        std::string(R"({"type":"FeatureCollection"})"),
        std::string(R"({"type":"FeatureCollection","features":{}})"), std::string(R"({"features":[]})"),
        std::string(R"({"type":"Feature","features":[]})"), std::string("<html><body>504</body></html>"),
        std::string("Err")})
    EXPECT_FALSE(parseEcccAlerts(body)) << body;
  for (std::string const& body : test::damagedForms(list(feature()), 31)) std::ignore = parseEcccAlerts(body);
}

TEST(EcccAlerts, AreReadAsRecorded) {
  auto const files = test::sampleFiles("eccc");
  if (!files) GTEST_SKIP() << "no recorded answers";
  std::size_t read = 0;
  for (auto const& file : *files) {
    auto const alerts = parseEcccAlerts(test::readFile(file));
    ASSERT_TRUE(alerts) << file;
    EXPECT_EQ(alerts->unreadable + alerts->withheld, 0U) << file;
    if (file.filename() != "alerts-first-of-seven-2026-03-06.json") continue;
    ++read;
    ASSERT_THAT(alerts->alerts, SizeIs(1));
    CapAlert const& alert = alerts->alerts.front();
    EXPECT_EQ(
        summary(alert),
        "Update|en freezing rain warning Moderate 2; yellow; Moderate until 06T06 in Burlington - Oakville"
        "|fr avertissement de pluie verglaçante Moderate 2; yellow; Moderate until 06T06 in Burlington - "
        "Oakville");
    EXPECT_THAT(alert.infos[0].areas[0].polygons, ElementsAre(SizeIs(193)));
    EXPECT_THAT(alert.infos[1].description, HasSubstr("verglaçante tôt ce soir"));
  }
  EXPECT_EQ(read, 1U);
}

class EcccServiceTest : public testing::Test {
 protected:
  CapListing fetch(Coordinate place = {63.75, -68.52}) { return service.fetch(place, "CA"); }

  test::FakeHttpClient http;
  test::ManualClock clock{at("2026-11-21T19:00:00Z")};
  EcccService service{http, clock, "https://geo.example"};
};

TEST_F(EcccServiceTest, AsksForBothStatesAroundThePlace) {
  http.willAnswer(200, list(feature()));
  http.willAnswer(200, list(feature(R"("id":"18_z-9","status_en":"continued")")));
  CapListing const listing = fetch();
  EXPECT_FALSE(listing.failure);
  ASSERT_THAT(listing.messages, SizeIs(2));
  EXPECT_EQ(listing.messages[0].link,
            "https://geo.example/collections/weather-alerts/items/17202611210501_z-9");
  EXPECT_EQ(listing.messages[0].country, "CA");
  EXPECT_FALSE(listing.messages[0].isHit) << "the box is wider than the place";
  ASSERT_THAT(http.requests, SizeIs(2));
  EXPECT_EQ(
      http.requests[0].url,
      "https://geo.example/collections/weather-alerts/items?f=json&bbox=-68.5700,63.7000,-68.4700,63.8000"
      "&status_en=issued&limit=10000");
  EXPECT_THAT(http.requests[1].url, HasSubstr("&status_en=continued&"));
  EXPECT_EQ(http.requests[0].maxBodyBytes, std::size_t{16} << 20);
}

TEST_F(EcccServiceTest, HasAnAlertOnceThatMovesOnBetweenTheRequests) {
  http.willAnswer(200, list(feature()));
  http.willAnswer(200, list(feature(R"("status_en":"continued")")));
  CapListing const listing = fetch();
  ASSERT_THAT(listing.messages, SizeIs(1));
  EXPECT_EQ(listing.messages[0].alert->msgType, "Update");
}

TEST_F(EcccServiceTest, StaysOnTheGlobe) {
  struct Row {
    Coordinate place;
    std::string box;
  };
  for (Row const& row : {Row{{90, 180}, "bbox=179.9500,89.9500,180.0000,90.0000&"},
                         {{-90, -180}, "bbox=-180.0000,-90.0000,-179.9500,-89.9500&"},
                         {{44.65, -63.57}, "bbox=-63.6200,44.6000,-63.5200,44.7000&"}}) {
    http.requests.clear();
    fetch(row.place);
    EXPECT_THAT(http.requests.at(0).url, HasSubstr(row.box));
  }
  http.requests.clear();
  EXPECT_EQ(fetch({91, 0}).failure->kind, ServiceFailure::Kind::noSuchPlace);
  EXPECT_THAT(http.requests, IsEmpty());
}

TEST_F(EcccServiceTest, FailsWithWhatCouldBeRead) {
  using enum ServiceFailure::Kind;
  struct Row {
    char const* name;
    std::string first, second;
    int status;
    std::optional<ServiceFailure::Kind> failure;
    std::size_t readable;
  };
  std::string const one = list(feature());
  std::string const none = list("");
  for (Row const& row : {
           Row{"none", none, none, 200, {}, 0},
           {"all", one, none, 200, {}, 1},
           {"more matched", list(feature(), R"(,"numberMatched":12,"numberReturned":10)"), none, 200,
            incomplete, 1},
           {"as many matched", list(feature(), R"(,"numberMatched":1,"numberReturned":1)"), none, 200, {}, 1},
           {"matched alone", list(feature(), R"(,"numberMatched":2)"), none, 200, incomplete, 1},
           {"one is none", list(feature() + ",{}"), none, 200, incomplete, 1},
           {"page in place of a list", "<html>", one, 200, unreadable, 1},
           {"error in place of a list", one, R"({"code":"NoApplicableCode","description":"x"})", 200,
            unreadable, 1},
           {"empty body", one, "", 200, unreadable, 1},
           {"cut", one, one.substr(0, one.size() - 2), 200, unreadable, 1},
           {"refused", one, "", 500, status, 1},
           {"no content", one, "", 204, status, 1},
       }) {
    http.willAnswer(200, row.first);
    http.willAnswer(row.status, row.second);
    CapListing const listing = fetch();
    EXPECT_EQ(listing.failure.has_value(), row.failure.has_value()) << row.name;
    EXPECT_EQ(listing.failure.value_or(ServiceFailure{}).kind, row.failure.value_or(network)) << row.name;
    EXPECT_THAT(listing.messages, SizeIs(row.readable)) << row.name;
    EXPECT_FALSE(listing.isBlind) << row.name;
  }
}

TEST_F(EcccServiceTest, AsksTheOtherQuestionUnlessNobodyIsThere) {
  struct Row {
    HttpError::Kind kind;
    std::size_t requests;
  };
  using enum HttpError::Kind;
  for (Row const& row : {Row{unresolvedHost, 1}, Row{connectionFailed, 1}, Row{tlsFailed, 1},
                         Row{cancelled, 1}, Row{timedOut, 2}, Row{bodyTooLarge, 2}, Row{truncated, 2}}) {
    http.requests.clear();
    http.willFail({row.kind, "no answer"});
    if (row.requests == 2) http.willAnswer(200, list(feature()));
    CapListing const listing = fetch();
    EXPECT_EQ(listing.failure->transport, row.kind);
    EXPECT_EQ(http.requests.size(), row.requests) << static_cast<int>(row.kind);
    EXPECT_EQ(listing.messages.size(), row.requests - 1);
  }
}

}  // namespace
}  // namespace nimbara
