#include "desktop/views/map/map_stations.h"

#include "desktop/offscreen.h"
#include "desktop/states/station_states.h"
#include "desktop/window/models/desktop_model.h"

#include <gmock/gmock.h>

#include <QtTest/QSignalSpy>

namespace nimbara {
namespace {

using test::contextAt;
using test::kNow;
using testing::EndsWith;
using testing::IsEmpty;

/// Of three stations the last is an outlier, and the second is silent.
StationDesk deskAround() {
  StationDesk desk = test::stationDesk();
  StationsAround around = *desk.around;
  around.stations.nearest[1].modules.front().observedAt = kNow - std::chrono::minutes(31);
  around.stations.outliers = {"p2"};
  around.stations.used = 6;
  around.stations.leftOut = 1;
  around.stations.withinKm = 2.04;
  around.stations.reading.modules = {{.id = "outdoor",
                                      .kind = StationModuleKind::outdoor,
                                      .observedAt = kNow,
                                      .values = {{StationQuantity::temperature, 11.3}}}};
  desk.around = std::make_shared<StationsAround const>(std::move(around));
  return desk;
}

TEST(MapStations, HaveTheirValuesAndSayWhichDoNotCount) {
  auto const marks = mapStations(deskAround(), contextAt(kNow));
  ASSERT_EQ(marks.size(), 3U);
  EXPECT_EQ(marks[0].value, "11.0 °C");
  EXPECT_EQ(marks[0].title, "11.0 °C  ·  81 %");
  EXPECT_FALSE(marks[0].isLeftOut);
  EXPECT_EQ(marks[1].title, "no reading");
  EXPECT_EQ(marks[1].value, "");
  EXPECT_TRUE(marks[1].isLeftOut);
  EXPECT_THAT(marks[2].note, EndsWith("N of Testville, 4 min ago, not part of the median"));
  EXPECT_TRUE(marks[2].isLeftOut);
}

TEST(MapStations, SayTheMedianOrWhyThereIsNone) {
  StationDesk desk = deskAround();
  EXPECT_EQ(mapStationsNote(desk, contextAt(kNow)),
            "Median 11.3 °C of 6 stations within 2.0\u00A0km; left out: 1");
  desk.task = StationTask::around;
  EXPECT_EQ(mapStationsNote(desk, contextAt(kNow)), "Checking…");
  desk.task = StationTask::none;
  StationsAround refused;
  refused.problem = StationProblem::of(StationProblem::Kind::tooMany);
  desk.around = std::make_shared<StationsAround const>(refused);
  EXPECT_EQ(mapStationsNote(desk, contextAt(kNow)),
            "Netatmo has had too many requests; it is asked again in an hour.");
  desk.around.reset();
  EXPECT_EQ(mapStationsNote(desk, contextAt(kNow)), "");
}

struct MapStationsPage : test::OffscreenTest {
  MapStationsPage() {
    model.show(test::snapshotOf(test::stateOf(test::mildWeek())));
    map().setShown(true);
    map().resize(800, 600);
  }

  MapModel& map() { return *model.map(); }
  bool hasChip() {
    auto const* const layers = map().layers();
    int const name = layers->roleNames().key("name");
    for (int row = 0; row < layers->rowCount(); ++row) {
      if (layers->data(layers->index(row), name).toString() == QLatin1String("stations")) return true;
    }
    return false;
  }

  DesktopModel model{{Wording(), {}, [] { return kNow; }, {}}, {}};
};

TEST_F(MapStationsPage, AreLookedForOnceSomebodyWantsThemAndChosenByTheKeyboard) {
  QSignalSpy const asked(&map(), &MapModel::stationsWanted);
  EXPECT_FALSE(hasChip()) << "they come through an account";
  model.station()->take(deskAround());
  EXPECT_TRUE(hasChip());
  EXPECT_THAT(map().onMap().stations, IsEmpty());
  map().toggle(QStringLiteral("stations"));
  EXPECT_EQ(asked.count(), 1);
  EXPECT_EQ(map().view().zoom, kGreatestMapZoom);
  map().toggle(QStringLiteral("stations"));
  EXPECT_THAT(map().onMap().stations, IsEmpty());
  map().toggle(QStringLiteral("stations"));
  EXPECT_EQ(asked.count(), 1) << "they send no oftener";
  ASSERT_EQ(map().onMap().stations.size(), 3U);
  QSignalSpy const wanted(&map(), &MapModel::wanted);
  map().pickRow(map().things()->rowCount() - 1);
  EXPECT_EQ(map().card()->property("kind").toString(), QStringLiteral("station"));
  map().open();
  EXPECT_EQ(wanted.value(0).value(0).toString(), QStringLiteral("station"));
  EXPECT_EQ(wanted.value(0).value(1).toString(), QStringLiteral("p2"));
  map().pick(400, 300);
  map().open();
  EXPECT_EQ(wanted.value(1).value(1).toString(), QStringLiteral("p2")) << "it lies in the middle now";
}

}  // namespace
}  // namespace nimbara
