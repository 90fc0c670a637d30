#include "desktop/states/notifications_states.h"
#include "desktop/views/notices/kind_titles.h"
#include "desktop/views/notices/notification_rows.h"
#include "desktop/views/notices/rules_view.h"
#include "feeds/alerts/gov_alerts.h"
#include "notifications/catalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using namespace nimbara::test;
using testing::SizeIs;

struct NotificationViews : testing::Test {
  NotificationsView shown(NotificationsState const& state) const { return notificationsView(state, view); }
  NotificationSettingView row(NotificationsState const& state, std::string_view key) const {
    for (std::string_view const group : ruleGroupNames()) {
      for (NotificationSettingView const& one : settingRowViews(group, state, view)) {
        if (one.key == key) return one;
      }
    }
    return {};
  }

  ViewContext view = contextAt(kNow);
};

/// Settings of notifications that have no row on their page, and why.
struct Elsewhere {
  std::string_view key;
  std::string_view why;
};

constexpr Elsewhere kElsewhere[] = {
    {"customNotifications", "the rules have an editor of their own"},
    {"notify_mutedKinds", "mutes are listed and lifted in a card of their own, and made from the log"},
    {"notify_snoozedUntil", "the pause has buttons of its own"},
    {"languageModelName", "stands on the page of settings, beside the model's address and key"},
    {"liveActivityEnabled", "switches the mark on the tray's picture, which is no notification"},
};

TEST_F(NotificationViews, HaveARowForEverySetting) {
  for (SettingDefinition const* const definition : settingsRegistry().all()) {
    bool const isOfRules =
        std::ranges::count(notificationSettings(), definition->key, &SettingDefinition::key) > 0;
    bool const isElsewhere = std::ranges::count(kElsewhere, definition->key, &Elsewhere::key) > 0;
    if (!isOfRules && !definition->key.starts_with("notify_")) continue;
    EXPECT_NE(findNotificationRow(definition->key) != nullptr, isElsewhere) << definition->key;
  }
  for (Elsewhere const& one : kElsewhere) EXPECT_NE(settingsRegistry().find(one.key), nullptr) << one.key;
}

TEST_F(NotificationViews, AreWordedInEveryLanguage) {
  for (auto const& [language, name] : Texts::languages()) {
    Texts const texts = Texts::load(language);
    for (NotificationGroup const& group : notificationGroups()) {
      EXPECT_TRUE(texts.translates("desktop.notifications.group." + std::string(group.name))) << group.name;
      for (NotificationRow const& one : group.rows) {
        std::string const key = "desktop.notifications." + std::string(one.key);
        EXPECT_TRUE(texts.translates(key) && texts.translates(key + ".hint")) << language << " " << key;
      }
    }
  }
}

struct WhoRow {
  bool isOurs;
  char const* holder;
  bool isStandIn;
  char const* beginning;
};

TEST_F(NotificationViews, SayWhoNotifies) {
  for (WhoRow const& who : {WhoRow{true, "window", false, "This window sends notifications"},
                            WhoRow{false, "watch", false, "The background service sends"},
                            WhoRow{false, "window", false, "Another window sends"},
                            WhoRow{false, "", false, "Another Nimbara program"},
                            WhoRow{true, "window", true, "Demo weather: nothing"}}) {
    NotificationsState state;
    state.isOurs = who.isOurs;
    state.holder = who.holder;
    state.isStandIn = who.isStandIn;
    EXPECT_TRUE(shown(state).notifier.starts_with(who.beginning)) << shown(state).notifier;
  }
}

TEST_F(NotificationViews, SayWhatIsWrong) {
  EXPECT_EQ(shown({}).trouble, "");
  EXPECT_EQ(shown({}).logNote, "No notifications yet.");
  NotificationsView const crowded = shown(crowdedState());
  EXPECT_EQ(crowded.trouble,
            "Notifications cannot be shown: the desktop's notification service is missing or not responding. "
            "Could not save your settings: the disk is full or the file is read-only.");
  EXPECT_EQ(crowded.test,
            "Could not send the test notification: there is no notification service on this desktop.");
  EXPECT_EQ(crowded.pause, "Paused until 18:00.");
}

TEST_F(NotificationViews, PausesEnd) {
  view.now = at("2026-11-21T17:59:59Z");
  EXPECT_TRUE(shown(crowdedState()).isPaused);
  view.now = at("2026-11-21T18:00:00Z");
  EXPECT_FALSE(shown(crowdedState()).isPaused);
}

TEST_F(NotificationViews, CountWhatIsOn) {
  auto const groups = ruleGroupViews(withSettings({{"notify_rainStart", true}}), view);
  ASSERT_THAT(groups, SizeIs(6));
  EXPECT_EQ(groups[1].title, "Weather");
  EXPECT_EQ(groups[1].summary, "3 of 10 on") << "rain and snow are on by themselves";
}

TEST_F(NotificationViews, ShowNumbersInTheUsersUnits) {
  NotificationSettingView wind = row({}, "notify_highWindThreshold");
  EXPECT_EQ(wind.value, 60);
  EXPECT_EQ(wind.unit, "km/h");
  EXPECT_EQ(wind.control, "number");
  EXPECT_TRUE(wind.isDetail);
  EXPECT_FALSE(wind.isEnabled) << "its switch is off";
  view.units = Units::imperial();
  wind = row(withSettings({{"notify_highWind", true}}), "notify_highWindThreshold");
  EXPECT_EQ(wind.value, 37);
  EXPECT_EQ(wind.unit, "mph");
  EXPECT_EQ(wind.from, 1);
  EXPECT_EQ(wind.to, 248);
  EXPECT_TRUE(wind.isEnabled);
  EXPECT_EQ(row({}, "notify_earthquakeMagnitude").value, 4);
  EXPECT_EQ(row({}, "notify_earthquakeMagnitude").decimals, 1);
  EXPECT_EQ(row({}, "notify_quietFrom").choice, "22");
  EXPECT_EQ(row({}, "notify_govAlertLevel").choice, "medium");
}

struct ShownNumber {
  char const* key;
  double shown;
  std::optional<SettingValue> stored;
};

TEST_F(NotificationViews, StoreMetricNumbers) {
  for (ShownNumber const& one :
       {ShownNumber{"notify_highWindThreshold", 40, SettingValue(std::int64_t{64})},
        ShownNumber{"notify_highWindThreshold", 0, SettingValue(std::int64_t{1})},
        ShownNumber{"notify_highWindThreshold", 9e9, SettingValue(std::int64_t{400})},
        ShownNumber{"notify_lightningRadius", 300, SettingValue(std::int64_t{50})},
        ShownNumber{"notify_earthquakeMagnitude", 4.5, SettingValue(4.5)},
        ShownNumber{"notify_rain", 1, std::nullopt}, ShownNumber{"contact", 1, std::nullopt}}) {
    EXPECT_EQ(settingFromShown(one.key, one.shown, Units::imperial()), one.stored) << one.key;
  }
}

/// What is stored of a number is shown as it was typed.
TEST_F(NotificationViews, KeepNumbersAsTheyWereTyped) {
  view.units = Units::imperial();
  for (int typed = 1; typed <= 248; ++typed) {
    auto const stored = settingFromShown("notify_highWindThreshold", typed, view.units);
    EXPECT_EQ(row(withSettings({{"notify_highWindThreshold", *stored}}), "notify_highWindThreshold").value,
              typed);
  }
}

TEST_F(NotificationViews, ListMutesWithTheirEnds) {
  auto const mutes = muteViews(crowdedState(), view);
  ASSERT_THAT(mutes, SizeIs(3));
  EXPECT_EQ(mutes[0].title, "Official warnings: wind (level Advisory)");
  EXPECT_EQ(mutes[0].until, "until Sunday 07:00");
  EXPECT_EQ(mutes[1].title, "Heavy rain");
  EXPECT_EQ(mutes[1].until, "forever");
  EXPECT_EQ(mutes[2].title, "Unknown notification (elsewhere)");
  view.now = at("2026-11-22T07:00:00Z");
  EXPECT_THAT(muteViews(crowdedState(), view), SizeIs(2));
}

TEST_F(NotificationViews, OfferEachKindToMuteOnce) {
  std::set<std::string> titles;
  std::size_t kinds = 0;
  for (OptionView const& option : muteOptions(view)) {
    EXPECT_TRUE(titles.insert(option.text).second) << option.text;
    kinds += static_cast<std::size_t>(std::ranges::count(option.value, '+')) + 1;
  }
  EXPECT_EQ(kinds, ruleCatalogue().size());
}

TEST_F(NotificationViews, EndPauses) {
  Calendar const lisbon = *Calendar::forZone("Europe/Lisbon");
  EXPECT_EQ(endOf(MuteSpan::hour, kNow, lisbon, 7), kNow + 1h);
  EXPECT_EQ(endOf(MuteSpan::tomorrow, kNow, lisbon, 7), at("2026-11-22T07:00:00Z"));
  EXPECT_EQ(endOf(MuteSpan::tomorrow, at("2026-11-21T00:30:00Z"), lisbon, 7), at("2026-11-22T07:00:00Z"));
  EXPECT_EQ(endOf(MuteSpan::forever, kNow, lisbon, 7), std::nullopt);
}

TEST_F(NotificationViews, TellTheLogNewestFirst) {
  NotificationsState const state = crowdedState();
  auto const all = logViews(state, LogFilter::all, view);
  ASSERT_THAT(all, SizeIs(500));
  EXPECT_EQ(all.front().when, "12:19");
  EXPECT_EQ(all.front().sentence, "12:19, " + std::string(50, 'n') +
                                      ", Testville, Bring a coat., Held back during quiet hours. Likely rain "
                                      "in one hour: up to 6 mm (minimum: 4 mm).");
  EXPECT_THAT(logViews(state, LogFilter::told, view), SizeIs(167));
  EXPECT_THAT(logViews(state, LogFilter::held, view), SizeIs(333));
}

TEST_F(NotificationViews, NameWhatHasNoTitle) {
  NotificationsState state;
  state.log = {logLine("", RuleOutcome::withdrawn)};
  EXPECT_EQ(logViews(state, LogFilter::all, view).front().title, "Heavy rain");
}

struct KindRow {
  char const* kind;
  char const* title;
};

TEST_F(NotificationViews, NameEveryKind) {
  CustomNotificationList own;
  own.rules = {gustRule("My gusts")};
  std::string const mine = own.rules.front().identifier();
  for (KindRow const& row : {KindRow{"rain", "Heavy rain"},
                             {"nws_flood", "Floods"},
                             {"hurricane_al", "Tropical storms, Atlantic"},
                             {"beta_stargazing_tonight", "Stargazing"},
                             {"gov", "Official warnings"},
                             {"gov:thunderstorm", "Official warnings: thunderstorm"},
                             {"gov:newsign", "Official warnings: other"},
                             {"gov:wind:critical", "Official warnings: wind (level Critical)"},
                             {"gov:info", "Official warnings (level Information)"},
                             {"travel_advisory:PT", "Travel advisories: Portugal"},
                             {"hurricane:al092026", "Tropical storm AL092026"},
                             {mine.c_str(), "My gusts"},
                             {"custom_lost", "A rule you removed"},
                             {"", "Unknown notification ()"}}) {
    EXPECT_EQ(kindTitle(row.kind, own, view), row.title) << row.kind;
  }
}

TEST_F(NotificationViews, NameEveryKindOfWarning) {
  for (auto const& [language, name] : Texts::languages()) {
    Texts const texts = Texts::load(language);
    for (std::size_t i = 0; i < enumNames<WarningKind>.size(); ++i) {
      std::string const word(wordOf(static_cast<WarningKind>(i)));
      EXPECT_TRUE(texts.translates("desktop.notifications.kind.gov." + word)) << language << " " << word;
    }
  }
}

struct MuteRow {
  char const* stored;
  char const* kind;
  char const* muted;
  char const* mutes;
};

TEST_F(NotificationViews, SayInTheLogWhatIsMutedNow) {
  for (MuteRow const& row :
       {MuteRow{"", "rain", "", ""},
        {"rain@2026-11-21T13:00:00Z", "rain", "Muted until 13:00.", "rain"},
        {"rain@2026-11-21T12:19:00Z", "rain", "", ""},
        {"rain", "rain_start", "", ""},
        {"gov", "gov:wind", "Muted forever.", "gov"},
        {"gov:wind:advisory,gov:wind", "gov:wind", "Muted forever.", "gov:wind:advisory+gov:wind"},
        {"gov:flood", "gov:wind", "", ""}}) {
    NotificationsState state = withSettings({{"notify_mutedKinds", std::string(row.stored)}});
    state.log = {logLine("Title", RuleOutcome::announced)};
    state.log.front().kind = row.kind;
    LogView const shown = logViews(state, LogFilter::all, view).front();
    EXPECT_EQ(shown.muted, row.muted) << row.stored;
    EXPECT_EQ(shown.mutes, row.mutes) << row.stored;
  }
}

TEST_F(NotificationViews, MuteLinesOfEarlierVersionsByTheirIdentifier) {
  NotificationsState state;
  state.log = {logLine("Rain", RuleOutcome::announced)};
  state.log.front().kind.clear();
  LogView const shown = logViews(state, LogFilter::all, view).front();
  EXPECT_EQ(shown.kind, "rain");
  EXPECT_EQ(shown.mute, "Mute “Heavy rain”");
}

struct RuleViews : NotificationViews {
  PlaceList places = snapshotOf(stateOf(mildWeek()))->places;
};

TEST_F(RuleViews, SayWhatARuleWatches) {
  auto const rules = ruleViews(crowdedState(), places, view);
  ASSERT_THAT(rules, SizeIs(3));
  EXPECT_EQ(rules[0].description, "Wind gust above 50.0km/h in the next 6 hours");
  EXPECT_EQ(rules[0].schedule, "Every day, as soon as it is forecast; selected place");
  EXPECT_FALSE(rules[0].isOrphan);
  EXPECT_TRUE(rules[2].isOrphan);
}

TEST_F(RuleViews, FindFaultsInADraft) {
  CustomNotification draft = newDraft(view.units);
  EXPECT_EQ(draftView(draft, places, view).fault, "Give the rule a title.");
  draft.title = "  ";
  EXPECT_EQ(draftView(draft, places, view).fault, "Give the rule a title.");
  draft.title = "Storm";
  EXPECT_EQ(draftView(draft, places, view).fault, "");
  draft.scheduledDays = {};
  EXPECT_EQ(draftView(draft, places, view).fault, "Choose at least one day.");
  draft.locationID = Uuid::named(kCurrentLocation, "lost");
  EXPECT_EQ(draftView(draft, places, view).fault, "Its place was removed. Choose another.");
}

/// Whatever is chosen first makes sense, and holds between its bounds.
TEST_F(RuleViews, SuggestALimitForEverySubject) {
  for (Units const& units : {Units::metric(), Units::imperial()}) {
    view.units = units;
    for (ConditionKind const& kind : conditionKinds()) {
      CustomNotification const draft = withKind(newDraft(units), kind.type, units);
      DraftView const shown = draftView(draft, places, view);
      EXPECT_EQ(shown.hasThreshold, !kind.isEvent()) << shown.kind;
      EXPECT_LE(shown.from, shown.threshold) << shown.kind;
      EXPECT_GE(shown.to, shown.threshold) << shown.kind;
      EXPECT_NEAR(std::remainder(shown.threshold, shown.step), 0, 1e-6)
          << shown.kind << ": " << shown.threshold;
      EXPECT_EQ(faultOf(draft), std::nullopt);
      auto const allowed = comparisonOptions(draft, view);
      EXPECT_TRUE(std::ranges::count(allowed, shown.comparison, &OptionView::value)) << shown.kind;
    }
  }
}

TEST_F(RuleViews, OfferARoundWindInEveryUnit) {
  for (auto const& [unit, offered] : {std::pair(WindUnit::kmh, 50.0),
                                      {WindUnit::mph, 30.0},
                                      {WindUnit::ms, 15.0},
                                      {WindUnit::knots, 25.0}}) {
    view.units.wind = unit;
    EXPECT_EQ(draftView(newDraft(view.units), places, view).threshold, offered);
  }
}

TEST_F(RuleViews, TakeLimitsInTheUsersUnits) {
  CustomNotification const warm = withKind(newDraft(view.units), ConditionType::temperature, view.units);
  EXPECT_NEAR(withThreshold(warm, 77, Units::imperial()).threshold, 25, 1e-9);
  EXPECT_NEAR(withThreshold(warm, 25, Units::metric()).threshold, 25, 1e-9);
  view.units = Units::imperial();
  EXPECT_EQ(draftView(withThreshold(warm, 77, view.units), places, view).description,
            "Temperature above 77.0°F in the next 24 hours");
}

TEST_F(RuleViews, OfferWhatWasChosenElsewhere) {
  CustomNotification draft = gustRule();
  draft.lookaheadHours = 7;
  auto const spans = spanOptions(draft, view);
  EXPECT_EQ(std::ranges::count(spans, "7", &OptionView::value), 1);
  EXPECT_EQ(spans.front().text, "now");
  EXPECT_EQ(checkHourOptions(view).front().value, "-1");
  EXPECT_THAT(rulePlaceOptions(draft, places, view), SizeIs(3));
  draft.locationID = Uuid::named(kCurrentLocation, "lost");
  auto const withLost = rulePlaceOptions(draft, places, view);
  ASSERT_THAT(withLost, SizeIs(4));
  EXPECT_EQ(withLost.back().value, draft.locationID->text());
  EXPECT_EQ(weekdayViews(draft, view).front().dayName, "Mon");
}

}  // namespace
}  // namespace nimbara
