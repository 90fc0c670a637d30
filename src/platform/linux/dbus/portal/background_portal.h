// Asks the portal (org.freedesktop.portal.Background) to start the watch with the session, as programs in a
// sandbox must: they cannot write the session's files.
#pragma once

#include "base/result.h"

#include <chrono>
#include <string>

namespace nimbara {

/// As declared in `desktop_services.h`; the session's own bus for an empty address.
Result<bool, std::string> requestAutostart(std::string const& sessionBus, bool wanted,
                                           std::string const& reason, std::chrono::milliseconds patience);

}  // namespace nimbara
