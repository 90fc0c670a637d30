// What the engine knows of the settings at one moment, for the page that shows them. A value.
#pragma once

#include "app/settings/watch_install.h"
#include "platform/session/desktop_appearance.h"
#include "platform/settings/settings_store.h"
#include "providers/provider_history.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

/// The settings of one moment and what is told about them.
struct SettingsState {
  explicit SettingsState(Settings read) : settings(std::move(read)) {}

  Settings settings;
  std::optional<StoreError> problem;  ///< why they could not be read
  std::string refusedKey;             ///< of the last change, when it failed
  std::optional<StoreError> refusal;  ///< why
  ProviderHistory::Records providers;
  bool isAppleWeatherConfigured = false;
  AppearanceWish wish;  ///< of the desktop
  WatchStart watch = WatchStart::byHand;
  bool canChangeWatch = true;
  bool isWatchChanging = false;
  std::string watchProblem;  ///< why the watch's start could not be changed
  std::filesystem::path dataDirectory;
  std::filesystem::path cacheDirectory;
};

/// Stands for all units among the keys of settings; its values are the presets.
inline constexpr std::string_view kUnitPresetKey = "unitPreset";

}  // namespace nimbara
