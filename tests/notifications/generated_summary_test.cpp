#include "notifications/rules/generated_summary.h"

#include "notifications/engine/engine_state.h"
#include "notifications/engine/notification_manager.h"
#include "support/manual_clock.h"
#include "support/memory_settings_store.h"
#include "support/rules.h"
#include "support/session/fake_notification_center.h"
#include "support/shared_texts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using testing::HasSubstr;
using testing::Not;

Instant const kEvening = at("2026-11-21T20:10:00Z");

TEST(CleanedSummary, LeavesProseAndNothingElse) {
  struct Row {
    std::string_view reply;
    std::optional<std::string> shown;
  };
  Row const rows[] = {
      {"A mild day. Rain at noon.", "A mild day. Rain at noon."},
      {"  A mild day.\n\nRain   at noon!  ", "A mild day. Rain at noon!"},
      {"```\nA mild day, dry.\n```", "A mild day, dry."},
      {"```json\n{\"summary\": \"A mild \\\"spring\\\" day.\"}\n```", "A mild \"spring\" day."},
      {R"({"a": 1, "text" : "First line.\nSecond line."})", "First line. Second line."},
      {R"({"text": "A mild day. The rest was cut sh)", "A mild day."},
      {"A mild day. High 17.5", "A mild day."},
      {"A mild day with 17.5 degrees and no end", std::nullopt},
      {"今天晴朗，最高气温17度。带伞", "今天晴朗，最高气温17度。"},
      {"", std::nullopt},
      {"```json\n```", std::nullopt},
      {"{\"text\": 5}", std::nullopt},
      {"[]", std::nullopt},
      {"Yes.", std::nullopt},
      {"\x01\x02 ... ", std::nullopt},
  };
  for (Row const& row : rows) EXPECT_EQ(cleanedSummary(row.reply), row.shown) << row.reply;
}

TEST(CleanedSummary, CutsWhatIsTooLongAfterASentence) {
  std::string reply;
  for (int i = 0; i < 100'000; ++i) reply += "It rains. ";
  auto const shown = cleanedSummary(reply);
  ASSERT_TRUE(shown);
  EXPECT_LE(shown->size(), 620);
  EXPECT_TRUE(shown->ends_with("rains."));
}

TEST(SummaryPrompt, TellsTheWeatherAndThenTheTask) {
  RuleInputs const inputs = test::ruleInputs(kEvening);
  std::string const prompt = summaryPrompt(inputs, SummaryKind::evening, false);
  EXPECT_THAT(prompt, HasSubstr("Testville:\nCurrent temperature is 15 degrees.\n"
                                "Current conditions: Partly Cloudy\nHumidity: 50 percent. Wind: 10 km/h\n"
                                "Testville's hourly forecast: Saturday 8 PM Partly Cloudy 15°C;"));
  EXPECT_THAT(prompt, HasSubstr("Mention tonight's low and tomorrow's forecast if available."));
  EXPECT_THAT(summaryPrompt(inputs, SummaryKind::morning, true), HasSubstr("shown tomorrow morning"));
  EXPECT_THAT(summaryPrompt(inputs, SummaryKind::morning, false), Not(HasSubstr("tomorrow morning")));
  EXPECT_THAT(summaryPrompt(inputs, SummaryKind::evening, true), HasSubstr("shown tomorrow evening"));
}

class FakeModel final : public LanguageModel {
 public:
  Result<std::string, std::string> reply(std::string const& prompt, std::stop_token const&) override {
    prompts.push_back(prompt);
    return answer;
  }

  std::vector<std::string> prompts;
  Result<std::string, std::string> answer = "A calm evening ahead.";
};

class GeneratedSummaryTest : public testing::Test {
 protected:
  GeneratedSummaryTest() {
    for (std::string_view const key : {"notify_eveningSummary", "appleIntelligence"}) {
      EXPECT_TRUE(store_.set(key, true));
    }
  }

  std::string scheduledBody() {
    auto const gather = [&](NeededInputs const&, std::stop_token const&) {
      return PassInputs{.places = {test::ruleInputs(clock_.now())}, .rules = {}};
    };
    PassReport const report = manager_.evaluate(gather);
    for (Decision const& decision : report.plan.decisions) {
      if (decision.scheduled) return decision.scheduled->body;
    }
    return {};
  }

  SettingsRegistry registry_{notificationSettings()};
  test::MemorySettingsStore store_{registry_};
  test::FakeNotificationCenter center_;
  test::ManualClock clock_{at("2026-11-21T09:00:00Z")};
  FakeModel model_;
  NotificationManager manager_{{store_, center_, clock_, test::sharedEnglishTexts(), {}, &model_}};
};

TEST_F(GeneratedSummaryTest, IsAskedForOnceADay) {
  EXPECT_EQ(scheduledBody(), "A calm evening ahead.");
  clock_.advance(std::chrono::minutes(15));
  EXPECT_EQ(scheduledBody(), "A calm evening ahead.");
  EXPECT_EQ(model_.prompts.size(), 1);
}

TEST_F(GeneratedSummaryTest, LeavesTheTemplateWhereTheModelFails) {
  std::string const kTemplate = "Tonight's low: 15°C. Tomorrow: Partly Cloudy, high 0°C.";
  Result<std::string, std::string> const answers[] = {std::unexpected("no answer"), "", "{}",
                                                      "{\"a\":", "ok"};
  for (auto const& answer : answers) {
    model_.answer = answer;
    EXPECT_EQ(scheduledBody(), kTemplate);
  }
  EXPECT_EQ(model_.prompts.size(), std::size(answers)) << "a failure is not kept";
  ASSERT_TRUE(store_.set("appleIntelligence", false));
  EXPECT_EQ(scheduledBody(), kTemplate);
  EXPECT_EQ(model_.prompts.size(), std::size(answers));
}

}  // namespace
}  // namespace nimbara
