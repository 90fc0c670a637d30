#include "demo/feeds/language_model_stand_in.h"

#include "base/json/json.h"
#include "base/json/json_codec.h"
#include "base/text/text.h"

namespace nimbara {

namespace {

struct ChatTurn {
  std::string role;
  std::string content;
};

struct ChatChoice {
  ChatTurn message;
};

struct ChatQuestion {
  std::vector<ChatTurn> messages;
};

}  // namespace

template <>
inline constexpr auto jsonFields<ChatTurn> =
    FieldList{field("role", &ChatTurn::role), field("content", &ChatTurn::content)};
template <>
inline constexpr auto jsonFields<ChatChoice> = FieldList{field("message", &ChatChoice::message)};
template <>
inline constexpr auto jsonFields<ChatQuestion> = FieldList{field("messages", &ChatQuestion::messages)};

template Result<ChatQuestion, DecodeError> decodeJson(std::string_view);

namespace {

constexpr std::string_view kFactsBegin = "\n\n";
constexpr std::string_view kInvention = " Expect ninety-nine degrees by noon: 99!";

/// The task stands above them.
std::string factsOf(std::string_view prompt) {
  std::size_t const begin = prompt.rfind(kFactsBegin);
  std::string facts(begin == prompt.npos ? prompt : prompt.substr(begin + kFactsBegin.size()));
  for (char& c : facts) c = c == '\n' ? ' ' : c;
  return std::string(trimmed(facts));
}

}  // namespace

DemoAnswer chatCompletion(DemoRequest const& request, Instant /*now*/) {
  auto const question = decodeJson<ChatQuestion>(request.header(kPostedBody));
  if (!question || question->messages.empty()) return {.status = 400, .body = "{}", .headers = {}};
  std::string reply = factsOf(question->messages.back().content);
  if (request.fault == DemoFault::Kind::invents) reply += kInvention;
  JsonWriter json;
  json.beginObject();
  json.member("choices", std::vector<ChatChoice>{{{"assistant", reply}}});
  json.endObject();
  return {.body = json.take(), .headers = {}};
}

}  // namespace nimbara
