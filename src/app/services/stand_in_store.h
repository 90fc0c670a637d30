// The user's store while stand-ins answer for the services: settings and places are the user's own, but what
// the program remembers of made-up news stays apart from what it remembers of real ones.
#pragma once

#include "platform/settings/settings_store.h"

#include <memory>

namespace nimbara {

class StandInStore final : public SettingsStore {
 public:
  /// `store` must outlive it.
  explicit StandInStore(SettingsStore& store) : SettingsStore(store.registry()), store_(store) {}

  Result<SettingValues, StoreError> read(StoreArea area) override;
  Result<void, StoreError> update(StoreArea area, StoreDecision const& decide) override;
  Result<std::unique_ptr<SettingsWatch>, StoreError> watch() override { return store_.watch(); }

 private:
  SettingsStore& store_;
};

}  // namespace nimbara
