#include "feeds/travel/advisory_parsers.h"
#include "feeds/travel/travel_advisory_service.h"
#include "support/answers/bad_bytes.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;

constexpr char kCanada[] = R"({"metadata":{"generated":{"timestamp":1770000100}},"data":{
  "JP":{"country-id":1,"country-iso":"JP","country-eng":"Japan","advisory-state":0,"has-regional-advisory":1,
        "date-published":{"timestamp":1770000000,"date":"2026-02-02","asp":"2026-02-02T02:40:00.0-05:00"},
        "eng":{"name":"Japan","url-slug":"japan","advisory-text":"Take normal security precautions",
               "recent-updates":"<p>Safety &amp; security</p>"}},
  "AF":{"country-iso":"AF","advisory-state":"3","eng":{"name":"Afghanistan","url-slug":"../x"}},
  "X1":{"country-iso":"X1","advisory-state":1}, "QQ":{"country-iso":"QQ","advisory-state":null},
  "ZZ":{"country-iso":"ZZ","advisory-state":7}, "YY":17}})";

constexpr char kGermany[] = R"({"response":{"lastModified":1757063288,"contentList":["1","2"],
  "213032":{"lastModified":1783430993,"title":"Japan: Reise- und Sicherheitshinweise","countryCode":"JP",
            "warning":false,"partialWarning":true,"situationWarning":false,"situationPartWarning":false},
  "2":{"lastModified":1753900000000,"countryCode":"af","warning":true,"partialWarning":true},
  "3":{"countryCode":"TH","situationPartWarning":true}, "4":{"countryCode":"ES"}, "5":{"countryCode":""}}})";

constexpr char kBritain[] = R"({"links":{"children":[
  {"base_path":"/foreign-travel-advice/japan","title":"Japan travel advice"},
  {"base_path":"/foreign-travel-advice/usa","title":"USA"},
  {"base_path":"/foreign-travel-advice/st-lucia","title":"St Lucia"},
  {"base_path":"/elsewhere/spain","title":"Spain"}, {"title":"France"}, 5]}})";

std::string pageOf(std::string const& status) {
  return R"({"base_path":"/foreign-travel-advice/japan","title":"Japan travel advice",
    "public_updated_at":"2026-08-29T10:00:00Z","details":{"alert_status":[)" +
         status + R"(],"change_description":"Typhoons","country":{"name":"Japan","slug":"japan"}}})";
}

TEST(CanadianAdvisories, AreReadWithTheirLevels) {
  auto const list = parseCanadianAdvisories(kCanada);
  ASSERT_TRUE(list) << list.error().text();
  ASSERT_EQ(list->size(), 2U);
  EXPECT_EQ(list->back(), (TravelAdvisory{"JP",
                                          1,
                                          "Japan - Take normal security precautions",
                                          "https://travel.gc.ca/destinations/japan",
                                          "Safety & security",
                                          at("2026-02-02T02:40:00Z"),
                                          {},
                                          AdvisorySource::ca,
                                          "ca.1",
                                          true}));
  EXPECT_EQ(list->front().level, 4);
  EXPECT_EQ(list->front().link, "") << "no name of a page";
}

TEST(AdvisoryAlerts, KeepTheirIdentifier) {
  TravelAdvisory const japan = parseCanadianAdvisories(kCanada)->back();
  WeatherAlert const alert = advisoryAlert(japan);
  EXPECT_TRUE(alert.isTravelAdvisory);
  EXPECT_EQ(alert.severity, AlertSeverity::info);
  EXPECT_EQ(alert.title, japan.title);
  EXPECT_EQ(alert.issued, japan.published);
  EXPECT_EQ(advisoryAlert(japan), alert);
  EXPECT_NE(advisoryAlert(parseCanadianAdvisories(kCanada)->front()).id, alert.id);
}

TEST(GermanAdvisories, TakeWhatIsForPartsForLess) {
  auto const list = parseGermanAdvisories(kGermany);
  ASSERT_TRUE(list) << list.error().text();
  struct Row {
    char const *country, *advice;
    int level;
  };
  std::vector<Row> const rows{
      {"AF", "de.warning", 4}, {"ES", "de.none", 1}, {"JP", "de.partial", 2}, {"TH", "de.situationPart", 2}};
  ASSERT_EQ(list->size(), rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    EXPECT_EQ((*list)[i].country, rows[i].country);
    EXPECT_EQ((*list)[i].advice, rows[i].advice) << rows[i].country;
    EXPECT_EQ((*list)[i].level, rows[i].level) << rows[i].country;
  }
  EXPECT_EQ((*list)[0].updated, at("2025-07-30T18:26:40Z")) << "milliseconds";
  EXPECT_EQ((*list)[2].updated, at("2026-07-07T13:29:53Z")) << "seconds";
}

struct StatusRow {
  char const *status, *advice;
  int level;
  bool hasRegions;
};

TEST(BritishAdvisories, AreOfTheGravestStatus) {
  for (StatusRow const& row :
       {StatusRow{"", "uk.none", 1, false},
        {R"("avoid_all_but_essential_travel_to_parts")", "uk.partsEssential", 2, false},
        {R"("avoid_all_but_essential_travel_to_parts","avoid_all_travel_to_parts")", "uk.partsAll", 2, false},
        {R"("avoid_all_travel_to_parts","avoid_all_but_essential_travel_to_whole_country")", "uk.essential",
         3, true},
        {R"("avoid_all_travel_to_whole_country")", "uk.all", 4, false},
        {R"("something_new")", "uk.none", 1, false}}) {
    auto const advisory = parseBritishAdvisory(pageOf(row.status));
    ASSERT_TRUE(advisory) << row.status;
    EXPECT_EQ(advisory->country, "JP");
    EXPECT_EQ(advisory->advice, row.advice) << row.status;
    EXPECT_EQ(advisory->level, row.level) << row.status;
    EXPECT_EQ(advisory->hasRegions, row.hasRegions) << row.status;
  }
  EXPECT_FALSE(parseBritishAdvisory(R"({"title":"Japan","details":{}})")) << "nothing is stated";
}

TEST(BritishAdvisories, AreFoundByTheNamesOfTheList) {
  auto const pages = parseBritishList(kBritain);
  ASSERT_TRUE(pages) << pages.error().text();
  EXPECT_EQ(*pages, (AdvisoryPages{{"JP", "/foreign-travel-advice/japan"},
                                   {"LC", "/foreign-travel-advice/st-lucia"},
                                   {"US", "/foreign-travel-advice/usa"}}));
}

TEST(OtherAdvisories, ReadAnyBytes) {
  for (char const* const body : {kCanada, kGermany, kBritain}) {
    for (std::string const& bytes : test::damagedForms(body, 11)) {
      for (auto const& list : {parseCanadianAdvisories(bytes), parseGermanAdvisories(bytes)})
        EXPECT_TRUE(!list || !list->empty()) << bytes;
      auto const pages = parseBritishList(bytes);
      EXPECT_TRUE(!pages || !pages->empty()) << bytes;
      auto const page = parseBritishAdvisory(bytes);
      EXPECT_TRUE(!page || !page->country.empty()) << bytes;
    }
  }
}

TEST(BritishAdvisories, AreAskedForOneCountry) {
  test::FakeHttpClient http;
  test::ManualClock clock(at("2026-11-21T09:20:00Z"));
  TravelAdvisoryService service(http, clock, {.britainBase = "https://uk.example"});
  http.willAnswer(200, kBritain);
  http.willAnswer(200, pageOf(R"("avoid_all_travel_to_parts")"));
  auto const japan = service.fetchAdvisories(AdvisorySource::uk, "JP");
  ASSERT_TRUE(japan.isCurrent() && japan.data.size() == 1);
  EXPECT_EQ(http.requests.back().url, "https://uk.example/api/content/foreign-travel-advice/japan");
  auto const france = service.fetchAdvisories(AdvisorySource::uk, "FR");
  EXPECT_TRUE(france.isCurrent() && france.data.empty()) << "it is not in the list";
  EXPECT_TRUE(service.fetchAdvisories(AdvisorySource::uk, "").isCurrent()) << "at sea";
  EXPECT_EQ(http.requests.size(), 2U);
  http.willAnswer(500, "");
  auto const failed = service.fetchAdvisories(AdvisorySource::uk, "US");
  EXPECT_FALSE(failed.isCurrent());
  EXPECT_TRUE(failed.data.empty());
}

}  // namespace
}  // namespace nimbara
