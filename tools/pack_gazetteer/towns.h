// The towns of GeoNames and the names of their regions, as read from the packages' files.
#pragma once

#include "table_file.h"

#include <optional>
#include <vector>

namespace nimbara::gazetteer {

struct Town {
  std::string name;
  std::string alternates;  // separated by commas
  PointRecord at;
  std::string country;
  std::string region;    // "US.TX"
  std::string district;  // "US.TX.453"
  std::string zone;
  std::int32_t population = 0;
  bool isCapital = false;
  /// A part of a city, which stands in the table for itself.
  bool isSection = false;
};

/// The towns of a GeoNames table, the most populous first, without those that exist no more.
std::vector<Town> readTowns(std::filesystem::path const& table);

/// Code -> name of a JSON list of {"code", "name"}.
std::map<std::string, std::string, std::less<>> readCodes(std::filesystem::path const& json);

}  // namespace nimbara::gazetteer
