// What becomes of a rule or a finding in a pass: a value that the engine makes and carries out, the log keeps
// and faces show.
#pragma once

#include "base/json/json.h"
#include "model/warnings/weather_alert.h"
#include "notifications/rules/rule.h"
#include "platform/session/notification_center.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

enum class RuleOutcome {
  announced,       ///< notifies
  escalated,       ///< sent before, and more severe now: notifies again
  listed,          ///< shown silently: old news, or covered by another notification
  updated,         ///< what is shown is replaced in silence
  endMoved,        ///< sent before, and it ends much earlier or later than was sent: notifies again
  withdrawn,       ///< what is shown is over
  lifted,          ///< no longer listed before the end that was sent: shown silently in place of it
  cancelled,       ///< its issuer says that it is over before its end: notifies in place of it
  scheduled,       ///< will be sent at its hour
  stillScheduled,  ///< as it was
  settingOff,
  notChosen,  ///< what is chosen for the place leaves the rule out
  conditionFalse,
  unknown,          ///< the rule's input is missing: its feed failed, or there is no forecast
  absent,           ///< what is shown was not found; one check more and it is over
  stillActive,      ///< sent when it became true
  returnedTooSoon,  ///< a flicker
  alreadyDelivered,
  alreadyToldToday,
  hasEnded,
  muted,
  heldByQuietHours,
  snoozed,
  refused,    ///< the desktop did not take it: the next pass tries again
  suppressed  ///< the place is being removed or replaced
};
template <>
inline constexpr auto enumNames<RuleOutcome> = std::to_array<std::string_view>(
    {"announced",   "escalated",        "listed",           "updated",          "endMoved",
     "withdrawn",   "lifted",           "cancelled",        "scheduled",        "stillScheduled",
     "settingOff",  "notChosen",        "conditionFalse",   "unknown",          "absent",
     "stillActive", "returnedTooSoon",  "alreadyDelivered", "alreadyToldToday", "hasEnded",
     "muted",       "heldByQuietHours", "snoozed",          "refused",          "suppressed"});
static_assert(enumNamesComplete(RuleOutcome::suppressed));

/// The pass has something to do for it.
bool isAction(RuleOutcome outcome);
/// Something goes to the desktop at once.
bool isDelivery(RuleOutcome outcome);
/// Something would have been sent.
bool isHeldBack(RuleOutcome outcome);
/// It was sent before.
bool isKnown(RuleOutcome outcome);

/// A daily reminder as it will be sent.
struct ScheduledNotification {
  std::string identifier;
  std::string title;
  std::string body;
  std::optional<std::string> sound;
  int hour = 0;  ///< of the place
  int minute = 0;
  Instant due;
  std::string place;     ///< its name
  std::string placeTag;  ///< its key

  bool operator==(ScheduledNotification const&) const = default;
};

template <>
inline constexpr auto jsonFields<ScheduledNotification> =
    FieldList{field("identifier", &ScheduledNotification::identifier),
              field("title", &ScheduledNotification::title),
              field("body", &ScheduledNotification::body),
              field("sound", &ScheduledNotification::sound),
              field("hour", &ScheduledNotification::hour),
              field("minute", &ScheduledNotification::minute),
              field("due", &ScheduledNotification::due),
              fieldOr("place", &ScheduledNotification::place),
              fieldOr("placeTag", &ScheduledNotification::placeTag)};

struct Decision {
  RuleOutcome outcome = RuleOutcome::conditionFalse;
  Rule const* rule = nullptr;  ///< never null in a plan
  std::string key;             ///< under which the state knows it; empty where there is nothing to know
  NotificationRequest request;
  AlertSeverity severity = AlertSeverity::info;
  std::string kind;  ///< what a mute names
  std::optional<Instant> began;
  std::optional<Instant> ends;
  std::string event;              ///< what it is about, as the finding says
  std::optional<Instant> issued;  ///< of an official event: the newest message
  std::optional<int> updates;     ///< of an official event, as its issuer's chain tells
  /// Of an event that was sent: the identifier under which the desktop has it, where this one takes its place
  /// under another.
  std::string replaces;
  std::string title;       ///< of the finding, without the place
  std::string digest;      ///< of what is told of an event, without what the engine adds
  bool isCovered = false;  ///< delivered silently, since it is only near or covered by another notification
  bool isNear = false;     ///< told as an event outside the place
  std::string place;       ///< names, by comma
  std::string placeTag;    ///< of the place that tells it
  std::vector<std::string> placeTags;  ///< of an event: where it was found, or missed
  bool isPartial = false;              ///< of a look at not all places
  std::vector<Measurement> measured;
  std::string note;                                ///< the evaluation's, or the desktop's own words
  std::optional<InputFailure> failure;             ///< of what the rule reads
  std::optional<Instant> since;                    ///< when it was sent, or last seen
  std::optional<ScheduledNotification> scheduled;  ///< of a scheduled one
  std::string prompt;                              ///< for a language model that may word it; else empty
  double greatness = 0;                            ///< the finding's
  std::optional<ToldStorm> storm;                  ///< what is known of a storm once it has been sent
  std::vector<SeenFire> fire;                      ///< where a fire burns, once it has been sent
  std::vector<Decision> counted;                   ///< those for which this one stands: they are sent with it
};

/// The rule looked at what it is about, whatever it found there: not where it is off or left out, where its
/// input is missing, or where there is nothing to look at for the place.
bool wasChecked(Decision const& decision);
/// The rule was to look and could not, and that is nobody's setting.
bool wasMissed(Decision const& decision);

/// For logs and scripts: the key of a rule's note, or in English what failed.
std::string plainNote(std::string const& note, std::optional<InputFailure> const& failure);

}  // namespace nimbara
