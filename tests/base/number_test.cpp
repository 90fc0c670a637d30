#include "base/text/number.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>

namespace nimbara {
namespace {

TEST(LenientNumbers, ReadTrimmedDecimalsAndTurnAllElseIntoZero) {
  struct Row {
    std::string_view text;
    double number;
  };
  for (Row const& row : {Row{"3", 3},
                         Row{" -4 ", -4},
                         Row{"+5", 5},
                         Row{"\t1.5\n", 1.5},
                         Row{"1e3", 1000},
                         Row{"-0.25", -0.25},
                         Row{"123456789", 123456789},
                         Row{"1234567890", 1234567890},
                         Row{"", 0},
                         Row{" ", 0},
                         Row{"--", 0},
                         Row{"+-3", 0},
                         Row{"++3", 0},
                         Row{"1,5", 0},
                         Row{"3 km", 0},
                         Row{"nan", 0},
                         Row{"inf", 0},
                         Row{"-inf", 0},
                         Row{"1e999", 0},
                         Row{"0x10", 0},
                         Row{"No moonrise", 0},
                         Row{"-", 0}}) {
    EXPECT_EQ(lenientDouble(row.text), row.number) << "'" << row.text << "'";
  }
}

TEST(LenientNumbers, TruncateIntegersTowardsZeroWithinTheirRange) {
  struct Row {
    std::string_view text;
    int number;
  };
  constexpr int kMost = std::numeric_limits<int>::max();
  constexpr int kLeast = std::numeric_limits<int>::min();
  for (Row const& row : {Row{"2.9", 2}, Row{"-2.9", -2}, Row{"2147483647", kMost}, Row{"2147483648", kMost},
                         Row{"-2147483649", kLeast}, Row{"1e300", kMost}, Row{"x", 0}}) {
    EXPECT_EQ(lenientInteger(row.text), row.number) << row.text;
  }
  EXPECT_EQ(truncatedInteger(std::nan("")), 0);
}

TEST(StrictIntegers, TakeASignAndDigitsOnly) {
  EXPECT_EQ(parseInteger("113"), 113);
  EXPECT_EQ(parseInteger("+113"), 113);
  EXPECT_EQ(parseInteger("-113"), -113);
  for (char const* const text : {"", " 113", "113 ", "113.0", "+", "+-1", "1e2", "99999999999"}) {
    EXPECT_EQ(parseInteger(text), std::nullopt) << text;
  }
}

TEST(Rounding, GoesHalfAwayFromZeroAndNeverToMinusZero) {
  struct Row {
    double value;
    std::string_view text;
  };
  for (Row const& row : {Row{0.5, "1"}, Row{-0.5, "-1"}, Row{0.49, "0"}, Row{-0.49, "0"}, Row{2.5, "3"},
                         Row{-2.5, "-3"}, Row{-0.0, "0"}, Row{1e18, "1000000000000000000"}}) {
    EXPECT_EQ(roundedText(row.value), row.text);
  }
  for (int number = -1200; number <= 1200; ++number) EXPECT_EQ(roundedText(number), std::to_string(number));
  EXPECT_EQ(fixedDecimal(-0.04, 1), "0.0");
  EXPECT_EQ(fixedDecimal(-0.06, 1), "-0.1");
  EXPECT_EQ(fixedDecimal(29.92126, 2), "29.92");
}

TEST(FixedDecimals, AgreeWithExactPrinting) {
  char exact[64];
  for (int i = -40000; i <= 40000; ++i) {
    for (double const value : {i * 0.025, i * 0.02953, i / 3.0, i * 1e5 + 0.5}) {
      for (int const decimals : {0, 1, 2, 3}) {
        std::snprintf(exact, sizeof exact, "%.*f", decimals, value);
        bool const minusZero =
            exact[0] == '-' && std::string_view(exact).find_first_not_of("-0.") == std::string_view::npos;
        ASSERT_EQ(fixedDecimal(value, decimals), minusZero ? exact + 1 : exact);
      }
    }
  }
}

TEST(PlainDecimals, AreShortestAndNeverUseAnExponent) {
  EXPECT_EQ(plainDecimal(52.52), "52.52");
  EXPECT_EQ(plainDecimal(-0.00001), "-0.00001");
  EXPECT_EQ(plainDecimal(180), "180");
  EXPECT_EQ(plainDecimal(-0.0), "0");
}

}  // namespace
}  // namespace nimbara
