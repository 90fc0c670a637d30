#include "platform/linux/notification_text.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

struct Row {
  std::string_view text;
  std::string_view one;
  std::string_view many;
};

TEST(SendableText, IsValidAndPlain) {
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
    EXPECT_EQ(sendableText(row.text, 100, TextLines::one), row.one);
    EXPECT_EQ(sendableText(row.text, 100, TextLines::many), row.many);
  }
}

TEST(SendableText, IsCutBetweenCharacters) {
  EXPECT_EQ(sendableText("äöü", 3, TextLines::one), "äöü");
  EXPECT_EQ(sendableText("äöüx", 3, TextLines::one), "äö…");
  EXPECT_EQ(sendableText("äöü\r\x01", 3, TextLines::one), "äöü");  // what is dropped does not count
  EXPECT_EQ(sendableText("風雨", 1, TextLines::one), "…");
  std::string const huge(1'000'000, '&');
  EXPECT_EQ(sendableText(huge, 10, TextLines::many), "&&&&&&&&&…");
}

TEST(MarkupEscaped, LeavesNoMarkup) {
  EXPECT_EQ(markupEscaped("<b>1 & 2</b> &amp; \"x\" 'y' 風"),
            "&lt;b&gt;1 &amp; 2&lt;/b&gt; &amp;amp; \"x\" 'y' 風");
}

}  // namespace
}  // namespace nimbara
