#include "analysis/precip_predictor.h"

#include <algorithm>

namespace nimbara {

namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;

constexpr minutes kUsualStep{5};
constexpr minutes kReach{120};
constexpr minutes kAlmostReach{100};  ///< from here on minutes say more than anybody knows
constexpr std::string_view kFallKeys[] = {"precipitation", "rain", "sleet", "snow"};

milliseconds shortestOf(std::vector<NowcastStep> const& steps) {
  milliseconds shortest = steps.empty() ? milliseconds(kUsualStep) : milliseconds::max();
  for (NowcastStep const& step : steps) shortest = std::min(shortest, step.to - step.from);
  return std::max(shortest, milliseconds(minutes(1)));
}

/// Of a spell that is partly rain and partly snow.
Fall joined(Fall one, Fall other) {
  if (one == other || other == Fall::unknown) return one;
  return one == Fall::unknown ? other : Fall::sleet;
}

/// As a sentence has it: "18:40 Uhr".
std::string clockOf(Instant instant, Texts const& texts, TimeWords const& words) {
  bool const isOfTwelve = texts.text("time.clockPattern").find('H') == std::string_view::npos;
  return isOfTwelve ? words.clock(instant) : words.format(instant, texts.text("clock.pattern.minute"));
}

minutes wholeMinutes(milliseconds span) {
  return std::chrono::floor<minutes>(span);
}

}  // namespace

PrecipPredictor::PrecipPredictor(Nowcast nowcast) : nowcast_(std::move(nowcast)) {
  std::erase_if(nowcast_.steps, [](NowcastStep const& step) { return step.to <= step.from; });
  std::ranges::stable_sort(nowcast_.steps, {}, &NowcastStep::from);
  step_ = shortestOf(nowcast_.steps);
}

/// Without a gap from now on: what no step covers is a step without a value.
std::vector<NowcastStep> PrecipPredictor::stepsFrom(Instant now) const {
  std::vector<NowcastStep> steps;
  Instant known = now;
  for (NowcastStep step : nowcast_.steps) {
    if (step.to <= known) continue;
    if (step.from > known) steps.push_back({known, step.from, std::nullopt, Fall::unknown});
    if (!steps.empty()) step.from = std::max(step.from, known);
    known = step.to;
    steps.push_back(step);
  }
  return steps;
}

PrecipOutlook PrecipPredictor::outlook(Instant now) const {
  if (nowcast_.kind == NowcastKind::none) return {.state = PrecipOutlook::State::uncovered};
  auto const steps = stepsFrom(now);
  Instant known = now;
  bool isDryKnown = false;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    NowcastStep const& step = steps[i];
    if (isWet(step)) return wetOutlook(steps, i, !isDryKnown);
    if (step.mmPerHour) {
      known = step.to;
      isDryKnown = true;
    } else if (step.to - known >= kShortestGap) {
      break;
    }
  }
  return isDryKnown ? dryOutlook(now, known) : PrecipOutlook();
}

PrecipOutlook PrecipPredictor::dryOutlook(Instant now, Instant dryUntil) const {
  minutes const span = wholeMinutes((dryUntil - now) / step_ * step_);
  if (span <= minutes(0)) return {};
  return {.state = PrecipOutlook::State::dry, .dryFor = std::min(span, kReach)};
}

/// The spell that begins with the step `first`.
PrecipOutlook PrecipPredictor::wetOutlook(std::vector<NowcastStep> const& steps, std::size_t first,
                                          bool isRunning) const {
  using enum PrecipOutlook::State;
  PrecipOutlook out{.state = isRunning ? falls : starts, .fall = steps[first].fall};
  std::size_t last = first;
  for (std::size_t i = first + 1; i < steps.size(); ++i) {
    if (!isWet(steps[i])) continue;
    if (steps[i].from - steps[last].to >= kShortestGap) break;
    out.fall = joined(out.fall, steps[i].fall);
    last = i;
  }
  out.begin = rounded(steps[first].from);
  out.end = rounded(steps[last].to);
  out.isEndOpen = last + 1 == steps.size() || !steps[last + 1].mmPerHour;
  return out;
}

Instant PrecipPredictor::rounded(Instant instant) const {
  auto const since = instant.time_since_epoch() + step_ / 2;
  return Instant(since - since % step_);
}

std::string sentenceOf(PrecipOutlook const& outlook, Texts const& texts, TimeWords const& words) {
  using enum PrecipOutlook::State;
  auto const key = [&](std::string_view form) {
    return "nowcast." + std::string(kFallKeys[static_cast<std::size_t>(outlook.fall)]) + "." +
           std::string(form);
  };
  std::string const end = clockOf(outlook.end, texts, words);
  switch (outlook.state) {
    case uncovered:
      return std::string(texts.text("nowcast.none"));
    case notKnown:
      return std::string(texts.text("nowcast.unknown"));
    case dry:
      if (outlook.dryFor == minutes(120)) return std::string(texts.text("nowcast.dry.twoHours"));
      if (outlook.dryFor > kAlmostReach) return std::string(texts.text("nowcast.dry.almostTwoHours"));
      if (outlook.dryFor == minutes(60)) return std::string(texts.text("nowcast.dry.oneHour"));
      return texts.format("nowcast.dry.minutes", outlook.dryFor.count());
    case starts:
      if (outlook.isEndOpen)
        return texts.format(key("startsOpen"), clockOf(outlook.begin, texts, words), end);
      return texts.format(key("starts"), clockOf(outlook.begin, texts, words),
                          wholeMinutes(outlook.end - outlook.begin).count());
    case falls:
      return texts.format(key(outlook.isEndOpen ? "fallsOpen" : "falls"), end);
  }
  return {};
}

}  // namespace nimbara
