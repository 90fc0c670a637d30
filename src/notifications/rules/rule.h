// What a notification rule is: a row of the catalogue with a pure function that looks at the inputs of one
// place and says what it found. Rules know no earlier pass, no delivery and no texts of other rules: whether
// a finding is announced is the engine's decision.
#pragma once

#include "base/enum_names.h"
#include "model/warnings/weather_alert.h"
#include "notifications/place_choice.h"
#include "notifications/rules/generated_summary.h"
#include "notifications/rules/rain_memory.h"
#include "notifications/rules/rule_inputs.h"
#include "notifications/rules/rule_settings.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// How often a finding is announced.
enum class RulePolicy {
  condition,  ///< when it becomes true, and again when it returns after the rule's minimum gap
  instance,   ///< once ever for each event
  daily       ///< at most once on a local day; scheduled for its hour when the rule has one
};
template <>
inline constexpr auto enumNames<RulePolicy> =
    std::to_array<std::string_view>({"condition", "instance", "daily"});
static_assert(enumNamesComplete(RulePolicy::daily));

/// A value that decided, beside its limit; the face puts it into words. `what` ends a text key
/// "explain.measure.<what>".
struct Measurement {
  enum class Relation { atLeast, above, atMost, below };

  std::string_view what;
  double value = 0;
  Relation needs = Relation::atLeast;
  double limit = 0;
  std::string_view
      unit;  ///< "%", "°C" or "°F", "km/h", "µg/m³", "km"; always metric but for the user's temperature

  bool holds() const;
};

template <>
inline constexpr auto enumNames<Measurement::Relation> =
    std::to_array<std::string_view>({"atLeast", "above", "atMost", "below"});
static_assert(enumNamesComplete(Measurement::Relation::below));

/// Something to announce.
struct Finding {
  std::string identifier;  ///< begins with the rule's stem; empty: the stem itself
  std::string title;
  std::string body;
  std::string_view sound;  ///< empty: the rule's
  AlertSeverity severity = AlertSeverity::advisory;
  std::string kind;              ///< what a mute names; empty: the rule's stem
  std::optional<Instant> began;  ///< since when it is so, if that is known
  std::optional<Instant> ends;   ///< when it will be over, if that is known
  /// Why it is delivered silently, a note as in `Evaluation`: "onlyNear", "toldOfficially"; empty: it is not.
  std::string_view quietNote;
  bool isNear = false;  ///< the place is outside, though not far from it
  /// Said behind the body's first line, and no part of what the event is: from when until when.
  std::string when;
  /// Said below the body, and no part of what the event is: how far from the place it is. A whole sentence
  /// that names the place.
  std::string remark;
  double greatness = 0;  ///< among events of one rule and severity the greater come first: magnitude, MW …
  /// What an official event is about. Together with its period it is the same event under another identifier.
  std::string event;
  std::optional<Instant> issued;   ///< when the newest message of an official event was sent
  std::optional<int> updates;      ///< its messages since the first, where the issuer's chain is known
  std::optional<ToldStorm> storm;  ///< what is known of a storm once this has been sent
  std::vector<SeenFire> fire;      ///< where a fire burns, once this has been sent

  bool isCovered() const { return !quietNote.empty(); }
};

/// What a rule lacks to look: false is not known to be false.
enum class Lack { noForecast, notChecked, noDetail };
template <>
inline constexpr auto enumNames<Lack> =
    std::to_array<std::string_view>({"noForecast", "notChecked", "noDetail"});
static_assert(enumNamesComplete(Lack::noDetail));

/// Notes of rules for which there is nothing to look at where the place lies.
inline constexpr std::string_view kUncovered = "uncovered";
inline constexpr std::string_view kOnlyUnitedStates = "onlyUnitedStates";

struct Evaluation {
  std::vector<Finding> findings;
  std::vector<Measurement> measured;  ///< what decided, also when nothing was found
  std::string_view note;  ///< ends a text key "explain.note.<note>": "dark", "noForecast"; may be empty
  /// Identifiers of events that are there but not severe enough to be sent: they are not over.
  std::vector<std::string> untold = {};  // NOLINT(readability-redundant-member-init): most leave it out
  /// Events that their issuer ended early, worded for those who were sent them.
  std::vector<Finding> calledOff = {};  // NOLINT(readability-redundant-member-init)

  bool isUnknown = false;  // the rule could not look

  static Evaluation none(std::string_view note) { return {{}, {}, note}; }
  static Evaluation unknown(Lack lack) { return {{}, {}, enumName(lack), {}, {}, true}; }
};

using EvaluateRule = Evaluation (*)(RuleInputs const&, RuleSettings const&);

struct Rule {
  std::string_view stem;     ///< of its identifiers; no two rules share one
  std::string_view setting;  ///< the key that switches it
  RulePolicy policy = RulePolicy::condition;
  RuleInputSet inputs;
  std::string_view sound;
  EvaluateRule evaluate = nullptr;
  PlaceChoice reach = PlaceChoice::everything;  ///< the least choice of a place that includes the rule
  std::chrono::minutes minimumGap{0};           ///< of a condition: absence shorter than this is flicker
  bool followsEvents = false;                   ///< changes and ends of what was sent reach the desktop
  std::optional<SummaryKind> summary = std::nullopt;  ///< a language model may word it
  /// Of a daily rule that is scheduled: the key of its hour.
  std::string_view hourSetting = {};  // NOLINT(readability-redundant-member-init): rows leave it out
  bool tellsLifting = false;          ///< an event that ends early is announced as lifted
};

/// A rule that is no row of the catalogue, already evaluated: one of the user's own.
struct ForeignEvaluation {
  Rule const* rule = nullptr;
  std::size_t place = 0;  ///< its index among those of the pass
  Evaluation evaluation;
  std::string title = {};                         ///< what the user calls it
  std::string key = {};                           ///< of a condition: under which the state knows it
  std::optional<RainMemory> rain = std::nullopt;  ///< what this look leaves to the next
};

}  // namespace nimbara
