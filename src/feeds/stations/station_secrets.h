// The secrets of the link, in the desktop's keyring where that is open, else in the link's own file. They are
// in the file first and leave it when the keyring has shown that it has them: whatever the file has is newer
// than what the keyring has. Owned by the station service. Any thread; whoever moves or forgets has the turn.
#pragma once

#include "feeds/stations/station_link.h"
#include "platform/secret_store.h"

#include <mutex>

namespace nimbara {

class StationSecrets {
 public:
  /// Without a maker, secrets stay in the file.
  StationSecrets(StationLinkFile const& file, MakeSecretStore make) : file_(file), make_(std::move(make)) {}

  /// The link with those of its secrets that the keyring has.
  Result<StationLink, SecretFault> whole(StationLink link) const;
  /// Before it is written: where in the keyring its secrets will lie.
  void place(StationLink& link) const;
  /// From the file, where the link lies with its secrets. What fails leaves them there.
  void move(StationLink link) const;
  /// Those in the keyring; a keyring that is locked or gone keeps them.
  void forget(StationLink const& link) const;

 private:
  SecretStore& store() const;

  StationLinkFile const& file_;
  MakeSecretStore make_;
  mutable std::mutex mutex_;  // guards the next
  mutable std::unique_ptr<SecretStore> store_;
};

}  // namespace nimbara
