#include "cli/pages/notification_page.h"

#include "base/json/json.h"
#include "base/text/display_text.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "base/words/time_words.h"

#include <algorithm>
#include <map>
#include <ranges>
#include <set>

namespace nimbara {

namespace {

using enum RuleOutcome;

constexpr std::string_view kSystemSound = "default";

/// What a person is sent of the pass: not what was replaced or taken back in silence.
bool isTold(Decision const& decision) {
  RuleOutcome const told[] = {announced, escalated, listed, endMoved, lifted, cancelled, scheduled};
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

std::string previewText(Decision const& decision, ReasonWords const& words) {
  std::string text = reasonText(logLineOf(decision, {}), words.units, words.texts, ReasonTense::preview);
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

/// The text of an explanation, from one decision after another.
class Explanation {
 public:
  Explanation(PassPlan const& plan, ReasonWords const& words, ExplanationPage const& page)
      : plan_(plan), words_(words), page_(page) {
    std::set<std::string_view> places;
    for (Decision const& decision : plan.decisions) {
      if (!decision.place.empty()) places.insert(decision.place);
      if (!isLeftOut(decision)) nameWidth_ = std::max(nameWidth_, displayWidth(nameOf(decision)));
    }
    isOfOnePlace_ = places.size() < 2;
    constexpr int kWidestName = 30;
    nameWidth_ = std::min(nameWidth_, kWidestName);
  }

  std::string text() const {
    std::string sent;
    std::string others;
    for (Decision const& decision : plan_.decisions) {
      if (isLeftOut(decision)) continue;
      bool const isSent = isAction(decision.outcome);
      (isSent ? sent : others) += entry(decision, isSent ? Colour::bold : Colour::plain);
    }
    std::string text = joined(sent, others);
    text = joined(text, leftOut(notChosen, "explain.leftOut"));
    return joined(text, leftOut(settingOff, "explain.turnedOff"));
  }

 private:
  static bool isLeftOut(Decision const& decision) {
    return decision.outcome == settingOff || decision.outcome == notChosen;
  }

  static std::string joined(std::string const& one, std::string const& other) {
    return one + (one.empty() || other.empty() ? "" : "\n") + other;
  }

  /// "Heavy rain"; of one event among many, and of a rule of the user's own, its title.
  std::string nameOf(Decision const& decision) const {
    std::string const key = "desktop.notifications." + std::string(decision.rule->setting);
    std::string_view const title = words_.texts.text(key);
    bool const isOneOfMany = decision.rule->policy == RulePolicy::instance || title == key;
    if (isOneOfMany && !decision.title.empty()) return oneLine(decision.title);
    if (title == key) return identifierOf(decision);
    // One setting turns on the forecast's rule and the one on official warnings.
    bool const isOfficial = decision.rule->reach == PlaceChoice::official;
    return isOfficial ? words_.texts.format("explain.official", title) : std::string(title);
  }

  std::string named(Decision const& decision) const {
    std::string const name = nameOf(decision);
    return page_.showsIdentifiers ? name + " [" + identifierOf(decision) + "]" : name;
  }

  /// The name in a column of its own, where there is room, and the reason beside it.
  std::string entry(Decision const& decision, Colour colour) const {
    constexpr int kGap = 2;
    constexpr int kNarrowestReason = 40;
    std::string const place = isOfOnePlace_ || decision.place.empty() ? "" : oneLine(decision.place) + ": ";
    std::string const reason = place + oneLine(previewText(decision, words_), 1000);
    std::string const name = page_.style.text(named(decision));
    bool const isBeside =
        displayWidth(name) <= nameWidth_ && page_.width - nameWidth_ - kGap >= kNarrowestReason;
    int const indent = isBeside ? nameWidth_ + kGap : kGap;
    std::string out = isBeside ? page_.style.painted(fitted(name, indent), colour)
                               : page_.style.painted(name, colour) + "\n" + std::string(kGap, ' ');
    std::string margin;
    for (std::string const& line : wrapped(page_.style.text(reason), page_.width - indent)) {
      out += margin + line + "\n";
      margin = std::string(static_cast<std::size_t>(indent), ' ');
    }
    return out;
  }

  std::string paragraph(std::string const& text) const {
    std::string out;
    for (std::string const& line : wrapped(page_.style.text(text), page_.width)) {
      out += page_.style.painted(line, Colour::dim) + "\n";
    }
    return out;
  }

  /// A paragraph for each reason, and each place where there are several, that names the rules with that
  /// outcome.
  std::string leftOut(RuleOutcome outcome, std::string_view key) const {
    std::map<std::pair<std::string, std::string>, std::string> lists;
    std::set<std::string> listed;
    for (Decision const& decision : plan_.decisions) {
      if (decision.outcome != outcome) continue;
      std::string const place = isOfOnePlace_ ? "" : oneLine(decision.place);
      std::string const name = named(decision);
      if (!listed.insert(place + "\n" + name).second) continue;
      std::string& list = lists[{place, decision.note}];
      list += (list.empty() ? "" : "; ") + name;  // names have commas
    }
    std::string out;
    for (auto const& [of, list] : lists) {
      auto const& [place, note] = of;
      std::string text = (place.empty() ? "" : place + ": ") + words_.texts.format(key, list);
      if (!note.empty()) {
        text = words_.texts.format("explain.and", text, words_.texts.text("explain.note." + note));
      }
      out += paragraph(text);
    }
    return out;
  }

  PassPlan const& plan_;
  ReasonWords const& words_;
  ExplanationPage const& page_;
  int nameWidth_ = 0;
  bool isOfOnePlace_ = false;
};

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

std::string notificationsText(PassPlan const& plan, Texts const& texts, Style const& style, int width,
                              ReasonTense tense) {
  bool const isPreview = tense == ReasonTense::preview;
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
  if (text.empty()) {
    std::string_view const key = nothingKey(std::ranges::any_of(plan.decisions, wasMissed),
                                            std::ranges::any_of(plan.decisions, wasChecked));
    return std::string(texts.text(isPreview && key == "notify.nothing" ? "notify.preview.nothing" : key)) +
           "\n";
  }
  return isPreview ? std::string(texts.text("notify.preview.heading")) + "\n\n" + text : text;
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

std::string explanationText(PassPlan const& plan, ReasonWords const& words, ExplanationPage const& page) {
  return Explanation(plan, words, page).text();
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
    if (line.updates > 0) json.member("updates", line.updates);
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
    text += TimeWords(words.texts, words.calendar).moment(line.time, words.now) + "  " +
            style.painted(title, Colour::bold) + place + "\n  " +
            oneLine(reasonText(line, words.units, words.texts), 1000) + "\n";
  }
  return text.empty() ? std::string(words.texts.text("notify.log.empty")) + "\n" : text;
}

}  // namespace nimbara
