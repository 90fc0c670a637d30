// The official warnings of forty places in forty countries, by the services as the program composes them,
// from the demo: each place has one state, and no failure makes "none" or "no source" of it.

#include "app/services/feed_services.h"
#include "app/settings/service_directory.h"
#include "base/words/texts.h"
#include "demo/demo_server.h"
#include "demo/world/demo_world.h"
#include "feeds/alerts/coverage.h"
#include "platform/linux/http/curl_http_client.h"
#include "support/instants.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using Kind = DemoFault::Kind;
using enum CoverageState;

/// A place of the demo's world by its country: what is known of it when all is well, and when the source
/// fails that is asked first. "wmo>fpas": the second instead of the first.
struct PlaceRow {
  std::string_view country;
  Service first;
  CoverageState state;
  std::string_view source;
  CoverageState without;
  std::string_view sourceWithout;
};

constexpr auto kWmo = Service::wmoWarnings;
constexpr std::string_view kInstead = "wmo>fpas";

constexpr PlaceRow kPlaces[] = {
    {"US", Service::nws, warnings, "nws", unchecked, "nws"},
    {"DE", Service::meteoAlarm, none, "meteoalarm", unchecked, "meteoalarm"},
    {"GB", Service::meteoAlarm, warnings, "meteoalarm", unchecked, "meteoalarm"},
    {"PL", Service::meteoAlarm, warnings, "meteoalarm", unchecked, "meteoalarm"},
    {"NL", Service::meteoAlarm, none, "meteoalarm", unchecked, "meteoalarm"},
    {"IL", Service::meteoAlarm, none, "meteoalarm", unchecked, "meteoalarm"},
    {"CA", Service::eccc, warnings, "eccc", unchecked, "eccc"},
    {"SJ", Service::metAlerts, warnings, "metalerts", warnings, "metalerts>wmo"},
    {"MX", kWmo, warnings, "wmo", warnings, kInstead},
    {"BR", kWmo, warnings, "wmo", warnings, kInstead},
    {"AR", kWmo, warnings, "wmo", warnings, kInstead},
    {"CL", kWmo, warnings, "wmo", warnings, kInstead},
    {"CO", kWmo, warnings, "wmo", warnings, kInstead},
    {"PE", kWmo, unplaced, "wmo", warnings, kInstead},  // for the whole country
    {"JM", kWmo, none, "wmo", unchecked, "wmo"},        // nor does it read this feed
    {"KZ", kWmo, warnings, "wmo", warnings, kInstead},
    {"RU", kWmo, warnings, "wmo", warnings, kInstead},
    {"IN", kWmo, warnings, "wmo", warnings, kInstead},
    {"CN", kWmo, warnings, "wmo", unchecked, "wmo"},  // the other cannot draw its areas
    {"HK", kWmo, warnings, "wmo", warnings, kInstead},
    {"MO", kWmo, warnings, "wmo", warnings, kInstead},
    {"JP", kWmo, warnings, "wmo", warnings, kInstead},
    {"KR", kWmo, none, "wmo", none, kInstead},
    {"PH", kWmo, warnings, "wmo", warnings, kInstead},
    {"ID", kWmo, warnings, "wmo", warnings, kInstead},
    {"TH", kWmo, warnings, "wmo", warnings, kInstead},
    {"SA", kWmo, warnings, "wmo", warnings, kInstead},
    {"AE", kWmo, none, "wmo", none, kInstead},
    {"YE", kWmo, uncovered, "wmo", unchecked, "wmo"},
    {"AU", kWmo, warnings, "wmo", warnings, kInstead},
    {"NZ", kWmo, none, "wmo", none, kInstead},
    {"FJ", kWmo, warnings, "wmo", warnings, kInstead},
    {"PG", kWmo, uncovered, "wmo", unchecked, "wmo"},
    {"ZA", kWmo, warnings, "wmo", warnings, kInstead},
    {"KE", kWmo, warnings, "wmo", warnings, kInstead},
    {"NG", kWmo, unplaced, "wmo", warnings, kInstead},
    {"EG", kWmo, none, "wmo", none, kInstead},
    {"TZ", kWmo, warnings, kInstead, warnings, kInstead},  // the centre answers 200 with an exception
    {"MG", kWmo, unchecked, "wmo", unchecked, "wmo"},      // and so do both
    {"TD", kWmo, uncovered, "wmo", unchecked, "wmo"},
};

/// Waits for nobody long.
class HastyClient final : public HttpClient {
 public:
  HastyClient(HttpClient& network, std::chrono::milliseconds patience)
      : network_(network), patience_(patience) {}

  Result<HttpResponse, HttpError> get(HttpRequest const& request, std::stop_token stop) override {
    HttpRequest hasty = request;
    hasty.timeout = std::min(request.timeout, patience_);
    return network_.get(hasty, std::move(stop));
  }

 private:
  HttpClient& network_;
  std::chrono::milliseconds patience_;
};

struct WorldCoverage : testing::Test {
  using States = std::map<std::string_view, SourceCoverage>;

  /// Of the places whose first source `isAsked` wants.
  States statesWith(std::vector<DemoFault> const& faults, auto const& isAsked, std::string chosen = {}) {
    bool const hangs = !faults.empty() && faults.front().kind == Kind::timeout;
    HastyClient http(network, hangs ? 150ms : 15s);
    auto const server = *DemoServer::start(clock, faults);
    FeedServices::Options options;
    options.contact = "me";
    options.texts = std::make_shared<Texts const>(Texts::load("en"));
    options.language = "en";
    options.chosenSource = [chosen](Coordinate) { return chosen; };
    FeedServices feeds(http, clock, ServiceDirectory({}, server->baseUrl()), std::move(options));
    States states;
    for (PlaceRow const& row : kPlaces) {
      if (!isAsked(row)) continue;
      GovAlertPlace const place = govAlertPlace(demoIssuerOf(row.country)->place);
      auto const coverage = coverageOf(feeds.govAlerts().fetchAlerts(place), place.countryCode);
      EXPECT_EQ(coverage.size(), 1) << row.country;
      states[row.country] = coverage.front();
    }
    return states;
  }

  /// By the table of the world, not by any message.
  std::size_t eventsInForce(std::string_view country) const {
    Instant const now = clock.now();
    auto const events = demoWorldEvents(demoIssuerOf(country)->place, now, now + 1min);
    return static_cast<std::size_t>(std::ranges::count_if(events, [now](DemoEvent const& event) {
      auto const steps = demoSteps(event);
      auto const isSent = [now](DemoStep const& step) { return step.sent <= now; };
      auto const newest = std::ranges::find_if(steps.rbegin(), steps.rend(), isSent);
      return !event.isDrill && newest != steps.rend() && !newest->isOver && newest->end > now;
    }));
  }

  static std::string sourceOf(SourceCoverage const& coverage) {
    std::string const source = coverage.source.value_or("");
    return coverage.insteadOf ? *coverage.insteadOf + ">" + source : source;
  }

  FixedClock clock{test::at("2026-11-21T09:20:00Z")};
  CurlHttpClient network{{"nimbara-test/1", {}}};
};

TEST_F(WorldCoverage, HasOneStateForEachOfFortyCountries) {
  auto const states = statesWith({}, [](PlaceRow const&) { return true; });
  ASSERT_EQ(states.size(), 40);
  for (PlaceRow const& row : kPlaces) {
    SourceCoverage const& coverage = states.at(row.country);
    EXPECT_EQ(enumName(coverage.state), enumName(row.state))
        << row.country << ": " << coverage.reason.transform(sentenceOf).value_or("");
    EXPECT_EQ(sourceOf(coverage), row.source) << row.country;
    bool const isOfWorld = row.first != Service::nws && row.first != Service::meteoAlarm;
    if (isOfWorld && row.state != unchecked)
      EXPECT_EQ(coverage.count, eventsInForce(row.country)) << row.country;
  }
}

struct FaultRow {
  Service service;
  Kind kind;
};

void PrintTo(FaultRow const& row, std::ostream* out) {
  *out << enumName(row.service) << '=' << enumName(row.kind);
}

struct FailingSources : WorldCoverage, testing::WithParamInterface<FaultRow> {};

TEST_P(FailingSources, AreSaidToHaveFailed) {
  auto const [service, kind] = GetParam();
  auto const isHit = [service](PlaceRow const& row) { return row.first == service; };
  auto const states = statesWith({{service, kind}}, isHit);
  EXPECT_FALSE(states.empty());
  for (PlaceRow const& row : kPlaces) {
    if (!isHit(row)) continue;
    SourceCoverage const& coverage = states.at(row.country);
    EXPECT_EQ(enumName(coverage.state), enumName(row.without)) << row.country;
    EXPECT_EQ(sourceOf(coverage), row.sourceWithout) << row.country;
    EXPECT_TRUE(coverage.reason || coverage.insteadReason) << row.country;
  }
}

/// No second source follows, or it fails too.
struct NothingLeft : WorldCoverage, testing::WithParamInterface<FaultRow> {};

TEST_P(NothingLeft, IsNeitherNoneNorUncovered) {
  auto const [service, kind] = GetParam();
  bool const isOfGermany = service == Service::brightSky;
  std::vector<DemoFault> faults{{service, kind}};
  if (!isOfGermany) faults.push_back({kWmo, Kind::status500});
  auto const isHit = [&](PlaceRow const& row) {
    return isOfGermany ? row.country == "DE" : row.first == kWmo;
  };
  auto const states = statesWith(faults, isHit, isOfGermany ? "brightsky" : "");
  EXPECT_FALSE(states.empty());
  for (auto const& [country, coverage] : states) {
    EXPECT_EQ(enumName(coverage.state), "unchecked") << country;
    EXPECT_TRUE(coverage.reason) << country;
  }
}

std::vector<FaultRow> faultsOf(std::vector<Service> const& services) {
  std::vector<FaultRow> rows;
  for (Service const service : services) {
    for (Kind const kind : {Kind::status500, Kind::timeout, Kind::drop, Kind::garbage, Kind::empty})
      rows.push_back({service, kind});
    if (service == kWmo) rows.push_back({service, Kind::exception});
  }
  return rows;
}

auto const nameOf = [](auto const& row) {
  return std::string(enumName(row.param.service)) + "_" + std::string(enumName(row.param.kind));
};

INSTANTIATE_TEST_SUITE_P(Rows, FailingSources,
                         testing::ValuesIn(faultsOf({Service::nws, Service::meteoAlarm, Service::eccc,
                                                     Service::metAlerts, kWmo})),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(Rows, NothingLeft, testing::ValuesIn(faultsOf({Service::fpas, Service::brightSky})),
                         nameOf);

}  // namespace
}  // namespace nimbara
