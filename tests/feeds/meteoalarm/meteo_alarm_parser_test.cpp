#include "feeds/awareness/meteo_alarm_classes.h"
#include "feeds/meteoalarm/meteo_alarm_atom_parser.h"
#include "feeds/meteoalarm/meteo_alarm_selection.h"
#include "support/answers/atom_feed.h"
#include "support/answers/bad_bytes.h"
#include "support/instants.h"
#include "support/samples.h"

#include <gtest/gtest.h>

#include <map>

namespace nimbara {
namespace {

using test::at;
using test::AtomEntry;
using test::atomFeed;

std::vector<RawEntry> entriesOf(std::string const& body) {
  MeteoAlarmAtomParser parser;
  auto const read = parser.parse(body);
  EXPECT_TRUE(read) << read.error();
  return parser.takeEntries();
}

RawEntry entryOf(AtomEntry const& entry) {
  auto entries = entriesOf(atomFeed({entry}));
  EXPECT_EQ(entries.size(), 1U);
  return entries.empty() ? RawEntry{} : entries.front();
}

TEST(MeteoAlarmParser, ReadsEveryFieldOfAnEntry) {
  AtomEntry given;
  given.area = "Testland &amp; C&#xF4;te";
  given.more = AtomEntry::code("NUTS3", "XX012") + AtomEntry::code("EMMA_ID", "XX900") +
               AtomEntry::code("EMMA_ID", "XX901") +
               "<link href=\"https://meteoalarm.org?geocode=EMMA_ID:XX901\" hreflang=\"en\"/>"
               "<link href=\"https://feeds.example/cap/1\" type=\"application/cap+xml\"/>"
               "<cap:polygon>50.0,8.0 50.5,8.0\n50.5,8.9 50.0,8.0</cap:polygon>"
               "<cap:polygon>1,1 2,x 3,3 1,1</cap:polygon><cap:circle>52.5,13.4 12.5</cap:circle>"
               "<cap:status>Actual</cap:status><cap:message_type> Update </cap:message_type>"
               "<cap:sent>2026-11-21T05:30:00+01:00</cap:sent><cap:identifier>2.49.0.0.1</cap:identifier>";
  RawEntry const entry = entryOf(given);
  EXPECT_EQ(entry.title, given.title);
  EXPECT_EQ(entry.event, given.event);
  EXPECT_EQ(entry.severity, "Moderate");
  EXPECT_EQ(entry.areaDesc, "Testland & Côte");
  EXPECT_EQ(entry.sent, at("2026-11-21T04:30:00Z"));
  EXPECT_EQ(entry.onset, at("2026-11-21T06:00:00Z"));
  EXPECT_EQ(entry.expires, at("2026-11-22T06:00:00Z"));
  EXPECT_EQ(entry.nuts3Codes, std::vector<std::string>{"XX012"});
  EXPECT_EQ(entry.otherCodes, (std::vector<RegionCode>{{"EMMA_ID", "XX900"}, {"EMMA_ID", "XX901"}}));
  EXPECT_EQ(entry.polygons, (std::vector<WarningPolygon>{{{50, 8}, {50.5, 8}, {50.5, 8.9}, {50, 8}}}));
  EXPECT_EQ(entry.circles, (std::vector<WarningCircle>{{{52.5, 13.4}, 12.5}}));
  EXPECT_EQ(entry.status, "Actual");
  EXPECT_EQ(entry.messageType, "Update");
  EXPECT_EQ(entry.identifier, "2.49.0.0.1");
  EXPECT_EQ(entry.link, "https://feeds.example/cap/1");
}

TEST(MeteoAlarmParser, TakesElementsWithAndWithoutPrefix) {
  for (std::string const prefix : {"", "cap:", "x:"}) {
    std::string const body = "<feed><entry><" + prefix + "areaDesc>Here</" + prefix + "areaDesc><" + prefix +
                             "geocode><" + prefix + "valueName>NUTS3</" + prefix + "valueName><" + prefix +
                             "value>XX1</" + prefix + "value></" + prefix + "geocode></entry></feed>";
    auto const entries = entriesOf(body);
    ASSERT_EQ(entries.size(), 1U) << prefix;
    EXPECT_EQ(entries[0].areaDesc, "Here") << prefix;
    EXPECT_EQ(entries[0].nuts3Codes.size(), 1U) << prefix;
  }
}

TEST(MeteoAlarmParser, LetsNothingLeakIntoAnEntry) {
  RawEntry const second =
      entriesOf(atomFeed({{}, {"", "", "", "", "", "", "<cap:x><y>deep</y></cap:x>"}})).at(1);
  EXPECT_EQ(second, RawEntry{});
  RawEntry const authored = entryOf(
      {"T", "", "", "", "", "", "<author><title>not this</title><cap:event>nor this</cap:event></author>"});
  EXPECT_EQ(authored.title, "T");
  EXPECT_EQ(authored.event, "");
  EXPECT_TRUE(entriesOf(atomFeed({})).empty());
}

TEST(MeteoAlarmParser, LeavesOutWhatCannotBeRead) {
  struct Row {
    std::string_view text;
    bool isPolygon;
  };
  for (auto const& [text, isPolygon] :
       {Row{"1,1 2,2 3,1", true}, Row{"  1,1\t2,2\n3,1  ", true}, Row{"+1,-1 2,2 3,1", true},
        Row{"90,180 -90,-180 0,0", true}, Row{"10, 20 10, 21 11, 21", true}, Row{"10,20;10,21;11,21", false},
        Row{"120,10 121,10 121,11", false}, Row{"", false}, Row{"1,1", false}, Row{"1,1 2,2", false},
        Row{"1,1 2,2 3", false}, Row{"1,1 2,2 3,", false}, Row{"1,1 2,2 3,1,4", false},
        Row{"1,12,2 3,1", false}, Row{"1,1 2,2 90.1,1", false}, Row{"1,1 2,2 1,180.1", false},
        Row{"1,1 2,2 nan,1", false}, Row{"1,1 2,2 1e999,1", false}, Row{"1 1 2 2 3 1", false}})
    EXPECT_EQ(parseWarningPolygon(text).has_value(), isPolygon) << text;
  for (auto const& [text, isCircle] : {Row{"52,13 5", true}, Row{"52,13 0", true}, Row{" 52,13   5.5 ", true},
                                       Row{"52,13 -1", false}, Row{"52,13", false}, Row{"52,13 5 6", false},
                                       Row{"52,13,5", false}, Row{"91,13 5", false}, Row{"", false}})
    EXPECT_EQ(parseWarningCircle(text).has_value(), isCircle) << text;
  RawEntry const entry = entryOf({"T", "", "", "", "yesterday", "2026-13-01T00:00:00Z", ""});
  EXPECT_FALSE(entry.onset);
  EXPECT_FALSE(entry.expires);
}

TEST(MeteoAlarmParser, RefusesWhatIsNoWholeFeed) {
  std::string const whole = atomFeed({{}, {}});
  std::string deep;
  for (int i = 0; i < 100'000; ++i) deep += "<a>";
  std::string const bomb =
      "<?xml version=\"1.0\"?><!DOCTYPE feed [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;\">]>"
      "<feed><entry><title>&b;&b;</title></entry></feed>";
  for (std::string const& body : {std::string(), std::string("<html><body>log in</body></html>"),
                                  std::string("{\"warnings\":[]}"), bomb, "<feed>" + deep, whole + "<feed/>",
                                  std::string("<feed><entry></feed>"), std::string("<feed>\xff</feed>"),
                                  std::string("<?xml version=\"1.0\" encoding=\"no-such-code\"?><feed/>"),
                                  std::string("<feed>&undefined;</feed>")})
    EXPECT_FALSE(MeteoAlarmAtomParser().parse(body)) << body.substr(0, 60);
  for (std::size_t size = 0; size + 1 < whole.size(); size += 7)
    EXPECT_FALSE(MeteoAlarmAtomParser().parse(whole.substr(0, size))) << size;
  MeteoAlarmAtomParser parser;
  EXPECT_FALSE(parser.parse(whole.substr(0, whole.size() - 20)));
  EXPECT_EQ(parser.entries().size(), 1U);
}

TEST(MeteoAlarmParser, TakesOtherEncodingsAndHugeAttributes) {
  auto const latin = entriesOf(
      "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><feed><entry><title>C\xf4te</title>"
      "</entry></feed>");
  EXPECT_EQ(latin.at(0).title, "Côte");
  std::string const huge(std::size_t{10} << 20, 'x');
  EXPECT_EQ(entriesOf("<feed a=\"" + huge + "\"><entry/></feed>").size(), 1U);
}

TEST(MeteoAlarmParser, SurvivesDamage) {
  std::string const whole = atomFeed({{}});
  for (std::string const& body : test::damagedForms(whole, 3)) {
    MeteoAlarmAtomParser parser;
    if (!parser.parse(body)) continue;
    EXPECT_LE(parser.entries().size(), 1U);
  }
}

/// How often a text stands in another.
std::size_t occurrences(std::string const& body, std::string_view text) {
  std::size_t count = 0;
  for (auto at = body.find(text); at != std::string::npos; at = body.find(text, at + 1)) ++count;
  return count;
}

TEST(MeteoAlarmSamples, LoseNothing) {
  auto const files = test::sampleFiles("meteoalarm");
  if (!files) GTEST_SKIP() << "no samples are named";
  // Entries, those with a code of NUTS3, polygons.
  std::map<std::string, std::array<std::size_t, 3>> const expected{
      {"atom-france-nuts3-2022-12-08.xml", {12, 12, 0}},
      {"atom-germany-2023-04-28.xml", {381, 0, 0}},
      {"atom-ireland-polygons-2022-12-07.xml", {232, 0, 72}},
      {"atom-poland-small-2023-04-28.xml", {2, 0, 0}},
      {"atom-spain-excerpt-2026-07-29.xml", {2, 0, 0}}};
  std::size_t seen = 0;
  for (auto const& file : *files) {
    std::string const name = file.filename().string();
    std::string const body = test::readFile(file);
    SCOPED_TRACE(name);
    if (!name.starts_with("atom-")) {
      EXPECT_FALSE(MeteoAlarmAtomParser().parse(body));
      continue;
    }
    ++seen;
    auto const entries = entriesOf(body);
    std::size_t coded = 0, polygons = 0, others = 0;
    for (RawEntry const& entry : entries) {
      coded += entry.nuts3Codes.empty() ? 0 : 1;
      others += entry.otherCodes.size();
      polygons += entry.polygons.size();
      EXPECT_TRUE(entry.onset && entry.expires);
      EXPECT_EQ(entry.status, "Actual");
      EXPECT_FALSE(entry.title.empty() || entry.event.empty() || entry.areaDesc.empty() ||
                   entry.link.empty());
      EXPECT_NE(meteoAlarmTypeOf(entry.event, entry.title), MeteoAlarmType::generic) << entry.title;
      EXPECT_NE(meteoAlarmTypeOf(entry.event, ""), MeteoAlarmType::generic) << entry.event;
    }
    ASSERT_TRUE(expected.contains(name));
    EXPECT_EQ((std::array{entries.size(), coded, polygons}), expected.at(name));
    EXPECT_EQ(entries.size(), occurrences(body, "<entry>"));
    EXPECT_EQ(polygons, occurrences(body, "<cap:polygon>"));
    EXPECT_GE(coded + others, occurrences(body, "<valueName>"));
  }
  EXPECT_EQ(seen, expected.size());
}

TEST(MeteoAlarmTypes, FollowNumberThenTitleThenEvent) {
  using enum MeteoAlarmType;
  struct Row {
    std::string_view event, title;
    MeteoAlarmType type;
  };
  for (Row const& row :
       {Row{"1; Wind", "", wind},
        Row{"3; thunderstorm", "Yellow Rain Warning issued for A - B", thunderstorm},
        Row{"11", "", flood},
        Row{"12; flooding", "", rainFlood},
        Row{"12", "", rainFlood},
        Row{"13; rain-flood", "", rainFlood},
        Row{"13; flooding", "", flood},
        Row{"0; wind", "", wind},
        Row{"99", "", generic},
        Row{"999999999999999", "", generic},
        Row{"", "", generic},
        Row{"frost", "Yellow Low-temperature Warning issued for Germany - Kreis Regen", cold},
        Row{"Yellow Low Temperature/Ice", "", cold},
        Row{"anything", "Orange Snow-ice Warning issued for X - Y", snowIce},
        Row{"anything", "Red Rain-flood Warning issued for X - Y", rainFlood},
        Row{"anything", "Red Rain Warning issued for X - Y", rain},
        Row{"anything", "Red Flooding Warning issued for X - Y", flood},
        Row{"anything", "Red Coastalevent Warning issued for X - Y", coastal},
        Row{"anything", "Red Forest-fire Warning issued for X - Y", forestFire},
        Row{"anything", "Red Avalanches Warning issued for X - Y", avalanche},
        Row{"anything", "Red High-temperature Warning issued for X - Y", heat},
        Row{"anything", "Red Fog Warning issued for Windsor - Icefield", fog},
        Row{"gale-force gusts", "", wind},
        Row{"heavy thunderstorms with gale- or storm-force gusts and heavy rain", "", thunderstorm},
        Row{"Special events notice issued by the office", "", generic},
        Row{"terrain training", "", generic},
        Row{"snowstorm", "", snowIce},
        Row{"storm surge", "", coastal},
        Row{"Severe Flash Flood", "", flood},
        Row{"STURMBÖEN", "", wind},
        Row{"Glätte", "", snowIce},
        Row{"Vigilance orages", "", thunderstorm},
        Row{"Temperaturas máximas", "", heat},
        Row{"Nevoeiro", "", fog},
        Row{"Silny wiatr", "", wind},
        Row{"Burze z gradem", "", thunderstorm},
        Row{"Upał", "", heat},
        Row{"Åskväder", "", thunderstorm},
        Row{"Snøfokk", "", snowIce},
        Row{"Гръмотевични бури", "", thunderstorm},
        Row{"Πλημμύρες", "", flood},
        Row{"סופות רעמים", "", thunderstorm},
        Row{"Силна олуја", "", wind}})
    EXPECT_EQ(enumName(meteoAlarmTypeOf(row.event, row.title)), enumName(row.type))
        << row.event << " | " << row.title;
}

}  // namespace
}  // namespace nimbara
