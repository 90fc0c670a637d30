// The tray over the session's bus: announces the picture to the watcher of such pictures, again after that
// was replaced, and follows whether anybody shows them.
#pragma once

#include "platform/linux/dbus/bus_thread.h"
#include "platform/linux/dbus/tray/status_notifier_item.h"
#include "platform/linux/dbus/tray/tray_menu.h"
#include "platform/session/tray.h"

#include <memory>
#include <optional>

namespace nimbara {

class StatusNotifierTray final : public Tray {
 public:
  StatusNotifierTray(std::string const& sessionBus, Listener listener);
  ~StatusNotifierTray() override;

  void show(TrayFace face) override;

 private:
  void begin(sdbus::IConnection& connection);
  void end();
  void hearWatcher(sdbus::IConnection& connection);
  void watcherIs(bool isThere);
  void askForHost();
  void hostIs(bool isThere);

  Listener listener_;
  // All below belong to the thread.
  std::string ownName_;
  std::unique_ptr<StatusNotifierItem> item_;
  std::unique_ptr<TrayMenu> menu_;
  std::unique_ptr<sdbus::IProxy> bus_;
  std::unique_ptr<sdbus::IProxy> watcher_;
  sdbus::Slot ownerChanges_;
  int watchers_ = 0;  ///< seen so far: answers of former ones do not count
  bool hasHost_ = false;
  std::optional<BusThread> thread_;
};

}  // namespace nimbara
