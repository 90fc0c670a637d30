#include "platform/http/request_quota.h"

#include "support/instants.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

struct QuotaRow {
  char const* answer;
  char const* now;
  char const* end;  ///< nullptr: it says nothing of a quota
};

TEST(RequestQuota, EndsWithTheSpanThatIsNamed) {
  constexpr char kNow[] = "2026-11-21T18:20:30Z";
  for (QuotaRow const& row : {
           QuotaRow{
               R"({"error":true,"reason":"Daily API request limit exceeded. Please try again tomorrow."})",
               kNow, "2026-11-22T00:00:00Z"},
           {R"({"reason": "Hourly API request limit exceeded. Try again in the next hour.", "error": true})",
            kNow, "2026-11-21T19:00:00Z"},
           {"Minutely API request limit exceeded.", kNow, "2026-11-21T18:21:00Z"},
           {"Monthly API request limit exceeded.", kNow, "2026-11-22T00:00:00Z"},
           {"Daily transaction limit exceeded", "2026-11-21T23:59:59Z", "2026-11-22T00:00:00Z"},
           {"Daily transaction limit exceeded", "2026-11-22T00:00:00Z", "2026-11-23T00:00:00Z"},
           {R"({"error":true,"reason":"Too many concurrent requests"})", kNow, nullptr},
           {"Exceeding allowed transaction limit", kNow, nullptr},
           {"Daily news", kNow, nullptr},
           {R"({"reason":)", kNow, nullptr},
           {"", kNow, nullptr},
       }) {
    auto const end = quotaEnd(row.answer, test::at(row.now));
    ASSERT_EQ(end.has_value(), row.end != nullptr) << row.answer;
    if (end) EXPECT_EQ(formatIso8601(*end), row.end) << row.answer;
  }
}

}  // namespace
}  // namespace nimbara
