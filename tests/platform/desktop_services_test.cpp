#include "platform/linux/desktop_services.h"

#include "platform/application_id.h"
#include "platform/linux/network/network_notices.h"
#include "support/instants.h"
#include "support/paths.h"
#include "support/session/private_bus.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <cstring>
#include <future>
#include <linux/rtnetlink.h>
#include <mutex>
#include <sdbus-c++/sdbus-c++.h>
#include <thread>

namespace nimbara {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using test::PrivateBus;

constexpr seconds kLong{20};

std::unique_ptr<sdbus::IConnection> connect(PrivateBus const& bus) {
  return sdbus::createSessionBusConnectionWithAddress(bus.address());
}

struct GeoclueScript {
  std::string startError;  // the name of the error that Start answers with
  bool tells = true;       // a location follows the start
  double latitude = 52.52;
  bool hasCoordinate = true;
  std::uint64_t seconds = 1'795'252'800;  // 2026-11-21T09:20:00Z
};

/// The location service as the bus shows it, with what its client has asked for.
class FakeGeoclue {
 public:
  FakeGeoclue(PrivateBus const& bus, GeoclueScript script)
      : script_(std::move(script)),
        connection_(connect(bus)),
        manager_(sdbus::createObject(*connection_, "/org/freedesktop/GeoClue2/Manager")),
        client_(sdbus::createObject(*connection_, "/client/1")),
        location_(sdbus::createObject(*connection_, "/location/1")) {
    manager_->registerMethod("GetClient").onInterface("org.freedesktop.GeoClue2.Manager").implementedAs([] {
      return sdbus::ObjectPath("/client/1");
    });
    manager_->finishRegistration();
    describeClient();
    describeLocation();
    connection_->requestName("org.freedesktop.GeoClue2");
    connection_->enterEventLoopAsync();
  }
  ~FakeGeoclue() { connection_->leaveEventLoop(); }

  std::string desktopId;
  std::uint32_t level = 0;
  std::uint32_t distance = 0;
  std::promise<void> started;

  void moveTo(double latitude) {
    script_.latitude = latitude;
    tell();
  }

 private:
  void describeClient() {
    constexpr char kClient[] = "org.freedesktop.GeoClue2.Client";
    client_->registerProperty("DesktopId")
        .onInterface(kClient)
        .withGetter([this] { return desktopId; })
        .withSetter([this](std::string const& value) { desktopId = value; });
    client_->registerProperty("RequestedAccuracyLevel")
        .onInterface(kClient)
        .withGetter([this] { return level; })
        .withSetter([this](std::uint32_t const& value) { level = value; });
    client_->registerProperty("DistanceThreshold")
        .onInterface(kClient)
        .withGetter([this] { return distance; })
        .withSetter([this](std::uint32_t const& value) { distance = value; });
    client_->registerSignal("LocationUpdated")
        .onInterface(kClient)
        .withParameters<sdbus::ObjectPath, sdbus::ObjectPath>();
    client_->registerMethod("Start").onInterface(kClient).implementedAs([this] {
      started.set_value();
      if (!script_.startError.empty()) throw sdbus::Error(script_.startError, "no");
      if (script_.tells) tell();
    });
    client_->finishRegistration();
  }

  void tell() {
    client_->emitSignal("LocationUpdated")
        .onInterface("org.freedesktop.GeoClue2.Client")
        .withArguments(sdbus::ObjectPath("/"), sdbus::ObjectPath("/location/1"));
  }

  void describeLocation() {
    constexpr char kLocation[] = "org.freedesktop.GeoClue2.Location";
    if (script_.hasCoordinate) {
      location_->registerProperty("Latitude").onInterface(kLocation).withGetter([this] {
        return script_.latitude;
      });
    }
    location_->registerProperty("Longitude").onInterface(kLocation).withGetter([] { return 13.41; });
    location_->registerProperty("Accuracy").onInterface(kLocation).withGetter([] { return 15000.0; });
    location_->registerProperty("Timestamp").onInterface(kLocation).withGetter([this] {
      return sdbus::Struct<std::uint64_t, std::uint64_t>(script_.seconds, 250'999U);
    });
    location_->finishRegistration();
  }

  GeoclueScript script_;
  std::unique_ptr<sdbus::IConnection> connection_;
  std::unique_ptr<sdbus::IObject> manager_;
  std::unique_ptr<sdbus::IObject> client_;
  std::unique_ptr<sdbus::IObject> location_;
};

class LocationTest : public testing::Test {
 protected:
  Result<LocationFix, LocationError> locate(milliseconds timeout = kLong, std::stop_token stop = {}) const {
    return desktopLocationSource({test::kProgram, bus_.address(), {}})->locate(timeout, std::move(stop));
  }

  PrivateBus bus_;
};

TEST_F(LocationTest, AsksForTheAccuracyOfACity) {
  FakeGeoclue geoclue(bus_, {});
  auto const fix = locate();
  ASSERT_TRUE(fix) << fix.error().message;
  EXPECT_EQ(*fix, (LocationFix{{52.52, 13.41}, 15000, test::at("2026-11-21T09:20:00.250Z")}));
  EXPECT_EQ(geoclue.desktopId, kApplicationId);
  EXPECT_EQ(geoclue.level, 4U);
}

struct FailureRow {
  GeoclueScript script;
  LocationError::Kind kind;
  std::string_view text;
};

TEST_F(LocationTest, FollowsTheDeviceByTheServicesThreshold) {
  FakeGeoclue geoclue(bus_, {});
  std::stop_source stop;
  std::vector<double> latitudes;
  auto const source = desktopLocationSource({test::kProgram, bus_.address(), {}});
  auto const end = source->follow(
      1000,
      [&](LocationFix const& fix) {
        latitudes.push_back(fix.coordinate.latitude);
        latitudes.size() < 3 ? geoclue.moveTo(52.52 + double(latitudes.size())) : void(stop.request_stop());
      },
      stop.get_token());
  EXPECT_EQ(end.kind, LocationError::Kind::cancelled);
  EXPECT_EQ(latitudes, (std::vector{52.52, 53.52, 54.52}));
  EXPECT_EQ(geoclue.distance, 1000U);
}

TEST_F(LocationTest, NeverGuesses) {
  GeoclueScript denied;
  denied.startError = "org.freedesktop.DBus.Error.AccessDenied";
  GeoclueScript broken;
  broken.startError = "org.freedesktop.DBus.Error.Failed";
  GeoclueScript beyond;
  beyond.latitude = 90.01;
  GeoclueScript notANumber;
  notANumber.latitude = std::numeric_limits<double>::quiet_NaN();
  GeoclueScript without;
  without.hasCoordinate = false;
  for (FailureRow const& row : {FailureRow{denied, LocationError::Kind::denied, "denied"},
                                FailureRow{broken, LocationError::Kind::unavailable, "failed (no)"},
                                FailureRow{beyond, LocationError::Kind::unavailable, "no position"},
                                FailureRow{notANumber, LocationError::Kind::unavailable, "no position"},
                                FailureRow{without, LocationError::Kind::unavailable, "no position"}}) {
    FakeGeoclue const geoclue(bus_, row.script);
    auto const fix = locate();
    ASSERT_FALSE(fix) << row.text;
    EXPECT_EQ(fix.error().kind, row.kind);
    EXPECT_NE(fix.error().message.find(row.text), std::string::npos) << fix.error().message;
  }
}

TEST_F(LocationTest, SaysWhenNoSourceAnswersInTime) {
  GeoclueScript silent;
  silent.tells = false;
  FakeGeoclue const geoclue(bus_, silent);
  EXPECT_EQ(locate(milliseconds(50)).error().kind, LocationError::Kind::timedOut);
}

TEST_F(LocationTest, EndsWhenAskedTo) {
  GeoclueScript silent;
  silent.tells = false;
  FakeGeoclue geoclue(bus_, silent);
  std::stop_source stop;
  std::jthread const stopper([&] {
    geoclue.started.get_future().wait_for(kLong);
    stop.request_stop();
  });
  EXPECT_EQ(locate(kLong, stop.get_token()).error().kind, LocationError::Kind::cancelled);
}

TEST_F(LocationTest, SaysWhatIsAbsent) {
  EXPECT_NE(locate().error().message.find("GeoClue"), std::string::npos) << locate().error().message;
  bus_.end();
  EXPECT_NE(locate().error().message.find("D-Bus"), std::string::npos) << locate().error().message;
  auto const source = desktopLocationSource({"/nowhere/nimbara", bus_.address(), {}});
  EXPECT_NE(source->locate(kLong).error().message.find("nimbara-dbus.so"), std::string::npos);
}

/// Keeps what was heard and waits for it.
class Heard {
 public:
  PowerAndNetwork::Listener listener() {
    return [this](SystemEvent event) {
      std::lock_guard const lock(mutex_);
      events_.push_back(event);
      changed_.notify_all();
    };
  }
  /// What was heard once there are `count` of them.
  std::vector<SystemEvent> wait(std::size_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, kLong, [&] { return events_.size() >= count; });
    return events_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<SystemEvent> events_;
};

/// A service that only sends one signal.
template <class Argument>
class FakeSender {
 public:
  FakeSender(PrivateBus const& bus, std::string const& name, char const* path, std::string interface,
             std::string signal)
      : connection_(connect(bus)),
        object_(sdbus::createObject(*connection_, path)),
        interface_(std::move(interface)),
        signal_(std::move(signal)) {
    object_->registerSignal(signal_).onInterface(interface_).template withParameters<Argument>();
    object_->finishRegistration();
    connection_->requestName(name);
    connection_->enterEventLoopAsync();
  }
  ~FakeSender() { connection_->leaveEventLoop(); }
  void send(Argument argument) {
    object_->emitSignal(signal_).onInterface(interface_).withArguments(argument);
  }

 private:
  std::unique_ptr<sdbus::IConnection> connection_;
  std::unique_ptr<sdbus::IObject> object_;
  std::string interface_;
  std::string signal_;
};

struct FakeLogind : FakeSender<bool> {
  explicit FakeLogind(PrivateBus const& bus)
      : FakeSender(bus, "org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
                   "PrepareForSleep") {}
};
struct FakeNetworkManager : FakeSender<std::uint32_t> {
  explicit FakeNetworkManager(PrivateBus const& bus)
      : FakeSender(bus, "org.freedesktop.NetworkManager", "/org/freedesktop/NetworkManager",
                   "org.freedesktop.NetworkManager", "StateChanged") {}
};

class PowerAndNetworkTest : public testing::Test {
 protected:
  std::unique_ptr<PowerAndNetwork> watch() {
    return desktopPowerAndNetwork({test::kProgram, bus_.address(), {}}, heard_.listener());
  }

  PrivateBus bus_;
  Heard heard_;
};

using enum SystemEvent;

TEST_F(PowerAndNetworkTest, HearsResumingAndTheNetworksReturn) {
  FakeLogind logind(bus_);
  FakeNetworkManager network(bus_);
  auto const watching = watch();
  EXPECT_TRUE(watching->missing().empty());
  logind.send(true);  // falling asleep
  logind.send(false);
  EXPECT_EQ(heard_.wait(1), std::vector{resumed});
  // Off, connecting, limited, whole, still whole, limited, whole again.
  for (std::uint32_t const state : {20U, 40U, 60U, 70U, 70U, 50U, 70U}) network.send(state);
  EXPECT_EQ(heard_.wait(3), (std::vector{resumed, networkReachable, networkReachable}));
}

TEST_F(PowerAndNetworkTest, HearsServicesThatComeLater) {
  auto const watching = watch();
  ASSERT_EQ(watching->missing().size(), 1U);
  EXPECT_NE(watching->missing()[0].find("logind"), std::string::npos);
  FakeLogind logind(bus_);
  logind.send(false);
  EXPECT_EQ(heard_.wait(1), std::vector{resumed});
  FakeNetworkManager network(bus_);
  network.send(70);
  EXPECT_EQ(heard_.wait(2).size(), 2U);
}

TEST_F(PowerAndNetworkTest, LivesWithoutBusAndWithoutModule) {
  {
    auto const watching = watch();
    bus_.end();
  }
  auto const deaf = watch();
  ASSERT_EQ(deaf->missing().size(), 1U);
  EXPECT_NE(deaf->missing()[0].find("D-Bus"), std::string::npos);
  EXPECT_EQ(desktopPowerAndNetwork({"/nowhere/nimbara", "", ""}, heard_.listener())->missing().size(), 1U);
}

/// A kernel's message of a route.
std::vector<std::byte> routeMessage(std::uint16_t type, std::uint8_t prefix,
                                    std::uint8_t table = RT_TABLE_MAIN) {
  struct {
    nlmsghdr header;
    rtmsg route;
  } message{};
  message.header.nlmsg_len = sizeof message;
  message.header.nlmsg_type = type;
  message.route.rtm_dst_len = prefix;
  message.route.rtm_table = table;
  message.route.rtm_type = RTN_UNICAST;
  auto const* const bytes = reinterpret_cast<std::byte const*>(&message);
  return {bytes, bytes + sizeof message};
}

TEST(NetworkNotices, TellDefaultRoutesFromOthers) {
  EXPECT_TRUE(announcesDefaultRoute(routeMessage(RTM_NEWROUTE, 0)));
  EXPECT_FALSE(announcesDefaultRoute(routeMessage(RTM_NEWROUTE, 24)));
  EXPECT_FALSE(announcesDefaultRoute(routeMessage(RTM_DELROUTE, 0)));
  EXPECT_FALSE(announcesDefaultRoute(routeMessage(RTM_NEWROUTE, 0, RT_TABLE_LOCAL)));
  auto both = routeMessage(RTM_DELROUTE, 0);
  auto const second = routeMessage(RTM_NEWROUTE, 0);
  both.insert(both.end(), second.begin(), second.end());
  EXPECT_TRUE(announcesDefaultRoute(both));
}

TEST(NetworkNotices, BearAnyBytes) {
  auto const whole = routeMessage(RTM_NEWROUTE, 0);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_FALSE(announcesDefaultRoute(std::span(whole).first(size))) << size;
  }
  for (std::uint32_t const length : {0U, 1U, 15U, 16U, 17U, 0xFFFF'FFFFU}) {
    auto bytes = whole;
    std::memcpy(bytes.data(), &length, sizeof length);
    EXPECT_FALSE(announcesDefaultRoute(bytes)) << length;
  }
  EXPECT_FALSE(announcesDefaultRoute(std::vector<std::byte>(1000, std::byte{0xFF})));
}

}  // namespace
}  // namespace nimbara
