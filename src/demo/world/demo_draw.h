// Chance that is the same in every run: a number drawn by what it is for and how often it was drawn before.
#pragma once

#include <cstdint>

namespace nimbara {

/// From 0 up to, and without, 1.
constexpr double demoDraw(std::uint64_t stream, std::int64_t index) {
  // The finalizer of SplitMix64.
  std::uint64_t x = static_cast<std::uint64_t>(index) * 0x9e3779b97f4a7c15U + stream * 0xd1342543de82ef95U;
  x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9U;
  x = (x ^ (x >> 27)) * 0x94d049bb133111ebU;
  x ^= x >> 31;
  return static_cast<double>(x >> 11) * 0x1.0p-53;
}

}  // namespace nimbara
