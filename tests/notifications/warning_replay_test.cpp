#include "feeds/alerts/gov_alert_service.h"
#include "support/notification_engine.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <map>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;

Instant const kBegin = at("2026-11-21T00:00:00Z");
constexpr auto kStep = 15min;
constexpr auto kLength = 48h;

/// Hours since the beginning.
struct Entry {
  double published, removed;  ///< in the feed from one to the other
  double onset, expires;
  AlertSeverity severity = AlertSeverity::advisory;
  char const* places = "AB";
  bool isNear = false;
};

/// The entries of one kind of warning in one region, and what a person should have been sent of them.
struct Story {
  char const* name;
  std::vector<Entry> entries;
  int events = 1;
  int escalations = 0;
  int cancellations = 0;
};

constexpr auto kSlight = AlertSeverity::info;
constexpr auto kGrave = AlertSeverity::warning;
constexpr auto kDanger = AlertSeverity::critical;
constexpr double kEver = 99;

std::vector<Story> stories() {
  return {
      {"prolonged", {{1, 3, 2, 8}, {3, kEver, 2, 11}}},
      {"overlapping periods", {{1, kEver, 2, 8}, {4, kEver, 6, 14}}},
      {"consecutive periods", {{1, kEver, 2, 8}, {5, kEver, 8, 14}, {9, kEver, 14, 20}}},
      {"next period when the first is over", {{2, kEver, 3, 9}, {9.2, kEver, 9, 15}}},
      {"over both restarts", {{10, kEver, 11, 20}, {19, kEver, 20, 34}, {33, kEver, 34, 44}}},
      {"onset moved", {{3, 5, 10, 16}, {5, 7, 12, 16}, {7, kEver, 8, 16}}},
      {"both moved", {{3, 5, 10, 16}, {5, kEver, 12, 20}}},
      {"seen by a second place later",
       {{4, kEver, 5, 17, AlertSeverity::advisory, "A"}, {7, kEver, 5, 17, AlertSeverity::advisory, "B"}}},
      {"of a second place alone", {{4, kEver, 5, 17, AlertSeverity::advisory, "B"}}},
      {"yellow, orange, red, orange",
       {{1, 4, 2, 30}, {4, 7, 2, 30, kGrave}, {7, 13.5, 2, 30, kDanger}, {13.5, kEver, 2, 30, kGrave}},
       1,
       2},
      {"graver after a restart", {{11, 14, 12, 30}, {14, kEver, 12, 30, kGrave}}, 1, 1},
      {"cancelled", {{4, 9, 5, 22}}, 1, 0, 1},
      {"cancelled and issued anew", {{4, 9, 5, 30}, {12, kEver, 12, 30}}, 2, 0, 1},
      {"cancelled before it begins", {{4, 9, 14, 22}}, 1, 0, 1},
      {"two with a pause between", {{1, kEver, 2, 6}, {11, kEver, 12, 18}}, 2},
      {"dropped for one check", {{1, 4, 2, 12}, {4.25, kEver, 2, 12}}},
      {"only near", {{1, kEver, 2, 12, AlertSeverity::advisory, "AB", true}}, 0},
      {"near one place, at the other",
       {{1, kEver, 2, 12, AlertSeverity::advisory, "A", true},
        {1, kEver, 2, 12, AlertSeverity::advisory, "B"}}},
      {"near, then here", {{1, 4, 2, 12, AlertSeverity::advisory, "AB", true}, {4, kEver, 2, 12}}},
      {"below the level", {{1, kEver, 2, 12, kSlight}}, 0},
      {"rises to the level", {{1, 4, 2, 12, kSlight}, {4, kEver, 2, 12}}},
      {"falls below the level", {{1, 4, 2, 12}, {4, kEver, 2, 12, kSlight}}},
      {"begins in the outage", {{21, kEver, 22, 34}}},
      {"ends in the outage", {{15, kEver, 16, 23}}},
      {"cancelled in the outage", {{15, 22, 16, 40}}, 1, 0, 1},
      {"prolonged in the outage", {{15, 22, 16, 24}, {22, kEver, 16, 36}}},
      {"graver in the outage", {{15, 22, 16, 36}, {22, kEver, 16, 36, kDanger}}, 1, 1},
      {"begins and ends in the outage", {{20.5, kEver, 21, 25}}, 0},
      {"in force at the end", {{40, kEver, 41, 60}}},
      {"prolonged after the memory was lost", {{28, kEver, 29, 36}, {33, kEver, 36, 46}}},
      {"moved after the memory was lost", {{28, 33, 30, 40}, {33, kEver, 32, 44}}},
      {"cancelled after the memory was lost", {{28, 33, 29, 47}}, 1, 0, 1},
  };
}

std::chrono::milliseconds hours(double count) {
  return std::chrono::milliseconds(static_cast<std::int64_t>(count * 3600'000));
}

/// The feed of a country: what is in it for a place at a moment, one alert a kind.
class Feed {
 public:
  explicit Feed(std::vector<Story> stories) : stories_(std::move(stories)) {}

  std::vector<WeatherAlert> at(Instant now, char place) const {
    std::vector<WeatherAlert> alerts;
    for (Story const& story : stories_) {
      if (auto alert = alertOf(story, now, place)) alerts.push_back(std::move(*alert));
    }
    // Feeds keep no order.
    if ((now - kBegin) / kStep % 2 == 0) std::ranges::reverse(alerts);
    return alerts;
  }

 private:
  static std::optional<WeatherAlert> alertOf(Story const& story, Instant now, char place) {
    std::optional<WeatherAlert> alert;
    for (Entry const& entry : story.entries) {
      bool const isListed = now >= kBegin + hours(entry.published) && now < kBegin + hours(entry.removed);
      bool const isHere = std::string_view(entry.places).find(place) != std::string_view::npos;
      if (!isListed || !isHere || kBegin + hours(entry.expires) <= now) continue;
      if (!alert) alert = begun(story);
      alert->message += ".";  // another area: widened
      alert->severity = std::max(alert->severity, entry.severity);
      Instant const onset = kBegin + hours(entry.onset);
      Instant const expires = kBegin + hours(entry.expires);
      alert->onset = std::min(alert->onset.value_or(onset), onset);
      alert->expires = std::max(alert->expires.value_or(expires), expires);
      if (entry.isNear) alert->distanceKm = 12;
    }
    return alert;
  }

  static WeatherAlert begun(Story const& story) {
    WeatherAlert alert;  // with an identifier of its own each time
    alert.title = story.name;
    alert.message = story.name;
    alert.kind = WarningKind::wind;
    alert.isGovAlert = true;
    alert.event = "HR|" + std::string(story.name) + "|EMMA_ID:HR001";
    return alert;
  }

  std::vector<Story> stories_;
};

/// The program over two days, from one process to the next.
class TwoDays {
 public:
  explicit TwoDays(std::vector<Story> const& stories) : feed_(stories) {
    engine_.turnOn("notify_govAlerts");
    start();
  }

  void run() {
    for (auto passed = 0min; passed <= kLength; passed += kStep) {
      engine_.clock.set(kBegin + passed);
      if (passed == 13h) start();
      if (passed == 31h) {
        gov_.reset();
        for (auto const& file : std::filesystem::directory_iterator(folder_.path())) {
          std::filesystem::remove(file.path());  // somebody clears the cache
        }
        start();
      }
      isAway_ = passed >= 20h && passed < 26h;
      look();
    }
  }

  /// Of one story: announced, escalated, lifted.
  int count(std::string_view title, RuleOutcome outcome) const {
    auto const found = counts_.find({std::string(title), outcome});
    return found == counts_.end() ? 0 : found->second;
  }
  int total(RuleOutcome outcome) const {
    int sum = 0;
    for (auto const& [key, count] : counts_) sum += key.second == outcome ? count : 0;
    return sum;
  }

 private:
  void start() {
    GovAlertSource source{
        "feed", [](GovAlertPlace const&) { return true; },
        [this](GovAlertPlace const& place, EventMemory&, std::stop_token const&) { return answer(place); }};
    gov_ = std::make_unique<GovAlertService>(engine_.clock, std::vector{source}, folder_.path());
    engine_.restart();
  }

  Result<GovSourceAnswer, GovSourceFailure> answer(GovAlertPlace const& place) const {
    if (isAway_) return std::unexpected(GovSourceFailure{ServiceFailure::answered(503), {}, {}});
    return GovSourceAnswer{feed_.at(engine_.clock.now(), place.coordinate == kA ? 'A' : 'B'), {}};
  }

  RuleInputs inputsAt(Coordinate place, RuleInputs inputs) {
    GovAlerts alerts = gov_->fetchAlerts({place, "HR", {}});
    inputs.govAlerts = InputReading<std::vector<WeatherAlert>>::of(alerts.alerts);
    if (alerts.failedSince()) inputs.govAlerts.failure = alerts.sources.at(0).failure;
    return inputs;
  }

  void look() {
    PassReport const report =
        engine_.pass({inputsAt(kA, engine_.here()), inputsAt(kB, engine_.elsewhere("b", "Bakar"))});
    for (Decision const& decision : report.plan.decisions) {
      if (!isDelivery(decision.outcome)) continue;
      for (Story const& story : stories()) {
        bool const isIts =
            decision.title == story.name || decision.request.title == "Lifted: " + std::string(story.name);
        if (isIts) ++counts_[{story.name, decision.outcome}];
      }
    }
  }

  static constexpr Coordinate kA{45.33, 14.44};
  static constexpr Coordinate kB{45.31, 14.53};
  Feed feed_;
  test::TemporaryFolder folder_;
  test::NotificationEngine engine_{formatIso8601(kBegin)};
  std::unique_ptr<GovAlertService> gov_;
  bool isAway_ = false;
  std::map<std::pair<std::string, RuleOutcome>, int> counts_;
};

TEST(WarningReplay, TellsEachEventEachRiseAndEachCancellationOnce) {
  TwoDays days(stories());
  days.run();
  int events = 0;
  int escalations = 0;
  int cancellations = 0;
  for (Story const& story : stories()) {
    EXPECT_EQ(days.count(story.name, RuleOutcome::announced), story.events) << story.name;
    EXPECT_EQ(days.count(story.name, RuleOutcome::escalated), story.escalations) << story.name;
    EXPECT_EQ(days.count(story.name, RuleOutcome::lifted), story.cancellations) << story.name;
    events += story.events;
    escalations += story.escalations;
    cancellations += story.cancellations;
  }
  int const notifications = days.total(RuleOutcome::announced) + days.total(RuleOutcome::escalated) +
                            days.total(RuleOutcome::lifted);
  EXPECT_EQ(notifications, events + escalations + cancellations);
  RecordProperty("notifications", notifications);
}

}  // namespace
}  // namespace nimbara
