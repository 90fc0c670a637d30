#include "feeds/imagery/request_budget.h"

namespace nimbara {

std::optional<std::chrono::milliseconds> RequestBudget::begin(std::string const& host, Moment now) {
  constexpr std::chrono::minutes kSpan{1};
  std::deque<Moment>& begun = begun_[host];
  while (!begun.empty() && now - begun.front() >= kSpan) begun.pop_front();
  if (begun.size() >= kAMinute)
    return std::chrono::ceil<std::chrono::milliseconds>(begun.front() + kSpan - now);
  begun.push_back(now);
  ++running_;
  return std::nullopt;
}

}  // namespace nimbara
