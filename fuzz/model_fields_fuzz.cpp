// Any bytes as the answer for a grid of points, of one and of several, and what is read and drawn of it.

#include "feeds/imagery/model_fields.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  std::string_view const body(reinterpret_cast<char const*>(data), size);
  constexpr ModelGrid kGrids[] = {{5, 50, 1, 1, 1, 1}, {178, 60, 2, 3, 2, 2}, {-10, 60, 4, 4, 10, 6}};
  for (ModelGrid const& grid : kGrids) {
    auto const fields = parseModelFields(body, grid);
    if (!fields) continue;
    if (fields->times.size() != fields->hours.size()) std::abort();
    static_cast<void>(hourNear(*fields, Instant(std::chrono::seconds(1'795'252'800))));
    for (ModelHour const& hour : fields->hours) {
      for (auto const* values : {&hour.temperature, &hour.precipitation, &hour.pressure, &hour.windEast}) {
        if (values->size() != grid.size()) std::abort();
        auto const value = fieldAt(*values, grid, {55, 179.5});
        if (value && !std::isfinite(*value)) std::abort();
      }
      static_cast<void>(contour(hour.pressure, grid.columns, 1012));
    }
  }
  return 0;
}
