// From the planetary K-index product of NOAA's Space Weather Prediction Center to its newest value. Pure; any
// bytes may be given.
#pragma once

#include <optional>
#include <string_view>

namespace nimbara {

/// The newest Kp (0 to 9) of either form that the service has used: rows of texts behind a header row (until
/// March 2026), or objects with a number "Kp" and no header. Entries without a value are passed over.
/// Nothing for a document of another form or without any value.
std::optional<double> newestKp(std::string_view body);

}  // namespace nimbara
