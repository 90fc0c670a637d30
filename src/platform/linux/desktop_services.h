// The desktop's services on D-Bus. Their library weighs megabytes, so they live in a module beside the
// program that is loaded with the first call and then stays.
#pragma once

#include "platform/desktop_service_state.h"
#include "platform/location_source.h"
#include "platform/notification_center.h"
#include "platform/power_and_network.h"

#include <filesystem>
#include <memory>
#include <string>

namespace nimbara {

/// Where the module and the buses are.
struct DesktopBuses {
  std::filesystem::path program;  ///< the running program's file
  std::string systemBus;          ///< the bus's address; empty for the system's own
  std::string sessionBus;         ///< the like of the user's session
};

/// Never null: without the module, every question is answered with the reason.
std::unique_ptr<LocationSource> desktopLocationSource(DesktopBuses const& options);

/// Never null: without bus or services it hears what it can and tells the rest by `missing`.
std::unique_ptr<PowerAndNetwork> desktopPowerAndNetwork(DesktopBuses const& options,
                                                        PowerAndNetwork::Listener listener);

/// Never null: without module, bus or service nothing is authorized and nothing delivered.
std::unique_ptr<NotificationCenter> desktopNotificationCenter(DesktopBuses const& options);

/// Empty without the module.
std::vector<DesktopServiceState> desktopServiceStates(DesktopBuses const& options);

}  // namespace nimbara
