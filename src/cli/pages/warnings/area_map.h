// A warning's area and the place beside it, as a small map in text. Pure.
#pragma once

#include "base/words/texts.h"
#include "cli/pages/style.h"
#include "feeds/alerts/alert_outlines.h"

#include <string>

namespace nimbara {

/// Lines of at most `width` cells: the area is filled, other land is dotted, "◉" is the place. Empty where
/// nothing is drawn.
std::string areaMap(AlertOutlines const& area, Coordinate place, int width, Style const& style);

/// What its signs mean, in one line; `name` is the place's.
std::string areaMapLegend(std::string const& name, Texts const& texts, Style const& style);

}  // namespace nimbara
