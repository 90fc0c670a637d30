#include "platform/http_patience.h"

#include <algorithm>
#include <charconv>

namespace nimbara {

namespace {

constexpr char kHeader[] = "Prefer";
constexpr std::string_view kWait = "wait=";

}  // namespace

void setLongestSilence(HttpRequest& request, std::chrono::seconds limit) {
  request.headers.emplace_back(kHeader, std::string(kWait) + std::to_string(limit.count()));
}

std::optional<std::chrono::seconds> longestSilence(HttpRequest const& request) {
  auto const found = std::ranges::find_if(request.headers, [](auto const& header) {
    return header.first == kHeader && header.second.starts_with(kWait);
  });
  if (found == request.headers.end()) return std::nullopt;
  int seconds = 0;
  std::string const& text = found->second;
  std::from_chars(text.data() + kWait.size(), text.data() + text.size(), seconds);
  return seconds > 0 ? std::optional(std::chrono::seconds(seconds)) : std::nullopt;
}

}  // namespace nimbara
