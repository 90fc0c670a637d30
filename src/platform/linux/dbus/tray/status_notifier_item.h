// The tray's picture on the bus as hosts read it (org.kde.StatusNotifierItem).
#pragma once

#include "platform/session/tray.h"

#include <functional>
#include <memory>
#include <sdbus-c++/sdbus-c++.h>
#include <string>
#include <vector>

namespace nimbara {

class StatusNotifierItem {
 public:
  /// Told of a click with the token that came before it, on the connection's thread.
  using Activated = std::function<void(std::string const& activationToken)>;

  StatusNotifierItem(sdbus::IConnection& connection, Activated activated);

  /// The menu is not this object's.
  void show(TrayFace const& face);
  /// The token that came last, once.
  std::string takeToken();

 private:
  using Pixmap = sdbus::Struct<std::int32_t, std::int32_t, std::vector<std::uint8_t>>;
  using Tooltip = sdbus::Struct<std::string, std::vector<Pixmap>, std::string, std::string>;

  void describeFace();
  void describeClicks();
  void tell(char const* signal) const;

  Activated activated_;
  std::string title_;
  std::string summary_;
  std::vector<TrayPicture> pictures_;
  std::string token_;
  std::unique_ptr<sdbus::IObject> object_;
};

}  // namespace nimbara
