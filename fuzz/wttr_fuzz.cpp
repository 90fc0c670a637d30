// Any bytes as a wttr.in answer: through the parser, the join and the processing.

#include "model/process.h"
#include "providers/wttr/wttr_client.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  HttpResponse const answer{200, {}, std::string(reinterpret_cast<char const*>(data), size)};
  if (auto const record = readWttrAnswer(answer, {49.13, 11.12}, {})) {
    process(*record, Calendar::utc(), *parseIso8601("2026-04-03T20:40:00Z"));
  }
  return 0;
}
