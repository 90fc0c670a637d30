// Makes a wttr.in answer fit for the program: what cannot be read as a number is no reading, what the answer
// gives in one scale is there in both, days and hours without a place in time or without a temperature are
// left out. Its three-hourly entries become hours. Pure.
#pragma once

#include "base/geodesy.h"
#include "base/result.h"
#include "model/wttr_response.h"
#include "providers/common/api_error.h"
#include "providers/time_zone_lookup.h"

namespace nimbara {

/// `noResults` for an answer about a place more than 100 km away (the service may answer for a default town)
/// and for one that holds nothing to show. The two clocks of the present tell the place's offset where the
/// lookup knows no zone, or one of another offset.
Result<WttrResponse, APIError> joinWttr(WttrResponse answer, Coordinate place,
                                        TimeZoneLookup const& timeZone);

}  // namespace nimbara
