#include "base/words/country_names.h"
#include "feeds/fetching/plain_text.h"
#include "feeds/travel/country_of_advisory.h"
#include "feeds/travel/travel_advisory_service.h"
#include "support/answers/bad_bytes.h"
#include "support/feed_readings.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;

std::string advisory(std::string const& title, std::string const& code, std::string const& more = "") {
  return R"({"Title":")" + title + R"(","Category":[")" + code + "\"]" + more + "}";
}

std::string listOf(std::string const& advisories) {
  return "[" + advisories + "]";
}

TEST(TravelAdvisories, AreReadWhole) {
  auto const advisories = parseTravelAdvisories(listOf(advisory(
      "Germany - Level 2: Exercise Increased Caution", "GM",
      R"(,"Link":"https://travel.example/de","Summary":"<p>Beware of <b>pickpockets</b> &amp; ice.</p>","id":"x",
         "Published":"2026-05-01T00:00:00-04:00","Updated":"2026-05-13")")));
  ASSERT_TRUE(advisories && advisories->size() == 1);
  EXPECT_EQ(advisories->front(), (TravelAdvisory{"DE", 2, "Germany - Level 2: Exercise Increased Caution",
                                                 "https://travel.example/de", "Beware of pickpockets & ice.",
                                                 at("2026-05-01T04:00:00Z"), at("2026-05-13T00:00:00Z")}));
}

struct CountryRow {
  std::string_view code, iso;
};

TEST(TravelAdvisories, HaveTheirIssuersCodes) {
  for (CountryRow const& row :
       {CountryRow{"GM", "DE"}, CountryRow{"GA", "GM"}, CountryRow{"GB", "GA"}, CountryRow{"CH", "CN"},
        CountryRow{"SZ", "CH"}, CountryRow{"WZ", "SZ"}, CountryRow{"AU", "AT"}, CountryRow{"AS", "AU"},
        CountryRow{"AQ", "AS"}, CountryRow{"AY", "AQ"}, CountryRow{"NI", "NG"}, CountryRow{"NG", "NE"},
        CountryRow{"NU", "NI"}, CountryRow{"SN", "SG"}, CountryRow{"SG", "SN"}, CountryRow{"EI", "IE"},
        CountryRow{"IC", "IS"}, CountryRow{"IS", "IL"}, CountryRow{"SP", "ES"}, CountryRow{"ES", "SV"},
        CountryRow{"JA", "JP"}, CountryRow{"KS", "KR"}, CountryRow{"KN", "KP"}, CountryRow{"SC", "KN"},
        CountryRow{"SE", "SC"}, CountryRow{"SW", "SE"}, CountryRow{"RS", "RU"}, CountryRow{"RI", "RS"},
        CountryRow{"UK", "GB"}, CountryRow{"UP", "UA"}, CountryRow{"BM", "MM"}, CountryRow{"BD", "BM"},
        CountryRow{"BG", "BD"}, CountryRow{"BU", "BG"}, CountryRow{"CG", "CD"}, CountryRow{"CF", "CG"},
        CountryRow{"CT", "CF"}, CountryRow{"CD", "TD"}, CountryRow{"TD", "TT"}, CountryRow{"CI", "CL"},
        CountryRow{"IV", "CI"}, CountryRow{"PO", "PT"}, CountryRow{"PM", "PA"}, CountryRow{"PA", "PY"},
        CountryRow{"MO", "MA"}, CountryRow{"MA", "MG"}, CountryRow{"MG", "MN"}, CountryRow{"MN", "MC"},
        CountryRow{"VM", "VN"}, CountryRow{"DA", "DK"}, CountryRow{"OD", "SS"}, CountryRow{"KV", "XK"},
        CountryRow{"TU", "TR"}, CountryRow{"TS", "TN"}, CountryRow{"TN", "TO"}, CountryRow{"TO", "TG"},
        CountryRow{"LE", "LB"}, CountryRow{"LI", "LR"}, CountryRow{"LS", "LI"}, CountryRow{"LT", "LS"},
        CountryRow{"LH", "LT"}, CountryRow{"HA", "HT"}, CountryRow{"FR", "FR"}, CountryRow{"us", "US"},
        CountryRow{" mx ", "MX"},
        // No codes of FIPS, so they can only be ISO's.
        CountryRow{"DE", "DE"}, CountryRow{"JP", "JP"}, CountryRow{"IE", "IE"},
        // None at all.
        CountryRow{"", ""}, CountryRow{"ZZZ", ""}, CountryRow{"Q", ""}, CountryRow{"1A", ""},
        CountryRow{"QQ", ""}})
    EXPECT_EQ(isoOfFips(row.code), row.iso) << row.code;
}

struct NameRow {
  std::string_view name, code, iso;
};

TEST(TravelAdvisories, AreOfTheCountryThatTheyName) {
  for (NameRow const& row : {NameRow{"Germany", "GM", "DE"},
                             NameRow{"Germany", "DE", "DE"},
                             NameRow{"The Gambia", "GM", "GM"},
                             NameRow{"China", "CN", "CN"},
                             NameRow{"Comoros", "CN", "KM"},
                             NameRow{"Testland", "GM", "DE"},
                             NameRow{"Testland", "??", ""},
                             NameRow{"Burma (Myanmar)", "BM", "MM"},
                             NameRow{"Cote d'Ivoire", "IV", "CI"},
                             NameRow{"Democratic Republic of the Congo", "CG", "CD"},
                             NameRow{"Republic of the Congo", "CF", "CG"},
                             NameRow{"Saint Kitts and Nevis", "SC", "KN"},
                             NameRow{"Antigua and Barbuda", "AC", "AG"},
                             NameRow{"Trinidad and Tobago", "TD", "TT"},
                             NameRow{"Bosnia and Herzegovina", "BK", "BA"},
                             NameRow{"Turkey", "TU", "TR"},
                             NameRow{"Czech Republic", "EZ", "CZ"},
                             NameRow{"Israel, the West Bank and Gaza", "IS", "IL"},
                             NameRow{"North Korea", "", "KP"},
                             NameRow{"South Korea", "", "KR"},
                             NameRow{"The Bahamas", "", "BS"},
                             NameRow{"Guinea-Bissau", "", "GW"},
                             NameRow{"Guinea", "", "GN"},
                             NameRow{"Niger", "", "NE"}})
    EXPECT_EQ(countryOfAdvisory(row.name, row.code), row.iso) << row.name;
}

TEST(TravelAdvisories, HaveTheLevelOfTheirTitle) {
  struct Row {
    std::string_view title;
    int level;  ///< 0: none
  };
  for (Row const& row :
       {Row{"X - Level 1: Normal", 1}, Row{"X - Level 4: Do Not Travel", 4}, Row{"X - LEVEL 3", 3},
        Row{"X - Level 0: ?", 0}, Row{"X - Level 5: ?", 0}, Row{"X - Level 12", 0}, Row{"X - Level", 0},
        Row{"X - Level : 2", 0}, Row{"X - See Summaries", 0}, Row{"", 0},
        Row{"Sea Level Isles - Level 2: Caution", 2}})
    EXPECT_EQ(levelOfTitle(row.title).value_or(0), row.level) << row.title;
}

TEST(TravelAdvisories, AreLeftOutWithoutACountryOrALevel) {
  std::string const good = advisory("France - Level 2: Caution", "FR");
  for (std::string const& other :
       {std::string("null"), std::string("7"), std::string("{}"), advisory("Worldwide Caution", "FR"),
        advisory("Nowhere - Level 2: Caution", ""), std::string(R"({"Title":7,"Category":"FR"})")}) {
    auto const advisories = parseTravelAdvisories(listOf(other + "," + good));
    ASSERT_TRUE(advisories) << other;
    EXPECT_EQ(advisories->size(), 1) << other;
  }
  EXPECT_TRUE(
      parseTravelAdvisories(listOf(R"({"Title":"France - Level 2","Category":7,"Summary":7,"Link":7})")));
}

TEST(TravelAdvisories, OfOneCountryAreOneOfTheHighestLevel) {
  auto const advisories = parseTravelAdvisories(
      listOf(advisory("France - Level 2: x", "FR") + "," + advisory("France - Level 3: y", "FR") + "," +
             advisory("France - Level 1: z", "FR") + "," + advisory("Chad - Level 4: w", "CD")));
  ASSERT_TRUE(advisories && advisories->size() == 2);
  EXPECT_EQ((*advisories)[0].country, "FR");
  EXPECT_EQ((*advisories)[0].level, 3);
  EXPECT_EQ((*advisories)[1].country, "TD");
}

TEST(TravelAdvisories, NoneAreAFailure) {
  for (std::string const body : {"[]", "{}", "", "null", "<html>", "[{}]", R"({"error":"x"})"})
    EXPECT_FALSE(parseTravelAdvisories(body)) << body;
  for (std::string const& body : test::damagedForms(listOf(advisory("France - Level 2: x", "FR")), 3))
    parseTravelAdvisories(body);
}

TEST(TravelAdvisories, AreAsSevereAsTheirLevel) {
  for (int level = 1; level <= 4; ++level) EXPECT_EQ(static_cast<int>(advisorySeverity(level)), level - 1);
  EXPECT_EQ(severityOfWord("low"), AlertSeverity::info);
  EXPECT_EQ(severityOfWord("medium"), AlertSeverity::advisory);
  EXPECT_EQ(severityOfWord("high"), AlertSeverity::warning);
  EXPECT_EQ(severityOfWord("critical"), AlertSeverity::critical);
  for (std::string_view const word : {"", "Medium", "none"}) EXPECT_FALSE(severityOfWord(word)) << word;
}

struct HtmlRow {
  std::string html, text;
};

TEST(PlainText, IsWhatReadersOfHtmlSee) {
  for (HtmlRow const& row :
       {HtmlRow{"", ""}, HtmlRow{"plain", "plain"}, HtmlRow{" a \n b\t\tc ", "a b c"},
        HtmlRow{"<p>a</p><p>b</p>", "a\nb"}, HtmlRow{"<P CLASS=\"x\">a<br/>b<BR>c", "a\nb\nc"},
        HtmlRow{"<ul><li>a</li><li>b</li></ul>c", "a\nb\nc"}, HtmlRow{"a<b>b</b>c", "abc"},
        HtmlRow{"<script>if (a<b) x();</script>y<style>p{}</style >z", "yz"},
        HtmlRow{"<script>never ends", ""}, HtmlRow{"a<!-- > --><!-- x", "a"},
        HtmlRow{"1 < 2 & 3 > 2", "1 < 2 & 3 > 2"}, HtmlRow{"a<", "a<"}, HtmlRow{"a</", "a</"},
        HtmlRow{"a<b", "a"}, HtmlRow{"&lt;b&gt; &amp;amp; &rsquo;&eacute;", "<b> &amp; ’é"},
        HtmlRow{"&#65;&#x42;&#8217;&#x1F600;", "AB’😀"}, HtmlRow{"&#0;&#xD800;&#x110000;x", "x"},
        HtmlRow{"&#99999999999;&#;&#x;&;&unknown;&amp", "&#99999999999;&#;&#x;&;&unknown;&amp"},
        HtmlRow{"a&nbsp;&nbsp;b", "a b"}})
    EXPECT_EQ(plainTextOfHtml(row.html), row.text) << row.html;
  EXPECT_EQ(plainTextOfHtml("a&#155;b&#x202E;c&#127;"), "abc") << "entities bring no controls either";
  EXPECT_EQ(plainTextOfHtml("abcé", 4), "abc") << "no half character";
  EXPECT_EQ(plainTextOfHtml("abcé", 5), "abcé");
  EXPECT_EQ(plainTextOfHtml("é", 0), "");
  for (std::string const& html : test::damagedForms("<p>a&amp;<b>c</b></p><!-- x --><script>y</script>", 1))
    plainTextOfHtml(html);
}

class TravelAdvisoryServiceTest : public testing::Test {
 protected:
  TravelAdvisoryService service() {
    return TravelAdvisoryService(http_, clock_,
                                 {"https://state.example", folder_.path() / "TravelAdvisories"});
  }

  std::string const list_ = listOf(advisory("France - Level 2: x", "FR"));
  test::FakeHttpClient http_;
  test::ManualClock clock_{at("2026-11-21T09:20:00Z")};
  test::TemporaryFolder folder_;
};

TEST_F(TravelAdvisoryServiceTest, KeepsTheListForSixHoursOverRestarts) {
  http_.willAnswer(200, list_);
  EXPECT_TRUE(service().fetchAdvisories().isCurrent());
  EXPECT_EQ(http_.requests[0].url, "https://state.example/api/TravelAdvisories");
  clock_.advance(6h - 1ms);
  auto const kept = service().fetchAdvisories();
  EXPECT_TRUE(kept.isCurrent());
  EXPECT_EQ(kept.checkedAt, at("2026-11-21T09:20:00Z"));
  ASSERT_EQ(kept.data.size(), 1);
  EXPECT_EQ(kept.data[0].country, "FR");
  EXPECT_EQ(http_.requests.size(), 1);
  clock_.advance(1ms);
  http_.willAnswer(200, "[]");
  auto const failed = service().fetchAdvisories();
  EXPECT_EQ(failed.state, FeedState::failed) << "an empty list is not the absence of advisories";
  EXPECT_EQ(failed.data.size(), 1);
  EXPECT_EQ(failed.checkedAt, at("2026-11-21T09:20:00Z"));
}

TEST_F(TravelAdvisoryServiceTest, LivesWithAnyFileOnDisk) {
  for (char const* const content :
       {"", "{}", "[]", "{", "\xff", R"({"checkedAt":"2026-11-21T09:20:00Z","advisories":[]})",
        R"({"checkedAt":"2026-11-21T09:20:00Z","advisories":[{"country":7}]})"}) {
    std::filesystem::create_directories(folder_.path() / "TravelAdvisories");
    folder_.write("TravelAdvisories/advisories.json", content);
    http_.willAnswer(200, list_);
    EXPECT_EQ(service().fetchAdvisories().data.size(), 1) << content;
  }
  EXPECT_EQ(http_.requests.size(), 7);
  std::filesystem::remove_all(folder_.path() / "TravelAdvisories");
  folder_.write("TravelAdvisories", "a file where the folder should be");
  http_.willAnswer(200, list_);
  EXPECT_TRUE(service().fetchAdvisories().isCurrent());
}

TEST_F(TravelAdvisoryServiceTest, SavesAConfirmationToo) {
  auto first = service();
  http_.willAnswer(200, list_, {{"Last-Modified", "then"}});
  first.fetchAdvisories();
  clock_.advance(6h);
  http_.willAnswer(304, "");
  EXPECT_TRUE(first.fetchAdvisories().isCurrent());
  EXPECT_EQ(test::headerOf(http_.requests[1], "If-Modified-Since"), "then");
  EXPECT_EQ(service().fetchAdvisories().checkedAt, clock_.now());
  EXPECT_EQ(http_.requests.size(), 2);
}

}  // namespace
}  // namespace nimbara
