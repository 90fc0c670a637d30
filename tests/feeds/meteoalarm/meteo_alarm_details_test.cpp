#include "feeds/meteoalarm/meteo_alarm_details.h"

#include "feeds/awareness/meteo_alarm_classes.h"
#include "feeds/cap/cap_language.h"
#include "feeds/cap/cap_reader.h"
#include "support/answers/cap_message.h"
#include "support/instants.h"
#include "support/samples.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::at;
using test::CapBlock;
using test::capMessage;

CapAlert document(std::vector<CapBlock> const& blocks) {
  return parseCap(capMessage(blocks)).value();
}

RawEntry entryOf(std::string const& code, std::optional<std::size_t> infoIndex = {}) {
  RawEntry entry;
  entry.areaDesc = "Coast";
  entry.event = "Moderate wind warning";
  entry.otherCodes = {{"EMMA_ID", code}};
  entry.infoIndex = infoIndex;
  return entry;
}

CapBlock block(std::string const& language, std::string const& description) {
  CapBlock made;
  made.language = language;
  made.description = description;
  return made;
}

TEST(MeteoAlarmDetails, AreInTheReadersLanguageElseInEnglishElseInTheServicesOwn) {
  CapAlert const three = document({block("de-DE", "Sturm"), block("en", "Gale"), block("fr-FR", "Tempête")});
  CapAlert const two = document({block("sr", "Ветар"), block("sr-Latn", "Vetar")});
  CapAlert const unnamed = document({block("", "?"), block("en-GB", "Gale")});
  struct Row {
    CapAlert const& document;
    std::string language, text;
  };
  for (Row const& row :
       {Row{three, "fr_CA.UTF-8", "Tempête"}, Row{three, "de", "Sturm"}, Row{three, "de_AT@euro", "Sturm"},
        Row{three, "pt_BR.UTF-8", "Gale"}, Row{three, "C.UTF-8", "Gale"}, Row{three, "", "Gale"},
        Row{two, "de", "Ветар"}, Row{two, "sr_RS", "Ветар"}, Row{unnamed, "de", "Gale"}}) {
    auto const details = detailsOf(row.document, entryOf("DE001", 0), row.language);
    ASSERT_TRUE(details);
    EXPECT_EQ(details->text, row.text) << row.language;
  }
  EXPECT_EQ(languageRank("nb-NO", "nn_NO.UTF-8"), 0);
}

TEST(MeteoAlarmDetails, AreThoseOfTheEntrysOwnBlock) {
  CapBlock today = block("en", "Today");
  CapBlock tomorrow = block("en", "Tomorrow");
  tomorrow.onset = "2026-11-22T06:00:00Z";
  tomorrow.expires = "2026-11-23T06:00:00Z";
  CapBlock tomorrowInGerman = tomorrow;
  tomorrowInGerman.language = "de";
  tomorrowInGerman.description = "Morgen";
  CapBlock elsewhere = block("en", "Elsewhere");
  elsewhere.code = "DE002";
  elsewhere.area = "Hills";
  CapAlert const all = document({today, tomorrow, tomorrowInGerman, elsewhere});
  RawEntry byPeriod = entryOf("DE001");
  byPeriod.onset = at("2026-11-22T06:00:00Z");
  RawEntry byName = entryOf("DE999");
  byName.areaDesc = "Hills";
  RawEntry unknown = byName;
  unknown.areaDesc = "Valley";
  struct Row {
    RawEntry entry;
    std::string language;
    std::optional<std::string> text;
  };
  for (Row const& row : {Row{entryOf("DE001", 0), "de", "Today"}, Row{entryOf("DE001", 1), "de", "Morgen"},
                         Row{entryOf("DE001", 2), "en", "Tomorrow"}, Row{entryOf("DE001", 9), "en", "Today"},
                         Row{byPeriod, "de", "Morgen"}, Row{entryOf("DE002"), "en", "Elsewhere"},
                         Row{byName, "en", "Elsewhere"}, Row{unknown, "en", {}}}) {
    auto const details = detailsOf(all, row.entry, row.language);
    EXPECT_EQ(details ? std::optional(details->text) : std::nullopt, row.text) << row.entry.areaDesc;
  }
  EXPECT_EQ(languageOfEntry(all, entryOf("DE001", 2)), "de");
  EXPECT_EQ(languageOfEntry(all, unknown), "");
}

TEST(MeteoAlarmDetails, SayWhoWarnsOfWhatAndHowGravely) {
  CapBlock given;
  given.type = "12; flooding";
  given.level = "3; orange; Severe";
  given.description = " \n";
  auto const details = detailsOf(document({given}), entryOf("DE001"), "en");
  ASSERT_TRUE(details);
  EXPECT_EQ(details->text, "Wind in Testland") << "the headline where there is no description";
  EXPECT_EQ(details->instruction, "Stay at home.");
  EXPECT_EQ(details->issuer, "Weather Service of Testland");
  EXPECT_EQ(details->language, "en-GB");
  EXPECT_EQ(details->colour, "orange");
  EXPECT_EQ(details->type, MeteoAlarmType::flood);
  EXPECT_EQ(details->sent, at("2026-11-21T05:30:00Z"));
  given.type = given.level = given.instruction = "";
  auto const bare = detailsOf(document({given}), entryOf("DE001"), "en");
  EXPECT_EQ(bare->type, std::nullopt);
  EXPECT_EQ(bare->colour + bare->instruction, "");
}

TEST(MeteoAlarmTypes, FollowTheMessagesOwnNumbers) {
  using enum MeteoAlarmType;
  for (auto const& [text, type] :
       {std::pair<std::string_view, std::optional<MeteoAlarmType>>{"1; Wind", wind},
        {"2; snow-ice", snowIce},
        {"3; thunderstorm", thunderstorm},
        {"5; high-temperature", heat},
        {"6; low-temperature", cold},
        {"7; coastalevent", coastal},
        {"9; avalanches", avalanche},
        {"10; Rain", rain},
        {"12; flooding", flood},
        {"13; rain-flood", rainFlood},
        {"4", fog},
        {"11", {}},
        {"12", flood},
        {"13", rainFlood},
        {"14; polar low", wind},
        {"0", {}},
        {"", {}}})
    EXPECT_EQ(awarenessTypeOf(text), type) << text;
}

TEST(MeteoAlarmDetails, ReadTheRecordedMessage) {
  auto const files = test::sampleFiles("meteoalarm");
  if (!files) GTEST_SKIP() << "no samples";
  auto const file = std::ranges::find(*files, "cap-serbia-polygon-2025-08-17.xml",
                                      [](auto const& path) { return path.filename().string(); });
  ASSERT_NE(file, files->end());
  auto const message = parseCap(test::readFile(*file)).value();
  RawEntry const entry = entryOf("RS010");
  for (auto const& [language, text] : {std::pair{"en", "Local thunderstorms"},
                                       {"sr_RS.UTF-8", "Локална појава грмљавина са или без падавина"},
                                       {"hr_HR", "Local thunderstorms"}}) {
    auto const details = detailsOf(message, entry, language);
    ASSERT_TRUE(details);
    EXPECT_EQ(details->text, text);
    EXPECT_EQ(details->type, MeteoAlarmType::thunderstorm);
    EXPECT_EQ(details->colour, "yellow");
  }
}

}  // namespace
}  // namespace nimbara
