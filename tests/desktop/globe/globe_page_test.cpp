#include "desktop/offscreen.h"
#include "desktop/window/desktop_window.h"
#include "desktop/window/globe_texture.h"
#include "desktop/window/painting/flat_globe.h"
#include "globe_states.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtTest/QTest>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::ElementsAre;
using testing::IsEmpty;

bool isSea(QRgb colour) {
  return qBlue(colour) > qRed(colour) + 20;
}

TEST(EarthTexture, ShowsLandSeaIceAndCities) {
  QImage const earth = paintEarth(1024);
  EXPECT_EQ(earth.size(), QSize(1024, 512));
  EXPECT_FALSE(isSea(earthTexel(earth, 23, 5)));       // the Sahara
  EXPECT_FALSE(isSea(earthTexel(earth, 40, -100)));    // Kansas
  EXPECT_TRUE(isSea(earthTexel(earth, 0, -30)));       // the Atlantic
  EXPECT_TRUE(isSea(earthTexel(earth, -40, 179.99)));  // the Pacific, on either side of the seam
  EXPECT_TRUE(isSea(earthTexel(earth, -40, -180)));
  EXPECT_GT(qRed(earthTexel(earth, -85, 50)), 200);       // Antarctica
  EXPECT_GT(qAlpha(earthTexel(earth, 51.5, -0.1)), 100);  // London
  EXPECT_LT(qAlpha(earthTexel(earth, 23, 5)), 30);
  EXPECT_EQ(earthTexel(earth, 90, 540), earthTexel(earth, 90, 180));
}

TEST(PaintedDisc, HasDayNightAndNothingAround) {
  QImage earth(64, 32, QImage::Format_RGBA8888);
  earth.fill(QColor(100, 100, 100, 0));
  GlobeCamera const camera{0, 0, 1, 400, 400};
  // The sun stands over 90° east, which is on the right.
  QImage const disc = paintDisc(earth, camera, {0, 1, 0}, QSize(200, 200), 2);
  EXPECT_EQ(qAlpha(disc.pixel(2, 2)), 0);
  EXPECT_EQ(qAlpha(disc.pixel(100, 100)), 255);
  EXPECT_GT(qGreen(disc.pixel(140, 100)), 3 * qGreen(disc.pixel(60, 100)));
  EXPECT_EQ(qAlpha(disc.pixel(100 + static_cast<int>(camera.earthRadius() / 2) + 3, 100)), 0);
}

/// The page in a window without a graphics card.
struct GlobePage : OffscreenTest, GlobeActions {
  void setShown(bool isShown) override { asked.emplace_back(isShown ? "show" : "hide"); }
  std::shared_ptr<GlobeState const> tick() override { return state; }
  void choose(std::optional<std::uint32_t> entry) override {
    asked.push_back(entry ? "choose " + std::to_string(*entry) : "dismiss");
    GlobeState changed = *state;
    changed.chosen.reset();
    if (entry) changed.chosen = ChosenSatellite{*entry, "sat.group.stations", infoOf(*entry), {}};
    state = std::make_shared<GlobeState const>(changed);
  }
  void setHidden(std::string_view row, bool isHidden) override {
    asked.push_back((isHidden ? "hide " : "show ") + std::string(row));
  }

  SatelliteInfo infoOf(std::uint32_t entry) const {
    SatelliteInfo info{
        "25544", state->catalogue->names[entry], 25544, "sat.kind.iss", "", 418, 27588, 30, 40, 93, true};
    return info;
  }

  static std::shared_ptr<GlobeState const> someSatellites() {
    GlobeStateMaker maker;
    maker.group("stations").satellite("ISS (ZARYA)", {0, 0}, 1.06, true);
    maker.group("starlink").satellite("STARLINK-1", {10, 20}, 1.09);
    maker.state().hasEarthquakes = true;
    maker.state().earthquakes = std::make_shared<std::vector<EarthquakeEvent> const>(
        std::vector<EarthquakeEvent>{quakeOf(6, {5, 5})});
    return maker.made();
  }

  WindowActions actions() { return {.globe = this}; }
  static DesktopOptions options(WindowSize size, DesktopTheme theme = DesktopTheme::dark) {
    DesktopOptions made;
    made.page = DesktopPage::globe;
    made.theme = theme;
    made.size = size;
    return made;
  }
  static DesktopModel::Setting setting() {
    return {Wording(), {}, [] { return kNow; }, {}};
  }

  std::shared_ptr<GlobeState const> state = someSatellites();
  std::vector<std::string> asked;
};

std::shared_ptr<GlobeState const> failed() {
  GlobeStateMaker maker;
  for (GlobeGroup& group : maker.state().groups) group.state = GlobeGroup::State::failed;
  maker.state().earthquakeFailure = ServiceFailure::answered(503);
  return maker.made();
}

std::shared_ptr<GlobeState const> loading() {
  GlobeStateMaker maker;
  maker.state().isLoading = true;
  return maker.made();
}

TEST_F(GlobePage, IsPaintedWithoutAComplaint) {
  for (auto* const make : {&someSatellites, &crowdedGlobe, &failed, &loading}) {
    state = make();
    for (auto const& [size, theme] : {std::pair(WindowSize{360, 640}, DesktopTheme::light),
                                      {WindowSize{1280, 800}, DesktopTheme::dark}}) {
      DesktopModel model(setting(), actions());
      model.show(snapshotOf(stateOf(mildWeek())));
      DesktopWindow const window(model, options(size, theme));
      ASSERT_NE(window.window(), nullptr);
      ASSERT_TRUE(QTest::qWaitFor([&] { return !model.globe()->surfaces().isEmpty(); }, 20'000));
      QImage const picture = window.window()->grabWindow();
      EXPECT_GT(colourCount(picture), 200);
    }
  }
  EXPECT_THAT(complaints(), IsEmpty());
}

TEST_F(GlobePage, RestsWhenAnotherPageIsShown) {
  DesktopModel model(setting(), actions());
  model.show(snapshotOf(stateOf(mildWeek())));
  {
    DesktopWindow const window(model, options({1000, 700}));
    EXPECT_TRUE(model.globe()->isShown());
    window.window()->setProperty("page", QStringLiteral("now"));
    EXPECT_FALSE(model.globe()->isShown());
    window.window()->setProperty("page", QStringLiteral("globe"));
  }
  EXPECT_THAT(asked, ElementsAre("show", "hide", "show", "hide"));
}

struct GlobeKeys : GlobePage {
  GlobeKeys() {
    model.show(snapshotOf(stateOf(mildWeek())));
    window.emplace(model, options({1000, 700}));
    window->window()->requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window->window()));
    asked.clear();
  }
  void press(Qt::Key key) { QTest::keyClick(window->window(), key); }
  void type(char const* text) {
    for (; *text != '\0'; ++text) QTest::keyClick(window->window(), *text);
  }
  /// Tab by tab to what a screen reader calls so.
  bool reach(std::string const& name) {
    for (int step = 0; step < 40; ++step) {
      QQuickItem* const focused = window->window()->activeFocusItem();
      if (focused != nullptr && accessibleName(focused) == name) return true;
      press(Qt::Key_Tab);
    }
    return false;
  }

  DesktopModel model{setting(), actions()};
  std::optional<DesktopWindow> window;
};

TEST_F(GlobeKeys, TurnTheGlobeAndLeadHome) {
  GlobeCamera const home = model.globe()->camera();
  ASSERT_TRUE(reach(model.globe()->description().toStdString()));
  press(Qt::Key_Right);
  press(Qt::Key_Up);
  press(Qt::Key_Plus);
  GlobeCamera const turned = model.globe()->camera();
  EXPECT_NEAR(turned.longitude, home.longitude + 6, 1e-9);
  EXPECT_NEAR(turned.latitude, home.latitude + 6, 1e-9);
  EXPECT_NEAR(turned.zoom, 1.25, 1e-9);
  press(Qt::Key_Minus);
  press(Qt::Key_Home);
  EXPECT_EQ(model.globe()->camera(), home);
}

TEST_F(GlobeKeys, ChooseTheSatelliteInTheMiddleAndLetItGo) {
  ASSERT_TRUE(reach(model.globe()->description().toStdString()));
  press(Qt::Key_Return);
  EXPECT_TRUE(model.globe()->card()->value(QStringLiteral("isShown")).toBool());
  press(Qt::Key_Escape);
  EXPECT_THAT(asked, ElementsAre("choose 0", "dismiss"));
}

TEST_F(GlobeKeys, FindASatelliteByName) {
  ASSERT_TRUE(reach("Find a satellite"));
  type("link-1");
  press(Qt::Key_Return);
  EXPECT_THAT(asked, ElementsAre("choose 1"));
  EXPECT_NEAR(model.globe()->camera().longitude, 40, 1e-9);
}

TEST_F(GlobeKeys, SwitchGroups) {
  ASSERT_TRUE(reach("Starlink, 1"));
  press(Qt::Key_Space);
  EXPECT_THAT(asked, ElementsAre("hide starlink"));
}

TEST_F(GlobePage, HidesTheTablesOfHiddenGroups) {
  DesktopModel model(setting(), actions());
  model.show(snapshotOf(stateOf(mildWeek())));
  GlobeModel& globe = *model.globe();
  globe.setShown(true);
  auto const bytesOf = [&](int group) { return globe.group(group)->property("bytes").toByteArray().size(); };
  EXPECT_EQ(bytesOf(0), 80);
  EXPECT_EQ(bytesOf(1), 80);
  EXPECT_EQ(bytesOf(2), 0);
  GlobeState changed = *state;
  changed.hidden = {"starlink"};
  globe.show(std::make_shared<GlobeState const>(changed));
  EXPECT_EQ(bytesOf(0), 80);
  EXPECT_EQ(bytesOf(1), 0);
  EXPECT_EQ(globe.group(-1), nullptr);
  EXPECT_EQ(globe.group(99), nullptr);
}

TEST_F(GlobePage, SpeaksAnotherLanguageAtOnce) {
  DesktopModel model(setting(), actions());
  model.show(snapshotOf(stateOf(mildWeek())));
  model.globe()->setShown(true);
  auto snapshot = snapshotOf(stateOf(mildWeek()));
  Wording wording;
  wording.texts = std::make_shared<Texts const>(Texts::load("pt"));
  snapshot->wording = std::make_shared<Wording const>(wording);
  model.show(snapshot);
  auto const* const legend = model.globe()->legend();
  int const title = legend->roleNames().key("title");
  EXPECT_EQ(legend->data(legend->index(7), title).toString().toStdString(), "Sismos");
  EXPECT_EQ(model.globe()->words()->value(QStringLiteral("close")).toString().toStdString(), "Fechar");
}

TEST_F(GlobePage, HasNoSceneWhereItsModuleIsMissing) {
  DesktopModel model(setting(), actions());
  EXPECT_FALSE(model.globe()->loadScene());
}

}  // namespace
}  // namespace nimbara
