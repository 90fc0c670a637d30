#include "feeds/alerts/gov_alerts.h"

#include "support/instants.h"
#include "support/samples.h"

#include <gmock/gmock.h>

#include <set>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;
using testing::ElementsAre;

Instant const kNow = at("2026-11-21T09:20:00Z");

NWSAlert message(std::string id, std::string headline = "H") {
  NWSAlert alert;
  alert.id = std::move(id);
  alert.event = "Flood Watch";
  alert.headline = std::move(headline);
  alert.areaDesc = "County " + alert.id;
  alert.sent = kNow - 1h;
  alert.expires = kNow + 1h;
  alert.status = "Actual";
  alert.messageType = "Alert";
  return alert;
}

NWSAlert update(std::string id, std::vector<NWSReference> references, std::string headline = "H") {
  NWSAlert alert = message(std::move(id), std::move(headline));
  alert.messageType = "Update";
  alert.sent = kNow - 30min;
  alert.references = std::move(references);
  return alert;
}

/// Of a list that nothing came before.
std::vector<WeatherAlert> liveEvents(std::vector<NWSAlert> const& messages, Instant now) {
  KnownEvents known;
  return nimbara::liveEvents(messages, now, known);
}

std::vector<std::string> headlines(std::vector<WeatherAlert> const& alerts) {
  std::vector<std::string> texts;
  texts.reserve(alerts.size());
  for (WeatherAlert const& alert : alerts) texts.push_back(alert.message);
  return texts;
}

TEST(LiveEvents, LeaveOutWhatWarnsNobody) {
  struct Row {
    std::string status, type, event;
    bool isShown;
  };
  for (Row const& row :
       {Row{"actual", "Update", "Flood Watch", true}, Row{"Actual", "Something", "Flood Watch", true},
        Row{"Test", "Alert", "Tsunami Warning", false}, Row{"Actual", "Alert", "Test Message", false},
        Row{"Actual", "Alert", "Practice/Demo Warning", false},
        Row{"Actual", "Alert", "Contest Warning", true}}) {
    NWSAlert alert = message("a");
    alert.status = row.status;
    alert.messageType = row.type;
    alert.event = row.event;
    EXPECT_EQ(liveEvents({alert}, kNow).size(), row.isShown ? 1 : 0)
        << row.status << " " << row.type << " " << row.event;
  }
}

TEST(LiveEvents, EndWithTheEventElseWithTheMessage) {
  struct Row {
    std::optional<std::chrono::seconds> expires, ends;
    bool isShown;
  };
  for (Row const& row : {Row{{}, {}, true}, Row{1s, {}, true}, Row{0s, {}, false}, Row{-1s, {}, false},
                         Row{-1h, 1s, true}, Row{1h, 0s, false}, Row{{}, -1s, false}}) {
    NWSAlert alert = message("a");
    alert.expires = row.expires ? std::optional(kNow + *row.expires) : std::nullopt;
    alert.ends = row.ends ? std::optional(kNow + *row.ends) : std::nullopt;
    auto const events = liveEvents({alert}, kNow);
    ASSERT_EQ(events.size(), row.isShown ? 1 : 0);
    if (!row.isShown) continue;
    EXPECT_EQ(events[0].expires, alert.ends ? alert.ends : alert.expires);
    EXPECT_EQ(events[0].issued, alert.sent);
  }
}

TEST(LiveEvents, TellAnEventOnceByItsNewestMessage) {
  NWSReference const a{"a", kNow - 1h};
  NWSReference const b{"b", kNow - 40min};
  NWSAlert const first = message("a", "first");
  NWSAlert const second = update("b", {a}, "second");
  NWSAlert const third = update("c", {b, a}, "third");
  NWSAlert cancel = update("d", {a}, "cancel");
  cancel.messageType = "Cancel";
  NWSAlert test = update("e", {a}, "test");
  test.status = "Test";
  NWSAlert stranger = update("f", {{"z", kNow}}, "stranger");
  NWSAlert self = update("g", {{"g", kNow}}, "self");
  NWSAlert loopA = update("h", {{"i", kNow}}, "loop");
  NWSAlert loopB = update("i", {{"h", kNow}}, "loop");
  struct Row {
    std::vector<NWSAlert> list;
    std::vector<std::string> shown;
  };
  for (Row const& row : {Row{{first, second}, {"second"}}, Row{{second, first}, {"second"}},
                         Row{{first, second, third}, {"third"}}, Row{{first, cancel}, {}},
                         Row{{cancel, second, first}, {"second"}}, Row{{first, test}, {"first"}},
                         Row{{first, stranger}, {"first", "stranger"}}, Row{{self}, {"self"}},
                         Row{{loopA, loopB}, {"loop"}}, Row{{first, first}, {"first"}}})
    EXPECT_EQ(headlines(liveEvents(row.list, kNow)), row.shown);
}

/// Whatever a message says of itself, beside one that holds: what is shown of the two.
TEST(LiveEvents, FollowTheProtocolInEveryCombination) {
  struct Status {
    std::string word;
    bool isMeant;
  };
  struct Type {
    std::string word;
    bool warns, replaces;
  };
  struct Reference {
    std::string identifier;
    bool isListed;
  };
  for (Status const& status : {Status{"Actual", true}, Status{"", true}, Status{"Exercise", false},
                               Status{"System", false}, Status{"Test", false}, Status{"Draft", false}}) {
    for (Type const& type :
         {Type{"Alert", true, true}, Type{"Update", true, true}, Type{"", true, true},
          Type{"Cancel", false, true}, Type{"Error", false, true}, Type{"Ack", false, false}}) {
      for (Reference const& reference : {Reference{"", false}, {"unknown", false}, {"first", true}}) {
        for (auto const left : {-1ms, 0ms, 1ms}) {
          NWSAlert second = update("second", {}, "second");
          if (!reference.identifier.empty()) second.references = {{reference.identifier, kNow - 1h}};
          second.status = status.word;
          second.messageType = type.word;
          second.expires = kNow + left;
          std::vector<std::string> expected;
          if (!(status.isMeant && type.replaces && reference.isListed)) expected.emplace_back("first");
          if (status.isMeant && type.warns && left > 0ms) expected.emplace_back("second");
          EXPECT_EQ(headlines(liveEvents({message("first", "first"), second}, kNow)), expected)
              << status.word << " " << type.word << " " << reference.identifier << " " << left.count();
        }
      }
    }
  }
}

TEST(LiveEvents, KeepTheirIdentifierThroughUpdates) {
  NWSReference const a{"a", kNow - 3h};
  NWSReference const b{"b", kNow - 2h};
  Uuid const root = govAlertId("nws:a");
  auto const idOf = [](std::vector<NWSAlert> const& list) { return liveEvents(list, kNow).at(0).id; };
  EXPECT_EQ(idOf({message("a")}), root);
  EXPECT_EQ(idOf({update("b", {a})}), root);
  EXPECT_EQ(idOf({update("c", {a, b})}), root);
  EXPECT_EQ(idOf({update("c", {b, a})}), root);
  EXPECT_EQ(idOf({update("c", {{"x", std::nullopt}, a})}), root) << "of no known time, so not the oldest";
  EXPECT_EQ(idOf({update("c", {b}), update("b", {a})}), root) << "by way of a message of the same list";
  EXPECT_NE(idOf({message("b")}), root);
  EXPECT_EQ(root.text(), govAlertId("nws:a").text());
}

TEST(LiveEvents, KeepTheirIdentifierWhenUpdatesNameOnlyTheLastMessage) {
  KnownEvents known;
  auto const idAt = [&](std::vector<NWSAlert> const& list, Instant now) {
    return nimbara::liveEvents(list, now, known).at(0).id;
  };
  Uuid const root = govAlertId("nws:a");
  EXPECT_EQ(idAt({update("b", {{"a", kNow - 2h}})}, kNow), root);
  EXPECT_EQ(idAt({update("c", {{"b", kNow - 1h}})}, kNow), root) << "the list before knew of b";
  EXPECT_EQ(idAt({update("d", {{"y", kNow - 3h}, {"c", kNow}})}, kNow), root) << "one known is enough";
  EXPECT_EQ(idAt({update("e", {{"y", kNow - 3h}})}, kNow), root) << "so is one that a known one referred to";
  EXPECT_NE(idAt({message("stranger")}, kNow), root);
}

TEST(LiveEvents, GoOnApartWhereTheirAreaIsSplit) {
  NWSReference const a{"a", kNow - 3h};
  NWSAlert north = update("n", {a});
  north.areaDesc = "North";
  NWSAlert south = update("s", {a});
  south.areaDesc = "South";
  auto const events = liveEvents({south, north}, kNow);
  ASSERT_EQ(events.size(), 2);
  EXPECT_NE(events[0].id, events[1].id);
  auto const turned = liveEvents({north, south}, kNow);
  EXPECT_EQ(turned[0].id, events[1].id);
  EXPECT_EQ(turned[1].id, events[0].id);
}

NWSAlert airQuality(std::string id, std::chrono::minutes sentAgo) {
  NWSAlert alert = message(std::move(id), std::to_string(sentAgo.count()));
  alert.event = "Air Quality Alert";
  alert.severity = NWSAlertSeverity::unknown;
  alert.senderName = "NWS Phoenix AZ";
  alert.areaDesc = "Maricopa, AZ";
  alert.sent = kNow - sentAgo;
  alert.onset = alert.sent;
  alert.expires = kNow + 12h;
  return alert;
}

TEST(LiveEvents, TakeAnUnstatedLevelForMedium) {
  NWSAlert slight = message("slight", "slight");
  slight.severity = NWSAlertSeverity::minor;
  NWSAlert moderate = message("moderate", "moderate");
  moderate.severity = NWSAlertSeverity::moderate;
  moderate.areaDesc = "Other";
  auto events = liveEvents({slight, airQuality("a", 0min), moderate}, kNow);
  EXPECT_EQ(events[1].severity, AlertSeverity::advisory);
  EXPECT_EQ(events[1].levelStated, false);
  EXPECT_EQ(events[2].levelStated, std::nullopt);
  sortMostSevereFirst(events);
  EXPECT_THAT(headlines(events), ElementsAre("moderate", "0", "slight"));
}

TEST(LiveEvents, TellReissuesWithoutReferencesOnce) {
  NWSAlert otherOffice = airQuality("b", 5min);
  otherOffice.senderName = "NWS Tucson AZ";
  NWSAlert otherArea = airQuality("b", 5min);
  otherArea.areaDesc = "Pinal, AZ";
  NWSAlert otherEvent = airQuality("b", 5min);
  otherEvent.event = "Air Stagnation Advisory";
  NWSAlert numbered = airQuality("b", 5min);
  numbered.vtec = "KPSR.AS.Y.0001";
  NWSAlert over = airQuality("b", 24h);
  over.onset = kNow - 24h;
  over.expires = kNow + 1h;
  NWSAlert later = airQuality("c", 0min);
  later.onset = kNow + 2h;
  struct Row {
    char const* what;
    std::vector<NWSAlert> list;
    std::vector<std::string> shown;
  };
  for (Row const& row :
       {Row{"newest first", {airQuality("b", 5min), airQuality("a", 60min)}, {"5"}},
        Row{"oldest first", {airQuality("a", 60min), airQuality("b", 5min)}, {"5"}},
        Row{"three", {airQuality("a", 60min), airQuality("b", 5min), airQuality("c", 30min)}, {"5"}},
        Row{"office", {airQuality("a", 60min), otherOffice}, {"60", "5"}},
        Row{"area", {airQuality("a", 60min), otherArea}, {"60", "5"}},
        Row{"event", {airQuality("a", 60min), otherEvent}, {"60", "5"}},
        Row{"number", {airQuality("a", 60min), numbered}, {"60", "5"}},
        Row{"a later one", {over, later}, {"1440", "0"}}})
    EXPECT_EQ(headlines(liveEvents(row.list, kNow)), row.shown) << row.what;
}

TEST(LiveEvents, KeepTheirIdentifierWhenIssuedAnewWithoutReferences) {
  KnownEvents known;
  auto const idOf = [&](NWSAlert const& alert) { return nimbara::liveEvents({alert}, kNow, known).at(0).id; };
  Uuid const first = idOf(airQuality("a", 60min));
  EXPECT_EQ(first, govAlertId("nws:a"));
  EXPECT_EQ(idOf(airQuality("b", 5min)), first);
  NWSAlert next = airQuality("c", 0min);
  next.onset = kNow + 12h;
  next.expires = kNow + 36h;
  EXPECT_EQ(idOf(next), first) << "the next day's";
  next.id = "d";
  next.onset = kNow + 40h;
  next.expires = kNow + 50h;
  EXPECT_NE(idOf(next), first) << "after a pause";
}

TEST(LiveEvents, AreOneByTheirNumberWhateverTheirArea) {
  KnownEvents known;
  NWSAlert watch = message("a");
  watch.vtec = "KLOT.WS.A.0001";
  Uuid const first = nimbara::liveEvents({watch}, kNow, known).at(0).id;
  watch.id = "b";
  watch.areaDesc = "County; and more";
  EXPECT_EQ(nimbara::liveEvents({watch}, kNow, known).at(0).id, first) << "widened";
  watch.id = "c";
  watch.vtec = "KLOT.WS.A.0002";
  EXPECT_NE(nimbara::liveEvents({watch}, kNow, known).at(0).id, first);
}

TEST(LiveEvents, SpanThePeriodsOfTheirMessages) {
  NWSAlert today = airQuality("a", 60min);
  today.severity = NWSAlertSeverity::severe;
  today.expires = kNow + 2h;
  NWSAlert tomorrow = airQuality("b", 5min);
  tomorrow.severity = NWSAlertSeverity::moderate;
  tomorrow.onset = kNow + 2h;
  auto const apart = liveEvents({today, tomorrow}, kNow);
  ASSERT_EQ(apart.size(), 1);
  EXPECT_EQ(apart[0].message, "5");
  EXPECT_EQ(apart[0].onset, today.onset);
  EXPECT_EQ(apart[0].expires, tomorrow.expires);
  EXPECT_EQ(apart[0].severity, AlertSeverity::warning) << "what holds today is not over";
  tomorrow.onset = kNow + 1h;
  EXPECT_EQ(liveEvents({today, tomorrow}, kNow).at(0).severity, AlertSeverity::advisory) << "it was replaced";
}

TEST(LiveEvents, SayWhetherTheyAreForTheWater) {
  NWSAlert gale = message("a");
  for (auto const& [zones, isOnWater] : std::vector<std::pair<std::vector<std::string>, bool>>{
           {{}, false}, {{"LMZ741"}, true}, {{"LMZ741", "ILZ104"}, false}, {{"ILZ104"}, false}}) {
    gale.zones = zones;
    EXPECT_EQ(liveEvents({gale}, kNow).at(0).onWater.value_or(false), isOnWater);
  }
}

TEST(LiveEvents, FillTheAlert) {
  NWSAlert alert = message("urn:oid:2.49", "Flood Watch issued");
  alert.severity = NWSAlertSeverity::severe;
  alert.senderName = "NWS Chicago IL";
  alert.description = "Rain.";
  alert.instruction = " ";
  alert.onset = kNow + 10min;
  WeatherAlert const event = liveEvents({alert}, kNow).at(0);
  EXPECT_EQ(event.severity, AlertSeverity::warning);
  EXPECT_EQ(event.title, "Flood Watch");
  EXPECT_EQ(event.message, "Flood Watch issued");
  EXPECT_EQ(event.kind, WarningKind::rain);
  EXPECT_EQ(event.description, "Rain.");
  EXPECT_EQ(event.instruction, std::nullopt);
  EXPECT_EQ(event.source, "NWS Chicago IL");
  EXPECT_EQ(event.areaDesc, "County urn:oid:2.49");
  EXPECT_TRUE(event.isGovAlert);
  EXPECT_FALSE(event.isTravelAdvisory);
  EXPECT_EQ(event.onset, alert.onset);
  EXPECT_EQ(event.link, "https://api.weather.gov/alerts/urn%3Aoid%3A2.49");
}

TEST(LiveEvents, AreOfTheKindThatTheirNameSays) {
  struct Row {
    std::string_view event;
    WarningKind kind;
  };
  using enum WarningKind;
  for (Row const& row :
       {Row{"Tornado Warning", tornado}, Row{"Severe Thunderstorm Watch", thunderstorm},
        Row{"Coastal Flood Advisory", coast}, Row{"Flash Flood Warning", rain},
        Row{"Winter Storm Warning", snow}, Row{"Wind Chill Warning", cold}, Row{"High Wind Warning", wind},
        Row{"Fire Weather Watch", fire}, Row{"Hurricane Force Wind Warning", tropicalCyclone},
        Row{"Storm Surge Warning", coast}, Row{"Dense Fog Advisory", fog}, Row{"Extreme Heat Warning", heat},
        Row{"Child Abduction Emergency", other}})
    EXPECT_EQ(nwsWarningKind(row.event), row.kind) << row.event;
}

/// Records state it by the symbol's name.
TEST(LiveEvents, HaveTheSymbolOfTheirKindInJson) {
  WeatherAlert alert;
  alert.kind = WarningKind::thunderstorm;
  EXPECT_NE(encodeJson(alert).find(R"("icon":"cloud.bolt.fill")"), std::string::npos);
}

TEST(LiveEvents, LoseNothingOfRecordedLists) {
  auto const files = test::sampleFiles("nws");
  if (!files) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  for (auto const& file : *files) {
    auto const list = parseNwsAlerts(test::readFile(file));
    if (!list) continue;
    std::set<std::string> referenced;
    for (NWSAlert const& alert : list->alerts) {
      for (NWSReference const& reference : alert.references) referenced.insert(reference.identifier);
    }
    std::size_t expected = 0;
    for (NWSAlert const& alert : list->alerts) expected += referenced.contains(alert.id) ? 0 : 1;
    auto const events = liveEvents(list->alerts, at("2019-12-20T00:00:00Z"));
    EXPECT_EQ(events.size(), expected) << file;
    std::set<std::string> ids;
    for (WeatherAlert const& event : events) ids.insert(event.id.text());
    EXPECT_EQ(ids.size(), events.size()) << file;
  }
}

struct CalledOffRow {
  char const* name;
  std::vector<NWSAlert> earlier, list;
  std::vector<std::string> calledOff;  ///< identifiers of the messages that began what is called off
};

TEST(CalledOffEvents, AreThoseThatACancellationEndsBeforeTheirTime) {
  NWSReference const a{"a", kNow - 1h};
  NWSAlert const first = message("a");
  NWSAlert const second = update("b", {a});
  auto const cancelOf = [](std::vector<NWSReference> references) {
    NWSAlert cancel = update("c", std::move(references), "cancelled");
    cancel.messageType = "Cancel";
    cancel.sent = kNow - 5min;
    cancel.expires = kNow + 10min;
    return cancel;
  };
  NWSAlert const cancel = cancelOf({a});
  NWSAlert const cancelOfUpdate = cancelOf({{"b", kNow - 30min}});
  NWSAlert ended = first;
  ended.expires = kNow;
  NWSAlert test = cancel;
  test.status = "Test";
  NWSAlert ack = cancel;
  ack.messageType = "Ack";
  NWSAlert anew = update("d", {{"c", kNow - 5min}}, "anew");
  anew.sent = kNow;
  for (CalledOffRow const& row :
       {CalledOffRow{"with what it cancels", {}, {first, cancel}, {"a"}},
        {"once", {}, {first, cancel, cancelOfUpdate, second}, {"a"}},
        {"of an update", {first}, {second, cancelOfUpdate}, {"a"}},
        {"no longer listed", {first}, {cancel}, {"a"}},
        {"no longer listed, of an update", {first, second}, {cancelOfUpdate}, {"a"}},
        {"over by then", {}, {ended, cancel}, {}},
        {"a test", {}, {first, test}, {}},
        {"an acknowledgement", {}, {first, ack}, {}},
        {"issued anew", {first}, {cancel, anew}, {}},
        {"nothing", {first}, {second}, {}}}) {
    KnownEvents known;
    nimbara::liveEvents(row.earlier, kNow - 10min, known);
    auto const live = nimbara::liveEvents(row.list, kNow, known);
    auto const found = calledOffEvents(row.list, live, kNow, known);
    std::vector<Uuid> ids;
    std::vector<Uuid> expected;
    for (WeatherAlert const& alert : found) ids.push_back(alert.id);
    for (std::string const& root : row.calledOff) expected.push_back(govAlertId("nws:" + root));
    EXPECT_EQ(ids, expected) << row.name;
    for (WeatherAlert const& alert : found) {
      EXPECT_EQ(alert.title, "Flood Watch");
      EXPECT_EQ(alert.issued, kNow - 5min) << "when it was cancelled";
      EXPECT_EQ(alert.expires, kNow + 1h) << row.name << ": when it would have ended";
    }
  }
}

}  // namespace
}  // namespace nimbara
