// What falls, and fog, as a brief tells it part by part: which events belong to a part of the day, their
// clauses and amounts. Pure.
#pragma once

#include "analysis/brief/brief_words.h"
#include "analysis/event_detector.h"
#include "model/weather_data.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace nimbara {

/// A part of the day.
struct BriefSpan {
  Instant begin;
  Instant end;
};

/// The hours that have not ended before the span and begin within it.
std::span<HourlyForecast const> hoursWithin(WeatherData const& weather, BriefSpan const& span);

/// All of a kind within a span as one; told as coming at times where long pauses part them.
struct MergedEvent {
  WeatherEvent event;
  bool isAtTimes = false;
};

class BriefEvents {
 public:
  /// What the present says of them.
  struct Present {
    Instant now;
    Instant first;                  ///< where the first span begins
    Instant dryUntil;               ///< by the nowcast
    std::optional<bool> isFalling;  ///< something does at present
  };

  /// All that is given outlives it.
  BriefEvents(WeatherData const& weather, std::vector<WeatherEvent> const& events, BriefWords const& words,
              Present const& present)
      : weather_(weather), events_(events), words_(words), present_(present) {}

  /// At most two, by time; of those that overlap the one that matters more.
  std::vector<MergedEvent> told(BriefSpan const& span) const;
  /// "light rain from 2 PM to 5 PM".
  std::string clauseOf(MergedEvent const& told, BriefSpan const& span) const;
  /// "about 6 mm"; empty where there is none worth a word, as of fog.
  std::string amountOf(MergedEvent const& told, BriefSpan const& span) const;

 private:
  std::optional<MergedEvent> toldOf(EventKind kind, BriefSpan const& span) const;
  bool isToldBefore(WeatherEvent const& event, BriefSpan const& span) const;
  double amountIn(BriefSpan const& span, EventKind kind) const;
  bool isRunning(MergedEvent const& told, BriefSpan const& span) const;

  WeatherData const& weather_;
  std::vector<WeatherEvent> const& events_;
  BriefWords const& words_;
  Present present_;
};

}  // namespace nimbara
