#include "app/services/http/budgeted_http_client.h"

#include "platform/http/request_quota.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;

struct CallsRow {
  std::string url;
  double calls;
};

TEST(OpenMeteoBudget, CountsAsTheServiceCounts) {
  std::string const forecast = "https://api.open-meteo.com/v1/forecast?latitude=1&longitude=2";
  for (CallsRow const& row :
       {CallsRow{forecast + "&hourly=a,b,c", 1},
        {forecast + "&hourly=a,b,c,d,e,f&daily=g,h,i,j,k,l", 1.2},
        {forecast + "&daily=a,b,c,d,e,f,g,h,i,j&past_days=14&forecast_days=14", 2},
        {"https://archive-api.open-meteo.com/v1/archive?latitude=1&longitude=2&start_date=1991-01-01"
         "&end_date=2020-12-31&daily=a,b,c",
         234.81428571428572},
        {"https://api.open-meteo.com/v1/forecast?latitude=1,2,3&longitude=1,2,3&hourly=a", 3},
        {"https://customer-api.open-meteo.com/v1/forecast?hourly=a", 0},
        {forecast + "&hourly=a&apikey=k", 0},
        {"http://127.0.0.1:8080/v1/forecast?hourly=a", 0},
        {"https://api.open-meteo.com.example/v1/forecast", 0}}) {
    EXPECT_DOUBLE_EQ(openMeteoCalls(row.url), row.calls) << row.url;
  }
}

TEST(OpenMeteoBudget, HoldsTheMinuteAndTheDay) {
  OpenMeteoSpending spent;
  Instant const now = at("2026-11-21T09:20:30Z");
  EXPECT_EQ(spent.spend(235, now), "");
  EXPECT_EQ(spent.spend(235, now), "");
  EXPECT_EQ(spent.spend(131, now), "Minutely");
  EXPECT_EQ(spent.spend(130, now), "");
  EXPECT_EQ(spent.spend(1, now), "Minutely");
  EXPECT_EQ(spent.spend(600, at("2026-11-21T09:21:00Z")), "");
  spent.inDay = 9999;
  EXPECT_EQ(spent.spend(2, at("2026-11-21T09:22:00Z")), "Daily");
  EXPECT_EQ(spent.spend(20'000, at("2026-11-22T00:00:00Z")), "") << "alone it is always asked";
}

TEST(OpenMeteoBudget, IsSharedByProcesses) {
  test::TemporaryFolder folder;
  test::FakeHttpClient http;
  test::ManualClock clock{at("2026-11-21T09:20:30Z")};
  BudgetedHttpClient one(http, clock, folder.path() / "spent.json");
  BudgetedHttpClient other(http, clock, folder.path() / "spent.json");
  HttpRequest archive;
  archive.url =
      "https://archive-api.open-meteo.com/v1/archive?start_date=1991-01-01&end_date=2020-12-31&daily=a,b,c";
  for (int i = 0; i < 4; ++i) http.willAnswer(200, "{}");
  EXPECT_EQ(one.get(archive)->status, 200);
  EXPECT_EQ(other.get(archive)->status, 200);
  auto const refused = one.get(archive);
  EXPECT_EQ(refused->status, 429);
  EXPECT_EQ(quotaEnd(refused->body, clock.now()), at("2026-11-21T09:21:00Z"));
  EXPECT_EQ(http.requests.size(), 2) << "nobody was asked";
  HttpRequest elsewhere;
  elsewhere.url = "https://api.met.no/x";
  EXPECT_EQ(one.get(elsewhere)->status, 200);
  clock.advance(std::chrono::seconds(30));
  EXPECT_EQ(other.get(archive)->status, 200);
}

}  // namespace
}  // namespace nimbara
