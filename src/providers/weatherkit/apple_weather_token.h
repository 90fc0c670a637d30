// Who we are towards WeatherKit: the configured key and the tokens signed with it. The key stays in its file;
// it is read for each signature and appears in no log, error or other file.
#pragma once

#include "base/result.h"
#include "base/time/instant.h"
#include "platform/clock.h"
#include "platform/es256.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

struct AppleWeatherCredentials {
  std::filesystem::path keyFile;  ///< a private key on the curve P-256 in PEM form, without a password
  std::string keyID;
  std::string teamID;
  std::string serviceID;
  Es256Signer sign = {};

  bool isConfigured() const {
    return !keyFile.empty() && !keyID.empty() && !teamID.empty() && !serviceID.empty();
  }
};

inline constexpr std::chrono::minutes kAppleWeatherTokenLife{30};

/// A JSON Web Token (RFC 7519) signed by ES256, valid from `issued` on. The error is a sentence without any
/// part of the key; it is for the caller to name the file.
Result<std::string, std::string> signAppleWeatherToken(AppleWeatherCredentials const& credentials,
                                                       std::string_view keyPem, Instant issued);

/// The token in use, renewed some minutes before its end. Ends are counted on the steady clock, so that no
/// change of the wall clock keeps a dead token. For one owner at a time.
class AppleWeatherToken {
 public:
  AppleWeatherToken(Clock const& clock, AppleWeatherCredentials credentials)
      : clock_(clock), credentials_(std::move(credentials)) {}

  AppleWeatherCredentials const& credentials() const { return credentials_; }

  /// The error is a sentence that names the key's file.
  Result<std::string, std::string> get();
  /// Makes the next call sign again; `serverTime`, where it is known, corrects a wall clock that is off by
  /// more than a minute.
  void drop(std::optional<Instant> serverTime);

 private:
  Clock const& clock_;
  AppleWeatherCredentials credentials_;
  std::string token_;
  std::chrono::steady_clock::time_point renewal_;
  std::chrono::milliseconds clockError_{0};
};

}  // namespace nimbara
