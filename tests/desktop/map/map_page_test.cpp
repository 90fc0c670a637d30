#include "desktop/offscreen.h"
#include "desktop/states/page_states.h"
#include "desktop/window/desktop_window.h"
#include "desktop/window/painting/map/map_labels.h"
#include "desktop/window/painting/map/map_lines.h"
#include "gazetteer/gazetteer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtTest/QTest>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(MapScale, TakesTheLongestThatFits) {
  ViewContext context = contextAt(kNow);
  EXPECT_EQ(mapScale(1000, 120, context).text, "100\u00A0km");
  EXPECT_NEAR(mapScale(1000, 120, context).width, 100, 1e-9);
  EXPECT_EQ(mapScale(9, 120, context).text, "1\u00A0km");
  EXPECT_EQ(mapScale(8, 120, context).text, "500\u00A0m");
  context.units = Units::imperial();
  EXPECT_EQ(mapScale(1000, 120, context).text, "50\u00A0mi");
  EXPECT_EQ(mapScale(9, 120, context).text, "2000\u00A0ft");
}

TEST(MapLines, GoOnBeyondTheDateLineAndAreSeenOnBothSides) {
  MapLine const ring = mapLine({{-20, 178}, {-20, -178}, {-15, -178}, {-15, 178}, {-20, 178}});
  EXPECT_NEAR(ring.west, 0.9944, 1e-3);
  EXPECT_NEAR(ring.east, 1.0056, 1e-3);
  MapWindow const window{{-128, 512}, {256, 256}, 1024};
  WorldTurns const turns = window.turns(ring);
  EXPECT_EQ(turns.first, -1);
  EXPECT_EQ(turns.last, -1);
  QPainterPath path;
  addRing(ring, window, path);
  EXPECT_TRUE(path.contains(QPointF(128, window.at(mercatorOf({-17, 0})).y())));
  EXPECT_FALSE(path.contains(QPointF(100, window.at(mercatorOf({-17, 0})).y())));
}

TEST(MapLabels, KeepApart) {
  LabelRoom room;
  EXPECT_TRUE(room.take({0, 0, 10, 10}));
  EXPECT_FALSE(room.take({9, 9, 10, 10}));
  EXPECT_TRUE(room.take({11, 0, 10, 10}));
  EXPECT_GT(leastPopulation(2), 1'000'000);
  EXPECT_LT(leastPopulation(12), 1'000);
}

TEST(MapLabels, NameACityBeforeItsParts) {
  auto const towns = mapTowns(allCities());
  auto const placeOf = [&towns](std::string_view name) {
    return std::ranges::find(towns, name, &MapTown::name) - towns.begin();
  };
  EXPECT_LT(placeOf("Leipzig"), placeOf("Kleinzschocher"));
  EXPECT_LT(placeOf("Leipzig"), placeOf("Großzschocher"));
  EXPECT_LT(placeOf("Memphis"), placeOf("New South Memphis")) << "with more inhabitants, they say";
  EXPECT_LT(placeOf("Kleinzschocher"), placeOf("Markkleeberg"));
  EXPECT_LT(placeOf("Berlin"), placeOf("Leipzig"));
}

TEST(MapLabels, LeaveThePartsOfATownToACloserLook) {
  GreaterTowns towns;
  EXPECT_FALSE(towns.hidesAt({100, 100}, 600'000));
  EXPECT_TRUE(towns.hidesAt({120, 100}, 50'000));
  EXPECT_TRUE(towns.hidesAt({100, 133}, 300'000));
  EXPECT_FALSE(towns.hidesAt({100, 135}, 50'000));
  EXPECT_FALSE(towns.hidesAt({140, 100}, 20'000)) << "what is hidden hides nobody";
  EXPECT_FALSE(towns.hidesAt({120, 100}, 300'001)) << "a twin";
}

/// A place in Berlin with a warning about it.
std::shared_ptr<EngineSnapshot> warned() {
  WeatherState state = stateOf(mildWeek());
  WeatherAlert alert = alertOf(AlertSeverity::critical, "Gale");
  alert.isGovAlert = true;
  alert.polygons = {{"51.5,12.5 51.5,14.5 53.5,14.5 53.5,12.5 51.5,12.5"}};
  state.govAlerts = {alert};
  WeatherAlert nowhere = alertOf(AlertSeverity::advisory, "Fog");
  nowhere.isGovAlert = true;
  state.govAlerts.push_back(nowhere);
  auto snapshot = snapshotOf(state, "Berlin");
  snapshot->place = Place{{52.5, 13.4}, "Berlin", "DE", ""};
  return snapshot;
}

struct MapPage : OffscreenTest {
  static DesktopOptions options(DesktopTheme theme) {
    DesktopOptions made;
    made.page = DesktopPage::map;
    made.theme = theme;
    made.size = WindowSize{1000, 700};
    return made;
  }

  explicit MapPage(DesktopTheme theme = DesktopTheme::light) : window(model, options(theme)) {
    model.show(warned());
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.window()->property("hasDrawn").toBool(); }));
    item = window.window()->findChild<QQuickItem*>(QStringLiteral("map"));
  }

  MapModel& map() { return *model.map(); }
  QImage picture() {
    QCoreApplication::processEvents();
    return window.window()->grabWindow();
  }
  /// The colour over a place.
  QColor over(QImage const& picture, Coordinate place) {
    MapPoint const at = pixelOf(map().view(), mercatorOf(place));
    QPointF const in = item->mapToScene(QPointF(at.x, at.y));
    return picture.pixelColor(in.toPoint());
  }
  void press(Qt::Key key) { QTest::keyClick(window.window(), key); }

  DesktopModel model{{Wording(), {}, [] { return kNow; }, {}}, {}};
  DesktopWindow window;
  QQuickItem* item = nullptr;
};

TEST_F(MapPage, ShowsLandSeaAndTheWarnedArea) {
  QImage const shown = picture();
  QColor const land = over(shown, {49.2, 16.0}), sea = over(shown, {55.2, 13.6});
  QColor const warned = over(shown, {53.2, 12.8});
  EXPECT_GT(sea.blue() - sea.red(), 8);
  EXPECT_LT(std::abs(land.blue() - land.red()), 12);
  EXPECT_GT(warned.red() - warned.blue(), 30);
  map().toggle(QStringLiteral("warnings"));
  EXPECT_LT(std::abs(over(picture(), {53.2, 12.8}).red() - land.red()), 12);
  EXPECT_THAT(complaints(), IsEmpty());
}

TEST_F(MapPage, SaysWhatItShowsAndWhatHasNoArea) {
  EXPECT_EQ(map().description(), QStringLiteral("Map around Berlin, One official warning"));
  auto const* const layers = map().layers();
  MapPoint const prague = pixelOf(map().view(), mercatorOf({50.08, 14.43}));
  map().drag(map().view().width / 2.0 - prague.x, map().view().height / 2.0 - prague.y);
  EXPECT_EQ(map().description(), QStringLiteral("Map around Prague, One official warning"));
  int const note = layers->roleNames().key("note");
  EXPECT_EQ(layers->data(layers->index(1), note).toString(), QStringLiteral("One without a known area"));
}

TEST_F(MapPage, MovesByKeysAndWheel) {
  item->forceActiveFocus();
  MapView const home = map().view();
  press(Qt::Key_Right);
  EXPECT_NEAR((map().view().centre.x - home.centre.x) * home.worldSide(), 80, 1e-6);
  press(Qt::Key_Up);
  EXPECT_NEAR((home.centre.y - map().view().centre.y) * home.worldSide(), 80, 1e-6);
  press(Qt::Key_Plus);
  EXPECT_EQ(map().view().zoom, home.zoom + 0.5);
  press(Qt::Key_Minus);
  press(Qt::Key_Home);
  EXPECT_NEAR(map().view().centre.x, home.centre.x, 1e-12);
  EXPECT_EQ(map().view().zoom, home.zoom);

  QPointF const pointer = item->mapToScene(QPointF(700, 200));
  MapPoint const held = pointAt(map().view(), {700, 200});
  QWheelEvent wheel(pointer, pointer, {}, {0, 120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(window.window(), &wheel);
  EXPECT_EQ(map().view().zoom, home.zoom + 0.5);
  EXPECT_NEAR(pixelOf(map().view(), held).x, 700, 1e-6);
  EXPECT_NEAR(pixelOf(map().view(), held).y, 200, 1e-6);
}

TEST_F(MapPage, OpensWhatLiesUnderThePointer) {
  auto const pick = [&](Coordinate place) {
    MapPoint const at = pixelOf(map().view(), mercatorOf(place));
    map().pick(at.x, at.y);
    return map().card()->value(QStringLiteral("title")).toString().toStdString();
  };
  EXPECT_EQ(pick({53.2, 12.8}), "Gale");
  EXPECT_TRUE(map().card()->value(QStringLiteral("isShown")).toBool());
  map().open();
  EXPECT_FALSE(model.openAlert().isEmpty());
  EXPECT_EQ(pick({52.5, 13.4}), "Berlin");
  pick({46, 20});
  EXPECT_FALSE(map().card()->value(QStringLiteral("isShown")).toBool());
}

struct DarkMapPage : MapPage {
  DarkMapPage() : MapPage(DesktopTheme::dark) {}
};

TEST_F(DarkMapPage, ShowsALayersPictureWhereItLies) {
  QImage red(8, 8, QImage::Format_ARGB32_Premultiplied);
  red.fill(Qt::red);
  QColor const before = over(picture(), {49.2, 16.0});
  EXPECT_LT(before.lightness(), 110);
  // Given for the next way around the world.
  MapPoint const corner = mercatorOf({49.6, 15.4}), end = mercatorOf({48.8, 16.6});
  map().setPictures({{red, {corner.x + 1, corner.y}, {end.x + 1, end.y}}});
  QImage const shown = picture();
  EXPECT_EQ(over(shown, {49.2, 16.0}), QColor(Qt::red));
  EXPECT_LT(over(shown, {48.6, 16.0}).red(), 110);
}

}  // namespace
}  // namespace nimbara
