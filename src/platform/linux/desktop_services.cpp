#include "platform/linux/desktop_services.h"

#include "platform/linux/dbus/dbus_module.h"
#include "platform/linux/module_loader.h"
#include "platform/linux/sound_files.h"

namespace nimbara {

namespace {

DbusModule const* dbusModule(std::filesystem::path const& program) {
  return static_cast<DbusModule const*>(loadModule(program, kDbusModuleFile, kDbusModuleSymbol));
}

constexpr char kNoModule[] = "the component for desktop services (nimbara-dbus.so) is not installed";

class NoLocationSource final : public LocationSource {
 public:
  Result<LocationFix, LocationError> locate(std::chrono::milliseconds, std::stop_token) override {
    return std::unexpected(absent());
  }
  LocationError follow(std::uint32_t, Moved const&, std::stop_token) override { return absent(); }

 private:
  static LocationError absent() {
    return {LocationError::Kind::unavailable, "the location is unknown: " + std::string(kNoModule)};
  }
};

class NoPowerAndNetwork final : public PowerAndNetwork {
 public:
  std::vector<std::string> missing() const override {
    return {"resume from sleep and the network coming back are not detected: " + std::string(kNoModule)};
  }
};

class NoNotificationCenter final : public NotificationCenter {
 public:
  AuthorizationStatus authorizationStatus() override { return AuthorizationStatus::denied; }
  AuthorizationStatus requestAuthorization() override { return AuthorizationStatus::denied; }
  Result<void, DeliveryError> deliver(NotificationRequest const&) override {
    return std::unexpected(DeliveryError{DeliveryError::Kind::unavailable, kNoModule});
  }
  Result<void, DeliveryError> update(NotificationRequest const&) override { return {}; }
  void withdraw(std::string_view) override {}
  void setListener(Listener) override {}
};

class NoTray final : public Tray {
 public:
  void show(TrayFace) override {}
};

class NoApplicationInstance final : public ApplicationInstance {
 public:
  InstanceStanding standing(std::chrono::milliseconds) override { return InstanceStanding::alone; }
  void setListener(Listener) override {}
};

class NoSecretStore final : public SecretStore {
 public:
  Result<void, SecretFault> keep(std::string const&, std::string const&, std::string const&) override {
    return std::unexpected(SecretFault::absent);
  }
  Result<std::string, SecretFault> find(std::string const&) override {
    return std::unexpected(SecretFault::absent);
  }
  Result<void, SecretFault> forget(std::string const&) override {
    return std::unexpected(SecretFault::absent);
  }
};

}  // namespace

bool isSandboxed() {
  std::error_code ignored;
  return std::filesystem::exists("/.flatpak-info", ignored);
}

DesktopBuses busesOfSession(std::filesystem::path const& program) {
  return {program, {}, {}, isSandboxed()};
}

std::unique_ptr<LocationSource> desktopLocationSource(DesktopBuses const& options) {
  DbusModule const* const module = dbusModule(options.program);
  if (module == nullptr) return std::make_unique<NoLocationSource>();
  return module->locationSource(options.systemBus, options.sessionBus, options.usesPortals);
}

std::unique_ptr<PowerAndNetwork> desktopPowerAndNetwork(DesktopBuses const& options,
                                                        PowerAndNetwork::Listener listener) {
  DbusModule const* const module = dbusModule(options.program);
  if (module == nullptr) return std::make_unique<NoPowerAndNetwork>();
  return module->powerAndNetwork(options.systemBus, std::move(listener));
}

std::unique_ptr<NotificationCenter> desktopNotificationCenter(DesktopBuses const& options) {
  DbusModule const* const module = dbusModule(options.program);
  if (module == nullptr) return std::make_unique<NoNotificationCenter>();
  return module->notificationCenter(options.sessionBus, soundsDirectory(options.program),
                                    options.usesPortals);
}

std::unique_ptr<Tray> desktopTray(DesktopBuses const& options, Tray::Listener listener) {
  DbusModule const* const module = dbusModule(options.program);
  if (module == nullptr) return std::make_unique<NoTray>();
  return module->tray(options.sessionBus, std::move(listener));
}

std::unique_ptr<ApplicationInstance> desktopApplicationInstance(DesktopBuses const& options) {
  DbusModule const* const module = dbusModule(options.program);
  if (module == nullptr) return std::make_unique<NoApplicationInstance>();
  return module->applicationInstance(options.sessionBus);
}

Result<void, std::string> callApplication(DesktopBuses const& options, ApplicationCall const& call,
                                          std::chrono::milliseconds patience) {
  DbusModule const* const module = dbusModule(options.program);
  if (module == nullptr) return std::unexpected(kNoModule);
  return module->callApplication(options.sessionBus, call, patience);
}

std::unique_ptr<DesktopAppearance> desktopAppearance(DesktopBuses const& options,
                                                     DesktopAppearance::Listener listener) {
  DbusModule const* const module = dbusModule(options.program);
  return module == nullptr ? nullptr : module->appearance(options.sessionBus, std::move(listener));
}

Result<bool, std::string> requestAutostart(DesktopBuses const& options, bool wanted,
                                           std::string const& reason, std::chrono::milliseconds patience) {
  DbusModule const* const module = dbusModule(options.program);
  if (module == nullptr) return std::unexpected(kNoModule);
  return module->requestAutostart(options.sessionBus, wanted, reason, patience);
}

std::unique_ptr<SessionService> desktopSessionService(DesktopBuses const& options, ServiceFace& face) {
  DbusModule const* const module = dbusModule(options.program);
  return module == nullptr ? nullptr : module->sessionService(options.sessionBus, face);
}

std::unique_ptr<SecretStore> desktopSecretStore(DesktopBuses const& options) {
  DbusModule const* const module = dbusModule(options.program);
  if (module == nullptr) return std::make_unique<NoSecretStore>();
  return module->secretStore(options.sessionBus);
}

std::vector<DesktopServiceState> desktopServiceStates(DesktopBuses const& options) {
  DbusModule const* const module = dbusModule(options.program);
  if (module == nullptr) return {};
  return module->serviceStates(options.systemBus, options.sessionBus);
}

}  // namespace nimbara
