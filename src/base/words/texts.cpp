#include "base/words/texts.h"

#include "base/json/json.h"
#include "base/text/text.h"
#include "base/time/hour_clock.h"

#include <unicode/dcfmtsym.h>

#include <algorithm>
#include <array>

namespace nimbara {

namespace resources {
extern std::string_view const en_json;
extern std::string_view const pt_json;
extern std::string_view const zh_json;
}  // namespace resources

namespace {

using Table = std::map<std::string, std::string, std::less<>>;

struct Language {
  std::string_view code;
  std::string_view const& document;
};

std::array<Language, 3> const kLanguages{
    {{"en", resources::en_json}, {"pt", resources::pt_json}, {"zh", resources::zh_json}}};

/// "pt_BR.UTF-8" and "pt-BR" speak of "pt".
Language const* findLanguage(std::string_view name) {
  std::string const code = asciiLowered(name.substr(0, name.find_first_of("_-.@")));
  auto const found = std::ranges::find(kLanguages, code, &Language::code);
  return found == kLanguages.end() ? nullptr : &*found;
}

/// The patterns of hours stand in the tables for 12 hours; a clock of 24 has no words and is the same in all.
constexpr std::pair<std::string_view, std::string_view> kTwentyFourHours[] = {
    {"time.hourPattern", "HH:mm"},
    {"time.hourColumnPattern", "HH"},
    {"time.clockPattern", "HH:mm"},
    {"time.secondsPattern", "HH:mm:ss"},
};

/// The tables are part of the program and a test reads each; a broken one leaves the keys to show.
Table readTable(Language const& language) {
  return decodeJson<Table>(language.document).value_or(Table{});
}

std::string decimalPointOf(std::string const& language) {
  UErrorCode status = U_ZERO_ERROR;
  icu::DecimalFormatSymbols const symbols(icu::Locale(language.c_str()), status);
  std::string utf8;
  if (U_SUCCESS(status))
    symbols.getSymbol(icu::DecimalFormatSymbols::kDecimalSeparatorSymbol).toUTF8String(utf8);
  return utf8.empty() ? "." : utf8;
}

}  // namespace

std::vector<std::string_view> Texts::languages() {
  std::vector<std::string_view> codes;
  codes.reserve(kLanguages.size());
  for (Language const& language : kLanguages) codes.push_back(language.code);
  return codes;
}

bool Texts::has(std::string_view name) {
  return findLanguage(name) != nullptr;
}

Texts Texts::load(std::string_view name) {
  Language const& english = kLanguages.front();
  Language const* const found = findLanguage(name);
  Language const& language = found == nullptr ? english : *found;
  Texts texts;
  texts.language_ = language.code;
  texts.own_ = readTable(language);
  if (&language != &english) {
    texts.english_ = readTable(english);
    texts.decimalPoint_ = decimalPointOf(texts.language_);
  }
  if (hourClockIn(name) == HourClock::twentyFour) {
    for (auto const& [key, pattern] : kTwentyFourHours)
      texts.own_.insert_or_assign(std::string(key), pattern);
  }
  return texts;
}

std::string_view Texts::text(std::string_view key) const {
  for (Table const* const table : {&own_, &english_}) {
    if (auto const found = table->find(key); found != table->end()) return found->second;
  }
  return key;
}

std::string Texts::fill(std::string_view key, std::initializer_list<MessageArgument> arguments) const {
  return formatMessage(text(key), std::span(arguments.begin(), arguments.size()), decimalPoint_);
}

}  // namespace nimbara
