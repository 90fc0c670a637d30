#include "base/calendar.h"

#include "base/number.h"

#include <fmt/format.h>
#include <unicode/basictz.h>
#include <unicode/simpletz.h>
#include <unicode/timezone.h>

#include <algorithm>
#include <cstdlib>

namespace nimbara {

namespace {

using std::chrono::days;
using std::chrono::milliseconds;
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

/// ICU answers an unknown name with a zone of its own called "Etc/Unknown".
std::unique_ptr<icu::BasicTimeZone> databaseZone(std::string_view zoneId) {
  auto const length = static_cast<std::int32_t>(zoneId.size());
  auto const id = icu::UnicodeString::fromUTF8(icu::StringPiece(zoneId.data(), length));
  std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(id));
  auto* const basic = dynamic_cast<icu::BasicTimeZone*>(zone.get());
  icu::UnicodeString found;
  if (basic == nullptr || zone->getID(found) == icu::UnicodeString("Etc/Unknown")) return nullptr;
  return std::unique_ptr<icu::BasicTimeZone>(basic->clone());
}

std::unique_ptr<icu::BasicTimeZone> constantZone(seconds offset, std::string const& name) {
  auto const icuOffset = static_cast<std::int32_t>(offset.count() * 1000);
  return std::make_unique<icu::SimpleTimeZone>(icuOffset, icu::UnicodeString::fromUTF8(name));
}

double icuTime(milliseconds sinceEpoch) {
  return static_cast<double>(sinceEpoch.count());
}

}  // namespace

struct Calendar::Zone {
  std::unique_ptr<icu::BasicTimeZone> rules;
};

Calendar::Calendar(std::shared_ptr<Zone const> zone, std::string zoneId)
    : zone_(std::move(zone)), zoneId_(std::move(zoneId)) {}

Calendar Calendar::utc() {
  static Calendar const calendar(std::make_shared<Zone const>(constantZone(seconds(0), "UTC")), "UTC");
  return calendar;
}

Calendar Calendar::machine() {
  char const* const variable = std::getenv("TZ");
  std::string_view named = variable == nullptr ? "" : variable;
  if (named.starts_with(':')) named.remove_prefix(1);
  if (!named.empty()) {
    if (auto const calendar = forZone(named)) return *calendar;
  }
  std::unique_ptr<icu::TimeZone> const host(icu::TimeZone::detectHostTimeZone());
  icu::UnicodeString id;
  std::string utf8;
  host->getID(id).toUTF8String(utf8);
  return forZone(utf8).value_or(utc());
}

std::optional<Calendar> Calendar::forZone(std::string_view zoneId) {
  if (zoneId == "UTC" || zoneId == "GMT") return Calendar(utc().zone_, std::string(zoneId));
  if (auto const offset = parseFixedOffset(zoneId)) return fixedOffset(*offset);
  if (zoneId.empty() || zoneId.size() > 64) return std::nullopt;
  auto zone = databaseZone(zoneId);
  if (!zone) return std::nullopt;
  return Calendar(std::make_shared<Zone const>(std::move(zone)), std::string(zoneId));
}

Calendar Calendar::fixedOffset(seconds offset) {
  offset = std::clamp<seconds>(offset, -kLargestOffset, kLargestOffset);
  std::string name = fixedOffsetName(offset);
  return {std::make_shared<Zone const>(constantZone(offset, name)), name};
}

seconds Calendar::offset(Instant instant) const {
  std::int32_t raw = 0;
  std::int32_t saving = 0;
  UErrorCode status = U_ZERO_ERROR;
  zone_->rules->getOffset(icuTime(instant.time_since_epoch()), false, raw, saving, status);
  return std::chrono::floor<seconds>(milliseconds(raw + saving));
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
  std::int32_t raw = 0;
  std::int32_t saving = 0;
  UErrorCode status = U_ZERO_ERROR;
  // A skipped reading is taken with the offset before the change, which moves it forward by the gap.
  auto const repeated = occurrence == Occurrence::first ? UCAL_TZ_LOCAL_FORMER : UCAL_TZ_LOCAL_LATTER;
  zone_->rules->getOffsetFromLocal(icuTime(time.time_since_epoch()), UCAL_TZ_LOCAL_FORMER, repeated, raw,
                                   saving, status);
  return Instant(time.time_since_epoch() - milliseconds(raw + saving));
}

Instant Calendar::startOfDay(Date date) const {
  LocalTime const midnight = std::chrono::local_days(date);
  Instant const start = instant(midnight);
  if (local(start) == midnight) return start;
  // The clock change took midnight away: the day begins with the change itself.
  icu::TimeZoneTransition transition;
  double const justAfter = icuTime(start.time_since_epoch());
  if (!zone_->rules->getPreviousTransition(justAfter, true, transition)) return start;
  return Instant(milliseconds(static_cast<std::int64_t>(transition.getTime())));
}

std::chrono::minutes Calendar::lengthOfDay(Date date) const {
  return std::chrono::floor<std::chrono::minutes>(startOfDay(addDays(date, 1)) - startOfDay(date));
}

}  // namespace nimbara
