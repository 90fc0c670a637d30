#include "feeds/alerts/events/cap_events.h"

#include "base/text/text.h"
#include "support/answers/cap_alerts.h"

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

/// The first line of a table names its columns. "goes": the event goes on as the second message says; "ends":
/// it is called off; "is": it is as the first message said; "two": there are two events; "over": it has
/// passed.
using Table = std::vector<std::vector<std::string_view>>;

Table tableOf(std::string_view text) {
  Table rows;
  for (std::string_view const line : split(text, '\n')) {
    std::vector<std::string_view> words;
    for (std::string_view const word : split(line, ' ')) {
      if (!word.empty()) words.push_back(word);
    }
    if (!words.empty()) rows.push_back(std::move(words));
  }
  return rows;
}

/// What the second message of an event makes of the first, of a storm.
std::string madeOf(CapAlert second) {
  CapInfo storm = windBlock();
  storm.event = "Storm";
  storm.onset = at("2026-11-22T10:00:00Z");
  CapAlert const first = capAlert("1", "08:00", "Alert", {}, {storm});
  auto const answer = answerTo(listOf({first, std::move(second)}));
  EXPECT_THAT(answer.unplaced, IsEmpty());
  if (answer.alerts.size() == 2) return "two";
  if (!answer.alerts.empty()) return answer.alerts[0].title == "Storm" ? "is" : "goes";
  // Of what is called off everything is as it last was, also the identifier.
  for (WeatherAlert const& off : answer.calledOff) {
    EXPECT_EQ(off.title, "Storm");
    EXPECT_EQ(off.id, answerTo(first).alerts.at(0).id);
  }
  return answer.calledOff.empty() ? "over" : "ends";
}

std::string wordOf(std::string_view cell) {
  return cell == "-" ? std::string() : std::string(cell);
}

TEST(CapConformance, StatusAndType) {
  Table const table = tableOf(R"(
            Alert Update Cancel Ack Error -
    Actual   goes   goes   ends  is    is goes
    Exercise   is     is     is  is    is   is
    System     is     is     is  is    is   is
    Test       is     is     is  is    is   is
    Draft      is     is     is  is    is   is
    -        goes   goes   ends  is    is goes
    unknown    is     is     is  is    is   is)");
  for (std::size_t row = 1; row < table.size(); ++row) {
    for (std::size_t column = 1; column < table[row].size(); ++column) {
      CapAlert second = capAlert("2", "09:00", wordOf(table[0][column - 1]), {"1"});
      second.status = wordOf(table[row][0]);
      EXPECT_EQ(madeOf(second), table[row][column]) << second.status << " " << second.msgType;
    }
  }
}

TEST(CapConformance, TypeAndReferences) {
  struct Row {
    std::string type;
    std::vector<std::string> references;
    std::string made;
  };
  for (Row const& row :
       {Row{"Alert", {}, "two"}, Row{"Update", {}, "two"}, Row{"Cancel", {}, "is"},
        Row{"Alert", {"2"}, "two"}, Row{"Update", {"2"}, "two"}, Row{"Cancel", {"2"}, "is"},
        Row{"Alert", {"1"}, "goes"}, Row{"Update", {"1"}, "goes"}, Row{"Cancel", {"1"}, "ends"},
        Row{"Update", {"0", "1"}, "goes"}, Row{"Cancel", {"0", "1"}, "ends"},
        Row{"Update", {"2", "1"}, "goes"}, Row{"Cancel", {"1", "1"}, "ends"}, Row{"Update", {"0"}, "two"},
        Row{"Cancel", {"0"}, "is"}})
    EXPECT_EQ(madeOf(capAlert("2", "09:00", row.type, row.references)), row.made)
        << row.type << " " << row.references.size();
}

/// The last column is of a message that has ended itself.
TEST(CapConformance, ResponseUrgencyAndExpiry) {
  Table const table = tableOf(R"(
             Immediate Expected Future Past Unknown - Future/expired
    Shelter       goes     goes   goes ends    goes goes over
    Evacuate      goes     goes   goes ends    goes goes over
    Prepare       goes     goes   goes ends    goes goes over
    Execute       goes     goes   goes ends    goes goes over
    Avoid         goes     goes   goes ends    goes goes over
    Monitor       goes     goes   goes ends    goes goes over
    Assess        goes     goes   goes ends    goes goes over
    AllClear      ends     ends   ends ends    ends ends ends
    None          goes     goes   goes ends    goes goes over
    -             goes     goes   goes ends    goes goes over)");
  for (std::size_t row = 1; row < table.size(); ++row) {
    for (std::size_t column = 1; column < table[row].size(); ++column) {
      CapInfo info = windBlock();
      auto const heading = split(table[0][column - 1], '/');
      info.urgency = wordOf(heading[0]);
      if (table[row][0] != "-") info.responseTypes = {std::string(table[row][0])};
      if (heading.size() > 1) info.expires = at("2026-11-22T13:00:00Z");
      EXPECT_EQ(madeOf(capAlert("2", "09:00", "Update", {"1"}, {info})), table[row][column])
          << table[row][0] << " " << table[0][column - 1];
    }
  }
}

CapInfo saying(std::string urgency, std::string response = {},
               std::string const& expires = "2026-11-23T00:00:00Z", std::vector<CapValue> parameters = {}) {
  CapInfo info = windBlock();
  info.urgency = std::move(urgency);
  if (!response.empty()) info.responseTypes = {std::move(response)};
  info.expires = expires.empty() ? std::nullopt : std::optional(at(expires));
  info.parameters = std::move(parameters);
  return info;
}

TEST(CapConformance, BlocksOfTheSecondMessage) {
  struct Row {
    std::string name, type;
    std::vector<CapInfo> infos;
    std::string made;
  };
  for (Row const& row :
       {Row{"words in any case", "cancel", {windBlock()}, "ends"}, Row{"no block", "Update", {}, "is"},
        Row{"cancelled without a block", "Cancel", {}, "ends"},
        Row{"all clear as an alert", "Alert", {saying("Past", "AllClear")}, "ends"},
        Row{"all clear without an end", "Update", {saying("Past", "AllClear", "")}, "ends"},
        Row{"past in one of two", "Update", {saying("Past"), saying("Future", "Monitor")}, "goes"},
        Row{"green", "Update", {saying("Future", "", "", {{"awareness_level", "1; green; Minor"}})}, "ends"},
        Row{"not yet expired", "Update", {saying("Future", "", "2026-11-22T13:00:01Z")}, "goes"},
        Row{"without an end", "Update", {saying("Future", "", "")}, "goes"}})
    EXPECT_EQ(madeOf(capAlert("2", "09:00", row.type, {"1"}, row.infos)), row.made) << row.name;
}

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
  std::string severity, awareness;
  std::optional<AlertSeverity> taken;  ///< nothing: it is no warning
  std::string colour;
  bool isStated = true;
};

TEST(CapEvents, ColourAndSeverityAreTwoThings) {
  using enum AlertSeverity;
  for (Level const& row :
       {Level{"Extreme", "", critical, ""}, Level{"Severe", "2; yellow; Moderate", warning, "yellow"},
        Level{"moderate", "3", advisory, "orange"}, Level{"Minor", "red", info, "red"},
        Level{"Unknown", "Amber", advisory, "orange", false}, Level{"", "5; purple", advisory, "", false},
        Level{"Severe", "1; green; Minor", std::nullopt, ""}}) {
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
  for (auto const& [name, value, colour] :
       {std::tuple("ColourCode", "Orange", "orange"), std::tuple{"colorcode", "RED ", "red"},
        std::tuple{"ColourCode", "Green", ""}, std::tuple{"ColourCodeHex", "#FF9900", ""},
        std::tuple{"Colour", "blue", ""}}) {
    CapInfo info = windBlock();
    info.parameters = {{name, value}};
    auto const answer = answerTo(capAlert("1", "08:00", "Alert", {}, {info}));
    ASSERT_EQ(answer.alerts.size(), 1U) << value;
    EXPECT_EQ(answer.alerts[0].colour.value_or(""), colour) << name;
  }
}

struct Named {
  std::string event, language;
  WarningKind kind;
};

TEST(CapEvents, KindsAreKnownByTheirNamesInManyLanguages) {
  using enum WarningKind;
  for (Named const& row :
       {Named{"Tropical Cyclone Warning", "en", tropicalCyclone}, Named{"Flash Flood", "en", rain},
        Named{"Ветер", "ru", wind}, Named{"Гроза", "ru", thunderstorm}, Named{"暴雨黄色预警", "zh", rain},
        Named{"強烈季候風信號", "zh-mo", wind}, Named{"VENTOS FORTES DE MONÇÃO", "pt-PT", wind},
        Named{"台風", "ja", tropicalCyclone}, Named{"Hujan lebat", "id", rain},
        Named{"Freezing rain, icing", "en-US", snow}, Named{"Sandstorm", "en", dust},
        Named{"أمطار", "ar", rain}, Named{"Power outage", "en", other}}) {
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

}  // namespace
}  // namespace nimbara
