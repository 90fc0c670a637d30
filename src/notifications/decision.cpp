#include "notifications/decision.h"

#include <algorithm>

namespace nimbara {

namespace {

using enum RuleOutcome;

constexpr RuleOutcome kDeliveries[] = {announced, escalated, listed, updated,
                                       endMoved,  withdrawn, lifted, cancelled};
constexpr RuleOutcome kHeldBack[] = {muted, heldByQuietHours, snoozed, suppressed};
constexpr RuleOutcome kKnown[] = {stillActive, returnedTooSoon, alreadyDelivered, alreadyToldToday};
/// What is over by the clock is taken away without a look.
constexpr RuleOutcome kWithoutLook[] = {settingOff, notChosen, unknown, withdrawn};

}  // namespace

bool isDelivery(RuleOutcome outcome) {
  return std::ranges::count(kDeliveries, outcome) > 0;
}

bool isAction(RuleOutcome outcome) {
  return isDelivery(outcome) || outcome == scheduled;
}

bool isHeldBack(RuleOutcome outcome) {
  return std::ranges::count(kHeldBack, outcome) > 0;
}

bool isKnown(RuleOutcome outcome) {
  return std::ranges::count(kKnown, outcome) > 0;
}

bool wasChecked(Decision const& decision) {
  if (decision.outcome != conditionFalse) return std::ranges::count(kWithoutLook, decision.outcome) == 0;
  // A rule that looked says at what, or why that was of no use; what only ends with its rule says nothing.
  bool const isBesideThePoint = decision.note == kUncovered || decision.note == kOnlyUnitedStates;
  return !decision.measured.empty() || (!decision.note.empty() && !isBesideThePoint);
}

bool wasMissed(Decision const& decision) {
  if (decision.outcome != unknown) return false;
  if (!decision.failure) return decision.note != enumName(Lack::noDetail);
  return decision.failure->failure.kind != ServiceFailure::Kind::notConfigured;
}

std::string plainNote(std::string const& note, std::optional<InputFailure> const& failure) {
  return failure ? sentenceOf(*failure) : note;
}

}  // namespace nimbara
