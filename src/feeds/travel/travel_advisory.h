// A travel advisory of any source, and the parser of the list of the United States Department of State. Pure;
// any bytes may be given.
#pragma once

#include "base/json/json.h"
#include "base/result.h"
#include "base/time/instant.h"
#include "feeds/travel/advisory_source.h"
#include "model/warnings/weather_alert.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// Also the form on disk.
struct TravelAdvisory {
  std::string country;  ///< ISO 3166-1 of two letters; the key of an advisory
  int level = 1;        ///< 1 (normal precautions) to 4 (do not travel)
  std::string title;    ///< "Testland - Level 2: Exercise Increased Caution"
  std::string link;     ///< may be empty
  std::string summary;  ///< plain text of several lines; may be empty
  std::optional<Instant> published;
  std::optional<Instant> updated;
  AdvisorySource source = AdvisorySource::us;
  /// What the source advises, the ending of a text's key: "ca.3", "uk.partsAll"; empty for the levels of the
  /// United States.
  std::string advice = {};
  bool hasRegions = false;  ///< stricter advice for parts of the country besides

  bool operator==(TravelAdvisory const&) const = default;
};

template <>
inline constexpr auto jsonFields<TravelAdvisory> = FieldList{
    field("country", &TravelAdvisory::country), field("level", &TravelAdvisory::level),
    field("title", &TravelAdvisory::title),     field("link", &TravelAdvisory::link),
    field("summary", &TravelAdvisory::summary), field("published", &TravelAdvisory::published),
    field("updated", &TravelAdvisory::updated), field("source", &TravelAdvisory::source),
    field("advice", &TravelAdvisory::advice),   field("hasRegions", &TravelAdvisory::hasRegions),
};

/// One for each country, that of the highest level where there are several; by country. Elements without a
/// level or of no country are left out. An empty list is an error: the service answers so to clients that it
/// does not know.
Result<std::vector<TravelAdvisory>, DecodeError> parseTravelAdvisories(std::string_view body);

/// The number behind "Level" in a title.
std::optional<int> levelOfTitle(std::string_view title);

/// The severity of an alert that an advisory of a level is: 1 is for information, 4 critical.
AlertSeverity advisorySeverity(int level);

/// As the list of the weather state has it; the same advisory has the same identifier.
WeatherAlert advisoryAlert(TravelAdvisory const& advisory);

/// The least severity that a setting's word asks for: "low", "medium", "high" and "critical" are the four
/// severities in their order; nothing for other words.
std::optional<AlertSeverity> severityOfWord(std::string_view word);

}  // namespace nimbara
