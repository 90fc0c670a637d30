#include "base/words/number_words.h"

#include <unicode/rbnf.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/uscript.h>

#include <algorithm>
#include <map>
#include <vector>

namespace nimbara {

namespace {

using icu::UnicodeString;

constexpr int kLeast = -60;
constexpr int kMost = 120;
constexpr char16_t kSoftHyphen = 0xAD;

/// What ICU does not have: the Polish names of hours, which are ordinals in one case, and what stands before
/// degrees of frost.
struct OwnSpelling {
  std::string_view language, words, digits;
};
constexpr OwnSpelling kOwn[] = {
    {"pl", "trzeciej", "3"},        {"pl", "czwartej", "4"},
    {"pl", "piątej", "5"},          {"pl", "szóstej", "6"},
    {"pl", "siódmej", "7"},         {"pl", "ósmej", "8"},
    {"pl", "dziewiątej", "9"},      {"pl", "dziesiątej", "10"},
    {"pl", "jedenastej", "11"},     {"pl", "dwunastej", "12"},
    {"pl", "trzynastej", "13"},     {"pl", "czternastej", "14"},
    {"pl", "piętnastej", "15"},     {"pl", "szesnastej", "16"},
    {"pl", "siedemnastej", "17"},   {"pl", "osiemnastej", "18"},
    {"pl", "dziewiętnastej", "19"}, {"pl", "dwudziestej", "20"},
    {"ja", "氷点下", "-"},          {"zh", "零下", "-"},
};

bool isIdeographic(UChar32 character) {
  return u_hasBinaryProperty(character, UCHAR_IDEOGRAPHIC) ||
         u_getIntPropertyValue(character, UCHAR_SCRIPT) == USCRIPT_KATAKANA;
}

bool isOfWord(UChar32 character) {
  return u_isalpha(character) && !isIdeographic(character);
}

/// In lower case, words parted by blanks and joined by nothing else.
UnicodeString normalized(UnicodeString text) {
  text.toLower(icu::Locale::getRoot());
  text.findAndReplace(UnicodeString(kSoftHyphen), UnicodeString());
  for (int i = 1; i + 1 < text.length(); ++i) {
    bool const isJoint = text[i] == u'-' && u_isalpha(text[i - 1]) && u_isalpha(text[i + 1]);
    if (isJoint) text.setCharAt(i, u' ');
  }
  return text;
}

/// The spellings of a language, the longest first.
class Spellings {
 public:
  explicit Spellings(std::string_view language) {
    read(std::string(language));
    // ICU's Portuguese is that of Brazil.
    if (language == "pt") read("pt_PT");
    for (OwnSpelling const& own : kOwn) {
      if (own.language != language) continue;
      rows_.push_back({UnicodeString::fromUTF8({own.words.data(), static_cast<int>(own.words.size())}),
                       std::string(own.digits)});
    }
    std::ranges::stable_sort(
        rows_, [](Row const& one, Row const& other) { return one.words.length() > other.words.length(); });
  }

  struct Row {
    UnicodeString words;
    std::string digits;
  };
  std::vector<Row> const& rows() const { return rows_; }

 private:
  void read(std::string const& locale) {
    UErrorCode status = U_ZERO_ERROR;
    icu::RuleBasedNumberFormat format(icu::URBNF_SPELLOUT, icu::Locale(locale.c_str()), status);
    if (U_FAILURE(status)) return;
    for (int i = 0; i < format.getNumberOfRuleSetNames(); ++i) {
      UnicodeString const name = format.getRuleSetName(i);
      if (name.startsWith(u"%spellout-cardinal") || name == u"%spellout-numbering") add(format, name);
    }
  }

  void add(icu::RuleBasedNumberFormat& format, UnicodeString const& rules) {
    for (int number = kLeast; number <= kMost; ++number) {
      if (number == 1) continue;
      UErrorCode status = U_ZERO_ERROR;
      UnicodeString words;
      icu::FieldPosition nowhere;
      format.format(number, rules, words, nowhere, status);
      if (U_SUCCESS(status) && !words.isEmpty()) rows_.push_back({normalized(words), std::to_string(number)});
    }
    addMinus(format, rules);
  }

  /// The word that makes a number negative, before digits.
  void addMinus(icu::RuleBasedNumberFormat& format, UnicodeString const& rules) {
    UErrorCode status = U_ZERO_ERROR;
    UnicodeString two;
    UnicodeString minusTwo;
    icu::FieldPosition nowhere;
    format.format(2, rules, two, nowhere, status);
    format.format(-2, rules, minusTwo, nowhere, status);
    if (U_FAILURE(status) || !minusTwo.endsWith(two)) return;
    UnicodeString minus(minusTwo, 0, minusTwo.length() - two.length());
    minus = normalized(minus).trim();
    if (!minus.isEmpty()) rows_.push_back({minus, "-"});
  }

  std::vector<Row> rows_;
};

/// Whether words end before `at` and begin behind it: "ten" in "often" is no number.
bool isWhole(UnicodeString const& text, int begin, int end) {
  bool const opens = begin == 0 || !isOfWord(text.char32At(begin)) || !isOfWord(text.char32At(begin - 1));
  bool const closes =
      end >= text.length() || !isOfWord(text.char32At(end - 1)) || !isOfWord(text.char32At(end));
  return opens && closes;
}

/// Units behind which a single ideograph counts something: "十分" and "三天" in passing do not.
bool countsSomething(UnicodeString const& text, int begin, int end) {
  if (!isIdeographic(text.char32At(begin)) || end - begin > 1) return true;
  constexpr std::u16string_view kUnits = u"度時点时ミセ毫厘公米级級メ";
  return end < text.length() && kUnits.find(text[end]) != std::u16string_view::npos;
}

}  // namespace

std::string withDigits(std::string_view text, std::string_view language) {
  Spellings const spellings(language);
  UnicodeString const in = normalized(UnicodeString::fromUTF8({text.data(), static_cast<int>(text.size())}));
  UnicodeString out;
  for (int at = 0; at < in.length();) {
    auto const found = std::ranges::find_if(spellings.rows(), [&](Spellings::Row const& row) {
      int const end = at + row.words.length();
      if (in.compare(at, row.words.length(), row.words) != 0 || !isWhole(in, at, end)) return false;
      if (row.digits != "-") return countsSomething(in, at, end);
      int const next = end < in.length() && in[end] == u' ' ? end + 1 : end;
      return next < in.length() && (u_isdigit(in[next]) != 0 || isIdeographic(in[next]));
    });
    if (found == spellings.rows().end()) {
      out += in[at++];
      continue;
    }
    out += UnicodeString::fromUTF8(found->digits);
    at += found->words.length();
    bool const isMinus = found->digits == "-";
    if (isMinus && at < in.length() && in[at] == u' ') ++at;
  }
  std::string result;
  out.toUTF8String(result);
  return result;
}

}  // namespace nimbara
