#include "app/recording/http_recording.h"

#include "support/manual_clock.h"
#include "support/recording.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

namespace nimbara {
namespace {

using test::at;

HttpRequest requestFor(std::string url, HttpHeaders headers = {}) {
  HttpRequest request;
  request.url = std::move(url);
  request.headers = std::move(headers);
  return request;
}

TEST(RecordingKeys, TellRequestsApartByWhatTheyAskFor) {
  struct Row {
    char const* url;
    char const* key;
  };
  for (Row const& row : {
           Row{"https://a.example/x?b=2&a=1", "a.example/x?a=1&b=2"},
           Row{"http://a.example/x?a=1&b=2", "a.example/x?a=1&b=2"},
           Row{"https://a.example/x?a=1&apikey=secret", "a.example/x?a=1"},
           Row{"https://a.example/x?apikey=secret", "a.example/x"},
           Row{"https://a.example/x?since=2026-11-21T09:00:00Z&a=1", "a.example/x?a=1"},
           Row{"https://a.example/x#part", "a.example/x"},
           Row{"https://a.example", "a.example"},
           Row{"", ""},
           Row{"http://127.0.0.1:4321/x?a=1", "*/x?a=1"},
           Row{"http://localhost/x", "*/x"},
           Row{"http://127.0.0.1.example/x", "127.0.0.1.example/x"},
           Row{"https://f.example/api/area/csv/0123abc/VIIRS/1,2,3,4/1",
               "f.example/api/area/csv/KEY/VIIRS/1,2,3,4/1"},
       }) {
    EXPECT_EQ(recordingKey(row.url), row.key);
    EXPECT_EQ(recordingKey(recordingKey(row.url)), row.key) << "a key is its own key";
  }
}

struct Recorded : testing::Test {
  Result<HttpResponse, HttpError> ask(std::string const& moment, std::string const& url,
                                      std::size_t most = 1000) {
    FixedClock const clock(at(moment));
    HttpRequest request = requestFor(url);
    request.maxBodyBytes = most;
    return RecordedHttpClient(recording.path(), clock, otherwise).get(request);
  }
  std::string bodyAt(std::string const& moment, std::string const& url = kUrl) {
    auto const answer = ask(moment, url);
    return answer ? answer->body : std::string(enumName(answer.error().kind));
  }

  static constexpr char kUrl[] = "https://a.example/x";
  test::Recording recording;
  HttpClient* otherwise = nullptr;
};

TEST_F(Recorded, IsTheNewestAnswerThatWasThereAtTheMoment) {
  recording.add("2026-11-21T10:00:00Z", kUrl, "ten");
  recording.add("2026-11-21T11:00:00Z", kUrl, "eleven");
  recording.addFailure("2026-11-21T12:00:00Z", kUrl);
  EXPECT_EQ(bodyAt("2026-11-21T09:59:59Z"), "connectionFailed");
  EXPECT_EQ(bodyAt("2026-11-21T10:00:00Z"), "ten");
  EXPECT_EQ(bodyAt("2026-11-21T10:59:59Z"), "ten");
  EXPECT_EQ(bodyAt("2026-11-21T11:00:00Z"), "eleven");
  EXPECT_EQ(bodyAt("2026-11-21T12:00:00Z"), "timedOut") << "an outage is played, too";
  EXPECT_EQ(bodyAt("2026-11-21T11:00:00Z", "https://a.example/y"), "connectionFailed");
}

TEST_F(Recorded, OfAStandInServesForTheServicesThemselves) {
  recording.add("2026-11-21T10:00:00Z", "http://127.0.0.1:1234/x", "made up");
  EXPECT_EQ(bodyAt("2026-11-21T10:00:00Z"), "made up");
  EXPECT_EQ(bodyAt("2026-11-21T10:00:00Z", "http://127.0.0.1:99/x"), "made up");
}

TEST_F(Recorded, UnchangedStandsForWhatWasWholeBefore) {
  recording.add("2026-11-21T10:00:00Z", kUrl, "whole");
  recording.add("2026-11-21T10:10:00Z", kUrl, "fault", 503);
  recording.add("2026-11-21T10:20:00Z", kUrl, "", 304);
  recording.add("2026-11-21T10:00:00Z", "https://a.example/y", "", 304);
  EXPECT_EQ(ask("2026-11-21T10:10:00Z", kUrl)->status, 503);
  EXPECT_EQ(ask("2026-11-21T10:20:00Z", kUrl)->status, 200);
  EXPECT_EQ(bodyAt("2026-11-21T10:20:00Z"), "whole");
  EXPECT_EQ(bodyAt("2026-11-21T10:20:00Z", "https://a.example/y"), "connectionFailed");
}

TEST_F(Recorded, KeepsEqualBodiesOnceAndNoSecrets) {
  for (int minute = 10; minute < 20; ++minute) {
    recording.add("2026-11-21T10:" + std::to_string(minute) + ":00Z", std::string(kUrl) + "?apikey=geheim",
                  "same");
  }
  auto const bodies = std::filesystem::directory_iterator(recording.path() / "bodies");
  EXPECT_EQ(std::distance(begin(bodies), end(bodies)), 1);
  std::ifstream file(recording.path() / "index.jsonl");
  std::string const index{std::istreambuf_iterator<char>(file), {}};
  EXPECT_EQ(std::ranges::count(index, '\n'), 10);
  EXPECT_EQ(index.find("geheim"), std::string::npos);
}

TEST_F(Recorded, GivesNoBodyThatIsLongerThanWasAllowed) {
  recording.add("2026-11-21T10:00:00Z", kUrl, "12345");
  EXPECT_TRUE(ask("2026-11-21T10:00:00Z", kUrl, 5));
  EXPECT_FALSE(ask("2026-11-21T10:00:00Z", kUrl, 4));
}

TEST_F(Recorded, PassesOverLinesThatAreNoneAndLeavesItsFolderNever) {
  recording.add("2026-11-21T10:00:00Z", kUrl, "good");
  std::ofstream(recording.path() / "index.jsonl", std::ios::app)
      << "rubbish\n\n{\"time\":7}\n"
      << R"({"time":"2026-11-21T10:30:00Z","url":"a.example/x","status":200,"body":"../index.jsonl"})" << "\n"
      << R"({"time":"2026-11-21T10:30:00Z","url":"a.example/z","status":200,"body":"absent"})" << "\n"
      << R"({"time":"2026-11-21T10:30:00Z","url":"a.ex)";
  EXPECT_EQ(bodyAt("2026-11-21T11:00:00Z"), "good");
  EXPECT_EQ(bodyAt("2026-11-21T11:00:00Z", "https://a.example/z"), "connectionFailed");
  FixedClock const clock(at("2026-11-21T11:00:00Z"));
  RecordedHttpClient const client(recording.path(), clock, nullptr);
  EXPECT_EQ(client.size(), 2);
  EXPECT_NE(client.problem().find("line 2"), std::string::npos) << client.problem();
}

TEST_F(Recorded, LacksNothingWhereSomebodyElseKnowsTheMoment) {
  recording.add("2026-11-21T10:00:00Z", kUrl, "recorded");
  test::OneAnswer demo;
  demo.answer = HttpResponse{200, {}, "made up"};
  otherwise = &demo;
  EXPECT_EQ(bodyAt("2026-11-21T10:00:00Z"), "recorded");
  EXPECT_TRUE(demo.last.headers.empty());
  EXPECT_EQ(bodyAt("2026-11-21T09:00:00Z"), "made up");
  EXPECT_EQ(demo.last.headers, (HttpHeaders{{"Nimbara-Simulated-Time", "2026-11-21T09:00:00Z"}}));
}

TEST(Recorder, AsksForTheWholeOnceAndThenAsItWasAsked) {
  test::TemporaryFolder const folder;
  test::ManualClock const clock(at("2026-11-21T10:00:00Z"));
  test::OneAnswer network;
  network.answer = HttpResponse{200, {{"ETag", "\"1\""}}, "body"};
  RecordingHttpClient recorder(network, clock, folder.path());
  HttpHeaders const headers{{"Accept", "x"}, {"If-None-Match", "\"1\""}, {"if-modified-since", "y"}};
  auto const first = recorder.get(requestFor("https://a.example/x", headers));
  EXPECT_EQ(first->body, "body");
  EXPECT_EQ(network.last.headers, (HttpHeaders{{"Accept", "x"}}));
  std::ignore = recorder.get(requestFor("https://a.example/x", headers));
  EXPECT_EQ(network.last.headers, headers);
  EXPECT_EQ(recorder.problem(), "");
}

TEST(Recorder, GivesTheAnswerThoughItCannotBeKept) {
  test::ManualClock const clock(at("2026-11-21T10:00:00Z"));
  test::OneAnswer network;
  network.answer = HttpResponse{200, {}, "body"};
  RecordingHttpClient recorder(network, clock, "/proc/no such folder");
  EXPECT_EQ(recorder.get(requestFor("https://a.example/x"))->body, "body");
  EXPECT_NE(recorder.problem(), "");
}

TEST(Recorder, KeepsNothingThatIsSent) {
  test::TemporaryFolder const folder;
  test::ManualClock const clock(at("2026-11-21T10:00:00Z"));
  test::OneAnswer network;
  network.answer = HttpResponse{200, {}, "reply"};
  HttpRequest request = requestFor("http://127.0.0.1:1/v1/chat");
  request.body = "prompt";
  EXPECT_EQ(RecordingHttpClient(network, clock, folder.path()).get(request)->body, "reply");
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

}  // namespace
}  // namespace nimbara
