#include "app/engine/app_state.h"

#include "feeds/nowcast/nowcast_service.h"
#include "feeds/stations/station_shown.h"
#include "support/answers/interchange_answer.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/manual_runner.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;
using testing::ElementsAre;

Place const kBerlin{{52.52, 13.41}, "Berlin", "Germany", "Berlin"};
Place const kRome{{41.9, 12.5}, "Rome", "Italy", "Lazio"};
Place const kOslo{{59.91, 10.75}, "Oslo", "Norway", "Oslo"};

Instant const kStart = at("2026-11-21T12:00:00Z");

struct AppStateTest : testing::Test {
  test::ManualClock clock{kStart};
  test::TemporaryFolder folder;
  test::ManualRunner runner;
  WeatherCache cache{folder.path(), clock};
  ProviderHistory history;
  std::optional<APIError> failure;
  std::vector<Instant> requests;
  std::vector<Place> saved;
  WeatherProviderManager providers{scripted(), history, clock};
  ForecastService forecasts{providers, cache, clock, {}};
  std::vector<std::string> reports;
  AppState state{always(forecasts), clock, runner, surroundings()};

  WeatherProviderManager::Providers scripted() {
    WeatherProviderManager::Providers all;
    for (auto& provider : all) provider.isConfigured = false;
    all[1].isConfigured = true;
    all[1].fetch = [this](double latitude, double longitude,
                          std::stop_token const&) -> Result<WttrResponse, APIError> {
      requests.push_back(clock.now());
      if (failure) return std::unexpected(*failure);
      return test::plainAnswer({latitude, longitude}, clock.now(), double(requests.size()));
    };
    return all;
  }

  AppState::Surroundings surroundings() {
    AppState::Surroundings all;
    all.savedPlaces = [this] { return saved; };
    all.onRefresh = [this](AppState::RefreshReport const& report) {
      reports.push_back(report.place.name + (report.outcome ? " ok" : " failed"));
    };
    return all;
  }

  /// Runs everything that falls due until `end`, as the scheduler would.
  void live(Instant end) { live(state, end); }
  void live(AppState& subject, Instant end) {
    for (int steps = 0; steps < 100'000; ++steps) {
      auto const due = subject.nextDue();
      if (!due || *due >= end) break;
      clock.set(std::max(*due, clock.now()));
      runDue(subject);
    }
    clock.set(end);
  }
  void runDue(AppState& subject) {
    subject.runDue();
    runner.runAll();
  }
  void runDueAt(AppState& subject, std::chrono::seconds later) {
    clock.set(kStart + later);
    runDue(subject);
  }

  std::size_t requestsDuring(std::chrono::seconds span) {
    requests.clear();
    live(clock.now() + span);
    return requests.size();
  }

  static APIError offline() {
    return APIError::network({HttpError::Kind::unresolvedHost, "the host cannot be found"});
  }
};

TEST_F(AppStateTest, ShowsTheCacheAtOnceAndAsksTheNetworkOnlyForWhatIsOld) {
  state.selectPlace(kBerlin, RefreshTrigger::start);
  EXPECT_TRUE(state.weather()->isLoading);
  EXPECT_FALSE(state.weather()->weatherData);
  runner.runAll();
  EXPECT_FALSE(state.weather()->isLoading);
  EXPECT_EQ(state.weather()->weatherData->current.tempC, 1);
  EXPECT_EQ(state.weather()->currentWeatherProvider, WeatherProviderOption::openMeteo);
  EXPECT_EQ(state.weather()->lastUpdated, kStart);
  EXPECT_EQ(cache.loadLastLocation(), "52.52,13.41");

  test::ManualRunner laterRunner;
  auto const later = [&](std::chrono::seconds age) {
    clock.set(kStart + age);
    AppState next(always(forecasts), clock, laterRunner, {});
    next.selectPlace(kBerlin, RefreshTrigger::start);
    auto const shown = *next.weather();
    laterRunner.runAll();
    return std::pair(shown.isShowingStaleData, next.weather()->weatherData->current.tempC);
  };
  EXPECT_EQ(later(899s), std::pair(false, 1.0));
  EXPECT_EQ(later(900s), std::pair(true, 2.0));
}

TEST_F(AppStateTest, SpacesQuickRefreshesOfOnePlace) {
  state.selectPlace(kBerlin, RefreshTrigger::start);
  runner.runAll();
  struct Row {
    std::chrono::seconds later;
    std::size_t requests;
  };
  for (auto const& row : {Row{299s, 1}, Row{301s, 2}, Row{600s, 2}, Row{601s, 3}}) {
    clock.set(kStart + row.later);
    state.requestRefresh(RefreshTrigger::asked);
    runner.runAll();
    EXPECT_EQ(requests.size(), row.requests) << row.later.count();
  }
}

TEST_F(AppStateTest, SaysFromWhenItAsksAgainWhenItDoesNot) {
  state.selectPlace(kBerlin, RefreshTrigger::start);
  runner.runAll();
  EXPECT_FALSE(state.weather()->askAgainAt);
  clock.set(kStart + 299s);
  state.requestRefresh(RefreshTrigger::asked);
  EXPECT_EQ(state.weather()->askAgainAt, kStart + 300s);
  clock.set(kStart + 300s);
  failure = APIError::http(500);
  state.requestRefresh(RefreshTrigger::asked);
  runner.runAll();
  EXPECT_FALSE(state.weather()->askAgainAt);
  clock.set(kStart + 600s - 1ms);
  history.noteFailure("openMeteo", clock.now(), "down");
  clock.set(kStart + 600s);
  state.requestRefresh(RefreshTrigger::asked);
  runner.runAll();
  EXPECT_EQ(requests.size(), 2U);
  EXPECT_EQ(state.weather()->askAgainAt, kStart + 900s) << "every provider is resting";
}

TEST_F(AppStateTest, AsksAtOnceAfterANetworkThatWasAway) {
  failure = offline();
  state.selectPlace(kBerlin, RefreshTrigger::start);
  runner.runAll();
  failure.reset();
  clock.advance(1s);
  state.requestRefresh(RefreshTrigger::asked);
  runner.runAll();
  EXPECT_EQ(requests.size(), 2U);
  EXPECT_FALSE(state.weather()->error);
}

TEST_F(AppStateTest, TwoProgramsRefreshOnceBetweenThem) {
  // The same folder, a memory of its own.
  WeatherCache otherCache{folder.path(), clock};
  ForecastService otherForecasts{providers, otherCache, clock, {}};
  AppState other{always(otherForecasts), clock, runner, {}};
  state.selectPlace(kBerlin, RefreshTrigger::start);
  runner.runAll();
  other.selectPlace(kBerlin, RefreshTrigger::start);
  runner.runAll();
  for (auto const later : {0s, 900s, 1800s, 2700s, 3600s}) {
    for (auto const lag : {0s, 7s}) {
      clock.set(kStart + later + lag);
      (lag == 0s ? state : other).runDue();
      runner.runAll();
    }
    EXPECT_EQ(other.weather()->lastUpdated, state.weather()->lastUpdated);
  }
  EXPECT_EQ(requests.size(), 5U);
}

struct LiveRow {
  std::string_view name;
  StationLinkKind kind;
  std::chrono::minutes age;
  double celsius;
  double latitude = 52.52;
  bool isOverlaid = true;
};

/// The forecast has 1 °C in Berlin.
StationsReading readingOf(LiveRow const& row, Instant now) {
  StationsReading reading;
  reading.state = StationState::current;
  reading.kind = row.kind;
  reading.stations = {{.id = "s", .latitude = row.latitude, .longitude = 13.41, .modules = {}}};
  reading.stations.front().modules.push_back(
      {.observedAt = now - row.age, .values = {{StationQuantity::temperature, row.celsius}}});
  return reading;
}

TEST_F(AppStateTest, ShowsLiveDataOfTheStationExactlyWhileTheyAreThePresent) {
  using enum StationLinkKind;
  for (LiveRow const& row : {LiveRow{"the account's", account, 4min, 1.7},
                             {"public ones", around, 4min, 1.7},
                             {"at the end", account, 30min, 1.7},
                             {"too old", account, 31min, 1.7, 52.52, false},
                             {"not believed", account, 4min, 25, 52.52, false},
                             {"elsewhere", account, 4min, 1.7, 53.55, false},
                             {"a gateway", address, 4min, 1.7}}) {
    auto all = surroundings();
    all.overlayStation = [&](WeatherData& data) {
      return std::make_shared<StationShown>(overlaid(data, readingOf(row, kStart), clock.now()));
    };
    AppState next(always(forecasts), clock, runner, std::move(all));
    next.selectPlace(kBerlin, RefreshTrigger::start);
    runner.runAll();
    EXPECT_EQ(next.weather()->isShowingLiveNetatmoData, row.isOverlaid) << row.name;
    EXPECT_EQ(next.weather()->weatherData->current.tempC == row.celsius, row.isOverlaid) << row.name;
  }
}

TEST_F(AppStateTest, EndsWhatTheStationToldAfterHalfAnHour) {
  auto all = surroundings();
  LiveRow const row{"", StationLinkKind::account, 20min, 1.7};
  all.overlayStation = [&](WeatherData& data) {
    return std::make_shared<StationShown>(overlaid(data, readingOf(row, kStart), clock.now()));
  };
  all.refreshStation = [&](bool, std::stop_token const&) { return clock.now() + 1h; };  // it is left alone
  AppState next(always(forecasts), clock, runner, std::move(all));
  next.selectPlace(kBerlin, RefreshTrigger::start);
  runner.runAll();
  runDue(next);
  clock.set(kStart + 10min);
  next.runDue();
  EXPECT_TRUE(next.weather()->isShowingLiveNetatmoData);
  ASSERT_EQ(next.nextDue(), kStart + 10min + 1ms);
  clock.set(kStart + 10min + 1ms);
  next.runDue();
  EXPECT_FALSE(next.weather()->isShowingLiveNetatmoData);
  EXPECT_EQ(next.weather()->weatherData->current.tempC, 1) << "the forecast's again";
}

TEST_F(AppStateTest, SpacesTheMovesOfTheDevice) {
  std::vector<double> arrived;
  auto all = surroundings();
  AppState* acting = nullptr;
  all.onArrival = [&](LocationFix const& fix) {
    arrived.push_back(fix.coordinate.latitude);
    acting->selectPlace(Place{fix.coordinate, "", "", ""}, RefreshTrigger::locationChanged);
  };
  AppState subject(always(forecasts), clock, runner, all);
  acting = &subject;
  subject.selectPlace(kBerlin, RefreshTrigger::start);
  runner.runAll();
  struct Row {
    std::chrono::milliseconds later;
    double movedTo;  ///< 0: nowhere
    std::vector<double> arrived;
  };
  for (Row const& row : {Row{10s, 50, {50}}, Row{100s, 51, {50}}, Row{300s, 52, {50}},
                         Row{609'999ms, 0, {50}}, Row{610s, 0, {50, 52}}, Row{2000s, 53, {50, 52, 53}}}) {
    clock.set(kStart + row.later);
    if (row.movedTo != 0) subject.deviceMoved({{row.movedTo, 10}, 100, clock.now()});
    if (row.movedTo == 51) EXPECT_EQ(subject.nextDue(), kStart + 610s);
    runDue(subject);
    EXPECT_EQ(arrived, row.arrived) << row.later.count();
  }
  EXPECT_EQ(subject.selectedPlace()->coordinate.latitude, 53);
}

TEST_F(AppStateTest, RefreshesEveryFifteenMinutesForDays) {
  state.selectPlace(kBerlin, RefreshTrigger::start);
  runner.runAll();
  EXPECT_EQ(requestsDuring(72h), 287U);
  for (std::size_t i = 1; i < requests.size(); ++i) EXPECT_EQ(requests[i] - requests[i - 1], 900s);
}

TEST_F(AppStateTest, RefreshesOtherPlacesAtTheirOwnPace) {
  saved = {kBerlin, kRome, kOslo};
  state.selectPlace(kBerlin, RefreshTrigger::start);
  runner.runAll();
  reports.clear();
  live(kStart + 24h);
  EXPECT_EQ(std::ranges::count(reports, "Rome ok"), 24);
  EXPECT_EQ(std::ranges::count(reports, "Oslo ok"), 24);
  state.setForeground(true);
  runner.runAll();
  reports.clear();
  live(kStart + 48h);
  EXPECT_EQ(std::ranges::count(reports, "Rome ok"), 48);
}

TEST_F(AppStateTest, RunsOnceMoreWhatWasAskedForMeanwhile) {
  state.selectPlace(kBerlin, RefreshTrigger::start);
  for (int i = 0; i < 5; ++i) state.requestRefresh(RefreshTrigger::asked);
  EXPECT_EQ(runner.waiting(), 1U);
  runner.runOne();
  EXPECT_TRUE(state.weather()->isLoading);
  EXPECT_EQ(runner.waiting(), 1U);
  runner.runOne();
  EXPECT_EQ(runner.waiting(), 0U);
  EXPECT_FALSE(state.weather()->isLoading);
  EXPECT_EQ(requests.size(), 2U);
}

TEST_F(AppStateTest, GivesUpTheOtherPlacesRefreshWhenThePlaceChanges) {
  state.selectPlace(kBerlin, RefreshTrigger::start);
  state.selectPlace(kRome);
  runner.runAll();
  EXPECT_EQ(state.weather()->weatherData->location.areaName, "Rome");
  EXPECT_EQ(requests.size(), 1U);
  EXPECT_THAT(reports, ElementsAre("Berlin failed", "Rome ok"));
  EXPECT_FALSE(state.weather()->error);
  state.selectPlace(kBerlin);  // nothing is kept of it
  EXPECT_FALSE(state.weather()->weatherData);
  runner.runAll();
  state.selectPlace(kRome);  // from the cache at once, and fresh enough
  EXPECT_EQ(state.weather()->weatherData->location.areaName, "Rome");
  runner.runAll();
  EXPECT_EQ(requests.size(), 2U);
}

TEST_F(AppStateTest, RetriesTheFirstFailureSoon) {
  failure = offline();
  state.selectPlace(kBerlin, RefreshTrigger::start);
  runner.runAll();
  EXPECT_EQ(state.weather()->error, (AppError{AppError::Case::offline, {}}));
  live(kStart + 100s);
  EXPECT_THAT(requests, ElementsAre(kStart, kStart + 5s, kStart + 20s, kStart + 65s));
  failure.reset();
  live(kStart + 400s);
  EXPECT_EQ(requests.back(), kStart + 365s);
  EXPECT_FALSE(state.weather()->error);
  // From then on a failure waits for the timer.
  failure = offline();
  EXPECT_EQ(requestsDuring(3600s), 4U);
}

TEST_F(AppStateTest, AsksAFailingProviderOnlyEveryFiveMinutesWhileRetrying) {
  failure = APIError::http(500);
  state.selectPlace(kBerlin, RefreshTrigger::start);
  runner.runAll();
  live(kStart + 299s);
  EXPECT_EQ(requests.size(), 1U);
  EXPECT_EQ(state.weather()->error->message, "Server returned HTTP 500");  // not that nobody was asked
  live(kStart + 366s);
  EXPECT_EQ(requests.size(), 2U);
}

TEST_F(AppStateTest, KeepsTheForecastWhenItCannotBeRenewed) {
  state.selectPlace(kBerlin, RefreshTrigger::start);
  runner.runAll();
  failure = APIError::http(500);
  live(kStart + 901s);
  EXPECT_EQ(state.weather()->weatherData->current.tempC, 1);
  EXPECT_TRUE(state.weather()->isShowingStaleData);
  EXPECT_EQ(state.weather()->error->kind, AppError::Case::networkError);
  failure.reset();
  live(kStart + 1801s);
  EXPECT_FALSE(state.weather()->isShowingStaleData);
  EXPECT_FALSE(state.weather()->error);
}

TEST_F(AppStateTest, RefreshesAtOnceAfterSleepAndWhenTheNetworkIsBack) {
  state.selectPlace(kBerlin, RefreshTrigger::start);
  runner.runAll();
  clock.advance(8h);
  failure = offline();
  state.wokeUp(RefreshTrigger::resumed);  // the machine is up before its network is
  runner.runAll();
  EXPECT_EQ(requests.size(), 2U);
  EXPECT_TRUE(state.weather()->isShowingStaleData);
  failure.reset();
  clock.advance(3s);
  state.wokeUp(RefreshTrigger::networkReturned);
  runner.runAll();
  EXPECT_EQ(requests.size(), 3U);
  EXPECT_FALSE(state.weather()->isShowingStaleData);
  state.wokeUp(RefreshTrigger::networkReturned);  // nothing is old
  runner.runAll();
  EXPECT_EQ(requests.size(), 3U);
}

TEST_F(AppStateTest, OutlivesAClockThatIsSet) {
  saved = {kBerlin, kRome};
  state.selectPlace(kBerlin, RefreshTrigger::start);
  runner.runAll();
  live(kStart + 1h);
  for (auto const jump : {-24h, 24h, -1h, 24h * 400}) {
    clock.advance(jump);
    requests.clear();
    state.runDue();
    runner.runAll();
    auto const soon = requests.size();
    EXPECT_LE(soon, 2U) << jump.count();
    requests.clear();
    live(clock.now() + 2h);
    EXPECT_GE(requests.size(), 8U) << jump.count();
    EXPECT_LE(requests.size(), 12U) << jump.count();
    EXPECT_FALSE(state.weather()->isShowingStaleData);
  }
}

TEST_F(AppStateTest, SaysWhenNoPlaceIsSelected) {
  state.selectPlace(std::nullopt);
  EXPECT_EQ(state.weather()->error->kind, AppError::Case::noLocation);
  EXPECT_FALSE(state.nextDue());
  state.requestRefresh(RefreshTrigger::asked);
  state.runDue();
  EXPECT_EQ(runner.waiting(), 0U);
}

TEST_F(AppStateTest, SpacesTheSupplementalFeedsAndAsksSoonForWhatCouldNotBeHad) {
  std::vector<Instant> fed;
  auto outcome = SupplementalOutcome::incomplete;
  auto all = surroundings();
  all.refreshSupplemental = [&](Place const&, std::stop_token const&) {
    fed.push_back(clock.now());
    return outcome;
  };
  AppState subject(always(forecasts), clock, runner, all);
  subject.selectPlace(kBerlin, RefreshTrigger::start);
  runDueAt(subject, 0s);
  EXPECT_EQ(subject.nextDue(), kStart + 300s);
  runDueAt(subject, 299s);
  outcome = SupplementalOutcome::complete;
  for (auto const later : {300s, 600s, 1499s, 1500s, 2699s, 2700s}) runDueAt(subject, later);
  EXPECT_THAT(fed, ElementsAre(kStart, kStart + 300s, kStart + 1500s, kStart + 2700s));
  clock.set(kStart + 3000s);
  subject.requestRefresh(RefreshTrigger::asked);
  runDueAt(subject, 3001s);
  EXPECT_EQ(fed.back(), kStart + 3001s) << "whoever asks for all asks for these too";
}

TEST_F(AppStateTest, GivesUpTheSupplementsOfAnotherPlace) {
  std::vector<std::string> fed;
  auto all = surroundings();
  AppState* acting = nullptr;
  all.refreshSupplemental = [&](Place const& place, std::stop_token const& stop) {
    fed.push_back(place.name);
    if (fed.size() == 1) acting->selectPlace(kRome);
    acting->showGovAlerts(place, {WeatherAlert{}});
    if (stop.stop_requested()) fed.back() += " stopped";
    return SupplementalOutcome::complete;
  };
  AppState subject(always(forecasts), clock, runner, all);
  acting = &subject;
  subject.selectPlace(kBerlin, RefreshTrigger::start);
  runDue(subject);
  EXPECT_TRUE(subject.weather()->govAlerts.empty()) << "they are of another place";
  for (auto const& place : {kRome, kBerlin}) {
    subject.selectPlace(place);
    runDue(subject);
  }
  EXPECT_THAT(fed, ElementsAre("Berlin stopped", "Rome", "Berlin"));
  EXPECT_EQ(subject.weather()->govAlerts.size(), 1);
  subject.selectPlace(kRome);
  EXPECT_TRUE(subject.weather()->govAlerts.empty()) << "they go with their place";
}

TEST(AppError, TellsALostNetworkFromAFailingService) {
  struct Row {
    APIError error;
    AppError::Case expected;
  };
  using Kind = HttpError::Kind;
  for (auto const& row : {Row{APIError::network({Kind::unresolvedHost, ""}), AppError::Case::offline},
                          Row{APIError::network({Kind::connectionFailed, ""}), AppError::Case::offline},
                          Row{APIError::network({Kind::timedOut, ""}), AppError::Case::networkError},
                          Row{APIError::http(503), AppError::Case::networkError}}) {
    EXPECT_EQ(AppError::of(row.error).kind, row.expected);
  }
  Texts const texts = Texts::load("en");
  EXPECT_EQ(
      AppError::of(APIError::http(503)).text(texts),
      "Could not fetch the forecast: the service returned an error (HTTP 503). Retrying automatically.");
}

TEST(RefreshClocks, KeepPlacesAndKindsApart) {
  RefreshClocks clocks;
  constexpr auto kKind = RefreshKind::significantLocationChange;
  auto const may = [&](std::string_view place, std::chrono::seconds later) {
    return clocks.mayStart(kKind, place, kStart + later, 600s);
  };
  EXPECT_TRUE(may("a", 0s));
  clocks.noteStart(kKind, "a", kStart);
  EXPECT_FALSE(may("a", 599s));
  EXPECT_TRUE(may("a", 600s));
  EXPECT_TRUE(may("a", -1s));  // the clock was set back
  EXPECT_TRUE(may("b", 1s));
  EXPECT_TRUE(clocks.mayStart(RefreshKind::fast, "a", kStart, 300s));
}

TEST(ThreadPool, RunsTasksAndDropsWaitingOnesAtItsEnd) {
  std::atomic<int> ran = 0;
  {
    ThreadPool pool(1);
    std::atomic<bool> entered = false;
    pool.run([&](std::stop_token const& stop) {
      entered = true;
      entered.notify_all();
      std::mutex mutex;
      std::unique_lock lock(mutex);
      std::condition_variable_any().wait(lock, stop, [] { return false; });
      ++ran;
    });
    for (int i = 0; i < 10; ++i) pool.run([&](std::stop_token const&) { ++ran; });
    entered.wait(false);
  }
  EXPECT_EQ(ran, 1);
}

TEST_F(AppStateTest, AsksForTheNowcastOnlyWhileTheForecastIsShownAndSomebodyLooks) {
  std::vector<std::string> asked;
  auto const reading = std::make_shared<NowcastReading const>();
  auto all = surroundings();
  all.refreshNowcast = [&](Place const& place, std::stop_token const&) {
    asked.push_back(place.name + " " + formatIso8601(clock.now()).substr(11, 5));
    return AppState::NowcastAnswer{reading, clock.now() + 5min};
  };
  AppState watched(always(forecasts), clock, runner, all);
  auto const live = [&](std::chrono::minutes span) { this->live(watched, clock.now() + span); };
  failure = offline();
  watched.setForeground(true);
  watched.selectPlace(kOslo, RefreshTrigger::start);
  runner.runAll();
  runDue(watched);
  EXPECT_THAT(asked, ElementsAre()) << "there is no forecast";
  failure.reset();
  watched.requestRefresh(RefreshTrigger::resumed);
  runner.runAll();
  EXPECT_EQ(watched.weather()->nowcast, nullptr);
  live(11min);
  EXPECT_EQ(watched.weather()->nowcast, reading);
  EXPECT_THAT(asked, ElementsAre("Oslo 12:00", "Oslo 12:05", "Oslo 12:10"));
  watched.setForeground(false);
  live(30min);
  EXPECT_EQ(asked.size(), 3U) << "nobody looks";
  watched.setForeground(true);
  live(1min);
  EXPECT_EQ(asked.back(), "Oslo 12:41");
  watched.selectPlace(kRome);
  EXPECT_EQ(watched.weather()->nowcast, nullptr) << "it was another place's";
  runner.runAll();
  live(1min);
  EXPECT_EQ(asked.back(), "Rome 12:42");
}

}  // namespace
}  // namespace nimbara
