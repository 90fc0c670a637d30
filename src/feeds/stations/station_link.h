// How the user's weather station is reached: one small file that belongs to the user alone, shared by all of
// the user's programs. It has secrets in it unless the desktop's keyring has them; nothing of it is ever
// logged or listed.
#pragma once

#include "base/json/json.h"
#include "base/time/instant.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace nimbara {

class FileTurn;

enum class StationLinkKind {
  none,
  account,  ///< the user's own stations, through an application of the user's at Netatmo
  around,   ///< the public stations around a place, through the same
  address   ///< a document in the user's own network
};

template <>
inline constexpr auto enumNames<StationLinkKind> =
    std::to_array<std::string_view>({"none", "account", "around", "address"});
static_assert(enumNamesComplete(StationLinkKind::address));

/// Where the tokens of the account lie.
enum class StationTokensIn { nowhere, file, keyring };

template <>
inline constexpr auto enumNames<StationTokensIn> =
    std::to_array<std::string_view>({"nowhere", "file", "keyring"});
static_assert(enumNamesComplete(StationTokensIn::keyring));

struct StationLink {
  StationLinkKind kind = StationLinkKind::none;
  std::string clientId = {};
  std::string clientSecret = {};
  std::string accessToken = {};
  std::string refreshToken = {};
  std::optional<Instant> expiresAt = {};  ///< of the access token
  bool mustSignIn = false;   ///< the service has voided the tokens; it is not asked again with them
  std::string keyring = {};  ///< identifier of the secrets there; those that stand here are newer
  std::string chosen = {};   ///< identifier of the station; empty: the first
  std::string address = {};
  std::string name = {};  ///< of a station behind an address
  std::optional<double> latitude = {};
  std::optional<double> longitude = {};  ///< of that station, or of the place around which others are

  StationTokensIn tokensIn() const {
    if (!refreshToken.empty()) return StationTokensIn::file;
    return keyring.empty() ? StationTokensIn::nowhere : StationTokensIn::keyring;
  }
  /// There is something to ask Netatmo with.
  bool hasAccount() const { return tokensIn() != StationTokensIn::nowhere && !mustSignIn; }
  bool operator==(StationLink const&) const = default;
};

template <>
inline constexpr auto jsonFields<StationLink> = FieldList{field("kind", &StationLink::kind),
                                                          fieldOr("clientId", &StationLink::clientId),
                                                          fieldOr("clientSecret", &StationLink::clientSecret),
                                                          fieldOr("accessToken", &StationLink::accessToken),
                                                          fieldOr("refreshToken", &StationLink::refreshToken),
                                                          field("expiresAt", &StationLink::expiresAt),
                                                          fieldOr("mustSignIn", &StationLink::mustSignIn),
                                                          fieldOr("keyring", &StationLink::keyring),
                                                          fieldOr("chosen", &StationLink::chosen),
                                                          fieldOr("address", &StationLink::address),
                                                          fieldOr("name", &StationLink::name),
                                                          field("latitude", &StationLink::latitude),
                                                          field("longitude", &StationLink::longitude)};

/// From public stations back to those of the account.
inline void toAccount(StationLink& link) {
  link.kind = StationLinkKind::account;
  link.chosen.clear();
  link.name.clear();
  link.latitude.reset();
  link.longitude.reset();
}

class StationLinkFile {
 public:
  /// An empty path: there is never a link.
  explicit StationLinkFile(std::filesystem::path file) : file_(std::move(file)) {}

  /// What is kept. A file that is missing is no link; one that cannot be read is an error, a sentence, so
  /// that nobody writes over it.
  Result<StationLink, std::string> read() const;
  /// On the disk before it returns. Whoever changes the link has the turn.
  Result<void, std::string> write(StationLink const& link) const;
  /// Waits until no other of the user's programs has it, or `stop`; null then.
  std::unique_ptr<FileTurn> turn(std::stop_token const& stop) const;
  /// Reads, changes and writes in a turn of its own.
  Result<void, std::string> change(std::function<void(StationLink&)> const& apply) const;
  /// Away with all of it.
  Result<void, std::string> remove() const;

 private:
  std::filesystem::path file_;
};

}  // namespace nimbara
