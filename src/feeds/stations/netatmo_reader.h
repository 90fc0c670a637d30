// What Netatmo's interface answers: the stations of an account, public stations in a box, tokens, and errors
// in both of their shapes. Pure; any bytes may be given.
#pragma once

#include "base/result.h"
#include "feeds/stations/station_reading.h"

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// Why the service refuses.
struct NetatmoRefusal {
  enum class Kind {
    grantInvalid,   ///< the refresh token is void: the user must sign in again
    clientInvalid,  ///< the application's id or secret is wrong
    redirect,       ///< the address to return to is not the registered one
    tokenExpired,   ///< the access token is void or over
    scope,          ///< the consent does not cover reading stations
    tooMany,        ///< of requests
    backend,        ///< the service itself failed
    other
  };

  Kind kind = Kind::other;
  std::string message;  ///< the service's own words or code, on one line

  bool operator==(NetatmoRefusal const&) const = default;
};

template <>
inline constexpr auto enumNames<NetatmoRefusal::Kind> = std::to_array<std::string_view>(
    {"grantInvalid", "clientInvalid", "redirect", "tokenExpired", "scope", "tooMany", "backend", "other"});
static_assert(enumNamesComplete(NetatmoRefusal::Kind::other));

/// The refusal in an answer of that status; nothing where the answer is none.
std::optional<NetatmoRefusal> netatmoRefusal(int status, std::string_view body);

struct NetatmoTokens {
  std::string accessToken;
  std::string refreshToken;
  std::chrono::seconds life{0};  ///< of the access token

  bool operator==(NetatmoTokens const&) const = default;
};

Result<NetatmoTokens, DecodeError> parseNetatmoTokens(std::string_view body);

/// The account's stations, those of others that it follows included. A module that cannot be read is left
/// out.
Result<std::vector<StationReading>, DecodeError> parseNetatmoStations(std::string_view body);

/// Public stations. Each has one module for each of its measuring ones.
Result<std::vector<StationReading>, DecodeError> parseNetatmoPublic(std::string_view body);

}  // namespace nimbara
