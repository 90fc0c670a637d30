// Texts from outside, made fit to be kept and shown: anybody may have written them, and a terminal, a page or
// another program would obey some of their characters. Pure; any bytes may be given.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace nimbara {

enum class TextLines { one, many };

/// Characters of what people give names to, and of what they write in full.
inline constexpr std::size_t kNameLimit = 200;
inline constexpr std::size_t kTextLimit = 16'000;

/// `text` in valid UTF-8, without control characters of either range, with its writing directions balanced
/// (overrides are dropped, what is opened is closed at the line's end), at most `limit` characters (the last
/// is "…" when something was cut). Bytes and characters that may not be sent become U+FFFD; line breaks stay
/// where many lines are wanted and become blanks where one is. Reads no more than it needs.
std::string cleanText(std::string_view text, std::size_t limit, TextLines lines);

/// The like for whole documents: tabs and line breaks as they are, no limit.
std::string withoutControls(std::string_view text);

/// Embeddings and isolates closed within their line; overrides and what closes nothing dropped.
std::string directionsBalanced(std::string_view text);

/// For a terminal: of the control characters nothing but line breaks, tabs and the colours of a text.
std::string terminalText(std::string_view text);

/// For readers that take the text for markup.
std::string markupEscaped(std::string_view text);

}  // namespace nimbara
