// Recorded feeds and the towns of the regions that they warn of.

#include "feeds/meteoalarm/meteo_alarm_selection.h"
#include "feeds/regions/regions.h"
#include "gazetteer/gazetteer.h"
#include "support/samples.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <optional>
#include <set>

namespace nimbara {
namespace {

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
  std::string_view feed;
  std::string_view name;
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
