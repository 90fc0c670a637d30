#include "analysis/brief/weather_brief.h"

#include "analysis/brief/stated_numbers.h"
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
            "Today: Light rain from noon to 3 PM, about 6 mm, otherwise partly cloudy, high 15 °C."},
        Row{"doubtful rain", falls(12, 15, 2, 54, Code::lightRain),
            "Today: Light rain possible from noon to 3 PM, about 6 mm, otherwise partly cloudy, high 15 "
            "°C."},
        Row{"rain that ends soon after the day", falls(16, 20, 1, 55, Code::heavyRain),
            "Today: Heavy rain from 4 PM to 8 PM, about 4 mm, otherwise partly cloudy, high 15 °C."},
        Row{"rain into the night", falls(16, 23, 1, 80, Code::lightRain),
            "Today: Light rain from 4 PM, about 2 mm, otherwise partly cloudy, high 15 °C."},
        Row{"its other part", falls(16, 23, 1, 80, Code::lightRain),
            "Tonight: Light rain until 11 PM, about 5 mm, otherwise partly cloudy, low 5 °C."},
        Row{"snow with its depth", falls(30, 36, 2, 80, Code::heavySnow, -8),
            "Tomorrow: Heavy snow until noon, about 8 cm of new snow, otherwise partly cloudy, temperatures "
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

TEST(Brief, NamesTheDayOfAnEndThatIsNotTodays) {
  WeatherData weather = days();
  falls(0, 26, 1, 80, Code::lightRain)(weather);
  EXPECT_THAT(briefOf(weather, at("2026-11-21T02:15:00Z")),
              HasSubstr("Today: Light rain until 2 AM tomorrow,"));
  EXPECT_THAT(briefOf(weather, at("2026-11-21T20:15:00Z")), HasSubstr("Tonight: Light rain until 2 AM,"));
}

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
  EXPECT_THAT(briefOf(weather, kMorning, dry), HasSubstr("Today: Light rain from 11 AM to noon"));
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
  warnings.front().expires = at("2026-11-21T18:30:00Z");
  EXPECT_THAT(briefOf(days(), kMorning, beside), testing::StartsWith("Now: Wind warning until 6:30 PM. "));
  warnings.front().expires = at("2026-11-24T00:00:00Z");
  EXPECT_THAT(briefOf(days(), kMorning, beside),
              testing::StartsWith("Now: Wind warning until midnight on Monday. "))
      << "the midnight that ends it";
  warnings.front().onset = at("2026-11-22T19:00:00Z");
  warnings.front().expires = at("2026-11-22T23:00:00Z");
  EXPECT_THAT(briefOf(days(), kMorning, beside),
              HasSubstr("Tomorrow: Wind warning from 7 PM to 11 PM. Partly"));
  warnings.front().title = "Flood";
  EXPECT_THAT(briefOf(days(), kMorning, beside), HasSubstr("Tomorrow: Flood (official warning) from 7 PM"));
  warnings.front().distanceKm = 3;
  EXPECT_THAT(briefOf(days(), kMorning, BriefBeside{warnings, {}, {}, {}}), Not(HasSubstr("Wind warning")));
}

/// Four dry days and then rain are worth a word, but not behind the rain of tomorrow.
TEST(Brief, SaysUntilWhenItIsDryWhereItIs) {
  WeatherData weather = mildForecast(kBegin, 24 * 7);
  for (HourlyForecast& hour : weather.daily[5].hourly) hour.precipMM = 0.2;
  EXPECT_THAT(briefOf(weather), HasSubstr("Dry until Thursday."));
  falls(21, 23, 2, 80, Code::lightRain)(weather);
  EXPECT_THAT(briefOf(weather), Not(HasSubstr("Dry until")));
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
    EXPECT_THAT(brief[BriefPart::tonight], HasSubstr("Light rain from midnight")) << now;
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

struct Translated {
  std::string language, today, tonight, warning;
};

void PrintTo(Translated const& row, std::ostream* out) {
  *out << row.language;
}

class BriefLanguages : public testing::TestWithParam<Translated> {};

/// The same facts: rain from noon until three, gusts, snow before midnight, and a warning that keeps its
/// minutes.
TEST_P(BriefLanguages, WriteAsAForecasterOfTheirs) {
  WeatherData weather = days();
  falls(12, 15, 2, 80, Code::lightRain)(weather);
  falls(21, 24, 2, 80, Code::lightSnow, -2)(weather);
  weather.allHourly[13].windGustKmph = 61;
  WeatherAlert warning;
  warning.severity = AlertSeverity::warning;
  warning.title = "Alert";
  warning.onset = at("2026-11-21T13:00:00Z");
  warning.expires = at("2026-11-21T18:30:00Z");
  std::vector<WeatherAlert> const warnings{warning};
  Texts const texts = Texts::load(GetParam().language + "@hours=h23");
  Brief const brief = weatherBrief(weather, {}, kMorning, Units::metric(), texts);
  EXPECT_EQ(brief[BriefPart::today], GetParam().today);
  EXPECT_EQ(brief[BriefPart::tonight], GetParam().tonight);
  EXPECT_THAT(
      weatherBrief(weather, {warnings, {}, {}, {}}, kMorning, Units::metric(), texts)[BriefPart::today],
      testing::StartsWith(GetParam().warning));
}

INSTANTIATE_TEST_SUITE_P(
    Ten, BriefLanguages,
    testing::Values(
        Translated{"en",
                   "Light rain from noon to 15:00, about 6 mm, otherwise partly cloudy, high 15 °C. Gusts up "
                   "to 61 km/h around 13:00.",
                   "Light snow from 21:00 to midnight, about 4 cm of new snow, otherwise partly cloudy, low "
                   "-2 °C with frost.",
                   "Alert from 13:00 to 18:30. "},
        Translated{"de",
                   "Leichter Regen von 12 bis 15 Uhr, etwa 6 mm, sonst leicht bewölkt, Höchstwert 15 °C. "
                   "Böen bis 61 km/h gegen 13 Uhr.",
                   "Leichter Schneefall von 21 Uhr bis Mitternacht, etwa 4 cm Neuschnee, sonst leicht "
                   "bewölkt, Tiefstwert -2 °C mit Frost.",
                   "Alert von 13 bis 18:30 Uhr. "},
        Translated{"fr",
                   "Pluie faible de midi à 15 h, environ 6 mm, éclaircies le reste du temps, maximum 15 °C. "
                   "Rafales jusqu’à 61 km/h vers 13 h.",
                   "Neige faible de 21 h à minuit, environ 4 cm de neige fraîche, éclaircies le reste du "
                   "temps, minimum -2 °C avec gel.",
                   "Alert de 13 h à 18 h 30. "},
        Translated{"es",
                   "Lluvia débil desde el mediodía hasta las 15:00, unos 6 mm, poco nuboso el resto del "
                   "tiempo, máxima de 15 °C. Rachas de hasta 61 km/h hacia las 13:00.",
                   "Nieve débil desde las 21:00 hasta la medianoche, unos 4 cm de nieve nueva, poco nuboso "
                   "el resto del tiempo, mínima de -2 °C con heladas.",
                   "Alert desde las 13:00 hasta las 18:30. "},
        Translated{"it",
                   "Pioggia debole da mezzogiorno alle 15, circa 6 mm, per il resto poco nuvoloso, massima "
                   "15 °C. Raffiche fino a 61 km/h verso le 13.",
                   "Neve debole dalle 21 a mezzanotte, circa 4 cm di neve fresca, per il resto poco "
                   "nuvoloso, minima -2 °C con gelo.",
                   "Alert dalle 13 alle 18:30. "},
        Translated{"pt",
                   "Chuva fraca do meio-dia às 15h, cerca de 6 mm, pouco nublado no resto do tempo, máxima "
                   "de 15 °C. Rajadas até 61 km/h por volta das 13h.",
                   "Neve fraca das 21h à meia-noite, cerca de 4 cm de neve nova, pouco nublado no resto do "
                   "tempo, mínima de -2 °C com geada.",
                   "Alert das 13h às 18h30. "},
        Translated{"nl",
                   "Lichte regen van 12 tot 15 uur, ongeveer 6 mm, verder half bewolkt, maximum 15 °C. "
                   "Windstoten tot 61 km/h rond 13 uur.",
                   "Lichte sneeuw van 21 uur tot middernacht, ongeveer 4 cm verse sneeuw, verder half "
                   "bewolkt, minimum -2 °C met vorst.",
                   "Alert van 13 tot 18.30 uur. "},
        Translated{"pl",
                   "Słaby deszcz od 12:00 do 15:00, około 6 mm, poza tym małe zachmurzenie, maksymalnie 15 "
                   "°C. Porywy do 61 km/h około 13:00.",
                   "Słaby śnieg od 21:00 do północy, około 4 cm świeżego śniegu, poza tym małe zachmurzenie, "
                   "minimalnie -2 °C, przymrozek.",
                   "Alert od 13:00 do 18:30. "},
        Translated{"ja",
                   "正午から15時まで弱い雨、約6 mm、その他の時間は晴れ時々曇り、最高15 "
                   "°C。13時頃に最大瞬間風速61 km/h。",
                   "21時から深夜0時まで弱い雪、新雪約4 cm、その他の時間は晴れ時々曇り、最低-2 °C、霜に注意。",
                   "13時から18時30分までAlert。"},
        Translated{"zh", "正午至15时小雨，约6 mm，其余时间少云，最高15 °C。13时前后阵风可达61 km/h。",
                   "21时至午夜小雪，新增积雪约4 cm，其余时间少云，最低-2 °C，有霜冻。",
                   "13时至18时30分Alert。"}),
    [](auto const& info) { return info.param.language; });

TEST(StatedNumbers, MustStandInTheFacts) {
  std::string const facts = "Rain from 14:00 to 19:00, 6,5 mm, low -2 °C.";
  auto const areThere = [&](std::string_view text) { return hasOnlyNumbersOf(text, facts, "en"); };
  EXPECT_TRUE(areThere("From 14 to 19, 6.5 mm; down to \u22122 °C."));
  EXPECT_FALSE(areThere("It falls to 2 °C."));
  EXPECT_FALSE(areThere("About 65 mm."));
  EXPECT_TRUE(areThere("Rain, 14-19."));
  EXPECT_TRUE(areThere("From fourteen to nineteen, down to minus two degrees."));
  EXPECT_FALSE(areThere("Down to minus twelve degrees."));
  EXPECT_TRUE(hasOnlyNumbersOf("Wet.", "", "en"));
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
