#include "base/words/texts.h"

#include "base/text/display_text.h"
#include "base/text/text.h"
#include "base/units.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

std::string format(std::string_view pattern, std::vector<MessageArgument> const& arguments,
                   std::string_view point = ".") {
  return formatMessage(pattern, arguments, point);
}

TEST(MessageFormat, FillsEveryPlaceholder) {
  EXPECT_EQ(format("%@ at %d: %.1f of %.0f %%", {"Rain", 15, 2.25, 3.5}), "Rain at 15: 2.2 of 4 %");
  EXPECT_EQ(format("%2$@ de %1$@", {"segunda-feira", "15 h"}), "15 h de segunda-feira");
  EXPECT_EQ(format("%1$@, %1$@ and %2$d", {"x", 2}), "x, x and 2");
  EXPECT_EQ(format("%.1f", {-0.01}), "0.0");
  EXPECT_EQ(format("%.1f", {3.14}, ","), "3,1");
  EXPECT_EQ(format("%d", {-2.9}), "-2");
  EXPECT_EQ(format("%.0f", {7}), "7");
  EXPECT_EQ(format("%@", {1.5}, ","), "1,5");
  EXPECT_EQ(format("%d", {"text"}), "text");
}

TEST(MessageFormat, KeepsWhatItCannotFill) {
  EXPECT_EQ(format("%@ and %@", {"one"}), "one and %@");
  EXPECT_EQ(format("%3$@", {"one"}), "%3$@");
  for (char const* const pattern :
       {"100 %", "%", "%s", "%0$@", "%.f", "%.99f", "%1$", "%1$%", "%.1d", "%999$@"}) {
    EXPECT_EQ(format(pattern, {"one"}), pattern);
  }
  EXPECT_EQ(format("%n%x", {"one"}), "%n%x");
}

TEST(Texts, EveryTranslationHasThePlaceholdersOfEnglish) {
  Texts const english = Texts::load("en");
  EXPECT_GT(english.table().size(), 50U);
  for (std::string_view const language : Texts::languages()) {
    Texts const texts = Texts::load(language);
    EXPECT_FALSE(texts.table().empty()) << language;
    for (auto const& [key, text] : texts.table()) {
      ASSERT_TRUE(english.translates(key)) << language << " has a text that English lacks: " << key;
      EXPECT_EQ(placeholders(text), placeholders(english.text(key))) << language << " " << key;
    }
  }
}

TEST(Texts, FallBackToEnglishAndThenToTheKey) {
  Texts const chinese = Texts::load("zh-Hans");
  EXPECT_EQ(chinese.language(), "zh");
  EXPECT_FALSE(chinese.translates("report.noCurrent"));
  EXPECT_EQ(chinese.text("report.noCurrent"), "Current conditions are unavailable.");
  EXPECT_EQ(chinese.text("no.such.key"), "no.such.key");
  EXPECT_EQ(Texts::load("xx").language(), "en");
  EXPECT_EQ(Texts::load("C.UTF-8").language(), "en");
  EXPECT_FALSE(Texts::has("xx"));
}

TEST(Texts, WriteNumbersAsTheLanguageDoes) {
  EXPECT_EQ(Texts::load("pt").decimalPoint(), ",");
  EXPECT_EQ(Texts::load("en").decimalPoint(), ".");
}

TEST(Units, ConvertAndRoundByOneRule) {
  EXPECT_EQ(display(-0.4, TemperatureUnit::celsius), "0");
  EXPECT_EQ(display(-0.5, TemperatureUnit::celsius), "-1");
  EXPECT_EQ(display(-17.8, TemperatureUnit::fahrenheit), "0");
  EXPECT_EQ(display(21.5, TemperatureUnit::celsius), "22");
  EXPECT_EQ(display(100, WindUnit::mph), "62");
  EXPECT_EQ(display(36, WindUnit::ms), "10");
  EXPECT_EQ(display(18.52, WindUnit::knots), "10");
  EXPECT_EQ(display(1013.25, PressureUnit::inHg), "29.92");
  EXPECT_EQ(display(1013.25, PressureUnit::mmHg), "760");
  EXPECT_EQ(display(25.4, PrecipitationUnit::inch), "1.00");
  EXPECT_EQ(display(0.25, PrecipitationUnit::mm), "0.3");
  EXPECT_EQ(display(10, DistanceUnit::miles), "6");
  EXPECT_DOUBLE_EQ(celsiusFromFahrenheit(fahrenheitFromCelsius(-40)), -40);
}

TEST(DisplayText, CountsCellsAndFitsColumns) {
  EXPECT_EQ(displayWidth("abc"), 3);
  EXPECT_EQ(displayWidth("Tromsø"), 6);
  EXPECT_EQ(displayWidth("东京"), 4);
  EXPECT_EQ(displayWidth("e\u0301"), 1);
  EXPECT_EQ(fitted("ab", 4, Align::right), "  ab");
  EXPECT_EQ(fitted("ab", 5, Align::centre), " ab  ");
  EXPECT_EQ(fitted("abcdef", 4), "abc…");
  EXPECT_EQ(fitted("东京都", 4), "东… ");
  EXPECT_EQ(fitted("x", 0), "");
  EXPECT_EQ(displayWidth("\xff\xfe"), 2);  // broken bytes take a cell each and harm nothing
}

TEST(DisplayText, WrapsAtBlanks) {
  EXPECT_EQ(wrapped("a bc def", 4), (std::vector<std::string>{"a bc", "def"}));
  EXPECT_EQ(wrapped("abcdef g", 4), (std::vector<std::string>{"abc…", "g"}));
  EXPECT_EQ(wrapped("", 4), (std::vector<std::string>{""}));
}

TEST(DisplayText, FoldsToAscii) {
  EXPECT_EQ(asciiFolded("Łódź, Tromsø, Straße – 5 °C…"), "Lodz, Tromso, Strasse - 5 C...");
  EXPECT_EQ(asciiFolded("東京"), "??");
}

TEST(Text, MakesOneLineOfAnything) {
  EXPECT_EQ(oneLine("  a\r\n\tb\x01 c  "), "a b c");
  EXPECT_EQ(oneLine("a\xC2\x9B"
                    "b\x7F\u2028c\u202E\xFF"),
            "a b c\uFFFD");
  EXPECT_EQ(oneLine("aééé", 3), "aé…");
  EXPECT_EQ(oneLine("abc", 3), "abc");
  EXPECT_EQ(oneLine(""), "");
}

}  // namespace
}  // namespace nimbara
