#include "app/words/confidence_text.h"

#include "support/instants.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using enum ConfidenceLevel;

std::vector<DayConfidence> someDays() {
  Date const saturday = std::chrono::year{2026} / 11 / 21;
  auto const day = [&](int ahead, ConfidenceLevel level) {
    return DayConfidence{Date(std::chrono::sys_days(saturday) + std::chrono::days(ahead)), ahead, level};
  };
  std::vector<DayConfidence> days{day(0, high), day(1, high), day(2, low), day(4, medium)};
  days[2].highestC = -6.2;
  days[2].precipMM = 12;
  days[3].isForTime = true;
  return days;
}

ConfidenceText textOf(std::string_view language, std::vector<DayConfidence> const& days) {
  Texts const texts = Texts::load(language);
  return confidenceText(days, WeatherProviderOption::yrNo,
                        {texts, Units::metric(), Calendar::utc(), test::at("2026-11-21T09:00:00Z")});
}

TEST(ConfidenceText, GivesTheFigures) {
  ConfidenceText const text = textOf("en", someDays());
  EXPECT_THAT(text.days, ElementsAre("Today: high", "Sunday: high",
                                     "Monday: low (highs 6° apart, precipitation 12.0 mm apart)",
                                     "Wednesday: medium (many days ahead)"));
  EXPECT_EQ(text.line,
            "Confidence in the forecast – Today to Sunday: high  ·  Monday: low  ·  Wednesday: medium");
  EXPECT_EQ(text.note, "Compared with the forecast from MET Norway.");
}

TEST(ConfidenceText, SaysWhereNothingIsKnown) {
  for (Texts::Language const& language : Texts::languages()) {
    ConfidenceText const none = textOf(language.code, {});
    EXPECT_TRUE(none.days.empty() && none.note.empty()) << language.code;
    EXPECT_THAT(none.line + textOf(language.code, someDays()).line, Not(HasSubstr("confidence.")))
        << language.code;
  }
}

}  // namespace
}  // namespace nimbara
