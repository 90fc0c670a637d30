// The log of what notifications told and what they held back: lines in the state area of the settings store,
// where all processes of the user find them. The engine writes it, one pass at a time; others only read. It
// decides nothing.
#pragma once

#include "notifications/decision.h"
#include "platform/settings/settings_store.h"

#include <map>
#include <string>
#include <vector>

namespace nimbara {

/// A value that decided, as the log keeps it; see `Measurement`.
struct LoggedMeasurement {
  std::string what;
  double value = 0;
  std::string needs;  ///< "atLeast" …
  double limit = 0;
  std::string unit;

  bool operator==(LoggedMeasurement const&) const = default;
};

template <>
inline constexpr auto jsonFields<LoggedMeasurement> =
    FieldList{field("what", &LoggedMeasurement::what), field("value", &LoggedMeasurement::value),
              field("needs", &LoggedMeasurement::needs), field("limit", &LoggedMeasurement::limit),
              field("unit", &LoggedMeasurement::unit)};

/// A line of the log of what was sent and what was held back.
struct LoggedNotification {
  Instant time;
  std::string identifier;
  std::string title;
  std::string outcome;  ///< "announced", "listed", "heldByQuietHours" …
  std::string place;
  std::string body;     ///< its beginning, on one line
  std::string setting;  ///< the key that switches its rule
  std::string kind;     ///< what a mute names
  std::string note;     ///< of the evaluation, or why the desktop did not take it; older lines: what failed
  std::optional<InputFailure> failure;  ///< of what the rule reads
  std::vector<LoggedMeasurement> measured;
  int updates = 0;  ///< of an official event: messages that changed it since the first, up to now

  bool operator==(LoggedNotification const&) const = default;
};

template <>
inline constexpr auto jsonFields<LoggedNotification> = FieldList{
    field("time", &LoggedNotification::time),           field("identifier", &LoggedNotification::identifier),
    field("title", &LoggedNotification::title),         field("outcome", &LoggedNotification::outcome),
    fieldOr("place", &LoggedNotification::place),       fieldOr("body", &LoggedNotification::body),
    fieldOr("setting", &LoggedNotification::setting),   fieldOr("kind", &LoggedNotification::kind),
    fieldOr("note", &LoggedNotification::note),         field("failure", &LoggedNotification::failure),
    fieldOr("measured", &LoggedNotification::measured), fieldOr("updates", &LoggedNotification::updates)};

/// How many lines the log keeps.
inline constexpr std::size_t kMostLogLines = 500;

/// Told, held back or refused: what somebody may ask about later.
bool isWorthALine(RuleOutcome outcome);
LoggedNotification logLineOf(Decision const& decision, Instant now);

/// The lines of a notification's body as one: what does not end a sentence is set off by a dot.
std::string joinedLines(std::string_view body);

/// The log, newest last; an unreadable one is empty.
std::vector<LoggedNotification> notificationLogOf(SettingValues const& stored);
/// The change that makes it `log` with `lines` behind; the oldest go. What is held back for the same reason
/// as at the last look is no news and adds nothing.
StoreChanges logChange(std::vector<LoggedNotification> log, std::vector<LoggedNotification> const& lines);
/// How many messages events have had since their first, by the identifier of their first sight.
using EventUpdates = std::map<std::string, int, std::less<>>;
/// Notes them in the newest line of each event that says that it was sent. True when that changed a line.
bool noteUpdates(std::vector<LoggedNotification>& log, EventUpdates const& updates);
/// The change that makes it `log`.
StoreChanges logReplacement(std::vector<LoggedNotification> log);

}  // namespace nimbara
