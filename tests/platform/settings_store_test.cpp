#include "platform/linux/store/settings_database.h"
#include "platform/linux/store/sqlite_settings_store.h"
#include "support/child_process.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <random>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>

namespace nimbara {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using test::ChildProcess;
using test::TemporaryFolder;

constexpr SettingDefinition kTable[] = {
    {"count", std::int64_t{0}, ""},
    {"flag", false, ""},
    {"name", std::string_view("none"), ""},
};

SettingsRegistry const& registry() {
  static SettingsRegistry const kRegistry{kTable};
  return kRegistry;
}

std::string contentOf(std::filesystem::path const& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

mode_t modeOf(std::filesystem::path const& path) {
  struct stat status{};
  stat(path.c_str(), &status);
  return status.st_mode & 07777;
}

class SettingsStoreTest : public testing::Test {
 protected:
  SqliteSettingsStore open() const { return {directory_, registry()}; }
  std::filesystem::path file() const { return directory_ / "nimbara.db"; }
  static std::int64_t countIn(SqliteSettingsStore&& store) {
    auto const reading = store.settings();
    EXPECT_FALSE(reading.problem) << reading.problem->message;
    return reading.settings.integer("count");
  }

  TemporaryFolder temporary_;
  std::filesystem::path directory_ = temporary_.path() / "share" / "nimbara";
};

TEST_F(SettingsStoreTest, CreatesNothingToRead) {
  SqliteSettingsStore store(directory_, registry());
  EXPECT_EQ(store.settings().settings.text("name"), "none");
  EXPECT_FALSE(store.settings().problem);
  EXPECT_TRUE(std::filesystem::is_empty(temporary_.path()));
}

TEST_F(SettingsStoreTest, KeepsEveryTypeForTheUserAlone) {
  SqliteSettingsStore store(directory_, registry());
  ASSERT_TRUE(store.set("count", std::int64_t{-9'007'199'254'740'993}));
  ASSERT_TRUE(store.set("flag", true));
  ASSERT_TRUE(store.set("name", std::string("Łódź \0 '; DROP", 16)));
  ASSERT_TRUE(store.setState("ratio", 0.1));
  SqliteSettingsStore other(directory_, registry());
  Settings const settings = other.settings().settings;
  EXPECT_EQ(settings.integer("count"), -9'007'199'254'740'993);
  EXPECT_TRUE(settings.boolean("flag"));
  EXPECT_EQ(settings.text("name"), std::string("Łódź \0 '; DROP", 16));
  EXPECT_EQ(other.state("ratio")->value(), SettingValue(0.1));
  EXPECT_EQ(modeOf(directory_), 0700);
  for (auto const& entry : std::filesystem::directory_iterator(directory_)) {
    EXPECT_EQ(modeOf(entry.path()), 0600) << entry.path();
    EXPECT_TRUE(entry.path().filename().string().starts_with("nimbara.db")) << entry.path();
  }
}

TEST_F(SettingsStoreTest, RefusesWhatIsNotRegistered) {
  SqliteSettingsStore store(directory_, registry());
  EXPECT_EQ(store.set("nothing", true).error().kind, StoreError::Kind::refused);
  EXPECT_EQ(store.reset("nothing").error().kind, StoreError::Kind::refused);
  EXPECT_EQ(store.set("flag", std::string("true")).error().message, "the setting flag takes true or false");
  EXPECT_TRUE(std::filesystem::is_empty(temporary_.path()));
}

TEST_F(SettingsStoreTest, KeepsAreasAndKeysOfOthersApart) {
  SqliteSettingsStore store(directory_, registry());
  ASSERT_TRUE(store.update(StoreArea::settings, [](SettingValues const&) {
    return StoreChanges{{"ofALaterVersion", SettingValue(1.5)}};
  }));
  ASSERT_TRUE(store.setState("name", std::string("state")));
  ASSERT_TRUE(store.set("name", std::string("setting")));
  ASSERT_TRUE(store.reset("name"));
  ASSERT_TRUE(store.reset("name")) << "twice is no fault";
  EXPECT_EQ(store.read(StoreArea::settings)->size(), 1U);
  EXPECT_EQ(store.read(StoreArea::settings)->at("ofALaterVersion"), SettingValue(1.5));
  EXPECT_EQ(store.state("name")->value(), SettingValue(std::string("state")));
  ASSERT_TRUE(store.setState("name", std::nullopt));
  EXPECT_EQ(*store.state("name"), std::nullopt);
}

TEST_F(SettingsStoreTest, ChangesAllOrNothing) {
  SqliteSettingsStore store(directory_, registry());
  ASSERT_TRUE(store.set("count", std::int64_t{1}));
  auto const refused = store.update(StoreArea::settings, [](SettingValues const&) {
    return std::unexpected(StoreError{StoreError::Kind::refused, "no"});
  });
  EXPECT_EQ(refused.error().message, "no");
  auto const increment = [](SettingValues const& stored) {
    return StoreChanges{{"count", SettingValue(std::get<std::int64_t>(stored.at("count")) + 1)}};
  };
  ASSERT_TRUE(store.update(StoreArea::settings, increment)) << "a refusal leaves the store usable";
  EXPECT_EQ(countIn(open()), 2);
}

TEST_F(SettingsStoreTest, GoesOnWhenTheFileIsReplaced) {
  SqliteSettingsStore store(directory_, registry());
  ASSERT_TRUE(store.set("count", std::int64_t{1}));
  for (char const* const suffix : {"", "-wal", "-shm"}) std::filesystem::remove(file().string() + suffix);
  EXPECT_EQ(store.settings().settings.integer("count"), 0);
  ASSERT_TRUE(store.set("count", std::int64_t{2}));
  EXPECT_EQ(countIn(open()), 2);
}

struct BrokenRow {
  std::string name;
  std::function<std::string(std::string)> damage;
};

void PrintTo(BrokenRow const& row, std::ostream* out) {
  *out << row.name;
}

class BrokenSettings : public SettingsStoreTest, public testing::WithParamInterface<BrokenRow> {};

/// Whatever lies there: defaults to read, one sentence, and not a byte of it changed.
TEST_P(BrokenSettings, AreNeverOverwritten) {
  std::string whole;
  {
    SqliteSettingsStore store(directory_, registry());
    ASSERT_TRUE(store.set("count", std::int64_t{5}));
    ASSERT_TRUE(store.set("name", std::string(20'000, 'x')));
  }
  whole = contentOf(file());
  for (char const* const suffix : {"-wal", "-shm"}) std::filesystem::remove(file().string() + suffix);
  std::string const broken = GetParam().damage(whole);
  std::ofstream(file(), std::ios::binary | std::ios::trunc) << broken;
  SqliteSettingsStore store(directory_, registry());
  auto const reading = store.settings();
  if (reading.problem) {
    EXPECT_EQ(reading.settings.integer("count"), 0);
    EXPECT_EQ(reading.problem->kind, StoreError::Kind::unreadable);
    EXPECT_NE(reading.problem->message.find(file().string()), std::string::npos);
  }
  auto const refused = store.set("count", std::int64_t{6});
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error().kind, StoreError::Kind::unreadable) << refused.error().message;
  EXPECT_EQ(contentOf(file()), broken);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, BrokenSettings,
    testing::Values(
        BrokenRow{"Empty", [](std::string const&) { return std::string(); }},
        BrokenRow{"RandomBytes",
                  [](std::string const&) {
                    std::mt19937 engine(7);
                    std::string bytes(9'000, ' ');
                    for (char& byte : bytes) byte = static_cast<char>(engine());
                    return bytes;
                  }},
        BrokenRow{"Json", [](std::string const&) { return std::string("{\"count\":1}"); }},
        BrokenRow{"CutInTheHeader", [](std::string const& whole) { return whole.substr(0, 50); }},
        BrokenRow{"CutBehindTheFirstPage", [](std::string const& whole) { return whole.substr(0, 4096); }},
        BrokenRow{"CutByAPage",
                  [](std::string const& whole) { return whole.substr(0, whole.size() - 4096); }},
        BrokenRow{"PageOfNoise", [](std::string whole) { return whole.replace(4096, 64, 64, '\x5a'); }}),
    [](auto const& row) { return row.param.name; });

struct OtherKindRow {
  std::string name;
  std::function<void(std::filesystem::path const&)> make;
};

void PrintTo(OtherKindRow const& row, std::ostream* out) {
  *out << row.name;
}

class OtherKindOfFile : public SettingsStoreTest, public testing::WithParamInterface<OtherKindRow> {};

/// Not opened at all: whoever opens a pipe waits for its other end.
TEST_P(OtherKindOfFile, IsRefusedAtOnce) {
  std::filesystem::create_directories(directory_);
  GetParam().make(file());
  SqliteSettingsStore store(directory_, registry());
  auto const reading = store.settings();
  ASSERT_TRUE(reading.problem);
  auto const refused = store.set("count", std::int64_t{6});
  ASSERT_FALSE(refused);
  for (StoreError const& error : {*reading.problem, refused.error()}) {
    EXPECT_EQ(error.kind, StoreError::Kind::unreadable);
    EXPECT_NE(error.message.find("not a regular file"), std::string::npos) << error.message;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, OtherKindOfFile,
    testing::Values(
        OtherKindRow{"Pipe", [](auto const& path) { ASSERT_EQ(mkfifo(path.c_str(), 0600), 0); }},
        OtherKindRow{"Folder",
                     [](auto const& path) { ASSERT_TRUE(std::filesystem::create_directory(path)); }},
        OtherKindRow{"Device", [](auto const& path) { std::filesystem::create_symlink("/dev/zero", path); }}),
    [](auto const& row) { return row.param.name; });

TEST_F(SettingsStoreTest, LeavesANewerVersionsDatabaseAlone) {
  {
    auto store = open();
    ASSERT_TRUE(store.set("count", std::int64_t{5}));
  }
  for (std::int64_t const version : {kSettingsVersion, kSettingsVersion + 1}) {
    {
      auto connection = SqliteConnection::open(file(), SqliteAccess::readWrite);
      ASSERT_TRUE(connection);
      ASSERT_TRUE(connection->run("PRAGMA user_version=" + std::to_string(version)));
      connection->tidyAtEnd();
    }
    bool const isNewer = version > kSettingsVersion;
    std::string const before = contentOf(file());
    SqliteSettingsStore store(directory_, registry());
    auto const reading = store.settings();
    EXPECT_EQ(reading.problem.has_value(), isNewer);
    EXPECT_EQ(reading.settings.integer("count"), isNewer ? 0 : 5);
    auto const changed = store.set("count", std::int64_t{5});
    EXPECT_EQ(changed.has_value(), !isNewer);
    if (!isNewer) continue;
    EXPECT_NE(changed.error().message.find("newer version"), std::string::npos) << changed.error().message;
    EXPECT_EQ(contentOf(file()), before);
  }
}

/// A log that was left full by a process that was killed is whole, and so is what it belongs to.
TEST_F(SettingsStoreTest, ChangesNoByteForARefusedChange) {
  {
    ChildProcess killed([this](ChildProcess::Report const& report) {
      SqliteSettingsStore store(directory_, registry());
      report(store.set("count", std::int64_t{5}).has_value() ? 1 : 0);
      pause();
      return 0;
    });
    ASSERT_EQ(killed.next(), 1);
  }
  std::string const log = file().string() + "-wal";
  std::string const before = contentOf(file()) + contentOf(log);
  ASSERT_GT(contentOf(log).size(), 0U);
  EXPECT_FALSE(open().set("nobody's", std::int64_t{1}));
  auto const refusal = [](SettingValues const&) -> Result<StoreChanges, StoreError> {
    return std::unexpected(StoreError{StoreError::Kind::refused, "no"});
  };
  EXPECT_FALSE(open().update(StoreArea::settings, refusal));
  EXPECT_TRUE(contentOf(file()) + contentOf(log) == before);
  EXPECT_EQ(countIn(open()), 5);
}

TEST_F(SettingsStoreTest, SweepsWhatAKilledMakerLeft) {
  ASSERT_TRUE(open().set("count", std::int64_t{5}));
  for (char const* const name : {".new-aaaaaa", ".new-aaaaaa-wal", ".new-bbbbbb"})
    std::ofstream(directory_ / name) << "half";
  auto const longAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(2);
  for (char const* const name : {".new-aaaaaa", ".new-aaaaaa-wal"})
    std::filesystem::last_write_time(directory_ / name, longAgo);
  ASSERT_TRUE(open().set("count", std::int64_t{6}));
  EXPECT_FALSE(std::filesystem::exists(directory_ / ".new-aaaaaa"));
  EXPECT_FALSE(std::filesystem::exists(directory_ / ".new-aaaaaa-wal"));
  EXPECT_TRUE(std::filesystem::exists(directory_ / ".new-bbbbbb")) << "somebody may be making it";
}

/// As a user who may not write there; root may write everywhere.
int asNobody(std::function<int()> const& work) {
  constexpr uid_t kNobody = 65534;
  if (geteuid() == 0 && setresuid(kNobody, kNobody, kNobody) != 0) return 98;
  return work();
}

TEST_F(SettingsStoreTest, ReadsWhereNothingMayBeWritten) {
  ASSERT_TRUE(open().set("count", std::int64_t{5}));
  std::filesystem::permissions(temporary_.path(), std::filesystem::perms(0755));
  std::filesystem::permissions(temporary_.path() / "share", std::filesystem::perms(0755));
  for (bool const withLog : {true, false}) {
    for (auto const& entry : std::filesystem::directory_iterator(directory_)) {
      std::filesystem::permissions(entry.path(), std::filesystem::perms(0444));
    }
    std::filesystem::permissions(directory_, std::filesystem::perms(0555));
    ChildProcess child([&](ChildProcess::Report const& report) {
      return asNobody([&] {
        SqliteSettingsStore store(directory_, registry());
        report(store.settings().settings.integer("count"));
        auto const refused = store.set("count", std::int64_t{6});
        return !refused && refused.error().kind == StoreError::Kind::unwritable ? 0 : 1;
      });
    });
    EXPECT_EQ(child.next(), 5) << withLog;
    EXPECT_EQ(child.wait(), 0) << withLog;
    std::filesystem::permissions(directory_, std::filesystem::perms(0755));
    for (char const* const suffix : {"-wal", "-shm"}) std::filesystem::remove(file().string() + suffix);
  }
}

TEST_F(SettingsStoreTest, SaysWhenItsFolderCannotBeMade) {
  std::ofstream(temporary_.path() / "share") << "a file in the way";
  SqliteSettingsStore store(directory_, registry());
  auto const refused = store.set("count", std::int64_t{1});
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error().kind, StoreError::Kind::unwritable);
  EXPECT_NE(refused.error().message.find("Not a directory"), std::string::npos) << refused.error().message;
  EXPECT_FALSE(store.watch());
  EXPECT_EQ(store.settings().settings.integer("count"), 0);
}

/// A limit of the size of files stands for a full disk: every write behind it fails.
TEST_F(SettingsStoreTest, SurvivesAFullDisk) {
  ASSERT_TRUE(open().set("count", std::int64_t{5}));
  ChildProcess child([&](ChildProcess::Report const& report) {
    signal(SIGXFSZ, SIG_IGN);
    SqliteSettingsStore store(directory_, registry());
    rlimit const limit{40'000, 40'000};
    setrlimit(RLIMIT_FSIZE, &limit);
    auto const refused = store.set("name", std::string(200'000, 'x'));
    if (refused) return 1;
    report(static_cast<std::int64_t>(refused.error().kind));
    auto const reading = store.settings();
    if (reading.problem) std::fprintf(stderr, "%s\n", reading.problem->message.c_str());
    return reading.settings.integer("count") == 5 ? 0 : 2;
  });
  EXPECT_EQ(child.next(), static_cast<std::int64_t>(StoreError::Kind::unwritable));
  EXPECT_EQ(child.wait(), 0);
  EXPECT_EQ(countIn(open()), 5);
  ASSERT_TRUE(open().set("count", std::int64_t{6}));
}

int rounds() {
  char const* const given = std::getenv("NIMBARA_KILL_ROUNDS");
  return given == nullptr ? 200 : std::atoi(given);
}

void spin(std::chrono::nanoseconds time) {
  auto const end = steady_clock::now() + time;
  while (steady_clock::now() < end) {
  }
}

/// Counts upwards and reports each number that the store has acknowledged.
int countUp(std::filesystem::path const& directory, ChildProcess::Report const& report) {
  SqliteSettingsStore store(directory, registry());
  std::int64_t number = store.settings().settings.integer("count");
  while (true) {
    if (!store.set("count", ++number)) return 1;
    report(number);
  }
}

TEST_F(SettingsStoreTest, LosesNoAcknowledgedChangeWhenKilled) {
  std::mt19937 engine(20261121);
  std::int64_t total = 0;
  for (int round = 0; round < rounds(); ++round) {
    // Every tenth round begins with making the database.
    if (round % 10 == 0) std::filesystem::remove_all(directory_);
    ChildProcess child([this](ChildProcess::Report const& report) { return countUp(directory_, report); });
    std::int64_t acknowledged = 0;
    // From none on: the kill may meet the opening, the making or any point of a change.
    for (unsigned changes = engine() % 8; changes > 0; --changes) acknowledged = child.next().value_or(-1);
    spin(std::chrono::microseconds(engine() % 3'000));
    child.kill();
    while (auto const more = child.next()) acknowledged = *more;
    std::int64_t const kept = countIn(open());
    ASSERT_GE(kept, acknowledged) << "round " << round;
    ASSERT_LE(kept, acknowledged + 1 + (acknowledged == 0 ? total : 0)) << "round " << round;
    total = kept;
  }
}

TEST_F(SettingsStoreTest, LetsManyProcessesWriteAtOnce) {
  constexpr int kProcesses = 4;
  constexpr int kChanges = 50;
  auto const increment = [](SettingValues const& stored) {
    auto const found = stored.find("count");
    std::int64_t const count = found == stored.end() ? 0 : std::get<std::int64_t>(found->second);
    return StoreChanges{{"count", SettingValue(count + 1)}};
  };
  auto const work = [&](ChildProcess::Report const&) {
    for (int i = 0; i < kChanges; ++i) {
      // Sometimes again, so that openings, closings and writes meet.
      SqliteSettingsStore store(directory_, registry());
      for (int j = 0; j < 2; ++j) {
        auto const done = store.update(StoreArea::settings, increment);
        if (!done) std::fprintf(stderr, "%s\n", done.error().message.c_str());
        if (!done) return 1;
      }
    }
    return 0;
  };
  auto const start = steady_clock::now();
  {
    std::vector<std::unique_ptr<ChildProcess>> children;
    for (int i = 0; i < kProcesses; ++i) children.push_back(std::make_unique<ChildProcess>(work));
    for (auto const& child : children) EXPECT_EQ(child->wait(), 0);
  }
  RecordProperty("milliseconds", std::to_string((steady_clock::now() - start) / milliseconds(1)));
  EXPECT_EQ(countIn(open()), kProcesses * kChanges * 2);
}

steady_clock::time_point soon() {
  return steady_clock::now() + std::chrono::seconds(20);
}

TEST_F(SettingsStoreTest, TellsOthersOfEachChange) {
  constexpr int kChanges = 100;
  // The child waits for each change and answers with what it reads.
  ChildProcess child([this](ChildProcess::Report const& report) {
    SqliteSettingsStore store(directory_, registry());
    auto const watch = store.watch();
    if (!watch) return 1;
    report(0);
    for (std::int64_t seen = 0; seen < kChanges;) {
      if ((*watch)->wait({}, soon()) != WaitOutcome::changed) return 2;
      seen = store.settings().settings.integer("count");
      report(seen);
    }
    return 0;
  });
  ASSERT_EQ(child.next(), 0);
  SqliteSettingsStore store(directory_, registry());
  for (std::int64_t number = 1; number <= kChanges; ++number) {
    ASSERT_TRUE(store.set("count", number));
    std::int64_t seen = -1;
    while (seen < number) {
      auto const next = child.next();
      ASSERT_TRUE(next) << "change " << number << " was not noticed";
      seen = *next;
    }
    EXPECT_EQ(seen, number);
  }
  EXPECT_EQ(child.wait(), 0);
}

TEST_F(SettingsStoreTest, NoticesTheChangeOfAWriterThatDied) {
  SqliteSettingsStore store(directory_, registry());
  ASSERT_TRUE(store.set("count", std::int64_t{1}));
  auto const watch = store.watch();
  ASSERT_TRUE(watch);
  ChildProcess child([this](ChildProcess::Report const&) {
    auto connection = SqliteConnection::open(directory_ / "nimbara.db", SqliteAccess::readWrite);
    bool const done = connection && connection->run("UPDATE settings SET value = 7");
    raise(done ? SIGKILL : SIGTERM);
    return 0;
  });
  EXPECT_EQ(child.wait(), -SIGKILL);
  EXPECT_EQ((*watch)->wait({}, soon()), WaitOutcome::changed);
  EXPECT_EQ(store.settings().settings.integer("count"), 7);
}

TEST_F(SettingsStoreTest, WakesForNothingElse) {
  SqliteSettingsStore store(directory_, registry());
  ASSERT_TRUE(store.set("count", std::int64_t{1}));
  auto const watch = store.watch();
  ASSERT_TRUE(watch);
  ASSERT_TRUE(store.set("count", std::int64_t{1})) << "the same value is no change";
  std::ofstream(directory_ / "other") << "x";
  static_cast<void>(open().settings());
  EXPECT_EQ((*watch)->wait({}, steady_clock::now() + milliseconds(20)), WaitOutcome::timedOut);
  ASSERT_TRUE(store.set("count", std::int64_t{2}));
  EXPECT_EQ((*watch)->wait({}, soon()), WaitOutcome::changed) << "one's own process counts as well";
  EXPECT_EQ((*watch)->wait({}, steady_clock::now()), WaitOutcome::timedOut) << "once only";
  std::stop_source stop;
  std::jthread const stopper([&stop] { stop.request_stop(); });
  EXPECT_EQ((*watch)->wait(stop.get_token()), WaitOutcome::stopped);
}

TEST_F(SettingsStoreTest, NoticesThatTheFileIsReplaced) {
  SqliteSettingsStore store(directory_, registry());
  ASSERT_TRUE(store.set("count", std::int64_t{1}));
  auto const watch = store.watch();
  std::filesystem::rename(file(), directory_ / "aside");
  EXPECT_EQ((*watch)->wait({}, soon()), WaitOutcome::changed);
  ASSERT_TRUE(open().set("count", std::int64_t{1}));
  EXPECT_EQ((*watch)->wait({}, soon()), WaitOutcome::changed);
}

}  // namespace
}  // namespace nimbara
