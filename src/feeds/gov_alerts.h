// From official messages to the alerts that people read: what of a service's list is alive, which messages
// are the same event, and how an event is told as a `WeatherAlert`. Pure functions; the service's own lists
// stay as they are.
#pragma once

#include "feeds/nws_alert.h"
#include "model/weather_alert.h"

#include <chrono>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// The identifier of an official event: the same for all of its messages, on every machine and in every run.
/// `key` begins with the source's name.
Uuid govAlertId(std::string_view key);

/// Past its end. An alert that does not say when it ends never has.
bool hasEnded(WeatherAlert const& alert, Instant now);

/// A system symbol for the service's name of an event ("Winter Storm Warning").
std::string_view nwsIcon(std::string_view event);

/// The message that began the event of another one, and when a list last had to do with that other one.
struct EventRoot {
  std::string root;
  Instant seenAt;

  bool operator==(EventRoot const&) const = default;
};

template <>
inline constexpr auto jsonFields<EventRoot> =
    std::tuple{field("root", &EventRoot::root), field("seenAt", &EventRoot::seenAt)};

/// By the messages' identifiers. What a list no longer names is remembered for a while: an update may refer
/// to the message before it alone.
using EventRoots = std::map<std::string, EventRoot, std::less<>>;

inline constexpr std::chrono::days kEventRootsLife{10};

/// The live events of a list, in its order. Left out are tests, exercises and drafts, cancellations and what
/// they cancel, messages that another of the list updates, and what has ended: the event's end counts where
/// it is given, else the message's. Updates keep the identifier of the message that began the event; `roots`
/// is what earlier lists said of that, and takes up what this one says.
std::vector<WeatherAlert> liveEvents(std::vector<NWSAlert> const& messages, Instant now, EventRoots& roots);

/// The live messages of a list as the service worded them, by the same rules.
std::vector<NWSAlert> liveMessages(std::vector<NWSAlert> const& messages, Instant now);

}  // namespace nimbara
