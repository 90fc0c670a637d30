#include "platform/session/application_instance.h"

#include "platform/application_id.h"
#include "platform/linux/desktop_services.h"
#include "support/heard_texts.h"
#include "support/paths.h"
#include "support/session/private_bus.h"
#include "support/session/silent_bus.h"

#include <gmock/gmock.h>

#include <barrier>
#include <condition_variable>
#include <mutex>
#include <sdbus-c++/sdbus-c++.h>
#include <thread>

namespace nimbara {
namespace {

using testing::ElementsAre;
using enum InstanceStanding;

constexpr std::chrono::seconds kLong{20};
constexpr std::chrono::milliseconds kShort{50};
constexpr char kInterface[] = "org.freedesktop.Application";

class Calls : public test::HeardTexts {
 public:
  ApplicationInstance::Listener listener() {
    return [this](ApplicationCall const& call) {
      std::string text = call.action + "(";
      for (std::string const& argument : call.arguments) text += argument + " ";
      add(text + ") " + call.activationToken);
    };
  }
};

struct InstanceTest : testing::Test {
  DesktopBuses buses() const { return {test::kProgram, "", bus_.address()}; }
  std::unique_ptr<ApplicationInstance> start() const { return desktopApplicationInstance(buses()); }

  test::PrivateBus bus_;
  Calls calls_;
};

TEST_F(InstanceTest, TheSecondHandsOver) {
  auto const one = start();
  EXPECT_EQ(one->standing(kLong), first);
  auto const other = start();
  EXPECT_EQ(other->standing(kLong), second);
  ASSERT_TRUE(callApplication(buses(), {"start", {"--page", "hours"}, "token-1"}, kLong));
  one->setListener(calls_.listener());
  ASSERT_TRUE(callApplication(buses(), {}, kLong));
  EXPECT_THAT(calls_.wait(2), ElementsAre("start(--page hours ) token-1", "() "));
  one->setListener({});
}

TEST_F(InstanceTest, TheNameIsFreeBehindTheFirst) {
  auto one = start();
  EXPECT_EQ(one->standing(kLong), first);
  one.reset();
  EXPECT_EQ(start()->standing(kLong), first);
}

TEST_F(InstanceTest, OneOfManyIsFirst) {
  constexpr int kStarts = 12;
  std::barrier together(kStarts);
  std::mutex mutex;
  std::vector<std::unique_ptr<ApplicationInstance>> instances;
  {
    std::vector<std::jthread> threads;
    threads.reserve(kStarts);
    for (int i = 0; i < kStarts; ++i) {
      threads.emplace_back([&] {
        together.arrive_and_wait();
        auto instance = start();
        std::lock_guard const lock(mutex);
        instances.push_back(std::move(instance));
      });
    }
  }
  int firsts = 0;
  int seconds = 0;
  for (auto const& instance : instances) {
    auto const standing = instance->standing(kLong);
    firsts += standing == first ? 1 : 0;
    seconds += standing == second ? 1 : 0;
  }
  EXPECT_EQ(firsts, 1);
  EXPECT_EQ(seconds, kStarts - 1);
}

TEST_F(InstanceTest, LaunchersSpeakToIt) {
  auto const one = start();
  ASSERT_EQ(one->standing(kLong), first);
  one->setListener(calls_.listener());
  auto const connection = sdbus::createSessionBusConnectionWithAddress(bus_.address());
  auto const proxy = sdbus::createProxy(*connection, kApplicationId, "/io/github/nimbara/Nimbara");
  proxy->finishRegistration();
  using Data = std::map<std::string, sdbus::Variant>;
  using Parameters = std::vector<sdbus::Variant>;
  using Texts = std::vector<std::string>;
  auto const act = [&](std::string const& action, Parameters const& parameters, Data const& data = {}) {
    proxy->callMethod("ActivateAction").onInterface(kInterface).withArguments(action, parameters, data);
  };
  proxy->callMethod("Activate")
      .onInterface(kInterface)
      .withArguments(Data{{"activation-token", std::string("a")}});
  proxy->callMethod("Open")
      .onInterface(kInterface)
      .withArguments(Texts{"file:///etc/passwd"}, Data{{"desktop-startup-id", std::string("b")}});
  act("refresh", {}, {{"activation-token", 7}});
  EXPECT_THAT(calls_.wait(3), ElementsAre("() a", "() b", "refresh() "));
  for (Parameters const& hostile : {Parameters{sdbus::Variant(7)}, Parameters{sdbus::Variant(Texts(65, "x"))},
                                    Parameters{sdbus::Variant(Texts{std::string(5000, 'x')})}}) {
    EXPECT_THROW(act("start", hostile), sdbus::Error);
  }
  EXPECT_THROW(act(std::string(5000, 'x'), {}), sdbus::Error);
  EXPECT_EQ(calls_.wait(3).size(), 3U);
}

TEST_F(InstanceTest, IsAloneWithoutABusThatAnswers) {
  bus_.end();
  test::SilentBus const silent;
  for (std::string const& address : {bus_.address(), silent.address()}) {
    DesktopBuses const buses{test::kProgram, "", address};
    auto const instance = desktopApplicationInstance(buses);
    EXPECT_EQ(instance->standing(kShort), alone);
    EXPECT_EQ(instance->standing(kLong), alone);
    EXPECT_FALSE(callApplication(buses, {}, kLong));
  }
}

TEST_F(InstanceTest, AProgramThatHangsIsSaidSo) {
  auto const connection = sdbus::createSessionBusConnectionWithAddress(bus_.address());
  connection->requestName(kApplicationId);  // and nobody handles its events
  auto const answer = callApplication(buses(), {}, kShort);
  ASSERT_FALSE(answer);
  EXPECT_EQ(answer.error(), "the running program does not respond");
}

TEST(ApplicationInstance, IsAloneWithoutTheModule) {
  DesktopBuses const buses{"/nonexistent/bin/nimbara", "", ""};
  EXPECT_EQ(desktopApplicationInstance(buses)->standing(kShort), alone);
  EXPECT_FALSE(callApplication(buses, {}, kShort));
}

}  // namespace
}  // namespace nimbara
