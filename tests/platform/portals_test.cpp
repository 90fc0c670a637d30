#include "platform/linux/desktop_services.h"
#include "support/heard_texts.h"
#include "support/paths.h"
#include "support/session/private_bus.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fcntl.h>
#include <sdbus-c++/sdbus-c++.h>
#include <unistd.h>

namespace nimbara {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::HasSubstr;
using Options = std::map<std::string, sdbus::Variant>;
using Strings = std::vector<std::string>;

constexpr char kNotification[] = "org.freedesktop.portal.Notification";
constexpr char kLocation[] = "org.freedesktop.portal.Location";
constexpr char kBackground[] = "org.freedesktop.portal.Background";
constexpr char kRequest[] = "org.freedesktop.portal.Request";
constexpr seconds kLong{20};

std::string text(Options const& options, char const* key) {
  return options.at(key).get<std::string>();
}

/// The desktop's portals as the bus shows them: what they were asked, and what the user says.
class FakePortals {
 public:
  struct Script {
    std::uint32_t version = 2;       ///< of notifications; 0: they have no portal
    std::uint32_t location = 0;      ///< the answer to the wish to know it
    std::string locationError = {};  ///< in place of a session
    bool allowsBackground = true;
  };

  FakePortals(test::PrivateBus const& bus, Script script)
      : script_(std::move(script)),
        connection_(sdbus::createSessionBusConnectionWithAddress(bus.address())),
        object_(sdbus::createObject(*connection_, "/org/freedesktop/portal/desktop")) {
    if (script_.version > 0) describeNotifications();
    describeLocation();
    describeBackground();
    object_->finishRegistration();
    connection_->requestName("org.freedesktop.portal.Desktop");
    connection_->enterEventLoopAsync();
  }
  ~FakePortals() { connection_->leaveEventLoop(); }

  void click(std::string const& id, std::string const& action) {
    std::vector<sdbus::Variant> const parameters{
        sdbus::Variant(7), sdbus::Variant(Options{{"activation-token", std::string("t")}})};
    object_->emitSignal("ActionInvoked").onInterface(kNotification).withArguments(id, action, parameters);
  }

  std::vector<std::pair<std::string, Options>> added;  ///< read when the call has returned
  test::HeardTexts heard;

 private:
  void describeNotifications() {
    object_->registerMethod("AddNotification")
        .onInterface(kNotification)
        .implementedAs(
            [this](std::string const& id, Options const& options) { added.emplace_back(id, options); });
    object_->registerMethod("RemoveNotification")
        .onInterface(kNotification)
        .implementedAs([this](std::string const& id) { heard.add("removed " + id); });
    object_->registerProperty("version").onInterface(kNotification).withGetter([this] {
      return script_.version;
    });
    object_->registerProperty("SupportedOptions").onInterface(kNotification).withGetter([] {
      return Options{{"category", Strings{"weather.warning.extreme"}}};
    });
    object_->registerSignal("ActionInvoked")
        .onInterface(kNotification)
        .withParameters<std::string, std::string, std::vector<sdbus::Variant>>();
  }
  void describeLocation() {
    object_->registerMethod("CreateSession")
        .onInterface(kLocation)
        .implementedAs([this](Options const& options) {
          if (!script_.locationError.empty()) throw sdbus::Error(script_.locationError, "no");
          heard.add("accuracy " + std::to_string(options.at("accuracy").get<std::uint32_t>()));
          return sdbus::ObjectPath("/session/1");
        });
    object_->registerMethod("Start").onInterface(kLocation).implementedAs(
        [this](sdbus::ObjectPath const& session, std::string const&, Options const& options) {
          auto const request = respond(text(options, "handle_token"), script_.location, {});
          if (script_.location == 0) {
            // Of another program's session first.
            tell(sdbus::ObjectPath("/session/2"), 1);
            tell(session, 52.52);
          }
          return request;
        });
    object_->registerSignal("LocationUpdated")
        .onInterface(kLocation)
        .withParameters<sdbus::ObjectPath, Options>();
  }
  void tell(sdbus::ObjectPath const& session, double latitude) {
    Options const location{{"Latitude", latitude}, {"Longitude", 13.41}, {"Accuracy", 9000.0}};
    object_->emitSignal("LocationUpdated").onInterface(kLocation).withArguments(session, location);
  }
  void describeBackground() {
    object_->registerMethod("RequestBackground")
        .onInterface(kBackground)
        .implementedAs([this](std::string const&, Options const& options) {
          bool const wanted = options.at("autostart").get<bool>();
          heard.add(text(options, "reason") + ": " + options.at("commandline").get<Strings>().back());
          return respond(text(options, "handle_token"), script_.allowsBackground ? 0 : 1,
                         {{"autostart", wanted}, {"background", true}});
        });
  }
  /// At the object that the caller listens to; it is the portal's before the answer is.
  sdbus::ObjectPath respond(std::string const& token, std::uint32_t code, Options const& results) {
    std::string sender = object_->getCurrentlyProcessedMessage()->getSender().substr(1);
    std::ranges::replace(sender, '.', '_');
    std::string const path = "/org/freedesktop/portal/desktop/request/" + sender + "/" + token;
    requests_.push_back(sdbus::createObject(*connection_, path));
    requests_.back()
        ->registerSignal("Response")
        .onInterface(kRequest)
        .withParameters<std::uint32_t, Options>();
    requests_.back()->finishRegistration();
    requests_.back()->emitSignal("Response").onInterface(kRequest).withArguments(code, results);
    return sdbus::ObjectPath(path);
  }

  Script script_;
  std::unique_ptr<sdbus::IConnection> connection_;
  std::unique_ptr<sdbus::IObject> object_;
  std::vector<std::unique_ptr<sdbus::IObject>> requests_;
};

struct PortalsTest : testing::Test {
  DesktopBuses buses() const { return {test::kProgram, "unix:path=/nonexistent/bus", bus_.address(), true}; }

  static NotificationRequest warning() {
    NotificationRequest request;
    request.identifier = "gov_storm";
    request.title = "Storm";
    request.body = "<b>until</b> 18:00";
    request.sound = "rain_alert.caf";
    request.urgency = NotificationUrgency::critical;
    request.category = "weather.warning.extreme";
    request.actions = {{"default", "Show"}, {"snooze", "Snooze 1 hour"}, {"mute", "Mute this kind"}};
    return request;
  }

  test::PrivateBus bus_;
};

TEST_F(PortalsTest, ANotificationHasItsCategoryButtonsAndSound) {
  FakePortals portals(bus_, {});
  auto const center = desktopNotificationCenter(buses());
  EXPECT_EQ(center->authorizationStatus(), AuthorizationStatus::authorized);
  ASSERT_TRUE(center->deliver(warning()));
  auto const& [id, options] = portals.added.at(0);
  EXPECT_EQ(id, "gov_storm");
  EXPECT_EQ(text(options, "title"), "Storm");
  EXPECT_EQ(text(options, "body"), "<b>until</b> 18:00") << "plain text, not markup";
  EXPECT_EQ(text(options, "priority"), "urgent");
  EXPECT_EQ(text(options, "category"), "weather.warning.extreme");
  EXPECT_EQ(text(options, "default-action"), "default");
  auto const buttons = options.at("buttons").get<std::vector<Options>>();
  ASSERT_EQ(buttons.size(), 2U);
  EXPECT_EQ(text(buttons[0], "label"), "Snooze 1 hour");
  EXPECT_EQ(text(buttons[1], "action"), "mute");
  using File = sdbus::Struct<std::string, sdbus::Variant>;
  auto const sound = options.at("sound").get<File>();
  EXPECT_EQ(sound.get<0>(), "file-descriptor");
  auto const file = sound.get<1>().get<sdbus::UnixFd>();
  char head[4] = {};
  EXPECT_EQ(pread(file.get(), head, sizeof head, 0), 4);
  EXPECT_EQ(std::string(head, 4), "RIFF");
  EXPECT_EQ(fcntl(file.get(), F_GET_SEALS), F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE);
}

TEST_F(PortalsTest, AClickOpensTheWindowWhoeverListens) {
  FakePortals portals(bus_, {});
  auto request = warning();
  request.opens = {"--page", "hazards"};
  ASSERT_TRUE(desktopNotificationCenter(buses())->deliver(request));
  auto const& options = portals.added.at(0).second;
  EXPECT_EQ(text(options, "default-action"), "app.start");
  EXPECT_EQ(options.at("default-action-target").get<Strings>(), request.opens);
}

TEST_F(PortalsTest, TheSameIdentifierReplacesSilently) {
  FakePortals portals(bus_, {});
  auto const center = desktopNotificationCenter(buses());
  ASSERT_TRUE(center->update(warning()));
  EXPECT_TRUE(portals.added.empty()) << "nothing is shown that could be another";
  ASSERT_TRUE(center->deliver(warning()));
  ASSERT_TRUE(center->update(warning()));
  ASSERT_EQ(portals.added.size(), 2U);
  EXPECT_EQ(portals.added[1].first, "gov_storm");
  EXPECT_EQ(text(portals.added[1].second, "sound"), "silent");
  center->withdraw("gov_storm");
  center->withdraw("another");
  EXPECT_THAT(portals.heard.wait(1), ElementsAre("removed gov_storm"));
}

TEST_F(PortalsTest, TheFirstVersionGetsWhatItKnows) {
  FakePortals portals(bus_, {.version = 1});
  ASSERT_TRUE(desktopNotificationCenter(buses())->deliver(warning()));
  for (char const* const key : {"sound", "category", "display-hint"}) {
    EXPECT_FALSE(portals.added.at(0).second.contains(key)) << key;
  }
  EXPECT_TRUE(portals.added[0].second.contains("buttons"));
}

TEST_F(PortalsTest, AClickIsAResponse) {
  FakePortals portals(bus_, {});
  auto const center = desktopNotificationCenter(buses());
  test::HeardTexts responses;
  center->setListener([&](NotificationResponse const& response) {
    responses.add(response.identifier + "/" + response.action + "/" + response.activationToken);
  });
  ASSERT_TRUE(center->deliver(warning()));
  portals.click("of another run", "default");
  portals.click("gov_storm", "snooze");
  EXPECT_THAT(responses.wait(1), ElementsAre("gov_storm/snooze/t"));
  center->setListener({});
}

TEST_F(PortalsTest, WithoutItsPortalTheServiceIsAsked) {
  FakePortals const portals(bus_, {.version = 0});
  auto const delivered = desktopNotificationCenter(buses())->deliver(warning());
  ASSERT_FALSE(delivered);
  EXPECT_THAT(delivered.error().message, HasSubstr("notification service"));
}

TEST_F(PortalsTest, TellWhereTheDeviceIs) {
  FakePortals portals(bus_, {});
  auto const fix = desktopLocationSource(buses())->locate(kLong);
  ASSERT_TRUE(fix) << fix.error().message;
  EXPECT_EQ(fix->coordinate, (Coordinate{52.52, 13.41}));
  EXPECT_EQ(fix->accuracyMetres, 9000);
  EXPECT_THAT(portals.heard.wait(1), ElementsAre("accuracy 2"));
}

TEST_F(PortalsTest, FollowTheDeviceUntilStopped) {
  FakePortals const portals(bus_, {});
  std::stop_source stop;
  int moves = 0;
  auto const ended = desktopLocationSource(buses())->follow(
      1000,
      [&](LocationFix const&) {
        ++moves;
        stop.request_stop();
      },
      stop.get_token());
  EXPECT_EQ(moves, 1);
  EXPECT_EQ(ended.kind, LocationError::Kind::cancelled);
}

struct LocationRow {
  char const* name;
  FakePortals::Script script;
  LocationError::Kind kind;
};
void PrintTo(LocationRow const& row, std::ostream* out) {  // NOLINT(readability-identifier-naming)
  *out << row.name;
}

struct PortalsLocation : PortalsTest, testing::WithParamInterface<LocationRow> {};

TEST_P(PortalsLocation, SaysWhyNot) {
  FakePortals const portals(bus_, GetParam().script);
  auto const fix = desktopLocationSource(buses())->locate(milliseconds(3000));
  ASSERT_FALSE(fix);
  EXPECT_EQ(fix.error().kind, GetParam().kind);
}

using LocationKind = LocationError::Kind;
INSTANTIATE_TEST_SUITE_P(
    Rows, PortalsLocation,
    testing::Values(LocationRow{"theUserSaysNo", {.location = 1}, LocationKind::denied},
                    LocationRow{"ended", {.location = 2}, LocationKind::unavailable},
                    LocationRow{"forbidden",
                                {.locationError = "org.freedesktop.portal.Error.NotAllowed"},
                                LocationKind::denied},
                    LocationRow{"noPortalAndNoDaemon",
                                {.locationError = "org.freedesktop.DBus.Error.UnknownMethod"},
                                LocationKind::unavailable}),
    [](auto const& row) { return row.param.name; });

TEST_F(PortalsTest, StartTheWatchWhereTheUserAllowsIt) {
  {
    FakePortals portals(bus_, {});
    EXPECT_EQ(requestAutostart(buses(), true, "for warnings", kLong), true);
    EXPECT_EQ(requestAutostart(buses(), false, "for warnings", kLong), false);
    EXPECT_THAT(portals.heard.wait(2), ElementsAre("for warnings: watch", "for warnings: watch"));
  }
  FakePortals const refusing(bus_, {.allowsBackground = false});
  EXPECT_FALSE(requestAutostart(buses(), true, "for warnings", kLong));
}

TEST_F(PortalsTest, NobodyStartsTheWatchWithoutThem) {
  EXPECT_FALSE(requestAutostart(buses(), true, "for warnings", kLong));
}

}  // namespace
}  // namespace nimbara
