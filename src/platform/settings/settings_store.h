// The port of what outlives a process: the user's settings, the state that the program remembers for itself,
// and the saved places. Shared by every process of the user; a change that `update` has acknowledged is not
// lost, and the others can wait for it. Any thread may call.
#pragma once

#include "base/enum_names.h"
#include "base/result.h"
#include "platform/settings/settings.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>

namespace nimbara {

/// Separate tables of keys and values.
enum class StoreArea {
  settings,  ///< what the user chooses
  state,     ///< what the program remembers: delivered notifications, failures of providers …
  places     ///< the saved places
};
template <>
inline constexpr auto enumNames<StoreArea> = std::to_array<std::string_view>({"settings", "state", "places"});
static_assert(enumNamesComplete(StoreArea::places));

struct StoreError {
  enum class Kind {
    unreadable,  ///< the file is no database, or a damaged one
    unwritable,  ///< it may not be written, or the disk is full
    busy,        ///< another process keeps it for too long
    refused      ///< the caller's own decision, an unknown key, a value of the wrong type
  };
  Kind kind = Kind::refused;
  std::string message;  ///< a sentence for people, without a full stop

  bool operator==(StoreError const&) const = default;
};

/// New values by key; nothing takes the key away.
using StoreChanges = std::map<std::string, std::optional<SettingValue>, std::less<>>;
/// Decides what to change from what is stored; without effects of its own.
using StoreDecision = std::function<Result<StoreChanges, StoreError>(SettingValues const&)>;

enum class WaitOutcome { changed, timedOut, stopped };

/// Notices changes of one store by any process, from its making on. One thread uses it.
class SettingsWatch {
 public:
  virtual ~SettingsWatch() = default;
  /// Sleeps until something changed that an earlier call has not reported. Wakes for nothing else.
  virtual WaitOutcome wait(std::stop_token stop,
                           std::optional<std::chrono::steady_clock::time_point> deadline = {}) = 0;
};

/// The settings of a moment and, when they could not be read and are the defaults, why.
struct SettingsReading {
  Settings settings;
  std::optional<StoreError> problem;
};

class SettingsStore {
 public:
  explicit SettingsStore(SettingsRegistry const& registry) : registry_(registry) {}
  virtual ~SettingsStore() = default;

  /// Everything in an area, keys of other versions included. A store that was never written is empty.
  virtual Result<SettingValues, StoreError> read(StoreArea area) = 0;
  /// Reads, decides and writes as one step that no other process can come between; all changes or none.
  virtual Result<void, StoreError> update(StoreArea area, StoreDecision const& decide) = 0;
  virtual Result<std::unique_ptr<SettingsWatch>, StoreError> watch() = 0;

  SettingsRegistry const& registry() const { return registry_; }
  /// Never fails: what cannot be read has its default.
  SettingsReading settings();
  /// Refuses keys that are not registered and values that the definition does not allow.
  Result<void, StoreError> set(std::string_view key, SettingValue const& value);
  Result<void, StoreError> reset(std::string_view key);
  /// All of them in one step, or none.
  Result<void, StoreError> setAll(SettingValues const& values);

  Result<std::optional<SettingValue>, StoreError> state(std::string_view key);
  /// Nothing forgets the key.
  Result<void, StoreError> setState(std::string_view key, std::optional<SettingValue> value);

 private:
  SettingsRegistry const& registry_;
};

}  // namespace nimbara
