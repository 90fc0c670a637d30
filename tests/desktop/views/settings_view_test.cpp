#include "desktop/views/settings_view.h"

#include "app/settings/unit_settings.h"
#include "desktop/states/settings_states.h"
#include "desktop/views/credits.h"
#include "notifications/rules/rule_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

SettingRowView row(SettingsGroup group, std::string_view key, SettingsState const& state,
                   ViewContext const& context = contextAt(kNow)) {
  auto const rows = settingRows(group, state, context);
  auto const found = std::ranges::find(rows, key, &SettingRowView::key);
  EXPECT_NE(found, rows.end()) << key;
  return found == rows.end() ? SettingRowView() : *found;
}

constexpr SettingsGroup kGroups[] = {SettingsGroup::look,   SettingsGroup::units, SettingsGroup::advice,
                                     SettingsGroup::window, SettingsGroup::keys,  SettingsGroup::addresses};

TEST(SettingViews, HaveWordsInEveryLanguage) {
  for (auto const& [language, name] : Texts::languages()) {
    Texts const texts = Texts::load(language);
    ViewContext const context{texts, Units::metric(), kNow, Calendar::utc(), {}};
    for (SettingsGroup const group : kGroups) {
      for (SettingRowView const& each : settingRows(group, settingsWith({}), context)) {
        EXPECT_THAT(each.title, Not(HasSubstr("desktop."))) << language;
        EXPECT_THAT(each.labels, Each(Not(HasSubstr("desktop.")))) << language << " " << each.key;
      }
    }
    for (CreditView const& credit : creditViews(context)) {
      EXPECT_THAT(credit.sentence + credit.kind, Not(HasSubstr("desktop."))) << language;
    }
  }
}

TEST(SettingViews, OfferOnlyWhatTheSettingTakes) {
  SettingsState const state = settingsWith({});
  std::set<std::string> seen;
  for (SettingsGroup const group : kGroups) {
    for (SettingRowView const& each : settingRows(group, state, contextAt(kNow))) {
      EXPECT_TRUE(seen.insert(each.key).second) << each.key;
      if (each.key == kUnitPresetKey) continue;
      SettingDefinition const* const definition = settingsRegistry().find(each.key);
      ASSERT_NE(definition, nullptr) << each.key;
      EXPECT_EQ(definition->isSecret, each.kind == "secret") << each.key;
      for (std::string const& value : each.values) {
        EXPECT_TRUE(parsedSetting(*definition, value)) << each.key << " " << value;
      }
      EXPECT_EQ(each.values.size(), each.labels.size());
    }
  }
}

TEST(SettingViews, TellWhatAutomaticMeans) {
  ViewContext const american{english(), Units::imperial(), kNow, Calendar::utc(), {}};
  EXPECT_THAT(row(SettingsGroup::units, "windUnit", settingsWith({}), american).labels,
              ElementsAre("Automatic (mph)", "km/h", "mph", "m/s", "knots"));
  // The unit in use is then a chosen one.
  auto const chosen = row(SettingsGroup::units, "windUnit", settingsWith({{"windUnit", std::string("ms")}}));
  EXPECT_EQ(chosen.labels.front(), "Automatic");
  EXPECT_EQ(chosen.value, "ms");
  EXPECT_TRUE(chosen.isSet);
}

TEST(SettingViews, ShowTheClockInUse) {
  EXPECT_THAT(row(SettingsGroup::units, "clock", settingsWith({})).labels,
              ElementsAre("Automatic (16:00)", "12-hour", "24-hour"));
  Texts const american = Texts::load("en_US@hours=h12");
  ViewContext const context{american, Units::imperial(), kNow, Calendar::utc(), {}};
  EXPECT_THAT(row(SettingsGroup::units, "clock", settingsWith({}), context).labels.front(),
              "Automatic (4:00 PM)");
  EXPECT_EQ(row(SettingsGroup::units, "clock", settingsWith({{"clock", std::string("12")}})).labels.front(),
            "Automatic");
}

struct PresetRow {
  SettingValues stored;
  char const* preset;
};

TEST(SettingViews, TellThePresetOfTheUnits) {
  SettingValues oneOther = unitChoices(UnitPreset::imperial);
  oneOther["windUnit"] = std::string("knots");
  for (PresetRow const& each :
       {PresetRow{{}, "automatic"}, PresetRow{unitChoices(UnitPreset::metric), "metric"},
        PresetRow{unitChoices(UnitPreset::imperial), "imperial"},
        PresetRow{unitChoices(UnitPreset::british), "british"},
        PresetRow{unitChoices(UnitPreset::automatic), "automatic"}, PresetRow{oneOther, "own"}}) {
    auto const view = row(SettingsGroup::units, kUnitPresetKey, settingsWith(each.stored));
    EXPECT_EQ(view.value, each.preset);
    EXPECT_EQ(view.values[static_cast<std::size_t>(view.chosen)], each.preset);
    EXPECT_EQ(view.values.size(), std::string_view(each.preset) == "own" ? 5U : 4U);
  }
}

TEST(SettingViews, KeepAValueBetweenTheChoices) {
  auto const size =
      row(SettingsGroup::look, "desktop_textSize", settingsWith({{"desktop_textSize", std::int64_t{117}}}));
  EXPECT_EQ(size.value, "117");
  EXPECT_EQ(size.labels.back(), "117\u00A0%");
}

/// The page of notifications has its own like of this; a key is asked for where the service takes one.
TEST(SettingViews, HaveAPlaceForEverySetting) {
  for (SettingDefinition const* const definition : settingsRegistry().all()) {
    bool const isOfNotifications =
        std::ranges::count(notificationSettings(), definition->key, &SettingDefinition::key) > 0;
    bool const isOfService = definition->key.ends_with("Host") || definition->isSecret;
    if (isOfNotifications || isOfService) continue;
    EXPECT_NE(definition->group, SettingsGroup::none) << definition->key;
  }
  EXPECT_EQ(settingsRegistry().find("languageModelName")->group, SettingsGroup::keys)
      << "which the page of notifications leaves to this one";
}

TEST(SettingViews, NeverTellASecret) {
  auto const rows = settingRows(SettingsGroup::keys, troubledSettings(), contextAt(kNow));
  auto const firms = std::ranges::find(rows, "firmsApiKey", &SettingRowView::key);
  ASSERT_NE(firms, rows.end());
  EXPECT_TRUE(firms->isSet);
  for (SettingRowView const& each : rows) {
    EXPECT_THAT(each.value + each.explanation + each.title + each.problem, Not(HasSubstr("secret-of-firms")));
  }
}

TEST(SettingViews, SayWhyAValueWasRefused) {
  SettingsState state = troubledSettings();
  EXPECT_EQ(row(SettingsGroup::addresses, "openMeteoHost", state).problem,
            "Not a valid address like https://host. The old one was kept.");
  state.refusal->kind = StoreError::Kind::busy;
  EXPECT_EQ(row(SettingsGroup::addresses, "openMeteoHost", state).problem,
            "Another program is using your settings. Try again in a moment.");
  EXPECT_EQ(row(SettingsGroup::addresses, "yrNoHost", state).problem, "");
}

TEST(Providers, TellWhatBecameOfTheLastAttempts) {
  auto const views = providerViews(troubledSettings(), contextAt(kNow));
  std::vector<std::string> sentences;
  for (ProviderView const& view : views) sentences.push_back(view.sentence);
  EXPECT_THAT(sentences, ElementsAre(HasSubstr("Automatic: The first to respond"),
                                     "Apple Weather: Needs your own keys, below",
                                     "Open-Meteo: last response 3 h ago  ·  last failure 2 min ago: HTTP "
                                     "503: over capacity  ·  paused until 12:23",
                                     "MET Norway: last response 1 min ago", "wttr.in: Not used yet"));
  EXPECT_TRUE(views[0].isChosen);
  EXPECT_TRUE(views[2].isTroubled);
  EXPECT_FALSE(views[3].isTroubled);
}

TEST(Providers, AreLeftAloneAsLongAsTheyAsk) {
  SettingsState state = settingsWith({{"preferredProvider", std::string("yrNo")}});
  state.providers["yrNo"].blockedUntil = kNow + std::chrono::hours(1);
  EXPECT_THAT(providerViews(state, contextAt(kNow))[3].state, HasSubstr("paused until 13:20"));
  EXPECT_TRUE(providerViews(state, contextAt(kNow))[3].isChosen);
  ViewContext const later = contextAt(kNow + std::chrono::hours(1));
  EXPECT_THAT(providerViews(state, later)[3].state, Not(HasSubstr("not asked before")));
}

TEST(SettingsPage, NamesFaultsAndProblems) {
  SettingsView const view = settingsView(troubledSettings(), contextAt(kNow));
  EXPECT_THAT(view.notice, HasSubstr("or is not a Nimbara file.\nA stored value is not valid: "));
  EXPECT_THAT(view.notice, HasSubstr("temperatureUnit"));
  EXPECT_EQ(settingsView(settingsWith({}), contextAt(kNow)).notice, "");
}

TEST(SettingsPage, SaysWhetherTheWatchStartsAtLogin) {
  SettingsState state = settingsWith({});
  EXPECT_TRUE(settingsView(state, contextAt(kNow)).canStartAtLogin);
  EXPECT_FALSE(settingsView(state, contextAt(kNow)).startsAtLogin);
  state.watch = WatchStart::atLogin;
  EXPECT_TRUE(settingsView(state, contextAt(kNow)).startsAtLogin);
  state.watch = WatchStart::fromNextLogin;
  EXPECT_TRUE(settingsView(state, contextAt(kNow)).startsAtLogin);
  EXPECT_THAT(settingsView(state, contextAt(kNow)).startNote, HasSubstr("starting at your next login"));
  state.watch = WatchStart::changedByHand;
  EXPECT_FALSE(settingsView(state, contextAt(kNow)).canStartAtLogin);
  EXPECT_THAT(settingsView(state, contextAt(kNow)).startNote, HasSubstr("edited manually"));
  state.watch = WatchStart::byHand;
  state.watchProblem = "no room";
  EXPECT_EQ(settingsView(state, contextAt(kNow)).startNote, "Could not change this: no room.");
  state.isWatchChanging = true;
  EXPECT_FALSE(settingsView(state, contextAt(kNow)).canStartAtLogin);
  state.isWatchChanging = false;
  state.canChangeWatch = false;
  EXPECT_FALSE(settingsView(state, contextAt(kNow)).canStartAtLogin);
}

TEST(Folders, AreThoseThatThereAre) {
  SettingsState state = settingsWith({});
  EXPECT_THAT(folderViews(state, contextAt(kNow)), IsEmpty());
  state.cacheDirectory = "/c";
  auto const folders = folderViews(state, contextAt(kNow));
  ASSERT_EQ(folders.size(), 1);
  EXPECT_EQ(folders[0].sentence, "Cached forecasts: /c");
}

}  // namespace
}  // namespace nimbara
