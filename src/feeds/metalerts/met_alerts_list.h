// The warnings of the Norwegian Meteorological Institute as its MetAlerts service 2.0 lists them, and the
// parser from bytes to messages of the Common Alerting Protocol. Pure; any bytes may be given.
#pragma once

#include "base/json/json.h"
#include "base/result.h"
#include "feeds/cap/cap_message.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace nimbara {

struct MetAlertsList {
  std::vector<CapMessage> messages;
  std::size_t unreadable = 0;  ///< of those listed
};

/// The service states no sender, no time of issue and no references; they stay empty. A warning ends with its
/// event where that end is known, else with the message. What is not a collection of features is an error; a
/// feature that does not say which warning it is and of what cannot be read.
Result<MetAlertsList, DecodeError> parseMetAlerts(std::string_view body);

}  // namespace nimbara
