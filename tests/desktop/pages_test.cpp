#include "desktop/window/desktop_window.h"
#include "notifications_states.h"
#include "offscreen.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtTest/QTest>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::IsEmpty;

WeatherState polarState() {
  WeatherState state = stateOf(mildWeek());
  state.weatherData->location.latitude = 80;
  return state;
}

WeatherState staleState() {
  WeatherState state = stateOf(mildWeek());
  state.isShowingStaleData = true;
  state.lastUpdated = kNow - std::chrono::days(3);
  state.error = AppError{AppError::Case::networkError, "The service has a fault"};
  return state;
}

WeatherState alertState() {
  WeatherState state = stateOf(mildWeek());
  for (int i = 0; i < 500; ++i) {
    state.govAlerts.push_back(alertOf(static_cast<AlertSeverity>(i % 4), "Warning " + std::to_string(i)));
    state.govAlerts.back().description = std::string(2000, 'w');
  }
  return state;
}

WeatherState unknownState() {
  WeatherState state = stateOf(mildWeek());
  state.weatherData->current.condition = WeatherConditionCode::unknown;
  for (HourlyForecast& hour : state.weatherData->allHourly) hour.condition = WeatherConditionCode::unknown;
  return state;
}

WeatherState failedState() {
  WeatherState state;
  state.error = AppError{AppError::Case::offline, {}};
  return state;
}

std::shared_ptr<DesktopSnapshot> noPlaces() {
  auto snapshot = std::make_shared<DesktopSnapshot>();
  snapshot->problem = "the settings cannot be read";
  return snapshot;
}

struct StateRow {
  char const* name;
  std::shared_ptr<DesktopSnapshot> (*snapshot)();
};

constexpr StateRow kStates[] = {
    {"fresh", [] { return snapshotOf(stateOf(mildWeek())); }},
    {"stale", [] { return snapshotOf(staleState()); }},
    {"failed", [] { return snapshotOf(failedState()); }},
    {"noPlaces", noPlaces},
    {"alerts", [] { return snapshotOf(alertState()); }},
    {"polar", [] { return snapshotOf(polarState()); }},
    {"unknown", [] { return snapshotOf(unknownState()); }},
    {"notifications", [] { return notifying(crowdedState()); }},
    {"longName",
     [] {
       return snapshotOf(stateOf(mildWeek()), "Llanfair-upon-the-very-long-and-winding-river-by-the-old-sea");
     }},
};

struct PageTest : OffscreenTest {
  static DesktopModel::Setting setting() {
    return {Wording(), {}, [] { return kNow; }, {}};
  }
  static DesktopOptions optionsOf(DesktopPage page, DesktopTheme theme, WindowSize size) {
    DesktopOptions options;
    options.page = page;
    options.theme = theme;
    options.size = size;
    return options;
  }
};

struct Pages : PageTest, testing::WithParamInterface<StateRow> {};

/// Whoever can be reached by keys and says nothing to those who listen.
void collectNameless(QQuickItem* item, std::vector<std::string>& nameless) {
  if (!item->isVisible() || !item->isEnabled()) return;
  if (item->activeFocusOnTab()) {
    if (accessibleName(item).empty()) nameless.emplace_back(item->metaObject()->className());
  }
  for (QQuickItem* const child : item->childItems()) collectNameless(child, nameless);
}

TEST_P(Pages, AreDrawnWithoutAComplaint) {
  for (DesktopPage const page :
       {DesktopPage::now, DesktopPage::hours, DesktopPage::places, DesktopPage::notifications}) {
    for (auto const& [theme, size] :
         {std::pair(DesktopTheme::light, WindowSize{360, 640}), {DesktopTheme::dark, {1280, 800}}}) {
      DesktopModel model(setting(), {});
      model.show(GetParam().snapshot());
      DesktopWindow const window(model, optionsOf(page, theme, size));
      ASSERT_NE(window.window(), nullptr);
      ASSERT_TRUE(QTest::qWaitFor([&] { return window.window()->property("hasDrawn").toBool(); }));
      QImage const picture = window.window()->grabWindow();
      EXPECT_EQ(picture.width(), size.width);
      EXPECT_GT(colourCount(picture), 10) << enumName(page);
      std::vector<std::string> nameless;
      collectNameless(window.window()->contentItem(), nameless);
      EXPECT_THAT(nameless, IsEmpty()) << enumName(page);
    }
  }
  EXPECT_THAT(complaints(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(States, Pages, testing::ValuesIn(kStates),
                         [](auto const& row) { return std::string(row.param.name); });

struct Keyboard : PageTest {
  Keyboard() : window(model, optionsOf(DesktopPage::now, DesktopTheme::light, {1000, 700})) {
    model.show(snapshotOf(stateOf(mildWeek())));
    window.window()->requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.window()));
  }

  std::string page() const { return window.window()->property("page").toString().toStdString(); }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
    QTest::keyClick(window.window(), key, modifiers);
  }

  DesktopModel model{setting(), {}};
  DesktopWindow window;
};

TEST_F(Keyboard, ReachesThePages) {
  press(Qt::Key_2, Qt::ControlModifier);
  EXPECT_EQ(page(), "hours");
  press(Qt::Key_4, Qt::ControlModifier);
  EXPECT_EQ(page(), "places");
  press(Qt::Key_1, Qt::ControlModifier);
  EXPECT_EQ(page(), "now");
}

TEST_F(Keyboard, OpensADay) {
  press(Qt::Key_2, Qt::ControlModifier);
  for (int step = 0; step < 40 && model.openDay() < 0; ++step) {
    press(Qt::Key_Tab);
    QQuickItem const* const focused = window.window()->activeFocusItem();
    bool const isDay = focused != nullptr && focused->parentItem() != nullptr &&
                       focused->parentItem()->property("barFrom").isValid();
    if (isDay) press(Qt::Key_Return);
  }
  EXPECT_EQ(model.openDay(), 0);
}

/// Walks with the keys over the whole page, pressing what has that name.
int walkOver(QQuickWindow* window, std::string const& pressed) {
  int stops = 0;
  QQuickItem const* first = nullptr;
  for (; stops < 400; ++stops) {
    QTest::keyClick(window, Qt::Key_Tab);
    QQuickItem* const item = window->activeFocusItem();
    if (item == first) break;
    if (first == nullptr) first = item;
    std::string const name = accessibleName(item);
    EXPECT_NE(name, "") << item->metaObject()->className();
    if (!pressed.empty() && name.starts_with(pressed)) QTest::keyClick(window, Qt::Key_Return);
  }
  return stops;
}

TEST_F(Keyboard, OpensGroupsOfRulesAndWritesARule) {
  model.show(notifying(crowdedState()));
  window.window()->setProperty("page", QStringLiteral("notifications"));
  int const closed = walkOver(window.window(), "");
  walkOver(window.window(), "Weather, ");
  EXPECT_GE(walkOver(window.window(), ""), closed + 10);
  walkOver(window.window(), "Add a rule");
  EXPECT_TRUE(model.notifications()->isEditing());
  EXPECT_GT(walkOver(window.window(), "Save"), closed + 20);
  EXPECT_THAT(complaints(), IsEmpty());
}

TEST_F(Keyboard, ShowsTheSearchWithoutAPlace) {
  model.show(noPlaces());
  EXPECT_EQ(page(), "places");
}

}  // namespace
}  // namespace nimbara
