#include "cli/pages/watch_log.h"

#include "base/json/json.h"
#include "base/text/text.h"
#include "platform/linux/resident_code.h"

#include <fmt/chrono.h>

#include <algorithm>
#include <iterator>
#include <malloc.h>

namespace nimbara {

namespace {

APIError const* failureOf(Result<ForecastAnswer, APIError> const& outcome) {
  if (!outcome) return &outcome.error();
  return outcome->failure ? &*outcome->failure : nullptr;
}

std::string nameOf(Place const& place) {
  return place.name.empty() ? cacheKey(place.coordinate) : place.name;
}

/// What an exchange needed is given back: the process now sleeps for minutes.
void giveBackMemory() {
  malloc_trim(0);
  giveBackCode();
}

bool isWorthALine(RuleOutcome outcome) {
  return isDelivery(outcome) || outcome == RuleOutcome::refused;
}

}  // namespace

void WatchLog::refreshed(AppState::RefreshReport const& report) {
  APIError const* const failure = failureOf(report.outcome);
  bool const wasGivenUp = failure != nullptr && failure->transport == HttpError::Kind::cancelled;
  if (wasGivenUp) return;
  json_ ? write(jsonOf(report, failure)) : write(lineOf(report, failure));
  giveBackMemory();
}

void WatchLog::passed(PassReport const& report) {
  for (Decision const& decision : report.plan.decisions) {
    if (isWorthALine(decision.outcome)) write(json_ ? jsonOf(decision) : lineOf(decision));
  }
  std::vector<std::string> problems = report.problems;
  std::ranges::move(failedFeeds(report.plan), std::back_inserter(problems));
  if (report.end == PassReport::End::denied) problems.emplace_back("the desktop shows no notifications");
  wentWrong(std::move(problems));
  giveBackMemory();
}

void WatchLog::happened(std::string_view event) {
  if (!json_) return write(stamp() + std::string(event));
  JsonWriter writer;
  writer.beginObject();
  writer.member("event", event);
  writer.member("time", clock_.now());
  writer.endObject();
  write(writer.take());
}

std::string WatchLog::lineOf(AppState::RefreshReport const& report, APIError const* failure) const {
  std::string line = stamp() + nameOf(report.place) + ": ";
  if (failure != nullptr) return line + AppError::of(*failure).text(*texts_());
  ForecastAnswer const& answer = *report.outcome;
  Texts const& texts = *texts_();
  line += answer.alerts.empty() ? std::string(texts.text("alerts.forecast.none"))
                                : texts.format("alerts.forecast", answer.alerts.size());
  return answer.provider ? line + " (" + std::string(enumName(*answer.provider)) + ")" : line;
}

std::string WatchLog::jsonOf(AppState::RefreshReport const& report, APIError const* failure) const {
  JsonWriter writer;
  writer.beginObject();
  writer.member("event", "forecast");
  writer.member("time", clock_.now());
  writer.member("place", nameOf(report.place));
  writer.member("latitude", report.place.coordinate.latitude);
  writer.member("longitude", report.place.coordinate.longitude);
  writer.member("selected", report.isSelected);
  if (report.outcome) {
    writer.memberOrNull("provider", report.outcome->provider);
    writer.member("fromCache", report.outcome->fromCache);
    writer.member("stale", report.outcome->stale);
    writer.member("answeredAt", report.outcome->answeredAt);
    writer.member("alerts", report.outcome->alerts.size());
  }
  if (failure != nullptr) writer.member("error", failure->text());
  writer.endObject();
  return writer.take();
}

std::string WatchLog::lineOf(Decision const& decision) const {
  std::string const name = decision.request.title.empty() ? decision.key : decision.request.title;
  std::string const place = decision.place.empty() ? "" : oneLine(decision.place) + ": ";
  std::string_view const outcome =
      texts_()->text("explain.outcome." + std::string(enumName(decision.outcome)));
  return stamp() + place + oneLine(name) + " – " + std::string(outcome);
}

std::string WatchLog::jsonOf(Decision const& decision) const {
  JsonWriter writer;
  writer.beginObject();
  writer.member("event", "notification");
  writer.member("time", clock_.now());
  writer.member("outcome", decision.outcome);
  writer.member("identifier", decision.request.identifier);
  writer.member("title", decision.request.title);
  writer.member("body", decision.request.body);
  writer.member("severity", decision.severity);
  writer.member("place", decision.place);
  writer.endObject();
  return writer.take();
}

void WatchLog::wentWrong(std::vector<std::string> problems) {
  for (std::string const& problem : problems) {
    if (std::ranges::count(lastProblems_, problem) == 0) write(lineOf(problem));
  }
  lastProblems_ = std::move(problems);
}

std::string WatchLog::lineOf(std::string const& problem) const {
  if (!json_) return stamp() + oneLine(problem);
  JsonWriter writer;
  writer.beginObject();
  writer.member("event", "problem");
  writer.member("time", clock_.now());
  writer.member("problem", problem);
  writer.endObject();
  return writer.take();
}

/// The same in every language: "2026-11-21 18:05:09 ".
std::string WatchLog::stamp() const {
  LocalTime const local = calendar_.local(clock_.now());
  auto const day = std::chrono::floor<std::chrono::days>(local);
  return fmt::format("{} {:%H:%M:%S} ", formatDate(Date(day)),
                     std::chrono::floor<std::chrono::seconds>(local - day));
}

void WatchLog::write(std::string const& line) {
  std::lock_guard const lock(mutex_);
  console_.out(line + "\n");
}

}  // namespace nimbara
