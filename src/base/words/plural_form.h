// Which form of words goes with a number: "one" aviso, "few" ostrzeżenia, "other" warnings. The rules are
// CLDR's, which ICU knows for every language. Those of a language are read once a process; any thread may
// ask.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace nimbara {

/// CLDR's category of a whole number in a locale: "zero", "one", "two", "few", "many" or "other".
std::string pluralForm(std::string_view locale, std::int64_t count);

/// The forms that a counted text of the locale has beside its usual one, which serves the most numbers, in
/// CLDR's order and between blanks: "one" in English, "one few" in Polish, none in Japanese.
std::string specialForms(std::string_view locale);

}  // namespace nimbara
