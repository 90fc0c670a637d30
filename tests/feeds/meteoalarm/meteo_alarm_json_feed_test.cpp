#include "feeds/meteoalarm/meteo_alarm_json_feed.h"

#include "feeds/cap/cap_reader.h"
#include "support/answers/bad_bytes.h"
#include "support/answers/cap_json_message.h"
#include "support/instants.h"
#include "support/samples.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::at;
using test::CapBlock;
using test::jsonFeed;
using test::JsonMessage;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::string_view kDocuments = "https://feeds.example/api/v1/warnings/feeds-testland/";

MeteoAlarmJsonFeed parsed(std::vector<JsonMessage> const& messages) {
  auto feed = parseMeteoAlarmJson(jsonFeed(messages), kDocuments);
  EXPECT_TRUE(feed) << feed.error();
  return feed ? std::move(*feed) : MeteoAlarmJsonFeed{};
}

std::vector<std::string> eventsIn(MeteoAlarmJsonFeed const& feed) {
  std::vector<std::string> events;
  for (RawEntry const& entry : feed.entries) events.push_back(entry.event);
  return events;
}

CapBlock block(std::string language, std::string event) {
  CapBlock made;
  made.language = std::move(language);
  made.event = std::move(event);
  return made;
}

JsonMessage message(std::string identifier, std::string sent, std::string references = {}) {
  JsonMessage made;
  made.blocks = {block("en", "event of " + identifier)};
  made.identifier = std::move(identifier);
  made.sent = "2026-11-21T" + std::move(sent) + ":00Z";
  made.references = std::move(references);
  return made;
}

TEST(MeteoAlarmJsonFeed, ReadsEntriesAsTheAtomFeedHasThem) {
  JsonMessage made;
  made.name = "a4b8c8a6-1d1e";
  made.type = "Update";
  made.blocks = {block("de-DE", "Sturm"), block("en", "gales")};
  made.blocks[1].more = R"(,"polygon":["1,2 3,4 5,6 1,2"],"circle":["1,2 30"])";
  made.blocks[1].level = "3; orange; Severe";
  auto const feed = parsed({made});
  ASSERT_EQ(feed.entries.size(), 1);
  RawEntry expected;
  expected.event = "gales";
  expected.severity = "Moderate";
  expected.title = "Orange Wind Warning issued for Coast";
  expected.areaDesc = "Coast";
  expected.polygons = {{{1, 2}, {3, 4}, {5, 6}, {1, 2}}};
  expected.circles = {{{1, 2}, 30}};
  expected.otherCodes = {{"EMMA_ID", "DE001"}, {"WARNCELLID", "1"}};
  expected.sent = at("2026-11-21T05:30:00Z");
  expected.onset = at("2026-11-21T06:00:00Z");
  expected.expires = at("2026-11-22T06:00:00Z");
  expected.identifier = "2.49.0.0.1";
  expected.status = "Actual";
  expected.messageType = "Update";
  expected.link = std::string(kDocuments) + "a4b8c8a6-1d1e";
  expected.infoIndex = 1;
  expected.areaIndex = 0;
  EXPECT_EQ(feed.entries[0], expected);
  ASSERT_TRUE(feed.messages.contains("2.49.0.0.1"));
  EXPECT_EQ(feed.messages.at("2.49.0.0.1")->infos[0].event, "Sturm");
}

TEST(MeteoAlarmJsonFeed, TakesOneLanguageOfEachEvent) {
  JsonMessage inThree;
  inThree.blocks = {block("fr", "vent"), block("en-GB", "wind"), block("de", "Wind"),
                    block("en", "more wind")};
  EXPECT_THAT(eventsIn(parsed({inThree})), ElementsAre("wind"));
  JsonMessage withoutEnglish;
  withoutEnglish.blocks = {block("ca", "vent"), block("es", "viento"), block("ca", "neu")};
  EXPECT_THAT(eventsIn(parsed({withoutEnglish})), ElementsAre("vent", "neu"));
  JsonMessage twoEvents;
  twoEvents.blocks = {block("fr", "vent"), block("en", "wind"), block("fr", "demain")};
  twoEvents.blocks[2].onset = "2026-11-22T06:00:00Z";
  EXPECT_THAT(eventsIn(parsed({twoEvents})), ElementsAre("wind", "demain")) << "nothing is lost";
}

TEST(MeteoAlarmJsonFeed, LeavesOutWhatALaterMessageReplaces) {
  EXPECT_THAT(
      eventsIn(parsed({message("a", "06:00"), message("b", "07:00", "office,a,2026-11-21T06:00:00Z")})),
      ElementsAre("event of b"));
  EXPECT_THAT(eventsIn(parsed({message("a", "06:00", "office,a,x office,b,y"),
                               message("b", "06:00", "office,a,x office,elsewhere,y")})),
              ElementsAre("event of a", "event of b"))
      << "themselves, and each other";
  EXPECT_THAT(eventsIn(parsed({message("a", "08:00"), message("b", "07:00", "office,a,x")})),
              ElementsAre("event of a", "event of b"));
  JsonMessage first = message("a", "06:00");
  JsonMessage again = message("a", "07:00");
  again.blocks[0].event = "newer";
  again.name = "2";
  auto const both = parsed({again, first});
  EXPECT_THAT(eventsIn(both), ElementsAre("newer", "event of a")) << "whatever they call themselves";
  for (RawEntry const& entry : both.entries)
    EXPECT_EQ(both.messages.at(entry.link)->infos[0].event, entry.event);
}

TEST(MeteoAlarmJsonFeed, TakesACancellationThatSaysNoMore) {
  std::string const cancel =
      R"({"uuid":"2","alert":{"identifier":"b","sent":"2026-11-21T07:00:00Z","msgType":"Cancel",)"
      R"("references":"office,a,2026-11-21T06:00:00Z"}})";
  auto const feed = parseMeteoAlarmJson(
      R"({"warnings":[)" + message("a", "06:00").json() + "," + cancel + "]}", kDocuments);
  ASSERT_TRUE(feed) << feed.error();
  EXPECT_THAT(feed->entries, IsEmpty());
}

TEST(MeteoAlarmJsonFeed, MakesNoAddressOfWhatIsNoName) {
  for (std::string const name : {"", "../../x", "a b", "a?b", "%41"}) {
    JsonMessage made;
    made.name = name;
    EXPECT_EQ(parsed({made}).entries.at(0).link, "") << name;
  }
}

TEST(MeteoAlarmJsonFeed, RefusesWhatItCannotReadWhole) {
  std::string const good = JsonMessage().json();
  std::string manyParts = R"({"warnings":[{"alert":{"identifier":"a","info":[{"area":[)";
  for (std::size_t i = 0; i <= kMostCapParts; ++i) manyParts += i == 0 ? "{}" : ",{}";
  std::string corners = "1,1";
  for (std::size_t i = 0; i < kMostCapPoints; ++i) corners += " 1,1";
  JsonMessage drawn;
  drawn.blocks[0].more = R"(,"polygon":[")" + corners + R"("])";
  std::string const bodies[] = {"",
                                "<html>log in</html>",
                                "[]",
                                "{}",
                                R"({"warnings":null})",
                                R"({"warnings":{}})",
                                R"({"warnings":[)" + good,
                                R"({"warnings":[)" + good + ",{}]}",
                                R"({"warnings":[)" + good + ",null]}",
                                R"({"warnings":[{"alert":{"info":[]}}]})",
                                R"({"warnings":[{"alert":{"identifier":"a","info":"storm"}}]})",
                                R"({"warnings":[{"alert":{"identifier":"a","msgType":"Alert"}}]})",
                                manyParts + "]}]}}]}",
                                jsonFeed({drawn}),
                                std::string(100'000, '[')};
  for (std::string const& body : bodies)
    EXPECT_FALSE(parseMeteoAlarmJson(body, kDocuments)) << body.substr(0, 80);
  EXPECT_THAT(parsed({}).entries, IsEmpty()) << "an empty list is one";
}

TEST(MeteoAlarmJsonFeed, SurvivesAnyBytes) {
  for (std::string const& form : test::damagedForms(jsonFeed({{}, message("b", "07:00")}), 7))
    std::ignore = parseMeteoAlarmJson(form, kDocuments);
}

TEST(MeteoAlarmJsonFeed, ReadsTheRecordedFeed) {
  auto const files = test::sampleFiles("meteoalarm");
  if (!files) GTEST_SKIP() << "no samples";
  auto const file =
      std::ranges::find_if(*files, [](auto const& path) { return path.filename() == "json-germany.json"; });
  ASSERT_NE(file, files->end());
  auto const feed = parseMeteoAlarmJson(test::readFile(*file), kDocuments);
  ASSERT_TRUE(feed) << feed.error();
  EXPECT_THAT(eventsIn(*feed),
              ElementsAre("gale-force gusts", "frost", "frost", "near gale", "gale-force gusts"));
  EXPECT_EQ(feed->entries[1].areaDesc, "Kreis Ludwigsburg");
  EXPECT_EQ(feed->entries[1].title, "Yellow low-temperature Warning issued for Kreis Ludwigsburg");
  EXPECT_THAT(feed->entries[0].otherCodes,
              ElementsAre(RegionCode{"EMMA_ID", "DE343"}, RegionCode{"WARNCELLID", "114521000"}));
  EXPECT_EQ(feed->entries[4].status, "Test");
}

}  // namespace
}  // namespace nimbara
