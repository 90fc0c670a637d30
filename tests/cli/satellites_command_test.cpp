#include "cli/pages/satellite_map.h"
#include "demo/demo_server.h"
#include "feeds/space/element_text.h"
#include "globe/propagation/sat_rec.h"
#include "globe/satellite_catalog.h"
#include "support/answers/element_table.h"
#include "support/instants.h"
#include "support/loopback_server.h"
#include "support/session/demo_session.h"
#include "support/test_console.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>

namespace nimbara {
namespace {

using test::at;
using test::CliRun;
using testing::HasSubstr;

constexpr char kNow[] = "2026-11-21T09:20:00Z";

/// A made-up set near the earth, one whose mean eccentricity is out of range, and something unreadable.
std::string elementsText() {
  SGP4::TLE tle;
  tle.name = "MADE UP";
  tle.satnum = 123'456;
  tle.epoch = at("2026-11-20T06:00:00Z");
  tle.epochDay = 2461364.5;
  tle.epochFraction = 0.25;
  tle.inclo = 0.9;
  tle.ecco = 0.001;
  tle.no_kozai = 0.0675;
  tle.bstar = 1e-4;
  std::string text = SGP4::writeElements(tle).value();
  tle.name = "SUNK";
  tle.satnum = 7;
  tle.no_kozai = 0.0755;
  text += SGP4::writeElements(tle).value();
  return text + "BROKEN\n1 00008U 26001A   26324.25000000\n";
}

struct SatelliteCommands : test::DemoSession {
  std::string file() const {
    folder.write("made.tle", elementsText());
    return (folder.path() / "made.tle").string();
  }
};

TEST_F(SatelliteCommands, PropagateRecordsInFileOrderAndTimesInListOrder) {
  CliRun const answer =
      run({"satellites", "propagate", "--tle", file(), "--minutes", "90,0,-30.5", "--json"});
  EXPECT_EQ(answer.exitCode, 0);
  std::vector<std::string> heads;
  for (std::size_t i = answer.out.find("{"); i != std::string::npos; i = answer.out.find("{", i + 1)) {
    heads.push_back(answer.out.substr(i + 1, answer.out.find(",\"error\"", i) - i - 1));
  }
  EXPECT_THAT(heads, testing::ElementsAre(R"("satnum":123456,"minutes":90)", R"("satnum":123456,"minutes":0)",
                                          R"("satnum":123456,"minutes":-30.5)", R"("satnum":7,"minutes":90)",
                                          R"("satnum":7,"minutes":0)", R"("satnum":7,"minutes":-30.5)"));
  EXPECT_THAT(answer.out, HasSubstr(R"("satnum":7,"minutes":0,"error":6,"position":[)"));
  EXPECT_THAT(answer.err, HasSubstr("line 8 of"));
  EXPECT_THAT(answer.err, HasSubstr("line 1 without a line 2; skipping the record"));
}

TEST_F(SatelliteCommands, EveryNumberOfAStateHasEightDecimals) {
  std::string const out =
      run({"satellites", "propagate", "--tle", file(), "--minutes", "0:100:25", "--json"}).out;
  std::size_t numbers = 0;
  for (std::size_t i = out.find('['); i + 1 < out.size(); i = out.find_first_of("[,", i + 1)) {
    if (i == std::string::npos) break;
    std::size_t const end = out.find_first_of(",]}", i + 1);
    std::string_view const number = std::string_view(out).substr(i + 1, end - i - 1);
    if (number.empty() || !(number[0] == '-' || std::isdigit(static_cast<unsigned char>(number[0]))))
      continue;
    std::size_t const point = number.find('.');
    ASSERT_NE(point, std::string_view::npos) << number;
    EXPECT_GE(number.size() - point - 1, 8U) << number;
    ++numbers;
  }
  EXPECT_EQ(numbers, 2U * 5 * 6);
}

TEST_F(SatelliteCommands, ListsOfMinutesAreUnderstoodOrRefused) {
  std::pair<std::string, long> const good[] = {{"0", 1},        {"0,360,720", 3}, {"0:1440:360", 5},
                                               {"-60:0:20", 4}, {"10:0:-5", 3},   {"0:100:30", 4},
                                               {"5:5:1", 1},    {" 1 , 2 ", 2}};
  for (auto const& [list, count] : good) {
    CliRun const answer = run({"satellites", "propagate", "--tle", file(), "--minutes", list, "--json"});
    EXPECT_EQ(std::ranges::count(answer.out, '{'), 2 * count) << list;
  }
  for (std::string const bad :
       {"", "x", "1,,2", "0:10", "0:10:0", "0:10:-1", "0:1:1e-9", "0:10:1:1", "nan", "1e30"}) {
    CliRun const answer = run({"satellites", "propagate", "--tle", file(), "--minutes", bad});
    EXPECT_EQ(answer.exitCode, exitCode::kUsage) << bad;
    EXPECT_TRUE(answer.out.empty()) << bad;
  }
}

TEST_F(SatelliteCommands, BenchPrintsALineForEachShape) {
  CliRun const answer = run({"satellites", "bench", file(), "2026-11-21T12:00:00Z"});
  EXPECT_EQ(answer.exitCode, 0);
  EXPECT_THAT(answer.out, testing::MatchesRegex("nimbara tick\\|[0-9.]+\nnimbara times\\|[0-9.]+\n"
                                                "nimbara scalar tick\\|[0-9.]+\n"));
  EXPECT_THAT(answer.err, HasSubstr("nimbara: kernel "));
}

TEST_F(SatelliteCommands, AllGroupsTogetherHoldNumbersBeyondFiveDigits) {
  CliRun const answer = run({"satellites", "positions", "--json"});
  EXPECT_EQ(answer.exitCode, 0);
  EXPECT_TRUE(answer.err.empty()) << answer.err;
  EXPECT_GT(std::ranges::count(answer.out, '{'), 11'000);
  EXPECT_THAT(answer.out, HasSubstr(R"({"noradID":100010,"name":"STARLINK-1000")"));
}

TEST_F(SatelliteCommands, EachFailedGroupHasOneLine) {
  ASSERT_EQ(run({"satellites", "list", "--group", "stations"}).exitCode, 0);
  server.reset();
  base = "http://127.0.0.1:1";
  auto const lines = [](std::string const& text) { return std::ranges::count(text, '\n'); };
  CliRun const some = run({"satellites", "list"});
  EXPECT_EQ(some.exitCode, 0);
  EXPECT_EQ(lines(some.err), std::ssize(SatelliteCatalog::groups()) - 1) << some.err;
  std::filesystem::remove_all(environment().cacheDirectory);
  CliRun const none = run({"satellites", "list"});
  EXPECT_EQ(none.exitCode, exitCode::kUnavailable);
  EXPECT_EQ(none.out, "");
  EXPECT_EQ(lines(none.err), std::ssize(SatelliteCatalog::groups())) << none.err;
}

TEST(SatelliteMap, PutsSatellitesWhereTheyAre) {
  Style style;
  style.ascii = true;
  std::string const map = satelliteMap({{89, -179}, {-89, 179}, {-89, 178}}, at(kNow), 40, style);
  EXPECT_EQ(map.size(), 10U * 41);
  EXPECT_EQ(map.front(), 'o');
  EXPECT_EQ(map[map.size() - 2], 'O');
  EXPECT_EQ(std::ranges::count(map, 'o') + std::ranges::count(map, 'O'), 2);
}

/// One source of elements, which says what it is told to say and counts the questions.
struct ElementsSource {
  std::string body;
  std::string status = "200 OK";
  std::atomic<int> questions = 0;
  test::LoopbackServer server{[this](test::Connection& connection) {
    while (!connection.readRequest().empty()) {
      ++questions;
      connection.write("HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) +
                       "\r\n\r\n" + body);
    }
  }};
};

struct SatellitesOfASource : test::DemoSession {
  CliRun list(std::string const& now, std::string const& cache = "cache") {
    Environment around = environment();
    around.cacheDirectory = folder.path() / cache;
    std::string base = source.server.url();
    base.pop_back();
    return test::run(
        {"satellites", "list", "--group", "starlink", "--json", "--services", base, "--now", now}, around);
  }
  static std::size_t countOf(std::string const& text, std::string_view part) {
    std::size_t count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
  }

  ElementsSource source;
};

TEST_F(SatellitesOfASource, AreListedWholeFromEachForm) {
  constexpr int kFirst = 90'000, kCount = 19'000;
  std::string table = test::kElementHeading, list = "[";
  for (int i = 0; i < kCount; ++i) {
    table += test::elementRow(std::to_string(kFirst + i));
    list += (i > 0 ? "," : "") + test::elementObject(std::to_string(kFirst + i));
  }
  std::string const sets = elementText(table)->text;
  for (std::string const& form : {table, list + "]", sets}) {
    source.body = form;
    CliRun const listed = this->list(kNow, "cache-" + std::to_string(source.questions.load()));
    EXPECT_EQ(listed.err, "");
    EXPECT_EQ(countOf(listed.out, "\"noradID\":"), kCount);
    EXPECT_THAT(listed.out, HasSubstr("\"noradID\":90000,"));
    EXPECT_THAT(listed.out, HasSubstr("\"noradID\":108999,"));
  }
  EXPECT_EQ(source.questions, 3);
}

TEST_F(SatellitesOfASource, AreAskedForOnceInSixHoursAndNotAgainWithinTwoAfterARefusal) {
  source.body = std::string(test::kElementHeading) + test::elementRow("100000");
  struct Row {
    std::string now;
    std::string status;
    int questions;
  };
  for (Row const& row :
       {Row{"2026-11-21T09:20:00Z", "200 OK", 1}, Row{"2026-11-21T15:19:59Z", "200 OK", 1},
        Row{"2026-11-21T15:20:00Z", "403 Forbidden", 2}, Row{"2026-11-21T17:19:59Z", "200 OK", 2},
        Row{"2026-11-21T17:20:00Z", "200 OK", 3}}) {
    source.status = row.status;
    CliRun const listed = list(row.now);
    EXPECT_EQ(listed.exitCode, 0) << row.now;
    EXPECT_THAT(listed.out, HasSubstr("\"noradID\":100000,")) << row.now;
    EXPECT_EQ(source.questions, row.questions) << row.now;
  }
}

}  // namespace
}  // namespace nimbara
