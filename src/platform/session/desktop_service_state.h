// Which of the desktop's services that the program can use are there. For diagnosis only.
#pragma once

#include "base/enum_names.h"

#include <string>
#include <vector>

namespace nimbara {

struct DesktopServiceState {
  enum class Presence { running, startable, absent, unknown };

  std::string name;     ///< "org.freedesktop.GeoClue2"
  std::string purpose;  ///< what the program uses it for
  Presence presence = Presence::unknown;
  std::string details;  ///< what a running service tells of itself; may be empty
};

template <>
inline constexpr auto enumNames<DesktopServiceState::Presence> =
    std::to_array<std::string_view>({"running", "startable", "absent", "unknown"});
static_assert(enumNamesComplete(DesktopServiceState::Presence::unknown));

}  // namespace nimbara
