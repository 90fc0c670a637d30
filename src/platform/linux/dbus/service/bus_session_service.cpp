#include "platform/linux/dbus/service/bus_session_service.h"

#include <utility>

namespace nimbara {

namespace {

constexpr char kBus[] = "org.freedesktop.DBus";
constexpr char kBusPath[] = "/org/freedesktop/DBus";
/// Neither takes the name from another process nor lets one take it; waits in its queue.
constexpr std::uint32_t kWaitInTurn = 0;

}  // namespace

struct BusSessionService::Objects {
  Objects(sdbus::IConnection& connection, ServiceFace& face)
      : weather(connection, face, gate), runner(connection, face, gate), search(connection, face, gate) {}

  CallGate gate;
  WeatherObject weather;
  RunnerObject runner;
  ShellSearchObject search;
};

BusSessionService::BusSessionService(std::string const& sessionBus, ServiceFace& face) : face_(face) {
  thread_.emplace(sessionBus, BusThread::Work{[this](sdbus::IConnection& connection) { begin(connection); },
                                              [this] {
                                                objects_.reset();
                                                bus_.reset();
                                              }});
}

BusSessionService::~BusSessionService() {
  thread_.reset();
}

/// The objects stand before the name is ours: a caller that started us is answered at once.
void BusSessionService::begin(sdbus::IConnection& connection) {
  objects_ = std::make_unique<Objects>(connection, face_);
  bus_ = sdbus::createProxy(connection, kBus, kBusPath);
  bus_->finishRegistration();
  bus_->callMethodAsync("RequestName")
      .onInterface(kBus)
      .withArguments(std::string(kServiceName), kWaitInTurn)
      .uponReplyInvoke([](sdbus::Error const*, std::uint32_t) {});
}

void BusSessionService::announce(std::vector<WarningNews> news) {
  thread_->post([this, news = std::move(news)] {
    if (objects_) objects_->weather.announce(news);
  });
}

}  // namespace nimbara
