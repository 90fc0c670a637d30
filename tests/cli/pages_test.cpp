// Pages of the command line: warnings and their areas, regions, the K index, passes, one present on all
// faces; and what is said of slowness.
#include "base/text/text.h"
#include "cli/pages/forecast/forecast_report.h"
#include "cli/pages/forecast/line_text.h"
#include "cli/pages/kp_page.h"
#include "cli/pages/pass_table.h"
#include "cli/pages/warnings/area_map.h"
#include "cli/pages/warnings/region_table.h"
#include "cli/pages/warnings/warning_page.h"
#include "cli/slow_note.h"
#include "support/forecasts.h"
#include "support/instants.h"
#include "support/paths.h"
#include "support/samples.h"
#include "support/test_console.h"

#include <gmock/gmock.h>

#include <set>

namespace nimbara {
namespace {

using test::at;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using Code = WeatherConditionCode;
using namespace std::chrono_literals;

TEST(WarningPage, SaysHowGraveWhereUntilWhenAndWhatToDo) {
  WeatherAlert alert;
  alert.severity = AlertSeverity::warning;
  alert.title = "Flood Watch";
  alert.message = "Flood Watch until this evening";
  alert.areaDesc = "Cook County";
  alert.instruction = "Be ready.";
  alert.source = "NWS Chicago IL";
  alert.onset = at("2026-11-21T15:00:00Z");
  alert.expires = at("2026-11-23T03:00:00Z");
  Texts const texts = Texts::load("en");
  Style const style;
  WarningPageContext const context{texts, style, test::zone("America/Chicago"), at("2026-11-21T09:20:00Z"),
                                   60};
  EXPECT_EQ(warningPage({warningEntry(alert)}, context),
            "Warning: Flood Watch\n"
            "  from 9:00 AM, until Sunday 9:00 PM\n"
            "  Cook County\n"
            "  Flood Watch until this evening\n"
            "  What to do: Be ready.\n"
            "  NWS Chicago IL\n");
}

TEST(WarningPage, SaysWhatTheIssuerSaysAndWhatIsNear) {
  WeatherAlert alert;
  alert.severity = AlertSeverity::advisory;
  alert.title = "Wind Warning";
  alert.message = alert.areaDesc.emplace("Coast");
  alert.text = alert.description = " Gusts of 80 km/h.\n\nLater less.";
  alert.instruction = "Stay inside.\nClose windows.";
  alert.source = "MeteoAlarm";
  alert.issuer = "DHMZ";
  alert.colour = "orange";
  alert.issued = at("2026-11-21T05:30:00Z");
  alert.near = {{"Hills", 34.6}};
  alert.isFullText = true;
  Texts const texts = Texts::load("en");
  Style const style;
  WarningPageContext context{texts, style, Calendar::utc(), at("2026-11-21T09:20:00Z"), 60};
  EXPECT_EQ(warningPage({warningEntry(alert)}, context),
            "Orange: Wind Warning\n  Severity stated by the service: Advisory\n  Coast\n  Nearby: Hills (35 "
            "km)\n  Gusts of 80 km/h.\n  Later "
            "less.\n  What to do: Stay inside.\n  Close windows.\n  DHMZ, via MeteoAlarm, issued 5:30 AM\n");
  alert.distanceKm = 34.6;
  alert.isFullText = false;
  alert.text = "Strong wind";
  context.distance = DistanceUnit::miles;
  std::string const near = warningPage({warningEntry(alert)}, context);
  EXPECT_THAT(near, HasSubstr("  nearby: the warned area starts 21 mi away\n"));
  EXPECT_THAT(near, HasSubstr("  Strong wind\n  The full text could not be fetched."));
}

AlertOutlines square(double south, double west, double size) {
  return {{{{south, west}, {south, west + size}, {south + size, west + size}, {south + size, west}}}, true};
}

TEST(AreaMaps, ShowTheAreaAndThePlaceOnLandOrSea) {
  EXPECT_EQ(areaMap({}, {0, -30}, 40, {}), "") << "nothing is drawn";
  // In the middle of the Atlantic: 13 rows by 40 columns, of a tenth and a twentieth of a degree.
  Style const ascii{.colour = false, .ascii = true};
  std::string const map = areaMap(square(-0.5, -30.5, 1), {0, -30}, 40, ascii);
  auto const lines = split(trimmed(map), '\n');
  EXPECT_EQ(std::ranges::count(map, '\n'), 13);
  EXPECT_EQ(std::ranges::count(map, 'X'), 1);
  EXPECT_EQ(std::ranges::count(map, '.'), 0) << "the sea is left blank";
  ASSERT_EQ(lines.size(), 11U) << map;
  for (std::string_view const line : lines) EXPECT_EQ(std::ranges::count(line, '#') + line.contains('X'), 20);
  EXPECT_NE(areaMap(square(48, 8, 1), {49, 9}, 40, ascii).find("...."), std::string::npos) << "on land";
}

TEST(AreaMaps, FitTheirWidthAndTheTerminal) {
  for (int const width : {1, 10, 39, 40, 200}) {
    std::string const map = areaMap(square(64, 179, 2), {65, -178}, width, {});
    EXPECT_NE(map.find("◉"), std::string::npos) << width;
    for (std::string_view const line : split(map, '\n')) EXPECT_LE(displayWidth(line), std::min(width, 40));
  }
}

TEST(PlacesAndTheirRegions, AreThoseOfTheTable) {
  auto const rows =
      readRegionTable(test::readFile(std::filesystem::path(test::kFixtures) / "regions/places.tsv"));
  ASSERT_TRUE(rows) << rows.error();
  Regions const regions({});
  std::set<std::string> countries;
  for (RegionTableRow const& row : *rows) {
    countries.insert(row.country);
    EXPECT_EQ(describe(foundRow(row, regions)), describe(row)) << row.place;
  }
  EXPECT_GE(rows->size(), 150U);
  EXPECT_GE(countries.size(), 35U);
}

TEST(PlacesAndTheirRegions, AreRefusedWhereALineIsWrong) {
  EXPECT_TRUE(readRegionTable("# none\n\n"));
  for (std::string const bad :
       {"Berlin\t52\t13\tDE\tDE202\t", "Berlin\tx\t13\tDE\tDE202\t\t", "Berlin\t92\t13\tDE\tDE202\t\t"}) {
    auto const rows = readRegionTable("# head\n" + bad + "\n");
    ASSERT_FALSE(rows);
    EXPECT_EQ(rows.error(), "line 2 is not a place with its regions");
  }
}

constexpr char kNow[] = "2026-11-21T09:20:00Z";

std::string page(KpOutlook const& outlook, Calendar const& calendar = Calendar::utc(),
                 Texts const& texts = Texts::load("en")) {
  return kpPage(outlook, texts, calendar, at(kNow), Style{});
}

TEST(KpPage, SaysWhatTheIndexMeansForAPlace) {
  struct Row {
    double kp;
    Coordinate place;
    std::string_view sentence;
  };
  for (Row const& row :
       {Row{1.67, {52.52, 13.41}, "Kp 1.67: quiet; aurora not expected at 53°N\n"},
        Row{7,
            {52.52, 13.41},
            "Kp 7.00: strong storm (G3); aurora possible low on the horizon at 53°N, in a dark and clear "
            "sky\n"},
        Row{4,
            {69.65, 18.96},
            "Kp 4.00: active; aurora possible high in the sky at 70°N, if it is dark and clear\n"},
        Row{0, {-42.88, 147.33}, "Kp 0.00: quiet; aurora not expected at 43°S\n"}}) {
    EXPECT_EQ(page({row.kp, {}, {}, row.place}), row.sentence);
  }
  EXPECT_EQ(page({1.67, {}, {}, {}}), "Kp 1.67: quiet\nAuroras stay in the polar regions.\n");
  EXPECT_THAT(page({1.67, {}, {}, {}}, Calendar::utc(), Texts::load("de")), StartsWith("Kp 1,67: ruhig\n"));
}

TEST(KpPage, HasTheLastAndTheNextDaysInTheReadersHours) {
  using enum KpKind;
  KpOutlook const outlook{
      2,
      {{at("2026-11-20T21:00:00Z"), 1.33, observed},
       {at("2026-11-21T00:00:00Z"), 2.67, observed},
       {at("2026-11-21T06:00:00Z"), 2, estimated}},
      {{at("2026-11-21T09:00:00Z"), 3, predicted}, {at("2026-11-22T18:00:00Z"), 5.33, predicted}},
      {}};
  EXPECT_THAT(page(outlook),
              testing::EndsWith("Highest in the forecast: Kp 5.33, minor storm (G1), Sunday 6:00 PM\n"
                                "\n"
                                "Kp in steps of three hours (~ forecast)\n"
                                "           12 AM    3 AM    6 AM    9 AM   12 PM    3 PM    6 PM    9 PM\n"
                                "Fri 20                                                              1.33\n"
                                "Sat 21      2.67            2.00   ~3.00\n"
                                "Sun 22                                                     ~5.33\n"));
  EXPECT_THAT(page(outlook, test::zone("Europe/Berlin")),
              HasSubstr("            1 AM    4 AM    7 AM   10 AM    1 PM    4 PM    7 PM   10 PM\n"
                        "Fri 20                                                              1.33\n"
                        "Sat 21      2.67            2.00   ~3.00\n"));
  EXPECT_THAT(page(outlook, test::zone("Asia/Kathmandu")), HasSubstr("     2:45    5:45    8:45   11:45"));
  KpOutlook const measured{2, outlook.history, {}, {}};
  EXPECT_THAT(page(measured), HasSubstr("\n\nKp in steps of three hours\n"));
  EXPECT_THAT(page(measured), testing::Not(HasSubstr("Highest")));
}

SatellitePass pass(std::string const& day, double elevation, bool sunlit, bool dark) {
  SatellitePass made;
  made.rise = {at(day + "T15:45:20Z"), 281, 0};
  made.culmination = {at(day + "T15:50:00Z"), 190, elevation};
  made.set = {at(day + "T15:55:00Z"), 85, 0};
  made.sunlit = sunlit;
  made.skyDark = dark;
  return made;
}

SatellitePass visiblePass(std::string const& day) {
  SatellitePass made = pass(day, 62, true, true);
  made.visible = {at(day + "T15:46:10Z"), at(day + "T15:52:00Z")};
  return made;
}

std::string table(std::vector<ListedPass> const& passes, bool isVisibleOnly = false, int days = 3,
                  std::string const& language = "en") {
  Texts const texts = Texts::load(language);
  Calendar const calendar = test::zone("Europe/Berlin");
  TimeWords const words(texts, calendar);
  Style const style;
  return passTable(
      passes, {"ISS (ZARYA)", "Berlin", days, isVisibleOnly, kVisibleAbove, texts, words, calendar, style});
}

TEST(PassTable, HasPointsOfTheCompassBelowEachDay) {
  EXPECT_EQ(table({{"ISS (ZARYA)", pass("2026-11-21", 23.4, true, false), 14},
                   {"ISS (ZARYA)", visiblePass("2026-11-21"), 100},
                   {"ISS (ZARYA)", visiblePass("2026-11-22"), std::nullopt}}),
            "ISS (ZARYA): passes over Berlin\n"
            "        Rises          Highest         Sets  Visible            Clouds\n"
            "Saturday, 21 November 2026\n"
            "  4:45 PM W    4:50 PM 23° S    4:55 PM E    bright sky           14 %\n"
            "  4:45 PM W    4:50 PM 62° S    4:55 PM E    4:46 PM – 4:52 PM   100 %\n"
            "Sunday, 22 November 2026\n"
            "  4:45 PM W    4:50 PM 62° S    4:55 PM E    4:46 PM – 4:52 PM\n");
}

TEST(PassTable, SaysWhyAPassIsNotVisible) {
  struct Row {
    double elevation;
    bool sunlit, dark;
    std::string_view why;
  };
  for (Row const& row : {Row{50, true, false, "bright sky"}, Row{50, false, false, "bright sky"},
                         Row{50, false, true, "in shadow"}, Row{9.9, true, true, "too low"}}) {
    EXPECT_THAT(table({{"ISS", pass("2026-11-21", row.elevation, row.sunlit, row.dark), {}}}),
                HasSubstr(row.why));
  }
}

TEST(PassTable, FitsATerminal) {
  for (char const* const language : {"en", "de", "fr"}) {
    std::string const text = table({{"ISS (ZARYA)", visiblePass("2026-11-21"), 100}}, false, 3, language);
    for (std::string_view const line : split(text, '\n')) EXPECT_LE(displayWidth(line), 80) << line;
  }
  EXPECT_THAT(table({{"ISS (ZARYA)", visiblePass("2026-11-21"), 1}}, false, 3, "de"), HasSubstr(" O "));
}

TEST(PassTable, IsASentenceWithoutPasses) {
  EXPECT_EQ(table({}), "ISS (ZARYA) does not rise over Berlin in the next 3 days.\n");
  EXPECT_EQ(table({}, false, 1), "ISS (ZARYA) does not rise over Berlin in the next 24 hours.\n");
  EXPECT_EQ(table({}, true), "No visible passes of ISS (ZARYA) over Berlin in the next 3 days.\n");
}

std::string saidWithin(std::chrono::milliseconds patience, bool isWatched) {
  Environment const environment = test::plainEnvironment();
  test::TestConsole console;
  console.isWatched = isWatched;
  Session session{environment, console, {}};
  session.patience = patience;
  {
    SlowNote const note(session, "working …");
  }
  return console.errors;
}

TEST(SlowNote, IsForThosePatienceEndsBeforeTheWork) {
  EXPECT_EQ(saidWithin(std::chrono::milliseconds(0), true), "nimbara: working …\n");
  EXPECT_EQ(saidWithin(std::chrono::hours(1), true), "") << "and nobody waits for the hour";
  EXPECT_EQ(saidWithin(std::chrono::milliseconds(0), false), "") << "nobody watches";
}

struct Faces {
  std::string page;
  std::string line;
  std::string tip;
};

Faces facesOf(WeatherData data, Instant now) {
  ForecastAnswer answer;
  answer.answeredAt = data.fetchedAt;
  answer.data = std::move(data);
  static Texts const kTexts = Texts::load("en");
  ReportOptions options;
  options.now = now;
  KeptWarnings const official{{}, coverageOf({}, "JP")};
  LineContext const context{answer, official, kTexts, options.units, now, false};
  return {forecastReport(answer, options, kTexts, Calendar::utc()), *filledLine(kLineTemplate, context),
          tooltip(context)};
}

TEST(PresentFaces, TellTheHourOnceTheReadingIsOld) {
  WeatherData data = test::mildForecast(at("2026-11-21T10:00:00Z"), 30);
  data.fetchedAt = at("2026-11-21T10:15:00Z");
  data.current.observationTime = "2026-11-21T10:15";
  data.current.tempC = 20;
  for (HourlyForecast& hour : data.allHourly) {
    hour.tempC = -5;
    hour.condition = Code::heavySnow;
  }
  Faces const young = facesOf(data, at("2026-11-21T10:20:00Z"));
  EXPECT_THAT(young.page, HasSubstr("20 °C  Partly Cloudy"));
  EXPECT_THAT(young.line, HasSubstr("20° Partly Cloudy"));
  Faces const later = facesOf(data, at("2026-11-21T21:15:00Z"));
  EXPECT_THAT(later.page, HasSubstr("-5 °C  Heavy Snow"));
  EXPECT_THAT(later.page, Not(HasSubstr("20 °C")));
  EXPECT_THAT(later.line, HasSubstr("-5° Heavy Snow"));
  EXPECT_THAT(later.tip, HasSubstr("-5° Heavy Snow"));
}

TEST(PresentFaces, CallNoNightSunny) {
  WeatherData data = test::mildForecast(at("2026-11-21T22:00:00Z"), 24);
  data.current.condition = Code::sunny;
  data.current.conditionDescription = "Sunny";
  data.current.isDay = true;
  Faces const night = facesOf(data, at("2026-11-21T22:10:00Z"));
  EXPECT_THAT(night.page, HasSubstr("☾"));
  for (std::string const& face : {night.page, night.line, night.tip}) {
    EXPECT_THAT(face, HasSubstr("Clear"));
    EXPECT_THAT(face.substr(0, face.find("7-day forecast")), Not(HasSubstr("Sunny")));
  }
}

struct PolarRow {
  std::string now;
  std::string sun;
  bool hasMoons;
};

TEST(PresentFaces, KnowMidnightSunAndPolarNight) {
  for (PolarRow const& row : {PolarRow{"2026-06-21T22:10:00Z", "stays up all day", false},
                              PolarRow{"2026-12-21T12:10:00Z", "stays below the horizon all day", true}}) {
    WeatherData data = test::mildForecast(std::chrono::floor<std::chrono::hours>(at(row.now)), 24);
    data.location.latitude = 78.22;
    data.location.longitude = 15.65;
    data.current.condition = Code::sunny;
    for (HourlyForecast& hour : data.allHourly) hour.condition = Code::sunny;
    for (DailyForecast& day : data.daily) {
      day.astronomy = {"No sunrise", "No sunset", "No moonrise", "No moonset", "Full Moon", 100};
      for (HourlyForecast& hour : day.hourly) hour.condition = Code::sunny;
    }
    Faces const faces = facesOf(data, at(row.now));
    EXPECT_THAT(faces.page, HasSubstr(row.sun));
    EXPECT_THAT(faces.page, HasSubstr(row.hasMoons ? "☾" : "☀"));
    EXPECT_THAT(faces.page, Not(HasSubstr(row.hasMoons ? "☀" : "☾")));
    for (std::string const& face : {faces.page, faces.tip}) {
      EXPECT_THAT(face, HasSubstr(row.hasMoons ? "Clear" : "Sunny"));
      EXPECT_THAT(face, Not(HasSubstr(row.hasMoons ? "Sunny" : "Clear")));
    }
  }
}

TEST(PresentFaces, ShowNoUnknownValueAsZero) {
  WeatherData data = test::mildForecast(at("2026-11-21T10:00:00Z"), 30);
  auto const forget = [](HourlyForecast& hour) { hour.unknownValues = ForecastValues::all(); };
  std::ranges::for_each(data.allHourly, forget);
  for (DailyForecast& day : data.daily) std::ranges::for_each(day.hourly, forget);
  data.current.unknownValues = ForecastValues::all();
  data.daily.front().precipMM = 72;
  std::string const page = facesOf(data, at("2026-11-21T10:20:00Z")).page;
  for (char const* const hidden : {"0 %\n", "0.0 mm", "rain %", "km/h", "Wind", "Precipitation"}) {
    EXPECT_THAT(page, Not(HasSubstr(hidden)));
  }
  EXPECT_THAT(page, HasSubstr("72.0 mm"));
}

}  // namespace
}  // namespace nimbara
