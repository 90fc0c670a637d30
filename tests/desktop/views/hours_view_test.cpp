#include "desktop/views/hours_view.h"

#include "desktop/states/states.h"
#include "desktop/views/outlook_view.h"
#include "desktop/views/places/places_view.h"
#include "model/process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::IsEmpty;
using testing::SizeIs;

TEST(HourViews, AreTheNextTwentyFourFromTheOneThatIs) {
  auto const views = hourViews(mildWeek(), contextAt(kNow));
  ASSERT_THAT(views, SizeIs(25));  // the first has begun already
  EXPECT_EQ(views.front().hour, "12");
  EXPECT_EQ(views[12].hour, "Sun");
  EXPECT_TRUE(views[12].startsDay);
  EXPECT_EQ(views.front().sentence, "Saturday 12:00, Partly Cloudy, 15°, Wind 10\u00A0km/h");
}

TEST(HourViews, ShowAChanceFromFivePercentOn) {
  WeatherData data = mildWeek();
  data.allHourly[12].chanceOfRain = 4;
  data.allHourly[13].chanceOfSnow = 5;
  auto const views = hourViews(data, contextAt(kNow));
  EXPECT_EQ(views[0].chance, "");
  EXPECT_EQ(views[1].chance, "5\u00A0%");
}

TEST(HourViews, ShowNoUnknownValueAsZero) {
  WeatherData data = mildWeek();
  for (HourlyForecast& hour : data.allHourly) {
    hour.chanceOfRain = 80;
    hour.unknownValues = ForecastValues::all();
  }
  HourView const view = hourViews(data, contextAt(kNow)).front();
  EXPECT_EQ(view.chance, "");
  EXPECT_EQ(view.wind, "");
  EXPECT_EQ(view.sentence, "Saturday 12:00, Partly Cloudy, 15°");
  std::string const readings = meteogramOf(data, contextAt(kNow)).points.front().readings;
  EXPECT_EQ(readings.find("mm"), std::string::npos) << readings;
  EXPECT_EQ(readings.find("km/h"), std::string::npos) << readings;
}

TEST(HourViews, AreShadedByTheSunOfThePlace) {
  auto const views = hourViews(mildWeek(), contextAt(kNow));
  EXPECT_TRUE(views[0].isDay);
  EXPECT_FALSE(views[12].isDay);
}

TEST(DayViews, ShareOneScaleAndBeginToday) {
  WeatherData data = mildWeek();
  data.daily[1].minTempC = 0;
  data.daily[2].maxTempC = 40;
  auto const views = dayViews(data, contextAt(kNow));
  ASSERT_THAT(views, SizeIs(7));
  EXPECT_EQ(views[0].name, "Today");
  EXPECT_EQ(views[1].name, "Sunday");
  EXPECT_EQ(views[0].barFrom, 0.25);
  EXPECT_EQ(views[0].barTo, 0.5);
  EXPECT_EQ(views[1].barFrom, 0);
  EXPECT_EQ(views[2].barTo, 1);
  EXPECT_EQ(views[0].sentence, "Today, Partly Cloudy, high 20°, low 10°, Wind 10\u00A0km/h");
}

TEST(DayViews, ShareTheirScaleWithTheOutlook) {
  WeatherData const data = mildWeek();
  DailyForecast frost;
  frost.date = data.daily.back().date + std::chrono::days(1);
  frost.minTempC = -20;
  frost.maxTempC = 0;
  auto const [days, beyond] = dayLists(data, {frost}, contextAt(kNow));
  ASSERT_THAT(beyond, SizeIs(1));
  EXPECT_EQ(beyond[0].barFrom, 0);
  EXPECT_EQ(beyond[0].barTo, 0.5);
  EXPECT_EQ(beyond[0].name, "Sun, 29 November");
  EXPECT_THAT(beyond[0].sentence, testing::StartsWith("Sunday, 29 November, "));
  EXPECT_EQ(days[0].barFrom, 0.75);
  EXPECT_EQ(days[0].barTo, 1);
}

TEST(Outlook, SaysWhatItHasOrWhyThereIsNone) {
  SavedPlace const place = savedPlace("Testville", {1, 2});
  OutlookState state;
  EXPECT_FALSE(outlookView(state, false, contextAt(kNow)).isShown) << "nobody has looked";
  state.place = Place{place.coordinate, place.name, {}, {}};
  state.isAsking = true;
  EXPECT_EQ(outlookView(state, false, contextAt(kNow)).notice, "Loading forecast…");
  state.isAsking = false;
  state.days = {FeedState::failed, {}, {}, kNow, ServiceFailure::of(ServiceFailure::Kind::noAnswer)};
  EXPECT_THAT(outlookView(state, false, contextAt(kNow)).notice,
              testing::StartsWith("Could not check the days beyond the forecast. Reason: "));
  state.days = {FeedState::current, {}, kNow, {}, {}};
  EXPECT_EQ(outlookView(state, false, contextAt(kNow)).notice, "There are no days beyond the forecast.");
  WeatherData const data = mildWeek();
  Date const last = calendarOf(data, contextAt(kNow).fallback).day(data.daily.back().date);
  state.days.data = {{last, 1, 2, {}, {}, {}, {}},
                     {Date(std::chrono::sys_days(last) + std::chrono::days(1)), 3, 4, {}, {}, {}, {}}};
  EXPECT_THAT(daysBeyond(state, state.place, data, contextAt(kNow)), SizeIs(1))
      << "the forecast ends the day before";
  EXPECT_THAT(daysBeyond(state, Place{{3, 4}, "Elsewhere", {}, {}}, data, contextAt(kNow)), IsEmpty());
}

TEST(DayViews, GiveATemperatureOneColourOnEveryDay) {
  WeatherData data = mildWeek();
  data.daily[1].minTempC = 20;
  data.daily[1].maxTempC = 30;
  auto const views = dayViews(data, contextAt(kNow));
  EXPECT_EQ(views[0].toColour, views[1].fromColour);
  EXPECT_NE(views[0].fromColour, views[1].fromColour);
  EXPECT_EQ(views[0].fromColour, views[2].fromColour);
}

TEST(DayViews, CallNoPolarNightSunny) {
  WeatherData data = mildWeek();
  for (DailyForecast& day : data.daily) {
    for (HourlyForecast& hour : day.hourly) hour.condition = WeatherConditionCode::sunny;
  }
  EXPECT_TRUE(dayViews(data, contextAt(kNow))[1].isDay);
  EXPECT_EQ(dayViews(data, contextAt(kNow))[1].condition, "Sunny");
  data.location.latitude = 78.22;
  EXPECT_FALSE(dayViews(data, contextAt(kNow))[1].isDay);
  EXPECT_EQ(dayViews(data, contextAt(kNow))[1].condition, "Clear");
}

TEST(DayViews, DropDaysThatHavePassed) {
  auto const views = dayViews(mildWeek(), contextAt(kNow + std::chrono::days(5)));
  ASSERT_THAT(views, SizeIs(3));
  EXPECT_EQ(views[0].name, "Today");
}

TEST(DayViews, OpenToTheirHours) {
  WeatherData const data = mildWeek();
  EXPECT_THAT(dayHourViews(data, 0, contextAt(kNow)), SizeIs(12));  // what is left of today
  EXPECT_THAT(dayHourViews(data, 1, contextAt(kNow)), SizeIs(24));
  EXPECT_THAT(dayHourViews(data, 7, contextAt(kNow)), IsEmpty());
  EXPECT_THAT(dayHourViews(WeatherData{}, 0, contextAt(kNow)), IsEmpty());
}

TEST(Meteogram, CoversSevenDaysInTheUsersUnits) {
  ViewContext context = contextAt(kNow);
  context.units = Units::imperial();
  Meteogram const curves = meteogramOf(mildWeek(), context);
  ASSERT_THAT(curves.points, SizeIs(12 + 6 * 24));
  EXPECT_THAT(curves.days, SizeIs(7));
  EXPECT_EQ(curves.days[1].x, 12);
  EXPECT_EQ(curves.days[1].name, "Sun 22");
  EXPECT_EQ(curves.points[0].temperature, 59);
  EXPECT_EQ(curves.points[0].when, "Saturday 12:00");
  EXPECT_EQ(curves.temperatureUnit, "°F");
  EXPECT_EQ(curves.precipitation, (Axis{0, 0.2, 0.1}));
}

TEST(Meteogram, IsEmptyWithoutTwoHours) {
  EXPECT_THAT(meteogramOf(WeatherData{}, contextAt(kNow)).points, IsEmpty());
  EXPECT_THAT(meteogramOf(mildForecast(kNow, 1), contextAt(kNow)).points, IsEmpty());
}

struct AxisRow {
  double lowest;
  double highest;
  int steps;
  Axis expected;
};

void PrintTo(AxisRow const& row, std::ostream* out) {
  *out << row.lowest << " to " << row.highest << " in " << row.steps;
}

class RoundAxis : public testing::TestWithParam<AxisRow> {};

TEST_P(RoundAxis, HoldsBothEndsInRoundSteps) {
  AxisRow const& row = GetParam();
  Axis const axis = roundAxis(row.lowest, row.highest, row.steps);
  EXPECT_DOUBLE_EQ(axis.from, row.expected.from);
  EXPECT_DOUBLE_EQ(axis.to, row.expected.to);
  EXPECT_DOUBLE_EQ(axis.step, row.expected.step);
}

INSTANTIATE_TEST_SUITE_P(Rows, RoundAxis,
                         testing::Values(AxisRow{0, 4, 3, {0, 4, 2}}, AxisRow{0, 88, 3, {0, 100, 50}},
                                         AxisRow{-16, 6, 6, {-20, 10, 5}}, AxisRow{-7, 6, 6, {-10, 10, 5}},
                                         AxisRow{15, 15, 6, {14.4, 15.6, 0.2}},
                                         AxisRow{999, 1021, 3, {980, 1040, 20}}));

TEST(PlaceViews, ShowWhatIsKeptOfEach) {
  auto const snapshot = snapshotOf(stateOf(mildWeek()));
  auto const views = placeViews(snapshot->places, snapshot->kept, true, {}, contextAt(kNow));
  ASSERT_THAT(views, SizeIs(2));
  EXPECT_EQ(views[0].notifications, "everything");
  EXPECT_EQ(views[1].notifications, "severe");
  EXPECT_EQ(placeViews(snapshot->places, {}, false, {}, contextAt(kNow))[1].notifications, "nothing");
  EXPECT_TRUE(views[0].isSelected);
  EXPECT_EQ(views[0].sentence, "Testville, 15°, Partly Cloudy, high 20°, low 10°");
  EXPECT_EQ(views[1].temperature, "");
  EXPECT_EQ(views[1].area, "Region, Norway");
}

TEST(FoundViews, MarkThoseThatAreSavedAlready) {
  PlaceList list;
  list.places = {savedPlace("Oslo", {59.91, 10.75})};
  auto const views = foundViews({{"Oslo", "Norway", "NO", "Oslo", {59.91, 10.75}, ""},
                                 {"Oslo", "United States", "US", "Minnesota", {48.2, -97.1}, ""}},
                                list);
  ASSERT_THAT(views, SizeIs(2));
  EXPECT_TRUE(views[0].isSaved);
  EXPECT_EQ(views[0].area, "Norway");
  EXPECT_FALSE(views[1].isSaved);
}

}  // namespace
}  // namespace nimbara
