// A tick of the layer allocates nothing: this program counts what its allocation functions are asked for.

#include "globe/satellite_layer.h"
#include "support/answers/made_satellites.h"
#include "support/instants.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<long> allocations = 0;

void* counted(void* memory) {
  ++allocations;
  if (memory == nullptr) std::abort();
  return memory;
}
}  // namespace

// NOLINTBEGIN(cppcoreguidelines-no-malloc, cppcoreguidelines-owning-memory)
void* operator new(std::size_t size) {
  return counted(std::malloc(size));
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  auto const step = static_cast<std::size_t>(alignment);
  return counted(std::aligned_alloc(step, (size + step - 1) / step * step));
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
  std::free(memory);
}
// NOLINTEND(cppcoreguidelines-no-malloc, cppcoreguidelines-owning-memory)

namespace nimbara {
namespace {

TEST(SatelliteLayer, ATickAllocatesNothing) {
  auto const& group = *SatelliteCatalog::group("weather");
  std::vector<SatelliteGroupLoad> loads(1);
  loads[0].group = group;
  for (SGP4::SatRec const& record : test::madeSatellites({{300, 340, 570, 5e-5, 4e-4, 33, 97.7, -4.3, -3.1},
                                                          {20, 35'780, 35'790, 1e-5, 1e-4, 0, 1, -5, -4}})) {
    loads[0].parsed.entries.push_back({record, "MADE", 0, false, SatelliteCatalog::Kind::generic});
  }
  SatelliteLayer layer;
  layer.show(std::move(loads));
  layer.activate();
  Instant const now = test::at("2026-11-21T06:00:00Z");
  ASSERT_TRUE(layer.propagateNow(now));
  long const before = allocations;
  ASSERT_GT(before, 0) << "nothing is counted";
  bool complete = true;
  for (int second = 1; second <= 100; ++second) {
    complete = layer.propagateNow(now + std::chrono::seconds(second)) && complete;
  }
  EXPECT_EQ(allocations - before, 0);
  EXPECT_TRUE(complete);
}

}  // namespace
}  // namespace nimbara
