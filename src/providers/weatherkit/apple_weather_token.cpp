#include "providers/weatherkit/apple_weather_token.h"

#include "base/base64.h"
#include "base/files/file.h"
#include "base/json/json.h"

#include <cstring>

namespace nimbara {

namespace {

constexpr std::chrono::minutes kRenewBefore{5};
constexpr std::chrono::minutes kTolerableClockError{1};
constexpr std::size_t kLargestKeyFile = std::size_t{64} << 10;

std::string tokenHeader(AppleWeatherCredentials const& credentials) {
  JsonWriter json;
  json.beginObject();
  json.member("alg", "ES256");
  json.member("kid", credentials.keyID);
  json.member("id", credentials.teamID + "." + credentials.serviceID);
  json.endObject();
  return json.take();
}

std::string tokenPayload(AppleWeatherCredentials const& credentials, Instant issued) {
  auto const seconds = std::chrono::floor<std::chrono::seconds>(issued).time_since_epoch();
  JsonWriter json;
  json.beginObject();
  json.member("iss", credentials.teamID);
  json.member("iat", seconds.count());
  json.member("exp", (seconds + kAppleWeatherTokenLife).count());
  json.member("sub", credentials.serviceID);
  json.endObject();
  return json.take();
}

}  // namespace

Result<std::string, std::string> signAppleWeatherToken(AppleWeatherCredentials const& credentials,
                                                       std::string_view keyPem, Instant issued) {
  std::string const signedPart =
      base64UrlEncoded(tokenHeader(credentials)) + "." + base64UrlEncoded(tokenPayload(credentials, issued));
  auto const signature = credentials.sign(keyPem, signedPart);
  if (!signature) return signature;
  return signedPart + "." + base64UrlEncoded(*signature);
}

Result<std::string, std::string> AppleWeatherToken::get() {
  if (!token_.empty() && clock_.steadyNow() < renewal_) return token_;
  auto pem = readFile(credentials_.keyFile, kLargestKeyFile);
  if (!pem) return std::unexpected("WeatherKit cannot be used: " + pem.error());
  auto token = signAppleWeatherToken(credentials_, *pem, clock_.now() + clockError_);
  explicit_bzero(pem->data(), pem->size());
  if (!token) {
    return std::unexpected("WeatherKit cannot be used: the key file " + credentials_.keyFile.string() +
                           " cannot be used: " + token.error());
  }
  token_ = std::move(*token);
  renewal_ = clock_.steadyNow() + kAppleWeatherTokenLife - kRenewBefore;
  return token_;
}

void AppleWeatherToken::drop(std::optional<Instant> serverTime) {
  token_.clear();
  if (!serverTime) return;
  auto const error = *serverTime - clock_.now();
  clockError_ = std::chrono::abs(error) > kTolerableClockError ? error : std::chrono::milliseconds(0);
}

}  // namespace nimbara
