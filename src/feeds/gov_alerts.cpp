#include "feeds/gov_alerts.h"

#include "base/text.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>

namespace nimbara {

namespace {

/// Drawn once; a change of it would make every event a new one.
constexpr Uuid kEvents{
    {0x6b, 0x1d, 0x0c, 0x52, 0x8e, 0x3f, 0x4a, 0x77, 0x9c, 0x21, 0x5f, 0xd8, 0x03, 0xa9, 0xe4, 0x16}};

constexpr std::string_view kLinkBase = "https://api.weather.gov/alerts/";

constexpr std::array kSilentTypes = std::to_array<std::string_view>({"cancel", "ack", "error"});

/// Events by which the service tries out its channels; they come with the status "Actual" too.
constexpr std::array kTestEvents = std::to_array<std::string_view>(
    {"test message", "required weekly test", "required monthly test", "national periodic test",
     "practice/demo warning", "system demonstration", "network message/notification"});

struct IconRow {
  std::string_view word;
  std::string_view icon;
};

/// The first word that an event's name has in it decides.
constexpr IconRow kIcons[] = {
    {"tornado", "tornado"},
    {"waterspout", "tornado"},
    {"hurricane", "hurricane"},
    {"typhoon", "hurricane"},
    {"tropical", "hurricane"},
    {"storm surge", "water.waves"},
    {"tsunami", "water.waves"},
    {"thunderstorm", "cloud.bolt.fill"},
    {"avalanche", "mountain.2.fill"},
    {"coastal", "water.waves"},
    {"lakeshore", "water.waves"},
    {"surf", "water.waves"},
    {"rip current", "water.waves"},
    {"beach", "water.waves"},
    {"flood", "cloud.heavyrain.fill"},
    {"hydrologic", "cloud.heavyrain.fill"},
    {"blizzard", "cloud.snow.fill"},
    {"snow", "cloud.snow.fill"},
    {"winter", "cloud.snow.fill"},
    {"ice storm", "cloud.snow.fill"},
    {"freezing rain", "cloud.snow.fill"},
    {"freezing spray", "cloud.snow.fill"},
    {"fire", "flame.fill"},
    {"red flag", "flame.fill"},
    {"heat", "thermometer.sun.fill"},
    {"chill", "thermometer.snowflake"},
    {"cold", "thermometer.snowflake"},
    {"freeze", "thermometer.snowflake"},
    {"frost", "thermometer.snowflake"},
    {"fog", "cloud.fog.fill"},
    {"smoke", "smoke.fill"},
    {"ashfall", "smoke.fill"},
    {"air quality", "aqi.medium"},
    {"air stagnation", "aqi.medium"},
    {"dust", "sun.dust.fill"},
    {"wind", "wind"},
    {"gale", "wind"},
    {"small craft", "wind"},
    {"storm", "wind"},
};
constexpr std::string_view kGenericIcon = "exclamationmark.triangle.fill";

constexpr std::array<AlertSeverity, enumNames<NWSAlertSeverity>.size()> kSeverities{
    AlertSeverity::info, AlertSeverity::info, AlertSeverity::advisory, AlertSeverity::warning,
    AlertSeverity::critical};

bool isActual(NWSAlert const& message) {
  std::string const status = asciiLowered(trimmed(message.status));
  return (status.empty() || status == "actual") &&
         std::ranges::count(kTestEvents, asciiLowered(trimmed(message.event))) == 0;
}

bool warns(NWSAlert const& message) {
  return std::ranges::count(kSilentTypes, asciiLowered(trimmed(message.messageType))) == 0;
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

  /// The identifier of the message that began the event.
  std::string_view root(NWSAlert const& message) const {
    NWSAlert const* at = &message;
    for (std::size_t steps = 0; steps <= list_.size(); ++steps) {
      if (auto const root = knownRoot(*at)) return *root;
      if (at->references.empty()) break;
      std::string_view const oldest = oldestReference(*at).identifier;
      auto const found = byId_.find(oldest);
      if (found == byId_.end() || found->second == at) return oldest;
      at = found->second;
    }
    return at->id;
  }

  /// Of two messages the one that was sent later; of unknown or equal times the one listed first.
  static bool isNewer(NWSAlert const& a, NWSAlert const& b) {
    return a.sent && b.sent && *a.sent != *b.sent ? *a.sent > *b.sent : &a < &b;
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

/// Live messages by event. An event whose area was split goes on in several messages, one for each area.
class Events {
 public:
  void add(std::string_view root, NWSAlert const& message) {
    NWSAlert const*& chosen = byRoot_[root][message.areaDesc];
    if (chosen == nullptr || Messages::isNewer(message, *chosen)) chosen = &message;
  }

  /// The key of a message's event; nothing when a newer message tells of the same.
  std::optional<std::string> key(std::string_view root, NWSAlert const& message) const {
    auto const& areas = byRoot_.at(root);
    if (areas.at(message.areaDesc) != &message) return std::nullopt;
    std::string key = "nws:" + std::string(root);
    if (areas.begin()->second != &message) key += "\n" + message.areaDesc;
    return key;
  }

 private:
  std::map<std::string_view, std::map<std::string_view, NWSAlert const*>> byRoot_;
};

/// Takes over what a list says of its messages, and forgets what none has spoken of for long.
void remember(EventRoots& roots, EventRoots const& said, Instant now) {
  for (auto const& [message, root] : said) roots.insert_or_assign(message, root);
  std::erase_if(roots, [now](auto const& entry) {
    return entry.second.seenAt > now || now - entry.second.seenAt >= kEventRootsLife;
  });
}

std::optional<std::string> unlessEmpty(std::string const& text) {
  return trimmed(text).empty() ? std::nullopt : std::optional(text);
}

WeatherAlert eventOf(NWSAlert const& message, std::string_view key) {
  WeatherAlert alert;
  alert.id = govAlertId(key);
  alert.severity = kSeverities[static_cast<std::size_t>(message.severity)];
  alert.title = message.event;
  alert.message = message.headline;
  alert.icon = nwsIcon(message.event);
  alert.description = unlessEmpty(message.description);
  alert.instruction = unlessEmpty(message.instruction);
  alert.source = message.senderName;
  alert.areaDesc = unlessEmpty(message.areaDesc);
  alert.isGovAlert = true;
  alert.issued = message.sent;
  alert.onset = message.onset;
  alert.expires = endOf(message);
  alert.link = std::string(kLinkBase) + percentEncoded(message.id);
  return alert;
}

}  // namespace

Uuid govAlertId(std::string_view key) {
  return Uuid::named(kEvents, key);
}

bool hasEnded(WeatherAlert const& alert, Instant now) {
  return alert.expires && *alert.expires <= now;
}

std::string_view nwsIcon(std::string_view event) {
  std::string const name = asciiLowered(event);
  auto const row = std::ranges::find_if(kIcons, [&](IconRow const& r) { return name.contains(r.word); });
  return row == std::ranges::end(kIcons) ? kGenericIcon : row->icon;
}

std::vector<WeatherAlert> liveEvents(std::vector<NWSAlert> const& messages, Instant now, EventRoots& roots) {
  Messages const related(messages, roots);
  std::vector<NWSAlert const*> live;
  Events events;
  EventRoots said;
  for (NWSAlert const& message : messages) {
    if (!related.isLive(message, now)) continue;
    std::string_view const root = related.root(message);
    live.push_back(&message);
    events.add(root, message);
    said.insert_or_assign(message.id, EventRoot{std::string(root), now});
    for (NWSReference const& older : message.references)
      said.try_emplace(older.identifier, EventRoot{std::string(root), now});
  }
  std::vector<WeatherAlert> alerts;
  for (NWSAlert const* const message : live) {
    auto const key = events.key(related.root(*message), *message);
    if (key) alerts.push_back(eventOf(*message, *key));
  }
  remember(roots, said, now);
  return alerts;
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
