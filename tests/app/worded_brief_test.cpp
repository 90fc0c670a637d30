#include "app/words/brief/worded_brief.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using testing::HasSubstr;

class FakeModel final : public LanguageModel {
 public:
  explicit FakeModel(Result<std::string, std::string> answer) : answer_(std::move(answer)) {}
  Result<std::string, std::string> reply(std::string const& prompt, std::stop_token const&) override {
    asked = prompt;
    return answer_;
  }

  std::string asked;

 private:
  Result<std::string, std::string> answer_;
};

TEST(WordedBrief, IsShownOnlyWhereEveryNumberIsAFact) {
  std::string const facts = "Today: Light rain from 14:00 to 17:00, about 6 mm, high 12 °C.";
  struct Row {
    std::string what;
    Result<std::string, std::string> reply;
    std::optional<std::string> shown;
  };
  for (Row const& row :
       {Row{"the facts", "Rain from 14:00 to 17:00, 6 mm, then 12 °C.",
            "Rain from 14:00 to 17:00, 6 mm, then 12 °C."},
        {"an invented temperature", "Rain from 14:00 to 17:00 and 13 °C.", std::nullopt},
        {"an invented minus", "Down to -6 °C.", std::nullopt},
        {"a fence", "```\nRain until 17:00.\n```", "Rain until 17:00."},
        {"too much", "It rains." + std::string(200, ' ') + std::string(200, 'x') + ".", std::nullopt},
        {"nothing", "", std::nullopt},
        {"a failure", std::unexpected("timed out"), std::nullopt}}) {
    FakeModel model(row.reply);
    EXPECT_EQ(wordedBrief(facts, Texts::load("en"), model), row.shown) << row.what;
  }
}

TEST(WordedBrief, AsksInTheUsersLanguageWithAllFacts) {
  FakeModel model("Dry.");
  wordedBrief("Heute: Trocken.", Texts::load("de"), model);
  EXPECT_THAT(model.asked,
              testing::AllOf(HasSubstr("Answer in Deutsch."), HasSubstr("\n\nHeute: Trocken.\n")));
  FakeModel unasked("Dry.");
  EXPECT_EQ(wordedBrief("", Texts::load("en"), unasked), std::nullopt);
  EXPECT_EQ(unasked.asked, "");
}

}  // namespace
}  // namespace nimbara
