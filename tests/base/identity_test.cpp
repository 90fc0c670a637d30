#include "base/geodesy.h"
#include "base/sha256.h"
#include "base/uuid.h"

#include <gtest/gtest.h>

#include <set>

namespace nimbara {
namespace {

TEST(Sha256, AgreesWithThePublishedVectors) {
  EXPECT_EQ(sha256Hex(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_EQ(sha256Hex("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(Uuid, NamesGiveTheIdentifiersOfTheStandard) {
  // The DNS name space and the example of RFC 9562, appendix A.4.
  Uuid const dns = *Uuid::parse("6ba7b810-9dad-11d1-80b4-00c04fd430c8");
  EXPECT_EQ(Uuid::named(dns, "www.example.com").text(), "2ed6657d-e927-568b-95e1-2665a8aea6a2");
  EXPECT_NE(Uuid::named(dns, "www.example.org"), Uuid::named(dns, "www.example.com"));
}

TEST(Uuid, RandomOnesDifferAndCarryTheirVersion) {
  std::set<Uuid> seen;
  for (int i = 0; i < 1000; ++i) seen.insert(Uuid::random());
  EXPECT_EQ(seen.size(), 1000U);
  for (Uuid const& uuid : seen) {
    EXPECT_EQ(uuid.text()[14], '4');
    EXPECT_NE(std::string_view("89ab").find(uuid.text()[19]), std::string_view::npos);
    EXPECT_EQ(Uuid::parse(uuid.text()), uuid);
  }
}

TEST(Uuid, RefusesTextsOfAnotherForm) {
  EXPECT_TRUE(Uuid::parse("F81D4FAE-7DEC-41D0-A765-00A0C91E6BF6"));
  for (char const* const text :
       {"", "f81d4fae7dec41d0a76500a0c91e6bf6", "f81d4fae-7dec-41d0-a765-00a0c91e6bf",
        "f81d4fae-7dec-41d0-a765-00a0c91e6bfg", "f81d4fae-7dec-41d0-a765000a0c91e6bf6-"}) {
    EXPECT_FALSE(Uuid::parse(text)) << text;
  }
}

TEST(Haversine, AgreesWithKnownDistances) {
  EXPECT_NEAR(haversineKm({52.52, 13.41}, {48.85, 2.35}), 878, 2);    // Berlin to Paris
  EXPECT_NEAR(haversineKm({0, 179.5}, {0, -179.5}), 111.195, 0.001);  // over the antimeridian
  EXPECT_NEAR(haversineKm({90, 0}, {-90, 100}), 20015.09, 0.01);      // pole to pole
  EXPECT_EQ(haversineKm({10, 20}, {10, 20}), 0);
}

TEST(Coordinates, KnowTheirRange) {
  EXPECT_TRUE(isValid({90, -180}));
  EXPECT_FALSE(isValid({90.0001, 0}));
  EXPECT_FALSE(isValid({0, 180.0001}));
  EXPECT_FALSE(isValid({std::stod("nan"), 0}));
  EXPECT_EQ(formatCoordinate({-33.87, -0.004}), "33.87°S 0.00°W");
}

}  // namespace
}  // namespace nimbara
