#include "cli/forecast_report.h"

#include "base/number.h"
#include "base/text.h"
#include "cli/line_text.h"
#include "model/day_summary.h"
#include "model/present.h"
#include "model/upcoming_hours.h"

#include <algorithm>
#include <initializer_list>

namespace nimbara {

namespace {

constexpr int kNarrowest = 40;
constexpr int kWidest = 140;

/// A label and its value; an empty value leaves the pair out.
struct Fact {
  std::string label;
  std::string value;
};

/// Blanks at the ends of lines are of no use to anyone.
std::string withoutTrailingBlanks(std::string const& page) {
  std::string out;
  for (std::string_view line : split(page, '\n')) {
    if (!out.empty() || !line.empty())
      out += std::string(line.substr(0, line.find_last_not_of(' ') + 1)) + "\n";
  }
  while (out.ends_with("\n\n")) out.pop_back();
  return out;
}

class Report {
 public:
  Report(ForecastAnswer const& answer, ReportContext const& context)
      : answer_(answer), data_(answer.data), context_(context) {}

  std::string str() const {
    std::string out = heading() + warnings() + "\n" + present();
    out += section("report.next24", hourStrip(data_, context_));
    out += section("report.days", dayTable(data_, context_));
    out += section("report.sunMoon", sunAndMoon());
    return out + "\n" + footer();
  }

 private:
  Style const& style() const { return context_.style(); }
  Units const& units() const { return context_.options.units; }
  int width() const { return context_.options.width; }
  std::string text(std::string_view key) const { return context_.text(key); }

  /// Left and right ends of one line, or of two where one is too short for both.
  std::string spread(std::string const& left, Colour leftColour, std::string const& right) const {
    bool const together = displayWidth(left) + displayWidth(right) < width();
    std::string const begin =
        together ? style().cell(left, width() - displayWidth(right)) : style().cell(left, width());
    std::string const end = together ? right : style().cell(right, width(), Align::right);
    return style().painted(begin, leftColour) + (together ? "" : "\n") + style().painted(end, Colour::dim) +
           "\n";
  }

  std::string section(std::string_view key, std::string const& content) const {
    if (content.empty()) return {};
    return "\n" +
           style().painted(style().cell(text(key), std::min(width(), displayWidth(text(key)))),
                           Colour::bold) +
           "\n" + content;
  }

  std::string placeName() const {
    LocationInfo const& place = data_.location;
    std::string name = place.areaName;
    if (!place.region.empty() && place.region != place.areaName) name += ", " + place.region;
    if (!place.country.empty() && place.country != place.areaName) name += ", " + place.country;
    return style().text(name);
  }

  std::string heading() const {
    auto const now = context_.options.now;
    std::string const day = context_.words.format(now, context_.texts.text("report.dateFormat"));
    std::string const clock = context_.words.clock(now);
    std::string out = spread(placeName(), Colour::title, style().text(day + ", " + clock));
    std::string const coordinate =
        style().text(formatCoordinate({data_.location.latitude, data_.location.longitude}));
    bool const named =
        data_.location.areaName != formatCoordinate({data_.location.latitude, data_.location.longitude});
    return out + spread(named ? coordinate : "", Colour::dim, style().text(context_.calendar.zoneId()));
  }

  std::string measured(std::string const& number, std::string_view unit) const {
    return number + " " + style().text(unit);
  }
  std::string temperature(double celsius, double fahrenheit) const {
    return measured(displayTemperature(celsius, fahrenheit, units().temperature),
                    symbol(units().temperature));
  }

  /// Records carry whole kilometres: 0 is all that lies below half a one.
  std::string visibility(double km) const {
    std::string const number = display(km, units().distance);
    return measured(number == "0" ? "< 1" : number, symbol(units().distance));
  }

  bool isDayNow() const {
    if (data_.current.isDay) return *data_.current.isDay;
    int const hour = context_.calendar.hour(context_.options.now);
    return hour >= 6 && hour < 20;
  }

  /// The reading's own time where it is not of this hour.
  std::string observedAt() const {
    auto const observed = parseLocalTime(data_.current.observationTime);
    if (!observed) return {};
    auto const distance = std::chrono::abs(context_.calendar.local(context_.options.now) - *observed);
    return distance < std::chrono::hours(1)
               ? ""
               : ", " + context_.texts.format("report.at", context_.words.clock(*observed));
  }

  std::string headline() const {
    auto const& current = data_.current;
    std::string const condition = current.conditionDescription.empty() || context_.texts.language() != "en"
                                      ? text("condition." + std::string(enumName(current.condition)))
                                      : style().text(current.conditionDescription);
    std::string line =
        " " +
        style().painted(style().glyph(current.condition, isDayNow()), conditionColour(current.condition)) +
        "  ";
    line += style().paintedTemperature(temperature(current.tempC, current.tempF), current.tempC) + "  ";
    line += style().painted(condition, Colour::bold);
    std::string const feels =
        context_.texts.format("report.feelsLike", temperature(current.feelsLikeC, current.feelsLikeF));
    return line + "  " + style().painted(style().text(feels + observedAt()), Colour::dim) + "\n";
  }

  std::string wind() const {
    auto const& current = data_.current;
    std::string out = std::string(style().windArrow(current.windDirection)) + " " +
                      measured(display(current.windSpeedKmph, units().wind), symbol(units().wind)) + " " +
                      current.windDirection;
    auto const* const hour = hourAt(data_.allHourly, context_.options.now);
    if (hour != nullptr && hour->windGustKmph > current.windSpeedKmph) {
      out += ", " + context_.texts.format("report.gusts", display(hour->windGustKmph, units().wind));
    }
    return style().text(out);
  }

  std::vector<Fact> facts() const {
    using Field = WeatherDetailField;
    auto const& current = data_.current;
    auto const* const hour = hourAt(data_.allHourly, context_.options.now);
    auto const fact = [&](Field field, std::string_view key, std::string value) {
      return Fact{text(key), current.has(field) ? std::move(value) : std::string()};
    };
    bool const dewPoint = hour != nullptr && hour->has(Field::dewPoint);
    return {
        {text("report.wind"), current.windDirection.empty() ? std::string() : wind()},
        fact(Field::humidity, "report.humidity", std::to_string(current.humidity) + " %"),
        fact(Field::pressure, "report.pressure",
             measured(display(current.pressure, units().pressure), symbol(units().pressure))),
        fact(Field::cloudCover, "report.clouds", std::to_string(current.cloudCover) + " %"),
        fact(Field::visibility, "report.visibility", visibility(current.visibility)),
        {text("report.dewPoint"), dewPoint ? temperature(hour->dewPointC, hour->dewPointF) : std::string()},
        fact(Field::uvIndex, "report.uvIndex", std::to_string(current.uvIndex)),
        {text("report.precipitation"),
         measured(display(current.precipMM, units().precipitation), symbol(units().precipitation))},
    };
  }

  /// Facts in columns of 40 cells.
  std::string grid(std::vector<Fact> const& list) const {
    constexpr int kLabel = 15;
    int const columns = std::max(1, width() / 40);
    int const column = width() / columns;
    std::string out;
    int filled = 0;
    for (Fact const& fact : list) {
      if (fact.value.empty()) continue;
      out += " " + style().painted(style().cell(fact.label, kLabel), Colour::dim);
      bool const lineEnds = ++filled % columns == 0;
      out += lineEnds ? style().text(fact.value) + "\n" : style().cell(fact.value, column - kLabel - 1);
    }
    return filled % columns == 0 ? out : out + "\n";
  }

  std::string present() const {
    if (!data_.current.isReading()) return " " + text("report.noCurrent") + "\n";
    return headline() + grid(facts());
  }

  DailyForecast const* today() const {
    DailyForecast const* const day = dayAt(data_, context_.options.now);
    if (day != nullptr) return day;
    return data_.daily.empty() ? nullptr : &data_.daily.front();
  }

  /// A clock text of the record as this program writes clocks; other texts ("No moonrise") have no clock.
  std::string clock(std::string const& recorded) const {
    auto const minutes = parseClock12(recorded);
    return minutes ? style().text(context_.words.clock(LocalTime(std::chrono::minutes(*minutes))))
                   : style().text("–");
  }

  std::string dayLength(DailyForecast const& day) const {
    auto const rise = parseClock12(day.astronomy.sunrise);
    auto const set = parseClock12(day.astronomy.sunset);
    if (!rise || !set || *set <= *rise) return {};
    int const minutes = *set - *rise;
    return ", " + context_.texts.format("report.dayLength", minutes / 60, minutes % 60);
  }

  std::string sunAndMoon() const {
    DailyForecast const* const day = today();
    if (day == nullptr || day->astronomy.moonPhase.empty()) return {};
    auto const& sky = day->astronomy;
    bool const sunMoves = parseClock12(sky.sunrise) || parseClock12(sky.sunset);
    std::string const sun =
        sunMoves
            ? context_.texts.format("report.riseSet", clock(sky.sunrise), clock(sky.sunset)) + dayLength(*day)
            : std::string(context_.texts.text("report.noSunRiseSet"));
    std::string const phase = "moon." + sky.moonPhase;
    std::string const name(context_.texts.text(phase) == phase ? sky.moonPhase : context_.texts.text(phase));
    std::string const moon = name + ", " + std::to_string(sky.moonIllumination) + " %, " +
                             context_.texts.format("report.riseSet", clock(sky.moonrise), clock(sky.moonset));
    return line(text("report.sun"), sun) + line(text("report.moon"), moon);
  }

  /// A label and a text that goes on in further lines where one is too short.
  std::string line(std::string const& label, std::string const& value) const {
    constexpr int kLabel = 15;
    std::string out;
    for (std::string const& part : wrapped(style().text(value), width() - kLabel - 1)) {
      out += " " + style().painted(style().cell(out.empty() ? label : "", kLabel), Colour::dim) + part + "\n";
    }
    return out;
  }

  std::string age() const { return ageText(data_.fetchedAt, context_.options.now, context_.texts); }

  /// When the forecast was fetched: the clock alone on the same day, else with its date.
  std::string fetched() const {
    std::string clock = context_.words.clock(data_.fetchedAt);
    if (context_.calendar.isSameDay(data_.fetchedAt, context_.options.now)) return clock;
    return formatDate(context_.calendar.day(data_.fetchedAt)) + " " + clock;
  }

  /// The age of old data and the forecast's alerts, the gravest first.
  std::string warnings() const {
    std::string out;
    if (answer_.stale)
      out += paragraph("", context_.texts.format("report.stale", fetched(), age()), Colour::warning);
    for (WeatherAlert const& warning : context_.options.warnings) out += alertLines(warning);
    for (WeatherAlert const& alert : answer_.alerts) out += alertLines(alert);
    return (out.empty() ? out : "\n" + out) + coverage();
  }

  std::string alertLines(WeatherAlert const& alert) const {
    std::string const severity(context_.texts.text("severity." + std::string(enumName(alert.severity))));
    Colour const colour = alert.severity >= AlertSeverity::warning ? Colour::warning : Colour::sun;
    return paragraph(severity + ": " + alert.title + ". ", alert.message, colour);
  }

  /// How the official warnings were checked.
  std::string coverage() const {
    std::string out;
    for (std::string const& line : context_.options.coverage) {
      for (std::string const& part : wrapped(style().text(line), width())) {
        out +=
            style().painted(part, context_.options.isCoverageDoubtful ? Colour::warning : Colour::dim) + "\n";
      }
    }
    return out.empty() ? out : "\n" + out;
  }

  /// Wrapped lines of which the first begins with a title in colour.
  std::string paragraph(std::string const& title, std::string const& content, Colour colour) const {
    std::string out;
    for (std::string const& part : wrapped(style().text(title + content), width() - 2)) {
      std::string const head = out.empty() ? "! " : "  ";
      out += style().painted(head + part, out.empty() ? colour : Colour::plain) + "\n";
    }
    return out;
  }

  std::string credit() const {
    if (!context_.options.standIn.empty()) {
      return context_.texts.format("report.standIn", context_.options.standIn);
    }
    return answer_.provider
               ? std::string(context_.texts.text("credit." + std::string(enumName(*answer_.provider))))
               : std::string();
  }

  std::string footer() const {
    std::string const provider =
        "provider." + std::string(answer_.provider ? enumName(*answer_.provider) : "unknown");
    return footerLine(
               context_.texts.format("report.source", context_.texts.text(provider), fetched(), age())) +
           footerLine(credit());
  }

  std::string footerLine(std::string const& content) const {
    std::string out;
    for (std::string const& part : wrapped(style().text(content), width())) {
      out += style().painted(part, Colour::dim) + "\n";
    }
    return out;
  }

  ForecastAnswer const& answer_;
  WeatherData const& data_;
  ReportContext const& context_;
};

}  // namespace

std::string forecastReport(ForecastAnswer const& answer, ReportOptions options, Texts const& texts,
                           Calendar const& calendar) {
  options.width = std::clamp(options.width, kNarrowest, kWidest);
  TimeWords const words(texts, calendar);
  ReportContext const context{options, texts, calendar, words};
  return withoutTrailingBlanks(Report(answer, context).str());
}

}  // namespace nimbara
