#include "feeds/stations/station_secrets.h"

#include "base/json/json_codec.h"
#include "base/uuid.h"

namespace nimbara {

namespace {

constexpr char kLabel[] = "Nimbara: sign-in of the weather station";

/// What lies in the keyring.
struct Secrets {
  std::string clientSecret;
  std::string accessToken;
  std::string refreshToken;
};

}  // namespace

template <>
inline constexpr auto jsonFields<Secrets> =
    FieldList{fieldOr("clientSecret", &Secrets::clientSecret), fieldOr("accessToken", &Secrets::accessToken),
              field("refreshToken", &Secrets::refreshToken)};

SecretStore& StationSecrets::store() const {
  std::lock_guard const lock(mutex_);
  if (!store_) store_ = make_();
  return *store_;
}

Result<StationLink, SecretFault> StationSecrets::whole(StationLink link) const {
  if (link.tokensIn() != StationTokensIn::keyring) return link;
  if (!make_) return std::unexpected(SecretFault::absent);
  auto const kept = store().find(link.keyring);
  if (!kept) return std::unexpected(kept.error());
  auto secrets = decodeJson<Secrets>(*kept);
  if (!secrets || secrets->refreshToken.empty()) return std::unexpected(SecretFault::missing);
  link.clientSecret = std::move(secrets->clientSecret);
  link.accessToken = std::move(secrets->accessToken);
  link.refreshToken = std::move(secrets->refreshToken);
  return link;
}

void StationSecrets::place(StationLink& link) const {
  if (make_ && link.keyring.empty()) link.keyring = Uuid::random().text();
}

void StationSecrets::move(StationLink link) const {
  if (!make_ || link.keyring.empty()) return;
  std::string const secrets = encodeJson(Secrets{link.clientSecret, link.accessToken, link.refreshToken});
  if (!store().keep(link.keyring, kLabel, secrets)) return;
  // Its word for it is not enough: what the file loses now is nowhere else.
  if (store().find(link.keyring) != secrets) return;
  link.clientSecret.clear();
  link.accessToken.clear();
  link.refreshToken.clear();
  std::ignore = file_.write(link);
}

void StationSecrets::forget(StationLink const& link) const {
  if (make_ && !link.keyring.empty()) std::ignore = store().forget(link.keyring);
}

}  // namespace nimbara
