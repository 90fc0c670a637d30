#include "platform/http/request_quota.h"

#include "base/text/text.h"

#include <algorithm>

namespace nimbara {

namespace {

struct Quota {
  std::string_view word;
  std::chrono::seconds span;
};

/// Nobody is left alone for longer than a day, since a month's end may be weeks away.
constexpr Quota kQuotas[] = {{"minutely", std::chrono::minutes(1)},
                             {"hourly", std::chrono::hours(1)},
                             {"daily", std::chrono::hours(24)},
                             {"monthly", std::chrono::hours(24)}};

std::string_view reasonIn(std::string_view answer) {
  constexpr std::string_view kReason = "\"reason\"";
  auto const key = answer.find(kReason);
  if (key == std::string_view::npos) return trimmed(answer);
  auto const quote = answer.find('"', key + kReason.size());
  return quote == std::string_view::npos ? std::string_view() : answer.substr(quote + 1);
}

}  // namespace

std::optional<Instant> quotaEnd(std::string_view answer, Instant now) {
  constexpr std::size_t kRead = 200;
  std::string const reason = asciiLowered(reasonIn(answer).substr(0, kRead));
  if (reason.find("limit") == std::string::npos) return std::nullopt;
  auto const quota =
      std::ranges::find_if(kQuotas, [&](Quota const& row) { return reason.starts_with(row.word); });
  if (quota == std::end(kQuotas)) return std::nullopt;
  return Instant((now.time_since_epoch() / quota->span + 1) * quota->span);
}

}  // namespace nimbara
