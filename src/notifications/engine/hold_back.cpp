#include "notifications/engine/hold_back.h"

#include <algorithm>

namespace nimbara {

using enum RuleOutcome;

NotificationUrgency urgencyOf(AlertSeverity severity) {
  switch (severity) {
    case AlertSeverity::critical:
      return NotificationUrgency::critical;
    case AlertSeverity::info:
      return NotificationUrgency::low;
    default:
      return NotificationUrgency::normal;
  }
}

std::string_view withoutJoint(std::string_view stem) {
  return stem.ends_with('_') ? stem.substr(0, stem.size() - 1) : stem;
}

std::vector<NotificationAction> notificationActions(Texts const& texts) {
  return {{"default", std::string(texts.text("push.action.open"))},
          {"snooze", std::string(texts.text("push.action.snooze"))},
          {"mute", std::string(texts.text("push.action.mute"))}};
}

NotificationRequest requestFor(Rule const& rule, Finding const& finding, bool sounds, bool isQuiet,
                               Texts const& texts) {
  NotificationRequest request;
  request.title = finding.title;
  request.body = finding.body;
  if (sounds) request.sound = finding.sound.empty() ? rule.sound : finding.sound;
  request.isSilent = isQuiet;
  request.urgency = isQuiet ? NotificationUrgency::low : urgencyOf(finding.severity);
  bool const isExtreme = rule.followsEvents && finding.severity == AlertSeverity::critical;
  request.category = isExtreme ? "weather.warning.extreme" : "weather";
  request.actions = notificationActions(texts);
  return request;
}

std::string wholeBody(Finding const& finding) {
  std::string body = finding.body;
  if (!finding.when.empty()) body.insert(std::min(body.find('\n'), body.size()), ", " + finding.when);
  if (!finding.remark.empty()) body += (body.empty() ? "" : "\n") + finding.remark;
  return body;
}

std::optional<RuleOutcome> heldAtHour(RuleSettings const& values, Instant now, int hour) {
  if (values.snoozedUntil && now < *values.snoozedUntil) return snoozed;
  if (values.quiet.contain(hour)) return heldByQuietHours;
  return std::nullopt;
}

bool mutes(RuleSettings const& values, Instant now, std::string_view stem, std::string const& kind,
           AlertSeverity severity) {
  std::string const grade = kind + ":" + std::string(enumName(severity));
  return std::ranges::any_of(values.mutes, [&](Mute const& mute) {
    return mute.holds(now) && (mute.kind == stem || mute.kind == kind || mute.kind == grade);
  });
}

}  // namespace nimbara
