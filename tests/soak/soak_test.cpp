// A week of the background service, played through in a minute: the scheduler, the services, the cache and
// the store are the program's own, the services' answers the demo's of each moment, in a process of its own.
// Only time, network and disk are the script's.

#include "app/engine/clocks/scheduler.h"
#include "app/notices/notification_desk.h"
#include "app/services/forecasts/forecast_service.h"
#include "app/settings/settings_registry.h"
#include "demo/demo_process.h"
#include "platform/linux/store/sqlite_settings_store.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/manual_runner.h"
#include "support/paths.h"
#include "support/recording.h"
#include "support/session/fake_notification_center.h"
#include "support/temporary_folder.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <malloc.h>
#include <signal.h>
#include <sys/fsuid.h>
#include <sys/resource.h>
#include <unistd.h>

namespace nimbara {
namespace {

using namespace std::chrono_literals;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kCountsMemory = false;  // what a sanitizer remembers grows with what runs
#else
constexpr bool kCountsMemory = true;
#endif

Instant const kBegin = test::at("2026-11-21T06:00:00Z");
Place const kOslo{{59.91, 10.75}, "Oslo", "Norway", ""};
Place const kDenver{{39.7392, -104.9903}, "Denver", "US", "Colorado"};
Place const kTokyo{{35.69, 139.69}, "Tokyo", "Japan", ""};

int weeks() {
  char const* const text = std::getenv("NIMBARA_SOAK_WEEKS");
  return text == nullptr ? 1 : std::atoi(text);
}

enum class Line { up, hanging, gone };

class ScriptedNetwork final : public HttpClient {
 public:
  ScriptedNetwork(HttpClient& network, test::ManualClock& clock, Line const& line,
                  std::function<std::string()> const& warnings)
      : network_(network), clock_(clock), line_(line), warnings_(warnings) {}

  Result<HttpResponse, HttpError> get(HttpRequest const& request, std::stop_token stop) override {
    if (line_ == Line::gone)
      return std::unexpected(HttpError{HttpError::Kind::unresolvedHost, "the host was not found"});
    if (line_ == Line::hanging) {
      std::chrono::milliseconds const silence = request.longestSilence.value_or(std::chrono::hours(1));
      clock_.advance(std::min(request.timeout, silence));
      return std::unexpected(HttpError{HttpError::Kind::timedOut, "no answer came"});
    }
    if (warnings_ && request.url.find("/alerts/active") != std::string::npos)
      return HttpResponse{200, {}, warnings_()};
    HttpRequest dated = request;
    dated.headers.emplace_back("Nimbara-Simulated-Time", formatIso8601(clock_.now()));
    return network_.get(dated, std::move(stop));
  }

 private:
  HttpClient& network_;
  test::ManualClock& clock_;
  Line const& line_;
  std::function<std::string()> const& warnings_;
};

std::size_t residentBytes() {
  malloc_trim(0);
  std::ifstream file("/proc/self/statm");
  std::size_t pages = 0;
  file >> pages >> pages;
  return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

std::size_t openDescriptors() {
  auto const files = std::filesystem::directory_iterator("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

/// Nothing can be written any more: each attempt ends as on a disk without room.
void fillDisk(bool isFull) {
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  limit.rlim_cur = isFull ? 0 : limit.rlim_max;
  setrlimit(RLIMIT_FSIZE, &limit);
}

/// For the thread that calls; root is somebody else meanwhile.
void closeHome(std::filesystem::path const& home, bool isClosed) {
  using std::filesystem::perm_options;
  using std::filesystem::perms;
  if (geteuid() == 0 && !isClosed) setfsuid(0);
  auto const close = [&](std::filesystem::path const& file) {
    constexpr perms kReading = perms::others_read | perms::others_exec;
    std::filesystem::permissions(file, kReading, isClosed ? perm_options::add : perm_options::remove);
    std::filesystem::permissions(file, perms::owner_write,
                                 isClosed ? perm_options::remove : perm_options::add);
  };
  close(home);
  for (auto const& file : std::filesystem::recursive_directory_iterator(home)) close(file.path());
  constexpr uid_t kNobody = 65534;
  if (geteuid() == 0 && isClosed) setfsuid(kNobody);
}

struct Delivery {
  Instant time;
  std::string title;
};

class Week : public testing::Test, protected WakeTimer {
 protected:
  using Happening = std::function<Cause()>;

  Week() {
    signal(SIGXFSZ, SIG_IGN);
    // Asked for with every pass, and no other part of the week's.
    std::ignore = store_.set("notify_lightning", false);
    AppState::Surroundings all;
    all.savedPlaces = [] { return std::vector{kOslo, kDenver, kTokyo}; };
    all.onRefresh = [this](AppState::RefreshReport const& report) {
      desk_->notifier().requestPass();
      bool const isAnswer = report.outcome && !report.outcome->failure;
      if (!report.isSelected || !isAnswer) return;
      for (Instant const since : std::exchange(online_, {})) delays_.push_back(clock_.now() - since);
    };
    state_ = std::make_unique<AppState>(forecastsOf(always(services_)), clock_, runner_, std::move(all));
    auto center = std::make_unique<test::FakeNotificationCenter>();
    center_ = center.get();
    desk_ = std::make_unique<NotificationDesk>(NotificationDesk::Surroundings{
        .store = store_,
        .services = always(services_),
        .isStandIn = true,
        .clock = clock_,
        .runner = runner_,
        .wording = {},
        .dataDirectory = folder_.path() / "data",
        .program = "watch",
        .center = std::move(center),
        .places = [] { return std::vector<WatchedPlace>{{kOslo, {}}, {kDenver, {}}, {kTokyo, {}}}; },
        .onPass = [this](PassReport const&) { note(); },
        .onDueChange = {},
        .onRoleChange = {},
        .onResponse = {},
        .onProblem = {},
        .jitter = {}});
  }

  void after(std::chrono::minutes span, Happening happening) {
    script_.emplace_back(kBegin + span, std::move(happening));
  }
  void play() {
    std::ranges::stable_sort(script_, {}, &std::pair<Instant, Happening>::first);
    state_->selectPlace(kOslo, RefreshTrigger::start);
    runScheduler(*state_, desk_->notifier(), *this, clock_, stop_.get_token());
  }

  Cause put(Line line) {
    line_ = line;
    return Cause::asked;
  }
  /// The system says that it can reach the network again.
  Cause reconnect(Line line) {
    line_ = line;
    state_->wokeUp(RefreshTrigger::networkReturned);
    desk_->notifier().wokeUp();
    return Cause::asked;
  }
  /// The machine sleeps, and every timer with it.
  Cause sleep(std::chrono::minutes span) {
    clock_.set(clock_.now() + span);
    asleep_ += span;
    return Cause::clockChanged;
  }
  Cause end() {
    stop_.request_stop();
    return Cause::stopped;
  }

  // The scheduler's timer: what is to be done is done first, then time goes on to the next happening. Where
  // each piece of work takes long, as with services that hang, a happening does not wait for the last one.
  Cause wait(std::optional<std::chrono::milliseconds> span, std::stop_token) override {
    Instant const now = clock_.now();
    bool const isLate = !script_.empty() && script_.front().first <= now;
    if (!isLate && runner_.waiting() > 0) {
      runner_.runOne();
      return Cause::asked;
    }
    spins_ = span && *span == 0ms ? spins_ + 1 : 0;
    if (spins_ > 100) {
      ADD_FAILURE() << "the scheduler turns in place at " << formatIso8601(now);
      return end();
    }
    if (script_.empty()) return end();
    auto const [moment, happening] = script_.front();
    if (span && now + *span < moment) {
      clock_.advance(*span);
      ++turns_;
      return Cause::due;
    }
    if (moment > now) clock_.advance(moment - now);
    script_.erase(script_.begin());
    return happening();
  }
  void wake() override {}

  bool canWrite() const {
    std::ofstream file(folder_.path() / "cache" / "probe", std::ios::trunc);
    return (file << "anything" << std::flush).good();
  }
  /// Whether anything can be written; the forecast is new in either case.
  Cause look(bool isWritable) const {
    EXPECT_EQ(canWrite(), isWritable) << formatIso8601(clock_.now());
    auto const weather = state_->weather();
    EXPECT_LE(clock_.now() - weather->lastUpdated.value_or(Instant()), 16min) << formatIso8601(clock_.now());
    return Cause::asked;
  }

  void note() {
    auto const all = center_->delivered();
    for (; seen_ < all.size(); ++seen_) deliveries_.push_back({clock_.now(), all[seen_].title});
  }
  std::vector<std::string> deliveredWithin(Instant from, std::chrono::minutes span) const {
    std::vector<std::string> titles;
    for (Delivery const& delivery : deliveries_) {
      if (delivery.time >= from && delivery.time <= from + span) titles.push_back(delivery.title);
    }
    return titles;
  }

  test::TemporaryFolder folder_;
  test::ManualClock clock_{kBegin};
  Line line_ = Line::up;
  std::function<std::string()> denver_;  ///< its official warnings; empty: the demo's
  Result<DemoProcess, std::string> demo_ = DemoProcess::start(test::kProgram, kBegin, {});
  SqliteSettingsStore store_{folder_.path() / "data", settingsRegistry()};
  Composition services_{store_.settings().settings, clock_,
                        Composition::Options{demo_->baseUrl(),
                                             {},
                                             {},
                                             test::kProgram,
                                             folder_.path() / "data",
                                             folder_.path() / "cache",
                                             [this](HttpClient& network) {
                                               return std::make_unique<ScriptedNetwork>(network, clock_,
                                                                                        line_, denver_);
                                             },
                                             {}}};
  test::ManualRunner runner_;
  test::FakeNotificationCenter* center_ = nullptr;  // the desk's
  std::unique_ptr<AppState> state_;
  std::unique_ptr<NotificationDesk> desk_;
  std::stop_source stop_;
  std::vector<std::pair<Instant, Happening>> script_;
  std::vector<Instant> online_;  ///< since when the network is there, without an answer yet
  std::vector<std::chrono::milliseconds> delays_;
  std::vector<Delivery> deliveries_;
  std::size_t seen_ = 0;
  std::chrono::milliseconds asleep_{};
  int turns_ = 0;
  int spins_ = 0;
};

/// So many that are in force for `span`, as the service of the United States lists them.
std::string warningsOf(int number, int count, Instant sent, std::chrono::minutes span) {
  std::vector<test::NwsMessage> messages;
  for (int i = 0; i < count; ++i) {
    test::NwsMessage message;
    message.id = fmt::format("urn:{}:{}", number, i);
    message.sent = formatIso8601(sent);
    message.ends = formatIso8601(sent + span);
    message.text = fmt::format("Message {}.", i);
    messages.push_back(std::move(message));
  }
  return test::nwsList(messages);
}

TEST_F(Week, IsLivedThroughWithoutLossOrLeak) {
  int const count = weeks();
  struct Size {
    std::size_t resident, descriptors;
  };
  std::vector<Size> sizes;
  std::vector<Instant> wakeUps;
  for (int day = 1; day <= 7 * count; ++day) {
    after(24h * day - 1min, [&] {
      sizes.push_back({residentBytes(), openDescriptors()});
      return Cause::asked;
    });
  }
  for (int week = 0; week < count; ++week) {
    auto const at = [&](std::chrono::minutes span, Happening happening) {
      after(week * 24h * 7 + span, std::move(happening));
    };
    at(40h, [&, week] {
      // Three for each hour, and gone with it: after eight hours asleep only the last are news.
      denver_ = [this, week, begin = clock_.now()] {
        auto const hours = std::chrono::floor<std::chrono::hours>(clock_.now() - begin).count();
        bool const isOver = hours >= 24;
        return isOver ? warningsOf(0, 0, begin, 1h)
                      : warningsOf(week * 100 + static_cast<int>(hours), 3, begin + hours * 1h, 59min);
      };
      sleep(8h);
      wakeUps.push_back(clock_.now());
      online_.push_back(clock_.now());
      return Cause::clockChanged;
    });
    at(54h, [&] { return put(Line::gone); });
    at(57h, [&] {
      online_.push_back(clock_.now());
      return reconnect(Line::up);
    });
    at(75h, [&] { return put(Line::hanging); });
    at(75h + 40min, [&] { return put(Line::up); });
    at(80h, [&] { return fillDisk(true), Cause::asked; });
    at(82h, [&] { return look(false); });
    at(83h, [&] { return fillDisk(false), Cause::asked; });
    at(84h, [&] { return look(true); });
    at(98h, [&] { return closeHome(folder_.path(), true), Cause::asked; });
    at(100h, [&] { return look(false); });
    at(101h, [&] { return closeHome(folder_.path(), false), Cause::asked; });
    at(102h, [&] { return look(true); });
    at(104h, [&] { return clock_.set(clock_.now() + 3h), Cause::clockChanged; });
    at(108h, [&] { return clock_.set(clock_.now() - 3h), Cause::clockChanged; });
    // Awake, connected as the system says, and still without names for a while.
    at(136h, [&] {
      line_ = Line::gone;
      return sleep(8h);
    });
    at(144h + 1min, [&] {
      script_.insert(script_.begin(), {clock_.now() + 8s, [this] {
                                         online_.push_back(clock_.now());
                                         return put(Line::up);
                                       }});
      return reconnect(Line::gone);
    });
  }
  after(24h * 7 * count, [&] { return end(); });
  play();

  ASSERT_EQ(sizes.size(), 7U * static_cast<std::size_t>(count));
  EXPECT_LE(sizes.back().descriptors, sizes[1].descriptors + 1) << "one connection may be kept or not";
  constexpr std::size_t kFlat = std::size_t{2} << 20;
  if (kCountsMemory) {
    EXPECT_LE(sizes.back().resident, sizes[1].resident + kFlat);
  }

  EXPECT_EQ(delays_.size(), 3U * static_cast<std::size_t>(count)) << "as often as there was a network again";
  for (auto const delay : delays_) EXPECT_LE(delay, 15s);
  for (Instant const wakeUp : wakeUps) {
    auto const titles = deliveredWithin(wakeUp, 10min);
    EXPECT_GE(titles.size(), 1U);
    EXPECT_LE(titles.size(), 4U)
        << "of 24 warnings that came and went, those of the last hour and what else is new";
  }
  auto const awake = std::chrono::floor<std::chrono::minutes>(24h * 7 * count - asleep_);
  EXPECT_LE(turns_, awake.count()) << "at most one waking a minute";

  auto const longest = delays_.empty() ? 0ms : *std::ranges::max_element(delays_);
  fmt::print(
      "soak: {} weeks, memory {:+} kB, {} descriptors, {:.2f} wakings a minute, answers {} s after the "
      "network, {} notifications\n",
      count, (static_cast<long>(sizes.back().resident) - static_cast<long>(sizes[1].resident)) / 1024,
      sizes.back().descriptors, static_cast<double>(turns_) / static_cast<double>(awake.count()),
      longest.count() / 1000, deliveries_.size());
}

}  // namespace
}  // namespace nimbara
