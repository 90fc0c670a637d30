// Reads messages of the Common Alerting Protocol that are written as JSON, as MeteoAlarm's feeds have them.
// Pure; any bytes may be given.
#pragma once

#include "base/result.h"
#include "feeds/cap/cap_alert.h"

#include <string>
#include <string_view>

namespace nimbara {

/// An object with the protocol's members, or one that has it as its "alert". The same texts, limits and
/// leniency as for XML (`cap_reader.h`).
Result<CapAlert, std::string> parseCapJson(std::string_view body);

}  // namespace nimbara
