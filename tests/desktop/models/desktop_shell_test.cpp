#include "desktop/window/desktop_shell.h"

#include "desktop/offscreen.h"
#include "desktop/states/states.h"
#include "desktop/window/desktop_window.h"
#include "desktop/window/painting/tray_pictures.h"

#include <gmock/gmock.h>

#include <QtTest/QTest>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::ElementsAre;
using testing::IsEmpty;
using enum TrayEvent::Kind;

class FakeTray final : public Tray {
 public:
  explicit FakeTray(std::vector<TrayFace>& faces) : faces_(faces) {}
  void show(TrayFace face) override { faces_.push_back(std::move(face)); }

 private:
  std::vector<TrayFace>& faces_;
};

struct Shell : testing::Test {
  Shell() {
    offscreenApplication();
    complaints().clear();
    QGuiApplication::setQuitOnLastWindowClosed(false);
    model.show(snapshotOf(stateOf(mildWeek())));
    window.emplace(model, DesktopOptions());
    shell.emplace(model, *window->window(), around());
    shell->begin();
  }
  ~Shell() override { EXPECT_THAT(complaints(), IsEmpty()); }

  DesktopShell::Surroundings around() {
    return {[this](Tray::Listener) { return std::make_unique<FakeTray>(faces); },
            [this](std::string const& place) { asked.push_back("place " + place); },
            std::chrono::milliseconds(0)};
  }
  struct Engine : EngineActions {
    explicit Engine(std::vector<std::string>& asked) : asked_(asked) {}
    void refresh() override { asked_.emplace_back("refresh"); }
    std::vector<std::string>& asked_;
  };
  void happen(TrayEvent::Kind kind, std::string key = {}) {
    shell->receive(TrayEvent{kind, std::move(key), {}});
    QCoreApplication::processEvents();
  }
  void call(ApplicationCall const& what) {
    shell->receive(what);
    QCoreApplication::processEvents();
  }
  bool isShown() const { return window->window()->isVisible(); }
  std::string property(char const* name) const {
    return window->window()->property(name).toString().toStdString();
  }

  std::vector<std::string> asked;
  std::vector<TrayFace> faces;
  Engine engine{asked};
  DesktopModel model{{Wording(), {}, [] { return kNow; }, {}}, {.engine = engine}};
  std::optional<DesktopWindow> window;
  std::optional<DesktopShell> shell;
};

TEST_F(Shell, ClosingEndsWithoutATray) {
  EXPECT_TRUE(window->window()->close());
  EXPECT_FALSE(isShown());
}

TEST_F(Shell, ClosingHidesWhereThereIsATray) {
  happen(hostCame);
  EXPECT_FALSE(window->window()->close());
  EXPECT_FALSE(isShown());
  happen(activated);
  EXPECT_TRUE(isShown());
}

TEST_F(Shell, ClosingEndsWhereTheUserWantsThat) {
  auto snapshot = std::make_shared<EngineSnapshot>(*snapshotOf(stateOf(mildWeek())));
  snapshot->closesToTray = false;
  model.show(snapshot);
  happen(hostCame);
  EXPECT_TRUE(window->window()->close());
}

/// What the menu's last item, Ctrl+Q, a signal and the end of the session come to: the code of the end, 1
/// when there is none.
int codeOfQuitting(DesktopShell& shell) {
  QTimer tooLate;
  QObject::connect(&tooLate, &QTimer::timeout, [] { QCoreApplication::exit(1); });
  tooLate.start(std::chrono::seconds(5));
  shell.receive(TrayEvent{chosen, kTrayQuit, {}});
  return QGuiApplication::exec();
}

TEST_F(Shell, QuittingIsNotHeldUpByTheTray) {
  happen(hostCame);
  EXPECT_EQ(codeOfQuitting(*shell), 0);
}

TEST_F(Shell, QuittingIsNotHeldUpByAHiddenWindow) {
  happen(hostCame);
  EXPECT_FALSE(window->window()->close());
  EXPECT_EQ(codeOfQuitting(*shell), 0);
}

TEST_F(Shell, ComesBackWhenTheTrayHasGone) {
  happen(hostCame);
  window->window()->close();
  happen(hostLeft);
  EXPECT_TRUE(QTest::qWaitFor([this] { return isShown(); }));
  EXPECT_TRUE(window->window()->close());
}

TEST_F(Shell, StaysHiddenWhenTheTrayIsReplaced) {
  happen(hostCame);
  window->window()->close();
  shell->receive(TrayEvent{hostLeft, {}, {}});
  shell->receive(TrayEvent{hostCame, {}, {}});
  QCoreApplication::processEvents();
  EXPECT_FALSE(isShown());
}

TEST_F(Shell, TheMenuCommands) {
  happen(hostCame);
  window->window()->close();
  happen(chosen, kTrayShow);
  EXPECT_TRUE(isShown());
  happen(chosen, kTrayRefresh);
  happen(chosen, "format");
  EXPECT_THAT(asked, ElementsAre("refresh"));
}

TEST_F(Shell, ShowsTheFaceOncePerChange) {
  ASSERT_EQ(faces.size(), 1U);
  EXPECT_EQ(faces[0].title, "Nimbara");
  EXPECT_THAT(faces[0].summary, testing::StartsWith("Testville: 15"));
  EXPECT_EQ(faces[0].pictures.size(), 4U);
  model.tick();
  EXPECT_EQ(faces.size(), 1U);
  model.show(std::make_shared<EngineSnapshot>());
  ASSERT_EQ(faces.size(), 2U);
  EXPECT_NE(faces[1].pictures, faces[0].pictures);
}

struct CallRow {
  ApplicationCall call;
  std::string page, theme;
  std::vector<std::string> asked;
};

TEST_F(Shell, DoesWhatLaterStartsAskFor) {
  for (CallRow const& row :
       {CallRow{{}, "now", "", {}},  // the theme of the settings
        {{"start", {"--page", "hours", "--theme", "dark"}, {}}, "hours", "dark", {}},
        {{"start", {"--place", "Oslo", "--refresh"}, {}}, "hours", "dark", {"place Oslo", "refresh"}},
        {{"places", {}, {}}, "places", "dark", {}},
        {{"refresh", {}, {}}, "places", "dark", {"refresh"}},
        {{"start", {"--page", "moon"}, {}}, "places", "dark", {}},
        {{"rm -rf", {"--page", "hours"}, {}}, "places", "dark", {}}}) {
    asked.clear();
    window->window()->hide();
    call(row.call);
    EXPECT_EQ(property("page"), row.page) << row.call.action;
    EXPECT_EQ(property("theme"), row.theme) << row.call.action;
    EXPECT_EQ(asked, row.asked) << row.call.action;
    EXPECT_TRUE(isShown()) << row.call.action;
  }
}

TEST_F(Shell, HandsTheTokenToTheToolkit) {
  call({{}, {}, "token-1"});
  EXPECT_EQ(qgetenv("XDG_ACTIVATION_TOKEN"), "token-1");
  qunsetenv("XDG_ACTIVATION_TOKEN");
}

TEST(TrayPicture, FillsItsSquareInOpaqueBytes) {
  offscreenApplication();
  TrayView view;
  view.temperature = "-12°";
  view.skyTop = "#ff0000";
  view.skyBottom = "#ff0000";
  for (TrayPicture const& picture : trayPictures(view)) {
    auto const side = static_cast<std::size_t>(picture.side);
    ASSERT_EQ(picture.argb.size(), 4 * side * side);
    std::size_t const middleOfTop = 4 * (side + side / 2);
    EXPECT_THAT(std::vector(picture.argb.begin() + static_cast<std::ptrdiff_t>(middleOfTop),
                            picture.argb.begin() + static_cast<std::ptrdiff_t>(middleOfTop) + 4),
                ElementsAre(255, 255, 0, 0));
    EXPECT_EQ(picture.argb[0], 0) << "the corner is round";
  }
}

}  // namespace
}  // namespace nimbara
