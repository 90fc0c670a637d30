#include "feeds/alerts/coverage.h"

#include "feeds/alerts/routing/official_sources.h"
#include "feeds/alerts/warning_words.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

/// What a face with one line must not hide, first: how sure is more urgent than how many.
constexpr std::array kByUrgency{CoverageState::unchecked, CoverageState::warnings, CoverageState::unplaced,
                                CoverageState::uncovered, CoverageState::none};

SourceCoverage uncovered(std::string_view countryCode) {
  SourceCoverage coverage;
  coverage.country = countryCode;
  return coverage;
}

/// "Wind Warning, red".
std::string kindOf(WeatherAlert const& alert) {
  return alert.title + (alert.colour ? ", " + *alert.colour : std::string());
}

void addNew(std::vector<std::string>& list, std::string entry) {
  bool const isNew = !entry.empty() && std::ranges::find(list, entry) == list.end();
  if (isNew) list.push_back(std::move(entry));
}

void nameUnplaced(SourceCoverage& coverage, std::vector<WeatherAlert> const& alerts) {
  for (WeatherAlert const& alert : alerts) {
    if (isCountryWide(alert, coverage.country)) {
      addNew(coverage.countryWide, alert.title + (alert.colour ? " (" + *alert.colour + ")" : ""));
    } else {
      addNew(coverage.areas, *alert.areaDesc + " (" + kindOf(alert) + ")");
    }
  }
}

SourceCoverage coverageOf(GovSourceState const& source, std::string_view countryCode) {
  SourceCoverage coverage;
  coverage.source = source.name;
  coverage.service = warningServiceName(source.name);
  coverage.country = countryCode;
  coverage.checkedAt = source.checkedAt;
  coverage.count = source.alerts.size();
  nameUnplaced(coverage, source.unplaced);
  coverage.insteadOf = source.insteadOf;
  coverage.insteadReason = source.insteadReason;
  if (source.failedSince || !source.checkedAt) {
    coverage.state = CoverageState::unchecked;
    coverage.since = source.failedSince;
    coverage.reason = source.failure;
    coverage.alsoAsked = source.alsoAsked;
    coverage.alsoReason = source.alsoReason;
  } else if (source.knowsNothing()) {
    coverage.state = CoverageState::uncovered;
  } else if (!source.alerts.empty()) {
    coverage.state = CoverageState::warnings;
  } else if (!source.unplaced.empty()) {
    coverage.state = CoverageState::unplaced;
    coverage.count = source.unplaced.size();
  } else {
    coverage.state = CoverageState::none;
  }
  return coverage;
}

template <class Member>
void writeMember(JsonWriter& json, std::string_view key, Member const& member) {
  if constexpr (std::is_same_v<Member, std::optional<ServiceFailure>>) {
    json.memberOrNull(key, member.transform(sentenceOf));
  } else if constexpr (isOptional<Member>) {
    json.memberOrNull(key, member);
  } else {
    json.member(key, member);
  }
}

}  // namespace

void writeCoverage(JsonWriter& json, std::vector<SourceCoverage> const& coverage) {
  json.beginList();
  for (SourceCoverage const& source : coverage) {
    json.separate();
    json.beginObject();
    jsonFields<SourceCoverage>.apply(
        [&](auto const&... fields) { (writeMember(json, fields.key, source.*(fields.member)), ...); });
    json.endObject();
  }
  json.endList();
}

std::vector<SourceCoverage> coverageOf(GovAlerts const& alerts, std::string_view countryCode) {
  if (alerts.sources.empty()) return {uncovered(countryCode)};
  std::vector<SourceCoverage> coverage;
  coverage.reserve(alerts.sources.size());
  for (GovSourceState const& source : alerts.sources) coverage.push_back(coverageOf(source, countryCode));
  return coverage;
}

std::vector<SourceCoverage> agedCoverage(std::vector<SourceCoverage> coverage, Instant now) {
  for (SourceCoverage& source : coverage) {
    // A check that lies ahead is of a clock that was set back: nobody knows how old it is.
    bool const isOld = source.checkedAt && std::chrono::abs(now - *source.checkedAt) > kCoverageTrust;
    // That nobody is known to have a country's warnings does not change from one check to the next.
    bool const isSettled =
        source.state == CoverageState::unchecked || source.state == CoverageState::uncovered;
    if (!isOld || isSettled) continue;
    source.state = CoverageState::unchecked;
    source.since = std::min(*source.checkedAt, now);
    source.reason = ServiceFailure::of(ServiceFailure::Kind::notAskedLately);
  }
  return coverage;
}

SourceCoverage const& mostPressing(std::vector<SourceCoverage> const& coverage) {
  return *std::ranges::min_element(coverage, {}, [](SourceCoverage const& one) {
    return std::ranges::find(kByUrgency, one.state) - kByUrgency.begin();
  });
}

std::string warningServiceName(std::string_view source) {
  OfficialSource const* const row = officialSource(source);
  return std::string(row == nullptr ? source : row->service);
}

}  // namespace nimbara
