// What is the user's own as a file, for another machine or a safe place: settings with rules and mutes, and
// the places.
#pragma once

#include "app/places/place_row.h"
#include "app/settings/keyed_settings_store.h"
#include "base/json/json.h"
#include "base/result.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct UserData {
  static constexpr std::string_view kFormat = "nimbara";
  static constexpr int kVersion = 1;

  std::string format{kFormat};
  int version = kVersion;
  std::map<std::string, std::string>
      settings;                  ///< those that the user chose, as `nimbara settings set` takes them
  std::vector<PlaceRow> places;  ///< in their order
};

template <>
inline constexpr auto jsonFields<UserData> =
    FieldList{field("format", &UserData::format), field("version", &UserData::version),
              fieldOr("settings", &UserData::settings), fieldOr("places", &UserData::places)};

enum class Secrets { leftOut, included };

/// The chosen settings and the saved places; keys and tokens only if `secrets` says so.
Result<UserData, StoreError> userData(KeyedSettingsStore& store, Secrets secrets);

/// The error is a sentence without a full stop.
Result<UserData, std::string> parseUserData(std::string_view document);

struct TakenData {
  std::size_t settings = 0;
  std::size_t places = 0;
  std::size_t knownPlaces = 0;            ///< already saved, and left as they are
  std::vector<std::string> leftOut = {};  ///< a sentence each for what this version does not take
};

/// Sets the settings and adds the places; what else the user has stays. Each of the two wholly or not at all.
Result<TakenData, StoreError> takeUserData(SettingsStore& store, UserData const& data);

}  // namespace nimbara
