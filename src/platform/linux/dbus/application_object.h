// The program on the bus as launchers know it (org.freedesktop.Application): the object that is called, and
// the call itself. Values that are no texts, or more of them than anybody types, are refused.
#pragma once

#include "platform/session/application_instance.h"

#include <functional>
#include <memory>
#include <sdbus-c++/sdbus-c++.h>
#include <string>

namespace nimbara {

/// "/io/github/nimbara/Nimbara".
std::string applicationPath();

/// Tells each call on the connection's thread.
std::unique_ptr<sdbus::IObject> makeApplicationObject(sdbus::IConnection& connection,
                                                      std::function<void(ApplicationCall)> const& tell);

/// As declared in `desktop_services.h`; the session's own bus for an empty address.
Result<void, std::string> callApplicationOnBus(std::string const& sessionBus, ApplicationCall const& call,
                                               std::chrono::milliseconds patience);

}  // namespace nimbara
