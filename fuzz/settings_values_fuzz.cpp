// Any bytes as the values of the settings database, as an older, a newer or a damaged program may have left
// them: what is read of them must be written and read again to the same.

#include "app/places/places.h"
#include "app/settings/settings_registry.h"
#include "notifications/engine/engine_state.h"
#include "notifications/engine/notification_state.h"
#include "notifications/log/notification_log.h"
#include "platform/settings/scratch_settings_store.h"

#include <cstdint>
#include <cstdlib>

namespace {

using namespace nimbara;

/// The first byte chooses the key, the second the type; the rest is the value.
SettingValue valueOf(std::uint8_t type, std::string_view bytes) {
  switch (type % 4) {
    case 0:
      return bytes.size() % 2 == 0;
    case 1:
      return static_cast<std::int64_t>(bytes.size()) - 100;
    case 2:
      return static_cast<double>(bytes.size()) * 1e300;
    default:
      return std::string(bytes);
  }
}

constexpr std::string_view kStateKeys[] = {"notif_deliveredIDs",   "notif_activeConditionIDs",
                                           "notif_lastActiveAt",   "notif_lastToldAt",
                                           "notif_shown",          "notif_scheduled",
                                           "notif_aiSummaryCache", "notif_firstCheckedAt",
                                           "notif_knownStorms",    "notif_log",
                                           "customNotifications"};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  if (size < 2) return 0;
  std::string_view const bytes(reinterpret_cast<char const*>(data) + 2, size - 2);
  SettingValue const value = valueOf(data[1], bytes);
  ScratchSettingsStore store(settingsRegistry());
  auto const& definitions = settingsRegistry().all();
  store.fill(StoreArea::settings, {{std::string(definitions[data[0] % definitions.size()]->key), value}});
  static_cast<void>(store.settings());
  SettingValues const state{{std::string(kStateKeys[data[0] % std::size(kStateKeys)]), value}};
  store.fill(StoreArea::state, state);
  static_cast<void>(notificationLogOf(state));
  static_cast<void>(NotificationState(store).customNotifications());
  if (auto const engine = engineStateOf(state)) {
    SettingValues again;
    for (auto const& [key, change] : changesOf(*engine)) {
      if (change) again.emplace(key, *change);
    }
    auto const reread = engineStateOf(again);
    if (!reread || *reread != *engine) std::abort();
  }
  store.fill(StoreArea::places,
             {{"places", value}, {"selected", value}, {std::string(bytes.substr(0, 36)), value}});
  static_cast<void>(Places(store).list());
  return 0;
}
