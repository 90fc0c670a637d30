#include "demo/conditional_answer.h"

#include "base/sha256.h"

namespace nimbara {

DemoAnswer conditionalAnswer(DemoRequest const& request, std::string body, int maxAgeSeconds) {
  std::string const tag = "\"" + sha256Hex(body).substr(0, 32) + "\"";
  DemoAnswer answer{200, {}, {{"ETag", tag}, {"Cache-Control", "max-age=" + std::to_string(maxAgeSeconds)}}};
  if (request.header("If-None-Match") == tag) {
    answer.status = 304;
  } else {
    answer.body = std::move(body);
  }
  return answer;
}

}  // namespace nimbara
