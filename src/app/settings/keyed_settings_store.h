// A settings store that holds no key of a service: whoever sets one stores a reference, and `keys()` has the
// key. What an earlier version has left among the settings is moved. A key is never lost on its way: killed
// at any moment, the settings have it, or a reference to it. Any thread.
#pragma once

#include "app/settings/service_keys.h"
#include "platform/settings/settings_store.h"

#include <filesystem>
#include <memory>

namespace nimbara {

class KeyedSettingsStore final : public SettingsStore {
 public:
  /// Keys lie in `directory`, beside the settings of `store`.
  KeyedSettingsStore(std::unique_ptr<SettingsStore> store, std::filesystem::path const& directory,
                     MakeSecretStore keyring);

  Result<SettingValues, StoreError> read(StoreArea area) override { return store_->read(area); }
  Result<void, StoreError> update(StoreArea area, StoreDecision const& decide) override;
  Result<std::unique_ptr<SettingsWatch>, StoreError> watch() override { return store_->watch(); }

  /// As a person types it, a key itself; refused with the reason where nobody has that now.
  Result<std::string, StoreError> text(Settings const& settings, SettingDefinition const& definition) const;
  ServiceKeys const& keys() const { return keys_; }
  /// The settings, after the keys among them have been put into the file. Asks no keyring.
  SettingsReading opened();
  /// Puts keys that lie among the settings into the file and on into the keyring. For programs that run for
  /// long; blocks for seconds at most.
  void settle();

 private:
  bool adopt();
  bool concernsKeys(StoreDecision const& decide);
  Result<StoreChanges, StoreError> withReferences(Result<StoreChanges, StoreError> changes) const;
  void settleInTurn(ServiceKeys::Others others);

  std::unique_ptr<SettingsStore> store_;
  ServiceKeys keys_;
};

}  // namespace nimbara
