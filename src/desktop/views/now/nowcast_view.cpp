#include "desktop/views/now/nowcast_view.h"

#include "app/words/nowcast_text.h"
#include "model/process.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

constexpr std::chrono::milliseconds kSpan = std::chrono::hours(2);

bool isCurrent(WeatherState const& state) {
  return state.weatherData && state.nowcast && state.nowcast->state == NowcastReading::State::current;
}

/// With rain and snow named.
NowcastReading namedReading(WeatherState const& state) {
  return withFall(*state.nowcast, state.weatherData->allHourly);
}

TimeWords wordsOf(WeatherState const& state, ViewContext const& context) {
  return {context.texts,
          state.weatherData ? calendarOf(*state.weatherData, context.fallback) : context.fallback};
}

/// The beginning of the first step that is not over.
Instant beginOf(Nowcast const& nowcast, Instant now) {
  Instant begin = now;
  for (NowcastStep const& step : nowcast.steps) {
    if (step.to > now) begin = std::min(begin, step.from);
  }
  return std::max(begin, now - std::chrono::minutes(15));
}

double shareOf(Instant instant, Instant begin) {
  return std::clamp(static_cast<double>((instant - begin).count()) / static_cast<double>(kSpan.count()), 0.0,
                    1.0);
}

std::string kindOf(NowcastStep const& step) {
  if (!step.mmPerHour) return "notKnown";
  return isWet(step) ? std::string(enumName(step.fall)) : "dry";
}

/// A drizzle can be seen, and a cloudburst is not the only thing that can.
double heightOf(NowcastStep const& step) {
  constexpr double kHighest = 10;  // mm/h, heavy rain
  constexpr double kLowest = 0.2;
  if (!isWet(step)) return 0;
  return kLowest + (1 - kLowest) * std::sqrt(std::min(*step.mmPerHour, kHighest) / kHighest);
}

std::string readingOf(NowcastStep const& step, std::string const& kind, TimeWords const& words,
                      ViewContext const& context) {
  std::string const clock = words.clock(step.from);
  std::string const name = context.text("nowcast.fall." + kind);
  if (!isWet(step)) return context.texts.format("nowcast.bar", clock, name);
  return context.texts.format("nowcast.bar.wet", clock, name, context.precipitation(*step.mmPerHour) + "/h");
}

}  // namespace

NowcastView nowcastView(WeatherState const& state, ViewContext const& context) {
  NowcastView view;
  if (!state.nowcast || !state.weatherData) return view;
  NowcastReading const reading = namedReading(state);
  if (reading.state == NowcastReading::State::none) return view;
  TimeWords const words = wordsOf(state, context);
  NowcastText text = nowcastText(reading, context.now, context.texts, words);
  if (reading.state == NowcastReading::State::failed) {
    view.failure = std::move(text.sentence);
    return view;
  }
  view.isShown = true;
  view.sentence = std::move(text.sentence);
  view.source = std::move(text.source);
  Instant const begin = beginOf(reading.nowcast, context.now);
  view.first = words.clock(begin);
  view.middle = words.clock(begin + kSpan / 2);
  view.last = words.clock(begin + kSpan);
  view.now = shareOf(context.now, begin);
  return view;
}

std::vector<NowcastBarView> nowcastBarViews(WeatherState const& state, ViewContext const& context) {
  std::vector<NowcastBarView> bars;
  if (!isCurrent(state)) return bars;
  Nowcast const nowcast = namedReading(state).nowcast;
  TimeWords const words = wordsOf(state, context);
  Instant const begin = beginOf(nowcast, context.now);
  for (NowcastStep const& step : nowcast.steps) {
    if (step.to <= begin || step.from >= begin + kSpan) continue;
    std::string kind = kindOf(step);
    std::string reading = readingOf(step, kind, words, context);
    bars.push_back({shareOf(step.from, begin), shareOf(step.to, begin), std::move(kind), heightOf(step),
                    std::move(reading)});
  }
  return bars;
}

std::vector<NowcastKindView> nowcastKindViews(std::vector<NowcastBarView> const& bars,
                                              ViewContext const& context) {
  std::vector<NowcastKindView> kinds;
  for (char const* const kind : {"rain", "sleet", "snow", "unknown", "notKnown"}) {
    if (std::ranges::find(bars, kind, &NowcastBarView::kind) != bars.end())
      kinds.push_back({kind, context.text("nowcast.fall." + std::string(kind))});
  }
  return kinds;
}

}  // namespace nimbara
