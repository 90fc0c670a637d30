#include "base/time_words.h"

#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

namespace nimbara {

struct TimeWords::Formatter {
  std::unique_ptr<icu::SimpleDateFormat> format;
};

TimeWords::TimeWords(Texts const& texts, Calendar calendar) : texts_(texts), calendar_(std::move(calendar)) {}

TimeWords::~TimeWords() = default;

std::string TimeWords::format(Instant instant, std::string_view pattern) const {
  auto found = formatters_.find(pattern);
  if (found == formatters_.end()) {
    UErrorCode status = U_ZERO_ERROR;
    auto const length = static_cast<std::int32_t>(pattern.size());
    auto formatter = std::make_unique<icu::SimpleDateFormat>(
        icu::UnicodeString::fromUTF8(icu::StringPiece(pattern.data(), length)),
        icu::Locale(texts_.language().c_str()), status);
    // Moments are handed over as wall-clock readings, so that the calendar alone decides about zones.
    if (U_SUCCESS(status)) formatter->adoptTimeZone(icu::TimeZone::getGMT()->clone());
    if (U_FAILURE(status)) formatter.reset();
    found = formatters_.emplace(pattern, std::make_unique<Formatter>(std::move(formatter))).first;
  }
  if (!found->second->format) return {};
  auto const local = std::chrono::milliseconds(calendar_.local(instant).time_since_epoch());
  icu::UnicodeString text;
  std::string utf8;
  found->second->format->format(static_cast<UDate>(local.count()), text).toUTF8String(utf8);
  // CLDR parts hour and half of day by a narrow blank, which neither terminals nor notifications want.
  for (auto at = utf8.find("\u202F"); at != std::string::npos; at = utf8.find("\u202F"))
    utf8.replace(at, 3, " ");
  return utf8;
}

std::string TimeWords::hourLabel(Instant instant, Instant now) const {
  std::string label = hour(instant);
  if (label.empty()) return std::string(texts_.text("time.later"));
  int const days = daysBetween(calendar_.day(now), calendar_.day(instant));
  if (days == 0) return label;
  if (days == 1) return texts_.format("time.tomorrowHour", label);
  return texts_.format("time.weekdayHour", weekday(instant), label);
}

std::string TimeWords::aroundSuffix(Instant instant, Instant now) const {
  return texts_.format("time.aroundSuffix", hourLabel(instant, now));
}

}  // namespace nimbara
