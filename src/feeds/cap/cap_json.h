// Reads messages of the Common Alerting Protocol that are written as JSON, as MeteoAlarm's feeds have them.
// Pure; any bytes may be given.
#pragma once

#include "base/result.h"
#include "feeds/cap/cap_alert.h"

#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// An object with the protocol's members, or one that has it as its "alert". The same texts, limits and
/// leniency as for XML (`cap_reader.h`).
Result<CapAlert, std::string> parseCapJson(std::string_view body);

/// A message in a list of them, and what ends the address of its own document.
struct ListedCapAlert {
  std::string name;
  CapAlert alert;
};

/// `{"warnings": [{"uuid": …, "alert": {…}}, …]}`, in its order. The error is a clause, also where a single
/// message cannot be read, has no identifier or, not being a cancellation, says nothing.
Result<std::vector<ListedCapAlert>, std::string> parseCapJsonList(std::string_view body);

}  // namespace nimbara
