#include "cli/pages/notification_page.h"

#include "base/json/json.h"
#include "base/text/display_text.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "base/words/time_words.h"
#include "notifications/log/reason_text.h"

#include <algorithm>
#include <ranges>

namespace nimbara {

namespace {

using enum RuleOutcome;

constexpr std::string_view kSystemSound = "default";

/// What a person is sent of the pass: not what was replaced or taken back in silence.
bool isTold(Decision const& decision) {
  RuleOutcome const told[] = {announced, escalated, listed, endMoved, lifted, scheduled};
  return std::ranges::count(told, decision.outcome) > 0;
}

void writeTrigger(JsonWriter& json, Decision const& decision) {
  if (!decision.scheduled) return json.member("trigger", "immediate");
  json.key("trigger");
  json.beginObject();
  json.member("hour", decision.scheduled->hour);
  json.member("minute", decision.scheduled->minute);
  json.endObject();
}

void writeTold(JsonWriter& json, Decision const& decision) {
  NotificationRequest const& request = decision.request;
  json.beginObject();
  json.member("identifier", request.identifier);
  json.member("title", request.title);
  json.member("body", request.body);
  json.member("sound", request.sound.value_or(std::string(kSystemSound)));
  writeTrigger(json, decision);
  json.member("severity", decision.severity);
  json.member("quiet", request.isSilent);
  json.member("place", decision.place);
  json.endObject();
}

std::string_view nameOf(Measurement::Relation relation) {
  return enumName(relation);
}
std::string_view nameOf(std::string const& relation) {
  return relation;
}

template <class Measured>
void writeMeasured(JsonWriter& json, std::vector<Measured> const& measured) {
  json.key("measured");
  json.beginList();
  for (Measured const& measurement : measured) {
    json.separate();
    json.beginObject();
    json.member("what", measurement.what);
    json.member("value", measurement.value);
    json.member("needs", nameOf(measurement.needs));
    json.member("limit", measurement.limit);
    json.member("unit", measurement.unit);
    json.endObject();
  }
  json.endList();
}

std::string clockText(ScheduledNotification const& entry, Texts const& texts) {
  Instant const clock(std::chrono::hours(entry.hour) + std::chrono::minutes(entry.minute));
  return TimeWords(texts, Calendar::utc()).moment(clock, clock);
}

std::string reasonText(Decision const& decision, ReasonWords const& words) {
  std::string text = reasonText(logLineOf(decision, {}), words.units, words.texts);
  auto const add = [&](std::string_view key, std::string const& moment) {
    text = words.texts.format("explain.and", text, words.texts.format(key, moment));
  };
  bool const isScheduled =
      decision.outcome == RuleOutcome::scheduled || decision.outcome == RuleOutcome::stillScheduled;
  if (isScheduled && decision.scheduled) add("explain.toldAt", clockText(*decision.scheduled, words.texts));
  if (decision.since)
    add("explain.since", TimeWords(words.texts, words.calendar).moment(*decision.since, words.now));
  return text;
}

std::string identifierOf(Decision const& decision) {
  return decision.request.identifier.empty() ? std::string(decision.rule->stem) : decision.request.identifier;
}

}  // namespace

std::string_view nothingKey(bool isAnyMissed, bool isAnyChecked) {
  if (!isAnyMissed) return "notify.nothing";
  return isAnyChecked ? "notify.nothingKnown" : "notify.nothingChecked";
}

std::string notificationsJson(PassPlan const& plan) {
  JsonWriter json;
  json.beginList();
  for (Decision const& decision : plan.decisions) {
    if (!isTold(decision)) continue;
    json.separate();
    writeTold(json, decision);
  }
  json.endList();
  return json.take() + "\n";
}

std::string notificationsText(PassPlan const& plan, Texts const& texts, Style const& style, int width) {
  std::string text;
  for (Decision const& decision : plan.decisions) {
    if (!isTold(decision)) continue;
    std::string heading = oneLine(decision.request.title);
    if (decision.scheduled) {
      heading = texts.format("notify.at", fixedDecimal(decision.scheduled->hour, 0), heading);
    }
    text += style.painted(heading, Colour::bold) + "\n";
    for (std::string const& line : wrapped(oneLine(joinedLines(decision.request.body)), width - 2)) {
      text += "  " + line + "\n";
    }
  }
  if (!text.empty()) return text;
  return std::string(texts.text(nothingKey(std::ranges::any_of(plan.decisions, wasMissed),
                                           std::ranges::any_of(plan.decisions, wasChecked)))) +
         "\n";
}

std::string explanationJson(PassPlan const& plan) {
  JsonWriter json;
  json.beginList();
  for (Decision const& decision : plan.decisions) {
    json.separate();
    json.beginObject();
    json.member("rule", decision.rule->stem);
    json.member("setting", decision.rule->setting);
    json.member("identifier", identifierOf(decision));
    json.member("outcome", decision.outcome);
    json.member("place", decision.place);
    writeMeasured(json, decision.measured);
    json.member("note", plainNote(decision.note, decision.failure));
    json.member("since", decision.since);
    json.endObject();
  }
  json.endList();
  return json.take() + "\n";
}

std::string explanationText(PassPlan const& plan, ReasonWords const& words, Style const& style) {
  std::size_t width = 0;
  for (Decision const& decision : plan.decisions) width = std::max(width, identifierOf(decision).size());
  constexpr std::size_t kWidest = 28;
  std::string text;
  for (Decision const& decision : plan.decisions) {
    std::string const name = fitted(identifierOf(decision), static_cast<int>(std::min(width, kWidest)));
    std::string const place = decision.place.empty() ? "" : oneLine(decision.place) + ": ";
    std::string const line = name + "  " + place + oneLine(reasonText(decision, words), 1000);
    text += (isAction(decision.outcome) ? style.painted(line, Colour::bold) : line) + "\n";
  }
  return text;
}

std::string logJson(std::vector<LoggedNotification> const& log) {
  JsonWriter json;
  json.beginList();
  for (LoggedNotification const& line : log | std::views::reverse) {
    json.separate();
    json.beginObject();
    json.member("time", line.time);
    json.member("outcome", line.outcome);
    json.member("identifier", line.identifier);
    json.member("title", line.title);
    json.member("body", line.body);
    json.member("place", line.place);
    json.member("setting", line.setting);
    json.member("kind", line.kind);
    writeMeasured(json, line.measured);
    json.member("note", plainNote(line.note, line.failure));
    json.endObject();
  }
  json.endList();
  return json.take() + "\n";
}

std::string logText(std::vector<LoggedNotification> const& log, ReasonWords const& words,
                    Style const& style) {
  std::string text;
  for (LoggedNotification const& line : log | std::views::reverse) {
    std::string const title = oneLine(line.title.empty() ? line.identifier : line.title);
    std::string const place = line.place.empty() ? "" : " (" + oneLine(line.place) + ")";
    text += formatIso8601(line.time) + "  " + style.painted(title, Colour::bold) + place + "\n  " +
            oneLine(reasonText(line, words.units, words.texts), 1000) + "\n";
  }
  return text.empty() ? std::string(words.texts.text("notify.log.empty")) + "\n" : text;
}

}  // namespace nimbara
