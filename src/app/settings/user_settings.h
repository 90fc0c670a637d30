// The user's own settings, with the keys of services beside them.
#pragma once

#include "app/settings/environment.h"
#include "app/settings/keyed_settings_store.h"
#include "platform/linux/store/sqlite_settings_store.h"

#include <memory>
#include <string>

namespace nimbara {

/// Opens nothing yet. Keys stay in their file, away from the user's keyring, while `standIn` answers for the
/// services.
std::unique_ptr<KeyedSettingsStore> userSettings(Environment const& environment, std::string const& standIn,
                                                 SettingsUse use = SettingsUse::lasting);

}  // namespace nimbara
