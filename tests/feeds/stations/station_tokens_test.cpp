#include "feeds/stations/station_tokens.h"

#include "base/files/file.h"
#include "base/files/file_turn.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// How many more file operations this process may begin, and whether the last one is carried out; -1: any
/// number.
int operationsLeft = -1;
bool isLastDone = false;
bool isDiskFull = false;

/// `work` as one of the operations.
auto countedWork(auto const& work) {
  bool const isLast = operationsLeft == 0;
  if (isLast && !isLastDone) _exit(9);
  if (operationsLeft > 0) --operationsLeft;
  auto result = work();
  if (isLast) _exit(9);
  return result;
}

template <class Operation, class... Arguments>
auto counted(char const* name, Arguments... arguments) {
  static auto const real = reinterpret_cast<Operation>(dlsym(RTLD_NEXT, name));
  return countedWork([&] { return real(arguments...); });
}

}  // namespace

// They stand before the system's for everything that this program is linked from.
extern "C" {
int mkostemp(char* name, int flags) {
  return counted<int (*)(char*, int)>("mkostemp", name, flags);
}
ssize_t write(int file, void const* bytes, size_t count) {
  errno = ENOSPC;
  return isDiskFull ? -1 : counted<ssize_t (*)(int, void const*, size_t)>("write", file, bytes, count);
}
int fsync(int file) {
  // A process that is killed loses nothing that a disk has not got yet.
  return countedWork([file] { return fcntl(file, F_GETFD) < 0 ? -1 : 0; });
}
int rename(char const* from, char const* to) noexcept {
  return counted<int (*)(char const*, char const*)>("rename", from, to);
}
}

namespace nimbara {
namespace {

using test::at;
using Kind = StationProblem::Kind;

constexpr char kNow[] = "2026-11-21T12:00:00Z";

/// A service that voids the refresh token with each refresh, and remembers it beyond the end of a process.
class RotatingService final : public HttpClient {
 public:
  RotatingService()
      : generation_(static_cast<int*>(
            mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))) {
    reset();
  }
  ~RotatingService() override { munmap(generation_, sizeof(int)); }
  RotatingService(RotatingService const&) = delete;
  RotatingService& operator=(RotatingService const&) = delete;

  void reset() { *generation_ = 1; }
  std::string valid() const { return "r" + std::to_string(*generation_); }

  Result<HttpResponse, HttpError> get(HttpRequest const& request, std::stop_token /*stop*/) override {
    ++requests;
    if (request.body->find("refresh_token=" + valid() + "&") == std::string::npos)
      return HttpResponse{400, {}, R"({"error":"invalid_grant"})"};
    ++*generation_;
    isDiskFull = fillsDisk;
    return HttpResponse{
        200, {}, R"({"access_token":"a)" + valid() + R"(","refresh_token":")" + valid() + R"("})"};
  }

  int requests = 0;
  bool fillsDisk = false;  ///< with its next answer

 private:
  int* generation_;
};

/// A keyring that outlives a process.
struct KeyringState {
  bool isAbsent = false, isLocked = false, loses = false;
  char id[64] = "", secret[512] = "";
};

class Keyring final : public SecretStore {
 public:
  explicit Keyring(KeyringState& state) : state_(state) {}

  Result<void, SecretFault> keep(std::string const& id, std::string const& /*label*/,
                                 std::string const& secret) override {
    if (auto const fault = closed()) return std::unexpected(*fault);
    return countedWork([&]() -> Result<void, SecretFault> {
      id.copy(state_.id, sizeof state_.id - 1);
      state_.secret[secret.copy(state_.secret, sizeof state_.secret - 1)] = 0;
      if (state_.loses) state_.secret[0] = 0;
      return {};
    });
  }
  Result<std::string, SecretFault> find(std::string const& id) override {
    if (auto const fault = closed()) return std::unexpected(*fault);
    return countedWork([&]() -> Result<std::string, SecretFault> {
      if (id != state_.id) return std::unexpected(SecretFault::missing);
      return std::string(state_.secret);
    });
  }
  Result<void, SecretFault> forget(std::string const& id) override {
    if (id == state_.id) state_.id[0] = 0;
    return {};
  }

 private:
  std::optional<SecretFault> closed() const {
    if (state_.isAbsent) return SecretFault::absent;
    return state_.isLocked ? std::optional(SecretFault::locked) : std::nullopt;
  }

  KeyringState& state_;
};

StationLink overdue() {
  return {.kind = StationLinkKind::account,
          .clientId = "id",
          .clientSecret = "secret",
          .accessToken = "ar1",
          .refreshToken = "r1",
          .expiresAt = at(kNow)};
}

class Tokens : public testing::Test {
 protected:
  ~Tokens() override { munmap(keyring_, sizeof *keyring_); }
  std::filesystem::path file() const { return folder_.path() / "data" / "station.json"; }
  Result<std::string, StationProblem> ask(HttpClient& http, std::string const& refused = {}) const {
    StationSecrets const secrets(links_, hasKeyring ? keyring() : MakeSecretStore());
    return StationTokens(http, clock_, "https://netatmo.test", links_, secrets).accessToken({}, refused);
  }
  MakeSecretStore keyring() const {
    return [this] { return std::make_unique<Keyring>(*keyring_); };
  }
  std::string inFile() const { return readFile(file(), 10'000).value_or("nothing"); }

  bool hasKeyring = false;
  KeyringState* keyring_ =
      new (mmap(nullptr, sizeof(KeyringState), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))
          KeyringState;

  test::TemporaryFolder folder_;
  test::ManualClock clock_{at(kNow)};
  StationLinkFile links_{file()};
  RotatingService service_;
};

TEST_F(Tokens, AreStoredBeforeTheyAreUsedAndReadByOthers) {
  EXPECT_EQ(ask(service_).error().kind, Kind::notLinked);
  ASSERT_TRUE(links_.write(overdue()));
  EXPECT_EQ(ask(service_), "ar2");
  EXPECT_EQ(links_.read()->refreshToken, "r2");
  struct stat about{};
  ASSERT_EQ(stat(file().c_str(), &about), 0);
  EXPECT_EQ(about.st_mode & 0777U, 0600U);
  EXPECT_EQ(ask(service_), "ar2") << "another program finds it";
  EXPECT_EQ(service_.requests, 1);
  clock_.advance(std::chrono::seconds(10'800 - 61));
  EXPECT_EQ(ask(service_), "ar2");
  clock_.advance(std::chrono::seconds(1));
  EXPECT_EQ(ask(service_), "ar3");
  EXPECT_EQ(ask(service_, "ar3"), "ar4") << "refused before its time, as when a clock is wrong";
  EXPECT_EQ(ask(service_, "ar3"), "ar4") << "somebody has renewed it already";
}

TEST_F(Tokens, VoidOnesAreNotAskedWithAgain) {
  ASSERT_TRUE(links_.write(overdue()));
  test::FakeHttpClient http;
  http.willAnswer(400, R"({"error":"invalid_grant"})");
  EXPECT_EQ(ask(http).error().kind, Kind::signInAgain);
  EXPECT_EQ(ask(http).error().kind, Kind::signInAgain);
  EXPECT_EQ(http.requests.size(), 1U);
  EXPECT_TRUE(links_.read()->mustSignIn);
  EXPECT_EQ(links_.read()->clientSecret, "secret") << "it need not be typed again";
}

TEST_F(Tokens, OtherFailuresLeaveThemAsTheyAre) {
  ASSERT_TRUE(links_.write(overdue()));
  test::FakeHttpClient http;
  http.willFail({HttpError::Kind::timedOut, "too slow"});
  http.willAnswer(500, "");
  http.willAnswer(200, R"({"error":{"code":0,"message":"backend"}})");
  http.willAnswer(200, "<html>log in</html>");
  http.willAnswer(403, R"({"error":{"code":26}})");
  for (Kind const kind : {Kind::failed, Kind::failed, Kind::failed, Kind::failed, Kind::tooMany}) {
    EXPECT_EQ(ask(http).error().kind, kind);
    EXPECT_EQ(links_.read()->refreshToken, "r1");
  }
  EXPECT_EQ(http.requests.back().body,
            "grant_type=refresh_token&refresh_token=r1&client_id=id&client_secret=secret");
  EXPECT_EQ(http.requests.back().url, "https://netatmo.test/oauth2/token") << "no secret in an address";
}

TEST_F(Tokens, AreNotRenewedWhereTheNewOnesCannotBeKept) {
  ASSERT_TRUE(links_.write(overdue()));
  isDiskFull = true;
  EXPECT_EQ(ask(service_).error().kind, Kind::failed);
  isDiskFull = false;
  EXPECT_EQ(service_.requests, 0);
  EXPECT_EQ(ask(service_), "ar2");
}

TEST_F(Tokens, ThatADiskRefusesAreStoredAsSoonAsItCan) {
  ASSERT_TRUE(links_.write(overdue()));
  service_.fillsDisk = true;
  StationSecrets const secrets(links_, {});
  StationTokens tokens(service_, clock_, "https://netatmo.test", links_, secrets);
  for (int i = 0; i < 2; ++i) EXPECT_EQ(tokens.accessToken({}).error().kind, Kind::failed);
  isDiskFull = false;
  EXPECT_EQ(tokens.accessToken({}), "ar2");
  EXPECT_EQ(service_.requests, 1);
  EXPECT_EQ(links_.read()->refreshToken, "r2");
}

TEST_F(Tokens, ADamagedFileIsNotTakenForNone) {
  ASSERT_TRUE(writeFileAtomically(file(), "{\"kind\":"));
  EXPECT_EQ(ask(service_).error().kind, Kind::failed);
  EXPECT_EQ(service_.requests, 0);
}

TEST_F(Tokens, OneProgramRefreshesAndTheOthersWait) {
  ASSERT_TRUE(links_.write(overdue()));
  auto turn = links_.turn({});
  std::jthread other([this] { EXPECT_EQ(ask(service_), "kept"); });
  StationLink renewed = overdue();
  renewed.accessToken = "kept";
  renewed.expiresAt = at(kNow) + std::chrono::hours(3);
  ASSERT_TRUE(links_.write(renewed));
  turn.reset();
  other.join();
  EXPECT_EQ(service_.requests, 0);
}

/// One start that is killed at its `operation`th file operation; true when it came to its end before.
bool isCompleteDespite(int operation, bool isDone, auto const& start) {
  pid_t const child = fork();
  if (child == 0) {
    operationsLeft = operation;
    isLastDone = isDone;
    start();
    operationsLeft = -1;
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST_F(Tokens, SurviveAKillAtEachFileOperation) {
  int kills = 0, renewed = 0, signIns = 0;
  for (bool const isDone : {false, true}) {
    for (int operation = 0;; ++operation) {
      service_.reset();
      ASSERT_TRUE(links_.write(overdue()));
      if (isCompleteDespite(operation, isDone, [&] { (void)ask(service_); })) break;
      ++kills;
      auto const left = links_.read();
      ASSERT_TRUE(left) << "half a file after operation " << operation;
      bool const isValid = left->refreshToken == service_.valid();
      auto const next = ask(service_);
      std::string const what = "operation " + std::to_string(operation) + (isDone ? " done" : " begun");
      if (isValid) {
        EXPECT_TRUE(next) << "a valid token was lost at " << what;
        ++renewed;
      } else {
        EXPECT_EQ(next.error().kind, Kind::signInAgain) << what;
        ++signIns;
      }
      std::printf("killed with %-17s the next start %s\n", what.c_str(), next ? "works" : "asks to sign in");
    }
  }
  // Two files, each made, written, brought to the disk, named, and its folder brought to the disk.
  EXPECT_EQ(kills, 20);
  EXPECT_EQ(signIns, 7) << "between the service's answer and the new file's name, where nobody can keep it";
  EXPECT_EQ(renewed, kills - signIns);
}

TEST_F(Tokens, MoveToTheKeyringOnceTheyAreOnTheDisk) {
  hasKeyring = true;
  ASSERT_TRUE(links_.write(overdue()));
  EXPECT_EQ(ask(service_), "ar2");
  for (char const* const secret : {"ar2", "r2", "secret\""})
    EXPECT_EQ(inFile().find(secret), std::string::npos) << secret;
  EXPECT_EQ(links_.read()->tokensIn(), StationTokensIn::keyring);
  EXPECT_EQ(ask(service_), "ar2") << "another program finds it";
  EXPECT_EQ(ask(service_, "ar2"), "ar3");
  EXPECT_EQ(service_.requests, 2);
}

TEST_F(Tokens, AreNotAskedWithWhileTheKeyringIsLocked) {
  hasKeyring = true;
  ASSERT_TRUE(links_.write(overdue()));
  EXPECT_EQ(ask(service_), "ar2");
  for (bool* const fault : {&keyring_->isLocked, &keyring_->isAbsent}) {
    *fault = true;
    EXPECT_EQ(ask(service_, "ar2").error().kind, Kind::locked);
    *fault = false;
  }
  EXPECT_EQ(service_.requests, 1);
  EXPECT_EQ(ask(service_, "ar2"), "ar3") << "nothing was lost";
}

TEST_F(Tokens, StayInTheFileWhereTheKeyringDoesNotHaveThem) {
  hasKeyring = true;
  int generation = 1;
  for (bool* const fault : {&keyring_->isLocked, &keyring_->isAbsent, &keyring_->loses}) {
    *fault = true;
    ASSERT_TRUE(links_.write(overdue()));
    service_.reset();
    EXPECT_EQ(ask(service_), "ar2");
    EXPECT_EQ(links_.read()->refreshToken, "r2");
    EXPECT_EQ(service_.requests, generation++);
    *fault = false;
  }
  EXPECT_EQ(ask(service_, "ar2"), "ar3") << "the file's are newer than the keyring's";
  EXPECT_EQ(links_.read()->tokensIn(), StationTokensIn::keyring) << "and move when it is open";
}

TEST_F(Tokens, SurviveAKillBetweenTheStepsIntoTheKeyring) {
  hasKeyring = true;
  int kills = 0, signIns = 0;
  for (bool const isDone : {false, true}) {
    for (int operation = 0;; ++operation) {
      service_.reset();
      *keyring_ = {};
      ASSERT_TRUE(links_.write(overdue()));
      ASSERT_EQ(ask(service_), "ar2") << "in the keyring";
      if (isCompleteDespite(operation, isDone, [&] { (void)ask(service_, "ar2"); })) break;
      ++kills;
      StationSecrets const secrets(links_, keyring());
      auto const left = secrets.whole(links_.read().value_or(StationLink{}));
      ASSERT_TRUE(left);
      bool const isValid = left->refreshToken == service_.valid();
      auto const next = ask(service_, "ar2");
      std::string const what = "operation " + std::to_string(operation) + (isDone ? " done" : " begun");
      EXPECT_EQ(next.has_value(), isValid) << what;
      if (!isValid) {
        EXPECT_EQ(next.error().kind, Kind::signInAgain) << what;
        ++signIns;
      }
      std::printf("with a keyring, killed with %-17s the next start %s\n", what.c_str(),
                  next ? "works" : "asks to sign in");
    }
  }
  // Read twice, two files as before, kept, read back, and the file without them.
  EXPECT_EQ(kills, 2 * (2 + 10 + 2 + 5));
  EXPECT_EQ(signIns, 7) << "as without a keyring";
}

}  // namespace
}  // namespace nimbara
