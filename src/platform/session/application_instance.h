// The port of the one running program: the first start owns the program's name in the session and is told
// what launchers, notifications and later starts ask for; a later one hands over what it was asked and ends.
#pragma once

#include "base/enum_names.h"
#include "base/result.h"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace nimbara {

/// What the running program is asked to do beside coming to the front.
struct ApplicationCall {
  std::string action;  ///< "start" has arguments; others are named by the desktop file; empty: just to come
  std::vector<std::string> arguments;  ///< without the program's name
  std::string activationToken;         ///< lets a window take the focus; may be empty

  bool operator==(ApplicationCall const&) const = default;
};

enum class InstanceStanding {
  first,   ///< this process has the name
  second,  ///< another one has it
  alone    ///< there is no bus that answers: nobody knows
};
template <>
inline constexpr auto enumNames<InstanceStanding> =
    std::to_array<std::string_view>({"first", "second", "alone"});
static_assert(enumNamesComplete(InstanceStanding::alone));

class ApplicationInstance {
 public:
  /// Called by a thread of the instance's own; must not destroy it.
  using Listener = std::function<void(ApplicationCall const&)>;

  /// Behind it the listener is not called any more, and the name is free.
  virtual ~ApplicationInstance() = default;
  /// Waits no longer than `patience` for the bus.
  virtual InstanceStanding standing(std::chrono::milliseconds patience) = 0;
  /// Told of the calls that came before, too.
  virtual void setListener(Listener listener) = 0;
};

}  // namespace nimbara
