// Settings of tests as the page may have to show them.
#pragma once

#include "app/settings/settings_registry.h"
#include "app/state/settings_state.h"
#include "states.h"

namespace nimbara::test {

SettingsState settingsWith(SettingValues stored);

/// With failures, faults and whatever else asks for attention.
SettingsState troubledSettings(std::int64_t textSize = 100);

}  // namespace nimbara::test
