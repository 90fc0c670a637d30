// The radar on the page of the map, from scripted suppliers to pixels.
#include "desktop/offscreen.h"
#include "desktop/states/page_states.h"
#include "desktop/window/desktop_window.h"
#include "radar_hosts.h"

#include <gmock/gmock.h>

#include <QPointer>
#include <QtTest/QTest>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr Coordinate kParis{48.86, 2.35};

std::shared_ptr<EngineSnapshot> inParis() {
  auto snapshot = snapshotOf(stateOf(mildWeek()), "Paris");
  snapshot->place = Place{kParis, "Paris", "FR", ""};
  return snapshot;
}

struct RadarPage : OffscreenTest {
  static DesktopOptions options() {
    DesktopOptions made;
    made.page = DesktopPage::map;
    made.theme = DesktopTheme::light;
    made.size = WindowSize{1000, 700};
    return made;
  }

  void open() {
    WindowActions actions;
    actions.radar = hosts.sources();
    model.emplace(DesktopModel::Setting{Wording(), {}, [this] { return hosts.clock.now(); }, {}}, actions);
    window.emplace(*model, options());
    model->show(inParis());
    item = window->window()->findChild<QQuickItem*>(QStringLiteral("map"));
  }
  RadarModel& radar() { return *model->map()->radar(); }
  std::string of(char const* field) {
    return radar().view()->value(QString::fromLatin1(field)).toString().toStdString();
  }
  bool comesTo(std::string const& state) {
    return QTest::qWaitFor([&] { return of("state") == state; }, 20'000);
  }
  QImage picture() {
    QCoreApplication::processEvents();
    return window->window()->grabWindow();
  }
  /// Of a square around the middle of the map without its bars and cards, how much is bluer than land and
  /// grey. Nobody stands there: the place's own mark is left out.
  double coloured() {
    QImage const shown = picture();
    QPoint const middle = item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
    int count = 0, all = 0;
    for (int y = -60; y < 60; ++y) {
      for (int x = -60; x < 60; ++x) {
        if (std::abs(x) < 20 && std::abs(y) < 20) continue;
        QColor const at = shown.pixelColor(middle + QPoint(x, y));
        ++all;
        if (at.blue() - at.red() > 50) ++count;
      }
    }
    return static_cast<double>(count) / all;
  }
  void press(Qt::Key key) { QTest::keyClick(window->window(), key); }

  RadarHosts hosts;
  std::optional<DesktopModel> model;
  std::optional<DesktopWindow> window;
  QQuickItem* item = nullptr;
};

TEST_F(RadarPage, ShowsRainItsTimeAndWhoseItIs) {
  open();
  ASSERT_TRUE(comesTo("shown"));
  EXPECT_EQ(of("time"), "11:00 AM") << "the place's clock";
  EXPECT_EQ(of("age"), "7 min ago");
  EXPECT_THAT(of("credit"), HasSubstr("LibreWXR"));
  EXPECT_EQ(radar().colours()->count(), 8);
  EXPECT_GT(coloured(), 0.6);
  model->map()->toggle(QStringLiteral("radar"));
  EXPECT_FALSE(radar().isShown());
  EXPECT_LT(coloured(), 0.05);
  EXPECT_THAT(complaints(), IsEmpty());
}

TEST_F(RadarPage, IsPlayedAndSteppedByKeys) {
  open();
  ASSERT_TRUE(comesTo("shown"));
  item->parentItem()->forceActiveFocus();
  press(Qt::Key_Comma);
  EXPECT_EQ(of("time"), "10:50 AM");
  ASSERT_TRUE(comesTo("shown"));
  press(Qt::Key_Period);
  press(Qt::Key_Period);
  EXPECT_EQ(of("time"), "11:10 AM");
  EXPECT_EQ(of("age"), "Forecast, in 3 min");
  ASSERT_TRUE(comesTo("shown"));
  press(Qt::Key_Space);
  EXPECT_TRUE(radar().isPlaying());
  EXPECT_TRUE(QTest::qWaitFor([&] { return of("time") != "11:10 AM"; }));
  press(Qt::Key_Space);
  EXPECT_FALSE(radar().isPlaying());
}

TEST_F(RadarPage, TellsItsStatesApart) {
  struct Row {
    char const* part;
    int status;
    std::string body;
    char const* state;
    char const* note;
  };
  for (Row const& row : {Row{"/v2/radar", 200, pictureOf(Qt::transparent), "dry", "No rain in view"},
                         {"/v2/coverage", 200, pictureOf(Qt::black, 256), "none", "There is no rain radar"},
                         {"/public", 500, "", "failed", "could not be checked: "}}) {
    hosts.host.answer(row.part, row.status, row.body);
    hosts.clock.advance(RadarService::kRest);
    window.reset();
    open();
    EXPECT_TRUE(comesTo(row.state)) << row.state << " " << of("state");
    EXPECT_THAT(of("note"), HasSubstr(row.note));
    EXPECT_LT(coloured(), 0.05) << row.state;
  }
}

TEST_F(RadarPage, FetchesAgainWhenItWasMovedAndNothingWhileItIsHidden) {
  open();
  ASSERT_TRUE(comesTo("shown"));
  window->window()->setProperty("page", QStringLiteral("now"));
  EXPECT_FALSE(radar().isShown());
  std::size_t const asked = hosts.host.asked();
  model->map()->drag(3000, 0);
  QCoreApplication::processEvents();
  EXPECT_TRUE(model->map()->hasSettled());
  EXPECT_EQ(hosts.host.asked(), asked);
  window->window()->setProperty("page", QStringLiteral("map"));
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return hosts.host.asked() > asked && model->map()->hasSettled(); }, 20'000));
  EXPECT_EQ(of("state"), "shown");
  EXPECT_GT(coloured(), 0.6);
}

TEST_F(RadarPage, LateAnswersFindNobody) {
  hosts.host.hold("/v2/radar");
  open();
  // Events go on, so that the view comes to rest.
  EXPECT_TRUE(QTest::qWaitFor([&] { return hosts.host.asked("/v2/radar") > 0; }, 20'000));
  QPointer<RadarModel> const guard(&radar());
  window.reset();
  model.reset();
  EXPECT_FALSE(guard);
  hosts.host.letGo();
  QCoreApplication::processEvents();
  EXPECT_THAT(complaints(), IsEmpty());
}

}  // namespace
}  // namespace nimbara
