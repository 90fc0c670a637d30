// The user's saved places in their order, the selected one among them, and the current location where the
// user wants it. The list is a value that plain functions change; `Places` keeps it in the store, each change
// one transaction.
#pragma once

#include "app/places/place.h"
#include "base/geodesy.h"
#include "base/result.h"
#include "base/uuid.h"
#include "notifications/place_choice.h"
#include "platform/location_source.h"
#include "platform/settings/settings_store.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct SavedPlace {
  Uuid id;
  std::string name;
  std::string country;      ///< ISO 3166, two letters, or empty
  std::string countryName;  ///< in the language of the search that found it, or empty
  std::string region;
  Coordinate coordinate;
  std::string timeZone;                                     ///< empty when unknown
  std::optional<PlaceChoice> notifications = std::nullopt;  ///< what was chosen; else the default holds
  std::optional<std::string> warningSource = std::nullopt;  ///< of official ones; else the usual one is asked

  bool operator==(SavedPlace const&) const = default;
};

/// Stands for the current location among the identifiers of places.
inline constexpr Uuid kCurrentLocation{};
/// Places closer to each other are the same.
inline constexpr double kSamePlaceKm = 0.1;

struct PlaceList {
  std::vector<SavedPlace> places;
  std::optional<Uuid> selected;
  bool offersCurrentLocation = false;
  std::optional<LocationFix> lastFix;  ///< tells by its time how old it is

  SavedPlace const* find(Uuid const& id) const;
  /// The place of just that name, whatever the letter case and accents; the first of equals.
  SavedPlace const* findNamed(std::string_view text) const;
  /// The place by its identifier or its name, whatever the letter case and accents: the whole name before its
  /// beginning, the first of equals.
  SavedPlace const* find(std::string_view text) const;
  /// The place that is the same as one at `coordinate`.
  SavedPlace const* findNear(Coordinate coordinate) const;
  bool operator==(PlaceList const&) const = default;
};

/// Changes of the list. An error is a sentence and leaves the list as it was.
using PlaceResult = Result<void, std::string>;
/// Puts it at the end and selects it when nothing is selected.
PlaceResult addPlace(PlaceList& list, SavedPlace place);
/// When it was selected, the first of those that remain is.
PlaceResult removePlace(PlaceList& list, Uuid const& id);
PlaceResult renamePlace(PlaceList& list, Uuid const& id, std::string_view name);
/// `position` counts from one.
PlaceResult movePlace(PlaceList& list, Uuid const& id, int position);
PlaceResult selectPlace(PlaceList& list, Uuid const& id);
/// Nothing leaves it to the default again.
PlaceResult chooseNotifications(PlaceList& list, Uuid const& id, std::optional<PlaceChoice> choice);
/// By its name; empty or "usual" for the usual one. The error says which are possible for the place.
PlaceResult chooseWarningSource(PlaceList& list, Uuid const& id, std::string_view name);
PlaceResult selectCurrentLocation(PlaceList& list, LocationFix const& fix);
/// The device is elsewhere; the selection stays.
PlaceResult moveCurrentLocation(PlaceList& list, LocationFix const& fix);
PlaceResult removeCurrentLocation(PlaceList& list);

/// The name of the usual source of warnings where another may be chosen.
inline constexpr std::string_view kUsualSource = "usual";

class Places {
 public:
  explicit Places(SettingsStore& store) : store_(store) {}

  /// Rows that cannot be understood are skipped, and kept.
  Result<PlaceList, StoreError> list();
  /// The list after `change`.
  Result<PlaceList, StoreError> change(std::function<PlaceResult(PlaceList&)> const& change);

 private:
  SettingsStore& store_;
};

/// The source of official warnings that was chosen for the saved place at `coordinate`; empty: the usual one.
std::string chosenWarningSource(SettingsStore& store, Coordinate coordinate);

}  // namespace nimbara
