// The port through which the window learns how the desktop wants programs to look: dark or light, with or
// without movements, with strong contrasts. What the desktop does not say is left open.
#pragma once

#include <functional>

namespace nimbara {

struct AppearanceWish {
  enum class Scheme { open, dark, light };
  Scheme scheme = Scheme::open;
  bool reducesMotion = false;
  bool strengthensContrast = false;

  bool operator==(AppearanceWish const&) const = default;
};

/// Tells as long as it lives.
class DesktopAppearance {
 public:
  /// Called on a thread of the source's own.
  using Listener = std::function<void(AppearanceWish const&)>;

  virtual ~DesktopAppearance() = default;
};

}  // namespace nimbara
