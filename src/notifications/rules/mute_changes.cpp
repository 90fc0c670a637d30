#include "notifications/rules/mute_changes.h"

namespace nimbara {

Result<void, StoreError> changeMutes(SettingsStore& store, MuteChange const& change) {
  constexpr std::string_view kKey = "notify_mutedKinds";
  return store.update(StoreArea::settings,
                      [&](SettingValues const& stored) -> Result<StoreChanges, StoreError> {
                        auto mutes = parseMutes(Settings(store.registry(), stored).text(kKey));
                        return StoreChanges{{std::string(kKey), encodeMutes(change(std::move(mutes)))}};
                      });
}

}  // namespace nimbara
