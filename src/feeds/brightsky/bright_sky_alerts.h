// The warnings of Germany's weather service for a municipality as Bright Sky lists them, and the parser from
// bytes to messages of the Common Alerting Protocol. Pure; any bytes may be given.
#pragma once

#include "base/json/json.h"
#include "base/result.h"
#include "feeds/cap/cap_message.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace nimbara {

struct BrightSkyAlerts {
  std::vector<CapMessage> messages;  ///< of the municipality: all of them hit the place that was asked for
  std::size_t unreadable = 0;        ///< of those listed
};

/// English and German where there are texts. Words of the protocol get its capitals; what kind of message it
/// is and what it refers to is not stated. The error is for what is not a list of one municipality: without a
/// location the list is that of the whole country.
Result<BrightSkyAlerts, DecodeError> parseBrightSkyAlerts(std::string_view body);

/// Of a refusal: that the position has no municipality of Germany.
bool isBrightSkyUncovered(std::string_view body);

}  // namespace nimbara
