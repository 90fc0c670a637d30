#include "platform/session/tray.h"

#include "platform/application_id.h"
#include "platform/linux/desktop_services.h"
#include "support/heard_texts.h"
#include "support/paths.h"
#include "support/session/mock_tray_host.h"
#include "support/session/silent_bus.h"

#include <gmock/gmock.h>

#include <chrono>

namespace nimbara {
namespace {

using test::MockTrayHost;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kMenuInterface[] = "com.canonical.dbusmenu";

/// Keeps what the tray tells, as texts, and waits for it.
class Told : public test::HeardTexts {
 public:
  Tray::Listener listener() {
    return [this](TrayEvent const& event) {
      add(std::string(enumName(event.kind)) + "/" + event.key + "/" + event.activationToken);
    };
  }
};

TrayFace face() {
  TrayFace face;
  face.title = "Nimbara";
  face.summary = "Oslo: 14° & <rain>";
  face.pictures = {{1, {255, 1, 2, 3}}, {2, std::vector<std::uint8_t>(16, 7)}};
  face.menu = {{"summary", "Oslo: 14°", false}, {}, {"refresh", "Refresh_now", true}};
  return face;
}

struct TrayTest : testing::Test {
  std::unique_ptr<Tray> tray() { return desktopTray({test::kProgram, "", bus_.address()}, told_.listener()); }

  test::PrivateBus bus_;
  Told told_;
};

TEST_F(TrayTest, ShowsItsFaceToAHost) {
  MockTrayHost host(bus_);
  auto const tray = this->tray();
  tray->show(face());
  EXPECT_THAT(told_.wait(1), ElementsAre("hostCame//"));
  host.waitForItem();
  EXPECT_EQ(host.property("Id").get<std::string>(), kApplicationId);
  EXPECT_EQ(host.property("Status").get<std::string>(), "Active");
  auto const pixmaps = host.property("IconPixmap").get<std::vector<MockTrayHost::Pixmap>>();
  ASSERT_EQ(pixmaps.size(), 2U);
  EXPECT_EQ(pixmaps[0].get<0>(), 1);
  EXPECT_THAT(pixmaps[0].get<2>(), ElementsAre(255, 1, 2, 3));
  using Tooltip = sdbus::Struct<std::string, std::vector<MockTrayHost::Pixmap>, std::string, std::string>;
  EXPECT_EQ(host.property("ToolTip").get<Tooltip>().get<3>(), "Oslo: 14° &amp; &lt;rain&gt;");
}

TEST_F(TrayTest, TellsClicksAndChoices) {
  MockTrayHost host(bus_);
  auto const tray = this->tray();
  tray->show(face());
  told_.wait(1);
  host.click("token-1");
  host.click();
  host.choose(host.itemLabelled("Refresh__now"));
  EXPECT_THAT(told_.wait(4),
              ElementsAre("hostCame//", "activated//token-1", "activated//", "chosen/refresh/"));
}

TEST_F(TrayTest, DescribesTheMenu) {
  MockTrayHost host(bus_);
  auto const tray = this->tray();
  tray->show(face());
  auto const menu = host.menu();
  ASSERT_EQ(menu.size(), 3U);
  EXPECT_FALSE(menu[0].get<1>().at("enabled").get<bool>());
  EXPECT_EQ(menu[1].get<1>().at("type").get<std::string>(), "separator");
  EXPECT_TRUE(menu[2].get<1>().at("enabled").get<bool>());
}

TEST_F(TrayTest, FollowsHostsAsTheyComeAndGo) {
  auto const tray = this->tray();
  tray->show(face());
  {
    MockTrayHost host(bus_, false);
    host.waitForItem();
    host.setHost(true);
    told_.wait(1);
    host.setHost(false);
    told_.wait(2);
    host.setHost(true);
    told_.wait(3);
  }
  told_.wait(4);  // the watcher has gone
  MockTrayHost another(bus_);
  EXPECT_FALSE(another.waitForItem().empty());
  EXPECT_THAT(told_.wait(5),
              ElementsAre("hostCame//", "hostLeft//", "hostCame//", "hostLeft//", "hostCame//"));
  EXPECT_EQ(another.property("Title").get<std::string>(), "Nimbara");
}

TEST_F(TrayTest, TakesAWatcherThatRefusesForNone) {
  MockTrayHost host(bus_);
  auto const tray = this->tray();
  told_.wait(1);
  host.answerWrongly();
  host.setHost(true);
  EXPECT_THAT(told_.wait(2), ElementsAre("hostCame//", "hostLeft//"));
}

TEST_F(TrayTest, LosesItsHostWithTheBus) {
  MockTrayHost host(bus_);
  auto const tray = this->tray();
  told_.wait(1);
  host.leave();
  bus_.end();
  EXPECT_THAT(told_.wait(2), ElementsAre("hostCame//", "hostLeft//"));
}

TEST_F(TrayTest, SurvivesHostileCalls) {
  MockTrayHost host(bus_);
  auto const tray = this->tray();
  tray->show(face());
  told_.wait(1);
  auto const menu = host.proxy("/TrayMenu");
  using Id = MockTrayHost::Id;
  for (Id const id : {-1, 4, 2'147'483'647, static_cast<Id>(-2'147'483'647)}) {
    host.choose(id);
    EXPECT_THROW(menu->callMethod("GetLayout")
                     .onInterface(kMenuInterface)
                     .withArguments(id, std::int32_t{-1}, std::vector<std::string>()),
                 sdbus::Error);
    EXPECT_THROW(
        menu->callMethod("GetProperty").onInterface(kMenuInterface).withArguments(id, std::string("label")),
        sdbus::Error);
  }
  host.choose(1);  // cannot be chosen
  host.choose(2);  // a line
  std::vector<sdbus::Struct<Id, std::map<std::string, sdbus::Variant>>> groups;
  menu->callMethod("GetGroupProperties")
      .onInterface(kMenuInterface)
      .withArguments(std::vector<Id>(100'000, 3), std::vector<std::string>{"label"})
      .storeResultsTo(groups);
  EXPECT_EQ(groups.size(), 1U);
  EXPECT_THROW(menu->callMethod("Event").onInterface(kMenuInterface).withArguments(std::string("clicked")),
               sdbus::Error);
  EXPECT_THROW(host.proxy("/StatusNotifierItem")
                   ->callMethod("Activate")
                   .onInterface("org.kde.StatusNotifierItem")
                   .withArguments(std::string("here")),
               sdbus::Error);
  host.click(std::string(5000, 'x'));
  EXPECT_THAT(told_.wait(2), ElementsAre("hostCame//", "activated//"));
}

TEST(Tray, HasNoHostWithoutABusThatAnswers) {
  test::SilentBus const silent;
  for (std::string const& address : {silent.address(), std::string("unix:path=/nonexistent/bus")}) {
    Told told;
    desktopTray({test::kProgram, "", address}, told.listener())->show(face());
    EXPECT_THAT(told.wait(0), IsEmpty());
  }
}

TEST(Tray, HasNoHostWithoutTheModule) {
  Told told;
  desktopTray({"/nonexistent/bin/nimbara", "", ""}, told.listener())->show(face());
  EXPECT_THAT(told.wait(0), IsEmpty());
}

}  // namespace
}  // namespace nimbara
