// How the messages that hold of an event are told as alerts: in one language, by the blocks that concern the
// place. Pure.
#pragma once

#include "feeds/alerts/cap_where.h"

#include <span>
#include <string>
#include <vector>

namespace nimbara {

/// A block of a message, and where it lies.
struct CapBlock {
  CapInfo const* info = nullptr;
  CapMessage const* message = nullptr;
  Whereabouts where;
};

/// The blocks of messages of one text, each event and area once: in the reader's language where the issuer
/// has it, else in English, else in the first; those that this language lacks in another one. Blocks that are
/// over by their own end are left out.
std::vector<CapBlock> blocksOf(std::span<CapMessage const* const> messages, CapView const& view);

/// One event of a message as the place has it.
struct ToldEvent {
  std::string words;  ///< tell it from the others of its message; see `eventWords`
  Reach reach = Reach::elsewhere;
  bool isEnded = false;  ///< nothing but the end is said of it
  bool isGreen = false;  ///< of a level that is no warning
  WeatherAlert alert;    ///< without identifier; empty where `reach` is `elsewhere`
};

/// By events, in the order of the blocks. What only tells the end of an event is `isEnded` where nothing else
/// is said of it for the place; with `endsToo` such blocks count as warnings.
std::vector<ToldEvent> toldEvents(std::vector<CapBlock> const& blocks, CapView const& view,
                                  bool endsToo = false);

}  // namespace nimbara
