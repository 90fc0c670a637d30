#include "cli/commands/hazards/hazard_frame.h"

#include "base/text/text.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>

namespace nimbara {

namespace {

std::string documentOf(HazardAnswer const& answer) {
  JsonWriter json;
  json.beginObject();
  if (answer.writeDocument) {
    answer.writeDocument(json);
  } else {
    json.member("state", answer.check.state);
    json.memberOrNull("checkedAt", answer.check.checkedAt);
    json.memberOrNull("reason", reasonOf(answer.check));
    json.key("items");
    json.beginList();
    if (answer.writeItems) answer.writeItems(json);
    json.endList();
    if (answer.writeMore) answer.writeMore(json);
  }
  json.endObject();
  return json.take() + "\n";
}

std::string pageOf(HazardAnswer const& answer, Session const& session) {
  Style const style = styleOf(session);
  int const width = widthOf(session);
  std::string page = style.painted(style.text(answer.heading), Colour::bold) + "\n";
  int column = 0;
  for (HazardLine const& line : answer.lines) {
    if (!line.detail.empty()) column = std::max(column, displayWidth(line.title));
  }
  for (HazardLine const& line : answer.lines) {
    bool const fits = column + 4 + displayWidth(line.detail) <= width;
    if (fits && !line.detail.empty() && !line.title.empty()) {
      page += "  " + style.cell(line.title, column) + "  " + style.text(line.detail) + "\n";
      continue;
    }
    for (std::string const& part : wrapped(style.text(line.title), width - 2)) {
      if (!part.empty()) page += "  " + part + "\n";
    }
    for (std::string const& part : wrapped(style.text(line.detail), width - 4)) {
      if (!part.empty()) page += "    " + part + "\n";
    }
  }
  for (std::string const& note : answer.notes) page += style.painted(style.text(note), Colour::dim) + "\n";
  return page;
}

std::string failureSentence(HazardAnswer const& answer, RunContext const& context) {
  if (answer.check.state == HazardState::notConfigured) return answer.advice;
  return answer.subject + " could not be checked: " + context.advised(answer.check.failure);
}

}  // namespace

int runHazard(CommandLine const& line, Session const& session,
              std::function<HazardAnswer(RunContext&, Place const&, HazardWords const&)> const& ask) {
  auto const clock = makeClock(line.common);
  RunContext context(line.common, session, *clock,
                     ownServicesWithin(kCommandLimit, line.common, WeatherProviderOption::automatic));
  bool const needsNoPlace = line.feeds.isWorld && line.feeds.place.empty();
  auto const place = needsNoPlace ? Result<Place, Failure>(Place{}) : context.place(line.feeds.place);
  if (!place) return session.fail(place.error().exitCode, place.error().sentence);
  HazardWords const words{context.texts(), context.wording().units, context.calendar(), clock->now()};
  HazardAnswer const answer = ask(context, *place, words);
  if (session.stop.stop_requested()) return session.fail(exitCode::kInterrupted, "interrupted");
  bool const isKnown =
      answer.check.state != HazardState::unchecked && answer.check.state != HazardState::notConfigured;
  if (line.feeds.json) session.console.out(documentOf(answer));
  for (std::string const& failure : answer.sideFailures) context.tell(failure);
  if (!line.feeds.json && (isKnown || !answer.lines.empty())) session.console.out(pageOf(answer, session));
  return isKnown ? exitCode::kComplete
                 : session.fail(exitCode::kUnavailable, failureSentence(answer, context));
}

}  // namespace nimbara
