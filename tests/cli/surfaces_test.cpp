// The same weather wherever it is read: on the terminal, in a bar, on the bus and in the desktop's search.
#include "support/session/demo_session.h"
#include "support/session/private_bus.h"

#include <gmock/gmock.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <sdbus-c++/sdbus-c++.h>
#include <thread>

namespace nimbara {
namespace {

using testing::HasSubstr;

constexpr char kName[] = "io.github.nimbara.Nimbara.Service";
constexpr char kShell[] = "org.gnome.Shell.SearchProvider2";
constexpr char kRunner[] = "org.kde.krunner1";

using Record = std::map<std::string, sdbus::Variant>;
using Strings = std::vector<std::string>;
using Match = sdbus::Struct<std::string, std::string, std::string, std::int32_t, double, Record>;

/// What follows `key` in a JSON text, up to the next comma.
std::string valueIn(std::string const& json, std::string const& key) {
  auto const at = json.find("\"" + key + "\":");
  if (at == std::string::npos) return "no " + key;
  auto const begin = at + key.size() + 3;
  return json.substr(begin, json.find_first_of(",}", begin) - begin);
}

class QuietConsole final : public Console {
 public:
  void out(std::string_view) override {}
  void err(std::string_view) override {}
  int terminalWidth() const override { return 0; }
};

struct Surfaces : test::DemoSession {
  /// Listens before the watch begins.
  void SetUp() override {
    client_ = sdbus::createSessionBusConnectionWithAddress(bus_.address());
    names_ = sdbus::createProxy(*client_, "org.freedesktop.DBus", "/org/freedesktop/DBus");
    names_->uponSignal("NameOwnerChanged")
        .onInterface("org.freedesktop.DBus")
        .call([this](std::string const&, std::string const&, std::string const&) { note(); });
    names_->finishRegistration();
    object_ = sdbus::createProxy(*client_, kName, "/io/github/nimbara/Nimbara/Service");
    object_->uponSignal("Changed").onInterface(kName).call([this] { note(); });
    object_->finishRegistration();
    client_->enterEventLoopAsync();
  }
  void TearDown() override {
    stop_.request_stop();
    if (watch_.joinable()) watch_.join();
    client_->leaveEventLoop();
  }
  void note() {
    std::lock_guard const lock(mutex_);
    ++changes_;
    changed_.notify_all();
  }
  /// Looks whenever something has changed on the bus.
  bool until(std::function<bool()> const& isSo) {
    for (;;) {
      int seen = 0;
      {
        std::lock_guard const lock(mutex_);
        seen = changes_;
      }
      try {
        if (isSo()) return true;
      } catch (sdbus::Error const&) {  // nobody has the name yet
      }
      std::unique_lock lock(mutex_);
      if (!changed_.wait_for(lock, std::chrono::seconds(30), [&] { return changes_ != seen; })) return false;
    }
  }
  void startWatch() {
    surroundings_ = environment();
    // The desktop of this test; everybody else's is none.
    setenv("DBUS_SESSION_BUS_ADDRESS", bus_.address().c_str(), 1);
    watch_ = std::jthread([this] {
      runCli({"watch", "--services", base, "--now", kMoment},
             Session{surroundings_, console_, stop_.get_token()});
    });
  }
  Record current() {
    Record record;
    object_->callMethod("Current").onInterface(kName).withArguments(std::string()).storeResultsTo(record);
    return record;
  }

  test::PrivateBus bus_;
  Environment surroundings_;
  QuietConsole console_;
  std::stop_source stop_;
  std::jthread watch_;
  std::mutex mutex_;
  std::condition_variable changed_;
  int changes_ = 0;
  std::unique_ptr<sdbus::IConnection> client_;
  std::unique_ptr<sdbus::IProxy> names_;
  std::unique_ptr<sdbus::IProxy> object_;
};

TEST_F(Surfaces, TellTheSameTemperatureAndWarnings) {
  ASSERT_EQ(run({"places", "add", "48.86,2.35", "--name", "Paris"}).exitCode, 0);
  startWatch();
  ASSERT_TRUE(until([this] {
    Record const record = current();
    return record.contains("temperatureC") && record.at("warningsState").get<std::string>() == "warnings";
  }));

  Record const onBus = current();
  std::string state;
  std::vector<Record> warnings;
  object_->callMethod("Warnings")
      .onInterface(kName)
      .withArguments(std::string("Paris"))
      .storeResultsTo(state, warnings);
  auto const count = static_cast<std::int64_t>(warnings.size());
  ASSERT_GT(count, 0);
  EXPECT_EQ(onBus.at("warningCount").get<std::int64_t>(), count);
  EXPECT_EQ(object_->getProperty("WarningCount").onInterface(kName).get<std::uint32_t>(), count);
  std::string const temperature = onBus.at("temperature").get<std::string>();
  std::string const official = onBus.at("warningsText").get<std::string>();

  auto const search = sdbus::createProxy(*client_, kName, "/io/github/nimbara/Nimbara/SearchProvider");
  Strings ids;
  search->callMethod("GetInitialResultSet")
      .onInterface(kShell)
      .withArguments(Strings{"weather", "pari"})
      .storeResultsTo(ids);
  ASSERT_FALSE(ids.empty());
  std::vector<Record> metas;
  search->callMethod("GetResultMetas")
      .onInterface(kShell)
      .withArguments(Strings{ids[0]})
      .storeResultsTo(metas);
  EXPECT_THAT(metas.at(0).at("name").get<std::string>(), HasSubstr("Paris: " + temperature));
  EXPECT_THAT(metas.at(0).at("description").get<std::string>(), HasSubstr(official));
  auto const runner = sdbus::createProxy(*client_, kName, "/io/github/nimbara/Nimbara/Runner");
  std::vector<Match> matches;
  auto const asked = std::chrono::steady_clock::now();
  runner->callMethod("Match")
      .onInterface(kRunner)
      .withArguments(std::string("wetter paris"))
      .storeResultsTo(matches);
  EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::seconds(1));
  ASSERT_FALSE(matches.empty());
  EXPECT_THAT(matches[0].get<1>(), HasSubstr("Paris: " + temperature));

  EXPECT_EQ(run({"line", "--format", "{temperature}|{warnings}"}).out, temperature + "|" + official + "\n");
  std::string const bar = run({"waybar"}).out;
  EXPECT_THAT(bar, HasSubstr(temperature));
  EXPECT_THAT(bar, HasSubstr(official));
  std::string const json = run({"forecast", "--json"}).out;
  EXPECT_EQ(std::stod(valueIn(json.substr(json.find("\"current\"")), "tempC")),
            onBus.at("temperatureC").get<double>());
  EXPECT_EQ(valueIn(run({"coverage", "--json"}).out, "count"), std::to_string(count));
}

}  // namespace
}  // namespace nimbara
