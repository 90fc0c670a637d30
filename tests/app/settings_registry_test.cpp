#include "app/settings/settings_registry.h"

#include "app/settings/configuration.h"
#include "app/settings/service_directory.h"
#include "app/settings/unit_settings.h"
#include "base/words/texts.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

Settings with(SettingValues stored) {
  return Settings(settingsRegistry(), std::move(stored));
}

TEST(SettingsRegistry, HoldsEachKeyOnceWithADefaultThatItsRuleAllows) {
  std::string_view last;
  for (SettingDefinition const* const definition : settingsRegistry().all()) {
    EXPECT_LT(last, definition->key);
    last = definition->key;
    EXPECT_TRUE(checkedSetting(*definition, definition->defaultValue())) << definition->key;
    EXPECT_FALSE(definition->explanation.empty()) << definition->key;
    EXPECT_EQ(definition->accepts == nullptr, definition->expected.empty()) << definition->key;
  }
}

struct RuleRow {
  std::string_view key;
  std::string_view text;
  bool allowed;
};

TEST(SettingsRegistry, ChecksValues) {
  for (RuleRow const& row : {
           RuleRow{"preferredProvider", "yrNo", true},
           {"preferredProvider", "noaa", false},
           {"temperatureUnit", "automatic", true},
           {"temperatureUnit", "fahrenheit", true},
           {"temperatureUnit", "kelvin", false},
           {"windUnit", "knots", true},
           {"clock", "automatic", true},
           {"clock", "12", true},
           {"clock", "24", true},
           {"clock", "23", false},
           {"language", "zh", true},
           {"language", "tlh", false},
           {"openMeteoHost", "https://customer-api.open-meteo.com", true},
           {"openMeteoHost", "", true},
           {"openMeteoHost", "localhost", false},
           {"openMeteoGeocodingApiKey", "abc", true},
       }) {
    EXPECT_EQ(parsedSetting(*settingsRegistry().find(row.key), row.text).has_value(), row.allowed)
        << row.key << " " << row.text;
  }
}

TEST(SettingsRegistry, HidesKeysButNotTheirNames) {
  for (SettingDefinition const* const definition : settingsRegistry().all()) {
    EXPECT_EQ(definition->isSecret, definition->key.ends_with("ApiKey")) << definition->key;
  }
}

TEST(Configuration, ComesFromTheSettings) {
  Configuration const none = configurationOf(with({}));
  EXPECT_EQ(userAgent(none).substr(0, 8), "nimbara/");
  EXPECT_TRUE(userAgent(none).ends_with(" (https://nimbara.github.io)"));
  EXPECT_EQ(none.services.at("openMeteo").host, std::nullopt);
  Configuration const own = configurationOf(with({{"contact", std::string("me@example.org\r\nX-Evil: 1")},
                                                  {"openMeteoApiKey", std::string("k")},
                                                  {"openMeteoHost", std::string("https://paid.example")}}));
  EXPECT_TRUE(userAgent(own).ends_with(" (https://nimbara.github.io; me@example.org X-Evil: 1)"));
  ServiceDirectory const services(own, "");
  EXPECT_EQ(services.address(Service::openMeteo).apiKey, "k");
  EXPECT_EQ(services.address(Service::openMeteo).baseUrl, "https://paid.example");
  EXPECT_EQ(services.address(Service::openMeteoGeocoding).apiKey, "");
}

struct RegionRow {
  std::string_view locale;
  Units units;
};

TEST(RegionalUnits, FollowTheRegionOfTheLocale) {
  Units british = Units::metric();
  british.wind = WindUnit::mph;
  british.distance = DistanceUnit::miles;
  Units nordic = Units::metric();
  nordic.wind = WindUnit::ms;
  Units bahamian = Units::metric();
  bahamian.temperature = TemperatureUnit::fahrenheit;
  for (RegionRow const& row : {
           RegionRow{"en_US.UTF-8", Units::imperial()},
           {"es-US", Units::imperial()},
           {"en_GB", british},
           {"sv_SE.utf8", nordic},
           {"se_NO", nordic},
           {"fi_FI@euro", nordic},
           {"da_DK", nordic},
           {"en_BS", bahamian},
           {"de_DE.UTF-8", Units::metric()},
           {"zh-Hant-TW", Units::metric()},
           {"zh-Hans-SE", nordic},
           {"US", Units::metric()},
           {"en", Units::metric()},
           {"C.UTF-8", Units::metric()},
           {"POSIX", Units::metric()},
           {"", Units::metric()},
           {"_", Units::metric()},
           {"en_", Units::metric()},
       }) {
    EXPECT_EQ(regionalUnits(row.locale), row.units) << row.locale;
  }
}

TEST(RegionalUnits, GiveWayToChosenOnes) {
  Settings const settings =
      with({{"temperatureUnit", std::string("celsius")}, {"pressureUnit", std::string("bar")}});
  Units expected = Units::imperial();
  expected.temperature = TemperatureUnit::celsius;
  EXPECT_EQ(unitsOf(settings, "en_US"), expected);
}

TEST(Clocks, FollowTheLocaleUntilOneIsChosen) {
  struct Row {
    char const* choice;
    char const* language;
    char const* locale;
    char const* hour;
  };
  for (Row const& row :
       {Row{"automatic", "en", "C", "h a"}, Row{"automatic", "C", "", "h a"},
        Row{"automatic", "en_US.UTF-8", "en_US.UTF-8", "h a"}, Row{"automatic", "en", "en_GB.UTF-8", "HH:mm"},
        Row{"automatic", "xx", "C", "h a"}, Row{"automatic", "de", "C", "HH:mm"},
        Row{"automatic", "ja", "en_US.UTF-8", "HH:mm"}, Row{"12", "de_DE", "de_DE", "h a"},
        Row{"12", "ja", "C", "ah時"}, Row{"12", "zh", "C", "ah时"}, Row{"24", "en", "C", "HH:mm"}}) {
    Settings const settings = with({{"clock", std::string(row.choice)}});
    Texts const texts = Texts::load(wordsLocale(settings, row.language, row.locale));
    EXPECT_EQ(texts.text("time.hourPattern"), row.hour) << row.choice << " " << row.language << row.locale;
  }
}

}  // namespace
}  // namespace nimbara
