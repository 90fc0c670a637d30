#include "app/places/user_data.h"

#include "base/json/json_codec.h"
#include "base/text/text.h"
#include "platform/settings/settings.h"

#include <variant>

namespace nimbara {

namespace {

/// Takes the settings that this version knows into `values`; the others into `taken.leftOut`.
SettingValues knownSettings(UserData const& data, SettingsRegistry const& registry, TakenData& taken) {
  SettingValues values;
  for (auto const& [key, text] : data.settings) {
    SettingDefinition const* const definition = registry.find(key);
    if (definition == nullptr) {
      taken.leftOut.push_back("there is no setting '" + oneLine(key, 60) + "'");
      continue;
    }
    if (auto value = parsedSetting(*definition, text)) {
      values[std::string(definition->key)] = std::move(*value);
    } else {
      taken.leftOut.push_back(value.error() + ", not '" + oneLine(text, 60) + "'");
    }
  }
  return values;
}

/// Into a list that another process may have changed, as often as the store asks.
void addPlaces(UserData const& data, PlaceList& list, TakenData& taken) {
  taken.places = taken.knownPlaces = 0;
  for (PlaceRow const& row : data.places) {
    auto place = savedPlace(row, Uuid::random());
    if (!place) continue;
    if (list.findNear(place->coordinate) != nullptr) {
      ++taken.knownPlaces;
    } else if (addPlace(list, std::move(*place))) {
      ++taken.places;
    }
  }
}

}  // namespace

Result<UserData, StoreError> userData(KeyedSettingsStore& store, Secrets secrets) {
  auto const reading = store.settings();
  if (reading.problem) return std::unexpected(*reading.problem);
  auto const list = Places(store).list();
  if (!list) return std::unexpected(list.error());
  UserData data;
  for (SettingDefinition const* const setting : store.registry().all()) {
    bool const isKept = secrets == Secrets::leftOut && setting->isSecret;
    if (!reading.settings.isChosen(setting->key) || isKept) continue;
    auto text = store.text(reading.settings, *setting);
    if (!text) return std::unexpected(text.error());
    data.settings[std::string(setting->key)] = std::move(*text);
  }
  int position = 0;
  for (SavedPlace const& place : list->places) data.places.push_back(placeRow(place, ++position));
  return data;
}

Result<UserData, std::string> parseUserData(std::string_view document) {
  auto data = decodeJson<UserData>(document);
  if (!data || data->format != UserData::kFormat || data->version < 1) {
    return std::unexpected("this is not a file that nimbara export has written" +
                           (data ? std::string() : " (" + data.error().text() + ")"));
  }
  if (data->version > UserData::kVersion) {
    return std::unexpected("the file comes from a newer version of Nimbara (its form is " +
                           std::to_string(data->version) + ", this version knows " +
                           std::to_string(UserData::kVersion) + ")");
  }
  return std::move(*data);
}

Result<TakenData, StoreError> takeUserData(SettingsStore& store, UserData const& data) {
  TakenData taken;
  SettingValues const values = knownSettings(data, store.registry(), taken);
  for (PlaceRow const& row : data.places) {
    if (!savedPlace(row, Uuid())) {
      taken.leftOut.push_back("the coordinates of '" + oneLine(row.name, 60) + "' are not valid");
    }
  }
  if (!values.empty()) {
    if (auto const set = store.setAll(values); !set) return std::unexpected(set.error());
  }
  taken.settings = values.size();
  auto const added = Places(store).change([&](PlaceList& list) -> PlaceResult {
    addPlaces(data, list, taken);
    return {};
  });
  if (!added) return std::unexpected(added.error());
  return taken;
}

}  // namespace nimbara
