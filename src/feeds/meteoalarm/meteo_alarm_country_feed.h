// One country's feed of warnings, asked for at most every five minutes and kept in memory. Owned by the
// service of all countries. Any thread may ask; who comes while another one asks waits for the same answer.
// Never throws; a failure leaves what was known before.
#pragma once

#include "feeds/meteoalarm/meteo_alarm_selection.h"
#include "platform/clock.h"
#include "platform/http_client.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>

namespace nimbara {

class MeteoAlarmCountryFeed {
 public:
  struct Answer {
    std::shared_ptr<MeteoAlarmFeed const> feed;  ///< null until the service has answered
    std::optional<Instant> checkedAt;            ///< when the service confirmed it
    std::optional<std::string> failure;          ///< why it could not be confirmed just now
  };

  MeteoAlarmCountryFeed(HttpClient& http, Clock const& clock, std::string url)
      : http_(http), clock_(clock), url_(std::move(url)) {}

  Answer get(std::stop_token const& stop);

 private:
  struct Validators {
    std::optional<std::string> etag;
    std::optional<std::string> lastModified;
  };

  using Outcome = Result<void, std::string>;

  bool isFresh() const;
  bool rests() const;
  HttpRequest request() const;
  Outcome accept(Result<HttpResponse, HttpError> const& answer);
  Outcome acceptBody(HttpResponse const& answer);
  Answer known() const { return {feed_, lastFetchDate_, failure_}; }

  HttpClient& http_;
  Clock const& clock_;
  std::string url_;

  std::mutex mutex_;  // of all below; not held while the service is asked
  std::condition_variable_any answered_;
  bool isAsking_ = false;
  std::shared_ptr<MeteoAlarmFeed const> feed_;
  std::optional<Instant> lastFetchDate_;
  std::optional<std::string> failure_;  ///< of the last request
  std::optional<std::chrono::steady_clock::time_point> restsUntil_;
  Validators validators_;
};

}  // namespace nimbara
