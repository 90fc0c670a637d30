#include "feeds/alerts/gov_alert_service.h"

#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

#include <thread>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

Instant const kNow = at("2026-11-21T09:20:00Z");
auto const kNoNetwork = ServiceFailure::network({HttpError::Kind::unresolvedHost, ""});

/// An aggregator over sources that answer what a test says.
class GovAlertServiceTest : public testing::Test {
 protected:
  struct Source {
    std::string country;
    Result<GovSourceAnswer, GovSourceFailure> answer;
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
            [&source](GovAlertPlace const&, EventMemory&, std::stop_token const&) {
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
  Source a_{"DE", GovSourceAnswer{}};
  Source b_{"DE", GovSourceAnswer{}};
};

TEST_F(GovAlertServiceTest, MergesSourcesMostSevereFirst) {
  a_.answer = GovSourceAnswer{
      {alert("minor", AlertSeverity::info, {}), alert("grave", AlertSeverity::critical, {})}, {}};
  b_.answer = GovSourceAnswer{{alert("other", AlertSeverity::critical, {})}, {}};
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
  a_.answer = GovSourceAnswer{
      {alert("short", AlertSeverity::info, kNow + 10min), alert("long", AlertSeverity::info, kNow + 1h)}, {}};
  GovAlertService gov = service();
  gov.fetchAlerts(place_);
  clock_.advance(9min);
  a_.answer = std::unexpected(GovSourceFailure{kNoNetwork, {}, {}});
  EXPECT_THAT(titles(gov.fetchAlerts(place_)), ElementsAre("short", "long"));
  clock_.advance(1min);
  GovAlerts const later = gov.fetchAlerts(place_);
  EXPECT_THAT(titles(later), ElementsAre("long")) << "what has ended goes while the source fails, too";
  EXPECT_EQ(later.checkedAt(), kNow);
  EXPECT_EQ(later.failedSince(), kNow + 9min) << "the first failure, not the last";
  EXPECT_EQ(later.sources.at(0).failure, kNoNetwork);
  a_.answer = GovSourceAnswer{};
  GovAlerts const well = gov.fetchAlerts(place_);
  EXPECT_THAT(titles(well), IsEmpty());
  EXPECT_EQ(well.failedSince(), std::nullopt);
  EXPECT_EQ(well.checkedAt(), kNow + 10min);
}

TEST_F(GovAlertServiceTest, DoesNotTakeAFirstFailureForAnEmptyList) {
  a_.answer = std::unexpected(GovSourceFailure{kNoNetwork, {}, {}});
  GovAlerts const result = service().fetchAlerts(place_);
  EXPECT_TRUE(result.isCovered());
  EXPECT_EQ(result.checkedAt(), std::nullopt);
  EXPECT_EQ(result.failedSince(), kNow);
}

TEST_F(GovAlertServiceTest, AddsWhatIsReadableToWhatIsKnown) {
  a_.answer =
      GovSourceAnswer{{alert("known", AlertSeverity::info, {}), alert("both", AlertSeverity::info, {})}, {}};
  GovAlertService gov = service();
  gov.fetchAlerts(place_);
  a_.answer = std::unexpected(GovSourceFailure{
      kNoNetwork, {alert("both", AlertSeverity::warning, {}), alert("new", AlertSeverity::info, {})}, {}});
  GovAlerts const result = gov.fetchAlerts(place_);
  EXPECT_THAT(titles(result), ElementsAre("both", "new", "known"));
  EXPECT_EQ(result.alerts[0].severity, AlertSeverity::warning);
}

TEST_F(GovAlertServiceTest, KnowsWhatWasCalledOffUntilItWouldHaveEndedOrIsIssuedAnew) {
  WeatherAlert const first = alert("first", AlertSeverity::info, kNow + 1h);
  WeatherAlert const second = alert("second", AlertSeverity::info, kNow + 1h);
  WeatherAlert const endless = alert("endless", AlertSeverity::info, {});
  GovAlertService gov = service();
  auto const calledOffWith = [&](Result<GovSourceAnswer, GovSourceFailure> answer) {
    a_.answer = std::move(answer);
    std::vector<std::string> titles;
    for (WeatherAlert const& one : gov.fetchAlerts(place_).calledOff) titles.push_back(one.title);
    return titles;
  };
  EXPECT_THAT(calledOffWith(GovSourceAnswer{{}, {}, {first, second, endless}}),
              ElementsAre("first", "second", "endless"));
  EXPECT_THAT(calledOffWith(GovSourceAnswer{}), ElementsAre("first", "second")) << "nobody knows its end";
  EXPECT_THAT(calledOffWith(GovSourceAnswer{{first}, {}}), ElementsAre("second"));
  EXPECT_THAT(calledOffWith(std::unexpected(GovSourceFailure{kNoNetwork, {}, {}, {first}})),
              ElementsAre("first", "second"));
  EXPECT_THAT(calledOffWith(std::unexpected(GovSourceFailure{kNoNetwork, {first}, {}})),
              ElementsAre("second"));
  clock_.advance(1h - 1ms);
  EXPECT_THAT(calledOffWith(GovSourceAnswer{}), ElementsAre("second"));
  clock_.advance(1ms);
  EXPECT_THAT(calledOffWith(GovSourceAnswer{}), IsEmpty());
}

TEST_F(GovAlertServiceTest, BelievesAnAlertWithoutEndForADayHoweverTheClockIsSet) {
  a_.answer = GovSourceAnswer{{alert("endless", AlertSeverity::info, {})}, {}};
  GovAlertService gov = service();
  gov.fetchAlerts(place_);
  a_.answer = std::unexpected(GovSourceFailure{kNoNetwork, {}, {}});
  for (auto const day : {24h, -24h}) {
    auto const last = day > 0h ? 1ms : -1ms;
    clock_.set(kNow + day - last);
    EXPECT_EQ(gov.keptAlerts(place_).alerts.size(), 1) << day;
    clock_.set(kNow + day);
    EXPECT_TRUE(gov.keptAlerts(place_).alerts.empty()) << day;
  }
  clock_.set(kNow + 24h - 1ms);
  EXPECT_EQ(gov.fetchAlerts(place_).alerts.size(), 1);
  clock_.advance(1ms);
  EXPECT_TRUE(gov.fetchAlerts(place_).alerts.empty());
}

TEST_F(GovAlertServiceTest, ShowsAtOnceWhatItKnewBeforeARestart) {
  a_.answer = GovSourceAnswer{
      {alert("kept", AlertSeverity::info, kNow + 1h), alert("ending", AlertSeverity::info, kNow + 1min)}, {}};
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

TEST_F(GovAlertServiceTest, WritesWhatIsNewAndAMomentAloneEveryFiveMinutes) {
  struct Row {
    std::string_view name;
    std::chrono::milliseconds later;
    bool isAlert, isWritten;
  };
  GovAlertService tried = service();
  for (auto const& row :
       {Row{"the first check", 0ms, false, true}, Row{"the same later", 4min + 59s, false, false},
        Row{"five minutes", 5min, false, true}, Row{"an alert", 6min, true, true},
        Row{"the same alert", 7min, true, false}, Row{"it is gone", 8min, false, true}}) {
    clock_.set(kNow + row.later);
    a_.answer = GovSourceAnswer{};
    if (row.isAlert) a_.answer->alerts = {alert("new", AlertSeverity::info, kNow + 1h)};
    tried.fetchAlerts(place_);
    bool const isWritten = std::filesystem::remove(folder_.path() / "gov_alerts_v3_52.52_13.41.json");
    EXPECT_EQ(isWritten, row.isWritten) << row.name;
  }
  EXPECT_EQ(a_.asked, 6);
}

TEST_F(GovAlertServiceTest, TellsWhatIsKeptWhileASourceIsAsked) {
  std::optional<GovAlertService> gov;
  std::size_t keptMeanwhile = 0;
  GovAlertSource slow = sourceOf("a", a_);
  slow.fetch = [&](GovAlertPlace const& place, EventMemory&, std::stop_token const&) {
    keptMeanwhile = gov->keptAlerts(place).alerts.size();
    return Result<GovSourceAnswer, GovSourceFailure>(
        GovSourceAnswer{{alert("x", AlertSeverity::info, {}), alert("y", AlertSeverity::info, {})}, {}});
  };
  gov.emplace(clock_, std::vector{slow}, folder_.path());
  EXPECT_EQ(gov->fetchAlerts(place_).alerts.size(), 2);
  EXPECT_EQ(keptMeanwhile, 0);
  gov->fetchAlerts(place_);
  EXPECT_EQ(keptMeanwhile, 2);
}

TEST_F(GovAlertServiceTest, LetsAPlaceThatHangsDelayNoOther) {
  GovAlertPlace const other{{48.1, 11.6}, "DE", {}};
  std::optional<GovAlertService> gov;
  std::size_t meanwhile = 0;
  GovAlertSource slow = sourceOf("a", a_);
  slow.fetch = [&](GovAlertPlace const& place, EventMemory&, std::stop_token const&) {
    if (place.coordinate == place_.coordinate) {
      // Would wait forever if one turn were for all.
      std::jthread([&] { meanwhile = gov->fetchAlerts(other).alerts.size(); }).join();
    }
    return Result<GovSourceAnswer, GovSourceFailure>(
        GovSourceAnswer{{alert("x", AlertSeverity::info, {})}, {}});
  };
  gov.emplace(clock_, std::vector{slow}, folder_.path());
  EXPECT_EQ(gov->fetchAlerts(place_).alerts.size(), 1);
  EXPECT_EQ(meanwhile, 1);
}

TEST_F(GovAlertServiceTest, PassesOnWhatCannotBePlaced) {
  a_.answer = GovSourceAnswer{{alert("here", AlertSeverity::info, {})},
                              {alert("somewhere", AlertSeverity::warning, kNow + 1h)}};
  GovAlertService gov = service();
  GovAlerts const found = gov.fetchAlerts(place_);
  EXPECT_THAT(titles(found), ElementsAre("here"));
  ASSERT_EQ(found.unplaced.size(), 1);
  a_.answer = std::unexpected(GovSourceFailure{kNoNetwork, {}, {}});
  EXPECT_EQ(gov.fetchAlerts(place_).unplaced.size(), 1);
  EXPECT_EQ(service().keptAlerts(place_).unplaced.size(), 1);
  clock_.advance(1h);
  EXPECT_TRUE(gov.fetchAlerts(place_).unplaced.empty());
}

TEST_F(GovAlertServiceTest, NamesEventsByWhatTheyAreAbout) {
  WeatherAlert wind = alert("Wind", AlertSeverity::warning, kNow + 3h);
  wind.event = "DE|wind|EMMA_ID:DE001";
  wind.onset = kNow;
  a_.answer = GovSourceAnswer{{wind}, {}};
  Uuid const first = service().fetchAlerts(place_).alerts.at(0).id;
  wind.onset = kNow + 3h;
  wind.expires = kNow + 9h;
  wind.id = govAlertId("test:whatever");
  a_.answer = GovSourceAnswer{{wind}, {}};
  EXPECT_EQ(service().fetchAlerts({{48.1, 11.6}, "DE", {}}).alerts.at(0).id, first)
      << "after a restart, at another place, the next period";
}

TEST_F(GovAlertServiceTest, TakesOverChainsThatOlderVersionsKept) {
  folder_.write(
      "gov_alerts_v3_52.52_13.41.json",
      R"({"sources":[{"name":"a","alerts":[],"roots":{"b":{"root":"a","seenAt":"2026-11-21T08:00:00Z"}}}]})");
  GovAlertService gov = service();
  gov.fetchAlerts(place_);
  EventMemory(folder_.path() / "gov_events_v1.json").update(kNow, [](KnownEvents& known) {
    EXPECT_TRUE(known.roots.contains("b"));
  });
}

TEST_F(GovAlertServiceTest, TakesAStoppedCheckForNoFailure) {
  GovAlertService gov = service();
  gov.fetchAlerts(place_);
  a_.answer = std::unexpected(GovSourceFailure{kNoNetwork, {}, {}});
  std::stop_source stop;
  stop.request_stop();
  EXPECT_EQ(gov.fetchAlerts(place_, {}, stop.get_token()).failedSince(), std::nullopt);
  EXPECT_EQ(gov.fetchAlerts(place_).failedSince(), kNow);
}

std::string feature(std::string const& id, std::string const& event, std::string const& zone,
                    std::string const& more = {}) {
  return R"({"properties":{)" + more + R"("id":")" + id + R"(","event":")" + event +
         R"(","severity":"Moderate","urgency":"Expected","certainty":"Likely",
         "expires":"2026-11-21T19:30:00Z","geocode":{"UGC":[")" +
         zone + R"("]}}})";
}

std::string featureList(std::initializer_list<std::string> features) {
  std::string list;
  for (std::string const& one : features) list += (list.empty() ? "" : ",") + one;
  return R"({"features":[)" + list + "]}";
}

struct WatersTest : testing::Test {
  GovAlerts ask(Coordinate place) { return gov.fetchAlerts(govAlertPlace(place)); }

  static constexpr Coordinate kChicago{41.8781, -87.6298};
  test::FakeHttpClient http;
  test::ManualClock clock{kNow};
  NWSAlertService land{http, clock, {"https://nws.example", "me"}};
  NWSAlertService waters{http, clock, {"https://nws.example", "me"}};
  GovAlertService gov{clock, {nwsAlertSource(land, clock, &waters)}, {}};
};

TEST_F(WatersTest, AreAskedForOffAShoreOnly) {
  http.willAnswer(200, featureList({feature("w", "Wind Advisory", "ILZ104")}));
  http.willAnswer(
      200, featureList({feature("g", "Gale Warning", "LMZ741"), feature("w", "Wind Advisory", "ILZ104"),
                        feature("i", "Flood Warning", "INZ001")}));
  GovAlerts const found = ask(kChicago);
  ASSERT_EQ(found.alerts.size(), 2) << "what is on land there is another district's";
  EXPECT_EQ(found.alerts[0].title, "Wind Advisory");
  EXPECT_EQ(found.alerts[1].title, "Gale Warning");
  EXPECT_EQ(found.alerts[1].onWater, true);
  EXPECT_EQ(found.failedSince(), std::nullopt);
  http.willAnswer(200, featureList({}));
  EXPECT_TRUE(ask({39.7392, -104.9903}).alerts.empty());
  EXPECT_EQ(http.requests.size(), 3) << "Denver has no shore";
}

TEST_F(WatersTest, ThatCannotBeAskedForAreSaidToBeUnchecked) {
  http.willAnswer(200, featureList({feature("w", "Wind Advisory", "ILZ104")}));
  http.willAnswer(503, "");
  GovAlerts const failed = ask(kChicago);
  EXPECT_EQ(failed.alerts.size(), 1);
  EXPECT_TRUE(failed.failedSince());
  clock.advance(130s);
  http.willAnswer(200, featureList({feature("w", "Wind Advisory", "ILZ104")}));
  http.willAnswer(400, "");
  GovAlerts const outside = ask(kChicago);
  EXPECT_EQ(outside.alerts.size(), 1);
  EXPECT_EQ(outside.failedSince(), std::nullopt) << "the service has no waters there";
}

TEST_F(WatersTest, OnTheOpenSeaThatAreNobodysAreNoFailure) {
  http.willAnswer(404, "");
  GovAlerts const beyond = ask({33.0, -75.5});
  EXPECT_EQ(beyond.failedSince(), std::nullopt);
  EXPECT_FALSE(beyond.isCovered());
  http.willAnswer(404, "");
  EXPECT_TRUE(ask(kChicago).failedSince()) << "on land there is somebody";
}

TEST(NwsAlertSource, RemembersChainsForAllPlacesAndOverARestart) {
  test::FakeHttpClient http;
  test::ManualClock clock(kNow);
  test::TemporaryFolder folder;
  auto const idAt = [&](Coordinate place, std::string const& id, std::string const& older) {
    http.willAnswer(200, featureList({feature(id, "Flood Watch", "ILZ104",
                                              R"("areaDesc":")" + id + R"(","references":[{"identifier":")" +
                                                  older + R"("}],)")}));
    NWSAlertService nws(http, clock, {"https://nws.example", "me"});
    GovAlertService gov(clock, {nwsAlertSource(nws, clock)}, folder.path());
    return gov.fetchAlerts(govAlertPlace(place)).alerts.at(0).id;
  };
  Uuid const here = idAt({39.74, -104.99}, "b", "a");
  EXPECT_EQ(idAt({40.01, -105.27}, "c", "b"), here);
}

TEST_F(WatersTest, AreToldAsFarAsTheListCanBeRead) {
  constexpr Coordinate kDenver{39.7392, -104.9903};
  std::string const good = feature("a", "Flood Watch", "COZ038");
  http.willAnswer(200, R"({"features":[7,)" + good + "]}");
  GovAlerts const spoiled = ask(kDenver);
  EXPECT_TRUE(spoiled.failedSince());
  EXPECT_EQ(spoiled.alerts.size(), 1) << "one bad feature spoils nothing";
  EXPECT_FALSE(ask({52.52, 13.41}).isCovered());
}

}  // namespace
}  // namespace nimbara
