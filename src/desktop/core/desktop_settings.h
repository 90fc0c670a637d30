// The window's part for settings: reads them again when they change, whoever changed them, and writes what
// the user chooses. Owned by the core, which tells its services of the changes. Reads and writes on the
// caller's thread, so only the core's own threads change anything; any thread may ask for what is known.
#pragma once

#include "app/services/composition.h"
#include "app/settings/environment.h"
#include "desktop/views/settings_view.h"
#include "model/provider_option.h"
#include "platform/settings_store.h"

#include <memory>
#include <mutex>
#include <stop_token>
#include <string>
#include <string_view>

namespace nimbara {

/// What of the settings others have to follow.
struct SettingsChanges {
  bool wording = false;
  bool provider = false;
};

class DesktopSettings {
 public:
  DesktopSettings(SettingsStore& store, Environment environment);

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
  Result<void, StoreError> write(std::string_view key, std::string_view text);
  template <class Change>
  void change(Change apply);

  SettingsStore& store_;
  Environment environment_;
  Settings atStart_;

  mutable std::mutex mutex_;  // guards the two below
  std::shared_ptr<SettingsState const> state_;
  std::shared_ptr<Wording const> wording_;
};

}  // namespace nimbara
