// Asks both buses which of the services that the program can use are running or could be started.
#pragma once

#include "platform/session/desktop_service_state.h"

#include <string>
#include <vector>

namespace nimbara {

/// The buses as in `connectToBus` and `connectToSessionBus`. A bus that cannot be reached leaves its services
/// unknown; no service is started by the question.
std::vector<DesktopServiceState> serviceStates(std::string const& systemBus, std::string const& sessionBus);

}  // namespace nimbara
