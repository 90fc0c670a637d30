#include "model/weather_condition.h"
#include "providers/common/api_error.h"
#include "providers/common/compass.h"
#include "providers/common/interchange.h"
#include "providers/common/wmo_code.h"
#include "support/instants.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

struct WmoRow {
  int wmo;
  std::string_view wwo;
  std::string_view description;
};

TEST(WmoCodes, MapUnevenlyAsTheyAreMeantTo) {
  for (WmoRow const& row : {WmoRow{0, "113", "Clear"},
                            WmoRow{1, "116", "Mainly Clear"},
                            WmoRow{2, "116", "Partly Cloudy"},
                            WmoRow{3, "122", "Overcast"},
                            WmoRow{48, "143", "Depositing Rime Fog"},
                            WmoRow{51, "266", "Light Drizzle"},
                            WmoRow{53, "296", "Moderate Drizzle"},
                            WmoRow{55, "266", "Dense Drizzle"},
                            WmoRow{57, "314", "Dense Freezing Drizzle"},
                            WmoRow{65, "308", "Heavy Rain"},
                            WmoRow{66, "311", "Light Freezing Rain"},
                            WmoRow{73, "227", "Moderate Snowfall"},
                            WmoRow{77, "350", "Snow Grains"},
                            WmoRow{82, "305", "Violent Rain Showers"},
                            WmoRow{86, "335", "Heavy Snow Showers"},
                            WmoRow{95, "200", "Thunderstorm"},
                            WmoRow{99, "389", "Thunderstorm with Heavy Hail"},
                            WmoRow{4, "119", "Unknown"},
                            WmoRow{-1, "119", "Unknown"},
                            WmoRow{100, "119", "Unknown"}}) {
    EXPECT_EQ(wwoCodeOfWmo(row.wmo), row.wwo) << row.wmo;
    EXPECT_EQ(descriptionOfWmo(row.wmo), row.description) << row.wmo;
  }
}

TEST(WmoCodes, AllLeadToAKnownCondition) {
  for (int wmo = 0; wmo < 100; ++wmo) {
    EXPECT_NE(conditionOfWwoCode(wwoCodeOfWmo(wmo)), WeatherConditionCode::unknown) << wmo;
  }
}

TEST(Compass, TakesAnyAngle) {
  struct Row {
    double degrees;
    std::string_view point;
  };
  for (Row const& row : {Row{0, "N"}, Row{350, "N"}, Row{10, "N"}, Row{11.24, "N"}, Row{11.25, "NNE"},
                         Row{45, "NE"}, Row{180, "S"}, Row{348.74, "NNW"}, Row{348.75, "N"}, Row{-30, "NNW"},
                         Row{720 + 90, "E"}, Row{-720 - 90, "W"}}) {
    EXPECT_EQ(compassPoint(row.degrees), row.point) << row.degrees;
  }
  EXPECT_EQ(compassPoint(std::stod("nan")), "N");
}

TEST(ApiErrors, HaveTheirTexts) {
  using Case = APIError::Case;
  EXPECT_EQ(APIError::network({HttpError::Kind::timedOut, "no answer"}).description(),
            "Network error: no answer");
  EXPECT_EQ(APIError::decoding({"/hourly", "a list is expected"}).description(),
            "Failed to decode response: /hourly: a list is expected");
  EXPECT_EQ(APIError::http(400, "bad latitude").description(), "Server returned HTTP 400");
  EXPECT_EQ(APIError::http(400, "bad latitude").text(), "Server returned HTTP 400: bad latitude");
  EXPECT_EQ(APIError::http(503).text(), "Server returned HTTP 503");
  EXPECT_EQ(APIError::of(Case::invalidURL).description(), "The URL could not be constructed.");
  EXPECT_EQ(APIError::of(Case::noData).description(), "The server returned an empty response.");
  EXPECT_EQ(APIError::of(Case::noResults).description(), "No results found for the given location.");
}

HourlyEntry calmHour() {
  HourlyEntry entry;
  entry.temperature2m = 10;
  return entry;
}

/// One reading on either side of a bound, and the text that it leads to.
struct ChanceRow {
  Reading HourlyEntry::* reading;
  double value;
  std::string HourlyCondition::* text;
  std::string_view expected;
};

TEST(HourTexts, TakeCoarseChancesAtTheirBounds) {
  using Entry = HourlyEntry;
  using Hour = HourlyCondition;
  for (ChanceRow const& row :
       {ChanceRow{&Entry::visibility, 1000, &Hour::chanceoffog, "0"},
        ChanceRow{&Entry::visibility, 999, &Hour::chanceoffog, "50"},
        ChanceRow{&Entry::cloudCover, 29.9, &Hour::chanceofsunshine, "80"},
        ChanceRow{&Entry::cloudCover, 30, &Hour::chanceofsunshine, "50"},
        ChanceRow{&Entry::cloudCover, 59.9, &Hour::chanceofsunshine, "50"},
        ChanceRow{&Entry::cloudCover, 60, &Hour::chanceofsunshine, "20"},
        ChanceRow{&Entry::temperature2m, 35, &Hour::chanceofhightemp, "0"},
        ChanceRow{&Entry::temperature2m, 35.1, &Hour::chanceofhightemp, "80"},
        ChanceRow{&Entry::temperature2m, 0, &Hour::chanceoffrost, "0"},
        ChanceRow{&Entry::temperature2m, -0.1, &Hour::chanceoffrost, "80"},
        ChanceRow{&Entry::windSpeed10m, 25, &Hour::chanceofwindy, "10"},
        ChanceRow{&Entry::windSpeed10m, 25.1, &Hour::chanceofwindy, "40"},
        ChanceRow{&Entry::windSpeed10m, 40, &Hour::chanceofwindy, "40"},
        ChanceRow{&Entry::windSpeed10m, 40.1, &Hour::chanceofwindy, "70"},
        ChanceRow{&Entry::precipitationProbability, 104, &Hour::chanceofremdry, "0"},
        ChanceRow{&Entry::precipitationProbability, 33.5, &Hour::chanceofrain, "34"},
        ChanceRow{&Entry::precipitationProbability, 33.5, &Hour::chanceofremdry, "67"}}) {
    HourlyEntry entry = calmHour();
    entry.*row.reading = row.value;
    EXPECT_EQ(writeHour(entry).*row.text, row.expected) << row.value;
  }
}

TEST(HourTexts, AddTwentyToTheChanceOfSnowOnlyWhenItSnows) {
  struct Row {
    double snowfall;
    Reading probability;
    std::string_view chance;
  };
  for (Row const& row :
       {Row{0.1, 50, "70"}, Row{0.1, 90, "100"}, Row{0, 90, "0"}, Row{0.1, std::nullopt, "20"}}) {
    HourlyEntry entry = calmHour();
    entry.snowfall = row.snowfall;
    entry.precipitationProbability = row.probability;
    EXPECT_EQ(writeHour(entry).chanceofsnow, row.chance);
  }
}

TEST(HourTexts, SeeThunderFromCode95On) {
  for (auto const& [code, chance] : {std::pair{94, "0"}, std::pair{95, "60"}, std::pair{99, "60"}}) {
    HourlyEntry entry = calmHour();
    entry.weatherCode = code;
    EXPECT_EQ(writeHour(entry).chanceofthunder, chance) << code;
  }
}

TEST(HourTexts, PrintEveryMeasurementInBothSystems) {
  HourlyEntry entry;
  entry.hour = 23;
  entry.temperature2m = -0.4;
  entry.apparentTemperature = -2.5;
  entry.dewPoint2m = 12.5;
  entry.visibility = 24140;
  entry.precipitation = 2.25;
  entry.pressureMsl = 1013.25;
  entry.windSpeed10m = 100;
  entry.windGusts10m = 128.7;
  entry.windDirection10m = -30;
  entry.weatherCode = 53;
  HourlyCondition const hour = writeHour(entry);
  EXPECT_EQ(hour.time, "2300");
  EXPECT_EQ(hour.tempC, "0");
  EXPECT_EQ(hour.tempF, "31");
  EXPECT_EQ(hour.feelsLikeC, "-3");
  EXPECT_EQ(hour.feelsLikeF, "28");
  EXPECT_EQ(hour.heatIndexC, "-3");
  EXPECT_EQ(hour.windChillF, "28");
  EXPECT_EQ(hour.dewPointC, "13");
  EXPECT_EQ(hour.dewPointF, "55");
  EXPECT_EQ(hour.visibility, "24");
  EXPECT_EQ(hour.visibilityMiles, "15");
  EXPECT_EQ(hour.precipMM, "2.2");
  EXPECT_EQ(hour.precipInches, "0.09");
  EXPECT_EQ(hour.pressure, "1013");
  EXPECT_EQ(hour.pressureInches, "29.92");
  EXPECT_EQ(hour.windspeedKmph, "100");
  EXPECT_EQ(hour.windspeedMiles, "62");
  EXPECT_EQ(hour.windGustKmph, "129");
  EXPECT_EQ(hour.windGustMiles, "80");
  EXPECT_EQ(hour.winddirDegree, "-30");
  EXPECT_EQ(hour.winddir16Point, "NNW");
  EXPECT_EQ(hour.weatherCode, "296");
  EXPECT_EQ(firstText(hour.weatherDesc), "Moderate Drizzle");
}

TEST(HourTexts, LeaveOutWhatWasNotMeasured) {
  HourlyCondition const hour = writeHour(calmHour());
  EXPECT_EQ(hour.visibility, "");
  EXPECT_EQ(hour.weatherCode, "");
  EXPECT_EQ(hour.chanceoffog, "0");
  EXPECT_EQ(hour.feelsLikeC, "10");  // nothing better is known
  EXPECT_EQ(hour.availableDetailFields, DetailFields{});
  HourlyEntry entry = calmHour();
  entry.visibility = -5;
  EXPECT_EQ(writeHour(entry).visibility, "0");
  EXPECT_EQ(writeHour(entry).availableDetailFields, DetailFields{WeatherDetailField::visibility});
}

TEST(DayTexts, TakeFromTheHoursWhatTheDayLacks) {
  Calendar const calendar = test::zone("Europe/Berlin");
  DailyEntry day;
  day.date = test::date("2026-11-21");
  EXPECT_FALSE(writeDay(day, {}, calendar, {52.52, 13.41}));
  std::vector<HourlyEntry> hours(2, calmHour());
  hours[1].temperature2m = -2;
  hours[1].isDay = true;
  hours[1].cloudCover = 25;
  hours[1].snowfall = 0.7;
  hours[0].snowfall = 0.35;
  auto const written = writeDay(day, hours, calendar, {52.52, 13.41});
  ASSERT_TRUE(written);
  EXPECT_EQ(written->maxtempC, "10");
  EXPECT_EQ(written->mintempC, "-2");
  EXPECT_EQ(written->avgtempC, "4");
  EXPECT_EQ(written->sunHour, "0.8");
  EXPECT_EQ(written->totalSnowCm, "1.0");
  EXPECT_EQ(written->dailyPrecipitationChance, std::nullopt);
  // Sun and moon of that day, computed.
  EXPECT_EQ(written->astronomy[0].sunrise, "07:38 AM");
  EXPECT_EQ(written->astronomy[0].moonPhase, "Waxing Gibbous");
  EXPECT_TRUE(parseClock12(written->astronomy[0].moonrise));
}

}  // namespace
}  // namespace nimbara
