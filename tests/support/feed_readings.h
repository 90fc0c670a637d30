// What tests of feed services share: the requests of a fake client, looked through.
#pragma once

#include "support/fake_http_client.h"

#include <optional>
#include <string>
#include <string_view>

namespace nimbara::test {

inline std::optional<std::string> headerOf(HttpRequest const& request, std::string_view name) {
  for (auto const& [key, value] : request.headers) {
    if (key == name) return value;
  }
  return std::nullopt;
}

}  // namespace nimbara::test
