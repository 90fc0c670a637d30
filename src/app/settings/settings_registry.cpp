#include "app/settings/settings_registry.h"

#include "base/units.h"
#include "base/words/texts.h"
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

bool isLanguage(std::string_view text) {
  return text == "automatic" || std::ranges::count(Texts::languages(), text, &Texts::Language::code) > 0;
}

bool isHost(std::string_view text) {
  return text.empty() || normalizedBase(text).has_value();
}

constexpr std::string_view kAutomatic = "automatic";
constexpr std::string_view kNone;
constexpr std::string_view kClocks[] = {"automatic", "12", "24"};

constexpr SettingDefinition kGeneral[] = {
    {"preferredProvider", kAutomatic, "The forecast service to ask first", enumNames<WeatherProviderOption>},
    {"temperatureUnit", kAutomatic, "Unit of temperatures", kAutomaticOr<TemperatureUnit>},
    {"windUnit", kAutomatic, "Unit of wind speeds", kAutomaticOr<WindUnit>},
    {"pressureUnit", kAutomatic, "Unit of air pressure", kAutomaticOr<PressureUnit>},
    {.key = "precipUnitDisplay",
     .byDefault = kAutomatic,
     .explanation = "Unit of rain",
     .choices = kAutomaticOr<PrecipitationUnit>,
     .formerKey = "precipitationUnit"},
    {"visibilityUnit", kAutomatic, "Unit of visibility and distances", kAutomaticOr<DistanceUnit>},
    {"clock", kAutomatic, "12-hour or 24-hour clock; automatic follows the locale", kClocks},
    {.key = "language",
     .byDefault = kAutomatic,
     .explanation = "Language",
     .accepts = &isLanguage,
     .expected = "automatic or a language code, see nimbara --help"},
    {"desktop_closeToTray", true,
     "Closing the window keeps the program running in the tray, if there is one"},
    {"globeHidden", kNone, "Layers hidden on the globe: names from its legend, separated by commas"},
    {.key = kQuakeRadiusSetting,
     .byDefault = 0.0,
     .explanation = "Radius of the earthquakes on the hazards page, in km; 0 for the whole world",
     .minimum = 0,
     .maximum = 20'100},
    {.key = kQuakeMagnitudeSetting,
     .byDefault = 2.5,
     .explanation = "Minimum magnitude of the earthquakes on the hazards page",
     .minimum = -10,
     .maximum = 12},
    {"contact", kNone, "Your email or web address, sent to the services so they can contact you"},
    {"appleWeatherKeyFile", kNone, "Private key file for Apple Weather"},
    {"appleWeatherKeyID", kNone, "ID of that key"},
    {"appleWeatherTeamID", kNone, "ID of the developer team it belongs to"},
    {"appleWeatherServiceID", kNone, "ID of the service it is registered for"},
};

constexpr std::string_view kThemes[] = {"system", "light", "dark"};
constexpr std::string_view kAutomaticOnOff[] = {"automatic", "on", "off"};

/// Of the window.
constexpr SettingDefinition kDesktop[] = {
    {"desktop_theme", "system", "Appearance of the window", kThemes},
    {.key = "desktop_textSize",
     .byDefault = std::int64_t{100},
     .explanation = "Text size in the window, in percent of the desktop's",
     .minimum = 100,
     .maximum = 200},
    {"desktop_reducedMotion", kAutomatic, "Reduce motion in the window", kAutomaticOnOff},
};

/// A service's name and an ending, joined by the compiler.
struct ServiceKey {
  std::array<char, 48> characters{};
  std::size_t size = 0;

  constexpr std::string_view text() const { return {characters.data(), size}; }
};

constexpr std::size_t kServices = enumNames<Service>.size();

constexpr std::array<ServiceKey, kServices> keysEndingIn(std::string_view ending) {
  std::array<ServiceKey, kServices> keys;
  for (std::size_t i = 0; i < kServices; ++i) {
    for (std::string_view const part : {enumNames<Service>[i], ending}) {
      for (char const c : part) keys[i].characters[keys[i].size++] = c;
    }
  }
  return keys;
}

constexpr auto kHostKeys = keysEndingIn("Host");
constexpr auto kApiKeyKeys = keysEndingIn("ApiKey");

constexpr auto kServiceSettings = [] {
  std::array<SettingDefinition, 2 * kServices> table{};
  for (std::size_t i = 0; i < kServices; ++i) {
    table[2 * i] = {.key = kHostKeys[i].text(),
                    .byDefault = kNone,
                    .explanation = "Address to use instead of the service's own",
                    .accepts = &isHost,
                    .expected = "an address like https://host, or nothing"};
    table[2 * i + 1] = {.key = kApiKeyKeys[i].text(),
                        .byDefault = kNone,
                        .explanation = "Your key for the service, sent only to it"};
  }
  return table;
}();

}  // namespace

SettingsRegistry const& settingsRegistry() {
  static SettingsRegistry const kRegistry{kGeneral, kDesktop, kServiceSettings, notificationSettings()};
  return kRegistry;
}

std::string_view hostSetting(Service service) {
  return kHostKeys[static_cast<std::size_t>(service)].text();
}

std::string_view apiKeySetting(Service service) {
  return kApiKeyKeys[static_cast<std::size_t>(service)].text();
}

}  // namespace nimbara
