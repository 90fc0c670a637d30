// How far the clocks of one time zone are ahead of UTC, through all time: from the compiled files of the tz
// database (TZif, RFC 9636) and from POSIX TZ texts, which such a file ends with. Immutable; any thread may
// read it. Parses any bytes without harm; reads no file.
#pragma once

#include <chrono>
#include <optional>
#include <string_view>
#include <vector>

namespace nimbara {

/// The day of a year on which clocks change, and the reading at which they do (seconds from that day's
/// midnight, also negative or beyond the day).
struct ClockChangeRule {
  enum class Kind { weekdayOfMonth, dayWithoutLeapDay, dayOfYear };

  Kind kind = Kind::dayOfYear;
  int month = 1;
  int week = 1;  ///< 5: the last
  int day = 0;   ///< of the week from Sunday, or of the year: from 1 without leap days, else from 0
  std::chrono::seconds time = std::chrono::hours(2);

  bool operator==(ClockChangeRule const&) const = default;
};

/// What a POSIX TZ text says: "CET-1CEST,M3.5.0,M10.5.0/3".
struct PosixZone {
  struct Saving {
    std::chrono::seconds offset;
    ClockChangeRule begin;
    ClockChangeRule end;

    bool operator==(Saving const&) const = default;
  };

  std::chrono::seconds standard;
  std::optional<Saving> saving;

  std::chrono::seconds offset(std::chrono::sys_seconds moment) const;

  bool operator==(PosixZone const&) const = default;
};

/// Nothing for a text of another form; one that has summer time must say when.
std::optional<PosixZone> parsePosixZone(std::string_view text);

class ZoneRules {
 public:
  struct Change {
    std::chrono::sys_seconds moment;
    std::chrono::seconds offset;  ///< from then on

    bool operator==(Change const&) const = default;
  };

  /// `changes` in the order of time; `later` holds from the last one on, where there is one.
  ZoneRules(std::chrono::seconds first, std::vector<Change> changes, std::optional<PosixZone> later = {});
  static ZoneRules constant(std::chrono::seconds offset) { return {offset, {}, {}}; }
  /// Nothing for bytes that are no such file, and for one that counts leap seconds.
  static std::optional<ZoneRules> fromTzif(std::string_view bytes);

  std::chrono::seconds offset(std::chrono::sys_seconds moment) const;

  bool operator==(ZoneRules const&) const = default;

 private:
  std::chrono::seconds first_;
  std::vector<Change> changes_;
  std::optional<PosixZone> later_;
};

}  // namespace nimbara
