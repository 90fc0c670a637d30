#include "feeds/alerts/routing/source_rest.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using Kind = ServiceFailure::Kind;
using std::chrono::minutes;

ServiceFailure noAnswer(HttpError::Kind kind) {
  return ServiceFailure::network({kind, ""});
}

TEST(RestAfterFailure, GrowsToAnHour) {
  constexpr std::pair<int, int> kRows[] = {{-1, 0}, {0, 0},  {1, 10}, {2, 20},
                                           {3, 40}, {4, 60}, {5, 60}, {1'000'000, 60}};
  for (auto const& [failures, rest] : kRows)
    EXPECT_EQ(restAfterFailure(ServiceFailure::answered(503), failures), minutes(rest)) << failures;
}

TEST(RestAfterFailure, IsForWhatIsTheServicesOwnFault) {
  using enum HttpError::Kind;
  std::pair<ServiceFailure, bool> const rows[] = {
      {ServiceFailure::answered(404), true},
      {ServiceFailure::of(Kind::unreadable), true},
      {ServiceFailure::of(Kind::incomplete), false},
      {ServiceFailure::of(Kind::noSuchPlace), false},
      {noAnswer(timedOut), true},
      {noAnswer(truncated), true},
      {noAnswer(tlsFailed), true},
      {noAnswer(unresolvedHost), false},
      {noAnswer(connectionFailed), false},
      {noAnswer(cancelled), false},
  };
  for (auto const& [failure, rests] : rows)
    EXPECT_EQ(restAfterFailure(failure, 1), minutes(rests ? 10 : 0)) << sentenceOf(failure);
}

}  // namespace
}  // namespace nimbara
