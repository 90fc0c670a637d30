// The outlines of countries from a GeoJSON file.
#pragma once

#include "geobuf.h"
#include "names.h"

namespace nimbara::gazetteer {

struct CountryOutline {
  std::string country;
  std::vector<Ring> rings;
};

/// Parts of the world that belong to no country are left out.
std::vector<CountryOutline> readOutlines(std::filesystem::path const& geoJson);

void packOutlines(std::vector<CountryOutline> const& outlines, CountryNumbers const& countries,
                  TableFile& file);

}  // namespace nimbara::gazetteer
