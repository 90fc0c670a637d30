// Travel advisories of the United States Department of State, and the parser of its list. Pure; any bytes may
// be given.
#pragma once

#include "base/json/json.h"
#include "base/result.h"
#include "base/time/instant.h"
#include "model/weather_alert.h"

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

  bool operator==(TravelAdvisory const&) const = default;
};

template <>
inline constexpr auto jsonFields<TravelAdvisory> = FieldList{
    field("country", &TravelAdvisory::country), field("level", &TravelAdvisory::level),
    field("title", &TravelAdvisory::title),     field("link", &TravelAdvisory::link),
    field("summary", &TravelAdvisory::summary), field("published", &TravelAdvisory::published),
    field("updated", &TravelAdvisory::updated),
};

/// One for each country, that of the highest level where there are several; by country. Elements without a
/// level or of no country are left out. An empty list is an error: the service answers so to clients that it
/// does not know.
Result<std::vector<TravelAdvisory>, DecodeError> parseTravelAdvisories(std::string_view body);

/// The number behind "Level" in a title.
std::optional<int> levelOfTitle(std::string_view title);

/// The severity of an alert that an advisory of a level is: 1 is for information, 4 critical.
AlertSeverity advisorySeverity(int level);

/// The least severity that a setting's word asks for: "low", "medium", "high" and "critical" are the four
/// severities in their order; nothing for other words.
std::optional<AlertSeverity> severityOfWord(std::string_view word);

}  // namespace nimbara
