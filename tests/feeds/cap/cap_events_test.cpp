#include "feeds/alerts/events/cap_events.h"

#include "feeds/alerts/cap_source.h"
#include "support/answers/cap_alerts.h"
#include "support/manual_clock.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::at;
using test::capAlert;
using test::listed;
using test::listOf;
using test::square;
using test::windBlock;
using testing::IsEmpty;
using testing::SizeIs;

CapView const kView{"wmo", {10, 20}, "XX", "en", at("2026-11-22T13:00:00Z")};

GovSourceAnswer answerTo(std::vector<CapMessage> const& messages, CapView const& view = kView) {
  KnownEvents known;
  return capEvents(messages, view, known);
}

GovSourceAnswer answerTo(CapAlert alert, CapView const& view = kView) {
  return answerTo(listOf({std::move(alert)}), view);
}

CapInfo saying(std::string urgency, std::string response = {},
               std::string const& expires = "2026-11-23T00:00:00Z") {
  CapInfo info = windBlock();
  info.urgency = std::move(urgency);
  if (!response.empty()) info.responseTypes = {std::move(response)};
  info.expires = expires.empty() ? std::nullopt : std::optional(at(expires));
  return info;
}

/// What a second message makes of an event whose first one is listed beside it.
struct Row {
  std::string name;
  std::string status = "Actual";
  std::string type = "Update";
  std::vector<std::string> references = {"1"};
  std::vector<CapInfo> infos = {windBlock()};
  std::size_t alerts = 1;
  std::size_t calledOff = 0;
};

class SecondMessage : public testing::TestWithParam<Row> {};

TEST_P(SecondMessage, MakesOfTheEvent) {
  Row const& row = GetParam();
  CapAlert second = capAlert("2", "09:00", row.type, row.references, row.infos);
  second.status = row.status;
  CapInfo first = windBlock();
  first.event = "Storm";
  first.onset = at("2026-11-22T10:00:00Z");
  auto const answer = answerTo(listOf({capAlert("1", "08:00", "Alert", {}, {first}), second}));
  EXPECT_THAT(answer.alerts, SizeIs(row.alerts));
  EXPECT_THAT(answer.calledOff, SizeIs(row.calledOff));
  EXPECT_THAT(answer.unplaced, IsEmpty());
  // Of what is called off everything is as it last was, also the identifier.
  for (WeatherAlert const& off : answer.calledOff) {
    EXPECT_EQ(off.title, "Storm");
    EXPECT_EQ(off.id, answerTo(capAlert("1", "08:00", "Alert", {}, {first})).alerts.at(0).id);
  }
}

CapInfo const kGreen = [] {
  CapInfo info = windBlock();
  info.parameters = {{"awareness_level", "1; green; Minor"}};
  return info;
}();

INSTANTIATE_TEST_SUITE_P(
    CapEvents, SecondMessage,
    testing::Values(
        Row{"AnUpdateGoesOn"}, Row{"AnAlertWithReferencesGoesOn", "Actual", "Alert"},
        Row{"AnAlertWithoutReferencesIsAnother", "Actual", "Alert", {}, {windBlock()}, 2},
        Row{"AnUpdateWithoutReferencesIsAnother", "Actual", "Update", {}, {windBlock()}, 2},
        Row{"ReferringToItselfIsReferringToNothing", "Actual", "Update", {"2"}, {windBlock()}, 2},
        Row{"ReferringToTheUnknownIsAnother", "Actual", "Update", {"0"}, {windBlock()}, 2},
        Row{"ReferringToBothIsGoingOn", "Actual", "Update", {"2", "1"}},
        Row{"ATestSaysNothing", "Test", "Cancel"}, Row{"AnExerciseSaysNothing", "Exercise", "Cancel"},
        Row{"ADraftSaysNothing", "Draft", "Update", {"1"}, {saying("Past")}},
        Row{"ASystemMessageSaysNothing", "System", "Cancel"},
        Row{"AnAcknowledgementSaysNothing", "Actual", "Ack"}, Row{"ARefusalSaysNothing", "Actual", "Error"},
        Row{"WordsInAnyCase", "ACTUAL", "cancel", {"1"}, {windBlock()}, 0, 1},
        Row{"ACancellationEnds", "Actual", "Cancel", {"1"}, {windBlock()}, 0, 1},
        Row{"ACancellationWithoutBlocksEnds", "Actual", "Cancel", {"1"}, {}, 0, 1},
        Row{"ACancellationOfAnotherEndsNothing", "Actual", "Cancel", {"0"}, {}},
        Row{"AnUpdateWithoutBlocksSaysNothing", "Actual", "Update", {"1"}, {}},
        Row{"PastEnds", "Actual", "Update", {"1"}, {saying("Past")}, 0, 1},
        Row{"AllClearEnds", "Actual", "Update", {"1"}, {saying("Immediate", "AllClear")}, 0, 1},
        Row{"AllClearAsAnAlertEnds", "Actual", "Alert", {"1"}, {saying("Past", "AllClear")}, 0, 1},
        Row{"AllClearWithoutAnEndEnds", "Actual", "Update", {"1"}, {saying("Past", "AllClear", "")}, 0, 1},
        Row{"PastInOneBlockOfTwoGoesOn",
            "Actual",
            "Update",
            {"1"},
            {saying("Past"), saying("Future", "Monitor")}},
        Row{"GreenEnds", "Actual", "Update", {"1"}, {kGreen}, 0, 1},
        Row{"MonitorGoesOn", "Actual", "Update", {"1"}, {saying("Immediate", "Monitor")}},
        Row{"ExpiredIsOverAndNotCalledOff",
            "Actual",
            "Update",
            {"1"},
            {saying("Future", "", "2026-11-22T13:00:00Z")},
            0},
        Row{"NotYetExpired", "Actual", "Update", {"1"}, {saying("Future", "", "2026-11-22T13:00:01Z")}},
        Row{"WithoutAnEndGoesOn", "Actual", "Update", {"1"}, {saying("Future", "", "")}}),
    [](auto const& row) { return row.param.name; });

TEST(CapEvents, WhatWasCalledOffIsListedAsLongAsItWouldHaveLasted) {
  std::vector<CapMessage> const messages =
      listOf({capAlert("1", "08:00"), capAlert("2", "09:00", "Cancel", {"1"}, {})});
  CapView view = kView;
  view.now = at("2026-11-22T23:59:59Z");
  auto const off = answerTo(messages, view).calledOff;
  ASSERT_THAT(off, SizeIs(1));
  EXPECT_EQ(off[0].severity, AlertSeverity::warning);
  EXPECT_EQ(off[0].expires, at("2026-11-23T00:00:00Z"));
  view.now = at("2026-11-23T00:00:00Z");
  EXPECT_THAT(answerTo(messages, view).calledOff, IsEmpty());
}

TEST(CapEvents, ALoopOfReferencesEnds) {
  auto const answer =
      answerTo(listOf({capAlert("1", "08:00", "Update", {"3"}), capAlert("2", "09:00", "Update", {"1"}),
                       capAlert("3", "10:00", "Update", {"2"})}));
  ASSERT_THAT(answer.alerts, SizeIs(1));
  EXPECT_EQ(answer.alerts[0].issued, at("2026-11-22T10:00:00Z"));
}

TEST(CapEvents, AnAlertSaysWhatTheIssuerSaysInTheReadersLanguage) {
  CapInfo english = windBlock();
  english.headline = "Wind in the square";
  english.instruction = "Stay\n at home.";
  english.parameters = {{"awareness_level", "3; orange; Severe"}, {"awareness_type", "1; Wind"}};
  CapInfo german = english;
  german.language = "de-AT";
  german.event = "Sturm";
  german.description = "";
  german.headline = "Sturm im Quadrat";
  german.areas[0].areaDesc = "Quadrat";
  CapInfo french = english;
  french.language = "fr";
  french.event = "Vent";
  CapAlert const message = capAlert("1", "08:00", "Alert", {}, {french, english, german});
  CapView view = kView;
  view.language = "de_DE.UTF-8";
  WeatherAlert const alert = answerTo(message, view).alerts.at(0);
  EXPECT_EQ(alert.title, "Sturm");
  EXPECT_EQ(alert.message, "Sturm im Quadrat");
  EXPECT_EQ(alert.text, "Sturm im Quadrat");
  EXPECT_EQ(alert.instruction, "Stay\n at home.");
  EXPECT_EQ(alert.language, "de-AT");
  EXPECT_EQ(alert.areaDesc, "Quadrat");
  EXPECT_EQ(alert.colour, "orange");
  EXPECT_EQ(alert.severity, AlertSeverity::warning);
  EXPECT_EQ(alert.levelStated, std::nullopt);
  EXPECT_EQ(alert.kind, WarningKind::wind);
  EXPECT_EQ(alert.issuer, "Weather Service");
  EXPECT_EQ(alert.issued, at("2026-11-22T08:00:00Z"));
  EXPECT_EQ(alert.polygons, std::vector<std::string>{"9.5,19.5 10.5,19.5 10.5,20.5 9.5,20.5"});
  EXPECT_TRUE(alert.isGovAlert);
  view.language = "pl";
  EXPECT_EQ(answerTo(message, view).alerts.at(0).title, "Wind");
  EXPECT_EQ(answerTo(capAlert("1", "08:00", "Alert", {}, {french, german}), view).alerts.at(0).title, "Vent");
}

TEST(CapEvents, AnEventThatTheReadersLanguageLacksIsToldInAnother) {
  CapInfo wind = windBlock();
  CapInfo viento = wind;
  viento.language = "es";
  viento.event = "Viento";
  CapInfo lluvia = viento;
  lluvia.event = "Lluvia";
  lluvia.severity = "Extreme";
  auto const alerts = answerTo(capAlert("1", "08:00", "Alert", {}, {wind, lluvia, viento})).alerts;
  ASSERT_THAT(alerts, SizeIs(2));
  EXPECT_EQ(alerts[0].title, "Wind");
  EXPECT_EQ(alerts[1].title, "Lluvia");
  EXPECT_NE(alerts[0].id, alerts[1].id);
}

TEST(CapEvents, OfSeveralBlocksThoseDecideThatHaveThePlaceInThem) {
  CapInfo here = windBlock();
  here.severity = "Minor";
  CapInfo later = here;
  later.severity = "Moderate";
  later.description = "Stronger.";
  later.onset = at("2026-11-23T00:00:00Z");
  later.expires = at("2026-11-23T12:00:00Z");
  CapInfo beside = windBlock();
  beside.severity = "Extreme";
  beside.areas = {square("Beside", 10, 20.9)};
  CapInfo far = beside;
  far.areas = {square("Far", 40, 20)};
  auto const alerts = answerTo(capAlert("1", "08:00", "Alert", {}, {far, beside, here, later})).alerts;
  ASSERT_THAT(alerts, SizeIs(1));
  EXPECT_EQ(alerts[0].severity, AlertSeverity::advisory);
  EXPECT_EQ(alerts[0].onset, here.onset);
  EXPECT_EQ(alerts[0].expires, later.expires);
  EXPECT_EQ(alerts[0].text, "Strong wind.\n\nStronger.");
  EXPECT_EQ(alerts[0].areaDesc, "Square");
  EXPECT_EQ(alerts[0].distanceKm, std::nullopt);
  ASSERT_TRUE(alerts[0].near && alerts[0].near->size() == 1);
  EXPECT_EQ(alerts[0].near->at(0).area, "Beside");
  EXPECT_EQ(alerts[0].near->at(0).severity, AlertSeverity::critical);
}

struct Level {
  std::string severity;
  std::string awareness;
  std::optional<AlertSeverity> taken;  ///< nothing: it is no warning
  std::string colour;
  bool isStated = true;
};

TEST(CapEvents, ColourAndSeverityAreTwoThings) {
  using enum AlertSeverity;
  for (Level const& row : {Level{"Extreme", "", critical, ""},
                           {"Severe", "2; yellow; Moderate", warning, "yellow"},
                           {"moderate", "3", advisory, "orange"},
                           {"Minor", "red", info, "red"},
                           {"Unknown", "Amber", advisory, "orange", false},
                           {"", "5; purple", advisory, "", false},
                           {"Severe", "1; green; Minor", std::nullopt, ""}}) {
    CapInfo info = windBlock();
    info.severity = row.severity;
    if (!row.awareness.empty()) info.parameters = {{"awareness_level", row.awareness}};
    auto const answer = answerTo(capAlert("1", "08:00", "Alert", {}, {info}));
    EXPECT_THAT(answer.calledOff, IsEmpty());
    ASSERT_EQ(answer.alerts.size(), row.taken ? 1U : 0U) << row.awareness;
    if (!row.taken) continue;
    EXPECT_EQ(answer.alerts[0].severity, *row.taken);
    EXPECT_EQ(answer.alerts[0].colour.value_or(""), row.colour);
    EXPECT_EQ(answer.alerts[0].levelStated.value_or(true), row.isStated);
  }
}

/// Services without awareness levels have words of their own for the colour; what is green there ends
/// nothing.
TEST(CapEvents, ColoursHaveNamesOfTheirOwn) {
  for (auto const& [name, value, colour] : {std::tuple("ColourCode", "Orange", "orange"),
                                            {"colorcode", "RED ", "red"},
                                            {"ColourCode", "Green", ""},
                                            {"ColourCodeHex", "#FF9900", ""},
                                            {"Colour", "blue", ""}}) {
    CapInfo info = windBlock();
    info.parameters = {{name, value}};
    auto const answer = answerTo(capAlert("1", "08:00", "Alert", {}, {info}));
    ASSERT_EQ(answer.alerts.size(), 1U) << value;
    EXPECT_EQ(answer.alerts[0].colour.value_or(""), colour) << name;
  }
}

struct Named {
  std::string event;
  std::string language;
  WarningKind kind;
};

TEST(CapEvents, KindsAreKnownByTheirNamesInManyLanguages) {
  using enum WarningKind;
  for (Named const& row : {Named{"Tropical Cyclone Warning", "en", tropicalCyclone},
                           {"Flash Flood", "en", rain},
                           {"Ветер", "ru", wind},
                           {"Гроза", "ru", thunderstorm},
                           {"暴雨黄色预警", "zh", rain},
                           {"強烈季候風信號", "zh-mo", wind},
                           {"VENTOS FORTES DE MONÇÃO", "pt-PT", wind},
                           {"台風", "ja", tropicalCyclone},
                           {"Hujan lebat", "id", rain},
                           {"Freezing rain, icing", "en-US", snow},
                           {"Sandstorm", "en", dust},
                           {"أمطار", "ar", rain},
                           {"Power outage", "en", other}}) {
    CapInfo info = windBlock();
    info.event = row.event;
    info.language = row.language;
    EXPECT_EQ(answerTo(capAlert("1", "08:00", "Alert", {}, {info})).alerts.at(0).kind, row.kind) << row.event;
  }
}

CapInfo undrawn() {
  CapInfo info = windBlock();
  info.areas = {{"North", {}, {}, {{"X", "1"}}}, {"South", {}, {{{10, 20}, 0}}, {}}};
  return info;
}

struct Found {
  std::string name;
  bool isHit = false;
  std::vector<WarningPolygon> outline;
  std::string country = "XX";
  std::string_view placeCountry = "XX";
  std::string told;
};

TEST(CapEvents, WithoutShapesTheSourceDecides) {
  WarningPolygon const around = square().polygons[0];
  WarningPolygon const beside = square("", 10, 20.9).polygons[0];
  WarningPolygon const far = square("", 40, 20).polygons[0];
  for (Found const& row : {Found{"nobody knows", false, {}, "XX", "XX", "unplaced"},
                           {"hit", true, {}, "XX", "XX", "here"},
                           {"outline around", false, {far, around}, "XX", "XX", "here"},
                           {"outline beside", false, {beside}, "XX", "XX", "near"},
                           {"outline far", false, {far}, "XX", "XX", "nothing"},
                           {"another country's", false, {}, "YY", "XX", "nothing"},
                           {"another country's hit", true, {}, "YY", "XX", "near"},
                           {"issuer of no known country", false, {}, "", "XX", "unplaced"},
                           {"a territory's", false, {}, "US", "PR", "unplaced"},
                           {"at sea", false, {}, "XX", "", "nothing"},
                           {"hit at sea", true, {}, "XX", "", "here"}}) {
    CapMessage message = listed(capAlert("1", "08:00", "Alert", {}, {undrawn()}), row.country);
    message.isHit = row.isHit;
    message.outline = row.outline;
    CapView view = kView;
    view.countryCode = row.placeCountry;
    auto const answer = answerTo(std::vector{message}, view);
    std::string const told = !answer.unplaced.empty()         ? "unplaced"
                             : answer.alerts.empty()          ? "nothing"
                             : answer.alerts.at(0).distanceKm ? "near"
                                                              : "here";
    EXPECT_EQ(told, row.told) << row.name;
    EXPECT_TRUE(answer.unplaced.empty() || answer.unplaced[0].areaDesc == "North, South");
  }
}

TEST(CapEvents, ShapesDecideWhateverTheSourceSays) {
  CapInfo info = windBlock();
  info.areas = {square("Far", 40, 20)};
  CapMessage message = listed(capAlert("1", "08:00", "Alert", {}, {info}));
  message.isHit = true;
  EXPECT_THAT(answerTo(std::vector{message}).alerts, IsEmpty());
}

TEST(CapEvents, AShapeInOneLanguageIsOneForAll) {
  CapInfo named = windBlock();
  named.areas = {{"Square", {}, {}, {}}};
  CapInfo drawn = windBlock();
  drawn.language = "xx";
  auto const alerts = answerTo(capAlert("1", "08:00", "Alert", {}, {named, drawn})).alerts;
  ASSERT_THAT(alerts, SizeIs(1));
  EXPECT_EQ(alerts[0].title, "Wind");
  EXPECT_TRUE(alerts[0].polygons);
  drawn.areas = {square("Far", 40, 20)};
  auto const far = answerTo(capAlert("1", "08:00", "Alert", {}, {named, drawn}));
  EXPECT_TRUE(far.alerts.empty() && far.unplaced.empty());
}

TEST(CapSource, HandsOnWhatTheListIs) {
  test::ManualClock clock(kView.now);
  CapListing listing;
  auto const source = capAlertSource("wmo", [&](auto const&, auto const&) { return listing; }, clock, "en");
  EventMemory memory;
  GovAlertPlace const place{{10, 20}, "XX", {}};
  EXPECT_TRUE(source.isIdentified);
  listing.isBlind = true;
  EXPECT_TRUE(source.fetch(place, memory, {})->isBlind);
  listing.isBlind = false;
  listing.messages = listOf({capAlert("1", "08:00")});
  EXPECT_THAT(source.fetch(place, memory, {})->alerts, SizeIs(1));
  listing.failure = ServiceFailure::of(ServiceFailure::Kind::unreadable);
  auto const failed = source.fetch(place, memory, {});
  ASSERT_FALSE(failed);
  EXPECT_THAT(failed.error().readable, SizeIs(1));
}

TEST(CapSource, ABareCancellationIsFilledInWithWhatWasKnown) {
  test::ManualClock clock(kView.now);
  std::vector<CapMessage> messages = listOf({capAlert("1", "08:00")});
  auto const list = [&](auto const&, auto const&) { return CapListing{messages, false, {}}; };
  GovAlertService service(clock, {capAlertSource("wmo", list, clock, "en")}, {});
  GovAlertPlace const place{{10, 20}, "XX", {}};
  auto const known = service.fetchAlerts(place).alerts;
  ASSERT_THAT(known, SizeIs(1));
  clock.advance(std::chrono::hours(1));
  messages = listOf({capAlert("2", "13:30", "Cancel", {"1"}, {})});
  auto const after = service.fetchAlerts(place);
  EXPECT_THAT(after.alerts, IsEmpty());
  ASSERT_THAT(after.calledOff, SizeIs(1));
  WeatherAlert expected = known[0];
  expected.issued = at("2026-11-22T13:30:00Z");
  EXPECT_EQ(after.calledOff[0], expected);
  // A place that knew nothing of it is told nothing.
  EXPECT_THAT(service.fetchAlerts({{10.1, 20.1}, "XX", {}}).calledOff, IsEmpty());
}

}  // namespace
}  // namespace nimbara
