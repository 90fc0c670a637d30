#include "platform/linux/dbus/dbus_module.h"

#include "platform/linux/dbus/bus_application.h"
#include "platform/linux/dbus/geoclue_location_source.h"
#include "platform/linux/dbus/notifications/desktop_notification_center.h"
#include "platform/linux/dbus/portal/background_portal.h"
#include "platform/linux/dbus/portal/portal_location_source.h"
#include "platform/linux/dbus/portal_appearance.h"
#include "platform/linux/dbus/secret_service.h"
#include "platform/linux/dbus/service/bus_session_service.h"
#include "platform/linux/dbus/service_states.h"
#include "platform/linux/dbus/system_watch.h"
#include "platform/linux/dbus/tray/status_notifier_tray.h"

extern "C" {

[[gnu::visibility("default")]] extern nimbara::DbusModule const nimbaraDbusModule;

nimbara::DbusModule const nimbaraDbusModule{
    [](std::string const& systemBus, std::string const& sessionBus,
       bool usesPortals) -> std::unique_ptr<nimbara::LocationSource> {
      auto daemon = std::make_unique<nimbara::GeoclueLocationSource>(systemBus);
      if (!usesPortals) return daemon;
      return std::make_unique<nimbara::PortalLocationSource>(sessionBus, std::move(daemon));
    },
    [](std::string const& systemBus,
       nimbara::PowerAndNetwork::Listener listener) -> std::unique_ptr<nimbara::PowerAndNetwork> {
      return std::make_unique<nimbara::SystemWatch>(systemBus, std::move(listener));
    },
    [](std::string const& sessionBus, std::filesystem::path const& soundsDirectory,
       bool usesPortals) -> std::unique_ptr<nimbara::NotificationCenter> {
      return std::make_unique<nimbara::DesktopNotificationCenter>(sessionBus, soundsDirectory, usesPortals);
    },
    [](std::string const& sessionBus, nimbara::Tray::Listener listener) -> std::unique_ptr<nimbara::Tray> {
      return std::make_unique<nimbara::StatusNotifierTray>(sessionBus, std::move(listener));
    },
    [](std::string const& sessionBus) -> std::unique_ptr<nimbara::ApplicationInstance> {
      return std::make_unique<nimbara::BusApplication>(sessionBus);
    },
    &nimbara::callApplicationOnBus,
    [](std::string const& sessionBus,
       nimbara::DesktopAppearance::Listener listener) -> std::unique_ptr<nimbara::DesktopAppearance> {
      return std::make_unique<nimbara::PortalAppearance>(sessionBus, std::move(listener));
    },
    &nimbara::serviceStates,
    &nimbara::requestAutostart,
    [](std::string const& sessionBus,
       nimbara::ServiceFace& face) -> std::unique_ptr<nimbara::SessionService> {
      return std::make_unique<nimbara::BusSessionService>(sessionBus, face);
    },
    [](std::string const& sessionBus) -> std::unique_ptr<nimbara::SecretStore> {
      return std::make_unique<nimbara::SecretService>(sessionBus);
    },
};
}
