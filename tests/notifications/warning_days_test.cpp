// Two days of one issuer's messages, as its feed lists them: warnings, updates and cancellations, over two
// restarts of the program and an outage of half an hour. What is sent is counted against the table.
#include "feeds/alerts/cap_source.h"
#include "feeds/alerts/gov_alert_service.h"
#include "notifications/log/notification_log.h"
#include "support/notification_engine.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <tuple>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;
using enum RuleOutcome;

Instant const kBegin = at("2026-11-21T00:00:00Z");
constexpr auto kStep = 10min;
constexpr auto kSlight = AlertSeverity::info;
constexpr auto kPlain = AlertSeverity::advisory;
constexpr auto kGrave = AlertSeverity::warning;
constexpr auto kDanger = AlertSeverity::critical;

/// Hours since the beginning.
struct Message {
  double sent;
  double end = 0;  ///< of the weather; a cancellation names none
  AlertSeverity severity = kPlain;
};

Message cancel(double sent) {
  return {sent, -1};
}

/// The messages of one event, and what a person should have been sent of it.
struct Story {
  char const* name;
  std::vector<Message> messages;
  int sights = 1;
  int rises = 0;
  int ends = 0;
  int cancellations = 0;
};

/// 19 first sights, 4 rises, 6 moved ends and 7 cancellations: 36 notifications.
constexpr int kSights = 19;
constexpr int kRises = 4;
constexpr int kEnds = 6;
constexpr int kCancellations = 7;

std::vector<Story> stories() {
  return {
      {"prolonged by half hours", {{1, 8}, {2, 8.5}, {3, 9}, {4, 9.5}, {5, 10}, {6, 10.5}, {7, 11}}, 1, 0, 2},
      {"up and down", {{1, 30}, {4, 30, kGrave}, {7, 30, kDanger}, {9, 30, kGrave}, {11, 30, kDanger}}, 1, 2},
      {"taken back", {{4, 22}, cancel(9)}, 1, 0, 0, 1},
      {"cancelled below the level", {{4, 22, kSlight}, cancel(9)}, 0},
      {"rises to the level and is cancelled", {{2, 20, kSlight}, {5, 20}, cancel(8)}, 1, 0, 0, 1},
      {"falls below the level and is cancelled", {{2, 20}, {5, 20, kSlight}, cancel(8)}, 1, 0, 0, 1},
      {"ends earlier", {{2, 12}, {4, 10}}, 1, 0, 1},
      {"other words", {{2, 30}, {3, 30}, {4, 30}, {5, 30}, {6, 30}, {7, 30}, {8, 30}, {9, 30}}},
      {"graver in the outage", {{15, 36}, {20.2, 36, kGrave}}, 1, 1},
      {"cancelled in the outage", {{15, 36}, cancel(20.2)}, 1, 0, 0, 1},
      {"begins and is cancelled in the outage", {{20.1, 30}, cancel(20.3)}, 0},
      {"prolonged at the first restart", {{11, 20}, {13, 24}}, 1, 0, 1},
      {"over both restarts", {{10, 40}}},
      {"graver and longer at once", {{3, 9}, {5, 14, kGrave}}, 1, 1},
      {"cancelled and issued anew", {{4, 30}, cancel(9), {12, 30}}, 2, 0, 0, 1},
      {"cancelled twice", {{3, 20}, cancel(6), cancel(7)}, 1, 0, 0, 1},
      {"an hour less", {{30, 47}, {40, 46}}},
      {"cancelled at the second restart", {{28, 45}, cancel(31)}, 1, 0, 0, 1},
      {"to and fro", {{24, 40}, {26, 42}, {28, 40}}, 1, 0, 2},
      {"in force at the end", {{46, 60}}},
  };
}

Instant moment(double hours) {
  return kBegin + std::chrono::minutes(static_cast<std::int64_t>(std::lround(hours * 60)));
}

std::string_view severityOf(AlertSeverity severity) {
  constexpr std::string_view kWords[] = {"Minor", "Moderate", "Severe", "Extreme"};
  return kWords[static_cast<std::size_t>(severity)];
}

/// Of those that end: `last` is what they end.
CapInfo infoOf(Story const& story, std::size_t number, Message const& last) {
  CapInfo info;
  info.language = "en";
  info.event = story.name;
  info.description = "Message " + std::to_string(number);
  info.severity = severityOf(last.severity);
  info.onset = moment(story.messages.front().sent);
  info.expires = moment(last.end);
  info.areas = {{"Coast", {}, {}, {}}};
  return info;
}

/// The messages of an event that were sent by now, each with a reference to the one before it.
std::vector<CapMessage> messagesOf(Story const& story, Instant now) {
  std::vector<CapMessage> messages;
  Message last = story.messages.front();
  for (Message const& message : story.messages) {
    if (moment(message.sent) > now) break;
    bool const isEnd = message.end < 0;
    if (!isEnd) last = message;
    CapAlert alert;
    alert.sender = "office@example.org";
    alert.identifier = std::string(story.name) + " " + std::to_string(messages.size());
    alert.sent = moment(message.sent);
    alert.status = "Actual";
    alert.msgType = isEnd ? "Cancel" : messages.empty() ? "Alert" : "Update";
    if (!messages.empty()) {
      CapAlert const& before = *messages.back().alert;
      alert.references = {{before.sender, before.identifier, before.sent}};
    }
    alert.infos = {infoOf(story, messages.size(), last)};
    messages.push_back({std::make_shared<CapAlert const>(std::move(alert)), "", "HR", true, {}});
  }
  return messages;
}

/// What the feed lists at a moment: of every second event the newest message alone.
CapListing listedAt(Instant now) {
  CapListing listing;
  bool isWhole = false;
  for (Story const& story : stories()) {
    auto messages = messagesOf(story, now);
    isWhole = !isWhole;
    if (!isWhole && messages.size() > 1) messages.erase(messages.begin(), messages.end() - 1);
    std::ranges::move(messages, std::back_inserter(listing.messages));
  }
  return listing;
}

class TwoDays {
 public:
  TwoDays() {
    engine_.turnOn("notify_govAlerts");
    start();
  }

  void run() {
    for (auto passed = 0min; passed <= 48h; passed += kStep) {
      engine_.clock.set(kBegin + passed);
      if (passed == 13h || passed == 31h) start();
      isAway_ = passed >= 20h && passed < 20h + 30min;
      look();
    }
  }

  int count(std::string_view story, RuleOutcome outcome) const {
    auto const found = counts_.find({std::string(story), outcome});
    return found == counts_.end() ? 0 : found->second;
  }
  std::vector<NotificationRequest> sent() const { return engine_.center.delivered(); }
  /// As the history says.
  int updates(std::string_view story) {
    int most = 0;
    auto const state = engine_.store.read(StoreArea::state).value_or(SettingValues());
    for (LoggedNotification const& line : notificationLogOf(state)) {
      if (line.title.ends_with(story)) most = std::max(most, line.updates);
    }
    return most;
  }

 private:
  void start() {
    auto const list = [this](GovAlertPlace const&, std::stop_token const&) {
      CapListing listing = listedAt(engine_.clock.now());
      if (isAway_) listing = {{}, false, ServiceFailure::answered(503)};
      return listing;
    };
    GovAlertSource const source = capAlertSource("feed", list, engine_.clock, "en");
    gov_ = std::make_unique<GovAlertService>(engine_.clock, std::vector{source}, folder_.path());
    engine_.restart();
  }

  void look() {
    RuleInputs inputs = engine_.here();
    GovAlerts alerts = gov_->fetchAlerts({{45.33, 14.44}, "HR", {}});
    inputs.govAlerts = InputReading<std::vector<WeatherAlert>>::of(alerts.alerts);
    if (alerts.failedSince()) inputs.govAlerts.failure = alerts.sources.at(0).failure;
    inputs.calledOff = std::move(alerts.calledOff);
    PassReport const report = engine_.pass({inputs});
    for (Decision const& decision : report.plan.decisions) {
      if (!isDelivery(decision.outcome)) continue;
      for (Story const& story : stories()) {
        if (decision.request.title.ends_with(story.name)) ++counts_[{story.name, decision.outcome}];
      }
    }
  }

  test::TemporaryFolder folder_;
  test::NotificationEngine engine_{formatIso8601(kBegin)};
  std::unique_ptr<GovAlertService> gov_;
  bool isAway_ = false;
  std::map<std::pair<std::string, RuleOutcome>, int> counts_;
};

TEST(WarningDays, SendEachFirstSightRiseMovedEndAndCancellationOnceAndNothingElse) {
  TwoDays days;
  days.run();
  int sights = 0;
  int rises = 0;
  int ends = 0;
  int cancellations = 0;
  for (Story const& story : stories()) {
    EXPECT_EQ(days.count(story.name, announced), story.sights) << story.name;
    EXPECT_EQ(days.count(story.name, escalated), story.rises) << story.name;
    EXPECT_EQ(days.count(story.name, endMoved), story.ends) << story.name;
    EXPECT_EQ(days.count(story.name, cancelled), story.cancellations) << story.name;
    sights += story.sights;
    rises += story.rises;
    ends += story.ends;
    cancellations += story.cancellations;
  }
  EXPECT_EQ(std::tuple(sights, rises, ends, cancellations),
            std::tuple(kSights, kRises, kEnds, kCancellations));
  EXPECT_EQ(days.sent().size(), kSights + kRises + kEnds + kCancellations);
  std::set<std::string> identifiers;
  for (NotificationRequest const& request : days.sent()) {
    EXPECT_TRUE(identifiers.insert(request.identifier).second) << request.identifier << " was sent before";
    EXPECT_FALSE(request.isSilent) << request.identifier;
  }
  EXPECT_EQ(days.updates("other words"), 7);
  EXPECT_EQ(days.updates("prolonged by half hours"), 6);
  EXPECT_EQ(days.updates("over both restarts"), 0);
}

}  // namespace
}  // namespace nimbara
