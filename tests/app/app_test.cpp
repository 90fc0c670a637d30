#include "app/places/place.h"
#include "app/services/forecasts/forecast_service.h"
#include "app/settings/service_directory.h"
#include "support/answers/open_meteo_answer.h"
#include "support/fake_http_client.h"
#include "support/instants.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

TEST(Places, AreCoordinatesOrNames) {
  auto const coordinate = [](std::string_view text) { return std::get<Coordinate>(*parsePlace(text)); };
  EXPECT_EQ(coordinate("52.52,13.41"), (Coordinate{52.52, 13.41}));
  EXPECT_EQ(coordinate(" -90 , +180 "), (Coordinate{-90, 180}));
  for (char const* const name : {"Berlin", "Łódź", "東京", "Washington, DC", "St. John's", "10115 Berlin",
                                 "10115", "110 00", "1000-205", "SW1A 1AA", "Nan", "Nan, Thailand",
                                 "Stuttgart, 70173", "10115, Berlin", "100 Mile House, BC"}) {
    EXPECT_EQ(std::get<PlaceName>(*parsePlace(name)).name, name);
  }
}

TEST(Places, RefuseWhatIsNeither) {
  struct Row {
    std::string_view text;
    std::string_view problem;
  };
  for (Row const& row :
       {Row{"90.01,0", "latitude"},    Row{"-91,0", "latitude"},   Row{"0,180.01", "longitude"},
        Row{"0,-181", "longitude"},    Row{"", "neither"},         Row{" ", "neither"},
        Row{"52.52", "neither"},       Row{"52.52,", "neither"},   Row{",", "neither"},
        Row{"1,2,3", "neither"},       Row{"52.5,abc", "neither"}, Row{"12,abc", "neither"},
        Row{"12", "neither"},          Row{"1 2 345", "neither"},  Row{"-10115", "neither"},
        Row{"12345678901", "neither"}, Row{"--", "neither"},       Row{"1e999,0", "neither"},
        Row{"nan,nan", "neither"},     Row{"13,NaN", "neither"},   Row{"-inf,+Infinity", "neither"},
        Row{"52.5N,13.4E", "neither"}}) {
    auto const place = parsePlace(row.text);
    ASSERT_FALSE(place) << row.text;
    EXPECT_NE(place.error().find(row.problem), std::string::npos) << place.error();
    EXPECT_NE(place.error().find("'"), std::string::npos);
  }
}

TEST(ServiceDirectory, KnowsHostsConfigurationAndStandIn) {
  Configuration configuration;
  configuration.services["openMeteo"] = {"https://customer-api.open-meteo.com/", "key"};
  ServiceDirectory const own(configuration, "");
  EXPECT_EQ(own.address(Service::openMeteo).baseUrl, "https://customer-api.open-meteo.com");
  EXPECT_EQ(own.address(Service::openMeteo).apiKey, "key");
  EXPECT_EQ(own.address(Service::openMeteoGeocoding).baseUrl, "https://geocoding-api.open-meteo.com");
  EXPECT_EQ(ServiceDirectory({}, "").address(Service::openMeteo).baseUrl, "https://api.open-meteo.com");
  EXPECT_EQ(own.address(Service::yrNo).baseUrl, "https://api.met.no");
  EXPECT_EQ(own.address(Service::wttrIn).baseUrl, "https://wttr.in");
  EXPECT_EQ(own.address(Service::appleWeather).baseUrl, "https://weatherkit.apple.com");
  ServiceDirectory const standIn(configuration, "http://127.0.0.1:8080");
  EXPECT_EQ(standIn.address(Service::openMeteo).baseUrl, "http://127.0.0.1:8080");
}

TEST(ServiceDirectory, KnowsAnAddressOfEveryServiceButTheUsersOwn) {
  ServiceDirectory const own({}, "");
  for (std::size_t i = 0; i < enumNames<Service>.size(); ++i) {
    auto const service = static_cast<Service>(i);
    std::string const base = own.address(service).baseUrl;
    bool const isTheUsersOwn =
        service == Service::feedServer || service == Service::lightning || service == Service::languageModel;
    EXPECT_EQ(base.empty(), isTheUsersOwn) << enumName(service);
    EXPECT_EQ(normalizedBase(base).value_or(""), base);
  }
  EXPECT_EQ(ServiceDirectory({}, "http://127.0.0.1:1").address(Service::languageModel).baseUrl, "")
      << "it runs on the user's own machine";
  EXPECT_EQ(ServiceDirectory({}, "http://127.0.0.1:1").address(Service::lightning).baseUrl,
            "http://127.0.0.1:1");
}

TEST(ServiceDirectory, TakesOnlyRealBaseAddresses) {
  EXPECT_EQ(normalizedBase(" http://localhost:80/x// "), "http://localhost:80/x");
  for (char const* const text :
       {"", "localhost:80", "ftp://x", "http://", "https:///", "http://a b", "http://a?b", "http://a#b"}) {
    EXPECT_EQ(normalizedBase(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace nimbara
