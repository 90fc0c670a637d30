#include "providers/metnorway/yr_no_client.h"

#include "base/text/number.h"
#include "platform/http/http_expiry.h"
#include "providers/common/service_answer.h"
#include "providers/metnorway/yr_no_join.h"
#include "providers/metnorway/yr_no_parser.h"

namespace nimbara {

namespace {

constexpr int kDeprecated = 203;
constexpr int kNotModified = 304;

std::string fourDecimals(double degrees) {
  constexpr double kSteps = 1e4;
  return plainDecimal(roundHalfAway(degrees * kSteps) / kSteps + 0.0);
}

}  // namespace

std::string yrNoPath(Coordinate place) {
  return "/weatherapi/locationforecast/2.0/complete?lat=" + fourDecimals(place.latitude) +
         "&lon=" + fourDecimals(place.longitude);
}

YrNoClient::YrNoClient(HttpClient& http, Clock const& clock, ServiceAddress address, TimeZoneLookup timeZone,
                       std::filesystem::path cacheDirectory)
    : ForecastClient(http, clock, std::move(address)),
      timeZone_(std::move(timeZone)),
      kept_(std::move(cacheDirectory), ".yrno") {}

Result<WttrResponse, APIError> YrNoClient::fetch(Coordinate place, std::stop_token const& stop) {
  std::string const path = yrNoPath(place);
  auto kept = kept_.find(path);
  // Only what decodes was kept, but a file may have been tampered with since.
  if (kept && !parseYrNo(kept->body)) kept.reset();
  if (kept && kept->isFresh(clock().now())) return read(kept->body, place);
  HttpHeaders headers;
  if (kept && !kept->lastModified.empty()) headers.emplace_back("If-Modified-Since", kept->lastModified);
  auto answer = get(path, headers, stop);
  if (!answer) return std::unexpected(answer.error());
  if (answer->status == kNotModified && kept) return readKept(path, std::move(*kept), *answer, place);
  return readNew(path, std::move(*answer), place);
}

Result<WttrResponse, APIError> YrNoClient::read(std::string_view body, Coordinate place) const {
  auto const steps = parseYrNo(body);
  if (!steps) return std::unexpected(APIError::decoding(steps.error()));
  return joinYrNo(*steps, place, placeCalendar(timeZone_, place), clock().now());
}

Result<WttrResponse, APIError> YrNoClient::readNew(std::string const& path, HttpResponse answer,
                                                   Coordinate place) {
  if (auto refusal = refusalIn(answer)) return std::unexpected(std::move(*refusal));
  if (answer.status == kDeprecated)
    warn("MET Norway reports that this version of its forecast is deprecated");
  auto record = read(answer.body, place);
  if (!record) return record;
  Instant const now = clock().now();
  keep(path, {std::string(answer.header("Last-Modified").value_or("")), now, expiryOf(answer, now),
              std::move(answer.body)});
  return record;
}

Result<WttrResponse, APIError> YrNoClient::readKept(std::string const& path, KeptAnswer kept,
                                                    HttpResponse const& answer, Coordinate place) {
  kept.fetched = clock().now();
  kept.expires = expiryOf(answer, kept.fetched);
  auto record = read(kept.body, place);
  keep(path, std::move(kept));
  return record;
}

void YrNoClient::keep(std::string const& path, KeptAnswer answer) {
  if (auto const kept = kept_.keep(path, std::move(answer)); !kept) warn(kept.error());
}

void YrNoClient::warn(std::string_view text) const {
  if (warn_) warn_(text);
}

}  // namespace nimbara
