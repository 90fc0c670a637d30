// The events that the issuers of the demo's world warn of, and the messages in which they do: pure functions
// of place and moment. The world is divided into tiles; what the weather of a tile brings, and a flood every
// other day where an issuer always has something to say, is an event there. All that is in a message follows
// from its code.
#pragma once

#include "base/geodesy.h"
#include "base/time/instant.h"
#include "demo/world/warnings/demo_issuers.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// The part of the world for which a place's warnings are issued: one degree of latitude high and two of
/// longitude wide, around whole degrees of latitude and even ones of longitude.
struct DemoTile {
  int row = 0;     ///< degrees of its middle
  int column = 0;  ///< half the degrees of its middle, from -89 to 90

  Coordinate center() const;
  /// Its outline, the first corner again at the end; two outlines where the 180th meridian cuts it.
  std::vector<std::vector<Coordinate>> outlines() const;
  std::string name() const;  ///< "Demo Region 14°N 100°E"

  bool operator==(DemoTile const&) const = default;
};

DemoTile demoTileAt(Coordinate place);

/// What kinds of events there are: those that `demoWarnings` has, and the flood.
inline constexpr std::string_view kDemoKinds[] = {
    "Wind", "Thunderstorm", "Rain", "Snow-ice", "Fog", "High-temperature", "Low-temperature", "Flooding"};

struct DemoEvent {
  DemoIssuer const* issuer = nullptr;
  DemoTile tile;
  std::size_t kind = 0;  ///< an index of `kDemoKinds`
  int level = 1;         ///< 1 yellow, 2 orange, 3 red
  Instant begin;
  Instant end;  ///< as it is known at last; where an issuer calls events off it does so two hours earlier
  bool isDrill = false;

  bool operator==(DemoEvent const&) const = default;
};

/// What a message of an event says.
struct DemoStep {
  Instant sent;
  int level = 1;
  Instant end;
  bool isUpdate = false;
  bool isOver = false;  ///< calls the event off
};

/// The messages of an event in their order, from the announcement twelve hours before it begins. With updates
/// it is announced a level lower and to end three hours earlier; six hours before it begins both are
/// corrected, and when it begins all is said again.
std::vector<DemoStep> demoSteps(DemoEvent const& event);

/// Events of the tile whose first message is sent before `to` and that end after `from`, by kind and
/// beginning.
std::vector<DemoEvent> demoEvents(DemoIssuer const& issuer, DemoTile tile, Instant from, Instant to);

/// The same for a place of a country that has an issuer; those for the whole country where that is its habit.
std::vector<DemoEvent> demoWorldEvents(Coordinate place, Instant from, Instant to);

/// Where the issuer's warnings for the place are drawn: around the place, or around its town if they are for
/// the whole country.
DemoTile demoWarnedTile(DemoIssuer const& issuer, Coordinate place);

struct DemoWorldMessage {
  DemoEvent event;
  std::size_t step = 0;
  bool isInEnglish = false;  ///< of issuers with one message a language: which of the two

  DemoStep about() const { return demoSteps(event).at(step); }
  /// 32 hexadecimal digits from which `demoMessageOf` makes the message again.
  std::string code() const;
  /// "kz-demo-en": the issuer's feed that has it.
  std::string feed() const;
  /// "2.49.0.0.398.0-20261121-060000-0284797abc-00-EN".
  std::string identifier() const;
  /// "kz-demo-en/2026/11/21/06/00/00-….xml".
  std::string file() const;
  /// The message of the same step in the other language; nothing for issuers that have both in one.
  std::optional<DemoWorldMessage> inOtherLanguage() const;
};

/// Nothing for a code that no message has.
std::optional<DemoWorldMessage> demoMessageOf(std::string_view code);

/// The newest message of each event, in each language; the one before too for some minutes, and both for two
/// hours after the event's end.
std::vector<DemoWorldMessage> demoWorldMessages(DemoIssuer const& issuer, DemoTile tile, Instant now);

}  // namespace nimbara
