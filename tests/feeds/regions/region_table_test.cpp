#include "feeds/meteoalarm/areas/known_areas.h"
#include "feeds/meteoalarm/meteo_alarm_selection.h"
#include "feeds/regions/regions.h"
#include "gazetteer/gazetteer.h"
#include "support/answers/outlines.h"
#include "support/samples.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <optional>
#include <set>

namespace nimbara {
namespace {

/// A place, its warning region and what the service calls it; and regions of the same country whose warnings
/// must not come, apart from those of all other rows. The codes and outlines are made up.
struct Row {
  std::string_view place;
  Coordinate at;
  std::string_view country, code, area;
  bool isFoundByName;  ///< also without outlines and codes
};

constexpr Row kRows[] = {
    {"Berlin", {52.52, 13.41}, "DE", "DE901", "Stadt Berlin", true},
    {"Munich", {48.14, 11.58}, "DE", "DE902", "Kreis und Stadt München", false},
    {"Koblenz", {50.36, 7.59}, "DE", "DE903", "Stadt Koblenz", false},
    {"Warsaw", {52.23, 21.01}, "PL", "PL901", "województwo mazowieckie powiat Warszawa", true},
    {"Kraków", {50.06, 19.94}, "PL", "PL902", "województwo małopolskie powiat Kraków", true},
    {"Gdańsk", {54.35, 18.65}, "PL", "PL903", "województwo pomorskie powiat Gdańsk", true},
    {"Vienna", {48.21, 16.37}, "AT", "AT901", "Wien", true},
    {"Innsbruck", {47.27, 11.39}, "AT", "AT902", "Innsbruck-Stadt", true},
    {"Annecy", {45.9, 6.12}, "FR", "FR901", "Haute Savoie", true},
    {"Lyon", {45.76, 4.84}, "FR", "FR902", "Rhône", true},
    {"Paris", {48.86, 2.35}, "FR", "FR903", "Paris et petite couronne", true},
    {"Albacete", {38.99, -1.86}, "ES", "ES901", "La Mancha albaceteña", false},
    {"Barcelona", {41.39, 2.17}, "ES", "ES902", "Prelitoral de Barcelona", true},
    {"Madrid", {40.42, -3.7}, "ES", "ES903", "Metropolitana y Henares de Madrid", true},
    {"Lisbon", {38.72, -9.14}, "PT", "PT901", "Lisboa", true},
    {"Braga", {41.55, -8.43}, "PT", "PT902", "Braga", true},
    {"Funchal", {32.65, -16.91}, "PT", "PT903", "Madeira - Costa Sul", true},
    {"Bolzano", {46.5, 11.35}, "IT", "IT901", "Provincia di Bolzano", true},
    {"Rome", {41.89, 12.5}, "IT", "IT902", "Lazio - Roma", true},
    {"Zurich", {47.37, 8.54}, "CH", "CH901", "Kanton Zürich", true},
    {"Amsterdam", {52.37, 4.9}, "NL", "NL901", "Noord-Holland", false},
    {"Ghent", {51.05, 3.72}, "BE", "BE901", "Oost-Vlaanderen", true},
    {"Copenhagen", {55.68, 12.57}, "DK", "DK901", "København og Nordsjælland", true},
    {"Aalborg", {57.05, 9.92}, "DK", "DK902", "Nordjylland", false},
    {"Oslo", {59.91, 10.75}, "NO", "NO901", "Oslo", true},
    {"Stockholm", {59.33, 18.07}, "SE", "SE901", "Stockholms län", true},
    {"Malmö", {55.6, 13.0}, "SE", "SE902", "Skåne län", true},
    {"Helsinki", {60.17, 24.94}, "FI", "FI901", "Uusimaa", true},
    {"Rovaniemi", {66.5, 25.73}, "FI", "FI902", "Lappi", true},
    {"Tallinn", {59.44, 24.75}, "EE", "EE901", "Harjumaa", true},
    {"Riga", {56.95, 24.11}, "LV", "LV901", "Rīga un Pierīga", true},
    {"Vilnius", {54.69, 25.28}, "LT", "LT901", "Vilniaus apskritis", false},
    {"Brno", {49.2, 16.61}, "CZ", "CZ901", "Brno", true},
    {"Prague", {50.08, 14.44}, "CZ", "CZ902", "Hlavní město Praha", true},
    {"Bratislava", {48.15, 17.11}, "SK", "SK901", "Bratislavský kraj", false},
    {"Košice", {48.72, 21.26}, "SK", "SK902", "okres Košice", true},
    {"Budapest", {47.5, 19.04}, "HU", "HU901", "Budapest", true},
    {"Debrecen", {47.53, 21.63}, "HU", "HU902", "Hajdú-Bihar megye", true},
    {"Ljubljana", {46.05, 14.51}, "SI", "SI901", "Slovenia / Central", false},
    {"Zagreb", {45.81, 15.98}, "HR", "HR901", "Zagrebačka regija", false},
    {"Split", {43.51, 16.44}, "HR", "HR902", "Splitska regija", false},
    {"Belgrade", {44.8, 20.46}, "RS", "RS901", "Beograd", false},
    {"Sofia", {42.7, 23.32}, "BG", "BG901", "Sofia", true},
    {"Varna", {43.21, 27.91}, "BG", "BG902", "Varna", true},
    {"Cluj", {46.77, 23.59}, "RO", "RO901", "Cluj", true},
    {"Bucharest", {44.43, 26.1}, "RO", "RO902", "București", true},
    {"Athens", {37.98, 23.73}, "GR", "GR901", "Attica", true},
    {"Heraklion", {35.34, 25.14}, "GR", "GR902", "Crete", true},
    {"Cork", {51.9, -8.47}, "IE", "IE901", "County Cork", true},
    {"London", {51.51, -0.13}, "GB", "GB901", "London & South East England", true},
    {"Plymouth", {50.37, -4.14}, "GB", "GB902", "South West England", true},
    {"Akureyri", {65.68, -18.1}, "IS", "IS901", "Northeast Iceland", false},
};

std::string text(std::string_view view) {
  return std::string(view);
}

/// The warnings of every region of the table that a country has.
MeteoAlarmFeed feedOfCountry(std::string_view country, bool hasCodes) {
  std::vector<RawEntry> entries;
  for (Row const& row : kRows) {
    if (row.country != country) continue;
    RawEntry entry;
    entry.areaDesc = row.area;
    if (hasCodes) entry.otherCodes = {{"EMMA_ID", text(row.code)}};
    entries.push_back(entry);
  }
  return feedOf(std::move(entries));
}

std::set<std::string> areasOf(std::vector<SelectedEntry> const& entries) {
  std::set<std::string> areas;
  for (SelectedEntry const& selected : entries) areas.insert(selected.entry->areaDesc);
  return areas;
}

TEST(RegionTable, GivesEveryPlaceItsRegionAndNoOther) {
  std::vector<std::string> features;
  for (Row const& row : kRows) {
    features.push_back(
        test::feature(text(row.code), text(row.country), text(row.area), test::square(row.at, 0.2)));
    Coordinate const beside{row.at.latitude, row.at.longitude + 0.4};
    features.push_back(test::feature(text(row.code) + "E", text(row.country), "beside " + text(row.area),
                                     test::square(beside, 0.2)));
  }
  auto const reading = readOutlines(test::collection(features));
  ASSERT_TRUE(reading) << reading.error();
  std::string const bytes = regionMapOf(outlineSetOf(reading->outlines));
  auto opened = RegionMap::over(bytes);
  ASSERT_TRUE(opened) << opened.error();
  auto const map = std::make_shared<RegionMap const>(std::move(*opened));
  for (Row const& row : kRows) {
    PlaceRegions const regions = placeRegionsOf(row.at, map);
    EXPECT_EQ(regions.country, row.country) << row.place;
    EXPECT_EQ(regions.codes, (std::vector<RegionCode>{{"EMMA_ID", text(row.code)}})) << row.place;
    auto const feed = feedOfCountry(row.country, true);
    EXPECT_EQ(areasOf(selectedEntries(feed, row.at, regions)), std::set{text(row.area)}) << row.place;
  }
}

/// Entries without code or shape, for places whose own names come from the outlines as well.
TEST(RegionTable, ComparesNamesByWholeWordsAndKnowsOthers) {
  struct Case {
    std::string_view place;
    Coordinate at;
    std::string_view area;
    bool isKept;
  };
  for (Case const& row : {Case{"Rijeka", {45.3427, 14.4092}, "Rijeka region", true},
                          {"Rijeka", {45.3427, 14.4092}, "Split region", false},
                          {"Chambéry", {45.57, 5.92}, "Savoie", true},
                          {"Chambéry", {45.57, 5.92}, "Haute Savoie", false},
                          {"Chambéry", {45.57, 5.92}, "Haute Savoie | Savoie", true},
                          {"Annecy", {45.9, 6.12}, "Haute Savoie", true},
                          {"Annecy", {45.9, 6.12}, "Savoie", false},
                          {"Porto", {41.15, -8.61}, "Porto", true},
                          {"Porto", {41.15, -8.61}, "Porto Santo", false},
                          {"Braga", {41.55, -8.43}, "Braga", true},
                          {"Braga", {41.55, -8.43}, "Bragança", false},
                          {"Vienna", {48.21, 16.37}, "Wien  1.,Innere Stadt", true},
                          {"Vienna", {48.21, 16.37}, "Wien", true},
                          {"Vienna", {48.21, 16.37}, "Wiener Neustadt (Stadt)", false},
                          {"Munich", {48.14, 11.58}, "Kreis und Stadt München", true},
                          {"Munich", {48.14, 11.58}, "Kreis und Stadt Augsburg", false},
                          {"Milan", {45.464, 9.19}, "Lombardia", true},
                          {"Prague", {50.08, 14.44}, "Praha", true},
                          {"Glasgow", {55.865, -4.258}, "Grampian | Strathclyde", true},
                          {"Glasgow", {55.865, -4.258}, "Grampian", false},
                          {"Edinburgh", {55.953, -3.189}, "Dumfries, Galloway, Lothian & Borders", true},
                          {"Edinburgh", {55.953, -3.189}, "SW Scotland, Lothian Borders", true},
                          {"Leeds", {53.797, -1.544}, "Yorkshire and Humber", true},
                          {"Leeds", {53.797, -1.544}, "North West England", false},
                          {"Lviv", {49.84, 24.02}, "Львівська область", true},
                          {"Lviv", {49.84, 24.02}, "Odeska", false},
                          {"Chisinau", {47.01, 28.86}, "mun. Chisinau", true},
                          {"Chisinau", {47.01, 28.86}, "Orhei", false},
                          {"Tel Aviv", {32.08, 34.78}, "Gush Dan", true},
                          {"Mariehamn", {60.0973, 19.9348}, "Ahvenanmaa", true}}) {
    RawEntry entry;
    entry.areaDesc = row.area;
    auto const feed = feedOf({entry});
    auto const selected = selectedEntries(feed, row.at, placeRegionsOf(row.at, embeddedRegions()));
    EXPECT_EQ(selected.size(), row.isKept ? 1U : 0U) << row.place << ", " << row.area;
  }
}

/// A code that the outlines do not know is of a newer division of the country: the name decides.
TEST(RegionTable, GoesByNameWhereACodeIsNew) {
  Coordinate const rijeka{45.3427, 14.4092};
  RawEntry entry;
  entry.areaDesc = "Rijeka region";
  for (auto const& [code, isKept] : {std::pair{"HR006", true}, {"HR801", false}, {"HR099", true}}) {
    entry.otherCodes = {{"EMMA_ID", code}};
    auto const feed = feedOf({entry});
    EXPECT_EQ(selectedEntries(feed, rijeka, placeRegionsOf(rijeka, embeddedRegions())).size(),
              isKept ? 1U : 0U)
        << code;
  }
}

TEST(RegionTable, TakesNoCodeForAnotherRegistrys) {
  Coordinate const berlin{52.52, 13.41};
  PlaceRegions const regions = placeRegionsOf(berlin, embeddedRegions());
  ASSERT_TRUE(hasLandCodeOf(regions, "NUTS3"));
  RegionCode const nuts = *std::ranges::find(regions.codes, "NUTS3", &RegionCode::registry);
  ASSERT_TRUE(embeddedRegions()->knows({"EMMA_ID", nuts.code})) << "another region's";
  RawEntry entry;
  entry.otherCodes = {{"EMMA_ID", nuts.code}};
  EXPECT_TRUE(selectedEntries(feedOf({entry}), berlin, regions).empty());
  entry.otherCodes.clear();
  entry.nuts3Codes = {nuts.code};
  auto const feed = feedOf({entry});
  EXPECT_EQ(selectedEntries(feed, berlin, regions).size(), 1U);
  entry.nuts3Codes = {"DE202"};  // of EMMA_ID, and none of NUTS3
  auto const mislabelled = feedOf({entry});
  EXPECT_EQ(selectedEntries(mislabelled, berlin, regions).size(), 1U);
}

TEST(RegionTable, LetsNoSeaCodeSwitchNamesOff) {
  RawEntry entry;
  entry.areaDesc = "Rijeka";
  entry.otherCodes = {{"EMMA_ID", "HR006"}};
  PlaceRegions regions{"HR", {"Rijeka"}, {{"EMMA_ID", "HR802"}}, {{"EMMA_ID", "HR802"}}, {}};
  auto const feed = feedOf({entry});
  EXPECT_EQ(selectedEntries(feed, {45.3, 14.4}, regions).size(), 1U);
  regions.seaCodes.clear();
  EXPECT_EQ(selectedEntries(feed, {45.3, 14.4}, regions).size(), 0U);
}

TEST(RegionTable, GivesByNameAloneNoWrongRegion) {
  int byName = 0;
  for (Row const& row : kRows) {
    PlaceRegions const regions = placeRegionsOf(row.at, nullptr);
    EXPECT_TRUE(regions.codes.empty());
    auto const feed = feedOfCountry(row.country, true);
    auto const expected = row.isFoundByName ? std::set{text(row.area)} : std::set<std::string>();
    EXPECT_EQ(areasOf(selectedEntries(feed, row.at, regions)), expected)
        << row.place << ": " << testing::PrintToString(regions.names);
    byName += row.isFoundByName ? 1 : 0;
  }
  EXPECT_GE(byName, 35);
}

RawEntry entryOf(std::string area, std::vector<RegionCode> codes = {}, std::vector<std::string> nuts3 = {}) {
  RawEntry entry;
  entry.areaDesc = std::move(area);
  entry.otherCodes = std::move(codes);
  entry.nuts3Codes = std::move(nuts3);
  return entry;
}

TEST(KnownAreas, AreThoseOfTheOutlinesAndOfTheCountrysRegions) {
  KnownAreas areas;
  auto const outlines = embeddedRegions();
  ASSERT_TRUE(outlines);
  struct Row {
    std::string country;
    RawEntry entry;
    bool isKnown;
  };
  for (Row const& row : {Row{"HR", entryOf("Rijeka region", {{"EMMA_ID", "HR006"}}), true},
                         {"HR", entryOf("A new region", {{"EMMA_ID", "HR002"}}), true},
                         {"HR", entryOf("A new region", {{"EMMA_ID", "HR999"}}), false},
                         {"HR", entryOf("", {{"EMMA_ID", "HR999"}}), false},
                         {"FR", entryOf("A new region", {}, {"FR718"}), true},
                         {"FR", entryOf("A new region", {}, {"FR999"}), false},
                         {"GB", entryOf("Grampian"), true},
                         {"GB", entryOf("London & South East England"), true},
                         {"GB", entryOf("Atlantis"), false},
                         {"UA", entryOf("Київська область"), true},
                         {"UA", entryOf("Atlantis"), false}})
    EXPECT_EQ(areas.has(row.country, row.entry, outlines.get()), row.isKnown) << row.entry.areaDesc;
  EXPECT_FALSE(areas.has("HR", entryOf("A new region", {{"EMMA_ID", "HR002"}}), nullptr))
      << "without outlines nobody knows the code";
}

std::optional<MeteoAlarmFeed> recordedFeed(std::string_view name) {
  auto const files = test::sampleFiles("meteoalarm");
  if (!files) return std::nullopt;
  auto const file =
      std::ranges::find_if(*files, [&](auto const& path) { return path.filename().string().contains(name); });
  if (file == files->end()) return std::nullopt;
  MeteoAlarmAtomParser parser;
  EXPECT_TRUE(parser.parse(test::readFile(*file)));
  return feedOf(parser.takeEntries());
}

bool hasCode(RawEntry const& entry, RegionCode const& code) {
  if (code.registry == kNuts3Registry)
    return std::ranges::find(entry.nuts3Codes, code.code) != entry.nuts3Codes.end();
  return std::ranges::find(entry.otherCodes, code) != entry.otherCodes.end();
}

/// The numbers of the entries that have this code, as the feed writes it.
std::set<std::size_t> entriesOf(MeteoAlarmFeed const& feed, RegionCode const& code) {
  std::set<std::size_t> numbers;
  for (std::size_t i = 0; i < feed.entries.size(); ++i) {
    if (hasCode(feed.entries[i], code)) numbers.insert(i);
  }
  return numbers;
}

std::set<std::size_t> selectedNumbers(MeteoAlarmFeed const& feed, Coordinate place) {
  std::set<std::size_t> numbers;
  for (SelectedEntry const& selected : selectedEntries(feed, place, placeRegionsOf(place, embeddedRegions())))
    numbers.insert(static_cast<std::size_t>(selected.entry - feed.entries.data()));
  return numbers;
}

TEST(RecordedRegions, GiveGermanTownsTheWarningsOfTheirOwnRegion) {
  auto const feed = recordedFeed("germany");
  if (!feed) GTEST_SKIP() << "no recorded feeds";
  int warned = 0;
  for (City const& city : allCities()) {
    if (city.countryCode != "DE") continue;
    std::set<std::size_t> expected;
    for (MappedRegion const& region : embeddedRegions()->at(city.coordinate, "DE"))
      expected.merge(entriesOf(*feed, {"EMMA_ID", std::string(region.code)}));
    warned += expected.empty() ? 0 : 1;
    EXPECT_EQ(selectedNumbers(*feed, city.coordinate), expected) << city.name;
  }
  EXPECT_GT(warned, 400);
}

/// A town, and the codes, as the feed writes them, of the only entries that it may get.
struct Town {
  std::string_view feed, name;
  Coordinate at;
  std::vector<RegionCode> codes;
};

TEST(RecordedRegions, ReadTheOtherRegistriesCodes) {
  for (Town const& town : {
           Town{"france", "Annecy", {45.9, 6.12}, {{"NUTS3", "FR718"}}},
           {"france", "Chambéry", {45.57, 5.92}, {{"NUTS3", "FR717"}}},
           {"france", "Grenoble", {45.19, 5.72}, {{"NUTS3", "FR714"}}},
           {"france", "Nice", {43.7, 7.27}, {{"NUTS3", "FR823"}}},
           {"france", "Gap", {44.56, 6.08}, {{"NUTS3", "FR822"}}},
           {"france", "Lyon", {45.76, 4.84}, {}},
           {"spain", "Albacete", {38.995, -1.856}, {{"EMMA_ID", "ES161"}}},
           {"spain", "Caravaca de la Cruz", {38.106, -1.86}, {{"EMMA_ID", "ES222"}}},
           {"spain", "Cartagena", {37.605, -0.986}, {}},
           {"poland", "Gdynia", {54.519, 18.53}, {{"EMMA_ID", "PL805"}}},
           {"poland", "Kraków", {50.06, 19.94}, {}},
       }) {
    auto const feed = recordedFeed(town.feed);
    if (!feed) GTEST_SKIP() << "no recorded feeds";
    std::set<std::size_t> expected;
    for (RegionCode const& code : town.codes) expected.merge(entriesOf(*feed, code));
    EXPECT_EQ(expected.empty(), town.codes.empty()) << town.name;
    EXPECT_EQ(selectedNumbers(*feed, town.at), expected) << town.name;
  }
}

TEST(RecordedRegions, FindIrishCountiesByTheirOlderCodes) {
  auto const feed = recordedFeed("ireland-polygons");
  if (!feed) GTEST_SKIP() << "no recorded feeds";
  for (auto const& [place, code] : {std::pair{Coordinate{51.898, -8.471}, "EI04"},  // Cork
                                    {Coordinate{53.344, -6.267}, "EI07"},           // Dublin
                                    {Coordinate{53.272, -9.049}, "EI10"},           // Galway
                                    {Coordinate{52.664, -8.623}, "EI16"}}) {        // Limerick
    std::set<std::size_t> const own = entriesOf(*feed, {"FIPS", code});
    EXPECT_FALSE(own.empty());
    std::set<std::size_t> const selected = selectedNumbers(*feed, place);
    EXPECT_TRUE(std::ranges::includes(selected, own)) << code;
    for (std::size_t const number : selected) {
      bool const hasShape = !feed->entries[number].polygons.empty();
      EXPECT_TRUE(hasShape || own.contains(number)) << code << " got another county's";
    }
  }
}

}  // namespace
}  // namespace nimbara
