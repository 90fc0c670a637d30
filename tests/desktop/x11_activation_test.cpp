#include "desktop/window/x11_activation.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

struct TimeRow {
  char const* identifier;
  std::optional<std::uint32_t> time;
};

TEST(X11Activation, TheMomentIsWhatTheIdentifierEndsWith) {
  for (auto const& [identifier, time] : {TimeRow{"xfce4-panel-1204-desk-firefox-0_TIME48213", 48213},
                                         {"_TIME1", 1},
                                         {"a_TIME2_TIME3", 3},
                                         {"_TIME4294967295", 4294967295},
                                         {"_TIME4294967296", {}},
                                         {"_TIME0", {}},
                                         {"_TIME", {}},
                                         {"_TIME-5", {}},
                                         {"_TIME12x", {}},
                                         {"_time12", {}},
                                         {"4fa1c2e0-6f5f-4b1a", {}},
                                         {"", {}}}) {
    EXPECT_EQ(startupTime(identifier), time) << identifier;
  }
}

TEST(X11Activation, TheEndNamesTheIdentifierWhateverItHolds) {
  EXPECT_EQ(startupEnd("panel 7_TIME5"), R"(remove: ID="panel 7_TIME5")");
  EXPECT_EQ(startupEnd(R"(a"b\c)"), R"(remove: ID="a\"b\\c")");
}

}  // namespace
}  // namespace nimbara
