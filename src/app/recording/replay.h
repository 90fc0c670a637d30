// Plays the notification engine through a stretch of time: passes at a steady step, the daily notifications
// at their moment, a log of what a person would have seen. Owned by a command or a test, which also owns the
// clock, the store and where the answers come from; it never waits and shows nothing.
#pragma once

#include "app/notices/notification_inputs.h"
#include "notifications/engine/notification_manager.h"
#include "notifications/log/notification_log.h"
#include "platform/clock.h"

#include <chrono>
#include <map>
#include <memory>
#include <set>
#include <stop_token>
#include <string>
#include <vector>

namespace nimbara {

/// The settings of a file as `nimbara settings list --json` prints them. The error is a sentence.
Result<SettingValues, std::string> readReplaySettings(std::filesystem::path const& file,
                                                      SettingsRegistry const& registry);

class Replay {
 public:
  struct Surroundings {
    SteppedClock& clock;
    SettingsStore& store;
    NotificationInputs& inputs;
    std::shared_ptr<Texts const> texts;
  };

  explicit Replay(Surroundings surroundings);
  ~Replay();
  Replay(Replay const&) = delete;
  Replay& operator=(Replay const&) = delete;

  /// The selected one first.
  void setPlaces(std::vector<WatchedPlace> places) { places_ = std::move(places); }
  void setRules(std::vector<CustomNotification> rules) { rules_ = std::move(rules); }
  /// The program ends and starts again; what is in the store stays.
  void restart();
  /// A pass now and after each step, as long as it is not after `end`.
  void runUntil(Instant end, std::chrono::milliseconds step, std::stop_token const& stop = {});

  /// Deliveries, refusals, and what was held back when it was so first.
  std::vector<LoggedNotification> const& log() const { return log_; }
  /// What went wrong, each sentence once, in the order of its coming.
  std::vector<std::string> const& problems() const { return problems_; }
  /// A rule could not look at what it is about, at some moment; or one could.
  bool hasMissed() const { return hasMissed_; }
  bool hasChecked() const { return hasChecked_; }

 private:
  void pass(std::stop_token const& stop);
  void tellScheduledUntil(Instant next);
  void note(PassReport const& report);
  void note(Decision const& decision);
  void noteProblem(std::string const& problem);
  std::string titleOf(Decision const& decision);

  Surroundings around_;
  std::unique_ptr<NotificationCenter> center_;
  std::unique_ptr<NotificationManager> manager_;
  std::vector<WatchedPlace> places_;
  std::vector<CustomNotification> rules_;
  std::vector<LoggedNotification> log_;
  std::vector<std::string> problems_;
  bool hasMissed_ = false;
  bool hasChecked_ = false;
  std::set<std::string> held_;                 ///< keys of what is held back now
  std::map<std::string, std::string> titles_;  ///< by the identifier of what was sent
};

}  // namespace nimbara
