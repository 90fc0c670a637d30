// When something may be refreshed again: a table of moments per kind and place. Pure apart from its own
// tables; whoever holds it serialises its use.
#pragma once

#include "base/enum_names.h"
#include "base/time/instant.h"

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

/// The refreshes that are spaced for each place; those of a moving device for the device, wherever it is.
enum class RefreshKind { fast, supplemental, nonActiveNotification, significantLocationChange };

template <>
inline constexpr auto enumNames<RefreshKind> = std::to_array<std::string_view>(
    {"fast", "supplemental", "nonActiveNotification", "significantLocationChange"});
static_assert(enumNamesComplete(RefreshKind::significantLocationChange));

/// Stands for the device among the places.
inline constexpr std::string_view kDevicePlace = "device";

struct RefreshIntervals {
  std::chrono::seconds refreshInterval{900};  ///< of the selected place's timer
  std::chrono::seconds fastRefreshInterval{300};
  std::chrono::seconds supplementalRefreshInterval{1200};
  std::chrono::seconds nonActiveNotificationRefreshIntervalForeground{1800};
  std::chrono::seconds nonActiveNotificationRefreshIntervalBackground{3600};
  std::chrono::seconds slcRefreshMinInterval{600};

  std::chrono::seconds of(RefreshKind kind, bool isForeground) const;
};

/// A moment that lies farther ahead than anything is ever planned was set by a clock that has been set back.
bool isDue(std::optional<Instant> due, Instant now, std::chrono::seconds farthest);

class RefreshClocks {
 public:
  /// A refresh may start when the place has no entry, when its entry lies at least the interval back, or when
  /// it lies in the future, as after the clock was set back.
  bool mayStart(RefreshKind kind, std::string_view place, Instant now, std::chrono::seconds interval) const;
  /// The moment from which `mayStart` holds; now or earlier when it holds already.
  Instant nextStart(RefreshKind kind, std::string_view place, Instant now,
                    std::chrono::seconds interval) const;
  /// Notes that a refresh starts now.
  void noteStart(RefreshKind kind, std::string_view place, Instant now);
  /// As if the last refresh had not been started: it was cancelled.
  void clear(RefreshKind kind, std::string_view place);

 private:
  using LastStart = std::map<std::string, Instant, std::less<>>;

  std::optional<Instant> last(RefreshKind kind, std::string_view place) const;

  std::array<LastStart, enumNames<RefreshKind>.size()> tables_;
};

}  // namespace nimbara
