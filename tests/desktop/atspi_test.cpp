#include "support/paths.h"
#include "support/session/private_bus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <map>
#include <mutex>
#include <sdbus-c++/sdbus-c++.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace nimbara {
namespace {

using test::PrivateBus;
using testing::Contains;

using Reference = sdbus::Struct<std::string, sdbus::ObjectPath>;

constexpr char kRoot[] = "/org/a11y/atspi/accessible/root";
constexpr char kAccessible[] = "org.a11y.atspi.Accessible";
constexpr char kAction[] = "org.a11y.atspi.Action";
constexpr std::chrono::seconds kPatience{30};

/// The numbers of the protocol's states.
enum class Spoken { checked = 4, collapsed = 5, expanded = 10, focused = 12, selected = 23, showing = 25 };

/// A screen reader: the registry that programs with accessible windows announce themselves to, on a bus that
/// serves as the session's and as that of accessibility, and what it reads and presses there.
class Reader {
 public:
  explicit Reader(PrivateBus const& bus)
      : connection_(sdbus::createSessionBusConnectionWithAddress(bus.address())),
        status_(sdbus::createObject(*connection_, "/org/a11y/bus")),
        root_(sdbus::createObject(*connection_, kRoot)),
        registry_(sdbus::createObject(*connection_, "/org/a11y/atspi/registry")) {
    status_->registerMethod("GetAddress")
        .onInterface("org.a11y.Bus")
        .implementedAs([address = bus.address()] { return address; });
    for (char const* const name : {"IsEnabled", "ScreenReaderEnabled"})
      status_->registerProperty(name).onInterface("org.a11y.Status").withGetter([] { return true; });
    root_->registerMethod("Embed")
        .onInterface("org.a11y.atspi.Socket")
        .implementedAs([this](Reference const& program) {
          std::lock_guard const lock(mutex_);
          program_ = program.get<0>();
          changed_.notify_all();
          return Reference(connection_->getUniqueName(), sdbus::ObjectPath(kRoot));
        });
    registry_->registerMethod("GetRegisteredEvents").onInterface("org.a11y.atspi.Registry").implementedAs([] {
      return std::vector<sdbus::Struct<std::string, std::string>>();
    });
    for (auto* const object : {status_.get(), root_.get(), registry_.get()}) object->finishRegistration();
    connection_->requestName("org.a11y.Bus");
    connection_->requestName("org.a11y.atspi.Registry");
    connection_->enterEventLoopAsync();
  }
  ~Reader() { connection_->leaveEventLoop(); }

  bool awaitProgram() {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, kPatience, [this] { return !program_.empty(); });
  }

  struct Node {
    std::string path, role, name;
    std::uint64_t states = 0;
    bool is(Spoken state) const { return (states >> static_cast<unsigned>(state) & 1) != 0; }
  };

  /// What is shown below, in reading order.
  void read(std::string const& path, std::vector<Node>& nodes) const {
    Node const node = at(path);
    bool const isFrame = node.role == "application" || node.role == "frame";
    if (!isFrame && !node.is(Spoken::showing)) return;
    nodes.push_back(node);
    std::vector<Reference> children;
    proxy(path)->callMethod("GetChildren").onInterface(kAccessible).storeResultsTo(children);
    for (Reference const& child : children) read(child.get<1>(), nodes);
  }
  std::vector<Node> read() const {
    std::vector<Node> nodes;
    try {
      read(kRoot, nodes);
    } catch (sdbus::Error const&) {  // what was listed has gone meanwhile
      nodes.clear();
    }
    return nodes;
  }

  /// The first of that role whose name begins so, as soon as it is there and is as wanted.
  std::optional<Node> await(std::string const& role, std::string const& name,
                            std::function<bool(Node const&)> const& isWanted = nullptr) const {
    auto const end = std::chrono::steady_clock::now() + kPatience;
    while (std::chrono::steady_clock::now() < end) {
      for (Node const& node : read()) {
        if (node.role == role && node.name.starts_with(name) && (!isWanted || isWanted(node))) return node;
      }
    }
    return std::nullopt;
  }

  bool press(Node const& node, std::string const& action = "Press") const {
    std::vector<sdbus::Struct<std::string, std::string, std::string>> actions;
    proxy(node.path)->callMethod("GetActions").onInterface(kAction).storeResultsTo(actions);
    for (std::size_t i = 0; i < actions.size(); ++i) {
      if (actions[i].get<0>() != action) continue;
      bool isDone = false;
      proxy(node.path)
          ->callMethod("DoAction")
          .onInterface(kAction)
          .withArguments(static_cast<std::int32_t>(i))
          .storeResultsTo(isDone);
      return isDone;
    }
    return false;
  }

 private:
  std::unique_ptr<sdbus::IProxy> proxy(std::string const& path) const {
    return sdbus::createProxy(*connection_, program_, path);
  }
  Node at(std::string const& path) const {
    auto const object = proxy(path);
    Node node{path, {}, object->getProperty("Name").onInterface(kAccessible), 0};
    object->callMethod("GetRoleName").onInterface(kAccessible).storeResultsTo(node.role);
    std::vector<std::uint32_t> states;
    object->callMethod("GetState").onInterface(kAccessible).storeResultsTo(states);
    for (std::size_t i = 0; i < states.size(); ++i) node.states |= std::uint64_t{states[i]} << (32 * i);
    return node;
  }

  std::unique_ptr<sdbus::IConnection> connection_;
  std::unique_ptr<sdbus::IObject> status_, root_, registry_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::string program_;
};

/// The window with the demo on a display of its own, for as long as the object lives.
class Window {
 public:
  Window(PrivateBus const& bus, char const* page) {
    std::string const program =
        (std::filesystem::path(test::kProgram).parent_path() / "nimbara-desktop").string();
    process_ = fork();
    if (process_ != 0) return;
    setpgid(0, 0);
    setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);
    setenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1", 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    setenv("QT_QUICK_BACKEND", "software", 1);
    setenv("XDG_RUNTIME_DIR", folder_.path().c_str(), 1);
    execlp("xvfb-run", "xvfb-run", "-a", "-s", "-screen 0 1300x3000x24", program.c_str(), "--demo", "--now",
           "2026-11-21T09:20:00Z", "--page", page, "--size", "1280x2900", nullptr);
    _exit(127);
  }
  ~Window() {
    kill(-process_, SIGTERM);
    waitpid(process_, nullptr, 0);
  }
  Window(Window const&) = delete;

 private:
  test::TemporaryFolder folder_;
  pid_t process_ = -1;
};

struct ActionRow {
  char const* name;
  char const* page;
  char const* role;
  char const* control;  ///< what its name begins with
  Spoken state;         ///< that pressing it changes
};

constexpr ActionRow kActions[] = {
    {"Navigation", "now", "page tab", "Forecast", Spoken::selected},
    {"Day", "hours", "push button", "Sunday", Spoken::expanded},
    {"Chip", "hazards", "radio button", "Within: 500", Spoken::checked},
    {"Layer", "globe", "check box", "Earthquakes", Spoken::checked},
    {"Group", "notifications", "push button", "Weather, ", Spoken::expanded},
    {"Switch", "settings", "check box", "Keep running in the tray", Spoken::checked},
    {"Choice", "settings", "combo box", "Appearance", Spoken::expanded},
    {"Service", "settings", "radio button", "MET Norway", Spoken::checked},
    {"Credits", "settings", "push button", "Credits", Spoken::expanded},
};

void PrintTo(ActionRow const& row, std::ostream* out) {
  *out << row.name;
}

struct AtSpi : testing::TestWithParam<ActionRow> {
  static bool isInstalled(char const* program) {
    return std::system(("command -v " + std::string(program) + " >/dev/null 2>&1").c_str()) == 0;
  }
  void SetUp() override {
    if (!isInstalled("xvfb-run") || !isInstalled("dbus-daemon")) GTEST_SKIP() << "no display and no bus";
  }
};

TEST_P(AtSpi, PressesWhatTheMousePresses) {
  ActionRow const& row = GetParam();
  PrivateBus const bus;
  Reader reader(bus);
  Window const window(bus, row.page);
  ASSERT_TRUE(reader.awaitProgram());
  auto const control = reader.await(row.role, row.control);
  ASSERT_TRUE(control.has_value());
  bool const before = control->is(row.state);
  EXPECT_TRUE(reader.press(*control));
  EXPECT_TRUE(reader.await(row.role, row.control,
                           [&](Reader::Node const& node) { return node.is(row.state) != before; }));
}

INSTANTIATE_TEST_SUITE_P(Controls, AtSpi, testing::ValuesIn(kActions),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(AtSpi, HearsTheHeadingOfTheNextPage) {
  PrivateBus const bus;
  Reader reader(bus);
  Window const window(bus, "now");
  ASSERT_TRUE(reader.awaitProgram());
  auto const way = reader.await("page tab", "Places");
  ASSERT_TRUE(way.has_value());
  EXPECT_TRUE(reader.press(*way));
  EXPECT_TRUE(
      reader.await("heading", "Places", [](Reader::Node const& node) { return node.is(Spoken::focused); }));
}

}  // namespace
}  // namespace nimbara
