// The planetary K index as text for a person at a terminal: what it means at a place, and a table of the last
// and the next days. Pure.
#pragma once

#include "base/geodesy.h"
#include "base/time/calendar.h"
#include "base/words/texts.h"
#include "cli/pages/style.h"
#include "feeds/space/planetary_k_index.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

struct KpOutlook {
  double now = 0;
  std::vector<KpReading> history;   ///< by time, three hours each
  std::vector<KpReading> forecast;  ///< of what is not in the history
  std::optional<Coordinate> place;  ///< none: nobody knows where the reader is
};

/// `calendar` is the reader's.
std::string kpPage(KpOutlook const& outlook, Texts const& texts, Calendar const& calendar, Instant now,
                   Style const& style);

}  // namespace nimbara
