#include "app/services/station_linking.h"

#include "platform/linux/network/consent_listener.h"

#include <fmt/format.h>

#include <random>

namespace nimbara {

namespace {

using Outcome = LinkEnd::Outcome;

constexpr std::uint16_t kConsentPort = 8917;
constexpr char kConsentPath[] = "/nimbara";

/// Nobody else may guess it: whoever can answers in the service's stead. Of the system's entropy, 128 bits.
std::string unguessable() {
  std::random_device entropy;
  return fmt::format("{:08x}{:08x}{:08x}{:08x}", entropy(), entropy(), entropy(), entropy());
}

LinkEnd endOf(ConsentFailure const& failure) {
  constexpr Outcome kOutcomes[] = {Outcome::refused, Outcome::late, Outcome::cancelled};
  return {.outcome = kOutcomes[static_cast<std::size_t>(failure.kind)], .reason = failure.reason};
}

LinkEnd endOf(StationService& service, Result<void, StationProblem> const& told) {
  using Kind = StationProblem::Kind;
  if (told) {
    service.forget();
    return {};
  }
  if (told.error().kind == Kind::signInAgain) return {.outcome = Outcome::notAccepted};
  if (told.error().kind == Kind::tooMany) return {.outcome = Outcome::tooMany};
  return {.outcome = Outcome::failed, .failure = told.error().failure};
}

}  // namespace

LinkEnd linkByConsent(StationService& service, StationLink link, ConsentWays const& ways,
                      std::stop_token const& stop) {
  auto const listener = ConsentListener::open(kConsentPort);
  if (!listener) return {.outcome = Outcome::portTaken, .reason = listener.error()};
  std::string const state = unguessable();
  ways.open(service.authorizeUrl(link.clientId, kConsentRedirect, state));
  auto const code = listener->wait(kConsentPath, state, ways.done, ways.failed, ways.patience, stop);
  if (!code) return endOf(code.error());
  return endOf(service, service.tokens().redeem(std::move(link), *code, kConsentRedirect, stop));
}

LinkEnd linkByToken(StationService& service, StationLink const& link, std::stop_token const& stop) {
  return endOf(service, service.tokens().adopt(link, stop));
}

LinkEnd linkByAddress(StationService& service, StationLink link, std::optional<Coordinate> place,
                      std::stop_token const& stop) {
  auto const document = service.probe(link.address, stop);
  if (!document) return {.outcome = Outcome::failed, .failure = document.error().failure};
  link.kind = StationLinkKind::address;
  if (!document->station.place()) {
    if (!place) return {.outcome = Outcome::noPlace};
    link.latitude = place->latitude;
    link.longitude = place->longitude;
  }
  auto const kept = service.relink(link);
  if (!kept)
    return {.outcome = Outcome::failed,
            .failure = ServiceFailure::of(ServiceFailure::Kind::incomplete, kept.error())};
  return {};
}

}  // namespace nimbara
