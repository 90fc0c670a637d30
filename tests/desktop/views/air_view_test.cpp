#include "desktop/views/air/air_view.h"

#include "desktop/states/air_states.h"
#include "desktop/views/air/year_view.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr Coordinate kEuropean{52.5, 13.4}, kAmerican{39.7, -105};

TEST(AirView, ShowsTheIndexOfTheRegionWithWhatLeadsIt) {
  SupplementState const berlin = airOf(kEuropean), denver = airOf(kAmerican);
  AirView const european = airView(&berlin, contextAt(kNow)), american = airView(&denver, contextAt(kNow));
  EXPECT_EQ(european.value, "44");
  EXPECT_EQ(european.band, "moderate");
  EXPECT_NEAR(european.share, 44.0 / 120, 0.01);
  EXPECT_THAT(european.leading, HasSubstr("PM2.5"));
  EXPECT_EQ(european.climate, "5° warmer than usual for late November (1991–2020)");
  EXPECT_EQ(american.value, "65");
  EXPECT_EQ(american.scale, "U.S. air quality index");
  EXPECT_NEAR(american.share, (1 + 15.0 / 50) / 6, 0.01);
  EXPECT_EQ(airStepViews(&berlin, contextAt(kNow)).back().name, "extremely poor");
  EXPECT_EQ(airStepViews(&denver, contextAt(kNow)).back().name, "hazardous");
}

TEST(AirView, ListsPollenThatIsThereOrNotKnown) {
  SupplementState const state = airOf(kEuropean);
  auto const pollen = pollenViews(&state, contextAt(kNow));
  ASSERT_EQ(pollen.size(), 3U);
  EXPECT_EQ(pollen[0].name, "Birch pollen");
  EXPECT_EQ(pollen[0].value, "60 grains/m³ now, up to 107 in 48 hours");
  EXPECT_EQ(pollen[0].share, 1);
  EXPECT_EQ(pollen[2].value, "not known");
  EXPECT_EQ(pollen[2].share, 0);
}

struct NothingRow {
  char const* name;
  Coordinate place;
  PollenValues pollen;
  char const* text;
};

TEST(AirView, TellsThreeKindsOfNoPollenApart) {
  for (NothingRow const& row :
       {NothingRow{"season", kEuropean, {0, 0, 0, 0, 0, 0}, "No pollen expected: out of season"},
        {"region", kAmerican, {}, "No pollen data for this region"},
        {"unknown", kEuropean, {}, "Pollen: not known at present"}}) {
    SupplementState state = airOf(row.place);
    state.airQuality.data.now.pollen = row.pollen;
    for (AirQualityHour& hour : state.airQuality.data.hours) hour.levels.pollen = row.pollen;
    EXPECT_EQ(airView(&state, contextAt(kNow)).pollenState, row.text) << row.name;
    EXPECT_TRUE(pollenViews(&state, contextAt(kNow)).empty()) << row.name;
  }
}

TEST(AirView, ReadsEachOfTheNext48Hours) {
  SupplementState const state = airOf(kEuropean);
  auto const hours = airHourViews(&state, contextAt(kNow));
  ASSERT_EQ(hours.size(), 48U);
  EXPECT_THAT(hours[0].reading, HasSubstr("index 44, moderate, UV 0"));
  EXPECT_FALSE(hours[40].isKnown);
  EXPECT_THAT(hours[40].reading, testing::EndsWith(": not known"));
  EXPECT_TRUE(hours[6].wantsProtection);
  EXPECT_FALSE(hours[1].wantsProtection);
  EXPECT_EQ(std::ranges::count(hours, true, &AirHourView::startsDay), 2);
}

TEST(AirView, SaysWhatCouldNotBeChecked) {
  AirView const unasked = airView(nullptr, contextAt(kNow));
  EXPECT_FALSE(unasked.isAsked || unasked.isClimateAsked);
  SupplementState const failed = failedAir(kEuropean);
  AirView const view = airView(&failed, contextAt(kNow));
  EXPECT_TRUE(view.isAsked && view.isClimateAsked);
  EXPECT_FALSE(view.isKnown || view.isClimateKnown);
  EXPECT_THAT(view.notice, HasSubstr("HTTP 503"));
  EXPECT_THAT(view.climateNotice, HasSubstr("HTTP 503"));
  EXPECT_TRUE(airHourViews(&failed, contextAt(kNow)).empty());
}

TEST(YearCurve, HasTodayOnlyWhereItCanBeCompared) {
  ClimateOutlook outlook = airOf(kEuropean).climate.data;
  YearCurve const curve = yearCurve(outlook, contextAt(kNow));
  EXPECT_EQ(curve.days.size(), kClimateDays);
  EXPECT_EQ(curve.months.front(), "January");
  EXPECT_EQ(curve.todayX, static_cast<double>(climateIndex(outlook.date)));
  EXPECT_NEAR(curve.today, outlook.usual->p50 + 5, 1e-9);
  outlook.bias.reset();
  EXPECT_LT(yearCurve(outlook, contextAt(kNow)).todayX, 0);
  EXPECT_TRUE(yearCurve({}, contextAt(kNow)).days.empty());
}

TEST(UsualBand, LiesBehindAllOfTheMeteogram) {
  WeatherData const data = mildWeek();
  ClimateOutlook const outlook = airOf(kEuropean).climate.data;
  Meteogram plain = meteogramOf(data, contextAt(kNow)), meteogram = plain;
  addUsual(meteogram, data, outlook, contextAt(kNow));
  EXPECT_LE(meteogram.usual.front().x, 0);
  EXPECT_GE(meteogram.usual.back().x, meteogram.hours);
  EXPECT_NEAR(meteogram.usual.front().high - meteogram.usual.front().low, 6, 1e-9);
  EXPECT_LE(meteogram.temperature.from, meteogram.usual.front().low);
  Meteogram none = plain;
  addUsual(none, data, {}, contextAt(kNow));
  EXPECT_EQ(none, plain);
}

}  // namespace
}  // namespace nimbara
