#pragma once

#include "platform/settings/settings.h"

#include <string>

namespace nimbara {

/// The text that `parsedSetting` takes for the value.
std::string settingText(SettingValue const& value);

}  // namespace nimbara
