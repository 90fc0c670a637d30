#include "platform/linux/desktop_services.h"

#include "platform/linux/dbus/dbus_module.h"

#include <dlfcn.h>

namespace nimbara {

namespace {

/// Beside the program in the build folder, in the library folder when installed.
constexpr std::string_view kFolders[] = {".", "../lib/nimbara"};

DbusModule const* loadFrom(std::filesystem::path const& file) {
  // The module stays until the process ends: what it made may live as long.
  void* const handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  return handle == nullptr ? nullptr : static_cast<DbusModule const*>(dlsym(handle, kDbusModuleSymbol));
}

DbusModule const* loadModule(std::filesystem::path const& program) {
  for (std::string_view const folder : kFolders) {
    auto const file = program.parent_path() / folder / kDbusModuleFile;
    if (DbusModule const* const module = loadFrom(file)) return module;
  }
  return nullptr;
}

constexpr char kNoModule[] =
    "the program's part for the desktop's services (nimbara-dbus.so) is not installed";

class NoLocationSource final : public LocationSource {
 public:
  Result<LocationFix, LocationError> locate(std::chrono::milliseconds, std::stop_token) override {
    return std::unexpected(LocationError{LocationError::Kind::unavailable,
                                         "the location is not known: " + std::string(kNoModule)});
  }
};

class NoPowerAndNetwork final : public PowerAndNetwork {
 public:
  std::vector<std::string> missing() const override {
    return {"resuming from sleep and the network's return are not noticed: " + std::string(kNoModule)};
  }
};

}  // namespace

std::unique_ptr<LocationSource> desktopLocationSource(DesktopOptions const& options) {
  DbusModule const* const module = loadModule(options.program);
  if (module == nullptr) return std::make_unique<NoLocationSource>();
  return module->locationSource(options.systemBus);
}

std::unique_ptr<PowerAndNetwork> desktopPowerAndNetwork(DesktopOptions const& options,
                                                        PowerAndNetwork::Listener listener) {
  DbusModule const* const module = loadModule(options.program);
  if (module == nullptr) return std::make_unique<NoPowerAndNetwork>();
  return module->powerAndNetwork(options.systemBus, std::move(listener));
}

std::vector<DesktopServiceState> desktopServiceStates(DesktopOptions const& options) {
  DbusModule const* const module = loadModule(options.program);
  return module == nullptr ? std::vector<DesktopServiceState>{} : module->serviceStates(options.systemBus);
}

}  // namespace nimbara
