// The port through which the system hears that the machine woke up or can reach the network again, so that
// nothing has to look for it by the clock. One object, one thread of its own, no wake-ups in between.
#pragma once

#include "base/enum_names.h"

#include <functional>
#include <string>
#include <vector>

namespace nimbara {

enum class SystemEvent { resumed, networkReachable };
template <>
inline constexpr auto enumNames<SystemEvent> =
    std::to_array<std::string_view>({"resumed", "networkReachable"});
static_assert(enumNamesComplete(SystemEvent::networkReachable));

class PowerAndNetwork {
 public:
  /// Called by the one thread; must not destroy the object.
  using Listener = std::function<void(SystemEvent)>;

  /// Behind it the listener is not called any more.
  virtual ~PowerAndNetwork() = default;
  /// What cannot be heard on this machine and why, a sentence each; empty when everything is there.
  virtual std::vector<std::string> missing() const = 0;
};

}  // namespace nimbara
