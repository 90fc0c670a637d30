// What the module offers to the program that loads it. Both are built together; there is no other user.
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
#include <vector>

namespace nimbara {

struct DbusModule {
  /// The portal's, for a program in a sandbox, asks the other bus only where there is no portal.
  std::unique_ptr<LocationSource> (*locationSource)(std::string const& systemBus,
                                                    std::string const& sessionBus, bool usesPortals);
  std::unique_ptr<PowerAndNetwork> (*powerAndNetwork)(std::string const& systemBus,
                                                      PowerAndNetwork::Listener listener);
  std::unique_ptr<NotificationCenter> (*notificationCenter)(std::string const& sessionBus,
                                                            std::filesystem::path const& soundsDirectory,
                                                            bool usesPortals);
  std::unique_ptr<Tray> (*tray)(std::string const& sessionBus, Tray::Listener listener);
  std::unique_ptr<ApplicationInstance> (*applicationInstance)(std::string const& sessionBus);
  Result<void, std::string> (*callApplication)(std::string const& sessionBus, ApplicationCall const& call,
                                               std::chrono::milliseconds patience);
  std::unique_ptr<DesktopAppearance> (*appearance)(std::string const& sessionBus,
                                                   DesktopAppearance::Listener listener);
  std::vector<DesktopServiceState> (*serviceStates)(std::string const& systemBus,
                                                    std::string const& sessionBus);
  Result<bool, std::string> (*requestAutostart)(std::string const& sessionBus, bool wanted,
                                                std::string const& reason,
                                                std::chrono::milliseconds patience);
  std::unique_ptr<SessionService> (*sessionService)(std::string const& sessionBus, ServiceFace& face);
  std::unique_ptr<SecretStore> (*secretStore)(std::string const& sessionBus);
};

inline constexpr char kDbusModuleSymbol[] = "nimbaraDbusModule";
inline constexpr char kDbusModuleFile[] = "nimbara-dbus.so";

}  // namespace nimbara
