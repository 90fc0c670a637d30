#include "feeds/alerts/routing/source_rest.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

using std::chrono::minutes;

constexpr std::array kRests{minutes(10), minutes(20), minutes(40), minutes(60)};

/// The service was there, and its answer or its silence is its own.
bool isOfService(ServiceFailure const& failure) {
  using enum ServiceFailure::Kind;
  if (failure.kind == status || failure.kind == unreadable) return true;
  using enum HttpError::Kind;
  constexpr std::array kElsewhere{invalidUrl, unresolvedHost, connectionFailed, cancelled};
  return failure.kind == network && failure.transport &&
         std::ranges::find(kElsewhere, *failure.transport) == kElsewhere.end();
}

}  // namespace

minutes restAfterFailure(ServiceFailure const& failure, int failures) {
  if (failures < 1 || !isOfService(failure)) return minutes(0);
  return kRests.at(std::min(static_cast<std::size_t>(failures), kRests.size()) - 1);
}

}  // namespace nimbara
