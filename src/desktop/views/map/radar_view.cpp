#include "desktop/views/map/radar_view.h"

#include "base/text/number.h"
#include "feeds/fetching/failure_words.h"
#include "feeds/imagery/radar/radar_palette.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

using State = RadarProgress::State;

std::string stateOf(RadarProgress const& progress, std::size_t frame) {
  constexpr std::string_view kNames[] = {"waiting", "loading", "shown", "none", "failed"};
  std::string_view const name = kNames[static_cast<std::size_t>(progress.state)];
  if (progress.state != State::shown || frame >= progress.frames.size()) return std::string(name);
  RadarProgress::Frame const& shown = progress.frames[frame];
  if (!shown.isLoaded) return "loading";
  return shown.isDry && !shown.isPartial ? "dry" : "shown";
}

std::string missText(RadarMiss const& miss, ViewContext const& context) {
  return context.texts.format("desktop.map.radar.missed", supplierOf(miss.source).name,
                              failureText(miss.failure, context.texts));
}

std::string noteOf(RadarProgress const& progress, std::string const& state, std::size_t frame,
                   ViewContext const& context) {
  if (state == "none") return context.text("radar.none");
  if (state == "failed") {
    return progress.misses.empty() ? context.text("desktop.map.radar.failed")
                                   : missText(progress.misses.back(), context);
  }
  if (state == "loading" || state == "waiting") return context.text("desktop.map.radar.loading");
  if (isOld(progress.frames[newestOf(progress)].frame, supplierOf(progress.source), context.now))
    return context.text("desktop.map.radar.old");
  if (progress.frames[frame].isPartial) return context.text("desktop.map.radar.partial");
  if (state == "dry") return context.text("desktop.map.radar.dry");
  return progress.misses.empty() ? std::string() : missText(progress.misses.front(), context);
}

std::string ageOf(RadarFrame const& frame, ViewContext const& context) {
  if (!frame.isForecast) return ageText(frame.time, context.now, context.texts);
  auto const ahead = std::chrono::round<std::chrono::minutes>(frame.time - context.now).count();
  return ahead > 0 ? context.texts.format("desktop.map.radar.ahead", static_cast<int>(ahead))
                   : context.text("desktop.map.radar.forecast");
}

/// In two digits that count: "0.15", "2.7", "49".
std::string amountOf(double mmPerHour, Texts const& texts) {
  int const decimals = std::max(0, 1 - static_cast<int>(std::floor(std::log10(mmPerHour))));
  std::string text = fixedDecimal(mmPerHour, decimals);
  if (decimals > 0) text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.pop_back();
  if (auto const point = text.find('.'); point != std::string::npos)
    text.replace(point, 1, texts.decimalPoint());
  return text;
}

}  // namespace

std::string colourText(std::uint32_t rgba) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::uint32_t const argb = rgba >> 8 | rgba << 24;
  std::string text = "#";
  for (int shift = 28; shift >= 0; shift -= 4) text += kDigits[argb >> shift & 0xf];
  return text;
}

std::size_t newestOf(RadarProgress const& progress) {
  std::size_t newest = 0;
  for (std::size_t i = 0; i < progress.frames.size(); ++i) {
    if (!progress.frames[i].frame.isForecast) newest = i;
  }
  return newest;
}

std::size_t frameOf(RadarProgress const& progress, std::optional<Instant> time) {
  auto const found = std::ranges::find_if(
      progress.frames, [time](RadarProgress::Frame const& each) { return time && each.frame.time == *time; });
  return found == progress.frames.end() ? newestOf(progress)
                                        : static_cast<std::size_t>(found - progress.frames.begin());
}

std::size_t nextLoaded(RadarProgress const& progress, std::size_t frame) {
  std::size_t const count = progress.frames.size();
  for (std::size_t step = 1; step < count; ++step) {
    std::size_t const next = (frame + step) % count;
    if (progress.frames[next].isLoaded) return next;
  }
  return frame;
}

RadarView radarView(RadarProgress const& progress, std::optional<Instant> frame, ViewContext const& context) {
  std::size_t const shown = frameOf(progress, frame);
  RadarView view;
  view.state = stateOf(progress, shown);
  view.note = noteOf(progress, view.state, shown, context);
  view.count = static_cast<double>(progress.frames.size());
  if (!progress.frames.empty()) {
    RadarFrame const& at = progress.frames[shown].frame;
    std::size_t const newest = newestOf(progress);
    view.time = TimeWords(context.texts, context.fallback).clock(at.time);
    view.age = ageOf(at, context);
    view.credit = supplierOf(progress.source).credit;
    if (progress.frames[shown].isForeign) view.credit += " · " + context.text("desktop.map.radar.foreign");
    view.veil =
        context.text(progress.misses.empty() ? "desktop.map.radar.uncovered" : "desktop.map.radar.unchecked");
    view.isOld = isOld(progress.frames[newest].frame, supplierOf(progress.source), context.now);
    view.isForecast = at.isForecast;
    view.canPlay = progress.frames.size() > 1;
    view.frame = static_cast<double>(shown);
    view.newest = static_cast<double>(newest);
    view.loaded =
        static_cast<double>(std::ranges::count_if(progress.frames, &RadarProgress::Frame::isLoaded));
  }
  std::string const when = view.time.empty() ? std::string() : view.time + ", " + view.age;
  view.sentence = when.empty() || view.note.empty() ? when + view.note : when + ". " + view.note;
  return view;
}

std::vector<RadarStepView> radarStepViews(RadarProgress const& progress) {
  std::vector<RadarStepView> steps;
  steps.reserve(progress.frames.size());
  for (RadarProgress::Frame const& each : progress.frames)
    steps.push_back({each.frame.isForecast, each.isLoaded});
  return steps;
}

std::vector<RadarColourView> radarColourViews(RadarProgress const& progress, std::optional<Instant> frame,
                                              ViewContext const& context) {
  std::vector<RadarColourView> colours;
  if (progress.frames.empty()) return colours;
  bool const isForeign = progress.frames[frameOf(progress, frame)].isForeign;
  auto const legend = legendOf(isForeign ? supplierOf(progress.source).palette : RadarPalette::own);
  colours.reserve(legend.size());
  for (LegendStop const& stop : legend) {
    colours.push_back({colourText(stop.rgba), amountOf(stop.mmPerHour, context.texts)});
  }
  return colours;
}

}  // namespace nimbara
