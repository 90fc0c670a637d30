// Moments and civil dates, and their ISO 8601 forms. A moment says nothing about a place; `Calendar` turns it
// into a place's days and hours.
#ifndef NIMBARA_BASE_TIME_INSTANT_H
#define NIMBARA_BASE_TIME_INSTANT_H

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

using Instant = std::chrono::sys_time<std::chrono::milliseconds>;
using Date = std::chrono::year_month_day;
/// A reading of a wall clock, without the zone that it hangs in.
using LocalTime = std::chrono::local_time<std::chrono::seconds>;

/// "2026-11-21T06:00:00Z", with ".250" before the Z when the moment does not stand on a whole second.
std::string formatIso8601(Instant instant);

/// A moment with a zone ("Z", "+01:00", "+0100"), seconds and their fraction optional, "T" or a blank
/// between.
std::optional<Instant> parseIso8601(std::string_view text);

/// A wall-clock reading without zone: "2026-11-21T10:15", seconds optional.
std::optional<LocalTime> parseLocalTime(std::string_view text);

/// "2026-11-21T10:15".
std::string formatLocalTime(LocalTime time);

/// "2026-11-21".
std::string formatDate(Date date);

/// A real calendar date in the form "2026-11-21" and nothing else.
std::optional<Date> parseDate(std::string_view text);

/// Days from `from` to `to`, negative when `to` is earlier.
int daysBetween(Date from, Date to);

Date addDays(Date date, int count);

/// "07:33 AM": the 12-hour form that forecast records carry.
std::string formatClock12(LocalTime time);

/// "19:33".
std::string formatClock24(LocalTime time);

/// Minutes since midnight of a text like "07:33 AM" or "7:33 pm"; nothing for other texts ("No moonrise").
std::optional<int> parseClock12(std::string_view text);

}  // namespace nimbara

#endif  // NIMBARA_BASE_TIME_INSTANT_H
