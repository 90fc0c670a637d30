#include "desktop/views/hazards/alert_view.h"

#include "app/words/coverage_text.h"
#include "base/text/text.h"
#include "base/words/list_text.h"
#include "desktop/views/problem_text.h"
#include "feeds/alerts/gov_alerts.h"
#include "feeds/alerts/warning_words.h"
#include "model/process.h"

#include <algorithm>

namespace nimbara {

namespace {

/// The look of what nobody grades.
constexpr std::string_view kUnstated = "unstated";
constexpr std::size_t kLongestTitle = 200;
constexpr std::size_t kLongestNear = 400;
constexpr std::size_t kLongestMessage = 500;
constexpr std::size_t kLongestDetails = 20'000;

void append(std::string& text, std::string_view part, std::string_view separator) {
  if (part.empty()) return;
  if (!text.empty()) text += separator;
  text += part;
}

std::vector<WeatherAlert> allAlerts(WeatherState const& state) {
  std::vector<WeatherAlert> alerts = state.govAlerts;
  if (state.insight)
    std::ranges::move(shownAlerts(state.insight->alerts, state.insight->superseded),
                      std::back_inserter(alerts));
  return alerts;
}

Calendar calendarFor(WeatherState const& state, ViewContext const& context) {
  return state.weatherData ? calendarOf(*state.weatherData, context.fallback) : context.fallback;
}

std::string messageOf(WeatherAlert const& alert) {
  bool const repeats = alert.message == alert.title || alert.message == alert.areaDesc;
  return repeats ? std::string() : reflowed(alert.message);
}

/// Where all of the warning is near and none of it here.
std::string nearTextOf(WeatherAlert const& alert, ViewContext const& context) {
  if (!alert.distanceKm) return {};
  DistanceUnit const unit = context.units.distance;
  return context.texts.format("warning.nearBy", display(*alert.distanceKm, unit), symbol(unit));
}

WarningWords wordsOf(WeatherState const& state, ViewContext const& context) {
  return {context.texts, TimeWords(context.texts, calendarFor(state, context)), context.now,
          context.units.distance};
}

/// Which areas are near, where others have the place in them; what is said of those may be graver.
std::string nearAreasOf(WeatherAlert const& alert, WarningWords const& words) {
  if (!alert.near) return {};
  std::string const areas = nearAreasText(*alert.near, ownLevel(alert), words);
  return areas.empty() ? areas : words.texts.format("warning.nearAreas", areas);
}

std::string issuerOf(WeatherAlert const& alert, ViewContext const& context) {
  if (!alert.isGovAlert && !alert.source) return context.text("desktop.fromForecast");
  std::string source = oneLine(alert.source.value_or(""));
  if (!alert.issuer) return source;
  return context.texts.format("warning.issuedBy", oneLine(*alert.issuer), source);
}

std::string ageOf(WeatherAlert const& alert, WeatherState const& state, ViewContext const& context) {
  auto const since = alert.isGovAlert ? alert.issued : state.lastUpdated;
  return since ? ageText(*since, context.now, context.texts) : std::string();
}

AlertView viewOf(WeatherAlert const& alert, WeatherState const& state, ViewContext const& context,
                 WarningWords const& words) {
  AlertView view;
  view.id = alert.id.text();
  view.level = alert.levelStated.value_or(true) ? enumName(alert.severity) : kUnstated;
  view.severity = gradeText(gradeOf(alert), context.texts);
  view.title = oneLine(alert.title, kLongestTitle);
  view.message = cutAt(messageOf(alert), kLongestMessage);
  view.area = oneLine(placeAreas(alert), kLongestTitle);
  if (alert.onWater.value_or(false)) append(view.area, context.text("warning.onWater"), " – ");
  append(view.area, nearTextOf(alert, context), " – ");
  if (!alert.distanceKm) view.near = cutAt(nearAreasOf(alert, words), kLongestNear);
  view.when = spanText(alert.onset, alert.expires, words);
  view.issuer = issuerOf(alert, context);
  view.colour = alert.colour.value_or("");
  view.age = ageOf(alert, state, context);
  view.isOfficial = alert.isGovAlert;
  view.heading = gradedTitle(gradeOf(alert), view.title, context.texts);
  view.sentence = view.heading;
  for (std::string const* const part : {&view.area, &view.when, &view.near, &view.issuer, &view.age}) {
    appendClause(view.sentence, *part, context.texts);
  }
  return view;
}

/// Those that have not ended, as they are listed.
std::vector<WeatherAlert> listed(std::vector<WeatherAlert> alerts, ViewContext const& context) {
  std::erase_if(alerts, [&](WeatherAlert const& alert) { return hasEnded(alert, context.now); });
  sortMostSevereFirst(alerts);
  return alerts;
}

std::string_view countryOf(OfficialCheck const& check) {
  return check.coverage.empty() ? std::string_view() : std::string_view(check.coverage.front().country);
}

std::vector<AlertView> viewsOf(std::vector<WeatherAlert> alerts, WeatherState const& state,
                               ViewContext const& context) {
  WarningWords const words = wordsOf(state, context);
  std::vector<AlertView> views;
  for (WeatherAlert const& alert : listed(std::move(alerts), context)) {
    views.push_back(viewOf(alert, state, context, words));
  }
  return views;
}

/// Of a warning that nobody can locate.
AlertView unplacedView(WeatherAlert const& alert, WeatherState const& state, OfficialCheck const& check,
                       ViewContext const& context) {
  WeatherAlert shown = alert;
  if (shown.message == shown.areaDesc) shown.message.clear();
  shown.areaDesc = unplacedAreaText(alert, countryOf(check), context.texts);
  return viewOf(shown, state, context, wordsOf(state, context));
}

/// What is told of it beside area, period and what to do.
std::string textOf(WeatherAlert const& alert, ViewContext const& context) {
  std::string text = messageOf(alert);
  append(text, statedSeverityText(gradeOf(alert), context.texts), "\n\n");
  if (alert.text) {
    append(text, trimmed(*alert.text), "\n\n");  // to the letter
  } else if (alert.description && *alert.description != alert.message) {
    append(text, reflowed(*alert.description), "\n\n");
  }
  return cutAt(text, kLongestDetails);
}

std::string instructionOf(WeatherAlert const& alert) {
  std::string const instruction = alert.instruction.value_or("");
  return cutAt(alert.text ? std::string(trimmed(instruction)) : reflowed(instruction), kLongestDetails);
}

std::string wholeSpanOf(WeatherAlert const& alert, ViewContext const& context, WarningWords const& words) {
  std::string span = spanText(alert.onset, alert.expires, words);
  if (alert.isGovAlert && !alert.expires)
    appendClause(span, context.text("desktop.warning.openEnded"), context.texts);
  return span;
}

/// Its number among those that are listed with it, and the ones beside it.
void findNeighbours(WarningView& view, std::vector<WeatherAlert> const& all, ViewContext const& context) {
  auto const idOf = [](WeatherAlert const& alert) { return alert.id.text(); };
  auto const found = std::ranges::find(all, view.id, idOf);
  if (found == all.end() || all.size() < 2) return;
  view.position = context.texts.format("desktop.warning.position", found - all.begin() + 1, all.size());
  if (found != all.begin()) view.previous = idOf(*std::prev(found));
  if (std::next(found) != all.end()) view.next = idOf(*std::next(found));
}

std::string namesOf(std::vector<SourceCoverage> const& coverage, Texts const& texts) {
  std::string names;
  for (SourceCoverage const& source : coverage) appendItem(names, source.service.value_or(""), texts);
  return names;
}

std::string sourceOf(OfficialCheck const& check, ViewContext const& context) {
  std::string source = context.standIn.empty() ? namesOf(check.coverage, context.texts)
                                               : context.texts.format("report.standIn", context.standIn);
  if (auto const checkedAt = mostPressing(check.coverage).checkedAt) {
    append(source, context.texts.format("desktop.checked", ageText(*checkedAt, context.now, context.texts)),
           "  ·  ");
  }
  return source;
}

std::string headlineOf(SourceCoverage const& coverage, std::size_t count, ViewContext const& context) {
  if (count > 0) return context.texts.format("desktop.official.count", count);
  return context.text(coverage.checkedAt ? "desktop.official.none" : "desktop.official.asking");
}

/// The sentence of a failed check without its reason, which has a sentence of its own.
std::string uncheckedText(SourceCoverage coverage, Calendar const& calendar, ViewContext const& context) {
  coverage.reason.reset();
  coverage.alsoAsked.reset();
  coverage.count = 0;  // they are listed
  return coverageText(coverage, context.texts, calendar, context.now);
}

void fillUnchecked(OfficialView& view, SourceCoverage const& coverage, bool hasWarnings,
                   Calendar const& calendar, ViewContext const& context) {
  view.isUnchecked = true;
  std::string const sentence = uncheckedText(coverage, calendar, context);
  if (hasWarnings) {
    view.notice = sentence + ". ";
  } else {
    view.headline = sentence;
  }
  bool const hasReason = coverage.reason && coverage.reason->kind != ServiceFailure::Kind::notAskedLately;
  if (hasReason) view.notice += becauseText(*coverage.reason, context) + " ";
  if (coverage.alsoAsked) view.notice += alsoAskedText(coverage, context.texts) + ". ";
  view.notice += context.text(hasWarnings ? "desktop.official.retry" : "desktop.official.retryEmpty");
}

void fillStates(OfficialView& view, SourceCoverage coverage, std::size_t count, bool isAsking,
                Calendar const& calendar, ViewContext const& context) {
  view.state = enumName(coverage.state);
  view.headline = headlineOf(coverage, count, context);
  if (coverage.state == CoverageState::warnings) coverage.count = count;
  bool const isUnknown = coverage.state == CoverageState::unchecked;
  if (isUnknown && isAsking) {
    view.brief = context.text("desktop.official.asking");
    return;
  }
  view.brief = coverageText(coverage, context.texts, calendar, context.now);
  if (isUnknown) fillUnchecked(view, coverage, count > 0, calendar, context);
  if (coverage.state == CoverageState::unplaced) {
    view.headline =
        coverageText(coverage, context.texts, calendar, context.now, UnplacedNames::left);  // they are listed
    view.notice =
        context.text(coverage.areas.empty() ? "desktop.official.countryWide" : "desktop.official.unplaced");
  }
  if (coverage.state == CoverageState::uncovered) {
    view.isUncovered = true;
    view.headline = view.brief;
    view.notice = context.text("desktop.official.uncovered");
  }
}

}  // namespace

std::vector<AlertView> alertViews(WeatherState const& state, ViewContext const& context) {
  return viewsOf(allAlerts(state), state, context);
}

std::vector<AlertView> officialViews(WeatherState const& state, ViewContext const& context,
                                     OfficialCheck const& check) {
  std::vector<AlertView> views = viewsOf(state.govAlerts, state, context);
  std::string const group = views.empty() ? std::string() : context.text("alerts.unplaced");
  for (WeatherAlert const& alert : listed(check.unplaced, context)) {
    views.push_back(unplacedView(alert, state, check, context));
    views.back().group = group;
  }
  return views;
}

std::optional<WeatherAlert> alertOf(WeatherState const& state, std::string_view id,
                                    OfficialCheck const& check) {
  if (id.empty()) return std::nullopt;
  auto const idOf = [](WeatherAlert const& alert) { return alert.id.text(); };
  for (auto const& alerts : {allAlerts(state), check.unplaced}) {
    auto const found = std::ranges::find(alerts, id, idOf);
    if (found != alerts.end()) return *found;
  }
  return std::nullopt;
}

WarningView warningView(WeatherState const& state, std::string_view id, ViewContext const& context,
                        OfficialCheck const& check) {
  WarningView view;
  auto const alert = alertOf(state, id, check);
  if (!alert) return view;
  WarningWords const words = wordsOf(state, context);
  bool const isUnplaced =
      std::ranges::find(check.unplaced, alert->id, &WeatherAlert::id) != check.unplaced.end();
  AlertView const brief =
      isUnplaced ? unplacedView(*alert, state, check, context) : viewOf(*alert, state, context, words);
  view.id = brief.id;
  view.severity = brief.severity;
  view.level = brief.level;
  view.title = brief.title;
  view.area =
      isUnplaced ? unplacedAreaText(*alert, countryOf(check), context.texts) : reflowed(placeAreas(*alert));
  if (alert->onWater.value_or(false)) append(view.area, context.text("warning.onWater"), " – ");
  append(view.area, nearTextOf(*alert, context), " – ");
  if (!alert->distanceKm) view.near = nearAreasOf(*alert, words);
  view.when = wholeSpanOf(*alert, context, words);
  if (alert->issued) view.issued = words.words.moment(*alert->issued, context.now);
  append(view.issued, brief.age, "  ·  ");
  if (int const updates = alert->updates.value_or(0); updates > 0)
    append(view.issued, context.texts.format("desktop.warning.updated", updates), "  ·  ");
  view.issuer = brief.issuer;
  view.text = textOf(*alert, context);
  if (alert->isFullText == false) view.note = context.text("warning.noFullText");
  view.instruction = instructionOf(*alert);
  view.link = alert->link.value_or("").starts_with("https://") ? *alert->link : std::string();
  view.isOfficial = alert->isGovAlert;
  if (view.isOfficial) view.kind = "gov:" + std::string(wordOf(alert->kind));
  findNeighbours(view, listed(isUnplaced ? check.unplaced : allAlerts(state), context), context);
  return view;
}

OfficialView officialView(OfficialCheck const& check, std::optional<Place> const& place,
                          WeatherState const& state, ViewContext const& context) {
  OfficialView view;
  view.hasPlace = place.has_value();
  if (!place || check.place != place || check.coverage.empty()) return view;
  auto const count = std::ranges::count_if(
      state.govAlerts, [&](WeatherAlert const& alert) { return !hasEnded(alert, context.now); });
  if (check.isCovered()) view.source = sourceOf(check, context);
  fillStates(view, mostPressing(agedCoverage(check.coverage, context.now)), static_cast<std::size_t>(count),
             check.isAsking, calendarFor(state, context), context);
  return view;
}

std::string reflowed(std::string_view text) {
  std::string flowed;
  bool isBroken = true;  // a new paragraph begins
  for (std::string_view const raw : split(text, '\n')) {
    std::string_view const line = trimmed(raw);
    bool const isItem = line.starts_with("* ") || line.starts_with("- ");
    if (line.empty()) {
      isBroken = true;
      continue;
    }
    if (!flowed.empty()) flowed += isBroken ? "\n\n" : isItem ? "\n" : " ";
    flowed += line;
    isBroken = false;
  }
  return flowed;
}

std::string cutAt(std::string_view text, std::size_t limit) {
  if (text.size() <= limit) return std::string(text);
  constexpr std::string_view kEnd = "…";
  std::size_t end = limit < kEnd.size() ? 0 : limit - kEnd.size();
  auto const isInside = [&](std::size_t at) { return (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80; };
  while (end > 0 && isInside(end)) --end;
  return std::string(text.substr(0, end)) + std::string(kEnd);
}

}  // namespace nimbara
