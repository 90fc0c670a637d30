// What official events are known by, for all places and sources together: which message began a chain of
// messages, and which periods of an event are one. Identifiers are made from names, so that a memory that is
// lost costs no more than the link to what an event was called before. Any thread and any process of the user
// may use one file at once.
#pragma once

#include "base/json/json.h"
#include "base/time/instant.h"
#include "base/uuid.h"
#include "model/warnings/weather_alert.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// The identifier of an official event: the same for all of its messages, on every machine and in every run.
/// `key` begins with the name of the source, or with "cap:" where several sources pass the same messages on.
Uuid govAlertId(std::string_view key);

/// What stands for a region's registry in what an event is about where nobody can place the region:
/// "HR|wind|unplaced:EMMA_ID:HR951".
inline constexpr std::string_view kUnplacedRegistry = "unplaced";
inline constexpr std::string_view kUnplacedEvent = "|unplaced:";

/// The message that began the event of another one, and when a list last had to do with that other one.
struct EventRoot {
  std::string root;
  Instant seenAt;
  std::optional<Instant> sent = std::nullopt;  ///< where the list said it: tells messages from translations

  bool operator==(EventRoot const&) const = default;
};

template <>
inline constexpr auto jsonFields<EventRoot> = FieldList{
    field("root", &EventRoot::root), field("seenAt", &EventRoot::seenAt), fieldOr("sent", &EventRoot::sent)};

/// By the messages' identifiers. What a list no longer names is remembered for a while: an update may refer
/// to the message before it alone.
using EventRoots = std::map<std::string, EventRoot, std::less<>>;

struct EventPeriod {
  Instant from;
  std::optional<Instant> until;  ///< none: nobody says when it ends

  bool operator==(EventPeriod const&) const = default;
};

/// From the beginning, else the message, else `now`, to the end. One that is over before it begins lasts no
/// time.
EventPeriod periodOf(WeatherAlert const& alert, Instant now);

/// They overlap, or no more than half an hour lies between them: services leave a second or a minute between
/// two days, and bring the next period when the one before is just over.
bool adjoin(EventPeriod const& a, EventPeriod const& b);

/// A period of an event and what it is called.
struct KnownEvent {
  std::string root;
  Instant from;
  std::optional<Instant> until;
  Instant seenAt;

  bool operator==(KnownEvent const&) const = default;
};

template <>
inline constexpr auto jsonFields<KnownEvent> =
    FieldList{field("root", &KnownEvent::root), field("from", &KnownEvent::from),
              field("until", &KnownEvent::until), field("seenAt", &KnownEvent::seenAt)};

struct KnownEvents {
  EventRoots roots;
  std::map<std::string, std::vector<KnownEvent>, std::less<>> periods;  ///< by what the event is

  bool operator==(KnownEvents const&) const = default;
};

template <>
inline constexpr auto jsonFields<KnownEvents> =
    FieldList{fieldOr("roots", &KnownEvents::roots), fieldOr("periods", &KnownEvents::periods)};

/// The period that is of one event with `period`.
KnownEvent* findPeriod(KnownEvents& known, std::string_view key, EventPeriod const& period);
/// Remembers that the event has that period now. One that adjoins it is the same and takes over its end.
void notePeriod(KnownEvents& known, std::string const& key, EventPeriod const& period, std::string_view root,
                Instant now);
/// All that may be of one event with `period`; as long as `known` is not changed.
std::vector<KnownEvent const*> periodsBeside(KnownEvents const& known, std::string_view key,
                                             EventPeriod const& period);
/// The same of the event of that root alone, whatever else adjoins.
void notePeriodOf(KnownEvents& known, std::string const& key, EventPeriod const& period,
                  std::string_view root, Instant now);
void noteRoot(KnownEvents& known, std::string const& message, std::string_view root, Instant now,
              std::optional<Instant> sent = {});

/// Gives alerts that say what they are about the identifier of their event.
void identify(std::vector<WeatherAlert>& alerts, KnownEvents& known, Instant now);

class EventMemory {
 public:
  static constexpr std::chrono::days kLife{10};

  /// Without a file it lasts as long as the object.
  explicit EventMemory(std::filesystem::path file = {}) : file_(std::move(file)) {}

  /// Shows `change` what all processes know and keeps what it makes of it. A disk that cannot be read or
  /// written costs no more than what the others know.
  void update(Instant now, std::function<void(KnownEvents&)> const& change);

 private:
  void readFile();

  std::filesystem::path file_;
  std::mutex mutex_;  // guards the two below
  KnownEvents known_;
  std::string text_;  ///< of the file, as it was read or written last
};

}  // namespace nimbara
