#include "app/settings/settings_registry.h"

#include "analysis/tips/tip_generator.h"
#include "base/units.h"
#include "base/words/texts.h"
#include "feeds/imagery/street_tiles.h"
#include "feeds/travel/advisory_source.h"
#include "model/provider_option.h"
#include "notifications/rules/rule_settings.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

/// The cases of an enumeration and, before them, "automatic".
template <NamedEnum E>
constexpr auto kAutomaticOr = [] {
  std::array<std::string_view, enumNames<E>.size() + 1> choices{"automatic"};
  std::ranges::copy(enumNames<E>, choices.begin() + 1);
  return choices;
}();

std::vector<std::string_view> languages() {
  std::vector<std::string_view> codes{"automatic"};
  for (auto const& [code, name] : Texts::languages()) codes.push_back(code);
  return codes;
}

bool isHost(std::string_view text) {
  return text.empty() || normalizedBase(text).has_value();
}

bool isNoneOrTileTemplate(std::string_view text) {
  return text.empty() || isTileTemplate(text);
}

constexpr std::string_view kAutomatic = "automatic";
constexpr std::string_view kNone;
constexpr std::string_view kClocks[] = {"automatic", "12", "24"};

constexpr std::string_view kThemes[] = {"system", "light", "dark"};
constexpr std::string_view kTextSizes[] = {"100", "115", "130", "150", "175", "200"};
constexpr std::string_view kAutomaticOnOff[] = {"automatic", "on", "off"};

/// A choice that is automatic until the user makes it.
constexpr SettingDefinition choiceIn(SettingsGroup group, std::string_view key, std::string_view explanation,
                                     std::span<std::string_view const> choices) {
  return {
      .key = key, .byDefault = kAutomatic, .explanation = explanation, .choices = choices, .group = group};
}

constexpr SettingDefinition textIn(SettingsGroup group, std::string_view key, std::string_view explanation) {
  return {.key = key, .byDefault = kNone, .explanation = explanation, .group = group};
}

/// The settings page shows those of a group in this order.
constexpr SettingDefinition kGeneral[] = {
    choiceIn(SettingsGroup::elsewhere, "preferredProvider", "The forecast service to ask first",
             enumNames<WeatherProviderOption>),
    choiceIn(SettingsGroup::units, "temperatureUnit", "Unit of temperatures", kAutomaticOr<TemperatureUnit>),
    choiceIn(SettingsGroup::units, "windUnit", "Unit of wind speeds", kAutomaticOr<WindUnit>),
    choiceIn(SettingsGroup::units, "pressureUnit", "Unit of air pressure", kAutomaticOr<PressureUnit>),
    {.key = "precipUnitDisplay",
     .byDefault = kAutomatic,
     .explanation = "Unit of rain",
     .choices = kAutomaticOr<PrecipitationUnit>,
     .formerKey = "precipitationUnit",
     .group = SettingsGroup::units},
    choiceIn(SettingsGroup::units, "visibilityUnit", "Unit of visibility and distances",
             kAutomaticOr<DistanceUnit>),
    choiceIn(SettingsGroup::units, "clock", "12-hour or 24-hour clock; automatic follows the locale",
             kClocks),
    {.key = "language",
     .byDefault = kAutomatic,
     .explanation = "Language",
     .group = SettingsGroup::look,
     .offers = &languages},
    {.key = "desktop_theme",
     .byDefault = "system",
     .explanation = "Appearance of the window",
     .choices = kThemes,
     .group = SettingsGroup::look},
    {.key = "desktop_textSize",
     .byDefault = std::int64_t{100},
     .explanation = "Text size in the window, in percent of the desktop's",
     .choices = kTextSizes,
     .minimum = 100,
     .maximum = 200,
     .group = SettingsGroup::look},
    choiceIn(SettingsGroup::look, "desktop_contrast", "High contrast in the window", kAutomaticOnOff),
    choiceIn(SettingsGroup::look, "desktop_reducedMotion", "Reduce motion in the window", kAutomaticOnOff),
    {.key = kSpeechSetting,
     .byDefault = false,
     .explanation = "A button reads the brief out, through Speech Dispatcher",
     .group = SettingsGroup::window},
    {.key = kAdvisorySourceSetting,
     .byDefault = enumName(AdvisorySource::us),
     .explanation =
         "Whose travel advisories are shown: the United States, Canada, the United Kingdom or Germany",
     .choices = enumNames<AdvisorySource>,
     .group = SettingsGroup::look},
    {.key = "desktop_closeToTray",
     .byDefault = true,
     .explanation = "Closing the window keeps the program running in the tray, if there is one",
     .group = SettingsGroup::window},
    textIn(SettingsGroup::elsewhere, "globeHidden",
           "Layers hidden on the globe: names from its legend, separated by commas"),
    textIn(
        SettingsGroup::elsewhere, kMapLayersSetting,
        "Layers of the map that were switched on or off, separated by commas, for example radar,temperature"),
    {.key = kAskedBackgroundSetting,
     .byDefault = false,
     .explanation = "The window has asked whether to send notifications in the background",
     .group = SettingsGroup::elsewhere},
    {.key = kQuakeRadiusSetting,
     .byDefault = 0.0,
     .explanation = "Radius of the earthquakes on the hazards page, in km; 0 for the whole world",
     .minimum = 0,
     .maximum = 20'100,
     .group = SettingsGroup::elsewhere},
    {.key = kQuakeMagnitudeSetting,
     .byDefault = 2.5,
     .explanation = "Minimum magnitude of the earthquakes on the hazards page",
     .minimum = -10,
     .maximum = 12,
     .group = SettingsGroup::elsewhere},
    {.key = kMapTilesSetting,
     .byDefault = kNone,
     .explanation = "Address of map tiles (PNG or WebP) for streets below the map's layers",
     .accepts = &isNoneOrTileTemplate,
     .expected = "an address like https://host/{z}/{x}/{y}.png, or nothing",
     .group = SettingsGroup::addresses},
    {.key = kMapTilesCreditSetting,
     .byDefault = kNone,
     .explanation = "Whom the map names for those tiles, as their license wants it",
     .group = SettingsGroup::addresses},
    textIn(SettingsGroup::keys, "contact",
           "Your email or web address, sent to the services so they can contact you"),
    textIn(SettingsGroup::keys, "appleWeatherKeyFile", "Private key file for Apple Weather"),
    textIn(SettingsGroup::keys, "appleWeatherKeyID", "ID of that key"),
    textIn(SettingsGroup::keys, "appleWeatherTeamID", "ID of the developer team it belongs to"),
    textIn(SettingsGroup::keys, "appleWeatherServiceID", "ID of the service it is registered for"),
};

constexpr SettingDefinition sensitivityTo(std::string_view key, std::string_view explanation) {
  return {.key = key,
          .byDefault = enumName(Sensitivity::usual),
          .explanation = explanation,
          .choices = enumNames<Sensitivity>,
          .group = SettingsGroup::advice};
}

constexpr SettingDefinition kAdvice[] = {
    sensitivityTo("advice_heat", "How much heat bothers you, for outdoor advice"),
    sensitivityTo("advice_cold", "How much cold bothers you, for outdoor advice"),
    sensitivityTo("advice_wind", "How much wind bothers you, for outdoor advice"),
    sensitivityTo("advice_rain", "How much rain bothers you, for outdoor advice"),
    sensitivityTo("advice_air", "How much polluted air bothers you, for outdoor advice"),
    sensitivityTo("advice_pollen", "How much pollen bothers you, for outdoor advice"),
};

/// A service's name and an ending, joined by the compiler.
struct ServiceKey {
  std::array<char, 48> characters{};
  std::size_t size = 0;

  constexpr std::string_view text() const { return {characters.data(), size}; }
};

constexpr std::array<ServiceKey, kServices.size()> keysEndingIn(std::string_view ending) {
  std::array<ServiceKey, kServices.size()> keys;
  for (std::size_t i = 0; i < kServices.size(); ++i) {
    for (std::string_view const part : {kServices[i].name, ending}) {
      for (char const c : part) keys[i].characters[keys[i].size++] = c;
    }
  }
  return keys;
}

constexpr auto kHostKeys = keysEndingIn("Host");
constexpr auto kApiKeyKeys = keysEndingIn("ApiKey");

constexpr auto kServiceSettings = [] {
  std::array<SettingDefinition, 2 * kServices.size()> table{};
  for (std::size_t i = 0; i < kServices.size(); ++i) {
    table[2 * i] = {.key = kHostKeys[i].text(),
                    .byDefault = kNone,
                    .explanation = "Address to use instead of the service's own",
                    .accepts = &isHost,
                    .expected = "an address like https://host, or nothing"};
    table[2 * i + 1] = {.key = kApiKeyKeys[i].text(),
                        .byDefault = kNone,
                        .explanation = "Your key for the service, sent only to it",
                        .isSecret = true};
  }
  return table;
}();

}  // namespace

SettingsRegistry const& settingsRegistry() {
  static SettingsRegistry const kRegistry{kGeneral, kAdvice, kServiceSettings, notificationSettings()};
  return kRegistry;
}

std::string_view hostSetting(Service service) {
  return kHostKeys[static_cast<std::size_t>(service)].text();
}

std::string_view apiKeySetting(Service service) {
  return kApiKeyKeys[static_cast<std::size_t>(service)].text();
}

}  // namespace nimbara
