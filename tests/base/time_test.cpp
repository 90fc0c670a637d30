#include "base/time/calendar.h"
#include "base/time/hour_clock.h"
#include "base/time/instant.h"
#include "base/words/moment_text.h"
#include "base/words/time_words.h"
#include "support/instants.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;
using test::date;
using test::zone;

TEST(Iso8601, ReadsEveryZoneFormAndWritesUtc) {
  struct Row {
    char const* text;
    char const* utc;
  };
  for (Row const& row : {Row{"2026-11-21T06:00:00Z", "2026-11-21T06:00:00Z"},
                         Row{"2026-11-21T07:00:00+01:00", "2026-11-21T06:00:00Z"},
                         Row{"2026-11-21 07:00:00+0100", "2026-11-21T06:00:00Z"},
                         Row{"2026-11-21T01:30-04:30", "2026-11-21T06:00:00Z"},
                         Row{"2026-11-21T06:00:00.25Z", "2026-11-21T06:00:00.250Z"},
                         Row{"2026-11-21T06:00:00.123456789Z", "2026-11-21T06:00:00.123Z"},
                         Row{"1969-12-31T23:59:59.999Z", "1969-12-31T23:59:59.999Z"},
                         Row{"2024-02-29T00:00:00Z", "2024-02-29T00:00:00Z"}}) {
    auto const instant = parseIso8601(row.text);
    ASSERT_TRUE(instant) << row.text;
    EXPECT_EQ(formatIso8601(*instant), row.utc);
  }
}

TEST(Iso8601, RefusesWhatIsNoMoment) {
  for (char const* const text :
       {"", "2026-11-21", "2026-11-21T06:00:00", "2026-02-29T00:00:00Z", "2026-13-01T00:00:00Z",
        "2026-11-21T24:00:00Z", "2026-11-21T06:60:00Z", "2026-11-21T06:00:00Zx", "2026-11-21T06:00:00.Z",
        "2026-11-21T06:00:00+1", "2026-11-21T06:00:00+25:00", "date:now -252 seconds", "20261121T060000Z"}) {
    EXPECT_EQ(parseIso8601(text), std::nullopt) << text;
  }
}

TEST(Clock12, WritesAndReadsTheRecordsForm) {
  auto const local = [](std::chrono::minutes time) { return LocalTime(time); };
  EXPECT_EQ(formatClock12(local(0min)), "12:00 AM");
  EXPECT_EQ(formatClock12(local(453min)), "07:33 AM");
  EXPECT_EQ(formatClock12(local(720min)), "12:00 PM");
  EXPECT_EQ(formatClock12(local(1439min)), "11:59 PM");
  for (int minute = 0; minute < 1440; ++minute) {
    EXPECT_EQ(parseClock12(formatClock12(local(std::chrono::minutes(minute)))), minute);
  }
  EXPECT_EQ(parseClock12("7:33 pm"), 19 * 60 + 33);
  for (char const* const text :
       {"", "No moonrise", "13:00 PM", "00:10 AM", "07:60 AM", "07:33", "123:00 AM", ":33 AM"}) {
    EXPECT_EQ(parseClock12(text), std::nullopt) << text;
  }
}

struct DayRow {
  char const* zone;
  char const* date;
  char const* start;
  int hours;
};

void PrintTo(DayRow const& row, std::ostream* out) {
  *out << row.zone << " on " << row.date;
}

class DayLengths : public testing::TestWithParam<DayRow> {};

TEST_P(DayLengths, FollowTheZonesClockChanges) {
  Calendar const calendar = zone(GetParam().zone);
  Date const day = date(GetParam().date);
  EXPECT_EQ(formatIso8601(calendar.startOfDay(day)), GetParam().start);
  EXPECT_EQ(calendar.lengthOfDay(day), std::chrono::hours(GetParam().hours));
  EXPECT_EQ(calendar.day(calendar.startOfDay(day)), day);
  EXPECT_EQ(calendar.day(calendar.startOfDay(day) - 1ms), addDays(day, -1));
}

INSTANTIATE_TEST_SUITE_P(Rows, DayLengths,
                         testing::Values(DayRow{"Europe/Berlin", "2026-03-28", "2026-03-27T23:00:00Z", 24},
                                         DayRow{"Europe/Berlin", "2026-03-29", "2026-03-28T23:00:00Z", 23},
                                         DayRow{"Europe/Berlin", "2026-10-25", "2026-10-24T22:00:00Z", 25},
                                         DayRow{"America/New_York", "2026-11-01", "2026-11-01T04:00:00Z", 25},
                                         DayRow{"Asia/Kathmandu", "2026-01-01", "2025-12-31T18:15:00Z", 24},
                                         // The change takes midnight away: the day begins at one o'clock.
                                         DayRow{"America/Asuncion", "2023-10-01", "2023-10-01T04:00:00Z", 23},
                                         DayRow{"GMT+05:30", "2026-01-01", "2025-12-31T18:30:00Z", 24},
                                         DayRow{"UTC", "2026-03-29", "2026-03-29T00:00:00Z", 24}));

TEST(Calendar, TellsTheTwoOccurrencesOfARepeatedHourApart) {
  Calendar const berlin = zone("Europe/Berlin");
  LocalTime const two = *parseLocalTime("2026-10-25T02:00");
  EXPECT_EQ(berlin.instant(two), at("2026-10-25T00:00:00Z"));
  EXPECT_EQ(berlin.instant(two, Calendar::Occurrence::second), at("2026-10-25T01:00:00Z"));
  EXPECT_EQ(berlin.hour(at("2026-10-25T00:00:00Z")), 2);
  EXPECT_EQ(berlin.hour(at("2026-10-25T01:00:00Z")), 2);
  EXPECT_EQ(berlin.hour(at("2026-10-25T02:00:00Z")), 3);
}

TEST(Calendar, MovesASkippedReadingForward) {
  EXPECT_EQ(zone("Europe/Berlin").instant(*parseLocalTime("2026-03-29T02:30")), at("2026-03-29T01:30:00Z"));
}

TEST(Calendar, KnowsZonesByNameAndByOffsetAndNoOthers) {
  EXPECT_EQ(zone("Etc/GMT-3").offset(at("2026-01-01T00:00:00Z")), 3h);
  EXPECT_EQ(zone("GMT-03:30").offset(at("2026-01-01T00:00:00Z")), -3h - 30min);
  EXPECT_EQ(Calendar::fixedOffset(20700s).zoneId(), "GMT+05:45");
  for (char const* const id :
       {"", "Mars/Olympus", "GMT+99:00", "GMT+05:61", "Etc/Unknown", "../etc/passwd"}) {
    EXPECT_FALSE(Calendar::forZone(id)) << id;
  }
}

TEST(TimeWords, LabelHoursByTheirDistanceInDays) {
  Texts const english = Texts::load("en");
  TimeWords const words(english, zone("Europe/Berlin"));
  Instant const now = at("2026-11-21T20:30:00Z");  // 21:30 on a Saturday
  EXPECT_EQ(words.hourLabel(at("2026-11-21T22:00:00Z"), now), "11 PM");
  EXPECT_EQ(words.hourLabel(at("2026-11-21T23:00:00Z"), now), "12 AM tomorrow");
  EXPECT_EQ(words.hourLabel(at("2026-11-23T14:00:00Z"), now), "Monday 3 PM");
  EXPECT_EQ(words.aroundSuffix(at("2026-11-21T22:00:00Z"), now), " around 11 PM");
  EXPECT_EQ(words.weekday(now), "Saturday");
  EXPECT_EQ(words.format(now, "EEE d.M.yyyy 'at' HH:mm, h a"), "Sat 21.11.2026 at 21:30, 9 PM");
}

TEST(TimeWords, TellHowOldSomethingIs) {
  Texts const english = Texts::load("en");
  Instant const now = at("2026-11-21T20:30:00Z");
  for (auto const& [age, text] : {std::pair<std::chrono::seconds, char const*>{0s, "just now"},
                                  {59s, "just now"},
                                  {60s, "1 min ago"},
                                  {2h - 1s, "119 min ago"},
                                  {2h, "2 h ago"},
                                  {48h - 1s, "47 h ago"},
                                  {48h, "2 days ago"},
                                  {-120s, "just now"},
                                  {-121s, "dated in the future"},
                                  {-24h * 154, "dated in the future"}}) {
    EXPECT_EQ(ageText(now - age, now, english), text) << age.count();
  }
}

TEST(MomentText, HasThePrepositionsOfTheLanguage) {
  Instant const now = at("2026-11-21T10:00:00Z");
  struct Row {
    char const* locale;
    char const *key, *today, *tomorrow;
  };
  for (Row const& row :
       {Row{"en", "warning.until", "until 4:05 PM", "until Sunday 4:05 PM"},
        Row{"es@hours=h23", "warning.until", "hasta las 16:05", "hasta el domingo a las 16:05"},
        Row{"pt@hours=h23", "warning.from", "a partir das 16:05", "a partir de domingo às 16:05"},
        Row{"fr@hours=h23", "warning.issued", "émise à 16:05", "émise dimanche à 16:05"},
        Row{"de@hours=h23", "warning.issued", "herausgegeben um 16:05", "herausgegeben Sonntag um 16:05"}}) {
    Texts const texts = Texts::load(row.locale);
    TimeWords const words(texts, zone("UTC"));
    EXPECT_EQ(momentText(row.key, at("2026-11-21T16:05:00Z"), now, words, texts), row.today);
    EXPECT_EQ(momentText(row.key, at("2026-11-22T16:05:00Z"), now, words, texts), row.tomorrow);
  }
}

TEST(TimeWords, HaveOneClockForAllForms) {
  struct Row {
    char const* locale;
    char const *hour, *column, *clock, *seconds, *tomorrow, *around, *moment, *pattern;
  };
  Instant const now = at("2026-11-21T10:00:00Z");
  for (Row const& row : {Row{"en", "4 PM", "4 PM", "4:05 PM", "4:05:09 PM", "12 AM tomorrow", " around 4 PM",
                             "Sunday 12:00 AM", "Sat, 4:05 PM"},
                         Row{"en@hours=h12", "4 PM", "4 PM", "4:05 PM", "4:05:09 PM", "12 AM tomorrow",
                             " around 4 PM", "Sunday 12:00 AM", "Sat, 4:05 PM"},
                         Row{"en_GB@hours=h23", "16:00", "16", "16:05", "16:05:09", "00:00 tomorrow",
                             " around 16:00", "Sunday 00:00", "Sat, 16:05"},
                         Row{"pt_BR@hours=h23", "16:00", "16", "16:05", "16:05:09", "00:00 de amanhã",
                             " por volta de 16:00", "domingo 00:00", "sáb., 16:05"},
                         Row{"zh@hours=h12", "下午4时", "下午4时", "下午4:05", "下午4:05:09", "明天上午12时",
                             "（下午4时左右）", "星期日 上午12:00", "周六, 下午4:05"}}) {
    Texts const texts = Texts::load(row.locale);
    TimeWords const words(texts, zone("UTC"));
    Instant const hour = at("2026-11-21T16:00:00Z");
    Instant const reading = at("2026-11-21T16:05:09Z");
    Instant const midnight = at("2026-11-22T00:00:00Z");
    EXPECT_EQ(words.hour(hour), row.hour);
    EXPECT_EQ(words.hourColumn(hour), row.column);
    EXPECT_EQ(words.clock(reading), row.clock);
    EXPECT_EQ(words.clock(LocalTime(16h + 5min)), row.clock);
    EXPECT_EQ(words.clockWithSeconds(reading), row.seconds);
    EXPECT_EQ(words.hourLabel(midnight, now), row.tomorrow);
    EXPECT_EQ(words.aroundSuffix(hour, now), row.around);
    EXPECT_EQ(words.moment(reading, now), row.clock);
    EXPECT_EQ(words.moment(midnight, now), row.moment);
    EXPECT_EQ(words.format(reading, "EEE, jmm"), row.pattern);
  }
}

TEST(HourClock, FollowsTheLocaleAndTravelsInItsName) {
  for (char const* const locale : {"", "C", "C.UTF-8", "POSIX", "en_US", "en_US.UTF-8", "en-US"}) {
    EXPECT_EQ(hourClockOf(locale), HourClock::twelve) << locale;
  }
  for (char const* const locale :
       {"en", "en_GB.UTF-8", "en_AU", "fr_CA", "pt_BR.UTF-8", "de_DE@euro", "ja_JP"}) {
    EXPECT_EQ(hourClockOf(locale), HourClock::twentyFour) << locale;
  }
  EXPECT_EQ(withHourClock("de_DE@euro", HourClock::twentyFour), "de_DE@hours=h23");
  EXPECT_EQ(hourClockIn(withHourClock("C", HourClock::twentyFour)), HourClock::twentyFour);
  EXPECT_EQ(hourClockIn(withHourClock("pt@hours=h23", HourClock::twelve)), HourClock::twelve);
}

TEST(TimeWords, FollowTheLanguage) {
  Texts const portuguese = Texts::load("pt_BR.UTF-8");
  TimeWords const words(portuguese, zone("UTC"));
  Instant const now = at("2026-11-21T10:00:00Z");
  EXPECT_EQ(words.aroundSuffix(at("2026-11-21T15:00:00Z"), now), " por volta de 3 PM");
  // Its table puts the weekday last.
  EXPECT_EQ(words.hourLabel(at("2026-11-23T15:00:00Z"), now), "3 PM de segunda-feira");
}

}  // namespace
}  // namespace nimbara
