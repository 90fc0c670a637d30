// From official messages to the alerts that people read: what of a service's list is alive, which messages
// are the same event, and how an event is told as a `WeatherAlert`. Pure functions; the service's own lists
// stay as they are.
#pragma once

#include "feeds/alerts/events/event_memory.h"
#include "feeds/nws/nws_alert.h"
#include "model/warnings/weather_alert.h"

#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// Past its end. An alert that does not say when it ends never has.
bool hasEnded(WeatherAlert const& alert, Instant now);

/// What an event of that name ("Winter Storm Warning") is about.
WarningKind nwsWarningKind(std::string_view event);

/// The live events of a list, in its order. Left out are tests, exercises and drafts, cancellations and what
/// they cancel, messages that another of the list updates or issues anew, and what has ended: the event's end
/// counts where it is given, else the message's. An event keeps the identifier of the message that began it:
/// by the chain of references, else by the event's own number, else by office, kind and area, as long as the
/// periods adjoin. `known` is what earlier lists, of any place, said of that, and takes up what this one
/// says.
std::vector<WeatherAlert> liveEvents(std::vector<NWSAlert> const& messages, Instant now, KnownEvents& known);

/// The events that messages of the list cancel, without those that are `live` under another message: as they
/// last were, issued when they were cancelled, until the moment at which they would have ended. `known` is as
/// `liveEvents` has left it.
std::vector<WeatherAlert> calledOffEvents(std::vector<NWSAlert> const& messages,
                                          std::vector<WeatherAlert> const& live, Instant now,
                                          KnownEvents& known);

/// The live messages of a list as the service worded them, by the same rules.
std::vector<NWSAlert> liveMessages(std::vector<NWSAlert> const& messages, Instant now);

}  // namespace nimbara
