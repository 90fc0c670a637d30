// The engine's part for settings: reads them again when they change, whoever changed them, and writes what
// the user chooses. Owned by the engine, which tells its services of the changes. Reads and writes on the
// caller's thread, so only the engine's own threads change anything; any thread may ask for what is known.
#pragma once

#include "app/services/wording.h"
#include "app/settings/environment.h"
#include "app/settings/overrides.h"
#include "app/state/settings_state.h"
#include "platform/settings/settings_store.h"

#include <memory>
#include <mutex>
#include <stop_token>
#include <string>
#include <string_view>

namespace nimbara {

class Composition;

/// What of the settings others have to follow.
struct SettingsChanges {
  bool any = false;
  bool wording = false;
  bool language = false;  ///< of the words, or their clock
  bool provider = false;
  bool services = false;  ///< keys, addresses and whatever else services are made with
};

class EngineSettings {
 public:
  /// `atStart` are the settings as they have been read already; null reads them.
  EngineSettings(SettingsStore& store, Environment const& environment, Overrides overrides,
                 Settings const* atStart);

  Settings settings() const { return state()->settings; }
  WeatherProviderOption preferredProvider() const;
  std::shared_ptr<Wording const> wording() const;
  std::shared_ptr<SettingsState const> state() const;

  SettingsChanges reread();
  /// `text` as a person writes it; empty takes a text's default. What is refused is told in the state.
  SettingsChanges set(std::string_view key, std::string_view text);
  void noteProviders(Composition& composition);

  void noteWish(AppearanceWish const& wish);
  void noteWatchChanging();
  /// Lets the watch start with the session, or not any more: runs programs.
  void setStartAtLogin(bool wanted, std::stop_token const& stop);

 private:
  Result<void, std::string> askPortal(bool wanted) const;
  Result<void, StoreError> write(std::string_view key, std::string_view text);
  template <class Change>
  void change(Change apply);

  SettingsStore& store_;
  Environment environment_;
  Overrides overrides_;

  mutable std::mutex mutex_;  // guards the two below
  std::shared_ptr<SettingsState const> state_;
  std::shared_ptr<Wording const> wording_;
};

}  // namespace nimbara
