#include "base/text/number.h"
#include "cli/pages/forecast/forecast_report.h"
#include "model/present.h"
#include "model/upcoming_hours.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

constexpr int kLabelWidth = 8;
constexpr int kMostHours = 24;
constexpr int kLineRows = 3;
constexpr int kLevelsPerRow = 3;
/// Rain that fills the whole bar.
constexpr double kFullBarMm = 5;

struct StripHour {
  HourlyForecast const* forecast;
  bool isDay;
};

using Hours = std::vector<StripHour>;

Hours upcoming(WeatherData const& data, Instant now, std::size_t most) {
  Hours hours;
  auto const ahead = upcomingHours(data.allHourly, now);
  if (ahead.empty()) return hours;
  Instant const begin = ahead.front().date;
  for (DailyForecast const& day : data.daily) {
    for (HourlyForecast const& hour : day.hourly) {
      bool const within = hour.date >= begin && hour.date < begin + std::chrono::hours(24);
      if (within && hours.size() < most) hours.push_back({&hour, isDayIn(data, hour)});
    }
  }
  return hours;
}

/// The strip's grid: a label and one column an hour.
class Strip {
 public:
  Strip(Hours hours, ReportContext const& context, int column)
      : hours_(std::move(hours)), context_(context), column_(column) {
    auto const temperatureOf = [](StripHour const& hour) { return hour.forecast->tempC; };
    lowest_ = temperatureOf(std::ranges::min(hours_, {}, temperatureOf));
    highest_ = temperatureOf(std::ranges::max(hours_, {}, temperatureOf));
  }

  std::string str() const {
    std::string out = clocks();
    std::size_t index = 0;
    out += row("report.sky", [&](HourlyForecast const& hour) {
      std::string_view const glyph = style().glyph(hour.condition, hours_[index++].isDay);
      return style().painted(right(glyph), conditionColour(hour.condition));
    });
    out += numbers(
        symbol(context_.options.units.temperature),
        [&](HourlyForecast const& hour) { return temperature(hour); },
        [&](std::string const& cells, HourlyForecast const& hour) {
          return style().paintedTemperature(cells, hour.tempC);
        });
    for (int line = kLineRows - 1; line >= 0; --line) out += temperatureLine(line);
    return out + precipitation() + wind();
  }

 private:
  Style const& style() const { return context_.style(); }
  std::string right(std::string_view text) const { return style().cell(text, column_, Align::right); }

  std::string clockOf(StripHour const& hour) const { return context_.words.hourColumn(hour.forecast->date); }

  /// The hours; where they are too long for a column, every second one in the room of two, or every third.
  std::string clocks() const {
    int widest = 0;
    for (StripHour const& hour : hours_) widest = std::max(widest, displayWidth(clockOf(hour)));
    std::size_t const columns = widest / column_ + 1;
    std::size_t index = 0;
    return row("report.hour", [&](HourlyForecast const&) -> std::string {
      std::size_t const own = index++;
      std::string const clock = clockOf(hours_[own]);
      if (columns == 1) return style().painted(right(clock), Colour::dim);
      if (own % columns > 0) return {};
      std::size_t const room = std::min(columns, hours_.size() - own);
      return style().painted(
          style().cell(room < columns ? "" : " " + clock, static_cast<int>(room) * column_), Colour::dim);
    });
  }

  /// A row of numbers; where one would touch its neighbour, every second hour shows its own in two columns.
  template <class Text, class Paint>
  std::string numbers(std::string_view label, Text const& text, Paint const& paint) const {
    bool const crowded = std::ranges::any_of(
        hours_, [&](StripHour const& hour) { return displayWidth(text(*hour.forecast)) >= column_; });
    std::size_t index = 0;
    return labelled(label, [&](HourlyForecast const& hour) -> std::string {
      bool const shown = !crowded || index++ % 2 == 0;
      if (!crowded) return paint(right(text(hour)), hour);
      if (!shown) return {};
      std::string const cells = style().cell(text(hour), column_, Align::right);
      std::string const gap(index < hours_.size() ? static_cast<std::size_t>(column_) : 0, ' ');
      return paint(cells, hour) + gap;
    });
  }
  std::string temperature(HourlyForecast const& hour) const {
    return displayTemperature(hour.tempC, hour.tempF, context_.options.units.temperature);
  }

  template <class Cell>
  std::string labelled(std::string_view label, Cell const& cell) const {
    std::string line = style().painted(style().cell(label, kLabelWidth), Colour::dim);
    for (StripHour const& hour : hours_) line += cell(*hour.forecast);
    return line + "\n";
  }
  template <class Cell>
  std::string row(std::string_view key, Cell const& cell) const {
    return labelled(context_.texts.text(key), cell);
  }

  /// Each hour's temperature as a level of the line's rows; a flat course runs through the middle.
  int level(HourlyForecast const& hour) const {
    constexpr int kTop = kLineRows * kLevelsPerRow - 1;
    if (highest_ - lowest_ < 0.5) return kTop / 2;
    return static_cast<int>(std::lround((hour.tempC - lowest_) / (highest_ - lowest_) * kTop));
  }

  std::string temperatureLine(int line) const {
    return labelled("", [&](HourlyForecast const& hour) {
      int const within = level(hour) - line * kLevelsPerRow;
      bool const here = within >= 0 && within < kLevelsPerRow;
      std::string cells;
      for (int i = 0; i < column_; ++i) cells += here ? style().line(within) : std::string_view(" ");
      return here ? style().paintedTemperature(cells, hour.tempC) : cells;
    });
  }

  std::string precipitation() const {
    PrecipitationUnit const unit = context_.options.units.precipitation;
    bool const dry =
        std::ranges::all_of(hours_, [](StripHour const& hour) { return hour.forecast->precipMM <= 0; });
    std::string out;
    if (!dry) {
      out += labelled(symbol(unit), [&](HourlyForecast const& hour) {
        if (!hour.knows(ForecastValue::precipitation)) return right("");
        int const eighths = hour.precipMM <= 0 ? 0 : 1 + static_cast<int>(hour.precipMM / kFullBarMm * 7.99);
        std::string cells(" ");
        for (int i = 1; i < column_; ++i) cells += style().bar(std::min(eighths, 8));
        return style().painted(cells, hour.chanceOfSnow > 0 ? Colour::snow : Colour::rain);
      });
    }
    if (!isKnown(ForecastValue::precipitationChance)) return out;
    return out + row("report.chance", [&](HourlyForecast const& hour) {
             if (!hour.knows(ForecastValue::precipitationChance)) return right("");
             int const chance = std::max(hour.chanceOfRain, 0);
             return style().painted(right(chance == 0 ? "·" : std::to_string(chance)),
                                    chance >= 50 ? Colour::rain : Colour::dim);
           });
  }

  /// Of one hour at least.
  bool isKnown(ForecastValue value) const {
    return std::ranges::any_of(hours_, [&](StripHour const& hour) { return hour.forecast->knows(value); });
  }

  std::string wind() const {
    if (!isKnown(ForecastValue::windSpeed)) return {};
    WindUnit const unit = context_.options.units.wind;
    std::string out = numbers(
        symbol(unit),
        [&](HourlyForecast const& hour) {
          return hour.knows(ForecastValue::windSpeed) ? display(hour.windSpeedKmph, unit) : std::string();
        },
        [](std::string const& cells, HourlyForecast const&) { return cells; });
    return out + labelled("", [&](HourlyForecast const& hour) {
             return style().painted(right(style().windArrow(hour.windDirection)), Colour::dim);
           });
  }

  Hours hours_;
  ReportContext const& context_;
  int column_;
  double lowest_ = 0;
  double highest_ = 0;
};

}  // namespace

std::string hourStrip(WeatherData const& data, ReportContext const& context) {
  constexpr int kNarrowest = 3;
  constexpr int kWidest = 5;
  int const room = context.options.width - kLabelWidth;
  auto const fitting = static_cast<std::size_t>(std::clamp(room / kNarrowest, 1, kMostHours));
  Hours hours = upcoming(data, context.options.now, fitting);
  if (hours.empty()) return {};
  int const column = std::clamp(room / static_cast<int>(fitting), kNarrowest, kWidest);
  return Strip(std::move(hours), context, column).str();
}

}  // namespace nimbara
