#include "cli/pages/warnings/region_table.h"

#include "base/text/number.h"
#include "base/text/text.h"

#include <algorithm>

namespace nimbara {

namespace {

std::string joined(std::vector<std::string> parts) {
  std::ranges::sort(parts);
  std::string text;
  for (std::string const& part : parts) text += (text.empty() ? "" : " ") + part;
  return text;
}

std::optional<RegionTableRow> readRow(std::string_view line) {
  constexpr std::size_t kCells = 7;
  auto const cells = split(line, '\t');
  if (cells.size() != kCells) return std::nullopt;
  auto const latitude = parseDouble(cells[1]);
  auto const longitude = parseDouble(cells[2]);
  if (!latitude || !longitude || !isValid({*latitude, *longitude})) return std::nullopt;
  return RegionTableRow{std::string(cells[0]), {*latitude, *longitude}, std::string(cells[3]),
                        std::string(cells[4]), std::string(cells[5]),   std::string(cells[6])};
}

}  // namespace

Result<std::vector<RegionTableRow>, std::string> readRegionTable(std::string_view text) {
  std::vector<RegionTableRow> rows;
  std::size_t number = 0;
  for (std::string_view const line : split(text, '\n')) {
    ++number;
    if (line.empty() || line.starts_with('#')) continue;
    auto row = readRow(line);
    if (!row) return std::unexpected("line " + std::to_string(number) + " is not a place with its regions");
    rows.push_back(std::move(*row));
  }
  return rows;
}

RegionTableRow foundRow(RegionTableRow const& row, Regions const& regions) {
  PlaceRegions const found = regions.at(row.at);
  std::vector<std::string> land;
  std::vector<std::string> sea;
  for (RegionCode const& code : found.codes) {
    if (code.registry != kEmmaRegistry) continue;
    bool const isSea = std::ranges::find(found.seaCodes, code) != found.seaCodes.end();
    (isSea ? sea : land).push_back(code.code);
  }
  RegionTableRow got{row.place, row.at, found.country, joined(land), joined(sea), {}};
  bool const hasName = std::ranges::find(found.names, row.name) != found.names.end();
  if (!row.name.empty()) got.name = hasName ? row.name : joined(found.names);
  return got;
}

std::string describe(RegionTableRow const& row) {
  auto const orDash = [](std::string const& text) { return text.empty() ? "-" : text; };
  std::string text = orDash(row.country) + "  land " + orDash(row.land) + "  sea " + orDash(row.sea);
  return row.name.empty() ? text : text + "  \"" + row.name + "\"";
}

}  // namespace nimbara
