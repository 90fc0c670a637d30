#include "feeds/alerts/alert_text.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

TEST(AlertTexts, AreCleanAndBounded) {
  std::vector<WeatherAlert> alerts(1);
  WeatherAlert& alert = alerts.front();
  alert.title = "Sturm\x1B[31m\nüber\u202E Köln";
  alert.message = std::string(1'000'000, 'x');
  alert.description = "first\r\nsecond\xC2\x9B";
  alert.areaDesc = "Köln\nBonn";
  alert.text = " first\n  second\x1B ";
  alert.issuer = "DWD\n";
  alert.near = {{"Hills\x1B", 12}};
  cleanTexts(alerts);
  EXPECT_EQ(alert.title, "Sturm[31m über Köln");
  EXPECT_EQ(alert.message.size(), 15'999 + std::string_view("…").size());
  EXPECT_EQ(alert.description, "first\nsecond");
  EXPECT_EQ(alert.areaDesc, "Köln Bonn");
  EXPECT_EQ(alert.text, " first\n  second ") << "to the letter otherwise";
  EXPECT_EQ(alert.issuer, "DWD ");
  EXPECT_EQ(alert.near->at(0).area, "Hills");
  EXPECT_EQ(alert.instruction, std::nullopt) << "what is not given stays so";
}

}  // namespace
}  // namespace nimbara
