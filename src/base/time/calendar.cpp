#include "base/time/calendar.h"

#include "base/text/number.h"
#include "base/time/zone_database.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <ranges>

namespace nimbara {

namespace {

using std::chrono::days;
using std::chrono::seconds;

constexpr std::chrono::hours kLargestOffset{18};

std::optional<seconds> parseFixedOffset(std::string_view zoneId) {
  if (zoneId.size() != 9 || !zoneId.starts_with("GMT") || zoneId[6] != ':') return std::nullopt;
  char const sign = zoneId[3];
  auto const hours = parseInteger(zoneId.substr(4, 2));
  auto const minutes = parseInteger(zoneId.substr(7, 2));
  if ((sign != '+' && sign != '-') || !hours || !minutes || *hours < 0 || *minutes < 0 || *minutes > 59) {
    return std::nullopt;
  }
  seconds const offset = std::chrono::hours(*hours) + std::chrono::minutes(*minutes);
  if (offset > kLargestOffset) return std::nullopt;
  return sign == '-' ? -offset : offset;
}

std::string fixedOffsetName(seconds offset) {
  auto const minutes = std::chrono::abs(std::chrono::floor<std::chrono::minutes>(offset)).count();
  return fmt::format("GMT{}{:02}:{:02}", offset.count() < 0 ? '-' : '+', minutes / 60, minutes % 60);
}

std::chrono::sys_seconds wholeSecond(Instant instant) {
  return std::chrono::floor<seconds>(instant);
}

/// The reading taken as if it were of UTC.
std::chrono::sys_seconds asUtc(LocalTime time) {
  return std::chrono::sys_seconds(time.time_since_epoch());
}

/// More than any zone is away from UTC.
constexpr std::chrono::hours kBeyondAllOffsets{27};

/// The offsets on both sides of whatever change is near a reading.
struct OffsetsAround {
  seconds before;
  seconds after;
};

OffsetsAround offsetsAround(ZoneRules const& rules, LocalTime time) {
  return {rules.offset(asUtc(time) - kBeyondAllOffsets), rules.offset(asUtc(time) + kBeyondAllOffsets)};
}

}  // namespace

Calendar::Calendar(std::shared_ptr<ZoneRules const> rules, std::string zoneId)
    : rules_(std::move(rules)), zoneId_(std::move(zoneId)) {}

Calendar Calendar::utc() {
  static Calendar const calendar(std::make_shared<ZoneRules const>(ZoneRules::constant(seconds(0))), "UTC");
  return calendar;
}

Calendar Calendar::machine() {
  MachineZone machine;
  if (char const* const variable = std::getenv("TZ")) machine.variable = variable;
  NamedZone zone = findMachineZone(machine, ZoneDatabase::ofSystem());
  return {std::move(zone.rules), std::move(zone.name)};
}

std::optional<Calendar> Calendar::forZone(std::string_view zoneId) {
  return forZone(zoneId, ZoneDatabase::ofSystem());
}

std::optional<Calendar> Calendar::forZone(std::string_view zoneId, ZoneDatabase& database) {
  if (zoneId == "UTC" || zoneId == "GMT") return Calendar(utc().rules_, std::string(zoneId));
  if (auto const offset = parseFixedOffset(zoneId)) return fixedOffset(*offset);
  auto rules = database.find(zoneId);
  if (!rules) return std::nullopt;
  return Calendar(std::move(rules), std::string(zoneId));
}

Calendar Calendar::fixedOffset(seconds offset) {
  offset = std::clamp<seconds>(offset, -kLargestOffset, kLargestOffset);
  return {std::make_shared<ZoneRules const>(ZoneRules::constant(offset)), fixedOffsetName(offset)};
}

seconds Calendar::offset(Instant instant) const {
  return rules_->offset(wholeSecond(instant));
}

LocalTime Calendar::local(Instant instant) const {
  return LocalTime(std::chrono::floor<seconds>(instant).time_since_epoch() + offset(instant));
}

Date Calendar::day(Instant instant) const {
  return Date(std::chrono::floor<days>(local(instant)));
}

int Calendar::hour(Instant instant) const {
  LocalTime const time = local(instant);
  return static_cast<int>(
      std::chrono::floor<std::chrono::hours>(time - std::chrono::floor<days>(time)).count());
}

Instant Calendar::instant(LocalTime time, Occurrence occurrence) const {
  auto const [before, after] = offsetsAround(*rules_, time);
  auto const reads = [&](seconds offset) { return rules_->offset(asUtc(time) - offset) == offset; };
  if (before == after && reads(before)) return asUtc(time) - before;
  // Behind the nearest change there may be a second one.
  seconds const between = rules_->offset(asUtc(time) - after);
  std::optional<Instant> first, second;
  for (seconds const offset : {before, between, after}) {
    if (!reads(offset)) continue;
    Instant const moment = asUtc(time) - offset;
    first = std::min(first.value_or(moment), moment);
    second = std::max(second.value_or(moment), moment);
  }
  // A skipped reading is taken with the offset before the change, which moves it forward by the gap.
  if (!first) return asUtc(time) - before;
  return occurrence == Occurrence::first ? *first : *second;
}

Instant Calendar::startOfDay(Date date) const {
  LocalTime const midnight = std::chrono::local_days(date);
  Instant const start = instant(midnight);
  if (local(start) == midnight) return start;
  // The clock change took midnight away: the day begins with the change itself.
  auto const [before, after] = offsetsAround(*rules_, midnight);
  if (after <= before) return start;
  auto const candidates = std::views::iota(0L, static_cast<long>((after - before).count()));
  auto const changed = std::ranges::partition_point(
      candidates, [&](long late) { return local(asUtc(midnight) - after + seconds(late)) < midnight; });
  return asUtc(midnight) - after + seconds(*changed);
}

std::chrono::minutes Calendar::lengthOfDay(Date date) const {
  return std::chrono::floor<std::chrono::minutes>(startOfDay(addDays(date, 1)) - startOfDay(date));
}

}  // namespace nimbara
