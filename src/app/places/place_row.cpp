#include "app/places/place_row.h"

namespace nimbara {

PlaceRow placeRow(SavedPlace const& place, int position) {
  return {position,
          place.name,
          place.country,
          place.countryName,
          place.region,
          place.coordinate.latitude,
          place.coordinate.longitude,
          place.timeZone,
          std::string(place.notifications ? enumName(*place.notifications) : ""),
          place.warningSource.value_or("")};
}

std::optional<SavedPlace> savedPlace(PlaceRow const& row, Uuid const& id) {
  Coordinate const coordinate{row.latitude, row.longitude};
  if (!isValid(coordinate)) return std::nullopt;
  return SavedPlace{id,
                    row.name,
                    row.country,
                    row.countryName,
                    row.region,
                    coordinate,
                    row.timeZone,
                    enumFromName<PlaceChoice>(row.notifications),
                    row.warningSource.empty() ? std::nullopt : std::optional(row.warningSource)};
}

}  // namespace nimbara
