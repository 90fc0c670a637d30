#include "analysis/brief/brief_events.h"

#include "analysis/hour_kind.h"
#include "model/upcoming_hours.h"

#include <algorithm>

namespace nimbara {

namespace {

using std::chrono::hours;

constexpr int kLikely = 55;
constexpr hours kLongPause{4};
/// What ends so soon after a part of the day belongs to that part.
constexpr hours kOverhang{3};
constexpr hours kLeastFog{2};
constexpr double kTraceMM = 0.2;
constexpr std::size_t kMostEvents = 2;

/// Those that matter more come first.
constexpr EventKind kByWeight[] = {EventKind::freezingRain, EventKind::thunder, EventKind::snow,
                                   EventKind::sleet,        EventKind::rain,    EventKind::fog};

/// Until when a span tells an event: a little beyond its end what ends there.
Instant endIn(BriefSpan const& span, WeatherEvent const& event) {
  return event.end <= span.end + kOverhang ? std::max(event.end, span.end) : span.end;
}

void join(MergedEvent& told, WeatherEvent const& event) {
  WeatherEvent& joined = told.event;
  told.isAtTimes = told.isAtTimes || event.begin - joined.end >= kLongPause;
  joined.end = event.end;
  if (event.chance) joined.chance = std::max(joined.chance.value_or(0), *event.chance);
  if (joined.totalMM && event.totalMM) *joined.totalMM += *event.totalMM;
  if (joined.totalSnowCm && event.totalSnowCm) *joined.totalSnowCm += *event.totalSnowCm;
  if (event.value > joined.value) joined.condition = event.condition;
}

bool counts(HourFall fall, EventKind kind) {
  return kind == EventKind::thunder        ? falls(fall)
         : kind == EventKind::freezingRain ? fall == HourFall::freezing
         : kind == EventKind::snow         ? fall == HourFall::snow
         : kind == EventKind::sleet        ? fall == HourFall::sleet
                                           : fall == HourFall::rain;
}

}  // namespace

std::span<HourlyForecast const> hoursWithin(WeatherData const& weather, BriefSpan const& span) {
  auto const from = upcomingHours(weather.allHourly, span.begin);
  auto const end = std::ranges::lower_bound(from, span.end, {}, &HourlyForecast::date);
  return {from.begin(), end};
}

/// What only hangs over from the span before was told there.
bool BriefEvents::isToldBefore(WeatherEvent const& event, BriefSpan const& span) const {
  return event.begin < span.begin && event.end <= span.begin + kOverhang && span.begin > present_.now &&
         span.begin > present_.first;
}

std::optional<MergedEvent> BriefEvents::toldOf(EventKind kind, BriefSpan const& span) const {
  std::optional<MergedEvent> all;
  for (WeatherEvent event : events_) {
    if (event.kind != kind || event.begin >= span.end || event.end <= span.begin) continue;
    if (kind != EventKind::fog) event.begin = std::max(event.begin, present_.dryUntil);
    bool const isTrace = event.totalMM && *event.totalMM < kTraceMM;
    bool const isShortFog = kind == EventKind::fog && event.end - event.begin < kLeastFog;
    if (event.begin >= event.end || isTrace || isShortFog || isToldBefore(event, span)) continue;
    all ? join(*all, event) : void(all = MergedEvent{event});
  }
  return all;
}

std::vector<MergedEvent> BriefEvents::told(BriefSpan const& span) const {
  std::vector<MergedEvent> events;
  for (EventKind const kind : kByWeight) {
    auto found = toldOf(kind, span);
    if (!found) continue;
    bool const overlaps = std::ranges::any_of(events, [&](MergedEvent const& other) {
      return found->event.begin < other.event.end && other.event.begin < found->event.end;
    });
    if (!overlaps && events.size() < kMostEvents) events.push_back(*found);
  }
  std::ranges::stable_sort(events, {}, [](MergedEvent const& one) { return one.event.begin; });
  return events;
}

/// It should be there now.
bool BriefEvents::isRunning(MergedEvent const& told, BriefSpan const& span) const {
  return told.event.begin <= present_.now && span.begin == present_.now;
}

std::string BriefEvents::clauseOf(MergedEvent const& told, BriefSpan const& span) const {
  std::string name = words_.nameOf(told.event);
  bool const isContradicted =
      isRunning(told, span) && told.event.kind != EventKind::fog && present_.isFalling == false;
  if (isContradicted || (told.event.chance && *told.event.chance < kLikely))
    name = words_.texts().format("brief.possible", name);
  if (told.isAtTimes) return words_.texts().format("brief.atTimes", name);
  return words_.during(std::move(name), told.event, span.begin, endIn(span, told.event));
}

/// mm of that kind that fall within the span.
double BriefEvents::amountIn(BriefSpan const& span, EventKind kind) const {
  double mm = 0;
  for (HourlyForecast const& hour : hoursWithin(weather_, span)) {
    if (counts(fallOf(hour), kind) && hour.knows(ForecastValue::precipitation)) mm += hour.precipMM;
  }
  return mm;
}

std::string BriefEvents::amountOf(MergedEvent const& told, BriefSpan const& span) const {
  WeatherEvent const& event = told.event;
  if (event.kind == EventKind::fog) return {};
  double const mm = amountIn({span.begin, endIn(span, event)}, event.kind);
  bool const isSnow = event.kind == EventKind::snow && event.totalMM && *event.totalMM > 0;
  if (!isSnow) return words_.rainAmount(mm);
  double const depth = event.totalSnowCm.value_or(0) / *event.totalMM;
  return words_.snowAmount(mm * depth, present_.isFalling == true && isRunning(told, span));
}

}  // namespace nimbara
