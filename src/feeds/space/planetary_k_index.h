// From the planetary K-index products of NOAA's Space Weather Prediction Center to their values. Pure; any
// bytes may be given.
#pragma once

#include "base/enum_names.h"
#include "base/json/json.h"
#include "base/result.h"
#include "base/time/instant.h"

#include <optional>
#include <string_view>
#include <vector>

namespace nimbara {

/// The newest Kp (0 to 9) of either form that the service has used: rows of texts behind a header row (until
/// March 2026), or objects with a number "Kp" and no header. Entries without a value are skipped.
/// Nothing for a document of another form or without any value.
std::optional<double> newestKp(std::string_view body);

/// How a value came about.
enum class KpKind { observed, estimated, predicted };

template <>
inline constexpr auto enumNames<KpKind> =
    std::to_array<std::string_view>({"observed", "estimated", "predicted"});
static_assert(enumNamesComplete(KpKind::predicted));

/// The Kp of three hours.
struct KpReading {
  Instant begin;
  double kp = 0;
  KpKind kind = KpKind::observed;

  bool operator==(KpReading const&) const = default;
};

/// All values of the product or of the forecast beside it, in either form, by time and each time once.
/// Entries without a time or a value within 0-9 are left out; the error is that of a document without any.
Result<std::vector<KpReading>, DecodeError> kpReadings(std::string_view body);

}  // namespace nimbara
