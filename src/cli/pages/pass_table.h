// Passes of a satellite over a place as a table for a person at a terminal. Pure.
#pragma once

#include "base/words/texts.h"
#include "base/words/time_words.h"
#include "cli/pages/style.h"
#include "globe/satellite_passes.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

struct ListedPass {
  std::string name;
  SatellitePass pass;
  std::optional<int> cloudCover;  ///< % in the hour of the culmination; absent without a forecast
};

/// What was asked for, and how it is written.
struct PassTable {
  std::string satellite;
  std::string place;
  int days = 0;
  bool isVisibleOnly = false;
  double visibleAbove = kVisibleAbove;  ///< degrees
  Texts const& texts;
  TimeWords const& words;  ///< of the place
  Calendar const& calendar;
  Style const& style;
};

/// A row for each pass below the day in which it begins, in at most 80 cells where the language's words are
/// no longer than the English ones; a sentence where there are none.
std::string passTable(std::vector<ListedPass> const& passes, PassTable const& table);

}  // namespace nimbara
