#include "towns.h"

#include "base/json/simdjson_dom.h"
#include "base/text/number.h"
#include "base/text/text.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace nimbara::gazetteer {

namespace {

/// The columns of GeoNames' tables, https://download.geonames.org/export/dump/readme.txt
enum Column : std::uint8_t {
  name = 1,
  alternateNames = 3,
  latitude = 4,
  longitude = 5,
  featureCode = 7,
  countryCode = 8,
  admin1 = 10,
  admin2 = 11,
  population = 14,
  timeZone = 17,
  columns = 19
};

/// Abandoned, destroyed and historical places and former capitals.
bool existsNoMore(std::string_view feature) {
  constexpr std::string_view kGone[] = {"PPLQ", "PPLW", "PPLH", "PPLCH"};
  return std::ranges::find(kGone, feature) != std::ranges::end(kGone);
}

struct NameThere {
  std::string_view country, given, name;
};
/// Towns to which the source gives a name that is not in the town's own language.
constexpr NameThere kNamesThere[] = {{"CH", "Sitten", "Sion"}};

void takeOwnName(Town& town) {
  for (NameThere const& row : kNamesThere) {
    if (town.country != row.country || town.name != row.given) continue;
    town.alternates += "," + town.name;
    town.name = row.name;
    return;
  }
}

std::optional<Town> readTown(std::string_view line) {
  auto const cells = split(line, '\t');
  if (cells.size() != columns) throw std::runtime_error("towns: a line without 19 columns");
  if (existsNoMore(cells[featureCode]) || cells[countryCode].size() != 2) return std::nullopt;
  Town town;
  town.name = cells[name];
  town.alternates = cells[alternateNames];
  town.at = pointRecord({parseDouble(cells[latitude]).value(), parseDouble(cells[longitude]).value()});
  town.country = cells[countryCode];
  town.region = town.country + "." + std::string(cells[admin1]);
  town.district = town.region + "." + std::string(cells[admin2]);
  town.zone = cells[timeZone];
  town.population = parseInteger(cells[population]).value();
  town.isCapital = cells[featureCode] == "PPLC";
  town.isSection = cells[featureCode] == "PPLX";
  takeOwnName(town);
  return town;
}

}  // namespace

std::vector<Town> readTowns(std::filesystem::path const& table) {
  std::vector<Town> towns;
  std::ifstream in(table);
  for (std::string line; std::getline(in, line);) {
    if (auto town = readTown(line)) towns.push_back(std::move(*town));
  }
  std::ranges::stable_sort(towns, std::greater(), &Town::population);
  return towns;
}

std::map<std::string, std::string, std::less<>> readCodes(std::filesystem::path const& json) {
  std::map<std::string, std::string, std::less<>> names;
  simdjson::dom::parser parser;
  for (simdjson::dom::element const entry : parser.parse(contentOf(json))) {
    names.emplace(std::string_view(entry["code"]), std::string_view(entry["name"]));
  }
  return names;
}

}  // namespace nimbara::gazetteer
