// How many calls others on the bus may make, so that a caller that floods the service slows down nobody but
// itself. Pure: moments come from outside.
#pragma once

#include <chrono>
#include <map>
#include <string>

namespace nimbara {

class CallBudget {
 public:
  using Moment = std::chrono::steady_clock::time_point;

  static constexpr double kAtOnce = 60;
  static constexpr double kASecond = 20;
  /// Callers beyond them are remembered in place of the one that called longest ago.
  static constexpr std::size_t kMostCallers = 64;

  /// Whether the caller has a call left; takes it.
  bool take(std::string const& caller, Moment now);

 private:
  struct Account {
    double left = kAtOnce;
    Moment at;
  };

  Account& accountOf(std::string const& caller, Moment now);

  std::map<std::string, Account> accounts_;
};

}  // namespace nimbara
