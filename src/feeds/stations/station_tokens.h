// The tokens of the user's account. Each refresh voids the refresh token that it was asked with, so the new
// one is on the disk before anything is asked with what came beside it, and only one of the user's programs
// refreshes at a time; the others read what it has written. Owned by the station service.
#pragma once

#include "feeds/stations/station_link.h"
#include "feeds/stations/station_secrets.h"
#include "platform/clock.h"
#include "platform/http/http_client.h"
#include "platform/service_failure.h"

#include <mutex>

namespace nimbara {

/// Why nothing can be asked of the account.
struct StationProblem {
  enum class Kind {
    notLinked,
    signInAgain,  ///< the user must; nobody asks until then
    locked,       ///< the keyring with the tokens is, or is not there; nobody asks until it opens
    tooMany,      ///< requests; not to be asked for an hour
    expired,      ///< the access token is void
    failed        ///< `failure` says why
  };

  Kind kind = Kind::failed;
  ServiceFailure failure;

  static StationProblem of(Kind kind) { return {kind, {}}; }
  static StationProblem failed(ServiceFailure failure) { return {Kind::failed, std::move(failure)}; }
  bool operator==(StationProblem const&) const = default;
};

template <>
inline constexpr auto enumNames<StationProblem::Kind> =
    std::to_array<std::string_view>({"notLinked", "signInAgain", "locked", "tooMany", "expired", "failed"});
static_assert(enumNamesComplete(StationProblem::Kind::failed));

template <>
inline constexpr auto jsonFields<StationProblem> =
    FieldList{field("kind", &StationProblem::kind), fieldOr("failure", &StationProblem::failure)};

class StationTokens {
 public:
  /// `base` is "https://api.netatmo.com".
  StationTokens(HttpClient& http, Clock const& clock, std::string base, StationLinkFile const& file,
                StationSecrets const& secrets)
      : http_(http), clock_(clock), base_(std::move(base)), file_(file), secrets_(secrets) {}

  /// An access token that holds for another minute and is not `refused`. Blocks for a refresh where one is
  /// due. Any thread.
  Result<std::string, StationProblem> accessToken(std::stop_token const& stop,
                                                  std::string const& refused = {});

  /// The first tokens, for the code that the consent has given to the address `redirect`, stored with `link`.
  Result<void, StationProblem> redeem(StationLink link, std::string const& code, std::string const& redirect,
                                      std::stop_token const& stop);
  /// The like for a refresh token that the user has.
  Result<void, StationProblem> adopt(StationLink const& link, std::stop_token const& stop);

 private:
  using Answer = Result<StationLink, StationProblem>;

  /// The link as the file has it, and with its secrets.
  struct Linked {
    StationLink inFile;
    StationLink whole;
  };

  Result<Linked, StationProblem> linked() const;
  Answer ask(StationLink link, std::string const& form, std::stop_token const& stop);
  Answer refresh(StationLink const& link, std::stop_token const& stop);
  Result<std::string, StationProblem> settle(StationLink const& used, Answer answer,
                                             std::stop_token const& stop);
  bool isUsable(StationLink const& link, std::string const& refused) const;
  Result<void, StationProblem> store(StationLink link);
  Result<void, StationProblem> storeFirst(Answer answer);

  HttpClient& http_;
  Clock const& clock_;
  std::string base_;
  StationLinkFile const& file_;
  StationSecrets const& secrets_;
  std::mutex mutex_;                     // guards the next
  std::optional<StationLink> unstored_;  ///< tokens that a full disk has refused
};

}  // namespace nimbara
