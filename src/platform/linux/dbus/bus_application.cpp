#include "platform/linux/dbus/bus_application.h"

#include "platform/application_id.h"

#include <utility>

namespace nimbara {

namespace {

constexpr char kBus[] = "org.freedesktop.DBus";
constexpr char kBusPath[] = "/org/freedesktop/DBus";
constexpr std::uint32_t kDoNotQueue = 4;
constexpr std::uint32_t kIsOwner = 1;
constexpr std::size_t kMostWaiting = 100;

}  // namespace

BusApplication::BusApplication(std::string const& sessionBus) {
  thread_.emplace(sessionBus, BusThread::Work{[this](sdbus::IConnection& connection) { begin(connection); },
                                              [this] { end(); }});
}

BusApplication::~BusApplication() {
  thread_.reset();
}

/// The object stands before the name is ours: a caller that started us is answered at once.
void BusApplication::begin(sdbus::IConnection& connection) {
  object_ = makeApplicationObject(connection, [this](ApplicationCall call) { called(std::move(call)); });
  bus_ = sdbus::createProxy(connection, kBus, kBusPath);
  bus_->finishRegistration();
  bus_->callMethodAsync("RequestName")
      .onInterface(kBus)
      .withArguments(std::string(kApplicationId), kDoNotQueue)
      .uponReplyInvoke([this](sdbus::Error const* error, std::uint32_t outcome) {
        using enum InstanceStanding;
        stand(error != nullptr ? alone : outcome == kIsOwner ? first : second);
      });
}

void BusApplication::end() {
  stand(InstanceStanding::alone);
  object_.reset();
  bus_.reset();
}

void BusApplication::stand(InstanceStanding standing) {
  std::lock_guard const lock(mutex_);
  if (!standing_) standing_ = standing;
  changed_.notify_all();
}

InstanceStanding BusApplication::standing(std::chrono::milliseconds patience) {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, patience, [this] { return standing_.has_value(); });
  return standing_.value_or(InstanceStanding::alone);
}

void BusApplication::setListener(Listener listener) {
  std::lock_guard const lock(listenerMutex_);
  listener_ = std::move(listener);
  if (!listener_) return;
  for (ApplicationCall const& call : std::exchange(waiting_, {})) listener_(call);
}

void BusApplication::called(ApplicationCall call) {
  std::lock_guard const lock(listenerMutex_);
  if (listener_) {
    listener_(call);
  } else if (waiting_.size() < kMostWaiting) {
    waiting_.push_back(std::move(call));
  }
}

}  // namespace nimbara
