#include "app/services/chat_language_model.h"

#include "support/fake_http_client.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using testing::HasSubstr;

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

}  // namespace
}  // namespace nimbara
