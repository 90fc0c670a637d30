#include "app/notices/spoken_warnings.h"

#include "app/words/brief/spoken_text.h"
#include "notifications/engine/hold_back.h"
#include "notifications/rules/rule_settings.h"

namespace nimbara {

namespace {

bool isNews(Decision const& decision) {
  bool const isSent =
      decision.outcome == RuleOutcome::announced || decision.outcome == RuleOutcome::escalated;
  return isSent && decision.severity == AlertSeverity::critical && !decision.request.isSilent;
}

std::string textOf(Decision const& decision) {
  NotificationRequest const& request = decision.request;
  // The first paragraph: what follows is for the eye.
  std::string const body = request.body.substr(0, request.body.find('\n'));
  return body.empty() ? request.title : request.title + ". " + body;
}

}  // namespace

void SpokenWarnings::say(PassReport const& report, Wording const& wording, PlaceCalendar const& calendarOf) {
  Settings const settings = store_.settings().settings;
  if (!settings.boolean("notify_speakCritical")) return;
  RuleSettings const values = RuleSettings::of(settings);
  Instant const now = clock_.now();
  for (Decision const& decision : report.plan.decisions) {
    if (!isNews(decision) || heldAtHour(values, now, calendarOf(decision.placeTag).hour(now))) continue;
    Texts const& texts = *wording.texts;
    // Whoever cannot be reached keeps nobody from reading the notification.
    std::ignore = speech_.say(spokenText(textOf(decision), wording.units, texts), texts.language(),
                              SpeechUrgency::urgent);
  }
}

}  // namespace nimbara
