// The active alerts of a coordinate from the United States National Weather Service. Keeps the last answer of
// one coordinate and its validators; never raises an error, but says when a list is not the service's present
// one. Holds what the service lists: tests, cancellations and whatever has ended included. Whoever owns it
// asks only for places in the service's territory (`feeds/nws/nws_territory.h`).
#pragma once

#include "base/geodesy.h"
#include "feeds/fetching/feed_exchange.h"
#include "feeds/nws/nws_alert.h"
#include "platform/clock.h"

#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace nimbara {

struct NWSAlertAnswer {
  std::vector<NWSAlert> alerts;
  bool ok = false;  ///< the list is the service's, of now or of less than two minutes ago
  std::optional<ServiceFailure> failure;  ///< why it is not
  /// Of an answer in which some features are no alerts: the others. Such an answer is a failure.
  std::optional<std::vector<NWSAlert>> readable;
  bool isOutside = false;  ///< the service says that it knows no such point
};

class NWSAlertService {
 public:
  static constexpr std::chrono::seconds kCacheTTL{120};

  struct Options {
    std::string baseUrl;  ///< "https://api.weather.gov"
    std::string contact;  ///< an address that the service wants to know
  };

  NWSAlertService(HttpClient& http, Clock const& clock, Options options);

  /// Degrees. Any thread, also several at once. Blocks for the request; `stop` ends it as a failure.
  NWSAlertAnswer fetchAlerts(double latitude, double longitude, std::stop_token const& stop = {});

 private:
  using Answer = Result<std::optional<HttpResponse>, ServiceFailure>;

  Answer askFor(std::string const& key, std::unique_lock<std::mutex>& lock, std::stop_token const& stop);
  HttpRequest requestFor(std::string const& key) const;
  NWSAlertAnswer taken(std::string const& key, HttpResponse const& response);
  NWSAlertAnswer failed(std::string const& key, ServiceFailure failure) const;

  HttpClient& http_;
  Clock const& clock_;
  std::string baseUrl_;
  std::string userAgent_;
  std::mutex mutex_;  // guards all below; never held while the service is asked
  std::vector<NWSAlert> cachedAlerts_;
  std::optional<Instant> lastFetchDate_;
  std::optional<std::string> lastFetchPoint_;
  Validators validators_;
};

/// Those whose event names a tornado or a severe thunderstorm, in the service's capitals.
std::vector<NWSAlert> convectiveAlerts(std::vector<NWSAlert> alerts);
/// Those whose event names a flood.
std::vector<NWSAlert> floodAlerts(std::vector<NWSAlert> alerts);

}  // namespace nimbara
