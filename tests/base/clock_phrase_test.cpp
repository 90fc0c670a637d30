#include "base/words/clock_phrase.h"

#include "support/instants.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using enum ClockRole;
using enum ClockPhrase::Precision;

struct Row {
  std::string locale, until, around, noon, one, half, tomorrow, thursday;
};

void PrintTo(Row const& row, std::ostream* out) {
  *out << row.locale;
}

class ClockPhrases : public testing::TestWithParam<Row> {};

TEST_P(ClockPhrases, BendTheWordByTheHour) {
  Row const& row = GetParam();
  Texts const texts = Texts::load(row.locale);
  ClockPhrase const clock(texts, Calendar::utc());
  Instant const now = at("2026-11-23T10:00:00Z");
  EXPECT_EQ(clock.phrase(until, at("2026-11-24T00:00:00Z")), row.until);
  EXPECT_EQ(clock.phrase(around, at("2026-11-23T18:40:00Z")), row.around);
  EXPECT_EQ(clock.span(at("2026-11-23T09:00:00Z"), at("2026-11-23T12:00:00Z")), row.noon);
  EXPECT_EQ(clock.phrase(from, at("2026-11-23T01:00:00Z")), row.one);
  EXPECT_EQ(clock.phrase(until, at("2026-11-23T12:30:00Z"), minute), row.half);
  EXPECT_EQ(clock.phraseOnDay(until, at("2026-11-24T18:00:00Z"), now, minute), row.tomorrow);
  EXPECT_EQ(clock.phraseOnDay(until, at("2026-11-27T00:00:00Z"), now, minute), row.thursday);
}

INSTANTIATE_TEST_SUITE_P(
    Ten, ClockPhrases,
    testing::Values(
        Row{"en", "until midnight", "around 6 PM", "from 9 AM to noon", "from 1 AM", "until 12:30 PM",
            "until 6 PM tomorrow", "until midnight on Thursday"},
        Row{"en@hours=h23", "until midnight", "around 18:00", "from 09:00 to noon", "from 01:00",
            "until 12:30", "until 18:00 tomorrow", "until midnight on Thursday"},
        Row{"de@hours=h23", "bis Mitternacht", "gegen 18 Uhr", "von 9 bis 12 Uhr", "ab 1 Uhr",
            "bis 12:30 Uhr", "bis morgen 18 Uhr", "bis Donnerstag Mitternacht"},
        Row{"fr@hours=h23", "jusqu’à minuit", "vers 18 h", "de 9 h à midi", "à partir de 1 h",
            "jusqu’à 12 h 30", "jusqu’à demain 18 h", "jusqu’à jeudi minuit"},
        Row{"es@hours=h23", "hasta la medianoche", "hacia las 18:00", "desde las 9:00 hasta el mediodía",
            "desde la 1:00", "hasta las 12:30", "hasta las 18:00 de mañana",
            "hasta la medianoche del jueves"},
        Row{"it@hours=h23", "fino a mezzanotte", "verso le 18", "dalle 9 a mezzogiorno", "dall’1",
            "fino alle 12:30", "fino alle 18 di domani", "fino a mezzanotte di giovedì"},
        Row{"pt@hours=h23", "até à meia-noite", "por volta das 18h", "das 9h ao meio-dia", "a partir da 1h",
            "até às 12h30", "até às 18h de amanhã", "até à meia-noite de quinta-feira"},
        Row{"nl@hours=h23", "tot middernacht", "rond 18 uur", "van 9 tot 12 uur", "vanaf 1 uur",
            "tot 12.30 uur", "tot morgen 18 uur", "tot donderdag middernacht"},
        Row{"pl@hours=h23", "do północy", "około 18:00", "od 9:00 do 12:00", "od 1:00", "do 12:30",
            "do 18:00 jutro", "do północy (czwartek)"},
        Row{"ja@hours=h23", "深夜0時まで", "18時頃", "9時から正午まで", "1時から", "12時30分まで",
            "明日18時まで", "木曜日深夜0時まで"},
        Row{"zh@hours=h23", "午夜", "18时前后", "9时至正午", "1时起", "12时30分", "明天18时", "星期四午夜"}));

}  // namespace
}  // namespace nimbara
