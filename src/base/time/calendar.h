// A time zone's view of moments: its days (of 23, 24 or 25 hours), its hours and its wall clock. A cheap
// value that any thread may use. It never asks the machine for the zone except in `machine()`, which only the
// programs' entries call.
#pragma once

#include "base/time/instant.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

class ZoneDatabase;
class ZoneRules;

class Calendar {
 public:
  static Calendar utc();
  /// The calendar of the zone that the machine is set to (`TZ` first).
  static Calendar machine();
  /// An IANA zone ("Europe/Berlin") of the system's tz database or a fixed offset ("GMT+05:30"); nothing for
  /// an unknown name.
  static std::optional<Calendar> forZone(std::string_view zoneId);
  static std::optional<Calendar> forZone(std::string_view zoneId, ZoneDatabase& database);
  /// A zone that always stands `offset` east of Greenwich.
  static Calendar fixedOffset(std::chrono::seconds offset);

  std::string const& zoneId() const { return zoneId_; }

  /// How far the zone's clocks are ahead of UTC at that moment.
  std::chrono::seconds offset(Instant instant) const;

  LocalTime local(Instant instant) const;
  Date day(Instant instant) const;
  /// 0-23.
  int hour(Instant instant) const;
  bool isSameDay(Instant a, Instant b) const { return day(a) == day(b); }

  enum class Occurrence { first, second };
  /// The moment at which the zone's clock reads `time`. A reading that a clock change repeats has two
  /// moments; one that the change skips is moved forward by the length of the gap.
  Instant instant(LocalTime time, Occurrence occurrence = Occurrence::first) const;

  /// The first moment that belongs to `date`.
  Instant startOfDay(Date date) const;
  std::chrono::minutes lengthOfDay(Date date) const;

 private:
  Calendar(std::shared_ptr<ZoneRules const> rules, std::string zoneId);

  std::shared_ptr<ZoneRules const> rules_;
  std::string zoneId_;
};

}  // namespace nimbara
