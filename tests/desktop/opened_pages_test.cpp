#include "desktop/states/notifications_states.h"
#include "desktop/states/settings_states.h"
#include "desktop/window/desktop_window.h"
#include "page_checks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtTest/QTest>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::ElementsAre;
using testing::IsEmpty;

/// Many of everything with every rule switched on, in units with long names.
NotificationsState fullState(std::int64_t textSize) {
  SettingValues stored{
      {"notify_mutedKinds", std::string("gov:wind:advisory@2026-11-22T07:00:00Z,rain,elsewhere")},
      {"desktop_textSize", textSize}};
  for (SettingDefinition const& definition : notificationSettings()) {
    if (std::holds_alternative<bool>(definition.byDefault)) stored.emplace(definition.key, true);
  }
  NotificationsState state = crowdedState();
  state.settings = Settings(settingsRegistry(), std::move(stored));
  state.log.resize(6);
  for (LoggedNotification& line : state.log) line.title = "Official warning of the wind over the whole coast";
  state.log[1].kind = "gov:cloud.heavyrain.fill";
  state.log[2].kind = "snow";
  return state;
}

struct Reading {
  char const* name;
  char const* language;
  Qt::LayoutDirection direction;
  DesktopTheme theme;
  int width;
  std::int64_t percent;
};

void PrintTo(Reading const& row, std::ostream* out) {
  *out << row.name;
}

constexpr Reading kReadings[] = {
    {"wide", "en", Qt::LeftToRight, DesktopTheme::light, 1280, 100},
    {"wideDark", "pt", Qt::LeftToRight, DesktopTheme::dark, 1280, 100},
    {"narrow", "pt", Qt::LeftToRight, DesktopTheme::light, 360, 100},
    {"mirrored", "en", Qt::RightToLeft, DesktopTheme::light, 1280, 100},
    {"narrowMirrored", "zh", Qt::RightToLeft, DesktopTheme::dark, 360, 100},
    {"twice", "pt", Qt::LeftToRight, DesktopTheme::light, 1280, 200},
    {"narrowTwice", "pt", Qt::LeftToRight, DesktopTheme::dark, 360, 200},
    {"widest", "en", Qt::LeftToRight, DesktopTheme::light, 2400, 100},
};

struct Mirrored {
  explicit Mirrored(Qt::LayoutDirection direction) { QGuiApplication::setLayoutDirection(direction); }
  Mirrored(Mirrored const&) = delete;
  ~Mirrored() { QGuiApplication::setLayoutDirection(Qt::LeftToRight); }
};

/// What can be used and reaches beyond the card that it stands in.
std::vector<std::string> strayBelow(QQuickItem* root) {
  std::vector<std::string> stray;
  visitVisible(root, [&](QQuickItem* item) {
    if (!item->activeFocusOnTab()) return;
    QQuickItem* card = item->parentItem();
    while (card != nullptr && !card->inherits("QQuickRectangle")) card = card->parentItem();
    if (card == nullptr) return;
    double const left = item->mapToItem(card, {0, 0}).x();
    if (left < 0 || left + item->width() > card->width()) stray.push_back(accessibleName(item));
  });
  return stray;
}

/// A page with all that can be opened on it, in a window that is as high as it takes.
struct OpenedPages : OffscreenTest, testing::WithParamInterface<Reading> {
  static DesktopModel::Setting settingOf(char const* language) {
    Wording wording;
    wording.texts = std::make_shared<Texts const>(Texts::load(language));
    return {wording, {}, [] { return kNow; }, {}};
  }

  template <class Prepare>
  void expectWhole(DesktopPage page, std::shared_ptr<EngineSnapshot const> snapshot, Prepare const& prepare) {
    Reading const& reading = GetParam();
    Mirrored const mirrored(reading.direction);
    DesktopModel model(settingOf(reading.language), {});
    model.show(std::move(snapshot));
    DesktopOptions options;
    options.page = page;
    options.theme = reading.theme;
    options.size = WindowSize{reading.width, 7800};
    DesktopWindow const window(model, options);
    ASSERT_TRUE(awaitParts(window.window()));
    QQuickItem* const root = window.window()->contentItem();
    openAll(root);
    prepare(model);
    QImage const picture = settled(window.window());
    keepPicture(picture, std::string("opened-") + reading.name, page, reading.theme, *options.size);
    EXPECT_THAT(cutOffBelow(root), IsEmpty());
    EXPECT_THAT(strayBelow(root), IsEmpty());
    EXPECT_THAT(namelessBelow(root), IsEmpty());
    EXPECT_THAT(complaints(), IsEmpty());
  }
};

TEST_P(OpenedPages, ShowNotificationsWhole) {
  auto snapshot = notifying(fullState(GetParam().percent));
  snapshot->settings = std::make_shared<SettingsState const>(snapshot->notifications->settings);
  CustomNotification const edited = snapshot->notifications->rules.rules.back();
  expectWhole(DesktopPage::notifications, snapshot, [&](DesktopModel& model) {
    model.notifications()->editRule(QString::fromStdString(edited.id.text()));
    model.notifications()->tryDraft();
    model.notifications()->showTrial(
        {edited.id, true, "Next notification, Saturday 14:00: “Wind gust above 50.0 km/h now: 62.0 km/h”"});
  });
}

TEST_P(OpenedPages, ShowSettingsWhole) {
  auto snapshot = snapshotOf(stateOf(mildWeek()));
  snapshot->settings = std::make_shared<SettingsState const>(troubledSettings(GetParam().percent));
  expectWhole(DesktopPage::settings, snapshot, [](DesktopModel&) {});
}

INSTANTIATE_TEST_SUITE_P(Readings, OpenedPages, testing::ValuesIn(kReadings),
                         [](auto const& row) { return std::string(row.param.name); });

/// A log that is muted from and listened to again with the keys.
struct LogByKeys : OffscreenTest {
  LogByKeys() {
    NotificationsState state;
    state.log = {logLine("Rain", RuleOutcome::announced)};
    show(std::move(state));
    window.window()->requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.window()));
  }

  static DesktopOptions optionsOf() {
    DesktopOptions options;
    options.page = DesktopPage::notifications;
    options.size = WindowSize{1000, 900};
    return options;
  }
  struct Mutes : NotificationActions {
    explicit Mutes(std::vector<std::string>& asked) : asked_(asked) {}
    void mute(std::string const& kinds, std::optional<Instant> until) override {
      asked_.push_back("mute " + kinds + " " + (until ? formatIso8601(*until) : "for ever"));
    }
    void unmute(std::string const& kinds) override { asked_.push_back("unmute " + kinds); }
    std::vector<std::string>& asked_;
  };
  void show(NotificationsState state) { model.show(notifying(std::move(state))); }
  /// Walks on to what has that name, and presses it.
  bool press(std::string const& name) {
    for (int step = 0; step < 100; ++step) {
      QTest::keyClick(window.window(), Qt::Key_Tab);
      if (accessibleName(window.window()->activeFocusItem()) != name) continue;
      QTest::keyClick(window.window(), Qt::Key_Return);
      return true;
    }
    return false;
  }

  std::vector<std::string> asked;
  Mutes mutes{asked};
  DesktopModel model{{Wording(), {}, [] { return kNow; }, {}}, {.notifications = mutes}};
  DesktopWindow window{model, optionsOf()};
};

TEST_F(LogByKeys, MutesTheLikeOfAnEntryAndTellsItAgain) {
  EXPECT_TRUE(press("Mute “Heavy rain”"));
  EXPECT_TRUE(press("Mute “Heavy rain”, For 1 hour"));
  EXPECT_THAT(asked, ElementsAre("mute rain " + formatIso8601(kNow + std::chrono::hours(1))));
  NotificationsState muted = withSettings({{"notify_mutedKinds", std::string("rain")}});
  muted.log = {logLine("Rain", RuleOutcome::announced)};
  show(std::move(muted));
  EXPECT_TRUE(press("Unmute: Heavy rain"));
  EXPECT_EQ(asked.back(), "unmute rain");
  EXPECT_THAT(complaints(), IsEmpty());
}

}  // namespace
}  // namespace nimbara
