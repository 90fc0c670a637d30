#include "providers/provider_manager.h"

#include "providers/common/service_answer.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <latch>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;
using test::ManualClock;
using test::TemporaryFolder;
using Provider = WeatherProviderManager::AutomaticProvider;
using Outcome = Result<WttrResponse, APIError>;
using testing::ElementsAre;

Outcome answerNamed(std::string const& name) {
  WttrResponse response;
  response.timeZone = name;
  return response;
}

/// Four providers that do as their scripts say and note when they are asked.
struct Scripted {
  std::array<std::string, 4> script{"ok", "ok", "ok", "ok"};
  std::array<bool, 4> isConfigured{true, true, true, true};
  std::vector<std::string> asked;

  WeatherProviderManager::Providers providers() {
    WeatherProviderManager::Providers all;
    for (std::size_t i = 0; i < all.size(); ++i) {
      all[i].isConfigured = isConfigured[i];
      all[i].fetch = [this, i](double, double, std::stop_token) -> Outcome {
        std::string const name(enumName(static_cast<Provider>(i)));
        asked.push_back(name);
        if (script[i] == "ok") return answerNamed(name);
        if (script[i] == "unplugged") {
          return std::unexpected(APIError::network({HttpError::Kind::unresolvedHost, "no name"}));
        }
        if (script[i] == "wrong") return std::unexpected(APIError::of(APIError::Case::noResults));
        return std::unexpected(APIError::http(500 + static_cast<int>(i)));
      };
    }
    return all;
  }
};

struct ManagerTest : testing::Test {
  ManualClock clock{at("2026-11-21T12:00:00Z")};
  TemporaryFolder folder;
  ProviderHistory history{folder.path() / "_providers.json"};
  Scripted scripted;

  WeatherProviderManager manager() { return {scripted.providers(), history, clock}; }

  /// Who was asked and what came of it: "appleWeather openMeteo -> openMeteo".
  std::string fetched(WeatherProviderManager& manager) {
    scripted.asked.clear();
    auto const result = manager.fetch(52.5, 13.4);
    std::string out;
    for (std::string const& name : scripted.asked) out += name + " ";
    if (result) return out + "-> " + std::string(enumName(result->provider));
    return out + "-> " + result.error().text();
  }
};

TEST_F(ManagerTest, TakesTheFirstThatAnswersInTheFixedOrder) {
  auto subject = manager();
  EXPECT_EQ(fetched(subject), "appleWeather -> appleWeather");
  scripted.script = {"fail", "fail", "ok", "ok"};
  EXPECT_EQ(fetched(subject), "appleWeather openMeteo yrNo -> yrNo");
}

TEST_F(ManagerTest, PassesOverAProviderForThreeHundredSeconds) {
  struct Row {
    std::chrono::milliseconds later;
    std::string expected;
  };
  for (auto const& row :
       {Row{0s, "openMeteo -> openMeteo"}, Row{299s, "openMeteo -> openMeteo"},
        Row{299'999ms, "openMeteo -> openMeteo"}, Row{300s, "appleWeather openMeteo -> openMeteo"},
        // The clock was set back: the failure seems to lie ahead.
        Row{-24h, "appleWeather openMeteo -> openMeteo"}}) {
    history.forgetFailures();
    auto subject = manager();
    scripted.script = {"fail", "ok", "ok", "ok"};
    EXPECT_EQ(fetched(subject), "appleWeather openMeteo -> openMeteo");
    clock.advance(row.later);
    EXPECT_EQ(fetched(subject), row.expected) << row.later.count();
    clock.advance(-row.later);
  }
}

TEST_F(ManagerTest, AsksNobodyWhileAllAreCoolingDown) {
  auto subject = manager();
  scripted.script = {"fail", "fail", "fail", "wrong"};
  EXPECT_EQ(fetched(subject),
            "appleWeather openMeteo yrNo wttrIn -> No results found for the given location.");
  clock.advance(299s);
  auto const refused = subject.fetch(1, 2);
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error().transport, HttpError::Kind::timedOut);
  EXPECT_EQ(fetched(subject), "-> Network error: every provider failed less than five minutes ago");
  clock.advance(1s);
  EXPECT_EQ(fetched(subject),
            "appleWeather openMeteo yrNo wttrIn -> No results found for the given location.");
}

TEST_F(ManagerTest, ForgetsAFailureAfterASuccess) {
  auto subject = manager();
  scripted.script = {"fail", "ok", "ok", "ok"};
  EXPECT_EQ(fetched(subject), "appleWeather openMeteo -> openMeteo");
  clock.advance(300s);
  scripted.script[0] = "ok";
  EXPECT_EQ(fetched(subject), "appleWeather -> appleWeather");
  EXPECT_FALSE(history.record("appleWeather").lastFailureAt);
  EXPECT_EQ(history.record("appleWeather").lastError, "Server returned HTTP 500");
}

TEST_F(ManagerTest, GoesStraightToASpecificChoiceAndNowhereElse) {
  auto subject = manager();
  scripted.script = {"ok", "ok", "fail", "ok"};
  subject.setPreferredProvider(WeatherProviderOption::yrNo);
  EXPECT_EQ(fetched(subject), "yrNo -> Server returned HTTP 502");
  EXPECT_EQ(fetched(subject), "yrNo -> Server returned HTTP 502");
  subject.setPreferredProvider(WeatherProviderOption::automatic);
  EXPECT_EQ(fetched(subject), "appleWeather -> appleWeather");
}

TEST_F(ManagerTest, PassesOverWhatIsNotConfiguredWithoutATrace) {
  scripted.isConfigured[0] = false;
  scripted.script = {"fail", "fail", "fail", "fail"};
  auto subject = manager();
  EXPECT_EQ(fetched(subject), "openMeteo yrNo wttrIn -> Server returned HTTP 503");
  EXPECT_FALSE(history.record("appleWeather").lastFailureAt);
  EXPECT_FALSE(history.record("appleWeather").lastError);
}

TEST_F(ManagerTest, RemembersFailuresAcrossRunsOfTheProgram) {
  scripted.script = {"fail", "ok", "ok", "ok"};
  auto first = manager();
  EXPECT_EQ(fetched(first), "appleWeather openMeteo -> openMeteo");
  ProviderHistory laterRun(folder.path() / "_providers.json");
  WeatherProviderManager second(scripted.providers(), laterRun, clock);
  EXPECT_EQ(fetched(second), "openMeteo -> openMeteo");
  // Without a folder that can be written the memory lasts as long as the process.
  ProviderHistory nowhere("/proc/nimbara/none.json");
  WeatherProviderManager third(scripted.providers(), nowhere, clock);
  EXPECT_EQ(fetched(third), "appleWeather openMeteo -> openMeteo");
  EXPECT_EQ(fetched(third), "openMeteo -> openMeteo");
}

TEST_F(ManagerTest, ANetworkThatIsAwayIsNobodysFailureInTheNextRun) {
  struct Row {
    std::array<std::string, 4> script;
    std::string nextRun;
  };
  for (Row const& row :
       {Row{{"unplugged", "unplugged", "unplugged", "unplugged"}, "appleWeather -> appleWeather"},
        Row{{"unplugged", "fail", "unplugged", "unplugged"},
            "-> Network error: every provider failed less than five minutes ago"},
        Row{{"unplugged", "ok", "ok", "ok"}, "openMeteo -> openMeteo"}}) {
    history.forgetFailures();
    scripted.script = row.script;
    auto first = manager();
    fetched(first);
    EXPECT_EQ(history.record("appleWeather").lastError, "Network error: no name") << "for diagnosis";
    scripted.script = {"ok", "ok", "ok", "ok"};
    ProviderHistory laterRun(folder.path() / "_providers.json");
    WeatherProviderManager second(scripted.providers(), laterRun, clock);
    EXPECT_EQ(fetched(second), row.nextRun);
  }
}

TEST_F(ManagerTest, SaysHowLongNobodyIsAsked) {
  auto subject = manager();
  scripted.script = {"fail", "fail", "fail", "fail"};
  fetched(subject);
  clock.advance(299'500ms);
  EXPECT_EQ(subject.fetch(1, 2).error().retryAfter, 1s);
  history.noteFailure("openMeteo", clock.now(), "limit", clock.now() + 2h);
  clock.advance(-100s);
  EXPECT_EQ(subject.fetch(1, 2).error().retryAfter, 101s) << "the first of them that may be asked";
}

TEST_F(ManagerTest, TakesAFileOfAnythingForAnEmptyMemory) {
  scripted.script = {"fail", "ok", "ok", "ok"};
  for (std::string const content :
       {"", "{", "[1,2]", "\xff\xfe", R"({"appleWeather":{"lastFailureAt":7}})"}) {
    folder.write("_providers.json", content);
    ProviderHistory subject(folder.path() / "_providers.json");
    EXPECT_TRUE(subject.records().empty()) << content;
    subject.noteFailure("yrNo", clock.now(), "down");
    EXPECT_EQ(ProviderHistory(folder.path() / "_providers.json").record("yrNo").lastError, "down");
  }
}

TEST_F(ManagerTest, HonoursAPauseThatAServiceAskedFor) {
  ProviderRecord record;
  record.blockedUntil = clock.now() + 2h;
  EXPECT_TRUE(isCoolingDown(record, clock.now()));
  EXPECT_FALSE(isCoolingDown(record, clock.now() + 2h));
  WeatherProviderManager::Providers all = scripted.providers();
  int asked = 0;
  all[0].fetch = [&](double, double, std::stop_token) -> Outcome {
    ++asked;
    APIError error = APIError::http(429);
    error.retryAfter = 1h;
    return std::unexpected(error);
  };
  WeatherProviderManager subject(all, history, clock);
  for (auto const later : {0s, 3599s, 3600s}) {
    clock.advance(later);
    fetched(subject);
    clock.advance(-later);
  }
  EXPECT_EQ(asked, 2);
  record.blockedUntil = clock.now() + 25h;  // longer than any service may ask for
  EXPECT_FALSE(isCoolingDown(record, clock.now()));
}

TEST_F(ManagerTest, WaitsForTheNextDayAfterADailyQuota) {
  WeatherProviderManager::Providers all = scripted.providers();
  int asked = 0;
  all[0].fetch = [&](double, double, std::stop_token) -> Outcome {
    ++asked;
    return std::unexpected(
        APIError::http(429, "Daily API request limit exceeded. Please try again tomorrow."));
  };
  WeatherProviderManager subject(all, history, clock);
  fetched(subject);
  Instant const midnight = std::chrono::ceil<std::chrono::days>(clock.now());
  for (Instant const moment : {clock.now() + 6min, midnight - 1s}) {
    clock.advance(moment - clock.now());
    fetched(subject);
  }
  EXPECT_EQ(asked, 1);
  subject.setPreferredProvider(WeatherProviderOption::appleWeather);
  auto const blocked = subject.fetch(52.5, 13.4);
  ASSERT_FALSE(blocked);
  EXPECT_EQ(blocked.error().statusCode, 429);
  EXPECT_EQ(blocked.error().retryAfter, 1s);
  EXPECT_EQ(asked, 1) << "nor is it when it is the only one to ask";
  clock.advance(midnight - clock.now());
  fetched(subject);
  EXPECT_EQ(asked, 2);
}

TEST(ServiceAnswer, TellsThePauseThatAServiceAsksFor) {
  struct Row {
    HttpHeaders headers;
    std::optional<std::chrono::seconds> expected;
  };
  std::pair<std::string, std::string> const date{"Date", "Sat, 21 Nov 2026 10:00:00 GMT"};
  for (auto const& row :
       {Row{{}, {}}, Row{{{"Retry-After", "120"}}, 120s}, Row{{{"retry-after", " 0 "}}, 0s},
        Row{{{"Retry-After", "-1"}}, {}}, Row{{{"Retry-After", "999999999"}}, 24h},
        Row{{{"Retry-After", "99999999999999999999"}}, {}}, Row{{{"Retry-After", "soon"}}, {}},
        Row{{date, {"Retry-After", "Sat, 21 Nov 2026 10:05:00 GMT"}}, 300s},
        Row{{date, {"Retry-After", "Sat, 21 Nov 2026 09:00:00 GMT"}}, {}},
        Row{{{"Retry-After", "Sat, 21 Nov 2026 10:05:00 GMT"}}, {}}}) {
    EXPECT_EQ(retryAfterOf({429, row.headers, ""}), row.expected);
  }
}

/// A provider that goes on whatever its stop token says, until the test lets it end.
struct Stubborn {
  std::latch started{1};
  std::latch release{1};

  WeatherProviderManager::Providers providers(Scripted& scripted) {
    auto all = scripted.providers();
    all[0].fetch = [this](double, double, std::stop_token) {
      started.count_down();
      release.wait();
      return answerNamed("too late");
    };
    return all;
  }
};

TEST_F(ManagerTest, GoesOnAtTheLimitThoughTheOperationDoesNot) {
  Stubborn stubborn;
  WeatherProviderManager subject(stubborn.providers(scripted), history, clock, 20ms);
  EXPECT_EQ(fetched(subject), "openMeteo -> openMeteo");
  EXPECT_EQ(history.record("appleWeather").lastError, "Network error: no answer in time");
  stubborn.release.count_down();  // its late result reaches nobody
  EXPECT_EQ(fetched(subject), "openMeteo -> openMeteo");
}

TEST_F(ManagerTest, ReturnsToACancelledCallerAtOnceAndLeavesNoFailure) {
  Stubborn stubborn;
  WeatherProviderManager subject(stubborn.providers(scripted), history, clock);
  std::stop_source source;
  std::jthread const canceller([&] {
    stubborn.started.wait();
    source.request_stop();
  });
  auto const result = subject.fetch(1, 2, source.get_token());
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().transport, HttpError::Kind::cancelled);
  EXPECT_TRUE(scripted.asked.empty());
  EXPECT_FALSE(history.record("appleWeather").lastFailureAt);
  stubborn.release.count_down();
  // Who gave up before the call asks nobody.
  EXPECT_EQ(subject.fetch(1, 2, source.get_token()).error().transport, HttpError::Kind::cancelled);
}

TEST(HardTimeoutBox, IsSettledExactlyOnce) {
  HardTimeoutBox<int> box;
  EXPECT_TRUE(box.finish(7));
  EXPECT_FALSE(box.finish(std::unexpected(APIError::of(APIError::Case::noData))));
  EXPECT_EQ(*box.wait(1h), 7);
  HardTimeoutBox<int> late;
  EXPECT_EQ(late.wait(0ms).error().transport, HttpError::Kind::timedOut);
  EXPECT_FALSE(late.finish(7));
}

TEST(HardTimeoutBox, GivesOneOutcomeToManyThatRace) {
  for (int round = 0; round < 200; ++round) {
    HardTimeoutBox<int> box;
    std::atomic<int> winners = 0;
    {
      std::vector<std::jthread> racers;
      for (int i = 0; i < 4; ++i) racers.emplace_back([&, i] { winners += box.finish(i) ? 1 : 0; });
    }
    EXPECT_EQ(winners, 1);
  }
}

TEST(ProviderHistory, LosesNothingOfSeveralWriters) {
  TemporaryFolder folder;
  auto const file = folder.path() / "_providers.json";
  auto const now = at("2026-11-21T12:00:00Z");
  {
    std::vector<std::jthread> writers;
    for (std::string const name : {"appleWeather", "openMeteo", "yrNo", "wttrIn"}) {
      writers.emplace_back([=] {
        ProviderHistory own(file);
        for (int i = 0; i < 20; ++i) own.noteFailure(name, now, name + " down");
      });
    }
  }
  ProviderHistory history(file);
  EXPECT_EQ(history.records().size(), 4U);
}

}  // namespace
}  // namespace nimbara
