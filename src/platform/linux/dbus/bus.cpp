#include "platform/linux/dbus/bus.h"

#include "platform/linux/dbus/bus_address.h"

#include <algorithm>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace nimbara {

namespace {

/// The library itself would wait a minute and a half for a bus that takes the connection and says nothing.
void requireAnswer(std::string const& address) {
  constexpr std::chrono::milliseconds kPatience{700};
  if (!answersAt(address, kPatience)) {
    throw sdbus::Error("org.freedesktop.DBus.Error.NoServer", "nothing responds at " + address);
  }
}

}  // namespace

std::unique_ptr<sdbus::IConnection> connectToBus(std::string const& address) {
  requireAnswer(address.empty() ? systemBusAddress() : address);
  if (address.empty()) return sdbus::createSystemBusConnection();
  return sdbus::createSessionBusConnectionWithAddress(address);
}

std::unique_ptr<sdbus::IConnection> connectToSessionBus(std::string const& address) {
  requireAnswer(address.empty() ? sessionBusAddress() : address);
  if (address.empty()) return sdbus::createSessionBusConnection();
  return sdbus::createSessionBusConnectionWithAddress(address);
}

WakeUp::WakeUp() : descriptor_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

WakeUp::~WakeUp() {
  close(descriptor_);
}

void WakeUp::ring() const {
  eventfd_write(descriptor_, 1);
}

void WakeUp::clear() const {
  eventfd_t rings = 0;
  eventfd_read(descriptor_, &rings);
}

int pollTimeout(sdbus::IConnection::PollData const& data,
                std::optional<std::chrono::steady_clock::time_point> deadline) {
  int const own = data.getPollTimeout();
  if (!deadline) return own;
  auto const left =
      std::chrono::ceil<std::chrono::milliseconds>(*deadline - std::chrono::steady_clock::now());
  int const until = static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 3'600'000));
  return own < 0 ? until : std::min(own, until);
}

BusTask::BusTask(sdbus::IConnection& connection, std::chrono::milliseconds limit, std::stop_token stop)
    : connection_(connection), deadline_(std::chrono::steady_clock::now() + limit), stop_(std::move(stop)) {}

BusWait BusTask::waitUntil(std::function<bool()> const& isDone) {
  std::stop_callback const wake(stop_, [this] { wakeUp_.ring(); });
  while (true) {
    while (connection_.processPendingRequest()) {
    }
    if (isDone()) return BusWait::done;
    if (stop_.stop_requested()) return BusWait::stopped;
    if (std::chrono::steady_clock::now() >= deadline_) return BusWait::timedOut;
    auto const data = connection_.getEventLoopPollData();
    pollfd files[] = {{data.fd, data.events, 0}, {wakeUp_.descriptor(), POLLIN, 0}};
    poll(files, 2, pollTimeout(data, deadline_));
  }
}

}  // namespace nimbara
