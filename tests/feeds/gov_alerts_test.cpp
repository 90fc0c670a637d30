#include "feeds/gov_alerts.h"

#include "feeds/gov_alert_service.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/samples.h"
#include "support/temporary_folder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

Instant const kNow = at("2026-11-21T09:20:00Z");

NWSAlert message(std::string id, std::string headline = "H") {
  NWSAlert alert;
  alert.id = std::move(id);
  alert.event = "Flood Watch";
  alert.headline = std::move(headline);
  alert.areaDesc = "County";
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
  EventRoots roots;
  return nimbara::liveEvents(messages, now, roots);
}

std::vector<std::string> headlines(std::vector<WeatherAlert> const& alerts) {
  std::vector<std::string> texts;
  for (WeatherAlert const& alert : alerts) texts.push_back(alert.message);
  return texts;
}

TEST(LiveEvents, LeaveOutWhatWarnsNobody) {
  struct Row {
    std::string status, type, event;
    bool isShown;
  };
  for (Row const& row :
       {Row{"Actual", "Alert", "Flood Watch", true}, Row{"", "", "Flood Watch", true},
        Row{"actual", "Update", "Flood Watch", true}, Row{"Actual", "Something", "Flood Watch", true},
        Row{"Test", "Alert", "Tsunami Warning", false}, Row{"Exercise", "Alert", "Flood Watch", false},
        Row{"Draft", "Alert", "Flood Watch", false}, Row{"System", "Alert", "Flood Watch", false},
        Row{"Actual", "Cancel", "Flood Watch", false}, Row{"Actual", "Ack", "Flood Watch", false},
        Row{"Actual", "Error", "Flood Watch", false}, Row{"Actual", "Alert", "Test Message", false},
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
                         Row{{loopA, loopB}, {"loop"}}, Row{{first, first}, {"first"}}}) {
    EXPECT_EQ(headlines(liveEvents(row.list, kNow)), row.shown);
  }
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
  EventRoots roots;
  auto const idAt = [&](std::vector<NWSAlert> const& list, Instant now) {
    return nimbara::liveEvents(list, now, roots).at(0).id;
  };
  Uuid const root = govAlertId("nws:a");
  EXPECT_EQ(idAt({update("b", {{"a", kNow - 2h}})}, kNow), root);
  EXPECT_EQ(idAt({update("c", {{"b", kNow - 1h}})}, kNow), root) << "the list before knew of b";
  EXPECT_EQ(idAt({update("d", {{"y", kNow - 3h}, {"c", kNow}})}, kNow), root) << "one known is enough";
  EXPECT_EQ(idAt({update("e", {{"y", kNow - 3h}})}, kNow), root) << "so is one that a known one referred to";
  EXPECT_NE(idAt({message("stranger")}, kNow), root);
}

TEST(LiveEvents, ForgetChainsThatNoListHasSpokenOfForLong) {
  auto const idAfter = [](Instant later) {
    EventRoots roots;
    nimbara::liveEvents({update("b", {{"a", kNow - 2h}})}, kNow, roots);
    nimbara::liveEvents({}, later, roots);
    NWSAlert next = update("c", {{"b", kNow - 1h}});
    next.expires = later + 1h;
    return nimbara::liveEvents({next}, later, roots).at(0).id;
  };
  EXPECT_EQ(idAfter(kNow + kEventRootsLife - 1ms), govAlertId("nws:a"));
  EXPECT_EQ(idAfter(kNow + kEventRootsLife), govAlertId("nws:b"));
  EXPECT_EQ(idAfter(kNow - 1h), govAlertId("nws:b")) << "a clock that was wrong remembers nothing";
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
  EXPECT_EQ(event.icon, "cloud.heavyrain.fill");
  EXPECT_EQ(event.description, "Rain.");
  EXPECT_EQ(event.instruction, std::nullopt);
  EXPECT_EQ(event.source, "NWS Chicago IL");
  EXPECT_EQ(event.areaDesc, "County");
  EXPECT_TRUE(event.isGovAlert);
  EXPECT_FALSE(event.isTravelAdvisory);
  EXPECT_EQ(event.onset, alert.onset);
  EXPECT_EQ(event.link, "https://api.weather.gov/alerts/urn%3Aoid%3A2.49");
}

TEST(LiveEvents, HaveIconsByTheirKind) {
  struct Row {
    std::string_view event, icon;
  };
  for (Row const& row :
       {Row{"Tornado Warning", "tornado"}, Row{"Severe Thunderstorm Watch", "cloud.bolt.fill"},
        Row{"Coastal Flood Advisory", "water.waves"}, Row{"Flash Flood Warning", "cloud.heavyrain.fill"},
        Row{"Winter Storm Warning", "cloud.snow.fill"}, Row{"Wind Chill Warning", "thermometer.snowflake"},
        Row{"High Wind Warning", "wind"}, Row{"Fire Weather Watch", "flame.fill"},
        Row{"Hurricane Force Wind Warning", "hurricane"}, Row{"Storm Surge Warning", "water.waves"},
        Row{"Dense Fog Advisory", "cloud.fog.fill"}, Row{"Extreme Heat Warning", "thermometer.sun.fill"},
        Row{"Child Abduction Emergency", "exclamationmark.triangle.fill"}}) {
    EXPECT_EQ(nwsIcon(row.event), row.icon) << row.event;
  }
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

/// An aggregator over sources that answer what a test says.
class GovAlertServiceTest : public testing::Test {
 protected:
  struct Source {
    std::string country;
    Result<std::vector<WeatherAlert>, GovSourceFailure> answer;
    int asked = 0;
  };

  static WeatherAlert alert(std::string title, AlertSeverity severity, std::optional<Instant> expires) {
    WeatherAlert made;
    made.id = govAlertId("test:" + title);
    made.title = std::move(title);
    made.severity = severity;
    made.expires = expires;
    return made;
  }
  static GovAlertSource sourceOf(std::string name, Source& source) {
    return {std::move(name),
            [&source](GovAlertPlace const& place) { return place.countryCode == source.country; },
            [&source](GovAlertPlace const&, EventRoots&, std::stop_token const&) {
              ++source.asked;
              return source.answer;
            }};
  }
  GovAlertService service() {
    return GovAlertService(clock_, {sourceOf("a", a_), sourceOf("b", b_)}, folder_.path());
  }
  static std::vector<std::string> titles(GovAlerts const& result) {
    std::vector<std::string> list;
    for (WeatherAlert const& alert : result.alerts) list.push_back(alert.title);
    return list;
  }

  test::ManualClock clock_{kNow};
  test::TemporaryFolder folder_;
  GovAlertPlace const place_{{52.52, 13.41}, "DE", {}};
  Source a_{"DE", std::vector<WeatherAlert>{}};
  Source b_{"DE", std::vector<WeatherAlert>{}};
};

TEST_F(GovAlertServiceTest, MergesSourcesMostSevereFirst) {
  a_.answer = {alert("minor", AlertSeverity::info, {}), alert("grave", AlertSeverity::critical, {})};
  b_.answer = {alert("other", AlertSeverity::critical, {})};
  GovAlertService gov = service();
  GovAlerts const result = gov.fetchAlerts(place_);
  EXPECT_THAT(titles(result), ElementsAre("grave", "other", "minor"));
  EXPECT_EQ(result.checkedAt(), kNow);
  EXPECT_EQ(result.failedSince(), std::nullopt);
  EXPECT_THAT(titles(gov.fetchAlerts(place_, {"b"})), ElementsAre("other"));
  EXPECT_EQ(a_.asked, 1);
}

TEST_F(GovAlertServiceTest, AsksOnlyWhoCoversThePlace) {
  GovAlertService gov = service();
  EXPECT_FALSE(gov.fetchAlerts({{48.9, 2.3}, "FR", {}}).isCovered());
  EXPECT_FALSE(gov.fetchAlerts({{91, 2.3}, "DE", {}}).isCovered());
  EXPECT_EQ(a_.asked + b_.asked, 0);
}

TEST_F(GovAlertServiceTest, SaysSinceWhenACheckFailsAndShowsWhatStillHolds) {
  a_.answer = {alert("short", AlertSeverity::info, kNow + 10min),
               alert("long", AlertSeverity::info, kNow + 1h)};
  GovAlertService gov = service();
  gov.fetchAlerts(place_);
  clock_.advance(9min);
  a_.answer = std::unexpected(GovSourceFailure{"no network", {}});
  EXPECT_THAT(titles(gov.fetchAlerts(place_)), ElementsAre("short", "long"));
  clock_.advance(1min);
  GovAlerts const later = gov.fetchAlerts(place_);
  EXPECT_THAT(titles(later), ElementsAre("long")) << "what has ended goes while the source fails, too";
  EXPECT_EQ(later.checkedAt(), kNow);
  EXPECT_EQ(later.failedSince(), kNow + 9min) << "the first failure, not the last";
  EXPECT_EQ(later.sources.at(0).problem, "no network");
  a_.answer = std::vector<WeatherAlert>{};
  GovAlerts const well = gov.fetchAlerts(place_);
  EXPECT_THAT(titles(well), IsEmpty());
  EXPECT_EQ(well.failedSince(), std::nullopt);
  EXPECT_EQ(well.checkedAt(), kNow + 10min);
}

TEST_F(GovAlertServiceTest, DoesNotTakeAFirstFailureForAnEmptyList) {
  a_.answer = std::unexpected(GovSourceFailure{"no network", {}});
  GovAlerts const result = service().fetchAlerts(place_);
  EXPECT_TRUE(result.isCovered());
  EXPECT_EQ(result.checkedAt(), std::nullopt);
  EXPECT_EQ(result.failedSince(), kNow);
}

TEST_F(GovAlertServiceTest, AddsWhatIsReadableToWhatIsKnown) {
  a_.answer = {alert("known", AlertSeverity::info, {}), alert("both", AlertSeverity::info, {})};
  GovAlertService gov = service();
  gov.fetchAlerts(place_);
  a_.answer = std::unexpected(GovSourceFailure{
      "spoiled", {alert("both", AlertSeverity::warning, {}), alert("new", AlertSeverity::info, {})}});
  GovAlerts const result = gov.fetchAlerts(place_);
  EXPECT_THAT(titles(result), ElementsAre("both", "new", "known"));
  EXPECT_EQ(result.alerts[0].severity, AlertSeverity::warning);
}

TEST_F(GovAlertServiceTest, BelievesAnAlertWithoutEndForADay) {
  a_.answer = {alert("endless", AlertSeverity::info, {})};
  GovAlertService gov = service();
  gov.fetchAlerts(place_);
  a_.answer = std::unexpected(GovSourceFailure{"no network", {}});
  clock_.advance(24h - 1ms);
  EXPECT_EQ(gov.fetchAlerts(place_).alerts.size(), 1);
  clock_.advance(1ms);
  EXPECT_TRUE(gov.fetchAlerts(place_).alerts.empty());
}

TEST_F(GovAlertServiceTest, ShowsAtOnceWhatItKnewBeforeARestart) {
  a_.answer = {alert("kept", AlertSeverity::info, kNow + 1h),
               alert("ending", AlertSeverity::info, kNow + 1min)};
  service().fetchAlerts(place_);
  clock_.advance(1min);
  GovAlertService restarted = service();
  GovAlerts const kept = restarted.keptAlerts(place_);
  EXPECT_THAT(titles(kept), ElementsAre("kept"));
  EXPECT_EQ(kept.checkedAt(), kNow);
  EXPECT_EQ(a_.asked, 1);
  EXPECT_TRUE(std::filesystem::exists(folder_.path() / "gov_alerts_v3_52.52_13.41.json"));
  folder_.write("gov_alerts_v3_52.52_13.41.json", "{\"sources\":[{}]");
  EXPECT_TRUE(service().keptAlerts(place_).alerts.empty());
  EXPECT_TRUE(service().keptAlerts({{1, 2}, "DE", {}}).alerts.empty());
}

TEST_F(GovAlertServiceTest, TellsWhatIsKeptWhileASourceIsAsked) {
  std::optional<GovAlertService> gov;
  std::size_t keptMeanwhile = 0;
  GovAlertSource slow = sourceOf("a", a_);
  slow.fetch = [&](GovAlertPlace const& place, EventRoots&, std::stop_token const&) {
    keptMeanwhile = gov->keptAlerts(place).alerts.size();
    return Result<std::vector<WeatherAlert>, GovSourceFailure>(
        std::vector{alert("x", AlertSeverity::info, {}), alert("y", AlertSeverity::info, {})});
  };
  gov.emplace(clock_, std::vector{slow}, folder_.path());
  EXPECT_EQ(gov->fetchAlerts(place_).alerts.size(), 2);
  EXPECT_EQ(keptMeanwhile, 0);
  gov->fetchAlerts(place_);
  EXPECT_EQ(keptMeanwhile, 2);
}

TEST_F(GovAlertServiceTest, TakesAStoppedCheckForNoFailure) {
  GovAlertService gov = service();
  gov.fetchAlerts(place_);
  a_.answer = std::unexpected(GovSourceFailure{"stopped", {}});
  std::stop_source stop;
  stop.request_stop();
  EXPECT_EQ(gov.fetchAlerts(place_, {}, stop.get_token()).failedSince(), std::nullopt);
  EXPECT_EQ(gov.fetchAlerts(place_).failedSince(), kNow);
}

TEST(NwsAlertSource, KeepsAnEventsIdentifierOverARestart) {
  test::FakeHttpClient http;
  test::ManualClock clock(kNow);
  test::TemporaryFolder folder;
  auto const answer = [](std::string const& id, std::string const& older) {
    return R"({"features":[{"properties":{"id":")" + id +
           R"(","event":"Flood Watch","severity":"Severe","urgency":"Future","certainty":"Likely",
           "expires":"2026-11-21T12:30:00Z","references":[{"identifier":")" +
           older + R"("}]}}]})";
  };
  auto const idNow = [&] {
    NWSAlertService nws(http, clock, {"https://nws.example", "me"});
    GovAlertService gov(clock, {nwsAlertSource(nws, clock)}, folder.path());
    return gov.fetchAlerts(govAlertPlace({41.85, -87.65})).alerts.at(0).id;
  };
  http.willAnswer(200, answer("b", "a"));
  http.willAnswer(200, answer("c", "b"));
  Uuid const id = idNow();
  EXPECT_EQ(idNow(), id);
}

TEST(NwsAlertSource, LeavesOutWhatHasEndedWhileTheServiceFails) {
  test::FakeHttpClient http;
  test::ManualClock clock(kNow);
  NWSAlertService nws(http, clock, {"https://nws.example", "me"});
  GovAlertService gov(clock, {nwsAlertSource(nws, clock)}, {});
  std::string const feature = R"({"properties":{"id":"a","event":"Flood Watch","severity":"Severe",
      "urgency":"Future","certainty":"Likely","expires":"2026-11-21T09:30:00Z"}})";
  http.willAnswer(200, R"({"features":[)" + feature + "]}");
  http.willAnswer(500, "");
  http.willAnswer(200, R"({"features":[7,)" + feature + "]}");
  GovAlertPlace const place = govAlertPlace({41.85, -87.65});
  EXPECT_EQ(place.countryCode, "US");
  EXPECT_EQ(gov.fetchAlerts(place).alerts.size(), 1);
  clock.advance(10min);
  GovAlerts const failed = gov.fetchAlerts(place);
  EXPECT_TRUE(failed.alerts.empty());
  EXPECT_TRUE(failed.failedSince());
  clock.set(kNow + 1s);
  GovAlertService fresh(clock, {nwsAlertSource(nws, clock)}, {});
  clock.advance(130s);
  EXPECT_EQ(fresh.fetchAlerts(place).alerts.size(), 1) << "one bad feature spoils nothing";
  EXPECT_FALSE(gov.fetchAlerts(govAlertPlace({52.52, 13.41})).isCovered());
}

}  // namespace
}  // namespace nimbara
