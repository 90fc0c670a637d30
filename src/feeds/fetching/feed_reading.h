// What a feed knows and how far that can be trusted. A check that failed is never the same as a list without
// entries: whoever decides on the data looks at the state first.
#pragma once

#include "base/enum_names.h"
#include "base/time/instant.h"
#include "platform/service_failure.h"

#include <optional>
#include <string>

namespace nimbara {

enum class FeedState { current, failed, notConfigured };

template <>
inline constexpr auto enumNames<FeedState> =
    std::to_array<std::string_view>({"current", "failed", "notConfigured"});
static_assert(enumNamesComplete(FeedState::notConfigured));

template <class T>
struct FeedReading {
  FeedState state = FeedState::failed;
  T data{};                               ///< the last that the service told, perhaps long ago
  std::optional<Instant> checkedAt;       ///< when it last told or confirmed it; never: `data` means nothing
  std::optional<Instant> failedSince;     ///< the first failure after that
  std::optional<ServiceFailure> failure;  ///< why it is not current

  bool isCurrent() const { return state == FeedState::current; }
  /// Somebody has answered or failed.
  bool isSettled() const { return checkedAt || failure; }
  /// Why it is not current, in English, without a full stop; empty when it is.
  std::string problem() const { return failure ? sentenceOf(*failure) : std::string(); }
  bool operator==(FeedReading const&) const = default;
};

/// The reading of a question about a place that is not on the globe.
template <class T>
FeedReading<T> placelessReading() {
  return {FeedState::failed, {}, {}, {}, ServiceFailure::of(ServiceFailure::Kind::noSuchPlace)};
}

/// The reading of a feed for which the user has named no source, key or address.
template <class T>
FeedReading<T> notConfiguredReading(std::string problem) {
  return {FeedState::notConfigured,
          {},
          {},
          {},
          ServiceFailure::of(ServiceFailure::Kind::notConfigured, std::move(problem))};
}

}  // namespace nimbara
