// From the steps of a MET Norway forecast to the interchange record. Pure.
//
// The service gives steps of an hour for two and a half days and of six hours behind them. A long step is
// laid out as its six hours, because everything that reads the record counts amounts by the hour: the
// precipitation is spread evenly, so that no hour gets the amount of six and the sum of a day is right also
// where a step reaches over midnight; temperature, wind and their like lie on the straight line to the next
// step; the condition is that of the step. Where the place's clocks stand between the hours of UTC, the hours
// are laid onto the place's.
#pragma once

#include "base/geodesy.h"
#include "base/time/calendar.h"
#include "providers/common/api_error.h"
#include "providers/metnorway/yr_no_parser.h"

#include <vector>

namespace nimbara {

/// Seven days of the place from the day of `now` on (from the first step on when the steps do not reach that
/// day, as with a clock that is wrong). What the service does not say is computed where a formula is known
/// (apparent temperature, daylight, fresh snow) and is absent else (visibility). `noResults` without any
/// hour.
Result<WttrResponse, APIError> joinYrNo(std::vector<YrNoStep> const& steps, Coordinate place,
                                        Calendar const& calendar, Instant now);

}  // namespace nimbara
