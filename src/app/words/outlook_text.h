// What is said of the days beyond a forecast, for every face.
#pragma once

#include "base/words/texts.h"
#include "feeds/outlook/outlook_service.h"

#include <string>
#include <vector>

namespace nimbara {

/// Below the days: what they are worth and whose they are. Without days: why there are none.
std::string outlookNote(FeedReading<std::vector<OutlookDay>> const& reading, bool hasDays,
                        Texts const& texts);

}  // namespace nimbara
