#include "providers/common/local_hours.h"

#include "base/text/number.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace nimbara {

namespace {

using std::chrono::hours;
using std::chrono::milliseconds;

using ExactHours = std::chrono::duration<double, std::ratio<3600>>;

constexpr Reading HourlyEntry::* kReadings[] = {
    &HourlyEntry::temperature2m,
    &HourlyEntry::relativeHumidity2m,
    &HourlyEntry::apparentTemperature,
    &HourlyEntry::dewPoint2m,
    &HourlyEntry::cloudCover,
    &HourlyEntry::fogProbability,
    &HourlyEntry::windSpeed10m,
    &HourlyEntry::windGusts10m,
    &HourlyEntry::pressureMsl,
    &HourlyEntry::visibility,
    &HourlyEntry::uvIndex,
};

/// Of an answer that makes sense: the hours between its first and its last are walked through.
constexpr std::chrono::days kLongestSpan{32};

constexpr Reading HourlyEntry::* kAmounts[] = {&HourlyEntry::precipitation, &HourlyEntry::snowfall};

constexpr Reading HourlyEntry::* kProbabilities[] = {&HourlyEntry::precipitationProbability,
                                                     &HourlyEntry::thunderProbability};

LocalTime hourOf(LocalTime time) {
  return LocalTime(std::chrono::floor<hours>(time.time_since_epoch()));
}

/// True at a full hour, and where a clock change jumps over it into the hour.
bool beginsHour(Instant moment, Calendar const& calendar) {
  LocalTime const local = calendar.local(moment);
  LocalTime const hour = hourOf(local);
  return local == hour || calendar.instant(hour) == moment;
}

Instant nextReading(Instant moment, Calendar const& calendar) {
  LocalTime const local = calendar.local(moment);
  return moment + (hourOf(local) + hours(1) - local);
}

bool areLocalHours(std::vector<HourlyEntry> const& entries, Calendar const& calendar) {
  return std::ranges::all_of(entries, [&](HourlyEntry const& entry) {
    LocalTime const local = calendar.local(entry.begin);
    return local == hourOf(local);
  });
}

struct Span {
  Instant begin;
  Instant end;

  /// How much of an entry's hour lies within, 0-1.
  double shareOf(HourlyEntry const& entry) const {
    auto const overlap = std::min(end, entry.begin + hours(1)) - std::max(begin, entry.begin);
    return std::max(0.0, ExactHours(overlap).count());
  }
};

/// Readings of the moment `at`, `part` of the way from one entry to the next.
void interpolate(HourlyEntry const& from, HourlyEntry const& to, double part, HourlyEntry& out) {
  for (auto const reading : kReadings) {
    if (from.*reading && to.*reading) out.*reading = std::lerp(*(from.*reading), *(to.*reading), part);
  }
  if (from.windDirection10m && to.windDirection10m) {
    out.windDirection10m = directionBetween(*from.windDirection10m, *to.windDirection10m, part);
  }
}

/// The entry that says what the sky is like: that of the longer part, and of two halves the wetter one.
HourlyEntry const& leadingOf(std::span<HourlyEntry const> parts, Span const& span) {
  return *std::ranges::max_element(parts, {}, [&](HourlyEntry const& entry) {
    return std::pair(span.shareOf(entry), entry.precipitation.value_or(0));
  });
}

void shareOut(std::span<HourlyEntry const> parts, Span const& span, HourlyEntry& out) {
  for (auto const amount : kAmounts) {
    out.*amount = std::nullopt;
    for (HourlyEntry const& entry : parts) {
      if (entry.*amount) out.*amount = (out.*amount).value_or(0) + *(entry.*amount) * span.shareOf(entry);
    }
  }
  // What one part does not know, the whole does not; of snow services speak only where it snows.
  bool const isKnown =
      std::ranges::all_of(parts, [](HourlyEntry const& entry) { return entry.precipitation.has_value(); });
  if (!isKnown) out.precipitation = std::nullopt;
  for (auto const probability : kProbabilities) {
    for (HourlyEntry const& entry : parts) out.*probability = std::max(out.*probability, entry.*probability);
  }
}

/// One hour of the place from the service's hours that it touches.
HourlyEntry hourFrom(std::span<HourlyEntry const> parts, Span const& span) {
  HourlyEntry out = leadingOf(parts, span);
  HourlyEntry const& first = parts.front();
  bool const goesOn =
      parts.size() > 1 && parts[1].begin - first.begin == hours(1) && span.begin > first.begin;
  interpolate(first, goesOn ? parts[1] : first, goesOn ? ExactHours(span.begin - first.begin).count() : 0,
              out);
  shareOut(parts, span, out);
  out.begin = span.begin;
  return out;
}

/// The entries whose hours reach into the span; `from` moves on over those that end before it.
std::span<HourlyEntry const> partsIn(std::vector<HourlyEntry> const& entries, Span const& span,
                                     std::size_t& from) {
  while (from < entries.size() && entries[from].begin + hours(1) <= span.begin) ++from;
  std::size_t end = from;
  while (end < entries.size() && entries[end].begin < span.end) ++end;
  return std::span(entries).subspan(from, end - from);
}

}  // namespace

std::vector<Instant> localHours(Instant from, Instant to, Calendar const& calendar) {
  std::vector<Instant> begins;
  Instant const first = from - (calendar.local(from) - hourOf(calendar.local(from)));
  for (Instant at = first; at < to; at = nextReading(at, calendar)) {
    if (beginsHour(at, calendar)) begins.push_back(at);
  }
  return begins;
}

std::vector<HourlyEntry> onLocalHours(std::vector<HourlyEntry> entries, Calendar const& calendar) {
  if (entries.empty() || areLocalHours(entries, calendar)) return entries;
  if (entries.back().begin - entries.front().begin > kLongestSpan) return entries;
  auto const begins = localHours(entries.front().begin, entries.back().begin + hours(1), calendar);
  std::vector<HourlyEntry> out;
  out.reserve(begins.size());
  std::size_t from = 0;
  for (std::size_t i = 0; i < begins.size(); ++i) {
    Span const span{begins[i], i + 1 < begins.size() ? begins[i + 1] : begins[i] + hours(1)};
    auto const parts = partsIn(entries, span, from);
    // An hour of which only the end is known is there at the very begin, so that the present has its hour.
    if (parts.empty() || (i > 0 && parts.front().begin > span.begin)) continue;
    out.push_back(hourFrom(parts, span));
  }
  roundToTenths(out);
  return out;
}

void roundToTenths(std::vector<HourlyEntry>& entries) {
  TenthsOf tenths;
  for (HourlyEntry& entry : entries) {
    if (entry.precipitation) entry.precipitation = tenths.next(*entry.precipitation);
  }
}

double TenthsOf::next(double part) {
  constexpr double kNoAmount = 1e6;
  if (!(std::abs(part) < kNoAmount)) return part;
  sum_ += part;
  double const upTo = roundHalfAway(sum_ * 10) / 10;
  double const tenths = roundHalfAway((upTo - written_) * 10) / 10;
  written_ = upTo;
  return tenths;
}

double directionBetween(double from, double to, double part) {
  double const turn = std::remainder(to - from, 360);
  double const direction = std::fmod(from + turn * part + 360, 360);
  return direction < 0 ? direction + 360 : direction;
}

}  // namespace nimbara
