#include "feeds/alerts/events/cap_says.h"

#include "base/text/text.h"
#include "feeds/alerts/events/cap_blocks.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace nimbara {

namespace {

constexpr std::array kMuteTypes = std::to_array<std::string_view>({"ack", "error"});

}  // namespace

bool isCancellation(CapAlert const& message) {
  return asciiLowered(trimmed(message.msgType)) == "cancel";
}

bool speaks(CapAlert const& message) {
  std::string const status = asciiLowered(trimmed(message.status));
  bool const isActual = status.empty() || status == "actual";
  bool const isMute = std::ranges::count(kMuteTypes, asciiLowered(trimmed(message.msgType))) > 0;
  return isActual && !isMute && (!message.infos.empty() || isCancellation(message));
}

bool endsEvent(CapAlert const& message) {
  return isCancellation(message) ||
         (!message.infos.empty() && std::ranges::all_of(message.infos, tellsTheEnd));
}

bool isUpdate(CapAlert const& message) {
  return !message.infos.empty() && asciiLowered(trimmed(message.msgType)) == "update";
}

}  // namespace nimbara
