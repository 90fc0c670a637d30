// How a weather station is linked, for every face: by the consent page in the browser, with a refresh token,
// or by an address in the user's own network. Blocks until it is done; any thread.
#pragma once

#include "base/geodesy.h"
#include "feeds/stations/station_service.h"

#include <functional>

namespace nimbara {

/// What became of it.
struct LinkEnd {
  enum class Outcome {
    linked,
    refused,      ///< the user said no, or the service for the reason in `reason`
    late,         ///< nobody came back from the browser in time
    cancelled,    ///< `stop` was asked for
    portTaken,    ///< another program listens on the port, `reason` says it
    notAccepted,  ///< the service does not take the application or the token
    tooMany,      ///< requests; in an hour again
    noPlace,      ///< the station does not say where it stands, and nobody else does
    failed        ///< `failure` says why
  };

  Outcome outcome = Outcome::linked;
  std::string reason = {};  ///< a clause in English
  ServiceFailure failure = {};

  bool isLinked() const { return outcome == Outcome::linked; }
  bool operator==(LinkEnd const&) const = default;
};

template <>
inline constexpr auto enumNames<LinkEnd::Outcome> = std::to_array<std::string_view>(
    {"linked", "refused", "late", "cancelled", "portTaken", "notAccepted", "tooMany", "noPlace", "failed"});
static_assert(enumNamesComplete(LinkEnd::Outcome::failed));

/// What the user enters as the application's redirect URI, exactly; the port is part of it.
inline constexpr char kConsentRedirect[] = "http://localhost:8917/nimbara";

struct ConsentWays {
  std::function<void(std::string const& url)> open;  ///< shows the page; called once somebody listens
  std::string done;                                  ///< what the browser shows in the end, plain text
  std::string failed;
  std::chrono::milliseconds patience = std::chrono::minutes(5);
};

/// `link` has the application's ID and secret. What it was before stays where this fails.
LinkEnd linkByConsent(StationService& service, StationLink link, ConsentWays const& ways,
                      std::stop_token const& stop);
/// `link` has the refresh token, too.
LinkEnd linkByToken(StationService& service, StationLink const& link, std::stop_token const& stop);
/// `link` has the address and perhaps a name; `place` is where the station stands unless it says so itself.
LinkEnd linkByAddress(StationService& service, StationLink link, std::optional<Coordinate> place,
                      std::stop_token const& stop);

}  // namespace nimbara
