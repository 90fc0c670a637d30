#include "feeds/regions/regions.h"

#include "feeds/meteoalarm/areas/area_names.h"
#include "feeds/regions/region_names.h"
#include "feeds/regions/region_renewal.h"
#include "feeds/regions/region_update.h"
#include "gazetteer/gazetteer.h"
#include "support/answers/bad_bytes.h"
#include "support/answers/outlines.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

#include <set>

namespace nimbara {
namespace {

using test::collection;
using test::feature;
using test::square;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using namespace std::chrono_literals;

TEST(RegionNames, LoseTheirAdministrativeWords) {
  struct Row {
    std::string_view name, bare;
  };
  for (auto const& [name, bare] : {Row{"województwo mazowieckie", "mazowieckie"},
                                   Row{"Landkreis Görlitz", "Görlitz"},
                                   Row{"Rhein-Hunsrück-Kreis", "Rhein-Hunsrück"},
                                   Row{"Kreis Vulkaneifel", "Vulkaneifel"},
                                   Row{"County Cork", "Cork"},
                                   Row{"Cork County", "Cork"},
                                   Row{"Département du Rhône", "Rhône"},
                                   Row{"Provincia di Bolzano", "Bolzano"},
                                   Row{"Province of Rome", "Rome"},
                                   Row{"Comunidad de Madrid", "Madrid"},
                                   Row{"Región de Murcia", "Murcia"},
                                   Row{"Stockholms län", "Stockholms"},
                                   Row{"Okres Zlín", "Zlín"},
                                   Row{"Județul Cluj", "Cluj"},
                                   Row{"Bács-Kiskun megye", "Bács-Kiskun"},
                                   Row{"Helsinki sub-region", "Helsinki"},
                                   Row{"Област Варна", "Варна"},
                                   Row{"Îles du Ponant", "Îles du Ponant"},
                                   Row{"Kreis und Stadt München", "München"},
                                   Row{"Stadt- und Landkreis Heilbronn", "Heilbronn"},
                                   Row{"mun. Balti", "Balti"},
                                   Row{"Kyiv Oblast", "Kyiv"},
                                   Row{"Ain", ""},
                                   Row{"Zug", ""},
                                   Row{"Kanton Uri", ""},
                                   Row{"Jura", "Jura"},
                                   Row{"Район", ""},
                                   Row{"Central Region", ""},
                                   Row{"North-East", ""},
                                   Row{"Nord-Est", "Nord-Est"},
                                   Row{"England", ""},
                                   Row{"County", ""},
                                   Row{"", ""},
                                   Row{" - ", ""}})
    EXPECT_EQ(bareRegionName(name), bare) << name;
}

TEST(AreaNames, AreComparedByWholeWords) {
  struct Row {
    std::string_view name, area;
    bool isNamed;
  };
  auto const isOthersName = [](std::string_view name) { return name == "haute savoie" || name == "savoie"; };
  for (auto const& [name, area, isNamed] :
       {Row{"Savoie", "Savoie", true}, Row{"Savoie", "Isère | Savoie", true},
        Row{"Savoie", "Haute Savoie", false}, Row{"Savoie", "Haute Savoie | Savoie", true},
        Row{"Wien", "Wiener Neustadt", false}, Row{"Braga", "Bragança", false},
        Row{"Testland", "Testland & Coast", true},
        Row{"Orkney & Shetland", "Grampian | Orkney and Shetland", true},
        Row{"SW Scotland", "South West Scotland", true}, Row{"South West England", "Southwest England", true},
        Row{"", "Savoie", false}, Row{"Savoie", "", false}})
    EXPECT_EQ(isNamedIn(comparableName(name), comparableName(area), isOthersName), isNamed) << area;
}

TEST(ServiceNames, AreThoseOfTheCountrysOwnService) {
  EXPECT_THAT(serviceNamesOf("GB", "Argyll and Bute"), ElementsAre("Strathclyde"));
  EXPECT_THAT(serviceNamesOf("GB", "Northamptonshire"), ElementsAre("East Midlands"));
  EXPECT_THAT(serviceNamesOf("UA", "Lviv"), ElementsAre("Lvivska", "Львівська"));
  EXPECT_THAT(serviceNamesOf("DE", "Lviv"), IsEmpty());
  EXPECT_THAT(serviceNamesOf("GB", "Atlantis"), IsEmpty());
}

TEST(ServiceNames, AreKnownOfEveryBritishCity) {
  std::string_view const services =
      "|Orkney & Shetland|Highlands & Eilean Siar|Grampian|Strathclyde|Central, Tayside & Fife|SW Scotland, "
      "Lothian Borders|North East England|North West England|Yorkshire & Humber|West Midlands|East "
      "Midlands|East of England|South West England|Wales|London & South East England|Northern Ireland|";
  std::set<std::string> seen;
  for (City const& city : allCities()) {
    if (city.countryCode != "GB") continue;
    std::vector<std::string> own;
    for (std::string const& name : placeRegionsOf(city.coordinate, embeddedRegions()).names) {
      if (services.contains("|" + name + "|")) own.push_back(name);
    }
    EXPECT_THAT(own, SizeIs(1)) << city.name << ", " << city.district;
    seen.insert(own.begin(), own.end());
  }
  EXPECT_THAT(seen, SizeIs(testing::Ge(15U))) << "Lerwick, Kirkwall and Stornoway are no cities";
}

TEST(ServiceNames, AreThoseOfWhoWarns) {
  EXPECT_EQ(placeRegionsOf({60.0973, 19.9348}, embeddedRegions()).country, "FI") << "Mariehamn";
  EXPECT_EQ(placeRegionsOf({78.2186, 15.64}, embeddedRegions()).country, "NO") << "Longyearbyen";
}

class RegionFileTest : public testing::Test {
 protected:
  Result<RegionUpdate, std::string> install(std::string const& document) {
    return installRegions({document}, file());
  }
  std::filesystem::path file() const { return regionFileIn(folder.path()); }

  std::string const good = collection({feature("DE1", "DE", "Kreis Alpha", square({52.52, 13.41}, 0.5)),
                                       feature("DE2", "DE", "Kreis Beta", square({52.52, 14.41}, 0.5)),
                                       feature("PL1", "PL", "Gamma", square({52.52, 16}, 0.5))});
  test::TemporaryFolder folder;
};

TEST_F(RegionFileTest, TellsWhatItHolds) {
  auto const update = install(good);
  ASSERT_TRUE(update) << update.error();
  EXPECT_EQ(update->regions, 3U);
  EXPECT_EQ(update->byCountry, (std::map<std::string, std::size_t>{{"DE", 2}, {"PL", 1}}));
  EXPECT_EQ(update->fileBytes, std::filesystem::file_size(file()));
  PlaceRegions const found = Regions(file()).at({52.52, 13.41});
  EXPECT_EQ(found.country, "DE");
  EXPECT_THAT(found.names, ElementsAre("Alpha", "Berlin"));
  EXPECT_THAT(found.codes, ElementsAre(RegionCode{"EMMA_ID", "DE1"}));
}

TEST_F(RegionFileTest, LeavesCodesOfNeighbouringCountriesOut) {
  ASSERT_TRUE(install(good));
  EXPECT_THAT(Regions(file()).at({52.5, 14.85}).codes, IsEmpty());  // in Poland, within a German outline
}

TEST_F(RegionFileTest, HasTheProgramsOwnOutlinesFromTheFirstStart) {
  Regions const regions(file());
  EXPECT_THAT(regions.at({52.52, 13.41}).codes, Contains(RegionCode{"EMMA_ID", "DE202"}));
  EXPECT_FALSE(regions.problem());
  EXPECT_FALSE(regions.isUpdated());
  EXPECT_EQ(Regions({}).at({99, 0}), PlaceRegions{});
  PlaceRegions const byNameAlone = placeRegionsOf({52.52, 13.41}, nullptr);
  EXPECT_THAT(byNameAlone.names, ElementsAre("Berlin"));
  EXPECT_THAT(byNameAlone.codes, IsEmpty());
}

TEST_F(RegionFileTest, TakesANewFileAtOnce) {
  Regions const regions(file());
  PlaceRegions const before = regions.at({52.52, 13.41});
  ASSERT_TRUE(install(good));
  PlaceRegions const after = regions.at({52.52, 13.41});
  EXPECT_THAT(after.codes, ElementsAre(RegionCode{"EMMA_ID", "DE1"}));
  EXPECT_TRUE(regions.isUpdated());
  EXPECT_TRUE(before.outlines->knows({"EMMA_ID", "DE202"})) << "what was handed out stays whole";
  std::filesystem::remove(file());
  EXPECT_EQ(regions.at({52.52, 13.41}), before);
}

TEST_F(RegionFileTest, LeavesAnOlderFileAlone) {
  struct Row {
    std::string edition;
    bool isUsed;
  };
  std::string const own(embeddedRegions()->edition());
  EXPECT_EQ(own.size(), std::string_view("2026-02-20").size());
  for (auto const& [edition, isUsed] :
       {Row{"2025-12-31", false}, {own, true}, {"2031-01-01", true}, {"", true}}) {
    ASSERT_TRUE(installRegions({good}, file(), nullptr, edition));
    EXPECT_EQ(Regions(file()).isUpdated(), isUsed) << edition;
    EXPECT_FALSE(Regions(file()).problem());
  }
}

TEST_F(RegionFileTest, KeepsCountriesThatAnEditionLeavesOut) {
  auto const update = installRegions({good}, file(), embeddedRegions().get());
  ASSERT_TRUE(update) << update.error();
  Regions const regions(file());
  EXPECT_TRUE(installRegions({good}, file(), embeddedRegions().get())) << "again";
  EXPECT_THAT(regions.at({59.33, 18.07}).codes, Contains(RegionCode{"EMMA_ID", "SE021"}));
  EXPECT_THAT(regions.at({45.9, 6.12}).codes, Contains(RegionCode{"NUTS3", "FR718"}));
}

TEST_F(RegionFileTest, SaysWhyAFileCannotBeUsed) {
  ASSERT_TRUE(install(good));
  std::string const bytes = folder.read("regions.map");
  for (std::string const& bad :
       {std::string(), bytes.substr(0, bytes.size() / 2), "<html>" + bytes, bytes + "x"}) {
    folder.write("regions.map", bad);
    Regions const regions(file());
    EXPECT_THAT(regions.at({52.52, 13.41}).codes, Contains(RegionCode{"EMMA_ID", "DE202"}));
    ASSERT_TRUE(regions.problem());
    EXPECT_THAT(*regions.problem(), HasSubstr(file().string()));
    EXPECT_TRUE(install(good)) << "a broken file is replaced";
  }
}

TEST_F(RegionFileTest, KeepsTheGoodFileThroughBadUpdates) {
  ASSERT_TRUE(install(good));
  std::string const bytes = folder.read("regions.map");
  std::vector<std::string> bad = test::damagedForms(good, 50);
  bad.push_back(collection({}));
  bad.push_back(collection({feature("DE1", "DE", "Alone", square({52.52, 13.41}, 0.5))}));
  bad.push_back(std::string(2'000'000, '['));
  bad.push_back("{\"type\":\"FeatureCollection\"}");
  std::size_t refused = 0;
  for (std::string const& document : bad) {
    if (auto const update = install(document)) {
      EXPECT_GE(update->regions, 2U);
      ASSERT_TRUE(install(good));
      continue;
    }
    ++refused;
    ASSERT_EQ(folder.read("regions.map"), bytes);
  }
  EXPECT_GT(refused, bad.size() / 2);
}

constexpr char kList[] =
    R"([{"name":"README.md"},{"name":"MeteoAlarm_Geocodes_2026_02_20.json","type":"blob"},
  {"name":"MeteoAlarm_Geocodes_2026_07_31.json"},{"name":"MeteoAlarm_Geocodes_2026_07_31.csv"},{"name":"Zz.json"}])";

TEST_F(RegionFileTest, FetchesTheNewestOutlines) {
  test::FakeHttpClient http;
  http.willAnswer(200, kList);
  http.willAnswer(200, good);
  auto const update = updateRegions(http, "https://docs.example", file());
  ASSERT_TRUE(update) << update.error();
  EXPECT_EQ(update->edition, "MeteoAlarm_Geocodes_2026_07_31.json");
  EXPECT_EQ(update->regions, 3U);
  EXPECT_EQ(
      http.requests[1].url,
      "https://docs.example/meteoalarm-pm-group/documents/-/raw/master/MeteoAlarm_Geocodes_2026_07_31.json");
  EXPECT_GE(http.requests[1].maxBodyBytes, std::size_t{64} << 20);
}

TEST_F(RegionFileTest, SaysWhatCouldNotBeFetched) {
  struct Row {
    int listStatus;
    std::string list;
    int status;
    std::string document, sentence;
  };
  for (Row const& row :
       {Row{500, "", 0, "", "the list of outlines cannot be fetched: status 500"},
        {200, "<html>", 0, "", "the list of outlines cannot be read"},
        {200, "[]", 0, "", "the list of outlines is empty"},
        {200, kList, 404, "",
         "the outlines MeteoAlarm_Geocodes_2026_07_31.json cannot be fetched: status 404"},
        {200, kList, 200, "<html>", "the outlines cannot be read: it is not JSON"},
        {200, kList, 200, good.substr(0, good.size() - 9), "the outlines cannot be read: it is not JSON"},
        {200, kList, 200, "{}", "the outlines cannot be read: it is not a feature collection"},
        {200, kList, 200, collection({}), "the outlines contain no regions"}}) {
    test::FakeHttpClient http;
    http.willAnswer(row.listStatus, row.list);
    if (row.status != 0) http.willAnswer(row.status, row.document);
    auto const update = updateRegions(http, "https://docs.example", file());
    ASSERT_FALSE(update);
    EXPECT_THAT(update.error(), HasSubstr(row.sentence));
    EXPECT_FALSE(std::filesystem::exists(file()));
  }
}

constexpr Coordinate kBerlin{52.52, 13.41};
constexpr Coordinate kTokyo{35.68, 139.69};

class RegionRenewalTest : public testing::Test {
 protected:
  bool isDue(std::vector<Coordinate> const& places = {kTokyo, kBerlin}) const {
    return renewal.isDue(places);
  }
  void listNames(std::string const& day) {
    http.willAnswer(200, R"([{"name":"MeteoAlarm_Geocodes_)" + day + R"(.json"}])");
  }

  test::TemporaryFolder folder;
  test::FakeHttpClient http;
  test::ManualClock clock{test::at("2026-11-22T06:00:00Z")};
  RegionRenewal renewal{http, clock, "https://docs.example", folder.path()};
};

TEST_F(RegionRenewalTest, IsDueWhereAPlaceNeedsIt) {
  EXPECT_TRUE(isDue());
  EXPECT_FALSE(isDue({kTokyo}));
  EXPECT_FALSE(isDue({}));
  EXPECT_FALSE(RegionRenewal(http, clock, "https://docs.example", {}).isDue(std::vector{kBerlin}));
}

TEST_F(RegionRenewalTest, TakesANewerEditionOnceAMonth) {
  listNames("2031_01_31");
  http.willAnswer(200, test::collection({test::feature("DE1", "DE", "Alpha", test::square(kBerlin, 0.5))}));
  Regions const running(regionFileIn(folder.path()));
  ASSERT_FALSE(running.isUpdated());
  auto const done = renewal.run({});
  ASSERT_TRUE(done) << done.error();
  ASSERT_TRUE(*done);
  EXPECT_EQ((*done)->edition, "MeteoAlarm_Geocodes_2031_01_31.json");
  EXPECT_THAT(running.at(kBerlin).codes, testing::Contains(RegionCode{"EMMA_ID", "DE1"}));
  EXPECT_FALSE(isDue());
  clock.advance(30 * 24h - 1s);
  EXPECT_FALSE(isDue());
  clock.advance(1s);
  EXPECT_TRUE(isDue());
}

TEST_F(RegionRenewalTest, FetchesNothingThatItHas) {
  listNames("2026_02_20");
  auto const done = renewal.run({});
  ASSERT_TRUE(done) << done.error();
  EXPECT_FALSE(*done);
  EXPECT_THAT(http.requests, SizeIs(1));
  EXPECT_FALSE(isDue());
}

TEST_F(RegionRenewalTest, TriesAgainADayAfterAFailure) {
  http.willAnswer(503, "");
  auto const done = renewal.run({});
  ASSERT_FALSE(done);
  EXPECT_THAT(done.error(), HasSubstr("status 503"));
  clock.advance(24h - 1s);
  EXPECT_FALSE(isDue());
  clock.advance(1s);
  EXPECT_TRUE(isDue());
}

TEST_F(RegionRenewalTest, DoesNotTrustADateBeyondAMonth) {
  folder.write("regions.due", "2027-06-01T00:00:00Z\n");
  EXPECT_TRUE(isDue());
  folder.write("regions.due", "rubbish");
  EXPECT_TRUE(isDue());
  folder.write("regions.due", "2026-12-01T00:00:00Z\n");
  EXPECT_FALSE(isDue());
}

}  // namespace
}  // namespace nimbara
