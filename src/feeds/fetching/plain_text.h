// Texts that services write as HTML, for places that show plain text. Pure; any bytes may be given.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace nimbara {

/// `html` without tags, comments, scripts and styles and with its entities decoded: paragraphs and list items
/// on lines of their own, no blanks around them, no empty lines. At most `limit` bytes, cut at a character.
std::string plainTextOfHtml(std::string_view html, std::size_t limit = 16 << 10);

}  // namespace nimbara
