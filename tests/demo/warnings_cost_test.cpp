// What the official warnings of many places in many countries cost: bytes, requests and memory, against the
// demo's stand-ins, by the clock of the test.

#include "app/services/feed_services.h"
#include "app/settings/service_directory.h"
#include "base/words/texts.h"
#include "demo/demo_server.h"
#include "demo/world/warnings/demo_issuers.h"
#include "feeds/alerts/gov_alert_service.h"
#include "platform/linux/http/curl_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

#include <malloc.h>
#include <map>
#include <set>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;

/// Counts both ways: addresses and headers, and bodies unpacked, which is more than the line carries.
class CountingHttpClient final : public HttpClient {
 public:
  explicit CountingHttpClient(HttpClient& client) : client_(client) {}

  Result<HttpResponse, HttpError> get(HttpRequest const& request, std::stop_token stop) override {
    auto answer = client_.get(request, std::move(stop));
    std::lock_guard const lock(mutex_);
    ++requests;
    bytes += request.url.size() + sizeOf(request.headers);
    if (answer) bytes += answer->body.size() + sizeOf(answer->headers);
    return answer;
  }

  std::size_t requests = 0;
  std::size_t bytes = 0;

 private:
  static std::size_t sizeOf(HttpHeaders const& headers) {
    std::size_t size = 0;
    for (auto const& [name, value] : headers) size += name.size() + value.size() + 4;
    return size;
  }

  HttpClient& client_;
  std::mutex mutex_;
};

std::size_t heapBytes() {
  auto const info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

/// The first issuers of the demo whose services answer: every source is among them.
std::vector<GovAlertPlace> twentyCountries() {
  std::vector<GovAlertPlace> places;
  for (DemoIssuer const& issuer : demoIssuers()) {
    if (issuer.silence == DemoSilence::none && places.size() < 20)
      places.push_back(govAlertPlace(issuer.place));
  }
  return places;
}

TEST(WarningsCost, StaysSmallForTwentyPlacesInTwentyCountries) {
  constexpr std::size_t kMegabyte = 1'000'000;
  test::TemporaryFolder const folder;
  test::ManualClock clock{at("2026-11-22T12:03:00Z")};
  auto const server = DemoServer::start(clock, {});
  ASSERT_TRUE(server) << server.error();
  CurlHttpClient line{{"nimbara-test", {}}};
  CountingHttpClient http(line);
  auto const places = twentyCountries();
  std::set<std::string> countries;
  for (GovAlertPlace const& place : places) countries.insert(place.countryCode);
  ASSERT_EQ(places.size(), 20U);
  ASSERT_EQ(countries.size(), 20U);

  std::size_t const before = heapBytes();
  ServiceDirectory const services({}, (*server)->baseUrl());
  FeedServices feeds(http, clock, services,
                     {"", folder.path() / "cache", folder.path() / "data",
                      std::make_shared<Texts const>(Texts::load("en")), "en"});
  std::map<std::string, std::size_t> warnings;
  for (int round = 0; round < 6; ++round) {
    for (GovAlertPlace const& place : places) {
      GovAlerts const alerts = feeds.govAlerts().fetchAlerts(place);
      EXPECT_EQ(alerts.failedSince(), std::nullopt) << place.countryCode << " in round " << round;
      warnings[place.countryCode] += alerts.alerts.size() + alerts.unplaced.size();
    }
    clock.advance(10min);
  }
  std::size_t const held = heapBytes() - std::min(before, heapBytes());
  RecordProperty("bytes", static_cast<int>(http.bytes));
  RecordProperty("requests", static_cast<int>(http.requests));
  RecordProperty("heap", static_cast<int>(held));
  auto const warned = std::ranges::count_if(warnings, [](auto const& entry) { return entry.second > 0; });
  EXPECT_GE(warned, 10) << "of places without warnings nothing is learnt";
  EXPECT_LT(http.bytes, 2 * kMegabyte) << http.requests << " requests";
  EXPECT_GE(http.requests, places.size());
  EXPECT_LT(held, 30 * kMegabyte);
}

}  // namespace
}  // namespace nimbara
