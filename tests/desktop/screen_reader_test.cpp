#include "desktop/globe/globe_states.h"
#include "desktop/states/page_states.h"
#include "desktop/window/desktop_window.h"
#include "page_checks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDesktopServices>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QtTest/QTest>
#include <map>
#include <set>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::Contains;
using testing::IsEmpty;

/// Counts whatever a page asks for; answers nothing.
struct Asked : EngineActions, GlobeActions, NotificationActions, StationActions {
  void refresh() override { ++count; }
  void selectPlace(Uuid /*id*/) override { ++count; }
  void addPlace(SavedPlace /*place*/) override { ++count; }
  void removePlace(Uuid /*id*/) override { ++count; }
  void restorePlace(SavedPlace /*place*/, int /*position*/, bool /*select*/) override { ++count; }
  void movePlace(Uuid /*id*/, int /*position*/) override { ++count; }
  void chooseNotifications(Uuid /*id*/, PlaceChoice /*choice*/) override { ++count; }
  void search(std::string /*text*/, SearchListener /*found*/) override { ++count; }
  void searchOnline(std::string /*text*/, OnlineListener /*found*/) override { ++count; }
  void locate() override { ++count; }
  void removeCurrentLocation() override { ++count; }
  void changeSetting(std::string /*key*/, std::string /*text*/) override { ++count; }
  void setStartAtLogin(bool /*wanted*/) override { ++count; }
  void setQuakeRadius(double /*km*/) override { ++count; }
  void setQuakeMagnitude(double /*least*/) override { ++count; }

  std::shared_ptr<GlobeState const> tick() override {
    GlobeStateMaker maker;
    return maker.group("stations").satellite("ISS", {0, 0}, 1.06, true).made();
  }
  void choose(std::optional<std::uint32_t> /*entry*/) override { ++count; }
  void setHidden(std::string_view /*legendRow*/, bool /*isHidden*/) override { ++count; }

  void set(std::string /*key*/, SettingValue /*value*/) override { ++count; }
  void mute(std::string const& /*kinds*/, std::optional<Instant> /*until*/) override { ++count; }
  void unmute(std::string const& /*kinds*/) override { ++count; }
  void pause(std::optional<Instant> /*until*/) override { ++count; }
  void saveRule(CustomNotification /*rule*/) override { ++count; }
  void removeRule(Uuid /*id*/) override { ++count; }
  void enableRule(Uuid /*id*/, bool /*isEnabled*/) override { ++count; }
  void tryRule(CustomNotification /*rule*/, TrialListener /*answered*/) override { ++count; }
  void postTest() override { ++count; }

  void follow(StationActions::Listener listener) override { stationListener = std::move(listener); }
  void look() override {
    ++count;
    stationListener(stationDesk());
  }
  void choose(std::string /*station*/) override { ++count; }
  void lookAround() override { ++count; }
  void chooseAround(std::string /*station*/) override { ++count; }
  void unlink() override { ++count; }

  StationActions::Listener stationListener;

  int count = 0;
};

/// Addresses and folders that a page opens outside of the window.
class Opened {
 public:
  Opened() : component_(&engine_) {
    component_.setData(
        "import QtQml\nQtObject { signal open(url address); property int count: 0; onOpen: ++count }",
        QUrl());
    object_.reset(component_.create());
    for (char const* const scheme : kSchemes)
      QDesktopServices::setUrlHandler(QLatin1String(scheme), object_.get(), "open");
  }
  ~Opened() {
    for (char const* const scheme : kSchemes) QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
  }

  int count() const { return object_->property("count").toInt(); }

 private:
  static constexpr char const* kSchemes[] = {"http", "https", "file"};
  QQmlEngine engine_;
  QQmlComponent component_;
  std::unique_ptr<QObject> object_;
};

bool canBePressed(QAccessibleInterface& node) {
  auto* const actions = node.actionInterface();
  return actions != nullptr && actions->actionNames().contains(QAccessibleActionInterface::pressAction());
}

bool isPressedByMouse(QAccessible::Role role) {
  constexpr QAccessible::Role kPressed[] = {QAccessible::Button,      QAccessible::CheckBox,
                                            QAccessible::RadioButton, QAccessible::Link,
                                            QAccessible::ComboBox,    QAccessible::PageTab};
  return std::ranges::count(kPressed, role) > 0;
}

std::string described(QAccessibleInterface& node) {
  return std::to_string(node.role()) + " " + node.text(QAccessible::Name).toStdString();
}

/// A window with a screen reader that starts after it.
struct ScreenReader : OffscreenTest {
  ScreenReader() : window(model, optionsOf()) { QAccessible::setActive(true); }
  ~ScreenReader() override { QAccessible::setActive(false); }

  static DesktopOptions optionsOf() {
    DesktopOptions options;
    options.theme = DesktopTheme::light;
    options.size = WindowSize{1280, 4000};
    return options;
  }

  void show(DesktopPage page, std::shared_ptr<EngineSnapshot const> snapshot) {
    model.show(std::move(snapshot));
    open(page);
    ASSERT_TRUE(awaitParts(window.window()));
    QCoreApplication::processEvents();
  }
  void open(DesktopPage page) { window.window()->setProperty("page", viewName(enumName(page))); }
  QQuickItem* root() { return window.window()->contentItem(); }

  /// What is heard of the whole window, with all states, and how near the globe is.
  std::string heard() {
    QVector3D const eye = model.globe()->eye();
    std::string all = std::to_string(asked.count + opened.count());
    for (int axis = 0; axis < 3; ++axis) all += " " + std::to_string(eye[axis]);
    visitAccessible(root(), [&](QAccessibleInterface& node) {
      QAccessible::State const state = node.state();
      all += described(node) + node.text(QAccessible::Value).toStdString() + (state.checked ? "+" : "-") +
             (state.expanded ? "+" : "-") + (state.selected ? "+" : "-") + (state.disabled ? "+" : "-") +
             "\n";
    });
    return all;
  }

  /// What can be pressed and was not yet.
  QAccessibleInterface* unpressed(std::set<std::string> const& pressed) {
    QAccessibleInterface* found = nullptr;
    visitAccessible(root(), [&](QAccessibleInterface& node) {
      bool const isChosen = node.role() == QAccessible::RadioButton && node.state().checked;
      bool const isIdle = node.state().disabled || node.state().selected || isChosen;
      if (found == nullptr && !isIdle && canBePressed(node) && !pressed.contains(described(node)))
        found = &node;
    });
    return found;
  }

  Asked asked;
  Opened opened;
  DesktopModel model{{Wording(), {}, [] { return kNow; }, {}}, {asked, &asked, asked, asked}};
  DesktopWindow window;
};

struct HeardRow {
  char const* name;
  DesktopPage page;
  std::shared_ptr<EngineSnapshot> (*snapshot)();
};

std::shared_ptr<EngineSnapshot> severalWarnings() {
  auto snapshot = manyHazards();
  WeatherState state = *snapshot->weather;
  state.govAlerts.resize(3);
  snapshot->weather = std::make_shared<WeatherState const>(std::move(state));
  return snapshot;
}

std::shared_ptr<EngineSnapshot> shortLog() {
  NotificationsState state = crowdedState();
  state.log.resize(3);
  return notifying(std::move(state));
}

constexpr HeardRow kHeard[] = {
    {"now", DesktopPage::now, severalWarnings},
    {"hours", DesktopPage::hours, [] { return snapshotOf(stateOf(mildWeek())); }},
    {"hazards", DesktopPage::hazards, severalWarnings},
    {"map", DesktopPage::map, severalWarnings},
    {"air", DesktopPage::air, [] { return withAir(snapshotOf(stateOf(mildWeek())), airOf); }},
    {"globe", DesktopPage::globe, [] { return snapshotOf(stateOf(mildWeek())); }},
    {"places", DesktopPage::places, here},
    {"notifications", DesktopPage::notifications, shortLog},
    {"settings", DesktopPage::settings, troubled},
    {"sources", DesktopPage::sources, uncheckedHazards},
    {"station", DesktopPage::station, [] { return withStation(snapshotOf(stateOf(mildWeek()))); }},
};

void PrintTo(HeardRow const& row, std::ostream* out) {
  *out << row.name;
}

struct EveryAction : ScreenReader, testing::WithParamInterface<HeardRow> {};

TEST_P(EveryAction, IsOfferedWhereTheMousePresses) {
  show(GetParam().page, GetParam().snapshot());
  int count = 0;
  visitAccessible(root(), [&](QAccessibleInterface& node) {
    if (!isPressedByMouse(node.role())) return;
    ++count;
    EXPECT_TRUE(canBePressed(node)) << described(node);
  });
  EXPECT_GT(count, 7);
}

TEST_P(EveryAction, HasAnEffect) {
  constexpr int kMost = 400;
  show(GetParam().page, GetParam().snapshot());
  std::set<std::string> pressed;
  while (QAccessibleInterface* const node = unpressed(pressed)) {
    ASSERT_LT(pressed.size(), kMost);
    // Away from the place, to which a button leads back.
    model.globe()->turn(8, 4);
    model.map()->drag(150, 90);
    std::string const name = described(*node), before = heard();
    pressed.insert(name);
    node->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCoreApplication::processEvents();
    EXPECT_NE(heard(), before) << name;
    open(GetParam().page);
    QCoreApplication::processEvents();
  }
  EXPECT_GT(pressed.size(), 7U);
  EXPECT_THAT(complaints(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Pages, EveryAction, testing::ValuesIn(kHeard),
                         [](auto const& row) { return std::string(row.param.name); });

/// Roles and states that the toolkit would replace by its own.
TEST_F(ScreenReader, HearsRolesAndStates) {
  show(DesktopPage::hazards, severalWarnings());
  EXPECT_THAT(namesBelow(root(), QAccessible::PageTab), Contains("Hazards"));
  std::map<std::string, QAccessible::State> states;
  auto const look = [&] {
    visitAccessible(root(), [&](QAccessibleInterface& node) {
      states[node.text(QAccessible::Name).toStdString()] = node.state();
    });
  };
  look();
  EXPECT_TRUE(states["Hazards"].selected);
  EXPECT_FALSE(states["Now"].selected);
  auto const chip = std::ranges::find_if(states, [](auto const& row) { return row.second.checked; });
  ASSERT_NE(chip, states.end());
  EXPECT_TRUE(chip->second.checkable);

  show(DesktopPage::notifications, shortLog());
  look();
  auto const group = std::ranges::find_if(
      states, [](auto const& row) { return row.first.starts_with("Weather, ") && row.second.expandable; });
  ASSERT_NE(group, states.end());
  EXPECT_TRUE(group->second.collapsed);
  EXPECT_FALSE(group->second.checkable);
}

TEST_F(ScreenReader, ReadsListsInTheirOrderAfterScrolling) {
  show(DesktopPage::hazards, manyHazards());
  QQuickItem* list = nullptr;
  visitVisible(root(), [&](QQuickItem* item) {
    if (item->inherits("QQuickListView") && item->property("count").toInt() == 500) list = item;
  });
  ASSERT_NE(list, nullptr);
  for (double const top : {0.0, 9000.0, 4000.0, 4300.0}) {
    list->setProperty("contentY", top);
    QCoreApplication::processEvents();
    auto* const seen = QAccessible::queryAccessibleInterface(list);
    ASSERT_EQ(seen->role(), QAccessible::List);
    int last = -1'000'000, entries = 0;
    for (int i = 0; i < seen->childCount(); ++i) {
      if (seen->child(i)->role() != QAccessible::ListItem) continue;
      int const y = seen->child(i)->rect().y();
      EXPECT_GT(y, last) << top;
      EXPECT_EQ(seen->indexOfChild(seen->child(i)), i);
      last = y;
      ++entries;
    }
    EXPECT_GT(entries, 5);
  }
}

TEST_F(ScreenReader, HearsTheNamesOfScrollBars) {
  show(DesktopPage::hazards, manyHazards());
  auto const bars = namesBelow(root(), QAccessible::ScrollBar);
  EXPECT_GE(bars.size(), 2U);
  EXPECT_THAT(bars, testing::Each("Scroll bar"));
}

}  // namespace
}  // namespace nimbara
