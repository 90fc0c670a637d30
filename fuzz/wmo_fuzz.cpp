// Any bytes as an answer of the WMO Severe Weather Information Centre: its rows, its members and its sources.

#include "feeds/wmo/wmo_rows.h"
#include "feeds/wmo/wmo_sources.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  std::string_view const body(reinterpret_cast<char const*>(data), size);
  if (auto const answer = parseWmoRows(body)) {
    for (WmoRow const& row : answer->rows) {
      static_cast<void>(alertOf(row));
      static_cast<void>(countryOfWmoSource(row.document));
    }
  }
  static_cast<void>(parseWmoMembers(body));
  static_cast<void>(parseWmoSources(body));
  return 0;
}
