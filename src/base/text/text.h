// Small operations on text that the standard library of our compiler does not have.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// `text` without leading and trailing blanks, tabs and line breaks.
std::string_view trimmed(std::string_view text);

/// ASCII letters turned into lower case; all other bytes unchanged.
std::string asciiLowered(std::string_view text);
/// The like for upper case.
std::string asciiUppered(std::string_view text);

/// The parts of `text` between separators; an empty text is one empty part.
std::vector<std::string_view> split(std::string_view text, char separator);

/// `text` on one line: every run of white space and control characters becomes one blank, at most `limit`
/// bytes (cut at a character's boundary, with "…" when something was cut).
std::string oneLine(std::string_view text, std::size_t limit = 200);

/// For a query or a path: `text` with everything but unreserved characters turned into %XX.
std::string percentEncoded(std::string_view text);

}  // namespace nimbara
