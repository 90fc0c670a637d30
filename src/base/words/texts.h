// The texts of the program in one language: a flat table key → text, embedded in the program, with English
// behind it for keys that a translation lacks. Immutable once loaded; any thread may read it.
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
  /// The languages that have a table, English first.
  static std::vector<std::string_view> languages();
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

  template <class... Arguments>
  std::string format(std::string_view key, Arguments const&... arguments) const {
    return fill(key, {MessageArgument(arguments)...});
  }

  std::map<std::string, std::string, std::less<>> const& table() const { return own_; }

 private:
  std::string fill(std::string_view key, std::initializer_list<MessageArgument> arguments) const;

  std::string language_;
  std::string decimalPoint_ = ".";
  std::map<std::string, std::string, std::less<>> own_;
  std::map<std::string, std::string, std::less<>> english_;
};

}  // namespace nimbara
