#include "base/words/texts.h"

#include "base/text/display_text.h"
#include "base/text/text.h"
#include "base/units.h"
#include "base/words/compass_point.h"
#include "base/words/list_text.h"
#include "base/words/plural_form.h"

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

struct FormRow {
  char const* locale;
  char const* special;
  std::vector<std::pair<int, char const*>> numbers;
};

TEST(PluralForms, AreThoseOfTheLanguage) {
  for (FormRow const& row :
       {FormRow{"en", "one", {{0, "other"}, {1, "one"}, {2, "other"}}},
        {"fr", "one", {{0, "one"}, {1, "one"}, {2, "other"}}},
        {"pt_PT", "one", {{0, "other"}, {1, "one"}}},
        {"pt_BR", "one", {{0, "one"}}},
        {"pl", "one few", {{1, "one"}, {2, "few"}, {4, "few"}, {5, "many"}, {12, "many"}, {22, "few"}}},
        {"ar", "zero one two few other", {{0, "zero"}, {2, "two"}, {100, "other"}}},
        {"ja", "", {{1, "other"}}},
        {"zh", "", {{1, "other"}}}}) {
    EXPECT_EQ(specialForms(row.locale), row.special) << row.locale;
    for (auto const& [number, form] : row.numbers) {
      EXPECT_EQ(pluralForm(row.locale, number), form) << row.locale << " " << number;
    }
  }
}

// Keys, placeholders and what is behind the English texts: tools/texts.py, a test of its own.
TEST(Texts, SayOfEachLanguageWhatItNeeds) {
  ASSERT_EQ(Texts::languages().front().code, "en");
  for (auto const& [code, name] : Texts::languages()) {
    Texts const texts = Texts::load(code);
    EXPECT_EQ(texts.language(), code);
    EXPECT_FALSE(name.empty()) << code;
    EXPECT_TRUE(texts.locale().starts_with(code)) << code;
    EXPECT_EQ(texts.text("language.forms"), specialForms(texts.locale())) << code;
    EXPECT_NE(Texts::languageList().find(code), std::string::npos);
  }
}

TEST(Texts, CountInTheFormsOfTheLanguage) {
  Texts const english = Texts::load("en");
  EXPECT_EQ(english.format("report.daysAgo", 1), "1 day ago");
  EXPECT_EQ(english.format("report.daysAgo", std::size_t{21}), "21 days ago");
  // The number stands behind another argument, and is left out of its form.
  EXPECT_EQ(english.format("govAlert.affectingAreas", "Heat", 1U), "Heat affecting one area");
  EXPECT_EQ(english.format("govAlert.affectingAreas", "Heat", 2U), "Heat affecting 2 areas");
  EXPECT_EQ(Texts::load("zh").format("report.daysAgo", 1), "1天前");
}

TEST(Texts, SayOneOClockInTheSingular) {
  struct Row {
    char const* language;
    char const* key;
    char const* hour;
    char const* text;
  };
  for (Row const& row :
       {Row{"es", "warning.until", "1:00 AM", "hasta la 1:00 AM"},
        {"es", "warning.until", "01:00", "hasta la 01:00"},
        {"es", "report.at", "01:30", "a la 01:30"},
        {"es", "warning.until", "2:00", "hasta las 2:00"},
        {"es", "warning.until", "10:00", "hasta las 10:00"},
        {"es", "warning.until", "11 PM", "hasta las 11 PM"},
        {"pt", "warning.until", "01:00", "até à 01:00"},
        {"pt", "warning.from", "01:00", "a partir da 01:00"},
        {"pt", "report.at", "1 AM", "à 1 AM"},
        {"pt", "warning.until", "21:00", "até às 21:00"},
        {"pt", "warning.uncheckedSince", "01:59", "Avisos oficiais por verificar desde a 01:59"},
        {"it", "report.at", "01:00", "alle 01:00"},
        {"de", "report.at", "1:00", "um 1:00"}})
    EXPECT_EQ(Texts::load(row.language).format(row.key, row.hour), row.text);
  EXPECT_EQ(Texts::load("es").format("push.rainStart.bodyWindow", "1:00", "2:00", 1),
            "Se espera lluvia desde cerca de la 1:00 hasta cerca de las 2:00 (~1 h).");
  EXPECT_EQ(Texts::load("es").format("brief.gusts", "1,5 km", "hacia las 13:00"),
            "rachas de hasta 1,5 km hacia las 13:00");
}

TEST(Texts, JoinListsWithTheirOwnComma) {
  for (auto const& [language, list] :
       {std::pair("en", "a, b, c"), {"ja", "a、b、c"}, {"zh", "a、b、c"}, {"pl", "a, b, c"}}) {
    std::string joined;
    for (char const* const item : {"a", "", "b", "c"}) appendItem(joined, item, Texts::load(language));
    EXPECT_EQ(joined, list);
    std::string sentence = "a";
    appendClause(sentence, "b", Texts::load(language));
    EXPECT_EQ(sentence, language == std::string("zh") ? "a，b" : joined.substr(0, joined.find('b') + 1));
  }
}

TEST(Texts, NameThePointsOfTheCompass) {
  EXPECT_EQ(compassPoint("NNW", Texts::load("pt")), "NNO");
  EXPECT_EQ(compassPoint("NNW", Texts::load("en")), "NNW");
  EXPECT_EQ(compassPoint("Variable", Texts::load("zh")), "Variable");
  EXPECT_EQ(compassPoint("", Texts::load("zh")), "");
}

TEST(Texts, FallBackToEnglishAndThenToTheKey) {
  EXPECT_EQ(Texts::load("zh-Hans").language(), "zh");
  EXPECT_EQ(Texts::load("zh_TW.UTF-8").language(), "zh");
  EXPECT_EQ(Texts::load("pt_BR").locale(), "pt_PT");
  EXPECT_EQ(Texts::load("zh").text("no.such.key"), "no.such.key");
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
  EXPECT_EQ(wrapped("abcdef g", 4), (std::vector<std::string>{"abcd", "ef g"}));
  // No line begins with a full stop or ends with an opening bracket.
  EXPECT_EQ(wrapped("高台へ避難を。（急いで）", 6),
            (std::vector<std::string>{"高台へ", "避難", "を。", "（急い", "で）"}));
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
