#include "platform/session/session_service.h"

#include "platform/linux/call_budget.h"
#include "platform/linux/desktop_services.h"
#include "support/heard_texts.h"
#include "support/paths.h"
#include "support/session/private_bus.h"

#include <gmock/gmock.h>

#include <atomic>
#include <condition_variable>
#include <fstream>
#include <mutex>
#include <regex>
#include <sdbus-c++/sdbus-c++.h>
#include <set>
#include <sstream>

namespace nimbara {
namespace {

using testing::ElementsAre;

constexpr char kName[] = "io.github.nimbara.Nimbara.Service";
constexpr char kPath[] = "/io/github/nimbara/Nimbara/Service";
constexpr char kRunner[] = "/io/github/nimbara/Nimbara/Runner";
constexpr char kSearch[] = "/io/github/nimbara/Nimbara/SearchProvider";

using Record = std::map<std::string, sdbus::Variant>;
using Strings = std::vector<std::string>;
using Match = sdbus::Struct<std::string, std::string, std::string, std::int32_t, double, Record>;

/// Knows one place and what it was asked to open.
struct OnePlace final : ServiceFace {
  ServiceProperties properties() override { return {"oslo", 1, warnings_, 0}; }
  ServiceRecords places() override { return {{{"id", std::string("oslo")}, {"selected", true}}}; }
  std::optional<ServiceRecord> current(std::string const& place) override {
    if (!place.empty() && place != "oslo") return std::nullopt;
    return ServiceRecord{{"place", std::string("oslo")},
                         {"temperatureC", -2.5},
                         {"humidity", std::int64_t(80)},
                         {"name", std::string("O\xff")}};
  }
  std::optional<ServiceRecords> hours(std::string const&) override { return ServiceRecords(); }
  std::optional<ServiceWarnings> warnings(std::string const&) override {
    return ServiceWarnings{"unchecked", {}};
  }
  std::optional<ServiceNowcast> nowcast(std::string const&) override {
    return ServiceNowcast{{{"state", std::string("unknown")}}, {}};
  }
  bool refresh() override { return false; }
  std::vector<SearchHit> search(std::string const& text) override {
    return {hit(text, 1), hit("other", 0.5)};
  }
  std::optional<SearchHit> found(std::string const& id) override {
    return id == "gone" ? std::nullopt : std::optional(hit(id, 1));
  }
  void open(std::string const& id, std::string const& token) override { opened.add(id + "/" + token); }

  static SearchHit hit(std::string const& id, double relevance) {
    return {id, id + ": 3°", "no warnings", "weather-clear", relevance};
  }

  std::atomic<std::uint32_t> warnings_ = 0;
  test::HeardTexts opened;
};

class SessionServiceTest : public testing::Test {
 protected:
  std::unique_ptr<SessionService> start() {
    auto made = desktopSessionService({test::kProgram, "", bus_.address()}, face_);
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::seconds(20), [this] { return hasOwner_; });
    return made;
  }
  std::unique_ptr<sdbus::IProxy> proxy(char const* path) {
    auto made = sdbus::createProxy(*client_, kName, path);
    return made;
  }
  void SetUp() override {
    bus_proxy_ = sdbus::createProxy(*client_, "org.freedesktop.DBus", "/org/freedesktop/DBus");
    bus_proxy_->uponSignal("NameOwnerChanged")
        .onInterface("org.freedesktop.DBus")
        .call([this](std::string const& name, std::string const&, std::string const& owner) {
          if (name != kName) return;
          std::lock_guard const lock(mutex_);
          hasOwner_ = !owner.empty();
          changed_.notify_all();
        });
    bus_proxy_->finishRegistration();
    client_->enterEventLoopAsync();
  }
  void TearDown() override { client_->leaveEventLoop(); }

  test::PrivateBus bus_;
  OnePlace face_;
  std::unique_ptr<sdbus::IConnection> client_ = sdbus::createSessionBusConnectionWithAddress(bus_.address());
  std::unique_ptr<sdbus::IProxy> bus_proxy_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool hasOwner_ = false;
};

std::string errorOf(std::function<void()> const& call) {
  try {
    call();
    return "none";
  } catch (sdbus::Error const& error) {
    return error.getName();
  }
}

/// The service's own interface, an element a text, whatever the order and the layout.
std::multiset<std::string> elementsOf(std::string const& xml) {
  auto const from = xml.find(R"(<interface name="io.github.nimbara.Nimbara.Service">)");
  std::string const own = xml.substr(from, xml.find("</interface>", from) - from);
  std::regex const element("<(method|signal|property)[^>]*?(/>|>[\\s\\S]*?</\\1>)");
  std::multiset<std::string> found;
  for (std::sregex_iterator at(own.begin(), own.end(), element), end; at != end; ++at) {
    std::string text = std::regex_replace(at->str(), std::regex("\\s+"), " ");
    found.insert(std::regex_replace(text, std::regex(" ?/>|> ?</(method|signal|property)>"), "/>"));
  }
  return found;
}

TEST_F(SessionServiceTest, TellsWhatTheFaceKnows) {
  auto const service = start();
  auto const object = proxy(kPath);
  std::vector<Record> places;
  object->callMethod("Places").onInterface(kName).storeResultsTo(places);
  ASSERT_EQ(places.size(), 1U);
  EXPECT_EQ(places[0].at("id").get<std::string>(), "oslo");
  EXPECT_TRUE(places[0].at("selected").get<bool>());
  Record current;
  object->callMethod("Current").onInterface(kName).withArguments(std::string()).storeResultsTo(current);
  EXPECT_EQ(current.at("temperatureC").get<double>(), -2.5);
  EXPECT_EQ(current.at("humidity").get<std::int64_t>(), 80);
  EXPECT_EQ(current.at("name").get<std::string>(), "O\uFFFD") << "no bytes that the bus forbids";
  std::string state;
  std::vector<Record> warnings;
  object->callMethod("Warnings")
      .onInterface(kName)
      .withArguments(std::string())
      .storeResultsTo(state, warnings);
  EXPECT_EQ(state, "unchecked");
  bool begun = true;
  object->callMethod("Refresh").onInterface(kName).storeResultsTo(begun);
  EXPECT_FALSE(begun);
  EXPECT_EQ(object->getProperty("PlaceCount").onInterface(kName).get<std::uint32_t>(), 1U);
}

TEST_F(SessionServiceTest, IsWhatItsDescriptionSays) {
  auto const service = start();
  std::string told;
  proxy(kPath)
      ->callMethod("Introspect")
      .onInterface("org.freedesktop.DBus.Introspectable")
      .storeResultsTo(told);
  std::ifstream file(std::string(test::kFixtures) +
                     "/../../packaging/dbus/io.github.nimbara.Nimbara.Service.xml");
  std::stringstream written;
  written << file.rdbuf();
  EXPECT_EQ(elementsOf(told).size(), 16U);
  EXPECT_EQ(elementsOf(told), elementsOf(written.str()));
}

TEST_F(SessionServiceTest, SignalsWhatChanged) {
  auto const service = start();
  test::HeardTexts heard;
  auto const object = proxy(kPath);
  for (char const* const signal : {"WarningCreated", "WarningUpdated", "WarningEnded"}) {
    object->uponSignal(signal).onInterface(kName).call(
        [&heard, signal](std::string const& place, Record const& of) {
          heard.add(std::string(signal) + " " + place + " " + of.at("id").get<std::string>());
        });
  }
  object->uponSignal("PropertiesChanged")
      .onInterface("org.freedesktop.DBus.Properties")
      .call([&heard](std::string const&, Record const& changed, Strings const&) {
        for (auto const& [name, value] : changed)
          heard.add(name + " " + std::to_string(value.get<std::uint32_t>()));
      });
  object->finishRegistration();
  face_.warnings_ = 2;
  using enum WarningNews::Kind;
  ServiceRecord const warning{{"id", std::string("w")}};
  service->announce({{created, "oslo", warning}, {updated, "oslo", warning}, {ended, "oslo", warning}});
  EXPECT_THAT(heard.wait(4), ElementsAre("WarningCreated oslo w", "WarningUpdated oslo w",
                                         "WarningEnded oslo w", "WarningCount 2"));
}

TEST_F(SessionServiceTest, RefusesWhatNoHonestCallerSends) {
  auto const service = start();
  auto const object = proxy(kPath);
  auto const current = [&](std::string const& place) {
    return errorOf([&] { object->callMethod("Current").onInterface(kName).withArguments(place); });
  };
  EXPECT_EQ(current(std::string(256, 'x')), std::string(kName) + ".Error.UnknownPlace");
  EXPECT_EQ(current(std::string(257, 'x')), "org.freedesktop.DBus.Error.InvalidArgs");
  EXPECT_EQ(errorOf([&] {
              proxy(kSearch)
                  ->callMethod("GetResultMetas")
                  .onInterface("org.gnome.Shell.SearchProvider2")
                  .withArguments(Strings(33, "x"));
            }),
            "org.freedesktop.DBus.Error.InvalidArgs");
  // A flood is refused to whoever makes it, and to nobody else.
  std::string refused;
  for (int i = 0; i < 5000 && refused.empty(); ++i) {
    std::string const error = current("oslo");
    if (error != "none") refused = error;
  }
  EXPECT_EQ(refused, "org.freedesktop.DBus.Error.LimitsExceeded");
  auto const other = sdbus::createSessionBusConnectionWithAddress(bus_.address());
  auto const patient = sdbus::createProxy(*other, kName, kPath);
  EXPECT_EQ(errorOf([&] { patient->callMethod("Places").onInterface(kName); }), "none");
}

TEST_F(SessionServiceTest, AnswersTheDesktopsSearches) {
  auto const service = start();
  auto const runner = proxy(kRunner);
  std::vector<Match> matches;
  runner->callMethod("Match")
      .onInterface("org.kde.krunner1")
      .withArguments(std::string("os"))
      .storeResultsTo(matches);
  ASSERT_EQ(matches.size(), 2U);
  EXPECT_EQ(matches[0].get<1>(), "os: 3°");
  EXPECT_EQ(matches[0].get<3>(), 100);
  EXPECT_EQ(matches[1].get<3>(), 30);
  runner->callMethod("SetActivationToken").onInterface("org.kde.krunner1").withArguments(std::string("t"));
  for (char const* const id : {"os", "other"}) {
    runner->callMethod("Run").onInterface("org.kde.krunner1").withArguments(std::string(id), std::string());
  }
  auto const shell = proxy(kSearch);
  constexpr char kShell[] = "org.gnome.Shell.SearchProvider2";
  Strings ids;
  shell->callMethod("GetInitialResultSet")
      .onInterface(kShell)
      .withArguments(Strings{"new", "y"})
      .storeResultsTo(ids);
  EXPECT_THAT(ids, ElementsAre("new y", "other"));
  std::vector<Record> metas;
  shell->callMethod("GetResultMetas")
      .onInterface(kShell)
      .withArguments(Strings{"gone", "y"})
      .storeResultsTo(metas);
  ASSERT_EQ(metas.size(), 1U) << "one that is gone is left out";
  EXPECT_EQ(metas[0].at("name").get<std::string>(), "y: 3°");
  shell->callMethod("ActivateResult")
      .onInterface(kShell)
      .withArguments(std::string("y"), Strings{}, std::uint32_t(0));
  shell->callMethod("LaunchSearch").onInterface(kShell).withArguments(Strings{"y"}, std::uint32_t(0));
  auto const object = proxy(kPath);
  for (char const* const place : {"oslo", ""}) {
    object->callMethod("Open").onInterface(kName).withArguments(std::string(place), std::string("u"));
  }
  EXPECT_EQ(errorOf([&] {
              object->callMethod("Open").onInterface(kName).withArguments(std::string("bergen"),
                                                                          std::string());
            }),
            std::string(kName) + ".Error.UnknownPlace");
  EXPECT_THAT(face_.opened.wait(6), ElementsAre("os/t", "other/", "y/", "/", "oslo/u", "/u"));
}

TEST_F(SessionServiceTest, TheNextInLineTakesTheName) {
  auto first = start();
  OnePlace other;
  auto const second = desktopSessionService({test::kProgram, "", bus_.address()}, other);
  first.reset();
  std::unique_lock lock(mutex_);
  EXPECT_TRUE(changed_.wait_for(lock, std::chrono::seconds(20), [this] { return hasOwner_; }));
}

TEST(CallBudget, FillsUpAgain) {
  CallBudget budget;
  CallBudget::Moment const start{};
  int taken = 0;
  while (budget.take("a", start)) ++taken;
  EXPECT_EQ(taken, int(CallBudget::kAtOnce));
  EXPECT_TRUE(budget.take("b", start));
  EXPECT_FALSE(budget.take("a", start + std::chrono::milliseconds(49)));
  EXPECT_TRUE(budget.take("a", start + std::chrono::milliseconds(51)));
}

}  // namespace
}  // namespace nimbara
