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
  return text == "automatic" || std::ranges::count(Texts::languages(), text) > 0;
}

bool isHost(std::string_view text) {
  return text.empty() || normalizedBase(text).has_value();
}

constexpr std::string_view kAutomatic = "automatic";
constexpr std::string_view kNone;
constexpr std::string_view kClocks[] = {"automatic", "12", "24"};

constexpr SettingDefinition kGeneral[] = {
    {"preferredProvider", kAutomatic, "The forecast service that is asked first",
     enumNames<WeatherProviderOption>},
    {"temperatureUnit", kAutomatic, "Unit of temperatures", kAutomaticOr<TemperatureUnit>},
    {"windUnit", kAutomatic, "Unit of wind speeds", kAutomaticOr<WindUnit>},
    {"pressureUnit", kAutomatic, "Unit of air pressure", kAutomaticOr<PressureUnit>},
    {.key = "precipUnitDisplay",
     .byDefault = kAutomatic,
     .explanation = "Unit of rain",
     .choices = kAutomaticOr<PrecipitationUnit>,
     .formerKey = "precipitationUnit"},
    {"visibilityUnit", kAutomatic, "Unit of visibility and distances", kAutomaticOr<DistanceUnit>},
    {"clock", kAutomatic, "Hours of a clock of 12 or of 24; automatic follows the locale", kClocks},
    {.key = "language",
     .byDefault = kAutomatic,
     .explanation = "Language of the texts",
     .accepts = &isLanguage,
     .expected = "automatic or the code of a language that has texts: en, pt, zh"},
    {"desktop_closeToTray", true, "Closing the window leaves the program in the tray, where there is one"},
    {"globeHidden", kNone, "What the globe does not show: names of its legend, separated by commas"},
    {.key = kQuakeRadiusSetting,
     .byDefault = 0.0,
     .explanation =
         "How far around the place the hazards page shows earthquakes, in km; 0 for the whole world",
     .minimum = 0,
     .maximum = 20'100},
    {.key = kQuakeMagnitudeSetting,
     .byDefault = 2.5,
     .explanation = "The least magnitude of the earthquakes that the hazards page shows",
     .minimum = -10,
     .maximum = 12},
    {"contact", kNone, "Your e-mail or web address, which the services are told"},
    {"appleWeatherKeyFile", kNone, "File of the private key for Apple Weather"},
    {"appleWeatherKeyID", kNone, "Identifier of that key"},
    {"appleWeatherTeamID", kNone, "Identifier of the developer team that it belongs to"},
    {"appleWeatherServiceID", kNone, "Identifier of the service that it is registered for"},
};

constexpr std::string_view kThemes[] = {"system", "light", "dark"};
constexpr std::string_view kAutomaticOnOff[] = {"automatic", "on", "off"};

/// Of the window.
constexpr SettingDefinition kDesktop[] = {
    {"desktop_theme", "system", "Colours of the window", kThemes},
    {.key = "desktop_textSize",
     .byDefault = std::int64_t{100},
     .explanation = "Size of the window's texts, in percent of the desktop's",
     .minimum = 100,
     .maximum = 200},
    {"desktop_reducedMotion", kAutomatic, "Leave out movements in the window", kAutomaticOnOff},
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
                    .explanation = "Address that stands in place of the service's own",
                    .accepts = &isHost,
                    .expected = "an address like https://host, or nothing"};
    table[2 * i + 1] = {.key = kApiKeyKeys[i].text(),
                        .byDefault = kNone,
                        .explanation = "Your key for the service, sent to it alone"};
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
