#include "desktop/views/air/air_view.h"

#include "app/state/supplement_state.h"
#include "app/words/hazards/air_text.h"
#include "app/words/hazards/climate_text.h"
#include "base/text/number.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

/// How far the last band of a scale is drawn.
constexpr double kEuropeanEnd = 120, kUsEnd = 500;
/// What fills the height of the chart; more is rare outside high mountains of the tropics.
constexpr double kFullUv = 11;
constexpr int kHoursBetweenLabels = 6;

HazardWords wordsOf(SupplementState const& state, ViewContext const& context) {
  Calendar const calendar =
      Calendar::forZone(std::string(timeZoneAt(state.place.coordinate))).value_or(context.fallback);
  return {context.texts, context.units, calendar, context.now};
}

bool isKnown(SupplementState const* state) {
  return state != nullptr && state->airQuality.checkedAt;
}

/// Each band has the same length, as on the services' own scales.
double shareOf(double index, AirScale scale) {
  auto const bands = airBands(scale);
  double from = 0;
  for (std::size_t i = 0; i < bands.size(); ++i) {
    bool const isLast = i + 1 == bands.size();
    double const to = !isLast ? bands[i].most : scale == AirScale::european ? kEuropeanEnd : kUsEnd;
    if (index <= to || isLast) {
      double const within = std::min((index - from) / (to - from), 1.0);
      return (static_cast<double>(i) + within) / static_cast<double>(bands.size());
    }
    from = to;
  }
  return 1;
}

double colourOf(AirBand band) {
  return static_cast<double>(band);
}

void addLine(std::string& text, std::string const& line) {
  if (!line.empty()) text += (text.empty() ? "" : "\n") + line;
}

void addAir(AirView& view, SupplementState const& state, ViewContext const& context,
            HazardWords const& words) {
  auto const& reading = state.airQuality;
  AirScale const scale = airScaleAt(state.place.coordinate);
  view.isAsked = reading.isSettled();
  view.scale = context.text("desktop.air.scale." + std::string(enumName(scale)));
  view.notice = uncheckedText("air", hazardCheck(reading, true), words);
  if (!reading.checkedAt) return;
  AirText const text = airText(reading.data, state.place.coordinate, reading.checkedAt, words);
  auto const index = airIndexOf(reading.data.now, scale);
  view.isKnown = index.has_value();
  view.sentence = text.index;
  if (index) {
    view.value = roundedText(index->value);
    view.band = bandText(index->band, context.texts);
    view.colour = colourOf(index->band);
    view.share = shareOf(index->value, scale);
  }
  view.leading = text.leading;
  view.peak = text.peak;
  view.uv = text.uv;
  for (std::string const& line : text.protection) addLine(view.protection, line);
  view.pollenState = text.pollenState;
  view.source = text.source;
}

void addClimate(AirView& view, SupplementState const& state, HazardWords const& words) {
  auto const& reading = state.climate;
  view.isClimateAsked = reading.isSettled();
  bool const isAny = reading.data.usual.has_value();
  view.climateNotice = uncheckedText("climate", hazardCheck(reading, isAny), words);
  if (!view.climateNotice.empty() || !view.isClimateAsked) return;
  view.isClimateKnown = isAny;
  ClimateText const text = climateText(reading.data, words);
  view.climate = text.sentence.empty() ? text.band : text.sentence;
  if (!text.sentence.empty()) view.climateBand = text.band;
  view.climateToday = text.today;
  view.climateSource = text.source;
}

std::string joined(std::string const& text, std::string const& more) {
  return text.empty() || more.empty() ? text + more : text + ", " + more;
}

AirHourView hourView(AirQualityHour const& hour, AirScale scale, TimeWords const& time,
                     HazardWords const& words) {
  Texts const& texts = words.texts;
  AirHourView view;
  auto const local = words.calendar.local(hour.time);
  auto const clock =
      std::chrono::floor<std::chrono::hours>(local - std::chrono::floor<std::chrono::days>(local));
  view.startsDay = clock.count() == 0;
  if (view.startsDay) {
    view.label = time.format(hour.time, "EE");
  } else if (clock.count() % kHoursBetweenLabels == 0) {
    view.label = time.hourColumn(hour.time);
  }
  std::string values;
  if (auto const index = airIndexOf(hour.levels, scale)) {
    view.isKnown = true;
    view.share = shareOf(index->value, scale);
    view.colour = colourOf(index->band);
    values = texts.format("desktop.air.reading.index", static_cast<int>(index->value),
                          bandText(index->band, texts));
  }
  if (auto const uv = hour.levels.uvIndex) {
    view.uvShare = std::clamp(*uv / kFullUv, 0.0, 1.0);
    view.wantsProtection = *uv >= kLeastUvToProtect;
    values = joined(values, texts.format("desktop.air.reading.uv", uvShown(*uv)));
  }
  if (values.empty()) values = texts.text("air.notKnown");
  view.reading = time.weekday(hour.time) + " " + time.clock(hour.time) + ": " + values;
  return view;
}

}  // namespace

AirView airView(SupplementState const* state, ViewContext const& context) {
  AirView view;
  if (state == nullptr) return view;
  HazardWords const words = wordsOf(*state, context);
  addAir(view, *state, context, words);
  addClimate(view, *state, words);
  return view;
}

std::vector<AirStepView> airStepViews(SupplementState const* state, ViewContext const& context) {
  std::vector<AirStepView> steps;
  if (state == nullptr) return steps;
  auto const bands = airBands(airScaleAt(state->place.coordinate));
  auto const count = static_cast<double>(bands.size());
  steps.reserve(bands.size());
  for (AirBandRow const& row : bands) {
    auto const at = static_cast<double>(steps.size());
    steps.push_back({at / count, (at + 1) / count, colourOf(row.band), bandText(row.band, context.texts)});
  }
  return steps;
}

std::vector<AirPartView> pollutantViews(SupplementState const* state, ViewContext const& context) {
  std::vector<AirPartView> views;
  if (!isKnown(state)) return views;
  AirScale const scale = airScaleAt(state->place.coordinate);
  AirLevels const& levels = state->airQuality.data.now;
  auto const lines = pollutantLines(levels, context.texts);
  views.reserve(lines.size());
  for (HazardLine const& line : lines) {
    auto const pollutant = static_cast<Pollutant>(views.size());
    AirPartView& view = views.emplace_back(AirPartView{line.title, line.detail, {}, 0, -1});
    auto const part = airPartOf(levels, pollutant, scale);
    if (!part) continue;
    AirBand const band = airBand(scale, std::round(*part));
    view.note = bandText(band, context.texts);
    view.share = shareOf(*part, scale);
    view.colour = colourOf(band);
  }
  return views;
}

std::vector<AirPartView> pollenViews(SupplementState const* state, ViewContext const& context) {
  std::vector<AirPartView> views;
  if (!isKnown(state)) return views;
  PollenOutlook const outlook = pollenOutlook(state->airQuality.data, state->place.coordinate, context.now);
  if (outlook.state != PollenState::values) return views;
  double most = 0;
  for (auto const& value : outlook.highest) most = std::max(most, value.value_or(0));
  for (std::size_t i = 0; i < outlook.highest.size(); ++i) {
    auto const& highest = outlook.highest[i];
    if (highest && *highest <= 0) continue;
    HazardLine const line = pollenLine(static_cast<PollenKind>(i), outlook, context.texts);
    views.push_back({line.title, line.detail, {}, highest.value_or(0) / most, -1});
  }
  return views;
}

std::vector<AirHourView> airHourViews(SupplementState const* state, ViewContext const& context) {
  std::vector<AirHourView> views;
  if (!isKnown(state)) return views;
  HazardWords const words = wordsOf(*state, context);
  TimeWords const time(context.texts, words.calendar);
  AirScale const scale = airScaleAt(state->place.coordinate);
  auto const hours = airHoursAhead(state->airQuality.data, context.now);
  views.reserve(hours.size());
  for (AirQualityHour const& hour : hours) views.push_back(hourView(hour, scale, time, words));
  return views;
}

}  // namespace nimbara
