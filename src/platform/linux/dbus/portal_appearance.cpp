#include "platform/linux/dbus/portal_appearance.h"

#include <optional>

namespace nimbara {

namespace {

constexpr char kPortal[] = "org.freedesktop.portal.Desktop";
constexpr char kPortalPath[] = "/org/freedesktop/portal/desktop";
constexpr char kSettings[] = "org.freedesktop.portal.Settings";
constexpr char kAppearance[] = "org.freedesktop.appearance";
constexpr char kGnomeInterface[] = "org.gnome.desktop.interface";
constexpr char kGnomeAccess[] = "org.gnome.desktop.a11y.interface";
/// The portal's numbers of the scheme.
constexpr std::uint32_t kPrefersDark = 1;
constexpr std::uint32_t kPrefersLight = 2;
/// Its number of reduced motion and of high contrast, where they are preferred.
constexpr std::uint32_t kPreferred = 1;

/// The portal wraps what it reads a second time.
sdbus::Variant unwrapped(sdbus::Variant value) {
  while (value.containsValueOfType<sdbus::Variant>()) value = value.get<sdbus::Variant>();
  return value;
}

AppearanceWish::Scheme schemeOf(std::uint32_t number) {
  using Scheme = AppearanceWish::Scheme;
  return number == kPrefersDark ? Scheme::dark : number == kPrefersLight ? Scheme::light : Scheme::open;
}

std::optional<bool> isPreferred(sdbus::Variant const& value) {
  if (!value.containsValueOfType<std::uint32_t>()) return std::nullopt;
  return value.get<std::uint32_t>() == kPreferred;
}

std::optional<bool> isOn(sdbus::Variant const& value) {
  if (!value.containsValueOfType<bool>()) return std::nullopt;
  return value.get<bool>();
}

std::optional<bool> isOff(sdbus::Variant const& value) {
  auto const on = isOn(value);
  return on ? std::optional(!*on) : std::nullopt;
}

/// Where desktops say what they wish; one of several places is enough.
struct Wish {
  char const* group;
  char const* key;
  std::optional<bool> (*isWished)(sdbus::Variant const& value);
  bool AppearanceWish::* member;
};

constexpr std::array kWishes{
    Wish{kAppearance, "reduced-motion", isPreferred, &AppearanceWish::reducesMotion},
    Wish{kGnomeInterface, "enable-animations", isOff, &AppearanceWish::reducesMotion},
    Wish{kAppearance, "contrast", isPreferred, &AppearanceWish::strengthensContrast},
    Wish{kGnomeAccess, "high-contrast", isOn, &AppearanceWish::strengthensContrast},
};
static_assert(kWishes.size() == PortalAppearance::kPlaces);

}  // namespace

PortalAppearance::PortalAppearance(std::string const& sessionBus, Listener listener)
    : listener_(std::move(listener)) {
  try {
    connect(sessionBus);
  } catch (sdbus::Error const&) {  // no bus: nothing is wished
    portal_.reset();
    connection_.reset();
  }
}

PortalAppearance::~PortalAppearance() {
  if (connection_) connection_->leaveEventLoop();
}

void PortalAppearance::connect(std::string const& sessionBus) {
  connection_ = connectToSessionBus(sessionBus);
  portal_ = sdbus::createProxy(*connection_, kPortal, kPortalPath);
  portal_->uponSignal("SettingChanged")
      .onInterface(kSettings)
      .call([this](std::string const& group, std::string const& key, sdbus::Variant const& value) {
        take(group, key, value);
      });
  portal_->finishRegistration();
  ask(kAppearance, "color-scheme");
  for (Wish const& wish : kWishes) ask(wish.group, wish.key);
  connection_->enterEventLoopAsync();
}

void PortalAppearance::ask(char const* group, char const* key) {
  portal_->callMethodAsync("Read")
      .onInterface(kSettings)
      .withArguments(std::string(group), std::string(key))
      .uponReplyInvoke([this, group, key](sdbus::Error const* error, sdbus::Variant const& value) {
        if (error == nullptr) take(group, key, value);
      });
}

void PortalAppearance::take(std::string const& group, std::string const& key, sdbus::Variant const& value) {
  sdbus::Variant const told = unwrapped(value);
  AppearanceWish const before = wish_;
  if (group == kAppearance && key == "color-scheme" && told.containsValueOfType<std::uint32_t>()) {
    wish_.scheme = schemeOf(told.get<std::uint32_t>());
  }
  for (std::size_t i = 0; i < kWishes.size(); ++i) {
    auto const& [place, name, isWished, member] = kWishes[i];
    if (group == place && key == name) said_[i] = isWished(told).value_or(said_[i]);
  }
  wish_.reducesMotion = isSaidOf(&AppearanceWish::reducesMotion);
  wish_.strengthensContrast = isSaidOf(&AppearanceWish::strengthensContrast);
  if (wish_ != before) listener_(wish_);
}

bool PortalAppearance::isSaidOf(bool AppearanceWish::* member) const {
  for (std::size_t i = 0; i < kWishes.size(); ++i) {
    if (kWishes[i].member == member && said_[i]) return true;
  }
  return false;
}

}  // namespace nimbara
