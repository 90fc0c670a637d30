#include "analysis/weather_brief.h"

#include "analysis/stated_numbers.h"
#include "analysis/trend_analyzer.h"
#include "support/forecasts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <regex>
#include <set>

namespace nimbara {
namespace {

using test::at;
using test::mildForecast;
using testing::HasSubstr;
using testing::Not;
using Code = WeatherConditionCode;

Instant const kBegin = at("2026-11-21T00:00:00Z");
Instant const kMorning = at("2026-11-21T09:15:00Z");

/// Mild days that warm up to `high` in the afternoon and cool down to `low`.
WeatherData days(double low = 5, double high = 15) {
  WeatherData weather = mildForecast(kBegin, 24 * 4);
  weather.current = {};
  for (HourlyForecast& hour : weather.allHourly) {
    double const share = hour.hour >= 12 && hour.hour <= 16 ? 1 : hour.hour >= 8 && hour.hour < 20 ? 0.5 : 0;
    hour.tempC = hour.feelsLikeC = low + (high - low) * share;
    hour.tempF = hour.feelsLikeF = fahrenheitFromCelsius(hour.tempC);
  }
  for (DailyForecast& day : weather.daily) day.maxTempC = high;
  return weather;
}

auto falls(std::size_t from, std::size_t to, double mm, int chance, Code code, double celsius = 5) {
  return [=](WeatherData& weather) {
    for (std::size_t i = from; i < to; ++i) {
      HourlyForecast& hour = weather.allHourly[i];
      hour.precipMM = mm;
      hour.chanceOfRain = hour.chanceOfSnow = chance;
      hour.condition = code;
      hour.tempC = hour.feelsLikeC = celsius;
      hour.tempF = hour.feelsLikeF = fahrenheitFromCelsius(celsius);
    }
  };
}

std::string briefOf(WeatherData const& weather, Instant now = kMorning, BriefBeside const& beside = {},
                    Units const& units = Units::metric(), std::string_view language = "en") {
  Texts const texts = Texts::load(language);
  return briefText(weatherBrief(weather, beside, now, units, texts), texts);
}

struct Row {
  std::string what;
  std::function<void(WeatherData&)> change;
  std::string expected;  ///< one of its lines
};

void PrintTo(Row const& row, std::ostream* out) {
  *out << row.what;
}

class BriefRows : public testing::TestWithParam<Row> {};

TEST_P(BriefRows, SayTheFact) {
  WeatherData weather = days();
  GetParam().change(weather);
  EXPECT_THAT(briefOf(weather) + "\n", HasSubstr(GetParam().expected + "\n"));
}

auto const kNothing = [](WeatherData&) {};

INSTANTIATE_TEST_SUITE_P(
    Facts, BriefRows,
    testing::Values(
        Row{"the present", kNothing, "Now: Partly cloudy, 10 °C."},
        Row{"the high", kNothing, "Today: Partly cloudy, high 15 °C."},
        Row{"the low", kNothing, "Tonight: Partly cloudy, low 5 °C."},
        Row{"the same high again", kNothing, "Tomorrow: Partly cloudy, temperatures similar to today."},
        Row{"rain within the day", falls(12, 15, 2, 80, Code::lightRain),
            "Today: Light rain from 12 PM to 3 PM, about 6 mm, otherwise partly cloudy, high 15 °C."},
        Row{"doubtful rain", falls(12, 15, 2, 54, Code::lightRain),
            "Today: Light rain possible from 12 PM to 3 PM, about 6 mm, otherwise partly cloudy, high 15 "
            "°C."},
        Row{"rain that ends soon after the day", falls(16, 20, 1, 55, Code::heavyRain),
            "Today: Heavy rain from 4 PM to 8 PM, about 4 mm, otherwise partly cloudy, high 15 °C."},
        Row{"rain into the night", falls(16, 23, 1, 80, Code::lightRain),
            "Today: Light rain from 4 PM, about 2 mm, otherwise partly cloudy, high 15 °C."},
        Row{"its other part", falls(16, 23, 1, 80, Code::lightRain),
            "Tonight: Light rain until 11 PM, about 5 mm, otherwise partly cloudy, low 5 °C."},
        Row{"snow with its depth", falls(30, 36, 2, 80, Code::heavySnow, -8),
            "Tomorrow: Heavy snow until 12 PM, about 8 cm of new snow, otherwise partly cloudy, temperatures "
            "similar to today."},
        Row{"rain that freezes", falls(20, 22, 1, 80, Code::lightRain, -1),
            "Tonight: Freezing rain from 8 PM to 10 PM, about 2 mm, otherwise partly cloudy, low -1 °C with "
            "frost."},
        Row{"strong gusts", [](WeatherData& weather) { weather.allHourly[37].windGustKmph = 50; },
            "Tomorrow: Partly cloudy, temperatures similar to today. Gusts up to 50 km/h around 1 PM."},
        Row{"gusts worth no word", [](WeatherData& weather) { weather.allHourly[37].windGustKmph = 49; },
            "Tomorrow: Partly cloudy, temperatures similar to today."},
        Row{"strong sun", [](WeatherData& weather) { weather.allHourly[13].uvIndex = 6; },
            "Today: Partly cloudy, high 15 °C. UV index up to 6."},
        Row{"colder days to come",
            [](WeatherData& weather) {
              weather.daily[2].maxTempC = 7;
              weather.daily[3].maxTempC = 8;
            },
            "Tomorrow: Partly cloudy, temperatures similar to today. Colder from Monday, by 8°."},
        Row{"a sky that clears",
            [](WeatherData& weather) {
              for (std::size_t i = 9; i < 14; ++i) weather.allHourly[i].condition = Code::overcast;
              for (std::size_t i = 14; i < 18; ++i) weather.allHourly[i].condition = Code::sunny;
            },
            "Today: Overcast, clearing later, high 15 °C."}));

TEST(Brief, UsesTheReadersUnits) {
  WeatherData weather = days();
  falls(12, 15, 2, 80, Code::lightRain)(weather);
  weather.allHourly[37].windGustKmph = 80;
  Units units = Units::imperial();
  units.wind = WindUnit::knots;
  std::string const text = briefOf(weather, kMorning, {}, units);
  EXPECT_THAT(text, HasSubstr("about 0.2 in, otherwise partly cloudy, high 59 °F."));
  EXPECT_THAT(text, HasSubstr("Gusts up to 43 knots around 1 PM."));
}

TEST(Brief, AgreesWithTheNowcast) {
  WeatherData weather = days();
  falls(9, 12, 2, 80, Code::lightRain)(weather);
  BriefBeside dry;
  dry.nowcast = PrecipOutlook{.state = PrecipOutlook::State::dry, .dryFor = std::chrono::minutes(120)};
  EXPECT_THAT(briefOf(weather, kMorning, dry), HasSubstr("Today: Light rain from 11 AM to 12 PM"));
  BriefBeside wet;
  wet.nowcast = PrecipOutlook{
      .state = PrecipOutlook::State::falls, .fall = Fall::rain, .end = at("2026-11-21T09:40:00Z")};
  EXPECT_THAT(briefOf(weather, kMorning, wet), HasSubstr("Rain until around 9:40 AM."));
}

TEST(Brief, BeginsWithTheWarningInEffect) {
  WeatherAlert warning;
  warning.severity = AlertSeverity::warning;
  warning.title = "Wind warning";
  warning.expires = at("2026-11-21T18:00:00Z");
  std::vector<WeatherAlert> warnings{warning};
  BriefBeside const beside{warnings, {}, {}, {}};
  EXPECT_THAT(briefOf(days(), kMorning, beside), testing::StartsWith("Now: Wind warning until 6 PM. Partly"));
  EXPECT_THAT(briefOf(days(), at("2026-11-21T18:00:00Z"), beside), Not(HasSubstr("Wind warning")));
  warnings.front().onset = at("2026-11-22T19:00:00Z");
  warnings.front().expires = at("2026-11-22T23:00:00Z");
  EXPECT_THAT(briefOf(days(), kMorning, beside),
              HasSubstr("Tomorrow: Wind warning from 7 PM to 11 PM. Partly"));
  warnings.front().title = "Flood";
  EXPECT_THAT(briefOf(days(), kMorning, beside), HasSubstr("Tomorrow: Flood (official warning) from 7 PM"));
  warnings.front().distanceKm = 3;
  EXPECT_THAT(briefOf(days(), kMorning, BriefBeside{warnings, {}, {}, {}}), Not(HasSubstr("Wind warning")));
}

TEST(Brief, ComparesWithWhatIsUsualInTheLastPlace) {
  WeatherData weather = days();
  BriefBeside beside;
  beside.climate = "5° warmer than usual for mid-November (1991–2020)";
  EXPECT_THAT(
      briefOf(weather, kMorning, beside),
      testing::StartsWith("Now: Partly cloudy, 10 °C. 5° warmer than usual for mid-November (1991–2020).\n"));
  weather.allHourly[13].uvIndex = 6;
  EXPECT_THAT(briefOf(weather, kMorning, beside), Not(HasSubstr("usual"))) << "five sentences are enough";
}

/// The morning after and before the night in which the clocks of Berlin change: the parts meet at the hours
/// that its clocks show.
TEST(Brief, CutsDaysOf23And25Hours) {
  Calendar const berlin = test::zone("Europe/Berlin");
  for (auto const& [now, begin] : {std::pair("2026-03-28T09:00:00Z", "2026-03-28T00:00:00Z"),
                                   {"2026-10-24T09:00:00Z", "2026-10-24T00:00:00Z"}}) {
    WeatherData weather = mildForecast(at(begin), 96);
    weather.location.timeZone = "Europe/Berlin";
    for (HourlyForecast& hour : weather.allHourly) {
      auto const local = berlin.hour(hour.date);
      bool const isNight = hour.date > at(now) && hour.date < at(now) + std::chrono::hours(24) && local < 6;
      if (!isNight) continue;
      hour.condition = Code::lightRain;
      hour.precipMM = 1;
      hour.chanceOfRain = 90;
    }
    Texts const texts = Texts::load("en");
    Brief const brief = weatherBrief(weather, {}, at(now), Units::metric(), texts, berlin);
    EXPECT_THAT(brief[BriefPart::tonight], HasSubstr("Light rain from 12 AM")) << now;
    bool const isSpring = std::string_view(now).starts_with("2026-03");
    EXPECT_THAT(brief[BriefPart::tonight], HasSubstr(isSpring ? "about 5 mm" : "about 7 mm")) << now;
    EXPECT_THAT(brief[BriefPart::tomorrow], Not(HasSubstr("rain"))) << now;
  }
}

TEST(Brief, CutsTheDayWhereItsHoursAre) {
  struct Case {
    std::string now;
    std::vector<BriefPart> parts;
  };
  using enum BriefPart;
  for (Case const& one : {Case{"2026-11-21T04:59:00Z", {BriefPart::now, tonight, today, tomorrow}},
                          {"2026-11-21T05:00:00Z", {BriefPart::now, today, tonight, tomorrow}},
                          {"2026-11-21T17:00:00Z", {BriefPart::now, today, tonight, tomorrow}},
                          {"2026-11-21T17:01:00Z", {BriefPart::now, tonight, tomorrow}}}) {
    Brief const brief =
        weatherBrief(days(), {}, at(one.now), Units::metric(), Texts::load("en"), Calendar::utc());
    EXPECT_EQ(brief.order, one.parts) << one.now;
  }
}

TEST(Brief, SpeaksOfNothingThatNobodyKnows) {
  WeatherData weather = days();
  for (HourlyForecast& hour : weather.allHourly) {
    hour.condition = Code::unknown;
    hour.unknownValues = ForecastValues::all();
  }
  EXPECT_EQ(briefOf(weather),
            "Now: 10 °C.\nToday: High 15 °C.\nTonight: Low 5 °C.\nTomorrow: Temperatures similar to today.");
  EXPECT_EQ(briefOf(weather, at("2027-03-01T12:00:00Z")), "");
}

/// In each language a stormy and a wintry day: whole, short, and no figure twice.
TEST(Brief, IsWholeInEveryLanguage) {
  for (Texts::Language const& language : Texts::languages()) {
    WeatherData storm = days(12, 22);
    falls(14, 19, 6, 90, Code::thunderyHeavyRain, 17)(storm);
    storm.allHourly[15].windGustKmph = 90;
    storm.allHourly[13].uvIndex = 8;
    WeatherData winter = days(-12, -3);
    falls(11, 30, 1, 45, Code::heavySnow, -8)(winter);
    for (WeatherData const& weather : {storm, winter}) {
      Texts const texts = Texts::load(language.code);
      Brief const brief = weatherBrief(weather, {}, kMorning, Units::metric(), texts);
      std::string const text = briefText(brief, texts);
      EXPECT_THAT(text,
                  testing::AllOf(Not(HasSubstr("%")), Not(HasSubstr("brief.")), Not(HasSubstr("trend."))))
          << language.code;
      static std::regex const figure(R"(-?\d+ (°C|mm|cm|km/h))");
      std::multiset<std::string> figures;
      for (std::sregex_iterator i(text.begin(), text.end(), figure), end; i != end; ++i)
        figures.insert(i->str());
      for (std::string const& one : figures) EXPECT_EQ(figures.count(one), 1U) << one << " in " << text;
    }
  }
}

TEST(StatedNumbers, MustStandInTheFacts) {
  std::string const facts = "Rain from 14:00 to 19:00, 6,5 mm, low -2 °C.";
  EXPECT_TRUE(hasOnlyNumbersOf("From 14 to 19, 6.5 mm; down to \u22122 °C.", facts));
  EXPECT_FALSE(hasOnlyNumbersOf("It falls to 2 °C.", facts));
  EXPECT_FALSE(hasOnlyNumbersOf("About 65 mm.", facts));
  EXPECT_TRUE(hasOnlyNumbersOf("Rain, 14-19.", facts));
  EXPECT_TRUE(hasOnlyNumbersOf("Wet.", ""));
}

TEST(Pressure, HasTheWordsOfMarineForecasts) {
  using enum PressureTendency;
  for (auto const& [hPa, expected] : {std::pair{0.04, steady},
                                      {0.1, risingSlowly},
                                      {1.5, risingSlowly},
                                      {1.6, rising},
                                      {3.5, rising},
                                      {3.6, risingQuickly},
                                      {6.0, risingQuickly},
                                      {6.1, risingVeryRapidly},
                                      {-1.6, falling},
                                      {-3.6, fallingQuickly},
                                      {-6.1, fallingVeryRapidly}}) {
    EXPECT_EQ(pressureTendency(hPa), expected) << hPa;
  }
}

TEST(Trends, NameTheColdFrontOfEitherHemisphere) {
  for (auto const& [latitude, to, expected] :
       {std::tuple{50.0, "NW", true}, {50.0, "SE", false}, {-40.0, "NE", false}, {-40.0, "SW", true}}) {
    WeatherData weather = days();
    weather.location.latitude = latitude;
    for (std::size_t i = 0; i < 48; ++i) {
      HourlyForecast& hour = weather.allHourly[i];
      hour.windSpeedKmph = 25;
      hour.windDirection = i < 12 ? (latitude > 0 ? "SW" : "NW") : to;
      hour.tempC = i < 12 ? 16 : 9;
    }
    auto const trends = TrendAnalyzer{}.analyze(weather, kMorning);
    EXPECT_EQ(trends.front.has_value() && trends.front->isCold, expected) << latitude << to;
  }
}

}  // namespace
}  // namespace nimbara
