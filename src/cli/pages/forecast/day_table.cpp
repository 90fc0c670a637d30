#include "base/text/number.h"
#include "base/words/decimal_text.h"
#include "cli/pages/forecast/forecast_report.h"
#include "model/condition_text.h"
#include "model/day_summary.h"
#include "model/present.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

/// The columns of the table; the bar takes what is left, the sun times come where there is plenty.
struct Columns {
  int day = 8;
  int condition = 17;
  int temperature = 4;
  int bar = 0;
  int chance = 6;
  int amount = 9;
  int wind = 8;
  int sun = 0;

  /// `clock`: cells of the longest clock; `label`: those of the longest name of a day.
  Columns(int width, int clock, int label) {
    day = std::max(day, label + 1);
    constexpr int kDashAndGap = 5;
    int const sunWidth = 2 * clock + kDashAndGap;
    constexpr int kGlyph = 2;
    constexpr int kGaps = 2;
    if (width < 80) condition = std::max(0, condition - (80 - width));
    if (width < 64) amount = 0;
    int const fixed = day + kGlyph + condition + 2 * temperature + kGaps + chance + amount + wind;
    if (width - fixed >= 24 + sunWidth) sun = sunWidth;
    bar = std::clamp(width - fixed - sun, 4, 40);
  }
};

std::string wrappedLines(std::string const& text, ReportContext const& context) {
  std::string out;
  for (std::string const& line : wrapped(context.style().text(text), context.options.width - 1))
    out += " " + line + "\n";
  return out;
}

class Table {
 public:
  Table(WeatherData const& data, ReportContext const& context)
      : data_(data),
        context_(context),
        columns_(context.options.width, clockWidth(context), labelWidth(data, context)) {
    lowest_ = std::ranges::min(data.daily, {}, &DailyForecast::minTempC).minTempC;
    highest_ = std::ranges::max(data.daily, {}, &DailyForecast::maxTempC).maxTempC;
    for (DailyForecast const& day : context.options.outlook) {
      lowest_ = std::min(lowest_, day.minTempC);
      highest_ = std::max(highest_, day.maxTempC);
    }
  }

  std::string rows(std::vector<DailyForecast> const& days) const {
    std::string out;
    for (DailyForecast const& day : days) {
      if (!isOver(day)) out += row(day);
    }
    return out;
  }

  /// In place of days that are none any more.
  std::string ended() const {
    std::string const day =
        context_.words.format(data_.daily.back().date, context_.texts.text("report.dateFormat"));
    return wrappedLines(context_.texts.format("report.ended", day), context_);
  }

 private:
  static int clockWidth(ReportContext const& context) {
    return displayWidth(context.words.clock(LocalTime(std::chrono::hours(22))));
  }

  static std::string dayLabel(DailyForecast const& day, ReportContext const& context) {
    bool const today = context.calendar.isSameDay(day.date, context.options.now);
    return std::string(today ? context.text("report.today") : context.words.format(day.date, "EEE d"));
  }

  static int labelWidth(WeatherData const& data, ReportContext const& context) {
    int widest = 0;
    for (DailyForecast const& day : data.daily)
      widest = std::max(widest, displayWidth(dayLabel(day, context)));
    return widest;
  }

  Style const& style() const { return context_.style(); }
  Units const& units() const { return context_.options.units; }

  /// Some answers begin with yesterday.
  bool isOver(DailyForecast const& day) const {
    return daysBetween(context_.calendar.day(day.date), context_.calendar.day(context_.options.now)) > 0;
  }

  std::string row(DailyForecast const& day) const {
    DaySummary const summary = summarize(day);
    std::string line = dayCell(day) + conditionCell(day, summary);
    line += temperatureCell(day.minTempC, day.minTempF) + " " + bar(day) + " " +
            temperatureCell(day.maxTempC, day.maxTempF);
    line += chanceCell(summary) + amountCell(day, summary) + windCell(summary) + sunCell(day);
    return line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
  }

  std::string dayCell(DailyForecast const& day) const {
    bool const today = context_.calendar.isSameDay(day.date, context_.options.now);
    return style().painted(style().cell(dayLabel(day, context_), columns_.day),
                           today ? Colour::bold : Colour::plain);
  }

  std::string conditionCell(DailyForecast const& day, DaySummary const& summary) const {
    if (!summary.condition) return style().cell("", columns_.condition + 2);
    bool const isLight = hasDaylight(data_, day);
    std::string const name = style().text(conditionText(*summary.condition, isLight, context_.texts));
    return style().painted(style().cell(style().glyph(*summary.condition, isLight), 2),
                           conditionColour(*summary.condition)) +
           style().cell(name, columns_.condition);
  }

  std::string temperatureCell(double celsius, double fahrenheit) const {
    std::string const text =
        displayTemperature(celsius, fahrenheit, units().temperature) + (style().ascii ? "" : "°");
    return style().paintedTemperature(style().cell(text, columns_.temperature, Align::right), celsius);
  }

  /// The day's span on the scale of the week, in half cells so that a degree shows.
  std::string bar(DailyForecast const& day) const {
    double const span = std::max(1.0, highest_ - lowest_);
    auto const position = [&](double celsius) {
      return static_cast<int>(std::lround((celsius - lowest_) / span * columns_.bar));
    };
    int const begin = std::min(position(day.minTempC), columns_.bar - 1);
    int const end = std::max(begin + 1, position(day.maxTempC));
    std::string out(static_cast<std::size_t>(begin), ' ');
    for (int i = begin; i < end; ++i) {
      double const celsius = lowest_ + (i + 0.5) / columns_.bar * span;
      out += style().paintedTemperature(style().ascii ? "=" : "━", celsius);
    }
    return out + std::string(static_cast<std::size_t>(columns_.bar - end), ' ');
  }

  std::string chanceCell(DaySummary const& summary) const {
    std::string const text =
        summary.precipitationChance ? std::to_string(*summary.precipitationChance) + " %" : std::string();
    Colour const colour = summary.precipitationChance.value_or(0) >= 50 ? Colour::rain : Colour::dim;
    return style().painted(style().cell(text, columns_.chance, Align::right), colour);
  }

  std::string amountCell(DailyForecast const& day, DaySummary const& summary) const {
    if (columns_.amount == 0) return {};
    std::string text;
    Colour colour = Colour::rain;
    if (day.totalSnowCm > 0) {
      text = decimalText(snowText(day.totalSnowCm), context_.texts);
      colour = Colour::snow;
    } else if (summary.precipitationMM.value_or(0) > 0) {
      text = decimalText(display(*summary.precipitationMM, units().precipitation), context_.texts) + " " +
             std::string(symbol(units().precipitation));
    }
    return style().painted(style().cell(text, columns_.amount, Align::right), colour);
  }

  std::string snowText(double cm) const {
    if (units().precipitation == PrecipitationUnit::mm) return fixedDecimal(cm, 1) + " cm";
    return fixedDecimal(convert(cm * 10, PrecipitationUnit::inch), 1) + " in";
  }

  std::string windCell(DaySummary const& summary) const {
    if (!summary.strongestWindKmph) return style().cell("", columns_.wind);
    std::string const text = std::string(style().windArrow(summary.windDirection)) + " " +
                             display(*summary.strongestWindKmph, units().wind);
    return style().cell(text, columns_.wind, Align::right);
  }

  std::string sunCell(DailyForecast const& day) const {
    auto const rise = parseClock12(day.astronomy.sunrise);
    auto const set = parseClock12(day.astronomy.sunset);
    if (columns_.sun == 0 || !rise || !set) return {};
    auto const clock = [this](int minutes) {
      return context_.words.clock(LocalTime(std::chrono::minutes(minutes)));
    };
    return style().painted(style().cell(clock(*rise) + "–" + clock(*set), columns_.sun, Align::right),
                           Colour::dim);
  }

  WeatherData const& data_;
  ReportContext const& context_;
  Columns columns_;
  double lowest_ = 0;
  double highest_ = 0;
};

}  // namespace

std::string dayTable(WeatherData const& data, ReportContext const& context) {
  if (data.daily.empty()) return {};
  Table const table(data, context);
  std::string rows = table.rows(data.daily);
  return rows.empty() ? table.ended() : rows;
}

std::string outlookTable(WeatherData const& data, ReportContext const& context) {
  if (data.daily.empty()) return {};
  std::string const& note = context.options.outlookNote;
  return Table(data, context).rows(context.options.outlook) +
         (note.empty() ? std::string() : wrappedLines(note, context));
}

}  // namespace nimbara
