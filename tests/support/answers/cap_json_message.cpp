#include "support/answers/cap_json_message.h"

namespace nimbara::test {

std::string jsonFeed(std::vector<JsonMessage> const& messages) {
  std::string list;
  for (JsonMessage const& message : messages) list += (list.empty() ? "" : ",") + message.json();
  return R"({"warnings":[)" + list + "]}";
}

}  // namespace nimbara::test
