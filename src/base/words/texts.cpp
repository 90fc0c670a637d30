#include "base/words/texts.h"

#include "base/json/simdjson_dom.h"
#include "base/text/text.h"
#include "base/time/hour_clock.h"
#include "base/words/plural_form.h"

#include <unicode/dcfmtsym.h>

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace nimbara {

namespace resources {
/// Made of the files of resources/texts.
extern std::span<std::pair<std::string_view, std::string_view const*> const> const texts;
}  // namespace resources

namespace {

using Table = Texts::Table;
using Document = std::pair<std::string_view, std::string_view const*>;

constexpr std::string_view kEnglish = "en";

/// "pt_BR.UTF-8" and "pt-BR" speak of "pt".
Document const* findDocument(std::string_view name) {
  std::string const code = asciiLowered(name.substr(0, name.find_first_of("_-.@")));
  auto const found = std::ranges::find(resources::texts, code, &Document::first);
  return found == resources::texts.end() ? nullptr : &*found;
}

/// The patterns of hours stand in the tables for 12 hours; a clock of 24 has no words and is the same in all.
constexpr std::pair<std::string_view, std::string_view> kTwentyFourHours[] = {
    {"time.hourPattern", "HH:mm"},
    {"time.hourColumnPattern", "HH"},
    {"time.clockPattern", "HH:mm"},
    {"time.secondsPattern", "HH:mm:ss"},
};

/// The tables are part of the program and a test reads each; a broken one leaves the keys to show. Two
/// thousand rows at each start: they are taken as they stand, mostly in their order.
Table readTable(Document const& language) {
  Table table;
  simdjson::dom::parser parser;
  simdjson::dom::object rows;
  if (parser.parse(language.second->data(), language.second->size()).get(rows) != simdjson::SUCCESS)
    return table;
  for (auto const row : rows) {
    std::string_view text;
    if (row.value.get(text) == simdjson::SUCCESS) table.emplace_hint(table.end(), row.key, text);
  }
  return table;
}

/// Of the first row. Nine tables are not read whole for nine names.
std::string nameIn(std::string_view document) {
  constexpr std::string_view kRow = "\"language.name\": \"";
  auto const begin = document.find(kRow);
  if (begin == std::string_view::npos) return {};
  std::string_view const rest = document.substr(begin + kRow.size());
  return std::string(rest.substr(0, rest.find('"')));
}

std::string decimalPointOf(std::string_view locale) {
  UErrorCode status = U_ZERO_ERROR;
  icu::DecimalFormatSymbols const symbols(icu::Locale(std::string(locale).c_str()), status);
  std::string utf8;
  if (U_SUCCESS(status))
    symbols.getSymbol(icu::DecimalFormatSymbols::kDecimalSeparatorSymbol).toUTF8String(utf8);
  return utf8.empty() ? "." : utf8;
}

std::string_view localeOf(Table const& table) {
  auto const found = table.find("language.locale");
  return found == table.end() ? kEnglish : std::string_view(found->second);
}

std::vector<Texts::Language> readLanguages() {
  std::vector<Texts::Language> languages;
  for (Document const& document : resources::texts) {
    languages.push_back({document.first, nameIn(*document.second)});
  }
  std::ranges::stable_partition(languages, [](auto const& language) { return language.code == kEnglish; });
  return languages;
}

std::string readList() {
  std::string list;
  auto const& languages = Texts::languages();
  for (std::size_t i = 0; i < languages.size(); ++i) {
    if (i > 0) list += i + 1 == languages.size() ? " or " : ", ";
    list += languages[i].code;
  }
  return list;
}

/// The form of the text at `usual` that goes with the first whole number; forms stand right behind their
/// text.
std::string_view countedForm(Table const& table, Table::const_iterator usual,
                             std::initializer_list<MessageArgument> arguments) {
  std::string const stem = usual->first + '#';
  if (auto const next = std::next(usual); next == table.end() || !next->first.starts_with(stem))
    return usual->second;
  for (MessageArgument const& argument : arguments) {
    auto const* const count = std::get_if<std::int64_t>(&argument.value());
    if (count == nullptr) continue;
    auto const form = table.find(stem + pluralForm(localeOf(table), *count));
    return form == table.end() ? usual->second : form->second;
  }
  return usual->second;
}

/// Hours are plural in some languages, but for the first: "las 2:00", "la 1:00".
struct HourArticle {
  std::string_view language;
  std::string_view usual;
  std::string_view ofOne;
};

constexpr auto kHourArticles = std::to_array<HourArticle>({
    {"es", "las ", "la "},
    {"pt", "às ", "à "},
    {"pt", "as ", "a "},
    {"pt", "das ", "da "},
});

/// "1:30", "01:30", "1 AM", "1"; not "10:30" and not "1,5".
bool beginsAtOne(MessageArgument const& argument) {
  auto const* const text = std::get_if<std::string>(&argument.value());
  if (text == nullptr) return false;
  std::string_view rest = *text;
  if (rest.starts_with('0')) rest.remove_prefix(1);
  if (!rest.starts_with('1')) return false;
  rest.remove_prefix(1);
  return rest.empty() || std::string_view("0123456789,.").find(rest.front()) == std::string_view::npos;
}

/// A private character of Unicode's; stands before what begins at one o'clock while a text is filled.
constexpr std::string_view kOneFollows = "\uE001";

std::string withArticles(std::string text, std::string_view language) {
  for (auto at = text.find(kOneFollows); at != std::string::npos; at = text.find(kOneFollows, at)) {
    text.erase(at, kOneFollows.size());
    std::string_view const before = std::string_view(text).substr(0, at);
    auto const* const article = std::ranges::find_if(kHourArticles, [&](HourArticle const& one) {
      if (one.language != language || !before.ends_with(one.usual)) return false;
      return before.size() == one.usual.size() || before[before.size() - one.usual.size() - 1] == ' ';
    });
    if (article == kHourArticles.end()) continue;
    at -= article->usual.size();
    text.replace(at, article->usual.size(), article->ofOne);
  }
  return text;
}

}  // namespace

std::vector<Texts::Language> const& Texts::languages() {
  static std::vector<Language> const kLanguages = readLanguages();
  return kLanguages;
}

std::string const& Texts::languageList() {
  static std::string const kList = readList();
  return kList;
}

bool Texts::has(std::string_view name) {
  return findDocument(name) != nullptr;
}

Texts Texts::load(std::string_view name) {
  Document const* const english = findDocument(kEnglish);
  Document const* const found = findDocument(name);
  Document const* const language = found == nullptr ? english : found;
  Texts texts;
  texts.language_ = language->first;
  texts.own_ = readTable(*language);
  if (language != english) {
    texts.english_ = readTable(*english);
    texts.decimalPoint_ = decimalPointOf(texts.locale());
  }
  if (hourClockIn(name) == HourClock::twentyFour) {
    for (auto const& [key, pattern] : kTwentyFourHours)
      texts.own_.insert_or_assign(std::string(key), pattern);
  }
  return texts;
}

std::string_view Texts::locale() const {
  return localeOf(own_);
}

std::string_view Texts::text(std::string_view key) const {
  for (Table const* const table : {&own_, &english_}) {
    if (auto const found = table->find(key); found != table->end()) return found->second;
  }
  return key;
}

std::string Texts::fill(std::string_view key, std::initializer_list<MessageArgument> arguments) const {
  std::string_view pattern = key;
  for (Table const* const table : {&own_, &english_}) {
    auto const found = table->find(key);
    if (found == table->end()) continue;
    pattern = countedForm(*table, found, arguments);
    break;
  }
  bool const hasArticles = std::ranges::count(kHourArticles, language_, &HourArticle::language) > 0;
  if (!hasArticles || std::ranges::none_of(arguments, beginsAtOne))
    return formatMessage(pattern, std::span(arguments.begin(), arguments.size()), decimalPoint_);
  std::vector<MessageArgument> marked(arguments);
  for (MessageArgument& argument : marked) {
    if (beginsAtOne(argument)) argument = std::string(kOneFollows) + std::get<std::string>(argument.value());
  }
  return withArticles(formatMessage(pattern, marked, decimalPoint_), language_);
}

}  // namespace nimbara
