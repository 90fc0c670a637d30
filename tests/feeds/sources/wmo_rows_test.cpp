#include "feeds/wmo/wmo_rows.h"

#include "feeds/wmo/wmo_sources.h"
#include "regions/country_code.h"
#include "support/answers/wmo_answer.h"
#include "support/instants.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::at;
using test::wmoAnswer;
using test::WmoFeature;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;
using testing::SizeIs;
using testing::UnorderedElementsAre;

WmoRow onlyRow(WmoFeature const& feature) {
  auto const answer = parseWmoRows(wmoAnswer({feature}));
  if (!answer || answer->rows.size() != 1) ADD_FAILURE() << "one row is expected";
  return answer && !answer->rows.empty() ? answer->rows.front() : WmoRow();
}

TEST(WmoRows, ReadsAWarning) {
  WmoFeature feature;
  feature.rlink = "kz-kazhydromet-ru/2026/11/22/08/00/00-f.xml";
  feature.more = R"("description":"Gusts of 25 m/s","onset":"2026-11-22T12:00:00Z","areadesc":"Astana",)";
  WmoRow const row = onlyRow(feature);
  EXPECT_EQ(row.document, feature.capurl);
  EXPECT_EQ(row.related, feature.rlink);
  EXPECT_EQ(row.identifier, "2.49.0.0.398.0-20261122");
  EXPECT_EQ(row.event, "Strong wind");
  EXPECT_EQ(row.description, "Gusts of 25 m/s");
  EXPECT_EQ(row.areaDesc, "Astana");
  EXPECT_EQ(row.sent, at("2026-11-22T08:00:00Z"));
  EXPECT_EQ(row.onset, at("2026-11-22T12:00:00Z"));
  EXPECT_EQ(row.expires, at("2026-11-23T08:00:00Z"));
  EXPECT_THAT(row.outline, ElementsAre(ElementsAre(Coordinate{51, 71}, Coordinate{51, 72}, Coordinate{52, 72},
                                                   Coordinate{51, 71})))
      << "longitude comes first";
}

struct GeometryRow {
  char const* name;
  std::string geometry;
  std::vector<std::size_t> corners;
};

TEST(WmoGeometry, IsReadOrLeftOut) {
  for (GeometryRow const& row :
       {GeometryRow{"Null", "null", {}},
        GeometryRow{"Point", R"({"type":"Point","coordinates":[71,51]})", {}},
        GeometryRow{"ChukotkaCutAtTheDateLine",
                    R"({"type":"MultiPolygon","coordinates":[[[[170,62],[180,62],[180,70],[170,62]]],
                        [[[-180,62],[-170,62],[-180,70],[-180,66],[-180,62]]]]})",
                    {4, 5}},
        GeometryRow{
            "AHoleJoinedByASeam",
            R"({"type":"Polygon","coordinates":[[[0,0],[9,0],[9,9],[0,0]],[[1,1],[2,1],[2,2],[1,1]]]})",
            {9}},
        GeometryRow{
            "TwoHoles",
            R"({"type":"Polygon","coordinates":[[[0,0],[9,0],[9,9],[0,9],[0,0]],[[1,1],[2,1],[2,2],[1,1]],
                        [[4,4],[5,4],[5,5],[4,4]]]})",
            {5 + 2 * (4 + 1)}},
        GeometryRow{"Height", R"({"type":"Polygon","coordinates":[[[0,0,0],[9,0,0],[9,9,0]]]})", {3}},
        GeometryRow{"TwoCorners", R"({"type":"Polygon","coordinates":[[[0,0],[9,0]]]})", {}},
        GeometryRow{"OffTheGlobe", R"({"type":"Polygon","coordinates":[[[0,0],[9,0],[9,91]]]})", {}},
        GeometryRow{"Empty", R"({"type":"Polygon","coordinates":[]})", {}},
        GeometryRow{"Text", R"({"type":"Polygon","coordinates":"0,0 1,1"})", {}},
        GeometryRow{"NoObject", "7", {}}}) {
    SCOPED_TRACE(row.name);
    WmoFeature feature;
    feature.geometry = row.geometry;
    std::vector<std::size_t> corners;
    for (WarningPolygon const& polygon : onlyRow(feature).outline) corners.push_back(polygon.size());
    EXPECT_EQ(corners, row.corners);
  }
}

TEST(WmoRows, TakeTimesWithoutAZoneForUniversalOnes) {
  for (auto const& [written, read] : std::vector<std::pair<std::string, std::optional<Instant>>>{
           {"2026-11-22 08:00:00", at("2026-11-22T08:00:00Z")},
           {"2026-11-22T08:00:00+08:00", at("2026-11-22T00:00:00Z")},
           {"2026-11-22T08:00:00.000Z", at("2026-11-22T08:00:00Z")},
           {"2569-11-22T08:00:00+07:00", at("2026-11-22T01:00:00Z")},
           {"Sun, 22 Nov 2026", std::nullopt}}) {
    WmoFeature feature;
    feature.sent = written;
    EXPECT_EQ(onlyRow(feature).sent, read) << written;
  }
}

TEST(WmoRows, KnowOnlyTheCodesThatAreKnown) {
  struct Row {
    std::string code, severity;
    int rank;
  };
  for (Row const& row :
       {Row{"0", "Unknown", 0}, Row{"1", "Minor", 1}, Row{"2", "Moderate", 2}, Row{"3", "Severe", 3},
        Row{"4", "Extreme", 4}, Row{"5", "Unknown", 0}, Row{"2.5", "Unknown", 0}, Row{"-1", "Unknown", 0},
        Row{"\"4\"", "Extreme", 4}, Row{"null", "", 0}}) {
    WmoFeature feature;
    feature.s = row.code;
    WmoRow const read = onlyRow(feature);
    EXPECT_EQ(read.severity, row.severity) << row.code;
    EXPECT_EQ(read.rank, row.rank) << row.code;
    EXPECT_EQ(read.urgency, "Expected");
    EXPECT_EQ(read.certainty, "Likely");
  }
}

TEST(WmoRows, GatherTheOutlinesOfOneWarning) {
  WmoFeature other;
  other.geometry = R"({"type":"Polygon","coordinates":[[[0,0],[9,0],[9,9]]]})";
  auto const answer = parseWmoRows(wmoAnswer({{}, other}, R"("totalFeatures":7,)"));
  ASSERT_TRUE(answer);
  ASSERT_THAT(answer->rows, SizeIs(1));
  EXPECT_THAT(answer->rows[0].outline, SizeIs(2));
  EXPECT_EQ(answer->received, 2U);
  EXPECT_EQ(answer->total, 7);
}

TEST(WmoRows, LeaveOutWhatMisleadsAndCountWhatIsNone) {
  WmoFeature colombia;
  colombia.capurl = "co-ungrd-es/2026/11/22/1.xml";
  WmoFeature macau;
  macau.capurl = "mo-smg-xx/2026/11/22/1.xml";
  WmoFeature bare;
  bare.capurl = bare.identifier = "";
  std::string body = wmoAnswer({colombia, macau, bare});
  body.replace(body.rfind("]}"), 2, R"(,7,null,{"properties":null}]})");
  auto const answer = parseWmoRows(body);
  ASSERT_TRUE(answer);
  ASSERT_THAT(answer->rows, SizeIs(1));
  EXPECT_EQ(answer->rows[0].document, macau.capurl);
  EXPECT_EQ(answer->leftOut, 1U);
  EXPECT_EQ(answer->unreadable, 4U);
}

TEST(WmoRows, KnowAWarningWithoutItsOwnMessageByTheOtherOne) {
  WmoFeature feature;
  feature.capurl = "";
  feature.rlink = "sa-ncm-ar/1.xml";
  EXPECT_EQ(onlyRow(feature).document, "sa-ncm-ar/1.xml");
  EXPECT_EQ(onlyRow(feature).related, "");
  feature.rlink = "";
  EXPECT_EQ(onlyRow(feature).document, feature.identifier);
}

TEST(WmoRows, AreNoneInWhatTheCentreSendsInsteadOfAnAnswer) {
  for (std::string const& body :
       {std::string(), std::string("Err\nErr\nErr\n"), std::string("<html><body>Log in</body></html>"),
        std::string(R"(<?xml version="1.0"?><ows:ExceptionReport><ows:Exception/></ows:ExceptionReport>)"),
        std::string("[]"), std::string("null"), std::string(R"({"type":"FeatureCollection"})"),
        std::string(R"({"features":null})"), std::string(R"({"features":{}})"),
        std::string(R"({"exceptions":[{"code":"NoApplicableCode"}]})"), std::string(1 << 20, '['),
        wmoAnswer({{}}) + "Err"})
    EXPECT_FALSE(parseWmoRows(body)) << body.substr(0, 60);
  auto const none = parseWmoRows(wmoAnswer({}));
  ASSERT_TRUE(none);
  EXPECT_THAT(none->rows, IsEmpty());
}

TEST(WmoRows, AreNoneInATruncatedAnswer) {
  std::string const body = wmoAnswer({{}, {}});
  for (std::size_t length = 0; length < body.size(); ++length)
    EXPECT_FALSE(parseWmoRows(body.substr(0, length))) << length;
}

TEST(WmoRows, DrawNothingBeyondAMeasure) {
  std::string ring = "[0,0],[9,0],[9,9]";
  for (std::size_t i = 3; i < kMostWmoPoints / 5; ++i) ring += ",[1,1]";
  std::vector<WmoFeature> features(6);
  for (std::size_t i = 0; i < features.size(); ++i) {
    features[i].capurl = "kz-x/" + std::to_string(i);
    features[i].geometry = R"({"type":"Polygon","coordinates":[[)" + ring + "]]}";
  }
  auto const answer = parseWmoRows(wmoAnswer(features));
  ASSERT_TRUE(answer);
  ASSERT_THAT(answer->rows, SizeIs(6));
  EXPECT_THAT(answer->rows[4].outline, SizeIs(1));
  EXPECT_THAT(answer->rows[5].outline, IsEmpty()) << "the warning itself stays";
}

TEST(WmoRows, BecomeMessagesWithoutInventions) {
  CapAlert const alert = alertOf(onlyRow({}));
  EXPECT_EQ(alert.identifier, "2.49.0.0.398.0-20261122");
  EXPECT_EQ(alert.sender, "");
  ASSERT_THAT(alert.infos, SizeIs(1));
  EXPECT_EQ(alert.infos[0].severity, "Severe");
  EXPECT_EQ(alert.infos[0].headline, "");
  EXPECT_EQ(alert.infos[0].language, "");
  EXPECT_EQ(alert.infos[0].expires, at("2026-11-23T08:00:00Z"));
  WmoFeature nameless;
  nameless.identifier = "";
  EXPECT_EQ(alertOf(onlyRow(nameless)).identifier, nameless.capurl);
}

TEST(WmoRows, AreOrderedBySeverityThenAge) {
  auto const row = [](char const* severity, char const* sent) {
    WmoFeature feature;
    feature.s = severity;
    feature.sent = sent;
    return onlyRow(feature);
  };
  WmoRow const extreme = row("4", "2026-11-20T00:00:00Z");
  WmoRow const newer = row("3", "2026-11-22T00:00:00Z");
  WmoRow const older = row("3", "2026-11-21T00:00:00Z");
  EXPECT_TRUE(isMoreUrgent(extreme, newer));
  EXPECT_TRUE(isMoreUrgent(newer, older));
  EXPECT_FALSE(isMoreUrgent(older, newer));
  EXPECT_FALSE(isMoreUrgent(newer, newer));
}

TEST(CountryCodes, HaveTwoAndThreeLetters) {
  for (auto const& [two, three] : {std::pair{"KZ", "KAZ"}, std::pair{"AD", "AND"}, std::pair{"ZW", "ZWE"},
                                   std::pair{"CH", "CHE"}, std::pair{"DK", "DNK"}, std::pair{"XK", "XKX"},
                                   std::pair{"SJ", "SJM"}, std::pair{"RS", "SRB"}, std::pair{"MO", "MAC"}}) {
    EXPECT_EQ(alpha3CountryCode(two), three);
    EXPECT_EQ(alpha2CountryCode(three), two);
  }
  EXPECT_EQ(alpha3CountryCode("uk"), "GBR");
  EXPECT_EQ(alpha2CountryCode("gbr"), "GB");
  // Parts of rows, and what lies across two of them.
  for (char const* const none : {"", "K", "DA", "QQ", "KAZ", " A", "KZ "})
    EXPECT_EQ(alpha3CountryCode(none), "") << none;
  for (char const* const none : {"", "KA", "KZK", "ZKA", "AZ ", "KAZA"})
    EXPECT_EQ(alpha2CountryCode(none), "") << none;
}

TEST(WmoSources, TellTheirCountry) {
  for (auto const& [path, country] :
       {std::pair{"kz-kazhydromet-en/2026/1.xml", "KZ"}, std::pair{"uk-metoffice-en", "GB"},
        std::pair{"uk-bviddm-en", "VG"}, std::pair{"vi-nchmf-xx/1.xml", "VN"}, std::pair{"int-gdacs-en", ""},
        std::pair{"kz", ""}, std::pair{"2.49.0.0.398", ""}, std::pair{"", ""}})
    EXPECT_EQ(countryOfWmoSource(path), country) << path;
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
  for (char const* const country : {"KZ", "BR", "IN", "PH", "IL", "RU", "CN", "MO", "AR", "AU", "ZA"})
    EXPECT_THAT(countries, Contains(country));
  for (char const* const country : {"BF", "BI", "BJ", "CD", "DJ", "GN", "GW", "ML", "MM", "MR", "MZ", "NE",
                                    "PG", "ST", "TD", "TG", "TO", "VU", "WS", "YE", "KP", "CO", "JP", "SO"})
    EXPECT_THAT(countries, Not(Contains(country)));
  EXPECT_EQ(builtInWmoMember("KZ"), "070");
  EXPECT_EQ(builtInWmoMember("AT"), "006");
  EXPECT_EQ(builtInWmoMember("JP"), std::nullopt);
  EXPECT_EQ(builtInWmoMember(""), std::nullopt);
}

}  // namespace
}  // namespace nimbara
