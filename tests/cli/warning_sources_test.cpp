// Where warnings come from and where they hold, as the command line says it, and how scenes of them come out.
#include "cli/pages/warnings/source_report.h"
#include "cli/pages/warnings/warning_json.h"
#include "cli/pages/warnings/warning_page.h"
#include "demo/demo_server.h"
#include "feeds/alerts/routing/official_sources.h"
#include "support/manual_clock.h"
#include "support/session/demo_session.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::at;
using test::CliRun;
using testing::HasSubstr;
using testing::Not;

Instant const kNow = at("2026-11-21T14:40:00Z");

std::string written(WeatherAlert const& warning, WarningGeometry geometry) {
  JsonWriter json;
  writeWarnings(json, {warning}, geometry);
  return json.take();
}

WeatherAlert drawn(std::vector<std::string> polygons, std::vector<std::string> circles) {
  WeatherAlert warning;
  warning.id = Uuid();
  if (!polygons.empty()) warning.polygons = std::move(polygons);
  if (!circles.empty()) warning.circles = std::move(circles);
  return warning;
}

struct GeometryRow {
  char const* name;
  std::vector<std::string> polygons;
  std::vector<std::string> circles;
  char const* geometry;
};

void PrintTo(GeometryRow const& row, std::ostream* out) {
  *out << row.name;
}

struct Geometries : testing::TestWithParam<GeometryRow> {};

TEST_P(Geometries, AreGeoJsonWithTheLongitudeFirst) {
  WeatherAlert const warning = drawn(GetParam().polygons, GetParam().circles);
  std::string const plain = written(warning, WarningGeometry::left);
  EXPECT_EQ(plain, written(drawn({}, {}), WarningGeometry::left)) << "shapes are printed on request only";
  std::string const geometry = GetParam().geometry;
  std::string const expected = plain.substr(0, plain.size() - 2) + R"(,"geometry":)" + geometry +
                               R"(,"geometryState":")" + (geometry == "null" ? "place" : "drawn") + "\"}]";
  EXPECT_EQ(written(warning, WarningGeometry::asGeoJson), expected);
}

TEST(WarningJson, SaysWhyThereIsNoGeometry) {
  WeatherAlert warning = drawn({}, {});
  warning.isGovAlert = true;
  EXPECT_THAT(written(warning, WarningGeometry::asGeoJson),
              HasSubstr(R"("geometry":null,"geometryState":"names")"));
  warning.messages = {WarningMessage{"2", "", kNow, "Actual", "Alert", {}, {{"UGC", "COZ038"}}}};
  EXPECT_THAT(written(warning, WarningGeometry::asGeoJson),
              HasSubstr(R"("geometry":null,"geometryState":"codes")"));
}

TEST(WarningJson, NamesTheMessagesAndWhoPassesThemOn) {
  WeatherAlert warning = drawn({}, {});
  EXPECT_THAT(written(warning, WarningGeometry::left), Not(HasSubstr("_nimbaraThrough")));
  warning.isGovAlert = true;
  warning.messages = {WarningMessage{"2",
                                     "office@weather.example",
                                     kNow,
                                     "Actual",
                                     "Update",
                                     {{"office@weather.example", "1", std::nullopt}},
                                     {{"EMMA_ID", "RS010"}}}};
  for (auto const& [source, through] : {std::pair("NWS Hills", "direct"),
                                        {"MeteoAlarm", "direct"},
                                        {"WMO Severe Weather Information Centre", "wmo"},
                                        {"FOSS Public Alert Server", "fpas"}}) {
    warning.source = source;
    EXPECT_THAT(written(warning, WarningGeometry::left),
                HasSubstr(R"("_nimbaraMessages":[{"identifier":"2","sender":"office@weather.example",)"
                          R"("sent":"2026-11-21T14:40:00Z","status":"Actual","msgType":"Update",)"
                          R"("references":[{"sender":"office@weather.example","identifier":"1"}],)"
                          R"("codes":[{"registry":"EMMA_ID","code":"RS010"}]}],"_nimbaraThrough":")" +
                          std::string(through) + "\"}"));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Geometries,
    testing::Values(
        GeometryRow{"None", {}, {}, "null"}, GeometryRow{"Unreadable", {"1,2 3"}, {"x"}, "null"},
        GeometryRow{"Open",
                    {"1,10 1,11 2,11"},
                    {},
                    R"({"type":"MultiPolygon","coordinates":[[[[10,1],[11,1],[11,2],[10,1]]]]})"},
        GeometryRow{"ClosedTwice",
                    {"1,10 1,11 2,11 1,10", "-1.5,179 -1,180 -2,180 -1.5,179"},
                    {},
                    R"({"type":"MultiPolygon","coordinates":[[[[10,1],[11,1],[11,2],[10,1]]],)"
                    R"([[[179,-1.5],[180,-1],[180,-2],[179,-1.5]]]]})"},
        GeometryRow{"Circle",
                    {},
                    {"52.5,13.4 20"},
                    R"({"type":"GeometryCollection","geometries":[{"type":"Point","coordinates":[13.4,52.5],)"
                    R"("radiusKm":20}]})"},
        GeometryRow{"Both",
                    {"1,10 1,11 2,11"},
                    {"1,2 0.5", "3,4 1"},
                    R"({"type":"GeometryCollection","geometries":[)"
                    R"({"type":"MultiPolygon","coordinates":[[[[10,1],[11,1],[11,2],[10,1]]]]},)"
                    R"({"type":"Point","coordinates":[2,1],"radiusKm":0.5},)"
                    R"({"type":"Point","coordinates":[4,3],"radiusKm":1}]})"}),
    [](auto const& row) { return row.param.name; });

TEST(UnplacedEntries, SayForWhichPartsOfTheCountry) {
  Texts const texts = Texts::load("en");
  WeatherAlert warning;
  warning.title = "Heavy rain";
  warning.message = "North Province";
  EXPECT_EQ(unplacedEntry(warning, "NG", texts).area, "For the country");
  warning.areaDesc = "Nigeria";
  EXPECT_EQ(unplacedEntry(warning, "NG", texts).area, "For the country");
  warning.areaDesc = "North Province";
  EXPECT_EQ(unplacedEntry(warning, "NG", texts).area, "For: North Province");
  EXPECT_EQ(unplacedEntry(warning, "NG", texts).message, "") << "not a second time";
}

class SourceReports : public testing::Test {
 protected:
  static GovAlertSource failing(std::string name) {
    return {std::move(name), [](GovAlertPlace const&) { return true; },
            [](GovAlertPlace const&, EventMemory&,
               std::stop_token const&) -> Result<GovSourceAnswer, GovSourceFailure> {
              return std::unexpected(GovSourceFailure{ServiceFailure::answered(503), {}, {}});
            }};
  }
  static GovAlertSource quiet(std::string name) {
    return {std::move(name), [](GovAlertPlace const&) { return true; },
            [](GovAlertPlace const&, EventMemory&, std::stop_token const&) { return GovSourceAnswer{}; }};
  }

  test::ManualClock clock_{kNow};
  GovAlertService alerts_{clock_,
                          {failing("wmo"), quiet("fpas"), quiet("brightsky")},
                          {},
                          {[](GovAlertPlace const& place) -> std::vector<std::string_view> {
                             if (place.chosenSource == "brightsky") return {"brightsky"};
                             return {"wmo", "fpas"};
                           },
                           {},
                           {}}};
};

TEST_F(SourceReports, SayWhoServesAPlaceAndWhoFollows) {
  Texts const texts = Texts::load("en");
  SavedPlace tokyo;
  tokyo.name = "Tokyo";
  tokyo.coordinate = {35.68, 139.69};
  alerts_.fetchAlerts(govAlertPlace(tokyo.coordinate));
  SavedPlace berlin;
  berlin.name = "Berlin";
  berlin.coordinate = {52.52, 13.41};
  berlin.warningSource = "brightsky";
  std::vector<PlaceSources> const places{placeSources(tokyo, alerts_, kNow),
                                         placeSources(berlin, alerts_, kNow)};
  Calendar const utc = Calendar::utc();
  EXPECT_EQ(sourceReport(places, {texts, utc, kNow, 70}),
            R"(Tokyo
  Source               FOSS Public Alert Server
  State                No official warnings, checked 2:40 PM. Checked
                       through FOSS Public Alert Server because WMO
                       Severe Weather Information Centre was
                       unavailable: the service returned an error
                       (HTTP 503)
  Last good check      2:40 PM
  What it cannot give  Not every country takes part; No warned areas
                       in mainland China; Levels of different issuers
                       cannot be compared; Run by volunteers, on trial
  If it is unavailable The last known warnings stay, with the time of
                       their check

Berlin
  Source               Deutscher Wetterdienst
  Ask first            Deutscher Wetterdienst (your choice)
  State                Official warnings have not been checked yet
  Last good check      None so far
  What it cannot give  No flood warnings; Texts are in English and
                       German only
  If it is unavailable The last known warnings stay, with the time of
                       their check
)");
  EXPECT_THAT(sourceReport(places, {Texts::load("ja"), utc, kNow, 70}), HasSubstr("  得られない情報"));
  std::string const json = sourceReportJson({places[0]}, texts);
  for (char const* const part :
       {R"("place":"Tokyo")", R"("source":"fpas")", R"("through":"fpas")", R"("chosen":false)",
        R"("state":"none")", R"("insteadOf":"wmo","insteadReason":"the service returned status 503")",
        R"("thenAsked":["fpas"])", R"("possible":["wmo","fpas"])"}) {
    EXPECT_THAT(json, HasSubstr(part));
  }
}

struct FallbackRow {
  char const* name;
  char const* place;
  std::vector<Service> down;
  std::vector<char const*> parts;
};

void PrintTo(FallbackRow const& row, std::ostream* out) {
  *out << row.name;
}

struct Fallbacks : testing::TestWithParam<FallbackRow> {};

TEST_P(Fallbacks, AreSaidInOneEntry) {
  FixedClock const clock{at("2026-11-21T09:20:00Z")};
  std::vector<DemoFault> faults;
  for (Service const service : GetParam().down) faults.push_back({service, DemoFault::Kind::garbage});
  auto const server = *DemoServer::start(clock, faults);
  CliRun const run = test::run({"coverage", GetParam().place, "--json", "--services", server->baseUrl(),
                                "--now", "2026-11-21T09:20:00Z"});
  EXPECT_EQ(std::ranges::count(run.out, '{'), 1) << run.out;
  for (char const* const part : GetParam().parts) EXPECT_THAT(run.out, HasSubstr(part));
}

constexpr char kTokyo[] = "35.68,139.69";

INSTANTIATE_TEST_SUITE_P(
    Rows, Fallbacks,
    testing::Values(
        FallbackRow{"None", kTokyo, {}, {R"("source":"wmo")", R"("insteadOf":null)"}},
        FallbackRow{"Second",
                    kTokyo,
                    {Service::wmoWarnings},
                    {R"("source":"fpas")", R"("since":null,"reason":null)",
                     R"("insteadOf":"wmo","insteadReason":"the)"}},
        FallbackRow{"OnlyTheSecond", kTokyo, {Service::fpas}, {R"("source":"wmo")", R"("insteadOf":null)"}},
        FallbackRow{"All",
                    kTokyo,
                    {Service::wmoWarnings, Service::fpas},
                    {R"("source":"wmo")", R"("state":"unchecked")", R"("insteadOf":null)",
                     R"("alsoAsked":"fpas","alsoReason":"the)"}},
        FallbackRow{"TheFirstAndTheSecondIsBlind",
                    "1.29,103.85",
                    {Service::wmoWarnings},
                    {R"("source":"wmo")", R"("alsoAsked":"fpas","alsoReason":null)"}},
        FallbackRow{"NobodyFollows",
                    "43.65,-79.38",
                    {Service::eccc},
                    {R"("source":"eccc","service":"Env)", R"("state":"unchecked")"}},
        FallbackRow{"OfSvalbard",
                    "78.22,15.65",
                    {Service::metAlerts},
                    {R"("source":"wmo")", R"("insteadOf":"metalerts")"}}),
    [](auto const& row) { return row.param.name; });

TEST(AlertSources, AreThoseOfTheTableAndTheForecasts) {
  std::vector<std::string_view> names{"generated"};
  for (OfficialSource const& source : officialSources()) names.push_back(source.name);
  EXPECT_EQ(names,
            std::vector<std::string_view>(enumNames<AlertSource>.begin(), enumNames<AlertSource>.end()));
}

struct SceneRow {
  char const* scene;
  char const* state;  ///< of the first source
  std::size_t count;
  std::vector<char const*> listed;
  std::vector<char const*> absent;
};

void PrintTo(SceneRow const& row, std::ostream* out) {
  *out << row.scene;
}

struct ScenesPlayed : test::DemoSession, testing::WithParamInterface<SceneRow> {};

TEST_P(ScenesPlayed, ComeOutAsTheySay) {
  SceneRow const& row = GetParam();
  DemoScene const* const scene = findDemoScene(row.scene);
  ASSERT_NE(scene, nullptr);
  server = *DemoServer::start(clock, {}, 0, scene);
  base = server->baseUrl();
  CliRun const played =
      run({"alerts", std::string(scene->place), "--source", "nws,meteoalarm", "--json", "--coverage"});
  EXPECT_THAT(played.out, HasSubstr("\"state\":\"" + std::string(row.state) +
                                    "\",\"count\":" + std::to_string(row.count)));
  for (char const* const text : row.listed) EXPECT_THAT(played.out, HasSubstr(text));
  for (char const* const text : row.absent) EXPECT_THAT(played.out, Not(HasSubstr(text)));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ScenesPlayed,
    testing::Values(
        SceneRow{"coast", "warnings", 2, {"Uusimaa", "Western Gulf of Finland"}, {"Ahvenanmaa"}},
        SceneRow{"border", "warnings", 1, {"Rain Warning"}, {"Wind Warning"}},
        SceneRow{"names", "warnings", 1, {"Wind Warning"}, {"Rain Warning"}},
        SceneRow{
            "no-outlines", "unplaced", 2, {R"("alerts":[])", "Velebit Channel North", "Outer Islands"}, {}},
        SceneRow{"consecutive",
                 "warnings",
                 1,
                 {R"("onset":"2026-11-21T06:00:00Z")", R"("expires":"2026-11-21T20:00:00Z")"},
                 {}},
        SceneRow{"near",
                 "warnings",
                 1,
                 {R"("severity":"advisory")", R"("expires":"2026-11-21T15:00:00Z")"},
                 {R"("severity":"critical","title")"}},
        SceneRow{"moved", "warnings", 1, {R"("onset":"2026-11-21T09:00:00Z")"}, {}},
        SceneRow{"cancelled", "warnings", 1, {"Rain Warning"}, {}},
        SceneRow{"bilingual", "warnings", 1, {R"("message":"Brabant)"}, {"2 areas"}},
        SceneRow{"calm", "none", 0, {}, {}}, SceneRow{"rubbish", "unchecked", 0, {}, {}},
        SceneRow{"missing", "unchecked", 0, {}, {}},
        SceneRow{"second-feed",
                 "warnings",
                 1,
                 {"Wind Warning", R"("_nimbaraText":"Orange Wind warning for Stadt Berlin.")",
                  R"("_nimbaraFullText":true)"},
                 {"Rain Warning"}},
        SceneRow{"uncovered", "uncovered", 0, {R"("country":"TD")"}, {}},
        SceneRow{"unknown-level", "warnings", 2, {"Air Quality Alert", "Frost Advisory"}, {}},
        SceneRow{"reissued", "warnings", 1, {"now until tomorrow"}, {}}),
    [](auto const& row) {
      std::string name = row.param.scene;
      std::ranges::replace(name, '-', '_');
      return name;
    });

}  // namespace
}  // namespace nimbara
