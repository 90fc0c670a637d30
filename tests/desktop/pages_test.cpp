#include "base/text/number.h"
#include "desktop/states/page_states.h"
#include "desktop/window/desktop_window.h"
#include "offscreen.h"
#include "page_checks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtTest/QTest>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::IsEmpty;

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

TEST_P(Pages, AreDrawnWithoutAComplaint) {
  for (DesktopPage const page : everyPage()) {
    for (auto const& [theme, size] :
         {std::pair(DesktopTheme::light, WindowSize{360, 640}), {DesktopTheme::dark, {1280, 800}}}) {
      DesktopModel model(setting(), {});
      model.show(GetParam().snapshot());
      DesktopWindow const window(model, optionsOf(page, theme, size));
      ASSERT_NE(window.window(), nullptr);
      ASSERT_TRUE(awaitParts(window.window()));
      QImage const picture = window.window()->grabWindow();
      EXPECT_EQ(picture.width(), size.width);
      EXPECT_GT(colourCount(picture), 10) << enumName(page);
      keepPicture(picture, GetParam().name, page, theme, size);
      EXPECT_THAT(namelessBelow(window.window()->contentItem()), IsEmpty()) << enumName(page);
    }
  }
  EXPECT_THAT(complaints(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(States, Pages, testing::ValuesIn(kStates),
                         [](auto const& row) { return std::string(row.param.name); });

/// Pictures of it are finished at once.
std::shared_ptr<EngineSnapshot> withoutMovements(std::shared_ptr<EngineSnapshot> snapshot) {
  SettingsState settings = settingsWith({{"desktop_reducedMotion", std::string("on")}});
  snapshot->settings = std::make_shared<SettingsState const>(std::move(settings));
  return snapshot;
}

TEST_F(PageTest, LookTheSameAfterTheWindowGrewAndShrank) {
  for (DesktopPage const page : everyPage()) {
    if (page == DesktopPage::globe) continue;  // it turns
    DesktopModel model(setting(), {});
    model.show(withoutMovements(notifying(crowdedState())));
    DesktopWindow const window(model, optionsOf(page, DesktopTheme::light, {1440, 900}));
    QQuickWindow* const shown = window.window();
    ASSERT_TRUE(awaitParts(shown));
    QImage const before = settled(shown);
    for (QSize const size : {QSize(360, 640), QSize(2400, 1300), QSize(760, 500), QSize(1440, 900)}) {
      shown->resize(size);
      settled(shown);
    }
    // Edges of large letters are rounded anew.
    EXPECT_LE(greatestDifference(settled(shown), before), 16) << enumName(page);
  }
  EXPECT_THAT(complaints(), IsEmpty());
}

/// Below `root`, what has that text to be read.
QQuickItem* buttonNamed(QQuickItem* root, std::string const& start) {
  QQuickItem* found = nullptr;
  visitVisible(root, [&](QQuickItem* item) {
    bool const isButton = item->inherits("QQuickAbstractButton");
    // A page that is left stays visible for a moment.
    bool const isMeant = isButton && item->isEnabled() && accessibleName(item).starts_with(start);
    if (found == nullptr && isMeant) found = item;
  });
  return found;
}

struct Keyboard : PageTest {
  Keyboard() : window(model, optionsOf(DesktopPage::now, DesktopTheme::light, {1000, 700})) {
    model.show(snapshotOf(stateOf(mildWeek())));
    window.window()->requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.window()));
  }

  std::string page() const { return window.window()->property("page").toString().toStdString(); }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
    QTest::keyClick(window.window(), key, modifiers);
    QCoreApplication::processEvents();
  }

  struct Hazards : EngineActions {
    explicit Hazards(std::vector<std::string>& asked) : asked_(asked) {}
    void setQuakeRadius(double km) override { asked_.push_back("radius " + plainDecimal(km)); }
    void setQuakeMagnitude(double least) override { asked_.push_back("magnitude " + plainDecimal(least)); }
    std::vector<std::string>& asked_;
  };

  struct Mutes : NotificationActions {
    explicit Mutes(std::vector<std::string>& asked) : asked_(asked) {}
    void mute(std::string const& kinds, std::optional<Instant>) override {
      asked_.push_back("mute " + kinds);
    }
    std::vector<std::string>& asked_;
  };
  /// Once it has been made: what is being loaded may still move it.
  template <class IsDone>
  void click(std::string const& name, IsDone const& isDone) {
    EXPECT_TRUE(QTest::qWaitFor([&] {
      if (isDone()) return true;
      QQuickItem const* const button = buttonNamed(window.window()->contentItem(), name);
      if (button == nullptr) return false;
      QTest::mouseClick(window.window(), Qt::LeftButton, {},
                        button->mapToScene(button->boundingRect().center()).toPoint());
      return isDone();
    })) << name;
  }

  std::vector<std::string> asked;
  Hazards hazards{asked};
  Mutes mutes{asked};
  DesktopModel model{setting(), {.engine = hazards, .notifications = mutes}};
  DesktopWindow window;
};

TEST_F(Keyboard, ReachesThePages) {
  press(Qt::Key_2, Qt::ControlModifier);
  EXPECT_EQ(page(), "hours");
  press(Qt::Key_3, Qt::ControlModifier);
  EXPECT_EQ(page(), "hazards");
  press(Qt::Key_4, Qt::ControlModifier);
  EXPECT_EQ(page(), "map");
  press(Qt::Key_5, Qt::ControlModifier);
  EXPECT_EQ(page(), "air");
  press(Qt::Key_7, Qt::ControlModifier);
  EXPECT_EQ(page(), "places");
  press(Qt::Key_1, Qt::ControlModifier);
  EXPECT_EQ(page(), "now");
}

TEST_F(Keyboard, HearsTheHeadingOfThePageThatItGoesTo) {
  for (Qt::Key const key :
       {Qt::Key_2, Qt::Key_3, Qt::Key_4, Qt::Key_5, Qt::Key_6, Qt::Key_7, Qt::Key_8, Qt::Key_9, Qt::Key_1}) {
    press(key, Qt::ControlModifier);
    QQuickItem* const focused = window.window()->activeFocusItem();
    auto* const seen = QAccessible::queryAccessibleInterface(focused);
    ASSERT_NE(seen, nullptr) << page();
    EXPECT_EQ(seen->role(), QAccessible::Heading) << page();
    EXPECT_TRUE(focused->isVisible());
  }
}

TEST_F(Keyboard, GoesBetweenNavigationAndPage) {
  press(Qt::Key_2, Qt::ControlModifier);
  press(Qt::Key_Tab);
  QQuickItem* const left = window.window()->activeFocusItem();
  press(Qt::Key_F6);
  EXPECT_EQ(accessibleName(window.window()->activeFocusItem()), "Forecast");
  press(Qt::Key_F6);
  EXPECT_EQ(window.window()->activeFocusItem(), left);
  press(Qt::Key_1, Qt::ControlModifier);
  press(Qt::Key_F6);
  EXPECT_EQ(accessibleName(window.window()->activeFocusItem()), "Now");
  press(Qt::Key_F6);
  EXPECT_THAT(accessibleName(window.window()->activeFocusItem()), testing::HasSubstr("Testville"));
}

TEST_F(Keyboard, ScrollsThePage) {
  window.window()->resize(1000, 420);
  press(Qt::Key_2, Qt::ControlModifier);
  QQuickItem* scrolled = window.window()->activeFocusItem();
  while (scrolled != nullptr && !scrolled->inherits("QQuickFlickable")) scrolled = scrolled->parentItem();
  ASSERT_NE(scrolled, nullptr);
  ASSERT_TRUE(QTest::qWaitFor([&] { return scrolled->height() <= 420; }));
  auto const top = [&] { return scrolled->property("contentY").toDouble(); };
  double const lowest = scrolled->property("contentHeight").toDouble() - scrolled->height();
  ASSERT_GT(lowest, 400);
  press(Qt::Key_PageDown);
  double const page = top();
  EXPECT_GT(page, 0.6 * scrolled->height());
  EXPECT_LT(page, scrolled->height());
  press(Qt::Key_End);
  EXPECT_EQ(top(), lowest);
  press(Qt::Key_PageUp);
  EXPECT_EQ(top(), lowest - page);
  press(Qt::Key_Home);
  EXPECT_EQ(top(), 0);
  press(Qt::Key_Down);
  EXPECT_EQ(top(), 80);
}

TEST_F(Keyboard, ShowsWhatTheKeysDo) {
  auto const isShown = [&] {
    auto const names = namesBelow(window.window()->contentItem(), QAccessible::Heading);
    return std::ranges::count(names, "Keyboard shortcuts") == 1;
  };
  struct Row {
    char const* name;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    QString text;
  };
  QString const mark = QStringLiteral("?");
  for (Row const& row :
       {Row{"F1", Qt::Key_F1, Qt::NoModifier, {}}, Row{"US", Qt::Key_Question, Qt::ShiftModifier, mark},
        Row{"German", Qt::Key_ssharp, Qt::ShiftModifier, mark},
        Row{"Swiss", Qt::Key_Apostrophe, Qt::ShiftModifier, mark},
        Row{"of its own", Qt::Key_Question, Qt::NoModifier, mark},
        Row{"Ctrl", Qt::Key_Question, Qt::ControlModifier | Qt::ShiftModifier, {}}}) {
    EXPECT_FALSE(isShown()) << row.name;
    QTest::sendKeyEvent(QTest::Click, window.window(), row.key, row.text, row.modifiers);
    EXPECT_TRUE(QTest::qWaitFor(isShown)) << row.name;
    EXPECT_THAT(cutOffBelow(window.window()->contentItem()), IsEmpty());
    press(Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !isShown(); })) << row.name;
  }
}

TEST_F(Keyboard, GoesToTheSourcesAtOneClickFromAFailedCheckAndBack) {
  model.show(uncheckedHazards());
  for (char const* const from : {"now", "hazards"}) {
    window.window()->setProperty("page", QLatin1String(from));
    click("Sources", [&] { return page() == "sources"; });
    EXPECT_GT(model.sources()->places()->count(), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] {
      QQuickItem* const item = window.window()->activeFocusItem();
      return item != nullptr && accessibleName(item) == "Sources of official warnings";
    })) << from;
    press(Qt::Key_Escape);
    EXPECT_EQ(page(), from);
  }
  EXPECT_THAT(complaints(), IsEmpty());
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
  walkOver(window.window(), "");  // the heading has the keys first, and is not come back to
  int const closed = walkOver(window.window(), "");
  walkOver(window.window(), "Weather, ");
  EXPECT_GE(walkOver(window.window(), ""), closed + 10);
  walkOver(window.window(), "Add a rule");
  EXPECT_TRUE(model.notifications()->isEditing());
  EXPECT_GT(walkOver(window.window(), "Save"), closed + 20);
  EXPECT_THAT(complaints(), IsEmpty());
}

TEST_F(Keyboard, PointsAtEarthquakesAndFiltersThem) {
  model.show(manyHazards());
  press(Qt::Key_3, Qt::ControlModifier);
  std::set<int> pointedAt;
  for (int step = 0; step < 20; ++step) {
    press(Qt::Key_Tab);
    QQuickItem* const focused = window.window()->activeFocusItem();
    ASSERT_NE(focused, nullptr);
    if (focused->property("caption").isValid()) press(Qt::Key_Space);
    bool const isChart = QAccessible::queryAccessibleInterface(focused)->role() == QAccessible::Chart;
    if (isChart) press(Qt::Key_Right);
    if (focused->property("magnitude").isValid()) press(Qt::Key_Down);
    pointedAt.insert(model.hazards()->highlighted());
  }
  EXPECT_THAT(asked,
              testing::ElementsAre("radius 250", "radius 500", "radius 1000", "radius 2500", "radius 0",
                                   "magnitude -10", "magnitude 2.5", "magnitude 4.5", "magnitude 6"));
  EXPECT_THAT(pointedAt, testing::IsSupersetOf({-1, 0, 1})) << "on the map, then in the list";
  EXPECT_NE(model.hazards()->highlightedText(), QString());
}

TEST_F(Keyboard, OpensAWarningsText) {
  model.show(manyHazards());
  press(Qt::Key_3, Qt::ControlModifier);
  for (int step = 0; step < 60 && model.openAlert().isEmpty(); ++step) {
    press(Qt::Key_Tab);
    QQuickItem const* const focused = window.window()->activeFocusItem();
    if (focused == nullptr || !focused->property("alertId").isValid()) continue;
    press(Qt::Key_Down);
    press(Qt::Key_Return);
  }
  EXPECT_EQ(model.openAlert(),
            model.hazards()->warnings()->data(model.hazards()->warnings()->index(1), Qt::UserRole));
  EXPECT_THAT(model.warning()->value(QStringLiteral("content")).toString().toStdString(),
              testing::EndsWith("wwww"));
  press(Qt::Key_Escape);
  EXPECT_EQ(model.openAlert(), QString()) << "the sheet is closed";
  EXPECT_THAT(complaints(), IsEmpty());
}

TEST_F(Keyboard, ShowsAWarningAtOneClickAndTheNextAtAnother) {
  model.show(snapshotOf(alertState()));
  auto const shows = [&](char16_t const* title) {
    return [&, title] {
      return model.warning()->value(QStringLiteral("title")).toString() == QStringView(title);
    };
  };
  click("Critical: Warning 3", shows(u"Warning 3"));
  EXPECT_THAT(complaints(), IsEmpty());
  EXPECT_THAT(namelessBelow(window.window()->contentItem()), IsEmpty());
  click("Next warning", shows(u"Warning 7"));
  click("Close", [&] { return model.openAlert().isEmpty(); });
  EXPECT_EQ(model.openAlert(), QString());
}

TEST_F(Keyboard, ShowsTomorrowsHoursAtOneClick) {
  auto const sentence = model.days()->data(model.days()->index(1), model.days()->roleNames().key("sentence"));
  click(sentence.toString().toStdString(), [&] { return model.openDay() == 1; });
  EXPECT_NE(model.openDayTitle(), QString());
}

TEST_F(Keyboard, MutesTheLikeOfAWarningAtTwoClicks) {
  WeatherState state = stateOf(mildWeek());
  state.govAlerts = {alertOf(AlertSeverity::critical, "Flood")};
  state.govAlerts.front().isGovAlert = true;
  model.show(snapshotOf(state));
  click("Critical: Flood", [&] { return !model.openAlert().isEmpty(); });
  std::string const mute = model.warning()->value(QStringLiteral("mute")).toString().toStdString();
  ASSERT_THAT(mute, testing::HasSubstr("Mute"));
  click(mute, [&] { return !asked.empty(); });
  EXPECT_THAT(asked, testing::ElementsAre(testing::StartsWith("mute ")));
}

}  // namespace
}  // namespace nimbara
