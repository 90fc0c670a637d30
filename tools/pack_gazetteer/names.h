// Numbers of countries and time zones, given in the order in which they are first asked for.
#pragma once

#include "table_file.h"

#include <set>
#include <vector>

namespace nimbara::gazetteer {

/// Countries are known by their code, so the numbers must be fixed before: pass all codes.
class CountryNumbers {
 public:
  explicit CountryNumbers(std::set<std::string, std::less<>> const& codes)
      : codes_(codes.begin(), codes.end()) {}

  std::uint16_t number(std::string_view code) const;
  /// Notes that one town of the country keeps this zone's time.
  void addTown(std::uint16_t country, std::uint16_t zone) { ++towns_[country][zone]; }
  /// Notes that the zone belongs to the country.
  void addZone(std::uint16_t country, std::uint16_t zone) { zones_[country].insert(zone); }
  void write(TableFile& file) const;

 private:
  std::vector<std::string> codes_;
  std::set<std::uint16_t> zonesOf(std::uint16_t country) const;

  std::map<std::uint16_t, std::map<std::uint16_t, int>> towns_;
  std::map<std::uint16_t, std::set<std::uint16_t>> zones_;
};

class ZoneNumbers {
 public:
  /// The number of a zone; written is the name under which ICU knows it. Throws std::runtime_error when there
  /// is none.
  std::uint16_t number(std::string_view name);
  void write(TableFile& file) const;

 private:
  std::map<std::string, std::uint16_t, std::less<>> numbers_;
  std::vector<std::string> names_{""};
};

}  // namespace nimbara::gazetteer
