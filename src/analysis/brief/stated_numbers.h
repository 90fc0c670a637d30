// Which numbers a text states: what somebody else words of given facts must not add any. Pure.
#pragma once

#include <string_view>

namespace nimbara {

/// Whether every number in `text` also stands in `facts`. A decimal comma is a point; a minus counts, unless
/// it joins two numbers as a range does. Numbers in the words of `language` count like those in digits, but
/// for one (see `withDigits`).
bool hasOnlyNumbersOf(std::string_view text, std::string_view facts, std::string_view language);

}  // namespace nimbara
