// The form in which names are compared when people search: letter case, accents and punctuation do not count.
#pragma once

#include <string>
#include <string_view>

namespace nimbara {

/// The words of UTF-8 `text`, one blank between them: lower case, accents dropped, letters without a plain
/// form spelled ("ø" as "o", "ß" as "ss"), dots and apostrophes left out, other punctuation and broken bytes
/// taken as blanks. Letters of other scripts stay what they are.
std::string searchFolded(std::string_view text);

/// UTF-8 `text` in lower case and without blanks around it: what tells apart names that are folded alike.
std::string accentsKept(std::string_view text);

/// A name as it is written, from one in any letter case: each word begins with a capital, but for the small
/// words within names ("Monaco di Baviera", "Frankfurt am Main").
std::string capitalized(std::string_view name);

}  // namespace nimbara
