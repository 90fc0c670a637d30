#include "gazetteer/tables.h"

extern "C" {
extern char const nimbara_gazetteer_tables_begin[];  // NOLINT(readability-identifier-naming)
}

namespace nimbara::gazetteer {

namespace {

char const* fileBytes() {
  return nimbara_gazetteer_tables_begin;
}

}  // namespace

std::string_view bytesOf(Section section) {
  SectionEntry entry{};
  std::size_t const at = offsetof(Directory, sections) + static_cast<std::size_t>(section) * sizeof entry;
  std::memcpy(&entry, fileBytes() + at, sizeof entry);
  return {fileBytes() + entry.offset, entry.size};
}

std::string_view textAt(std::uint32_t offset) {
  std::string_view const pool = bytesOf(Section::texts);
  return pool.substr(offset + 1, static_cast<unsigned char>(pool[offset]));
}

std::string_view countryCode(std::uint16_t country) {
  std::size_t const at = country * sizeof(CountryRecord) + offsetof(CountryRecord, code);
  return bytesOf(Section::countries).substr(at, sizeof(CountryRecord::code));
}

std::string_view regionName(std::uint16_t region) {
  if (region == kNone) return {};
  return textAt(Table<RegionRecord>(Section::regions)[region].name);
}

std::string_view districtName(std::uint16_t district) {
  if (district == kNone) return {};
  return textAt(Table<std::uint32_t>(Section::districts)[district]);
}

std::string_view zoneName(std::uint16_t zone) {
  return textAt(Table<std::uint32_t>(Section::zones)[zone]);
}

City cityAt(std::size_t number) {
  auto const record = Table<CityRecord>(Section::cities)[number];
  return {textAt(record.name),       countryCode(record.country),
          regionName(record.region), districtName(record.district),
          coordinateOf(record.at),   zoneName(record.zone),
          record.population};
}

bool isCapital(std::size_t city) {
  Table<std::uint16_t> const capitals(Section::capitals);
  std::size_t const at =
      partitionPoint(capitals, 0, capitals.size(), [city](std::uint16_t capital) { return capital < city; });
  return at < capitals.size() && capitals[at] == city;
}

}  // namespace nimbara::gazetteer

namespace nimbara {

std::vector<City> allCities() {
  std::vector<City> cities(gazetteer::Table<gazetteer::CityRecord>(gazetteer::Section::cities).size());
  for (std::size_t i = 0; i < cities.size(); ++i) cities[i] = gazetteer::cityAt(i);
  return cities;
}

}  // namespace nimbara
