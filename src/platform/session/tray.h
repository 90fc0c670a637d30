// The port of the desktop's tray: a small picture that stays while the window is closed, with a line of text
// and a menu. It shows what it is given and tells what people do with it; what that means is the window's
// business.
#pragma once

#include "base/enum_names.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace nimbara {

/// A square picture in one size: four bytes a point (alpha, red, green, blue), row after row from the top.
struct TrayPicture {
  int side = 0;
  std::vector<std::uint8_t> argb;

  bool operator==(TrayPicture const&) const = default;
};

struct TrayMenuItem {
  std::string key;  ///< told when it is chosen; empty for a line between groups
  std::string label;
  bool isEnabled = true;

  bool operator==(TrayMenuItem const&) const = default;
};

struct TrayFace {
  std::string title;
  std::string summary;                ///< the tooltip
  std::vector<TrayPicture> pictures;  ///< the same in several sizes
  std::vector<TrayMenuItem> menu;

  bool operator==(TrayFace const&) const = default;
};

struct TrayEvent {
  enum class Kind {
    hostCame,   ///< somebody shows the tray now
    hostLeft,   ///< nobody shows it any more
    activated,  ///< a click on the picture
    chosen      ///< an item of the menu, by its key
  };
  Kind kind = Kind::activated;
  std::string key;
  std::string activationToken;  ///< lets a window take the focus; may be empty
};

template <>
inline constexpr auto enumNames<TrayEvent::Kind> =
    std::to_array<std::string_view>({"hostCame", "hostLeft", "activated", "chosen"});
static_assert(enumNamesComplete(TrayEvent::Kind::chosen));

class Tray {
 public:
  /// Called by a thread of the tray's own; must not destroy the tray.
  using Listener = std::function<void(TrayEvent const&)>;

  /// Behind it the listener is not called any more.
  virtual ~Tray() = default;
  /// Never waits. Without a host the face is kept for one that comes.
  virtual void show(TrayFace face) = 0;
};

}  // namespace nimbara
