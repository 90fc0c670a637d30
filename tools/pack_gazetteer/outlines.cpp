#include "outlines.h"

#include "base/json/simdjson_dom.h"

#include <algorithm>

namespace nimbara::gazetteer {

namespace {

using Element = simdjson::dom::element;

std::string_view textAt(Element object, std::string_view key) {
  std::string_view text;
  return object[key].get(text) == simdjson::SUCCESS ? text : std::string_view{};
}

/// Wikidata numbers of outlines whose properties do not name the code under which the towns are listed.
constexpr std::pair<std::string_view, std::string_view> kCodes[] = {
    {"Q23681", "CY"},                       // Northern Cyprus
    {"Q25231", "SJ"},   {"Q14056", "SJ"},   // Svalbard, Jan Mayen
    {"Q46772", "TF"},   {"Q201698", "TF"},  // Kerguelen, Crozet
    {"Q1681727", "TF"}, {"Q190571", "TF"},  // Saint-Paul and Amsterdam, Scattered Islands
    {"Q639185", "IO"},  {"Q1298289", "IO"}, {"Q1544253", "IO"}, {"Q1585511", "IO"},  // parts of Chagos
    {"Q184851", "IO"},                                                               // Diego Garcia
    {"Q3405693", "GG"},                                                              // Sark
    {"Q7835", "UA"},                         // Crimea, as the towns have it
    {"Q3311985", "GG"}, {"Q179313", "GG"},   // Guernsey and Alderney
    {"Q9143535", "CY"}, {"Q9206745", "CY"},  // Akrotiri and Dhekelia, which have no code
};

/// "SH" of the alias "SH-HL", for outlines that are a part of what has the code.
std::string_view codeFromAliases(Element properties) {
  simdjson::dom::array aliases;
  if (properties["aliases"].get(aliases) != simdjson::SUCCESS) return {};
  for (Element const alias : aliases) {
    std::string_view const text = alias;
    if (text.size() > 3 && text[2] == '-') return text.substr(0, 2);
  }
  return {};
}

std::string_view countryOf(Element properties) {
  auto const listed =
      std::ranges::find(kCodes, textAt(properties, "wikidata"), [](auto const& row) { return row.first; });
  if (listed != std::ranges::end(kCodes)) return listed->second;
  bool const official = textAt(properties, "isoStatus") != "excRes";
  std::string_view const own = textAt(properties, "iso1A2");
  if (official && !own.empty()) return own;
  std::string_view const alias = codeFromAliases(properties);
  return alias.empty() ? textAt(properties, "country") : alias;
}

Ring readRing(Element points) {
  Ring ring;
  for (Element const point : points) ring.push_back({double(point.at(1)), double(point.at(0))});
  // The last point repeats the first.
  if (!ring.empty()) ring.pop_back();
  return ring;
}

void includeIn(OutlineRecord& box, PointRecord point) {
  box.southWest = {std::min(box.southWest.latitude, point.latitude),
                   std::min(box.southWest.longitude, point.longitude)};
  box.northEast = {std::max(box.northEast.latitude, point.latitude),
                   std::max(box.northEast.longitude, point.longitude)};
}

}  // namespace

std::vector<CountryOutline> readOutlines(std::filesystem::path const& geoJson) {
  simdjson::dom::parser parser;
  Element const root = parser.parse(contentOf(geoJson));
  std::vector<CountryOutline> outlines;
  for (Element const feature : root["features"]) {
    Element const geometry = feature["geometry"];
    std::string_view const country = countryOf(feature["properties"]);
    if (geometry.is_null() || country.empty()) continue;
    CountryOutline& outline = outlines.emplace_back(std::string(country), std::vector<Ring>{});
    for (Element const polygon : geometry["coordinates"]) {
      for (Element const ring : polygon) outline.rings.push_back(readRing(ring));
    }
  }
  return outlines;
}

void packOutlines(std::vector<CountryOutline> const& outlines, CountryNumbers const& countries,
                  TableFile& file) {
  constexpr PointRecord kFar{90 * 100'000, 180 * 100'000};
  for (CountryOutline const& outline : outlines) {
    OutlineRecord record{kFar, {-kFar.latitude, -kFar.longitude}, 0, 0, countries.number(outline.country)};
    record.firstRing = static_cast<std::uint32_t>(file.bytes(Section::rings).size() / sizeof(RingRecord));
    record.ringCount = static_cast<std::uint16_t>(outline.rings.size());
    for (Ring const& ring : outline.rings) {
      auto const first = static_cast<std::uint32_t>(file.bytes(Section::points).size() / sizeof(PointRecord));
      file.append(Section::rings, RingRecord{first, static_cast<std::uint32_t>(ring.size())});
      for (Coordinate const& point : ring) {
        file.append(Section::points, pointRecord(point));
        includeIn(record, pointRecord(point));
      }
    }
    file.append(Section::outlines, record);
  }
}

}  // namespace nimbara::gazetteer
