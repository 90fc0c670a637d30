#include "feeds/outlook/outlook_service.h"
#include "support/answers/bad_bytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using testing::ElementsAre;

constexpr std::string_view kThreeDays = R"({"daily":{
  "time":["2026-12-01","2026-12-02","2026-12-03"],
  "weather_code":[71,null,3],
  "temperature_2m_max":[1.5,-2,null],
  "temperature_2m_min":[-4.25,-9,-1],
  "precipitation_sum":[3.2,null,0],
  "precipitation_probability_max":[80,null,5],
  "wind_speed_10m_max":[22,null,10]}})";

TEST(Outlook, KeepsDaysWhoseTemperaturesAreKnown) {
  auto const days = parseOutlook(kThreeDays);
  ASSERT_TRUE(days) << days.error().text();
  using namespace std::chrono;
  EXPECT_THAT(*days, ElementsAre(OutlookDay{year(2026) / 12 / 1, -4.25, 1.5, 71, 80, 3.2, 22},
                                 OutlookDay{year(2026) / 12 / 2, -9, -2, {}, {}, {}, {}}));
  for (std::string const& damaged : test::damagedForms(std::string(kThreeDays), 61)) parseOutlook(damaged);
}

struct OutlookRow {
  std::string_view name;
  std::string_view body;
  int days;  ///< -1: refused
};

TEST(OutlookRows, AreRead) {
  for (OutlookRow const& row :
       {OutlookRow{"nothing", "", -1}, OutlookRow{"html", "<html>", -1}, OutlookRow{"noDays", "{}", -1},
        OutlookRow{"refused", R"({"error":true,"reason":"Daily API request limit exceeded."})", -1},
        OutlookRow{"empty", R"({"daily":{"time":[]}})", 0},
        OutlookRow{"shortColumn",
                   R"({"daily":{"time":["2026-12-01","2026-12-02"],"temperature_2m_max":[1,2],
                      "temperature_2m_min":[0]}})",
                   1},
        OutlookRow{"coldAboveWarm",
                   R"({"daily":{"time":["2026-12-01"],"temperature_2m_max":[1],"temperature_2m_min":[1.1]}})",
                   0},
        OutlookRow{"impossible",
                   R"({"daily":{"time":["2026-12-01"],"temperature_2m_max":[101],"temperature_2m_min":[1]}})",
                   0},
        OutlookRow{"backwards",
                   R"({"daily":{"time":["2026-12-02","2026-12-01","2026-12-02"],
                      "temperature_2m_max":[1,1,1],"temperature_2m_min":[0,0,0]}})",
                   1},
        OutlookRow{"noDate",
                   R"({"daily":{"time":["soon"],"temperature_2m_max":[1],"temperature_2m_min":[0]}})", 0}}) {
    SCOPED_TRACE(row.name);
    auto const days = parseOutlook(row.body);
    int const count = days ? static_cast<int>(days->size()) : -1;
    EXPECT_EQ(count, row.days);
  }
}

}  // namespace
}  // namespace nimbara
