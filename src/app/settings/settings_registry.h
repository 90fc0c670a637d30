// The settings of the application, one row each. Areas with many settings of their own keep their tables
// beside their code and are named here; a service's two are made of its row.
#pragma once

#include "platform/service.h"
#include "platform/settings/settings.h"

#include <string_view>

namespace nimbara {

/// Every setting that the program knows.
SettingsRegistry const& settingsRegistry();

/// Which earthquakes the window shows.
inline constexpr std::string_view kQuakeRadiusSetting = "hazardsQuakeRadius";
inline constexpr std::string_view kQuakeMagnitudeSetting = "hazardsQuakeMagnitude";

/// Whose travel advisories are shown.
inline constexpr std::string_view kAdvisorySourceSetting = "travelAdvisorySource";

/// Whether the window has asked its one question, about notifications while it is closed.
inline constexpr std::string_view kAskedBackgroundSetting = "desktop_askedBackground";

/// Whether the window offers to read the brief out.
inline constexpr std::string_view kSpeechSetting = "desktop_speech";

/// Layers of the map that the user has switched, separated by commas.
inline constexpr std::string_view kMapLayersSetting = "mapLayers";

/// The user's own tiles below the map, and whose they are.
inline constexpr std::string_view kMapTilesSetting = "mapTiles", kMapTilesCreditSetting = "mapTilesCredit";

/// "openMeteoHost" and "openMeteoApiKey": each service's own keys.
std::string_view hostSetting(Service service);
std::string_view apiKeySetting(Service service);

}  // namespace nimbara
