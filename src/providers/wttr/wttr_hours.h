// The three-hourly entries of a wttr.in day laid out as hours, because everything that reads the record
// counts by the hour. An entry's precipitation is divided among its hours; temperature, wind and their like
// lie on the straight line to the next entry; condition and chances are those of the entry. Pure.
#pragma once

#include "base/time/calendar.h"
#include "model/wttr_response.h"

#include <vector>

namespace nimbara {

/// `days` have real dates, and entries in the order of time whose "time" is an hour of the day times 100. A
/// day gets the hours that it has in `calendar`, 23 and 25 on days of a clock change.
void layOutHours(std::vector<WeatherDay>& days, Calendar const& calendar);

}  // namespace nimbara
