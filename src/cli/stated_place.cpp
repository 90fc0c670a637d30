#include "cli/stated_place.h"

#include "base/text/text.h"

namespace nimbara {

GovAlertPlace statedPlace(Coordinate coordinate, StatedRegions const& stated, Regions const& regions) {
  GovAlertPlace place = govAlertPlace(coordinate);
  if (!stated.country.empty()) place.countryCode = asciiUppered(stated.country);
  bool const statesRegions = !stated.codes.empty() || !stated.names.empty();
  if (stated.country.empty() && !statesRegions) return place;
  PlaceRegions found = regions.at(coordinate);
  found.country = place.countryCode;
  if (statesRegions) {
    found.codes.clear();
    found.seaCodes.clear();
  }
  // A stated code is known, whatever the outlines say.
  if (!stated.codes.empty()) found.outlines.reset();
  for (std::string const& code : stated.codes) found.codes.push_back(regionCodeOf(code));
  if (!stated.names.empty()) found.names = stated.names;
  place.regions = std::move(found);
  return place;
}

}  // namespace nimbara
