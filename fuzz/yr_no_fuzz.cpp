// Any bytes as a MET Norway forecast: through the parser, the join and the processing.

#include "model/process.h"
#include "providers/metnorway/yr_no_join.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  Instant const now = *parseIso8601("2024-05-16T13:40:00Z");
  auto const steps = parseYrNo({reinterpret_cast<char const*>(data), size});
  if (!steps) return 0;
  if (auto const record =
          joinYrNo(*steps, {27.7, 85.32}, Calendar::fixedOffset(std::chrono::minutes(345)), now)) {
    process(*record, Calendar::utc(), now);
  }
  return 0;
}
