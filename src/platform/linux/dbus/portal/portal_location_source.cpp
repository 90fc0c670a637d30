#include "platform/linux/dbus/portal/portal_location_source.h"

#include "platform/linux/dbus/bus.h"
#include "platform/linux/dbus/location_record.h"
#include "platform/linux/dbus/portal/portal_names.h"

#include <optional>
#include <utility>

namespace nimbara {

namespace {

using Kind = LocationError::Kind;

constexpr char kInterface[] = "org.freedesktop.portal.Location";
constexpr char kRequest[] = "org.freedesktop.portal.Request";
constexpr char kToken[] = "nimbara_location";
/// The portal's number for the accuracy of a city.
constexpr std::uint32_t kCity = 2;
/// What it answers where the user said no.
constexpr std::uint32_t kRefused = 1;

using Ended = std::optional<LocationError>;

LocationError errorOf(BusWait wait) {
  if (wait == BusWait::stopped) return locationError(Kind::cancelled, "the request was cancelled");
  return locationError(Kind::timedOut, "the location portal found no position in time");
}

LocationError denied() {
  return locationError(Kind::denied,
                       "access to your location is denied; allow it in the desktop's privacy settings");
}

/// Nobody else is asked then.
bool isRefusal(sdbus::Error const& error) {
  return error.getName().ends_with(".AccessDenied") || error.getName().ends_with(".NotAllowed");
}

/// One session with the portal, which ends with the connection.
class Session {
 public:
  Session(std::string const& bus, std::chrono::milliseconds timeout, std::stop_token stop)
      : connection_(connectToSessionBus(bus)),
        task_(*connection_, timeout, std::move(stop)),
        portal_(sdbus::createProxy(*connection_, kPortal, kPortalPath)),
        request_(sdbus::createProxy(*connection_, kPortal, portalRequestPath(*connection_, kToken))) {
    portal_->uponSignal("LocationUpdated")
        .onInterface(kInterface)
        .call([this](sdbus::ObjectPath const& session, LocationProperties const& location) {
          if (session == session_) location_ = location;
        });
    portal_->finishRegistration();
    request_->uponSignal("Response")
        .onInterface(kRequest)
        .call([this](std::uint32_t code, PortalOptions const&) { response_ = code; });
    request_->finishRegistration();
  }

  /// Whether there is a portal; `problem` is why it does not look.
  bool start(std::uint32_t metres, Ended& problem) {
    PortalOptions const wanted{
        {"session_handle_token", std::string(kToken)}, {"distance-threshold", metres}, {"accuracy", kCity}};
    auto const made = task_.call<sdbus::ObjectPath>(*portal_, kInterface, "CreateSession", wanted);
    if (!made) return fail(problem, errorOf(task_.last()));
    if (!*made && isRefusal(made->error())) return fail(problem, denied());
    if (!*made) return false;
    session_ = std::get<0>(**made);
    auto const started = task_.call<sdbus::ObjectPath>(*portal_, kInterface, "Start", session_, std::string(),
                                                       PortalOptions{{"handle_token", std::string(kToken)}});
    if (!started) return fail(problem, errorOf(task_.last()));
    if (!*started)
      return fail(problem, locationError(Kind::unavailable, "the location portal failed (" +
                                                                started->error().getMessage() + ")"));
    return true;
  }

  /// Waits for a position that was not read yet, or for the user's no.
  Result<LocationFix, LocationError> next() {
    BusWait const waited = task_.waitUntil([this] { return location_ || response_.value_or(0) != 0; });
    if (location_) return locationFix(*std::exchange(location_, std::nullopt));
    if (waited != BusWait::done) return std::unexpected(errorOf(waited));
    if (*response_ == kRefused) return std::unexpected(denied());
    return std::unexpected(locationError(Kind::unavailable, "the location portal ended the request"));
  }

 private:
  static bool fail(Ended& problem, LocationError error) {
    problem = std::move(error);
    return true;
  }

  std::unique_ptr<sdbus::IConnection> connection_;
  BusTask task_;
  sdbus::ObjectPath session_;
  std::optional<LocationProperties> location_;
  std::optional<std::uint32_t> response_;
  std::unique_ptr<sdbus::IProxy> portal_;
  std::unique_ptr<sdbus::IProxy> request_;
};

/// Nothing where there is no portal.
template <class Talk>
std::optional<Result<LocationFix, LocationError>> converse(std::string const& bus,
                                                           std::chrono::milliseconds timeout,
                                                           std::uint32_t metres, std::stop_token stop,
                                                           Talk const& talk) {
  try {
    Session session(bus, timeout, std::move(stop));
    Ended problem;
    if (!session.start(metres, problem)) return std::nullopt;
    if (problem) return std::unexpected(std::move(*problem));
    return talk(session);
  } catch (sdbus::Error const&) {
    return std::nullopt;
  }
}

}  // namespace

Result<LocationFix, LocationError> PortalLocationSource::locate(std::chrono::milliseconds timeout,
                                                                std::stop_token stop) {
  auto answer = converse(sessionBus_, timeout, 0, stop, [](Session& session) { return session.next(); });
  return answer ? std::move(*answer) : otherwise_->locate(timeout, std::move(stop));
}

LocationError PortalLocationSource::follow(std::uint32_t metres, Moved const& moved, std::stop_token stop) {
  // A new session now and then outlives a portal that was started again.
  constexpr std::chrono::hours kASession{1};
  for (;;) {
    auto const ended = converse(sessionBus_, kASession, metres, stop, [&](Session& session) {
      for (;;) {
        auto fix = session.next();
        if (!fix) return fix;
        moved(*fix);
      }
    });
    if (!ended) return otherwise_->follow(metres, moved, std::move(stop));
    if (ended->error().kind != Kind::timedOut) return ended->error();
  }
}

}  // namespace nimbara
