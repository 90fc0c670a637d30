#include "platform/linux/call_budget.h"

#include <algorithm>

namespace nimbara {

CallBudget::Account& CallBudget::accountOf(std::string const& caller, Moment now) {
  if (auto const known = accounts_.find(caller); known != accounts_.end()) return known->second;
  if (accounts_.size() >= kMostCallers) {
    accounts_.erase(
        std::ranges::min_element(accounts_, {}, [](auto const& entry) { return entry.second.at; }));
  }
  return accounts_.emplace(caller, Account{kAtOnce, now}).first->second;
}

bool CallBudget::take(std::string const& caller, Moment now) {
  Account& account = accountOf(caller, now);
  double const seconds = std::chrono::duration<double>(now - account.at).count();
  account.left = std::min(kAtOnce, account.left + std::max(0.0, seconds) * kASecond);
  account.at = now;
  if (account.left < 1) return false;
  account.left -= 1;
  return true;
}

}  // namespace nimbara
