#include "feeds/wmo/wmo_sources.h"

#include "regions/country_code.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::Pair;
using testing::UnorderedElementsAre;

TEST(CountryCodes, HaveTwoAndThreeLetters) {
  for (auto const& [two, three] : {std::pair{"KZ", "KAZ"},
                                   {"AD", "AND"},
                                   {"ZW", "ZWE"},
                                   {"CH", "CHE"},
                                   {"DK", "DNK"},
                                   {"XK", "XKX"},
                                   {"SJ", "SJM"},
                                   {"RS", "SRB"},
                                   {"MO", "MAC"}}) {
    EXPECT_EQ(alpha3CountryCode(two), three);
    EXPECT_EQ(alpha2CountryCode(three), two);
  }
  EXPECT_EQ(alpha3CountryCode("uk"), "GBR");
  EXPECT_EQ(alpha2CountryCode("gbr"), "GB");
  // Parts of rows, and what lies across two of them.
  for (char const* const none : {"", "K", "DA", "QQ", "KAZ", " A", "KZ "}) {
    EXPECT_EQ(alpha3CountryCode(none), "") << none;
  }
  for (char const* const none : {"", "KA", "KZK", "ZKA", "AZ ", "KAZA"}) {
    EXPECT_EQ(alpha2CountryCode(none), "") << none;
  }
}

TEST(WmoSources, TellTheirCountry) {
  for (auto const& [path, country] : {std::pair{"kz-kazhydromet-en/2026/1.xml", "KZ"},
                                      {"uk-metoffice-en", "GB"},
                                      {"uk-bviddm-en", "VG"},
                                      {"vi-nchmf-xx/1.xml", "VN"},
                                      {"int-gdacs-en", ""},
                                      {"kz", ""},
                                      {"2.49.0.0.398", ""},
                                      {"", ""}}) {
    EXPECT_EQ(countryOfWmoSource(path), country) << path;
  }
}

TEST(WmoMembersDocument, IsReadHoweverDeepItIs) {
  std::string const regions = R"([{"ra":1,"members":[
      {"mid":"075","name":"Nigeria","code":"NGA","lat":"9.1","lng":"7.5"},
      {"mid":85,"name":"Sudan","code":"sdn"},{"mid":"x","code":"KEN"},{"mid":"1000","code":"GHA"},
      {"mid":"077","code":"QQQ"},{"name":"nobody"},null]},{"ra":6,"members":[{"mid":"13","code":"ISR"}]}])";
  for (std::string const& body : {regions, R"({"data":{"regions":)" + regions + "}}"}) {
    auto const members = parseWmoMembers(body);
    ASSERT_TRUE(members);
    EXPECT_THAT(*members, UnorderedElementsAre(Pair("NG", "075"), Pair("SD", "085"), Pair("IL", "013")));
  }
}

TEST(WmoSourcesDocument, NamesTheCountriesThatOperate) {
  auto const source = [](char const* id, char const* status, char const* country) {
    return std::string(R"({"source":{"sourceId":")") + id + R"(","capAlertFeedStatus":")" + status +
           R"(","authorityCountry":)" + country + "}}";
  };
  std::string const list =
      "[" + source("kz-kazhydromet-en", "operating", "\"kz\"") + "," +
      source("kz-kazhydromet-ru", "Operating", "\"KAZ\"") + "," + source("fj-fms-en", "testing", "\"fj\"") +
      "," + source("vi-nchmf-xx", "operating", "null") + "," + source("co-ungrd-es", "operating", "\"co\"") +
      "," + source("ml-meteo-fr", "operating", "\"ml\"") + "," +
      source("xx-test-01-en", "testing", "\"xx\"") + "," + source("ph-pagasa-en", "operating", "7") + "]";
  for (std::string const& body : {list, R"({"sources":)" + list + "}"}) {
    auto const countries = parseWmoSources(body);
    ASSERT_TRUE(countries);
    EXPECT_THAT(*countries, ElementsAre("KZ", "PH", "VN"));
  }
}

TEST(WmoDocuments, AreRefusedWhereTheyListNothing) {
  for (std::string const& body :
       {std::string(), std::string("<html></html>"), std::string("[]"), std::string("{}"),
        std::string(R"({"sources":[]})"), std::string(R"([{"ra":1,"members":[{"mid":"075"}]}])"),
        std::string(1 << 20, '['), std::string(R"({"sources":[{"source":{"sourceId":"kz-)")}) {
    EXPECT_FALSE(parseWmoMembers(body)) << body.substr(0, 60);
    EXPECT_FALSE(parseWmoSources(body)) << body.substr(0, 60);
  }
}

TEST(WmoBuiltIn, KnowsTheMirroredCountriesAndNoOthers) {
  auto const countries = builtInWmoCountries();
  EXPECT_TRUE(std::ranges::is_sorted(countries));
  for (std::string const& country : countries) EXPECT_NE(alpha3CountryCode(country), "") << country;
  for (char const* const country : {"KZ", "BR", "IN", "PH", "IL", "RU", "CN", "MO", "AR", "AU", "ZA"}) {
    EXPECT_THAT(countries, Contains(country));
  }
  for (char const* const country : {"BF", "BI", "BJ", "CD", "DJ", "GN", "GW", "ML", "MM", "MR", "MZ", "NE",
                                    "PG", "ST", "TD", "TG", "TO", "VU", "WS", "YE", "KP", "CO", "JP", "SO"}) {
    EXPECT_THAT(countries, Not(Contains(country)));
  }
  EXPECT_EQ(builtInWmoMember("KZ"), "070");
  EXPECT_EQ(builtInWmoMember("AT"), "006");
  EXPECT_EQ(builtInWmoMember("JP"), std::nullopt);
  EXPECT_EQ(builtInWmoMember(""), std::nullopt);
}

}  // namespace
}  // namespace nimbara
