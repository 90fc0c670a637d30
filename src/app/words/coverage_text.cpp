#include "app/words/coverage_text.h"

#include "base/words/country_names.h"
#include "base/words/time_words.h"
#include "feeds/fetching/failure_words.h"

namespace nimbara {

namespace {

/// A list of areas is cut here: a country has hundreds.
constexpr std::size_t kMostAreas = 12;

/// What is known all the same must not be hidden by what is not.
std::string withKnown(std::string const& sentence, std::size_t count, Texts const& texts) {
  return count == 0 ? sentence : texts.format("coverage.known", sentence, count);
}

std::string uncheckedText(SourceCoverage const& coverage, Texts const& texts, TimeWords const& words,
                          Instant now) {
  std::string const reason = coverage.reason ? failureText(*coverage.reason, texts) : std::string();
  std::string const since = coverage.since ? words.moment(*coverage.since, now) : std::string();
  if (since.empty())
    return std::string(texts.text(reason.empty() ? "coverage.notYet" : "warning.neverChecked"));
  return withKnown(reason.empty() ? texts.format("warning.uncheckedSince", since)
                                  : texts.format("coverage.unchecked", since, reason),
                   coverage.count, texts);
}

/// "Kvarner (Windwarnung, rot)": scripts read the colour's identifier there, people its name.
std::string worded(std::string area, Texts const& texts) {
  for (std::string_view const colour : {"yellow", "orange", "red"}) {
    std::string const ending = ", " + std::string(colour) + ")";
    if (!area.ends_with(ending)) continue;
    area.resize(area.size() - ending.size());
    return area + ", " + std::string(texts.text("warning.colour." + std::string(colour))) + ")";
  }
  return area;
}

std::string areaList(std::vector<std::string> const& areas, Texts const& texts) {
  std::string list;
  for (std::size_t i = 0; i < std::min(areas.size(), kMostAreas); ++i) {
    list += (list.empty() ? "" : ", ") + worded(areas[i], texts);
  }
  return areas.size() > kMostAreas ? list + ", …" : list;
}

std::string uncoveredText(SourceCoverage const& coverage, Texts const& texts) {
  std::string const country = countryName(coverage.country, texts.language());
  return country.empty() ? std::string(texts.text("coverage.uncoveredHere"))
                         : texts.format("coverage.uncovered", country);
}

std::string stateText(SourceCoverage const& coverage, Texts const& texts, Calendar const& calendar,
                      Instant now) {
  TimeWords const words(texts, calendar);
  std::string const checkedAt = coverage.checkedAt ? words.moment(*coverage.checkedAt, now) : std::string();
  switch (coverage.state) {
    case CoverageState::warnings:
      return texts.format("coverage.warnings", coverage.count, checkedAt);
    case CoverageState::none:
      return texts.format("coverage.none", checkedAt);
    case CoverageState::unchecked:
      return uncheckedText(coverage, texts, words, now);
    case CoverageState::unplaced:
      return texts.format("coverage.unplaced", countryName(coverage.country, texts.language()),
                          areaList(coverage.areas, texts));
    case CoverageState::uncovered:
      return uncoveredText(coverage, texts);
  }
  return {};
}

}  // namespace

std::string elsewhereText(SourceCoverage const& coverage, Texts const& texts) {
  bool const isTold = coverage.areas.empty() || coverage.state == CoverageState::unplaced;
  return isTold ? std::string()
                : std::string(texts.text("alerts.unplaced")) + ": " + areaList(coverage.areas, texts);
}

std::string coverageText(SourceCoverage const& coverage, Texts const& texts, Calendar const& calendar,
                         Instant now) {
  std::string text = stateText(coverage, texts, calendar, now);
  bool const isSecond = coverage.insteadOf && coverage.service && coverage.state != CoverageState::unchecked;
  if (!isSecond) return text;
  auto const reason = coverage.insteadReason.value_or(ServiceFailure::of(ServiceFailure::Kind::noAnswer));
  return texts.format("coverage.insteadOf", text, *coverage.service, warningServiceName(*coverage.insteadOf),
                      failureText(reason, texts));
}

std::vector<std::string> coverageLines(std::vector<SourceCoverage> const& coverage, Texts const& texts,
                                       Calendar const& calendar, Instant now, ServiceNames names) {
  bool const isNamed = names == ServiceNames::always || coverage.size() > 1;
  std::vector<std::string> lines;
  for (SourceCoverage const& source : coverage) {
    std::string line = coverageText(source, texts, calendar, now);
    if (isNamed && source.service) line = *source.service + ": " + line;
    lines.push_back(std::move(line));
  }
  return lines;
}

}  // namespace nimbara
