#include "settings_states.h"

namespace nimbara::test {

SettingsState settingsWith(SettingValues stored) {
  return SettingsState(Settings(settingsRegistry(), std::move(stored)));
}

SettingsState troubledSettings(std::int64_t textSize) {
  SettingsState state = settingsWith({{"desktop_textSize", textSize},
                                      {"temperatureUnit", std::string("kelvin")},
                                      {"windUnit", std::string("knots")},
                                      {"firmsApiKey", std::string("secret-of-firms")},
                                      {"openMeteoHost", std::string("https://own.example")}});
  state.problem = StoreError{StoreError::Kind::unreadable, "it is no database"};
  state.refusedKey = "openMeteoHost";
  state.refusal = StoreError{StoreError::Kind::refused,
                             "the setting openMeteoHost takes an address like https://host, or nothing"};
  state.watchProblem = "\"systemctl --user enable nimbara-watch.service\" failed; try it yourself";
  state.dataDirectory = "/home/someone/with/a/rather/long/way/to/her/data/nimbara";
  state.cacheDirectory = "/home/someone/.cache/Nimbara";
  state.providers["openMeteo"] = {kNow - std::chrono::minutes(2),
                                  {},
                                  "HTTP 503: over capacity",
                                  kNow - std::chrono::minutes(2),
                                  kNow - std::chrono::hours(3)};
  state.providers["yrNo"] = {{}, {}, {}, {}, kNow - std::chrono::minutes(1)};
  return state;
}

}  // namespace nimbara::test
