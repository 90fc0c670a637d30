#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/alerts/events/cap_events.h"
#include "feeds/cap/cap_issuer.h"
#include "feeds/cap/shape_geometry.h"
#include "regions/country_code.h"
#include "support/instants.h"

#include <gtest/gtest.h>

#include <set>

namespace nimbara {
namespace {

using test::at;

/// One warning a line: its issuer's country; what it draws ("P" corners, "C" a circle, "G" a code without a
/// shape, "-" nothing); points with the country that they lie in ("~": the open sea) and what the warning is
/// there: at the place (in), near it (by), not to be placed (un) or none (no). Made for this test, true to
/// how the countries draw.
constexpr std::string_view kWarnings = R"(
AD|P 42.43,1.41 42.58,1.41 42.66,1.50 42.64,1.74 42.50,1.79 42.43,1.60|in 42.51,1.52 AD|in 42.57,1.60 AD|by 42.43,1.75 AD|by 42.36,1.46 ES|by 42.50,1.70 FR|no 41.39,2.17 ES|no 43.60,1.44 FR
IL|G EMMA_ID=IL043|un 31.25,34.79 IL|un 32.08,34.78 IL|un 29.56,34.95 IL|no 31.95,35.93 JO|no 30.04,31.24 EG|no 32.00,33.00 ~|no 33.89,35.50 LB
RU|P 65.18,-179.68 66.40,-179.19 65.48,-178.27 64.35,-173.67 66.13,-169.71 67.35,-175.22 68.98,-180 65.07,-180;P 69.22,168.36 69.67,162.43 65.15,160.67 62.28,170.29 62.30,179.05 65.40,180 68.98,180 70.12,170.40|in 66.5,-179.5 RU|in 66.0,179.5 RU|in 67.5,180 RU|in 67.5,-180 RU|in 64.7,177.5 RU|no 64.50,-165.41 US|no 59.57,150.80 RU|by 66.0,-169.3 ~|no 70.0,-170.0 ~
CA|-|un 45.42,-75.70 CA|un 82.50,-62.35 CA|no 44.98,-75.5 US|no 45.0,-52.0 ~|no 48.85,2.35 FR|un 60.72,-135.06 CA
FJ|P -15.9,176.8 -15.9,-179.8 -16.5,-178.9 -19.3,-178.4 -19.3,176.8|in -18.14,178.44 FJ|in -16.85,-179.97 FJ|in -17.0,180 FJ|in -17.0,-180 FJ|in -18.2,-178.8 FJ|by -15.6,179.0 ~|no -13.3,-176.2 WF|no -17.7,168.3 VU|no -17.0,0.0 ~
NZ|P -43.6,-177.0 -43.6,-176.1 -44.4,-176.1 -44.4,-177.0|in -43.95,-176.56 NZ|in -44.3,-176.3 NZ|by -43.95,-175.7 ~|by -43.3,-176.5 NZ|no -41.29,174.78 NZ|no -43.53,172.63 NZ|no -43.9,176.5 ~
NZ|C -41.29,174.78 60|in -41.29,174.78 NZ|in -41.1,175.3 NZ|by -40.5,175.0 NZ|by -41.51,173.95 NZ|no -36.85,174.76 NZ|no -43.95,-176.56 NZ
US|P 54.5,-164.0 54.5,-170.0 52.5,-176.0 52.4,178.0 53.5,172.0 52.0,172.0 50.8,178.5 50.8,-177.0 52.2,-169.0|in 51.88,-176.66 US|in 51.2,179.9 US|in 51.2,-179.9 US|in 52.8,172.9 US|by 54.7,-163.7 US|no 55.2,-162.7 US|no 61.22,-149.90 US|no 53.02,158.65 RU|no 53.6,180 ~
AQ|P -72.0,-180 -70.0,-90 -70.0,0 -68.0,90 -72.0,180 -90,180 -90,-180|in -77.85,166.67 AQ|in -90,0 AQ|in -75.1,123.3 AQ|in -80.0,180 AQ|in -80.0,-180 AQ|by -69.6,0.0 AQ|no -62.2,-58.96 AQ|no -54.8,-68.3 AR|no 78.0,15.0 SJ
AQ|P -64.0,-58.0 -62.0,-58.0 -62.0,-62.0 -64.0,-62.0|in -62.2,-58.96 AQ|in -63.9,-61.9 AQ|by -64.3,-60.0 AQ|no -77.85,166.67 AQ|no -90,0 AQ
SJ|P 80.5,10.0 80.5,33.0 76.5,18.0 76.5,14.0|in 78.22,15.65 SJ|in 80.0,30.0 SJ|by 76.3,16.0 ~|no 74.4,19.0 SJ|no 69.65,18.96 NO|no 81.5,20.0 ~
KZ|P 49.24,82.60 48.63,81.62 48.17,82.44 48.29,83.48 48.97,82.92|in 48.5,82.8 KZ|in 49.0,82.6 KZ|by 48.5,83.9 KZ|by 48.97,83.4 KZ|no 51.13,71.43 KZ|no 43.24,76.89 KZ|no 50.45,80.2 KZ
MO|P 22.077,113.571 22.077,113.610 22.109,113.630 22.204,113.605 22.217,113.552 22.213,113.534|in 22.19,113.55 MO|in 22.12,113.60 MO|by 22.28,113.57 CN|by 22.28,114.05 ~|no 22.55,114.80 HK|no 23.13,113.26 CN
CN|P 39.4,115.4 41.1,115.4 41.1,117.5 39.4,117.5|in 39.90,116.41 CN|in 40.8,115.9 CN|by 39.2,116.4 CN|by 39.13,117.2 CN|no 31.23,121.47 CN|no 37.57,126.98 KR|no 38.0,114.5 CN
JP|P 35.5,138.9 35.9,138.9 35.9,139.9 35.5,139.9|in 35.68,139.69 JP|in 35.6,139.0 JP|by 35.44,139.64 JP|by 35.33,139.3 JP|no 34.69,135.50 JP|no 43.06,141.35 JP
PH|C 14.6,121.0 40;C 10.3,123.9 30|in 14.6,121.0 PH|in 14.35,121.1 PH|in 10.5,124.0 PH|by 14.1,121.2 PH|no 7.07,125.61 PH|no 12.5,122.5 PH
IN|P 18.9,72.7 19.3,72.7 19.3,73.0 18.9,73.0|in 19.08,72.88 IN|in 18.95,72.83 IN|by 18.52,72.9 IN|by 19.3,73.3 IN|no 18.52,73.86 IN|no 28.61,77.21 IN|no 24.86,67.01 PK
TH|G AMOC-AreaCode=10|un 13.76,100.50 TH|un 18.79,98.99 TH|no 17.97,102.60 LA|no 3.14,101.69 MY|no 10.0,101.5 ~
ID|P -5.9,106.6 -5.9,107.1 -6.5,107.1 -6.5,106.6|in -6.21,106.85 ID|in -6.45,106.65 ID|by -6.6,106.8 ID|by -5.8,106.8 ~|no -6.91,107.75 ID|no -7.8,110.36 ID|no 1.35,103.82 SG
AU|P -28.2,153.2 -26.4,153.2 -26.4,154.2 -28.2,154.2|in -27.0,153.5 AU|in -27.5,153.9 ~|by -27.47,153.03 AU|by -28.3,153.6 AU|no -33.87,151.21 AU|no -23.4,150.5 AU|no -27.0,155.2 ~
BR|P -22.7,-43.8 -22.7,-43.1 -23.1,-43.1 -23.1,-43.8;P -24.2,-46.9 -23.3,-46.9 -23.3,-46.3 -24.2,-46.3|in -22.91,-43.17 BR|in -23.55,-46.63 BR|by -22.5,-43.2 BR|by -23.96,-46.1 BR|no -15.79,-47.88 BR|no -22.9,-45.3 BR|no -34.60,-58.38 AR
AR|-|un -34.60,-58.38 AR|un -54.80,-68.30 AR|no -33.45,-70.67 CL|no -34.90,-56.16 UY|no -40.0,-60.0 ~
CL|P -33.2,-71.8 -33.2,-70.4 -33.8,-70.4 -33.8,-71.8|in -33.45,-70.67 CL|in -33.6,-71.61 CL|by -33.05,-71.62 CL|by -33.5,-70.0 AR|no -36.83,-73.05 CL|no -32.89,-68.84 AR
MX|P 18.9,-99.5 19.6,-99.5 19.6,-98.9 18.9,-98.9|in 19.43,-99.13 MX|in 19.0,-99.0 MX|by 18.6,-99.2 MX|by 19.3,-99.66 MX|no 19.04,-98.2 MX|no 20.67,-103.35 MX
ZA|P -34.4,18.2 -33.5,18.2 -33.5,19.2 -34.4,19.2|in -33.92,18.42 ZA|in -34.3,19.1 ZA|by -33.2,18.5 ZA|by -34.0,19.5 ZA|no -33.96,22.46 ZA|no -26.20,28.05 ZA
KE|P -0.5,36.5 0.5,36.5 0.5,37.5 -0.5,37.5|in 0.0,37.0 KE|in -0.42,36.95 KE|in 0.0,36.5 KE|by 0.0,36.2 KE|by -0.72,36.9 KE|no -1.29,36.82 KE|no 0.31,32.58 UG|no 0.0,-37.0 ~
GH|P 5.4,-0.4 5.8,-0.4 5.8,0.3 5.4,0.3|in 5.60,-0.19 GH|in 5.55,0.0 GH|in 5.6,0.2 GH|by 6.1,0.0 GH|by 5.6,0.6 GH|no 6.69,-1.62 GH|no 6.13,1.22 TG
SA|P 21.2,38.9 22.0,38.9 22.0,39.6 21.2,39.6|in 21.49,39.19 SA|in 21.9,39.5 SA|by 21.4,39.83 SA|by 21.0,39.2 SA|no 24.71,46.68 SA|no 24.47,39.61 SA
AE|C 25.2,55.3 25|in 25.20,55.27 AE|in 25.3,55.4 AE|by 25.41,55.65 AE|by 25.0,55.6 AE|no 24.45,54.38 AE|no 25.29,51.53 QA
IS|P 63.8,-22.9 64.4,-22.9 64.4,-21.5 63.8,-21.5|in 64.15,-21.94 IS|in 63.9,-22.5 IS|by 64.0,-21.0 IS|by 63.6,-22.0 ~|no 65.69,-18.09 IS|no 64.2,-24.5 ~
GL|P 63.9,-52.5 64.6,-52.5 64.6,-50.5 63.9,-50.5|in 64.18,-51.72 GL|in 64.5,-50.6 GL|by 64.9,-51.0 GL|by 63.7,-51.5 ~|no 67.0,-50.7 GL|no 64.15,-21.94 IS
DK|P 61.3,-7.8 62.5,-7.8 62.5,-6.2 61.3,-6.2|in 62.01,-6.77 FO|in 61.5,-7.0 FO|by 62.6,-7.0 ~|by 61.0,-7.0 ~|no 60.15,-1.15 GB|no 55.68,12.57 DK
FR|P -21.5,55.1 -20.8,55.1 -20.8,55.9 -21.5,55.9|in -20.88,55.45 RE|in -21.34,55.48 RE|by -20.6,55.5 ~|by -21.2,56.2 ~|no -20.16,57.50 MU|no -12.8,45.2 YT
MG|P -19.3,47.2 -18.6,47.2 -18.6,47.8 -19.0,47.45 -19.3,47.8|in -18.91,47.3 MG|in -19.2,47.5 MG|in -18.7,47.5 MG|by -19.0,47.7 MG|by -18.4,47.5 MG|no -18.15,49.4 MG|no -21.45,47.09 MG
)";

Coordinate pairOf(std::string_view text) {
  auto const parts = split(text, ',');
  return {parseDouble(parts.at(0)).value(), parseDouble(parts.at(1)).value()};
}

CapMessage warningOf(std::string_view country, std::string_view drawn) {
  CapInfo info;
  info.language = "en";
  info.event = "Wind";
  info.severity = "Severe";
  info.expires = at("2026-11-23T00:00:00Z");
  CapArea& area = info.areas.emplace_back();
  area.areaDesc = "Area of " + std::string(country);
  for (std::string_view const shape : split(drawn, ';')) {
    std::string_view const text = shape.size() > 2 ? shape.substr(2) : std::string_view();
    if (shape.front() == 'P') area.polygons.push_back(parseWarningPolygon(text).value());
    if (shape.front() == 'C') area.circles.push_back(parseWarningCircle(text).value());
    if (shape.front() == 'G')
      area.geocodes.push_back({std::string(split(text, '=').at(0)), std::string(split(text, '=').at(1))});
  }
  CapAlert alert{"1", "office@weather.example", at("2026-11-22T00:00:00Z"), "Actual", "Alert", {}, {info}};
  noteBoxes(alert);
  return {std::make_shared<CapAlert const>(alert), {}, std::string(country), false, {}};
}

std::string told(GovSourceAnswer const& answer) {
  if (!answer.unplaced.empty()) return "un";
  if (answer.alerts.empty()) return "no";
  return answer.alerts.front().distanceKm ? "by" : "in";
}

TEST(CapPlaces, NoWarningIsMissedAndNoneIsFalse) {
  std::set<std::string_view> countries;
  std::size_t pairs = 0;
  for (std::string_view const line : split(kWarnings, '\n')) {
    if (line.empty()) continue;
    auto const fields = split(line, '|');
    countries.insert(fields.at(0));
    CapMessage const message = warningOf(fields.at(0), fields.at(1));
    for (std::size_t i = 2; i < fields.size(); ++i) {
      auto const words = split(fields[i], ' ');
      std::string_view const country = words.at(2) == "~" ? std::string_view() : words.at(2);
      KnownEvents known;
      auto const answer = capEvents(
          {&message, 1}, {"wmo", pairOf(words.at(1)), country, "en", at("2026-11-22T06:00:00Z")}, known);
      EXPECT_EQ(told(answer), words.at(0)) << line << "\n" << fields[i];
      ++pairs;
    }
  }
  EXPECT_GE(pairs, 200U);
  EXPECT_GE(countries.size(), 30U);
}

struct Row {
  char const *identifier, *sender, *country;
};

TEST(CapIssuer, HasACountry) {
  for (Row const& row :
       {Row{"2.49.0.0.398.0-20250306-133701-00-EN", "", "KZ"}, Row{"2.49.0.1.76.0.2026", "", "BR"},
        Row{"urn:oid:2.49.0.0.036.0.2026", "", "AU"}, Row{"ph-2.49.0.0.608.3", "a@b.example", "PH"},
        Row{"2.49.0.12.756", "", "CH"}, Row{"2.49.0.0.242-7", "a@met.gov.to", "FJ"},
        // Not the number of a country, or not such an identifier: the sender tells.
        Row{"2.49.0.0.000.1", "a@met.gov.ws", "WS"}, Row{"2.49.0.0.1", "a@met.ie", "IE"},
        Row{"2.49.0.0.3980.1", "a@met.ie", "IE"}, Row{"2.49.0.x.398.1", "a@met.ie", "IE"},
        Row{"12.49.0.0.398.0", "a@met.ie", "IE"}, Row{"1.2.49.0.0.398.0", "a@met.ie", "IE"},
        Row{"2.49.0.", "a@met.ie", "IE"}, Row{"2.49.0.0.", "", ""},
        // Domains.
        Row{"", "IMS.GOV.IL", "IL"}, Row{"", "https://www.meteoschweiz.admin.ch/cap?x=a@b.fr", "CH"},
        Row{"", "cap@metoffice.gov.uk", "GB"}, Row{"", "met@met.gov.fm", "FM"}, Row{"", "met@weather.fm", ""},
        Row{"", "met@gov.tv", ""}, Row{"", "cap@weather.example", ""}, Row{"", "info@meteoalarm.org", ""},
        Row{"", "a@b.eu", ""}, Row{"", "a@b.zz", ""}, Row{"", "CH", ""},
        Row{"", "Weather Service, Bern.ch", ""}, Row{"", "", ""}}) {
    CapAlert alert;
    alert.identifier = row.identifier;
    alert.sender = row.sender;
    EXPECT_EQ(issuerCountry(alert), row.country) << row.identifier << " of " << row.sender;
  }
}

TEST(CountryNumber, IsThatOfACountry) {
  for (auto const& [number, code] :
       {std::pair{-1, ""}, std::pair{0, ""}, std::pair{3, ""}, std::pair{4, "AF"}, std::pair{5, ""},
        std::pair{8, "AL"}, std::pair{124, "CA"}, std::pair{276, "DE"}, std::pair{598, "PG"},
        std::pair{882, "WS"}, std::pair{894, "ZM"}, std::pair{895, ""}, std::pair{1004, ""}})
    EXPECT_EQ(countryCodeOfNumber(number), code) << number;
}

}  // namespace
}  // namespace nimbara
