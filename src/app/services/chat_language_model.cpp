#include "app/services/chat_language_model.h"

#include "base/json/json.h"
#include "base/json/json_codec.h"

namespace nimbara {

namespace {

struct ChatMessage {
  std::string role = "user";
  std::string content;
};

struct ChatChoice {
  ChatMessage message;
};

struct ChatReply {
  std::vector<ChatChoice> choices;
};

}  // namespace

template <>
inline constexpr auto jsonFields<ChatMessage> =
    FieldList{fieldOr("role", &ChatMessage::role), field("content", &ChatMessage::content)};
template <>
inline constexpr auto jsonFields<ChatChoice> = FieldList{field("message", &ChatChoice::message)};
template <>
inline constexpr auto jsonFields<ChatReply> = FieldList{field("choices", &ChatReply::choices)};

template Result<ChatReply, DecodeError> decodeJson(std::string_view);

namespace {

constexpr std::chrono::milliseconds kTimeLimit{10'000};
constexpr std::size_t kMostBytes = std::size_t{256} << 10;
/// A summary is two or three sentences.
constexpr int kMostTokens = 200;

}  // namespace

HttpRequest ChatLanguageModel::requestOf(std::string const& prompt) const {
  JsonWriter json;
  json.beginObject();
  json.member("model", options_.model);
  json.member("messages", std::vector<ChatMessage>{{"user", prompt}});
  json.member("max_tokens", kMostTokens);
  json.member("stream", false);
  json.endObject();
  HttpRequest request;
  request.url = options_.baseUrl + "/v1/chat/completions";
  request.headers = {{"Content-Type", "application/json"}, {"Accept", "application/json"}};
  if (!options_.apiKey.empty()) request.headers.emplace_back("Authorization", "Bearer " + options_.apiKey);
  request.timeout = kTimeLimit;
  request.maxBodyBytes = kMostBytes;
  request.body = json.take();
  return request;
}

Result<std::string, std::string> ChatLanguageModel::reply(std::string const& prompt,
                                                          std::stop_token const& stop) {
  auto const response = http_.get(requestOf(prompt), stop);
  if (!response) return std::unexpected("the language model did not respond: " + response.error().message);
  if (response->status != 200) {
    return std::unexpected("the language model returned status " + std::to_string(response->status));
  }
  auto reply = decodeJson<ChatReply>(response->body);
  if (!reply || reply->choices.empty()) return std::unexpected("the language model's response was empty");
  return std::move(reply->choices.front().message.content);
}

}  // namespace nimbara
