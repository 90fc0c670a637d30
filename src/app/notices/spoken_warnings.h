// Critical warnings read out as soon as they are sent, where the user wants that. What only stays shown, or
// is delivered silently, is not said again; nothing is said in the quiet hours or while notifications are
// paused.
#pragma once

#include "app/services/wording.h"
#include "base/time/calendar.h"
#include "notifications/engine/notification_manager.h"
#include "platform/clock.h"
#include "platform/session/speech.h"
#include "platform/settings/settings_store.h"

#include <functional>
#include <string>

namespace nimbara {

class SpokenWarnings {
 public:
  /// The calendar of a place, by the tag under which a decision names it.
  using PlaceCalendar = std::function<Calendar(std::string const& placeTag)>;

  /// All of them outlive it.
  SpokenWarnings(Speech& speech, SettingsStore& store, Clock const& clock)
      : speech_(speech), store_(store), clock_(clock) {}

  /// Reads out what a pass sent. Blocks as long as the speech server takes.
  void say(PassReport const& report, Wording const& wording, PlaceCalendar const& calendarOf);

 private:
  Speech& speech_;
  SettingsStore& store_;
  Clock const& clock_;
};

}  // namespace nimbara
