// What a feed knows and how far that can be trusted. A check that failed is never the same as a list without
// entries: whoever decides on the data looks at the state first.
#pragma once

#include "base/enum_names.h"
#include "base/time/instant.h"

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
  T data{};                            ///< the last that the service told, perhaps long ago
  std::optional<Instant> checkedAt;    ///< when it last told or confirmed it; never: `data` means nothing
  std::optional<Instant> failedSince;  ///< the first failure after that
  std::string problem;                 ///< why it is not current: a sentence without a full stop

  bool isCurrent() const { return state == FeedState::current; }
};

/// The reading of a question that no service was asked.
template <class T>
FeedReading<T> failedReading(std::string problem) {
  return {FeedState::failed, {}, {}, {}, std::move(problem)};
}

/// The reading of a feed for which the user has named no source, key or address.
template <class T>
FeedReading<T> notConfiguredReading(std::string problem) {
  return {FeedState::notConfigured, {}, {}, {}, std::move(problem)};
}

}  // namespace nimbara
