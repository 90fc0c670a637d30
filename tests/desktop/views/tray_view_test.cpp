#include "desktop/views/tray_view.h"

#include "desktop/states/states.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using namespace nimbara::test;

struct SummaryRow {
  char const* name;
  WeatherState state;
  bool hasPlace;
  std::string temperature;
  std::string summary;
};

std::vector<SummaryRow> summaryRows() {
  WeatherState loading;
  loading.isLoading = true;
  return {{"weather", stateOf(mildWeek()), true, "15°",
           "Testville: 15°, Partly Cloudy. No rain in the next 12 hours."},
          {"loading", loading, true, "", "Testville: Loading forecast…"},
          {"nothing", {}, true, "", "Testville: No forecast yet."},
          {"noPlace", {}, false, "", "No places saved yet. Search for your first one."}};
}

TEST(TrayView, SaysThePresentInOneLine) {
  for (SummaryRow const& row : summaryRows()) {
    auto const place = row.hasPlace ? snapshotOf(row.state)->place : std::nullopt;
    auto const view = trayView(nowView(row.state, place, contextAt(kNow)), "", contextAt(kNow));
    EXPECT_EQ(view.temperature, row.temperature) << row.name;
    EXPECT_EQ(view.summary, row.summary) << row.name;
    ASSERT_EQ(view.menu.size(), 6U);
    EXPECT_EQ(view.menu[0], (TrayMenuItem{"summary", row.summary, false}));
    EXPECT_EQ(view.menu[3].isEnabled, row.hasPlace) << row.name;
    EXPECT_EQ(view.menu[5].key, kTrayQuit);
  }
}

TEST(TrayView, SaysWhatIsKnownOfOfficialWarnings) {
  NowView const now = nowView(stateOf(mildWeek()), snapshotOf(stateOf(mildWeek()))->place, contextAt(kNow));
  TrayView const view = trayView(now, "2 official warnings, checked 12:15", contextAt(kNow));
  EXPECT_THAT(view.summary, testing::EndsWith("hours. 2 official warnings, checked 12:15"));
  ASSERT_EQ(view.menu.size(), 7U);
  EXPECT_EQ(view.menu[1], (TrayMenuItem{"warnings", "2 official warnings, checked 12:15", false}));
}

TEST(TrayView, MarksTheSeverestWarningThatIsInForce) {
  auto const warning = [](AlertSeverity severity, std::chrono::minutes from, std::chrono::minutes to) {
    WeatherAlert alert;
    alert.severity = severity;
    alert.onset = kNow + from;
    alert.expires = kNow + to;
    return alert;
  };
  using std::chrono::minutes;
  WeatherAlert const over = warning(AlertSeverity::critical, minutes(-60), minutes(0));
  WeatherAlert const ahead = warning(AlertSeverity::critical, minutes(1), minutes(60));
  WeatherAlert const begins = warning(AlertSeverity::advisory, minutes(0), minutes(60));
  WeatherAlert const ends = warning(AlertSeverity::warning, minutes(-60), minutes(1));
  EXPECT_EQ(trayMark({}, kNow), "");
  EXPECT_EQ(trayMark({over, ahead}, kNow), "");
  EXPECT_EQ(trayMark({over, begins, ahead}, kNow), "advisory");
  EXPECT_EQ(trayMark({ends, begins}, kNow), "warning");
  EXPECT_EQ(trayMark({WeatherAlert{}}, kNow), "info") << "without a period it holds until it is withdrawn";
}

}  // namespace
}  // namespace nimbara
