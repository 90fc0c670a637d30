#include "app/words/coverage_text.h"

#include "base/words/country_names.h"
#include "base/words/list_text.h"
#include "base/words/moment_text.h"
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
  if (!coverage.since)
    return std::string(texts.text(reason.empty() ? "coverage.notYet" : "warning.neverChecked"));
  std::string sentence = momentText("warning.uncheckedSince", *coverage.since, now, words, texts);
  if (!reason.empty()) sentence = texts.format("coverage.unchecked", sentence, reason);
  if (coverage.alsoAsked)
    sentence = texts.format("coverage.sentences", sentence, alsoAskedText(coverage, texts));
  return withKnown(sentence, coverage.count, texts);
}

/// "Kvarner (Windwarnung, rot)", "Windwarnung (rot)": scripts read the colour's identifier there, people its
/// name.
std::string worded(std::string area, Texts const& texts) {
  for (std::string_view const colour : {"yellow", "orange", "red"}) {
    std::string const ending = std::string(colour) + ")";
    std::string_view const before(area.data(), area.size() - std::min(area.size(), ending.size()));
    if (!area.ends_with(ending) || !(before.ends_with(", ") || before.ends_with(" ("))) continue;
    return std::string(before) + std::string(texts.text("warning.colour." + std::string(colour))) + ")";
  }
  return area;
}

/// Those for the whole country first.
std::string unplacedList(SourceCoverage const& coverage, Texts const& texts) {
  std::vector<std::string> all = coverage.countryWide;
  all.insert(all.end(), coverage.areas.begin(), coverage.areas.end());
  std::string list;
  for (std::size_t i = 0; i < std::min(all.size(), kMostAreas); ++i) {
    appendItem(list, worded(all[i], texts), texts);
  }
  if (all.size() > kMostAreas) appendItem(list, "…", texts);
  return list;
}

std::string unplacedText(SourceCoverage const& coverage, std::string const& checkedAt, Texts const& texts,
                         UnplacedNames names) {
  std::string_view const key = coverage.countryWide.empty() ? "coverage.unplaced"
                               : coverage.areas.empty()     ? "coverage.countryWide"
                                                            : "coverage.countryAndParts";
  std::string sentence = texts.format(key, countryName(coverage.country, texts.language()), checkedAt);
  std::string const list = names == UnplacedNames::left ? std::string() : unplacedList(coverage, texts);
  return list.empty() ? sentence : texts.format("coverage.named", sentence, list);
}

std::string uncoveredText(SourceCoverage const& coverage, Texts const& texts) {
  std::string const country = countryName(coverage.country, texts.language());
  return country.empty() ? std::string(texts.text("coverage.uncoveredSea"))
                         : texts.format("coverage.uncovered", country);
}

std::string stateText(SourceCoverage const& coverage, Texts const& texts, Calendar const& calendar,
                      Instant now, UnplacedNames names) {
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
      return unplacedText(coverage, checkedAt, texts, names);
    case CoverageState::uncovered:
      return uncoveredText(coverage, texts);
  }
  return {};
}

}  // namespace

std::string alsoAskedText(SourceCoverage const& coverage, Texts const& texts) {
  std::string const service = warningServiceName(coverage.alsoAsked.value_or(""));
  if (!coverage.alsoReason) return texts.format("coverage.alsoBlind", service);
  return texts.format("coverage.alsoFailed", service, failureText(*coverage.alsoReason, texts));
}

std::string coverageText(SourceCoverage const& coverage, Texts const& texts, Calendar const& calendar,
                         Instant now, UnplacedNames names) {
  std::string text = stateText(coverage, texts, calendar, now, names);
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
