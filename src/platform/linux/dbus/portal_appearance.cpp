#include "platform/linux/dbus/portal_appearance.h"

namespace nimbara {

namespace {

constexpr char kPortal[] = "org.freedesktop.portal.Desktop";
constexpr char kPortalPath[] = "/org/freedesktop/portal/desktop";
constexpr char kSettings[] = "org.freedesktop.portal.Settings";
constexpr char kAppearance[] = "org.freedesktop.appearance";
constexpr char kGnomeInterface[] = "org.gnome.desktop.interface";
/// The portal's numbers of the scheme.
constexpr std::uint32_t kPrefersDark = 1;
constexpr std::uint32_t kPrefersLight = 2;

/// The portal wraps what it reads a second time.
sdbus::Variant unwrapped(sdbus::Variant value) {
  while (value.containsValueOfType<sdbus::Variant>()) value = value.get<sdbus::Variant>();
  return value;
}

AppearanceWish::Scheme schemeOf(std::uint32_t number) {
  using Scheme = AppearanceWish::Scheme;
  return number == kPrefersDark ? Scheme::dark : number == kPrefersLight ? Scheme::light : Scheme::open;
}

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
  ask(kAppearance, "reduced-motion");
  ask(kGnomeInterface, "enable-animations");
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
  bool const isNumber = told.containsValueOfType<std::uint32_t>();
  if (group == kAppearance && key == "color-scheme" && isNumber) {
    wish_.scheme = schemeOf(told.get<std::uint32_t>());
  } else if (group == kAppearance && key == "reduced-motion" && isNumber) {
    wish_.reducesMotion = told.get<std::uint32_t>() == 1;
  } else if (group == kGnomeInterface && key == "enable-animations" && told.containsValueOfType<bool>()) {
    wish_.reducesMotion = !told.get<bool>();
  }
  if (wish_ != before) listener_(wish_);
}

}  // namespace nimbara
