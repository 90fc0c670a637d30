// Texts as notification services take them, made from texts that anybody may have written: services refuse or
// drop a message that is not valid UTF-8, and an endless one covers the screen.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace nimbara {

enum class TextLines { one, many };

/// `text` in valid UTF-8, without control characters and overrides of the writing direction, at most `limit`
/// characters (the last is "…" when something was cut). Bytes and characters that may not be sent become
/// U+FFFD; line breaks stay where many lines are wanted and become blanks where one is. Reads no more than it
/// needs.
std::string sendableText(std::string_view text, std::size_t limit, TextLines lines);

/// For services that take the text for markup.
std::string markupEscaped(std::string_view text);

}  // namespace nimbara
