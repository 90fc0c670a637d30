// How much one name must be edited to become another.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace nimbara::gazetteer {

/// The edits (a letter more, less or another, or two of them exchanged) between one name and others, by the
/// bits of a machine word: H. Hyyrö, "A bit-vector algorithm for computing Levenshtein and Damerau edit
/// distances", 2003. Names longer than the word are cut; bytes stand for letters.
class EditDistance {
 public:
  explicit EditDistance(std::string_view name) : length_(std::min<std::size_t>(name.size(), 64)) {
    for (std::size_t i = 0; i < length_; ++i) places_[byteOf(name[i])] |= std::uint64_t{1} << i;
  }

  int to(std::string_view other) const {
    int distance = static_cast<int>(length_);
    eachDistance(other, other.size(), [&](int edits) { distance = edits; });
    return distance;
  }

  /// To the beginning of `other` that is nearest, which is at most two letters longer than the name.
  int toBeginning(std::string_view other) const {
    int least = static_cast<int>(length_);
    eachDistance(other, length_ + 2, [&](int edits) { least = std::min(least, edits); });
    return least;
  }

 private:
  /// `take` gets the distance to each beginning of `other` up to `longest` letters, the shortest first.
  template <class Take>
  void eachDistance(std::string_view other, std::size_t longest, Take const& take) const {
    std::uint64_t const last = std::uint64_t{1} << (length_ - 1);
    std::uint64_t more = ~std::uint64_t{0};
    std::uint64_t less = 0;
    std::uint64_t diagonal = 0;
    std::uint64_t before = 0;
    int distance = static_cast<int>(length_);
    for (char const c : other.substr(0, longest)) {
      std::uint64_t const here = places_[byteOf(c)];
      std::uint64_t const exchanged = ((~diagonal & here) << 1) & before;
      diagonal = (((here & more) + more) ^ more) | here | less | exchanged;
      std::uint64_t up = less | ~(diagonal | more);
      std::uint64_t down = diagonal & more;
      if ((up & last) != 0) ++distance;
      if ((down & last) != 0) --distance;
      up = (up << 1) | 1;
      down <<= 1;
      more = down | ~(diagonal | up);
      less = up & diagonal;
      before = here;
      take(distance);
    }
  }

  static std::size_t byteOf(char c) { return static_cast<unsigned char>(c); }

  std::size_t length_;
  std::array<std::uint64_t, 256> places_{};
};

}  // namespace nimbara::gazetteer
