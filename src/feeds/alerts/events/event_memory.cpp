#include "feeds/alerts/events/event_memory.h"

#include "base/files/file.h"
#include "base/files/file_lock.h"
#include "base/json/json_codec.h"

#include <algorithm>
#include <set>

namespace nimbara {

namespace {

using namespace std::chrono_literals;

/// Drawn once; a change of it would make every event a new one.
constexpr Uuid kEvents{
    {0x6b, 0x1d, 0x0c, 0x52, 0x8e, 0x3f, 0x4a, 0x77, 0x9c, 0x21, 0x5f, 0xd8, 0x03, 0xa9, 0xe4, 0x16}};

constexpr std::chrono::minutes kAdjoining = 30min;
/// What is found again and again is noted again once an hour: a memory that stays as it is costs no writing.
constexpr std::chrono::hours kNotedAgain{1};
/// A stormy week over a continent has some hundred.
constexpr std::size_t kMostRoots = 8000;
constexpr std::size_t kMostEvents = 2000;

/// Where nobody says when an event ends, it is believed for a day.
Instant endOf(KnownEvent const& event) {
  return event.until.value_or(event.seenAt + 24h);
}

bool isSameEvent(KnownEvent const& event, EventPeriod const& period) {
  return adjoin({event.from, endOf(event)}, period);
}

void see(Instant& seenAt, Instant now) {
  if (now < seenAt || now - seenAt >= kNotedAgain) seenAt = now;
}

bool isForgotten(Instant seenAt, Instant now) {
  return seenAt > now || now - seenAt >= EventMemory::kLife;
}

/// Of a map its newest entries.
template <class Map, class SeenAt>
void keepNewest(Map& map, std::size_t most, SeenAt const& seenAt) {
  if (map.size() <= most) return;
  std::vector<Instant> seen;
  seen.reserve(map.size());
  for (auto const& [key, value] : map) seen.push_back(seenAt(value));
  auto const limit = seen.begin() + static_cast<std::ptrdiff_t>(seen.size() - most);
  std::ranges::nth_element(seen, limit);
  std::erase_if(map, [&](auto const& entry) { return seenAt(entry.second) < *limit; });
  // Those of the same moment as the oldest that would stay.
  std::size_t surplus = map.size() - most;
  std::erase_if(map, [&](auto const& entry) {
    bool const goes = surplus > 0 && seenAt(entry.second) == *limit;
    if (goes) --surplus;
    return goes;
  });
}

Instant lastSeen(std::vector<KnownEvent> const& periods) {
  return std::ranges::max(periods, {}, &KnownEvent::seenAt).seenAt;
}

void prune(KnownEvents& known, Instant now) {
  std::erase_if(known.roots, [&](auto const& entry) { return isForgotten(entry.second.seenAt, now); });
  keepNewest(known.roots, kMostRoots, [](EventRoot const& root) { return root.seenAt; });
  for (auto& [key, periods] : known.periods) {
    std::erase_if(periods, [&](KnownEvent const& event) { return isForgotten(event.seenAt, now); });
  }
  std::erase_if(known.periods, [](auto const& entry) { return entry.second.empty(); });
  keepNewest(known.periods, kMostEvents, lastSeen);
}

/// What this process knows stays, also when somebody has cleared the cache.
void adopt(KnownEvents& known, KnownEvents const& own) {
  known.roots.insert(own.roots.begin(), own.roots.end());
  known.periods.insert(own.periods.begin(), own.periods.end());
}

}  // namespace

Uuid govAlertId(std::string_view key) {
  return Uuid::named(kEvents, key);
}

EventPeriod periodOf(WeatherAlert const& alert, Instant now) {
  Instant const from = alert.onset.value_or(alert.issued.value_or(now));
  return {alert.expires ? std::min(from, *alert.expires) : from, alert.expires};
}

bool adjoin(EventPeriod const& a, EventPeriod const& b) {
  bool const beginsInTime = !b.until || a.from <= *b.until + kAdjoining;
  return beginsInTime && (!a.until || b.from <= *a.until + kAdjoining);
}

KnownEvent* findPeriod(KnownEvents& known, std::string_view key, EventPeriod const& period) {
  auto const found = known.periods.find(key);
  if (found == known.periods.end()) return nullptr;
  auto const same = std::ranges::find_if(found->second,
                                         [&](KnownEvent const& event) { return isSameEvent(event, period); });
  return same == found->second.end() ? nullptr : &*same;
}

void notePeriod(KnownEvents& known, std::string const& key, EventPeriod const& period, std::string_view root,
                Instant now) {
  KnownEvent* const event = findPeriod(known, key, period);
  if (event == nullptr) {
    known.periods[key].push_back({std::string(root), period.from, period.until, now});
    return;
  }
  event->root = root;
  event->from = std::min(event->from, period.from);
  event->until = period.until;
  see(event->seenAt, now);
}

std::vector<KnownEvent const*> periodsBeside(KnownEvents const& known, std::string_view key,
                                             EventPeriod const& period) {
  std::vector<KnownEvent const*> beside;
  auto const found = known.periods.find(key);
  if (found == known.periods.end()) return beside;
  for (KnownEvent const& event : found->second) {
    if (isSameEvent(event, period)) beside.push_back(&event);
  }
  return beside;
}

void notePeriodOf(KnownEvents& known, std::string const& key, EventPeriod const& period,
                  std::string_view root, Instant now) {
  auto& periods = known.periods[key];
  auto const own = std::ranges::find(periods, root, &KnownEvent::root);
  if (own == periods.end()) {
    periods.push_back({std::string(root), period.from, period.until, now});
    return;
  }
  own->from = period.from;
  own->until = period.until;
  see(own->seenAt, now);
}

void noteRoot(KnownEvents& known, std::string const& message, std::string_view root, Instant now,
              std::optional<Instant> sent) {
  EventRoot& entry = known.roots.try_emplace(message, EventRoot{std::string(root), now}).first->second;
  entry.root = root;
  if (sent) entry.sent = sent;
  see(entry.seenAt, now);
}

void identify(std::vector<WeatherAlert>& alerts, KnownEvents& known, Instant now) {
  std::set<Uuid> taken;
  for (WeatherAlert& alert : alerts) {
    if (!alert.event) continue;
    EventPeriod const period = periodOf(alert, now);
    KnownEvent const* const event = findPeriod(known, *alert.event, period);
    std::string const root =
        event != nullptr ? event->root
                         : *alert.event + "|" + (alert.onset ? formatIso8601(*alert.onset) : std::string());
    notePeriod(known, *alert.event, period, root, now);
    alert.id = govAlertId("event:" + root);
    while (!taken.insert(alert.id).second) alert.id = govAlertId("event:" + alert.id.text());
  }
}

void EventMemory::update(Instant now, std::function<void(KnownEvents&)> const& change) {
  std::lock_guard const guard(mutex_);
  if (file_.empty()) {
    change(known_);
    prune(known_, now);
    return;
  }
  FileLock const lock(file_.string() + ".lock");
  readFile();
  change(known_);
  prune(known_, now);
  std::string text = encodeJson(known_);
  if (text == text_) return;
  if (writeFileAtomically(file_, text)) text_ = std::move(text);
}

void EventMemory::readFile() {
  constexpr std::size_t kLargestFile = std::size_t{16} << 20;
  auto text = nimbara::readFile(file_, kLargestFile);
  if (!text) {
    text_.clear();
    return;
  }
  if (*text == text_) return;
  auto known = decodeJson<KnownEvents>(*text);
  if (!known) return;
  adopt(*known, known_);
  known_ = std::move(*known);
  text_ = std::move(*text);
}

}  // namespace nimbara
