// One evaluation pass as a pure function: from the inputs of the places, the settings and what was sent
// before to a decision for every rule, in the order of delivery. It delivers, fetches and remembers nothing;
// `apply` says what to remember of a decision once it has been carried out.
#pragma once

#include "notifications/engine/engine_state.h"
#include "notifications/rules/rule.h"
#include "platform/notification_center.h"

#include <array>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace nimbara {

enum class RuleOutcome {
  announced,       ///< notifies
  escalated,       ///< sent before, and more severe now: notifies again
  listed,          ///< shown silently: old news, or covered by another notification
  updated,         ///< what is shown is replaced in silence
  endMoved,        ///< shown again silently: it ends much earlier or later than was sent
  withdrawn,       ///< what is shown is over
  lifted,          ///< over before the end that was sent: shown silently in place of it
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
    {"announced", "escalated", "listed",           "updated",         "endMoved",         "withdrawn",
     "lifted",    "scheduled", "stillScheduled",   "settingOff",      "notChosen",        "conditionFalse",
     "unknown",   "absent",    "stillActive",      "returnedTooSoon", "alreadyDelivered", "alreadyToldToday",
     "hasEnded",  "muted",     "heldByQuietHours", "snoozed",         "refused",          "suppressed"});
static_assert(enumNamesComplete(RuleOutcome::suppressed));

/// The pass has something to do for it.
bool isAction(RuleOutcome outcome);
/// Something goes to the desktop at once.
bool isDelivery(RuleOutcome outcome);
/// Something would have been sent.
bool isHeldBack(RuleOutcome outcome);
/// It was sent before.
bool isKnown(RuleOutcome outcome);

struct Decision {
  RuleOutcome outcome = RuleOutcome::conditionFalse;
  Rule const* rule = nullptr;  ///< never null in a plan
  std::string key;             ///< under which the state knows it; empty where there is nothing to know
  NotificationRequest request;
  AlertSeverity severity = AlertSeverity::info;
  std::string kind;  ///< what a mute names
  std::optional<Instant> began;
  std::optional<Instant> ends;
  std::string event;       ///< what it is about, as the finding says
  std::string title;       ///< of the finding, without the place
  std::string digest;      ///< of what is told of an event, without what the engine adds
  bool isCovered = false;  ///< delivered silently, since it is only near or covered by another notification
  bool isNear = false;     ///< told as an event outside the place
  std::string place;       ///< names, by comma
  std::string placeTag;    ///< of the place that tells it
  std::vector<std::string> placeTags;  ///< of an event: where it was found, or missed
  bool isPartial = false;              ///< of a look at not all places
  std::vector<Measurement> measured;
  std::string note;                                ///< the evaluation's, or a feed's problem
  std::optional<Instant> since;                    ///< when it was sent, or last seen
  std::optional<ScheduledNotification> scheduled;  ///< of a scheduled one
  std::string prompt;                              ///< for a language model that may word it; else empty
  double greatness = 0;                            ///< the finding's
  std::optional<ToldStorm> storm;                  ///< what is known of a storm once it has been sent
  std::vector<SeenFire> fire;                      ///< where a fire burns, once it has been sent
  std::vector<Decision> counted;                   ///< those for which this one stands: they are sent with it
};

/// A rule that is no row of the catalogue, already evaluated: one of the user's own.
struct ForeignEvaluation {
  Rule const* rule = nullptr;
  std::size_t place = 0;  ///< its index among those of the pass
  Evaluation evaluation;
};

struct PassContext {
  Instant now;
  std::span<RuleInputs const> places;  ///< the selected one first; what is remembered is added
  std::span<ForeignEvaluation const> foreign;
  Settings const& settings;
  Texts const& texts;
  std::set<std::string, std::less<>> const& suppressedLocationTags;
  /// Not all places that are watched: what is not found here may be elsewhere.
  bool isPartial = false;
};

struct PassPlan {
  /// Deliveries first, critical ones before all others; then schedules, then what is not sent.
  std::vector<Decision> decisions;
  std::vector<Rule const*> checked;  ///< rules about events whose feeds answered
};

PassPlan planPass(PassContext const& context, EngineState const& state);

/// What of the schedule is due: sent, held back until the next pass, or missed for too long and forgotten.
struct DuePlan {
  struct Entry {
    ScheduledNotification scheduled;
    Decision decision;
  };
  std::vector<Entry> entries;
  std::vector<std::string> missed;  ///< identifiers
};
DuePlan planDue(Instant now, Settings const& settings, Texts const& texts,
                std::set<std::string, std::less<>> const& suppressedLocationTags, EngineState const& state);

/// What a mute of a notification names when nothing is known of it but its identifier.
std::string kindOfIdentifier(std::string_view identifier);

/// Whether what is to be sent at its hour is other than what waits for it. Of scheduled ones.
void settleSchedule(Decision& decision, EngineState const& state);

/// Carried out, or needing nothing: the state after it.
void apply(Decision const& decision, Instant now, EngineState& state);
/// What to remember of the pass beside its decisions.
void applyChecks(PassPlan const& plan, Instant now, EngineState& state);
/// What was remembered in advance of a delivery that was refused is forgotten.
void takeBack(Decision const& decision, EngineState& state, EngineState const& before);

/// Tells two wordings of one event apart, in one language.
std::string digestOf(NotificationRequest const& request, std::string_view language);
/// Whether they are of the same language, and tell anything. Not by the digests of older versions.
bool areComparable(std::string_view digest, std::string_view other);
/// An event ends so much later or earlier than was sent that people must know.
bool hasMovedEnd(ShownEvent const& shown, std::optional<Instant> ends);

/// Every input that an enabled rule reads, by what is chosen for a place.
struct NeededInputs {
  std::array<RuleInputSet, enumNames<PlaceChoice>.size()> byChoice;

  RuleInputSet const& of(PlaceChoice choice) const { return byChoice[static_cast<std::size_t>(choice)]; }
};
NeededInputs neededInputs(Settings const& settings);

}  // namespace nimbara
