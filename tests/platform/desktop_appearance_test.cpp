#include "platform/linux/desktop_services.h"
#include "support/paths.h"
#include "support/session/private_bus.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <sdbus-c++/sdbus-c++.h>

namespace nimbara {
namespace {

using test::PrivateBus;
using Scheme = AppearanceWish::Scheme;

constexpr char kSettings[] = "org.freedesktop.portal.Settings";
constexpr char kAppearance[] = "org.freedesktop.appearance";

/// The portal as the bus shows it.
class FakePortal {
 public:
  explicit FakePortal(PrivateBus const& bus)
      : connection_(sdbus::createSessionBusConnectionWithAddress(bus.address())),
        object_(sdbus::createObject(*connection_, "/org/freedesktop/portal/desktop")) {
    object_->registerMethod("Read").onInterface(kSettings).implementedAs(
        [](std::string const& group, std::string const& key) {
          if (group == kAppearance && key == "color-scheme") {
            return sdbus::Variant(sdbus::Variant(std::uint32_t{1}));
          }
          if (key == "enable-animations") return sdbus::Variant(sdbus::Variant(true));
          throw sdbus::Error("org.freedesktop.portal.Error.NotFound", "no");
        });
    object_->registerSignal("SettingChanged")
        .onInterface(kSettings)
        .withParameters<std::string, std::string, sdbus::Variant>();
    object_->finishRegistration();
    connection_->requestName("org.freedesktop.portal.Desktop");
    connection_->enterEventLoopAsync();
  }
  ~FakePortal() { connection_->leaveEventLoop(); }

  void change(std::string const& group, std::string const& key, sdbus::Variant const& value) {
    object_->emitSignal("SettingChanged").onInterface(kSettings).withArguments(group, key, value);
  }

 private:
  std::unique_ptr<sdbus::IConnection> connection_;
  std::unique_ptr<sdbus::IObject> object_;
};

class Wishes {
 public:
  void take(AppearanceWish const& wish) {
    std::lock_guard const lock(mutex_);
    newest_ = wish;
    changed_.notify_all();
  }
  bool await(AppearanceWish const& wanted) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(20), [&] { return newest_ == wanted; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  AppearanceWish newest_;
};

TEST(DesktopAppearance, FollowsThePortal) {
  PrivateBus const bus;
  FakePortal portal(bus);
  Wishes wishes;
  auto const appearance = desktopAppearance({test::kProgram, {}, bus.address()},
                                            [&wishes](AppearanceWish const& wish) { wishes.take(wish); });
  ASSERT_NE(appearance, nullptr);
  EXPECT_TRUE(wishes.await({Scheme::dark, false}));
  portal.change(kAppearance, "color-scheme", sdbus::Variant(std::uint32_t{2}));
  EXPECT_TRUE(wishes.await({Scheme::light, false}));
  portal.change("org.gnome.desktop.interface", "enable-animations", sdbus::Variant(false));
  EXPECT_TRUE(wishes.await({Scheme::light, true}));
  // Of two places that say it, one is enough.
  portal.change(kAppearance, "reduced-motion", sdbus::Variant(std::uint32_t{1}));
  portal.change("org.gnome.desktop.interface", "enable-animations", sdbus::Variant(true));
  portal.change(kAppearance, "contrast", sdbus::Variant(std::uint32_t{1}));
  EXPECT_TRUE(wishes.await({Scheme::light, true, true}));
  portal.change(kAppearance, "contrast", sdbus::Variant(std::uint32_t{0}));
  EXPECT_TRUE(wishes.await({Scheme::light, true, false}));
  portal.change("org.gnome.desktop.a11y.interface", "high-contrast", sdbus::Variant(true));
  EXPECT_TRUE(wishes.await({Scheme::light, true, true}));
  // Of another type or another key: nothing changes.
  portal.change(kAppearance, "color-scheme", sdbus::Variant(std::string("dark")));
  portal.change("org.gnome.desktop.interface", "color-scheme", sdbus::Variant(std::uint32_t{1}));
  portal.change(kAppearance, "color-scheme", sdbus::Variant(std::uint32_t{7}));
  EXPECT_TRUE(wishes.await({Scheme::open, true, true}));
}

TEST(DesktopAppearance, WishesNothingWithoutABus) {
  int told = 0;
  auto const appearance = desktopAppearance({test::kProgram, {}, "unix:path=/nonexistent/bus"},
                                            [&told](AppearanceWish const&) { ++told; });
  EXPECT_EQ(told, 0);
}

}  // namespace
}  // namespace nimbara
