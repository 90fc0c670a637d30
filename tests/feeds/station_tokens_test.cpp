#include "feeds/stations/station_tokens.h"

#include "base/files/file.h"
#include "base/files/file_turn.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
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

template <class Operation, class... Arguments>
auto counted(char const* name, Arguments... arguments) {
  static auto const real = reinterpret_cast<Operation>(dlsym(RTLD_NEXT, name));
  bool const isLast = operationsLeft == 0;
  if (isLast && !isLastDone) _exit(9);
  if (operationsLeft > 0) --operationsLeft;
  auto const result = real(arguments...);
  if (isLast) _exit(9);
  return result;
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
  return counted<int (*)(int)>("fsync", file);
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
  std::filesystem::path file() const { return folder_.path() / "data" / "station.json"; }
  Result<std::string, StationProblem> ask(HttpClient& http, std::string const& refused = {}) const {
    return StationTokens(http, clock_, "https://netatmo.test", links_).accessToken({}, refused);
  }

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
  StationTokens tokens(service_, clock_, "https://netatmo.test", links_);
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

}  // namespace
}  // namespace nimbara
