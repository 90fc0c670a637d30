#include "feeds/cap/cap_issuer.h"

#include "feeds/cap/cap_reader.h"
#include "regions/country_code.h"
#include "support/samples.h"

#include <gtest/gtest.h>

#include <map>

namespace nimbara {
namespace {

struct Row {
  char const* identifier;
  char const* sender;
  char const* country;
};

std::ostream& operator<<(std::ostream& out, Row const& row) {
  return out << row.identifier << " of " << row.sender;
}

class CapIssuer : public testing::TestWithParam<Row> {};

TEST_P(CapIssuer, HasACountry) {
  CapAlert alert;
  alert.identifier = GetParam().identifier;
  alert.sender = GetParam().sender;
  EXPECT_EQ(issuerCountry(alert), GetParam().country);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, CapIssuer,
    testing::Values(
        Row{"2.49.0.0.398.0-20250306-133701-00-EN", "", "KZ"}, Row{"2.49.0.1.76.0.2026", "", "BR"},
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
        Row{"", "Weather Service, Bern.ch", ""}, Row{"", "", ""}));

TEST(CapIssuer, IsKnownOfTheRecordedMessages) {
  auto const files = test::sampleFiles("cap");
  if (!files) GTEST_SKIP() << "no recorded answers";
  std::map<std::string, std::string> const expected{{"israel.xml", "IL"},
                                                    {"kazakhstan-en-2025-03-06.xml", "KZ"},
                                                    {"macau-monsoon-allclear.xml", "MO"},
                                                    {"russia-2025-03-01.xml", "RU"}};
  std::size_t known = 0;
  for (auto const& file : *files) {
    auto const found = expected.find(file.filename().string());
    auto const alert = parseCap(test::readFile(file));
    if (found == expected.end() || !alert) continue;
    ++known;
    EXPECT_EQ(issuerCountry(*alert), found->second) << file;
  }
  EXPECT_EQ(known, expected.size());
}

TEST(CountryNumber, IsThatOfACountry) {
  for (auto const& [number, code] : std::map<int, std::string>{{-1, ""},
                                                               {0, ""},
                                                               {3, ""},
                                                               {4, "AF"},
                                                               {5, ""},
                                                               {8, "AL"},
                                                               {124, "CA"},
                                                               {276, "DE"},
                                                               {598, "PG"},
                                                               {882, "WS"},
                                                               {894, "ZM"},
                                                               {895, ""},
                                                               {1004, ""}}) {
    EXPECT_EQ(countryCodeOfNumber(number), code) << number;
  }
}

}  // namespace
}  // namespace nimbara
