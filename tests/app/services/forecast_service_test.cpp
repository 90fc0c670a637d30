#include "app/services/forecasts/forecast_service.h"

#include "support/answers/interchange_answer.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;

Place const kBerlin{{52.52, 13.41}, "Berlin", "Germany", "State of Berlin"};

struct ForecastServiceTest : testing::Test {
  test::ManualClock clock{at("2026-11-21T12:00:00Z")};
  test::TemporaryFolder folder;
  WeatherCache cache{folder.path(), clock};
  ProviderHistory history;
  std::array<std::optional<APIError>, 4> failures;
  int requests = 0;
  WeatherProviderManager providers{scripted(), history, clock};
  ForecastService service{providers, cache, clock, {}};

  WeatherProviderManager::Providers scripted() {
    WeatherProviderManager::Providers all;
    for (std::size_t i = 0; i < all.size(); ++i) {
      all[i].isConfigured = i > 0;
      all[i].fetch = [this, i](double latitude, double longitude,
                               std::stop_token) -> Result<WttrResponse, APIError> {
        ++requests;
        if (failures[i]) return std::unexpected(*failures[i]);
        return test::plainAnswer({latitude, longitude}, clock.now(), -20);
      };
    }
    return all;
  }

  /// The same folder as a later run of the program sees it.
  ForecastAnswer laterRun(WeatherProviderOption wanted = WeatherProviderOption::automatic) {
    WeatherCache again(folder.path(), clock);
    ForecastService next(providers, again, clock, {});
    providers.setPreferredProvider(wanted);
    auto answer = next.get(kBerlin, wanted);
    EXPECT_TRUE(answer);
    return answer.value_or(ForecastAnswer{});
  }
};

TEST_F(ForecastServiceTest, NamesProcessesAndWarns) {
  auto const answer = service.get(kBerlin, WeatherProviderOption::automatic);
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->data.location.areaName, "Berlin");
  EXPECT_EQ(answer->data.location.region, "State of Berlin");
  EXPECT_EQ(answer->response->nearestArea.front().country.front().value, "Germany");
  EXPECT_EQ(answer->provider, WeatherProviderOption::openMeteo);
  EXPECT_FALSE(answer->fromCache || answer->stale || answer->failure);
  ASSERT_EQ(answer->alerts.size(), 1U);
  EXPECT_EQ(answer->alerts[0].title, "Extreme Cold");
  // Without a name the coordinate stands in its place.
  EXPECT_EQ(service.fetch({{1.5, 2}, "", "", ""})->data.location.areaName, "1.50°N 2.00°E");
}

TEST_F(ForecastServiceTest, AsksAgainOnlyForWhatIsOldOrComesFromAnotherProvider) {
  service.get(kBerlin, WeatherProviderOption::automatic);
  clock.advance(899s);
  EXPECT_TRUE(service.get(kBerlin, WeatherProviderOption::automatic)->fromCache);  // from memory
  auto kept = laterRun();
  EXPECT_TRUE(kept.fromCache);
  EXPECT_FALSE(kept.stale || kept.failure || kept.response);
  EXPECT_EQ(kept.answeredAt, at("2026-11-21T12:00:00Z"));
  EXPECT_EQ(kept.alerts.size(), 1U);
  EXPECT_EQ(requests, 1);
  EXPECT_TRUE(laterRun(WeatherProviderOption::openMeteo).fromCache);
  EXPECT_EQ(laterRun(WeatherProviderOption::yrNo).provider, WeatherProviderOption::yrNo);
  EXPECT_EQ(requests, 2);
  clock.advance(900s);
  EXPECT_FALSE(laterRun().fromCache);
}

TEST_F(ForecastServiceTest, GivesTheLastGoodOneWhenAllFail) {
  EXPECT_TRUE(service.get(kBerlin, WeatherProviderOption::automatic));
  failures.fill(APIError::http(500));
  clock.advance(72h);
  auto const kept = laterRun();
  EXPECT_TRUE(kept.fromCache);
  EXPECT_TRUE(kept.stale);
  EXPECT_EQ(kept.failure, APIError::http(500));
  EXPECT_EQ(kept.data.location.areaName, "Berlin");
  EXPECT_TRUE(kept.alerts.empty());  // its hours have passed
  auto const elsewhere = service.get({{1, 2}, "", "", ""}, WeatherProviderOption::automatic);
  EXPECT_FALSE(elsewhere);
}

TEST_F(ForecastServiceTest, SaysSoWhenTheCallerGivesUp) {
  EXPECT_TRUE(service.get(kBerlin, WeatherProviderOption::automatic));
  clock.advance(1h);
  std::stop_source source;
  source.request_stop();
  auto const answer = service.get(kBerlin, WeatherProviderOption::automatic, source.get_token());
  ASSERT_FALSE(answer);
  EXPECT_EQ(answer.error().transport, HttpError::Kind::cancelled);
}

}  // namespace
}  // namespace nimbara
