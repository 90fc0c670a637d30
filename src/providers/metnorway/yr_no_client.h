// The forecast of a coordinate from MET Norway's Locationforecast 2.0. The service's terms are kept here: an
// answer is used until it expires, then asked for again on the condition that it has changed. (The other
// terms, an own User-Agent with a contact and compression, are the HTTP client's.)
#pragma once

#include "providers/forecast_client.h"
#include "providers/kept_answers.h"
#include "providers/time_zone_lookup.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace nimbara {

class YrNoClient final : public ForecastClient {
 public:
  using WarningHandler = std::function<void(std::string_view)>;

  /// With `cacheDirectory` answers are kept beyond the program's end, one file a coordinate; it is made when
  /// it is missing.
  YrNoClient(HttpClient& http, Clock const& clock, ServiceAddress address, TimeZoneLookup timeZone,
             std::filesystem::path cacheDirectory = {});

  /// Told of what is no failure: a version that the service calls deprecated, a file that cannot be written.
  /// Set before the first fetch.
  void onWarning(WarningHandler handler) { warn_ = std::move(handler); }

 private:
  Result<WttrResponse, APIError> fetch(Coordinate place, std::stop_token const& stop) override;
  Result<WttrResponse, APIError> read(std::string_view body, Coordinate place) const;
  Result<WttrResponse, APIError> readNew(std::string const& path, HttpResponse answer, Coordinate place);
  Result<WttrResponse, APIError> readKept(std::string const& path, KeptAnswer kept,
                                          HttpResponse const& answer, Coordinate place);
  void keep(std::string const& path, KeptAnswer answer);
  void warn(std::string_view text) const;

  TimeZoneLookup timeZone_;
  KeptAnswers kept_;
  WarningHandler warn_;
};

/// "/weatherapi/locationforecast/2.0/complete?lat=59.9139&lon=10.7522". The service refuses more than four
/// decimals; rounding to them moves a place by six metres at most.
std::string yrNoPath(Coordinate place);

}  // namespace nimbara
