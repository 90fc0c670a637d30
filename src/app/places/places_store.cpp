// How the list of places lies in the store: a row for each place under its identifier, one for the selection,
// one for the current location.
#include "app/places/place_row.h"
#include "app/places/places.h"
#include "base/json/json_codec.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::string_view kSelectedKey = "selected";
constexpr std::string_view kHereKey = "currentLocation";

struct FixRow {
  std::optional<double> latitude;
  std::optional<double> longitude;
  std::optional<double> accuracyMetres;
  std::optional<Instant> time;
};

}  // namespace

template <>
inline constexpr auto jsonFields<FixRow> =
    FieldList{field("latitude", &FixRow::latitude), field("longitude", &FixRow::longitude),
              field("accuracyMetres", &FixRow::accuracyMetres), field("time", &FixRow::time)};

namespace {

std::string encoded(SavedPlace const& place, int position) {
  return encodeJson(placeRow(place, position));
}

std::string encoded(std::optional<LocationFix> const& fix) {
  if (!fix) return encodeJson(FixRow{});
  return encodeJson(
      FixRow{fix->coordinate.latitude, fix->coordinate.longitude, fix->accuracyMetres, fix->time});
}

std::optional<LocationFix> decodedFix(std::string_view text) {
  auto const row = decodeJson<FixRow>(text);
  if (!row || !row->latitude || !row->longitude || !row->time) return std::nullopt;
  LocationFix const fix{{*row->latitude, *row->longitude}, row->accuracyMetres.value_or(0), *row->time};
  return isValid(fix.coordinate) ? std::optional(fix) : std::nullopt;
}

struct PositionedPlace {
  int position;
  SavedPlace place;
};

std::optional<PositionedPlace> decodedPlace(Uuid const& id, std::string_view text) {
  auto const row = decodeJson<PlaceRow>(text);
  auto place = row ? savedPlace(*row, id) : std::nullopt;
  if (!place) return std::nullopt;
  return PositionedPlace{row->position, std::move(*place)};
}

PlaceList decoded(SettingValues const& rows) {
  PlaceList list;
  std::vector<PositionedPlace> places;
  for (auto const& [key, value] : rows) {
    auto const* const text = std::get_if<std::string>(&value);
    if (text == nullptr) continue;
    auto const id = Uuid::parse(key);
    auto place = id ? decodedPlace(*id, *text) : std::nullopt;
    if (place) places.push_back(std::move(*place));
    if (key == kSelectedKey) list.selected = Uuid::parse(*text);
    if (key == kHereKey) {
      list.offersCurrentLocation = true;
      list.lastFix = decodedFix(*text);
    }
  }
  std::ranges::stable_sort(places, {}, &PositionedPlace::position);
  for (PositionedPlace& positioned : places) list.places.push_back(std::move(positioned.place));
  bool const selectsHere = list.selected == kCurrentLocation && list.offersCurrentLocation;
  if (list.selected && !selectsHere && list.find(*list.selected) == nullptr) list.selected.reset();
  return list;
}

/// What makes the rows of `before` those of `after`; rows that belong to neither are not touched.
StoreChanges changesBetween(PlaceList const& before, PlaceList const& after) {
  StoreChanges changes;
  for (SavedPlace const& place : before.places) changes[place.id.text()] = std::nullopt;
  int position = 0;
  for (SavedPlace const& place : after.places) changes[place.id.text()] = encoded(place, ++position);
  changes[std::string(kSelectedKey)] =
      after.selected ? std::optional<SettingValue>(after.selected->text()) : std::nullopt;
  changes[std::string(kHereKey)] =
      after.offersCurrentLocation ? std::optional<SettingValue>(encoded(after.lastFix)) : std::nullopt;
  return changes;
}

}  // namespace

Result<PlaceList, StoreError> Places::list() {
  auto const rows = store_.read(StoreArea::places);
  if (!rows) return std::unexpected(rows.error());
  return decoded(*rows);
}

Result<PlaceList, StoreError> Places::change(std::function<PlaceResult(PlaceList&)> const& change) {
  PlaceList after;
  auto const changed =
      store_.update(StoreArea::places, [&](SettingValues const& rows) -> Result<StoreChanges, StoreError> {
        PlaceList const before = decoded(rows);
        after = before;
        if (auto const done = change(after); !done) {
          return std::unexpected(StoreError{StoreError::Kind::refused, done.error()});
        }
        return changesBetween(before, after);
      });
  if (!changed) return std::unexpected(changed.error());
  return after;
}

std::string chosenWarningSource(SettingsStore& store, Coordinate coordinate) {
  auto const list = Places(store).list();
  SavedPlace const* const place = list ? list->findNear(coordinate) : nullptr;
  return place == nullptr ? std::string() : place->warningSource.value_or("");
}

}  // namespace nimbara
