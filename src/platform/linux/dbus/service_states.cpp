#include "platform/linux/dbus/service_states.h"

#include "platform/linux/dbus/bus.h"

#include <algorithm>

namespace nimbara {

namespace {

using Presence = DesktopServiceState::Presence;
using Names = std::vector<std::string>;

enum class Bus { system, session };

struct Known {
  Bus bus;
  char const* name;
  char const* purpose;
};

constexpr Known kServices[] = {
    {Bus::system, "org.freedesktop.GeoClue2", "where you are"},
    {Bus::system, "org.freedesktop.login1", "noticing the return from sleep"},
    {Bus::system, "org.freedesktop.NetworkManager", "noticing the network's return"},
    {Bus::session, "org.freedesktop.Notifications", "showing notifications"},
    {Bus::session, "org.freedesktop.portal.Desktop", "the desktop's settings"},
};

constexpr std::chrono::seconds kPatience{2};

struct NamesOnBus {
  Names running;
  Names startable;
};

Names ask(sdbus::IProxy& proxy, sdbus::IConnection& connection, char const* method) {
  BusTask task(connection, kPatience, {});
  auto const reply = task.call<Names>(proxy, "org.freedesktop.DBus", method);
  return reply && *reply ? std::get<0>(**reply) : Names{};
}

std::optional<NamesOnBus> namesOn(Bus bus, std::string const& systemBus) {
  try {
    auto const connection =
        bus == Bus::system ? connectToBus(systemBus) : sdbus::createSessionBusConnection();
    auto const proxy = sdbus::createProxy(*connection, "org.freedesktop.DBus", "/org/freedesktop/DBus");
    proxy->finishRegistration();
    return NamesOnBus{ask(*proxy, *connection, "ListNames"),
                      ask(*proxy, *connection, "ListActivatableNames")};
  } catch (sdbus::Error const&) {
    return std::nullopt;
  }
}

Presence presenceOf(std::string const& name, std::optional<NamesOnBus> const& names) {
  if (!names) return Presence::unknown;
  if (std::ranges::count(names->running, name) > 0) return Presence::running;
  return std::ranges::count(names->startable, name) > 0 ? Presence::startable : Presence::absent;
}

}  // namespace

std::vector<DesktopServiceState> serviceStates(std::string const& systemBus) {
  auto const system = namesOn(Bus::system, systemBus);
  auto const session = namesOn(Bus::session, systemBus);
  std::vector<DesktopServiceState> states;
  for (Known const& known : kServices) {
    auto const& names = known.bus == Bus::system ? system : session;
    states.push_back({known.name, known.purpose, presenceOf(known.name, names)});
  }
  return states;
}

}  // namespace nimbara
