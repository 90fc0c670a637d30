// What a mistyped word was meant to be.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace nimbara {

/// How many letters must be put in, left out, replaced or swapped with their neighbour to make one word of
/// the other. Counts bytes.
int typingDistance(std::string_view one, std::string_view other);

/// The candidate that `word` most likely was meant to be: the one whose beginning it is (three letters or
/// more), otherwise the nearest by typing, one mistake for each three letters at most. Empty when no
/// candidate is near or two are as near as each other.
std::string nearestWord(std::string_view word, std::span<std::string const> candidates);

}  // namespace nimbara
