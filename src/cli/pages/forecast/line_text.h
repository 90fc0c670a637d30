// One line of text about a place for status bars: a template whose {fields} are filled from a forecast. Pure.
#pragma once

#include "app/services/forecasts/forecast_service.h"
#include "app/words/nowcast_text.h"
#include "base/result.h"
#include "base/units.h"
#include "base/words/texts.h"
#include "feeds/alerts/coverage.h"
#include "feeds/stations/station_reading.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// What was known of the official warnings when somebody asked last.
struct KeptWarnings {
  std::vector<WeatherAlert> alerts;      ///< most severe first
  std::vector<SourceCoverage> coverage;  ///< at least one entry
};

struct LineContext {
  ForecastAnswer const& answer;
  KeptWarnings const& official;
  Texts const& texts;
  Units const& units;
  Instant now;
  bool isMarkup = false;  ///< the reader takes the line for markup: values are escaped, the template is not
  /// Of the next two hours; both texts empty where nobody offers it, nothing where nobody asked lately.
  std::optional<NowcastText> nowcast = std::nullopt;
  StationReading const* station = nullptr;  ///< the user's own, wherever it stands; null without
};

struct LineField {
  std::string_view name;
  std::string_view explanation;
  std::string (*value)(LineContext const&);
};

/// What a template may name, in the order of the help.
std::span<LineField const> lineFields();

inline constexpr std::string_view kLineTemplate = "{icon} {temperature} {condition}{stale}";

/// Whether the pattern names the nowcast, which is looked up only then.
bool namesNowcast(std::string_view pattern);

/// "{{" stands for a brace. The error is a sentence that names the field which does not exist.
Result<std::string, std::string> filledLine(std::string_view pattern, LineContext const& context);

/// The lines of a bar's tooltip: place and conditions, the next two hours where a source covers them,
/// alerts, the days ahead, age and source.
std::string tooltip(LineContext const& context);

}  // namespace nimbara
