#include "app/words/quake_place.h"

#include "base/text/number.h"
#include "base/words/grouped_text.h"

namespace nimbara {

std::string quakePlace(std::string_view place, DistanceUnit unit, Texts const& texts) {
  std::size_t const digits = place.find_first_not_of("0123456789");
  bool const isDistance =
      digits != 0 && digits != std::string_view::npos && place.substr(digits).starts_with(" km ");
  auto const km = isDistance ? parseDouble(place.substr(0, digits)) : std::nullopt;
  if (!km) return std::string(place);
  std::string_view const rest = place.substr(digits + std::string_view(" km").size());
  return groupedText(display(*km, unit), texts) + " " + std::string(symbol(unit)) + std::string(rest);
}

}  // namespace nimbara
