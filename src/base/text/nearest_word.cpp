#include "base/text/nearest_word.h"

#include <algorithm>
#include <vector>

namespace nimbara {

namespace {

constexpr std::size_t kShortestBeginning = 3;
constexpr int kLettersPerMistake = 3;
/// Nobody types longer words, and what is compared with one takes time with its length.
constexpr std::size_t kLongestWord = 64;

int mistakesAllowed(std::string_view word) {
  return std::max(1, static_cast<int>(word.size()) / kLettersPerMistake);
}

}  // namespace

int typingDistance(std::string_view one, std::string_view other) {
  std::size_t const width = other.size() + 1;
  // Rows for the beginnings of `one`; a swap looks back two rows.
  std::vector<int> table((one.size() + 1) * width);
  auto const at = [&](std::size_t row, std::size_t column) -> int& { return table[row * width + column]; };
  for (std::size_t row = 0; row <= one.size(); ++row) at(row, 0) = static_cast<int>(row);
  for (std::size_t column = 0; column < width; ++column) at(0, column) = static_cast<int>(column);
  for (std::size_t row = 1; row <= one.size(); ++row) {
    for (std::size_t column = 1; column < width; ++column) {
      int const replaced = at(row - 1, column - 1) + (one[row - 1] == other[column - 1] ? 0 : 1);
      at(row, column) = std::min({replaced, at(row - 1, column) + 1, at(row, column - 1) + 1});
      bool const isSwap =
          row > 1 && column > 1 && one[row - 1] == other[column - 2] && one[row - 2] == other[column - 1];
      if (isSwap) at(row, column) = std::min(at(row, column), at(row - 2, column - 2) + 1);
    }
  }
  return at(one.size(), width - 1);
}

std::string nearestWord(std::string_view word, std::span<std::string const> candidates) {
  if (word.size() < 2 || word.size() > kLongestWord) return {};
  auto const distanceOf = [&](std::string const& candidate) {
    bool const isBeginning = word.size() >= kShortestBeginning && candidate.starts_with(word);
    return isBeginning ? 0 : typingDistance(word, candidate);
  };
  int least = mistakesAllowed(word) + 1;
  std::string nearest;
  for (std::string const& candidate : candidates) {
    int const distance = distanceOf(candidate);
    if (distance > least) continue;
    nearest = distance < least || candidate == nearest ? candidate : "";
    least = distance;
  }
  return nearest;
}

}  // namespace nimbara
