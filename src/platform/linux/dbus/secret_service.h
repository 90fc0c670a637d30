// Secrets in the desktop's keyring, by the interface that GNOME's and KDE's keyrings share. Each question has
// a connection of its own, as they are hours apart.
#pragma once

#include "platform/secret_store.h"

#include <string>

namespace nimbara {

class SecretService final : public SecretStore {
 public:
  /// The session's own bus for an empty address.
  explicit SecretService(std::string sessionBus) : sessionBus_(std::move(sessionBus)) {}

  Result<void, SecretFault> keep(std::string const& id, std::string const& label,
                                 std::string const& secret) override;
  Result<std::string, SecretFault> find(std::string const& id) override;
  Result<void, SecretFault> forget(std::string const& id) override;

 private:
  std::string sessionBus_;
};

}  // namespace nimbara
