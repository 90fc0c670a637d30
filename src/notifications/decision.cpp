#include "notifications/decision.h"

#include <algorithm>

namespace nimbara {

namespace {

using enum RuleOutcome;

constexpr RuleOutcome kDeliveries[] = {announced, escalated, listed, updated, endMoved, withdrawn, lifted};
constexpr RuleOutcome kHeldBack[] = {muted, heldByQuietHours, snoozed, suppressed};
constexpr RuleOutcome kKnown[] = {stillActive, returnedTooSoon, alreadyDelivered, alreadyToldToday};

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

std::string plainNote(std::string const& note, std::optional<InputFailure> const& failure) {
  return failure ? sentenceOf(*failure) : note;
}

}  // namespace nimbara
