// The notification engine: runs one evaluation pass after the other, delivers what the plan of a pass says,
// and keeps what was sent. Long-lived, one for a program; any thread may call. It fetches nothing by itself:
// each pass is given a function that gathers its inputs.
#pragma once

#include "notifications/custom_notification.h"
#include "notifications/engine/pass_plan.h"
#include "platform/clock.h"
#include "platform/language_model.h"

#include <atomic>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <stop_token>
#include <vector>

namespace nimbara {

/// What a pass looks at.
struct PassInputs {
  std::vector<RuleInputs> places;         ///< the selected one first
  std::vector<CustomNotification> rules;  ///< the user's own
  bool isPartial = false;                 ///< further places are watched that this pass does not look at
  /// What `places` point to.
  std::shared_ptr<Texts const> texts = {};
};

/// Asks the network for what enabled rules read. Blocks.
using GatherInputs = std::function<PassInputs(NeededInputs const&, std::stop_token const&)>;

struct PassReport {
  enum class End {
    completed,
    superseded,  ///< a newer pass was queued
    denied,      ///< the desktop shows no notifications: nothing was evaluated
    busy         ///< another process evaluates
  };

  End end = End::completed;
  PassPlan plan;                      ///< deliveries that failed are `refused`
  std::vector<std::string> problems;  ///< sentences without a full stop
};

template <>
inline constexpr auto enumNames<PassReport::End> =
    std::to_array<std::string_view>({"completed", "superseded", "denied", "busy"});
static_assert(enumNamesComplete(PassReport::End::busy));

class NotificationManager {
 public:
  struct Surroundings {
    SettingsStore& store;
    NotificationCenter& center;
    Clock const& clock;
    std::shared_ptr<Texts const> texts;      ///< the words of the passes
    std::filesystem::path lockFile;          ///< shared by the processes of the user; empty: none
    LanguageModel* languageModel = nullptr;  ///< words the summaries where the user wants it
  };

  explicit NotificationManager(Surroundings surroundings);

  /// Those of the next passes.
  void setTexts(std::shared_ptr<Texts const> texts);
  /// May ask the user.
  AuthorizationStatus requestAuthorization();
  AuthorizationStatus authorizationStatus() const { return authorizationStatus_; }

  /// The number of the newest pass, be it still waiting for its turn.
  std::uint64_t evaluationTailToken() const { return evaluationTailToken_; }
  /// One pass. Waits for the one before; a pass delivers nothing more once a newer one waits.
  PassReport evaluate(GatherInputs const& gather, std::stop_token const& stop = {});
  /// What a pass would do now. Delivers and remembers nothing, and needs no desktop.
  PassReport preview(GatherInputs const& gather, std::stop_token const& stop = {});

  /// Tells the daily notifications whose hour has come.
  PassReport tellScheduled();
  /// When the next of them is due. What was due and could not be sent is left to the next pass.
  std::optional<Instant> nextScheduled() const;

  /// For a location that is being removed or replaced.
  void suppress(std::string const& locationTag);
  void release(std::string_view locationTag);
  /// Every tag, as when the pass that was under way has ended.
  void releaseAll();

  /// A person answered a notification: snoozing and muting are settings.
  Result<void, StoreError> respond(NotificationResponse const& response);

 private:
  class Pass;

  EngineState::Strings suppressedTags() const;
  std::shared_ptr<Texts const> texts() const;

  Surroundings around_;
  std::atomic<AuthorizationStatus> authorizationStatus_ = AuthorizationStatus::notDetermined;
  std::atomic<std::uint64_t> evaluationTailToken_ = 0;  ///< of the newest pass
  std::mutex evaluationTail_;                           ///< held by the pass that runs
  mutable std::mutex mutex_;                            // guards all below
  std::shared_ptr<Texts const> texts_;
  std::optional<Instant> lastLookAtSchedule_;
  EngineState::Strings suppressedLocationTags_;
  EngineState lastKnown_;                     ///< while the store cannot be read or written
  bool isAhead_ = false;                      ///< `lastKnown_` knows what the store does not
  std::map<std::string, std::string> kinds_;  ///< by the identifier of what was delivered
};

}  // namespace nimbara
