#include "feeds/cap/cap_store.h"

#include "support/answers/cap_message.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

#include <fstream>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using test::at;
using test::CapBlock;
using test::capMessage;

class CapStoreTest : public testing::Test {
 protected:
  CapDocuments ask(CapStore& store, std::vector<std::string> const& addresses) {
    return store.documents(addresses);
  }
  std::size_t filesInFolder() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder.path()),
                                                  std::filesystem::directory_iterator()));
  }

  test::TemporaryFolder folder;
  test::FakeHttpClient http;
  test::ManualClock clock{at("2026-11-21T12:00:00Z")};
  std::string const document = capMessage({{}});  // ends at 06:00 the day after
};

TEST_F(CapStoreTest, FetchesADocumentOnceForAllRuns) {
  http.willAnswer(200, document);
  CapStore store(http, clock, folder.path());
  EXPECT_EQ(ask(store, {"https://a.example/1", "https://a.example/1"}).size(), 1U);
  EXPECT_EQ(ask(store, {"https://a.example/1"}).at("https://a.example/1")->identifier, "2.49.0.0.1");
  CapStore later(http, clock, folder.path());
  EXPECT_EQ(ask(later, {"https://a.example/1"}).size(), 1U);
  ASSERT_EQ(http.requests.size(), 1U);
  EXPECT_EQ(http.requests[0].maxBodyBytes, std::size_t{16} << 20);
  CapStore withoutFolder(http, clock, {});
  http.willAnswer(200, document);
  EXPECT_EQ(ask(withoutFolder, {"https://a.example/1"}).size(), 1U);
  EXPECT_EQ(ask(withoutFolder, {"https://a.example/1"}).size(), 1U);
  EXPECT_EQ(http.requests.size(), 2U);
}

TEST_F(CapStoreTest, FindsWhatAnotherProcessHasKept) {
  CapStore window(http, clock, folder.path());
  http.willAnswer(404, "");
  EXPECT_TRUE(ask(window, {"https://a.example/1"}).empty());
  CapStore watch(http, clock, folder.path());
  http.willAnswer(200, document);
  EXPECT_EQ(ask(watch, {"https://a.example/1"}).size(), 1U);
  EXPECT_EQ(ask(window, {"https://a.example/1"}).size(), 1U);
  EXPECT_EQ(http.requests.size(), 2U);
}

TEST_F(CapStoreTest, KeepsDocumentsUntilAWeekAfterTheirEnd) {
  http.willAnswer(200, document);
  {
    CapStore store(http, clock, folder.path());
    ask(store, {"https://a.example/1"});
  }
  for (auto const& [moment, files] : {std::pair{"2026-11-29T05:59:59Z", 1U}, {"2026-11-29T06:00:00Z", 0U}}) {
    clock.set(at(moment));
    CapStore store(http, clock, folder.path());
    ask(store, {});
    EXPECT_EQ(filesInFolder(), files) << moment;
  }
}

TEST_F(CapStoreTest, AsksAgainForWhatWasNoDocument) {
  CapStore store(http, clock, folder.path());
  struct Row {
    int status;
    std::string body;
    std::chrono::minutes rest;
  };
  for (Row const& row :
       {Row{404, "", 1min}, {200, "<html>log in</html>", 5min}, {503, document, 10min}, {404, "", 10min}}) {
    http.willAnswer(row.status, row.body);
    auto const before = http.requests.size();
    EXPECT_TRUE(ask(store, {"https://a.example/1"}).empty());
    clock.advance(row.rest - 1s);
    EXPECT_TRUE(ask(store, {"https://a.example/1"}).empty());
    EXPECT_EQ(http.requests.size(), before + 1) << row.rest;
    clock.advance(1s);
  }
  http.willAnswer(200, document);
  EXPECT_EQ(ask(store, {"https://a.example/1"}).size(), 1U);
}

TEST_F(CapStoreTest, SpendsNoMoreThanItsShare) {
  CapStore store(http, clock, folder.path());
  std::vector<std::string> addresses;
  for (int i = 0; i < 20; ++i) addresses.push_back("https://a.example/" + std::to_string(i));
  for (int i = 0; i < 20; ++i) http.willAnswer(200, document);
  EXPECT_EQ(ask(store, addresses).size(), 12U);
  EXPECT_EQ(http.requests.back().timeout, 5s);
  EXPECT_EQ(ask(store, addresses).size(), 20U) << "the next pass has the rest";
  http.willFail({HttpError::Kind::timedOut, "timed out"});
  auto const before = http.requests.size();
  EXPECT_TRUE(ask(store, {"https://a.example/x", "https://a.example/y"}).empty());
  EXPECT_EQ(http.requests.size(), before + 1) << "a host that hangs is not waited for twice";
}

/// Each answer takes its time.
class SlowHttpClient final : public HttpClient {
 public:
  SlowHttpClient(HttpClient& http, test::ManualClock& clock) : http_(http), clock_(clock) {}
  Result<HttpResponse, HttpError> get(HttpRequest const& request, std::stop_token stop) override {
    clock_.advance(std::min<std::chrono::milliseconds>(4s, request.timeout));
    return http_.get(request, stop);
  }

 private:
  HttpClient& http_;
  test::ManualClock& clock_;
};

TEST_F(CapStoreTest, EndsAPassInTime) {
  SlowHttpClient slow(http, clock);
  CapStore store(slow, clock, {});
  for (int i = 0; i < 6; ++i) http.willAnswer(200, document);
  auto const begin = clock.steadyNow();
  EXPECT_EQ(ask(store, {"a", "b", "c", "d", "e", "f"}).size(), 4U);
  EXPECT_EQ(clock.steadyNow() - begin, 15s);
  EXPECT_EQ(http.requests[3].timeout, 3s);
}

TEST(CapFilesTest, RemovesWhatEndsFirstBeyondTheLimits) {
  test::TemporaryFolder folder;
  Instant const now = at("2026-11-21T12:00:00Z");
  CapFiles files(folder.path(), {3, 100});
  for (int i = 1; i <= 4; ++i) files.keep("address" + std::to_string(i), std::string(20, 'x'), now + i * 24h);
  std::ofstream(folder.path() / "somebody's notes.txt") << "not ours";
  files.sweep(now);
  EXPECT_FALSE(files.read("address1"));
  EXPECT_TRUE(files.read("address2"));
  files.keep("big", std::string(70, 'y'), now + 240h);
  files.sweep(now);
  EXPECT_FALSE(files.read("address3"));
  EXPECT_TRUE(files.read("address4"));
  EXPECT_EQ(files.read("big"), std::string(70, 'y'));
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "somebody's notes.txt"));
}

}  // namespace
}  // namespace nimbara
