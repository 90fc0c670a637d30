#include "base/apparent_temperature.h"
#include "base/base64.h"
#include "base/time/http_date.h"
#include "support/instants.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;

TEST(HttpDates, AreReadAndWrittenInTheirOneForm) {
  struct Row {
    char const* text;
    char const* instant;
  };
  for (Row const& row : {Row{"Sun, 06 Nov 1994 08:49:37 GMT", "1994-11-06T08:49:37Z"},
                         Row{"Sat, 21 Nov 2026 00:00:00 GMT", "2026-11-21T00:00:00Z"},
                         Row{"Thu, 29 Feb 2024 23:59:59 GMT", "2024-02-29T23:59:59Z"}}) {
    EXPECT_EQ(parseHttpDate(row.text), at(row.instant)) << row.text;
    EXPECT_EQ(formatHttpDate(at(row.instant)), row.text);
  }
  EXPECT_EQ(parseHttpDate(" Sat, 21 Nov 2026 10:30:60 GMT\r"), at("2026-11-21T10:31:00Z"));  // a leap second
  for (char const* const text :
       {"", "0", "-1", "Sunday, 06-Nov-94 08:49:37 GMT", "Sun Nov  6 08:49:37 1994",
        "Sat, 21 Nov 2026 10:30:12 CET", "Sat, 31 Nov 2026 10:30:12 GMT", "Sat, 21 nov 2026 10:30:12 GMT",
        "Sat, 21 Nov 2026 24:30:12 GMT", "Sat, 21 Nov 2026 10:60:12 GMT", "Sat, +1 Nov 2026 10:30:12 GMT",
        "Sat, 21 Nov 2026 10:30:12 GMT and more"}) {
    EXPECT_FALSE(parseHttpDate(text)) << text;
  }
}

TEST(Base64, AgreesWithThePublishedVectors) {
  struct Row {
    std::string_view bytes;
    std::string_view text;
  };
  for (Row const& row :
       {Row{"", ""}, Row{"f", "Zg"}, Row{"fo", "Zm8"}, Row{"foo", "Zm9v"}, Row{"foob", "Zm9vYg"},
        Row{"fooba", "Zm9vYmE"}, Row{"foobar", "Zm9vYmFy"}, Row{"\xfb\xff\xfe", "-__-"}}) {
    EXPECT_EQ(base64UrlEncoded(row.bytes), row.text);
  }
}

TEST(ApparentTemperature, FollowsHumidityAndWind) {
  // 20 °C and 50 %: 11.68 hPa of vapour, 3.85 °C more; a calm takes 4 °C, 36 km/h take 7 °C further.
  EXPECT_NEAR(apparentTemperature(20, 50, 0), 19.85, 0.02);
  EXPECT_NEAR(apparentTemperature(20, 50, 36), 12.85, 0.02);
  EXPECT_NEAR(apparentTemperature(35, 70, 10), 41.99, 0.05);
  EXPECT_LT(apparentTemperature(-10, 80, 30), -19);
}

}  // namespace
}  // namespace nimbara
