#include "cli/pages/forecast/forecast_report.h"

#include "app/words/country_text.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "base/words/compass_point.h"
#include "base/words/decimal_text.h"
#include "base/words/list_text.h"
#include "cli/pages/forecast/line_text.h"
#include "feeds/alerts/warning_words.h"
#include "model/condition_text.h"
#include "model/present.h"

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
    std::string out = heading() + warnings() + "\n" + present() + station() + nowcast();
    out += section("report.next24", hourStrip(data_, context_));
    out += section("report.days", dayTable(data_, context_));
    out += section("confidence.title", confidence());
    out += section("report.outlook", outlookTable(data_, context_));
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
    if (!place.region.empty() && place.region != place.areaName)
      appendClause(name, place.region, context_.texts);
    if (!place.country.empty() && place.country != place.areaName)
      appendClause(name, countryText({place.latitude, place.longitude}, place.country, context_.texts),
                   context_.texts);
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

  /// The reading's own time where it is not of this hour.
  std::string observedAt(Present const& present) const {
    if (!present.readAt) return {};
    Instant const now = context_.options.now;
    if (std::chrono::abs(now - *present.readAt) < std::chrono::hours(1)) return {};
    std::string const moment = context_.words.moment(*present.readAt, now);
    bool const isToday = context_.calendar.isSameDay(*present.readAt, now);
    return ", " + (isToday ? context_.texts.format("report.at", moment) : moment);
  }

  /// The sky in words; those of the provider where no others are known.
  std::string sky(Present const& present) const {
    bool const isNamed = present.condition != WeatherConditionCode::unknown || present.description.empty();
    return isNamed ? conditionText(present.condition, present.isDay, context_.texts) : present.description;
  }

  std::string headline(Present const& present) const {
    std::string const condition = style().text(sky(present));
    std::string line =
        " " +
        style().painted(style().glyph(present.condition, present.isDay), conditionColour(present.condition)) +
        "  ";
    line += style().paintedTemperature(temperature(present.tempC, present.tempF), present.tempC) + "  ";
    line += style().painted(condition, Colour::bold);
    std::string const feels =
        context_.texts.format("report.feelsLike", temperature(present.feelsLikeC, present.feelsLikeF));
    return line + "  " + style().painted(style().text(feels + observedAt(present)), Colour::dim) + "\n";
  }

  std::string wind(Present const& present) const {
    if (!present.knowsWind) return {};
    bool const knowsDirection = !present.windDirection.empty();
    std::string out = knowsDirection ? std::string(style().windArrow(present.windDirection)) + " " : "";
    out += measured(display(present.windSpeedKmph, units().wind), symbol(units().wind));
    if (knowsDirection) out += " " + compassPoint(present.windDirection, context_.texts);
    if (present.windGustKmph && *present.windGustKmph > present.windSpeedKmph) {
      out += ", " + context_.texts.format("report.gusts", display(*present.windGustKmph, units().wind));
    }
    return style().text(out);
  }

  std::vector<Fact> facts(Present const& present) const {
    auto const fact = [&](std::string_view key, auto const& reading, auto const& write) {
      return Fact{text(key), reading ? write(*reading) : std::string()};
    };
    auto const percentage = [](int value) { return std::to_string(value) + " %"; };
    auto const inUnit = [&](auto unit) {
      return [this, unit](double value) {
        return measured(decimalText(display(value, unit), context_.texts), symbol(unit));
      };
    };
    return {
        {text("report.wind"), wind(present)},
        fact("report.humidity", present.humidity, percentage),
        fact("report.pressure", present.pressure, inUnit(units().pressure)),
        fact("report.clouds", present.cloudCover, percentage),
        fact("report.visibility", present.visibility, [&](double km) { return visibility(km); }),
        fact("report.dewPoint", present.dewPointC,
             [&](double celsius) { return temperature(celsius, present.dewPointF.value_or(0)); }),
        fact("report.uvIndex", present.uvIndex, [](int index) { return std::to_string(index); }),
        fact("report.precipitation", present.precipMM, inUnit(units().precipitation)),
    };
  }

  /// Facts in columns of 40 cells; one that needs more has the rest of its line.
  std::string grid(std::vector<Fact> const& list) const {
    constexpr int kLabel = 15;
    int const columns = std::max(1, width() / 40);
    int const room = width() / columns - kLabel - 1;
    std::string out;
    int filled = 0;
    for (Fact const& fact : list) {
      if (fact.value.empty()) continue;
      out += " " + style().painted(style().cell(fact.label, kLabel), Colour::dim);
      bool const lineEnds = ++filled == columns || displayWidth(fact.value) >= room;
      out += lineEnds ? style().text(fact.value) + "\n" : style().cell(fact.value, room);
      if (lineEnds) filled = 0;
    }
    return filled == 0 ? out : out + "\n";
  }

  /// The present; where nothing covers it, the last reading with its day and time.
  std::string present() const {
    Instant const now = context_.options.now;
    if (auto const present = presentAt(data_, now)) return headline(*present) + grid(facts(*present));
    std::string sentence(context_.texts.text("report.noCurrent"));
    if (auto const last = lastReading(data_)) {
      sentence += " " + context_.texts.format("report.lastReading", context_.words.moment(*last->readAt, now),
                                              temperature(last->tempC, last->tempF) + ", " + sky(*last));
    }
    std::string out;
    for (std::string const& part : wrapped(style().text(sentence), width() - 1)) out += " " + part + "\n";
    return out;
  }

  std::string station() const {
    std::string out;
    for (std::string const& sentence : context_.options.station) {
      for (std::string const& part : wrapped(style().text(sentence), width() - 1))
        out += " " + style().painted(part, Colour::dim) + "\n";
    }
    return out;
  }

  std::string nowcast() const {
    std::string const& sentence = context_.options.nowcast;
    return sentence.empty() ? sentence : line(text("report.nowcast"), sentence);
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
    DailyForecast const* const day = dayAt(data_, context_.options.now);
    if (day == nullptr || day->astronomy.moonPhase.empty()) return {};
    auto const& sky = day->astronomy;
    bool const sunMoves = parseClock12(sky.sunrise) || parseClock12(sky.sunset);
    std::string const sun =
        sunMoves
            ? context_.texts.format("report.riseSet", clock(sky.sunrise), clock(sky.sunset)) + dayLength(*day)
            : std::string(context_.texts.text(hasDaylight(data_, *day) ? "report.sunStaysUp"
                                                                       : "report.sunStaysDown"));
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

  /// The age of old data and the forecast's alerts, the most severe first.
  std::string warnings() const {
    std::string out;
    if (answer_.stale)
      out += paragraph("", context_.texts.format("report.stale", fetched(), age()), Colour::warning);
    for (WeatherAlert const& warning : context_.options.warnings) out += alertLines(warning);
    for (WeatherAlert const& alert : shownAlerts(answer_.alerts, answer_.superseded))
      out += alertLines(alert);
    return (out.empty() ? out : "\n" + out) + coverage();
  }

  std::string alertLines(WeatherAlert const& alert) const {
    Colour const colour = alert.severity >= AlertSeverity::warning ? Colour::warning : Colour::sun;
    return paragraph(gradedTitle(gradeOf(alert), alert.title, context_.texts) + ". ", alert.message, colour);
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

  std::string confidence() const {
    std::string out;
    for (std::string const& line : context_.options.confidence) {
      for (std::string const& part : wrapped(style().text(line), width() - 1)) out += " " + part + "\n";
    }
    return out;
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
