#include "platform/linux/dbus/tray/status_notifier_tray.h"

#include <utility>

namespace nimbara {

namespace {

constexpr char kBus[] = "org.freedesktop.DBus";
constexpr char kBusPath[] = "/org/freedesktop/DBus";
constexpr char kProperties[] = "org.freedesktop.DBus.Properties";
constexpr char kWatcher[] = "org.kde.StatusNotifierWatcher";
constexpr char kWatcherPath[] = "/StatusNotifierWatcher";
constexpr char kOwnerMatch[] =
    "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
    "member='NameOwnerChanged',arg0='org.kde.StatusNotifierWatcher'";

}  // namespace

StatusNotifierTray::StatusNotifierTray(std::string const& sessionBus, Listener listener)
    : listener_(std::move(listener)) {
  thread_.emplace(sessionBus, BusThread::Work{[this](sdbus::IConnection& connection) { begin(connection); },
                                              [this] { end(); }});
}

StatusNotifierTray::~StatusNotifierTray() {
  thread_.reset();
}

void StatusNotifierTray::show(TrayFace face) {
  thread_->post([this, face = std::move(face)] {
    item_->show(face);
    menu_->show(face.menu);
  });
}

void StatusNotifierTray::begin(sdbus::IConnection& connection) {
  ownName_ = connection.getUniqueName();
  item_ = std::make_unique<StatusNotifierItem>(
      connection, [this](std::string const& token) { listener_({TrayEvent::Kind::activated, {}, token}); });
  menu_ = std::make_unique<TrayMenu>(connection, [this](std::string const& key) {
    listener_({TrayEvent::Kind::chosen, key, item_->takeToken()});
  });
  hearWatcher(connection);
}

void StatusNotifierTray::end() {
  hostIs(false);
  ownerChanges_.reset();
  watcher_.reset();
  bus_.reset();
  menu_.reset();
  item_.reset();
}

void StatusNotifierTray::hearWatcher(sdbus::IConnection& connection) {
  ownerChanges_ = connection.addMatch(kOwnerMatch, [this](sdbus::Message& message) {
    std::string name;
    std::string former;
    std::string owner;
    message >> name >> former >> owner;
    watcherIs(!owner.empty());
  });
  watcher_ = sdbus::createProxy(connection, kWatcher, kWatcherPath);
  for (char const* const signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
    watcher_->uponSignal(signal).onInterface(kWatcher).call([this] { askForHost(); });
  }
  watcher_->finishRegistration();
  bus_ = sdbus::createProxy(connection, kBus, kBusPath);
  bus_->finishRegistration();
  bus_->callMethodAsync("NameHasOwner")
      .onInterface(kBus)
      .withArguments(std::string(kWatcher))
      .uponReplyInvoke([this](sdbus::Error const* error, bool owned) {
        // Whoever came meanwhile has been seen by its coming.
        if (error == nullptr && owned && watchers_ == 0) watcherIs(true);
      });
}

void StatusNotifierTray::watcherIs(bool isThere) {
  ++watchers_;
  if (!isThere) return hostIs(false);
  watcher_->callMethodAsync("RegisterStatusNotifierItem")
      .onInterface(kWatcher)
      .withArguments(ownName_)
      .uponReplyInvoke([](sdbus::Error const*) {});
  askForHost();
}

void StatusNotifierTray::askForHost() {
  watcher_->callMethodAsync("Get")
      .onInterface(kProperties)
      .withArguments(std::string(kWatcher), std::string("IsStatusNotifierHostRegistered"))
      .uponReplyInvoke([this, asked = watchers_](sdbus::Error const* error, sdbus::Variant const& value) {
        if (asked != watchers_) return;
        hostIs(error == nullptr && value.containsValueOfType<bool>() && value.get<bool>());
      });
}

void StatusNotifierTray::hostIs(bool isThere) {
  if (std::exchange(hasHost_, isThere) == isThere) return;
  listener_({isThere ? TrayEvent::Kind::hostCame : TrayEvent::Kind::hostLeft, {}, {}});
}

}  // namespace nimbara
