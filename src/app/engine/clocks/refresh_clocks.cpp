#include "app/engine/clocks/refresh_clocks.h"

namespace nimbara {

std::chrono::seconds RefreshIntervals::of(RefreshKind kind, bool isForeground) const {
  switch (kind) {
    case RefreshKind::fast:
      return fastRefreshInterval;
    case RefreshKind::supplemental:
      return supplementalRefreshInterval;
    case RefreshKind::nonActiveNotification:
      return isForeground ? nonActiveNotificationRefreshIntervalForeground
                          : nonActiveNotificationRefreshIntervalBackground;
    case RefreshKind::significantLocationChange:
      return slcRefreshMinInterval;
  }
  return refreshInterval;
}

bool isDue(std::optional<Instant> due, Instant now, std::chrono::seconds farthest) {
  return due && (*due <= now || *due - now > farthest);
}

std::optional<Instant> RefreshClocks::last(RefreshKind kind, std::string_view place) const {
  auto const& table = tables_[static_cast<std::size_t>(kind)];
  auto const found = table.find(place);
  return found == table.end() ? std::nullopt : std::optional(found->second);
}

Instant RefreshClocks::nextStart(RefreshKind kind, std::string_view place, Instant now,
                                 std::chrono::seconds interval) const {
  auto const started = last(kind, place);
  return !started || *started > now ? now : *started + interval;
}

bool RefreshClocks::mayStart(RefreshKind kind, std::string_view place, Instant now,
                             std::chrono::seconds interval) const {
  return nextStart(kind, place, now, interval) <= now;
}

void RefreshClocks::noteStart(RefreshKind kind, std::string_view place, Instant now) {
  tables_[static_cast<std::size_t>(kind)].insert_or_assign(std::string(place), now);
}

void RefreshClocks::clear(RefreshKind kind, std::string_view place) {
  auto& table = tables_[static_cast<std::size_t>(kind)];
  if (auto const found = table.find(place); found != table.end()) table.erase(found);
}

}  // namespace nimbara
