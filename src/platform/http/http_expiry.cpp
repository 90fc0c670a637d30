#include "platform/http/http_expiry.h"

#include "base/time/http_date.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::chrono::milliseconds kLongestLife = std::chrono::hours(24);

std::optional<Instant> dateHeader(HttpResponse const& answer, std::string_view name) {
  auto const text = answer.header(name);
  return text ? parseHttpDate(*text) : std::nullopt;
}

}  // namespace

Instant expiryOf(HttpResponse const& answer, Instant now) {
  auto const expires = dateHeader(answer, "Expires");
  if (!expires) return now;
  auto const life = *expires - dateHeader(answer, "Date").value_or(now);
  return now + std::clamp(life, std::chrono::milliseconds(0), kLongestLife);
}

}  // namespace nimbara
