#include "feeds/alerts/alert_messages.h"

#include "base/words/texts.h"
#include "feeds/alerts/alert_text.h"
#include "feeds/alerts/cap_source.h"
#include "feeds/alerts/events/cap_events.h"
#include "feeds/meteoalarm/meteo_alarm_json_feed.h"
#include "feeds/meteoalarm/meteo_alarm_merge.h"
#include "support/answers/cap_alerts.h"
#include "support/answers/cap_json_message.h"
#include "support/manual_clock.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::at;
using testing::ElementsAre;
using testing::SizeIs;

constexpr char kNws[] =
    R"({"type":"FeatureCollection","features":[{"type":"Feature","geometry":null,"properties":{
  "id":"urn:2","areaDesc":"Hills","geocode":{"UGC":["MNZ060","MNZ061"]},"sent":"2026-11-22T08:00:00Z",
  "ends":"2026-11-22T20:00:00Z","status":"Actual","messageType":"Update","severity":"Severe","urgency":"Expected",
  "certainty":"Likely","event":"Winter Storm Warning","sender":"office@weather.example","senderName":"NWS Hills",
  "references":[{"identifier":"urn:1","sender":"office@weather.example","sent":"2026-11-22T07:00:00Z"}]}}]})";

WarningMessage second(std::vector<WarningCode> codes) {
  return {"urn:2",
          "office@weather.example",
          at("2026-11-22T08:00:00Z"),
          "Actual",
          "Update",
          {{"office@weather.example", "urn:1", at("2026-11-22T07:00:00Z")}},
          std::move(codes)};
}

CapAlert capMessage() {
  CapAlert message = test::capAlert("urn:2", "08:00", "Update", {"urn:1"});
  message.references.front().sent = at("2026-11-22T07:00:00Z");
  message.infos.front().areas.front().geocodes = {{"EMMA_ID", "XX001"}, {"NUTS3", "XX011"}};
  return message;
}

TEST(AlertMessages, AreThoseOfTheNationalWeatherService) {
  auto const list = parseNwsAlerts(kNws);
  ASSERT_TRUE(list && list->alerts.size() == 1);
  KnownEvents known;
  auto const alerts = liveEvents(list->alerts, at("2026-11-22T09:00:00Z"), known);
  ASSERT_THAT(alerts, SizeIs(1));
  EXPECT_THAT(alerts[0].messages.value(), ElementsAre(second({{"UGC", "MNZ060"}, {"UGC", "MNZ061"}})));
}

TEST(AlertMessages, AreThoseOfTheCommonAlertingProtocol) {
  KnownEvents known;
  CapView const view{"wmo", {10, 20}, "XX", "en", at("2026-11-22T13:00:00Z")};
  auto const answer = capEvents(test::listOf({capMessage()}), view, known);
  ASSERT_THAT(answer.alerts, SizeIs(1));
  EXPECT_THAT(answer.alerts[0].messages.value(),
              ElementsAre(second({{"EMMA_ID", "XX001"}, {"NUTS3", "XX011"}})));
}

/// With the message itself, and with no more than its entry in a list.
TEST(AlertMessages, AreThoseOfMeteoAlarm) {
  auto const texts = Texts::load("en");
  RawEntry entry;
  entry.event = "Wind";
  entry.severity = "Severe";
  entry.identifier = "urn:2";
  entry.status = "Actual";
  entry.messageType = "Update";
  entry.areaDesc = "Square";
  entry.sent = at("2026-11-22T08:00:00Z");
  entry.otherCodes = {{"EMMA_ID", "XX001"}};
  entry.nuts3Codes = {"XX011"};
  entry.infoIndex = 0;
  ToldEntry told{{&entry, {}}, detailsOf(capMessage(), entry, "en"), "en"};
  PlaceRegions const here{"XX", {}, {{"EMMA_ID", "XX001"}}, {}, {}};
  MergeContext const context{"XX", here, "en", texts};
  std::vector<WarningCode> const codes{{"EMMA_ID", "XX001"}, {"NUTS3", "XX011"}};
  auto const whole = mergedAlerts(std::vector{told, told}, context);
  ASSERT_THAT(whole, SizeIs(1));
  EXPECT_THAT(whole[0].messages.value(), ElementsAre(second(codes)));
  told.details.reset();
  auto const bare = mergedAlerts(std::vector{told}, context);
  ASSERT_THAT(bare, SizeIs(1));
  WarningMessage expected = second(codes);
  expected.sender.clear();
  expected.references.clear();
  EXPECT_THAT(bare[0].messages.value(), ElementsAre(expected));
}

TEST(AlertMessages, AreBounded) {
  WeatherAlert alert;
  for (int i = 0; i < 100; ++i) {
    WarningMessage message = second({});
    message.identifier = std::to_string(i) + std::string(1000, 'x') + "\x1b";
    message.references.resize(1000);
    for (int code = 0; code < 300; ++code) addCode(message, "UGC", std::to_string(code));
    addMessage(alert, message);
    addMessage(alert, message);
  }
  addMessage(alert, {});
  ASSERT_THAT(alert.messages.value(), SizeIs(20));
  EXPECT_LE(alert.messages->front().identifier.size(), 310U);
  EXPECT_THAT(alert.messages->front().references, SizeIs(50));
  EXPECT_THAT(alert.messages->front().codes, SizeIs(200));
}

TEST(CapSource, HandsOnWhatTheListIs) {
  test::ManualClock clock(at("2026-11-22T13:00:00Z"));
  CapListing listing;
  auto const source = capAlertSource("wmo", [&](auto const&, auto const&) { return listing; }, clock, "en");
  EventMemory memory;
  GovAlertPlace const place{{10, 20}, "XX", {}};
  EXPECT_TRUE(source.isIdentified);
  listing.isBlind = true;
  EXPECT_TRUE(source.fetch(place, memory, {})->isBlind);
  listing.isBlind = false;
  listing.messages = test::listOf({test::capAlert("1", "08:00")});
  EXPECT_THAT(source.fetch(place, memory, {})->alerts, SizeIs(1));
  listing.failure = ServiceFailure::of(ServiceFailure::Kind::unreadable);
  auto const failed = source.fetch(place, memory, {});
  ASSERT_FALSE(failed);
  EXPECT_THAT(failed.error().readable, SizeIs(1));
}

TEST(CapSource, ABareCancellationIsFilledInWithWhatWasKnown) {
  test::ManualClock clock(at("2026-11-22T13:00:00Z"));
  std::vector<CapMessage> messages = test::listOf({test::capAlert("1", "08:00")});
  auto const list = [&](auto const&, auto const&) { return CapListing{messages, false, {}}; };
  GovAlertService service(clock, {capAlertSource("wmo", list, clock, "en")}, {});
  GovAlertPlace const place{{10, 20}, "XX", {}};
  auto const known = service.fetchAlerts(place).alerts;
  ASSERT_THAT(known, SizeIs(1));
  clock.advance(std::chrono::hours(1));
  messages = test::listOf({test::capAlert("2", "13:30", "Cancel", {"1"}, {})});
  auto const after = service.fetchAlerts(place);
  EXPECT_THAT(after.alerts, testing::IsEmpty());
  ASSERT_THAT(after.calledOff, SizeIs(1));
  WeatherAlert expected = known[0];
  expected.issued = at("2026-11-22T13:30:00Z");
  EXPECT_EQ(after.calledOff[0], expected);
  // A place that knew nothing of it is told nothing.
  EXPECT_THAT(service.fetchAlerts({{10.1, 20.1}, "XX", {}}).calledOff, testing::IsEmpty());
}

TEST(AlertTexts, AreCleanAndBounded) {
  std::vector<WeatherAlert> alerts(1);
  WeatherAlert& alert = alerts.front();
  alert.title = "Sturm\x1B[31m\nüber\u202E Köln";
  alert.message = std::string(1'000'000, 'x');
  alert.description = "first\r\nsecond\xC2\x9B";
  alert.areaDesc = "Köln\nBonn";
  alert.text = " first\n  second\x1B ";
  alert.issuer = "DWD\n";
  alert.near = {{"Hills\x1B", 12}};
  cleanTexts(alerts);
  EXPECT_EQ(alert.title, "Sturm[31m über Köln");
  EXPECT_EQ(alert.message.size(), 15'999 + std::string_view("…").size());
  EXPECT_EQ(alert.description, "first\nsecond");
  EXPECT_EQ(alert.areaDesc, "Köln Bonn");
  EXPECT_EQ(alert.text, " first\n  second ") << "to the letter otherwise";
  EXPECT_EQ(alert.issuer, "DWD ");
  EXPECT_EQ(alert.near->at(0).area, "Hills");
  EXPECT_EQ(alert.instruction, std::nullopt) << "what is not given stays so";
}

}  // namespace
}  // namespace nimbara
