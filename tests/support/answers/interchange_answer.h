// Interchange records of tests: a present and a few hours around a moment, in UTC.
#pragma once

#include "providers/common/interchange.h"
#include "support/instants.h"

namespace nimbara::test {

HourlyEntry plainEntry(Instant begin, double celsius);

/// `now` at `celsius`, with two days of hours of the same temperature from the start of its day on.
WttrResponse plainAnswer(Coordinate place, Instant now, double celsius);

}  // namespace nimbara::test
