#include "app/words/hazards/quake_place.h"

#include "base/bearing.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "base/words/compass_point.h"
#include "base/words/country_names.h"
#include "base/words/grouped_text.h"
#include "gazetteer/gazetteer.h"
#include "providers/common/compass.h"

namespace nimbara {

namespace {

/// Nearer than this the direction says nothing.
constexpr double kAtTownKm = 3;

}  // namespace

std::string quakePlace(std::string_view place, DistanceUnit unit, Texts const& texts) {
  std::size_t const digits = place.find_first_not_of("0123456789");
  bool const isDistance =
      digits != 0 && digits != std::string_view::npos && place.substr(digits).starts_with(" km ");
  auto const km = isDistance ? parseDouble(place.substr(0, digits)) : std::nullopt;
  if (!km) return std::string(place);
  std::string_view const rest = place.substr(digits + std::string_view(" km").size());
  return groupedText(display(*km, unit), texts) + " " + std::string(symbol(unit)) + std::string(rest);
}

std::string quakePlace(EarthquakeEvent const& event, DistanceUnit unit, Texts const& texts) {
  auto const nearest = texts.language() == "en" ? std::nullopt : nearestCity(event.coordinate());
  if (!nearest) return quakePlace(oneLine(event.place), unit, texts);
  City const& city = nearest->city;
  std::string town(city.name);
  std::string const country = countryName(city.countryCode, texts.language());
  if (!country.empty()) town += std::string(texts.text("list.comma")) + country;
  if (nearest->km < kAtTownKm) return town;
  std::string const way = groupedText(display(nearest->km, unit), texts) + " " + std::string(symbol(unit));
  std::string_view const point = compassPoint(bearingDegrees(city.coordinate, event.coordinate()));
  return texts.format("quakes.place.from", way, compassPoint(point, texts), town);
}

}  // namespace nimbara
