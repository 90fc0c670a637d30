#include "support/session/mock_tray_host.h"

#include <chrono>

namespace nimbara::test {

namespace {

constexpr char kWatcher[] = "org.kde.StatusNotifierWatcher";
constexpr char kItem[] = "org.kde.StatusNotifierItem";
constexpr char kMenu[] = "com.canonical.dbusmenu";
constexpr std::chrono::seconds kLong{20};

}  // namespace

MockTrayHost::MockTrayHost(PrivateBus const& bus, bool hasHost)
    : hasHost_(hasHost),
      connection_(sdbus::createSessionBusConnectionWithAddress(bus.address())),
      object_(sdbus::createObject(*connection_, "/StatusNotifierWatcher")) {
  object_->registerMethod("RegisterStatusNotifierItem")
      .onInterface(kWatcher)
      .implementedAs([this](std::string const& item) {
        std::lock_guard const lock(mutex_);
        item_ = item;
        changed_.notify_all();
      });
  object_->registerProperty("IsStatusNotifierHostRegistered").onInterface(kWatcher).withGetter([this] {
    std::lock_guard const lock(mutex_);
    if (answersWrongly_) throw sdbus::Error("org.freedesktop.DBus.Error.Failed", "no");
    return hasHost_;
  });
  for (char const* const signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
    object_->registerSignal(signal).onInterface(kWatcher);
  }
  object_->finishRegistration();
  connection_->enterEventLoopAsync();
  connection_->requestName(kWatcher);
}

MockTrayHost::~MockTrayHost() {
  connection_->leaveEventLoop();
}

std::string MockTrayHost::waitForItem() {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, kLong, [this] { return !item_.empty(); });
  return item_;
}

void MockTrayHost::setHost(bool hasHost) {
  {
    std::lock_guard const lock(mutex_);
    hasHost_ = hasHost;
  }
  object_->emitSignal(hasHost ? "StatusNotifierHostRegistered" : "StatusNotifierHostUnregistered")
      .onInterface(kWatcher);
}

void MockTrayHost::answerWrongly() {
  std::lock_guard const lock(mutex_);
  answersWrongly_ = true;
}

std::unique_ptr<sdbus::IProxy> MockTrayHost::proxy(char const* path) {
  auto made = sdbus::createProxy(*connection_, waitForItem(), path);
  made->finishRegistration();
  return made;
}

sdbus::Variant MockTrayHost::property(char const* name) {
  return proxy("/StatusNotifierItem")->getProperty(name).onInterface(kItem);
}

std::vector<MockTrayHost::Entry> MockTrayHost::menu() {
  auto const path = property("Menu").get<sdbus::ObjectPath>();
  std::uint32_t revision = 0;
  Entry root;
  proxy(path.c_str())
      ->callMethod("GetLayout")
      .onInterface(kMenu)
      .withArguments(Id{0}, std::int32_t{-1}, std::vector<std::string>())
      .storeResultsTo(revision, root);
  std::vector<Entry> entries;
  for (sdbus::Variant const& child : root.get<2>()) entries.push_back(child.get<Entry>());
  return entries;
}

MockTrayHost::Id MockTrayHost::itemLabelled(std::string const& label) {
  for (Entry const& entry : menu()) {
    auto const found = entry.get<1>().find("label");
    if (found != entry.get<1>().end() && found->second.get<std::string>() == label) return entry.get<0>();
  }
  return -1;
}

void MockTrayHost::click(std::string const& activationToken) {
  auto const item = proxy("/StatusNotifierItem");
  if (!activationToken.empty()) {
    item->callMethod("ProvideXdgActivationToken").onInterface(kItem).withArguments(activationToken);
  }
  item->callMethod("Activate").onInterface(kItem).withArguments(std::int32_t{3}, std::int32_t{4});
}

void MockTrayHost::choose(Id id) {
  proxy("/TrayMenu")
      ->callMethod("Event")
      .onInterface(kMenu)
      .withArguments(id, std::string("clicked"), sdbus::Variant(std::int32_t{0}), std::uint32_t{0});
}

}  // namespace nimbara::test
