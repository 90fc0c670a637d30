// What the notification engine remembers between passes and over restarts: what was sent, which conditions
// hold, what is still to be seen on the desktop, and what is scheduled for an hour. A value; it is read from
// and written to the state area of the settings store, where all processes of the user find it.
#pragma once

#include "base/json/json.h"
#include "base/time/instant.h"
#include "model/warnings/weather_alert.h"
#include "notifications/decision.h"
#include "platform/settings/settings_store.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// An event that was sent and may still be shown.
struct ShownEvent {
  AlertSeverity severity = AlertSeverity::advisory;
  std::string digest;  ///< of what was sent
  std::optional<Instant> ends;
  bool wasAbsent = false;              ///< the last pass did not find it
  bool isWithdrawn = false;            ///< taken back; kept so that its return is no news
  std::optional<Instant> absentSince;  ///< the first of the passes that did not find it
  bool isLifted = false;               ///< people know that it is over: its return is news
  bool hasRung = false;
  bool wasCovered = false;          ///< told without a ring since it was only near
  bool wasNear = false;             ///< told as an event outside the place
  std::optional<Instant> toldEnds;  ///< the end that people know of
  std::optional<Instant> began;
  std::string title;     ///< under which it was sent; empty in a state of an older version
  std::string kind;      ///< what a mute names
  std::string place;     ///< names
  std::string placeTag;  ///< where it was found last
  /// Where it may be in force: where the last look at all places found it, and looks at single ones since.
  std::vector<std::string> placeTags;
  bool isOfVisit = false;  ///< looks at single places alone have found it
  std::string event;       ///< what it is about; may be empty
  /// Under which the desktop has it since it was sent anew; empty: under its own.
  std::string identifier;
  std::optional<Instant> issued;  ///< the newest message that was found
  int updates = 0;                ///< messages since the first
  int toldUpdates = 0;            ///< of them those that were there when it was sent last

  bool operator==(ShownEvent const&) const = default;
};

template <>
inline constexpr auto jsonFields<ShownEvent> = FieldList{field("severity", &ShownEvent::severity),
                                                         field("digest", &ShownEvent::digest),
                                                         field("ends", &ShownEvent::ends),
                                                         fieldOr("wasAbsent", &ShownEvent::wasAbsent),
                                                         fieldOr("isWithdrawn", &ShownEvent::isWithdrawn),
                                                         fieldOr("absentSince", &ShownEvent::absentSince),
                                                         fieldOr("isLifted", &ShownEvent::isLifted),
                                                         fieldOr("hasRung", &ShownEvent::hasRung),
                                                         fieldOr("wasCovered", &ShownEvent::wasCovered),
                                                         fieldOr("wasNear", &ShownEvent::wasNear),
                                                         fieldOr("toldEnds", &ShownEvent::toldEnds),
                                                         fieldOr("began", &ShownEvent::began),
                                                         fieldOr("title", &ShownEvent::title),
                                                         fieldOr("kind", &ShownEvent::kind),
                                                         fieldOr("place", &ShownEvent::place),
                                                         fieldOr("placeTag", &ShownEvent::placeTag),
                                                         fieldOr("placeTags", &ShownEvent::placeTags),
                                                         fieldOr("isOfVisit", &ShownEvent::isOfVisit),
                                                         fieldOr("event", &ShownEvent::event),
                                                         fieldOr("identifier", &ShownEvent::identifier),
                                                         fieldOr("issued", &ShownEvent::issued),
                                                         fieldOr("updates", &ShownEvent::updates),
                                                         fieldOr("toldUpdates", &ShownEvent::toldUpdates)};

/// Under which the wording of a summary is kept: one for a day.
std::string summaryKey(ScheduledNotification const& entry);

struct EngineState {
  using Strings = std::set<std::string, std::less<>>;
  using Instants = std::map<std::string, Instant, std::less<>>;

  Strings deliveredIDs;
  Strings activeConditionIDs;
  Instants lastActiveAt;  ///< of conditions
  Instants lastToldAt;    ///< of daily notifications
  std::map<std::string, ShownEvent, std::less<>> shown;
  std::vector<ScheduledNotification> scheduled;
  std::map<std::string, std::string, std::less<>> aiSummaryCache;  ///< by summary and day
  Instants firstCheckedAt;  ///< by the stem of a rule: when it was first evaluated
  std::map<std::string, KnownStorm, std::less<>> knownStorms;  ///< as they were sent, by identifier
  KnownFires knownFires;
  Instants
      deliveredAt;  ///< of events: the day on which one was last found, so that old ones can be forgotten

  RainMemories rain;  ///< of the user's rules about rain in the next minutes

  bool operator==(EngineState const&) const = default;
};

/// The state as the store has it. Unreadable entries are an error: an engine that forgot would send again.
Result<EngineState, StoreError> engineStateOf(SettingValues const& stored);
/// What to write so that the store has `state`.
StoreChanges changesOf(EngineState const& state);

/// What the store has, and what this process told while it could not write there.
EngineState merged(EngineState stored, EngineState const& known);

}  // namespace nimbara
