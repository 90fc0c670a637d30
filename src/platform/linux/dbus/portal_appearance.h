// The desktop's wishes from the settings portal on the session's bus, followed as they change. Owned by the
// module's user; tells nothing where there is no portal.
#pragma once

#include "platform/linux/dbus/bus.h"
#include "platform/session/desktop_appearance.h"

#include <array>
#include <memory>
#include <string>

namespace nimbara {

class PortalAppearance final : public DesktopAppearance {
 public:
  /// How many of the portal's settings say what is wished besides the scheme.
  static constexpr std::size_t kPlaces = 4;

  /// The session's own bus for an empty address.
  PortalAppearance(std::string const& sessionBus, Listener listener);
  ~PortalAppearance() override;

 private:
  void connect(std::string const& sessionBus);
  void ask(char const* group, char const* key);
  void take(std::string const& group, std::string const& key, sdbus::Variant const& value);
  bool isSaidOf(bool AppearanceWish::* member) const;

  Listener listener_;
  AppearanceWish wish_;  // of the connection's thread
  std::array<bool, kPlaces> said_{};
  std::unique_ptr<sdbus::IConnection> connection_;
  std::unique_ptr<sdbus::IProxy> portal_;
};

}  // namespace nimbara
