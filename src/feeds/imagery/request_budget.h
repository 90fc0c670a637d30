// How many requests for maps may run: six at once, and sixty a minute to a host. Knows no clock; its owner
// says what time it is.
#pragma once

#include <chrono>
#include <deque>
#include <map>
#include <optional>
#include <string>

namespace nimbara {

class RequestBudget {
 public:
  using Moment = std::chrono::steady_clock::time_point;

  static constexpr int kAtOnce = 6;
  static constexpr std::size_t kAMinute = 60;

  /// All places are taken; one becomes free with the next `end`.
  bool isFull() const { return running_ >= kAtOnce; }
  /// The request begins, and `end` must follow; or how long the host must be left alone before it may. Only
  /// while it is not full.
  std::optional<std::chrono::milliseconds> begin(std::string const& host, Moment now);
  void end() { --running_; }

 private:
  int running_ = 0;
  std::map<std::string, std::deque<Moment>> begun_;  ///< within the last minute
};

}  // namespace nimbara
