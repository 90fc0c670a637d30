// A saved place as it lies in the store and in an exported file.
#pragma once

#include "app/places/places.h"
#include "base/json/json.h"

namespace nimbara {

struct PlaceRow {
  int position = 0;
  std::string name;
  std::string country;
  std::string countryName;
  std::string region;
  double latitude = 0;
  double longitude = 0;
  std::string timeZone;
  std::string notifications;  ///< a choice, or empty
  std::string warningSource;  ///< a name, or empty
};

template <>
inline constexpr auto jsonFields<PlaceRow> = FieldList{
    field("position", &PlaceRow::position),
    field("name", &PlaceRow::name),
    fieldOr("country", &PlaceRow::country),
    fieldOr("countryName", &PlaceRow::countryName),
    fieldOr("region", &PlaceRow::region),
    field("latitude", &PlaceRow::latitude),
    field("longitude", &PlaceRow::longitude),
    fieldOr("timeZone", &PlaceRow::timeZone),
    fieldOr("notifications", &PlaceRow::notifications),
    fieldOr("warningSource", &PlaceRow::warningSource),
};

PlaceRow placeRow(SavedPlace const& place, int position);
/// Nothing for a row whose coordinate is none.
std::optional<SavedPlace> savedPlace(PlaceRow const& row, Uuid const& id);

}  // namespace nimbara
