// Makes the gazetteer's file from the data files that tools/fetch-gazetteer.sh brings. Runs while building.

#include "base/text/search_text.h"
#include "landmarks.h"
#include "outlines.h"
#include "search_keys.h"
#include "world_lines.h"
#include "zone_rows.h"
#include "zones_by_area.h"

#include <algorithm>
#include <cstdio>
#include <exception>

namespace nimbara::gazetteer {
namespace {

constexpr std::int32_t kSmallestCity = 15'000;
/// Smaller towns are known by name when so many other names are written for them.
constexpr std::ptrdiff_t kNamesOfKnownTown = 12;

std::ptrdiff_t namesOf(Town const& town) {
  return town.alternates.empty() ? 0 : std::ranges::count(town.alternates, ',') + 1;
}

bool isListed(Town const& town) {
  return town.population >= kSmallestCity || town.isCapital || namesOf(town) >= kNamesOfKnownTown;
}

/// Whether places around it are named after it.
bool namesItsSurroundings(Town const& town) {
  return !town.isSection && (town.population >= kSmallestCity || town.isCapital);
}

/// Countries whose official warnings go by unions of districts, without outlines.
bool hasWarningsByDistrict(Town const& town) {
  return town.country == "GB";
}

/// Regions or districts that are asked for, numbered in that order.
class NamedCodes {
 public:
  explicit NamedCodes(std::filesystem::path const& json) : names_(readCodes(json)) {
    // Towns are listed under it although the list of names has it no more.
    names_.try_emplace("GB.ENG.J1", "Northamptonshire");
  }

  /// kNone for a code without name.
  template <class Write>
  std::uint16_t number(std::string const& code, Write const& write) {
    auto const name = names_.find(code);
    if (name == names_.end() || name->second.empty()) return kNone;
    auto const known = numbers_.find(code);
    if (known != numbers_.end()) return known->second;
    write(name->second);
    return numbers_[code] = static_cast<std::uint16_t>(numbers_.size());
  }

 private:
  std::map<std::string, std::string, std::less<>> names_;
  std::map<std::string, std::uint16_t, std::less<>> numbers_;
};

std::set<std::string, std::less<>> allCodes(std::vector<Town> const& towns,
                                            std::vector<CountryOutline> const& outlines) {
  std::set<std::string, std::less<>> codes;
  for (Town const& town : towns) codes.insert(town.country);
  for (CountryOutline const& outline : outlines) codes.insert(outline.country);
  return codes;
}

class Packer {
 public:
  explicit Packer(std::filesystem::path const& folder)
      : folder_(folder),
        towns_(readTowns(folder / "cities500.txt")),
        outlines_(readOutlines(folder / "borders.json")),
        countries_(allCodes(towns_, outlines_)),
        regions_(folder / "admin1.json"),
        districts_(folder / "admin2.json") {}

  void pack(std::filesystem::path const& target) {
    packTowns();
    packOutlines(outlines_, countries_, file_);
    packZones(folder_ / "timezones.geojson.index.json", contentOf(folder_ / "timezones.geojson.geo.dat"),
              zones_, file_);
    addZonesByArea(outlines_, file_, countries_);
    packWorldLines(readWorldLines(contentOf(folder_ / "countries-50m.json")), file_);
    packWaters(readWaters(contentOf(folder_ / "world_50m.json")), file_);
    zones_.write(file_);
    countries_.write(file_);
    file_.write(target);
  }

 private:
  void packTowns() {
    std::vector<LandmarkRecord> landmarks;
    std::vector<LandmarkRecord> districtMarks;
    std::vector<std::uint16_t> tree;
    std::vector<PointRecord> points;
    for (Town const& town : towns_) {
      if (isListed(town)) ++namesakes_[searchFolded(town.name)];
    }
    for (Town const& town : towns_) {
      landmarks.push_back({town.at, countries_.number(town.country), region(town)});
      countries_.addTown(landmarks.back().country, zones_.number(town.zone));
      if (hasWarningsByDistrict(town) && district(town) != kNone)
        districtMarks.push_back({town.at, landmarks.back().country, district(town)});
      if (!isListed(town)) continue;
      auto const number = static_cast<std::uint16_t>(packCity(town));
      points.push_back(town.at);
      if (namesItsSurroundings(town)) tree.push_back(number);
      if (town.isCapital) file_.append(Section::capitals, number);
    }
    file_.appendBytes(Section::cityKeys, "\n");
    file_.appendBytes(Section::accents, "\n");
    orderAsTree(tree.data(), tree.data() + tree.size(), [&](std::uint16_t city) { return points[city]; });
    for (std::uint16_t const city : tree) file_.append(Section::cityTree, city);
    packMarks(landmarks, Section::landmarks);
    packMarks(districtMarks, Section::districtMarks);
  }

  void packMarks(std::vector<LandmarkRecord> const& all, Section section) {
    std::vector<LandmarkRecord> marks = condensed(all);
    orderAsTree(marks.data(), marks.data() + marks.size(), [](auto const& mark) { return mark.at; });
    for (LandmarkRecord const& mark : marks) file_.append(section, mark);
  }

  std::uint32_t packCity(Town const& town) {
    CityRecord city{town.at,         file_.text(town.name),           0,
                    town.population, countries_.number(town.country), region(town),
                    district(town),  zones_.number(town.zone)};
    city.keys = static_cast<std::uint32_t>(file_.bytes(Section::cityKeys).size());
    for (std::string const& key : searchKeys(town)) file_.appendBytes(Section::cityKeys, "\n " + key);
    std::uint32_t const number = file_.append(Section::cities, city);
    packAccents(town, number);
    return number;
  }

  /// Accents tell towns apart only where there are several of the name.
  void packAccents(Town const& town, std::uint32_t number) {
    if (namesakes_[searchFolded(town.name)] < 2) return;
    for (std::string const& name : accentedNames(town)) {
      file_.appendBytes(Section::accents, "\n" + name + "\t" + std::to_string(number));
    }
  }

  std::uint16_t region(Town const& town) {
    return regions_.number(town.region, [&](std::string const& name) {
      std::string const code = searchFolded(town.region.substr(town.country.size() + 1));
      std::string const keys = "\n" + code + "\n" + searchFolded(name) + "\n";
      file_.append(Section::regions,
                   RegionRecord{file_.text(name), file_.appendBytes(Section::regionKeys, keys)});
    });
  }

  std::uint16_t district(Town const& town) {
    return districts_.number(
        town.district, [&](std::string const& name) { file_.append(Section::districts, file_.text(name)); });
  }

  std::filesystem::path folder_;
  std::vector<Town> towns_;
  std::vector<CountryOutline> outlines_;
  CountryNumbers countries_;
  ZoneNumbers zones_;
  NamedCodes regions_;
  NamedCodes districts_;
  std::map<std::string, int> namesakes_;  ///< listed towns by their folded names
  TableFile file_;
};

}  // namespace
}  // namespace nimbara::gazetteer

int main(int count, char** words) {
  if (count != 3) {
    std::fputs("usage: pack_gazetteer SOURCE-FOLDER TARGET-FILE\n", stderr);
    return 2;
  }
  try {
    nimbara::gazetteer::Packer(words[1]).pack(words[2]);
  } catch (std::exception const& error) {
    std::fprintf(stderr, "pack_gazetteer: %s\n", error.what());
    return 1;
  }
  return 0;
}
