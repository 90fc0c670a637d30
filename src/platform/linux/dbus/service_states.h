// Asks both buses which of the services that the program can use are running or could be started.
#pragma once

#include "platform/desktop_service_state.h"

#include <string>
#include <vector>

namespace nimbara {

/// `systemBus` as in `connectToBus`. A bus that cannot be reached leaves its services unknown.
std::vector<DesktopServiceState> serviceStates(std::string const& systemBus);

}  // namespace nimbara
