// Which messages of a list are one event, and which of them holds. Pure.
#pragma once

#include "feeds/alerts/cap_where.h"
#include "feeds/alerts/events/cap_says.h"
#include "feeds/alerts/events/event_memory.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace nimbara {

/// A message of the chain, also one that is only referred to.
struct ChainLink {
  std::string key;  ///< "sender,identifier"
  std::optional<Instant> sent;
};

struct CapChain {
  std::string root;      ///< key of the message that began it, as far as anybody knows
  bool isKnown = false;  ///< from earlier lists
  /// The newest message in all languages in which it was sent; not empty.
  std::vector<CapMessage const*> holding;
  std::vector<CapMessage const*> before;  ///< further ones that speak, newest first
  std::vector<ChainLink> links;
  /// What tells an update where the source passes on no references, with `period`; else empty.
  std::string timeless;
  EventPeriod period;
  std::string likeness;  ///< what tells the event where no reference does; empty where it says no hour
};

/// A listed message and how it lies to the place by the best of its blocks.
struct PlacedMessage {
  CapMessage const* message = nullptr;
  Reach reach = Reach::elsewhere;
};

/// The chains that may concern the place, in the order in which what holds is listed. Where an issuer splits
/// an event by area, each of the parts is one with the same root.
std::vector<CapChain> chainsOf(std::span<PlacedMessage const> messages, KnownEvents const& known);

}  // namespace nimbara
