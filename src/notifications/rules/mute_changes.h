// Changes of the list of muted kinds: read, changed and written in one step, so that of two programs that
// mute at a time neither undoes the other's.
#pragma once

#include "notifications/rules/rule_settings.h"
#include "platform/settings/settings_store.h"

#include <functional>
#include <vector>

namespace nimbara {

/// May be called more than once.
using MuteChange = std::function<std::vector<Mute>(std::vector<Mute>)>;

Result<void, StoreError> changeMutes(SettingsStore& store, MuteChange const& change);

}  // namespace nimbara
