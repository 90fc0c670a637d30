// The settings store that forgets with its process, which a test can let fail.
#pragma once

#include "platform/settings/scratch_settings_store.h"

namespace nimbara::test {

class MemorySettingsStore final : public ScratchSettingsStore {
 public:
  using ScratchSettingsStore::ScratchSettingsStore;

  Result<SettingValues, StoreError> read(StoreArea area) override {
    if (failure) return std::unexpected(*failure);
    return ScratchSettingsStore::read(area);
  }
  Result<void, StoreError> update(StoreArea area, StoreDecision const& decide) override {
    if (failure) return std::unexpected(*failure);
    return ScratchSettingsStore::update(area, decide);
  }

  std::optional<StoreError> failure;  ///< what every call should answer
};

}  // namespace nimbara::test
