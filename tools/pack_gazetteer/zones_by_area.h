// Which countries a zone belongs to where no town tells: islands and stations with fewer inhabitants than a
// town.
#pragma once

#include "outlines.h"

namespace nimbara::gazetteer {

/// Gives each zone of the map in `file` to the country that has most of it.
void addZonesByArea(std::vector<CountryOutline> const& outlines, TableFile const& file,
                    CountryNumbers& countries);

}  // namespace nimbara::gazetteer
