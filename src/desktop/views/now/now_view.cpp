#include "desktop/views/now/now_view.h"

#include "app/words/nowcast_text.h"
#include "app/words/station_text.h"
#include "base/sun_moon.h"
#include "base/words/compass_point.h"
#include "base/words/country_names.h"
#include "desktop/views/now/next_hours.h"
#include "desktop/views/now/now_cards.h"
#include "desktop/views/sky/sky_colours.h"
#include "gazetteer/gazetteer.h"
#include "model/present.h"
#include "model/process.h"
#include "model/upcoming_hours.h"

#include <algorithm>
#include <limits>
#include <span>

namespace nimbara {

namespace {

Coordinate coordinateOf(WeatherData const& data) {
  return {data.location.latitude, data.location.longitude};
}

/// A place that was saved in English has its country's English name.
std::string countryOf(Place const& place, std::string const& language) {
  std::string_view const code = describePlace(place.coordinate).countryCode;
  bool const isEnglish = !code.empty() && place.country == countryName(code, "en");
  return isEnglish ? countryName(code, language) : place.country;
}

std::string areaOf(Place const& place, std::string const& language) {
  std::string area = place.region == place.name ? std::string() : place.region;
  std::string const country = countryOf(place, language);
  if (!country.empty() && country != place.name) area += (area.empty() ? "" : ", ") + country;
  return area;
}

std::string nameOf(Place const& place) {
  return place.name.empty() ? formatCoordinate(place.coordinate) : place.name;
}

std::string sourceOf(WeatherState const& state, ViewContext const& context) {
  if (!context.standIn.empty()) return context.texts.format("report.standIn", context.standIn);
  auto const provider = state.currentWeatherProvider;
  return context.text("provider." + std::string(provider ? enumName(*provider) : "unknown"));
}

std::string noticeOf(WeatherState const& state, ViewContext const& context, TimeWords const& words) {
  std::string notice;
  if (state.isShowingStaleData && state.lastUpdated) {
    notice = context.texts.format("desktop.olderSince", words.moment(*state.lastUpdated, context.now),
                                  ageText(*state.lastUpdated, context.now, context.texts));
  }
  if (state.error && state.error->kind != AppError::Case::noLocation) {
    notice += (notice.empty() ? "" : " ") + state.error->text(context.texts);
  }
  if (state.askAgainAt && context.now < *state.askAgainAt) {
    bool const isRefused = state.error && state.error->cause && state.error->cause->isRefusal();
    notice += (notice.empty() ? "" : " ") +
              context.texts.format(
                  isRefused ? "desktop.askAgain.refused" : "desktop.askAgain.tooSoon",
                  words.moment(std::chrono::ceil<std::chrono::minutes>(*state.askAgainAt), context.now));
  }
  return notice;
}

void fillPresent(NowView& view, Present const& present, ViewContext const& context) {
  view.hasReading = true;
  view.temperature = context.degrees(present.tempC, present.tempF);
  view.feelsLike =
      context.texts.format("report.feelsLike", context.degrees(present.feelsLikeC, present.feelsLikeF));
  view.isDay = present.isDay;
  view.condition = context.condition(present.condition, view.isDay);
  view.sky = skyName(present.condition);
}

/// "Last reading, Friday 10:15: 20 °C, Clear.", for a present that nothing covers.
std::string lastReadingOf(WeatherData const& data, ViewContext const& context) {
  auto const last = lastReading(data);
  if (!last) return {};
  TimeWords const words(context.texts, calendarOf(data, context.fallback));
  return context.texts.format(
      "report.lastReading", words.moment(*last->readAt, context.now),
      context.temperature(last->tempC, last->tempF) + ", " + context.condition(last->condition, last->isDay));
}

/// Nothing of a station that stands elsewhere.
std::string stationOf(WeatherState const& state, ViewContext const& context) {
  if (!state.station || state.station->isElsewhere) return {};
  StationShown const& shown = *state.station;
  std::string lines = liveText(shown, context.units, context.texts, context.now);
  bool const mustSignIn = shown.reading.state == StationState::signInAgain;
  bool const isUnknown = lines.empty() && (shown.doubts.empty() || mustSignIn);
  if (isUnknown) return stationProblemText(shown.reading, context.texts);
  for (DoubtedValue const& doubted : shown.doubts) {
    lines += (lines.empty() ? "" : "\n") + doubtText(doubted, context.units, context.texts, context.now);
  }
  return lines;
}

std::string markOf(WeatherState const& state, StationQuantity quantity, ViewContext const& context) {
  if (!state.station) return {};
  return markText(*state.station, quantity, context.units, context.texts, context.now);
}

struct MarkedTile {
  std::string_view kind;
  StationQuantity quantity;
};

constexpr MarkedTile kMarked[] = {{"wind", StationQuantity::windSpeed},
                                  {"humidity", StationQuantity::humidity},
                                  {"pressure", StationQuantity::pressure},
                                  {"precipitation", StationQuantity::rainLastHour}};

void showSky(NowView& view, SkyColours const& sky) {
  view.skyTop = hexText(sky.top);
  view.skyBottom = hexText(sky.bottom);
}

/// The sky that goes with what a radar or a model sees fall.
WeatherConditionCode skyOf(Fall fall) {
  constexpr WeatherConditionCode kSkies[] = {WeatherConditionCode::lightRain, WeatherConditionCode::lightRain,
                                             WeatherConditionCode::lightSleet,
                                             WeatherConditionCode::lightSnow};
  return kSkies[static_cast<std::size_t>(fall)];
}

/// The nowcast is nearer to the present than the forecast: a clear sky from which it rains is none.
void adoptNowcast(NowView& view, std::optional<Present>& present, NowcastNow const& nowcast,
                  ViewContext const& context) {
  if (!present || !nowcast.isWet || isPrecipitation(present->condition)) return;
  present->condition = skyOf(nowcast.fall);
  view.condition = context.text("nowcast.fall." + std::string(enumName(nowcast.fall)));
  view.sky = skyName(present->condition);
}

void fillWeather(NowView& view, WeatherState const& state, ViewContext const& context) {
  WeatherData const& data = *state.weatherData;
  view.hasWeather = true;
  auto present = presentAt(data, context.now);
  NowcastNow const nowcast =
      state.nowcast ? nowcastNow(withFall(*state.nowcast, data.allHourly), context.now) : NowcastNow();
  if (present) {
    fillPresent(view, *present, context);
  } else {
    std::string const last = lastReadingOf(data, context);
    if (!last.empty()) view.notice += (view.notice.empty() ? "" : " ") + last;
  }
  if (DailyForecast const* const day = dayAt(data, context.now)) {
    view.range = context.texts.format("desktop.range", context.degrees(day->maxTempC, day->maxTempF),
                                      context.degrees(day->minTempC, day->minTempF));
  }
  adoptNowcast(view, present, nowcast, context);
  view.sentence = aheadSentence(state, nowcast, context);
  showSky(view, skyColours(present ? present->condition : WeatherConditionCode::unknown,
                           sunPosition(context.now, coordinateOf(data)).altitude));
}

/// "1.2 hPa in three hours" matters to nobody below this.
constexpr double kSteadyHPa = 1;

std::string pressureTrend(WeatherData const& data, ViewContext const& context) {
  auto const* const now = hourAt(data.allHourly, context.now);
  auto const* const later = hourAt(data.allHourly, context.now + std::chrono::hours(3));
  if (now == nullptr || later == nullptr || !later->has(WeatherDetailField::pressure)) return {};
  double const change = later->pressure - now->pressure;
  return context.text(change > kSteadyHPa    ? "desktop.rising"
                      : change < -kSteadyHPa ? "desktop.falling"
                                             : "desktop.steady");
}

std::string uvWord(int index, ViewContext const& context) {
  return context.text(index < 3    ? "desktop.uv.low"
                      : index < 6  ? "desktop.uv.moderate"
                      : index < 8  ? "desktop.uv.high"
                      : index < 11 ? "desktop.uv.veryHigh"
                                   : "desktop.uv.extreme");
}

/// The word of the first row whose bound lies above the value; the last row has none.
struct WordRow {
  double below;
  std::string_view key;
};

std::string wordOf(std::span<WordRow const> rows, double value, ViewContext const& context) {
  auto const row = std::ranges::find_if(rows, [value](WordRow const& one) { return value < one.below; });
  return context.text((row == rows.end() ? rows.back() : *row).key);
}

constexpr double kNoBound = std::numeric_limits<double>::infinity();
/// Kilometres, in the classes of the shipping forecast.
constexpr WordRow kVisibilityWords[] = {{1, "desktop.visibility.veryPoor"},
                                        {4, "desktop.visibility.poor"},
                                        {10, "desktop.visibility.moderate"},
                                        {20, "desktop.visibility.good"},
                                        {kNoBound, "desktop.visibility.veryGood"}};
/// Degrees Celsius: how moist air feels.
constexpr WordRow kDewPointWords[] = {{10, "desktop.dewPoint.dry"},
                                      {16, "desktop.dewPoint.comfortable"},
                                      {21, "desktop.dewPoint.humid"},
                                      {kNoBound, "desktop.dewPoint.oppressive"}};

TileView windTile(Present const& present, ViewContext const& context) {
  TileView tile;
  tile.kind = "wind";
  tile.title = context.text("report.wind");
  tile.value = context.wind(present.windSpeedKmph);
  tile.direction = compassDegrees(present.windDirection).value_or(0);
  tile.note = compassPoint(present.windDirection, context.texts);
  if (present.windGustKmph && *present.windGustKmph > present.windSpeedKmph) {
    tile.note += (tile.note.empty() ? "" : ", ") +
                 context.texts.format("report.gusts", context.wind(*present.windGustKmph));
  }
  return tile;
}

/// A gauge from one value to another and what stands at its ends.
struct Gauge {
  double from;
  double to;
  std::string fromText;
  std::string toText;
};

class Tiles {
 public:
  Tiles(std::vector<TileView>& tiles, ViewContext const& context) : tiles_(tiles), context_(context) {}

  void add(std::string kind, std::string_view title, std::string value, std::string note, double measured,
           Gauge gauge) {
    TileView& tile = tiles_.emplace_back();
    tile.kind = std::move(kind);
    tile.title = context_.text(title);
    tile.value = std::move(value);
    tile.note = std::move(note);
    tile.share = std::clamp((measured - gauge.from) / (gauge.to - gauge.from), 0.0, 1.0);
    tile.scaleFrom = std::move(gauge.fromText);
    tile.scaleTo = std::move(gauge.toText);
  }
  void addPercent(std::string kind, std::string_view title, int value) {
    add(std::move(kind), title, percent(value), {}, value, {0, 100, {}, {}});
  }

 private:
  std::vector<TileView>& tiles_;
  ViewContext const& context_;
};

/// The details beside the wind, those that are known.
void addMeasures(std::vector<TileView>& all, WeatherData const& data, Present const& present,
                 ViewContext const& context) {
  Tiles tiles(all, context);
  auto const degrees = [&](double celsius) {
    return context.degrees(celsius, fahrenheitFromCelsius(celsius));
  };
  if (present.humidity) tiles.addPercent("humidity", "report.humidity", *present.humidity);
  if (present.pressure) {
    tiles.add("pressure", "report.pressure", context.pressure(*present.pressure),
              pressureTrend(data, context), *present.pressure,
              {960, 1050, context.pressure(960), context.pressure(1050)});
  }
  if (present.uvIndex) {
    tiles.add("uv", "report.uvIndex", std::to_string(*present.uvIndex), uvWord(*present.uvIndex, context),
              *present.uvIndex, {0, 11, "0", "11+"});
  }
  if (present.visibility) {
    tiles.add("visibility", "report.visibility", context.visibility(*present.visibility),
              wordOf(kVisibilityWords, *present.visibility, context), *present.visibility,
              {0, 40, "0", context.visibility(40)});
  }
  if (present.dewPointC) {
    tiles.add("dewPoint", "report.dewPoint",
              context.degrees(*present.dewPointC, present.dewPointF.value_or(0)),
              wordOf(kDewPointWords, *present.dewPointC, context), *present.dewPointC,
              {-10, 25, degrees(-10), degrees(25)});
  }
  if (present.cloudCover) tiles.addPercent("clouds", "report.clouds", *present.cloudCover);
  if (present.precipMM) {
    tiles.add(
        "precipitation", "report.precipitation", context.precipitation(*present.precipMM),
        present.chanceOfRain ? context.texts.format("desktop.chance", percent(*present.chanceOfRain)) : "",
        *present.precipMM, {0, 10, "0", context.precipitation(10)});
  } else if (present.chanceOfRain) {
    tiles.addPercent("precipitation", "report.precipitation", *present.chanceOfRain);
  }
}

/// Rise and set of the local day that holds `now`.
struct DayOfSky {
  RiseSet sun;
  RiseSet moon;
};

DayOfSky dayOfSky(Coordinate place, Calendar const& calendar, Instant now) {
  Date const today = calendar.day(now);
  Instant const begin = calendar.startOfDay(today);
  Instant const end = calendar.startOfDay(addDays(today, 1));
  return {sunRiseSet(begin, end, place), moonRiseSet(begin, end, place)};
}

std::string clockOr(std::optional<Instant> instant, TimeWords const& words, std::string_view otherwise) {
  return instant ? words.clock(*instant) : std::string(otherwise);
}

void fillSun(SkyView& view, RiseSet const& sun, TimeWords const& words, ViewContext const& context) {
  view.sunrise = clockOr(sun.rise, words, "");
  view.sunset = clockOr(sun.set, words, "");
  if (!sun.rise && !sun.set) {
    view.sun = context.text(sun.alwaysUp ? "desktop.polarDay" : "desktop.polarNight");
    return;
  }
  view.sun =
      context.texts.format("report.riseSet", clockOr(sun.rise, words, "–"), clockOr(sun.set, words, "–"));
  if (!sun.rise || !sun.set || *sun.set <= *sun.rise) return;
  view.hasArc = true;
  auto const length = std::chrono::floor<std::chrono::minutes>(*sun.set - *sun.rise).count();
  view.sun += ", " + context.texts.format("report.dayLength", length / 60, length % 60);
  view.sunShare = static_cast<double>((context.now - *sun.rise).count()) /
                  static_cast<double>((*sun.set - *sun.rise).count());
}

}  // namespace

NowView nowView(WeatherState const& state, std::optional<Place> const& place, ViewContext const& context,
                Settings const* settings) {
  NowView view;
  view.isLoading = state.isLoading;
  view.hasPlace = place.has_value();
  showSky(view, skyColours(WeatherConditionCode::cloudy, -90));
  if (!place) return view;
  view.place = nameOf(*place);
  view.area = areaOf(*place, context.texts.language());
  Calendar const calendar =
      state.weatherData ? calendarOf(*state.weatherData, context.fallback) : context.fallback;
  TimeWords const words(context.texts, calendar);
  view.notice = noticeOf(state, context, words);
  view.isFailure = state.error.has_value();
  view.localTime = words.format(context.now, context.texts.text("desktop.localTime"));
  if (!state.weatherData) {
    showSky(view,
            skyColours(WeatherConditionCode::unknown, sunPosition(context.now, place->coordinate).altitude));
    return view;
  }
  if (state.lastUpdated) view.age = ageText(*state.lastUpdated, context.now, context.texts);
  view.source = sourceOf(state, context);
  fillWeather(view, state, context);
  view.station = stationOf(state, context);
  if (view.hasReading) view.mark = markOf(state, StationQuantity::temperature, context);
  NowCards cards = nowCards(*state.weatherData, state, context, settings);
  view.brief = std::move(cards.brief);
  view.advice = std::move(cards.advice);
  for (std::string const* part : {&view.place, &view.temperature, &view.condition, &view.feelsLike}) {
    if (!part->empty()) view.summary += (view.summary.empty() ? "" : ", ") + *part;
  }
  return view;
}

std::vector<TileView> tileViews(WeatherState const& state, ViewContext const& context) {
  if (!state.weatherData) return {};
  WeatherData const& data = *state.weatherData;
  auto const present = presentAt(data, context.now);
  if (!present) return {};
  std::vector<TileView> tiles;
  if (present->knowsWind) tiles.push_back(windTile(*present, context));
  addMeasures(tiles, data, *present, context);
  for (TileView& tile : tiles) {
    auto const* const marked = std::ranges::find(kMarked, tile.kind, &MarkedTile::kind);
    if (marked != std::ranges::end(kMarked)) tile.mark = markOf(state, marked->quantity, context);
  }
  return tiles;
}

SkyScene sceneView(WeatherState const& state, ViewContext const& context) {
  if (!state.weatherData) return {};
  auto const present = presentAt(*state.weatherData, context.now);
  return skyScene(present ? present->condition : WeatherConditionCode::unknown,
                  coordinateOf(*state.weatherData), context.now);
}

SkyView skyView(WeatherState const& state, ViewContext const& context) {
  SkyView view;
  if (!state.weatherData) return view;
  WeatherData const& data = *state.weatherData;
  Calendar const calendar = calendarOf(data, context.fallback);
  DayOfSky const day = dayOfSky(coordinateOf(data), calendar, context.now);
  TimeWords const words(context.texts, calendar);
  fillSun(view, day.sun, words, context);
  view.sunIsUp = isDayAt(data, context.now);
  MoonState const moon = moonState(context.now);
  view.moonIllumination = moon.illumination;
  view.moonIsWaxing = moon.elongation < 180;
  view.fromSouth = data.location.latitude < 0;
  Date const today = calendar.day(context.now);
  MoonPhase const phase = moonPhase(calendar.startOfDay(today), calendar.startOfDay(addDays(today, 1)));
  view.moon = context.text("moon." + std::string(enumName(phase))) + ", " +
              percent(static_cast<int>(std::lround(100 * moon.illumination)));
  view.moonTimes = context.texts.format("report.riseSet", clockOr(day.moon.rise, words, "–"),
                                        clockOr(day.moon.set, words, "–"));
  return view;
}

}  // namespace nimbara
