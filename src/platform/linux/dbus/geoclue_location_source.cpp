#include "platform/linux/dbus/geoclue_location_source.h"

#include "platform/application_id.h"
#include "platform/linux/dbus/bus.h"
#include "platform/linux/dbus/location_record.h"

#include <utility>

namespace nimbara {

namespace {

using Kind = LocationError::Kind;
using std::chrono::milliseconds;
using Properties = LocationProperties;

constexpr char kService[] = "org.freedesktop.GeoClue2";
constexpr char kManagerPath[] = "/org/freedesktop/GeoClue2/Manager";
constexpr char kManager[] = "org.freedesktop.GeoClue2.Manager";
constexpr char kClient[] = "org.freedesktop.GeoClue2.Client";
constexpr char kLocation[] = "org.freedesktop.GeoClue2.Location";
constexpr char kProperties[] = "org.freedesktop.DBus.Properties";
/// GeoClue's number for the accuracy of a city.
constexpr std::uint32_t kCityLevel = 4;

LocationError errorOf(Kind kind, std::string_view reason) {
  return locationError(kind, reason);
}

LocationError errorOf(sdbus::Error const& error) {
  std::string const& name = error.getName();
  if (name.ends_with(".AccessDenied")) {
    return errorOf(Kind::denied,
                   "access to your location is denied; allow it in the desktop's privacy settings");
  }
  bool const absent = name.ends_with(".ServiceUnknown") || name.ends_with(".NameHasNoOwner") ||
                      name.find(".Spawn.") != std::string::npos;
  if (absent) return errorOf(Kind::unavailable, "there is no location service (GeoClue) on this machine");
  return errorOf(Kind::unavailable, "the location service failed (" + error.getMessage() + ")");
}

LocationError errorOf(BusWait wait) {
  if (wait == BusWait::stopped) return errorOf(Kind::cancelled, "the request was cancelled");
  return errorOf(Kind::timedOut, "the location service found no position in time");
}

/// One conversation with the service.
class Conversation {
 public:
  Conversation(sdbus::IConnection& connection, milliseconds timeout, std::stop_token stop)
      : connection_(connection), task_(connection, timeout, std::move(stop)) {}

  Result<LocationFix, LocationError> run() {
    if (auto problem = start(0)) return std::unexpected(std::move(*problem));
    return next();
  }

  /// Until the end of the conversation's time, which is what it gives, or an error.
  LocationError follow(std::uint32_t metres, LocationSource::Moved const& moved) {
    if (auto problem = start(metres)) return std::move(*problem);
    for (;;) {
      auto const fix = next();
      if (!fix) return fix.error();
      moved(*fix);
    }
  }

 private:
  /// Nothing when the service has begun to look.
  std::optional<LocationError> start(std::uint32_t metres) {
    auto const manager = sdbus::createProxy(connection_, kService, kManagerPath);
    auto const path = value(task_.call<sdbus::ObjectPath>(*manager, kManager, "GetClient"));
    if (!path) return path.error();
    client_ = sdbus::createProxy(connection_, kService, std::get<0>(*path));
    client_->uponSignal("LocationUpdated")
        .onInterface(kClient)
        .call([this](sdbus::ObjectPath const&, sdbus::ObjectPath const& updated) { location_ = updated; });
    client_->finishRegistration();
    for (auto const& [property, wanted] :
         {std::pair("DesktopId", sdbus::Variant(std::string(kApplicationId))),
          std::pair("RequestedAccuracyLevel", sdbus::Variant(kCityLevel)),
          std::pair("DistanceThreshold", sdbus::Variant(metres))}) {
      auto const set = value(
          task_.call<>(*client_, kProperties, "Set", std::string(kClient), std::string(property), wanted));
      if (!set) return set.error();
    }
    auto const started = value(task_.call<>(*client_, kClient, "Start"));
    return started ? std::nullopt : std::optional(started.error());
  }

  /// Waits for a location that was not read yet.
  Result<LocationFix, LocationError> next() {
    BusWait const waited = task_.waitUntil([&] { return location_.has_value(); });
    if (waited != BusWait::done) return std::unexpected(errorOf(waited));
    return read(*std::exchange(location_, std::nullopt));
  }

  template <class... Results>
  Result<std::tuple<Results...>, LocationError> value(
      std::optional<BusTask::Reply<Results...>> const& reply) const {
    if (!reply) return std::unexpected(errorOf(task_.last()));
    if (!*reply) return std::unexpected(errorOf(reply->error()));
    return **reply;
  }

  Result<LocationFix, LocationError> read(sdbus::ObjectPath const& path) {
    auto const location = sdbus::createProxy(connection_, kService, path);
    auto const all = value(task_.call<Properties>(*location, kProperties, "GetAll", std::string(kLocation)));
    if (!all) return std::unexpected(all.error());
    return locationFix(std::get<0>(*all));
  }

  sdbus::IConnection& connection_;
  BusTask task_;
  std::unique_ptr<sdbus::IProxy> client_;
  std::optional<sdbus::ObjectPath> location_;
};

/// The end of the connection ends the service's work for it.
template <class Talk>
Result<LocationFix, LocationError> converse(std::string const& systemBus, Talk const& talk) {
  std::unique_ptr<sdbus::IConnection> connection;
  try {
    connection = connectToBus(systemBus);
  } catch (sdbus::Error const&) {
    return std::unexpected(errorOf(Kind::unavailable, "there is no system bus (D-Bus)"));
  }
  try {
    return talk(*connection);
  } catch (sdbus::Error const& error) {
    return std::unexpected(errorOf(error));
  }
}

}  // namespace

Result<LocationFix, LocationError> GeoclueLocationSource::locate(milliseconds timeout, std::stop_token stop) {
  return converse(systemBus_,
                  [&](sdbus::IConnection& bus) { return Conversation(bus, timeout, std::move(stop)).run(); });
}

LocationError GeoclueLocationSource::follow(std::uint32_t metres, Moved const& moved, std::stop_token stop) {
  // A new conversation now and then outlives a service that was started again.
  constexpr std::chrono::hours kAConversation{1};
  for (;;) {
    Result<LocationFix, LocationError> const ended =
        converse(systemBus_, [&](sdbus::IConnection& bus) -> Result<LocationFix, LocationError> {
          return std::unexpected(Conversation(bus, kAConversation, stop).follow(metres, moved));
        });
    if (ended.error().kind != Kind::timedOut) return ended.error();
  }
}

}  // namespace nimbara
