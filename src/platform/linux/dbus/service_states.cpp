#include "platform/linux/dbus/service_states.h"

#include "base/text/clean_text.h"
#include "platform/linux/dbus/bus.h"

#include <algorithm>

namespace nimbara {

namespace {

using Presence = DesktopServiceState::Presence;
using Names = std::vector<std::string>;

enum class Bus { system, session };

using Details = std::string (*)(sdbus::IConnection&);

std::string notificationDetails(sdbus::IConnection& connection);

struct Known {
  Bus bus;
  char const* name;
  char const* purpose;
  Details details = nullptr;
};

constexpr Known kServices[] = {
    {Bus::system, "org.freedesktop.GeoClue2", "where you are"},
    {Bus::system, "org.freedesktop.login1", "detecting resume from sleep"},
    {Bus::system, "org.freedesktop.NetworkManager", "detecting the network coming back"},
    {Bus::session, "org.freedesktop.Notifications", "showing notifications", &notificationDetails},
    {Bus::session, "org.freedesktop.portal.Desktop",
     "the desktop's settings, and everything else in a sandbox"},
    {Bus::session, "org.freedesktop.secrets", "keeping your keys and the sign-in of your weather station"},
    {Bus::session, "io.github.nimbara.Nimbara.Service", "answering panels and the desktop's search"},
};

constexpr std::chrono::seconds kPatience{2};

Names ask(sdbus::IProxy& proxy, sdbus::IConnection& connection, char const* interface, char const* method) {
  BusTask task(connection, kPatience, {});
  auto const reply = task.call<Names>(proxy, interface, method);
  return reply && *reply ? std::get<0>(**reply) : Names{};
}

/// "GNOME Shell 43.9, with actions, body, body-markup"
std::string notificationDetails(sdbus::IConnection& connection) {
  constexpr char kServer[] = "org.freedesktop.Notifications";
  auto const proxy = sdbus::createProxy(connection, kServer, "/org/freedesktop/Notifications");
  proxy->finishRegistration();
  BusTask task(connection, kPatience, {});
  using Text = std::string;
  auto const server = task.call<Text, Text, Text, Text>(*proxy, kServer, "GetServerInformation");
  if (!server || !*server) return "unnamed";
  auto const& [name, vendor, version, specification] = **server;
  std::string details = name + " " + version;
  Names capabilities = ask(*proxy, connection, kServer, "GetCapabilities");
  std::ranges::sort(capabilities);
  for (std::string const& capability : capabilities) {
    details += (&capability == capabilities.data() ? ", with " : ", ") + capability;
  }
  constexpr std::size_t kLongest = 400;
  return cleanText(details, kLongest, TextLines::one);
}

/// A bus with the names on it.
struct Reached {
  std::unique_ptr<sdbus::IConnection> connection;
  Names running;
  Names startable;
};

std::optional<Reached> reach(Bus bus, std::string const& address) {
  try {
    auto connection = bus == Bus::system ? connectToBus(address) : connectToSessionBus(address);
    constexpr char kBus[] = "org.freedesktop.DBus";
    auto const proxy = sdbus::createProxy(*connection, kBus, "/org/freedesktop/DBus");
    proxy->finishRegistration();
    Names running = ask(*proxy, *connection, kBus, "ListNames");
    Names startable = ask(*proxy, *connection, kBus, "ListActivatableNames");
    return Reached{std::move(connection), std::move(running), std::move(startable)};
  } catch (sdbus::Error const&) {
    return std::nullopt;
  }
}

Presence presenceOf(std::string const& name, std::optional<Reached> const& bus) {
  if (!bus) return Presence::unknown;
  if (std::ranges::count(bus->running, name) > 0) return Presence::running;
  return std::ranges::count(bus->startable, name) > 0 ? Presence::startable : Presence::absent;
}

std::string detailsOf(Known const& known, Presence presence, std::optional<Reached> const& bus) {
  if (known.details == nullptr || presence != Presence::running) return {};
  try {
    return known.details(*bus->connection);
  } catch (sdbus::Error const&) {
    return {};
  }
}

}  // namespace

std::vector<DesktopServiceState> serviceStates(std::string const& systemBus, std::string const& sessionBus) {
  auto const system = reach(Bus::system, systemBus);
  auto const session = reach(Bus::session, sessionBus);
  std::vector<DesktopServiceState> states;
  states.reserve(std::size(kServices));
  for (Known const& known : kServices) {
    auto const& bus = known.bus == Bus::system ? system : session;
    Presence const presence = presenceOf(known.name, bus);
    states.push_back({known.name, known.purpose, presence, detailsOf(known, presence, bus)});
  }
  return states;
}

}  // namespace nimbara
