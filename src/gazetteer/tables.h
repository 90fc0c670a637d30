// Read access to the gazetteer's embedded tables, record by record, without copying them.
#pragma once

#include "gazetteer/gazetteer.h"
#include "gazetteer/table_layout.h"

#include <cstring>
#include <string_view>

namespace nimbara::gazetteer {

std::string_view bytesOf(Section section);

template <class Record>
class Table {
 public:
  explicit Table(Section section) : bytes_(bytesOf(section)) {}

  std::size_t size() const { return bytes_.size() / sizeof(Record); }

  Record operator[](std::size_t number) const {
    Record record;
    std::memcpy(&record, bytes_.data() + number * sizeof record, sizeof record);
    return record;
  }

 private:
  std::string_view bytes_;
};

/// The display text at an offset of the pool.
std::string_view textAt(std::uint32_t offset);

/// The number of the first record that does not lie before the wanted one: `isBefore(record)` is true for
/// some first records and false for all others.
template <class Record, class IsBefore>
std::size_t partitionPoint(Table<Record> const& table, std::size_t first, std::size_t end,
                           IsBefore const& isBefore) {
  while (first < end) {
    std::size_t const middle = first + (end - first) / 2;
    if (isBefore(table[middle])) {
      first = middle + 1;
    } else {
      end = middle;
    }
  }
  return first;
}

std::string_view countryCode(std::uint16_t country);
std::string_view regionName(std::uint16_t region);
std::string_view districtName(std::uint16_t district);
std::string_view zoneName(std::uint16_t zone);
City cityAt(std::size_t number);
/// Of a country.
bool isCapital(std::size_t city);

}  // namespace nimbara::gazetteer
