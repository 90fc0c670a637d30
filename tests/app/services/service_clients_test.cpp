// What stands between the services and the network: budgets, limits, the language model, a memory apart.
#include "app/services/chat_language_model.h"
#include "app/services/forecasts/side_by_side.h"
#include "app/services/http/budgeted_http_client.h"
#include "app/services/http/limited_http_client.h"
#include "app/services/stand_in_store.h"
#include "app/settings/settings_registry.h"
#include "platform/http/request_quota.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/memory_settings_store.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

#include <barrier>
#include <string>

namespace nimbara {
namespace {

using test::at;
using testing::HasSubstr;
using Kind = HttpError::Kind;
using namespace nimbara::test;
using namespace std::chrono_literals;

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

struct LimitedHttp : testing::Test {
  Kind failureOf(std::chrono::milliseconds timeout) {
    auto const answer = client.get({"https://a/", {}, timeout});
    EXPECT_FALSE(answer);
    return answer ? Kind::protocol : answer.error().kind;
  }

  ManualClock clock{Instant()};
  FakeHttpClient network;
  LimitedHttpClient client{network, clock, 24s};
};

TEST_F(LimitedHttp, GivesARequestWhatIsLeft) {
  for (auto const& [passed, timeout] : {std::pair(0s, 15s), {9s, 15s}, {1s, 14s}, {13s, 1s}}) {
    clock.advance(passed);
    network.willAnswer(200, "body");
    ASSERT_TRUE(client.get({"https://a/", {}, 15s}));
    EXPECT_EQ(network.requests.back().timeout, timeout);
  }
  clock.advance(1s);
  EXPECT_EQ(failureOf(15s), Kind::cancelled) << "no service is to blame";
  EXPECT_EQ(network.requests.size(), 4U) << "nobody is asked when the time is up";
}

TEST_F(LimitedHttp, BlamesAServiceForItsOwnLimitOnly) {
  network.willFail({Kind::timedOut, "slow"});
  EXPECT_EQ(failureOf(15s), Kind::timedOut);
  clock.advance(20s);
  network.willFail({Kind::timedOut, "slow"});
  EXPECT_EQ(failureOf(15s), Kind::cancelled);
  network.willFail({Kind::connectionFailed, "closed"});
  EXPECT_EQ(failureOf(15s), Kind::connectionFailed);
}

TEST_F(LimitedHttp, BlamesAServiceThatFallsSilentBeforeTheLimit) {
  clock.advance(20s);
  HttpRequest patient{"https://a/", {}, 60s};
  patient.longestSilence = 3s;
  network.willFail({Kind::timedOut, "silent"});
  auto const answer = client.get(patient);
  ASSERT_FALSE(answer);
  EXPECT_EQ(answer.error().kind, Kind::timedOut);
}

TEST(RunAll, LetsTasksWaitForEachOther) {
  std::barrier meeting(3);
  std::atomic<int> met = 0;
  std::function<void()> const meet = [&] {
    meeting.arrive_and_wait();
    ++met;
  };
  runAll({meet, meet, meet}, Waiting::sideBySide);
  EXPECT_EQ(met, 3);
}

TEST(RunAll, KeepsTheOrderOneAfterTheOther) {
  std::string order;
  runAll({[&] { order += 'a'; }, [&] { order += 'b'; }, [&] { order += 'c'; }}, Waiting::oneAfterTheOther);
  EXPECT_EQ(order, "abc");
}

TEST(ChatLanguageModel, AsksAsTheServersExpect) {
  test::FakeHttpClient http;
  http.willAnswer(200,
                  R"({"choices":[{"index":0,"message":{"role":"assistant","content":"Mild and dry."}}]})");
  ChatLanguageModel model(http, {"http://127.0.0.1:11434", "small", "secret"});
  auto const reply = model.reply("How is the \"weather\"?", {});
  ASSERT_TRUE(reply);
  EXPECT_EQ(*reply, "Mild and dry.");
  ASSERT_EQ(http.requests.size(), 1);
  HttpRequest const& request = http.requests.front();
  EXPECT_EQ(request.url, "http://127.0.0.1:11434/v1/chat/completions");
  EXPECT_EQ(request.timeout, std::chrono::seconds(10));
  ASSERT_TRUE(request.body);
  EXPECT_THAT(*request.body,
              HasSubstr(R"("messages":[{"role":"user","content":"How is the \"weather\"?"}])"));
  EXPECT_THAT(request.headers,
              testing::Contains(std::pair<std::string, std::string>("Authorization", "Bearer secret")));
}

TEST(ChatLanguageModel, NamesWhatIsNoReply) {
  struct Row {
    int status;
    std::string body;
  };
  Row const rows[] = {{500, "{}"},
                      {200, ""},
                      {200, "<html>"},
                      {200, R"({"choices":[]})"},
                      {200, R"({"choices":[{"message":{"content":5}}]})"},
                      {200, R"({"choices":[{"message":{"content":"cut of)"}};
  for (Row const& row : rows) {
    test::FakeHttpClient http;
    http.willAnswer(row.status, row.body);
    ChatLanguageModel model(http, {"http://127.0.0.1:1", "", ""});
    auto const reply = model.reply("?", {});
    ASSERT_FALSE(reply) << row.body;
    EXPECT_THAT(reply.error(), HasSubstr("the language model"));
  }
}

TEST(StandInStore, KeepsItsMemoryApartAndTheRestTogether) {
  test::MemorySettingsStore store(settingsRegistry());
  StandInStore standIn(store);
  ASSERT_TRUE(store.setState("told", SettingValue(std::string("real"))));
  ASSERT_TRUE(standIn.setState("told", SettingValue(std::string("made up"))));
  ASSERT_TRUE(standIn.set("notify_rain", false));

  EXPECT_EQ(*store.state("told"), SettingValue(std::string("real")));
  EXPECT_EQ(*standIn.state("told"), SettingValue(std::string("made up")));
  EXPECT_EQ(standIn.read(StoreArea::state)->size(), 1);
  EXPECT_FALSE(store.settings().settings.boolean("notify_rain"));

  ASSERT_TRUE(standIn.setState("told", std::nullopt));
  EXPECT_EQ(*standIn.state("told"), std::nullopt);
  EXPECT_EQ(*store.state("told"), SettingValue(std::string("real")));
}

}  // namespace
}  // namespace nimbara
