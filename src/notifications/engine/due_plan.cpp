#include "notifications/catalogue.h"
#include "notifications/engine/hold_back.h"
#include "notifications/engine/pass_plan.h"

namespace nimbara {

namespace {

using enum RuleOutcome;

/// A daily notification that was missed, as in a machine asleep, is sent until so long after its hour.
constexpr std::chrono::hours kDailyGrace{3};

Decision dueDecision(ScheduledNotification const& entry, Rule const& rule, Texts const& texts) {
  Decision decision;
  decision.rule = &rule;
  decision.key = entry.identifier;
  decision.kind = withoutJoint(rule.stem);
  decision.severity = AlertSeverity::advisory;
  decision.place = entry.place;
  decision.request = {entry.identifier,          entry.title, entry.body, entry.sound, {}, "weather", false,
                      notificationActions(texts)};
  decision.request.urgency = urgencyOf(decision.severity);
  return decision;
}

/// The place's clock: hours run on from the due one. A change of the clock within the grace is skipped.
int hourAt(ScheduledNotification const& entry, Instant now) {
  return (entry.hour + static_cast<int>(std::chrono::floor<std::chrono::hours>(now - entry.due).count())) %
         24;
}

}  // namespace

DuePlan planDue(Instant now, Settings const& settings, Texts const& texts,
                std::set<std::string, std::less<>> const& suppressedLocationTags, EngineState const& state) {
  RuleSettings const values = RuleSettings::of(settings);
  DuePlan plan;
  for (ScheduledNotification const& entry : state.scheduled) {
    if (entry.due > now) continue;
    Rule const* const rule = ruleOf(entry.identifier);
    bool const isWanted = rule != nullptr && settings.boolean(rule->setting) &&
                          !mutes(values, now, withoutJoint(rule->stem), std::string(withoutJoint(rule->stem)),
                                 AlertSeverity::advisory);
    if (!isWanted || now - entry.due > kDailyGrace || suppressedLocationTags.contains(entry.placeTag)) {
      plan.missed.push_back(entry.identifier);
      continue;
    }
    Decision decision = dueDecision(entry, *rule, texts);
    decision.outcome = heldAtHour(values, now, hourAt(entry, now)).value_or(announced);
    plan.entries.push_back({entry, std::move(decision)});
  }
  return plan;
}

std::string kindOfIdentifier(std::string_view identifier) {
  Rule const* const rule = ruleOf(identifier);
  return std::string(rule == nullptr ? identifier : withoutJoint(rule->stem));
}

NeededInputs neededInputs(Settings const& settings) {
  NeededInputs needed;
  for (Rule const& rule : ruleCatalogue()) {
    if (!settings.boolean(rule.setting)) continue;
    for (auto choice = static_cast<std::size_t>(rule.reach); choice < needed.byChoice.size(); ++choice) {
      needed.byChoice[choice].insertAll(rule.inputs);
    }
  }
  return needed;
}

}  // namespace nimbara
