#include "demo/world/demo_world.h"

#include "base/sha256.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "demo/world/warnings/demo_warnings.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

using std::chrono::hours;
using std::chrono::minutes;

constexpr double kHalfHeight = 0.5;
constexpr double kHalfWidth = 1;
constexpr int kLastColumn = 90;
constexpr hours kNotice{12};
constexpr hours kCorrection{6};
constexpr hours kShorter{3};
constexpr hours kCalledOffBefore{2};
constexpr hours kShortestUpdated{6};
constexpr hours kShortestCalledOff{4};
constexpr hours kFloodEvery{48};
constexpr hours kFloodLasts{40};
constexpr minutes kOldIsListed{20};
constexpr hours kPastIsListed{2};
constexpr std::size_t kFlood = std::size(kDemoKinds) - 1;

std::vector<Coordinate> rectangle(double south, double north, double west, double east) {
  return {{south, west}, {south, east}, {north, east}, {north, west}, {south, west}};
}

std::size_t kindOf(std::string_view name) {
  return static_cast<std::size_t>(std::ranges::find(kDemoKinds, name) - std::begin(kDemoKinds));
}

/// Counted among all, so that the floods of no two countries begin together.
int numberOf(DemoIssuer const& issuer) {
  return static_cast<int>(&issuer - demoIssuers().data());
}

bool concerns(DemoEvent const& event, Instant from, Instant to) {
  return event.begin - kNotice < to && event.end > from;
}

void addWeather(std::vector<DemoEvent>& events, DemoIssuer const& issuer, DemoTile tile, Instant from,
                Instant to) {
  for (Instant at = from; at < to + hours(24); at += hours(24)) {
    for (DemoWarning const& warning : demoWarnings(tile.center(), at)) {
      DemoEvent const event{&issuer, tile, kindOf(warning.kind), warning.level, warning.begin, warning.end};
      if (concerns(event, from, to) && std::ranges::find(events, event) == events.end())
        events.push_back(event);
    }
  }
}

void addFloods(std::vector<DemoEvent>& events, DemoIssuer const& issuer, DemoTile tile, Instant from,
               Instant to) {
  constexpr std::int64_t kApart = 5;
  std::int64_t const number = numberOf(issuer);
  hours const offset{number * kApart % kFloodEvery.count()};
  auto const first = std::chrono::floor<hours>(from - offset).time_since_epoch() / kFloodEvery - 1;
  for (auto k = first;; ++k) {
    Instant const begin = Instant(k * kFloodEvery) + offset;
    if (begin - kNotice >= to) return;
    DemoEvent const event{
        &issuer, tile, kFlood, 1 + static_cast<int>((k + number) % 3), begin, begin + kFloodLasts};
    if (concerns(event, from, to)) events.push_back(event);
  }
}

/// The whole of each day.
void addDrills(std::vector<DemoEvent>& events, DemoIssuer const& issuer, DemoTile tile, Instant from,
               Instant to) {
  for (Instant day = std::chrono::floor<std::chrono::days>(from); day < to; day += hours(24))
    events.push_back({&issuer, tile, kFlood, 3, day, day + hours(24), true});
}

constexpr int kIssuerDigits = 2;
constexpr int kTimeDigits = 6;
constexpr std::size_t kCheckDigits = 10;

std::int64_t hoursOf(Instant instant) {
  return std::chrono::floor<hours>(instant).time_since_epoch() / hours(1);
}

std::string withCheck(std::string const& digits) {
  return sha256Hex(digits).substr(0, kCheckDigits) + digits;
}

/// Takes numbers off the front of hexadecimal digits.
class DigitReader {
 public:
  explicit DigitReader(std::string_view digits) : digits_(digits) {}

  std::int64_t take(int count) {
    std::int64_t number = 0;
    for (char const digit : digits_.substr(0, static_cast<std::size_t>(count)))
      number = number * 16 + (digit <= '9' ? digit - '0' : digit - 'a' + 10);
    digits_.remove_prefix(static_cast<std::size_t>(count));
    return number;
  }

 private:
  std::string_view digits_;
};

std::string compactTime(Instant instant) {
  std::string text;
  for (char const c : formatIso8601(std::chrono::floor<std::chrono::seconds>(instant))) {
    if (c == 'T') text += '-';
    if (c >= '0' && c <= '9') text += c;
  }
  return text;
}

/// The code of an event's first message, so that all of its messages have it in their names.
std::string chainOf(DemoWorldMessage const& message) {
  return DemoWorldMessage{message.event, 0, false}.code().substr(0, kCheckDigits);
}

}  // namespace

Coordinate DemoTile::center() const {
  return {static_cast<double>(row), 2.0 * column};
}

std::vector<std::vector<Coordinate>> DemoTile::outlines() const {
  double const south = std::max(row - kHalfHeight, -90.0);
  double const north = std::min(row + kHalfHeight, 90.0);
  double const middle = center().longitude;
  if (column < kLastColumn) return {rectangle(south, north, middle - kHalfWidth, middle + kHalfWidth)};
  return {rectangle(south, north, 180 - kHalfWidth, 180), rectangle(south, north, -180, -180 + kHalfWidth)};
}

std::string DemoTile::name() const {
  return fmt::format("Demo Region {}°{} {}°{}", std::abs(row), row < 0 ? 'S' : 'N', std::abs(2 * column),
                     column < 0 ? 'W' : 'E');
}

DemoTile demoTileAt(Coordinate place) {
  int const column = static_cast<int>(std::lround(place.longitude / 2));
  return {static_cast<int>(std::lround(place.latitude)), column == -kLastColumn ? kLastColumn : column};
}

std::vector<DemoStep> demoSteps(DemoEvent const& event) {
  DemoIssuer const& issuer = *event.issuer;
  Instant const first = event.begin - kNotice;
  bool const isUpdated = issuer.has(kUpdates) && event.end - event.begin >= kShortestUpdated;
  if (event.isDrill || !isUpdated) {
    std::vector<DemoStep> steps{{event.isDrill ? event.begin : first, event.level, event.end}};
    bool const isCalledOff =
        issuer.ending != DemoEnding::runsOut && event.end - event.begin >= kShortestCalledOff;
    if (isCalledOff && !event.isDrill)
      steps.push_back({event.end - kCalledOffBefore, event.level, event.end, true, true});
    return steps;
  }
  std::vector<DemoStep> steps{{first, std::max(1, event.level - 1), event.end - kShorter},
                              {event.begin - kCorrection, event.level, event.end, true},
                              {event.begin, event.level, event.end, true}};
  if (issuer.ending != DemoEnding::runsOut)
    steps.push_back({event.end - kCalledOffBefore, event.level, event.end, true, true});
  return steps;
}

std::vector<DemoEvent> demoEvents(DemoIssuer const& issuer, DemoTile tile, Instant from, Instant to) {
  std::vector<DemoEvent> events;
  if (issuer.temper == DemoTemper::calm) return events;
  addWeather(events, issuer, tile, from, to);
  if (issuer.temper == DemoTemper::always) addFloods(events, issuer, tile, from, to);
  if (issuer.has(kDrills)) addDrills(events, issuer, tile, from, to);
  std::ranges::stable_sort(
      events, {}, [](DemoEvent const& event) { return std::tuple(event.kind, event.begin, event.isDrill); });
  return events;
}

std::vector<DemoEvent> demoWorldEvents(Coordinate place, Instant from, Instant to) {
  DemoIssuer const* const issuer = demoIssuerAt(place);
  if (issuer == nullptr) return {};
  return demoEvents(*issuer, demoWarnedTile(*issuer, place), from, to);
}

DemoTile demoWarnedTile(DemoIssuer const& issuer, Coordinate place) {
  return demoTileAt(issuer.shape == DemoShape::country ? issuer.place : place);
}

std::string DemoWorldMessage::code() const {
  std::string const digits =
      fmt::format("{:02x}{:02x}{:02x}{:x}{:x}{:06x}{:06x}{:x}{:x}", numberOf(*event.issuer),
                  event.tile.row + 90, event.tile.column + 90, event.kind, event.level, hoursOf(event.begin),
                  hoursOf(event.end), step, (isInEnglish ? 1 : 0) + (event.isDrill ? 2 : 0));
  return withCheck(digits);
}

std::string DemoWorldMessage::feed() const {
  DemoIssuer const& issuer = *event.issuer;
  std::string_view const own = issuer.language.substr(0, 2);
  bool const isOne = issuer.languages == DemoLanguages::oneEach;
  std::string_view const language = own.empty() || isInEnglish                            ? "en"
                                    : isOne || issuer.languages == DemoLanguages::ownOnly ? own
                                                                                          : "xx";
  return fmt::format("{}-demo-{}", asciiLowered(issuer.countryCode), language);
}

std::string DemoWorldMessage::identifier() const {
  DemoIssuer const& issuer = *event.issuer;
  std::string const language = issuer.languages != DemoLanguages::oneEach ? ""
                               : isInEnglish                              ? "-EN"
                                             : "-" + asciiUppered(issuer.language.substr(0, 2));
  return fmt::format("2.49.0.0.{}.0-{}-{}-{:02}{}", issuer.number, compactTime(about().sent), chainOf(*this),
                     step, language);
}

std::string DemoWorldMessage::file() const {
  std::string const sent = formatIso8601(about().sent);
  return fmt::format("{}/{}/{}/{}/{}/{}/{}-{}.xml", feed(), sent.substr(0, 4), sent.substr(5, 2),
                     sent.substr(8, 2), sent.substr(11, 2), sent.substr(14, 2), sent.substr(17, 2), code());
}

std::optional<DemoWorldMessage> DemoWorldMessage::inOtherLanguage() const {
  if (event.issuer->languages != DemoLanguages::oneEach) return std::nullopt;
  return DemoWorldMessage{event, step, !isInEnglish};
}

std::optional<DemoWorldMessage> demoMessageOf(std::string_view code) {
  if (code.size() <= kCheckDigits) return std::nullopt;
  std::string const digits(code.substr(kCheckDigits));
  if (withCheck(digits) != code) return std::nullopt;
  DigitReader reader(digits);
  auto const number = static_cast<std::size_t>(reader.take(kIssuerDigits));
  if (number >= demoIssuers().size()) return std::nullopt;
  DemoWorldMessage message;
  message.event.issuer = &demoIssuers()[number];
  message.event.tile.row = static_cast<int>(reader.take(2)) - 90;
  message.event.tile.column = static_cast<int>(reader.take(2)) - 90;
  message.event.kind = static_cast<std::size_t>(reader.take(1));
  message.event.level = static_cast<int>(reader.take(1));
  message.event.begin = Instant(hours(reader.take(kTimeDigits)));
  message.event.end = Instant(hours(reader.take(kTimeDigits)));
  message.step = static_cast<std::size_t>(reader.take(1));
  auto const flags = reader.take(1);
  message.isInEnglish = (flags & 1) != 0;
  message.event.isDrill = (flags & 2) != 0;
  bool const isOne = message.event.kind < std::size(kDemoKinds) && message.event.level <= 3 &&
                     message.step < demoSteps(message.event).size();
  return isOne ? std::optional(message) : std::nullopt;
}

std::vector<DemoWorldMessage> demoWorldMessages(DemoIssuer const& issuer, DemoTile tile, Instant now) {
  std::vector<DemoWorldMessage> messages;
  auto const add = [&](DemoEvent const& event, std::size_t step) {
    messages.push_back({event, step, false});
    if (issuer.languages == DemoLanguages::oneEach) messages.push_back({event, step, true});
  };
  for (DemoEvent const& event : demoEvents(issuer, tile, now - kPastIsListed, now + minutes(1))) {
    auto const steps = demoSteps(event);
    auto const sent = static_cast<std::size_t>(
        std::ranges::count_if(steps, [now](DemoStep const& step) { return step.sent <= now; }));
    if (sent == 0) continue;
    add(event, sent - 1);
    if (sent > 1 && now - steps[sent - 1].sent < kOldIsListed) add(event, sent - 2);
  }
  return messages;
}

}  // namespace nimbara
