// The desktop's services on D-Bus. Their library weighs megabytes, so they live in a module beside the
// program that is loaded with the first call and then stays.
#pragma once

#include "platform/location_source.h"
#include "platform/power_and_network.h"
#include "platform/secret_store.h"
#include "platform/session/application_instance.h"
#include "platform/session/desktop_appearance.h"
#include "platform/session/desktop_service_state.h"
#include "platform/session/notification_center.h"
#include "platform/session/session_service.h"
#include "platform/session/tray.h"

#include <filesystem>
#include <memory>
#include <string>

namespace nimbara {

/// Where the module and the buses are.
struct DesktopBuses {
  std::filesystem::path program;  ///< the running program's file
  std::string systemBus;          ///< the bus's address; empty for the system's own
  std::string sessionBus;         ///< the like of the user's session
  bool usesPortals = false;       ///< as a program in a sandbox must
};

/// Whether this process is in a sandbox that reaches the desktop through portals only.
bool isSandboxed();

/// Those of the session that the program runs in.
DesktopBuses busesOfSession(std::filesystem::path const& program);

/// Never null: without the module, every question is answered with the reason.
std::unique_ptr<LocationSource> desktopLocationSource(DesktopBuses const& options);

/// Never null: without bus or services it hears what it can and tells the rest by `missing`.
std::unique_ptr<PowerAndNetwork> desktopPowerAndNetwork(DesktopBuses const& options,
                                                        PowerAndNetwork::Listener listener);

/// Never null: without module, bus or service nothing is authorized and nothing delivered.
std::unique_ptr<NotificationCenter> desktopNotificationCenter(DesktopBuses const& options);

/// Never null: without module or bus there is never a host.
std::unique_ptr<Tray> desktopTray(DesktopBuses const& options, Tray::Listener listener);

/// Asks for the program's name at once, on a thread of its own. Never null: without module or bus it is
/// alone.
std::unique_ptr<ApplicationInstance> desktopApplicationInstance(DesktopBuses const& options);

/// Hands a call to the program that has the name; where nobody has, the bus starts the installed one. Waits
/// no longer than `patience`. The error is a sentence without a full stop.
Result<void, std::string> callApplication(DesktopBuses const& options, ApplicationCall const& call,
                                          std::chrono::milliseconds patience);

/// Null without the module.
std::unique_ptr<DesktopAppearance> desktopAppearance(DesktopBuses const& options,
                                                     DesktopAppearance::Listener listener);

/// Asks the desktop, by its portal, to start the watch with the session, or not to any more; the reason is
/// for the user, who may be asked. Gives whether it does now; the error is a sentence without a full stop.
Result<bool, std::string> requestAutostart(DesktopBuses const& options, bool wanted,
                                           std::string const& reason, std::chrono::milliseconds patience);

/// Null without the module. The face must outlive it.
std::unique_ptr<SessionService> desktopSessionService(DesktopBuses const& options, ServiceFace& face);

/// Never null: without module, bus or service nobody keeps secrets.
std::unique_ptr<SecretStore> desktopSecretStore(DesktopBuses const& options);

/// Empty without the module.
std::vector<DesktopServiceState> desktopServiceStates(DesktopBuses const& options);

}  // namespace nimbara
