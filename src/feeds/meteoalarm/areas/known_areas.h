// Whether the areas that warnings name are known here at all, so that a warning of another region can be told
// from one that nobody can place. Owned by the application. Any thread may ask.
#pragma once

#include "feeds/meteoalarm/meteo_alarm_atom_parser.h"
#include "regions/region_map.h"

#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

class KnownAreas {
 public:
  /// Of an entry without a shape: whether the outlines have one of its codes or its area's name, or the name
  /// is, or has in it, that of a region of the country. `outlines` may be null.
  bool has(std::string_view country, RawEntry const& entry, RegionMap const* outlines);

 private:
  std::vector<std::string> const& namesOf(std::string_view country);

  std::mutex mutex_;
  std::map<std::string, std::vector<std::string>, std::less<>> names_;
};

}  // namespace nimbara
