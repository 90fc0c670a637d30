// The texts of the program in one language: a flat table key → text, embedded in the program, with English
// behind it for keys that a translation lacks. The files of resources/texts are the list of the languages. A
// text that counts has further forms under its key with "#one", "#few" and so on (docs/adding-a-language.md).
// Immutable once loaded; any thread may read it.
#pragma once

#include "base/words/message_format.h"

#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

class Texts {
 public:
  struct Language {
    std::string_view code;  ///< "pt": the name of its file
    std::string name;       ///< its own: "Português"
  };
  /// Those that have a table, English first, then by code.
  static std::vector<Language> const& languages();
  /// "en, de or pt": their codes in English words.
  static std::string const& languageList();
  /// The table of a language code or locale name ("pt", "pt_BR.UTF-8", "zh-Hans"); English when there is
  /// none. The keyword "hours" ("pt@hours=h23") sets the patterns of hours, see base/time/hour_clock.h.
  static Texts load(std::string_view name);
  /// True when `load` would find a table for that name.
  static bool has(std::string_view name);

  std::string const& language() const { return language_; }
  /// The decimal separator of the language.
  std::string const& decimalPoint() const { return decimalPoint_; }

  /// The text of `key`; the key itself when no table has it, so that a gap shows.
  std::string_view text(std::string_view key) const;
  /// True when the language's own table has the key.
  bool translates(std::string_view key) const { return own_.contains(key); }

  /// The text with its placeholders filled. Of a counted text, the form that goes with the first whole number
  /// among the arguments.
  template <class... Arguments>
  std::string format(std::string_view key, Arguments const&... arguments) const {
    return fill(key, {MessageArgument(arguments)...});
  }

  using Table = std::map<std::string, std::string, std::less<>>;
  Table const& table() const { return own_; }
  /// Whose rules of counting hold, where the language alone does not say it: "pt_PT".
  std::string_view locale() const;

 private:
  std::string fill(std::string_view key, std::initializer_list<MessageArgument> arguments) const;

  std::string language_;
  std::string decimalPoint_ = ".";
  Table own_;
  Table english_;
};

}  // namespace nimbara
