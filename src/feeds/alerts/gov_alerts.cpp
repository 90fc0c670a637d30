#include "feeds/alerts/gov_alerts.h"

#include "base/text/text.h"
#include "feeds/alerts/alert_messages.h"
#include "feeds/alerts/routing/us_waters.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>

namespace nimbara {

namespace {

constexpr std::string_view kLinkBase = "https://api.weather.gov/alerts/";

constexpr std::array kSilentTypes = std::to_array<std::string_view>({"cancel", "ack", "error"});

/// Events by which the service tries out its channels; they come with the status "Actual" too.
constexpr std::array kTestEvents = std::to_array<std::string_view>(
    {"test message", "required weekly test", "required monthly test", "national periodic test",
     "practice/demo warning", "system demonstration", "network message/notification"});

struct KindRow {
  std::string_view word;
  WarningKind kind;
};

using enum WarningKind;

/// The first word that an event's name has in it decides.
constexpr KindRow kKinds[] = {
    {"tornado", tornado},
    {"waterspout", tornado},
    {"hurricane", tropicalCyclone},
    {"typhoon", tropicalCyclone},
    {"tropical", tropicalCyclone},
    {"storm surge", coast},
    {"tsunami", coast},
    {"thunderstorm", thunderstorm},
    {"avalanche", avalanche},
    {"coastal", coast},
    {"lakeshore", coast},
    {"surf", coast},
    {"rip current", coast},
    {"beach", coast},
    {"flood", rain},
    {"hydrologic", rain},
    {"blizzard", snow},
    {"snow", snow},
    {"winter", snow},
    {"ice storm", snow},
    {"freezing rain", snow},
    {"freezing spray", snow},
    {"fire", fire},
    {"red flag", fire},
    {"heat", heat},
    {"chill", cold},
    {"cold", cold},
    {"freeze", cold},
    {"frost", cold},
    {"fog", fog},
    {"smoke", smoke},
    {"ashfall", smoke},
    {"air quality", air},
    {"air stagnation", air},
    {"dust", dust},
    {"wind", wind},
    {"gale", wind},
    {"small craft", wind},
    {"storm", wind},
};

/// The service states no level of some that people must know of, such as foul air: they are taken for medium.
constexpr std::array<AlertSeverity, enumNames<NWSAlertSeverity>.size()> kSeverities{
    AlertSeverity::advisory, AlertSeverity::info, AlertSeverity::advisory, AlertSeverity::warning,
    AlertSeverity::critical};

bool isActual(NWSAlert const& message) {
  std::string const status = asciiLowered(trimmed(message.status));
  return (status.empty() || status == "actual") &&
         std::ranges::count(kTestEvents, asciiLowered(trimmed(message.event))) == 0;
}

bool warns(NWSAlert const& message) {
  return std::ranges::count(kSilentTypes, asciiLowered(trimmed(message.messageType))) == 0;
}

bool cancels(NWSAlert const& message) {
  return isActual(message) && asciiLowered(trimmed(message.messageType)) == "cancel";
}

/// Refers to a message that stays as it is.
bool acknowledges(NWSAlert const& message) {
  return asciiLowered(trimmed(message.messageType)) == "ack";
}

std::optional<Instant> endOf(NWSAlert const& message) {
  return message.ends ? message.ends : message.expires;
}

/// The messages of one list and how they follow one another.
class Messages {
 public:
  Messages(std::vector<NWSAlert> const& list, EventRoots const& known) : list_(list), known_(known) {
    for (NWSAlert const& message : list) byId_.emplace(message.id, &message);
    for (NWSAlert const& message : list) {
      if (isActual(message) && !acknowledges(message)) link(message);
    }
    for (auto const& [message, older] : follows_) {
      bool const isMutual = follows_.contains({older, message});
      if (!isMutual || !warns(*message) || isNewer(*message, *older)) superseded_.insert(older);
    }
  }

  bool isLive(NWSAlert const& message, Instant now) const {
    auto const end = endOf(message);
    return isActual(message) && warns(message) && !(end && *end <= now) && !superseded_.contains(&message);
  }

  struct Root {
    std::string_view message;  ///< its identifier
    bool isKnown = false;      ///< from earlier lists
  };

  /// The message that began the event, as far as references tell.
  Root root(NWSAlert const& message) const {
    NWSAlert const* at = &message;
    for (std::size_t steps = 0; steps <= list_.size(); ++steps) {
      if (auto const root = knownRoot(*at)) return {*root, true};
      if (at->references.empty()) break;
      std::string_view const oldest = oldestReference(*at).identifier;
      auto const found = byId_.find(oldest);
      if (found == byId_.end() || found->second == at) return {oldest};
      at = found->second;
    }
    return {at->id};
  }

  /// The newest warning of the list that the message refers to; null where none is.
  NWSAlert const* referred(NWSAlert const& message) const {
    NWSAlert const* newest = nullptr;
    for (auto const& [follower, older] : follows_) {
      bool const isCandidate = follower == &message && warns(*older);
      if (isCandidate && (newest == nullptr || isNewer(*older, *newest))) newest = older;
    }
    return newest;
  }

  /// Of two messages the one that was sent later, of equal times the one listed first. A message of no known
  /// time is older than all others.
  static bool isNewer(NWSAlert const& a, NWSAlert const& b) {
    return a.sent == b.sent ? &a < &b : a.sent > b.sent;
  }

 private:
  void link(NWSAlert const& message) {
    for (NWSReference const& reference : message.references) {
      auto const older = byId_.find(reference.identifier);
      if (older != byId_.end() && older->second != &message) follows_.emplace(&message, older->second);
    }
  }

  /// Of the message itself or of one that it refers to.
  std::optional<std::string_view> knownRoot(NWSAlert const& message) const {
    if (auto const found = known_.find(message.id); found != known_.end()) return found->second.root;
    for (NWSReference const& reference : message.references) {
      auto const found = known_.find(reference.identifier);
      if (found != known_.end()) return found->second.root;
    }
    return std::nullopt;
  }

  /// References whose time is not known are taken for younger than all others.
  static NWSReference const& oldestReference(NWSAlert const& message) {
    return *std::ranges::min_element(message.references, {}, [](NWSReference const& reference) {
      return reference.sent.value_or(Instant::max());
    });
  }

  std::vector<NWSAlert> const& list_;
  EventRoots const& known_;
  std::map<std::string_view, NWSAlert const*> byId_;
  std::set<std::pair<NWSAlert const*, NWSAlert const*>> follows_;
  std::set<NWSAlert const*> superseded_;
};

/// What tells the event of a message from others where no reference does.
std::string eventKey(NWSAlert const& message) {
  if (!message.vtec.empty()) return "nws|" + message.vtec;
  return "nws|" + message.senderName + "|" + message.event + "|" + message.areaDesc;
}

EventPeriod periodOf(NWSAlert const& message, Instant now) {
  auto const until = endOf(message);
  Instant const from = message.onset.value_or(message.sent.value_or(now));
  return {until ? std::min(from, *until) : from, until};
}

/// The message that began the event, as far as anybody knows; remembered for the next lists.
std::string noteEvent(NWSAlert const& message, Messages const& related, Instant now, KnownEvents& known) {
  Messages::Root const own = related.root(message);
  std::string const key = eventKey(message);
  EventPeriod const period = periodOf(message, now);
  KnownEvent const* const event = own.isKnown ? nullptr : findPeriod(known, key, period);
  std::string root(event == nullptr ? own.message : std::string_view(event->root));
  notePeriod(known, key, period, root, now);
  noteRoot(known, message.id, root, now);
  for (NWSReference const& older : message.references) {
    if (!known.roots.contains(older.identifier)) noteRoot(known, older.identifier, root, now);
  }
  return root;
}

std::optional<std::vector<std::string>> textsOf(std::vector<WarningPolygon> const& polygons) {
  if (polygons.empty()) return std::nullopt;
  std::vector<std::string> texts;
  texts.reserve(polygons.size());
  for (WarningPolygon const& polygon : polygons) texts.push_back(shapeText(polygon));
  return texts;
}

std::optional<std::string> unlessEmpty(std::string const& text) {
  return trimmed(text).empty() ? std::nullopt : std::optional(text);
}

WarningMessage warningMessage(NWSAlert const& message) {
  WarningMessage made{message.id, message.sender, message.sent, message.status, message.messageType, {}, {}};
  for (NWSReference const& reference : message.references)
    made.references.push_back({reference.sender, reference.identifier, reference.sent});
  for (std::string const& zone : message.zones) addCode(made, "UGC", zone);
  return made;
}

WeatherAlert eventOf(NWSAlert const& message, std::string_view key) {
  WeatherAlert alert;
  alert.id = govAlertId(key);
  alert.severity = kSeverities[static_cast<std::size_t>(message.severity)];
  if (message.severity == NWSAlertSeverity::unknown) alert.levelStated = false;
  bool const isOnWater = !message.zones.empty() && std::ranges::all_of(message.zones, isMarineZone);
  if (isOnWater) alert.onWater = true;
  alert.event = eventKey(message);
  alert.title = message.event;
  alert.message = message.headline;
  alert.kind = nwsWarningKind(message.event);
  alert.description = unlessEmpty(message.description);
  alert.instruction = unlessEmpty(message.instruction);
  alert.source = message.senderName;
  alert.areaDesc = unlessEmpty(message.areaDesc);
  alert.polygons = textsOf(message.polygons);
  alert.isGovAlert = true;
  alert.issued = message.sent;
  alert.onset = message.onset;
  alert.expires = endOf(message);
  alert.link = std::string(kLinkBase) + percentEncoded(message.id);
  addMessage(alert, warningMessage(message));
  return alert;
}

/// Live messages by event. An event whose area was split goes on in several messages, one for each area; of
/// those for one area the newest tells it.
class Events {
 public:
  explicit Events(Instant now) : now_(now) {}

  void add(std::string const& root, NWSAlert const& message) {
    byRoot_[root][message.areaDesc].push_back(&message);
  }

  /// The event that a message tells; nothing when a newer message tells of the same.
  std::optional<WeatherAlert> told(std::string const& root, NWSAlert const& message) const {
    auto const& areas = byRoot_.at(root);
    auto const& same = areas.at(message.areaDesc);
    if (std::ranges::any_of(same, [&](NWSAlert const* one) { return Messages::isNewer(*one, message); }))
      return std::nullopt;
    std::string key = "nws:" + root;
    if (areas.begin()->first != message.areaDesc) key += "\n" + message.areaDesc;
    WeatherAlert alert = eventOf(message, key);
    for (NWSAlert const* const older : same) widen(alert, message, *older);
    return alert;
  }

 private:
  /// An older message of the same event began it; where it is for a period of its own, it still holds.
  void widen(WeatherAlert& alert, NWSAlert const& newest, NWSAlert const& older) const {
    if (older.onset && alert.onset) alert.onset = std::min(*alert.onset, *older.onset);
    EventPeriod const then = periodOf(older, now_);
    EventPeriod const last = periodOf(newest, now_);
    bool const isApart = (then.until && *then.until <= last.from) || (last.until && *last.until <= then.from);
    if (!isApart) return;
    alert.severity = std::max(alert.severity, kSeverities[static_cast<std::size_t>(older.severity)]);
    if (alert.expires && then.until) alert.expires = std::max(*alert.expires, *then.until);
  }

  Instant now_;
  std::map<std::string, std::map<std::string_view, std::vector<NWSAlert const*>>> byRoot_;
};

std::optional<Instant> knownEnd(KnownEvents const& known, std::string_view root) {
  std::optional<Instant> latest;
  for (auto const& [key, periods] : known.periods) {
    for (KnownEvent const& event : periods) {
      if (event.root == root && event.until) latest = std::max(latest.value_or(*event.until), *event.until);
    }
  }
  return latest;
}

/// What a message that cancels ends.
WeatherAlert calledOffEvent(NWSAlert const& message, Messages const& related, Instant now,
                            KnownEvents& known) {
  Messages::Root const own = related.root(message);
  KnownEvent const* const event =
      own.isKnown ? nullptr : findPeriod(known, eventKey(message), periodOf(message, now));
  std::string const root(event == nullptr ? own.message : std::string_view(event->root));
  NWSAlert const* const last = related.referred(message);
  WeatherAlert alert = eventOf(last == nullptr ? message : *last, "nws:" + root);
  alert.issued = message.sent;
  // The message that cancels ends at once.
  auto const end = last == nullptr ? knownEnd(known, root) : endOf(*last);
  if (end) alert.expires = end;
  return alert;
}

}  // namespace

bool hasEnded(WeatherAlert const& alert, Instant now) {
  return alert.expires && *alert.expires <= now;
}

WarningKind nwsWarningKind(std::string_view event) {
  std::string const name = asciiLowered(event);
  auto const row = std::ranges::find_if(kKinds, [&](KindRow const& r) { return name.contains(r.word); });
  return row == std::ranges::end(kKinds) ? other : row->kind;
}

std::vector<WeatherAlert> liveEvents(std::vector<NWSAlert> const& messages, Instant now, KnownEvents& known) {
  Messages const related(messages, known.roots);
  std::vector<NWSAlert const*> live;
  for (NWSAlert const& message : messages) {
    if (related.isLive(message, now)) live.push_back(&message);
  }
  std::vector<NWSAlert const*> oldestFirst = live;
  std::ranges::stable_sort(oldestFirst, [](auto* a, auto* b) { return Messages::isNewer(*b, *a); });
  std::map<NWSAlert const*, std::string> roots;
  Events events(now);
  for (NWSAlert const* const message : oldestFirst) {
    std::string const& root = roots[message] = noteEvent(*message, related, now, known);
    events.add(root, *message);
  }
  std::vector<WeatherAlert> alerts;
  for (NWSAlert const* const message : live) {
    if (auto alert = events.told(roots.at(message), *message)) alerts.push_back(std::move(*alert));
  }
  return alerts;
}

std::vector<WeatherAlert> calledOffEvents(std::vector<NWSAlert> const& messages,
                                          std::vector<WeatherAlert> const& live, Instant now,
                                          KnownEvents& known) {
  Messages const related(messages, known.roots);
  std::set<Uuid> taken;
  for (WeatherAlert const& alert : live) taken.insert(alert.id);
  std::vector<WeatherAlert> events;
  for (NWSAlert const& message : messages) {
    if (!cancels(message)) continue;
    WeatherAlert event = calledOffEvent(message, related, now, known);
    if (!hasEnded(event, now) && taken.insert(event.id).second) events.push_back(std::move(event));
  }
  return events;
}

std::vector<NWSAlert> liveMessages(std::vector<NWSAlert> const& messages, Instant now) {
  EventRoots const unknown;
  Messages const related(messages, unknown);
  std::vector<NWSAlert> live;
  for (NWSAlert const& message : messages) {
    if (related.isLive(message, now)) live.push_back(message);
  }
  return live;
}

}  // namespace nimbara
