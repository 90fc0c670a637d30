#include "desktop/views/hazards/alert_view.h"

#include "desktop/states/hazard_states.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using namespace nimbara::test;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

Place const kPlace{{52, 21}, "Testville", "Poland", "Region"};

WeatherAlert officialOf(AlertSeverity severity, std::string title) {
  WeatherAlert alert = alertOf(severity, std::move(title));
  alert.isGovAlert = true;
  alert.source = "Weather Office";
  return alert;
}

TEST(Alerts, StandGravestFirstAndEndInTime) {
  WeatherState state = stateOf(mildWeek());
  WeatherAlert ending = officialOf(AlertSeverity::critical, "ends");
  ending.expires = kNow;
  WeatherAlert lasting = officialOf(AlertSeverity::warning, "lasts");
  lasting.expires = kNow + 1ms;
  state.govAlerts = {ending, lasting};
  state.insight =
      ForecastInsight{{alertOf(AlertSeverity::info, "note"), alertOf(AlertSeverity::critical, "own")}};
  auto const titles = [](std::vector<AlertView> const& views) {
    std::vector<std::string> all;
    for (AlertView const& view : views) all.push_back(view.title + "/" + view.severity + "/" + view.when);
    return all;
  };
  EXPECT_THAT(titles(alertViews(state, contextAt(kNow))),
              ElementsAre("own/Critical/", "lasts/Warning/until 12:20", "note/Information/"));
  EXPECT_THAT(titles(officialViews(state, contextAt(kNow))), ElementsAre("lasts/Warning/until 12:20"));
}

TEST(Alerts, HaveTheColonOfTheLanguage) {
  WeatherState state = stateOf(mildWeek());
  state.govAlerts = {officialOf(AlertSeverity::warning, "Gale")};
  for (auto const& [language, heading] :
       {std::pair("en", "Warning: Gale"), {"fr", "Alerte\u00A0: Gale"}, {"ja", "警戒：Gale"}}) {
    Texts const texts = Texts::load(language);
    ViewContext const context{texts, Units::metric(), kNow, Calendar::utc(), {}};
    EXPECT_EQ(alertViews(state, context)[0].heading, heading);
  }
}

TEST(Alerts, TellFromWhomHowOldAndUntilWhen) {
  WeatherState state = stateOf(mildWeek());
  WeatherAlert alert = officialOf(AlertSeverity::warning, "Wind\n<b>Warning</b>");
  alert.issued = kNow - 25min;
  alert.onset = kNow + 1h;
  alert.expires = kNow + 24h;
  alert.areaDesc = "Coast";
  alert.distanceKm = 12;
  state.govAlerts = {alert};
  state.insight = ForecastInsight{{alertOf(AlertSeverity::info, "own")}};
  auto const views = alertViews(state, contextAt(kNow + 1min));
  EXPECT_EQ(views[0].sentence,
            "Warning: Wind <b>Warning</b>, Coast – nearby: the warned area starts 12 km away, from 13:20, "
            "until Sunday 12:20, Weather Office, 26 min ago");
  EXPECT_EQ(views[1].issuer + ", " + views[1].age, "from the forecast, 1 min ago");
}

TEST(Alerts, ShowTheIssuersTextToTheLetter) {
  WeatherState state;
  WeatherAlert alert = officialOf(AlertSeverity::warning, "Wind");
  alert.areaDesc = "Coast, Hills";
  alert.description = "Affected areas: Coast, Hills";
  alert.source = "MeteoAlarm";
  alert.issuer = "Met Office";
  alert.colour = "orange";
  alert.text = "Gusts:\n  * 80 km/h\n  by night";
  alert.instruction = "Stay\ninside.";
  alert.isFullText = true;
  alert.near = {{"Hills", 34.6}};
  state.govAlerts = {alert};
  ViewContext const context = contextAt(kNow);
  AlertView const view = officialViews(state, context).at(0);
  EXPECT_EQ(view.issuer, "Met Office, via MeteoAlarm");
  EXPECT_EQ(view.colour, "orange");
  EXPECT_EQ(view.severity, "Orange") << "as the issuer grades";
  EXPECT_EQ(view.area, "Coast");
  EXPECT_EQ(view.near, "Nearby: Hills (35 km)");
  WarningView const opened = warningView(state, view.id, context);
  EXPECT_EQ(opened.area, "Coast");
  EXPECT_EQ(opened.near, "Nearby: Hills (35 km)");
  EXPECT_THAT(opened.text, testing::EndsWith("\n\nGusts:\n  * 80 km/h\n  by night"));
  EXPECT_EQ(opened.instruction, "Stay\ninside.");
  EXPECT_EQ(opened.note, "");
  state.govAlerts[0].isFullText = false;
  EXPECT_THAT(warningView(state, view.id, context).note, HasSubstr("The full text could not be fetched."));
}

/// What is graver next door is told beside the place's own level and period, and is neither.
TEST(Alerts, TellWhatIsGraverNearby) {
  WeatherState state = stateOf(mildWeek());
  WeatherAlert alert = officialOf(AlertSeverity::advisory, "Wind Warning");
  alert.colour = "yellow";
  alert.expires = kNow + 3h;
  alert.areaDesc = "Linz, Innviertel, Linz-Land";
  alert.near =
      std::vector<NearArea>{{"Innviertel", 36.5, AlertSeverity::critical, "red", kNow + 8h, kNow + 10h},
                            {"Linz-Land", 5, AlertSeverity::advisory, "yellow", std::nullopt, alert.expires}};
  state.govAlerts = {alert};
  AlertView const view = officialViews(state, contextAt(kNow)).at(0);
  EXPECT_EQ(view.area, "Linz");
  EXPECT_EQ(view.when, "until 15:20");
  EXPECT_EQ(view.near, "Nearby: Innviertel (37 km: red, from 20:20, until 22:20), Linz-Land (5 km)");
  EXPECT_THAT(view.sentence, testing::HasSubstr("Linz, until 15:20, Nearby: Innviertel (37 km: red, from"));
}

TEST(Alerts, ShowWhatIsLongOnlyOnDemand) {
  WeatherState state;
  WeatherAlert alert = officialOf(AlertSeverity::warning, "Flood");
  alert.message = std::string(499, 'm') + "é and on";
  alert.areaDesc = "Valley";
  alert.description = "* WHAT...A flood\n  is coming.\n* WHERE...Here.\n\nTake care\nof all.";
  alert.instruction = "Climb.";
  state.govAlerts = {alert, officialOf(AlertSeverity::info, "Short")};
  ViewContext const context = contextAt(kNow);
  auto const views = alertViews(state, context);
  EXPECT_EQ(views[0].message.size(), 500);
  EXPECT_THAT(views[0].message, testing::EndsWith("m…"));
  WarningView const opened = warningView(state, views[0].id, context);
  EXPECT_EQ(opened.text,
            alert.message + "\n\n* WHAT...A flood is coming.\n* WHERE...Here.\n\nTake care of all.");
  EXPECT_EQ(opened.instruction, "Climb.");
  EXPECT_EQ(warningView(state, "", context), WarningView());
  EXPECT_EQ(warningView(state, "no such", context), WarningView());
  state.govAlerts[0].description = std::string(100'000, 'd');
  EXPECT_EQ(warningView(state, views[0].id, context).text.size(), 20'000);
}

TEST(Alerts, SayOfAnOpenedOneFromWhenTillWhenAndFromWhom) {
  WeatherState state = stateOf(mildWeek());
  WeatherAlert alert = officialOf(AlertSeverity::warning, "Wind");
  alert.issued = kNow - 25min;
  alert.updates = 7;
  alert.link = "https://example.org/1";
  state.govAlerts = {alert};
  state.insight = ForecastInsight{{alertOf(AlertSeverity::info, "own")}};
  ViewContext const context = contextAt(kNow);
  std::string const id = alert.id.text();
  WarningView view = warningView(state, id, context);
  EXPECT_EQ(view.when, "no end given");
  EXPECT_EQ(view.issued, "11:55  ·  25 min ago  ·  updated 7 times");
  EXPECT_EQ(view.issuer, "Weather Office");
  EXPECT_EQ(view.link, "https://example.org/1");
  state.govAlerts[0].onset = kNow + 1h;
  state.govAlerts[0].link = "javascript:alert(1)";
  view = warningView(state, id, context);
  EXPECT_EQ(view.when, "from 13:20, no end given");
  EXPECT_EQ(view.link, "") << "only pages are opened";
  state.govAlerts[0].expires = kNow + 24h;
  EXPECT_EQ(warningView(state, id, context).when, "from 13:20, until Sunday 12:20");
  WarningView const own = warningView(state, state.insight->alerts[0].id.text(), context);
  EXPECT_EQ(own.when, "") << "the forecast's have no end";
  EXPECT_EQ(own.issuer, "from the forecast");
}

TEST(Alerts, KnowTheOnesBesideThem) {
  WeatherState state = stateOf(mildWeek());
  ViewContext const context = contextAt(kNow);
  state.govAlerts = {officialOf(AlertSeverity::info, "c"), officialOf(AlertSeverity::critical, "a"),
                     officialOf(AlertSeverity::warning, "b")};
  auto const idOf = [&](std::size_t at) { return state.govAlerts[at].id.text(); };
  WarningView const middle = warningView(state, idOf(2), context);
  EXPECT_EQ(middle.position, "2 of 3");
  EXPECT_EQ(middle.previous, idOf(1));
  EXPECT_EQ(middle.next, idOf(0));
  EXPECT_EQ(warningView(state, idOf(1), context).previous, "");
  EXPECT_EQ(warningView(state, idOf(0), context).next, "");
  state.govAlerts.resize(1);
  EXPECT_EQ(warningView(state, idOf(0), context).position, "");
}

TEST(Alerts, AreCutAtACharactersBoundary) {
  struct Row {
    char const* text;
    std::size_t limit;
    char const* expected;
  };
  for (Row const& row :
       {Row{"abcd", 4, "abcd"}, Row{"abcde", 4, "a…"}, Row{"éé", 4, "éé"}, Row{"aéé", 4, "a…"},
        Row{"éééé", 5, "é…"}, Row{"éééé", 6, "é…"}, Row{"", 0, ""}, Row{"abcdef", 3, "…"}}) {
    EXPECT_EQ(cutAt(row.text, row.limit), row.expected) << row.text << " " << row.limit;
  }
}

struct CheckRow {
  char const* why;
  void (*change)(OfficialCheck&);
  std::size_t warnings;
  bool isUnchecked;
  char const* headline;
  char const* notice;
  char const* brief;
};

void PrintTo(CheckRow const& row, std::ostream* out) {
  *out << row.why;
}

struct OfficialCheckTexts : testing::TestWithParam<CheckRow> {};

TEST_P(OfficialCheckTexts, SayHowFarTheListCanBeTrusted) {
  CheckRow const& row = GetParam();
  OfficialCheck check = checkOf(kPlace);
  row.change(check);
  WeatherState state = stateOf(mildWeek());
  state.govAlerts.assign(row.warnings, officialOf(AlertSeverity::warning, "x"));
  OfficialView const view = officialView(check, kPlace, state, contextAt(kNow));
  EXPECT_EQ(view.isUnchecked, row.isUnchecked);
  EXPECT_EQ(view.headline, row.headline);
  EXPECT_THAT(view.notice, testing::StartsWith(row.notice));
  EXPECT_EQ(view.notice.empty(), std::string(row.notice).empty());
  EXPECT_EQ(view.brief, row.brief);
}

constexpr char kSince[] =
    "Official warnings could not be checked since 12:20: the service returned an error (HTTP 503)";
constexpr char kNever[] = "Official warnings have not been checked yet";
constexpr char kNobody[] = "No source of official warnings for Japan";
constexpr char kNone[] = "No official warnings, checked 12:15";
constexpr char kParts[] =
    "Official warnings in effect for parts of Croatia that could not be located, checked 12:15";
constexpr char kPartsNamed[] =
    "Official warnings in effect for parts of Croatia that could not be located, checked 12:15: Kvarner";
constexpr char kCountry[] = "Official warnings in effect for the whole country (Croatia), checked 12:15";
constexpr char kCountryNamed[] =
    "Official warnings in effect for the whole country (Croatia), checked 12:15: Flood (red)";
INSTANTIATE_TEST_SUITE_P(
    Rows, OfficialCheckTexts,
    testing::Values(
        CheckRow{"none", [](OfficialCheck&) {}, 0, false, "No official warnings.", "", kNone},
        CheckRow{"one", [](OfficialCheck& c) { c.coverage[0].state = CoverageState::warnings; }, 1, false,
                 "One official warning", "", "One official warning, checked 12:15"},
        CheckRow{"many", [](OfficialCheck& c) { c.coverage[0].state = CoverageState::warnings; }, 500, false,
                 "500 official warnings", "", "500 official warnings, checked 12:15"},
        CheckRow{"failedWithout", [](OfficialCheck& c) { fail(c, kNow, ServiceFailure::answered(503)); }, 0,
                 true, "Official warnings could not be checked since 12:20",
                 "Reason: the service returned an error (HTTP 503). There may be warnings", kSince},
        CheckRow{"failedWith", [](OfficialCheck& c) { fail(c, kNow, ServiceFailure::answered(503)); }, 2,
                 true, "2 official warnings",
                 "Official warnings could not be checked since 12:20. Reason: the service returned an error "
                 "(HTTP 503). Showing the last known",
                 kSince},
        CheckRow{"never",
                 [](OfficialCheck& c) {
                   c.coverage[0].checkedAt.reset();
                   c.coverage[0].state = CoverageState::unchecked;
                 },
                 0, true, kNever, "There may be warnings", kNever},
        CheckRow{"asking",
                 [](OfficialCheck& c) {
                   c.coverage[0].checkedAt.reset();
                   c.coverage[0].state = CoverageState::unchecked;
                   c.isAsking = true;
                 },
                 0, false, "Checking for official warnings…", "", "Checking for official warnings…"},
        CheckRow{"oldWhileAsking",
                 [](OfficialCheck& c) {
                   c.coverage[0].checkedAt = kNow - 24h;
                   c.isAsking = true;
                 },
                 1, false, "One official warning", "", "Checking for official warnings…"},
        CheckRow{"trusted", [](OfficialCheck& c) { c.coverage[0].checkedAt = kNow - 45min; }, 0, false,
                 "No official warnings.", "", "No official warnings, checked 11:35"},
        CheckRow{"tooOld", [](OfficialCheck& c) { c.coverage[0].checkedAt = kNow - 45min - 1ms; }, 0, true,
                 "Official warnings could not be checked since 11:34", "There may be warnings",
                 "Official warnings could not be checked since 11:34: no check was requested"},
        CheckRow{"unplaced",
                 [](OfficialCheck& c) {
                   c.coverage[0].state = CoverageState::unplaced;
                   c.coverage[0].country = "HR";
                   c.coverage[0].areas = {"Kvarner"};
                 },
                 0, false, kParts, "They may affect this place.", kPartsNamed},
        CheckRow{"countryWide",
                 [](OfficialCheck& c) {
                   c.coverage[0].state = CoverageState::unplaced;
                   c.coverage[0].country = "HR";
                   c.coverage[0].countryWide = {"Flood (red)"};
                 },
                 0, false, kCountry, "They are for the country;", kCountryNamed},
        CheckRow{"uncovered",
                 [](OfficialCheck& c) {
                   c.coverage = {SourceCoverage{}};
                   c.coverage[0].country = "JP";
                 },
                 0, false, kNobody, "Alerts from the forecast", kNobody}),
    [](auto const& row) { return std::string(row.param.why); });

TEST(OfficialView, SaysNothingOfAnotherPlace) {
  OfficialCheck const check = checkOf({{1, 2}, "Other", "", ""});
  EXPECT_EQ(officialView(check, kPlace, {}, contextAt(kNow)).headline, "");
  EXPECT_FALSE(officialView(check, std::nullopt, {}, contextAt(kNow)).hasPlace);
}

TEST(UnplacedWarnings, AreListedBehindThePlacesOwnAndOpenToTheirWholeText) {
  WeatherState state = stateOf(mildWeek());
  state.govAlerts = {officialOf(AlertSeverity::info, "own")};
  OfficialCheck check = checkOf(kPlace);
  check.coverage[0].country = "PL";
  WeatherAlert part = officialOf(AlertSeverity::warning, "Gale");
  part.areaDesc = part.message = "Coast, Hills";
  WeatherAlert whole = officialOf(AlertSeverity::critical, "Flood");
  whole.areaDesc = "Poland";
  whole.message = "Rivers rise.";
  whole.instruction = "Leave.";
  whole.link = "https://example.org/flood";
  whole.expires = kNow + 1h;
  WeatherAlert ended = whole;
  ended.id = Uuid::random();
  ended.expires = kNow;
  check.unplaced = {part, ended, whole};
  ViewContext const context = contextAt(kNow);
  auto const views = officialViews(state, context, check);
  std::vector<std::string> lines;
  for (AlertView const& view : views) lines.push_back(view.heading + "/" + view.area);
  EXPECT_THAT(lines, ElementsAre("Information: own/", "Critical: Flood/For the country",
                                 "Warning: Gale/For: Coast, Hills"));
  EXPECT_EQ(views[1].message + views[2].message, "Rivers rise.") << "no area a second time";
  EXPECT_EQ(views[0].group, "");
  EXPECT_EQ(views[1].group, "Elsewhere in the country or nationwide");
  WarningView const opened = warningView(state, whole.id.text(), context, check);
  EXPECT_EQ(
      opened.area + "/" + opened.when + "/" + opened.instruction + "/" + opened.link + "/" + opened.position,
      "For the country/until 13:20/Leave./https://example.org/flood/1 of 2");
  EXPECT_EQ(opened.next, part.id.text());
  EXPECT_EQ(alertOf(state, part.id.text(), check)->title, "Gale");
}

TEST(OfficialView, NamesWhoWasAskedAndWhen) {
  ViewContext context = contextAt(kNow);
  EXPECT_EQ(officialView(checkOf(kPlace), kPlace, {}, context).source,
            "National Weather Service  ·  checked 5 min ago");
  context.standIn = "http://127.0.0.1:1";
  EXPECT_THAT(officialView(checkOf(kPlace), kPlace, {}, context).source, HasSubstr("http://127.0.0.1:1"));
}

}  // namespace
}  // namespace nimbara
