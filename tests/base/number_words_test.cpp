#include "base/words/number_words.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

struct Row {
  std::string language, text, digits;
};

void PrintTo(Row const& row, std::ostream* out) {
  *out << row.language << ": " << row.text;
}

class NumberWords : public testing::TestWithParam<Row> {};

TEST_P(NumberWords, BecomeDigits) {
  EXPECT_EQ(withDigits(GetParam().text, GetParam().language), GetParam().digits);
}

INSTANTIATE_TEST_SUITE_P(
    Ten, NumberWords,
    testing::Values(
        Row{"en", "Twenty-five, twelve, minus four, minus 4, often, one", "25, 12, -4, -4, often, one"},
        Row{"de", "fünfundzwanzig, zwölf, minus drei, achtlos", "25, 12, -3, achtlos"},
        Row{"fr", "vingt et un, quatre-vingt-dix, douze, moins quatre, une", "21, 90, 12, -4, une"},
        Row{"es", "treinta y cinco, doce, menos tres, una", "35, 12, -3, una"},
        Row{"it", "ventuno, dodici, meno tre, settembre", "21, 12, -3, settembre"},
        Row{"pt", "vinte e cinco, dezasseis, dezesseis, menos três", "25, 16, 16, -3"},
        Row{"nl", "vijfentwintig, twaalf, min drie, tweeëntwintig", "25, 12, -3, 22"},
        Row{"pl", "dwadzieścia pięć, minus trzy, do osiemnastej", "25, -3, do 18"},
        Row{"ja", "二十五度、マイナス三度、氷点下3度、一時雨、十分に", "25度、-3度、-3度、一時雨、十分に"},
        Row{"zh", "二十五度，零下三度，十分凉爽，两点", "25度，-3度，十分凉爽，2点"},
        Row{"xx", "twelve 7", "12 7"}));

}  // namespace
}  // namespace nimbara
