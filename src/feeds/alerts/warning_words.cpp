#include "feeds/alerts/warning_words.h"

#include "base/text/text.h"
#include "base/words/country_names.h"
#include "base/words/list_text.h"
#include "base/words/moment_text.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace nimbara {

namespace {

/// Between the areas that a warning lists, in every language.
constexpr std::string_view kJoint = ", ";

std::string severityText(AlertSeverity severity, Texts const& texts) {
  return std::string(texts.text("severity." + std::string(enumName(severity))));
}

/// The colour where the issuer grades by colours.
std::string levelText(NearArea const& area, Texts const& texts) {
  if (area.colour) return std::string(texts.text("warning.colour." + *area.colour));
  return area.severity ? severityText(*area.severity, texts) : std::string();
}

struct ColourGrade {
  std::string_view colour;
  AlertSeverity severity;
};
constexpr ColourGrade kColours[] = {{"yellow", AlertSeverity::advisory},
                                    {"orange", AlertSeverity::warning},
                                    {"red", AlertSeverity::critical}};

ColourGrade const* colourGrade(std::string_view colour) {
  auto const* const row = std::ranges::find(kColours, colour, &ColourGrade::colour);
  return row == std::end(kColours) ? nullptr : row;
}

bool isAlike(NearArea const& one, NearArea const& other) {
  return one.severity == other.severity && one.colour == other.colour && one.onset == other.onset &&
         one.expires == other.expires;
}

std::string nearAreaText(NearArea const& area, NearArea const& own, WarningWords const& words) {
  std::string const name = oneLine(area.area);
  std::string const distance = display(area.distanceKm, words.distance);
  std::string detail;
  bool const isTold = area.severity || area.colour || area.onset || area.expires;
  if (isTold && !isAlike(area, own)) {
    appendClause(detail, levelText(area, words.texts), words.texts);
    appendClause(detail, spanText(area.onset, area.expires, words), words.texts);
  }
  if (detail.empty()) return words.texts.format("warning.nearArea", name, distance, symbol(words.distance));
  return words.texts.format("warning.nearAreaDetail", name, distance, symbol(words.distance), detail);
}

/// Takes `part` out of a list of names, wherever it stands as a whole.
void takeOut(std::string& list, std::string_view part) {
  for (std::size_t at = list.find(part); at != std::string::npos; at = list.find(part, at + 1)) {
    std::size_t const end = at + part.size();
    bool const begins = at == 0 || std::string_view(list).substr(0, at).ends_with(kJoint);
    bool const ends = end == list.size() || std::string_view(list).substr(end).starts_with(kJoint);
    if (!begins || !ends) continue;
    bool const isFirst = at == 0;
    std::size_t const from = isFirst ? 0 : at - kJoint.size();
    list.erase(from, part.size() + (isFirst && end == list.size() ? 0 : kJoint.size()));
    return;
  }
}

}  // namespace

WarningGrade gradeOf(WeatherAlert const& alert) {
  return {alert.severity, alert.colour ? std::string_view(*alert.colour) : std::string_view(),
          alert.levelStated.value_or(true)};
}

std::string gradeText(WarningGrade const& grade, Texts const& texts) {
  if (colourGrade(grade.colour) != nullptr) {
    return std::string(texts.text("warning.grade." + std::string(grade.colour)));
  }
  return grade.isStated ? severityText(grade.severity, texts) : std::string(texts.text("severity.notStated"));
}

std::string gradedTitle(WarningGrade const& grade, std::string_view title, Texts const& texts) {
  return texts.format("warning.graded", gradeText(grade, texts), title);
}

std::string statedSeverityText(WarningGrade const& grade, Texts const& texts) {
  ColourGrade const* const colour = colourGrade(grade.colour);
  if (colour == nullptr || colour->severity == grade.severity) return {};
  return texts.format("warning.statedSeverity", severityText(grade.severity, texts));
}

std::string spanText(std::optional<Instant> onset, std::optional<Instant> end, WarningWords const& words) {
  std::string span;
  auto const add = [&](std::string_view key, Instant moment) {
    appendClause(span, momentText(key, moment, words.now, words.words, words.texts), words.texts);
  };
  if (onset && *onset > words.now) add("warning.from", *onset);
  if (end) add("warning.until", *end);
  return span;
}

std::string nearAreasText(std::vector<NearArea> const& near, NearArea const& own, WarningWords const& words) {
  std::string areas;
  for (NearArea const& area : near) appendItem(areas, nearAreaText(area, own, words), words.texts);
  return areas;
}

NearArea ownLevel(WeatherAlert const& alert) {
  return {{}, 0, alert.severity, alert.colour, alert.onset, alert.expires};
}

bool isCountryWide(WeatherAlert const& alert, std::string_view countryCode) {
  std::string_view const area = alert.areaDesc ? trimmed(*alert.areaDesc) : std::string_view();
  if (area.empty()) return true;
  return area == countryName(countryCode, "en") ||
         (alert.language && area == countryName(countryCode, *alert.language));
}

std::string unplacedAreaText(WeatherAlert const& alert, std::string_view countryCode, Texts const& texts) {
  if (isCountryWide(alert, countryCode)) return std::string(texts.text("warning.forCountry"));
  return texts.format("warning.forAreas", oneLine(alert.areaDesc.value_or("")));
}

std::string placeAreas(WeatherAlert const& alert) {
  std::string all = alert.areaDesc.value_or("");
  if (!alert.near) return all;
  std::string own = all;
  std::string_view last;
  for (NearArea const& area : *alert.near) {
    // An area has a row for each of its periods.
    if (area.area != last) takeOut(own, area.area);
    last = area.area;
  }
  return own.empty() ? all : own;
}

}  // namespace nimbara
