// A connection to a bus whose events are handled by the thread that waits, so that waiting can end
// at a deadline or a stop request. One thread uses it.
#pragma once

#include "base/result.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <sdbus-c++/sdbus-c++.h>
#include <stop_token>
#include <string>
#include <tuple>

namespace nimbara {

/// The system's own bus for an empty address. Throws sdbus::Error.
std::unique_ptr<sdbus::IConnection> connectToBus(std::string const& address);
/// The session's own bus for an empty address. Throws sdbus::Error.
std::unique_ptr<sdbus::IConnection> connectToSessionBus(std::string const& address);

/// An event counter that wakes a poll.
class WakeUp {
 public:
  WakeUp();
  ~WakeUp();
  WakeUp(WakeUp const&) = delete;
  WakeUp& operator=(WakeUp const&) = delete;

  void ring() const;
  /// Before looking for what it rang for, so that no ring is lost.
  void clear() const;
  int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

enum class BusWait { done, timedOut, stopped };

/// Waits for events of one task, all within one limit of time.
class BusTask {
 public:
  BusTask(sdbus::IConnection& connection, std::chrono::milliseconds limit, std::stop_token stop);

  /// Handles events until `isDone`.
  BusWait waitUntil(std::function<bool()> const& isDone);

  template <class... Results>
  using Reply = Result<std::tuple<Results...>, sdbus::Error>;

  /// Calls a method and waits for its reply; nothing when the wait ended before.
  template <class... Results, class... Arguments>
  std::optional<Reply<Results...>> call(sdbus::IProxy& proxy, char const* interface, char const* method,
                                        Arguments const&... arguments) {
    // The reply may come when nobody waits for it any more.
    auto const reply = std::make_shared<std::optional<Reply<Results...>>>();
    proxy.callMethodAsync(method)
        .onInterface(interface)
        .withArguments(arguments...)
        .uponReplyInvoke([reply](sdbus::Error const* error, Results... results) {
          *reply = error == nullptr ? Reply<Results...>(std::tuple(std::move(results)...))
                                    : std::unexpected(*error);
        });
    last_ = waitUntil([&] { return reply->has_value(); });
    return *reply;
  }
  /// How the last wait ended.
  BusWait last() const { return last_; }

 private:
  sdbus::IConnection& connection_;
  std::chrono::steady_clock::time_point deadline_;
  std::stop_token stop_;
  WakeUp wakeUp_;
  BusWait last_ = BusWait::done;
};

/// Milliseconds for poll until the earlier of the bus's own need and `deadline`; -1 for never.
int pollTimeout(sdbus::IConnection::PollData const& data,
                std::optional<std::chrono::steady_clock::time_point> deadline);

}  // namespace nimbara
