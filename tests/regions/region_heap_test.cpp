// A look-up takes nothing from the heap. This program's own allocation counts what is taken.

#include "regions/region_map.h"
#include "support/answers/outlines.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

namespace {
std::size_t taken = 0;
}  // namespace

void* operator new(std::size_t size) {
  ++taken;
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace nimbara {
namespace {

TEST(RegionMapHeap, IsNotTouchedByLookUps) {
  std::vector<std::string> features;
  for (int i = 0; i < 40; ++i)
    features.push_back(test::feature("R" + std::to_string(i), "DE", "Region " + std::to_string(i),
                                     test::square({51, 10}, 0.1 + 0.02 * i)));
  std::string const bytes = regionMapOf(outlineSetOf(readOutlines(test::collection(features))->outlines));
  auto const map = RegionMap::over(bytes);
  ASSERT_TRUE(map);
  std::size_t const before = taken;
  ASSERT_GT(before, 0U) << "nothing is counted";
  std::size_t const found = map->at({51, 10}, "DE").size() + map->at({52.05, 10}, "DE").size();
  std::size_t const after = taken;
  EXPECT_EQ(after, before);
  EXPECT_EQ(found, FoundRegions::kMost + 1) << "the largest have no room";
}

}  // namespace
}  // namespace nimbara
