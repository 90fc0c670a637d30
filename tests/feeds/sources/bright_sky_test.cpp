#include "feeds/brightsky/bright_sky_alerts.h"
#include "feeds/brightsky/bright_sky_service.h"
#include "support/answers/bad_bytes.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/samples.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::at;

constexpr Coordinate kBerlin{52.520008, 13.404954};

/// `members` begins with a comma where it is not empty.
std::string alert(std::string const& members = "", std::string const& id = "2.49.0.0.276.0.DWD.1") {
  return R"({"id":7,"alert_id":")" + id + R"(","event_en":"frost")" + members + "}";
}

std::string listOf(std::string const& alerts, std::string const& location =
                                                  R"({"warn_cell_id":803159016,"name":"Stadt Göttingen",
    "name_short":"Göttingen","district":"Göttingen","state":"Niedersachsen","state_short":"NI"})") {
  return R"({"alerts":[)" + alerts + R"(],"location":)" + location + "}";
}

CapAlert onlyAlert(std::string const& body) {
  auto const list = parseBrightSkyAlerts(body);
  if (!list || list->messages.size() != 1) throw std::invalid_argument("not one warning: " + body);
  return *list->messages[0].alert;
}

TEST(BrightSkyAlerts, ReadsTheRecordedOneWhole) {
  auto const files = test::sampleFiles("brightsky");
  if (!files) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  for (auto const& file : *files) {
    auto const list = parseBrightSkyAlerts(test::readFile(file));
    ASSERT_TRUE(list) << file << list.error().text();
    EXPECT_EQ(list->unreadable, 0U) << file;
    if (file.filename() != "alerts-one.json") continue;
    ASSERT_EQ(list->messages.size(), 1U);
    CapMessage const& message = list->messages[0];
    EXPECT_TRUE(message.isHit);
    EXPECT_EQ(message.country, "DE");
    CapInfo info;
    info.urgency = "Immediate";
    info.severity = "Minor";
    info.certainty = "Likely";
    info.responseTypes = {"Prepare"};
    info.effective = at("2026-03-06T11:37:00Z");
    info.onset = at("2026-03-07T00:00:00Z");
    info.expires = at("2026-03-07T08:00:00Z");
    info.senderName = "Deutscher Wetterdienst";
    info.eventCodes = {{"II", "22"}};
    info.areas = {{"Berl. - Mitte, Berlin", {}, {}, {{"WARNCELLID", "711000101"}}}};
    CapInfo english = info;
    english.language = "en";
    english.event = "Frost";
    english.headline = "Official WARNING of FROST";
    english.description = "There is a risk of frost (level 1 of 2).\nMinimum temperature: -1 - -5 °C";
    english.instruction =
        "Hazard(s) to expect: possible frost damage. \nRecommendations for what to do: \n"
        "If necessary, take precautions against frost.";
    CapInfo german = info;
    german.language = "de";
    german.event = "FROST";
    german.headline = "Amtliche WARNUNG vor FROST";
    german.description = "Es tritt leichter Frost zwischen -1 °C und -5 °C auf.";
    german.instruction =
        "Hinweis auf: mögliche Frostschäden. \nHandlungsempfehlungen: \nggf. Frostschutzmaßnahmen ergreifen";
    EXPECT_EQ(*message.alert,
              (CapAlert{"2.49.0.0.276.0.DWD.PVW.1772797020000.bda05e21-69ce-45a9-aff8-25a95592cfd5",
                        "",
                        at("2026-03-06T11:37:00Z"),
                        "Actual",
                        "",
                        {},
                        {english, german}}));
  }
}

TEST(BrightSkyAlerts, WritesTheProtocolsWordsAsTheProtocolDoes) {
  CapAlert const read = onlyAlert(listOf(alert(
      R"(,"status":"test","urgency":"future","severity":"extreme","certainty":"observed","response_type":"allclear")")));
  CapInfo const& info = read.infos.at(0);
  EXPECT_EQ(read.status, "Test");
  EXPECT_EQ(info.urgency, "Future");
  EXPECT_EQ(info.severity, "Extreme");
  EXPECT_EQ(info.certainty, "Observed");
  EXPECT_THAT(info.responseTypes, testing::ElementsAre("AllClear"));

  CapAlert const odd = onlyAlert(
      listOf(alert(R"(,"status":null,"urgency":"SOON","severity":7,"certainty":"","response_type":null)")));
  EXPECT_EQ(odd.status, "");
  EXPECT_EQ(odd.infos.at(0).urgency, "SOON") << "no word of the protocol, so it stays";
  EXPECT_EQ(odd.infos.at(0).severity, "");
  EXPECT_EQ(odd.infos.at(0).certainty, "");
  EXPECT_TRUE(odd.infos.at(0).responseTypes.empty());
}

TEST(BrightSkyAlerts, HasTheLanguagesThatHaveTexts) {
  auto const languages = [](std::string const& members) {
    std::string text;
    for (CapInfo const& info :
         onlyAlert(R"({"alerts":[{"alert_id":"1")" + members + R"(}],"location":{}})").infos)
      text += info.language + ":" + info.event + " ";
    return text;
  };
  EXPECT_EQ(languages(R"(,"event_en":"frost","event_de":"FROST")"), "en:Frost de:FROST ");
  EXPECT_EQ(languages(R"(,"event_en":null,"headline_en":"","headline_de":"Warnung")"), "de: ");
  EXPECT_EQ(languages(R"(,"description_en":"Cold.","instruction_de":"Vorsicht")"), "en: ");
}

TEST(BrightSkyAlerts, NamesTheMunicipality) {
  struct Row {
    std::string location;
    CapArea area;
  };
  for (
      Row const& row : {
          Row{R"({"warn_cell_id":803159016,"name":"Stadt Göttingen","district":"Göttingen","state":"Niedersachsen"})",
              {"Stadt Göttingen, Göttingen, Niedersachsen", {}, {}, {{"WARNCELLID", "803159016"}}}},
          Row{R"({"warn_cell_id":"1","name":"Berlin","district":"Berlin","state":"Berlin"})",
              {"Berlin", {}, {}, {{"WARNCELLID", "1"}}}},
          Row{R"({"warn_cell_id":1.5,"name":null,"district":"","state":"Bremen"})", {"Bremen", {}, {}, {}}},
          Row{"{}", {}},
      })
    EXPECT_EQ(onlyAlert(listOf(alert(), row.location)).infos.at(0).areas.at(0), row.area) << row.location;
}

TEST(BrightSkyAlerts, MayHaveNoEnd) {
  auto const endOf = [](std::string const& members) {
    return onlyAlert(listOf(alert(members))).infos.at(0).expires;
  };
  EXPECT_EQ(endOf(R"(,"expires":null)"), std::nullopt);
  EXPECT_EQ(endOf(""), std::nullopt);
  EXPECT_EQ(endOf(R"(,"expires":"2026-11-22T13:00:00+01:00")"), at("2026-11-22T12:00:00Z"));
}

TEST(BrightSkyAlerts, SurvivesDamage) {
  for (std::string const& body : test::damagedForms(listOf(alert() + "," + alert()), 3)) {
    std::ignore = parseBrightSkyAlerts(body);
    std::ignore = isBrightSkyUncovered(body);
  }
}

CapListing answered(int status, std::string const& body) {
  test::FakeHttpClient http;
  http.willAnswer(status, body);
  return BrightSkyService(http, "https://bright.example").fetch(kBerlin, "DE");
}

TEST(BrightSkyService, AsksForThePlaceWithFourDecimals) {
  test::FakeHttpClient http;
  http.willAnswer(200, listOf(alert("", "1") + "," + alert("", "2")));
  BrightSkyService service(http, "https://bright.example");
  CapListing const listing = service.fetch(kBerlin, "DE");
  EXPECT_EQ(listing.messages.size(), 2U);
  EXPECT_FALSE(listing.failure);
  EXPECT_FALSE(listing.isBlind);
  ASSERT_EQ(http.requests.size(), 1U);
  EXPECT_EQ(http.requests[0].url, "https://bright.example/alerts?lat=52.5200&lon=13.4050");
  EXPECT_EQ(http.requests[0].maxBodyBytes, std::size_t{16} << 20);
  EXPECT_EQ(service.fetch({0, 181}, "DE").failure->kind, ServiceFailure::Kind::noSuchPlace);
  EXPECT_EQ(http.requests.size(), 1U);
  http.willFail({HttpError::Kind::truncated, "the answer ends too early"});
  EXPECT_EQ(service.fetch(kBerlin, "DE").failure->kind, ServiceFailure::Kind::network);
}

TEST(BrightSkyService, IsBlindOnlyWhereTheServiceSaysSo) {
  struct Row {
    int status;
    std::string body;
    bool isBlind;
  };
  for (Row const& row : {
           Row{404, R"({"detail":"Requested position is not covered by the DWD"})", true},
           Row{404,
               R"({"title":"404 Not Found","description":"Requested position is Not Covered by the DWD"})",
               true},
           Row{400, R"({"detail":"Requested position is not covered by the DWD"})", true},
           Row{200, R"({"detail":"Requested position is not covered by the DWD"})", true},
           Row{404, R"({"detail":"Not Found"})", false},
           Row{404, R"({"detail":[{"msg":"not covered"}]})", false},
           Row{404, "<html>not covered</html>", false},
           Row{404, "", false},
           Row{503, R"({"detail":"not covered by the DWD"})", false},
           Row{422, R"({"detail":[{"type":"missing"}]})", false},
       }) {
    CapListing const listing = answered(row.status, row.body);
    EXPECT_EQ(listing.isBlind, row.isBlind) << row.status << row.body;
    EXPECT_EQ(listing.failure.has_value(), !row.isBlind) << row.status << row.body;
    EXPECT_TRUE(listing.messages.empty());
  }
  CapListing const none = answered(200, listOf(""));
  EXPECT_FALSE(none.isBlind || none.failure || !none.messages.empty()) << "nothing in force is nothing";
}

TEST(BrightSkyService, SaysWhyThereIsNoList) {
  using enum ServiceFailure::Kind;
  std::string const whole = listOf(alert());
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
           Row{"an error as text", 200, "Err", unreadable, 0},
           Row{"a bare list", 200, "[]", unreadable, 0},
           Row{"another list", 200, R"({"alerts":{},"location":{}})", unreadable, 0},
           Row{"the whole country's", 200, R"({"alerts":[)" + alert() + "]}", unreadable, 0},
           Row{"of nowhere", 200, listOf(alert(), "null"), unreadable, 0},
           Row{"cut short", 200, whole.substr(0, whole.size() - 2), unreadable, 0},
           Row{"in part", 200, listOf(alert() + R"(,{"event_en":"frost"},7,{"alert_id":"3"})"), incomplete,
               1},
           Row{"without an identifier", 200, listOf(alert("", "")), incomplete, 0},
           Row{"too often", 429, "", status, 0},
           Row{"broken", 500, whole, status, 0},
       }) {
    CapListing const listing = answered(row.status, row.body);
    ASSERT_TRUE(listing.failure) << row.name;
    EXPECT_EQ(listing.failure->kind, row.kind) << row.name;
    EXPECT_EQ(listing.messages.size(), row.messages) << row.name;
    EXPECT_FALSE(listing.isBlind) << row.name;
  }
}

}  // namespace
}  // namespace nimbara
