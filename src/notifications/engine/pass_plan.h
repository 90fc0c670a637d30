// One evaluation pass as a pure function: from the inputs of the places, the settings and what was sent
// before to a decision for every rule, in the order of delivery. It delivers, fetches and remembers nothing;
// `apply` says what to remember of a decision once it has been carried out.
#pragma once

#include "notifications/decision.h"
#include "notifications/engine/engine_state.h"

#include <array>
#include <map>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace nimbara {

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
  RainMemories rain;                 ///< of the rules about rain in the next minutes
};

PassPlan planPass(PassContext const& context, EngineState const& state);

/// Why rules of the plan could not look, for logs: each feed once, in English, without a full stop.
std::vector<std::string> failedFeeds(PassPlan const& plan);

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
/// The messages of an event since its first, with those of this look.
int updatesWith(ShownEvent const& shown, Decision const& decision);
/// The same of events that were sent before, by identifier, where there are more than `before`.
std::map<std::string, int, std::less<>> updatesSince(EngineState const& before, EngineState const& state);
/// An event ends so much later or earlier than was sent that people must know.
bool hasMovedEnd(ShownEvent const& shown, std::optional<Instant> ends);

/// Every input that an enabled rule reads, by what is chosen for a place.
struct NeededInputs {
  std::array<RuleInputSet, enumNames<PlaceChoice>.size()> byChoice;

  RuleInputSet const& of(PlaceChoice choice) const { return byChoice[static_cast<std::size_t>(choice)]; }
};
NeededInputs neededInputs(Settings const& settings);

}  // namespace nimbara
