#include "base/text/text.h"
#include "regions/region_outline.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace nimbara {

namespace {

constexpr std::string_view kHead =
    "# Warning regions of Europe: MeteoAlarm / EUMETNET, CC0 1.0. Made by tools/pack_regions; see\n"
    "# docs/decisions/0019-outlines-as-part-of-the-program.md. An arc is a border, in ten thousandths of a\n"
    "# degree: its first latitude and longitude, then the steps from point to point.\n";

std::string_view kindOf(OutlinedRegion const& region) {
  return region.isSea ? "sea" : "land";
}

void append(std::string& text, std::int64_t number) {
  if (text.back() != '\t') text += ' ';
  text += std::to_string(number);
}

/// Numbers with a blank between them; false when there is anything else.
class NumberReader {
 public:
  explicit NumberReader(std::string_view text) : rest_(text) {}

  bool isAtEnd() const { return rest_.empty(); }

  std::optional<std::int32_t> next() {
    std::int32_t number = 0;
    auto const [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
    if (error != std::errc()) return std::nullopt;
    rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
    if (rest_.starts_with(' ')) rest_.remove_prefix(1);
    return number;
  }

 private:
  std::string_view rest_;
};

std::optional<OutlineArc> readArc(std::string_view numbers) {
  NumberReader reader(numbers);
  OutlineArc arc;
  OutlinePoint at;
  while (!reader.isAtEnd()) {
    auto const north = reader.next();
    auto const east = reader.next();
    if (!north || !east) return std::nullopt;
    at = {at.latitude + *north, at.longitude + *east};
    if (!isValid({at.latitude / kOutlineStepsPerDegree, at.longitude / kOutlineStepsPerDegree}))
      return std::nullopt;
    arc.push_back(at);
  }
  return arc.size() < 2 ? std::nullopt : std::optional(arc);
}

/// "region", registry, code, country, "land" or "sea", name, arcs
std::optional<OutlinedRegion> readRegion(std::vector<std::string_view> const& cells, std::size_t arcCount) {
  constexpr std::size_t kCells = 7;
  if (cells.size() != kCells || (cells[4] != "land" && cells[4] != "sea")) return std::nullopt;
  OutlinedRegion region{{std::string(cells[1]), std::string(cells[2])},
                        std::string(cells[3]),
                        std::string(cells[5]),
                        cells[4] == "sea",
                        {}};
  NumberReader reader(cells[6]);
  while (!reader.isAtEnd()) {
    auto const arc = reader.next();
    if (!arc || *arc < 0 || static_cast<std::size_t>(*arc) >= arcCount) return std::nullopt;
    region.arcs.push_back(static_cast<std::uint32_t>(*arc));
  }
  return region.arcs.empty() ? std::nullopt : std::optional(region);
}

bool addLine(OutlineSet& set, std::string_view line) {
  auto const cells = split(line, '\t');
  if (cells[0] == "edition" && cells.size() == 2) {
    set.edition = cells[1];
  } else if (cells[0] == "arc" && cells.size() == 2) {
    auto arc = readArc(cells[1]);
    if (!arc) return false;
    set.arcs.push_back(std::move(*arc));
  } else if (cells[0] == "region") {
    auto region = readRegion(cells, set.arcs.size());
    if (!region) return false;
    set.regions.push_back(std::move(*region));
  } else if (cells[0] == "alias" && cells.size() == 4) {
    set.aliases.push_back({{std::string(cells[1]), std::string(cells[2])}, std::string(cells[3])});
  } else {
    return false;
  }
  return true;
}

}  // namespace

std::string outlineText(OutlineSet const& set) {
  std::string text(kHead);
  text += "edition\t" + set.edition + "\n";
  for (OutlineArc const& arc : set.arcs) {
    text += "arc\t";
    OutlinePoint before;
    for (OutlinePoint const point : arc) {
      append(text, point.latitude - before.latitude);
      append(text, point.longitude - before.longitude);
      before = point;
    }
    text += '\n';
  }
  for (OutlinedRegion const& region : set.regions) {
    text += "region\t" + region.code.registry + "\t" + region.code.code + "\t" + region.country + "\t";
    text += std::string(kindOf(region)) + "\t" + region.name + "\t";
    for (std::uint32_t const arc : region.arcs) append(text, arc);
    text += '\n';
  }
  for (RegionAlias const& alias : set.aliases)
    text += "alias\t" + alias.code.registry + "\t" + alias.code.code + "\t" + alias.region + "\n";
  return text;
}

Result<OutlineSet, std::string> readOutlineText(std::string_view text) {
  OutlineSet set;
  std::size_t number = 0;
  for (std::string_view const line : split(text, '\n')) {
    ++number;
    if (line.empty() || line.starts_with('#')) continue;
    if (!addLine(set, line)) return std::unexpected("line " + std::to_string(number) + " is not an outline");
  }
  return set;
}

std::vector<RegionAlias> readAliases(std::string_view table) {
  std::vector<RegionAlias> aliases;
  for (std::string_view const line : split(table, '\n')) {
    auto const cells = split(line, '\t');
    if (cells.size() != 3 || line.starts_with('#')) continue;
    for (std::string_view const region : split(cells[2], ' '))
      aliases.push_back({{std::string(cells[0]), std::string(cells[1])}, std::string(region)});
  }
  std::ranges::sort(aliases);
  return aliases;
}

}  // namespace nimbara
