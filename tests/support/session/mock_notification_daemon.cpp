#include "support/session/mock_notification_daemon.h"

#include <chrono>
#include <utility>

namespace nimbara::test {

namespace {

constexpr char kName[] = "org.freedesktop.Notifications";
constexpr std::chrono::seconds kLong{20};
using Hints = std::map<std::string, sdbus::Variant>;
using Texts = std::vector<std::string>;

}  // namespace

MockNotificationDaemon::MockNotificationDaemon(PrivateBus const& bus, DaemonScript script)
    : script_(std::move(script)),
      nextId_(script_.firstId),
      connection_(sdbus::createSessionBusConnectionWithAddress(bus.address())),
      object_(sdbus::createObject(*connection_, "/org/freedesktop/Notifications")) {
  describe();
  connection_->enterEventLoopAsync();
  connection_->requestName(kName);
}

MockNotificationDaemon::~MockNotificationDaemon() {
  connection_->leaveEventLoop();
  waiting_.clear();  // they need the connection
}

void MockNotificationDaemon::describe() {
  object_->registerMethod("GetCapabilities").onInterface(kName).implementedAs([this] {
    return capabilities();
  });
  object_->registerMethod("GetServerInformation").onInterface(kName).implementedAs([] {
    return std::tuple<std::string, std::string, std::string, std::string>("mock", "tests", "1.5", "1.2");
  });
  if (script_.notify == DaemonScript::Notify::answersWrongly) {
    object_->registerMethod("Notify").onInterface(kName).implementedAs(
        [](std::string const&, std::uint32_t, std::string const&, std::string const&, std::string const&,
           Texts const&, Hints const&, std::int32_t) { return std::string("seven"); });
  } else {
    object_->registerMethod("Notify").onInterface(kName).implementedAs(
        [this](Reply&& reply, std::string program, std::uint32_t replaces, std::string icon,
               std::string summary, std::string body, Texts actions, Hints hints, std::int32_t timeout) {
          notify(std::move(reply), {std::move(program), replaces, std::move(icon), std::move(summary),
                                    std::move(body), std::move(actions), std::move(hints), timeout});
        });
  }
  object_->registerMethod("CloseNotification").onInterface(kName).implementedAs([this](std::uint32_t id) {
    std::lock_guard const lock(mutex_);
    withdrawn_.push_back(id);
    changed_.notify_all();
  });
  object_->registerSignal("NotificationClosed")
      .onInterface(kName)
      .withParameters<std::uint32_t, std::uint32_t>();
  for (char const* const name : {"ActionInvoked", "ActivationToken"}) {
    object_->registerSignal(name).onInterface(kName).withParameters<std::uint32_t, std::string>();
  }
  object_->finishRegistration();
}

std::vector<std::string> MockNotificationDaemon::capabilities() {
  std::lock_guard const lock(mutex_);
  ++capabilityQuestions_;
  if (!script_.knowsCapabilities) throw sdbus::Error("org.freedesktop.DBus.Error.UnknownMethod", "no");
  return script_.capabilities;
}

void MockNotificationDaemon::notify(Reply&& reply, ShownNotification shown) {
  std::lock_guard const lock(mutex_);
  if (script_.notify == DaemonScript::Notify::refuses) {
    reply.returnError(
        sdbus::Error("org.freedesktop.Notifications.Error.ExcessNotificationGeneration", "too many"));
    return;
  }
  shown.id = shown.replaces != 0 ? shown.replaces : nextId_++;
  std::uint32_t const id = shown.id;
  shown_.push_back(std::move(shown));
  if (script_.notify == DaemonScript::Notify::waits) {
    waiting_.emplace_back(std::move(reply), id);
  } else {
    reply.returnResults(id);
  }
  changed_.notify_all();
}

std::vector<ShownNotification> MockNotificationDaemon::wait(std::size_t count) {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, kLong, [&] { return shown_.size() >= count; });
  return shown_;
}

std::vector<std::uint32_t> MockNotificationDaemon::waitForWithdrawn(std::size_t count) {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, kLong, [&] { return withdrawn_.size() >= count; });
  return withdrawn_;
}

int MockNotificationDaemon::capabilityQuestions() const {
  std::lock_guard const lock(mutex_);
  return capabilityQuestions_;
}

void MockNotificationDaemon::answerAtLast() {
  decltype(waiting_) waiting;
  {
    std::lock_guard const lock(mutex_);
    script_.notify = DaemonScript::Notify::answers;
    waiting.swap(waiting_);
  }
  // Outside of the lock: the library calls back under one of its own.
  for (auto const& [reply, id] : waiting) reply.returnResults(id);
}

void MockNotificationDaemon::close(std::uint32_t id) {
  constexpr std::uint32_t kDismissed = 2;
  object_->emitSignal("NotificationClosed").onInterface(kName).withArguments(id, kDismissed);
}

void MockNotificationDaemon::click(std::uint32_t id, std::string const& action, std::string const& token) {
  if (!token.empty()) object_->emitSignal("ActivationToken").onInterface(kName).withArguments(id, token);
  object_->emitSignal("ActionInvoked").onInterface(kName).withArguments(id, action);
}

}  // namespace nimbara::test
