#include "notifications/engine/event_bound.h"

#include "base/text/text.h"
#include "notifications/engine/hold_back.h"
#include "notifications/log/notification_log.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace nimbara {

namespace {

using enum RuleOutcome;

/// What notifies comes with what is only listed: both are new.
constexpr std::array kOutcomes{announced,        muted,   heldByQuietHours, snoozed, suppressed,
                               alreadyDelivered, hasEnded};

RuleOutcome groupOf(RuleOutcome outcome) {
  return outcome == listed ? announced : outcome;
}

bool isGreater(Decision const& a, Decision const& b) {
  bool const aRings = a.outcome != listed;
  bool const bRings = b.outcome != listed;
  if (aRings != bRings) return aRings;
  if (a.severity != b.severity) return a.severity > b.severity;
  return a.greatness > b.greatness;
}

std::string textKey(Rule const& rule) {
  std::string_view const stem = withoutJoint(rule.stem);
  return "push.more." + std::string(stem.substr(0, stem.find('_')));
}

/// Of those that are of several places.
std::string placesOf(std::vector<Decision> const& decisions) {
  constexpr std::size_t kLongest = 200;
  std::vector<std::string_view> places;
  std::string names;
  for (Decision const& decision : decisions) {
    bool const isNew = !decision.place.empty() && std::ranges::find(places, decision.place) == places.end();
    if (!isNew) continue;
    places.emplace_back(decision.place);
    names += (names.empty() ? "" : ", ") + decision.place;
  }
  return places.size() < 2 ? std::string() : oneLine(names, kLongest);
}

/// One for all of them, which are sorted.
Decision standIn(std::vector<Decision> rest, Texts const& texts) {
  constexpr std::size_t kLongestBody = 200;
  Decision const& greatest = rest.front();
  Decision decision;
  decision.outcome = greatest.outcome;
  decision.rule = greatest.rule;
  decision.key = std::string(withoutJoint(greatest.rule->stem)) + "_others";
  decision.severity = greatest.severity;
  decision.kind = greatest.kind;
  decision.place = greatest.place;
  decision.measured = greatest.measured;
  decision.note = greatest.note;
  decision.failure = greatest.failure;
  decision.request = greatest.request;
  decision.request.identifier = decision.key;
  decision.request.title = texts.format(textKey(*greatest.rule), static_cast<std::int64_t>(rest.size()));
  decision.request.body = texts.format("push.more.greatest", greatest.request.title,
                                       oneLine(joinedLines(greatest.request.body), kLongestBody));
  if (std::string const places = placesOf(rest); !places.empty())
    decision.request.body += "\n" + texts.format("push.more.places", places);
  decision.counted = std::move(rest);
  return decision;
}

}  // namespace

std::vector<Decision> boundedEvents(std::vector<Decision> decisions, Texts const& texts) {
  if (decisions.size() <= kMostEvents + 1) return decisions;
  for (RuleOutcome const outcome : kOutcomes) {
    // One more would only be replaced by a sentence about it.
    auto const isOther = [outcome](Decision const& decision) { return groupOf(decision.outcome) != outcome; };
    auto const begin = std::ranges::stable_partition(decisions, isOther).begin();
    if (static_cast<std::size_t>(decisions.end() - begin) <= kMostEvents + 1) continue;
    std::ranges::stable_sort(begin, decisions.end(), isGreater);
    auto const firstOfRest = begin + kMostEvents;
    std::vector<Decision> rest(std::make_move_iterator(firstOfRest),
                               std::make_move_iterator(decisions.end()));
    decisions.erase(firstOfRest, decisions.end());
    decisions.push_back(standIn(std::move(rest), texts));
  }
  return decisions;
}

}  // namespace nimbara
