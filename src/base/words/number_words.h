// Numbers that a text has in words: "twelve", "fünfundzwanzig", "quatre-vingt-dix", "十二". The words come
// from ICU's rules of each language.
#pragma once

#include <string>
#include <string_view>

namespace nimbara {

/// The text in lower case with its numbers from -60 to 120 in digits: "minus four" becomes "-4", and so does
/// "minus 4". One is left as it is, which is an article in most languages, and so are ordinals but for the
/// hours of Polish. A language that ICU does not spell changes nothing.
std::string withDigits(std::string_view text, std::string_view language);

}  // namespace nimbara
