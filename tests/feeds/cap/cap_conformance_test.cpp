// Every status with every type of message, every response with every urgency, ended or not: what the second
// message of an event makes of the first.
#include "base/text/text.h"
#include "feeds/alerts/events/cap_events.h"
#include "support/answers/cap_alerts.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using test::capAlert;
using test::windBlock;

/// The first line of a table names its columns. "goes": the event goes on as the second message says; "ends":
/// it is called off; "is": it is as the first message said; "two": there are two events; "over": it has
/// passed.
using Table = std::vector<std::vector<std::string_view>>;

Table tableOf(std::string_view text) {
  Table rows;
  for (std::string_view const line : split(text, '\n')) {
    std::vector<std::string_view> words;
    for (std::string_view const word : split(line, ' ')) {
      if (!word.empty()) words.push_back(word);
    }
    if (!words.empty()) rows.push_back(std::move(words));
  }
  return rows;
}

std::string madeOf(CapAlert second) {
  CapInfo storm = windBlock();
  storm.event = "Storm";
  storm.onset = at("2026-11-22T10:00:00Z");
  KnownEvents known;
  auto const answer =
      capEvents(test::listOf({capAlert("1", "08:00", "Alert", {}, {storm}), std::move(second)}),
                {"wmo", {10, 20}, "XX", "en", at("2026-11-22T13:00:00Z")}, known);
  EXPECT_TRUE(answer.unplaced.empty());
  if (answer.alerts.size() == 2) return "two";
  if (!answer.alerts.empty()) return answer.alerts[0].title == "Storm" ? "is" : "goes";
  return answer.calledOff.empty() ? "over" : "ends";
}

std::string wordOf(std::string_view cell) {
  return cell == "-" ? std::string() : std::string(cell);
}

TEST(CapConformance, StatusAndType) {
  Table const table = tableOf(R"(
            Alert Update Cancel Ack Error -
    Actual   goes   goes   ends  is    is goes
    Exercise   is     is     is  is    is   is
    System     is     is     is  is    is   is
    Test       is     is     is  is    is   is
    Draft      is     is     is  is    is   is
    -        goes   goes   ends  is    is goes
    unknown    is     is     is  is    is   is)");
  for (std::size_t row = 1; row < table.size(); ++row) {
    for (std::size_t column = 1; column < table[row].size(); ++column) {
      CapAlert second = capAlert("2", "09:00", wordOf(table[0][column - 1]), {"1"});
      second.status = wordOf(table[row][0]);
      EXPECT_EQ(madeOf(second), table[row][column]) << second.status << " " << second.msgType;
    }
  }
}

TEST(CapConformance, TypeAndReferences) {
  struct Row {
    std::string type;
    std::vector<std::string> references;
    std::string made;
  };
  for (Row const& row : {Row{"Alert", {}, "two"},
                         {"Update", {}, "two"},
                         {"Cancel", {}, "is"},
                         {"Alert", {"2"}, "two"},
                         {"Update", {"2"}, "two"},
                         {"Cancel", {"2"}, "is"},
                         {"Alert", {"1"}, "goes"},
                         {"Update", {"1"}, "goes"},
                         {"Cancel", {"1"}, "ends"},
                         {"Update", {"0", "1"}, "goes"},
                         {"Cancel", {"0", "1"}, "ends"},
                         {"Update", {"2", "1"}, "goes"},
                         {"Cancel", {"1", "1"}, "ends"},
                         {"Update", {"0"}, "two"},
                         {"Cancel", {"0"}, "is"}})
    EXPECT_EQ(madeOf(capAlert("2", "09:00", row.type, row.references)), row.made)
        << row.type << " " << row.references.size();
}

/// The last column is of a message that has ended itself.
TEST(CapConformance, ResponseUrgencyAndExpiry) {
  Table const table = tableOf(R"(
             Immediate Expected Future Past Unknown - Future/expired
    Shelter       goes     goes   goes ends    goes goes over
    Evacuate      goes     goes   goes ends    goes goes over
    Prepare       goes     goes   goes ends    goes goes over
    Execute       goes     goes   goes ends    goes goes over
    Avoid         goes     goes   goes ends    goes goes over
    Monitor       goes     goes   goes ends    goes goes over
    Assess        goes     goes   goes ends    goes goes over
    AllClear      ends     ends   ends ends    ends ends ends
    None          goes     goes   goes ends    goes goes over
    -             goes     goes   goes ends    goes goes over)");
  for (std::size_t row = 1; row < table.size(); ++row) {
    for (std::size_t column = 1; column < table[row].size(); ++column) {
      CapInfo info = windBlock();
      auto const heading = split(table[0][column - 1], '/');
      info.urgency = wordOf(heading[0]);
      if (table[row][0] != "-") info.responseTypes = {std::string(table[row][0])};
      if (heading.size() > 1) info.expires = at("2026-11-22T13:00:00Z");
      EXPECT_EQ(madeOf(capAlert("2", "09:00", "Update", {"1"}, {info})), table[row][column])
          << table[row][0] << " " << table[0][column - 1];
    }
  }
}

}  // namespace
}  // namespace nimbara
