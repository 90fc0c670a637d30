// The forecast as a page of text for a person at a terminal. Pure functions: everything that the page depends
// on is an argument. Decides nothing about the weather.
#pragma once

#include "app/services/forecasts/forecast_service.h"
#include "base/time/calendar.h"
#include "base/time/instant.h"
#include "base/units.h"
#include "base/words/texts.h"
#include "base/words/time_words.h"
#include "cli/pages/style.h"

#include <string>
#include <vector>

namespace nimbara {

struct ReportOptions {
  int width = 80;  ///< cells; at least 40 are taken
  Style style;
  Units units;
  Instant now;
  std::vector<WeatherAlert> warnings;  ///< official ones, most severe first
  std::vector<std::string>
      coverage;  ///< how the official ones were checked, a sentence each without a full stop
  std::vector<DailyForecast> outlook = {};   ///< days beyond the forecast
  std::string outlookNote = {};              ///< what they are worth, or why there are none; may be empty
  std::vector<std::string> confidence = {};  ///< a line a day and one below; empty where nobody has asked
  std::string nowcast;                       ///< of the next two hours; empty where nobody offers it
  std::vector<std::string> station;          ///< what of the present is the user's station's, and what is not
  bool isCoverageDoubtful = false;           ///< such a sentence says that they could not be
  std::string standIn;  ///< the address that stands in for the services, empty for the services themselves
};

/// What the parts of the page share.
struct ReportContext {
  ReportOptions const& options;
  Texts const& texts;
  Calendar const& calendar;  ///< the place's
  TimeWords const& words;

  Style const& style() const { return options.style; }
  std::string text(std::string_view key) const { return options.style.text(texts.text(key)); }
};

/// Lines that end with a line break; none is wider than asked for.
std::string forecastReport(ForecastAnswer const& answer, ReportOptions options, Texts const& texts,
                           Calendar const& calendar);

/// The next 24 hours (fewer on a narrow terminal): temperatures, their line, precipitation, wind. Empty
/// without hours.
std::string hourStrip(WeatherData const& data, ReportContext const& context);

/// One line a day with a bar of its temperatures on the scale of all days. Empty without days.
std::string dayTable(WeatherData const& data, ReportContext const& context);
/// The like for the days beyond it, on the same scale.
std::string outlookTable(WeatherData const& data, ReportContext const& context);

}  // namespace nimbara
