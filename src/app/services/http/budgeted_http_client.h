// The one budget of Open-Meteo's free services: forecasts, air, archive and nowcasts share 600 calls a minute
// and 10,000 a day, and a request for many variables or days counts as several. What would exceed them is
// answered as the service itself would answer, without asking it. Shared by all of the user's processes
// through a file. Any thread may call.
#pragma once

#include "base/time/instant.h"
#include "platform/clock.h"
#include "platform/http/http_client.h"

#include <filesystem>
#include <mutex>

namespace nimbara {

/// How many calls a request counts as: for every ten variables, and for every two weeks of them, one; at
/// least one for each place. 0 for addresses that are not of the free services or have a key.
double openMeteoCalls(std::string_view url);

/// What has been spent in the present minute and day of UTC.
struct OpenMeteoSpending {
  static constexpr double kCallsAMinute = 600;
  static constexpr double kCallsADay = 10'000;

  std::int64_t minute = 0;  ///< since 1970
  std::int64_t day = 0;     ///< likewise
  double inMinute = 0;
  double inDay = 0;

  /// Adds the calls; or says "Minutely" or "Daily" and adds nothing where there is no room for them. A
  /// request that is alone in its span always has room.
  std::string_view spend(double calls, Instant now);
};

class BudgetedHttpClient final : public HttpClient {
 public:
  /// An empty `file`: the budget is this process's alone. Network and clock outlive the client.
  BudgetedHttpClient(HttpClient& network, Clock const& clock, std::filesystem::path file);

  Result<HttpResponse, HttpError> get(HttpRequest const& request, std::stop_token stop = {}) override;

 private:
  std::string_view refusal(double calls);

  HttpClient& network_;
  Clock const& clock_;
  std::filesystem::path file_;
  std::mutex turn_;
  OpenMeteoSpending spent_;
};

}  // namespace nimbara
