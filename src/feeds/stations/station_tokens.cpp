#include "feeds/stations/station_tokens.h"

#include "base/files/file_turn.h"
#include "base/text/text.h"
#include "feeds/stations/netatmo_reader.h"

namespace nimbara {

namespace {

using Kind = StationProblem::Kind;

constexpr std::chrono::minutes kMargin{1};

std::string formOf(std::initializer_list<std::pair<std::string_view, std::string_view>> members) {
  std::string form;
  for (auto const& [name, value] : members) {
    form += (form.empty() ? "" : "&") + std::string(name) + "=" + percentEncoded(value);
  }
  return form;
}

/// What the file says of itself, which names no secret.
StationProblem unkept(std::string sentence) {
  return StationProblem::failed(ServiceFailure::of(ServiceFailure::Kind::incomplete, std::move(sentence)));
}

StationProblem problemOf(NetatmoRefusal const& refusal, int status) {
  switch (refusal.kind) {
    case NetatmoRefusal::Kind::grantInvalid:
    case NetatmoRefusal::Kind::clientInvalid:
      return StationProblem::of(Kind::signInAgain);
    case NetatmoRefusal::Kind::tooMany:
      return StationProblem::of(Kind::tooMany);
    default:
      break;
  }
  ServiceFailure failure = ServiceFailure::answered(status);
  failure.detail = refusal.message;
  return StationProblem::failed(std::move(failure));
}

StationProblem unlinked(StationLink const& link) {
  return StationProblem::of(link.mustSignIn ? Kind::signInAgain : Kind::notLinked);
}

StationProblem problemOf(SecretFault fault) {
  switch (fault) {
    case SecretFault::absent:
    case SecretFault::locked:
      return StationProblem::of(Kind::locked);
    case SecretFault::missing:
      return StationProblem::of(Kind::signInAgain);
    case SecretFault::failed:
      break;
  }
  return unkept("the desktop's keyring did not answer");
}

}  // namespace

bool StationTokens::isUsable(StationLink const& link, std::string const& refused) const {
  return !link.accessToken.empty() && link.accessToken != refused && link.expiresAt &&
         *link.expiresAt > clock_.now() + kMargin;
}

Result<std::string, StationProblem> StationTokens::accessToken(std::stop_token const& stop,
                                                               std::string const& refused) {
  std::lock_guard const lock(mutex_);
  if (unstored_) {
    if (auto const stored = store(*unstored_); !stored) return std::unexpected(stored.error());
  }
  auto link = linked();
  if (!link) return std::unexpected(link.error());
  if (isUsable(link->whole, refused)) return link->whole.accessToken;
  auto const turn = file_.turn(stop);
  if (!turn)
    return std::unexpected(StationProblem::failed(ServiceFailure::of(ServiceFailure::Kind::noAnswer)));
  // Another program may have refreshed meanwhile.
  link = linked();
  if (!link) return std::unexpected(link.error());
  if (isUsable(link->whole, refused)) return link->whole.accessToken;
  // The service is asked only where its answer can be kept: it voids what is there.
  if (auto const kept = file_.write(link->inFile); !kept) return std::unexpected(unkept(kept.error()));
  return settle(link->whole, refresh(link->whole, stop), stop);
}

Result<StationTokens::Linked, StationProblem> StationTokens::linked() const {
  auto inFile = file_.read();
  if (!inFile) return std::unexpected(unkept(inFile.error()));
  if (!inFile->hasAccount()) return std::unexpected(unlinked(*inFile));
  auto whole = secrets_.whole(*inFile);
  if (!whole) return std::unexpected(problemOf(whole.error()));
  return Linked{std::move(*inFile), std::move(*whole)};
}

/// In the turn.
Result<std::string, StationProblem> StationTokens::settle(StationLink const& used, Answer answer,
                                                          std::stop_token const& stop) {
  if (!answer && answer.error().kind == Kind::signInAgain) {
    auto again = file_.read();
    if (!again) return std::unexpected(unkept(again.error()));
    auto const whole = secrets_.whole(*again);
    bool const isOther = whole && whole->refreshToken != used.refreshToken && !whole->refreshToken.empty();
    if (isOther) answer = refresh(*whole, stop);
    if (!answer && answer.error().kind == Kind::signInAgain) {
      again->mustSignIn = true;
      again->accessToken.clear();
      if (auto const kept = file_.write(*again); !kept) return std::unexpected(unkept(kept.error()));
    }
  }
  if (!answer) return std::unexpected(answer.error());
  if (auto const stored = store(*answer); !stored) return std::unexpected(stored.error());
  return answer->accessToken;
}

StationTokens::Answer StationTokens::refresh(StationLink const& link, std::stop_token const& stop) {
  return ask(link,
             formOf({{"grant_type", "refresh_token"},
                     {"refresh_token", link.refreshToken},
                     {"client_id", link.clientId},
                     {"client_secret", link.clientSecret}}),
             stop);
}

/// The link with the tokens of the answer.
StationTokens::Answer StationTokens::ask(StationLink link, std::string const& form,
                                         std::stop_token const& stop) {
  constexpr std::size_t kLargestBody = std::size_t{64} << 10;
  constexpr std::chrono::seconds kTimeout{15};
  HttpRequest request;
  request.url = base_ + "/oauth2/token";
  request.headers = {{"Content-Type", "application/x-www-form-urlencoded"}, {"Accept", "application/json"}};
  request.timeout = kTimeout;
  request.maxBodyBytes = kLargestBody;
  request.body = form;
  Instant const asked = clock_.now();
  auto const answer = http_.get(request, stop);
  if (!answer) return std::unexpected(StationProblem::failed(ServiceFailure::network(answer.error())));
  if (auto const refusal = netatmoRefusal(answer->status, answer->body)) {
    return std::unexpected(problemOf(*refusal, answer->status));
  }
  auto tokens = parseNetatmoTokens(answer->body);
  if (!tokens) {
    return std::unexpected(StationProblem::failed(
        ServiceFailure::of(ServiceFailure::Kind::unreadable, "the response has no valid tokens")));
  }
  link.accessToken = std::move(tokens->accessToken);
  link.refreshToken = std::move(tokens->refreshToken);
  link.expiresAt = asked + tokens->life;
  link.mustSignIn = false;
  return link;
}

Result<void, StationProblem> StationTokens::store(StationLink link) {
  secrets_.place(link);
  if (auto const kept = file_.write(link); !kept) {
    unstored_ = link;
    return std::unexpected(unkept(kept.error()));
  }
  unstored_.reset();
  secrets_.move(std::move(link));
  return {};
}

/// Of a link that takes the place of another.
Result<void, StationProblem> StationTokens::storeFirst(Answer answer) {
  if (!answer) return std::unexpected(answer.error());
  if (auto const before = file_.read()) answer->keyring = before->keyring;
  return store(std::move(*answer));
}

Result<void, StationProblem> StationTokens::redeem(StationLink link, std::string const& code,
                                                   std::string const& redirect, std::stop_token const& stop) {
  std::lock_guard const lock(mutex_);
  auto const turn = file_.turn(stop);
  if (!turn)
    return std::unexpected(StationProblem::failed(ServiceFailure::of(ServiceFailure::Kind::noAnswer)));
  std::string const form = formOf({{"grant_type", "authorization_code"},
                                   {"code", code},
                                   {"redirect_uri", redirect},
                                   {"scope", "read_station"},
                                   {"client_id", link.clientId},
                                   {"client_secret", link.clientSecret}});
  return storeFirst(ask(std::move(link), form, stop));
}

Result<void, StationProblem> StationTokens::adopt(StationLink const& link, std::stop_token const& stop) {
  std::lock_guard const lock(mutex_);
  auto const turn = file_.turn(stop);
  if (!turn)
    return std::unexpected(StationProblem::failed(ServiceFailure::of(ServiceFailure::Kind::noAnswer)));
  return storeFirst(refresh(link, stop));
}

}  // namespace nimbara
