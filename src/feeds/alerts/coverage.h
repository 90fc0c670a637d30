// Which official warnings a place has, as one value a source that was asked: warnings, none, not checked,
// warnings that cannot be placed, or nobody who issues any. Pure; every face words these states and none
// decides them anew.
#pragma once

#include "base/json/json.h"
#include "feeds/alerts/gov_alert_service.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

enum class CoverageState { warnings, none, unchecked, unplaced, uncovered };

template <>
inline constexpr auto enumNames<CoverageState> =
    std::to_array<std::string_view>({"warnings", "none", "unchecked", "unplaced", "uncovered"});
static_assert(enumNamesComplete(CoverageState::uncovered));

struct SourceCoverage {
  std::optional<std::string> source;   ///< "meteoalarm"; nothing where nobody could be asked
  std::optional<std::string> service;  ///< its proper name
  CoverageState state = CoverageState::uncovered;
  std::size_t count = 0;  ///< warnings for the place; of `unplaced` those that may concern it
  std::optional<Instant> checkedAt;
  std::optional<Instant> since;          ///< of `unchecked`: from when on nothing is known
  std::optional<ServiceFailure> reason;  ///< of `unchecked`
  /// Warnings that nobody can locate: where they are in force, in the service's words.
  std::vector<std::string> areas;
  std::string country;  ///< ISO 3166-1 of the place; empty on the open sea
  /// The source that should have answered, where it failed and `source` answered after it, and why.
  std::optional<std::string> insteadOf = std::nullopt;
  std::optional<ServiceFailure> insteadReason = std::nullopt;
  /// Of `unchecked`: who was asked after `source` and gave no answer either, and why; without a reason it is
  /// not known to have the country's warnings.
  std::optional<std::string> alsoAsked = std::nullopt;
  std::optional<ServiceFailure> alsoReason = std::nullopt;
  /// Kinds of warnings for the whole country, which is the area of none in `areas`.
  std::vector<std::string> countryWide = {};

  bool operator==(SourceCoverage const&) const = default;
};

template <>
inline constexpr auto jsonFields<SourceCoverage> =
    FieldList{field("source", &SourceCoverage::source),
              field("service", &SourceCoverage::service),
              field("state", &SourceCoverage::state),
              field("count", &SourceCoverage::count),
              field("checkedAt", &SourceCoverage::checkedAt),
              field("since", &SourceCoverage::since),
              field("reason", &SourceCoverage::reason),
              field("areas", &SourceCoverage::areas),
              field("country", &SourceCoverage::country),
              field("insteadOf", &SourceCoverage::insteadOf),
              field("insteadReason", &SourceCoverage::insteadReason),
              field("alsoAsked", &SourceCoverage::alsoAsked),
              field("alsoReason", &SourceCoverage::alsoReason),
              field("countryWide", &SourceCoverage::countryWide)};

/// A list for scripts: every key is there, null where nothing is known; reasons are English sentences.
void writeCoverage(JsonWriter& json, std::vector<SourceCoverage> const& coverage);

/// A check older than this, two of the window's intervals, says nothing of now.
inline constexpr std::chrono::minutes kCoverageTrust{45};

/// At least one entry, in the order of the sources, as it was when they were asked; just one for a place
/// whose sources are asked one after the other.
std::vector<SourceCoverage> coverageOf(GovAlerts const& alerts, std::string_view countryCode);

/// The same, looked at later: a check that has grown old is none.
std::vector<SourceCoverage> agedCoverage(std::vector<SourceCoverage> coverage, Instant now);

/// The one that says least good: what a face with room for one state shows. `coverage` is not empty.
SourceCoverage const& mostPressing(std::vector<SourceCoverage> const& coverage);

/// The proper name of a source of warnings: "MeteoAlarm" for "meteoalarm".
std::string warningServiceName(std::string_view source);

}  // namespace nimbara
