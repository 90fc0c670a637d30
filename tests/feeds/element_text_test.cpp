#include "feeds/space/element_text.h"

#include "feeds/fetching/feed_key.h"
#include "support/answers/bad_bytes.h"
#include "support/answers/element_table.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::elementObject;
using test::elementRow;
using test::kElementHeading;
using testing::HasSubstr;

TEST(FeedKeys, AreWhatIsServedAndNothingElse) {
  EXPECT_EQ(feedKeyOf({{"f", "quakes"}})->name(), "quakes");
  EXPECT_EQ(feedKeyOf({{"p", "weather"}, {"f", "satellites"}})->name(), "satellites-weather");
  for (QueryParameters const& query :
       {QueryParameters{}, QueryParameters{{"f", ""}}, QueryParameters{{"f", "Quakes"}},
        QueryParameters{{"f", "quakes"}, {"x", "1"}}, QueryParameters{{"f", "quakes"}, {"f", "quakes"}},
        QueryParameters{{"f", "quakes"}, {"p", "weather"}}, QueryParameters{{"f", "satellites"}},
        QueryParameters{{"f", "satellites"}, {"p", "../etc"}},
        QueryParameters{{"f", "satellites"}, {"p", "noaa"}}})
    EXPECT_FALSE(feedKeyOf(query));
}

TEST(ElementText, IsWrittenInTheColumnsOfTwoLineElements) {
  auto const text = elementText(kElementHeading + elementRow("25544"));
  ASSERT_TRUE(text) << text.error();
  EXPECT_EQ(text->text,
            "TEST SAT\n"
            "1 25544U 26001A   26324.50000000  .00001234  00000+0  12000-3 0  9996\n"
            "2 25544  51.6401 247.4627 0001234 130.5360 325.0288 15.50000000123453\n");
}

TEST(ElementText, HasRightChecksumsInEveryLine) {
  auto const text = elementText(kElementHeading + elementRow("25544") +
                                elementRow("100000", "-.5E-4,-.00000218,-.1234E-6"));
  ASSERT_TRUE(text && text->count == 2);
  for (std::size_t at = 0; at < text->text.size();) {
    auto const end = text->text.find('\n', at);
    std::string const line = text->text.substr(at, end - at);
    at = end + 1;
    if (line.starts_with("TEST")) continue;
    ASSERT_EQ(line.size(), 69) << line;
    int sum = 0;
    for (char const c : line.substr(0, 68)) sum += c == '-' ? 1 : std::isdigit(c) != 0 ? c - '0' : 0;
    EXPECT_EQ(line[68] - '0', sum % 10) << line;
  }
  EXPECT_THAT(text->text, HasSubstr("-.00000218 -12340-6 -50000-4"));
}

TEST(ElementText, NumbersBeyondFiveDigitsByAlphaFive) {
  struct Row {
    std::string number;
    std::string_view text;
  };
  for (Row const& one : {Row{"5", "00005"}, Row{"99999", "99999"}, Row{"100000", "A0000"},
                         Row{"148493", "E8493"}, Row{"182931", "J2931"}, Row{"234018", "P4018"},
                         Row{"339999", "Z9999"}, Row{"340000", ""}, Row{"-1", ""}, Row{"x", ""}}) {
    auto const text = elementText(kElementHeading + elementRow(one.number));
    ASSERT_TRUE(text);
    EXPECT_EQ(text->count, one.text.empty() ? 0 : 1) << one.number;
    EXPECT_EQ(text->leftOut, one.text.empty() ? 1 : 0) << one.number;
    if (one.text.empty()) continue;
    EXPECT_THAT(text->text, HasSubstr("\n1 " + std::string(one.text) + "U"));
  }
}

TEST(ElementText, RefusesWhatIsNoTableAndLivesWithTheRest) {
  for (char const* const body :
       {"", "Invalid query: \"GROUP=x\"", "<html>", "OBJECT_NAME,EPOCH\n", "No GP data found"})
    EXPECT_FALSE(elementText(body)) << body;
  EXPECT_EQ(elementText(kElementHeading)->text, "") << "a cloud of debris that is gone";
  auto const text = elementText(std::string(kElementHeading) + "\n\nshort,row\n" + elementRow("7", "1,2,x") +
                                elementRow("7", "0,1.5,0") + elementRow("8"));
  EXPECT_EQ(text->count, 1);
  EXPECT_EQ(text->leftOut, 3);
  for (std::string const& body : test::damagedForms(kElementHeading + elementRow("25544"), 5))
    elementText(body);
}

TEST(ElementText, IsTheSameFromEachForm) {
  std::string const fromTable = elementText(kElementHeading + elementRow("148493"))->text;
  EXPECT_EQ(elementText("[" + elementObject("148493") + "]")->text, fromTable);
  EXPECT_EQ(elementText("[" + elementObject("\"148493\"") + "]")->text, fromTable);
  EXPECT_EQ(elementText(fromTable)->text, fromTable);
}

TEST(ElementText, IsWholeForThousandsOfFiveAndSixDigits) {
  constexpr int kFirst = 90'000, kCount = 19'000;
  std::string table = kElementHeading, list = "[";
  for (int i = 0; i < kCount; ++i) {
    std::string const number = std::to_string(kFirst + i);
    table += elementRow(number);
    list += (i > 0 ? "," : "") + elementObject(number);
  }
  auto const fromTable = elementText(table);
  auto const fromList = elementText(list + "]");
  ASSERT_TRUE(fromTable && fromList);
  EXPECT_EQ(fromTable->count, kCount);
  EXPECT_EQ(fromTable->leftOut, 0);
  EXPECT_EQ(fromList->text, fromTable->text);
  EXPECT_EQ(elementText(fromTable->text)->count, kCount);
}

TEST(ElementText, TakesElementSetsAsTheyAreFound) {
  std::string const line1 = "1 25544U 26001A   26324.50000000  .00001234  00000+0  12000-3 0  9996";
  std::string const line2 = "2 25544 151.6401 247.4627 0001234 130.5360 325.0288 15.50000000123453";
  struct Row {
    std::string sets, text;
    std::size_t leftOut;
  };
  std::string const pair = line1 + "\n" + line2 + "\n";
  for (Row const& row :
       {Row{line1 + "\r\n" + line2, pair, 0}, Row{"0 SAT   \n\n" + pair, "0 SAT\n" + pair, 0},
        Row{"A\n" + line1 + "\nB\n" + pair, "B\n" + pair, 1},
        Row{line2 + "\n" + pair, line2 + "\n" + pair, 1},
        Row{"A\n" + line1 + "\n2 25545" + line2.substr(7) + "\nB\n" + pair, "B\n" + pair, 2}}) {
    auto const text = elementText(row.sets);
    ASSERT_TRUE(text) << row.sets;
    EXPECT_EQ(text->text, row.text);
    EXPECT_EQ(text->leftOut, row.leftOut) << row.sets;
  }
  EXPECT_FALSE(elementText("A\n" + line1));
  EXPECT_FALSE(elementText("[7]"));
  EXPECT_EQ(elementText("[]")->count, 0);
  EXPECT_EQ(elementText("[{}]")->leftOut, 1);
}

}  // namespace
}  // namespace nimbara
