#include "app/settings/user_settings.h"

#include "app/settings/settings_registry.h"
#include "platform/linux/desktop_services.h"

namespace nimbara {

std::unique_ptr<KeyedSettingsStore> userSettings(Environment const& environment, std::string const& standIn,
                                                 SettingsUse use) {
  MakeSecretStore keyring;
  if (standIn.empty())
    keyring = [program = environment.program] { return desktopSecretStore(busesOfSession(program)); };
  return std::make_unique<KeyedSettingsStore>(
      std::make_unique<SqliteSettingsStore>(environment.dataDirectory, settingsRegistry(), use),
      environment.dataDirectory, std::move(keyring));
}

}  // namespace nimbara
