#include "feeds/meteoalarm/meteo_alarm_merge.h"

#include "feeds/alerts/warning_words.h"
#include "support/instants.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::at;
using testing::ElementsAre;

PlaceRegions const kHere{"HR", {}, {{"EMMA_ID", "HR002"}, {"EMMA_ID", "HR802"}}};

RawEntry warning(std::string type, std::string area, std::string severity, std::string onset,
                 std::string expires, std::string code = "HR002") {
  RawEntry entry;
  entry.areaDesc = std::move(area);
  if (!code.empty()) entry.otherCodes = {{"EMMA_ID", std::move(code)}};
  entry.event = "Strong " + type;
  entry.title = "Yellow " + type + " Warning issued for Croatia";
  entry.severity = std::move(severity);
  entry.onset = parseIso8601(onset);
  entry.expires = parseIso8601(expires);
  return entry;
}

/// Entries with their distances, which live as long as the case.
class Case {
 public:
  Case& add(RawEntry entry, std::optional<double> km = {}, std::optional<WarningDetails> details = {},
            std::string areaLanguage = {}) {
    entries_.push_back(std::make_unique<RawEntry>(std::move(entry)));
    told_.push_back({{entries_.back().get(), km}, std::move(details), std::move(areaLanguage)});
    return *this;
  }

  std::vector<WeatherAlert> merged(std::string_view language = "en",
                                   PlaceRegions const& regions = kHere) const {
    static Texts const kEnglish = Texts::load("en");
    return mergedAlerts(std::span<ToldEntry const>(told_), {"HR", regions, language, kEnglish});
  }

  WeatherAlert only(std::string_view language = "en", PlaceRegions const& regions = kHere) const {
    auto alerts = merged(language, regions);
    EXPECT_EQ(alerts.size(), 1U);
    return alerts.empty() ? WeatherAlert{} : std::move(alerts.front());
  }

 private:
  std::vector<std::unique_ptr<RawEntry>> entries_;
  std::vector<ToldEntry> told_;
};

WarningDetails details(std::string text, std::string colour = "yellow") {
  WarningDetails made;
  made.text = std::move(text);
  made.colour = std::move(colour);
  made.language = "en";
  made.issuer = "DHMZ";
  return made;
}

TEST(MeteoAlarmMerging, MakesOneAlertOfEachKind) {
  auto const alerts =
      Case()
          .add(warning("Wind", "North", "Minor", "2026-11-21T06:00:00Z", "2026-11-21T18:00:00Z", "HR001"))
          .add(warning("Rain", "North", "Severe", "", "", "HR001"))
          .add(warning("Wind", "South", "Extreme", "2026-11-21T03:00:00Z", "2026-11-21T09:00:00Z"))
          .add(warning("Wind", "North", "Moderate", "", "2026-11-22T00:00:00Z", "HR001"))
          .merged();
  ASSERT_EQ(alerts.size(), 2U);
  EXPECT_EQ(alerts[0].title, "Wind Warning");
  EXPECT_EQ(alerts[0].kind, WarningKind::wind);
  EXPECT_EQ(alerts[0].severity, AlertSeverity::critical);
  EXPECT_EQ(alerts[0].onset, at("2026-11-21T03:00:00Z"));
  EXPECT_EQ(alerts[0].expires, at("2026-11-22T00:00:00Z"));
  EXPECT_EQ(alerts[0].message, "Wind Warning affecting 2 areas");
  EXPECT_EQ(alerts[0].description, "Affected areas: North, South");
  EXPECT_EQ(alerts[0].areaDesc, "North, South");
  EXPECT_EQ(alerts[0].source, "MeteoAlarm");
  EXPECT_TRUE(alerts[0].isGovAlert);
  EXPECT_EQ(alerts[1].title, "Rain Warning");
  EXPECT_EQ(alerts[1].message, "North");
  EXPECT_FALSE(alerts[1].description || alerts[1].onset || alerts[1].expires);
  EXPECT_EQ(alerts[1].kind, WarningKind::rain);
}

TEST(MeteoAlarmMerging, DrawsWhatTheDecidingEntriesDrawOnce) {
  RawEntry own = warning("Wind", "Coast", "Moderate", "", "");
  own.polygons = {{{1, 2}, {3, 4}, {5, 7.25}}};
  RawEntry circled = warning("Wind", "Bay", "Moderate", "", "");
  circled.polygons = own.polygons;
  circled.circles = {{{-1.5, 2}, 30}};
  RawEntry neighbour = warning("Wind", "Hills", "Extreme", "", "");
  neighbour.polygons = {{{10, 2}, {13, 4}, {15, 7}}};
  WeatherAlert const alert = Case().add(own).add(circled).add(neighbour, 34).only();
  EXPECT_EQ(alert.polygons, std::vector<std::string>{"1,2 3,4 5,7.25"});
  EXPECT_EQ(alert.circles, std::vector<std::string>{"-1.5,2 30"});
  WeatherAlert const named = Case().add(warning("Wind", "Coast", "Moderate", "", "")).only();
  EXPECT_FALSE(named.polygons || named.circles);
}

/// Both ways round: the order of the feed says nothing.
TEST(MeteoAlarmMerging, TakesLevelAndPeriodFromThePlacesOwnEntries) {
  RawEntry own = warning("Wind", "Coast", "Moderate", "2026-11-21T10:00:00Z", "2026-11-21T15:00:00Z");
  own.sent = at("2026-11-21T05:00:00Z");
  RawEntry neighbour =
      warning("Wind", "Hills", "Extreme", "2026-11-21T20:00:00Z", "2026-11-22T23:00:00Z", "");
  neighbour.title = "Red Wind Warning issued for Croatia";
  neighbour.sent = at("2026-11-21T07:00:00Z");
  neighbour.link = "https://feeds.example/red";
  for (bool const ownFirst : {true, false}) {
    Case entries;
    if (ownFirst) entries.add(own);
    entries.add(neighbour, 34.96);
    if (!ownFirst) entries.add(own);
    WeatherAlert const alert = entries.only();
    EXPECT_EQ(alert.severity, AlertSeverity::advisory);
    EXPECT_EQ(alert.colour, "yellow");
    EXPECT_EQ(alert.onset, own.onset);
    EXPECT_EQ(alert.expires, own.expires);
    EXPECT_EQ(alert.issued, own.sent);
    EXPECT_EQ(alert.distanceKm, std::nullopt);
    EXPECT_EQ(alert.link, std::nullopt);
    EXPECT_EQ(alert.text, "Strong Wind");
    EXPECT_EQ(alert.near, (std::vector<NearArea>{{"Hills", 35, AlertSeverity::critical, "red",
                                                  neighbour.onset, neighbour.expires}}))
        << "what is graver next door is not lost";
    EXPECT_EQ(placeAreas(alert), "Coast");
    EXPECT_EQ(alert.message, "Wind Warning affecting 2 areas");
  }
}

TEST(MeteoAlarmMerging, TellsEachPeriodOfANearAreaOnce) {
  std::string const evening = "2026-11-21T20:00:00Z";
  WeatherAlert const alert =
      Case()
          .add(warning("Wind", "Coast", "Moderate", "2026-11-21T10:00:00Z", "2026-11-21T15:00:00Z"))
          .add(warning("Wind", "Hills", "Moderate", "2026-11-21T10:00:00Z", evening, "HR005"), 35)
          .add(warning("Wind", "Hills", "Severe", evening, "2026-11-21T23:00:00Z", "HR005"), 35)
          .add(warning("Wind", "Hills", "Severe", evening, "2026-11-21T23:00:00Z", "HR005"), 35)
          .only();
  ASSERT_EQ(alert.near.value_or(std::vector<NearArea>()).size(), 2);
  EXPECT_EQ(alert.near->at(0).severity, AlertSeverity::advisory);
  EXPECT_EQ(alert.near->at(1).severity, AlertSeverity::warning);
  EXPECT_EQ(alert.near->at(1).onset, at(evening));
  EXPECT_EQ(placeAreas(alert), "Coast");
}

TEST(MeteoAlarmMerging, LetsTheNearEntriesDecideWhereThereAreNoOthers) {
  WeatherAlert const alert =
      Case()
          .add(warning("Wind", "Hills", "Severe", "2026-11-21T20:00:00Z", "2026-11-21T23:00:00Z", "HR005"),
               34.96)
          .add(warning("Wind", "Plain", "Moderate", "2026-11-21T18:00:00Z", "2026-11-21T21:00:00Z", "HR006"),
               7.01)
          .only();
  EXPECT_EQ(alert.severity, AlertSeverity::warning);
  EXPECT_EQ(alert.onset, at("2026-11-21T18:00:00Z"));
  EXPECT_EQ(alert.expires, at("2026-11-21T23:00:00Z"));
  EXPECT_EQ(alert.distanceKm, 7.1);
  ASSERT_EQ(alert.near.value_or(std::vector<NearArea>()).size(), 2);
  EXPECT_EQ(alert.near->at(0).area, "Hills");
  EXPECT_EQ(alert.near->at(0).distanceKm, 35);
  EXPECT_EQ(alert.near->at(1).area, "Plain");
  EXPECT_EQ(alert.near->at(1).distanceKm, 7.1);
  EXPECT_EQ(placeAreas(alert), "Hills, Plain") << "none of them has the place in it";
  EXPECT_EQ(alert.event, "HR|wind|EMMA_ID:HR006") << "that of the nearest region";
  EXPECT_EQ(Case().add(warning("Wind", "Hills", "Minor", "", ""), 0.001).only().distanceKm, 0.1)
      << "near is not here";
}

TEST(MeteoAlarmMerging, CountsEachAreaOnce) {
  RawEntry const finnish = warning("Wind", "Uusimaa", "Minor", "", "", "FI001");
  RawEntry const swedish = warning("Wind", "Nyland", "Minor", "", "", "FI001");
  RawEntry const sameName = warning("Wind", "Uusimaa", "Minor", "", "", "FI002");
  RawEntry drawn = warning("Wind", "Canillo", "Minor", "", "", "");
  drawn.polygons = {{{42, 1}, {43, 1}, {43, 2}}};
  RawEntry drawnAgain = drawn;
  drawnAgain.areaDesc = "Parròquia de Canillo";
  RawEntry drawnElsewhere = drawnAgain;
  drawnElsewhere.polygons[0][0].latitude = 41.5;
  RawEntry named = warning("Wind", "Київська область", "Minor", "", "", "");
  named.identifier = "2.49.1";
  named.infoIndex = named.areaIndex = 0;
  RawEntry namedAgain = named;
  namedAgain.areaDesc = "Kyiv region";
  namedAgain.infoIndex = 1;
  RawEntry nextArea = namedAgain;
  nextArea.areaIndex = 1;
  struct Row {
    std::string why;
    RawEntry one, other;
    std::string areas;
  };
  for (Row const& row : {Row{"one code, two languages", finnish, swedish, "Uusimaa"},
                         {"one name, two codes", finnish, sameName, "Uusimaa"},
                         {"one outline, two names", drawn, drawnAgain, "Canillo"},
                         {"two outlines", drawn, drawnElsewhere, "Canillo, Parròquia de Canillo"},
                         {"one place in the message", named, namedAgain, "Київська область"},
                         {"another place in the message", named, nextArea, "Київська область, Kyiv region"}})
    EXPECT_EQ(Case().add(row.one).add(row.other).only().areaDesc, row.areas) << row.why;
  Case bilingual;
  bilingual.add(finnish, {}, details("Tuuli"), "fi-FI").add(swedish, {}, details("Vind"), "sv-FI");
  EXPECT_EQ(bilingual.only("sv_SE").areaDesc, "Nyland");
  EXPECT_EQ(bilingual.only("fi").message, "Uusimaa");
  EXPECT_EQ(bilingual.only("de").areaDesc, "Uusimaa");
}

TEST(MeteoAlarmMerging, SaysWhatTheDocumentsSay) {
  RawEntry today = warning("Wind", "Coast", "Moderate", "2026-11-21T10:00:00Z", "2026-11-21T15:00:00Z");
  today.link = "https://feeds.example/1";
  RawEntry tomorrow = warning("Wind", "Coast", "Moderate", "2026-11-22T10:00:00Z", "2026-11-22T15:00:00Z");
  tomorrow.link = "https://feeds.example/2";
  WarningDetails told = details(" Gusts of 80 km/h. \n", "orange");
  told.instruction = "Stay at home.";
  told.sent = at("2026-11-21T05:00:00Z");
  WeatherAlert const one = Case().add(today, {}, told).only();
  EXPECT_EQ(one.text, " Gusts of 80 km/h. \n");
  EXPECT_EQ(one.description, one.text);
  EXPECT_EQ(one.instruction, "Stay at home.");
  EXPECT_EQ(one.issuer, "DHMZ");
  EXPECT_EQ(one.issued, told.sent);
  EXPECT_EQ(one.language, "en");
  EXPECT_EQ(one.colour, "orange");
  EXPECT_EQ(one.severity, AlertSeverity::advisory) << "by the protocol's word, whatever the colour";
  EXPECT_EQ(one.isFullText, true);

  WeatherAlert const two = Case().add(tomorrow, {}, details("Later.")).add(today, {}, told).only();
  EXPECT_EQ(two.text, " Gusts of 80 km/h. \n\n\nLater.");
  EXPECT_EQ(two.isFullText, true);
  WeatherAlert const half = Case().add(tomorrow).add(today, {}, told).only();
  EXPECT_EQ(half.text, told.text);
  EXPECT_EQ(half.isFullText, false);
  WeatherAlert const none = Case().add(today).only();
  EXPECT_EQ(none.text, "Strong Wind");
  EXPECT_EQ(none.isFullText, false);
  EXPECT_EQ(none.description, std::nullopt);
  EXPECT_EQ(Case().add(warning("Wind", "Coast", "Minor", "", "")).only().isFullText, std::nullopt)
      << "nobody offers a document";
}

TEST(MeteoAlarmMerging, GoesByTheDocumentsKind) {
  WarningDetails flood = details("Rivers rise.");
  flood.type = MeteoAlarmType::flood;
  RawEntry vague = warning("Rain", "Coast", "Minor", "", "");
  EXPECT_EQ(Case().add(vague, {}, flood).only().title, "Flood Warning");
  EXPECT_EQ(Case().add(vague).only().title, "Rain Warning");
  EXPECT_EQ(Case().add(vague, {}, flood).add(vague).merged().size(), 2U);
}

TEST(MeteoAlarmMerging, LinksToTheGravestMessage) {
  RawEntry minor = warning("Wind", "North", "Minor", "", "");
  minor.link = "https://feeds.example/minor";
  RawEntry severe = warning("Wind", "North", "Severe", "", "");
  severe.link = "https://feeds.example/severe";
  EXPECT_EQ(Case().add(minor).add(severe).add(minor).only().link, "https://feeds.example/severe");
}

TEST(MeteoAlarmMerging, NamesTheEventByCountryKindAndRegion) {
  RawEntry const first = warning("Wind", "North", "Minor", "2026-11-21T06:00:00Z", "2026-11-21T18:00:00Z");
  EXPECT_EQ(Case().add(first).only().event, "HR|wind|EMMA_ID:HR002");
  RawEntry atSea = first;
  atSea.otherCodes = {{"EMMA_ID", "HR802"}};
  EXPECT_EQ(Case().add(atSea).only().event, "HR|wind|EMMA_ID:HR002") << "the place's own land region";
  RawEntry const named = warning("Wind", "North", "Minor", "", "", "");
  EXPECT_EQ(Case().add(named).only("en", {"HR", {"North"}, {}}).event, "HR|wind|North");
  Uuid const id = Case().add(first).only().id;
  RawEntry update = warning("Wind", "The North", "Severe", "2026-11-21T06:00:00Z", "2026-11-22T18:00:00Z");
  update.identifier = "another";
  EXPECT_EQ(Case().add(update).only().id, id);
  EXPECT_EQ(Case().add(update).add(warning("Wind", "Hills", "Extreme", "", "", "HR005"), 12).only().id, id)
      << "a neighbour's warning changes nothing of it";
}

TEST(MeteoAlarmMerging, AsksForTheTextsThatDecide) {
  RawEntry const own = warning("Wind", "Coast", "Moderate", "", "");
  RawEntry const near = warning("Wind", "Hills", "Extreme", "", "", "HR005");
  RawEntry const nearRain = warning("Rain", "Hills", "Severe", "", "", "HR005");
  std::vector<SelectedEntry> const all{{&near, 12}, {&own, {}}, {&nearRain, 12}};
  std::vector<RawEntry const*> deciding;
  for (SelectedEntry const& one : decidingEntries(all)) deciding.push_back(one.entry);
  EXPECT_THAT(deciding, ElementsAre(&nearRain, &own));
}

}  // namespace
}  // namespace nimbara
