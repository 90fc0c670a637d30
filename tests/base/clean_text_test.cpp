#include "base/text/clean_text.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

struct Row {
  std::string_view text;
  std::string_view one;
  std::string_view many;
};

TEST(CleanText, IsValidAndPlain) {
  using namespace std::string_view_literals;
  for (Row const& row : {
           Row{"", "", ""},
           Row{"Sturm über Köln – 風", "Sturm über Köln – 風", "Sturm über Köln – 風"},
           Row{"a\nb\r\nc\td", "a b c d", "a\nb\nc d"},
           Row{"a\xC2\x85"
               "b\u2028c\u2029d",
               "a b c d", "a\nb\nc\nd"},
           Row{"a\0b\x07\x1B[31m\x7F\xC2\x9B"sv, "ab[31m", "ab[31m"},
           Row{"safe\u202Eevil\u202D", "safeevil", "safeevil"},
           Row{"\u202Bopened\u2067twice\nnext", "\u202Bopened\u2067twice next\u2069\u202C",
               "\u202Bopened\u2067twice\u2069\u202C\nnext"},
           // Cut short, a stray tail, overlong, a surrogate, beyond the last, never valid.
           Row{"\xE2\x82", "\uFFFD\uFFFD", "\uFFFD\uFFFD"},
           Row{"\x80x", "\uFFFDx", "\uFFFDx"},
           Row{"\xC0\xAF", "\uFFFD\uFFFD", "\uFFFD\uFFFD"},
           Row{"\xE0\x80\xAF", "\uFFFD\uFFFD\uFFFD", "\uFFFD\uFFFD\uFFFD"},
           Row{"\xED\xA0\x80", "\uFFFD", "\uFFFD"},
           Row{"\xF4\x90\x80\x80", "\uFFFD", "\uFFFD"},
           Row{"\xFFz", "\uFFFDz", "\uFFFDz"},
           // Noncharacters end a connection; their neighbours do not.
           Row{"\uFDD0\uFDEF\uFFFE\uFFFF\U0001FFFF\U0010FFFE", "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD",
               "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
           Row{"\uFDCF\uFDF0\uD7FF\uE000\U0010FFFD", "\uFDCF\uFDF0\uD7FF\uE000\U0010FFFD",
               "\uFDCF\uFDF0\uD7FF\uE000\U0010FFFD"},
       }) {
    EXPECT_EQ(cleanText(row.text, 100, TextLines::one), row.one);
    EXPECT_EQ(cleanText(row.text, 100, TextLines::many), row.many);
  }
}

TEST(CleanText, IsCutBetweenCharacters) {
  EXPECT_EQ(cleanText("äöü", 3, TextLines::one), "äöü");
  EXPECT_EQ(cleanText("äöüx", 3, TextLines::one), "äö…");
  EXPECT_EQ(cleanText("äöü\r\x01", 3, TextLines::one), "äöü");  // what is dropped does not count
  EXPECT_EQ(cleanText("風雨", 1, TextLines::one), "…");
  std::string const huge(1'000'000, '&');
  EXPECT_EQ(cleanText(huge, 10, TextLines::many), "&&&&&&&&&…");
}

TEST(DirectionsBalanced, ClosesWhatIsOpenAndDropsWhatClosesNothing) {
  struct Balanced {
    std::string_view text;
    std::string_view out;
  };
  for (Balanced const& row : {
           Balanced{"as it was – “so”", "as it was – “so”"},
           Balanced{"\u2068a\u2069 b", "\u2068a\u2069 b"},
           Balanced{"\u202Aa\u202Cb", "\u202Aa\u202Cb"},
           Balanced{"\u2068a", "\u2068a\u2069"},
           Balanced{"a\u2069b\u202C", "ab"},
           Balanced{"\u202Aa\u202Eb\u202Cc\u202Cd",
                    "\u202Aabc\u202Cd"},  // the override's own end goes with it
           Balanced{"\u2066a\u202Bb\u2069c\u202C", "\u2066a\u202Bb\u202C\u2069c"},
           Balanced{"\u202Ba\u2066b\u202Cc\u2069", "\u202Ba\u2066bc\u2069\u202C"},
       }) {
    EXPECT_EQ(directionsBalanced(row.text), row.out) << row.text;
  }
  std::string deep;
  for (int i = 0; i < 100'000; ++i) deep += "\u202B";
  EXPECT_EQ(directionsBalanced(deep).size(), 60 * 2 * 3);
}

TEST(CleanText, ThatIsCutIsBalancedAllTheSame) {
  EXPECT_EQ(cleanText("\u2068abc", 3, TextLines::one), "\u2068a…\u2069");
}

TEST(WithoutControls, KeepsLinesAndTabs) {
  EXPECT_EQ(withoutControls("a\tb\r\nc"), "a\tb\r\nc");
  EXPECT_EQ(withoutControls("a\x1B[2Jb\x7F\xC2\x9B é"), "a[2Jb é");
  EXPECT_EQ(withoutControls("\xC2\xA0\u202Ex"), "\xC2\xA0x");
}

TEST(TerminalText, LetsColoursPassAndNothingElse) {
  struct Printed {
    std::string_view text;
    std::string_view out;
  };
  for (Printed const& row : {
           Printed{"plain\ttext\n", "plain\ttext\n"},
           Printed{"\x1B[1;31mred\x1B[0m 風 é", "\x1B[1;31mred\x1B[0m 風 é"},
           Printed{"\x1B]0;title\x07", "]0;title"},
           Printed{"\x1B[2J\x1B[31", "[2J[31"},
           Printed{"\xC2\x9B"
                   "31m\x9B"
                   "31m\r",
                   "31m31m"},
           Printed{"Stra\xDF"
                   "e",
                   "Stra\xDF"
                   "e"},
       }) {
    EXPECT_EQ(terminalText(row.text), row.out);
  }
}

TEST(MarkupEscaped, LeavesNoMarkup) {
  EXPECT_EQ(markupEscaped("<b>1 & 2</b> &amp; \"x\" 'y' 風"),
            "&lt;b&gt;1 &amp; 2&lt;/b&gt; &amp;amp; \"x\" 'y' 風");
}

}  // namespace
}  // namespace nimbara
