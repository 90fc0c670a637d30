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
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Notes what the window asks for, by the places' names.
struct Noting : EngineActions {
  explicit Noting(std::shared_ptr<EngineSnapshot> const& shown) : shown_(shown) {}

  std::string nameOf(Uuid id) const {
    if (id == kCurrentLocation) return "here";
    SavedPlace const* const place = shown_->places.find(id);
    return place == nullptr ? id.text() : place->name;
  }
  void selectPlace(Uuid id) override { asked.push_back("select " + nameOf(id)); }
  void addPlace(SavedPlace place) override { asked.push_back("add " + place.name); }
  void removePlace(Uuid id) override { asked.push_back("remove " + nameOf(id)); }
  void renamePlace(Uuid id, std::string name) override {
    asked.push_back("rename " + nameOf(id) + " " + name);
  }
  void movePlace(Uuid id, int position) override {
    asked.push_back("move " + nameOf(id) + " " + std::to_string(position));
  }
  void restorePlace(SavedPlace place, int position, bool select) override {
    asked.push_back("restore " + place.name + " " + std::to_string(position) + (select ? " selected" : ""));
  }
  void search(std::string text, SearchListener /*found*/) override { searched = std::move(text); }
  void searchOnline(std::string text, OnlineListener /*found*/) override {
    asked.push_back("online " + text);
  }
  void locate() override { asked.emplace_back("locate"); }
  void refresh() override { asked.emplace_back("refresh"); }
  void setStartAtLogin(bool wanted) override { asked.emplace_back(wanted ? "install" : "uninstall"); }
  void changeSetting(std::string key, std::string text) override { asked.push_back(key + " = " + text); }

  std::vector<std::string> asked;
  std::string searched;

 private:
  std::shared_ptr<EngineSnapshot> shown_;
};

/// A window with three places that is used with keys and mouse; what it asks for is noted.
struct Switching : OffscreenTest {
  explicit Switching(std::shared_ptr<EngineSnapshot> first = threePlaces(),
                     DesktopPage page = DesktopPage::now)
      : shown(std::move(first)), window(begun(), optionsOf(page)) {
    window.window()->requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.window()));
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.window()->property("hasDrawn").toBool(); }));
  }
  ~Switching() override { EXPECT_THAT(complaints(), IsEmpty()); }

  static std::shared_ptr<EngineSnapshot> threePlaces() {
    auto snapshot = snapshotOf(stateOf(mildWeek()), "Oslo");
    snapshot->places.places = {snapshot->places.places[0], savedPlace("Bergen", {10, 20}),
                               savedPlace("Tromsø", {20, 30})};
    return snapshot;
  }
  static DesktopOptions optionsOf(DesktopPage page) {
    DesktopOptions options;
    options.page = page;
    options.size = WindowSize{1100, 760};
    options.theme = DesktopTheme::light;
    return options;
  }
  DesktopModel& begun() {
    model.show(shown);
    return model;
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
    QTest::keyClick(window.window(), key, modifiers);
  }
  void type(char const* text) const {
    for (char const letter : std::string_view(text)) QTest::keyClick(window.window(), letter);
  }
  /// The engine's answer to what was typed last.
  void answer(std::vector<std::string> const& names) {
    std::vector<FoundPlace> found;
    double latitude = 50;
    for (std::string const& name : names) found.push_back({name, "Norway", "NO", "", {latitude += 1, 5}, ""});
    model.showFound(searched, std::move(found));
  }
  std::string page() const { return window.window()->property("page").toString().toStdString(); }
  QQuickItem* focused() const { return window.window()->activeFocusItem(); }
  std::string typed() const { return focused()->property("text").toString().toStdString(); }
  /// The item that a screen reader calls so, or so and more after a comma.
  QQuickItem* named(std::string const& name) const {
    QQuickItem* found = nullptr;
    visitVisible(window.window()->contentItem(), [&](QQuickItem* item) {
      std::string const said = accessibleName(item);
      if (found == nullptr && (said == name || (name.ends_with(",") && said.starts_with(name)))) found = item;
    });
    return found;
  }
  void click(std::string const& name) const {
    QQuickItem* const item = named(name);
    ASSERT_NE(item, nullptr) << name;
    QPointF const middle = item->mapToScene({item->width() / 2, item->height() / 2});
    QTest::mouseClick(window.window(), Qt::LeftButton, {}, middle.toPoint());
  }
  void keep(char const* name) const {
    QDir const folder(QString::fromUtf8(test::kPictures));
    folder.mkpath(QStringLiteral("."));
    QTest::qWait(50);
    window.window()->grabWindow().save(folder.filePath(QLatin1String(name)));
  }

  std::shared_ptr<EngineSnapshot> shown;
  Noting engine{shown};
  std::vector<std::string>& asked = engine.asked;
  std::string& searched = engine.searched;
  DesktopModel model{{Wording(), {}, [] { return kNow; }, {}}, {.engine = engine}};
  DesktopWindow window;
};

TEST_F(Switching, TakesTwoClicks) {
  click("Switch place: Oslo");
  ASSERT_TRUE(model.switcher()->isOpen());
  keep("switcher-light-1100.png");
  click("Tromsø,");
  EXPECT_THAT(asked, ElementsAre("select Tromsø"));
  EXPECT_FALSE(model.switcher()->isOpen());
}

TEST_F(Switching, OpensFromEveryPageOfAPlace) {
  for (char const* const name : {"now", "hours", "hazards"}) {
    window.window()->setProperty("page", QLatin1String(name));
    EXPECT_TRUE(QTest::qWaitFor([&] { return named("Switch place: Oslo") != nullptr; })) << name;
  }
}

TEST_F(Switching, OpensByAKeyAndGoesDownTheList) {
  press(Qt::Key_K, Qt::ControlModifier);
  EXPECT_TRUE(model.switcher()->isOpen());
  EXPECT_EQ(model.switcher()->selectedRow(), 0);
  press(Qt::Key_Down);
  press(Qt::Key_Return);
  EXPECT_THAT(asked, ElementsAre("select Bergen"));
  EXPECT_FALSE(model.switcher()->isOpen());
}

TEST_F(Switching, OpensByTypingWhereverTheKeysAre) {
  for (Qt::Key const pageKey :
       {Qt::Key_1, Qt::Key_2, Qt::Key_3, Qt::Key_4, Qt::Key_5, Qt::Key_6, Qt::Key_8, Qt::Key_9}) {
    press(pageKey, Qt::ControlModifier);
    type("t");
    EXPECT_TRUE(model.switcher()->isOpen()) << page();
    EXPECT_EQ(typed(), "t");
    press(Qt::Key_Escape);
    EXPECT_FALSE(model.switcher()->isOpen());
  }
  type(" ");
  press(Qt::Key_T, Qt::ControlModifier);
  EXPECT_FALSE(model.switcher()->isOpen());
}

TEST_F(Switching, TakesTheFirstThatIsMeant) {
  type("tro");
  answer({});
  press(Qt::Key_Return);
  EXPECT_THAT(asked, ElementsAre("select Tromsø"));
}

TEST_F(Switching, WaitsForTheSearchWhenEnterIsFaster) {
  type("lis");
  press(Qt::Key_Return);
  EXPECT_THAT(asked, IsEmpty());
  answer({"Lisbon", "Lisburn"});
  EXPECT_THAT(asked, ElementsAre("add Lisbon"));
}

TEST_F(Switching, SendsNothingThatEnterWasTooFastFor) {
  type("xyzzy");
  press(Qt::Key_Return);
  answer({});
  EXPECT_THAT(asked, IsEmpty()) << "the row that says what would be sent was not seen";
  press(Qt::Key_Return);
  EXPECT_THAT(asked, ElementsAre("online xyzzy"));
  EXPECT_TRUE(model.switcher()->isOpen());
}

TEST_F(Switching, GoesThroughThePlacesWithTheKeys) {
  press(Qt::Key_Right, Qt::AltModifier);
  press(Qt::Key_Left, Qt::AltModifier);
  EXPECT_THAT(asked, ElementsAre("select Bergen", "select Tromsø"));
}

TEST_F(Switching, ShowsAnotherPlaceFromTheTop) {
  auto* const scrolled = [&] {
    QQuickItem* found = nullptr;
    visitVisible(window.window()->contentItem(), [&](QQuickItem* item) {
      if (found == nullptr && item->inherits("QQuickFlickable") && item->height() > 500) found = item;
    });
    return found;
  }();
  ASSERT_NE(scrolled, nullptr);
  scrolled->setProperty("contentY", 120);
  model.show(threePlaces());
  EXPECT_EQ(scrolled->property("contentY").toDouble(), 120) << "news of the same place moves nothing";
  model.show(snapshotOf(stateOf(mildWeek()), "Another"));
  EXPECT_EQ(scrolled->property("contentY").toDouble(), 0);
  scrolled->setProperty("contentY", 120);
  press(Qt::Key_2, Qt::ControlModifier);
  press(Qt::Key_1, Qt::ControlModifier);
  EXPECT_EQ(scrolled->property("contentY").toDouble(), 0);
}

struct PlacesByHand : Switching {
  PlacesByHand() : Switching(threePlaces(), DesktopPage::places) {}
};

TEST_F(PlacesByHand, AreRenamedAndItIsTakenBack) {
  click("Rename: Bergen");
  EXPECT_EQ(typed(), "Bergen");
  type("Home");
  press(Qt::Key_Return);
  EXPECT_THAT(asked, ElementsAre("rename Bergen Home"));
  EXPECT_NE(named("Rename: Home"), nullptr) << "shown before it is stored";
  EXPECT_EQ(model.undoText().toStdString(), "Bergen renamed to Home.");
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(asked.back(), "rename Bergen Bergen");
  EXPECT_EQ(model.undoText(), QString());
}

TEST_F(PlacesByHand, KeepTheirNamesOnEscape) {
  click("Rename: Bergen");
  type("Home");
  press(Qt::Key_Escape);
  EXPECT_THAT(asked, IsEmpty());
  EXPECT_NE(named("Rename: Bergen"), nullptr);
}

TEST_F(PlacesByHand, AreDraggedToTheirOrder) {
  QQuickItem* const handle = named("Move: Oslo");
  QQuickItem* const last = named("Move: Tromsø");
  ASSERT_NE(handle, nullptr);
  ASSERT_NE(last, nullptr);
  auto const middleOf = [](QQuickItem* item) {
    return item->mapToScene({item->width() / 2, item->height() / 2}).toPoint();
  };
  QPoint const from = middleOf(handle);
  QPoint const to = middleOf(last) + QPoint(0, 10);
  QTest::mousePress(window.window(), Qt::LeftButton, {}, from);
  for (int step = 1; step <= 10; ++step) QTest::mouseMove(window.window(), from + (to - from) * step / 10);
  keep("places-dragged-light-1100.png");
  QTest::mouseRelease(window.window(), Qt::LeftButton, {}, to);
  EXPECT_THAT(asked, ElementsAre("move Oslo 3"));
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(asked.back(), "move Oslo 1");
}

TEST_F(PlacesByHand, MoveWithTheKeysOfTheirHandle) {
  named("Move: Bergen")->forceActiveFocus();
  press(Qt::Key_Down);
  EXPECT_THAT(asked, ElementsAre("move Bergen 3"));
}

TEST_F(PlacesByHand, ComeBackAfterTheirRemoval) {
  click("Remove: Oslo");
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_THAT(asked, ElementsAre("remove Oslo", "restore Oslo 1 selected"));
}

TEST_F(PlacesByHand, AreSearchedForByTyping) {
  named("Remove: Oslo")->forceActiveFocus();
  type("b");
  EXPECT_EQ(typed(), "b");
  EXPECT_FALSE(model.switcher()->isOpen());
  EXPECT_EQ(searched, "b");
}

struct FirstMinute : Switching {
  FirstMinute() : Switching(firstStart()) {}
};

TEST_F(FirstMinute, TakesTheFirstKeyIntoTheSearch) {
  EXPECT_EQ(page(), "now");
  keep("welcome-light-1100.png");
  type("lisb");
  EXPECT_EQ(typed(), "lisb");
  EXPECT_EQ(searched, "lisb");
  answer({"Lisboa (Lisbon)", "Lisburn"});
  keep("welcome-found-light-1100.png");
  press(Qt::Key_Return);
  EXPECT_THAT(asked, ElementsAre("add Lisboa (Lisbon)"));
}

TEST_F(FirstMinute, SearchesForAnExampleOnAClick) {
  click("Try St. Moritz");
  EXPECT_EQ(searched, "St. Moritz");
  answer({"St. Moritz"});
  press(Qt::Key_Return);
  EXPECT_THAT(asked, ElementsAre("add St. Moritz"));
}

TEST_F(FirstMinute, AsksForTheLocationOnAClick) {
  click("Use my location");
  EXPECT_THAT(asked, ElementsAre("locate"));
}

TEST_F(FirstMinute, OffersTheSearchOnlineWhereNothingIsFound) {
  type("qqq");
  answer({});
  EXPECT_NE(named("Search online for “qqq”"), nullptr);
  press(Qt::Key_Return);
  EXPECT_THAT(asked, ElementsAre("online qqq"));
}

TEST_F(FirstMinute, GoesOnWithTheOutlinesOfTheWeather) {
  model.show(snapshotOf(loadingState()));
  EXPECT_EQ(model.first()->arrival()->value(QStringLiteral("phase")).toString(), QLatin1String("loading"));
  EXPECT_NE(named("Switch place: Testville"), nullptr);
}

TEST_F(FirstMinute, AsksOneQuestionOnce) {
  model.show(firstForecast());
  EXPECT_NE(named("Get notifications when Nimbara is closed?"), nullptr);
  click("Turn on");
  EXPECT_THAT(asked, ElementsAre("install", "desktop_askedBackground = true"));
  EXPECT_EQ(named("Get notifications when Nimbara is closed?"), nullptr);
}

TEST_F(FirstMinute, TakesNoForAnAnswer) {
  model.show(firstForecast());
  click("Not now");
  EXPECT_THAT(asked, ElementsAre("desktop_askedBackground = true"));
}

TEST_F(FirstMinute, TriesAgainWhereTheFirstForecastFailed) {
  model.show(snapshotOf(failedState()));
  click("Try again");
  EXPECT_THAT(asked, Contains("refresh"));
}

}  // namespace
}  // namespace nimbara
