// Any bytes as a list of radar pictures of any supplier.

#include "feeds/imagery/radar/radar_lists.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  std::string_view const body(reinterpret_cast<char const*>(data), size);
  // What is older is refused: the seeds' moment, and that of what was recorded.
  for (long long const seconds : {1'795'252'800, 1'790'819'126}) {
    Instant const now{std::chrono::seconds(seconds)};
    for (RadarSupplier const& supplier : radarSuppliers()) {
      auto const list = readFrameList({supplier, "https://service.example", now}, body, body);
      if (!list) continue;
      for (RadarFrame const& frame : list->frames)
        static_cast<void>(pictureAddress(frame.address, {7, 67, 42}));
    }
  }
  return 0;
}
