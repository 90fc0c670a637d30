#include "platform/linux/network/default_route.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fstream>

namespace nimbara {
namespace {

constexpr std::string_view kHeadV4 =
    "Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\t\tMTU\tWindow\tIRTT\n";

struct RouteRow {
  char const* name;
  char const* line;
  bool isDefault;
};

TEST(DefaultRoute, IsFoundInTheTableOfV4) {
  for (RouteRow const& row :
       {RouteRow{"default", "wlan0\t00000000\t0100A8C0\t0003\t0\t0\t600\t00000000\t0\t0\t0\n", true},
        RouteRow{"down", "wlan0\t00000000\t0100A8C0\t0002\t0\t0\t600\t00000000\t0\t0\t0\n", false},
        RouteRow{"refused", "lo\t00000000\t00000000\t0201\t0\t0\t600\t00000000\t0\t0\t0\n", false},
        RouteRow{"of one network", "wlan0\t0000A8C0\t00000000\t0001\t0\t0\t600\t00FFFFFF\t0\t0\t0\n", false},
        RouteRow{"half of all", "tun0\t00000000\t00000000\t0001\t0\t0\t0\t00000080\t0\t0\t0\n", false},
        RouteRow{"cut", "wlan0\t00000000\t0100A8C0\t0003\n", false}, RouteRow{"none", "", false}}) {
    EXPECT_EQ(hasDefaultRouteV4(std::string(kHeadV4) + row.line), row.isDefault) << row.name;
  }
}

TEST(DefaultRoute, IsFoundInTheTableOfV6) {
  constexpr char const* kZero = "00000000000000000000000000000000";
  auto const line = [](char const* destination, char const* length, char const* flags) {
    return std::string(destination) + " " + length + " " + kZero +
           " 00 fe800000000000000000000000000001 00000400 00000001 00000000 " + flags + "    wlan0\n";
  };
  EXPECT_TRUE(hasDefaultRouteV6(line(kZero, "00", "00450003")));
  EXPECT_FALSE(hasDefaultRouteV6(line(kZero, "00", "00200200"))) << "what the kernel has where there is none";
  EXPECT_FALSE(hasDefaultRouteV6(line("fe800000000000000000000000000000", "40", "00000001")));
  EXPECT_FALSE(hasDefaultRouteV6(line(kZero, "80", "00000001"))) << "the address of all zeros alone";
  EXPECT_FALSE(hasDefaultRouteV6(""));
}

TEST(DefaultRoute, IsTakenToBeThereWhereNothingCanBeRead) {
  test::TemporaryFolder const folder;
  EXPECT_TRUE(hasDefaultRoute(folder.path()));
  std::ofstream(folder.path() / "route") << kHeadV4;
  EXPECT_FALSE(hasDefaultRoute(folder.path()));
  std::ofstream(folder.path() / "route", std::ios::app)
      << "eth0\t00000000\t0100A8C0\t0003\t0\t0\t0\t00000000\t0\t0\t0\n";
  EXPECT_TRUE(hasDefaultRoute(folder.path()));
}

}  // namespace
}  // namespace nimbara
