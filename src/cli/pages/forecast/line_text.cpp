#include "cli/pages/forecast/line_text.h"

#include "app/words/coverage_text.h"
#include "app/words/station_text.h"
#include "base/text/clean_text.h"
#include "base/text/number.h"
#include "base/words/time_words.h"
#include "cli/pages/style.h"
#include "feeds/stations/station_overlay.h"
#include "model/condition_text.h"
#include "model/day_summary.h"
#include "model/present.h"
#include "model/process.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::string_view kUnknown = "–";

std::string measured(std::string const& number, std::string_view unit) {
  return number + " " + std::string(unit);
}

std::string temperature(double celsius, double fahrenheit, Units const& units) {
  return displayTemperature(celsius, fahrenheit, units.temperature) + "°";
}

/// The value of what is known at present; a dash for what is not.
template <class Value>
std::string ofPresent(LineContext const& context, Value value) {
  auto const present = presentAt(context.answer.data, context.now);
  return present ? value(*present) : std::string(kUnknown);
}

template <class T, class Value>
std::string known(std::optional<T> const& reading, Value value) {
  return reading ? value(*reading) : std::string(kUnknown);
}

template <class Value>
std::string ofToday(LineContext const& context, Value value) {
  DailyForecast const* const day = dayAt(context.answer.data, context.now);
  return day == nullptr ? std::string(kUnknown) : value(*day);
}

std::string percent(int value) {
  return std::to_string(value) + " %";
}

std::string written(std::string text, LineContext const& context) {
  return context.isMarkup ? markupEscaped(text) : std::move(text);
}

std::string strongestAlert(LineContext const& context) {
  auto const alerts = shownAlerts(context.answer.alerts, context.answer.superseded);
  return alerts.empty() ? std::string() : alerts.front().title;
}

std::string strongestWarning(LineContext const& context) {
  return context.official.alerts.empty() ? std::string() : context.official.alerts.front().title;
}

/// In the place's time.
std::vector<std::string> coverageOfLine(LineContext const& context) {
  return coverageLines(context.official.coverage, context.texts,
                       calendarOf(context.answer.data, Calendar::utc()), context.now);
}

/// What the user's station measures now; a dash where it does not, or where there is none.
std::string ofStation(LineContext const& context, StationQuantity quantity) {
  auto const measured = context.station ? measuredNow(*context.station, quantity, context.now) : std::nullopt;
  if (!measured) return std::string(kUnknown);
  return valueText(quantity, measured->value, context.units);
}

constexpr LineField kFields[] = {
    {"icon", "a symbol for the sky",
     [](LineContext const& c) {
       return ofPresent(c, [](Present const& p) { return std::string(Style{}.glyph(p.condition, p.isDay)); });
     }},
    {"temperature", "the temperature",
     [](LineContext const& c) {
       return ofPresent(c, [&](Present const& p) { return temperature(p.tempC, p.tempF, c.units); });
     }},
    {"feelsLike", "the feels-like temperature",
     [](LineContext const& c) {
       return ofPresent(c,
                        [&](Present const& p) { return temperature(p.feelsLikeC, p.feelsLikeF, c.units); });
     }},
    {"condition", "the sky in words",
     [](LineContext const& c) {
       return ofPresent(c, [&](Present const& p) { return conditionText(p.condition, p.isDay, c.texts); });
     }},
    {"wind", "the wind",
     [](LineContext const& c) {
       return ofPresent(c, [&](Present const& p) {
         return p.knowsWind ? measured(display(p.windSpeedKmph, c.units.wind), symbol(c.units.wind))
                            : std::string(kUnknown);
       });
     }},
    {"windDirection", "the wind direction",
     [](LineContext const& c) { return ofPresent(c, [](Present const& p) { return p.windDirection; }); }},
    {"gusts", "the gusts",
     [](LineContext const& c) {
       return ofPresent(c, [&](Present const& p) {
         return known(p.windGustKmph, [&](double kmph) {
           return measured(display(kmph, c.units.wind), symbol(c.units.wind));
         });
       });
     }},
    {"humidity", "the relative humidity",
     [](LineContext const& c) {
       return ofPresent(c, [](Present const& p) { return known(p.humidity, percent); });
     }},
    {"pressure", "the air pressure",
     [](LineContext const& c) {
       return ofPresent(c, [&](Present const& p) {
         return known(p.pressure, [&](double hPa) {
           return measured(display(hPa, c.units.pressure), symbol(c.units.pressure));
         });
       });
     }},
    {"precipitation", "precipitation this hour",
     [](LineContext const& c) {
       return ofPresent(c, [&](Present const& p) {
         return known(p.precipMM, [&](double mm) {
           return measured(display(mm, c.units.precipitation), symbol(c.units.precipitation));
         });
       });
     }},
    {"chance", "the chance of rain this hour",
     [](LineContext const& c) {
       return ofPresent(c, [](Present const& p) { return known(p.chanceOfRain, percent); });
     }},
    {"uv", "the UV index",
     [](LineContext const& c) {
       return ofPresent(c, [](Present const& p) {
         return known(p.uvIndex, [](int index) { return std::to_string(index); });
       });
     }},
    {"high", "the day's highest temperature",
     [](LineContext const& c) {
       return ofToday(c,
                      [&](DailyForecast const& d) { return temperature(d.maxTempC, d.maxTempF, c.units); });
     }},
    {"low", "the day's lowest temperature",
     [](LineContext const& c) {
       return ofToday(c,
                      [&](DailyForecast const& d) { return temperature(d.minTempC, d.minTempF, c.units); });
     }},
    {"nowcast",
     "rain in the next two hours, from radar or a 15-minute model; nothing where none covers the place",
     [](LineContext const& c) { return c.nowcast ? c.nowcast->sentence : std::string(kUnknown); }},
    {"station.temperature", "the temperature at your weather station; – if it measured none in 30 minutes",
     [](LineContext const& c) { return ofStation(c, StationQuantity::temperature); }},
    {"station.humidity", "its relative humidity",
     [](LineContext const& c) { return ofStation(c, StationQuantity::humidity); }},
    {"station.pressure", "its air pressure at sea level",
     [](LineContext const& c) { return ofStation(c, StationQuantity::pressure); }},
    {"station.wind", "its wind",
     [](LineContext const& c) { return ofStation(c, StationQuantity::windSpeed); }},
    {"station.rain", "its rain of the last hour",
     [](LineContext const& c) { return ofStation(c, StationQuantity::rainLastHour); }},
    {"station.age", "how old its last measurement is",
     [](LineContext const& c) {
       auto const last = c.station ? c.station->lastUpload() : std::nullopt;
       return last ? ageText(*last, c.now, c.texts) : std::string(kUnknown);
     }},
    {"station.name", "its name, or nothing if there is none",
     [](LineContext const& c) { return c.station ? c.station->name : std::string(); }},
    {"place", "the place's name", [](LineContext const& c) { return c.answer.data.location.areaName; }},
    {"alert", "the most severe alert, or nothing", strongestAlert},
    {"alerts", "how many alerts there are",
     [](LineContext const& c) { return std::to_string(c.answer.alerts.size()); }},
    {"warning", "the most severe official warning, or nothing", strongestWarning},
    {"warnings", "how many official warnings there are, or that they could not be checked",
     [](LineContext const& c) {
       auto const lines = coverageOfLine(c);
       return lines.empty() ? std::string() : lines.front();
     }},
    {"age", "how old the forecast is",
     [](LineContext const& c) { return ageText(c.answer.answeredAt, c.now, c.texts); }},
    {"stale", "the age in brackets if the forecast is old, otherwise nothing",
     [](LineContext const& c) {
       return c.answer.stale ? " (" + ageText(c.answer.answeredAt, c.now, c.texts) + ")" : std::string();
     }},
    {"provider", "the forecast provider",
     [](LineContext const& c) {
       std::string const provider(c.answer.provider ? enumName(*c.answer.provider) : "unknown");
       return std::string(c.texts.text("provider." + provider));
     }},
};

std::string dayLine(DailyForecast const& day, LineContext const& context, TimeWords const& words) {
  std::string line = words.weekday(day.date);
  if (auto const condition = summarize(day).condition) {
    line += ": " + conditionText(*condition, hasDaylight(context.answer.data, day), context.texts);
  }
  return line + ", " + temperature(day.minTempC, day.minTempF, context.units) + " / " +
         temperature(day.maxTempC, day.maxTempF, context.units);
}

}  // namespace

std::span<LineField const> lineFields() {
  return kFields;
}

bool namesNowcast(std::string_view pattern) {
  return pattern.contains("{nowcast}");
}

Result<std::string, std::string> filledLine(std::string_view pattern, LineContext const& context) {
  std::string out;
  for (std::size_t at = 0; at < pattern.size();) {
    if (pattern[at] != '{' || pattern.substr(at, 2) == "{{") {
      at += pattern[at] == '{' ? 1 : 0;
      out += pattern[at++];
      continue;
    }
    auto const end = pattern.find('}', at);
    if (end == std::string_view::npos) return std::unexpected("the format has an unclosed brace");
    auto const name = pattern.substr(at + 1, end - at - 1);
    auto const field = std::ranges::find(kFields, name, &LineField::name);
    if (field == std::ranges::end(kFields)) {
      return std::unexpected("the format has an unknown field '{" + std::string(name) +
                             "}'; see nimbara line --help-format");
    }
    out += written(field->value(context), context);
    at = end + 1;
  }
  return out;
}

std::string tooltip(LineContext const& context) {
  WeatherData const& data = context.answer.data;
  TimeWords const words(context.texts, calendarOf(data, Calendar::utc()));
  std::string out = *filledLine("{place}: {temperature} {condition}", context);
  bool const hasNowcast = context.nowcast && !context.nowcast->sentence.empty();
  if (hasNowcast) out += "\n" + written(context.nowcast->line(), context);
  auto const alertLine = [&](WeatherAlert const& alert) {
    return "\n! " + written(alert.title + ". " + alert.message, context);
  };
  for (WeatherAlert const& warning : context.official.alerts) out += alertLine(warning);
  for (std::string const& line : coverageOfLine(context)) out += "\n" + written(line, context);
  for (WeatherAlert const& alert : context.answer.alerts) out += alertLine(alert);
  for (DailyForecast const& day : data.daily) {
    bool const hasPassed = day.date + std::chrono::hours(24) <= context.now;
    if (!hasPassed) out += "\n" + written(dayLine(day, context, words), context);
  }
  return out + "\n" + *filledLine("{provider}, {age}", context);
}

}  // namespace nimbara
