// The engine's part in notifying: keeps the desk and its role going while the program runs, knows what a page
// of notifications shows, and changes settings, mutes and rules for it. Owned by the engine, whose threads it
// works on; nothing blocks the caller.
#pragma once

#include "app/engine/engine_actions.h"
#include "app/notices/notification_desk.h"
#include "app/state/notifications_state.h"
#include "notifications/rules/mute_changes.h"

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace nimbara {

class EngineNotifications final : public NotificationActions {
 public:
  struct Surroundings {
    SettingsStore& store;
    InUse<Composition> services;
    bool isStandIn = false;
    Clock const& clock;
    TaskRunner& work;      ///< passes, and what asks the desktop
    TaskRunner& commands;  ///< one after the other
    Wording wording;
    std::filesystem::path dataDirectory;
    std::string program;  ///< what other programs read of this one
    std::unique_ptr<NotificationCenter> center;
    std::function<std::vector<WatchedPlace>()> places;  ///< the selected one first
    std::function<void()> publish;                      ///< the state is another; empty: nobody looks at it
    std::function<void(PassReport const&)> onPass;
    std::function<void()> onRoleChange;                 ///< may be empty
    std::function<void(std::string const&)> onProblem;  ///< may be empty
    std::function<void()> onDueChange;
    std::function<void(NotificationResponse const&)> onResponse;  ///< a person answered; may be empty
    std::function<std::chrono::milliseconds()> jitter;
    std::unique_ptr<Speech> speech = nullptr;  ///< reads out critical warnings; may be empty
  };

  explicit EngineNotifications(Surroundings surroundings);

  std::shared_ptr<NotificationsState const> state() const;
  Notifier& notifier() { return desk_.notifier(); }
  NotificationDesk& desk() { return desk_; }
  /// Reads for the first time and waits for the role where another program has it.
  void begin();
  /// A forecast has come, or what is watched is another.
  void requestPass() { desk_.notifier().requestPass(); }
  /// What a pass has told or learnt is to be shown.
  void notePass();
  void setWording(Wording const& wording);
  /// On the thread of the commands, after somebody changed the store.
  void reload();

  void set(std::string key, SettingValue value) override;
  void mute(std::string const& kinds, std::optional<Instant> until) override;
  void unmute(std::string const& kinds) override;
  void pause(std::optional<Instant> until) override;
  void saveRule(CustomNotification rule) override;
  void removeRule(Uuid id) override;
  void enableRule(Uuid id, bool isEnabled) override;
  void tryRule(CustomNotification rule, TrialListener answered) override;
  void postTest() override;
  void lookAtDesktop() override;

 private:
  void command(std::function<Result<void, StoreError>()> apply);
  void changeMutes(MuteChange change);
  template <class Change>
  bool change(Change apply);
  std::optional<Place> placeOf(CustomNotification const& rule) const;
  TrialAnswer tried(CustomNotification const& rule, std::stop_token const& stop);
  std::shared_ptr<Texts const> texts() const;

  Surroundings around_;
  NotificationDesk desk_;
  SettingValues chosen_;  ///< of the thread of the commands

  mutable std::mutex mutex_;  // guards the two below
  std::shared_ptr<NotificationsState const> state_;
  std::shared_ptr<Texts const> texts_;
};

}  // namespace nimbara
