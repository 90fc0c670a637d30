// Everything that a long-lived program notifies with, composed once for all such programs: the engine and
// what it looks at, the notifier that says when, and the role that only one program has at a time. Owned by
// the program; what it is given must outlive it. Tells the desktop nothing that test servers
// made up unless the program's own center does.
#pragma once

#include "app/notices/notification_inputs.h"
#include "app/notices/notifier.h"
#include "app/notices/notifier_role.h"
#include "app/services/composition.h"
#include "app/services/stand_in_store.h"
#include "notifications/engine/notification_state.h"
#include "platform/language_model.h"
#include "platform/session/speech.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace nimbara {

class NotificationDesk {
 public:
  struct Surroundings {
    SettingsStore& store;
    InUse<Composition> services;
    bool isStandIn = false;  ///< what they say is made up
    Clock const& clock;
    TaskRunner& runner;
    Wording wording;
    std::filesystem::path dataDirectory;
    std::string program;  ///< what the others read of whoever has the role: "watch"
    std::unique_ptr<NotificationCenter> center;
    std::function<std::vector<WatchedPlace>()> places;  ///< the selected one first
    // May be empty. Called without locks, on any thread.
    std::function<void(PassReport const&)> onPass;
    std::function<void()> onDueChange;
    std::function<void()> onRoleChange;  ///< this program got the role, or a third one did
    std::function<void(NotificationResponse const&)>
        onResponse;  ///< a person answered; mutes are kept already
    std::function<void(std::string const&)> onProblem;
    std::function<std::chrono::milliseconds()> jitter;
    std::unique_ptr<Speech> speech = nullptr;  ///< reads out critical warnings; may be empty
  };

  explicit NotificationDesk(Surroundings surroundings);
  ~NotificationDesk();
  NotificationDesk(NotificationDesk const&) = delete;
  NotificationDesk& operator=(NotificationDesk const&) = delete;

  /// Takes over when the program that has the role ends.
  void followRole();
  NotifierRole const& role() const { return role_; }
  /// A place is being removed or replaced: the pass under way delivers nothing of it any more.
  void suppress(std::string const& locationTag) { manager_.suppress(locationTag); }
  /// Changes of the user's words and units, from the next pass on.
  void setWording(Wording const& wording);

  Notifier& notifier() { return notifier_; }
  NotificationInputs& inputs() { return inputs_; }
  NotificationManager& manager() { return manager_; }
  NotificationCenter& center() { return *around_.center; }
  /// Where the engine remembers.
  SettingsStore& remembered();

 private:
  NotificationInputs::Options inputOptions() const;
  Notifier::Surroundings notifierSurroundings();
  void answer(NotificationResponse const& response);
  void readOut(PassReport const& report);
  /// Between passes, which come often enough: a newer edition of warning regions is used from the next on.
  void renewRegions();

  /// Whichever the user has named.
  class ModelInUse final : public LanguageModel {
   public:
    explicit ModelInUse(InUse<Composition> services) : services_(std::move(services)) {}
    bool isThere() override { return services_()->languageModel() != nullptr; }
    Result<std::string, std::string> reply(std::string const& prompt, std::stop_token const& stop) override;

   private:
    InUse<Composition> services_;
  };

  Surroundings around_;
  mutable std::mutex wordingMutex_;  // guards `around_.wording`
  StandInStore standIn_;
  ModelInUse model_;
  NotificationManager manager_;
  NotificationInputs inputs_;
  NotifierRole role_;
  Notifier notifier_;
};

}  // namespace nimbara
