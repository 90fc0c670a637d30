#include "platform/linux/dbus/system_watch.h"

#include <poll.h>

namespace nimbara {

namespace {

constexpr char kLogind[] = "org.freedesktop.login1";
constexpr char kLogindPath[] = "/org/freedesktop/login1";
constexpr char kLogindManager[] = "org.freedesktop.login1.Manager";
constexpr char kNetworkManager[] = "org.freedesktop.NetworkManager";
constexpr char kNetworkManagerPath[] = "/org/freedesktop/NetworkManager";
constexpr char kBus[] = "org.freedesktop.DBus";
constexpr char kBusPath[] = "/org/freedesktop/DBus";
/// NetworkManager's number for a network that reaches the internet.
constexpr std::uint32_t kConnectedGlobally = 70;
constexpr std::chrono::seconds kBusTimeout{2};

}  // namespace

SystemWatch::SystemWatch(std::string const& systemBus, Listener listener) : listener_(std::move(listener)) {
  try {
    connect(systemBus);
  } catch (sdbus::Error const&) {
    connection_.reset();
    missing_.emplace_back("resume from sleep is not detected: there is no system bus (D-Bus)");
  }
  if (!managed_ && notices_.descriptor() < 0) {
    missing_.emplace_back(
        "the network coming back is not detected: neither NetworkManager nor the kernel reports it");
  }
  thread_ = std::jthread([this](std::stop_token const& stop) { run(stop); });
}

SystemWatch::~SystemWatch() {
  thread_.request_stop();
  wakeUp_.ring();
  thread_.join();
}

void SystemWatch::connect(std::string const& systemBus) {
  connection_ = connectToBus(systemBus);
  // Listening first, so that a service that comes meanwhile is heard.
  hearLogind();
  hearNetworkManager();
  managed_ = hasOwner(kNetworkManager);
  if (!hasOwner(kLogind)) {
    missing_.emplace_back("resume from sleep is not detected: there is no login service (logind)");
  }
}

bool SystemWatch::hasOwner(char const* service) {
  auto const bus = sdbus::createProxy(*connection_, kBus, kBusPath);
  bool owned = false;
  bus->callMethod("NameHasOwner")
      .onInterface(kBus)
      .withTimeout(kBusTimeout)
      .withArguments(std::string(service))
      .storeResultsTo(owned);
  return owned;
}

void SystemWatch::hearLogind() {
  logind_ = sdbus::createProxy(*connection_, kLogind, kLogindPath);
  logind_->uponSignal("PrepareForSleep").onInterface(kLogindManager).call([this](bool falling) {
    if (!falling) listener_(SystemEvent::resumed);
  });
  logind_->finishRegistration();
}

void SystemWatch::hearNetworkManager() {
  networkManager_ = sdbus::createProxy(*connection_, kNetworkManager, kNetworkManagerPath);
  networkManager_->uponSignal("StateChanged").onInterface(kNetworkManager).call([this](std::uint32_t state) {
    networkStateIs(state);
  });
  networkManager_->finishRegistration();
}

void SystemWatch::networkStateIs(std::uint32_t state) {
  managed_ = true;
  bool const reachable = state >= kConnectedGlobally && networkState_ < kConnectedGlobally;
  networkState_ = state;
  if (reachable) listener_(SystemEvent::networkReachable);
}

bool SystemWatch::handleBus() {
  try {
    while (connection_->processPendingRequest()) {
    }
    return true;
  } catch (sdbus::Error const&) {
    return false;
  }
}

void SystemWatch::run(std::stop_token const& stop) {
  while (!stop.stop_requested()) {
    // A bus that has gone does not come back under the same connection; the kernel goes on telling.
    if (connection_ && !handleBus()) {
      logind_.reset();
      networkManager_.reset();
      connection_.reset();
      managed_ = false;
    }
    pollfd files[] = {{wakeUp_.descriptor(), POLLIN, 0}, {notices_.descriptor(), POLLIN, 0}, {-1, 0, 0}};
    int timeout = -1;
    if (connection_) {
      auto const data = connection_->getEventLoopPollData();
      files[2] = {data.fd, data.events, 0};
      timeout = pollTimeout(data, std::nullopt);
    }
    poll(files, 3, timeout);
    bool const routed = files[1].revents != 0 && notices_.drain();
    if (routed && !managed_ && !stop.stop_requested()) listener_(SystemEvent::networkReachable);
  }
}

}  // namespace nimbara
