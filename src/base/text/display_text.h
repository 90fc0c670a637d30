// Texts on a grid of character cells: how wide a text is there, and fitting it into a column.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// The cells that UTF-8 `text` takes: two for wide East Asian characters and emoji, none for combining ones.
int displayWidth(std::string_view text);

/// `text` in ASCII: accents dropped, letters without a plain form spelled ("ø" as "o", "ß" as "ss"), the
/// degree sign left out, everything else that has no likeness as "?".
std::string asciiFolded(std::string_view text);

enum class Align { left, right, centre };

/// `text` filled with blanks to `width` cells; a text that is wider is cut and ends with "…".
std::string fitted(std::string_view text, int width, Align align = Align::left);

/// `text` in lines of at most `width` cells, broken at blanks and between East Asian characters; a word that
/// is wider goes on in the next line. Nothing is lost.
std::vector<std::string> wrapped(std::string_view text, int width);

}  // namespace nimbara
