#include "platform/http/http_expiry.h"

#include "support/instants.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;

TEST(HttpExpiry, IsReckonedByTheServersClock) {
  Instant const now = at("2026-11-21T09:20:00Z");
  struct Row {
    HttpHeaders headers;
    char const* expires;
  };
  for (Row const& row :
       {Row{{}, "2026-11-21T09:20:00Z"}, Row{{{"Expires", "0"}}, "2026-11-21T09:20:00Z"},
        Row{{{"expires", "Sat, 21 Nov 2026 09:50:00 GMT"}}, "2026-11-21T09:50:00Z"},
        Row{{{"Expires", "Sat, 21 Nov 2026 07:50:00 GMT"}, {"Date", "Sat, 21 Nov 2026 07:19:00 GMT"}},
            "2026-11-21T09:51:00Z"},
        Row{{{"Expires", "Sat, 21 Nov 2026 09:00:00 GMT"}}, "2026-11-21T09:20:00Z"},
        Row{{{"Expires", "Tue, 21 Nov 2028 09:00:00 GMT"}}, "2026-11-22T09:20:00Z"}}) {
    EXPECT_EQ(expiryOf({200, row.headers, ""}, now), at(row.expires));
  }
}

}  // namespace
}  // namespace nimbara
